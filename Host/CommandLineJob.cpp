#include <Host/CommandLineJob.h>

#include <Host/Error.h>

#include <TaApi/Exception.h>
#include <TaApi/JsonSerializer.h>

#include <fmt/format.h>

#include <algorithm>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

constexpr std::size_t deepestKey = 32;

struct Assignment
{
    std::string key;
    std::string value;
};

Assignment Split(const std::string& word, const JobPlace& place, const char* form)
{
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0)
    {
        place.Fail(fmt::format("{} is incomplete", Quoted(word)), fmt::format("Write it as {}", form));
    }
    return {word.substr(0, equals), word.substr(equals + 1)};
}

json ValueOf(const std::string& text)
{
    try
    {
        return Ta::Properties::JsonSerializer::Parse(text);
    }
    catch (const Ta::Exception&)
    {
        return text;
    }
}

/// The place in `values` that a path names; groups on the way are made.
json& AtPath(json& values, const std::string& path, const JobPlace& place)
{
    json* at = &values;
    std::size_t depth = 0;
    for (std::size_t begin = 0; begin != std::string::npos;)
    {
        const std::size_t slash = path.find('/', begin);
        const std::string key = path.substr(begin, slash == std::string::npos ? slash : slash - begin);
        if (key.empty() || ++depth > deepestKey || !(at->is_object() || at->is_null()))
        {
            place.Fail(fmt::format("{} is no key of a parameter", Quoted(path)),
                       "Write keys as \"tlk inspect\" shows them, and each of them once");
        }
        if (slash == std::string::npos && at->contains(key))
        {
            place.Fail(fmt::format("{} is given twice", Quoted(path)), "Give each key one value");
        }
        at = &(*at)[key];
        begin = slash == std::string::npos ? slash : slash + 1;
    }
    return *at;
}

OutputSetup ReadLimits(const std::string& word, const JobPlace& place)
{
    const Assignment assignment = Split(word, place, "Output=low:high");
    const std::size_t colon = assignment.value.find(':');
    if (colon == std::string::npos)
    {
        place.Fail(fmt::format("{} has no limits", Quoted(word)), "Write them as Output=low:high; a side may be empty");
    }
    OutputSetup output{assignment.key, std::nullopt, true, std::nullopt, std::nullopt, place};
    output.lowerLimit = ReadLimit(std::string_view(assignment.value).substr(0, colon), place);
    output.upperLimit = ReadLimit(std::string_view(assignment.value).substr(colon + 1), place);
    CheckLimits(output);
    return output;
}
} // namespace

Job MakeJob(const CommandLineJob& words)
{
    const JobPlace place{"command line", ""};
    Job job;
    for (const std::string& scan : words.scans)
    {
        job.scans.push_back({scan, {}, place.At("SCAN")});
    }
    ToolSetup tool;
    tool.id = words.tool;
    tool.type = words.tool;
    tool.place = place.At(words.tool);
    tool.readOnlyValues = ReadOnlySetting::Warned;
    const JobPlace parameterPlace = place.At("--param");
    for (const std::string& word : words.parameters)
    {
        const Assignment assignment = Split(word, parameterPlace, "Key=Value");
        AtPath(tool.parameters, assignment.key, parameterPlace) = ValueOf(assignment.value);
    }
    for (const std::string& word : words.limits)
    {
        OutputSetup output = ReadLimits(word, place.At("--limits"));
        if (std::ranges::find(tool.outputs, output.id, &OutputSetup::id) != tool.outputs.end())
        {
            output.place.Fail(fmt::format("output {} is given limits twice", Quoted(output.id)), "Give them once");
        }
        tool.outputs.push_back(std::move(output));
    }
    job.tools.push_back(std::move(tool));
    return job;
}
} // namespace Mu::Host
