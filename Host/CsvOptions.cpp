#include <Host/CsvOptions.h>

#include <Host/Error.h>
#include <Host/GridOptions.h>

#include <algorithm>
#include <array>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

struct Unit
{
    std::string_view name;
    double mm;
};

// The micro sign and the Greek letter, which look alike.
constexpr std::array units{Unit{"m", 1000},        Unit{"mm", 1},        Unit{"um", 0.001}, Unit{"\u00b5m", 0.001},
                           Unit{"\u03bcm", 0.001}, Unit{"nm", 0.000001}, Unit{"in", 25.4}};

struct Layout
{
    std::string_view name;
    CsvLayout layout;
};

constexpr std::array layouts{Layout{"profile", CsvLayout::Profile}, Layout{"points", CsvLayout::Points},
                             Layout{"grid", CsvLayout::Grid}};

struct ColumnKey
{
    std::string_view name;
    std::optional<CsvColumn> CsvColumns::*column;
};

constexpr std::array columnKeys{ColumnKey{"x", &CsvColumns::x}, ColumnKey{"y", &CsvColumns::y},
                                ColumnKey{"z", &CsvColumns::z}, ColumnKey{"intensity", &CsvColumns::intensity}};

std::optional<double> UnitOf(const json& value)
{
    if (IsFiniteNumber(value) && value.get<double>() > 0)
    {
        return value.get<double>();
    }
    const auto unit = std::ranges::find_if(units, [&](const Unit& known) { return value == known.name; });
    return unit == units.end() ? std::nullopt : std::optional(unit->mm);
}

Vector3 ReadUnit(const json& value, const OptionPlace& place)
{
    if (!value.is_array())
    {
        if (const auto unit = UnitOf(value))
        {
            return {*unit, *unit, *unit};
        }
    }
    else if (value.size() == 3)
    {
        const auto x = UnitOf(value[0]);
        const auto y = UnitOf(value[1]);
        const auto z = UnitOf(value[2]);
        if (x && y && z)
        {
            return {*x, *y, *z};
        }
    }
    place.Refuse(value, R"(Give "m", "mm", "um", "nm", "in" or the mm of a unit, or three of them for x, y and z, )"
                        R"(as in ["mm", "mm", "um"])");
}

CsvLayout ReadLayout(const json& value, const OptionPlace& place)
{
    const auto layout = std::ranges::find_if(layouts, [&](const Layout& known) { return value == known.name; });
    if (layout == layouts.end())
    {
        place.Refuse(value, R"(Write "profile", "points" or "grid")");
    }
    return layout->layout;
}

bool IsColumnNumber(const json& value)
{
    return value.is_number_unsigned() && value.get<std::uint64_t>() > 0;
}

CsvColumns ReadColumns(const json& value, const OptionPlace& place)
{
    constexpr std::string_view remedy = R"(Give names of the head line or numbers from 1, z among them, )"
                                        R"(as in {"x": 1, "z": "Height"}; known: "x", "y", "z" and "intensity")";
    if (!value.is_object() || !value.contains("z"))
    {
        place.Refuse(value, remedy);
    }
    CsvColumns columns;
    for (const auto& [key, column] : value.items())
    {
        const auto known = std::ranges::find(columnKeys, std::string_view(key), &ColumnKey::name);
        if (known == columnKeys.end() || (!column.is_string() && !IsColumnNumber(column)))
        {
            place.Refuse(value, remedy);
        }
        columns.*known->column =
            column.is_string() ? CsvColumn(column.get<std::string>()) : CsvColumn(column.get<std::size_t>());
    }
    return columns;
}

constexpr ScanOption<CsvOptions> known[] = {
    {"unit",
     [](CsvOptions& options, const json& value, const OptionPlace& place) { options.unitMm = ReadUnit(value, place); }},
    {"layout", [](CsvOptions& options, const json& value,
                  const OptionPlace& place) { options.layout = ReadLayout(value, place); }},
    {"columns", [](CsvOptions& options, const json& value,
                   const OptionPlace& place) { options.columns = ReadColumns(value, place); }},
    {"spacing", [](CsvOptions& options, const json& value,
                   const OptionPlace& place) { options.spacingMm = ReadSpacing(value, place); }},
    {"offset", [](CsvOptions& options, const json& value,
                  const OptionPlace& place) { options.offsetMm = ReadOffset(value, place); }},
    {"invalid", [](CsvOptions& options, const json& value,
                   const OptionPlace& place) { options.invalid = ReadInvalid(value, place); }},
    {"xAxis", [](CsvOptions& options, const json& value, const OptionPlace& place) {
         options.alongX = ReadXAxis(value, place);
     }}};
} // namespace

CsvOptions ReadCsvOptions(const OptionSources& sources)
{
    CsvOptions options;
    ReadScanOptions(options, sources, {"text", csvExample}, known);
    return options;
}
} // namespace Mu::Host
