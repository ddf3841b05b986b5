#include <Host/ScanMessage.h>

#include <TaVision/TvSurfaceMsg.h>
#include <zApi/zTypes.h>
#include <zRelay/zStamp.h>

#include <algorithm>
#include <optional>

namespace Mu::Host
{
namespace
{
struct HeightRange
{
    std::int16_t lowest;
    std::int16_t highest;
};

std::optional<HeightRange> ValidRange(const HeightMap& map)
{
    std::optional<HeightRange> range;
    for (const std::int16_t height : map.heights)
    {
        if (height == HeightMap::nullHeight)
        {
            continue;
        }
        if (!range)
        {
            range = HeightRange{height, height};
        }
        range->lowest = std::min(range->lowest, height);
        range->highest = std::max(range->highest, height);
    }
    return range;
}

struct Side
{
    double centre;
    double extent;
};

Side Between(double first, double last)
{
    return {(first + last) / 2, last - first};
}

zRect3d64f BoundingBox(const HeightMap& map)
{
    const auto alongGrid = [](double offset, double scale, std::size_t count) {
        return Between(offset, offset + scale * static_cast<double>(count - 1));
    };
    const Side x = alongGrid(map.offsetMm.x, map.scaleMm.x, map.width);
    const Side y = alongGrid(map.offsetMm.y, map.scaleMm.y, map.length);
    Side z{0, 0};
    if (const auto range = ValidRange(map))
    {
        z = Between(map.offsetMm.z + map.scaleMm.z * range->lowest, map.offsetMm.z + map.scaleMm.z * range->highest);
    }
    return {x.centre, y.centre, z.centre, x.extent, y.extent, z.extent};
}

zPoint3d64f AsPoint(const Vector3& vector)
{
    return {vector.x, vector.y, vector.z};
}
} // namespace

Ta::Object<void*> MakeSurfaceMessage(const HeightMap& map, z64u sequence, void* alloc)
{
    Ta::Object<void*> message;
    MU_CHECK(TvSurfaceMsg_ConstructSimple(message.Out(), map.width, map.length, alloc));
    const zPoint3d64f offset = AsPoint(map.offsetMm);
    const zPoint3d64f scale = AsPoint(map.scaleMm);
    const zRect3d64f box = BoundingBox(map);
    const zStamp stamp{0, sequence, 0, 0};
    MU_CHECK(TvSurfaceMsg_SetOffset(message.Get(), &offset));
    MU_CHECK(TvSurfaceMsg_SetScale(message.Get(), &scale));
    MU_CHECK(TvDataMsg_SetBoundingBox(message.Get(), &box));
    MU_CHECK(TvDataMsg_SetStamp(message.Get(), &stamp));
    static_assert(HeightMap::nullHeight == zNULL_16S, "a height without value is the same in maps and messages");
    std::ranges::copy(map.heights, static_cast<z16s*>(TvSurfaceMsg_Points(message.Get())));
    if (!map.intensity.empty())
    {
        MU_CHECK(TvSurfaceMsg_AllocateIntensity(message.Get(), zTypeOf(z8u)));
        std::ranges::copy(map.intensity, static_cast<z8u*>(TvSurfaceMsg_Intensity(message.Get())));
    }
    return message;
}
} // namespace Mu::Host
