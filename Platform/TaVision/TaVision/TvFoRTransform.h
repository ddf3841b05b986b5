#pragma once

#include <zApi/zTypes.h>

/// A frame-of-reference transform: p' = A p + t. The letters are row and column of A; `xt`, `yt`, `zt` are t, in mm.
struct TvFoRTransform
{
    z64f xx, xy, xz, xt;
    z64f yx, yy, yz, yt;
    z64f zx, zy, zz, zt;
};

/// The transform that leaves every point where it is.
inline constexpr TvFoRTransform TvFOR_TRANSFORM_IDENTITY = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
