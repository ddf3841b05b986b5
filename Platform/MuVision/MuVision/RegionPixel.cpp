#include <MuVision/RegionPixel.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace Mu::Vision
{
namespace
{
constexpr double BORDER = 1e-6;

// First and last pixel.
struct Pixels
{
    int first;
    int last;

    [[nodiscard]] int Count() const
    {
        return last - first + 1;
    }
};

// What is there of an axis.
struct Limits
{
    double first;
    double last;
};

constexpr Limits HEIGHTS{-32767.0, 32767.0};

Limits GridOf(std::size_t count)
{
    constexpr std::size_t most = std::numeric_limits<int>::max();
    return {0.0, static_cast<double>(std::min(count, most)) - 1.0};
}

Limits FirstAxis(std::size_t count, int isPixelGrid)
{
    return isPixelGrid != 0 ? GridOf(count) : HEIGHTS;
}

// A region along one axis.
struct Extent
{
    double low;
    double high;
};

constexpr Extent NOWHERE{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};

bool HoldsAnything(double position, double extent)
{
    return position != GetNull<double>() && extent >= 0.0;
}

Extent AroundCentre(double centre, double extent)
{
    return HoldsAnything(centre, extent) ? Extent{centre - extent / 2.0, centre + extent / 2.0} : NOWHERE;
}

Extent FromCorner(double corner, double extent)
{
    return HoldsAnything(corner, extent) ? Extent{corner, corner + extent} : NOWHERE;
}

// Bounds are compared so that a NaN holds nothing.
std::optional<Pixels> PixelsIn(const Extent& extent, double offset, double scale, double tolerance,
                               const Limits& limits)
{
    if (!(extent.low <= extent.high) || scale == 0.0 || !std::isfinite(scale))
    {
        return std::nullopt;
    }
    const double a = (extent.low - offset) / scale;
    const double b = (extent.high - offset) / scale;
    const double widening = BORDER + tolerance;
    const double low = std::ceil((scale > 0.0 ? a : b) - widening);
    const double high = std::floor((scale > 0.0 ? b : a) + widening);
    if (!(low <= high) || !(low <= limits.last) || !(high >= limits.first) || limits.last < limits.first)
    {
        return std::nullopt;
    }
    return Pixels{static_cast<int>(std::max(low, limits.first)), static_cast<int>(std::min(high, limits.last))};
}

Rect2d<int> BoxOf(const std::optional<Pixels>& x, const std::optional<Pixels>& y)
{
    return x && y ? Rect2d<int>{x->first, y->first, x->Count(), y->Count()} : Rect2d<int>{0, 0, 0, 0};
}

Rect3d<int> BoxOf(const std::optional<Pixels>& x, const std::optional<Pixels>& y, const std::optional<Pixels>& z)
{
    // required: heights are told by their difference here, while columns and rows are counted
    return x && y && z ? Rect3d<int>{x->first, y->first, x->Count(), y->Count(), z->first, z->last - z->first}
                       : Rect3d<int>{0, 0, 0, 0, 0, 0};
}
} // namespace

void GetRegionPixel(std::size_t width, std::size_t length, const zPoint3d64f& offset, const zPoint3d64f& scale,
                    const Region3d<double>* region, Rect3d<int>* result, const zPoint3d64f* tolerance, int isPixelGrid)
{
    if (result == nullptr)
    {
        return;
    }
    *result = {0, 0, 0, 0, 0, 0};
    if (region == nullptr)
    {
        return;
    }
    const zPoint3d64f more = tolerance != nullptr ? *tolerance : zPoint3d64f{0, 0, 0};
    *result = BoxOf(
        PixelsIn(AroundCentre(region->x, region->width), offset.x, scale.x, more.x, FirstAxis(width, isPixelGrid)),
        PixelsIn(AroundCentre(region->y, region->length), offset.y, scale.y, more.y, GridOf(length)),
        PixelsIn(AroundCentre(region->z, region->height), offset.z, scale.z, more.z, HEIGHTS));
}

void GetRegionPixel(std::size_t width, std::size_t length, const zPoint64f& offset, const zPoint64f& scale,
                    const Region2d<double>* region, Rect2d<int>* result, const zPoint64f* tolerance, int isPixelGrid,
                    int isCentred)
{
    if (result == nullptr)
    {
        return;
    }
    *result = {0, 0, 0, 0};
    if (region == nullptr)
    {
        return;
    }
    const auto extentOf = isCentred != 0 ? AroundCentre : FromCorner;
    const zPoint64f more = tolerance != nullptr ? *tolerance : zPoint64f{0, 0};
    *result =
        BoxOf(PixelsIn(extentOf(region->x, region->width), offset.x, scale.x, more.x, FirstAxis(width, isPixelGrid)),
              PixelsIn(extentOf(region->y, region->length), offset.y, scale.y, more.y, GridOf(length)));
}

void GetRegionXZPixel(std::size_t pointCount, const zPoint64f& offset, const zPoint64f& scale,
                      const RegionXZ<double>* region, Rect2d<int>* result, const zPoint64f* tolerance, int isPixelGrid)
{
    if (result == nullptr)
    {
        return;
    }
    *result = {0, 0, 0, 0};
    if (region == nullptr)
    {
        return;
    }
    const zPoint64f more = tolerance != nullptr ? *tolerance : zPoint64f{0, 0};
    *result = BoxOf(
        PixelsIn(AroundCentre(region->x, region->width), offset.x, scale.x, more.x, FirstAxis(pointCount, isPixelGrid)),
        PixelsIn(AroundCentre(region->z, region->height), offset.y, scale.y, more.y, HEIGHTS));
}
} // namespace Mu::Vision
