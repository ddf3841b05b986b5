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

// What tables say of a result and of a scan. Names are as they came.

/// The name of the output, with the place in its array.
[[nodiscard]] std::string OutputText(const Result& result);

/// The value, or why there is none. Numbers have six significant digits, or as many more as it takes to tell the value
/// from its limits.
[[nodiscard]] std::string ValueText(const Result& result);

/// "1 to 2", "from 1", "up to 2", or nothing; with the digits of the value.
[[nodiscard]] std::string LimitsText(const Result& result);

/// How many samples there are, and how many without a value.
[[nodiscard]] std::string SizeText(const ScanResult& scan);
} // namespace Mu::Host
