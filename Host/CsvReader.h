#pragma once

#include <Host/CsvOptions.h>
#include <Host/Scan.h>

#include <filesystem>

namespace Mu::Host
{
/// Whether this can be a text of numbers: its first lines are text, and at least one of them is data for `ReadCsv`.
/// @throws Error  if the file cannot be read, or a line is too long
[[nodiscard]] bool LooksLikeCsv(const std::filesystem::path& file);

/// Reads a text of numbers, in columns or as a matrix, whatever the locale of the process.
///
/// Fields are separated by semicolons, tabs, commas or blanks, and may be padded by blanks or stand in double quotes;
/// numbers have a point, or a comma if commas do not separate, but not both in a file; lines end in "\n" or "\r\n".
/// Lines before the first data are skipped and noted, comments ("#" and what follows) and empty lines anywhere. All
/// lines of data have the same number of fields. A field that is empty or not finite ("nan", "inf") was not measured.
///
/// A profile is on an even grid if its x are even and rise, as `EvenPlaces` has it; else samples keep positions of
/// their own, rounded to 16 bits, in the order of the file, steps backwards included.
/// A sample without x is invalid.
///
/// Points become a height map if their x and y make an even grid, with x or y fastest, either rising or falling.
///
/// @throws Error  with line and column, if the file is missing, is no such text, has a field that is not a number, or
///                more samples than a scan may; if points make no even grid; with the key, if an option is missing or
///                does not go with the others
[[nodiscard]] Scan ReadCsv(const std::filesystem::path& file, const CsvOptions& options);
} // namespace Mu::Host
