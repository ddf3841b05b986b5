#pragma once

#include <zApi/zTypes.h>

#include <cmath>
#include <limits>
#include <numbers>

/// Sine and cosine of an angle.
struct zDegreesTurn
{
    z64f sine, cosine;
};

/// Sine and cosine of an angle in degrees: exactly 0, 1 or -1 at every multiple of 90, so that what is turned by a
/// right angle keeps its borders. Both are NaN for an angle that is not finite.
inline zDegreesTurn zDegrees_Turn(z64f degrees)
{
    if (!std::isfinite(degrees))
    {
        return {std::numeric_limits<z64f>::quiet_NaN(), std::numeric_limits<z64f>::quiet_NaN()};
    }
    // The remainder and the rounding are slow, and change nothing of a small angle.
    const z64f magnitude = std::abs(degrees);
    const z64f inCircle = magnitude <= 180.0 ? degrees : std::remainder(degrees, 360.0);
    const z64f quarters = magnitude <= 45.0 ? 0.0 : std::nearbyint(inCircle / 90.0);
    const z64f radians = (inCircle - quarters * 90.0) * (std::numbers::pi / 180.0);
    const z64f s = std::sin(radians);
    const z64f c = std::cos(radians);
    switch (static_cast<int>(quarters))
    {
    case 0:
        return {s, c};
    case 1:
        return {c, 0.0 - s};
    case -1:
        return {0.0 - c, s};
    default:
        return {0.0 - s, 0.0 - c};
    }
}
