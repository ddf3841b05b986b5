#pragma once

#include <TaPipe/TpGraphicElement.h>

/// A plane: the points p with normal . p = distance.
zDECLARE_TYPE(TpGraphicPlane);

using TpGraphicPlane = void*;

extern "C"
{
    /// Makes the plane z = 0. -999 if `element` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TpGraphicPlane_Construct(TpGraphicPlane* element, zAlloc alloc);

    /// The normal, of any length.
    MU_PLATFORM_EXPORT zPoint3d32f TpGraphicPlane_Normal(TpGraphicPlane element);

    /// Sets the normal.
    MU_PLATFORM_EXPORT zStatus TpGraphicPlane_SetNormal(TpGraphicPlane element, zPoint3d32f normal);

    /// The product of the normal with a point of the plane: its distance from the origin in mm, if the normal has
    /// length 1.
    MU_PLATFORM_EXPORT z32f TpGraphicPlane_Distance(TpGraphicPlane element);

    /// Sets the distance.
    MU_PLATFORM_EXPORT zStatus TpGraphicPlane_SetDistance(TpGraphicPlane element, z32f distance);
}
