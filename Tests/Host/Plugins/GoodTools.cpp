#include <MuTlkHelper/CommonTool.h>

#include <TaPipe/ToolPlugin.h>
#include <TaVision/TaVision.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

// Tools that do what a host has to cope with.
namespace
{
constexpr std::size_t AT_END = static_cast<std::size_t>(-1);

/// Parameters that come into being with others, two levels deep: "Count" brings "Region 1" ..., each of which has
/// "Points", which brings "Point 1" .... Gives the sum of all points.
class Dynamic final : public Mu::Tools::CommonTool
{
public:
    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        AddInput("Surface", AT_END).AddAcceptedDataFormat(PipeDataType::UniformSurface, false);
        AddMeasurementOutput("Sum", false, AT_END);
        count.EnableMinimum(0);
        count.EnableMaximum(4);
        params.Register("Count", count);
        CommonTool::Init(host, params);
    }

    void UpdateConfig() override
    {
        while (regions.size() < static_cast<std::size_t>(count.Get()))
        {
            regions.push_back(std::make_unique<Region>());
            params.Register("Region " + std::to_string(regions.size()), regions.back()->group);
        }
        for (const auto& region : regions)
        {
            region->Grow();
        }
    }

    void Execute(InputSet& /*set*/) override
    {
        double sum = 0;
        for (const auto& region : regions)
        {
            for (const auto& point : region->points)
            {
                sum += point->Get();
            }
        }
        SendMeasurement("Sum", sum, false, nullptr);
    }

private:
    struct Region
    {
        Region()
        {
            group.Register("Points", pointCount);
        }

        void Grow()
        {
            while (points.size() < pointCount.Get() && points.size() < 10)
            {
                points.push_back(std::make_unique<Ta::Params::Value<double>>());
                group.Register("Point " + std::to_string(points.size()), *points.back());
            }
        }

        Ta::Params::Group group;
        Ta::Params::Value<std::size_t> pointCount;
        std::vector<std::unique_ptr<Ta::Params::Value<double>>> points;
    };

    Ta::Params::Group params;
    Ta::Params::Value<int> count;
    std::vector<std::unique_ptr<Region>> regions;
};

/// Writes down in its parameter "Calls" what the host calls, and in which stage of life.
class Diary final : public Mu::Tools::CommonTool
{
public:
    using CommonTool::Init;

    void SetToolAllocator(void* alloc) override
    {
        CommonTool::SetToolAllocator(alloc);
        Note("allocator");
    }

    void Init(IToolHost& host) override
    {
        Note("init");
        AddInput("Surface", AT_END).AddAcceptedDataFormat(PipeDataType::UniformSurface, false);
        AddMeasurementOutput("Value", false, AT_END);
        params.Register("Calls", calls);
        params.Register("Number", number);
        params.Register("Region", region);
        region.Register("x", x);
        region.Register("width", width);
        CommonTool::Init(host, params);
    }

    void UpdateConfig() override
    {
        Note("config");
    }

    void OnInputRouted(ToolInputInfo& input, InputRoutedInfo info) override
    {
        Note("route " + std::string(input.Id()) + " " + info.sourceId);
        CommonTool::OnInputRouted(input, info);
    }

    void OnOutputParamsChanged(ToolOutputInfo& output) override
    {
        Note("limits " + std::string(output.Id()));
    }

    void Start() override
    {
        Note("start");
        CommonTool::Start();
    }

    void Execute(InputSet& /*set*/) override
    {
        Note("execute");
    }

    void Stop() override
    {
        Note("stop");
        CommonTool::Stop();
    }

private:
    void Note(const std::string& call)
    {
        calls.SetUnchecked(calls.Get() + call + "@" + std::to_string(static_cast<int>(LifeCycle())) + ";");
    }

    Ta::Params::Group params;
    Ta::Params::Group region;
    Ta::Params::Value<std::string> calls;
    Ta::Params::Value<int> number;
    Ta::Params::Value<double> x;
    Ta::Params::Value<double> width;
};

/// Every kind of thing that can leave an output.
class Sender final : public Mu::Tools::CommonTool
{
public:
    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        AddInput("Other", AT_END).AddAcceptedDataFormat(PipeDataType::Measurement, false).SetOptional(true);
        AddInput("Surface", AT_END).AddAcceptedDataFormat(PipeDataType::UniformSurface, false);
        AddInput("Second", AT_END).AddAcceptedDataFormat(PipeDataType::UniformSurface, false).SetOptional(true);
        for (const char* const id : {"Sequence", "Null", "Nothing", "NotANumber", "Off"})
        {
            AddMeasurementOutput(id, false, AT_END);
        }
        AddMeasurementOutput("List", true, AT_END).SetUnits("deg");
        AddMeasurementOutput("EmptyList", true, AT_END);
        AddOutput("Copy", AT_END).SetDataFormat(PipeDataType::UniformSurface, false);
        FindOutputById("Off")->Enable(false);
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        const InputItem* const second = set.FindByName("Second");
        const InputItem* const item = second != nullptr ? second : set.FindByName("Surface");
        const Ta::Object<void*> surface = item->Message(true);
        SendMeasurement("Sequence", static_cast<double>(TvDataMsg_Stamp(surface.Get()).sequence), false, nullptr);
        SendNull("Null");
        SendMeasurement("NotANumber", std::numeric_limits<double>::quiet_NaN(), false, nullptr);
        SendMeasurement("Off", 1, false, nullptr);
        SendArrayedMeasurements("List", {1, zNULL_64F, 3});
        SendArrayedMeasurements("EmptyList", {});
        Send(*FindOutputById("Copy"), surface, 1);
    }

private:
    Ta::Params::Group params;
};

/// Takes measurements and gives twice the one, and the number and the sum of the others.
class Doubler final : public Mu::Tools::CommonTool
{
public:
    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        acceptNullInputs = true;
        AddInput("Value", AT_END).AddAcceptedDataFormat(PipeDataType::Measurement, false);
        AddInput("Values", AT_END).AddAcceptedDataFormat(PipeDataType::Measurement, true).SetOptional(true);
        AddMeasurementOutput("Twice", false, AT_END);
        AddMeasurementOutput("Count", false, AT_END);
        AddMeasurementOutput("Sum", false, AT_END);
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        const Ta::Object<void*> value = set.FindByName("Value")->Message(true);
        SendMeasurement("Twice", value ? 2 * TvMeasureMsg_Value(value.Get()) : zNULL_64F, false, nullptr);
        if (const InputItem* const values = set.FindByName("Values"))
        {
            double sum = 0;
            for (std::size_t i = 0; i < values->MessageCount(); ++i)
            {
                const Ta::Object<void*> entry = values->MessageAt(i, true);
                sum += entry ? TvMeasureMsg_Value(entry.Get()) : 0;
            }
            SendMeasurement("Count", static_cast<double>(values->MessageCount()), false, nullptr);
            SendMeasurement("Sum", sum, false, nullptr);
        }
    }

private:
    Ta::Params::Group params;
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<Dynamic>("Dynamic", "1.2.3"), TaPipe::PluginTool<Diary>("Diary", "1.0"),
                TaPipe::PluginTool<Sender>("Sender", "1.0"), TaPipe::PluginTool<Doubler>("Doubler", "1.0"))
