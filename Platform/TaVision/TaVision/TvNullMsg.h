#pragma once

#include <TaVision/TvMsg.h>

/// The message that says that an output has no data in this execution.
zDECLARE_TYPE(TvNullMsg);

using TvNullMsg = void*;

extern "C"
{
    /// Makes a null message with a stamp for each of `count` frames, one at least. One allocation for one frame.
    /// -999 if `msg` is null, -997 beyond `zMSGSET_MAX_STAMPS`, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvNullMsg_Construct(TvNullMsg* msg, std::size_t count, zAlloc alloc);
}
