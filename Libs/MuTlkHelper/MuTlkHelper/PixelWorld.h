#pragma once

#include <zApi/zSaturate.h>
#include <zApi/zTypes.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

// Pixels and world values of one axis. A pixel is a column, a row, or a 16-bit sample.

namespace Mu::TlkHelper
{
/// The nearest whole number, halves away from 0.
template <typename Integer>
constexpr Integer Rounded(double value)
{
    return zSaturate<Integer>(value > 0.0 ? value + 0.5 : value - 0.5);
}

constexpr double PixelToWorld(double value, double offset, double scale)
{
    return value * scale + offset;
}

constexpr z32s WorldToPixel(double value, double offset, double scale)
{
    return Rounded<z32s>((value - offset) / scale);
}

/// Held within 16 bits. Required: at the lower limit that is the null pixel.
constexpr z16s WorldToHeightPixel(double value, double offset, double scale)
{
    return Rounded<z16s>((value - offset) / scale);
}

/// Offset and scale of one axis.
struct Axis
{
    double offset;
    double scale;

    [[nodiscard]] constexpr double World(double pixel) const
    {
        return PixelToWorld(pixel, offset, scale);
    }

    [[nodiscard]] constexpr z32s Pixel(double world) const
    {
        return WorldToPixel(world, offset, scale);
    }

    /// A size that no world value of a 16-bit sample exceeds; not finite if one of them is not.
    [[nodiscard]] double Reach() const
    {
        constexpr double LOWEST = std::numeric_limits<z16s>::min();
        return std::abs(World(LOWEST)) + std::abs(World(-LOWEST));
    }

    /// True if all samples of 16 bits have finite world values.
    [[nodiscard]] bool IsFinite() const
    {
        return std::isfinite(Reach());
    }
};

/// Offset and scale of a message.
struct Frame
{
    Axis x;
    Axis y;
    Axis z;
};

/// A closed range of world values. A NaN bound holds nothing.
struct Bounds
{
    double low;
    double high;

    [[nodiscard]] constexpr bool Hold(double value) const
    {
        // Not short-circuited: a branch on noisy data costs more than the second compare.
        return (static_cast<int>(value >= low) & static_cast<int>(value <= high)) != 0;
    }

    void Widen(double value)
    {
        low = std::min(low, value);
        high = std::max(high, value);
    }

    [[nodiscard]] double Reach() const
    {
        return std::abs(low) + std::abs(high);
    }
};

/// The bounds of a region along one axis.
constexpr Bounds BoundsOf(double centre, double extent)
{
    return {centre - extent / 2, centre + extent / 2};
}

/// A closed range of 16-bit values; it holds none if `low` is above `high`.
struct Window
{
    z16s low = 0;
    z16s high = -1;

    [[nodiscard]] constexpr bool IsEmpty() const
    {
        return low > high;
    }
};

inline constexpr Window EVERY_PIXEL = {zNULL_16S, std::numeric_limits<z16s>::max()};
inline constexpr Window NOT_NULL = {zNULL_16S + 1, std::numeric_limits<z16s>::max()};

/// Of the values from `low` to `high` those in `limits`.
constexpr Window WindowWithin(const Window& limits, z64s low, z64s high)
{
    low = low > limits.low ? low : limits.low;
    high = high < limits.high ? high : limits.high;
    return low <= high ? Window{static_cast<z16s>(low), static_cast<z16s>(high)} : Window{};
}

/// Of the values from `low` to `high` those that are pixels and not null.
constexpr Window HeightWindow(z64s low, z64s high)
{
    return WindowWithin(NOT_NULL, low, high);
}

/// The first of `count` places for which `holds` is true, where it is false for all before and true for all behind;
/// `count` if there is none. A guess that is right to a place or two saves most of the search.
template <typename Holds>
std::size_t FirstPlace(std::size_t count, std::size_t guess, const Holds& holds)
{
    constexpr std::size_t NEAR = 2;
    std::size_t low = 0;
    std::size_t high = count;
    for (const std::size_t probe : {guess < NEAR ? 0 : guess - NEAR, guess + NEAR})
    {
        if (probe >= low && probe < high)
        {
            holds(probe) ? high = probe : low = probe + 1;
        }
    }
    while (low < high)
    {
        const std::size_t middle = low + (high - low) / 2;
        holds(middle) ? high = middle : low = middle + 1;
    }
    return low;
}

/// The samples whose world values lie in `bounds`. Rounding keeps the order of the world values, so they are one range
/// of samples; null if the axis is not finite and they need not be.
inline std::optional<Window> SamplesIn(const Bounds& bounds, const Axis& axis)
{
    if (!std::isfinite(axis.offset) || !std::isfinite(axis.scale))
    {
        return std::nullopt;
    }
    constexpr int LOWEST = EVERY_PIXEL.low;
    constexpr std::size_t SAMPLES = 65536;
    const auto world = [&axis](std::size_t place) { return axis.World(static_cast<double>(place) + LOWEST); };
    const bool rises = axis.scale >= 0.0;
    const auto first = static_cast<int>(FirstPlace(SAMPLES, 0, [&](std::size_t place) {
        return rises ? world(place) >= bounds.low : world(place) <= bounds.high;
    }));
    const auto end = static_cast<int>(FirstPlace(SAMPLES, SAMPLES, [&](std::size_t place) {
        return rises ? !(world(place) <= bounds.high) : !(world(place) >= bounds.low);
    }));
    return first < end ? Window{static_cast<z16s>(first + LOWEST), static_cast<z16s>(end - 1 + LOWEST)} : Window{};
}
} // namespace Mu::TlkHelper
