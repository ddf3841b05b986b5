#pragma once

#include <MuVision/Null.h>

// Regions by their centre and full extents, in mm and degrees. A default region is not valid: its centre is null.

namespace Mu::Vision
{
template <typename T>
struct Point3d
{
    T x, y, z;
};

template <typename T>
struct PointXZ
{
    T x, z;
};

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
} // namespace Mu::Vision
