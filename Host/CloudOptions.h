#pragma once

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string_view>

namespace Mu::Host
{
/// The axis of a file that points up, from the table towards the sensor. The points are turned about x until it is z,
/// so that nothing is mirrored: a camera that looks along its z has "-z" up, and its y and z change their signs.
enum class UpAxis
{
    Z,
    MinusZ,
    Y,
    MinusY
};

/// What a file with a point cloud does not say. Written as a JSON object:
///
/// | key       | value                                        | default | meaning                                     |
/// |-----------|----------------------------------------------|---------|---------------------------------------------|
/// | `unit`    | "m", "cm", "mm", "um", "in", or a number > 0 | none    | the unit of the coordinates; a number: in mm|
/// | `spacing` | two numbers > 0                              | none    | the cloud goes onto a grid, mm of x and y   |
/// | `up`      | "z", "-z", "y" or "-y"                       | "z"     | the axis that points up                     |
struct CloudOptions
{
    struct Spacing
    {
        double x;
        double y;

        friend bool operator==(const Spacing&, const Spacing&) = default;
    };

    double mmPerUnit = 1;             ///< finite and greater than 0
    std::optional<Spacing> spacingMm; ///< finite and greater than 0
    UpAxis up = UpAxis::Z;
};

/// Takes the sidecar, which need not exist, and puts over it what the job gives, key by key.
/// @param fromJob   options from the job: an object, or null if there are none
/// @param jobPlace  where the job gives them, for messages, as in "plate.job.json, scan 2"
/// @param format    the format of the scan, for messages, as in "PLY"
/// @throws Error    if the unit is missing, a key is unknown, or a value is not usable; if the sidecar is no JSON
/// object
[[nodiscard]] CloudOptions ReadCloudOptions(const std::filesystem::path& scan, const nlohmann::json& fromJob,
                                            std::string_view jobPlace, std::string_view format);
} // namespace Mu::Host
