#pragma once

#include <cstddef>
#include <limits>
#include <string_view>

namespace Mu::Host
{
/// The digits that a text gives the numbers of a column, whether it has a fixed number of them behind the decimal mark
/// or in all. Trailing zeros may be left out: the longest numbers tell.
class PrintedDigits
{
public:
    /// Takes note of a number as it is written, with a point or a comma.
    void Add(std::string_view number);

    /// A unit of the last digit of `value` where it is written in full, so that it is rounded by half of that at most;
    /// 0 without numbers.
    [[nodiscard]] double LastUnit(double value) const;

private:
    static constexpr int none = std::numeric_limits<int>::min();

    int decimals = none; ///< the most behind the decimal mark; less than 0 if the last digit is above the ones
    int significant = 0; ///< the most in all, from the first that is not 0
};

/// Places at an even distance on an axis, and whether printed numbers are such places.
///
/// A number is at its place if it is off the line from the first number to the last by no more than rounding explains:
/// half a unit of its last digit, and what half a unit of those of the first and the last number makes there; or half
/// a step of 65,534 from the first to the last number, as positions of 16 bits are rounded anyway. More than a tenth of
/// the distance of places is never explained, so that a place left out is seen.
class EvenPlaces
{
public:
    struct Anchor
    {
        std::size_t index;
        double value; ///< finite
    };

    /// The line through two numbers, the first of a smaller index than the last. Their difference must be finite.
    EvenPlaces(const Anchor& first, const Anchor& last, const PrintedDigits& digitsOfAll);

    /// From place to place; less than 0 if numbers fall, 0 if they do neither.
    [[nodiscard]] double Step() const
    {
        return step;
    }

    /// The number of a place, also before the first and behind the last.
    [[nodiscard]] double At(std::size_t index) const;

    [[nodiscard]] bool IsAt(double value, std::size_t index) const;

private:
    Anchor start;
    double step;
    PrintedDigits digits;
    double anchorUnit; ///< the larger one of first and last
    double always;     ///< off by less is always explained
    double never;      ///< off by more is never explained
};
} // namespace Mu::Host
