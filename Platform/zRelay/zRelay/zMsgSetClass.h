#pragma once

#include <zRelay/zMsgSet.h>

#include <zApi/zDat6.h>

// For those who make message types: the class of a message begins with `zMsgSetClass`.

/// Stamp 0 stands in the object itself, so that a message of one frame costs one allocation.
struct zMsgSetClass : zObjectClass
{
    std::size_t count;
    zStamp first;
    zStamp* others; ///< `count` - 1 stamps, null if there are none
};

extern "C"
{
    /// Gives a new object `count` stamps, all zero, but at least one, in the object's own allocator.
    /// -997 beyond `zMSGSET_MAX_STAMPS`, -998 if there is no memory; then there is one.
    MU_PLATFORM_EXPORT zStatus xzMsgSet_Init(zMsgSetClass* msg, std::size_t count);

    /// Gives a new object copies of the stamps of `source`. -998 if there is no memory; then there is one, all zero.
    MU_PLATFORM_EXPORT zStatus xzMsgSet_CopyStamps(zMsgSetClass* msg, const zMsgSetClass* source);

    /// Writes the stamps. Fails as `zDat6_Write`.
    MU_PLATFORM_EXPORT zStatus xzMsgSet_SaveStamps(const zMsgSetClass* msg, zDat6Writer* writer);

    /// Gives a new object the stamps that were written. Fails as `zDat6_Read`, and with -984 if there are none or more
    /// than `zMSGSET_MAX_STAMPS`; then there is one.
    MU_PLATFORM_EXPORT zStatus xzMsgSet_LoadStamps(zMsgSetClass* msg, zDat6Reader* reader);

    /// Frees the stamps beside the object. Part of the release of every message.
    MU_PLATFORM_EXPORT void xzMsgSet_Release(zMsgSetClass* msg) noexcept;
}
