#pragma once

#include <MuVision/Regions.h>

namespace Mu::TlkHelper::Detail
{
template <typename... Values>
[[nodiscard]] constexpr bool AreKnown(const Values&... values)
{
    return ((values != zNULL_64F) && ...);
}

// A region is valid if its centre is not null and all its extents are above 0; a NaN extent is not.

[[nodiscard]] constexpr bool IsValidRegion(const Mu::Vision::Region3d<double>& region)
{
    return AreKnown(region.x, region.y, region.z) && region.width > 0.0 && region.length > 0.0 && region.height > 0.0;
}

[[nodiscard]] constexpr bool IsValidRegion(const Mu::Vision::Region2d<double>& region)
{
    return AreKnown(region.x, region.y) && region.width > 0.0 && region.length > 0.0;
}

[[nodiscard]] constexpr bool IsValidRegion(const Mu::Vision::RegionXZ<double>& region)
{
    return AreKnown(region.x, region.z) && region.width > 0.0 && region.height > 0.0;
}
} // namespace Mu::TlkHelper::Detail
