#include <Host/Job.h>

#include <Host/Error.h>
#include <Host/FailureText.h>
#include <Host/JsonText.h>
#include <Host/Names.h>
#include <Host/ScanFile.h>

#include <TaApi/JsonSerializer.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <set>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

constexpr std::size_t largestJob = std::size_t{64} << 20U;
constexpr std::size_t mostScans = 1'000'000;
constexpr std::size_t mostTools = 250;
constexpr std::size_t mostRoutes = 4'000;

/// Where messages of tools come from besides other tools.
constexpr const char* scanSource = "scan";

const char* TypeOf(const json& value)
{
    return value.is_null() ? "null" : value.type_name();
}

/// An object of a job, whose keys are all known.
class ObjectReader
{
public:
    ObjectReader(const json& value, JobPlace at, std::initializer_list<const char*> keys)
        : object(value)
        , place(std::move(at))
    {
        if (!value.is_object())
        {
            place.Fail(fmt::format("this is {}, not an object", TypeOf(value)), "Write an object, { ... }");
        }
        const std::vector<std::string> known(keys.begin(), keys.end());
        for (const auto& [key, element] : value.items())
        {
            if (std::ranges::find(known, key) == known.end())
            {
                place.At(key).Fail("there is no such key", KnownNames(key, known));
            }
        }
    }

    /// The value of a key, null if it is not there.
    [[nodiscard]] const json& Get(const char* key) const
    {
        static const json none;
        const auto found = object.find(key);
        return found == object.end() ? none : *found;
    }

    [[nodiscard]] bool Has(const char* key) const
    {
        return object.contains(key);
    }

    [[nodiscard]] JobPlace At(const char* key) const
    {
        return place.At(key);
    }

    /// A text that is not empty; `otherwise` if the key is not there.
    [[nodiscard]] std::string Text(const char* key, std::string otherwise) const
    {
        return Has(key) ? Text(key) : std::move(otherwise);
    }

    [[nodiscard]] std::string Text(const char* key) const
    {
        Require(key);
        const json& value = Get(key);
        if (!value.is_string() || value.get_ref<const std::string&>().empty())
        {
            At(key).Fail(fmt::format("this is {}, not a text", value.is_string() ? "empty" : TypeOf(value)),
                         "Write a text between double quotes");
        }
        return value.get<std::string>();
    }

    /// An object with keys of any name; an empty one if the key is not there.
    [[nodiscard]] json Object(const char* key) const
    {
        const json value = Has(key) ? Get(key) : json::object();
        if (!value.is_object())
        {
            At(key).Fail(fmt::format("this is {}, not an object", TypeOf(value)), "Write an object, { ... }");
        }
        return value;
    }

    /// A list of at most `most` entries; an empty one if the key is not there.
    [[nodiscard]] json List(const char* key, std::size_t most) const
    {
        const json value = Has(key) ? Get(key) : json::array();
        if (!value.is_array())
        {
            At(key).Fail(fmt::format("this is {}, not a list", TypeOf(value)), "Write a list, [ ... ]");
        }
        if (value.size() > most)
        {
            At(key).Fail(fmt::format("the list has {} entries", value.size()), fmt::format("Write {} at most", most));
        }
        return value;
    }

    void Require(const char* key) const
    {
        if (!Has(key))
        {
            place.Fail(fmt::format("the key \"{}\" is missing", key), fmt::format("Add \"{}\"", key));
        }
    }

private:
    const json& object;
    JobPlace place;
};

std::filesystem::path ScanFile(const std::string& name, const JobPlace& place, const std::filesystem::path& folder)
{
    // The system would read the name up to the null only, and open another file.
    if (name.find('\0') != std::string::npos)
    {
        place.Fail("the name of the file holds a null character", "Write the name of a file");
    }
    return folder / name;
}

ScanSetup ReadScanSetup(const json& value, const JobPlace& place, const std::filesystem::path& folder)
{
    if (value.is_string() && !value.get_ref<const std::string&>().empty())
    {
        return {ScanFile(value.get<std::string>(), place, folder), {}, place};
    }
    const ObjectReader reader(value, place, {"file", "options"});
    return {ScanFile(reader.Text("file"), place, folder), reader.Has("options") ? reader.Object("options") : json(),
            place};
}

std::optional<double> LimitOf(const json& value, const JobPlace& place)
{
    if (value.is_null())
    {
        return std::nullopt;
    }
    if (!value.is_number())
    {
        place.Fail(fmt::format("this is {}, not a number", TypeOf(value)), "Write a number, or null for an open side");
    }
    return value.get<double>();
}

OutputSetup ReadOutput(const std::string& id, const json& value, const JobPlace& place)
{
    const ObjectReader reader(value, place, {"enabled", "limits"});
    OutputSetup output{id, std::nullopt, reader.Has("limits"), std::nullopt, std::nullopt, place};
    if (reader.Has("enabled"))
    {
        if (!reader.Get("enabled").is_boolean())
        {
            reader.At("enabled").Fail(fmt::format("this is {}", TypeOf(reader.Get("enabled"))), "Write true or false");
        }
        output.enabled = reader.Get("enabled").get<bool>();
    }
    if (output.hasLimits)
    {
        const json limits = reader.List("limits", 2);
        const JobPlace at = reader.At("limits");
        if (limits.size() != 2)
        {
            at.Fail(fmt::format("this list has {} entries", limits.size()),
                    "Write two, [low, high], with null for an open side");
        }
        output.lowerLimit = LimitOf(limits[0], at.At(std::size_t{0}));
        output.upperLimit = LimitOf(limits[1], at.At(std::size_t{1}));
    }
    CheckLimits(output);
    return output;
}

ToolSetup ReadTool(const json& value, const JobPlace& place)
{
    const ObjectReader reader(value, place, {"id", "type", "input", "parameters", "outputs"});
    ToolSetup tool;
    tool.type = reader.Text("type");
    tool.id = reader.Text("id", tool.type);
    tool.scanInput = reader.Text("input", "");
    tool.parameters = reader.Object("parameters");
    tool.place = place;
    if (tool.id.find('/') != std::string::npos || tool.id == scanSource)
    {
        reader.At("id").Fail(fmt::format("{} cannot name a tool", Quoted(tool.id)),
                             "Take another name, without '/', and not \"scan\"");
    }
    const json outputs = reader.Object("outputs");
    for (const auto& [id, output] : outputs.items())
    {
        tool.outputs.push_back(ReadOutput(id, output, reader.At("outputs").At(id)));
    }
    return tool;
}

Port ReadPort(const ObjectReader& reader, const char* key, const std::vector<std::string>& tools)
{
    const std::string text = reader.Text(key);
    const std::size_t slash = text.find('/');
    if (slash == std::string::npos || slash == 0 || slash + 1 == text.size())
    {
        reader.At(key).Fail(fmt::format("{} is no output or input of a tool", Quoted(text)),
                            "Write the tool's id, a slash and the name, as in \"height/Mean\"");
    }
    Port port{text.substr(0, slash), text.substr(slash + 1)};
    if (std::ranges::find(tools, port.tool) == tools.end())
    {
        reader.At(key).Fail(fmt::format("the job has no tool {}", Quoted(port.tool)), KnownNames(port.tool, tools));
    }
    return port;
}

RouteSetup ReadRoute(const json& value, const JobPlace& place, const std::vector<std::string>& tools)
{
    const ObjectReader reader(value, place, {"from", "to"});
    return {ReadPort(reader, "from", tools), ReadPort(reader, "to", tools), place};
}

std::vector<std::string> ToolIds(const Job& job)
{
    std::vector<std::string> ids;
    std::ranges::transform(job.tools, std::back_inserter(ids), &ToolSetup::id);
    return ids;
}

void ReadRoutes(const json& list, const JobPlace& place, Job& job)
{
    const std::vector<std::string> tools = ToolIds(job);
    std::set<std::string> fed;
    for (std::size_t i = 0; i < list.size(); ++i)
    {
        job.routes.push_back(ReadRoute(list[i], place.At(i), tools));
        const Port& to = job.routes.back().to;
        const std::string input = to.tool + "/" + to.name;
        if (!fed.insert(input).second)
        {
            place.At(i).At("to").Fail(fmt::format("{} has a route already", Quoted(input)), "Keep one of the two");
        }
    }
}

void ReadTools(const json& list, const JobPlace& place, Job& job)
{
    for (std::size_t i = 0; i < list.size(); ++i)
    {
        ToolSetup tool = ReadTool(list[i], place.At(i));
        if (std::ranges::find(job.tools, tool.id, &ToolSetup::id) != job.tools.end())
        {
            place.At(i).Fail(fmt::format("a tool of the id {} stands before it", Quoted(tool.id)),
                             "Give each tool an \"id\" of its own");
        }
        job.tools.push_back(std::move(tool));
    }
}

json Parse(const std::filesystem::path& file, std::string_view text)
{
    json document;
    try
    {
        document = Ta::Properties::JsonSerializer::Parse(text);
    }
    catch (const Ta::Exception&)
    {
        throw Error(file, "", CurrentFailureText(), "A job is a JSON object with \"scans\" and \"tools\"");
    }
    RefuseRepeatedKeys(file, text);
    return document;
}

std::size_t IndexOf(const Job& job, const std::string& tool)
{
    return static_cast<std::size_t>(std::ranges::find(job.tools, tool, &ToolSetup::id) - job.tools.begin());
}

/// The first tool not yet placed whose sources all are; the number of tools if there is none.
std::size_t NextTool(const Job& job, const std::vector<bool>& placed)
{
    std::vector<bool> waits = placed;
    for (const RouteSetup& route : job.routes)
    {
        if (!placed[IndexOf(job, route.from.tool)])
        {
            waits[IndexOf(job, route.to.tool)] = true;
        }
    }
    return static_cast<std::size_t>(std::ranges::find(waits, false) - waits.begin());
}

[[noreturn]] void FailCircle(const Job& job, const std::vector<bool>& placed)
{
    const auto inCircle = std::ranges::find_if(
        job.routes, [&](const RouteSetup& route) { return !placed[IndexOf(job, route.from.tool)]; });
    std::string names;
    for (std::size_t i = 0; i < job.tools.size(); ++i)
    {
        if (!placed[i])
        {
            names.append(names.empty() ? "" : ", ").append(Quoted(job.tools[i].id));
        }
    }
    inCircle->place.Fail(fmt::format("tools wait for each other in a circle, or behind one: {}", names),
                         "Take one of the routes between them away");
}
} // namespace

JobPlace JobPlace::At(std::string_view key) const
{
    return {file, where.empty() ? Printable(key) : where + "." + Printable(key)};
}

JobPlace JobPlace::At(std::size_t index) const
{
    return {file, fmt::format("{}[{}]", where, index)};
}

void JobPlace::Fail(std::string_view problem, std::string_view remedy) const
{
    throw Error(file, where, problem, remedy);
}

std::string ReadJobFile(const std::filesystem::path& file)
{
    return ReadSmallTextFile(file, largestJob);
}

Job ReadJob(const std::filesystem::path& file)
{
    return ReadJobText(file, ReadJobFile(file));
}

Job ReadJobText(const std::filesystem::path& file, std::string_view text)
{
    const json document = Parse(file, text);
    const JobPlace root{file, ""};
    const ObjectReader reader(document, root, {"description", "scans", "tools", "routes"});
    static_cast<void>(reader.Text("description", ""));
    reader.Require("scans");
    reader.Require("tools");
    Job job;
    const json scans = reader.List("scans", mostScans);
    for (std::size_t i = 0; i < scans.size(); ++i)
    {
        job.scans.push_back(ReadScanSetup(scans[i], root.At("scans").At(i), file.parent_path()));
    }
    ReadTools(reader.List("tools", mostTools), root.At("tools"), job);
    if (job.scans.empty() || job.tools.empty())
    {
        root.At(job.scans.empty() ? "scans" : "tools").Fail("the list is empty", "A job has at least one of them");
    }
    ReadRoutes(reader.List("routes", mostRoutes), root.At("routes"), job);
    static_cast<void>(ExecutionOrder(job));
    return job;
}

std::vector<std::size_t> ExecutionOrder(const Job& job)
{
    std::vector<std::size_t> order;
    std::vector<bool> placed(job.tools.size());
    while (order.size() < job.tools.size())
    {
        const std::size_t next = NextTool(job, placed);
        if (next == job.tools.size())
        {
            FailCircle(job, placed);
        }
        placed[next] = true;
        order.push_back(next);
    }
    return order;
}

std::optional<double> ReadLimit(std::string_view text, const JobPlace& place)
{
    if (text.empty())
    {
        return std::nullopt;
    }
    double limit = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), limit);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(limit))
    {
        place.Fail(fmt::format("{} is no number", Quoted(text)), "Write limits as low:high, as in 1.5:2");
    }
    return limit;
}

void CheckLimits(const OutputSetup& output)
{
    if (output.lowerLimit && output.upperLimit && *output.lowerLimit > *output.upperLimit)
    {
        output.place.Fail(
            fmt::format("the lower limit {} is above the upper limit {}", *output.lowerLimit, *output.upperLimit),
            "Write the lower limit first");
    }
}
} // namespace Mu::Host
