#include <Host/ScanMessage.h>

#include <TaVision/TvImageMsg.h>
#include <TaVision/TvProfileMsg.h>
#include <TaVision/TvSurfaceMsg.h>
#include <zRelay/zStamp.h>

#include <algorithm>
#include <optional>
#include <ranges>

namespace Mu::Host
{
namespace
{
using TaPipe::PipeDataType;

static_assert(HeightMap::nullHeight == zNULL_16S, "a height without value is the same in scans and messages");

struct Side
{
    double centre;
    double extent;
};

Side Between(double first, double last)
{
    return {(first + last) / 2, last - first};
}

/// From the first sample of a grid to the last.
Side AlongGrid(double offset, double scale, std::size_t count)
{
    return Between(offset, offset + scale * static_cast<double>(std::max<std::size_t>(count, 1) - 1));
}

/// From the lowest sample that is not null to the highest.
template <typename Samples>
Side AcrossValid(const Samples& samples, double offset, double scale)
{
    std::int16_t lowest = zNULL_16S;
    std::int16_t highest = zNULL_16S;
    bool isAny = false;
    for (const std::int16_t sample : samples)
    {
        if (sample != zNULL_16S)
        {
            lowest = isAny ? std::min(lowest, sample) : sample;
            highest = isAny ? std::max(highest, sample) : sample;
            isAny = true;
        }
    }
    return isAny ? Between(offset + scale * lowest, offset + scale * highest) : Side{0, 0};
}

zRect3d64f BoxOf(Side x, Side y, Side z)
{
    return {x.centre, y.centre, z.centre, x.extent, y.extent, z.extent};
}

zRect3d64f BoundingBox(const HeightMap& map)
{
    return BoxOf(AlongGrid(map.offsetMm.x, map.scaleMm.x, map.width),
                 AlongGrid(map.offsetMm.y, map.scaleMm.y, map.length),
                 AcrossValid(map.heights, map.offsetMm.z, map.scaleMm.z));
}

zRect3d64f BoundingBox(const PointMap& map)
{
    const auto along = [&](std::int16_t PointMap::Point::*coordinate, double offset, double scale) {
        return AcrossValid(map.points | std::views::transform(coordinate), offset, scale);
    };
    return BoxOf(along(&PointMap::Point::x, map.offsetMm.x, map.scaleMm.x),
                 along(&PointMap::Point::y, map.offsetMm.y, map.scaleMm.y),
                 along(&PointMap::Point::z, map.offsetMm.z, map.scaleMm.z));
}

zRect3d64f BoundingBox(const ProfileScan& scan)
{
    const Side x = scan.positions.empty() ? AlongGrid(scan.offsetMm.x, scan.scaleMm.x, scan.heights.size())
                                          : AcrossValid(scan.positions, scan.offsetMm.x, scan.scaleMm.x);
    return BoxOf(x, {scan.offsetMm.y, 0}, AcrossValid(scan.heights, scan.offsetMm.z, scan.scaleMm.z));
}

zPoint3d64f AsPoint(const Vector3& vector)
{
    return {vector.x, vector.y, vector.z};
}

void Stamp(void* message, z64u sequence)
{
    const zStamp stamp{0, sequence, 0, 0};
    MU_CHECK(TvDataMsg_SetStamp(message, &stamp));
}

/// What surfaces of both kinds have besides their points.
template <typename Map>
void DescribeSurface(void* message, const Map& map, z64u sequence)
{
    const zPoint3d64f offset = AsPoint(map.offsetMm);
    const zPoint3d64f scale = AsPoint(map.scaleMm);
    const zRect3d64f box = BoundingBox(map);
    MU_CHECK(TvSurfaceMsg_SetOffset(message, &offset));
    MU_CHECK(TvSurfaceMsg_SetScale(message, &scale));
    MU_CHECK(TvDataMsg_SetBoundingBox(message, &box));
    Stamp(message, sequence);
    if (!map.intensity.empty())
    {
        MU_CHECK(TvSurfaceMsg_AllocateIntensity(message, zTypeOf(z8u)));
        std::ranges::copy(map.intensity, static_cast<z8u*>(TvSurfaceMsg_Intensity(message)));
    }
}

void CopyPoints(const ProfileScan& scan, void* message)
{
    if (scan.positions.empty())
    {
        std::ranges::copy(scan.heights, static_cast<z16s*>(TvProfileMsg_Points(message)));
        return;
    }
    auto* const points = static_cast<zPoint16s*>(TvProfileMsg_Points(message));
    for (std::size_t i = 0; i < scan.heights.size(); ++i)
    {
        points[i] = {scan.positions[i], scan.heights[i]};
    }
}
} // namespace

Ta::Object<void*> MakeSurfaceMessage(const HeightMap& map, z64u sequence, void* alloc)
{
    Ta::Object<void*> message;
    MU_CHECK(TvSurfaceMsg_ConstructSimple(message.Out(), map.width, map.length, alloc));
    DescribeSurface(message.Get(), map, sequence);
    std::ranges::copy(map.heights, static_cast<z16s*>(TvSurfaceMsg_Points(message.Get())));
    return message;
}

Ta::Object<void*> MakeSurfaceMessage(const PointMap& map, z64u sequence, void* alloc)
{
    Ta::Object<void*> message;
    MU_CHECK(TvSurfaceMsg_ConstructUnresampledSimple(message.Out(), map.width, map.length, alloc));
    DescribeSurface(message.Get(), map, sequence);
    std::ranges::transform(map.points, static_cast<zPoint3d16s*>(TvSurfaceMsg_Points(message.Get())),
                           [](const PointMap::Point& point) {
                               return zPoint3d16s{point.x, point.y, point.z};
                           });
    return message;
}

Ta::Object<void*> MakeProfileMessage(const ProfileScan& scan, z64u sequence, void* alloc)
{
    const zType pointType = scan.positions.empty() ? zTypeOf(z16s) : zTypeOf(zPoint16s);
    Ta::Object<void*> message;
    MU_CHECK(TvProfileMsg_Construct(message.Out(), pointType, 1, scan.heights.size(), alloc));
    const zPoint3d64f offset = AsPoint(scan.offsetMm);
    const zPoint3d64f scale = AsPoint(scan.scaleMm);
    const zRect3d64f box = BoundingBox(scan);
    MU_CHECK(TvProfileMsg_SetOffset(message.Get(), &offset));
    MU_CHECK(TvProfileMsg_SetScale(message.Get(), &scale));
    MU_CHECK(TvDataMsg_SetBoundingBox(message.Get(), &box));
    Stamp(message.Get(), sequence);
    CopyPoints(scan, message.Get());
    if (!scan.intensity.empty())
    {
        MU_CHECK(TvProfileMsg_AllocateIntensity(message.Get(), zTypeOf(z8u)));
        std::ranges::copy(scan.intensity, static_cast<z8u*>(TvProfileMsg_Intensity(message.Get())));
    }
    return message;
}

Ta::Object<void*> MakeImageMessage(const ImageScan& image, z64u sequence, void* alloc)
{
    Ta::Object<void*> message;
    MU_CHECK(TvImageMsg_Construct(message.Out(), image.width, image.height, 1, TvPIXEL_FORMAT_GREY8, 0, alloc));
    Stamp(message.Get(), sequence);
    std::ranges::copy(image.pixels, static_cast<z8u*>(TvImageMsg_Pixels(message.Get())));
    return message;
}

namespace
{
struct DataOf
{
    z64u sequence;
    void* alloc;

    ScanData operator()(const HeightMap& map) const
    {
        return {MakeSurfaceMessage(map, sequence, alloc), PipeDataType::UniformSurface};
    }

    ScanData operator()(const PointMap& map) const
    {
        return {MakeSurfaceMessage(map, sequence, alloc), PipeDataType::PointSurface};
    }

    ScanData operator()(const ProfileScan& scan) const
    {
        return {MakeProfileMessage(scan, sequence, alloc),
                scan.positions.empty() ? PipeDataType::UniformProfile : PipeDataType::PointProfile};
    }

    ScanData operator()(const ImageScan& image) const
    {
        return {MakeImageMessage(image, sequence, alloc), PipeDataType::Image};
    }
};
} // namespace

ScanData MakeScanData(const Scan& scan, z64u sequence, void* alloc)
{
    return std::visit(DataOf{sequence, alloc}, scan);
}
} // namespace Mu::Host
