#include <zVision/zS3dMath.h>

#include <zApi/zFault.h>

#include <algorithm>
#include <cmath>

zStatus zS3dMath_Normalize64f(zPoint3d64f* vector)
{
    zFAULT_GATE();
    if (vector == nullptr)
    {
        return zERROR_MISSING;
    }
    if (!std::isfinite(vector->x) || !std::isfinite(vector->y) || !std::isfinite(vector->z))
    {
        return zERROR_PARAMETER;
    }
    const z64f largest = std::max({std::abs(vector->x), std::abs(vector->y), std::abs(vector->z)});
    if (largest == 0.0)
    {
        return zOK;
    }
    // A power of two brings the squares into range without rounding anything that counts.
    const int exponent = std::ilogb(largest);
    const z64f x = std::scalbn(vector->x, -exponent);
    const z64f y = std::scalbn(vector->y, -exponent);
    const z64f z = std::scalbn(vector->z, -exponent);
    const z64f length = std::sqrt(x * x + y * y + z * z);
    *vector = {x / length, y / length, z / length};
    return zOK;
}
