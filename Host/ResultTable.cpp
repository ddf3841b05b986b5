#include <Host/ResultTable.h>

#include <Host/TextTable.h>

#include <fmt/format.h>

#include <optional>

namespace Mu::Host
{
namespace
{
constexpr std::size_t tableWidth = 80;

std::vector<std::string> RowOf(const std::string& scan, const Result& result)
{
    return {scan,
            TerminalText(result.tool),
            TerminalText(OutputText(result)),
            ValueText(result),
            result.state == ResultState::Value ? TerminalText(result.units) : std::string(),
            LimitsText(result),
            NameOf(result.decision)};
}

std::string ScanText(const ScanResult& scan, Notes notes)
{
    std::string text = fmt::format("{}: {}", TerminalText(scan.name), SizeText(scan));
    if (notes == Notes::Count)
    {
        return scan.notes.empty() ? text + '\n'
                                  : text + fmt::format("; {} note{} (--verbose)\n", scan.notes.size(),
                                                       scan.notes.size() == 1 ? "" : "s");
    }
    text += '\n';
    for (const std::string& note : scan.notes)
    {
        text += "  " + TerminalText(note) + '\n';
    }
    return text;
}

std::string DecisionText(const RunResult& run)
{
    const std::size_t passed = CountDecisions(run, Decision::Pass);
    const std::size_t failed = CountDecisions(run, Decision::Fail);
    const std::size_t undecided = CountDecisions(run, Decision::Null);
    if (passed + failed + undecided == 0)
    {
        return {};
    }
    std::string text = fmt::format("{} passed, {} failed", passed, failed);
    return undecided == 0 ? text + '\n' : text + fmt::format(", {} without a value to decide on\n", undecided);
}

std::string NumberText(double value, int digits)
{
    return fmt::format("{:.{}g}", value, digits);
}

/// Six, or as many more as tell a value from its limits.
int DigitsOf(const Result& result)
{
    constexpr int fewest = 6;
    constexpr int most = 17;
    const auto isTold = [&result](const std::optional<double>& limit, int digits) {
        return !limit || *limit == result.value || NumberText(*limit, digits) != NumberText(result.value, digits);
    };
    int digits = fewest;
    while (result.state == ResultState::Value && digits < most &&
           !(isTold(result.limits.lower, digits) && isTold(result.limits.upper, digits)))
    {
        ++digits;
    }
    return digits;
}
} // namespace

std::string OutputText(const Result& result)
{
    return result.index ? fmt::format("{}[{}]", result.output, *result.index) : result.output;
}

std::string ValueText(const Result& result)
{
    switch (result.state)
    {
    case ResultState::Value:
        return NumberText(result.value, DigitsOf(result));
    case ResultState::Data:
        return PipeDataTypeName(result.dataType);
    default:
        return NameOf(result.state);
    }
}

std::string LimitsText(const Result& result)
{
    const auto& [lower, upper] = result.limits;
    const int digits = DigitsOf(result);
    if (lower && upper)
    {
        return fmt::format("{} to {}", NumberText(*lower, digits), NumberText(*upper, digits));
    }
    if (lower)
    {
        return fmt::format("from {}", NumberText(*lower, digits));
    }
    return upper ? fmt::format("up to {}", NumberText(*upper, digits)) : std::string();
}

std::string SizeText(const ScanResult& scan)
{
    using TaPipe::PipeDataType;
    if (scan.dataType == PipeDataType::Image)
    {
        return fmt::format("{} x {} pixels", scan.width, scan.length);
    }
    const auto samples = static_cast<double>(scan.width) * static_cast<double>(scan.length);
    const double invalid = samples > 0 ? 100 * (samples - static_cast<double>(scan.validCount)) / samples : 0;
    const bool isProfile = scan.dataType == PipeDataType::UniformProfile || scan.dataType == PipeDataType::PointProfile;
    const std::string size =
        isProfile ? fmt::format("{} points", scan.width) : fmt::format("{} x {} samples", scan.width, scan.length);
    return fmt::format("{}, {:.1f} % without height", size, invalid);
}

std::string ResultTable(const RunResult& run, Notes notes)
{
    std::vector<std::vector<std::string>> rows;
    std::string below;
    for (const ScanResult& scan : run.scans)
    {
        const std::string name = TerminalText(scan.name);
        for (const Result& result : scan.results)
        {
            if (result.dataType != TaPipe::PipeDataType::Rendering)
            {
                rows.push_back(RowOf(name, result));
            }
        }
        below += ScanText(scan, notes);
    }
    const std::string table = LayOut({{"scan", Align::Left, Fit::Shortened},
                                      {"tool", Align::Left, Fit::Shortened},
                                      {"output", Align::Left, Fit::Shortened},
                                      {"value", Align::Right, Fit::Fixed},
                                      {"", Align::Left, Fit::Fixed},
                                      {"limits", Align::Left, Fit::Fixed},
                                      {"decision", Align::Left, Fit::Fixed}},
                                     rows, tableWidth);
    return table + (table.empty() ? "" : "\n") + below + DecisionText(run);
}
} // namespace Mu::Host
