#pragma once

#include <Host/HeightMap.h>
#include <Host/ScanOptions.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace Mu::Host
{
/// What the numbers of a text are.
enum class CsvLayout
{
    Profile, ///< a line for each sample of a profile: columns x and z, or z alone
    Points,  ///< a line for each sample of a height map: columns x, y and z
    Grid     ///< a line for each row of a height map, heights only
};

/// A column, by its name in the head line or by its number, from 1.
using CsvColumn = std::variant<std::size_t, std::string>;

struct CsvColumns
{
    std::optional<CsvColumn> x;
    std::optional<CsvColumn> y;
    std::optional<CsvColumn> z;
    std::optional<CsvColumn> intensity;
};

/// What a text does not say of a scan. Written as a JSON object:
///
/// | key       | value                                       | for               | meaning |
/// |-----------|---------------------------------------------|-------------------|-------------------------------------|
/// | `unit`    | "m", "mm", "um", "nm" or "in", or mm per    | profile, points   | of all columns, or of x, y and z |
/// |           | unit; or three of them                      |                   | | | `columns` | object of `x`, `y`,
/// `z`, `intensity`, each  | profile, points   | which columns they are              | |           | a name or a number
/// from 1                   |                   |                                     | | `spacing` | three numbers > 0
/// | grid, profile     | as in GridOptions; y is not used    | |           | | without x         | in a profile | |
/// `xAxis`   | "columns" or "rows"                         | grid              | as in GridOptions                   |
/// | `offset`  | three numbers                               | all               | mm added to x, y and z | | `invalid`
/// | number or null                              | all               | z of exactly this value are invalid | | `layout`
/// | "profile", "points" or "grid"               | all               | if the other keys do not tell       |
struct CsvOptions
{
    std::optional<CsvLayout> layout;
    std::optional<CsvColumns> columns;
    std::optional<Vector3> unitMm; ///< mm per unit, greater than 0
    std::optional<Vector3> spacingMm;
    std::optional<ImageAxis> alongX;
    Vector3 offsetMm;
    std::optional<double> invalid;
};

/// Something that would do, for messages.
inline constexpr std::string_view csvExample = R"({"unit": "mm"})";

/// The options of a text: those of its sidecar, if there is one, and over them, key by key, those of the job.
/// @throws Error  if a key is unknown, of another type or out of range; if the sidecar is no JSON object or larger than
///                64 KiB
[[nodiscard]] CsvOptions ReadCsvOptions(const OptionSources& sources);
} // namespace Mu::Host
