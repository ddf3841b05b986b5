#pragma once

#include <zApi/zFault.h>
#include <zApi/zTypes.h>

/// An affine transform in the plane, in rows: x' = xx x + xy y + xt, y' = yx x + yy y + yt. A new one holds nothing
/// defined until `zM3dTransform2d_Identity`.
struct zM3dTransform2d
{
    z64f xx, xy, xt;
    z64f yx, yy, yt;
};

// Each operation acts after those that are in the transform already: identity, translate by -c, rotate by -a takes v to
// R(-a) (v - c). Values are taken as they are: null is a number here, and what is not finite comes out as arithmetic
// has it.

extern "C"
{
    /// Makes it the identity. -999 if `transform` is null.
    MU_PLATFORM_EXPORT zStatus zM3dTransform2d_Identity(zM3dTransform2d* transform);

    /// Moves by (x, y) mm. -999 if `transform` is null.
    MU_PLATFORM_EXPORT zStatus zM3dTransform2d_Translate(zM3dTransform2d* transform, z64f x, z64f y);

    /// Turns by `angle` degrees about the origin, from the first axis towards the second; multiples of 90 turn exactly.
    /// -999 if `transform` is null.
    MU_PLATFORM_EXPORT zStatus zM3dTransform2d_Rotate(zM3dTransform2d* transform, z64f angle);
}

/// Stores the transformed point in `*result`, which may be `point` itself: the products summed from left to right, the
/// translation last. -999 if an argument is null.
inline zStatus zM3dTransform2d_Apply(const zM3dTransform2d* transform, const zPoint64f* point, zPoint64f* result)
{
    zFAULT_GATE();
    if (transform == nullptr || point == nullptr || result == nullptr)
    {
        return zERROR_MISSING;
    }
    *result = {transform->xx * point->x + transform->xy * point->y + transform->xt,
               transform->yx * point->x + transform->yy * point->y + transform->yt};
    return zOK;
}
