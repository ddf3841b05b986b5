#pragma once

#include <Tools/ToolGraphic.h>

#include <MuTlkHelper/CommonTool.h>

/// What all sample tools have in common: measurements, features, and a drawing of what was done.
class SampleTool : public Mu::Tools::CommonTool
{
protected:
    static constexpr std::size_t AT_END = static_cast<std::size_t>(-1);
    static constexpr const char* GRAPHIC = "Graphic";

    void AddMeasurement(const char* id, const char* displayName, const char* units)
    {
        AddMeasurementOutput(id, false, AT_END).SetDisplayName(displayName).SetUnits(units);
    }

    void AddFeature(const char* id, const char* displayName, PipeDataType type)
    {
        AddOutput(id, AT_END).SetDisplayName(displayName).SetDataFormat(type, false);
    }

    void AddGraphic()
    {
        AddRenderingOutput(GRAPHIC, false).AssociateOutput("*");
    }

    /// Sends what `draw(ToolGraphic&)` draws. It is not called, and nothing is made, if nobody looks.
    template <typename Draw>
    void SendGraphic(const Draw& draw)
    {
        if (!IsOutputEnabled(GRAPHIC))
        {
            return;
        }
        ToolGraphic graphic(toolAlloc);
        draw(graphic);
        RenderGraphics(GRAPHIC, graphic.Get(), WORLD_SPACE, false);
    }

    Ta::Params::Group params;

private:
    static constexpr z8u WORLD_SPACE = 1; ///< coordinates are those of the data, in mm
};
