#include <Host/GridOptions.h>

#include <Host/Error.h>

#include <fmt/format.h>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

constexpr std::string_view example = R"({"spacing": [0.1, 0.1, 0.001], "invalid": 0})";

/// Options in the making: the spacing may still be missing.
struct Draft
{
    GridOptions options;
    std::optional<Vector3> spacingMm;
    bool hasAny = false;
};

void SetSpacing(Draft& draft, const json& value, const OptionPlace& place)
{
    draft.spacingMm = ReadSpacing(value, place);
    draft.hasAny = true;
}

void SetOffset(Draft& draft, const json& value, const OptionPlace& place)
{
    draft.options.offsetMm = ReadOffset(value, place);
    draft.hasAny = true;
}

void SetInvalid(Draft& draft, const json& value, const OptionPlace& place)
{
    draft.options.invalid = ReadInvalid(value, place);
    draft.hasAny = true;
}

void SetXAxis(Draft& draft, const json& value, const OptionPlace& place)
{
    draft.options.alongX = ReadXAxis(value, place);
    draft.hasAny = true;
}

constexpr ScanOption<Draft> known[] = {
    {"spacing", &SetSpacing}, {"offset", &SetOffset}, {"invalid", &SetInvalid}, {"xAxis", &SetXAxis}};
} // namespace

Vector3 ReadSpacing(const json& value, const OptionPlace& place)
{
    constexpr std::string_view remedy =
        "Give three numbers greater than 0: mm along x, mm along y, mm per count of z, as in [0.1, 0.1, 0.001]";
    const Vector3 spacing = ReadTriple(value, place, remedy);
    if (spacing.x <= 0 || spacing.y <= 0 || spacing.z <= 0)
    {
        place.Refuse(value, remedy);
    }
    return spacing;
}

Vector3 ReadOffset(const json& value, const OptionPlace& place)
{
    return ReadTriple(value, place, "Give three numbers, mm of x, y and z, as in [0, 0, 0]");
}

std::optional<double> ReadInvalid(const json& value, const OptionPlace& place)
{
    if (!value.is_null() && !IsFiniteNumber(value))
    {
        place.Refuse(value, "Give the number that marks invalid samples, or null if there is none");
    }
    return value.is_null() ? std::nullopt : std::optional(value.get<double>());
}

ImageAxis ReadXAxis(const json& value, const OptionPlace& place)
{
    if (value == "columns")
    {
        return ImageAxis::Columns;
    }
    if (value != "rows")
    {
        place.Refuse(value, R"(Write "columns" or "rows")");
    }
    return ImageAxis::Rows;
}

std::optional<GridOptions> FindGridOptions(const OptionSources& sources, std::string_view format)
{
    Draft draft;
    ReadScanOptions(draft, sources, {format, example}, known);
    if (!draft.hasAny)
    {
        return std::nullopt;
    }
    if (!draft.spacingMm)
    {
        RefuseWithoutSpacing(sources.scan, format);
    }
    draft.options.spacingMm = *draft.spacingMm;
    return draft.options;
}

GridOptions ReadGridOptions(const OptionSources& sources, std::string_view format)
{
    const auto options = FindGridOptions(sources, format);
    if (!options)
    {
        RefuseWithoutSpacing(sources.scan, format);
    }
    return *options;
}

void RefuseWithoutSpacing(const std::filesystem::path& scan, std::string_view format)
{
    throw Error(scan, R"("spacing")",
                fmt::format("a {} file does not tell the distance of its samples, nor does the job", format),
                fmt::format("Write {} with something like {} (mm along x, mm along y, mm per count of z), or give "
                            "the same with the scan in the job",
                            SidecarOf(scan).string(), example));
}
} // namespace Mu::Host
