#pragma once

#include <Host/HeightMap.h>
#include <Host/ScanOptions.h>

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string_view>

namespace Mu::Host
{
/// What a TIFF file does not say of a height map. Written as a JSON object:
///
/// | key       | value                 | default   | meaning                                                         |
/// |-----------|-----------------------|-----------|-----------------------------------------------------------------|
/// | `spacing` | three numbers > 0     | none      | mm from sample to sample along x and y, and mm per count of z   |
/// | `offset`  | three numbers         | 0, 0, 0   | mm of x and y of the first sample, and of z of a count of 0     |
/// | `invalid` | number or null        | null      | samples of exactly this value are invalid                       |
/// | `xAxis`   | "columns" or "rows"   | "columns" | what x runs along in the image; "rows" transposes the image     |
///
/// Only `spacing` must be given. `spacing` and `offset` are in the order x, y, z of the map, whatever `xAxis` is.
struct TiffOptions
{
    Vector3 spacingMm{1, 1, 1};
    Vector3 offsetMm;
    std::optional<double> invalid;
    ImageAxis alongX = ImageAxis::Columns;
};

/// The options of a TIFF file: those of its sidecar, if there is one, and over them, key by key, those of the job.
/// @param fromJob   an object, or null if the job gives none
/// @param jobPlace  where the job gives them, for messages, as in "plate.job.json, scan 2"
/// @throws Error    if neither gives the spacing; if a key is unknown, of another type or out of range; if the sidecar
///                  is no JSON object or larger than 64 KiB
[[nodiscard]] TiffOptions ReadTiffOptions(const std::filesystem::path& scan, const nlohmann::json& fromJob,
                                          std::string_view jobPlace);
} // namespace Mu::Host
