#pragma once

#include <TaApi/Raise.h>
#include <zApi/zTypes.h>
#include <zVision/zS3dMath.h>

#include <cmath>

namespace Mu::Vision
{
/// The least length of a vector that has a direction, and the least component to divide by: 2 to the power -23.
inline constexpr double USABLE_LENGTH = 1.1920928955078125e-07;

/// True if no component is null, and the normalised vector has a usable length: one of length 0 has not.
/// @throws Ta::Exception -997 if a component is not finite
[[nodiscard]] inline bool IsValidVector(const zPoint3d64f& vector)
{
    if (vector.x == zNULL_64F || vector.y == zNULL_64F || vector.z == zNULL_64F)
    {
        return false;
    }
    zPoint3d64f unit = vector;
    MU_CHECK(zS3dMath_Normalize64f(&unit));
    return std::sqrt(unit.x * unit.x + unit.y * unit.y + unit.z * unit.z) > USABLE_LENGTH;
}
} // namespace Mu::Vision
