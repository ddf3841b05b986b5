#pragma once

#include <TaPipe/TpGraphicElement.h>

/// Points that are marked each.
zDECLARE_TYPE(TpGraphicPointSet);

using TpGraphicPointSet = void*;

// How a point is marked. The number is kept as it comes; a host draws one that it does not know as a dot.
inline constexpr int TpPOINT_SHAPE_CROSS = 0;
inline constexpr int TpPOINT_SHAPE_SQUARE = 1;
inline constexpr int TpPOINT_SHAPE_DOT = 2;

extern "C"
{
    /// Makes an element of a copy of `count` points, with marks of `size` screen pixels. -999 if `element` is null, or
    /// `points` unless `count` is 0; -997 beyond `TpGRAPHIC_MAX_POINTS`; -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TpGraphicPointSet_Construct(TpGraphicPointSet* element, z32f size, int pointShape,
                                                           z32u color, const zPoint3d32f* points, std::size_t count,
                                                           zAlloc alloc);

    /// The size of a mark in screen pixels.
    MU_PLATFORM_EXPORT z32f TpGraphicPointSet_Size(TpGraphicPointSet element);

    /// The shape of a mark.
    MU_PLATFORM_EXPORT int TpGraphicPointSet_PointShape(TpGraphicPointSet element);

    /// The colour, 0xAARRGGBB.
    MU_PLATFORM_EXPORT z32u TpGraphicPointSet_Color(TpGraphicPointSet element);

    /// The number of points.
    MU_PLATFORM_EXPORT std::size_t TpGraphicPointSet_Count(TpGraphicPointSet element);

    /// The first point; null if there are none.
    MU_PLATFORM_EXPORT const zPoint3d32f* TpGraphicPointSet_Points(TpGraphicPointSet element);
}
