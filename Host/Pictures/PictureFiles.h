#pragma once

#include <Host/Job.h>
#include <Host/JobRunner.h>
#include <Host/Pictures/Canvas.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace Mu::Host
{
/// The most pictures of one run: all are held until the run is over.
inline constexpr std::size_t mostPictures = 1'000;

/// The format by the ending of a file's name: .png, .svg or .pdf, in capitals too.
/// @throws Error  if it is another one, or the file is "-"
[[nodiscard]] PictureFormat PictureFormatOf(const std::filesystem::path& file, const JobPlace& place);

/// The files of the pictures of scans: `file` itself for one scan; for several "out.png" becomes "out-07-plate.png" for
/// the 7th of up to 99 scans, from "plate.tif". Of the scan's name only letters, digits, '.', '-' and '_' of ASCII are
/// taken over, '_' for others, and at most 60 characters.
/// @throws Error  if there are more than `mostPictures`
[[nodiscard]] std::vector<std::filesystem::path>
PictureFiles(const std::filesystem::path& file, const std::vector<ScanSetup>& scans, const JobPlace& place);

/// The picture of a scan that was just executed, as a file. @throws Error if there is no memory
[[nodiscard]] std::string PictureOf(const ExecutedScan& executed, PictureFormat format);
} // namespace Mu::Host
