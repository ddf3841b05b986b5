#pragma once

#include <zApi/zAlloc.h>
#include <zApi/zFault.h>
#include <zApi/zObject.h>

#include <cstddef>
#include <new>

// For those who make object types. A class is a struct that derives from `zObjectClass`, holds handles and plain
// values, and is made, released and cloned by the operations below.

/// Makes an object of class `T` and type `type` with one reference. `T` is value-initialised.
template <typename T>
[[nodiscard]] zStatus zObjectType_New(zType type, zAlloc alloc, T** object)
{
    void* memory = nullptr;
    zTRY(zAlloc_Get(alloc, sizeof(T), &memory));
    T* made = ::new (memory) T();
    made->type = type;
    made->alloc = alloc;
    made->references.store(1, std::memory_order_relaxed);
    made->signature = zOBJECT_SIGNATURE;
    *object = made;
    return zOK;
}

/// Ends a construction: hands the object out, or disposes of it if building it failed.
[[nodiscard]] inline zStatus zObjectType_Finish(zObjectClass* object, zStatus built, zObject* out)
{
    if (built == zOK)
    {
        *out = object;
        return zOK;
    }
    static_cast<void>(xzObject_DestroyImpl(object));
    return built;
}

/// Replaces the handle in `*slot` by `object`, of which it takes over the reference.
inline void zObjectType_Put(zObject* slot, zObject object) noexcept
{
    zObject former = *slot;
    *slot = object;
    static_cast<void>(xzObject_DestroyImpl(former));
}

/// The object as class `T` if it is of `type`, else null.
template <typename T>
[[nodiscard]] T* zObjectType_Cast(zObject object, zType type)
{
    return xzCastClass_ObjectIs(object, type) ? static_cast<T*>(object) : nullptr;
}
