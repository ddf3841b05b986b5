#pragma once

#include <zApi/zTypes.h>

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

// Turns of points, written from their definition: the references of the geometry's tests.

namespace Turns
{
/// `p` turned by `degrees` about a main axis through the origin, right-handed.
inline zPoint3d64f TurnedAbout(char axis, double degrees, const zPoint3d64f& p)
{
    const double angle = degrees * (std::numbers::pi / 180.0);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    switch (axis)
    {
    case 'x':
        return {p.x, c * p.y - s * p.z, s * p.y + c * p.z};
    case 'y':
        return {c * p.x + s * p.z, p.y, c * p.z - s * p.x};
    default:
        return {c * p.x - s * p.y, s * p.x + c * p.y, p.z};
    }
}

inline zPoint3d64f Sum(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline zPoint3d64f Difference(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline zPoint3d64f Cross(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double Dot(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// `p` turned by `degrees` about any axis through the origin, right-handed: split along, across and beside the axis.
inline zPoint3d64f TurnedAboutAxis(const zPoint3d64f& axis, double degrees, const zPoint3d64f& p)
{
    const double angle = degrees * (std::numbers::pi / 180.0);
    const double length = std::sqrt(Dot(axis, axis));
    const zPoint3d64f unit{axis.x / length, axis.y / length, axis.z / length};
    const double along = Dot(unit, p);
    const zPoint3d64f across{p.x - along * unit.x, p.y - along * unit.y, p.z - along * unit.z};
    const zPoint3d64f beside = Cross(unit, p);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {along * unit.x + c * across.x + s * beside.x, along * unit.y + c * across.y + s * beside.y,
            along * unit.z + c * across.z + s * beside.z};
}

inline void ExpectNear(const zPoint3d64f& actual, const zPoint3d64f& expected, double bound = 1e-9)
{
    EXPECT_NEAR(actual.x, expected.x, bound);
    EXPECT_NEAR(actual.y, expected.y, bound);
    EXPECT_NEAR(actual.z, expected.z, bound);
}
} // namespace Turns
