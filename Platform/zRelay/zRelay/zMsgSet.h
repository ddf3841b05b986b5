#pragma once

#include <zRelay/zStamp.h>

#include <zApi/zObject.h>

/// The base of all messages: what has a stamp for each of its frames. It is abstract; the families of messages stand in
/// the libraries above.
zDECLARE_TYPE(zMsgSet);

using zMsgSet = void*;

/// The most stamps that a message may have.
inline constexpr std::size_t zMSGSET_MAX_STAMPS = std::size_t{1} << 20U;

extern "C"
{
    /// The number of stamps: at least 1 for every message, 0 if `msg` is none.
    MU_PLATFORM_EXPORT std::size_t zMsgSet_Count(zMsgSet msg);

    /// Copies `*stamp` to place `index`. -999 if `stamp` is null, -997 past the end or if `msg` is no message.
    MU_PLATFORM_EXPORT zStatus zMsgSet_SetStampAt(zMsgSet msg, std::size_t index, const zStamp* stamp);

    /// The stamp at `index`, valid while the message lives; null past the end or if `msg` is no message.
    MU_PLATFORM_EXPORT const zStamp* zMsgSet_StampAt(zMsgSet msg, std::size_t index);
}
