#pragma once

#include <TaVision/TvMsg.h>

/// A message that carries graphics. The operations give -997 (null) if `msg` is no rendering.
zDECLARE_TYPE(TvRenderingMsg);

using TvRenderingMsg = void*;

extern "C"
{
    /// Makes a message without graphics. One allocation. -999 if `msg` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvRenderingMsg_Construct(TvRenderingMsg* msg, zAlloc alloc);

    /// The graphics, any object, not shared for the caller; null if there are none.
    MU_PLATFORM_EXPORT zObject TvRenderingMsg_Rendering(TvRenderingMsg msg);

    /// Holds `graphic` in place of what the message held, which it releases; null for none. It takes over the caller's
    /// reference if it succeeds; else the reference stays the caller's and the message as it was.
    MU_PLATFORM_EXPORT zStatus TvRenderingMsg_SetRendering(TvRenderingMsg msg, zObject graphic);
}
