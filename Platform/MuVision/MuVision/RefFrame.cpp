#include <MuVision/RefFrame.h>

#include <MuVision/AxisTurns.h>

#include <Eigen/Geometry>

#include <array>
#include <bit>
#include <cmath>

namespace Mu::Vision
{
namespace
{
using Entries = std::array<double, 12>;
using Rows = Eigen::Map<Eigen::Matrix<double, 3, 4, Eigen::RowMajor>>;

Eigen::Vector3d VectorOf(const Point3d<double>& point)
{
    return {point.x, point.y, point.z};
}

// The rotation about a unit axis, in a form that leaves what lies along x, y or z exactly as it is.
Eigen::Matrix3d TurnAboutUnit(double angle, const Eigen::Vector3d& axis)
{
    const auto [s, c] = zDegrees_Turn(NullAsZero(angle));
    Eigen::Matrix3d turn;
    for (Eigen::Index i = 0; i < 3; ++i)
    {
        const Eigen::Index j = (i + 1) % 3;
        const Eigen::Index k = (i + 2) % 3;
        const double square = axis[i] * axis[i];
        const double product = axis[i] * axis[j] * (1.0 - c);
        turn(i, i) = square + c * (1.0 - square);
        turn(i, j) = product - axis[k] * s;
        turn(j, i) = product + axis[k] * s;
    }
    return turn;
}

Eigen::Matrix3d TurnAbout(double angle, const Point3d<double>& axis)
{
    const Eigen::Vector3d direction = VectorOf(axis);
    if (direction.isZero(0.0))
    {
        return Eigen::Matrix3d::Identity();
    }
    // Its largest component at 1 keeps the length in range, however long or short the axis.
    const Eigen::Vector3d scaled = direction / direction.cwiseAbs().maxCoeff();
    return TurnAboutUnit(angle, scaled / std::sqrt(scaled.dot(scaled)));
}

Eigen::Matrix3d RotationOf(const zM3dTransform3d& t)
{
    auto entries = std::bit_cast<Entries>(t);
    return Rows(entries.data()).leftCols<3>();
}

// `frame`, then `turn` around `point`.
RefFrame Turned(const RefFrame& frame, const Eigen::Matrix3d& turn, const Eigen::Vector3d& point)
{
    auto entries = std::bit_cast<Entries>(frame.TozTransform());
    Rows rows(entries.data());
    rows.col(3) -= point;
    rows = (turn * rows).eval();
    rows.col(3) += point;
    return RefFrame(std::bit_cast<zM3dTransform3d>(entries));
}

bool IsNull(double value)
{
    return value == GetNull<double>();
}
} // namespace

RefFrame& RefFrame::SetIdentity()
{
    *this = RefFrame();
    return *this;
}

RefFrame& RefFrame::Rotate(double angle, const Point3d<double>& axis)
{
    return *this = Turned(*this, TurnAbout(angle, axis), Eigen::Vector3d::Zero());
}

RefFrame& RefFrame::RotateAroundPoint(const Point3d<double>& point, double angle, const Point3d<double>& axis)
{
    if (IsNull(point.x) || IsNull(point.y) || IsNull(point.z))
    {
        return *this;
    }
    return *this = Turned(*this, TurnAbout(angle, axis), VectorOf(point));
}

RefFrame& RefFrame::Rotate(const Region3d<double>& region, bool toAxes)
{
    const double angle = NullAsZero(region.zAngle);
    return RotateAroundPoint({region.x, region.y, 0.0}, toAxes ? -angle : angle, {0.0, 0.0, 1.0});
}

RefFrame& RefFrame::RotateXYZ(double x, double y, double z)
{
    return *this = Turned(*this, RotationOf(TurnXYZ(x, y, z)), Eigen::Vector3d::Zero());
}

bool RefFrame::IsIdentity() const
{
    const bool turns = rows.xx != 1.0 || rows.yy != 1.0 || rows.zz != 1.0 || rows.xy != 0.0 || rows.xz != 0.0 ||
                       rows.yx != 0.0 || rows.yz != 0.0 || rows.zx != 0.0 || rows.zy != 0.0;
    const bool moves = rows.xt != 0.0 || rows.yt != 0.0 || rows.zt != 0.0;
    return !turns && !moves;
}
} // namespace Mu::Vision
