#pragma once

#include <TaVision/TvDataMsg.h>

#include <zApi/zDat6.h>
#include <zApi/zObjectType.h>
#include <zRelay/zMsgSetClass.h>

// For those who make messages of this library. The class of a family derives from `TvMsgClass`, holds handles and plain
// values, and shadows `ReleaseParts`, `CopyFrom`, `SaveTo` and `LoadFrom` if it holds more than plain values or has any
// of its own.

inline constexpr zRect3d64f TvUNKNOWN_BOX = {zNULL_64F, zNULL_64F, zNULL_64F, zNULL_64F, zNULL_64F, zNULL_64F};

/// What every message has. Time and encoder stand in its first stamp.
struct TvMsgClass : zMsgSetClass
{
    zRect3d64f boundingBox = TvUNKNOWN_BOX;
    TvFoRTransform transform = TvFOR_TRANSFORM_IDENTITY;
    TvSpaceType spaceType = 0;

    /// Releases what the message holds, stamps apart.
    void ReleaseParts() noexcept {}

    /// Makes a new message a deep copy of `source`; what it holds goes to its own allocator.
    [[nodiscard]] zStatus CopyFrom(const TvMsgClass& source);

    /// Writes what the message holds.
    [[nodiscard]] zStatus SaveTo(zDat6Writer* writer) const;

    /// Gives a new message what was written; what it holds goes to its own allocator.
    [[nodiscard]] zStatus LoadFrom(zDat6Reader* reader);
};

template <typename T>
void TvMsg_Release(zObject object) noexcept
{
    static_cast<T*>(object)->ReleaseParts();
    xzMsgSet_Release(static_cast<T*>(object));
}

template <typename T>
zStatus TvMsg_Clone(zObject object, zAlloc alloc, zObject* clone)
{
    const T* const source = static_cast<const T*>(object);
    T* made = nullptr;
    zTRY(zObjectType_New(source->type, alloc, &made));
    return zObjectType_Finish(made, made->CopyFrom(*source), clone);
}

template <typename T>
zStatus TvMsg_Save(zObject object, zDat6Writer* writer)
{
    return static_cast<const T*>(object)->SaveTo(writer);
}

template <typename T>
zStatus TvMsg_Load(zDat6Reader* reader, zType type, zAlloc alloc, zObject* object)
{
    T* made = nullptr;
    zTRY(zObjectType_New(type, alloc, &made));
    made->count = 1;
    return zObjectType_Finish(made, made->LoadFrom(reader), object);
}

/// The operations of a family's type object.
template <typename T>
inline constexpr zObjectOps TvMsg_Ops = {TvMsg_Release<T>, TvMsg_Clone<T>, TvMsg_Save<T>, TvMsg_Load<T>};

/// Makes a message with `stampCount` stamps, fills it with `build(T&)`, which returns a status, and hands it out.
template <typename T, typename Build>
[[nodiscard]] zStatus TvMsg_Make(zType type, std::size_t stampCount, zAlloc alloc, zObject* out, const Build& build)
{
    if (out == nullptr)
    {
        return zERROR_MISSING;
    }
    T* made = nullptr;
    zTRY(zObjectType_New(type, alloc, &made));
    const zStatus stamped = xzMsgSet_Init(made, stampCount);
    return zObjectType_Finish(made, stamped == zOK ? build(*made) : stamped, out);
}

/// Copies `*value` to a member of the message: -997 if it is not of `type`, -999 if `value` is null.
template <typename T, typename Owner, typename Value>
[[nodiscard]] zStatus TvMsg_SetMember(zObject msg, zType type, Value Owner::*member, const Value* value)
{
    T* const object = zObjectType_Cast<T>(msg, type);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (value == nullptr)
    {
        return zERROR_MISSING;
    }
    object->*member = *value;
    return zOK;
}

/// A member of the message, or `otherwise` if it is not of `type`.
template <typename T, typename Owner, typename Value>
[[nodiscard]] Value TvMsg_Member(zObject msg, zType type, Value Owner::*member, const Value& otherwise)
{
    const T* const object = zObjectType_Cast<T>(msg, type);
    return object == nullptr ? otherwise : object->*member;
}
