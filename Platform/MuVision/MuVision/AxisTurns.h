#pragma once

#include <MuVision/Null.h>

#include <zVision/zDegrees.h>
#include <zVision/zM3dTransform3d.h>

namespace Mu::Vision
{
/// Turns two rows of a rotation, those of the axes that follow the axis of the turn.
inline void TurnRows(double angle, double (&next)[3], double (&afterNext)[3])
{
    const auto [s, c] = zDegrees_Turn(angle);
    for (int column = 0; column < 3; ++column)
    {
        const double first = next[column];
        const double second = afterNext[column];
        next[column] = first * c - second * s;
        // No -0 in what people read.
        afterNext[column] = first * s + second * c + 0.0;
    }
}

/// The rotation about x, then y, then z, each a fixed axis, without translation. A null angle turns nothing. Most turn
/// about one axis only: the others cost nothing.
inline zM3dTransform3d TurnXYZ(double xAngle, double yAngle, double zAngle)
{
    double x[3] = {1.0, 0.0, 0.0};
    double y[3] = {0.0, 1.0, 0.0};
    double z[3] = {0.0, 0.0, 1.0};
    if (NullAsZero(xAngle) != 0.0)
    {
        TurnRows(xAngle, y, z);
    }
    if (NullAsZero(yAngle) != 0.0)
    {
        TurnRows(yAngle, z, x);
    }
    if (NullAsZero(zAngle) != 0.0)
    {
        TurnRows(zAngle, x, y);
    }
    return {x[0], x[1], x[2], 0.0, y[0], y[1], y[2], 0.0, z[0], z[1], z[2], 0.0};
}
} // namespace Mu::Vision
