#pragma once

#include <MuVision/Regions.h>
#include <zApi/zTypes.h>

#include <array>
#include <cstddef>

// The geometry behind the drawing functions: nothing here fails or draws.

namespace Mu::TlkHelper::Detail
{
/// The ends of a line. There is no line if x of the first one is null.
struct LineEnds
{
    zPoint3d64f first{zNULL_64F, zNULL_64F, zNULL_64F};
    zPoint3d64f second{zNULL_64F, zNULL_64F, zNULL_64F};
};

// The lines of `GraphicAddBoundedLineXY`, `...XZ` and `...XYZ`; the region by its lowest corner.
[[nodiscard]] LineEnds CutLineXY(const zPoint3d64f& point, double angle, const Mu::Vision::Region3d<double>& region);
[[nodiscard]] LineEnds CutLineXZ(const zPoint3d64f& point, double angle, const Mu::Vision::Region3d<double>& region);
[[nodiscard]] LineEnds CutLineXYZ(const zPoint3d64f& point, const zPoint3d64f& direction,
                                  const Mu::Vision::Region3d<double>& region);

/// The corners of a box: round its lower face from the lowest corner along x, then the same round its upper face.
[[nodiscard]] std::array<zPoint3d64f, 8> BoxCorners(const zPoint3d64f& low, const zPoint3d64f& high);

/// A walk over all twelve edges, by the numbers of the corners.
inline constexpr std::array<std::size_t, 16> BOX_WALK = {0, 1, 2, 3, 0, 4, 5, 6, 7, 4, 7, 3, 2, 6, 5, 1};

/// The corners of a rectangle around the origin, counter-clockwise from the lowest one, turned by `angle` degrees.
[[nodiscard]] std::array<zPoint64f, 4> TurnedRectangle(double width, double height, double angle);

/// How far a box reaches beyond a point, along each axis.
struct Reach
{
    zPoint3d64f below{};
    zPoint3d64f above{};
};

/// The region by its lowest corner, grown so that it holds all within `reach` of `point`.
[[nodiscard]] Mu::Vision::Region3d<double> GrownBox(const Mu::Vision::Region3d<double>& region,
                                                    const zPoint3d64f& point, const Reach& reach);
} // namespace Mu::TlkHelper::Detail
