#pragma once

#include <zApi/zFault.h>
#include <zApi/zTypes.h>

/// A rigid or affine transform in space, in rows: x' = xx x + xy y + xz z + xt, and so on.
struct zM3dTransform3d
{
    z64f xx, xy, xz, xt;
    z64f yx, yy, yz, yt;
    z64f zx, zy, zz, zt;
};

/// Stores the transformed point in `*result`, which may be `point` itself: the products summed from left to right, the
/// translation last. Null is a number here. -999 if an argument is null.
inline zStatus zM3dTransform3d_Apply(const zM3dTransform3d* transform, const zPoint3d64f* point, zPoint3d64f* result)
{
    zFAULT_GATE();
    if (transform == nullptr || point == nullptr || result == nullptr)
    {
        return zERROR_MISSING;
    }
    const zM3dTransform3d& t = *transform;
    const zPoint3d64f p = *point;
    *result = {t.xx * p.x + t.xy * p.y + t.xz * p.z + t.xt, //
               t.yx * p.x + t.yy * p.y + t.yz * p.z + t.yt, //
               t.zx * p.x + t.zy * p.y + t.zz * p.z + t.zt};
    return zOK;
}
