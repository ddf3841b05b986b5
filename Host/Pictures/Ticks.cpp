#include <Host/Pictures/Ticks.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace Mu::Host
{
namespace
{
/// The shortest of 1, 2 and 5 times a power of ten that is at least `least`.
double RoundStep(double least)
{
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
    {
        // The power may be off by its last bit.
        if (factor * power >= least * (1 - 1e-9))
        {
            return factor * power;
        }
    }
    return 10 * power;
}

std::string TextOf(double value, double step)
{
    constexpr double largest = 1e7;
    constexpr int mostDecimals = 7;
    const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
    if (std::abs(value) >= largest || decimals > mostDecimals)
    {
        // As many digits as lie between the first one of the value and that of the step.
        const auto exponent = [](double number) { return std::floor(std::log10(std::abs(number)) + 1e-9); };
        const double digits = value == 0 ? 1 : exponent(value) - exponent(step) + 1;
        return fmt::format("{:.{}g}", value, static_cast<int>(std::clamp(digits, 1.0, 17.0)));
    }
    return fmt::format("{:.{}f}", value, decimals);
}
} // namespace

Ticks RoundTicks(const Range& range, std::size_t most)
{
    const auto [low, high] = std::minmax(range.low, range.high);
    const double extent = high - low;
    if (!std::isfinite(extent) || most == 0)
    {
        return {};
    }
    const double least = std::max(extent / static_cast<double>(std::max<std::size_t>(most, 2) - 1), 1e-300);
    // A step that is lost in the value gives the same place again and again.
    if (!(low + least > low) || extent == 0)
    {
        return {{low}, {fmt::format("{:.6g}", low)}};
    }
    const double step = RoundStep(least);
    Ticks ticks;
    const double slack = extent * 1e-9;
    for (double index = std::ceil((low - slack) / step); ticks.places.size() < most; ++index)
    {
        const double place = index == 0 ? 0 : index * step;
        if (place > high + slack)
        {
            break;
        }
        ticks.places.push_back(place);
        ticks.texts.push_back(TextOf(place, step));
    }
    return ticks;
}
} // namespace Mu::Host
