#pragma once

#include <Host/Pictures/Canvas.h>

#include <span>
#include <string>
#include <string_view>

namespace Mu::Host
{
/// Text without the characters that XML does not allow, of which U+FFFD takes the place. @param text  UTF-8 without
/// control characters
[[nodiscard]] std::string XmlText(std::string_view text);

/// An SVG as cairo writes it, made to suit: its texts, which are outlines, stand in it as texts that are not painted
/// too, so that they can be found, selected and read out; the names of its parts, which cairo counts through the life
/// of the process, count from 0.
[[nodiscard]] std::string WithText(std::string_view svg, std::span<const PlacedText> texts);
} // namespace Mu::Host
