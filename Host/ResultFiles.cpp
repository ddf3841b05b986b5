#include <Host/ResultFiles.h>

#include <fmt/format.h>

#include <cmath>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

constexpr int formatVersion = 1;
constexpr int indent = 4;

const char* NotFiniteText(double value)
{
    return std::isnan(value) ? "NaN" : value > 0 ? "Infinity" : "-Infinity";
}

json NumberJson(double value)
{
    return std::isfinite(value) ? json(value) : json(NotFiniteText(value));
}

/// The shortest text that reads back as the same number.
std::string NumberText(double value)
{
    return std::isfinite(value) ? fmt::format("{}", value) : NotFiniteText(value);
}

std::string NumberText(const std::optional<double>& value)
{
    return value ? NumberText(*value) : std::string();
}

json LimitsJson(const Limits& limits)
{
    json object = json::object();
    if (limits.lower)
    {
        object["lower"] = NumberJson(*limits.lower);
    }
    if (limits.upper)
    {
        object["upper"] = NumberJson(*limits.upper);
    }
    return object;
}

json OneResultJson(const Result& result)
{
    json object{{"tool", result.tool},
                {"type", result.toolType},
                {"output", result.output},
                {"dataType", PipeDataTypeName(result.dataType)},
                {"state", NameOf(result.state)}};
    if (result.index)
    {
        object["index"] = *result.index;
    }
    if (result.state == ResultState::Value)
    {
        object["value"] = NumberJson(result.value);
    }
    if (!result.units.empty())
    {
        object["units"] = result.units;
    }
    if (!result.limits.IsOpen())
    {
        object["limits"] = LimitsJson(result.limits);
    }
    if (result.decision != Decision::None)
    {
        object["decision"] = NameOf(result.decision);
    }
    return object;
}

std::string Field(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
    {
        return text;
    }
    std::string quoted = "\"";
    for (const char character : text)
    {
        quoted.append(character == '"' ? 2 : 1, character);
    }
    return quoted + '"';
}
} // namespace

json ResultJson(const RunResult& run)
{
    json scans = json::array();
    for (const ScanResult& scan : run.scans)
    {
        json results = json::array();
        for (const Result& result : scan.results)
        {
            results.push_back(OneResultJson(result));
        }
        scans.push_back({{"name", scan.name},
                         {"file", scan.file},
                         {"kind", PipeDataTypeName(scan.dataType)},
                         {"width", scan.width},
                         {"length", scan.length},
                         {"validCount", scan.validCount},
                         {"notes", scan.notes},
                         {"results", std::move(results)}});
    }
    return {{"version", formatVersion}, {"passed", HasPassed(run)}, {"scans", std::move(scans)}};
}

std::string ResultCsv(const RunResult& run)
{
    std::string text = "scan,tool,output,index,state,value,units,lower,upper,decision\n";
    for (const ScanResult& scan : run.scans)
    {
        for (const Result& result : scan.results)
        {
            text += fmt::format(
                "{},{},{},{},{},{},{},{},{},{}\n", Field(scan.file), Field(result.tool), Field(result.output),
                result.index ? std::to_string(*result.index) : "", NameOf(result.state),
                result.state == ResultState::Value ? NumberText(result.value) : std::string(), Field(result.units),
                NumberText(result.limits.lower), NumberText(result.limits.upper), NameOf(result.decision));
        }
    }
    return text;
}

std::string Dumped(const json& document)
{
    return document.dump(indent, ' ', false, json::error_handler_t::replace) + '\n';
}
} // namespace Mu::Host
