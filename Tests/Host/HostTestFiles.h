#pragma once

#include "ScanTestFiles.h"

#include <Host/Job.h>
#include <Host/RunResult.h>
#include <Host/ToolRegistry.h>
#include <Host/ToolRunner.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// Words for tests of the host: plug-ins made for them, small jobs, results by name.
namespace Mu::Host::Testing
{
inline std::filesystem::path PluginFile(std::string_view name)
{
    return std::filesystem::path(MU_PLUGINS_DIR) / (std::string(name) + ".so");
}

/// The tools of the named plug-ins, and SurfaceHeight.
inline ToolRegistry RegistryOf(const std::vector<std::string>& plugins)
{
    ToolRegistry registry("7.8.9");
    registry.AddFolder(MU_TOOLS_DIR);
    for (const std::string& plugin : plugins)
    {
        registry.AddPlugin(PluginFile(plugin));
    }
    return registry;
}

/// A map with all heights valid but `HeightMap::nullHeight`, at 0.5 mm x 0.25 mm, 0.01 mm a count and 1 mm up.
inline HeightMap SmallMap(std::size_t width, std::vector<std::int16_t> heights)
{
    HeightMap map;
    map.width = width;
    map.length = heights.size() / width;
    map.validCount = static_cast<std::size_t>(
        std::ranges::count_if(heights, [](std::int16_t height) { return height != HeightMap::nullHeight; }));
    map.heights = std::move(heights);
    map.offsetMm = {10, 20, 1};
    map.scaleMm = {0.5, 0.25, 0.01};
    return map;
}

/// A scan file of 2 x 2 samples, 1 mm apart and 1 mm a count; a count of 0 is invalid.
inline std::filesystem::path WriteSmallScan(const std::filesystem::path& file, std::vector<std::uint16_t> heights)
{
    WriteBytes(file.string() + ".json", R"({"spacing": [1, 1, 1], "invalid": 0})");
    return WriteTiff(file, 2, heights);
}

/// What a tool with these parameters makes of one message on its input "Surface".
inline std::vector<Result> MeasureSurface(const ToolRegistry& registry, std::string_view type,
                                          const nlohmann::json& parameters, const Ta::Object<void*>& surface)
{
    const JobPlace place{"job.json", "tools[0]"};
    ToolRunner runner{*registry.Find(type), "measured", place};
    runner.Restore(parameters);
    runner.Route("Surface", "scan", place);
    runner.Start();
    auto results = runner.Execute({{"Surface", {surface}}});
    runner.Stop();
    return results;
}

/// The result of an output, and of an entry of an array. A failure of the test if there is none.
inline Result ResultOf(const std::vector<Result>& results, std::string_view output,
                       std::optional<std::size_t> index = {})
{
    const auto found = std::ranges::find_if(
        results, [&](const Result& result) { return result.output == output && result.index == index; });
    if (found == results.end())
    {
        ADD_FAILURE() << "there is no result of " << output;
        return {};
    }
    return *found;
}

inline std::size_t CountOf(const std::vector<Result>& results, std::string_view output)
{
    return static_cast<std::size_t>(std::ranges::count(results, output, &Result::output));
}
} // namespace Mu::Host::Testing
