#pragma once

#include <zRelay/zMsgSet.h>

/// The base of all messages of this library; abstract. Its properties are set and read by the operations of `TvDataMsg`
/// that say so.
zDECLARE_TYPE(TvMsg);

using TvMsg = void*;

/// The most points, or bytes of a buffer, in one message: a request for more is taken for nonsense.
inline constexpr std::size_t TvMSG_MAX_ITEMS = std::size_t{1} << 30U;
