#include <Host/TiffOptions.h>

#include <Host/Error.h>
#include <Host/ScanOptions.h>

#include <fmt/format.h>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

constexpr OptionWords words{"TIFF", R"({"spacing": [0.1, 0.1, 0.001], "invalid": 0})"};

/// Options in the making: the spacing may still be missing.
struct Draft
{
    TiffOptions options;
    std::optional<Vector3> spacingMm;
};

void SetSpacing(Draft& draft, const json& value, const OptionPlace& place)
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

void SetOffset(Draft& draft, const json& value, const OptionPlace& place)
{
    draft.options.offsetMm = ReadTriple(value, place, "Give three numbers, mm of x, y and z, as in [0, 0, 0]");
}

void SetInvalid(Draft& draft, const json& value, const OptionPlace& place)
{
    if (!value.is_null() && !IsFiniteNumber(value))
    {
        place.Refuse(value, "Give the number that marks invalid samples, or null if there is none");
    }
    draft.options.invalid = value.is_null() ? std::nullopt : std::optional(value.get<double>());
}

void SetXAxis(Draft& draft, const json& value, const OptionPlace& place)
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

constexpr ScanOption<Draft> known[] = {
    {"spacing", &SetSpacing}, {"offset", &SetOffset}, {"invalid", &SetInvalid}, {"xAxis", &SetXAxis}};
} // namespace

TiffOptions ReadTiffOptions(const std::filesystem::path& scan, const json& fromJob, std::string_view jobPlace)
{
    Draft draft;
    ReadScanOptions(draft, {scan, fromJob, jobPlace}, words, known);
    if (!draft.spacingMm)
    {
        throw Error(scan, R"("spacing")", "a TIFF file does not tell the distance of its samples, nor does the job",
                    fmt::format("Write {} with something like {} (mm along x, mm along y, mm per count of z), or give "
                                "the same with the scan in the job",
                                SidecarOf(scan).string(), words.example));
    }
    draft.options.spacingMm = *draft.spacingMm;
    return draft.options;
}
} // namespace Mu::Host
