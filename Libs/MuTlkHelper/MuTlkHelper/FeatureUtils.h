#pragma once

#include <MuTlkHelper/Export.h>

#include <MuVision/Features.h>

#include <zApi/zTypes.h>

// Lines, circles, planes and the points that they are made of, in mm. A record without value holds nulls
// (`zNULL_64F`), and is what comes out where there is nothing to tell; the validity tests find it. A NaN is not null.

namespace Mu::TlkHelper
{
// 1 if no component is null, else 0.

[[nodiscard]] MU_TLK_EXPORT int IsValidPoint(const zPoint64f& point);
[[nodiscard]] MU_TLK_EXPORT int IsValidPoint(const zPoint3d64f& point);
[[nodiscard]] MU_TLK_EXPORT int IsValidLine(const zLine3d64f& line);
[[nodiscard]] MU_TLK_EXPORT int IsValidPlane(const zPlane3d64f& plane);

// The geometry of a feature message. A null message and one of another kind give a record of nulls.

/// The line of a `TvLineFeatureMsg`.
[[nodiscard]] MU_TLK_EXPORT zLine3d64f GetLineFromFeatureMessage(void* message);

/// The circle of a `TvCircleFeatureMsg`. Without one the radius is 0.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Circle3d<double> GetCircleFromFeatureMessage(void* message);

/// The plane of a `TvPlaneFeatureMsg`, its normal brought to length 1; the distance is taken as it stands.
/// @throws Ta::Exception -997 if the normal is not finite
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::PlaneParams<double> GetPlaneFromFeatureMessage(void* message);

// The point of a line at a coordinate. A line whose direction hardly moves in x (2 to the power -23 at most) gives a
// null point. A line of nulls moves: test it first.

/// The point of the line at `x`.
[[nodiscard]] MU_TLK_EXPORT zPoint3d64f LineSolveForX(const zLine3d64f& line, double x);

/// The point of the line at `y`. A line that does not move in y gives infinities or NaN.
[[nodiscard]] MU_TLK_EXPORT zPoint3d64f LineSolveForY(const zLine3d64f& line, double y);

// Planes by a point and a normal. The point is where the plane crosses an axis: the z axis, else the y axis, else the x
// axis.

/// The plane of `params`, its normal as long as it is there; nulls if one of them is null or the normal has length 0.
/// @throws Ta::Exception -997 if the normal is not finite
[[nodiscard]] MU_TLK_EXPORT zPlane3d64f GetPlaneFromParams(const Mu::Vision::PlaneParams<double>& params);

/// The plane through `point`, its normal brought to length 1; nulls if `normal` or `point` is null. With a normal of
/// length 0 the point of the plane is null.
/// @throws Ta::Exception -997 if the normal is not finite
[[nodiscard]] MU_TLK_EXPORT zPlane3d64f GetPlaneFromNormalAndPoint(const zPoint3d64f& normal, const zPoint3d64f& point);
} // namespace Mu::TlkHelper
