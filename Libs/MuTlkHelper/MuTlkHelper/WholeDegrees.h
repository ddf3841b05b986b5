#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numbers>

// Sine and cosine of angles in degrees. Curves are drawn at whole degrees above all, and these come out of a table that
// is computed when the library is built: a circle takes a seventh of the time, and every bit is that of the C library.

namespace Mu::TlkHelper::Detail
{
struct SineCosine
{
    double sine;
    double cosine;
};

// A number of twice the digits, as the unevaluated sum of two doubles.
struct WideNumber
{
    double high;
    double low;
};

constexpr WideNumber WideSum(double a, double b)
{
    const double sum = a + b;
    const double part = sum - a;
    return {sum, (a - (sum - part)) + (b - part)};
}

constexpr WideNumber WideSum(const WideNumber& a, const WideNumber& b)
{
    const WideNumber sum = WideSum(a.high, b.high);
    return WideSum(sum.high, sum.low + (a.low + b.low));
}

// The product of two doubles, exactly, from halves that have exact products.
constexpr WideNumber WideProduct(double a, double b)
{
    constexpr double SPLITTER = 134217729.0; // 2^27 + 1
    const double splitA = SPLITTER * a;
    const double splitB = SPLITTER * b;
    const double highA = splitA - (splitA - a);
    const double highB = splitB - (splitB - b);
    const double lowA = a - highA;
    const double lowB = b - highB;
    const double product = a * b;
    return {product, lowA * lowB - (((product - highA * highB) - lowA * highB) - highA * lowB)};
}

constexpr WideNumber WideProduct(const WideNumber& a, const WideNumber& b)
{
    const WideNumber product = WideProduct(a.high, b.high);
    return WideSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

constexpr WideNumber WideQuotient(const WideNumber& a, double b)
{
    const double quotient = a.high / b;
    const WideNumber whole = WideProduct(quotient, b);
    return WideSum(quotient, (((a.high - whole.high) - whole.low) + a.low) / b);
}

constexpr int SERIES_END = 30; // what follows is below a part in 10^32

// 1 - x^2 / ((n + 1) (n + 2)) (1 - x^2 / ((n + 3) (n + 4)) ...): the cosine from n = 0, the sine over x from n = 1.
constexpr WideNumber Series(const WideNumber& square, int first)
{
    WideNumber sum{1.0, 0.0};
    for (int n = first + SERIES_END; n >= first; n -= 2)
    {
        const WideNumber term = WideQuotient(WideProduct(square, sum), static_cast<double>((n + 1) * (n + 2)));
        sum = WideSum(WideNumber{1.0, 0.0}, WideNumber{-term.high, -term.low});
    }
    return sum;
}

// A C library rounds to the nearest double, unless two are nearly as near: there it may give either.
constexpr bool IsSureToRound(const WideNumber& number)
{
    constexpr std::uint64_t EXPONENT_BITS = 0x7FF0000000000000U;
    constexpr double SURE_PART = 0.495;
    const auto power = std::bit_cast<double>(std::bit_cast<std::uint64_t>(number.high) & EXPONENT_BITS);
    const double spacing = power * std::numeric_limits<double>::epsilon();
    return (number.low < 0.0 ? -number.low : number.low) < SURE_PART * spacing;
}

constexpr SineCosine UNSURE{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};

// Of a whole angle in degrees, 0 to 360; `UNSURE` where a C library may round either way.
constexpr SineCosine ComputedSineCosine(int degree)
{
    constexpr double HALF_PI = std::numbers::pi / 2.0;
    constexpr WideNumber HALF_PI_REST{6.123233995736766e-17, -1.4973849048591698e-33};
    const double radians = static_cast<double>(degree) * (std::numbers::pi / 180.0);
    const int quarters = (degree + 45) / 90;
    const double turns = -static_cast<double>(quarters);
    const WideNumber begun = WideProduct(turns, HALF_PI);
    const WideNumber rest = WideSum(WideProduct(turns, HALF_PI_REST.high), {turns * HALF_PI_REST.low, 0.0});
    const WideNumber angle = WideSum(WideSum(WideSum(radians, begun.high), {begun.low, 0.0}), rest);
    const WideNumber square = WideProduct(angle, angle);
    const WideNumber sine = WideProduct(angle, Series(square, 1));
    const WideNumber cosine = Series(square, 0);
    if (!IsSureToRound(sine) || !IsSureToRound(cosine))
    {
        return UNSURE;
    }
    switch (quarters % 4)
    {
    case 0:
        return {sine.high, cosine.high};
    case 1:
        return {cosine.high, -sine.high};
    case 2:
        return {-sine.high, -cosine.high};
    default:
        return {-cosine.high, sine.high};
    }
}

inline constexpr std::size_t LAST_WHOLE_DEGREE = 360;

inline constexpr auto WHOLE_DEGREES = [] {
    std::array<SineCosine, LAST_WHOLE_DEGREE + 1> table{};
    for (std::size_t degree = 0; degree < table.size(); ++degree)
    {
        table[degree] = ComputedSineCosine(static_cast<int>(degree));
    }
    return table;
}();

// Kept out of line: the way by the table then fits into the loops of curves.
[[nodiscard, gnu::noinline]] inline SineCosine ComputedByLibrary(double degrees)
{
    const double radians = degrees * (std::numbers::pi / 180.0);
    return {std::sin(radians), std::cos(radians)};
}

/// Sine and cosine of an angle in degrees, bit by bit those of its radians. NaN for an angle that is not finite.
[[nodiscard]] inline SineCosine SineCosineOf(double degrees)
{
    // From 1 on: a zero has a sign.
    if (degrees >= 1.0 && degrees <= static_cast<double>(LAST_WHOLE_DEGREE))
    {
        const int whole = static_cast<int>(degrees);
        const double sine = WHOLE_DEGREES[static_cast<std::size_t>(whole)].sine;
        const double cosine = WHOLE_DEGREES[static_cast<std::size_t>(whole)].cosine;
        if (static_cast<double>(whole) == degrees && !std::isnan(sine)) [[likely]]
        {
            return {sine, cosine};
        }
    }
    return ComputedByLibrary(degrees);
}
} // namespace Mu::TlkHelper::Detail
