#pragma once

#include <TaVision/TvMsg.h>

/// A plane feature: the points p with normal . p = distance, for the normal as it was set. What was not set is null.
/// The operations give -997 (null) if `msg` is no plane feature.
zDECLARE_TYPE(TvPlaneFeatureMsg);

using TvPlaneFeatureMsg = void*;

extern "C"
{
    /// Makes a plane feature of which nothing is set, with a stamp for each of `count` frames, one at least. One
    /// allocation for one frame. -999 if `msg` is null, -997 beyond `zMSGSET_MAX_STAMPS`, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvPlaneFeatureMsg_Construct(TvPlaneFeatureMsg* msg, std::size_t count, zAlloc alloc);

    /// The normal of the plane; three times `zNULL_64F` if it was not set.
    MU_PLATFORM_EXPORT zPoint3d64f TvPlaneFeatureMsg_Normal(TvPlaneFeatureMsg msg);

    /// Sets the normal. -999 if `normal` is null.
    MU_PLATFORM_EXPORT zStatus TvPlaneFeatureMsg_SetNormal(TvPlaneFeatureMsg msg, const zPoint3d64f* normal);

    /// The product of the normal with a point of the plane: its distance from the origin in mm, if the normal has
    /// length 1; `zNULL_64F` if it was not set.
    MU_PLATFORM_EXPORT z64f TvPlaneFeatureMsg_OriginDistance(TvPlaneFeatureMsg msg);

    /// Sets the distance.
    MU_PLATFORM_EXPORT zStatus TvPlaneFeatureMsg_SetOriginDistance(TvPlaneFeatureMsg msg, z64f distance);
}
