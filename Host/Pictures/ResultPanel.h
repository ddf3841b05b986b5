#pragma once

#include <Host/Pictures/Canvas.h>
#include <Host/RunResult.h>

#include <vector>

namespace Mu::Host
{
/// The measurements of a scan as a table within an area: by tool, with value, limits and decision. A decision is told
/// by its sign, its word and its colour. If there is no room for all, those that did not pass come before those that
/// did, and a last line says how many are missing.
void DrawResults(Canvas& canvas, const Area& area, const std::vector<Result>& results);

/// The height that the table takes if it shows all; 0 without measurements.
[[nodiscard]] double ResultsHeight(const std::vector<Result>& results);

/// Whether there is anything to show in such a table.
[[nodiscard]] bool HasMeasurements(const std::vector<Result>& results);
} // namespace Mu::Host
