#include <MuTlkHelper/GraphicGeometry.h>

#include <MuTlkHelper/PointUtils.h>
#include <MuTlkHelper/WholeDegrees.h>
#include <MuVision/ValidVector.h>

#include <cmath>

namespace Mu::TlkHelper::Detail
{
using Mu::Vision::Region3d;
using Mu::Vision::USABLE_LENGTH;

namespace
{
struct Range
{
    double low;
    double high;

    [[nodiscard]] bool Holds(double value) const
    {
        return low <= value && value <= high;
    }
};

// A line in a plane of x and one more axis, which is called y here, and the box that it is cut at.
struct PlanarLine
{
    zPoint64f point;
    double comparedWithRight; // what a vertical line compares with the right side of the box
    Range x;
    Range y;
};

struct PlanarEnds
{
    zPoint64f first{zNULL_64F, zNULL_64F};
    zPoint64f second{zNULL_64F, zNULL_64F};
};

// Where the line crosses the side at `sideX`, or the top or bottom of the box if it leaves it there.
zPoint64f Crossing(const PlanarLine& line, const SineCosine& turn, double sideX)
{
    const zPoint64f& point = line.point;
    const auto atHeight = [&](double y) { return zPoint64f{point.x + (y - point.y) * turn.cosine / turn.sine, y}; };
    const double y = point.y + (sideX - point.x) * turn.sine / turn.cosine;
    if (y < line.y.low)
    {
        return atHeight(line.y.low);
    }
    return y > line.y.high ? atHeight(line.y.high) : zPoint64f{sideX, y};
}

PlanarEnds Cut(const PlanarLine& line, double angle)
{
    const SineCosine turn = SineCosineOf(angle);
    const zPoint64f& point = line.point;
    if (std::abs(turn.sine) < USABLE_LENGTH)
    {
        return line.y.Holds(point.y) ? PlanarEnds{{line.x.low, point.y}, {line.x.high, point.y}} : PlanarEnds{};
    }
    if (std::abs(turn.cosine) < USABLE_LENGTH)
    {
        const bool isInside = line.x.low <= point.x && line.x.high >= line.comparedWithRight;
        return isInside ? PlanarEnds{{point.x, line.y.low}, {point.x, line.y.high}} : PlanarEnds{};
    }
    const PlanarEnds ends{Crossing(line, turn, line.x.low), Crossing(line, turn, line.x.high)};
    return line.x.Holds(ends.first.x) && line.x.Holds(ends.second.x) ? ends : PlanarEnds{};
}

// One axis of a line in space, and the faces of the box across it.
struct AxisOfLine
{
    double point;
    double direction;
    Range faces;
};

zPoint3d64f EndAlong(const zPoint3d64f& point, const zPoint3d64f& direction, const Region3d<double>& region)
{
    const std::array<AxisOfLine, 3> axes = {{{point.x, direction.x, {region.x, region.x + region.width}},
                                             {point.y, direction.y, {region.y, region.y + region.length}},
                                             {point.z, direction.z, {region.z, region.z + region.height}}}};
    // Required: the first axis along which the line runs alone fixes the end, which may lie outside the other faces.
    for (std::size_t i = 0; i < axes.size(); ++i)
    {
        const AxisOfLine& axis = axes[i];
        if (!(std::abs(axis.direction) > USABLE_LENGTH))
        {
            continue;
        }
        const double face = axis.direction > 0.0 ? axis.faces.high : axis.faces.low;
        const double t = (face - axis.point) / axis.direction;
        // Required: y and z want a t above the null that stands for none, x takes any.
        if (i == 0 || t > zNULL_64F)
        {
            return {point.x + t * direction.x, point.y + t * direction.y, point.z + t * direction.z};
        }
    }
    return {zNULL_64F, zNULL_64F, zNULL_64F};
}

struct Extent
{
    double corner;
    double extent;
};

Extent Grown(Extent box, double point, double below, double above)
{
    if (box.corner > point - below)
    {
        box.extent += box.corner - point + below;
        box.corner = point - below;
    }
    if (point + above > box.corner + box.extent)
    {
        box.extent = point + above - box.corner;
    }
    return box;
}
} // namespace

LineEnds CutLineXY(const zPoint3d64f& point, double angle, const Region3d<double>& region)
{
    // Required: a vertical line compares the right side with y, not with x.
    const PlanarEnds ends =
        Cut({{point.x, point.y}, point.y, {region.x, region.x + region.width}, {region.y, region.y + region.length}},
            angle);
    return {{ends.first.x, ends.first.y, point.z}, {ends.second.x, ends.second.y, point.z}};
}

LineEnds CutLineXZ(const zPoint3d64f& point, double angle, const Region3d<double>& region)
{
    // Required: here too a vertical line compares the right side with y.
    const PlanarEnds ends =
        Cut({{point.x, point.z}, point.y, {region.x, region.x + region.width}, {region.z, region.z + region.height}},
            angle);
    return {{ends.first.x, point.y, ends.first.y}, {ends.second.x, point.y, ends.second.y}};
}

LineEnds CutLineXYZ(const zPoint3d64f& point, const zPoint3d64f& direction, const Region3d<double>& region)
{
    const zPoint3d64f back{-direction.x, -direction.y, -direction.z};
    return {EndAlong(point, direction, region), EndAlong(point, back, region)};
}

std::array<zPoint3d64f, 8> BoxCorners(const zPoint3d64f& low, const zPoint3d64f& high)
{
    return {{{low.x, low.y, low.z},
             {high.x, low.y, low.z},
             {high.x, high.y, low.z},
             {low.x, high.y, low.z},
             {low.x, low.y, high.z},
             {high.x, low.y, high.z},
             {high.x, high.y, high.z},
             {low.x, high.y, high.z}}};
}

std::array<zPoint64f, 4> TurnedRectangle(double width, double height, double angle)
{
    const double x = width / 2.0;
    const double y = height / 2.0;
    const SineCosine turn = SineCosineOf(angle);
    std::array<zPoint64f, 4> corners = {{{-x, -y}, {x, -y}, {x, y}, {-x, y}}};
    for (zPoint64f& corner : corners)
    {
        corner = {corner.x * turn.cosine - corner.y * turn.sine, corner.x * turn.sine + corner.y * turn.cosine};
    }
    return corners;
}

Region3d<double> GrownBox(const Region3d<double>& region, const zPoint3d64f& point, const Reach& reach)
{
    const Extent x = Grown({region.x, region.width}, point.x, reach.below.x, reach.above.x);
    const Extent y = Grown({region.y, region.length}, point.y, reach.below.y, reach.above.y);
    const Extent z = Grown({region.z, region.height}, point.z, reach.below.z, reach.above.z);
    return {x.corner, y.corner, z.corner, x.extent, y.extent, z.extent, region.xAngle, region.yAngle, region.zAngle};
}
} // namespace Mu::TlkHelper::Detail
