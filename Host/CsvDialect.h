#pragma once

#include <Host/CsvFields.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Mu::Host
{
/// How a text holds its numbers.
struct CsvDialect
{
    char separator = CsvFields::blanks; ///< ';', '\t', ',' or blanks
    DecimalMark mark = DecimalMark::Unknown;
    std::uint64_t firstLine = 0;            ///< of data, from 1
    std::size_t fieldCount = 0;             ///< of each data line
    std::vector<std::size_t> numberColumns; ///< from 0: those with a number in any of the lines looked at
    std::vector<std::string> headLines;     ///< lines before the data that say something
    std::vector<std::string> headFields;    ///< of the last head line with as many fields as the data; empty if none
};

/// Finds out how a text holds its numbers, by its first 1000 lines or 256 KiB.
///
/// A line of data has at least one number, no more fields of text than others, and no field in which another separator
/// stands between digits. The separator is the one by which most numbers stand in lines of one pattern of numbers and
/// texts; of equals the first of semicolon, tab, comma and blanks. Data begin with the first line of that pattern.
/// @returns nothing if the file is no text, or no line of it is data
/// @throws Error  if the file cannot be read, or a line is too long
/// @throws Error  if a line before the data looks like a damaged one of them
[[nodiscard]] std::optional<CsvDialect> FindCsvDialect(const std::filesystem::path& file);
} // namespace Mu::Host
