#pragma once

#include <Host/CloudOptions.h>
#include <Host/Scan.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace Mu::Host
{
/// The points of a file, as they stand in it.
struct PointCloud
{
    std::filesystem::path file;          ///< for messages
    std::size_t width = 0;               ///< points in a row
    std::size_t height = 0;              ///< rows
    std::vector<Vector3> points;         ///< width * height, in units of the file; any value may be infinite or NaN
    std::vector<std::uint8_t> intensity; ///< empty, or one for each point
    std::vector<std::string> notes;      ///< taken over by the scan, before those on points
};

/// Whether points of that many columns and rows have neighbours to all sides; else they are a mere list.
[[nodiscard]] constexpr bool IsOrganised(std::uint64_t width, std::uint64_t height)
{
    return width > 1 && height > 1;
}

/// The number of points of a cloud of that many columns and rows.
/// @param place  where the file states the size, for the message
/// @throws Error  if there are none, or more than a scan may have
[[nodiscard]] std::size_t CheckedPointCount(const std::filesystem::path& file, const std::string& place,
                                            std::uint64_t width, std::uint64_t height);

/// What `MakeScan` would throw for a cloud of that many columns and rows, before its points are read.
/// @throws Error  if it is not organised and there is no spacing
void RequireSpacingForList(const std::filesystem::path& file, std::size_t width, std::size_t height,
                           const CloudOptions& options);

/// An organised cloud becomes a PointMap: each coordinate is rounded to 65,534 even steps from its lowest to its
/// highest value, and a point with a coordinate that is not finite is null.
///
/// With a spacing a cloud of either kind becomes a HeightMap. Its nodes lie at whole multiples of the spacing, and a
/// point belongs to the node i = floor(x / spacing + 1/2), and so in y. Of the points of a node the highest counts, the
/// first of these if there are several, for height and intensity; a node without points is null. The map reaches as far
/// as its points do.
///
/// @throws Error  if the cloud is not organised and there is no spacing; if no point could go onto a grid; if the grid
///                has more samples than a scan may, or more than both 2^20 and 256 for each point; if positions in mm
///                are beyond the range of doubles
[[nodiscard]] Scan MakeScan(PointCloud cloud, const CloudOptions& options);
} // namespace Mu::Host
