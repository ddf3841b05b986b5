#pragma once

#include <Host/CsvDialect.h>
#include <Host/EvenPlaces.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace Mu::Host
{
/// A text of numbers and how it is read.
struct CsvSource
{
    const std::filesystem::path& file;
    const CsvDialect& dialect;
    std::optional<double> invalid; ///< heights of exactly this value are none
};

/// The columns, from 0, that mean something.
struct CsvRoles
{
    std::optional<std::size_t> x;
    std::optional<std::size_t> y;
    std::size_t z = 0;
    std::optional<std::size_t> intensity;
};

/// Lines of numbers by column, as they stand in the file; not a number where a field is empty or not finite.
struct CsvSamples
{
    std::vector<double> x; ///< empty if there is no such column, as are y and intensity
    std::vector<double> y;
    std::vector<double> z;
    std::vector<std::uint8_t> intensity; ///< 0 where the field is empty
    PrintedDigits xDigits;
    PrintedDigits yDigits;
    std::vector<std::pair<std::size_t, std::uint64_t>> lineRuns; ///< sample and line, where lines do not just go on

    /// The line of a sample, from 1.
    [[nodiscard]] std::uint64_t LineOf(std::size_t sample) const;
};

/// @throws Error  with line and column, if a line has other fields than the first, a number is none or beyond the range
///                of doubles, or an intensity is not from 0 to 255; if there are more lines than a scan may have
///                samples
[[nodiscard]] CsvSamples ReadCsvSamples(const CsvSource& source, const CsvRoles& roles);

/// Rows of heights; not a number where a field is empty or not finite.
struct CsvMatrix
{
    std::size_t columns = 0;
    std::size_t rows = 0;
    std::vector<double> heights; ///< columns * rows, row by row
    bool hadEmptyEnd = false;    ///< all lines ended in a separator, which gives no column
};

/// @throws Error  as above, and if a side is longer than that of a scan may be
[[nodiscard]] CsvMatrix ReadCsvMatrix(const CsvSource& source);
} // namespace Mu::Host
