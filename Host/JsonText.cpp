#include <Host/JsonText.h>

#include <Host/Error.h>
#include <Host/Job.h>

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace Mu::Host
{
namespace
{
using nlohmann::json;
using nlohmann::ordered_json;

constexpr std::size_t indentWidth = 4;
constexpr std::size_t lineWidth = 100;

/// Follows a parser through a document and knows at which place in it it is.
class KeyWatch
{
public:
    explicit KeyWatch(const std::filesystem::path& file)
        : root{file, ""}
    {
    }

    void See(json::parse_event_t event, const json& parsed)
    {
        using enum json::parse_event_t;
        switch (event)
        {
        case object_start:
        case array_start:
            NextEntry();
            levels.push_back({event == array_start, {}, {}, 0});
            break;
        case object_end:
        case array_end:
            levels.pop_back();
            break;
        case key:
            SeeKey(parsed.get<std::string>());
            break;
        case value:
            NextEntry();
            break;
        }
    }

private:
    struct Level
    {
        bool isList;
        std::set<std::string> keys;
        std::string key;
        std::size_t entries; ///< of a list, begun so far
    };

    void NextEntry()
    {
        if (!levels.empty())
        {
            ++levels.back().entries;
        }
    }

    void SeeKey(std::string key)
    {
        Level& level = levels.back();
        level.key = key;
        if (!level.keys.insert(std::move(key)).second)
        {
            Here().Fail("the key stands twice in one object", "Keep one of the two");
        }
    }

    [[nodiscard]] JobPlace Here() const
    {
        JobPlace place = root;
        for (const Level& level : levels)
        {
            place = level.isList ? place.At(level.entries - 1) : place.At(level.key);
        }
        return place;
    }

    JobPlace root;
    std::vector<Level> levels;
};

bool IsPlain(const ordered_json& value)
{
    return value.is_primitive() || value.empty();
}

bool IsPlainOrList(const ordered_json& value)
{
    return IsPlain(value) || (value.is_array() && std::ranges::all_of(value, IsPlain));
}

bool IsShort(const ordered_json& value)
{
    return IsPlain(value) || std::ranges::all_of(value, IsPlainOrList);
}

bool IsListOfNumbers(const ordered_json& value)
{
    return value.is_array() && std::ranges::all_of(value, &ordered_json::is_number);
}

std::string KeyText(const std::string& key)
{
    return fmt::format("{}: ", ordered_json(key).dump());
}

/// The value on one line. It nests no further than short values do.
std::string OneLine(const ordered_json& value)
{
    if (IsPlain(value))
    {
        return value.dump();
    }
    std::string text;
    for (const auto& [key, entry] : value.items())
    {
        text.append(text.empty() ? "" : ", ").append(value.is_object() ? KeyText(key) : "").append(OneLine(entry));
    }
    return value.is_object() ? fmt::format("{{ {} }}", text) : fmt::format("[{}]", text);
}

/// @param before  what stands on the value's line before it, indentation included
/// Documents nest at most 64 deep, so this does.
std::string Written(const ordered_json& value, std::size_t level, std::size_t before)
{
    const bool isOutermost = level == 0 && !value.empty();
    if (IsShort(value) && !isOutermost)
    {
        std::string line = OneLine(value);
        // One column more for the comma behind it.
        if (IsPlain(value) || IsListOfNumbers(value) || before + line.size() + 1 <= lineWidth)
        {
            return line;
        }
    }
    const std::string indent((level + 1) * indentWidth, ' ');
    std::string text;
    for (const auto& [key, entry] : value.items())
    {
        const std::string start = indent + (value.is_object() ? KeyText(key) : "");
        text.append(text.empty() ? "" : ",\n").append(start).append(Written(entry, level + 1, start.size()));
    }
    const std::string end(level * indentWidth, ' ');
    return value.is_object() ? fmt::format("{{\n{}\n{}}}", text, end) : fmt::format("[\n{}\n{}]", text, end);
}
} // namespace

void RefuseRepeatedKeys(const std::filesystem::path& file, std::string_view text)
{
    KeyWatch watch(file);
    const auto see = [&watch](int /*depth*/, json::parse_event_t event, const json& parsed) {
        watch.See(event, parsed);
        return true;
    };
    [[maybe_unused]] const json seen = json::parse(text, see);
}

std::string LaidOut(const ordered_json& document)
{
    return Written(document, 0, 0) + "\n";
}
} // namespace Mu::Host
