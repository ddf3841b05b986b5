#pragma once

#include <MuVision/Null.h>

// Ranges of pixels: a position and counts. A default one has no position and holds nothing.

namespace Mu::Vision
{
template <typename T>
struct Rect2d
{
    T x = GetNull<T>();
    T y = GetNull<T>();
    T width = 0;
    T height = 0;
};

/// Columns, rows and heights. `GetRegionPixel` says what its `height` counts.
template <typename T>
struct Rect3d
{
    T x = GetNull<T>();
    T y = GetNull<T>();
    T width = 0;
    T length = 0;
    T z = GetNull<T>();
    T height = 0;
};

template <typename T>
struct RunLength
{
    T start = GetNull<T>();
    T length = 0;
};
} // namespace Mu::Vision
