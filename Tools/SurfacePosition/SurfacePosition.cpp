#include <Tools/SurfaceTool.h>

#include <TaPipe/ToolPlugin.h>
#include <TaVision/TvSurfaceMsg.h>

#include <algorithm>

namespace
{
constexpr const char* HIGHEST = "Highest";
constexpr const char* LOWEST = "Lowest";
constexpr const char* CENTROID = "Centroid";

using Points = std::span<const zPoint3d64f>;

constexpr zPoint3d64f NOWHERE{zNULL_64F, zNULL_64F, zNULL_64F};

bool IsLower(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return a.z < b.z;
}

// Of several lowest points the first one, row by row.
zPoint3d64f Lowest(Points points)
{
    return *std::ranges::min_element(points, IsLower);
}

// Of several highest points the first one, too.
zPoint3d64f Highest(Points points)
{
    return *std::ranges::max_element(points, IsLower);
}

// Summed as differences from the first point, so that a small region far from the origin keeps its digits.
zPoint3d64f Centroid(Points points)
{
    const zPoint3d64f first = points.front();
    zPoint3d64f sum{0, 0, 0};
    for (const zPoint3d64f& point : points)
    {
        sum.x += point.x - first.x;
        sum.y += point.y - first.y;
        sum.z += point.z - first.z;
    }
    const auto count = static_cast<double>(points.size());
    return {first.x + sum.x / count, first.y + sum.y / count, first.z + sum.z / count};
}

/// The place of one point of a region: the highest, the lowest, or the centroid of all of them. A region without points
/// gives nulls. Its place is what other tools are anchored to, and, as a feature, what they measure from.
class SurfacePosition final : public SurfaceTool
{
public:
    SurfacePosition()
    {
        toolName = "SurfacePosition";
    }

    static void Describe(ToolInfo& info)
    {
        CommonTool::Describe(info);
        info.SetDisplayName("Surface Position");
        info.SetDescription("Place of a region's highest, lowest or mean point");
    }

    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        AddInputs();
        for (const char* const axis : {"X", "Y", "Z"})
        {
            AddMeasurement(axis, axis, "mm");
        }
        AddFeature("Position", "Position", PipeDataType::PointFeature);
        AddGraphic();
        for (const char* const option : {HIGHEST, LOWEST, CENTROID})
        {
            feature.AddOption(option, option);
        }
        params.Register("Point", "Point", feature);
        AddRegion();
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        void* const surface = GetDataMessageInput(set, SURFACE);
        const zPoint3d64f found = Find(PointsInRegion(surface));
        const zStamp stamp = TvDataMsg_Stamp(surface);
        SendMeasurement("X", found.x, false, &stamp);
        SendMeasurement("Y", found.y, false, &stamp);
        SendMeasurement("Z", found.z, false, &stamp);
        SendFeaturePoint("Position", found, false, &stamp);
        SendGraphic([&](ToolGraphic& graphic) {
            DrawRegion(graphic);
            if (found.x != zNULL_64F)
            {
                graphic.AddPlace(found);
            }
        });
    }

private:
    [[nodiscard]] zPoint3d64f Find(Points points) const
    {
        if (points.empty())
        {
            return NOWHERE;
        }
        if (feature.Get() == CENTROID)
        {
            return Centroid(points);
        }
        return feature.Get() == LOWEST ? Lowest(points) : Highest(points);
    }

    Ta::Params::Enum<std::string> feature{HIGHEST};
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<SurfacePosition>("SurfacePosition", "1.0.0"))
