#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Mu::Host
{
/// The remedy for a name that is not known: the known one that was probably meant, and all known ones, in their order.
/// Reads "Did you mean "Mean"? Known here: Maximum, Mean"; without full stop. Long lists are cut with their count.
[[nodiscard]] std::string KnownNames(std::string_view unknown, const std::vector<std::string>& known);
} // namespace Mu::Host
