#pragma once

#include <TaPipe/TpGraphicRegion.h>

/// A region in space: a box.
zDECLARE_TYPE(TpGraphicRegion3d);

using TpGraphicRegion3d = void*;

extern "C"
{
    /// Makes a region without extent around the origin. -999 if `element` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TpGraphicRegion3d_Construct(TpGraphicRegion3d* element, zAlloc alloc);

    /// The centre in mm.
    MU_PLATFORM_EXPORT zPoint3d64f TpGraphicRegion3d_Center(TpGraphicRegion3d element);

    /// Sets the centre.
    MU_PLATFORM_EXPORT zStatus TpGraphicRegion3d_SetCenter(TpGraphicRegion3d element, z64f x, z64f y, z64f z);

    /// The full extents in mm: along x, along y and along z.
    MU_PLATFORM_EXPORT zPoint3d64f TpGraphicRegion3d_Dimensions(TpGraphicRegion3d element);

    /// Sets the full extents.
    MU_PLATFORM_EXPORT zStatus TpGraphicRegion3d_SetDimensions(TpGraphicRegion3d element, z64f width, z64f length,
                                                               z64f height);

    /// The angle about z in radians, measured from x towards y. At 0 the sides are parallel to the axes.
    MU_PLATFORM_EXPORT z64f TpGraphicRegion3d_ZAngle(TpGraphicRegion3d element);

    /// Sets the angle.
    MU_PLATFORM_EXPORT zStatus TpGraphicRegion3d_SetZAngle(TpGraphicRegion3d element, z64f zAngle);
}
