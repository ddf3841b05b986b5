#pragma once

#include <TaVision/TvMsg.h>

/// A line feature: a point on the line in mm, and the direction of the line, of any length. What was not set is null.
/// The operations give -997 (null) if `msg` is no line feature.
zDECLARE_TYPE(TvLineFeatureMsg);

using TvLineFeatureMsg = void*;

extern "C"
{
    /// Makes a line feature of which nothing is set, with a stamp for each of `count` frames, one at least. One
    /// allocation for one frame. -999 if `msg` is null, -997 beyond `zMSGSET_MAX_STAMPS`, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvLineFeatureMsg_Construct(TvLineFeatureMsg* msg, std::size_t count, zAlloc alloc);

    /// A point on the line, in mm; three times `zNULL_64F` if it was not set.
    MU_PLATFORM_EXPORT zPoint3d64f TvLineFeatureMsg_Position(TvLineFeatureMsg msg);

    /// Sets the point on the line. -999 if `position` is null.
    MU_PLATFORM_EXPORT zStatus TvLineFeatureMsg_SetPosition(TvLineFeatureMsg msg, const zPoint3d64f* position);

    /// The direction of the line; three times `zNULL_64F` if it was not set.
    MU_PLATFORM_EXPORT zPoint3d64f TvLineFeatureMsg_Direction(TvLineFeatureMsg msg);

    /// Sets the direction. -999 if `direction` is null.
    MU_PLATFORM_EXPORT zStatus TvLineFeatureMsg_SetDirection(TvLineFeatureMsg msg, const zPoint3d64f* direction);
}
