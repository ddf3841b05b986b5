#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace Mu::Host
{
/// The inputs by which a tool's regions follow a feature that another tool finds.
inline constexpr std::array<std::string_view, 6> anchorInputs = {"AnchorX",      "AnchorY",      "AnchorZ",
                                                                 "AnchorXAngle", "AnchorYAngle", "AnchorZAngle"};

[[nodiscard]] inline bool IsAnchorInput(std::string_view input)
{
    return std::ranges::find(anchorInputs, input) != anchorInputs.end();
}
} // namespace Mu::Host
