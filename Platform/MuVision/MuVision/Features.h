#pragma once

#include <MuVision/Points.h>

#include <zApi/zTypes.h>

// Lines, circles and planes. A default one is null.

namespace Mu::Vision
{
template <typename T>
struct Line3d
{
    Point3d<T> point = NullPoint<Point3d<T>>;
    Point3d<T> direction = NullPoint<Point3d<T>>;
};

template <typename T>
struct Circle3d
{
    zPoint3d64f center{zNULL_64F, zNULL_64F, zNULL_64F};
    zPoint3d64f normal{zNULL_64F, zNULL_64F, zNULL_64F};
    T radius = 0;
};

/// The plane a x + b y + c z + d = 0.
template <typename T>
struct PlaneParams
{
    T a = GetNull<T>();
    T b = GetNull<T>();
    T c = GetNull<T>();
    T d = GetNull<T>();
};
} // namespace Mu::Vision
