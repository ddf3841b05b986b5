#include <MuTlkHelper/GraphicUtils.h>

#include <MuTlkHelper/FeatureUtils.h>
#include <MuTlkHelper/GraphicCurves.h>
#include <MuTlkHelper/GraphicElement.h>
#include <MuTlkHelper/GraphicGeometry.h>
#include <MuTlkHelper/PointForms.h>
#include <MuTlkHelper/PointUtils.h>
#include <MuTlkHelper/TlkSurfaceGeneralized3dPoint.h>
#include <MuTlkHelper/ValidRegion.h>
#include <MuTlkHelper/WholeDegrees.h>
#include <MuVision/ValidVector.h>

#include <MuVision/RefFrame.h>
#include <TaPipe/TpGraphic.h>
#include <TaPipe/TpGraphicLabel.h>
#include <TaPipe/TpGraphicLineSet.h>
#include <TaPipe/TpGraphicPlane.h>
#include <TaPipe/TpGraphicPointSet.h>
#include <TaPipe/TpGraphicRay.h>
#include <TaPipe/TpGraphicRegion2d.h>
#include <TaPipe/TpGraphicRegion3d.h>
#include <TaVision/TvSurfaceTransform.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>
#include <type_traits>

namespace Mu::TlkHelper
{
using Mu::Vision::AnnularSector3d;
using Mu::Vision::IsValidVector;
using Mu::Vision::Line3d;
using Mu::Vision::PlaneParams;
using Mu::Vision::RefFrame;
using Mu::Vision::Region2d;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;
using Mu::Vision::USABLE_LENGTH;

namespace
{
using namespace Detail;

constexpr unsigned int MOST_DRAWN_POINTS = 10'000;
constexpr float DECORATION_WIDTH = 1.0F;
constexpr float EMPHASISED_WIDTH = 2.0F;
constexpr float FOUND_POINT_SIZE = 1.0F;
constexpr float VERTEX_SIZE = 8.0F;
constexpr int DOT = 2;
constexpr double DECORATION_RADIUS = 5.0;
constexpr double RADIANS = std::numbers::pi / 180.0;

struct LineStyle
{
    int mode;
    int ending;
};

constexpr LineStyle PLAIN{0, 0};
constexpr LineStyle ARROW{0, 1};
constexpr LineStyle DOUBLE_ARROW{1, 1};

zPoint3d64f AtY0(const zPoint64f& point)
{
    return {point.x, 0.0, point.y};
}

zPoint3d64f Sum(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

zPoint3d64f Scaled(const zPoint3d64f& point, double factor)
{
    return {point.x * factor, point.y * factor, point.z * factor};
}

double DotProduct(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

double RadiansOrZero(double degrees)
{
    return degrees == zNULL_64F ? 0.0 : degrees * RADIANS;
}

void CheckGraphic(const Ta::Place& place, void* graphic)
{
    if (graphic == nullptr)
    {
        Ta::Raise(place, zERROR_PARAMETER);
    }
}

void AddLineSet(const Ta::Place& place, void* graphic, std::span<const zPoint3d32f> points, float width, z32u color,
                LineStyle style, void* alloc)
{
    GraphicElement(place, TpGraphicLineSet_Construct, width, color, style.mode, style.ending, points.data(),
                   points.size(), alloc)
        .AddTo(graphic, TpGraphic_AddLineSet);
}

std::span<const zPoint3d32f> PointsOf(const Ta::Object<void*>& list)
{
    return {static_cast<const zPoint3d32f*>(zArrayList_Items(list.Get())), zArrayList_Count(list.Get())};
}

template <typename PointAt>
Ta::Object<void*> DrawnList(const Ta::Place& place, std::size_t count, void* alloc, const PointAt& pointAt)
{
    return ListOf<zPoint3d32f>(place, zTypeOf(zPoint3d32f), count, alloc,
                               [&pointAt](std::size_t i) { return Narrow(pointAt(i)); });
}

// The points of a caller's list as a list that can be drawn; an empty handle if there is none. `convertRecords` is the
// conversion of records.
Ta::Object<void*> DrawableList(void* list, void (*convertRecords)(void* list, unsigned int maximum, void** out))
{
    Ta::Object<void*> drawable;
    const zType type = zArrayList_ItemType(list);
    if (type == nullptr)
    {
        return drawable;
    }
    if (type == zTypeOf(zPoint3d64f))
    {
        return ConvertPoints64ToPoints32(list);
    }
    if (type == zTypeOf(zPoint3d32f))
    {
        drawable.Reset(list, true);
    }
    else if (type == zBytes_GetType(sizeof(TlkSurfaceGeneralized3dPoint)))
    {
        convertRecords(list, MOST_DRAWN_POINTS, drawable.Out());
    }
    return drawable;
}

struct Ray
{
    zPoint3d32f position;
    zPoint3d32f direction;
};

void AddColoredRay(const Ta::Place& place, void* graphic, const Ray& ray, z32u color, float width, void* alloc)
{
    GraphicElement(place, TpGraphicRay_Construct, alloc)
        .Set(TpGraphicRay_SetColor, color)
        .Set(TpGraphicRay_SetDirection, ray.direction)
        .Set(TpGraphicRay_SetPosition, ray.position)
        .Set(TpGraphicRay_SetWidth, width)
        .AddTo(graphic, TpGraphic_AddRay);
}

// --- curves ---------------------------------------------------------------------------------------------------------

// The number of points that a division by a step has come to. More than an element takes are refused by their list.
std::size_t PointCount(double number)
{
    constexpr double MOST = 67'108'864.0;
    if (number > MOST)
    {
        return SIZE_MAX;
    }
    return number >= 1.0 ? static_cast<std::size_t>(number) : 0;
}

// A curve in a plane, by the offsets of its points from `center`. The plane is chosen outside the loop over the points.
template <typename OffsetAt>
Ta::Object<void*> CurveInPlane(const Ta::Place& place, std::size_t count, void* alloc, const zPoint3d64f& center,
                               int plane, const OffsetAt& offsetAt)
{
    const auto listIn = [&](auto fixedPlane) {
        return DrawnList(place, count, alloc,
                         [&](std::size_t i) { return PointInPlane(center, fixedPlane, offsetAt(i)); });
    };
    switch (plane)
    {
    case PLANE_YZ:
        return listIn(std::integral_constant<int, PLANE_YZ>());
    case PLANE_XZ:
        return listIn(std::integral_constant<int, PLANE_XZ>());
    case PLANE_XY:
        return listIn(std::integral_constant<int, PLANE_XY>());
    default:
        return listIn(std::integral_constant<int, 0>());
    }
}

zPoint3d64f UnitVector(const Ta::Place& place, zPoint3d64f vector)
{
    Ta::Check(place, zS3dMath_Normalize64f(&vector));
    return vector;
}

zPoint64f TiltOf(const Ta::Place& place, const zPoint3d64f& normal)
{
    zPoint64f tilt{};
    Ta::Check(place, TvSurfaceTransform_NormalToTilt(&normal, &tilt));
    return tilt;
}

zPoint3d64f NormalOf(const Ta::Place& place, const zPoint64f& tilt)
{
    zPoint3d64f normal{};
    Ta::Check(place, TvSurfaceTransform_TiltToNormal(&tilt, &normal));
    return normal;
}

// --- boxes and angles -----------------------------------------------------------------------------------------------

// The corners and the first one again.
template <typename Corners, typename PointOf>
Ta::Object<void*> ClosedOutline(const Ta::Place& place, const Corners& corners, void* alloc, const PointOf& pointOf)
{
    return DrawnList(place, corners.size() + 1, alloc,
                     [&](std::size_t i) { return pointOf(corners[i % corners.size()]); });
}

void AddPlane(const Ta::Place& place, void* graphic, const zPoint3d64f& normal, double distance, void* alloc)
{
    GraphicElement(place, TpGraphicPlane_Construct, alloc)
        .Set(TpGraphicPlane_SetNormal, Narrow(normal))
        .Set(TpGraphicPlane_SetDistance, static_cast<float>(distance))
        .AddTo(graphic, TpGraphic_AddPlane);
}

bool HasNull(const zM3dTransform3d& t)
{
    return !AreKnown(t.xx, t.xy, t.xz, t.xt) || !AreKnown(t.yx, t.yy, t.yz, t.yt) || !AreKnown(t.zx, t.zy, t.zz, t.zt);
}

void AddDistanceLine(const Ta::Place& place, void* graphic, const zPoint3d64f& a, const zPoint3d64f& b, float width,
                     void* alloc)
{
    const std::array<zPoint3d32f, 2> ends = {Narrow(a), Narrow(b)};
    AddLineSet(place, graphic, ends, width, DecorationColor, DOUBLE_ARROW, alloc);
}

void AddDistanceLines(const Ta::Place& place, void* graphic, int axis, const zPoint3d64f& a, const zPoint3d64f& b,
                      void* alloc)
{
    switch (axis)
    {
    case AXIS_X:
        return AddDistanceLine(place, graphic, a, {b.x, a.y, a.z}, DECORATION_WIDTH, alloc);
    case AXIS_Y:
        return AddDistanceLine(place, graphic, a, {a.x, b.y, a.z}, DECORATION_WIDTH, alloc);
    case AXIS_Z:
        return AddDistanceLine(place, graphic, a, {a.x, a.y, b.z}, DECORATION_WIDTH, alloc);
    case AXIS_DIRECT:
        return AddDistanceLine(place, graphic, a, b, EMPHASISED_WIDTH, alloc);
    default:
        return;
    }
}

// How an angle in a main plane is drawn.
struct AngleForm
{
    int plane;
    double radius;
    Reach margin;
    void (*addArm)(void* graphic, float width, z32u color, const zPoint3d64f& point, double angle,
                   const Region3d<double>& region, void* alloc);
};

void AddAngle(void* graphic, const zPoint3d64f& vertex, double start, double sweep, const Region3d<double>& region,
              const AngleForm& form, void* alloc)
{
    if (IsValidPoint(vertex) == 0)
    {
        return;
    }
    const Region3d<double> box = GrownBox(Mu::Vision::ConvertRegionToCornerStyle(region), vertex, form.margin);
    form.addArm(graphic, DECORATION_WIDTH, DecorationColor, vertex, start, box, alloc);
    form.addArm(graphic, DECORATION_WIDTH, DecorationColor, vertex, start + sweep, box, alloc);
    GraphicAddPoint(graphic, vertex, VERTEX_SIZE, DecorationColor, alloc, DOT);
    GraphicAddArc(graphic, vertex, form.radius, start, sweep, form.plane, DecorationColor, DECORATION_WIDTH, alloc);
}
} // namespace

// --- points, lines, rays, labels ------------------------------------------------------------------------------------

void ColorToRgb(z32u color, zRgb* rgb)
{
    rgb->r = static_cast<z8u>(color >> 16U);
    rgb->g = static_cast<z8u>(color >> 8U);
    rgb->b = static_cast<z8u>(color);
}

void GraphicAddPoint(void* graphic, const zPoint3d64f& point, float size, z32u color, void* alloc, int pointShape)
{
    if (IsValidPoint(point) == 0)
    {
        return;
    }
    const zPoint3d32f narrow = Narrow(point);
    GraphicElement(MU_HERE, TpGraphicPointSet_Construct, size, pointShape, color, &narrow, std::size_t{1}, alloc)
        .AddTo(graphic, TpGraphic_AddPointSet);
}

void GraphicAddPoints(void* graphic, void* list, float size, z32u color, void* alloc, int pointShape)
{
    // Required: records become doubles here, of which the host reads the first bytes as floats.
    const Ta::Object<void*> drawable = DrawableList(list, ConvertSurfaceGeneralized3dPointsToPoints64f);
    if (!drawable)
    {
        return;
    }
    const std::span<const zPoint3d32f> points = PointsOf(drawable);
    GraphicElement(MU_HERE, TpGraphicPointSet_Construct, size, pointShape, color, points.data(), points.size(), alloc)
        .AddTo(graphic, TpGraphic_AddPointSet);
}

void GraphicAddLines(void* graphic, void* list, float width, z32u color, void* alloc)
{
    const Ta::Object<void*> drawable = DrawableList(list, ConvertSurfaceGeneralized3dPointsToPoints32f);
    // Required: the caller's list is tested and not the one that is drawn, whose cast then fails.
    if (list == nullptr)
    {
        return;
    }
    const Ta::Place place = MU_HERE;
    if (!drawable)
    {
        // A failed cast is reported, and the run goes on.
        static_cast<void>(xzApiLib_CastFailHandler(place.unit, place.line));
    }
    AddLineSet(place, graphic, PointsOf(drawable), width, color, PLAIN, alloc);
}

void GraphicAddRay(void* graphic, const zPoint3d64f& position, const zPoint3d64f& direction, float width, z32u color,
                   void* alloc)
{
    GraphicElement(MU_HERE, TpGraphicRay_Construct, alloc)
        .Set(TpGraphicRay_SetDirection, Narrow(direction))
        .Set(TpGraphicRay_SetPosition, Narrow(position))
        .Set(TpGraphicRay_SetWidth, width)
        .Set(TpGraphicRay_SetColor, color)
        .AddTo(graphic, TpGraphic_AddRay);
}

// NOLINTNEXTLINE(readability-non-const-parameter): the interface has it so
void GraphicAddLabel(void* graphic, const char* text, zPoint3d32f* position, void* alloc)
{
    if (position == nullptr)
    {
        return;
    }
    GraphicElement(MU_HERE, TpGraphicLabel_Construct, alloc)
        .Set(TpGraphicLabel_SetText, text)
        .Set(TpGraphicLabel_SetPosition, zPoint3d64f{position->x, position->y, position->z})
        .AddTo(graphic, TpGraphic_AddLabel);
}

void GraphicAddPosition(void* graphic, const zPoint3d64f& point, TaPipe::TpGraphicPositionType type, void* alloc)
{
    GraphicElement(MU_HERE, TpGraphicPosition_Construct, alloc)
        .Set(TpGraphicPosition_SetType, type)
        .Set(TpGraphicPosition_SetPosition, point)
        .AddTo(graphic, TpGraphic_AddPosition);
}

void GraphicAddArrow(void* graphic, const zPoint3d64f& from, const zPoint3d64f& to, void* alloc)
{
    const std::array<zPoint3d32f, 2> ends = {Narrow(from), Narrow(to)};
    AddLineSet(MU_HERE, graphic, ends, EMPHASISED_WIDTH, DecorationColor, ARROW, alloc);
}

void GraphicAddFoundPoints(void* graphic, void* list, void* alloc)
{
    GraphicAddPoints(graphic, list, FOUND_POINT_SIZE, FoundFeatureColor, alloc, DOT);
}

void GraphicAddContourLines(void* graphic, void* list, void* alloc)
{
    GraphicAddLines(graphic, list, DECORATION_WIDTH, FoundFeatureColor, alloc);
}

void GraphicAddFittedLine(void* graphic, const zPoint3d64f& p1, const zPoint3d64f& p2, void* alloc)
{
    GraphicAddInfiniteLine(graphic, Narrow(p1), Narrow({p1.x - p2.x, p1.y - p2.y, p1.z - p2.z}), FoundFeatureColor,
                           DECORATION_WIDTH, alloc);
}

void GraphicAddFittedLine(void* graphic, const zPoint64f& p1, const zPoint64f& p2, void* alloc)
{
    GraphicAddFittedLine(graphic, AtY0(p1), AtY0(p2), alloc);
}

// --- lines ----------------------------------------------------------------------------------------------------------

void GetLineEndPoints(const zPoint3d64f& center, double angle, double length, zPoint3d64f* first, zPoint3d64f* second)
{
    const zPoint3d64f middle = center; // an end may be the same point
    const SineCosine turn = SineCosineOf(angle);
    *first = {middle.x - turn.cosine * length / 2, middle.y - turn.sine * length / 2, middle.z};
    *second = {middle.x + turn.cosine * length / 2, middle.y + turn.sine * length / 2, middle.z};
}

void GraphicAddInfiniteLine(void* graphic, const zPoint3d32f& point, const zPoint3d32f& direction, z32u color,
                            float width, void* alloc)
{
    const Ta::Place place = MU_HERE;
    AddColoredRay(place, graphic, {point, direction}, color, width, alloc);
    AddColoredRay(place, graphic, {point, {-direction.x, -direction.y, -direction.z}}, color, width, alloc);
}

void GraphicAddInfiniteLine(void* graphic, const zPoint3d64f& point, const zPoint3d64f& direction, z32u color,
                            float width, void* alloc)
{
    if (IsValidPoint(point) != 0 && IsValidPoint(direction) != 0)
    {
        GraphicAddInfiniteLine(graphic, Narrow(point), Narrow(direction), color, width, alloc);
    }
}

void GraphicAddInfiniteLine(void* graphic, const Line3d<double>& line, z32u color, float width, void* alloc)
{
    const zPoint3d64f point = Mu::Vision::ConvertPoint3dTozPoint(line.point);
    const zPoint3d64f direction = Mu::Vision::ConvertPoint3dTozPoint(line.direction);
    if (IsValidPoint(point) != 0 && IsValidVector(direction))
    {
        GraphicAddInfiniteLine(graphic, Narrow(point), Narrow(direction), color, width, alloc);
    }
}

void GraphicAddInfiniteLine(void* graphic, const zLine3d64f& line, z32u color, float width, void* alloc)
{
    GraphicAddInfiniteLine(graphic,
                           Line3d<double>{{line.point.x, line.point.y, line.point.z},
                                          {line.direction.x, line.direction.y, line.direction.z}},
                           color, width, alloc);
}

void GraphicAddLineSegment(void* graphic, const zPoint3d64f& a, const zPoint3d64f& b, float width, z32u color,
                           void* alloc)
{
    GraphicAddLineSegment(graphic, std::array{Narrow(a), Narrow(b)}, width, color, alloc);
}

void GraphicAddLineSegment(void* graphic, const std::array<zPoint3d32f, 2>& ends, float width, z32u color, void* alloc)
{
    AddLineSet(MU_HERE, graphic, ends, width, color, PLAIN, alloc);
}

void GraphicAddProfileLineSegment(void* graphic, const zPoint64f& a, const zPoint64f& b, float width, z32u color,
                                  void* alloc)
{
    if (IsValidPoint(a) != 0 && IsValidPoint(b) != 0)
    {
        GraphicAddLineSegment(graphic, AtY0(a), AtY0(b), width, color, alloc);
    }
}

void GraphicAddLineBySlopeIntercept(void* graphic, double slope, double intercept, double z, float width, z32u color,
                                    void* alloc)
{
    GraphicAddInfiniteLine(graphic, zPoint3d64f{0.0, intercept, z}, zPoint3d64f{1.0, slope, 0.0}, color, width, alloc);
}

void GraphicAddXZLineBySlopeIntercept(void* graphic, double slope, double intercept, float width, z32u color,
                                      void* alloc)
{
    GraphicAddInfiniteLine(graphic, zPoint3d64f{0.0, 0.0, intercept}, zPoint3d64f{1.0, 0.0, slope}, color, width,
                           alloc);
}

// Required: the width is always 1.
void GraphicAddXZLineByPointAngle(void* graphic, const zPoint64f& point, double angle, float /*width*/, z32u color,
                                  void* alloc)
{
    constexpr double REACH = 10.0;
    const SineCosine turn = SineCosineOf(angle);
    zPoint3d32f first = Narrow(AtY0(point));
    zPoint3d32f second = first;
    if (std::abs(turn.sine) > USABLE_LENGTH)
    {
        first.z = static_cast<float>(point.y - REACH * turn.sine);
        second.z = static_cast<float>(point.y + REACH * turn.sine);
    }
    if (std::abs(turn.cosine) > USABLE_LENGTH)
    {
        first.x = static_cast<float>(point.x - REACH * turn.cosine);
        second.x = static_cast<float>(point.x + REACH * turn.cosine);
    }
    GraphicAddInfiniteLine(graphic, first, zPoint3d32f{second.x - first.x, 0.0F, second.z - first.z}, color,
                           DECORATION_WIDTH, alloc);
}

namespace
{
void AddLineIfAny(void* graphic, const LineEnds& ends, float width, z32u color, void* alloc)
{
    if (ends.first.x != zNULL_64F)
    {
        GraphicAddLineSegment(graphic, ends.first, ends.second, width, color, alloc);
    }
}
} // namespace

void GraphicAddBoundedLineXY(void* graphic, float width, z32u color, const zPoint3d64f& point, double angle,
                             const Region3d<double>& region, void* alloc)
{
    if (IsValidPoint(point) != 0)
    {
        AddLineIfAny(graphic, CutLineXY(point, angle, region), width, color, alloc);
    }
}

void GraphicAddBoundedLineXZ(void* graphic, float width, z32u color, const zPoint3d64f& point, double angle,
                             const Region3d<double>& region, void* alloc)
{
    if (IsValidPoint(point) != 0)
    {
        AddLineIfAny(graphic, CutLineXZ(point, angle, region), width, color, alloc);
    }
}

void GraphicAddBoundedLineXYZ(void* graphic, float width, z32u color, const zPoint3d64f& point,
                              const zPoint3d64f& direction, const Region3d<double>& region, void* alloc)
{
    if (IsValidPoint(point) != 0 && IsValidPoint(direction) != 0)
    {
        AddLineIfAny(graphic, CutLineXYZ(point, direction, region), width, color, alloc);
    }
}

// --- curves ---------------------------------------------------------------------------------------------------------

void GraphicAddCircle(void* graphic, const zPoint3d64f& center, double radius, double step, float width, z32u color,
                      void* alloc, int plane)
{
    const Ta::Object<void*> list =
        CurveInPlane(MU_HERE, PointCount(360.0 / step + 1.0), alloc, center, plane,
                     [&](std::size_t i) { return OffsetOnCircle(radius, Number(i) * step); });
    GraphicAddLines(graphic, list.Get(), width, color, alloc);
}

void GraphicAddCircle(void* graphic, const zPoint3d64f& center, double radius, const zPoint3d64f& rotation, double step,
                      float width, z32u color, void* alloc)
{
    RefFrame frame;
    frame.RotateXYZ(rotation.x, -rotation.y, rotation.z); // required: the sign of y is turned
    const Ta::Object<void*> list = DrawnList(MU_HERE, PointCount(360.0 / step + 1.0), alloc, [&](std::size_t i) {
        const zPoint64f offset = OffsetOnCircle(radius, Number(i) * step);
        return Sum(frame.Apply(zPoint3d64f{offset.x, offset.y, 0.0}), center);
    });
    GraphicAddLines(graphic, list.Get(), width, color, alloc);
}

void GraphicAddArc(void* graphic, const zPoint3d64f& center, double radius, double start, double sweep, int plane,
                   z32u color, float width, void* alloc)
{
    if (!IsAngle(start) || !IsAngle(sweep) || std::abs(sweep) < USABLE_LENGTH)
    {
        return;
    }
    const double begin = InFirstTurn(sweep < 0.0 ? start + sweep : start);
    const double turn = std::abs(sweep);
    if (!std::isfinite(begin))
    {
        return;
    }
    const Ta::Place place = MU_HERE;
    const std::size_t count = PointCount(turn + 1.0);
    const Ta::Object<void*> list = CurveInPlane(place, count, alloc, center, plane, [&](std::size_t i) {
        return OffsetOnCircle(radius, i + 1 < count ? begin + Number(i) : begin + turn);
    });
    AddLineSet(place, graphic, PointsOf(list), width, color, DOUBLE_ARROW, alloc);
}

void GraphicAddArcXYZ(void* graphic, float width, z32u color, const zPoint3d64f& center, const zPoint3d64f& from,
                      const zPoint3d64f& to, double radius, void* alloc)
{
    if (IsValidPoint(center) == 0)
    {
        return;
    }
    const Ta::Place place = MU_HERE;
    zPoint3d64f unitFrom = UnitVector(place, from);
    const zPoint3d64f unitTo = UnitVector(place, to);
    if (DotProduct(unitFrom, unitTo) < 0.0)
    {
        unitFrom = Scaled(unitFrom, -1.0);
    }
    zPoint64f tilt = TiltOf(place, unitFrom);
    const zPoint64f way = WayBetween(tilt, TiltOf(place, unitTo));
    const double steps = std::max(1.0, std::trunc(std::max(std::abs(way.x), std::abs(way.y))));
    const zPoint64f step{way.x / steps, way.y / steps};
    const Ta::Object<void*> list = DrawnList(place, PointCount(steps + 1.0), alloc, [&](std::size_t /*i*/) {
        const zPoint3d64f point = Sum(center, Scaled(NormalOf(place, tilt), radius));
        tilt = Stepped(tilt, step);
        return point;
    });
    AddLineSet(place, graphic, PointsOf(list), width, color, DOUBLE_ARROW, alloc);
}

void GraphicAddEllipse(void* graphic, const zPoint3d64f& center, const zPoint3d64f& size, double rotation, double step,
                       int plane, z32u color, float width, void* alloc)
{
    const SineCosine turn = SineCosineOf(rotation);
    const double a = size.y / 2; // required: y lies along the first axis of the plane
    const double b = size.x / 2;
    const Ta::Place place = MU_HERE;
    const std::size_t count = PointCount(std::trunc(360.0 / step) + 1.0);
    const Ta::Object<void*> list = CurveInPlane(place, count, alloc, center, plane, [&](std::size_t i) {
        const SineCosine t = SineCosineOf(Number(i) * step);
        return zPoint64f{a * t.cosine * turn.cosine - b * t.sine * turn.sine,
                         a * t.cosine * turn.sine + b * t.sine * turn.cosine};
    });
    AddLineSet(place, graphic, PointsOf(list), width, color, DOUBLE_ARROW, alloc);
}

void GraphicAddAnnularSector(void* graphic, const AnnularSector3d<double>& sector, double step, float width, z32u color,
                             void* alloc)
{
    const zPoint3d64f center = Mu::Vision::ConvertPoint3dTozPoint(sector.center);
    const double first = std::trunc((sector.startAngle >= 0.0 ? sector.startAngle : sector.startAngle + 360.0) / step);
    const double edge = std::trunc(sector.angleRange / step) + 1.0; // the points of an edge
    const std::size_t count = edge >= 1.0 ? PointCount(2.0 * edge + 1.0) : 0;
    const std::size_t outer = count / 2;
    const Ta::Place place = MU_HERE;
    const Ta::Object<void*> list = CurveInPlane(place, count, alloc, center, PLANE_XY, [&](std::size_t i) {
        // Along the inner edge, back along the outer one, and to the first point.
        const std::size_t along = i < outer ? i : 2 * outer - 1 - i;
        const bool closes = i == 2 * outer;
        const double angle = (closes ? first : first + Number(along)) * step;
        return OffsetOnCircle(i < outer || closes ? sector.innerRadius : sector.outerRadius, angle);
    });
    AddLineSet(place, graphic, PointsOf(list), width, color, PLAIN, alloc);
}

Ta::Object<void*> CreateEllipseArc(const zPoint3d64f& center, double a, double b, double start, double sweep,
                                   double rotation, double step, void* alloc, int plane)
{
    const EllipsePlane ellipses(center, rotation, plane);
    const double count = sweep < 360.0 ? std::abs(sweep) / step + 1.0 : 360.0 / step + 1.0;
    const double signedStep = sweep > 0.0 ? step : -step;
    double begin = std::fmod(start, 360.0);
    begin = begin < 0.0 ? begin + 360.0 : begin;
    return DrawnList(MU_HERE, PointCount(count), alloc,
                     [&](std::size_t i) { return ellipses.PointAt(a, b, Number(i) * signedStep + begin); });
}

Ta::Object<void*> CreateEllipseSectorEdgeLine(const zPoint3d64f& center, double a1, double b1, double a2, double b2,
                                              double rotation, double angle, void* alloc, int plane)
{
    const EllipsePlane ellipses(center, rotation, plane);
    return DrawnList(MU_HERE, 2, alloc, [&](std::size_t i) {
        return i == 0 ? ellipses.PointAt(a1, b1, angle) : ellipses.PointAt(a2, b2, angle);
    });
}

// --- regions, boxes, planes -----------------------------------------------------------------------------------------

void GraphicAddProfileRegion(void* graphic, const RegionXZ<double>& region, void* alloc)
{
    GraphicElement(MU_HERE, TpGraphicRegion2d_Construct, alloc)
        .Set(TpGraphicRegion2d_SetCenter, region.x, region.z)
        .Set(TpGraphicRegion2d_SetDimensions, region.width, region.height)
        .Set(TpGraphicRegion2d_SetYAngle, RadiansOrZero(region.angle))
        .AddTo(graphic, TpGraphic_AddRegion);
}

void GraphicAddSurfaceRegion(void* graphic, const Region3d<double>& region, void* alloc)
{
    GraphicElement(MU_HERE, TpGraphicRegion3d_Construct, alloc)
        .Set(TpGraphicRegion3d_SetCenter, region.x, region.y, region.z)
        .Set(TpGraphicRegion3d_SetDimensions, region.width, region.length, region.height)
        .Set(TpGraphicRegion3d_SetZAngle, RadiansOrZero(region.zAngle))
        .AddTo(graphic, TpGraphic_AddRegion);
}

void GraphicAddTransformedRegionXZ(void* graphic, const RegionXZ<double>& region, const zM3dTransform2d& transform,
                                   void* alloc)
{
    // Required: the region's angle plays no part.
    const double left = region.x - region.width / 2;
    const double right = region.x + region.width / 2;
    const double bottom = region.z - region.height / 2;
    const double top = region.z + region.height / 2;
    std::array<zPoint64f, 4> corners = {{{left, bottom}, {left, top}, {right, top}, {right, bottom}}};
    for (zPoint64f& corner : corners)
    {
        MU_CHECK(zM3dTransform2d_Apply(&transform, &corner, &corner));
    }
    const Ta::Object<void*> list =
        ListOf<zPoint3d64f>(MU_HERE, zTypeOf(zPoint3d64f), corners.size() + 1, alloc,
                            [&corners](std::size_t i) { return AtY0(corners[i % corners.size()]); });
    GraphicAddContourLines(graphic, list.Get(), alloc);
}

void GraphicAddBBox(void* graphic, z32u color, const Region3d<double>& region, void* alloc)
{
    CheckGraphic(MU_HERE, graphic);
    if (!IsValidRegion(region))
    {
        return;
    }
    RefFrame frame;
    frame.Rotate(region.zAngle - 90.0, {0.0, 0.0, 1.0}); // required: angles of regions are told with this offset
    const zPoint3d64f half{region.width / 2, region.length / 2, region.height / 2};
    std::array<zPoint3d64f, 8> corners = BoxCorners({-half.x, -half.y, -half.z}, half);
    frame.ApplyN(corners.data(), corners.size(), corners.data());
    const Ta::Object<void*> list = DrawnList(MU_HERE, BOX_WALK.size(), alloc, [&](std::size_t i) {
        return Sum(corners[BOX_WALK[i]], {region.x, region.y, region.z});
    });
    GraphicAddLines(graphic, list.Get(), EMPHASISED_WIDTH, color, alloc);
}

void GraphicAddXYBBox(void* graphic, z32u color, const Region2d<double>& region, double z, void* alloc)
{
    CheckGraphic(MU_HERE, graphic);
    if (!IsValidRegion(region) || z == zNULL_64F)
    {
        return;
    }
    const auto corners = TurnedRectangle(region.width, region.length, region.angle - 90.0);
    const Ta::Object<void*> list = ClosedOutline(MU_HERE, corners, alloc, [&](const zPoint64f& corner) {
        return zPoint3d64f{corner.x + region.x, corner.y + region.y, z};
    });
    GraphicAddLines(graphic, list.Get(), EMPHASISED_WIDTH, color, alloc);
}

void GraphicAddXZBBox(void* graphic, z32u color, const RegionXZ<double>& region, void* alloc)
{
    CheckGraphic(MU_HERE, graphic);
    if (!IsValidRegion(region))
    {
        return;
    }
    // Required: no offset of 90 degrees here.
    const auto corners = TurnedRectangle(region.width, region.height, region.angle);
    const Ta::Object<void*> list = ClosedOutline(MU_HERE, corners, alloc, [&](const zPoint64f& corner) {
        return zPoint3d64f{corner.x + region.x, 0.0, corner.y + region.z};
    });
    GraphicAddLines(graphic, list.Get(), EMPHASISED_WIDTH, color, alloc);
}

void GraphicAddRect(void* graphic, const Region2d<double>& region, const zPoint3d64f& rotation,
                    const zPoint3d64f& offset, float width, z32u color, void* alloc)
{
    if (!IsValidRegion(region))
    {
        return;
    }
    RefFrame frame;
    frame.RotateXYZ(rotation.x, -rotation.y, rotation.z); // required: the sign of y is turned
    const auto corners = TurnedRectangle(region.width, region.length, region.angle - 90.0);
    const Ta::Object<void*> list = ClosedOutline(MU_HERE, corners, alloc, [&](const zPoint64f& corner) {
        return Sum(frame.Apply(zPoint3d64f{corner.x + region.x, corner.y + region.y, 0.0}), offset);
    });
    GraphicAddLines(graphic, list.Get(), width, color, alloc);
}

void GraphicAddPlane(void* graphic, const zPlane3d64f& plane, void* alloc)
{
    CheckGraphic(MU_HERE, graphic);
    if (IsValidPoint(plane.point) != 0 && IsValidPoint(plane.normal) != 0)
    {
        AddPlane(MU_HERE, graphic, plane.normal, DotProduct(plane.normal, plane.point), alloc);
    }
}

void GraphicAddPlane(void* graphic, const PlaneParams<double>& plane, void* alloc)
{
    CheckGraphic(MU_HERE, graphic);
    const zPoint3d64f normal{plane.a, plane.b, plane.c};
    if (AreKnown(plane.d) && IsValidVector(normal))
    {
        AddPlane(MU_HERE, graphic, normal, -plane.d, alloc);
    }
}

void GetRegionContour(const Region3d<double>& region, const zM3dTransform3d& transform, void** list)
{
    const Ta::Place place = MU_HERE;
    const bool isKnown = !HasNull(transform);
    const Region3d<double> box = Mu::Vision::ConvertRegionToCornerStyle(region);
    std::array<zPoint3d64f, 8> corners =
        BoxCorners({box.x, box.y, box.z}, {box.x + box.width, box.y + box.length, box.z + box.height});
    for (zPoint3d64f& corner : corners)
    {
        if (isKnown)
        {
            Ta::Check(place, zM3dTransform3d_Apply(&transform, &corner, &corner));
        }
    }
    *list = ListOf<zPoint3d64f>(place, zTypeOf(zPoint3d64f), isKnown ? BOX_WALK.size() : 0, nullptr,
                                [&corners](std::size_t i) { return corners[BOX_WALK[i]]; })
                .Detach();
}

// --- measurement decorations ----------------------------------------------------------------------------------------

void GraphicAddMeasurementLines(void* graphic, int axis, const zPoint3d64f& point, double angle, void* alloc)
{
    const zPoint3d32f position = Narrow(point);
    const auto addLine = [&](const zPoint3d32f& direction) {
        GraphicAddInfiniteLine(graphic, position, direction, DecorationColor, DECORATION_WIDTH, alloc);
    };
    switch (axis)
    {
    case AXIS_X:
        return addLine({0.0F, 1.0F, 0.0F});
    case AXIS_Y:
        return addLine({1.0F, 0.0F, 0.0F});
    case AXIS_Z:
        return AddColoredRay(MU_HERE, graphic, {position, {0.0F, 0.0F, -1.0F}}, DecorationColor, DECORATION_WIDTH,
                             alloc);
    case AXIS_Z_ANGLE: {
        const SineCosine turn = SineCosineOf(angle);
        addLine({1.0F, 0.0F, 0.0F});
        addLine(Narrow({turn.cosine, turn.sine, 0.0}));
        return GraphicAddArc(graphic, point, DECORATION_RADIUS, 0.0, angle, PLANE_XY, DecorationColor, DECORATION_WIDTH,
                             alloc);
    }
    default:
        return;
    }
}

void GraphicAddProfileMeasurementLines(void* graphic, int axis, const zPoint64f& point, double angle,
                                       const zRect3d64f& bounds, void* alloc)
{
    const auto addSegment = [&](const zPoint64f& from, const zPoint64f& to) {
        GraphicAddLineSegment(graphic, AtY0(from), AtY0(to), DECORATION_WIDTH, DecorationColor, alloc);
    };
    if (axis == AXIS_X && bounds.z != zNULL_64F)
    {
        addSegment({point.x, bounds.z - 3 * bounds.height}, {point.x, bounds.z + 3 * bounds.height});
    }
    else if (axis == AXIS_Z && bounds.x != zNULL_64F)
    {
        addSegment({bounds.x - 3 * bounds.width, point.y}, {bounds.x + 3 * bounds.width, point.y});
    }
    else if (axis == AXIS_Y_ANGLE)
    {
        GraphicAddProfileMeasurementLines(graphic, AXIS_Z, point, 0.0, bounds, alloc);
        GraphicAddXZLineByPointAngle(graphic, point, angle, DECORATION_WIDTH, DecorationColor, alloc);
        GraphicAddArc(graphic, AtY0(point), DECORATION_RADIUS, 0.0, angle, PLANE_XZ, DecorationColor, DECORATION_WIDTH,
                      alloc);
    }
}

void GraphicAddDistanceLines(void* graphic, int axis, const zPoint3d64f& a, const zPoint3d64f& b, void* alloc)
{
    AddDistanceLines(MU_HERE, graphic, axis, a, b, alloc);
}

void GraphicAddProfileDistanceLines(void* graphic, int axis, const zPoint64f& a, const zPoint64f& b, void* alloc)
{
    if (axis != AXIS_Y)
    {
        AddDistanceLines(MU_HERE, graphic, axis, AtY0(a), AtY0(b), alloc);
    }
}

void GraphicAddAngleMeasurementLines(void* graphic, const zPoint3d64f& vertex, const zPoint3d64f& from,
                                     const zPoint3d64f& to, const Region3d<double>& region, void* alloc)
{
    if (IsValidPoint(vertex) == 0 || IsValidPoint(from) == 0 || IsValidPoint(to) == 0)
    {
        return;
    }
    const double size = std::max(region.width, region.length) / 20.0;
    const zPoint3d64f low{std::min(from.x, to.x), std::min(from.y, to.y), std::min(from.z, to.z)};
    const zPoint3d64f high{std::max(from.x, to.x), std::max(from.y, to.y), std::max(from.z, to.z)};
    const Region3d<double> box = GrownBox(Mu::Vision::ConvertRegionToCornerStyle(region), vertex,
                                          {Scaled(Scaled(low, size), -1.0), Scaled(high, size)});
    GraphicAddBoundedLineXYZ(graphic, DECORATION_WIDTH, DecorationColor, vertex, from, box, alloc);
    GraphicAddBoundedLineXYZ(graphic, DECORATION_WIDTH, DecorationColor, vertex, to, box, alloc);
    GraphicAddPoint(graphic, vertex, VERTEX_SIZE, DecorationColor, alloc, DOT);
    GraphicAddArcXYZ(graphic, DECORATION_WIDTH, DecorationColor, vertex, from, to, size, alloc);
}

void GraphicAddZAngleMeasurementLines(void* graphic, const zPoint3d64f& vertex, double start, double sweep,
                                      const Region3d<double>& region, void* alloc)
{
    const double radius = std::max(region.width, region.length) / 20.0;
    const zPoint3d64f margin{radius, radius, 0.0};
    AddAngle(graphic, vertex, start, sweep, region, {PLANE_XY, radius, {margin, margin}, GraphicAddBoundedLineXY},
             alloc);
}

void GraphicAddYAngleMeasurementLines(void* graphic, const zPoint3d64f& vertex, double start, double sweep,
                                      const Region3d<double>& region, void* alloc)
{
    // Required: the height counts twice as much as the width.
    const double radius = std::max(region.width / 20.0, region.height / 10.0);
    const zPoint3d64f margin{radius, 0.0, radius};
    AddAngle(graphic, vertex, start, sweep, region, {PLANE_XZ, radius, {margin, margin}, GraphicAddBoundedLineXZ},
             alloc);
}

void GraphicAddProjectedAngleMeasurementLines(void* graphic, const zPoint3d64f& vertex, double start, double sweep,
                                              int useZ, const Region3d<double>& region, void* alloc)
{
    const auto add = useZ != 0 ? GraphicAddZAngleMeasurementLines : GraphicAddYAngleMeasurementLines;
    add(graphic, vertex, start, sweep, region, alloc);
}
} // namespace Mu::TlkHelper
