#include <MuTlkHelper/FeatureUtils.h>

#include <MuVision/ValidVector.h>
#include <TaApi/Raise.h>
#include <TaVision/TvCircleFeatureMsg.h>
#include <TaVision/TvLineFeatureMsg.h>
#include <TaVision/TvPlaneFeatureMsg.h>
#include <zApi/zObject.h>
#include <zVision/zS3dMath.h>

#include <cmath>

namespace
{
constexpr zPoint3d64f NULL_POINT{zNULL_64F, zNULL_64F, zNULL_64F};

double Dot(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// Where the points p with normal . p = product cross an axis.
zPoint3d64f AxisCrossing(const zPoint3d64f& normal, double product)
{
    if (normal.z != 0.0)
    {
        return {0.0, 0.0, product / normal.z};
    }
    if (normal.y != 0.0)
    {
        return {0.0, product / normal.y, 0.0};
    }
    if (normal.x != 0.0)
    {
        return {product / normal.x, 0.0, 0.0};
    }
    return NULL_POINT;
}

// Required: the guard looks at x, whichever coordinate the line is solved for.
bool CanBeSolved(const zLine3d64f& line)
{
    return std::abs(line.direction.x) > Mu::Vision::USABLE_LENGTH;
}
} // namespace

namespace Mu::TlkHelper
{
int IsValidPoint(const zPoint64f& point)
{
    return point.x != zNULL_64F && point.y != zNULL_64F ? 1 : 0;
}

int IsValidPoint(const zPoint3d64f& point)
{
    return point.x != zNULL_64F && point.y != zNULL_64F && point.z != zNULL_64F ? 1 : 0;
}

int IsValidLine(const zLine3d64f& line)
{
    return IsValidPoint(line.point) != 0 ? IsValidPoint(line.direction) : 0;
}

int IsValidPlane(const zPlane3d64f& plane)
{
    return IsValidPoint(plane.point) != 0 ? IsValidPoint(plane.normal) : 0;
}

zLine3d64f GetLineFromFeatureMessage(void* message)
{
    if (!xzCastClass_ObjectIs(message, zTypeOf(TvLineFeatureMsg)))
    {
        return {NULL_POINT, NULL_POINT};
    }
    return {TvLineFeatureMsg_Position(message), TvLineFeatureMsg_Direction(message)};
}

Mu::Vision::Circle3d<double> GetCircleFromFeatureMessage(void* message)
{
    if (!xzCastClass_ObjectIs(message, zTypeOf(TvCircleFeatureMsg)))
    {
        return {};
    }
    return {TvCircleFeatureMsg_Position(message), TvCircleFeatureMsg_Normal(message),
            TvCircleFeatureMsg_Radius(message)};
}

Mu::Vision::PlaneParams<double> GetPlaneFromFeatureMessage(void* message)
{
    if (!xzCastClass_ObjectIs(message, zTypeOf(TvPlaneFeatureMsg)))
    {
        return {};
    }
    zPoint3d64f normal = TvPlaneFeatureMsg_Normal(message);
    MU_CHECK(zS3dMath_Normalize64f(&normal));
    // Required: the distance is not divided by the length of the normal.
    return {normal.x, normal.y, normal.z, -TvPlaneFeatureMsg_OriginDistance(message)};
}

zPoint3d64f LineSolveForX(const zLine3d64f& line, double x)
{
    if (!CanBeSolved(line))
    {
        return NULL_POINT;
    }
    const double t = (x - line.point.x) / line.direction.x;
    return {x, line.point.y + t * line.direction.y, line.point.z + t * line.direction.z};
}

zPoint3d64f LineSolveForY(const zLine3d64f& line, double y)
{
    if (!CanBeSolved(line))
    {
        return NULL_POINT;
    }
    const double t = (y - line.point.y) / line.direction.y;
    return {line.point.x + t * line.direction.x, y, line.point.z + t * line.direction.z};
}

zPlane3d64f GetPlaneFromParams(const Mu::Vision::PlaneParams<double>& params)
{
    const zPoint3d64f normal{params.a, params.b, params.c};
    if (params.d == zNULL_64F || !Mu::Vision::IsValidVector(normal))
    {
        return {NULL_POINT, NULL_POINT};
    }
    return {AxisCrossing(normal, -params.d), normal};
}

zPlane3d64f GetPlaneFromNormalAndPoint(const zPoint3d64f& normal, const zPoint3d64f& point)
{
    if (IsValidPoint(normal) == 0 || IsValidPoint(point) == 0)
    {
        return {NULL_POINT, NULL_POINT};
    }
    zPoint3d64f direction = normal;
    MU_CHECK(zS3dMath_Normalize64f(&direction));
    return {AxisCrossing(direction, Dot(direction, point)), direction};
}
} // namespace Mu::TlkHelper
