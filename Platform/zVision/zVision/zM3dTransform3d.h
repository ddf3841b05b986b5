#pragma once

#include <zApi/zTypes.h>

/// A rigid or affine transform in space, in rows: x' = xx x + xy y + xz z + xt, and so on.
struct zM3dTransform3d
{
    z64f xx, xy, xz, xt;
    z64f yx, yy, yz, yt;
    z64f zx, zy, zz, zt;
};
