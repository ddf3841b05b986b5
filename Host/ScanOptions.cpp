#include <Host/ScanOptions.h>

#include <Host/Error.h>
#include <Host/JsonText.h>
#include <Host/ScanFile.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <system_error>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

constexpr std::size_t largestSidecar = 64 * 1024;

/// A value for a message: written out if it is flat and short, else its kind.
std::string Shown(const json& value)
{
    // Writing out nested values recurses, without bound, into what the file nests.
    const auto isFlat = [](const json& each) { return each.is_primitive(); };
    const bool flat = isFlat(value) || (value.is_array() && std::ranges::all_of(value, isFlat));
    return flat && value.size() <= 8 ? Printable(value.dump(-1, ' ', true, json::error_handler_t::replace))
                                     : fmt::format("an {} of {}", value.type_name(), value.size());
}

/// The keys as in "a", "b" and "c".
std::string ListOf(std::span<const std::string_view> keys)
{
    std::string text = Quoted(keys.front());
    for (std::size_t i = 1; i < keys.size(); ++i)
    {
        text += (i + 1 == keys.size() ? " and " : ", ") + Quoted(keys[i]);
    }
    return text;
}

json ReadSidecar(const std::filesystem::path& sidecar, const OptionWords& words)
{
    const std::string text = ReadSmallTextFile(sidecar, largestSidecar);
    try
    {
        json options = json::parse(text);
        RefuseRepeatedKeys(sidecar, text);
        return options;
    }
    catch (const json::exception& failure)
    {
        throw Error(sidecar, "", fmt::format("this is not JSON ({})", Printable(failure.what())),
                    fmt::format("Write something like {}", words.example));
    }
}
} // namespace

std::filesystem::path SidecarOf(const std::filesystem::path& scan)
{
    std::filesystem::path sidecar = scan;
    sidecar += ".json";
    return sidecar;
}

void OptionPlace::Refuse(const json& value, std::string_view remedy) const
{
    throw Error(source, Quoted(key), fmt::format("{} is not a usable value", Shown(value)), remedy);
}

bool IsFiniteNumber(const json& value)
{
    return value.is_number() && std::isfinite(value.get<double>());
}

double ReadPositive(const json& value, const OptionPlace& place, std::string_view remedy)
{
    if (!IsFiniteNumber(value) || value.get<double>() <= 0)
    {
        place.Refuse(value, remedy);
    }
    return value.get<double>();
}

Vector3 ReadTriple(const json& value, const OptionPlace& place, std::string_view remedy)
{
    if (!value.is_array() || value.size() != 3 || !std::ranges::all_of(value, IsFiniteNumber))
    {
        place.Refuse(value, remedy);
    }
    return {value[0].get<double>(), value[1].get<double>(), value[2].get<double>()};
}

namespace Detail
{
void ReadOptions(const OptionSources& sources, const OptionWords& words, std::span<const std::string_view> keys,
                 const std::function<void(std::size_t, const json&, const OptionPlace&)>& set)
{
    const auto apply = [&](const json& values, const std::string& source) {
        if (!values.is_object())
        {
            throw Error(source, "", fmt::format("the options of a {} scan are not a JSON object", words.format),
                        fmt::format("Write something like {}", words.example));
        }
        for (const auto& [key, value] : values.items())
        {
            const auto known = std::ranges::find(keys, std::string_view(key));
            if (known == keys.end())
            {
                throw Error(source, Quoted(key), fmt::format("a {} scan has no such option", words.format),
                            fmt::format("Known: {}; lengths are in mm unless an option says otherwise", ListOf(keys)));
            }
            set(static_cast<std::size_t>(known - keys.begin()), value, OptionPlace{source, key});
        }
    };
    const auto sidecar = SidecarOf(sources.scan);
    std::error_code ignored;
    if (std::filesystem::exists(sidecar, ignored))
    {
        apply(ReadSidecar(sidecar, words), sidecar.string());
    }
    if (!sources.fromJob.is_null())
    {
        apply(sources.fromJob, std::string(sources.jobPlace));
    }
}
} // namespace Detail
} // namespace Mu::Host
