#pragma once

#include <cstdio>
#include <cstdlib>

namespace Support
{
[[noreturn]] inline void FailClaim(const char* claim, const char* file, int line)
{
    std::fprintf(stderr, "%s:%d: this does not hold: %s\n", file, line, claim);
    std::abort();
}
} // namespace Support

/// Ends the process unless the claim holds: that is what a fuzzer takes for a finding.
#define MU_REQUIRE(...)                                                                                                \
    do                                                                                                                 \
    {                                                                                                                  \
        if (!(__VA_ARGS__))                                                                                            \
        {                                                                                                              \
            Support::FailClaim(#__VA_ARGS__, __FILE__, __LINE__);                                                      \
        }                                                                                                              \
    } while (false)
