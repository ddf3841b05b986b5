#pragma once

#include <nlohmann/json.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mu::Host
{
/// A place in a job, for messages: the file, and the path in it as in "tools[1].outputs.Mean".
struct JobPlace
{
    std::filesystem::path file;
    std::string where;

    [[nodiscard]] JobPlace At(std::string_view key) const;
    [[nodiscard]] JobPlace At(std::size_t index) const;

    /// @throws Error  "file: where: problem. remedy."
    [[noreturn]] void Fail(std::string_view problem, std::string_view remedy) const;
};

struct ScanSetup
{
    std::filesystem::path file;
    nlohmann::json options; ///< for the reader; null if there are none
    JobPlace place;
};

/// What a job says of an output. A limit without value leaves its side open.
struct OutputSetup
{
    std::string id;
    std::optional<bool> enabled;
    bool hasLimits = false;
    std::optional<double> lowerLimit;
    std::optional<double> upperLimit;
    JobPlace place;
};

/// What becomes of values for parameters that are there to be read only.
enum class ReadOnlySetting
{
    Restored, ///< a tool wrote them into the job: they are put back
    Warned    ///< a user gave them: they are set, and the log says that they should not be
};

struct ToolSetup
{
    std::string id; ///< unique in the job, without '/'
    std::string type;
    std::string scanInput; ///< the input that the scan goes to; empty: the first one that takes it
    nlohmann::json parameters = nlohmann::json::object();
    ReadOnlySetting readOnlyValues = ReadOnlySetting::Restored;
    std::vector<OutputSetup> outputs;
    JobPlace place;
};

/// One end of a route, "tool/port" in a job.
struct Port
{
    std::string tool;
    std::string name;
};

struct RouteSetup
{
    Port from;
    Port to;
    JobPlace place;
};

/// What is to be run: scans, tools, and routes from outputs of tools to inputs of other tools.
struct Job
{
    std::vector<ScanSetup> scans;
    std::vector<ToolSetup> tools;
    std::vector<RouteSetup> routes;
};

/// Reads a job, a JSON object:
///
/// | key           | value                                                                                     |
/// |---------------|-------------------------------------------------------------------------------------------|
/// | `description` | text for people; may be left out                                                          |
/// | `scans`       | list of files, each a text or `{"file": ..., "options": {...}}`; relative to the job's file |
/// | `tools`       | list of tools, see below                                                                  |
/// | `routes`      | list of `{"from": "tool/output", "to": "tool/input"}`; may be left out                      |
///
/// A tool has `id` (the type if it is left out), `type`, `input` (the input that takes the scan), `parameters`, and
/// `outputs`: an object with, by the output's id, `enabled` (true or false) and `limits` (`[low, high]` in the output's
/// units, both inclusive, null for an open side). `id` and `type` are texts; all but `type` may be left out.
///
/// @throws Error  naming file, place and remedy: no JSON (of at most 64 MB, nested at most 64 deep), an unknown key, a
///                key twice in one object, a wrong type, no scan or no tool, an id twice, a route from or to a tool
///                that is not there
[[nodiscard]] Job ReadJob(const std::filesystem::path& file);

/// The text of a job's file. @throws Error if it is no file, cannot be read, or is larger than 64 MB
[[nodiscard]] std::string ReadJobFile(const std::filesystem::path& file);

/// Reads a job from its text. @param file  where it stands; scans are relative to it. @throws Error as `ReadJob`
[[nodiscard]] Job ReadJobText(const std::filesystem::path& file, std::string_view text);

/// The places of the tools in an order in which every tool comes after those that it is fed by; otherwise that of the
/// job. @throws Error if tools feed each other in a circle
[[nodiscard]] std::vector<std::size_t> ExecutionOrder(const Job& job);

/// The value of a decision limit given as text; empty is an open side. @throws Error if it is no finite number
[[nodiscard]] std::optional<double> ReadLimit(std::string_view text, const JobPlace& place);

/// Refuses limits of which none passes. @throws Error
void CheckLimits(const OutputSetup& output);
} // namespace Mu::Host
