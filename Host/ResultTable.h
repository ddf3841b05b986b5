#pragma once

#include <Host/RunResult.h>

#include <string>

namespace Mu::Host
{
enum class Notes
{
    Count, ///< only how many there are
    Whole
};

/// The results of a run for people: a table of at most 80 columns, as far as names can be shortened, one line for each
/// result but drawings, a line on each scan below it, and a last line on the decisions if there are any. UTF-8.
[[nodiscard]] std::string ResultTable(const RunResult& run, Notes notes);

/// A number for people: six significant digits.
[[nodiscard]] std::string ShortNumber(double value);
} // namespace Mu::Host
