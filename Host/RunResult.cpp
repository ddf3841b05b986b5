#include <Host/RunResult.h>

#include <algorithm>
#include <array>

namespace Mu::Host
{
namespace
{
constexpr std::array stateNames{"value", "data", "null", "empty", "not sent"};
constexpr std::array decisionNames{"", "pass", "FAIL", "null"};
} // namespace

const char* NameOf(ResultState state)
{
    return stateNames[static_cast<std::size_t>(state)];
}

const char* NameOf(Decision decision)
{
    return decisionNames[static_cast<std::size_t>(decision)];
}

std::size_t CountDecisions(const RunResult& run, Decision decision)
{
    std::size_t count = 0;
    for (const ScanResult& scan : run.scans)
    {
        count += static_cast<std::size_t>(std::ranges::count(scan.results, decision, &Result::decision));
    }
    return count;
}

bool HasPassed(const RunResult& run)
{
    return CountDecisions(run, Decision::Fail) == 0 && CountDecisions(run, Decision::Null) == 0;
}
} // namespace Mu::Host
