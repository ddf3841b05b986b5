#pragma once

#include <MuTlkHelper/Export.h>

#include <MuVision/Regions.h>
#include <TaApi/ParamsRegions.h>

namespace Mu::TlkHelper
{
/// The smallest region, without angle, that holds the extents of both; their angles do not count.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::RegionXZ<double> ExpandProfileRegion(const Mu::Vision::RegionXZ<double>& a,
                                                                             const Mu::Vision::RegionXZ<double>& b);

// Regions that hold all the data of a message. Where its bounding box is not known or flat, they are as large as the
// message could be: its grid of samples, or where samples carry their own place, all that 16 bits can tell of it.

/// The whole of a profile, without angle.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::RegionXZ<double> GetFullProfileRegion(void* message);

/// The whole of a surface, without angles.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region3d<double> GetFullSurfaceRegion(void* message);

/// The whole of an image, in pixels.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region2d<double> GetFullImageRegion(void* message);

/// The whole of a profile, a surface or an image, with 0 on the axes that it does not have; the region of any other
/// message, or of null, is not valid.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region3d<double> GetFullBoxRegion(void* message);

// Regions of parameters: those of their values that the kind of region has.

[[nodiscard]] MU_TLK_EXPORT Mu::Vision::RegionXZ<double> GetProfileRegion(const Ta::Params::ProfileRegion& region);
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region2d<double> GetSurfaceRegion(const Ta::Params::SurfaceRegion2d& region);
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region3d<double> GetSurfaceRegion(const Ta::Params::SurfaceRegion3d& region);
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region3d<double> GetBoxRegion(const Ta::Params::BoxRegion& region);
} // namespace Mu::TlkHelper
