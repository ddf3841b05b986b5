#include <Tools/SurfacePlane/PlaneFit.h>
#include <Tools/SurfaceTool.h>

#include <TaPipe/ToolPlugin.h>
#include <TaVision/TvSurfaceMsg.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{
using Points = std::span<const zPoint3d64f>;

double Degrees(double slope)
{
    return std::atan(slope) * 180 / std::numbers::pi;
}

double Dot(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// What is measured of a plane, and what is drawn of it.
struct Measured
{
    FittedPlane plane;
    zPoint3d64f lowest; ///< along the normal; the first of several
    zPoint3d64f highest;

    Measured(const FittedPlane& fitted, Points points)
        : plane(fitted)
    {
        const auto height = [this](const zPoint3d64f& point) { return plane.Height(point); };
        lowest = *std::ranges::min_element(points, {}, height);
        highest = *std::ranges::max_element(points, {}, height);
    }

    [[nodiscard]] double Flatness() const
    {
        return plane.Height(highest) - plane.Height(lowest);
    }
};

/// The least-squares plane z = a x + b y + c of the points in a region, by their differences in z.
///
/// | output     | what it is                                                                                         |
/// |------------|----------------------------------------------------------------------------------------------------|
/// | `XAngle`   | tilt about x, as it is seen along x: atan(b), above 0 where z rises with y, in degrees, within 90   |
/// | `YAngle`   | tilt about y, as it is seen along y: atan(a), above 0 where z rises with x                          |
/// | `ZOffset`  | c, the z of the plane at x = y = 0, in mm                                                          |
/// | `Flatness` | from the lowest to the highest point, along the normal of the plane, in mm                         |
/// | `Plane`    | the plane as a feature, with the normal upwards                                                    |
///
/// The signs are those of anchors: about x from y to z, about y from x to z. Less than three points, and points on one
/// line as seen from above, give nulls.
class SurfacePlane final : public SurfaceTool
{
public:
    SurfacePlane()
    {
        toolName = "SurfacePlane";
    }

    static void Describe(ToolInfo& info)
    {
        CommonTool::Describe(info);
        info.SetDisplayName("Surface Plane");
        info.SetDescription("Least-squares plane: tilt, offset, flatness");
    }

    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        AddInputs();
        AddMeasurement("XAngle", "Tilt about X (Z along Y)", "deg");
        AddMeasurement("YAngle", "Tilt about Y (Z along X)", "deg");
        AddMeasurement("ZOffset", "Z at X = Y = 0", "mm");
        AddMeasurement("Flatness", "Flatness", "mm");
        AddFeature("Plane", "Plane", PipeDataType::PlaneFeature);
        AddGraphic();
        AddRegion();
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        void* const surface = GetDataMessageInput(set, SURFACE);
        const Points points = PointsInRegion(surface);
        const std::optional<FittedPlane> plane = FitPlane(points, TvSurfaceMsg_Offset(surface));
        const zStamp stamp = TvDataMsg_Stamp(surface);
        if (plane)
        {
            SendMeasured({*plane, points}, stamp);
        }
        else
        {
            SendNulls();
        }
    }

private:
    void SendMeasured(const Measured& measured, const zStamp& stamp)
    {
        const FittedPlane& plane = measured.plane;
        const zPoint3d64f normal = plane.Normal();
        SendMeasurement("XAngle", Degrees(plane.ySlope), false, &stamp);
        SendMeasurement("YAngle", Degrees(plane.xSlope), false, &stamp);
        SendMeasurement("ZOffset", plane.ZOffset(), false, &stamp);
        SendMeasurement("Flatness", measured.Flatness(), false, &stamp);
        SendFeaturePlane("Plane", normal, Dot(normal, plane.centroid), false, &stamp);
        SendGraphic([&](ToolGraphic& graphic) {
            DrawRegion(graphic);
            graphic.AddPlane({plane.centroid, normal});
            DrawTilt(graphic, plane);
            graphic.AddPoint(measured.lowest);
            graphic.AddPoint(measured.highest);
        });
    }

    void DrawTilt(ToolGraphic& graphic, const FittedPlane& plane) const
    {
        const auto box = AbsoluteRegion();
        const double radius = std::min(box.width, box.length) / 4;
        const double alongX = std::hypot(1.0, plane.xSlope);
        const double alongY = std::hypot(1.0, plane.ySlope);
        graphic.AddAngle(plane.centroid, {1, 0, 0}, {1 / alongX, 0, plane.xSlope / alongX}, radius);
        graphic.AddAngle(plane.centroid, {0, 1, 0}, {0, 1 / alongY, plane.ySlope / alongY}, radius);
    }

    void SendNulls()
    {
        for (const char* const output : {"XAngle", "YAngle", "ZOffset", "Flatness"})
        {
            SendMeasurement(output, zNULL_64F, false, nullptr);
        }
        SendFeaturePlane("Plane", {zNULL_64F, zNULL_64F, zNULL_64F}, zNULL_64F, false, nullptr);
        SendGraphic([this](ToolGraphic& graphic) { DrawRegion(graphic); });
    }
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<SurfacePlane>("SurfacePlane", "1.0.0"))
