#include <Tools/SampleTool.h>

#include <MuTlkHelper/FeatureUtils.h>

#include <MuVision/ValidVector.h>
#include <TaPipe/ToolPlugin.h>
#include <TaVision/TvDataMsg.h>
#include <TaVision/TvPlaneFeatureMsg.h>
#include <TaVision/TvPointFeatureMsg.h>

#include <Eigen/Dense>

#include <cmath>
#include <numbers>
#include <optional>

namespace
{
using Eigen::Vector3d;

enum class Kind
{
    Nothing, ///< a feature of which something is null, or that has no direction
    Point,   ///< also the centre of a circle
    Line,
    Plane
};

/// A feature as it is measured.
struct Feature
{
    Kind kind = Kind::Nothing;
    Vector3d place = Vector3d::Zero();     ///< a point of it
    Vector3d direction = Vector3d::Zero(); ///< of length 1: of a line, or the normal of a plane
};

Vector3d AsVector(const zPoint3d64f& point)
{
    return {point.x, point.y, point.z};
}

zPoint3d64f AsPoint(const Vector3d& vector)
{
    return {vector.x(), vector.y(), vector.z()};
}

Feature PointAt(const zPoint3d64f& place)
{
    const bool isThere = Mu::TlkHelper::IsValidPoint(place) != 0 && AsVector(place).allFinite();
    return isThere ? Feature{Kind::Point, AsVector(place)} : Feature{};
}

Feature LineOf(const zLine3d64f& line)
{
    if (Mu::TlkHelper::IsValidLine(line) == 0 || !AsVector(line.point).allFinite() ||
        !Mu::Vision::IsValidVector(line.direction))
    {
        return {};
    }
    return {Kind::Line, AsVector(line.point), AsVector(line.direction).stableNormalized()};
}

Feature PlaneOf(void* message)
{
    const auto plane = Mu::TlkHelper::GetPlaneFromFeatureMessage(message);
    const zPoint3d64f normal{plane.a, plane.b, plane.c};
    const double sent = TvPlaneFeatureMsg_OriginDistance(message);
    if (!Mu::Vision::IsValidVector(normal) || sent == zNULL_64F || !std::isfinite(sent))
    {
        return {};
    }
    // The reader gives the normal the length 1. The distance was sent for the normal as it was sent.
    const double distance = sent / AsVector(TvPlaneFeatureMsg_Normal(message)).stableNorm();
    return {Kind::Plane, distance * AsVector(normal), AsVector(normal)};
}

Feature FeatureOf(void* message)
{
    if (xzCastClass_ObjectIs(message, zTypeOf(TvPointFeatureMsg)))
    {
        return PointAt(TvPointFeatureMsg_Position(message));
    }
    const Feature centre = PointAt(Mu::TlkHelper::GetCircleFromFeatureMessage(message).center);
    if (centre.kind != Kind::Nothing)
    {
        return centre;
    }
    const Feature line = LineOf(Mu::TlkHelper::GetLineFromFeatureMessage(message));
    return line.kind != Kind::Nothing ? line : PlaneOf(message);
}

/// The point of a feature that is nearest to `place`.
Vector3d Nearest(const Feature& feature, const Vector3d& place)
{
    const Vector3d along = (place - feature.place).dot(feature.direction) * feature.direction;
    switch (feature.kind)
    {
    case Kind::Line:
        return feature.place + along;
    case Kind::Plane:
        return place - along;
    default:
        return feature.place;
    }
}

/// The shortest way from one feature to another.
struct Way
{
    Vector3d from;
    Vector3d to;
};

/// Defined where one of the two is a point: how far apart lines and planes are hangs on whether they are parallel to
/// the last digit.
std::optional<Way> WayBetween(const Feature& first, const Feature& second)
{
    if (first.kind == Kind::Nothing || second.kind == Kind::Nothing)
    {
        return std::nullopt;
    }
    if (first.kind == Kind::Point)
    {
        return Way{first.place, Nearest(second, first.place)};
    }
    return second.kind == Kind::Point ? std::optional(Way{Nearest(first, second.place), second.place}) : std::nullopt;
}

bool HasDirection(const Feature& feature)
{
    return feature.kind == Kind::Line || feature.kind == Kind::Plane;
}

/// Two directions of length 1 that enclose the angle of two features, at most 90 degrees.
struct Arms
{
    Vector3d from;
    Vector3d to;

    /// By sine and cosine, which tell small angles as well as right ones.
    [[nodiscard]] double Degrees() const
    {
        return std::atan2(from.cross(to).norm(), from.dot(to)) * 180 / std::numbers::pi;
    }
};

/// What is left of a direction in a plane; where nothing is, any direction there.
Vector3d InPlane(const Vector3d& direction, const Vector3d& normal)
{
    const Vector3d within = direction - direction.dot(normal) * normal;
    return within.norm() > Mu::Vision::USABLE_LENGTH ? within.normalized() : normal.unitOrthogonal();
}

std::optional<Arms> ArmsOf(const Feature& first, const Feature& second)
{
    if (!HasDirection(first) || !HasDirection(second))
    {
        return std::nullopt;
    }
    // The angle of a line and a plane is that of the line and its shadow on the plane; that of planes is the angle of
    // their normals.
    const bool areAlike = first.kind == second.kind;
    const Vector3d from =
        areAlike || first.kind == Kind::Line ? first.direction : InPlane(second.direction, first.direction);
    const Vector3d to =
        areAlike || second.kind == Kind::Line ? second.direction : InPlane(first.direction, second.direction);
    return Arms{from, from.dot(to) < 0 ? Vector3d(-to) : to};
}

void DrawFeature(ToolGraphic& graphic, const Feature& feature)
{
    switch (feature.kind)
    {
    case Kind::Point:
        graphic.AddPoint(AsPoint(feature.place));
        break;
    case Kind::Line:
        graphic.AddLine({AsPoint(feature.place), AsPoint(feature.direction)});
        break;
    case Kind::Plane:
        graphic.AddPlane({AsPoint(feature.place), AsPoint(feature.direction)});
        break;
    default:
        break;
    }
}

/// How far two features of other tools are apart, and the angle between them. A circle stands for its centre; lines and
/// planes have no end.
///
/// |       | point    | line     | plane    |
/// |-------|----------|----------|----------|
/// | point | distance | distance | distance |
/// | line  | distance | angle    | angle    |
/// | plane | distance | angle    | angle    |
///
/// `Distance` is the length of the shortest way from the first feature to the second, `X`, `Y` and `Z` are that way
/// along the axes, in mm; `Angle` is from 0 to 90 degrees. What the table does not have is null, and all is if a
/// feature is missing or tells of no place or direction.
class FeatureDistance final : public SampleTool
{
public:
    FeatureDistance()
    {
        toolName = "FeatureDistance";
    }

    static void Describe(ToolInfo& info)
    {
        CommonTool::Describe(info);
        info.SetDisplayName("Feature Distance");
        info.SetDescription("Distance and angle of points, lines, circles, planes");
    }

    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        for (const char* const id : {FIRST, SECOND})
        {
            AddInput(id, AT_END)
                .AddAcceptedDataFormat(PipeDataType::PointFeature, false)
                .AddAcceptedDataFormat(PipeDataType::LineFeature, false)
                .AddAcceptedDataFormat(PipeDataType::PlaneFeature, false)
                .AddAcceptedDataFormat(PipeDataType::CircleFeature, false);
        }
        for (const char* const id : {"Distance", "X", "Y", "Z"})
        {
            AddMeasurement(id, id, "mm");
        }
        AddMeasurement("Angle", "Angle", "deg");
        AddGraphic();
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        void* const message = GetDataMessageInput(set, FIRST);
        const Feature first = FeatureOf(message);
        const Feature second = FeatureOf(GetDataMessageInput(set, SECOND));
        const std::optional<Way> way = WayBetween(first, second);
        const std::optional<Arms> arms = ArmsOf(first, second);
        const zStamp stamp = TvDataMsg_Stamp(message);
        SendWay(way, stamp);
        SendMeasurement("Angle", arms ? arms->Degrees() : zNULL_64F, false, &stamp);
        SendGraphic([&](ToolGraphic& graphic) {
            DrawFeature(graphic, first);
            DrawFeature(graphic, second);
            if (way)
            {
                graphic.AddDistance(AsPoint(way->from), AsPoint(way->to));
            }
            if (arms)
            {
                graphic.AddAngle(AsPoint(first.place), AsPoint(arms->from), AsPoint(arms->to), ARC_RADIUS);
            }
        });
    }

private:
    static constexpr const char* FIRST = "First";
    static constexpr const char* SECOND = "Second";
    static constexpr double ARC_RADIUS = 5; ///< in mm, as features do not tell how large the data is

    void SendWay(const std::optional<Way>& way, const zStamp& stamp)
    {
        const Vector3d step = way ? Vector3d(way->to - way->from) : Vector3d::Constant(zNULL_64F);
        SendMeasurement("Distance", way ? step.stableNorm() : zNULL_64F, false, &stamp);
        SendMeasurement("X", step.x(), false, &stamp);
        SendMeasurement("Y", step.y(), false, &stamp);
        SendMeasurement("Z", step.z(), false, &stamp);
    }
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<FeatureDistance>("FeatureDistance", "1.0.0"))
