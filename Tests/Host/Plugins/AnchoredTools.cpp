#include <MuTlkHelper/AnchoredRegion.h>
#include <MuTlkHelper/CommonTool.h>

#include <TaPipe/ToolPlugin.h>
#include <TaVision/TaVision.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <stdexcept>
#include <vector>

// A tool that finds a feature, and tools whose regions follow it.
namespace
{
using Mu::TlkHelper::AnchoredSurfaceRegion;
using Mu::TlkHelper::AnchorType;

constexpr std::size_t AT_END = static_cast<std::size_t>(-1);

/// The points of a surface that have a height, in mm.
std::vector<zPoint3d64f> PointsOf(void* surface)
{
    const zPoint3d64f offset = TvSurfaceMsg_Offset(surface);
    const zPoint3d64f scale = TvSurfaceMsg_Scale(surface);
    std::vector<zPoint3d64f> points;
    for (std::size_t row = 0; row < TvSurfaceMsg_Length(surface); ++row)
    {
        for (std::size_t column = 0; column < TvSurfaceMsg_Width(surface); ++column)
        {
            const auto height = *static_cast<const z16s*>(TvSurfaceMsg_PointsAt(surface, row, column));
            if (height != zNULL_16S)
            {
                points.push_back({offset.x + scale.x * static_cast<double>(column),
                                  offset.y + scale.y * static_cast<double>(row), offset.z + scale.z * height});
            }
        }
    }
    return points;
}

/// The highest point of a surface, and the direction in which the second highest lies from it, from +x towards +y, in
/// degrees. Null without two points; "Copy" is the surface.
class Finder final : public Mu::Tools::CommonTool
{
public:
    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        AddInput("Surface", AT_END).AddAcceptedDataFormat(PipeDataType::UniformSurface, false);
        for (const char* const id : {"X", "Y", "Z"})
        {
            AddMeasurementOutput(id, false, AT_END).SetUnits("mm");
        }
        AddMeasurementOutput("Angle", false, AT_END).SetUnits("deg");
        AddMeasurementOutput("List", true, AT_END);
        AddOutput("Copy", AT_END).SetDataFormat(PipeDataType::UniformSurface, false);

        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        const Ta::Object<void*> surface = set.FindByName("Surface")->Message(true);
        Send(*FindOutputById("Copy"), surface, 1);
        std::vector<zPoint3d64f> points = PointsOf(surface.Get());
        if (points.size() < 2)
        {
            throw std::runtime_error("there are no two points");
        }
        std::ranges::partial_sort(points, points.begin() + 2, std::greater(), &zPoint3d64f::z);
        SendMeasurement("X", points[0].x, false, nullptr);
        SendMeasurement("Y", points[0].y, false, nullptr);
        SendMeasurement("Z", points[0].z, false, nullptr);
        SendMeasurement("Angle", std::atan2(points[1].y - points[0].y, points[1].x - points[0].x) * 180 / std::acos(-1),
                        false, nullptr);
    }

private:
    Ta::Params::Group params;
};

/// A base for tools with an anchored region, which they tell as it lies on the data, and the mean height in it.
class AnchoredTool : public Mu::Tools::CommonTool
{
public:
    using CommonTool::Init;

protected:
    void AddInputs(bool isOptional)
    {
        AddInput("Surface", AT_END).AddAcceptedDataFormat(PipeDataType::UniformSurface, false).SetOptional(isOptional);
        AddAnchorInputs(AnchorType::Surface, true);
    }

    void AddOutputs()
    {
        for (const char* const id : {"X", "Y", "Z", "Width", "Length", "Height", "Angle", "Mean"})
        {
            AddMeasurementOutput(id, false, AT_END);
        }
    }

    void SendRegion(InputSet& set, const AnchoredSurfaceRegion& followed)
    {
        const auto region = followed.AbsoluteRegion();
        SendMeasurement("X", region.x, false, nullptr);
        SendMeasurement("Y", region.y, false, nullptr);
        SendMeasurement("Z", region.z, false, nullptr);
        SendMeasurement("Width", region.width, false, nullptr);
        SendMeasurement("Length", region.length, false, nullptr);
        SendMeasurement("Height", region.height, false, nullptr);
        SendMeasurement("Angle", region.zAngle, false, nullptr);
        SendMeasurement("Mean", MeanIn(GetDataMessageInput(set, "Surface"), region), false, nullptr);
    }

private:
    static double MeanIn(void* surface, const Mu::Vision::Region3d<double>& region)
    {
        const double angle = region.zAngle * std::acos(-1) / 180;
        double sum = 0;
        double count = 0;
        for (const zPoint3d64f& point : surface == nullptr ? std::vector<zPoint3d64f>() : PointsOf(surface))
        {
            const double x = point.x - region.x;
            const double y = point.y - region.y;
            const bool isInside = std::abs(x * std::cos(angle) + y * std::sin(angle)) <= region.width / 2 &&
                                  std::abs(y * std::cos(angle) - x * std::sin(angle)) <= region.length / 2;
            sum += isInside ? point.z : 0;
            count += isInside ? 1 : 0;
        }
        return count > 0 ? sum / count : zNULL_64F;
    }
};

class Window : public AnchoredTool
{
public:
    using AnchoredTool::Init;

    void Init(IToolHost& host) override
    {
        AddInputs(false);
        AddOutputs();
        params.Register("Number", number);
        params.Register("Region", region);
        RegisterAnchoredRegion(&region);
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        SendRegion(set, region);
    }

private:
    Ta::Params::Group params;
    Ta::Params::Value<double> number;
    AnchoredSurfaceRegion region{true};
};

/// Can do without data, and has two regions in a group of their own. Tells the second one.
class TwoWindows final : public AnchoredTool
{
public:
    using AnchoredTool::Init;

    void Init(IToolHost& host) override
    {
        AddInputs(true);
        AddOutputs();
        params.Register("Windows", windows);
        windows.Register("Left", left);
        windows.Register("Right", right);
        RegisterAnchoredRegion(&left);
        RegisterAnchoredRegion(&right);
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        SendRegion(set, right);
    }

private:
    Ta::Params::Group params;
    Ta::Params::Group windows;
    AnchoredSurfaceRegion left{false};
    AnchoredSurfaceRegion right{false};
};

/// Fails whenever it is executed.
class BrokenWindow final : public Window
{
public:
    void Execute(InputSet& /*set*/) override
    {
        throw std::runtime_error("this tool fails");
    }
};

/// Follows an anchor without a region. Gives the count of items in its set that stand before the surface.
class Follower final : public AnchoredTool
{
public:
    using AnchoredTool::Init;

    void Init(IToolHost& host) override
    {
        AddAnchorInputs(AnchorType::Surface, false);
        AddInput("Surface", AT_END).AddAcceptedDataFormat(PipeDataType::UniformSurface, false);
        AddMeasurementOutput("Before", false, AT_END);
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        std::size_t before = 0;
        while (std::string_view(set.At(before).Input().Id()) != "Surface")
        {
            ++before;
        }
        SendMeasurement("Before", static_cast<double>(before), false, nullptr);
    }

private:
    Ta::Params::Group params;
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<Finder>("Finder", "1.0"), TaPipe::PluginTool<Window>("Window", "1.0"),
                TaPipe::PluginTool<TwoWindows>("TwoWindows", "1.0"),
                TaPipe::PluginTool<BrokenWindow>("BrokenWindow", "1.0"),
                TaPipe::PluginTool<Follower>("Follower", "1.0"))
