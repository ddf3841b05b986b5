#include <Host/JobRunner.h>

#include <Host/Error.h>
#include <Host/FailureText.h>
#include <Host/Names.h>
#include <Host/ScanMessage.h>
#include <Host/ScanReader.h>
#include <Host/ToolRunner.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>

namespace Mu::Host
{
namespace
{
using TaPipe::PipeDataFormat;
using TaPipe::PipeDataType;

constexpr PipeDataFormat scanFormat{PipeDataType::UniformSurface, false};

bool Takes(const TaPipe::ToolInputInfo& input, PipeDataFormat format)
{
    const auto& accepted = input.AcceptedDataFormats();
    return accepted.empty() || std::ranges::find(accepted, format) != accepted.end();
}

std::string TextOf(PipeDataFormat format)
{
    return format.isArray ? fmt::format("arrays of {}", PipeDataTypeName(format.type))
                          : std::string(PipeDataTypeName(format.type));
}

/// A tool of the job, and where its inputs get their messages from.
struct Station
{
    struct Feed
    {
        std::string input;
        const Station* source; ///< null: the scan
        std::string output;
    };

    const ToolSetup* setup;
    ToolRunner runner;
    std::vector<Feed> feeds;
};

class Line
{
public:
    Line(const Job& job, const ToolRegistry& registry)
    {
        for (const ToolSetup& setup : job.tools)
        {
            stations.push_back(MakeStation(setup, registry));
        }
        for (const RouteSetup& route : job.routes)
        {
            Connect(route);
        }
        for (const auto& station : stations)
        {
            ConnectScan(*station);
            CheckRequiredInputs(*station);
        }
        for (const std::size_t index : ExecutionOrder(job))
        {
            order.push_back(stations[index].get());
        }
    }

    void Start()
    {
        for (Station* const station : order)
        {
            station->runner.Start();
        }
    }

    void Stop()
    {
        for (Station* const station : order)
        {
            station->runner.Stop();
        }
    }

    /// The results of all tools, in the order of the job.
    std::vector<Result> Execute(const Ta::Object<void*>& scan)
    {
        std::vector<std::vector<Result>> perTool(stations.size());
        for (Station* const station : order)
        {
            const auto place = std::ranges::find(stations, station, &std::unique_ptr<Station>::get);
            perTool[static_cast<std::size_t>(place - stations.begin())] = Execute(*station, scan);
        }
        std::vector<Result> results;
        for (auto& ofTool : perTool)
        {
            std::ranges::move(ofTool, std::back_inserter(results));
        }
        return results;
    }

private:
    static std::unique_ptr<Station> MakeStation(const ToolSetup& setup, const ToolRegistry& registry)
    {
        const ToolType& type = FindType(registry, setup.type, setup.place.At("type"));
        auto station = std::unique_ptr<Station>(new Station{&setup, {type, setup.id, setup.place}, {}});
        station->runner.Restore(setup.parameters);
        for (const OutputSetup& output : setup.outputs)
        {
            station->runner.ConfigureOutput(output);
        }
        return station;
    }

    Station& Find(const std::string& tool)
    {
        return **std::ranges::find_if(stations, [&](const auto& station) { return station->setup->id == tool; });
    }

    void Connect(const RouteSetup& route)
    {
        Station& from = Find(route.from.tool);
        Station& to = Find(route.to.tool);
        const PipeDataFormat format = from.runner.Output(route.from.name, route.place.At("from")).DataFormat();
        const TaPipe::ToolInputInfo& input = to.runner.Input(route.to.name, route.place.At("to"));
        if (!Takes(input, format))
        {
            route.place.Fail(fmt::format("the output gives {}, which the input does not take", TextOf(format)),
                             "Route an output of another kind, or another input");
        }
        to.runner.Route(route.to.name, route.from.tool + "/" + route.from.name, route.place);
        to.feeds.push_back({route.to.name, &from, route.from.name});
    }

    static bool IsFed(const Station& station, const std::string& input)
    {
        return std::ranges::find(station.feeds, input, &Station::Feed::input) != station.feeds.end();
    }

    /// The input that the scan goes to; empty if there is none.
    static std::string ScanInput(const Station& station)
    {
        TaPipe::ITool& tool = station.runner.Tool();
        for (std::size_t i = 0; i < tool.InputCount(); ++i)
        {
            const TaPipe::ToolInputInfo& input = tool.InputAt(i);
            if (Takes(input, scanFormat) && !IsFed(station, input.Id()))
            {
                return input.Id();
            }
        }
        return {};
    }

    static void CheckNamedInput(const Station& station)
    {
        const JobPlace place = station.setup->place.At("input");
        const TaPipe::ToolInputInfo& input = station.runner.Input(station.setup->scanInput, place);
        if (!Takes(input, scanFormat))
        {
            place.Fail(fmt::format("input {} does not take surfaces", Quoted(input.Id())), "Name one that does");
        }
        if (IsFed(station, input.Id()))
        {
            place.Fail(fmt::format("input {} has a route already", Quoted(input.Id())),
                       "Take the route away, or name another input");
        }
    }

    static void ConnectScan(Station& station)
    {
        std::string input = station.setup->scanInput;
        if (input.empty())
        {
            input = ScanInput(station);
        }
        else
        {
            CheckNamedInput(station);
        }
        if (input.empty())
        {
            return;
        }
        station.runner.Route(input, "scan", station.setup->place);
        // The data of a tool comes first in its input set: regions are placed by the first item.
        station.feeds.insert(station.feeds.begin(), {input, nullptr, ""});
    }

    static void CheckRequiredInputs(const Station& station)
    {
        TaPipe::ITool& tool = station.runner.Tool();
        for (std::size_t i = 0; i < tool.InputCount(); ++i)
        {
            const TaPipe::ToolInputInfo& input = tool.InputAt(i);
            if (!input.IsOptional() && !IsFed(station, input.Id()))
            {
                station.setup->place.Fail(
                    fmt::format("nothing comes to input {} of tool {}, which it cannot do without", Quoted(input.Id()),
                                Quoted(station.setup->id)),
                    "Add a route to it from another tool's output");
            }
        }
    }

    static std::vector<Result> Execute(Station& station, const Ta::Object<void*>& scan)
    {
        std::vector<Delivery> deliveries;
        for (const Station::Feed& feed : station.feeds)
        {
            auto messages = feed.source == nullptr ? std::vector{scan} : feed.source->runner.SentOn(feed.output);
            deliveries.push_back({feed.input, std::move(messages)});
        }
        return station.runner.Execute(deliveries);
    }

    std::vector<std::unique_ptr<Station>> stations;
    std::vector<Station*> order;
};

Ta::Object<void*> ReadAsMessage(const ScanSetup& setup, std::size_t sequence, ScanResult& result)
{
    const std::string optionsPlace = setup.place.file.string() + ": " + setup.place.where + ".options";
    const HeightMap map = ReadScan(setup.file, setup.options, optionsPlace);
    result.name = setup.file.filename().string();
    result.file = setup.file.string();
    result.width = map.width;
    result.length = map.length;
    result.validCount = map.validCount;
    result.notes = map.notes;
    try
    {
        return MakeSurfaceMessage(map, sequence, nullptr);
    }
    catch (const Ta::Exception&)
    {
        throw Error(setup.file, "", fmt::format("the scan cannot be handed to tools: {}", CurrentFailureText()),
                    "Close other programs, or export a smaller part of the scan");
    }
}
} // namespace

const ToolType& FindType(const ToolRegistry& registry, const std::string& name, const JobPlace& askedAt)
{
    const ToolType* const type = registry.Find(name);
    if (type == nullptr)
    {
        const auto names = registry.Names();
        askedAt.Fail(fmt::format("there is no tool {}", Quoted(name)),
                     names.empty() ? "No tools were found: name their folder with --tools" : KnownNames(name, names));
    }
    return *type;
}

RunResult RunJob(const Job& job, const ToolRegistry& registry)
{
    Line line(job, registry);
    line.Start();
    RunResult run;
    for (std::size_t i = 0; i < job.scans.size(); ++i)
    {
        ScanResult& result = run.scans.emplace_back();
        result.results = line.Execute(ReadAsMessage(job.scans[i], i, result));
    }
    line.Stop();
    return run;
}
} // namespace Mu::Host
