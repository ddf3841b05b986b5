#pragma once

#include <Host/HeightMap.h>
#include <Host/ScanOptions.h>

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string_view>

namespace Mu::Host
{
/// What an image or a matrix of bare numbers does not say of a height map. Written as a JSON object:
///
/// | key       | value                 | default   | meaning                                                         |
/// |-----------|-----------------------|-----------|-----------------------------------------------------------------|
/// | `spacing` | three numbers > 0     | none      | mm from sample to sample along x and y, and mm per count of z   |
/// | `offset`  | three numbers         | 0, 0, 0   | mm of x and y of the first sample, and of z of a count of 0     |
/// | `invalid` | number or null        | null      | samples of exactly this value are invalid                       |
/// | `xAxis`   | "columns" or "rows"   | "columns" | what x runs along in the image; "rows" transposes the image     |
///
/// Only `spacing` must be given. `spacing` and `offset` are in the order x, y, z of the map, whatever `xAxis` is.
struct GridOptions
{
    Vector3 spacingMm{1, 1, 1};
    Vector3 offsetMm;
    std::optional<double> invalid;
    ImageAxis alongX = ImageAxis::Columns;
};

/// The values of these keys, for formats that know more keys.
/// @throws Error  if the value is not usable

[[nodiscard]] Vector3 ReadSpacing(const nlohmann::json& value, const OptionPlace& place);
[[nodiscard]] Vector3 ReadOffset(const nlohmann::json& value, const OptionPlace& place);
[[nodiscard]] std::optional<double> ReadInvalid(const nlohmann::json& value, const OptionPlace& place);
[[nodiscard]] ImageAxis ReadXAxis(const nlohmann::json& value, const OptionPlace& place);

/// The options of a scan: those of its sidecar, if there is one, and over them, key by key, those of the job. Nothing
/// if there is not a single one.
/// @param format  as messages have it: "TIFF"
/// @throws Error  if there are options but no spacing; if a key is unknown, of another type or out of range; if the
///                sidecar is no JSON object or larger than 64 KiB
[[nodiscard]] std::optional<GridOptions> FindGridOptions(const OptionSources& sources, std::string_view format);

/// The same for a scan that cannot do without.
/// @throws Error  also if there is not a single option
[[nodiscard]] GridOptions ReadGridOptions(const OptionSources& sources, std::string_view format);

/// @throws Error  that says that neither the file nor any option gives the spacing, and what to write
[[noreturn]] void RefuseWithoutSpacing(const std::filesystem::path& scan, std::string_view format);
} // namespace Mu::Host
