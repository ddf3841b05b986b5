#include <Host/Pictures/ColourMap.h>

#include <algorithm>
#include <cmath>

namespace Mu::Host
{
namespace
{
constexpr Colour lowest{0.04, 0.10, 0.42, 1};
constexpr Colour highest{1.00, 0.92, 0.30, 1};

/// IEC 61966-2-1.
double LinearOf(double part)
{
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double PartOf(double linear)
{
    const double part = linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
    return std::clamp(part, 0.0, 1.0);
}

std::uint32_t Byte(double part)
{
    return static_cast<std::uint32_t>(std::lround(255 * std::clamp(part, 0.0, 1.0)));
}

double Between(double first, double last, double share)
{
    return first + (last - first) * share;
}
} // namespace

Colour ColourOf(z32u argb)
{
    const auto part = [argb](unsigned shift) { return static_cast<double>((argb >> shift) & 0xFFU) / 255; };
    return {part(16), part(8), part(0), part(24)};
}

std::uint32_t NumberOf(const Colour& colour)
{
    return Byte(colour.alpha) << 24U | Byte(colour.red) << 16U | Byte(colour.green) << 8U | Byte(colour.blue);
}

Lab LabOf(const Colour& colour)
{
    const double red = LinearOf(colour.red);
    const double green = LinearOf(colour.green);
    const double blue = LinearOf(colour.blue);
    const double l = std::cbrt(0.4122214708 * red + 0.5363325363 * green + 0.0514459929 * blue);
    const double m = std::cbrt(0.2119034982 * red + 0.6806995451 * green + 0.1073969566 * blue);
    const double s = std::cbrt(0.0883024619 * red + 0.2817188376 * green + 0.6299787005 * blue);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

Colour ColourOf(const Lab& lab)
{
    const auto cube = [](double value) { return value * value * value; };
    const double l = cube(lab.lightness + 0.3963377774 * lab.a + 0.2158037573 * lab.b);
    const double m = cube(lab.lightness - 0.1055613458 * lab.a - 0.0638541728 * lab.b);
    const double s = cube(lab.lightness - 0.0894841775 * lab.a - 1.2914855480 * lab.b);
    return {PartOf(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
            PartOf(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
            PartOf(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s), 1};
}

Colour HeightColour(double share, double light)
{
    const Lab first = LabOf(lowest);
    const Lab last = LabOf(highest);
    const double at = std::isnan(share) ? 0 : std::clamp(share, 0.0, 1.0);
    return ColourOf(Lab{Between(first.lightness, last.lightness, at) + light, Between(first.a, last.a, at),
                        Between(first.b, last.b, at)});
}
} // namespace Mu::Host
