#include <Tools/SurfacePlane/PlaneFit.h>

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
using Rows = Eigen::Matrix<double, Eigen::Dynamic, 4>;

constexpr std::size_t BLOCK = 1024;

/// The triangle R of the rows (1, x, y, z) of the points, by orthogonal transformations: block by block, each under the
/// triangle of those before it, so that memory stays small. Nothing is squared: a strip of points keeps the digits
/// across it that the normal equations would lose, which square the ratio of its sides. The column of ones makes the
/// rest of R that of the points about their centroid, without a mean that was rounded before.
Eigen::Matrix4d Triangle(std::span<const zPoint3d64f> points)
{
    const zPoint3d64f first = points.front();
    Eigen::Matrix4d triangle = Eigen::Matrix4d::Zero();
    Rows rows(4 + BLOCK, 4);
    for (std::size_t start = 0; start < points.size(); start += BLOCK)
    {
        rows.topRows<4>() = triangle;
        Eigen::Index count = 4;
        for (const zPoint3d64f& point : points.subspan(start, std::min(BLOCK, points.size() - start)))
        {
            rows.row(count++) << 1, point.x - first.x, point.y - first.y, point.z - first.z;
        }
        auto used = rows.topRows(count);
        const Eigen::HouseholderQR<Eigen::Ref<Rows>> inPlace(used);
        triangle = rows.topRows<4>().triangularView<Eigen::Upper>();
    }
    return triangle;
}

/// The largest coordinate in x and y that rounding can have come from.
double Magnitude(std::span<const zPoint3d64f> points, const zPoint3d64f& origin)
{
    double largest = std::max(std::abs(origin.x), std::abs(origin.y));
    for (const zPoint3d64f& point : points)
    {
        largest = std::max({largest, std::abs(point.x), std::abs(point.y)});
    }
    return largest;
}

/// Whether the points lie on one line as seen from above: their root mean square distance from the best one, which is
/// the lesser singular value over the root of their number, is what rounding alone can make it.
///
/// A coordinate of magnitude M is off by up to 1.5 epsilon M from the grid, as it is a product and a sum of at most 2
/// M, and by epsilon M after the first point is taken off: together 3.5 epsilon M across. The transformations of a
/// block add a few epsilon times the spread, of at most 2 M; lines of up to a million points were measured to come to 6
/// epsilon M in all. The factor of 64 leaves room beyond that, and is still, at coordinates of 100 mm, no more than
/// 1.4e-12 mm: of a million points, one that lies a micrometre beside the line of the others makes 1e-6 mm.
bool AreOnOneLine(const Eigen::Matrix2d& spread, std::size_t count, double magnitude)
{
    constexpr double ROUNDING = 64 * std::numeric_limits<double>::epsilon();
    const double across = Eigen::JacobiSVD<Eigen::Matrix2d>(spread).singularValues()(1);
    return across <= ROUNDING * magnitude * std::sqrt(static_cast<double>(count));
}
} // namespace

zPoint3d64f FittedPlane::Normal() const
{
    const double length = std::hypot(xSlope, ySlope, 1.0);
    return {-xSlope / length, -ySlope / length, 1.0 / length};
}

double FittedPlane::ZOffset() const
{
    return centroid.z - xSlope * centroid.x - ySlope * centroid.y;
}

double FittedPlane::Height(const zPoint3d64f& point) const
{
    const double above = point.z - centroid.z - xSlope * (point.x - centroid.x) - ySlope * (point.y - centroid.y);
    return above / std::hypot(xSlope, ySlope, 1.0);
}

std::optional<FittedPlane> FitPlane(std::span<const zPoint3d64f> points, const zPoint3d64f& origin)
{
    if (points.size() < 3)
    {
        return std::nullopt;
    }
    const Eigen::Matrix4d triangle = Triangle(points);
    const Eigen::Matrix2d spread = triangle.block<2, 2>(1, 1);
    if (!triangle.allFinite() || AreOnOneLine(spread, points.size(), Magnitude(points, origin)))
    {
        return std::nullopt;
    }
    const Eigen::Vector2d slopes = spread.triangularView<Eigen::Upper>().solve(triangle.block<2, 1>(1, 3));
    const Eigen::Vector3d mean = triangle.block<1, 3>(0, 1).transpose() / triangle(0, 0);
    const zPoint3d64f first = points.front();
    return FittedPlane{{first.x + mean.x(), first.y + mean.y(), first.z + mean.z()}, slopes.x(), slopes.y()};
}
