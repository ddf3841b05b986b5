#pragma once

#include <Host/CloudOptions.h>
#include <Host/Scan.h>

#include <filesystem>

namespace Mu::Host
{
/// Reads the vertices of a PLY file, version 1.0: text or binary, little or big endian. They are a list of points,
/// which goes onto a grid: see `MakeScan`, and `CloudRecords` for properties. Other elements, faces and range grids
/// among them, are passed over.
/// @throws Error  if the file is missing, damaged or truncated, has no vertices with x, y and z, or more than a scan
/// may
///                have; and what `MakeScan` throws
[[nodiscard]] Scan ReadPly(const std::filesystem::path& file, const CloudOptions& options);
} // namespace Mu::Host
