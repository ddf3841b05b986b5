#include <MuVision/Anchor.h>

#include <MuVision/AxisTurns.h>

#include <Eigen/Core>

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace Mu::Vision
{
namespace
{
using Angles = std::array<double, 3>; // about x, y, z

enum class Way
{
    Forth,
    Back,
};

// In (-180, 180]; exact, and never -0.
double Canonical(double degrees)
{
    // The remainder is slow, and changes nothing within a half turn.
    const double inCircle = std::abs(degrees) <= 180.0 ? degrees : std::remainder(degrees, 360.0);
    return inCircle == -180.0 ? 180.0 : inCircle + 0.0;
}

double Degrees(double sine, double cosine)
{
    return Canonical(std::atan2(sine, cosine) * (180.0 / std::numbers::pi));
}

template <typename Record>
Angles AnglesOf(const Record& record)
{
    return {NullAsZero(record.xAngle), NullAsZero(record.yAngle), NullAsZero(record.zAngle)};
}

// An angle about y is measured from x towards z, as in the plane of a profile: the left hand's sense.
zM3dTransform3d TurnOf(const Angles& angles)
{
    return TurnXYZ(angles[0], -angles[1], angles[2]);
}

Eigen::Matrix3d RotationOf(const Angles& angles)
{
    const zM3dTransform3d t = TurnOf(angles);
    Eigen::Matrix3d rotation;
    rotation << t.xx, t.xy, t.xz, t.yx, t.yy, t.yz, t.zx, t.zy, t.zz;
    return rotation;
}

// The angles of a rotation. That about z is read off after that about x was undone, so that the three agree to the last
// bits also where y is near +-90 and x alone is badly determined.
Angles AnglesOfTurn(const Eigen::Matrix3d& r)
{
    constexpr double uprightBelow = 1e-14; // rounding leaves a few 1e-16 where it ought to be 0
    const double cosineY = std::hypot(r(2, 1), r(2, 2));
    const bool upright = cosineY < uprightBelow;
    const double sineX = upright ? 0.0 : r(2, 1) / cosineY;
    const double cosineX = upright ? 1.0 : r(2, 2) / cosineY;
    const double sineZ = r(0, 2) * sineX - r(0, 1) * cosineX;
    const double cosineZ = r(1, 1) * cosineX - r(1, 2) * sineX;
    return {Degrees(sineX, cosineX), Degrees(r(2, 0), cosineY), Degrees(sineZ, cosineZ)};
}

// The angles of a region that an anchor turns by `turn`.
Angles Turned(const Angles& region, const Angles& anchor, const Eigen::Matrix3d& turn, Way way)
{
    Angles sum{};
    std::size_t turningAxes = 0;
    for (std::size_t axis = 0; axis < sum.size(); ++axis)
    {
        sum[axis] = Canonical(way == Way::Forth ? region[axis] + anchor[axis] : region[axis] - anchor[axis]);
        turningAxes += region[axis] != 0.0 || anchor[axis] != 0.0 ? 1U : 0U;
    }
    if (turningAxes <= 1)
    {
        return sum;
    }
    const Eigen::Matrix3d own = RotationOf(region);
    return AnglesOfTurn(way == Way::Forth ? Eigen::Matrix3d(turn * own) : Eigen::Matrix3d(turn.transpose() * own));
}

Eigen::Vector3d Moved(const Eigen::Vector3d& centre, const Anchor& anchor, const Eigen::Matrix3d& turn, Way way)
{
    const Eigen::Vector3d shift(NullAsZero(anchor.x), NullAsZero(anchor.y), NullAsZero(anchor.z));
    return way == Way::Forth ? Eigen::Vector3d(turn * centre + shift)
                             : Eigen::Vector3d(turn.transpose() * (centre - shift));
}

bool IsNowhere(const Region3d<double>& region)
{
    constexpr double null = GetNull<double>();
    return region.x == null || region.y == null || region.z == null;
}

// Without a turn nothing but sums: a coordinate that is not finite spoils no other.
Region3d<double> Shifted(const Anchor& anchor, const Region3d<double>& region, Way way)
{
    const double sense = way == Way::Forth ? 1.0 : -1.0;
    Region3d<double> moved = region;
    moved.x += sense * NullAsZero(anchor.x);
    moved.y += sense * NullAsZero(anchor.y);
    moved.z += sense * NullAsZero(anchor.z);
    return moved;
}

Region3d<double> Anchored(const Anchor& anchor, const Region3d<double>& region, Way way)
{
    if (IsNowhere(region))
    {
        return region;
    }
    const Angles angles = AnglesOf(anchor);
    if (angles == Angles{0.0, 0.0, 0.0})
    {
        return Shifted(anchor, region, way);
    }
    const Angles own = AnglesOf(region);
    const Eigen::Matrix3d turn = RotationOf(angles);
    const Angles turned = Turned(own, angles, turn, way);
    const Eigen::Vector3d centre = Moved({region.x, region.y, region.z}, anchor, turn, way);
    return {centre.x(),    centre.y(), centre.z(), region.width, region.length,
            region.height, turned[0],  turned[1],  turned[2]};
}
} // namespace

RefFrame CreateAnchorTransform(const Anchor& anchor, RotationOrder /*order*/)
{
    zM3dTransform3d rows = TurnOf(AnglesOf(anchor));
    rows.xt = NullAsZero(anchor.x);
    rows.yt = NullAsZero(anchor.y);
    rows.zt = NullAsZero(anchor.z);
    return RefFrame(rows);
}

void AnchorRegion(const Anchor& anchor, RotationOrder /*order*/, const Region3d<double>& region,
                  Region3d<double>* result)
{
    if (result != nullptr)
    {
        *result = Anchored(anchor, region, Way::Forth);
    }
}

void AnchorRegionInv(const Anchor& anchor, RotationOrder /*order*/, const Region3d<double>& region,
                     Region3d<double>* result)
{
    if (result != nullptr)
    {
        *result = Anchored(anchor, region, Way::Back);
    }
}
} // namespace Mu::Vision
