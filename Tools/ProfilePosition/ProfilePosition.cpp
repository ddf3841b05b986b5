#include <Tools/ProfileTool.h>

#include <TaPipe/ToolPlugin.h>
#include <TaVision/TvProfileMsg.h>

#include <algorithm>

namespace
{
constexpr const char* TOP = "Top";
constexpr const char* BOTTOM = "Bottom";
constexpr const char* LEFT = "Left";
constexpr const char* RIGHT = "Right";
constexpr const char* AVERAGE = "Average";

using Points = std::span<const zPoint64f>;

constexpr zPoint64f NOWHERE{zNULL_64F, zNULL_64F};

// Summed as differences from the first point, so that a small region far from the origin keeps its digits.
zPoint64f Average(Points points)
{
    const zPoint64f first = points.front();
    zPoint64f sum{0, 0};
    for (const zPoint64f& point : points)
    {
        sum.x += point.x - first.x;
        sum.y += point.y - first.y;
    }
    const auto count = static_cast<double>(points.size());
    return {first.x + sum.x / count, first.y + sum.y / count};
}

/// The place of one point of a profile or of a region of it: the top (highest), bottom, left (of smallest x) or right
/// one, or the average of all. Of several the first in the profile's order. Without points it gives nulls.
class ProfilePosition final : public ProfileTool
{
public:
    ProfilePosition()
    {
        toolName = "ProfilePosition";
    }

    static void Describe(ToolInfo& info)
    {
        CommonTool::Describe(info);
        info.SetDisplayName("Profile Position");
        info.SetDescription("Place of a profile's top, bottom, side or mean");
    }

    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        AddInputs();
        AddMeasurement("X", "X", "mm");
        AddMeasurement("Z", "Z", "mm");
        AddFeature("Position", "Position", PipeDataType::PointFeature);
        AddGraphic();
        for (const char* const option : {TOP, BOTTOM, LEFT, RIGHT, AVERAGE})
        {
            feature.AddOption(option, option);
        }
        params.Register("Point", "Point", feature);
        AddOptionalRegion();
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        void* const profile = GetDataMessageInput(set, PROFILE);
        const zStamp stamp = TvDataMsg_Stamp(profile);
        const zPoint64f found = Find(MeasuredPoints(profile));
        SendMeasurement("X", found.x, false, &stamp);
        SendMeasurement("Z", found.y, false, &stamp);
        // Profiles lie in the plane y = 0, as they are drawn.
        SendFeaturePoint("Position", Mu::TlkHelper::Convert2dPoint64to3dPoint64(found), false, &stamp);
        SendGraphic([&](ToolGraphic& graphic) {
            DrawRegion(graphic);
            if (found.x != zNULL_64F)
            {
                graphic.AddPlace(found, TvDataMsg_BoundingBox(profile));
            }
        });
    }

private:
    [[nodiscard]] zPoint64f Find(Points points) const
    {
        if (points.empty())
        {
            return NOWHERE;
        }
        if (feature.Get() == AVERAGE)
        {
            return Average(points);
        }
        const bool isSideways = feature.Get() == LEFT || feature.Get() == RIGHT;
        const auto coordinate = isSideways ? &zPoint64f::x : &zPoint64f::y;
        const bool isLow = feature.Get() == LEFT || feature.Get() == BOTTOM;
        return isLow ? *std::ranges::min_element(points, {}, coordinate)
                     : *std::ranges::max_element(points, {}, coordinate);
    }

    Ta::Params::Enum<std::string> feature{TOP};
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<ProfilePosition>("ProfilePosition", "1.0.0"))
