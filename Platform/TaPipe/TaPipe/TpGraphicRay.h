#pragma once

#include <TaPipe/TpGraphicElement.h>

/// A line that starts at a point and has no end.
zDECLARE_TYPE(TpGraphicRay);

using TpGraphicRay = void*;

extern "C"
{
    /// Makes an opaque white ray, 1 screen pixel wide, from the origin along +z. -999 if `element` is null, -998 if
    /// there is no memory.
    MU_PLATFORM_EXPORT zStatus TpGraphicRay_Construct(TpGraphicRay* element, zAlloc alloc);

    /// Where the ray starts, in mm.
    MU_PLATFORM_EXPORT zPoint3d32f TpGraphicRay_Position(TpGraphicRay element);

    /// Sets the start.
    MU_PLATFORM_EXPORT zStatus TpGraphicRay_SetPosition(TpGraphicRay element, zPoint3d32f position);

    /// The direction, of any length.
    MU_PLATFORM_EXPORT zPoint3d32f TpGraphicRay_Direction(TpGraphicRay element);

    /// Sets the direction. A ray along a vector of length 0 is not to be seen.
    MU_PLATFORM_EXPORT zStatus TpGraphicRay_SetDirection(TpGraphicRay element, zPoint3d32f direction);

    /// The width in screen pixels.
    MU_PLATFORM_EXPORT z32f TpGraphicRay_Width(TpGraphicRay element);

    /// Sets the width.
    MU_PLATFORM_EXPORT zStatus TpGraphicRay_SetWidth(TpGraphicRay element, z32f width);

    /// The colour, 0xAARRGGBB.
    MU_PLATFORM_EXPORT z32u TpGraphicRay_Color(TpGraphicRay element);

    /// Sets the colour.
    MU_PLATFORM_EXPORT zStatus TpGraphicRay_SetColor(TpGraphicRay element, z32u color);
}
