#include <Host/JobLine.h>

#include <Host/AnchorInputs.h>
#include <Host/Error.h>
#include <Host/Names.h>

#include <TaVision/TvRenderingMsg.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <utility>

namespace Mu::Host
{
namespace
{
using TaPipe::PipeDataFormat;
using TaPipe::PipeDataType;

constexpr std::array scanTypes = {PipeDataType::UniformSurface, PipeDataType::PointSurface,
                                  PipeDataType::UniformProfile, PipeDataType::PointProfile, PipeDataType::Image};

bool Takes(const TaPipe::ToolInputInfo& input, PipeDataFormat format)
{
    const auto& accepted = input.AcceptedDataFormats();
    return accepted.empty() || std::ranges::find(accepted, format) != accepted.end();
}

bool TakesScans(const TaPipe::ToolInputInfo& input)
{
    return std::ranges::any_of(scanTypes, [&](PipeDataType type) { return Takes(input, {type, false}); });
}

std::string KindsOf(const TaPipe::ToolInputInfo& input)
{
    std::string kinds;
    for (const PipeDataFormat& format : input.AcceptedDataFormats())
    {
        kinds += (kinds.empty() ? "" : ", ") + std::string(PipeDataTypeName(format.type));
    }
    return kinds;
}

std::string TextOf(PipeDataFormat format)
{
    return format.isArray ? fmt::format("arrays of {}", PipeDataTypeName(format.type))
                          : std::string(PipeDataTypeName(format.type));
}
} // namespace

/// A tool of the job, and where its inputs get their messages from.
struct JobLine::Station
{
    struct Feed
    {
        std::string input;
        const Station* source; ///< null: the scan
        std::string output;
        const RouteSetup* route; ///< null: the scan
    };

    [[nodiscard]] bool IsFed(const std::string& input) const
    {
        return std::ranges::find(feeds, input, &Feed::input) != feeds.end() ||
               std::ranges::find(putOff, input, &Feed::input) != putOff.end();
    }

    void Make(const Feed& feed)
    {
        runner.Route(feed.input, feed.source->setup->id + "/" + feed.output, feed.route->place);
        feeds.push_back(feed);
    }

    void ConnectScan();
    void CheckRequiredInputs() const;
    void PutDataFirst();
    [[nodiscard]] std::vector<Result> Execute(const ScanData& scan);

    const ToolSetup* setup;
    ToolRunner runner;
    std::vector<Feed> feeds;
    std::vector<Feed> putOff; ///< to anchor inputs, not made yet

private:
    [[nodiscard]] std::string ScanInput() const;
    void CheckNamedInput() const;
    void CheckTaken(const std::string& input, PipeDataType type) const;
};

/// The input that the scan goes to; empty if there is none.
std::string JobLine::Station::ScanInput() const
{
    TaPipe::ITool& tool = runner.Tool();
    for (std::size_t i = 0; i < tool.InputCount(); ++i)
    {
        const TaPipe::ToolInputInfo& input = tool.InputAt(i);
        if (TakesScans(input) && !IsFed(input.Id()))
        {
            return input.Id();
        }
    }
    return {};
}

void JobLine::Station::CheckNamedInput() const
{
    const JobPlace place = setup->place.At("input");
    const TaPipe::ToolInputInfo& input = runner.Input(setup->scanInput, place);
    if (!TakesScans(input))
    {
        place.Fail(fmt::format("input {} does not take scans", Quoted(input.Id())), "Name one that does");
    }
    if (IsFed(input.Id()))
    {
        place.Fail(fmt::format("input {} has a route already", Quoted(input.Id())),
                   "Take the route away, or name another input");
    }
}

void JobLine::Station::ConnectScan()
{
    std::string input = setup->scanInput;
    if (input.empty())
    {
        input = ScanInput();
    }
    else
    {
        CheckNamedInput();
    }
    if (input.empty())
    {
        return;
    }
    runner.Route(input, "scan", setup->place);
    feeds.insert(feeds.begin(), {input, nullptr, "", nullptr});
}

void JobLine::Station::CheckRequiredInputs() const
{
    TaPipe::ITool& tool = runner.Tool();
    for (std::size_t i = 0; i < tool.InputCount(); ++i)
    {
        const TaPipe::ToolInputInfo& input = tool.InputAt(i);
        if (!input.IsOptional() && !IsFed(input.Id()))
        {
            setup->place.Fail(fmt::format("nothing comes to input {} of tool {}, which it cannot do without",
                                          Quoted(input.Id()), Quoted(setup->id)),
                              "Add a route to it from another tool's output");
        }
    }
}

/// Regions are placed by the first data of an input set, and look at its first item.
void JobLine::Station::PutDataFirst()
{
    const auto isData = [this](const Feed& feed) {
        return feed.source == nullptr ||
               feed.source->runner.Output(feed.output, setup->place).DataFormat().type != PipeDataType::Measurement;
    };
    // Not std::stable_partition, which newer compilers reject in this standard library as deprecated.
    std::vector<Feed> ordered;
    std::ranges::copy_if(feeds, std::back_inserter(ordered), isData);
    std::ranges::copy_if(feeds, std::back_inserter(ordered), std::not_fn(isData));
    feeds = std::move(ordered);
}

void JobLine::Station::CheckTaken(const std::string& input, PipeDataType type) const
{
    const TaPipe::ToolInputInfo& target = runner.Input(input, setup->place);
    if (!Takes(target, {type, false}))
    {
        setup->place.Fail(fmt::format("input {} of tool {} does not take this kind of scan, {}", Quoted(input),
                                      Quoted(setup->id), PipeDataTypeName(type)),
                          fmt::format("Give scans of a kind that it takes ({}), or name another input as \"input\"",
                                      KindsOf(target)));
    }
}

std::vector<Result> JobLine::Station::Execute(const ScanData& scan)
{
    std::vector<Delivery> deliveries;
    for (const Feed& feed : feeds)
    {
        if (feed.source == nullptr)
        {
            CheckTaken(feed.input, scan.type);
        }
        auto messages = feed.source == nullptr ? std::vector{scan.message} : feed.source->runner.SentOn(feed.output);
        deliveries.push_back({feed.input, std::move(messages)});
    }
    return runner.Execute(deliveries);
}

JobLine::JobLine(const Job& job, const ToolRegistry& registry, AnchorRoutes anchorRoutes)
{
    for (const ToolSetup& setup : job.tools)
    {
        const ToolType& type = FindType(registry, setup.type, setup.place.At("type"));
        auto& station = stations.emplace_back(new Station{&setup, {type, setup.id, setup.place}, {}, {}});
        station->runner.Restore(setup.parameters, setup.readOnlyValues);
        std::ranges::for_each(setup.outputs, [&](const auto& output) { station->runner.ConfigureOutput(output); });
    }
    for (const RouteSetup& route : job.routes)
    {
        Connect(route, anchorRoutes);
    }
    for (const auto& station : stations)
    {
        station->ConnectScan();
        station->CheckRequiredInputs();
        station->PutDataFirst();
    }
    for (const std::size_t index : ExecutionOrder(job))
    {
        order.push_back(stations[index].get());
    }
}

JobLine::~JobLine() = default;

JobLine::Station& JobLine::Find(const std::string& tool) const
{
    return **std::ranges::find_if(stations, [&](const auto& station) { return station->setup->id == tool; });
}

void JobLine::Connect(const RouteSetup& route, AnchorRoutes anchorRoutes)
{
    const Station& from = Find(route.from.tool);
    Station& to = Find(route.to.tool);
    const PipeDataFormat format = from.runner.Output(route.from.name, route.place.At("from")).DataFormat();
    if (!Takes(to.runner.Input(route.to.name, route.place.At("to")), format))
    {
        route.place.Fail(fmt::format("the output gives {}, which the input does not take", TextOf(format)),
                         "Route an output of another kind, or another input");
    }
    const Station::Feed feed{route.to.name, &from, route.from.name, &route};
    if (anchorRoutes == AnchorRoutes::Later && IsAnchorInput(route.to.name))
    {
        to.putOff.push_back(feed);
    }
    else
    {
        to.Make(feed);
    }
}

void JobLine::RouteAnchors()
{
    for (const auto& station : stations)
    {
        for (const Station::Feed& feed : std::exchange(station->putOff, {}))
        {
            station->Make(feed);
        }
    }
}

void JobLine::Start()
{
    for (Station* const station : order)
    {
        station->runner.Start();
    }
}

void JobLine::Stop()
{
    for (Station* const station : order)
    {
        station->runner.Stop();
    }
}

std::vector<Result> JobLine::Execute(const ScanData& scan)
{
    std::vector<std::vector<Result>> perTool(stations.size());
    for (Station* const station : order)
    {
        const auto place = std::ranges::find(stations, station, &std::unique_ptr<Station>::get);
        perTool[static_cast<std::size_t>(place - stations.begin())] = station->Execute(scan);
    }
    std::vector<Result> results;
    for (auto& ofTool : perTool)
    {
        std::ranges::move(ofTool, std::back_inserter(results));
    }
    return results;
}

std::vector<Ta::Object<void*>> JobLine::Renderings() const
{
    std::vector<Ta::Object<void*>> renderings;
    for (const auto& station : stations)
    {
        TaPipe::ITool& tool = station->runner.Tool();
        for (std::size_t i = 0; i < tool.OutputCount(); ++i)
        {
            const TaPipe::ToolOutputInfo& output = tool.OutputAt(i);
            if (output.IsEnabled() && output.DataFormat().type == PipeDataType::Rendering)
            {
                std::ranges::copy_if(
                    station->runner.SentOn(output.Id()), std::back_inserter(renderings),
                    [](const auto& message) { return xzCastClass_ObjectIs(message.Get(), zTypeOf(TvRenderingMsg)); });
            }
        }
    }
    return renderings;
}

const ToolRunner& JobLine::RunnerAt(std::size_t index) const
{
    return stations.at(index)->runner;
}

const ToolRunner& JobLine::RunnerOf(const std::string& tool) const
{
    return Find(tool).runner;
}

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
} // namespace Mu::Host
