#pragma once

#include <zApi/zObject.h>

/// The base of all elements of a `TpGraphic`; abstract. Coordinates are in mm and not looked at: null and NaN are kept
/// as they come. A colour is 0xAARRGGBB. The operations of an element give -997 (0, null) if the handle is not of its
/// type; what they hand out by pointer is valid while the element lives and is not set anew.
zDECLARE_TYPE(TpGraphicElement);

using TpGraphicElement = void*;

/// The most points of one element: a request for more is taken for nonsense.
inline constexpr std::size_t TpGRAPHIC_MAX_POINTS = std::size_t{1} << 26U;

namespace TaPipe
{
/// What an element of a graphic is.
enum class TpGraphicKind : z32s
{
    None = 0, ///< no element
    PointSet = 1,
    LineSet = 2,
    Ray = 3,
    Label = 4,
    Plane = 5,
    Region2d = 6,
    Region3d = 7,
    Position = 8,
};
} // namespace TaPipe

extern "C"
{
    /// What `element` is; `None` for another handle.
    MU_PLATFORM_EXPORT TaPipe::TpGraphicKind TpGraphicElement_Kind(TpGraphicElement element);
}
