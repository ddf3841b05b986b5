#pragma once

#include <zApi/zTypes.h>

#include <cstdint>

namespace Mu::Host
{
/// A colour of sRGB; every part from 0 to 1.
struct Colour
{
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    friend bool operator==(const Colour&, const Colour&) = default;
};

/// The colour that a number 0xAARRGGBB stands for, and back (rounded).
[[nodiscard]] Colour ColourOf(z32u argb);
[[nodiscard]] std::uint32_t NumberOf(const Colour& colour);

/// A colour by lightness (0 to 1), and its place between green and red (`a`) and between blue and yellow (`b`).
///
/// The coordinates of OKLab, in which equal distances look equally far apart: B. Ottosson, "A perceptual color space
/// for image processing", 2020, https://bottosson.github.io/posts/oklab/.
struct Lab
{
    double lightness = 0;
    double a = 0;
    double b = 0;
};

[[nodiscard]] Lab LabOf(const Colour& colour);

/// Parts that a screen does not show are cut to 0 or 1.
[[nodiscard]] Colour ColourOf(const Lab& lab);

/// Where a height stands between the lowest (0, dark blue) and the highest (1, yellow); outside it is cut to them.
///
/// The colours lie evenly on a straight line in OKLab, so that equal steps of height are equal steps of colour.
/// Lightness only grows, and the hues are those that colour-blind people tell apart.
/// @param light  added to the lightness, for shading
[[nodiscard]] Colour HeightColour(double share, double light = 0);
} // namespace Mu::Host
