#pragma once

#include <Host/Pictures/Canvas.h>
#include <Host/Pictures/View.h>

#include <string>

namespace Mu::Host
{
/// The room that axes take beside a frame, in units of the page.
inline constexpr double axisRoomLeft = 142;
inline constexpr double axisRoomBelow = 66;
inline constexpr double barRoom = 200;

/// Frame, ticks with their values, and names of the axes, as in "x (mm)".
void DrawAxes(Canvas& canvas, const View& view, const std::string& acrossName, const std::string& upName);

/// What the colours mean: the bar right of a frame, from the lowest value to the highest, which stand at its ends.
void DrawColourBar(Canvas& canvas, const Area& frame, const Range& values, const std::string& name);

/// The bar of `DrawColourBar`.
[[nodiscard]] Area ColourBarArea(const Area& frame);

/// The pattern of invalid samples and its meaning, below the bar.
void DrawInvalidKey(Canvas& canvas, const Area& frame);
} // namespace Mu::Host
