#pragma once

#include <MuTlkHelper/CommonTool.h>
#include <TaVision/TaVision.h>

/// Measures how many points the surface on its only input has.
class CountTool final : public Mu::Tools::CommonTool
{
public:
    using Mu::Tools::CommonTool::Init;

    void Init(TaPipe::IToolHost& host) override
    {
        AddInput("Surface", AT_END).AddAcceptedDataFormat(PipeDataType::UniformSurface, false);
        AddMeasurementOutput("Count", false, AT_END).Enable(true);
        Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        void* const surface = GetDataMessageInput(set, "Surface");
        const double count = static_cast<double>(TvSurfaceMsg_Width(surface) * TvSurfaceMsg_Length(surface));
        SendMeasurement("Count", count, false, nullptr);
    }

private:
    static constexpr std::size_t AT_END = static_cast<std::size_t>(-1);

    Ta::Params::Group params{"Parameters"};
};
