#pragma once

#include <Host/CloudOptions.h>
#include <Host/Scan.h>

#include <filesystem>
#include <string_view>

namespace Mu::Host
{
/// How many of the first bytes of a file `IsPcd` should see.
inline constexpr std::size_t pcdStart = 4096;

/// Whether a file that starts so is a PCD file: its first line that is neither blank nor a comment is an entry that a
/// PCD header can begin with, or it has no such line there and the first comment names the format.
[[nodiscard]] bool IsPcd(std::string_view start);

/// Reads a point cloud of a PCD file, versions 0.5 to 0.7: text, binary (little endian), or binary packed with LZF.
/// What becomes of points and fields is told at `MakeScan` and `CloudRecords`. A cloud of one row or one column is a
/// list; the view point of the header is not applied.
/// @throws Error  if the file is missing, damaged or truncated, has no x, y or z, or has more points than a scan may;
/// and
///                what `MakeScan` throws
[[nodiscard]] Scan ReadPcd(const std::filesystem::path& file, const CloudOptions& options);
} // namespace Mu::Host
