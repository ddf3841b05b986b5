#pragma once

#include <TaVision/TvMsg.h>

/// A circle feature: centre and radius in mm, and the normal of the plane in which it lies, of any length. What was not
/// set is null. The operations give -997 (null) if `msg` is no circle feature.
zDECLARE_TYPE(TvCircleFeatureMsg);

using TvCircleFeatureMsg = void*;

extern "C"
{
    /// Makes a circle feature of which nothing is set, with a stamp for each of `count` frames, one at least. One
    /// allocation for one frame. -999 if `msg` is null, -997 beyond `zMSGSET_MAX_STAMPS`, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvCircleFeatureMsg_Construct(TvCircleFeatureMsg* msg, std::size_t count, zAlloc alloc);

    /// The centre in mm; three times `zNULL_64F` if it was not set.
    MU_PLATFORM_EXPORT zPoint3d64f TvCircleFeatureMsg_Position(TvCircleFeatureMsg msg);

    /// Sets the centre. -999 if `position` is null.
    MU_PLATFORM_EXPORT zStatus TvCircleFeatureMsg_SetPosition(TvCircleFeatureMsg msg, const zPoint3d64f* position);

    /// The normal of the plane of the circle; three times `zNULL_64F` if it was not set.
    MU_PLATFORM_EXPORT zPoint3d64f TvCircleFeatureMsg_Normal(TvCircleFeatureMsg msg);

    /// Sets the normal. -999 if `normal` is null.
    MU_PLATFORM_EXPORT zStatus TvCircleFeatureMsg_SetNormal(TvCircleFeatureMsg msg, const zPoint3d64f* normal);

    /// The radius in mm; `zNULL_64F` if it was not set.
    MU_PLATFORM_EXPORT z64f TvCircleFeatureMsg_Radius(TvCircleFeatureMsg msg);

    /// Sets the radius.
    MU_PLATFORM_EXPORT zStatus TvCircleFeatureMsg_SetRadius(TvCircleFeatureMsg msg, z64f radius);
}
