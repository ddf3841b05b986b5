#pragma once

#include <TaVision/TvMsg.h>

/// A point feature: a position in mm. What was not set is null. The operations give -997 (null) if `msg` is no point
/// feature.
zDECLARE_TYPE(TvPointFeatureMsg);

using TvPointFeatureMsg = void*;

extern "C"
{
    /// Makes a point feature of which nothing is set, with a stamp for each of `count` frames, one at least. One
    /// allocation for one frame. -999 if `msg` is null, -997 beyond `zMSGSET_MAX_STAMPS`, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvPointFeatureMsg_Construct(TvPointFeatureMsg* msg, std::size_t count, zAlloc alloc);

    /// The position in mm; three times `zNULL_64F` if it was not set.
    MU_PLATFORM_EXPORT zPoint3d64f TvPointFeatureMsg_Position(TvPointFeatureMsg msg);

    /// Sets the position. -999 if `position` is null.
    MU_PLATFORM_EXPORT zStatus TvPointFeatureMsg_SetPosition(TvPointFeatureMsg msg, const zPoint3d64f* position);
}
