#pragma once

#include <zApi/zType.h>

#include <atomic>

// The object model: every object has a type and a reference count, and is known by a handle. Counts are atomic; the
// content of an object is not guarded.

/// The first bytes of every object.
struct zObjectClass
{
    zType type;
    zAlloc alloc; ///< where the object's own memory came from; outlives it
    std::atomic<z32s> references;
    z32u signature; ///< `zOBJECT_SIGNATURE` while the object lives
};

inline constexpr z32u zOBJECT_SIGNATURE = 0x5AB1EC75U;

extern "C"
{
    /// Adds a reference. -999 if `object` is null.
    MU_PLATFORM_EXPORT zStatus xzObject_ShareImpl(zObject object);

    /// Drops a reference; the last one ends the object. A null handle succeeds.
    MU_PLATFORM_EXPORT zStatus xzObject_DestroyImpl(zObject object);

    /// Stores a deep copy of `source`, with one reference, in `*clone`. A null source gives a null clone.
    /// -999 if `clone` is null, -992 if the type cannot be cloned, -998 if `alloc` has no memory.
    MU_PLATFORM_EXPORT zStatus xzObject_CloneImpl(zObject* clone, zObject source, zAlloc alloc);

    /// True if `object` is of `type` or of a type derived from it. A null handle is of no type.
    MU_PLATFORM_EXPORT bool xzCastClass_ObjectIs(zObject object, zType type);

    /// True if `object` is a living object.
    MU_PLATFORM_EXPORT bool xzCastClass_ObjectIsValid(zObject object);

    /// Reports a checked cast that failed, with its place, on the low-level log; the run goes on.
    MU_PLATFORM_EXPORT zStatus xzApiLib_CastFailHandler(const char* file, int line);

    /// The number of references at this moment, 0 for a null handle. For tests and diagnostics.
    MU_PLATFORM_EXPORT z32s xzObject_ReferenceCount(zObject object);

    /// The type of an object, null for a null handle.
    MU_PLATFORM_EXPORT zType xzObject_Type(zObject object);
}
