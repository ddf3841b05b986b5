#pragma once

#include <TaPipe/TpGraphicRegion.h>

/// A region in the plane of a profile: a rectangle in x and z.
zDECLARE_TYPE(TpGraphicRegion2d);

using TpGraphicRegion2d = void*;

extern "C"
{
    /// Makes a region without extent around the origin. -999 if `element` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TpGraphicRegion2d_Construct(TpGraphicRegion2d* element, zAlloc alloc);

    /// The centre in mm: x, and z in the second component.
    MU_PLATFORM_EXPORT zPoint64f TpGraphicRegion2d_Center(TpGraphicRegion2d element);

    /// Sets the centre.
    MU_PLATFORM_EXPORT zStatus TpGraphicRegion2d_SetCenter(TpGraphicRegion2d element, z64f x, z64f z);

    /// The full extents in mm: along x, and along z in the second component.
    MU_PLATFORM_EXPORT zPoint64f TpGraphicRegion2d_Dimensions(TpGraphicRegion2d element);

    /// Sets the full extents.
    MU_PLATFORM_EXPORT zStatus TpGraphicRegion2d_SetDimensions(TpGraphicRegion2d element, z64f width, z64f height);

    /// The angle about y in radians, measured from x towards z. At 0 the sides are parallel to the axes.
    MU_PLATFORM_EXPORT z64f TpGraphicRegion2d_YAngle(TpGraphicRegion2d element);

    /// Sets the angle.
    MU_PLATFORM_EXPORT zStatus TpGraphicRegion2d_SetYAngle(TpGraphicRegion2d element, z64f yAngle);
}
