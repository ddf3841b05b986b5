#pragma once

#include <MuVision/Null.h>

#include <zApi/zTypes.h>

namespace Mu::Vision
{
template <typename T>
struct Point2d
{
    T x, y;
};

template <typename T>
struct Point3d
{
    T x, y, z;
};

/// A point in the plane of a profile.
template <typename T>
struct PointXZ
{
    T x, z;
};

/// A point without any value.
template <typename Point>
inline constexpr Point NullPoint{};

template <typename T>
inline constexpr Point2d<T> NullPoint<Point2d<T>>{GetNull<T>(), GetNull<T>()};

template <typename T>
inline constexpr Point3d<T> NullPoint<Point3d<T>>{GetNull<T>(), GetNull<T>(), GetNull<T>()};

template <typename T>
inline constexpr PointXZ<T> NullPoint<PointXZ<T>>{GetNull<T>(), GetNull<T>()};

/// The same point as a record of the base library.
[[nodiscard]] inline zPoint3d64f ConvertPoint3dTozPoint(const Point3d<double>& point)
{
    return {point.x, point.y, point.z};
}
} // namespace Mu::Vision
