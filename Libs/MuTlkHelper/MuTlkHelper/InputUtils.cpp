#include <MuTlkHelper/InputUtils.h>

#include <TaVision/TvImageMsg.h>
#include <TaVision/TvProfileMsg.h>
#include <TaVision/TvSurfaceMsg.h>

#include <algorithm>

namespace Mu::TlkHelper
{
namespace
{
using Mu::Vision::Region2d;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;

constexpr double SAMPLE_SPAN = 65535.0; // the steps that 16 bits can tell

struct Range
{
    double centre;
    double extent;
};

Range Expanded(const Range& a, const Range& b)
{
    const double low = std::min(a.centre - a.extent / 2, b.centre - b.extent / 2);
    const double high = std::max(a.centre + a.extent / 2, b.centre + b.extent / 2);
    const double extent = high - low;
    return {low + extent / 2, extent};
}

// For samples that carry their own place: all that they can tell.
zRect3d64f SpanBox(void* message)
{
    const zPoint3d64f offset = TvDataMsg_Offset(message);
    const zPoint3d64f scale = TvDataMsg_Scale(message);
    return {offset.x, offset.y, offset.z, SAMPLE_SPAN * scale.x, SAMPLE_SPAN * scale.y, SAMPLE_SPAN * scale.z};
}

// For heights on a grid.
zRect3d64f GridBox(void* message)
{
    const zPoint3d64f offset = TvDataMsg_Offset(message);
    const zPoint3d64f scale = TvDataMsg_Scale(message);
    const double width = static_cast<double>(TvDataMsg_Width(message)) * scale.x;
    const double length = static_cast<double>(TvDataMsg_Length(message)) * scale.y;
    // Required: the height is centred on the offset, not begun at it.
    return {offset.x + width / 2, offset.y + length / 2, offset.z, width, length, SAMPLE_SPAN * scale.z};
}

zRect3d64f BoxOfProfile(void* message)
{
    // Required: the bounding box of points that carry their own place is not looked at.
    if (TvProfileMsg_PointType(message) != zTypeOf(z16s))
    {
        return SpanBox(message);
    }
    const zRect3d64f box = TvProfileMsg_BoundingBoxAt(message, 0);
    return box.width > 0.0 && box.height > 0.0 ? box : GridBox(message);
}

zRect3d64f BoxOfSurface(void* message)
{
    const zRect3d64f box = TvSurfaceMsg_BoundingBox(message);
    if (box.width > 0.0 && box.length > 0.0 && box.height > 0.0)
    {
        return box;
    }
    return TvSurfaceMsg_PointType(message) == zTypeOf(z16s) ? GridBox(message) : SpanBox(message);
}
} // namespace

RegionXZ<double> ExpandProfileRegion(const RegionXZ<double>& a, const RegionXZ<double>& b)
{
    const Range alongX = Expanded({a.x, a.width}, {b.x, b.width});
    const Range alongZ = Expanded({a.z, a.height}, {b.z, b.height});
    return {alongX.centre, alongZ.centre, alongX.extent, alongZ.extent, 0.0};
}

RegionXZ<double> GetFullProfileRegion(void* message)
{
    const zRect3d64f box = BoxOfProfile(message);
    return {box.x, box.z, box.width, box.height, 0.0};
}

Region3d<double> GetFullSurfaceRegion(void* message)
{
    const zRect3d64f box = BoxOfSurface(message);
    return {box.x, box.y, box.z, box.width, box.length, box.height, 0.0, 0.0, 0.0};
}

Region2d<double> GetFullImageRegion(void* message)
{
    const auto width = static_cast<double>(TvImageMsg_Width(message));
    const auto length = static_cast<double>(TvImageMsg_Height(message));
    return {width / 2.0, length / 2.0, width, length, 0.0};
}

Region3d<double> GetFullBoxRegion(void* message)
{
    if (xzCastClass_ObjectIs(message, zTypeOf(TvProfileMsg)))
    {
        const RegionXZ<double> region = GetFullProfileRegion(message);
        return {region.x, 0.0, region.z, region.width, 0.0, region.height, 0.0, 0.0, 0.0};
    }
    if (xzCastClass_ObjectIs(message, zTypeOf(TvSurfaceMsg)))
    {
        return GetFullSurfaceRegion(message);
    }
    if (xzCastClass_ObjectIs(message, zTypeOf(TvImageMsg)))
    {
        const Region2d<double> region = GetFullImageRegion(message);
        return {region.x, region.y, 0.0, region.width, region.length, 0.0, 0.0, 0.0, 0.0};
    }
    return {};
}

RegionXZ<double> GetProfileRegion(const Ta::Params::ProfileRegion& region)
{
    return {region.x, region.z, region.width, region.height, region.yAngle};
}

Region2d<double> GetSurfaceRegion(const Ta::Params::SurfaceRegion2d& region)
{
    return {region.x, region.y, region.width, region.length, region.zAngle};
}

Region3d<double> GetSurfaceRegion(const Ta::Params::SurfaceRegion3d& region)
{
    return {region.x, region.y, region.z, region.width, region.length, region.height, 0.0, 0.0, region.zAngle};
}

Region3d<double> GetBoxRegion(const Ta::Params::BoxRegion& region)
{
    return {region.x,      region.y,      region.z,      region.width, region.length,
            region.height, region.xAngle, region.yAngle, region.zAngle};
}
} // namespace Mu::TlkHelper
