#pragma once

#include <Host/GridOptions.h>
#include <Host/Scan.h>

#include <filesystem>
#include <optional>

namespace Mu::Host
{
/// Reads a PNG image of any colour type and depth, interlaced or not. The first row of the image is row 0.
///
/// With options it is a height map: the image must be grey, its samples, of 1 to 16 bits as they stand in the file, are
/// the counts. Samples that are fully transparent are invalid. The first row becomes y = 0 (x = 0 if x runs along
/// rows).
///
/// Without options it is an image of 8 bits. Grey of fewer bits is spread over 0 to 255. Colour, also of a palette,
/// becomes grey by the luma of Rec. ITU-R BT.601-7, section 2.5.1: 0.299 red + 0.587 green + 0.114 blue, rounded, of
/// the samples as they stand, so that three equal ones are kept; colour of 16 bits is scaled to 8 bits first.
/// Transparency is not used. Gamma and colour profiles are not either.
///
/// May be called from several threads; what libpng has to say goes into the notes or into the error.
/// @throws Error  if the file is missing, damaged or truncated, or has more samples than a scan may; if grey of 16 bits
///                has no options, because these are heights; if colours have some
[[nodiscard]] Scan ReadPng(const std::filesystem::path& file, const std::optional<GridOptions>& options);
} // namespace Mu::Host
