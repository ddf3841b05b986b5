#include <MuTlkHelper/StatsUtils.h>

#include <TaApi/Raise.h>
#include <TaVision/TvImageMsg.h>
#include <TaVision/TvProfileMsg.h>
#include <TaVision/TvSurfaceMsg.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace Mu::TlkHelper
{
namespace
{
struct RegionGrid
{
    int columns;
    int rows;
    int column;
    int row;
};

// A box in the plane of the regions: centre and full extents.
template <typename T>
struct PlaneBox
{
    T x;
    T y;
    T width;
    T height;
};

// The square in which a region is placed.
struct Placement
{
    double x;
    double y;
    double extent;
};

// In doubles, and in whole numbers with every division rounding towards 0.
template <typename T>
Placement PlacementIn(const PlaneBox<T>& box, const RegionGrid& grid)
{
    const auto place = [](T x, T y, T extent) {
        return Placement{static_cast<double>(x), static_cast<double>(y), static_cast<double>(extent)};
    };
    if (grid.columns < 1 || grid.rows < 1)
    {
        return place(box.x, box.y, std::min(box.width, box.height) / 2);
    }
    const T unitsAcross = 3 * static_cast<T>(grid.columns) + 1;
    const T unitsUp = 3 * static_cast<T>(grid.rows) + 1;
    const T unit = std::min(box.width / unitsAcross, box.height / unitsUp);
    if (grid.column < 0 || grid.row < 0)
    {
        return place(box.x, box.y, 2 * unit);
    }
    const T marginX = (box.width - unitsAcross * unit) / 2;
    const T marginY = (box.height - unitsUp * unit) / 2;
    const T unitsToX = 3 * static_cast<T>(grid.column % grid.columns) + 2;
    const T unitsToY = 3 * static_cast<T>(grid.row % grid.rows) + 2;
    return place(box.x - box.width / 2 + marginX + unitsToX * unit, box.y - box.height / 2 + marginY + unitsToY * unit,
                 2 * unit);
}

template <typename Region>
Region& Required(const Ta::Place& place, Region* region)
{
    if (region == nullptr)
    {
        Ta::Raise(place, zERROR_MISSING);
    }
    return *region;
}

// Regions seen from above: on surfaces and images.
void PlaceXY(AnchoredBoxRegion& region, const Placement& placement)
{
    region.width.Set(placement.extent);
    region.length.Set(placement.extent);
    region.x.Set(placement.x);
    region.y.Set(placement.y);
}

zRect32s BoxOfImage(void* image)
{
    constexpr std::size_t largest = std::numeric_limits<z32s>::max();
    const auto width = static_cast<z32s>(std::min(TvImageMsg_Width(image), largest));
    const auto height = static_cast<z32s>(std::min(TvImageMsg_Height(image), largest));
    return {width / 2, height / 2, width, height};
}
} // namespace

void DefaultRegionInit(void* message, AnchoredRegionInterface* region, int gridColumns, int gridRows, int gridColumn,
                       int gridRow)
{
    const bool isProfile = xzCastClass_ObjectIs(message, zTypeOf(TvProfileMsg));
    if (isProfile || xzCastClass_ObjectIs(message, zTypeOf(TvSurfaceMsg)))
    {
        if (TvDataMsg_HasBoundingBox(message))
        {
            DefaultRegionInit(TvDataMsg_BoundingBox(message), region, gridColumns, gridRows, gridColumn, gridRow,
                              isProfile);
        }
    }
    else if (xzCastClass_ObjectIs(message, zTypeOf(TvImageMsg)))
    {
        DefaultImageRegionInit(BoxOfImage(message), dynamic_cast<AnchoredImageRegion*>(region), gridColumns, gridRows,
                               gridColumn, gridRow);
    }
}

void DefaultRegionInit(const zRect3d64f& box, AnchoredRegionInterface* region, int gridColumns, int gridRows,
                       int gridColumn, int gridRow, bool isProfile)
{
    if (isProfile)
    {
        DefaultProfileRegionInit(box, dynamic_cast<AnchoredProfileRegion*>(region), gridColumns, gridRows, gridColumn,
                                 gridRow);
    }
    else
    {
        DefaultSurfaceRegionInit(box, dynamic_cast<AnchoredSurfaceRegion*>(region), gridColumns, gridRows, gridColumn,
                                 gridRow);
    }
}

void DefaultProfileRegionInit(const zRect3d64f& box, AnchoredProfileRegion* region, int gridColumns, int gridRows,
                              int gridColumn, int gridRow)
{
    // Positive, so that a NaN fails.
    const bool hasExtent = box.width > 0.0 && box.height > 0.0;
    if (box.x == zNULL_64F || box.z == zNULL_64F || !hasExtent)
    {
        MU_FAIL(zERROR_PRECONDITION, nullptr);
    }
    AnchoredProfileRegion& target = Required(MU_HERE, region);
    const Placement placement =
        PlacementIn<double>({box.x, box.z, box.width, box.height}, {gridColumns, gridRows, gridColumn, gridRow});
    target.width.Set(placement.extent);
    target.height.Set(placement.extent);
    target.x.Set(placement.x);
    target.z.Set(placement.y);
}

void DefaultSurfaceRegionInit(const zRect3d64f& box, AnchoredSurfaceRegion* region, int gridColumns, int gridRows,
                              int gridColumn, int gridRow)
{
    const bool hasExtent = box.width > 0.0 && box.length > 0.0 && box.height > 0.0;
    if (box.x == zNULL_64F || box.y == zNULL_64F || box.z == zNULL_64F || !hasExtent)
    {
        MU_FAIL(zERROR_PRECONDITION, nullptr);
    }
    AnchoredSurfaceRegion& target = Required(MU_HERE, region);
    target.height.Set(box.height);
    target.z.Set(box.z);
    PlaceXY(target,
            PlacementIn<double>({box.x, box.y, box.width, box.length}, {gridColumns, gridRows, gridColumn, gridRow}));
}

void DefaultImageRegionInit(const zRect32s& box, AnchoredImageRegion* region, int gridColumns, int gridRows,
                            int gridColumn, int gridRow)
{
    if (std::min({box.x, box.y, box.width, box.height}) < 1)
    {
        MU_FAIL(zERROR_PRECONDITION, nullptr);
    }
    PlaceXY(Required(MU_HERE, region), PlacementIn<std::int64_t>({box.x, box.y, box.width, box.height},
                                                                 {gridColumns, gridRows, gridColumn, gridRow}));
}

void DefaultProfileRegionInit(Ta::Params::ProfileRegion& region)
{
    region.x.Set(0.0);
    region.z.Set(0.0);
    region.width.Set(100.0);
    region.height.Set(100.0);
    region.yAngle.Set(0.0);
}

void DefaultBoxRegionInit(Ta::Params::BoxRegion& region)
{
    region.x.Set(0.0);
    region.y.Set(0.0);
    region.z.Set(0.0);
    region.width.Set(100.0);
    region.length.Set(100.0);
    region.height.Set(100.0);
}

// Required: 1 by 1, where the others are 100 by 100.
void DefaultSurfaceRegionInit(Ta::Params::SurfaceRegion2d& region)
{
    region.x.Set(0.0);
    region.y.Set(0.0);
    region.width.Set(1.0);
    region.length.Set(1.0);
    region.zAngle.Set(0.0);
}
} // namespace Mu::TlkHelper
