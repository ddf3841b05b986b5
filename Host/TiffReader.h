#pragma once

#include <Host/GridOptions.h>
#include <Host/HeightMap.h>

#include <filesystem>

namespace Mu::Host
{
/// Reads a grey TIFF image as a height map: samples of 16 or 32 bits, signed or unsigned, or floats of 32 or 64 bits;
/// strips or tiles, any compression of libtiff, little or big endian. The first row of the image becomes y = 0 (x = 0
/// if x runs along rows). Floats that are not finite are invalid. Of several pages the first is read.
/// May be called from several threads; what libtiff has to say goes into the notes or into the error.
/// @throws Error  if the file is missing, damaged or truncated, is no such image, or has more samples than a scan may
[[nodiscard]] HeightMap ReadTiff(const std::filesystem::path& file, const GridOptions& options);
} // namespace Mu::Host
