#pragma once

#include <TaPipe/TpGraphicElement.h>

/// A line through points, in their order.
zDECLARE_TYPE(TpGraphicLineSet);

using TpGraphicLineSet = void*;

// Which ends carry the ending of the line. A line whose last point is its first has no ends. The numbers are kept as
// they come; a host draws one that it does not know as 0.
inline constexpr int TpLINE_MODE_LAST_END = 0;
inline constexpr int TpLINE_MODE_BOTH_ENDS = 1;

// What stands at an end.
inline constexpr int TpLINE_ENDING_PLAIN = 0;
inline constexpr int TpLINE_ENDING_ARROW = 1;

extern "C"
{
    /// Makes an element of a copy of `count` points, drawn `width` screen pixels wide. -999 if `element` is null, or
    /// `points` unless `count` is 0; -997 beyond `TpGRAPHIC_MAX_POINTS`; -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TpGraphicLineSet_Construct(TpGraphicLineSet* element, z32f width, z32u color,
                                                          int lineMode, int lineEnding, const zPoint3d32f* points,
                                                          std::size_t count, zAlloc alloc);

    /// The width in screen pixels.
    MU_PLATFORM_EXPORT z32f TpGraphicLineSet_Width(TpGraphicLineSet element);

    /// The colour, 0xAARRGGBB.
    MU_PLATFORM_EXPORT z32u TpGraphicLineSet_Color(TpGraphicLineSet element);

    /// Which ends carry the ending.
    MU_PLATFORM_EXPORT int TpGraphicLineSet_LineMode(TpGraphicLineSet element);

    /// What stands at these ends.
    MU_PLATFORM_EXPORT int TpGraphicLineSet_LineEnding(TpGraphicLineSet element);

    /// The number of points.
    MU_PLATFORM_EXPORT std::size_t TpGraphicLineSet_Count(TpGraphicLineSet element);

    /// The first point; null if there are none.
    MU_PLATFORM_EXPORT const zPoint3d32f* TpGraphicLineSet_Points(TpGraphicLineSet element);
}
