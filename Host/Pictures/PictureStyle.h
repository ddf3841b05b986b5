#pragma once

#include <Host/Pictures/ColourMap.h>

namespace Mu::Host
{
/// What texts and thin lines of a picture are drawn in, and those that are less important.
inline constexpr Colour ink{0.13, 0.15, 0.20, 1};
inline constexpr Colour quietInk{0.40, 0.43, 0.50, 1};
} // namespace Mu::Host
