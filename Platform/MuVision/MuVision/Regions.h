#pragma once

#include <MuVision/Points.h>

// Regions by their centre and full extents, in mm and degrees. A default region is not valid: its centre is null.

namespace Mu::Vision
{
template <typename T>
struct Region3d
{
    T x = GetNull<T>(); ///< centre
    T y = GetNull<T>();
    T z = GetNull<T>();
    T width = 0;  ///< full extent in x
    T length = 0; ///< full extent in y
    T height = 0; ///< full extent in z
    T xAngle = 0;
    T yAngle = 0;
    T zAngle = 0;
};

template <typename T>
struct Region2d
{
    T x = GetNull<T>(); ///< centre
    T y = GetNull<T>();
    T width = 0;  ///< full extent in x
    T length = 0; ///< full extent in y
    T angle = 0;
};

/// A region in the plane of a profile.
template <typename T>
struct RegionXZ
{
    T x = GetNull<T>(); ///< centre
    T z = GetNull<T>();
    T width = 0;  ///< full extent in x
    T height = 0; ///< full extent in z
    T angle = 0;
};

/// The lowest corner of `region` in the place of its centre; extents and angles stay, and so does a null coordinate.
[[nodiscard]] inline Region3d<double> ConvertRegionToCornerStyle(const Region3d<double>& region)
{
    const auto corner = [](double centre, double extent) {
        return centre == GetNull<double>() ? centre : centre - extent / 2.0;
    };
    Region3d<double> atCorner = region;
    atCorner.x = corner(region.x, region.width);
    atCorner.y = corner(region.y, region.length);
    atCorner.z = corner(region.z, region.height);
    return atCorner;
}
} // namespace Mu::Vision
