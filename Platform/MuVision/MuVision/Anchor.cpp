#include <MuVision/Anchor.h>

#include <Eigen/Geometry>

#include <numbers>

namespace Mu::Vision
{
namespace
{
double OrZero(double value)
{
    return value == GetNull<double>() ? 0.0 : value;
}

Eigen::AngleAxisd Turn(double degrees, const Eigen::Vector3d& axis)
{
    return Eigen::AngleAxisd(OrZero(degrees) * (std::numbers::pi / 180.0), axis);
}
} // namespace

RefFrame CreateAnchorTransform(const Anchor& anchor, RotationOrder /*order*/)
{
    // An angle about y is measured from x towards z, as in the plane of a profile: the left hand's sense.
    const Eigen::Matrix3d r = Turn(anchor.zAngle, Eigen::Vector3d::UnitZ()).toRotationMatrix() *
                              Turn(anchor.yAngle, -Eigen::Vector3d::UnitY()).toRotationMatrix() *
                              Turn(anchor.xAngle, Eigen::Vector3d::UnitX()).toRotationMatrix();
    return RefFrame({r(0, 0), r(0, 1), r(0, 2), OrZero(anchor.x), //
                     r(1, 0), r(1, 1), r(1, 2), OrZero(anchor.y), //
                     r(2, 0), r(2, 1), r(2, 2), OrZero(anchor.z)});
}
} // namespace Mu::Vision
