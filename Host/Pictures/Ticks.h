#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Mu::Host
{
/// A range of values; for an image's rows the high end stands below the low one.
struct Range
{
    double low = 0;
    double high = 0;

    [[nodiscard]] double Extent() const
    {
        return high - low;
    }

    [[nodiscard]] double Middle() const
    {
        return low + (high - low) / 2;
    }
};

/// Marks on an axis.
struct Ticks
{
    std::vector<double> places;
    std::vector<std::string> texts; ///< as many
};

/// Marks at round values within a range, its ends included: 1, 2 or 5 times a power of ten apart, as close as `most`
/// marks allow. All texts have the same number of decimals, enough to tell the marks apart. The range may run
/// downwards; the marks rise all the same. A range that is not finite has no marks, one without extent has one.
[[nodiscard]] Ticks RoundTicks(const Range& range, std::size_t most);
} // namespace Mu::Host
