#include <TaVision/TvSurfaceTransform.h>

#include <zApi/zFault.h>
#include <zVision/zDegrees.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{
constexpr z64f DEGREES = 180.0 / std::numbers::pi;

bool IsKnown(z64f value)
{
    return std::isfinite(value) && value != zNULL_64F;
}

// Far from the borders of double, so that squares neither overflow nor vanish.
zPoint3d64f Scaled(const zPoint3d64f& v)
{
    const z64f largest = std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
    return largest == 0.0 ? v : zPoint3d64f{v.x / largest, v.y / largest, v.z / largest};
}

// Adding 0.0 makes a plain zero of a negative one, which would turn the angle by 180 degrees.
z64f Angle(z64f y, z64f x)
{
    return std::atan2(y + 0.0, x + 0.0) * DEGREES;
}
} // namespace

zStatus TvSurfaceTransform_NormalToTilt(const zPoint3d64f* normal, zPoint64f* tilt)
{
    zFAULT_GATE();
    if (normal == nullptr || tilt == nullptr)
    {
        return zERROR_MISSING;
    }
    if (!IsKnown(normal->x) || !IsKnown(normal->y) || !IsKnown(normal->z))
    {
        return zERROR_PARAMETER;
    }
    const zPoint3d64f n = Scaled(*normal);
    *tilt = {Angle(std::hypot(n.x, n.y), n.z), Angle(n.y, n.x)};
    return zOK;
}

zStatus TvSurfaceTransform_TiltToNormal(const zPoint64f* tilt, zPoint3d64f* normal)
{
    zFAULT_GATE();
    if (tilt == nullptr || normal == nullptr)
    {
        return zERROR_MISSING;
    }
    if (!IsKnown(tilt->x) || !IsKnown(tilt->y))
    {
        return zERROR_PARAMETER;
    }
    const zDegreesTurn lean = zDegrees_Turn(tilt->x);
    const zDegreesTurn direction = zDegrees_Turn(tilt->y);
    *normal = {lean.sine * direction.cosine, lean.sine * direction.sine, lean.cosine};
    return zOK;
}
