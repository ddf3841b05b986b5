#pragma once

#include <TaVision/TvMsg.h>

/// A buffer of bytes with a number that tells what they mean. The operations give -997 (null, 0) if `msg` is no generic
/// message.
zDECLARE_TYPE(TvGenericMsg);

using TvGenericMsg = void*;

extern "C"
{
    /// Makes a message with a buffer of `size` bytes, all 0. -999 if `msg` is null, -997 beyond `TvMSG_MAX_ITEMS`
    /// bytes, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvGenericMsg_Construct(TvGenericMsg* msg, z32u dataType, std::size_t size, zAlloc alloc);

    /// What the bytes mean.
    MU_PLATFORM_EXPORT z32u TvGenericMsg_Type(TvGenericMsg msg);

    /// The bytes of the buffer.
    MU_PLATFORM_EXPORT std::size_t TvGenericMsg_Size(TvGenericMsg msg);

    /// The buffer, valid while the message lives; null if it has no bytes.
    MU_PLATFORM_EXPORT void* TvGenericMsg_Buffer(TvGenericMsg msg);

    /// Copies as many bytes as the buffer has; `bytes` must not overlap it. -999 if `bytes` is null, unless the buffer
    /// has none.
    MU_PLATFORM_EXPORT zStatus TvGenericMsg_SetBuffer(TvGenericMsg msg, const void* bytes);
}
