#pragma once

#include <zApi/zTypes.h>

namespace Mu::TlkHelper::Detail
{
/// The point as three floats, each rounded to the nearest; null and NaN are values like others.
[[nodiscard]] inline zPoint3d32f Narrow(const zPoint3d64f& point)
{
    return {static_cast<float>(point.x), static_cast<float>(point.y), static_cast<float>(point.z)};
}
} // namespace Mu::TlkHelper::Detail
