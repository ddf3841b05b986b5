#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Mu::Host
{
/// 65,535 even levels, by which values of a range become samples of 16 bits: -32767 .. 32767, never null.
class SampleLevels
{
public:
    static constexpr std::int32_t highestCount = std::numeric_limits<std::int16_t>::max();
    static constexpr std::int32_t lowestCount = -highestCount;

    /// The finest levels from `lowest` to `highest`, which are finite and whose difference is.
    /// @param singleStep  the step if the range is a single value; greater than 0
    SampleLevels(double lowest, double highest, double singleStep)
        : offset(lowest + (highest - lowest) / 2)
        , scale(highest > lowest ? FinestStep(highest - lowest) : singleStep)
        , countsPerUnit(1 / scale)
    {
    }

    /// The value of count 0.
    [[nodiscard]] double Offset() const
    {
        return offset;
    }

    /// The step from count to count; greater than 0.
    [[nodiscard]] double Scale() const
    {
        return scale;
    }

    /// The nearest level of a finite value.
    [[nodiscard]] std::int16_t CountOf(double value) const
    {
        const double exact = std::clamp<double>((value - offset) * countsPerUnit, lowestCount, highestCount);
        // Truncation of a positive number rounds as a vector instruction, which std::lround does not.
        const std::int32_t count = static_cast<std::int32_t>(exact + (0.5 + highestCount + 1)) - (highestCount + 1);
        return static_cast<std::int16_t>(count);
    }

private:
    static double FinestStep(double span)
    {
        // A span so small that its steps lose bits is spread over fewer counts.
        return std::max(span / (highestCount - lowestCount), std::numeric_limits<double>::min());
    }

    double offset;
    double scale;
    double countsPerUnit;
};
} // namespace Mu::Host
