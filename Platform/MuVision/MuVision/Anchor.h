#pragma once

#include <MuVision/Null.h>
#include <MuVision/RefFrame.h>
#include <MuVision/Regions.h>

namespace Mu::Vision
{
/// By how much a region is moved, in mm, and turned, in degrees. A null value neither moves nor turns. The angles about
/// x and z are right-handed; the one about y is measured from x towards z, the sense of a profile's plane.
struct Anchor
{
    double x = GetNull<double>();
    double y = GetNull<double>();
    double z = GetNull<double>();
    double xAngle = GetNull<double>();
    double yAngle = GetNull<double>();
    double zAngle = GetNull<double>();
};

/// The order in which an anchor's turns are made.
enum class RotationOrder : int
{
    XYZ = 0, ///< about x first, then y, then z, each about the fixed axes
};

/// The frame of an anchor: it turns about the origin in the given order, then moves.
MU_PLATFORM_EXPORT RefFrame CreateAnchorTransform(const Anchor& anchor, RotationOrder order);

// A box lies in space as an anchor with its centre and angles would put it. Moving it by an anchor takes each of its
// corners to where the anchor's frame takes them; its extents stay.
//
// Angles: an anchor that does not turn leaves them as they are. If anchor and region turn about one and the same axis
// only, they are added, in (-180, 180], so that a region in the plane of a profile stays in it. Otherwise they come out
// with that about y in [-90, 90] and the others in (-180, 180]; where y is at +-90 and only the sum or difference of
// the others counts, that about x is 0. A null angle of the region counts as 0.
//
// An anchor of nulls gives the region unchanged, and a region with a null in its centre is nowhere and comes out
// unchanged, too. A NaN spoils what depends on it. `result` may be the region itself; a null one is left alone.

/// Writes `region` as moved by `anchor`.
MU_PLATFORM_EXPORT void AnchorRegion(const Anchor& anchor, RotationOrder order, const Region3d<double>& region,
                                     Region3d<double>* result);

/// Writes the region that `AnchorRegion` would take to `region`.
MU_PLATFORM_EXPORT void AnchorRegionInv(const Anchor& anchor, RotationOrder order, const Region3d<double>& region,
                                        Region3d<double>* result);
} // namespace Mu::Vision
