#pragma once

#include <TaPipe/PipeDataType.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Mu::Host
{
/// What came out of an output in one execution.
enum class ResultState
{
    Value,      ///< a measurement with a value
    Data,       ///< a message of another kind
    Null,       ///< a null message: the tool could not tell
    EmptyArray, ///< an array without entries
    NotSent     ///< no message at all
};

/// What became of a value against its limits.
enum class Decision
{
    None, ///< there are no limits, so nothing was decided
    Pass,
    Fail, ///< also without limits, if the tool itself says so
    Null  ///< there are limits, but no value to hold against them; the run counts it as failed
};

/// Decision limits, both inclusive; an open side has no value.
struct Limits
{
    std::optional<double> lower;
    std::optional<double> upper;

    [[nodiscard]] bool IsOpen() const
    {
        return !lower && !upper;
    }
};

/// One message of an output in one execution, or that there was none.
struct Result
{
    std::string tool; ///< its id in the job
    std::string toolType;
    std::string output;
    std::optional<std::size_t> index; ///< the place in an array
    TaPipe::PipeDataType dataType = TaPipe::PipeDataType::None;
    ResultState state = ResultState::NotSent;
    double value = 0; ///< only if the state says so
    std::string units;
    Limits limits;
    Decision decision = Decision::None;
};

/// A scan, and what all tools of a job made of it, in the order of the job's tools and of their outputs.
struct ScanResult
{
    std::string name; ///< of the file, without folder
    std::string file;
    std::size_t width = 0;          ///< samples in a row, points of a profile
    std::size_t length = 0;         ///< rows, 1 for a profile
    std::size_t validCount = 0;     ///< samples with a value
    std::vector<std::string> notes; ///< of the reader
    std::vector<Result> results;
    TaPipe::PipeDataType dataType = TaPipe::PipeDataType::UniformSurface;
};

struct RunResult
{
    std::vector<ScanResult> scans;
};

/// The texts of states and decisions in tables and files.
[[nodiscard]] const char* NameOf(ResultState state);
[[nodiscard]] const char* NameOf(Decision decision);

/// How many results of a run have a decision.
[[nodiscard]] std::size_t CountDecisions(const RunResult& run, Decision decision);

/// Whether everything that was to be decided was decided well: no `Fail` and no `Null`.
[[nodiscard]] bool HasPassed(const RunResult& run);
} // namespace Mu::Host
