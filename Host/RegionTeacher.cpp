#include <Host/RegionTeacher.h>

#include <Host/AnchorInputs.h>
#include <Host/Error.h>
#include <Host/Job.h>
#include <Host/JobLine.h>
#include <Host/JobRunner.h>
#include <Host/JsonText.h>
#include <Host/ParameterKeys.h>
#include <Host/TextTable.h>

#include <TaApi/JsonSerializer.h>
#include <TaApi/PropertiesValue.h>
#include <TaVision/TvMeasureMsg.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <system_error>

namespace Mu::Host
{
namespace
{
using nlohmann::json;
using nlohmann::ordered_json;
using Ta::Properties::Leaf;
using Ta::Properties::Structure;

constexpr std::size_t tableWidth = 80;

/// What an anchor changes of a region, in the order in which regions have it.
constexpr std::array<std::string_view, 10> regionKeys = {"x",      "y",      "z",      "width",  "length",
                                                         "height", "xAngle", "yAngle", "zAngle", "transformMatrix"};

constexpr std::string_view transformKey = regionKeys.back();
constexpr std::array<double, 16> identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// A region among the parameters of a tool.
struct Region
{
    std::vector<std::string> path;
    const Structure* group;
};

bool IsUsed(const Ta::Properties::Node& node)
{
    const auto* const used = dynamic_cast<const Ta::Properties::Value<bool>*>(node.FindSchema("used"));
    return used == nullptr || used->Get();
}

void CollectRegions(const Structure& group, const std::vector<std::string>& path, std::vector<Region>& regions)
{
    // A region that is not in use was not placed, and stands for nothing.
    if (IsRegion(group) && IsUsed(group))
    {
        regions.push_back({path, &group});
    }
    for (std::size_t i = 0; i < group.Count(); ++i)
    {
        if (const auto* const inner = dynamic_cast<const Structure*>(&group.At(i)))
        {
            std::vector<std::string> innerPath = path;
            innerPath.push_back(inner->Name());
            CollectRegions(*inner, innerPath, regions);
        }
    }
}

std::vector<Region> RegionsOf(const ToolRunner& runner)
{
    std::vector<Region> regions;
    if (const auto* const root = dynamic_cast<const Structure*>(&runner.Tool().Params()))
    {
        CollectRegions(*root, {}, regions);
    }
    return regions;
}

bool IsFinite(const json& value)
{
    return value.is_array() ? std::ranges::all_of(value, IsFinite)
                            : value.is_number() && std::isfinite(value.get<double>());
}

std::string Joined(const std::vector<std::string>& path)
{
    std::string text;
    for (const std::string& key : path)
    {
        text.append(text.empty() ? "" : "/").append(key);
    }
    return text;
}

/// One lesson: a job, a scan, and the tools that follow an anchor.
class Lesson
{
public:
    Lesson(const std::filesystem::path& file, std::string_view jobText)
        : jobFile(file)
        , text(jobText)
        , job(ReadJobText(file, text))
    {
        for (const RouteSetup& route : job.routes)
        {
            if (IsAnchorInput(route.to.name))
            {
                anchorRoutes.push_back(&route);
            }
        }
        if (anchorRoutes.empty())
        {
            JobPlace{jobFile, "routes"}.Fail(
                "no route leads to an anchor, so there is nothing that a region could follow",
                "Add routes from a tool's measurements to \"AnchorX\", ... of the tools whose regions are to follow");
        }
    }

    TaughtJob Give(const std::filesystem::path& scanFile, const ToolRegistry& registry)
    {
        JobLine line(job, registry, AnchorRoutes::Later);
        CheckRegions(line);
        CheckDrawn(line);
        NoteSources(line);
        const ScanSetup setup = SetupOf(scanFile);
        RequireScan(setup);
        ScanResult scanResult;
        const ScanData scanData = ReadScanData(setup, 0, scanResult);
        scan = scanFile.string();
        line.Start();
        static_cast<void>(line.Execute(scanData));
        line.Stop();
        CheckPlaced(line);
        line.RouteAnchors();
        line.Start();
        static_cast<void>(line.Execute(scanData));
        CheckAnchors(line);
        CheckTools(line);
        line.Stop();
        return Written(line);
    }

private:
    [[nodiscard]] bool Follows(const std::string& tool) const
    {
        return std::ranges::any_of(anchorRoutes, [&](const RouteSetup* route) { return route->to.tool == tool; });
    }

    /// Calls `act(place of the tool in the job, its runner)` for every tool that follows an anchor.
    template <typename Act>
    void ForFollowers(const JobLine& line, const Act& act) const
    {
        for (std::size_t i = 0; i < job.tools.size(); ++i)
        {
            if (Follows(job.tools[i].id))
            {
                act(i, line.RunnerAt(i));
            }
        }
    }

    /// The tools that anchors come from, directly or by way of others, and whose regions the job does not give: other
    /// scans would place these regions elsewhere, so they are written, too.
    void NoteSources(const JobLine& line)
    {
        std::vector<std::string> open;
        std::ranges::transform(anchorRoutes, std::back_inserter(open), [](auto* route) { return route->from.tool; });
        std::vector<std::string> sources;
        while (!open.empty())
        {
            const std::string tool = open.back();
            open.pop_back();
            if (std::ranges::find(sources, tool) != sources.end())
            {
                continue;
            }
            sources.push_back(tool);
            for (const RouteSetup& route : job.routes)
            {
                if (route.to.tool == tool)
                {
                    open.push_back(route.from.tool);
                }
            }
        }
        std::ranges::copy_if(sources, std::back_inserter(placedSources), [&](const std::string& tool) {
            return !Follows(tool) && line.RunnerOf(tool).TakesDefaults();
        });
    }

    [[nodiscard]] bool IsPlacedSource(const std::string& tool) const
    {
        return std::ranges::find(placedSources, tool) != placedSources.end();
    }

    /// Calls `act(place of the tool in the job, its runner)` for every tool whose regions are written.
    template <typename Act>
    void ForTaught(const JobLine& line, const Act& act) const
    {
        for (std::size_t i = 0; i < job.tools.size(); ++i)
        {
            if (Follows(job.tools[i].id) || IsPlacedSource(job.tools[i].id))
            {
                act(i, line.RunnerAt(i));
            }
        }
    }

    /// A region with the transform of an anchor was taught before: its values are no drawn ones.
    void CheckDrawn(const JobLine& line) const
    {
        ForFollowers(line, [this](std::size_t tool, const ToolRunner& runner) {
            for (const Region& region : RegionsOf(runner))
            {
                const auto* const leaf =
                    dynamic_cast<const Ta::Properties::Value<std::vector<double>>*>(region.group->Find(transformKey));
                if (leaf != nullptr && !leaf->Get().empty() && !std::ranges::equal(leaf->Get(), identity))
                {
                    job.tools[tool]
                        .place.At("parameters")
                        .At(Joined(region.path))
                        .At(std::string(transformKey))
                        .Fail(
                            "the region was taught before: its values are relative to its anchors, not drawn on a scan",
                            "Write its values in coordinates of the scan and take transformMatrix out, or take the "
                            "whole "
                            "region out to have it placed");
                }
            }
        });
    }

    /// The scan as the job has it, else as on a command line.
    [[nodiscard]] ScanSetup SetupOf(const std::filesystem::path& file) const
    {
        ScanSetup setup{file, {}, {"command line", "SCAN"}};
        for (const ScanSetup& known : job.scans)
        {
            std::error_code ignored;
            if (!known.options.is_null() && std::filesystem::equivalent(known.file, file, ignored))
            {
                setup.options = known.options;
                setup.place = known.place;
                break;
            }
        }
        return setup;
    }

    void CheckRegions(const JobLine& line) const
    {
        std::size_t count = 0;
        ForFollowers(line,
                     [&count](std::size_t /*tool*/, const ToolRunner& runner) { count += RegionsOf(runner).size(); });
        if (count == 0)
        {
            JobPlace{jobFile, "tools"}.Fail("none of the tools with a routed anchor has a region in use",
                                            "Route the anchors to tools with regions");
        }
    }

    void CheckPlaced(const JobLine& line) const
    {
        ForTaught(line, [this](std::size_t tool, const ToolRunner& runner) {
            if (runner.TakesDefaults() && !RegionsOf(runner).empty())
            {
                job.tools[tool].place.Fail(
                    fmt::format("the regions of tool {} have no values, and {} has no data to place them by",
                                Quoted(runner.Id()), scan),
                    "Give the values in the job, or teach on another scan");
            }
        });
    }

    void CheckAnchors(const JobLine& line) const
    {
        for (const RouteSetup* const route : anchorRoutes)
        {
            const auto messages = line.RunnerOf(route->from.tool).SentOn(route->from.name);
            void* const message = messages.empty() ? nullptr : messages.front().Get();
            const bool hasValue = xzCastClass_ObjectIs(message, zTypeOf(TvMeasureMsg));
            if (!hasValue || !std::isfinite(TvMeasureMsg_Value(message)))
            {
                route->place.Fail(fmt::format("{} gives no value on {}, so {} cannot be taught",
                                              Quoted(route->from.tool + "/" + route->from.name), scan,
                                              Quoted(route->to.tool + "/" + route->to.name)),
                                  "Teach on a scan on which it finds its feature, or correct its parameters");
            }
        }
    }

    void CheckTools(const JobLine& line) const
    {
        ForFollowers(line, [this](std::size_t tool, const ToolRunner& runner) {
            if (runner.GaveOnlyNulls())
            {
                job.tools[tool].place.Fail(
                    fmt::format("tool {} gives nothing on {}: it failed, or finds nothing in its regions",
                                Quoted(runner.Id()), scan),
                    "Draw the regions where there is something to measure, or correct the tool's parameters");
            }
        });
    }

    [[nodiscard]] TaughtJob Written(const JobLine& line) const
    {
        TaughtJob taught;
        ordered_json document = ordered_json::parse(text);
        ForTaught(line, [&](std::size_t tool, const ToolRunner& runner) {
            for (const Region& region : RegionsOf(runner))
            {
                WriteRegion(region, tool, document["tools"][tool]["parameters"], taught.values);
            }
        });
        taught.text = LaidOut(document);
        return taught;
    }

    void WriteRegion(const Region& region, std::size_t tool, ordered_json& parameters,
                     std::vector<TaughtValue>& values) const
    {
        ordered_json* group = &parameters;
        for (const std::string& key : region.path)
        {
            group = &(*group)[key];
        }
        for (const std::string_view key : regionKeys)
        {
            const auto* const leaf = dynamic_cast<const Leaf*>(region.group->Find(key));
            const bool hasAnchor = key != transformKey || Follows(job.tools[tool].id);
            if (leaf == nullptr || !IsUsed(*leaf) || !hasAnchor)
            {
                continue;
            }
            const std::string name(key);
            TaughtValue value{job.tools[tool].id, Joined(region.path), name, nullptr,
                              Ta::Properties::JsonSerializer::Serialize(*leaf)};
            if (!IsFinite(value.after))
            {
                job.tools[tool]
                    .place.At("parameters")
                    .At(value.region)
                    .At(name)
                    .Fail("the value relative to the anchor is no finite number", "Correct the region, or its anchors");
            }
            value.before = group->contains(name) ? json((*group)[name]) : json();
            (*group)[name] = value.after;
            values.push_back(std::move(value));
        }
    }

    std::filesystem::path jobFile;
    std::string text;
    Job job;
    std::vector<const RouteSetup*> anchorRoutes;
    std::vector<std::string> placedSources;
    std::string scan;
};

std::string ValueText(const json& value)
{
    return value.is_null() ? "-" : TerminalText(value.dump(-1, ' ', false, json::error_handler_t::replace));
}
} // namespace

TaughtJob TeachRegions(const std::filesystem::path& jobFile, const std::filesystem::path& scan,
                       const ToolRegistry& registry)
{
    return Lesson(jobFile, ReadJobFile(jobFile)).Give(scan, registry);
}

std::string TaughtTable(const TaughtJob& taught)
{
    std::vector<std::vector<std::string>> rows;
    for (const TaughtValue& value : taught.values)
    {
        rows.push_back({TerminalText(value.tool), TerminalText(value.region), value.key, ValueText(value.before),
                        ValueText(value.after)});
    }
    return LayOut({{"tool", Align::Left, Fit::Fixed},
                   {"region", Align::Left, Fit::Fixed},
                   {"key", Align::Left, Fit::Fixed},
                   {"before", Align::Left, Fit::Shortened},
                   {"after", Align::Left, Fit::Shortened}},
                  rows, tableWidth);
}
} // namespace Mu::Host
