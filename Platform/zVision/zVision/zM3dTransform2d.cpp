#include <zVision/zM3dTransform2d.h>

#include <zVision/zDegrees.h>

zStatus zM3dTransform2d_Identity(zM3dTransform2d* transform)
{
    zFAULT_GATE();
    if (transform == nullptr)
    {
        return zERROR_MISSING;
    }
    *transform = {1, 0, 0, 0, 1, 0};
    return zOK;
}

zStatus zM3dTransform2d_Translate(zM3dTransform2d* transform, z64f x, z64f y)
{
    zFAULT_GATE();
    if (transform == nullptr)
    {
        return zERROR_MISSING;
    }
    transform->xt += x;
    transform->yt += y;
    return zOK;
}

zStatus zM3dTransform2d_Rotate(zM3dTransform2d* transform, z64f angle)
{
    zFAULT_GATE();
    if (transform == nullptr)
    {
        return zERROR_MISSING;
    }
    const auto [s, c] = zDegrees_Turn(angle);
    const zM3dTransform2d t = *transform;
    *transform = {c * t.xx - s * t.yx, c * t.xy - s * t.yy, c * t.xt - s * t.yt,
                  s * t.xx + c * t.yx, s * t.xy + c * t.yy, s * t.xt + c * t.yt};
    return zOK;
}
