#pragma once

#include <MuTlkHelper/GraphicUtils.h>
#include <MuTlkHelper/PointUtils.h>

#include <MuVision/Regions.h>
#include <TaApi/Object.h>
#include <TaPipe/TpGraphic.h>
#include <TaPipe/TpGraphicPointSet.h>

#include <utility>

/// The colours of the sample tools, 0xAARRGGBB. They are to be seen on a height map that runs from dark blue to yellow,
/// and on white: a luminance between those of the ends has a contrast of 3 to both and to white, and the hue, which no
/// such map has, sets it off from the middle. Dimensions are in the library's yellow, within a dark casing that carries
/// them over what is bright.
struct ToolColours
{
    static constexpr z32u FOUND = 0xFFFF0075U;  ///< points and lines that a tool found or was given: rose
    static constexpr z32u CASING = 0xFF202020U; ///< under dimensions: nearly black
};

/// What a sample tool draws, in the one style of all of them.
class ToolGraphic
{
public:
    /// @param elementAlloc  where the graphic and its elements are made
    explicit ToolGraphic(void* elementAlloc)
        : alloc(elementAlloc)
    {
        MU_CHECK(TpGraphic_Construct(graphic.Out(), alloc));
    }

    /// The display list (`TpGraphic`), which lives as long as this.
    [[nodiscard]] void* Get() const
    {
        return graphic.Get();
    }

    void AddRegion(const Mu::Vision::Region3d<double>& region)
    {
        Mu::TlkHelper::GraphicAddSurfaceRegion(Get(), region, alloc);
    }

    void AddRegion(const Mu::Vision::RegionXZ<double>& region)
    {
        Mu::TlkHelper::GraphicAddProfileRegion(Get(), region, alloc);
    }

    void AddPoint(const zPoint3d64f& point)
    {
        Mu::TlkHelper::GraphicAddPoint(Get(), point, DOT_SIZE, ToolColours::FOUND, alloc, TpPOINT_SHAPE_DOT);
    }

    void AddLine(const zLine3d64f& line)
    {
        Mu::TlkHelper::GraphicAddInfiniteLine(Get(), line, ToolColours::FOUND, FOUND_WIDTH, alloc);
    }

    /// A plane has no colour of its own: the host shows it as it shows planes.
    void AddPlane(const zPlane3d64f& plane)
    {
        Mu::TlkHelper::GraphicAddPlane(Get(), plane, alloc);
    }

    /// A place on a surface: a dot, with lines across where its x and its y are.
    void AddPlace(const zPoint3d64f& place)
    {
        AddCasing(place, {0, 1, 0});
        AddCasing(place, {1, 0, 0});
        Mu::TlkHelper::GraphicAddMeasurementLines(Get(), Mu::TlkHelper::AXIS_X, place, 0, alloc);
        Mu::TlkHelper::GraphicAddMeasurementLines(Get(), Mu::TlkHelper::AXIS_Y, place, 0, alloc);
        AddPoint(place);
    }

    /// A place on a profile: a dot and, if the box of the data is known, lines across where its x and its z are.
    void AddPlace(const zPoint64f& place, const zRect3d64f& bounds)
    {
        const zPoint3d64f dot = Mu::TlkHelper::Convert2dPoint64to3dPoint64(place);
        if (bounds.x != zNULL_64F)
        {
            AddCasing(dot, {0, 0, 1});
            AddCasing(dot, {1, 0, 0});
            Mu::TlkHelper::GraphicAddProfileMeasurementLines(Get(), Mu::TlkHelper::AXIS_X, place, 0, bounds, alloc);
            Mu::TlkHelper::GraphicAddProfileMeasurementLines(Get(), Mu::TlkHelper::AXIS_Z, place, 0, bounds, alloc);
        }
        AddPoint(dot);
    }

    /// The dimension line of a distance.
    void AddDistance(const zPoint3d64f& from, const zPoint3d64f& to)
    {
        Mu::TlkHelper::GraphicAddLineSegment(Get(), from, to, CASING_WIDTH, ToolColours::CASING, alloc);
        Mu::TlkHelper::GraphicAddDistanceLines(Get(), Mu::TlkHelper::AXIS_DIRECT, from, to, alloc);
    }

    /// An angle at `vertex`: an arm along each of two directions of length 1, and an arc of `radius` from one to the
    /// other. The library's own angle lines reach across a region, on the first axis that they move along at all; of
    /// directions that hardly move along it they would be without end.
    void AddAngle(const zPoint3d64f& vertex, const zPoint3d64f& from, const zPoint3d64f& to, double radius)
    {
        using Style = std::pair<float, z32u>;
        for (const auto& [width, colour] :
             {Style{CASING_WIDTH, ToolColours::CASING}, Style{DECORATION_WIDTH, Mu::TlkHelper::DecorationColor}})
        {
            for (const zPoint3d64f& arm : {from, to})
            {
                const zPoint3d64f end{vertex.x + ARM * radius * arm.x, vertex.y + ARM * radius * arm.y,
                                      vertex.z + ARM * radius * arm.z};
                Mu::TlkHelper::GraphicAddLineSegment(Get(), vertex, end, width, colour, alloc);
            }
            Mu::TlkHelper::GraphicAddArcXYZ(Get(), width, colour, vertex, from, to, radius, alloc);
        }
    }

private:
    static constexpr float DOT_SIZE = 8;
    static constexpr float FOUND_WIDTH = 2;
    static constexpr float DECORATION_WIDTH = 1;
    static constexpr float CASING_WIDTH = 2;
    static constexpr double ARM = 1.25; ///< the arms, in radii of the arc

    void AddCasing(const zPoint3d64f& point, const zPoint3d64f& direction)
    {
        Mu::TlkHelper::GraphicAddInfiniteLine(Get(), point, direction, ToolColours::CASING, CASING_WIDTH, alloc);
    }

    void* alloc;
    Ta::Object<void*> graphic;
};
