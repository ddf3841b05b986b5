#include <Host/ResultTable.h>

#include <Host/TextTable.h>

#include <fmt/format.h>

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
            LimitsText(result.limits),
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
} // namespace

std::string ShortNumber(double value)
{
    return fmt::format("{:.6g}", value);
}

std::string OutputText(const Result& result)
{
    return result.index ? fmt::format("{}[{}]", result.output, *result.index) : result.output;
}

std::string ValueText(const Result& result)
{
    switch (result.state)
    {
    case ResultState::Value:
        return ShortNumber(result.value);
    case ResultState::Data:
        return PipeDataTypeName(result.dataType);
    default:
        return NameOf(result.state);
    }
}

std::string LimitsText(const Limits& limits)
{
    if (limits.lower && limits.upper)
    {
        return fmt::format("{} to {}", ShortNumber(*limits.lower), ShortNumber(*limits.upper));
    }
    if (limits.lower)
    {
        return fmt::format("from {}", ShortNumber(*limits.lower));
    }
    return limits.upper ? fmt::format("up to {}", ShortNumber(*limits.upper)) : std::string();
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
