#pragma once

#include <MuTlkHelper/GraphicUtils.h>
#include <MuTlkHelper/WholeDegrees.h>
#include <MuVision/ValidVector.h>

#include <MuVision/RefFrame.h>
#include <zApi/zTypes.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

// The points of curves: nothing here fails or draws.

namespace Mu::TlkHelper::Detail
{
// Converting a signed number takes one instruction.
[[nodiscard]] inline double Number(std::size_t i)
{
    return static_cast<double>(static_cast<std::int64_t>(i));
}

// The point at (u, v) from `center` in a plane.
[[nodiscard]] inline zPoint3d64f PointInPlane(const zPoint3d64f& center, int plane, const zPoint64f& offset)
{
    switch (plane)
    {
    case PLANE_YZ:
        return {center.x, center.y + offset.x, center.z + offset.y};
    case PLANE_XZ:
        return {center.x + offset.x, center.y, center.z + offset.y};
    case PLANE_XY:
        return {center.x + offset.x, center.y + offset.y, center.z};
    default:
        return {}; // required: no coordinates are computed
    }
}

[[nodiscard]] inline zPoint64f OffsetOnCircle(double radius, double angle)
{
    const SineCosine turn = SineCosineOf(angle);
    return {radius * turn.cosine, radius * turn.sine};
}

// The angle as 0 to 360. Steps of 360, as they have always been done, would not end for a large one.
[[nodiscard]] inline double InFirstTurn(double angle)
{
    constexpr double MANY_TURNS = 1e6;
    double turned = std::abs(angle) > MANY_TURNS ? std::fmod(angle, 360.0) : angle;
    while (turned < 0.0)
    {
        turned += 360.0;
    }
    while (turned > 360.0)
    {
        turned -= 360.0;
    }
    return turned;
}

[[nodiscard]] inline bool IsAngle(double degrees)
{
    return std::isfinite(degrees) && degrees != zNULL_64F;
}

// From one tilt to another, the short way around.
[[nodiscard]] inline zPoint64f WayBetween(const zPoint64f& from, const zPoint64f& to)
{
    zPoint64f way{to.x - from.x, to.y - from.y};
    if (std::abs(way.y) > 180.0)
    {
        way.y = 360.0 - std::abs(from.y) - std::abs(to.y);
        way.y = from.y < 0.0 ? -way.y : way.y;
    }
    return way;
}

[[nodiscard]] inline zPoint64f Stepped(const zPoint64f& tilt, const zPoint64f& step)
{
    zPoint64f stepped{tilt.x + step.x, tilt.y + step.y};
    if (stepped.y > 180.0)
    {
        stepped.y -= 360.0;
    }
    else if (stepped.y < -180.0)
    {
        stepped.y += 360.0;
    }
    return stepped;
}

// Ellipses around one centre in one plane, turned around it.
class EllipsePlane
{
public:
    EllipsePlane(const zPoint3d64f& centre, double rotation, int planeNumber)
        : center(centre)
        , plane(planeNumber)
        , isTurned(std::abs(rotation) > Mu::Vision::USABLE_LENGTH)
    {
        if (isTurned && plane >= PLANE_YZ && plane <= PLANE_XY)
        {
            frame.RotateAroundPoint(
                {center.x, center.y, center.z}, rotation,
                {plane == PLANE_YZ ? 1.0 : 0.0, plane == PLANE_XZ ? 1.0 : 0.0, plane == PLANE_XY ? 1.0 : 0.0});
        }
    }

    /// The point at `angle` on the ellipse with the half axes `a` and `b`.
    [[nodiscard]] zPoint3d64f PointAt(double a, double b, double angle) const
    {
        const SineCosine turn = SineCosineOf(angle);
        const double root = std::sqrt(b * b * (turn.cosine * turn.cosine) + a * a * (turn.sine * turn.sine));
        const double radius = root > 0.0 ? a * b / root : 0.0;
        const zPoint3d64f point = PointInPlane(center, plane, {radius * turn.cosine, radius * turn.sine});
        return isTurned ? frame.Apply(point) : point;
    }

private:
    zPoint3d64f center;
    int plane;
    bool isTurned;
    Mu::Vision::RefFrame frame;
};
} // namespace Mu::TlkHelper::Detail
