#pragma once

#include <zApi/zTypes.h>

#include <concepts>
#include <limits>

/// `value` as an integer, cut off towards 0. Beyond the range of the type it is the nearest limit, for NaN the lowest
/// value: never what the processor makes of it.
template <std::integral Integer>
[[nodiscard]] constexpr Integer zSaturate(z64f value) noexcept
{
    using Limits = std::numeric_limits<Integer>;
    // Exact, as a power of two: the first value past the highest, which itself may not be exact.
    constexpr z64f past = 2.0 * static_cast<z64f>(Limits::max() / 2 + 1);
    if (!(value > static_cast<z64f>(Limits::min())))
    {
        return Limits::min();
    }
    return value < past ? static_cast<Integer>(value) : Limits::max();
}
