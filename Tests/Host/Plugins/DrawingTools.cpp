#include <MuTlkHelper/CommonTool.h>
#include <MuTlkHelper/GraphicUtils.h>

#include <TaPipe/ToolPlugin.h>
#include <TaPipe/TpGraphic.h>
#include <TaPipe/TpGraphicPointSet.h>
#include <TaVision/TaVision.h>

#include <algorithm>
#include <limits>
#include <vector>

// A tool that draws every kind of element.
namespace
{
using namespace Mu::TlkHelper;

constexpr std::size_t AT_END = static_cast<std::size_t>(-1);

Ta::Object<void*> NewGraphic(void* alloc)
{
    Ta::Object<void*> graphic;
    MU_CHECK(TpGraphic_Construct(graphic.Out(), alloc));
    return graphic;
}

/// Draws over the lower half of a scan, each thing in a size that suits it.
class Draftsman final : public Mu::Tools::CommonTool
{
public:
    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        AddInput("Data", AT_END);
        AddMeasurementOutput("Elements", false, AT_END);
        AddRenderingOutput("Graphic", false);
        AddRenderingOutput("Graphics", true);
        AddRenderingOutput("NoGraphic", false);
        AddRenderingOutput("Off", false);
        FindOutputById("Off")->Enable(false);
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        LookAt(set.FindByName("Data")->Message(true).Get());
        const Ta::Object<void*> marks = NewGraphic(ToolAlloc());
        const Ta::Object<void*> lines = NewGraphic(ToolAlloc());
        const Ta::Object<void*> regions = NewGraphic(ToolAlloc());
        DrawMarks(marks.Get());
        DrawLines(lines.Get());
        DrawRegions(regions.Get());
        RenderGraphics("Graphic", regions.Get(), 1, false);
        RenderArrayedGraphics("Graphics", {lines, Ta::Object<void*>(), marks}, 1);
        RenderGraphics("NoGraphic", nullptr, 1, false);
        RenderGraphics("Off", marks.Get(), 1, false);
        const std::size_t count =
            TpGraphic_Count(marks.Get()) + TpGraphic_Count(lines.Get()) + TpGraphic_Count(regions.Get());
        SendMeasurement("Elements", static_cast<double>(count), false, nullptr);
    }

private:
    /// Where the data lies: its box, or the pixels of an image.
    void LookAt(void* message)
    {
        box = TvDataMsg_BoundingBox(message);
        isProfile = xzCastClass_ObjectIs(message, zTypeOf(TvProfileMsg));
        if (!TvDataMsg_HasBoundingBox(message))
        {
            const auto width = static_cast<double>(TvDataMsg_Width(message));
            const auto length = static_cast<double>(TvDataMsg_Length(message));
            box = {width / 2, length / 2, 0, width, length, 1};
        }
        unit = (isProfile ? box.width : std::min(box.width, box.length)) / 20;
    }

    /// A place by its shares of the box.
    [[nodiscard]] zPoint3d64f At(double across, double up) const
    {
        const double x = box.x + (across - 0.5) * box.width;
        return isProfile ? zPoint3d64f{x, box.y, box.z + (up - 0.5) * box.height}
                         : zPoint3d64f{x, box.y + (up - 0.5) * box.length, box.z};
    }

    void DrawMarks(void* graphic)
    {
        for (const int shape : {TpPOINT_SHAPE_CROSS, TpPOINT_SHAPE_SQUARE, TpPOINT_SHAPE_DOT})
        {
            GraphicAddPoint(graphic, At(0.1 + 0.05 * shape, 0.1), 8, FoundFeatureColor, ToolAlloc(), shape);
        }
        using TaPipe::TpGraphicPositionType;
        GraphicAddPosition(graphic, At(0.3, 0.3), TpGraphicPositionType::Result, ToolAlloc());
        GraphicAddPosition(graphic, At(0.4, 0.3), TpGraphicPositionType::Reference, ToolAlloc());
        GraphicAddPosition(graphic, At(0.5, 0.3), TpGraphicPositionType::Anchor, ToolAlloc());
        const zPoint3d64f place = At(0.7, 0.55);
        zPoint3d32f narrow{static_cast<float>(place.x), static_cast<float>(place.y), static_cast<float>(place.z)};
        GraphicAddLabel(graphic, "width 12.5 mm", &narrow, ToolAlloc());
        const double nan = std::numeric_limits<double>::quiet_NaN();
        GraphicAddPoint(graphic, {nan, 0, 0}, 8, FoundFeatureColor, ToolAlloc(), TpPOINT_SHAPE_DOT);
    }

    void DrawLines(void* graphic)
    {
        GraphicAddFittedLine(graphic, At(0.1, 0.2), At(0.9, 0.25), ToolAlloc());
        GraphicAddArrow(graphic, At(0.6, 0.4), At(0.75, 0.5), ToolAlloc());
        GraphicAddDistanceLines(graphic, AXIS_X, At(0.2, 0.45), At(0.5, 0.45), ToolAlloc());
        GraphicAddArc(graphic, At(0.8, 0.3), 2 * unit, 0, 270, isProfile ? PLANE_XZ : PLANE_XY, DecorationColor, 1,
                      ToolAlloc());
        GraphicAddMeasurementLines(graphic, AXIS_Z, At(0.9, 0.1), 0, ToolAlloc());
        GraphicAddRay(graphic, At(0.5, 0.6), {1, 1, 1}, 1, DecorationColor, ToolAlloc());
    }

    void DrawRegions(void* graphic)
    {
        const zPoint3d64f centre = At(0.25, 0.75);
        Mu::Vision::Region3d<double> region;
        region.x = centre.x;
        region.y = centre.y;
        region.z = centre.z;
        region.width = 6 * unit;
        region.length = 3 * unit;
        region.height = isProfile ? box.height / 4 : box.height;
        region.zAngle = 20;
        GraphicAddSurfaceRegion(graphic, region, ToolAlloc());
        Mu::Vision::RegionXZ<double> flat;
        flat.x = At(0.75, 0.75).x;
        flat.z = At(0.75, 0.75).z;
        flat.width = 4 * unit;
        flat.height = box.height / 4;
        flat.angle = 0;
        GraphicAddProfileRegion(graphic, flat, ToolAlloc());
        GraphicAddPlane(graphic, zPlane3d64f{At(0.6, 0.5), {1, 0.1, 0.2}}, ToolAlloc());
    }

    Ta::Params::Group params;
    zRect3d64f box{};
    double unit = 1;
    bool isProfile = false;
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<Draftsman>("Draftsman", "1.0"))
