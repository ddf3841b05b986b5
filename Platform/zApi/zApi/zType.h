#pragma once

#include <zApi/zTypes.h>

struct zTypeInfo;
struct zDat6Writer;
struct zDat6Reader;

/// A type is the address of its type object; two types are the same if the addresses are.
using zType = const zTypeInfo*;

/// What an object type brings along.
struct zObjectOps
{
    /// Releases what the object holds; the memory of the object itself is freed by the caller.
    void (*release)(zObject object) noexcept;
    /// Makes a deep copy of the object in `alloc`.
    zStatus (*clone)(zObject object, zAlloc alloc, zObject* clone);
    /// Writes what the object holds, by the operations of `zDat6.h`. Null if objects of this type are not saved.
    zStatus (*save)(zObject object, zDat6Writer* writer) = nullptr;
    /// Makes an object of `type` of what `save` wrote. A failing call leaves nothing behind. Null as `save` is.
    zStatus (*load)(zDat6Reader* reader, zType type, zAlloc alloc, zObject* object) = nullptr;
};

/// A type object. It is constant-initialised and lives as long as the process.
struct zTypeInfo
{
    const char* name;
    zType base;            ///< null at a root
    std::size_t size;      ///< bytes of one item in an array or list
    const zObjectOps* ops; ///< null for value types and abstract types
    bool isObject;         ///< items are handles that hold a reference
};

/// The type object of `T`: `zTypeOf(z16s)`.
#define zTypeOf(T) (&T##_TypeInfo)

/// Declares the type object of `T` for others.
#define zDECLARE_TYPE(T) extern "C" MU_PLATFORM_EXPORT const zTypeInfo T##_TypeInfo

/// Defines the type object of the value type `T`, which is declared before.
#define zDEFINE_VALUE_TYPE(T) constinit const zTypeInfo T##_TypeInfo = {#T, nullptr, sizeof(T), nullptr, false}

/// Defines the type object of an object type below `Base`, with its operations; null operations make it abstract.
#define zDEFINE_OBJECT_TYPE(T, Base, operations)                                                                       \
    constinit const zTypeInfo T##_TypeInfo = {#T, zTypeOf(Base), sizeof(zObject), operations, true}

zDECLARE_TYPE(z8u);
zDECLARE_TYPE(z16u);
zDECLARE_TYPE(z16s);
zDECLARE_TYPE(z32s);
zDECLARE_TYPE(z32u);
zDECLARE_TYPE(z64s);
zDECLARE_TYPE(z32f);
zDECLARE_TYPE(z64f);
zDECLARE_TYPE(zPoint16s);
zDECLARE_TYPE(zPoint3d16s);
zDECLARE_TYPE(zPoint32f);
zDECLARE_TYPE(zPoint3d32f);
zDECLARE_TYPE(zPoint64f);
zDECLARE_TYPE(zPoint3d64f);
zDECLARE_TYPE(zRgb);
zDECLARE_TYPE(zRgb24);
zDECLARE_TYPE(zObject);

/// The type of raw records of `size` bytes: the same type object for the same size, whoever asks, from any thread.
/// Null if `size` is 0 or memory is short.
extern "C" MU_PLATFORM_EXPORT zType zBytes_GetType(std::size_t size);
