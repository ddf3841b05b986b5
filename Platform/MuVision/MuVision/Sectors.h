#pragma once

#include <MuVision/Points.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

// Sectors of rings, in mm and degrees. A default one is not valid: its center is null.

namespace Mu::Vision
{
/// What lies between two circles, as far as the sector goes.
template <typename T, typename Center>
struct AnnularSector
{
    T innerRadius = 0;
    T outerRadius = 0;
    T startAngle = 0;
    T angleRange = 0; ///< signed extent; 360 is the full ring
    Center center = NullPoint<Center>;
};

template <typename T>
using AnnularSectorXZ = AnnularSector<T, PointXZ<T>>;
template <typename T>
using AnnularSector2d = AnnularSector<T, Point2d<T>>;
template <typename T>
using AnnularSector3d = AnnularSector<T, Point3d<T>>;

/// What lies between two ellipses, as far as the sector goes.
template <typename T, typename Center>
struct EllipticalSector
{
    T innerMinor = 0; ///< full axes of the inner ellipse
    T innerMajor = 0;
    T outerMinor = 0; ///< full axes of the outer ellipse
    T outerMajor = 0;
    T startAngle = 0;
    T angleRange = 0; ///< signed extent; 360 is the full ring
    Center center = NullPoint<Center>;
    T angle = 0; ///< rotation of the ellipse
};

template <typename T>
using EllipticalSectorXZ = EllipticalSector<T, PointXZ<T>>;
template <typename T>
using EllipticalSector2d = EllipticalSector<T, Point2d<T>>;

/// By how much radii (as a part of them) and ends (in degrees) of a sector are moved, so that rounding decides no point
/// that was computed to lie on a bound.
inline constexpr double SECTOR_RADIUS_SLACK = 1e-12;
inline constexpr double SECTOR_ANGLE_SLACK = 1e-9;

/// True if the sector goes all the way round, in either sense.
[[nodiscard]] inline bool IsFullRing(double angleRange)
{
    return std::abs(angleRange) >= 360.0;
}

/// True if `angle` lies in the sector that begins at `startAngle` and goes on for `angleRange`, all in degrees. A
/// positive `slack` widens it at both ends, a negative one narrows it. Not for a full ring.
[[nodiscard]] inline bool IsAngleInSector(double angle, double startAngle, double angleRange, double slack)
{
    const double begin = std::min(startAngle, startAngle + angleRange);
    const double past = angle - begin + slack;
    return past - 360.0 * std::floor(past / 360.0) <= std::abs(angleRange) + 2.0 * slack;
}

/// 1 if `point` lies in `sector`, else 0. Only x and y are looked at; angles go from +x towards +y. With `withBounds`
/// both radii and both ends belong to the sector, with 0 none of them does; an inner radius of 0 or less is no bound,
/// and the center lies on both ends. A center or point that is null gives 0, and so does a NaN in a value that counts.
[[nodiscard]] inline int IsPointInAnnularSector(const AnnularSector3d<double>& sector, const Point3d<double>& point,
                                                int withBounds)
{
    const double sense = withBounds != 0 ? 1.0 : -1.0;
    const double x = point.x - sector.center.x;
    const double y = point.y - sector.center.y;
    const double squared = x * x + y * y;
    const double inner = std::max(sector.innerRadius, 0.0) * (1.0 - sense * SECTOR_RADIUS_SLACK);
    const double outer = sector.outerRadius * (1.0 + sense * SECTOR_RADIUS_SLACK);
    const bool inRing = squared >= inner * inner && outer >= 0.0 && squared <= outer * outer;
    if (!inRing || squared > std::numeric_limits<double>::max())
    {
        return 0;
    }
    if (IsFullRing(sector.angleRange))
    {
        return 1;
    }
    if (squared == 0.0)
    {
        return withBounds != 0 && !std::isnan(sector.startAngle + sector.angleRange) ? 1 : 0;
    }
    const double angle = std::atan2(y, x) * (180.0 / std::numbers::pi);
    return IsAngleInSector(angle, sector.startAngle, sector.angleRange, sense * SECTOR_ANGLE_SLACK) ? 1 : 0;
}
} // namespace Mu::Vision
