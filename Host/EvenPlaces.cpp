#include <Host/EvenPlaces.h>

#include <Host/SampleLevels.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Mu::Host
{
namespace
{
/// The power of ten as numbers with at most 400 digits have it; beyond that it is 0 or infinite.
int ExponentOf(std::string_view digits)
{
    int exponent = 0;
    digits.remove_prefix(digits.starts_with('+') ? 1 : 0);
    std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    return std::clamp(exponent, -400, 400);
}
} // namespace

void PrintedDigits::Add(std::string_view number)
{
    const std::size_t mark = number.find_first_of("eE");
    const int exponent = mark == number.npos ? 0 : ExponentOf(number.substr(mark + 1));
    int behind = 0;
    int digits = 0;
    bool isBehind = false;
    for (const char character : number.substr(0, mark))
    {
        const bool isDigit = character >= '0' && character <= '9';
        isBehind = isBehind || character == '.' || character == ',';
        behind += isDigit && isBehind ? 1 : 0;
        digits += isDigit && (digits > 0 || character != '0') ? 1 : 0;
    }
    decimals = std::max(decimals, behind - exponent);
    significant = std::max(significant, digits);
}

double PrintedDigits::LastUnit(double value) const
{
    if (decimals == none)
    {
        return 0;
    }
    const double fixed = std::pow(10.0, -decimals);
    if (value == 0 || significant == 0)
    {
        return fixed;
    }
    const double highest = std::floor(std::log10(std::abs(value)));
    return std::max(fixed, std::pow(10.0, highest + 1 - significant));
}

EvenPlaces::EvenPlaces(const Anchor& first, const Anchor& last, const PrintedDigits& digitsOfAll)
    : start(first)
    , step((last.value - first.value) / static_cast<double>(last.index - first.index))
    , digits(digitsOfAll)
    , anchorUnit(std::max(digitsOfAll.LastUnit(first.value), digitsOfAll.LastUnit(last.value)))
{
    // What doubles lose on the way from text to place: a few units of the last bit.
    const double lost =
        4 * std::numeric_limits<double>::epsilon() * std::max(std::abs(first.value), std::abs(last.value));
    const double halfLevel =
        std::abs(last.value - first.value) / (SampleLevels::highestCount - SampleLevels::lowestCount) / 2;
    never = std::abs(step) / 10 + lost;
    always = std::min(never, halfLevel + lost);
}

double EvenPlaces::At(std::size_t index) const
{
    return start.value + step * (static_cast<double>(index) - static_cast<double>(start.index));
}

bool EvenPlaces::IsAt(double value, std::size_t index) const
{
    const double off = std::abs(value - At(index));
    if (off <= always)
    {
        return true;
    }
    return off <= never && off <= digits.LastUnit(value) / 2 + anchorUnit / 2;
}
} // namespace Mu::Host
