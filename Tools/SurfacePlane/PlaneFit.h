#pragma once

#include <zApi/zTypes.h>

#include <optional>
#include <span>

/// A plane z = xSlope x + ySlope y + offset, kept by its slopes and a point that it goes through, so that a plane far
/// from the origin keeps its digits.
struct FittedPlane
{
    zPoint3d64f centroid; ///< of the points, in mm
    double xSlope;        ///< by how much z rises along x
    double ySlope;        ///< by how much z rises along y

    /// Of length 1, upwards.
    [[nodiscard]] zPoint3d64f Normal() const;

    /// Its z at x = y = 0, in mm.
    [[nodiscard]] double ZOffset() const;

    /// How far a point lies above the plane, along the normal, in mm.
    [[nodiscard]] double Height(const zPoint3d64f& point) const;
};

/// The plane with the least sum of squares of the differences in z from the points. It goes through their centroid.
/// @param points  in mm, each coordinate made as `origin` + scale * pixel
/// @param origin  as above; where it is unknown, a coordinate as large as they occur in the points
/// Nothing for less than three points, for points on one line as seen from above, and for what is not finite.
[[nodiscard]] std::optional<FittedPlane> FitPlane(std::span<const zPoint3d64f> points, const zPoint3d64f& origin);
