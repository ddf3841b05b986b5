#include <Host/CloudOptions.h>

#include <Host/Error.h>
#include <Host/ScanOptions.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

constexpr std::string_view example = R"({"unit": "m", "spacing": [0.5, 0.5]})";

struct NamedUnit
{
    std::string_view name;
    double mm;
};

constexpr std::array units{NamedUnit{"m", 1000},   NamedUnit{"cm", 10},         NamedUnit{"mm", 1},
                           NamedUnit{"um", 0.001}, NamedUnit{"\u00b5m", 0.001}, NamedUnit{"in", 25.4}};

struct NamedAxis
{
    std::string_view name;
    UpAxis axis;
};

constexpr std::array axes{NamedAxis{"z", UpAxis::Z}, NamedAxis{"-z", UpAxis::MinusZ}, NamedAxis{"y", UpAxis::Y},
                          NamedAxis{"-y", UpAxis::MinusY}};

/// Options in the making: the unit may still be missing.
struct Draft
{
    CloudOptions options;
    std::optional<double> mmPerUnit;
};

/// The row of the table that a text names.
template <typename Table>
const auto& FindNamed(const Table& table, const json& value, const OptionPlace& place, std::string_view remedy)
{
    const auto found = std::ranges::find_if(table, [&](const auto& row) { return value == row.name; });
    if (found == table.end())
    {
        place.Refuse(value, remedy);
    }
    return *found;
}

void SetUnit(Draft& draft, const json& value, const OptionPlace& place)
{
    constexpr std::string_view remedy = R"(Give "m", "cm", "mm", "um" or "in", or the mm of a unit, greater than 0)";
    draft.mmPerUnit =
        value.is_string() ? FindNamed(units, value, place, remedy).mm : ReadPositive(value, place, remedy);
}

void SetSpacing(Draft& draft, const json& value, const OptionPlace& place)
{
    constexpr std::string_view remedy = "Give two numbers greater than 0, mm along x and mm along y, as in [0.5, 0.5]";
    if (!value.is_array() || value.size() != 2)
    {
        place.Refuse(value, remedy);
    }
    draft.options.spacingMm = {ReadPositive(value[0], place, remedy), ReadPositive(value[1], place, remedy)};
}

void SetUp(Draft& draft, const json& value, const OptionPlace& place)
{
    draft.options.up = FindNamed(axes, value, place, R"(Write "z", "-z", "y" or "-y")").axis;
}

constexpr ScanOption<Draft> known[] = {{"unit", &SetUnit}, {"spacing", &SetSpacing}, {"up", &SetUp}};
} // namespace

CloudOptions ReadCloudOptions(const std::filesystem::path& scan, const json& fromJob, std::string_view jobPlace,
                              std::string_view format)
{
    Draft draft;
    ReadScanOptions(draft, {scan, fromJob, jobPlace}, {format, example}, known);
    if (!draft.mmPerUnit)
    {
        throw Error(scan, R"("unit")",
                    fmt::format("a {} file does not tell the unit of its points, nor does the job", format),
                    fmt::format("Write {} with something like {}, or give the same with the scan in the job",
                                SidecarOf(scan).string(), example));
    }
    draft.options.mmPerUnit = *draft.mmPerUnit;
    return draft.options;
}
} // namespace Mu::Host
