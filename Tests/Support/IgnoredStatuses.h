#pragma once

#include <algorithm>
#include <span>
#include <string>

namespace Support
{
/// A status that is dropped on purpose: whose, and why. Everything else must be raised.
struct Ignored
{
    const char* operation;
    const char* reason;
};

inline bool IsIgnored(std::span<const Ignored> ignored, const std::string& operation)
{
    return std::ranges::any_of(ignored, [&](const Ignored& i) { return operation == i.operation; });
}
} // namespace Support
