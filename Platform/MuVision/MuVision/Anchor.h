#pragma once

#include <MuVision/Null.h>
#include <MuVision/RefFrame.h>

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
} // namespace Mu::Vision
