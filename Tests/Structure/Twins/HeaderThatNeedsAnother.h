#pragma once

// Compiles only where another header came before: what the check of headers must report.

namespace Twin
{
inline std::string Text()
{
    return {};
}
} // namespace Twin
