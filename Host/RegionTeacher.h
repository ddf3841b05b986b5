#pragma once

#include <Host/ToolRegistry.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace Mu::Host
{
/// One value of a region that was taught.
struct TaughtValue
{
    std::string tool;   ///< its id in the job
    std::string region; ///< keys of the groups, joined by slashes
    std::string key;
    nlohmann::json before; ///< null if the job did not give it
    nlohmann::json after;
};

struct TaughtJob
{
    std::vector<TaughtValue> values;
    std::string text; ///< the job's file with the new values
};

/// Makes the region values of a job relative to its anchors. The job gives them as they are drawn on a scan: as if no
/// anchor were routed. The job is run on that scan without its routes to anchor inputs, then again with them, which the
/// tools take for a change by the user: the regions stay where they are, and the tools tell the values relative to the
/// anchors, and the anchors' transform.
///
/// All regions of all tools with a routed anchor are taught; a tool for which the job gives no region values has placed
/// its regions on the scan by itself. All else in the job keeps its value and its place. If the job names the scan with
/// options for the reader, the scan is read with them. No file is written.
/// @throws Error  if the job is bad or has no route to an anchor, its scan cannot be read, no region follows an anchor,
///                an anchor's source gives no number on that scan, or a tool fails or gives nothing but nulls there
[[nodiscard]] TaughtJob TeachRegions(const std::filesystem::path& jobFile, const std::filesystem::path& scan,
                                     const ToolRegistry& registry);

/// What was taught, as a table for people.
[[nodiscard]] std::string TaughtTable(const TaughtJob& taught);
} // namespace Mu::Host
