#include <Host/TiffOptions.h>

#include <Host/Error.h>
#include <Host/ScanFile.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <system_error>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

constexpr std::size_t largestSidecar = 64 * 1024;
constexpr std::string_view optionsExample = R"({"spacing": [0.1, 0.1, 0.001], "invalid": 0})";

/// Options in the making: the spacing may still be missing.
struct Draft
{
    TiffOptions options;
    std::optional<Vector3> spacingMm;
};

/// A value for a message: written out if it is flat and short, else its kind.
std::string Shown(const json& value)
{
    // Writing out nested values recurses, without bound, into what the file nests.
    const auto isFlat = [](const json& each) { return each.is_primitive(); };
    const bool flat = isFlat(value) || (value.is_array() && std::ranges::all_of(value, isFlat));
    return flat && value.size() <= 8 ? Printable(value.dump(-1, ' ', true, json::error_handler_t::replace))
                                     : fmt::format("an {} of {}", value.type_name(), value.size());
}

/// A key and where it stands, for messages.
struct Place
{
    std::string source;
    std::string key;

    [[noreturn]] void Refuse(const json& value, std::string_view remedy) const
    {
        throw Error(source, Quoted(key), fmt::format("{} is not a usable value", Shown(value)), remedy);
    }
};

bool IsFiniteNumber(const json& value)
{
    return value.is_number() && std::isfinite(value.get<double>());
}

Vector3 ReadTriple(const json& value, const Place& place, std::string_view remedy)
{
    if (!value.is_array() || value.size() != 3 || !std::ranges::all_of(value, IsFiniteNumber))
    {
        place.Refuse(value, remedy);
    }
    return {value[0].get<double>(), value[1].get<double>(), value[2].get<double>()};
}

void SetSpacing(Draft& draft, const json& value, const Place& place)
{
    constexpr std::string_view remedy =
        "Give three numbers greater than 0: mm along x, mm along y, mm per count of z, as in [0.1, 0.1, 0.001]";
    const Vector3 spacing = ReadTriple(value, place, remedy);
    if (spacing.x <= 0 || spacing.y <= 0 || spacing.z <= 0)
    {
        place.Refuse(value, remedy);
    }
    draft.spacingMm = spacing;
}

void SetOffset(Draft& draft, const json& value, const Place& place)
{
    draft.options.offsetMm = ReadTriple(value, place, "Give three numbers, mm of x, y and z, as in [0, 0, 0]");
}

void SetInvalid(Draft& draft, const json& value, const Place& place)
{
    if (!value.is_null() && !IsFiniteNumber(value))
    {
        place.Refuse(value, "Give the number that marks invalid samples, or null if there is none");
    }
    draft.options.invalid = value.is_null() ? std::nullopt : std::optional(value.get<double>());
}

void SetXAxis(Draft& draft, const json& value, const Place& place)
{
    if (value == "columns")
    {
        draft.options.alongX = ImageAxis::Columns;
        return;
    }
    if (value != "rows")
    {
        place.Refuse(value, R"(Write "columns" or "rows")");
    }
    draft.options.alongX = ImageAxis::Rows;
}

struct OptionKey
{
    std::string_view name;
    void (*set)(Draft&, const json&, const Place&);
};

constexpr std::array optionKeys{OptionKey{"spacing", &SetSpacing}, OptionKey{"offset", &SetOffset},
                                OptionKey{"invalid", &SetInvalid}, OptionKey{"xAxis", &SetXAxis}};

void ApplyOptions(Draft& draft, const json& values, const std::string& source)
{
    if (!values.is_object())
    {
        throw Error(source, "", "the options of a TIFF scan are not a JSON object",
                    fmt::format("Write something like {}", optionsExample));
    }
    for (const auto& [key, value] : values.items())
    {
        const auto known = std::ranges::find(optionKeys, std::string_view(key), &OptionKey::name);
        if (known == optionKeys.end())
        {
            throw Error(source, Quoted(key), "a TIFF scan has no such option",
                        R"(Known are "spacing", "offset", "invalid" and "xAxis"; lengths are always in mm)");
        }
        known->set(draft, value, Place{source, key});
    }
}

json ReadSidecar(const std::filesystem::path& sidecar)
{
    const std::string text = ReadSmallTextFile(sidecar, largestSidecar);
    try
    {
        return json::parse(text);
    }
    catch (const json::exception& failure)
    {
        throw Error(sidecar, "", fmt::format("this is not JSON ({})", Printable(failure.what())),
                    fmt::format("Write something like {}", optionsExample));
    }
}
} // namespace

std::filesystem::path SidecarOf(const std::filesystem::path& scan)
{
    std::filesystem::path sidecar = scan;
    sidecar += ".json";
    return sidecar;
}

TiffOptions ReadTiffOptions(const std::filesystem::path& scan, const json& fromJob, std::string_view jobPlace)
{
    Draft draft;
    const auto sidecar = SidecarOf(scan);
    std::error_code failure;
    if (std::filesystem::exists(sidecar, failure))
    {
        ApplyOptions(draft, ReadSidecar(sidecar), sidecar.string());
    }
    if (!fromJob.is_null())
    {
        ApplyOptions(draft, fromJob, std::string(jobPlace));
    }
    if (!draft.spacingMm)
    {
        throw Error(scan, R"("spacing")", "a TIFF file does not tell the distance of its samples, nor does the job",
                    fmt::format("Write {} with something like {} (mm along x, mm along y, mm per count of z), or give "
                                "the same with the scan in the job",
                                sidecar.string(), optionsExample));
    }
    draft.options.spacingMm = *draft.spacingMm;
    return draft.options;
}
} // namespace Mu::Host
