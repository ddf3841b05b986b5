#pragma once

#include <TaApi/Raise.h>

#include <zApi/zObject.h>

#include <utility>

namespace Ta
{
/// An owning handle of one pointer on a reference-counted object of the base library.
/// `T` is the handle type, `void*` throughout.
template <typename T>
class Object
{
public:
    Object() noexcept = default;

    /// Takes over the caller's reference.
    explicit Object(T newObject) noexcept
        : object(newObject)
    {
    }

    /// Shares. @throws Ta::Exception the status of a failing share
    Object(const Object& other)
        : object(other.object)
    {
        if (object != nullptr)
        {
            ShareOrForget({__LINE__, UNIT, "Ta::Object<void *>::Object"});
        }
    }

    Object(Object&& other) noexcept
        : object(std::exchange(other.object, nullptr))
    {
    }

    ~Object()
    {
        if (object != nullptr)
        {
            static_cast<void>(xzObject_DestroyImpl(object));
            object = nullptr;
        }
    }

    /// Shares, then releases what was held. @throws Ta::Exception the status of a failing share or release
    Object& operator=(const Object& other)
    {
        Replace(other.object, true, {__LINE__, UNIT, "Ta::Object<void *>::operator ="});
        return *this;
    }

    /// Steals. @throws Ta::Exception the status of a failing release
    Object& operator=(Object&& other)
    {
        if (this != &other)
        {
            Replace(std::exchange(other.object, nullptr), false, {__LINE__, UNIT, "Ta::Object<void *>::operator ="});
        }
        return *this;
    }

    /// Releases the present object and holds `newObject`, adding a reference only if `share` is true and the object is
    /// not null. @throws Ta::Exception the status of a failing share (the handle stays as it was) or release
    void Reset(T newObject = nullptr, bool share = false)
    {
        Replace(newObject, share, {__LINE__, UNIT, "Ta::Object<void *>::Reset"});
    }

    /// The raw object; valid while this handle lives.
    [[nodiscard]] T Get() const noexcept
    {
        return object;
    }

    /// The address that a `..._Construct` operation stores a new object in. What was held is released first.
    [[nodiscard]] T* Out()
    {
        Reset();
        return &object;
    }

    /// The same, for operations that reuse what they find there.
    [[nodiscard]] T* InOut() noexcept
    {
        return &object;
    }

    /// Gives the reference up to the caller.
    [[nodiscard]] T Detach() noexcept
    {
        return std::exchange(object, nullptr);
    }

    explicit operator bool() const noexcept
    {
        return object != nullptr;
    }

private:
    static constexpr const char* UNIT = "Platform/TaApi/TaApi/Object";

    void ShareOrForget(const Place& place)
    {
        if (const zStatus status = xzObject_ShareImpl(object); status != zOK) [[unlikely]]
        {
            object = nullptr;
            Raise(place, status);
        }
    }

    void Replace(T newObject, bool share, const Place& place)
    {
        if (share && newObject != nullptr)
        {
            Check(place, xzObject_ShareImpl(newObject));
        }
        // Releasing nothing costs nothing: most handles are empty when a constructor stores into them.
        if (T const former = std::exchange(object, newObject); former != nullptr)
        {
            Check(place, xzObject_DestroyImpl(former));
        }
    }

    T object = nullptr;
};
} // namespace Ta
