#include <MuTlkHelper/PointUtils.h>

#include <MuTlkHelper/FeatureUtils.h>
#include <MuTlkHelper/TlkSurfaceGeneralized3dPoint.h>

#include <MuVision/RegionPixel.h>
#include <TaApi/Raise.h>
#include <zApi/zArrayList.h>
#include <zApi/zSaturate.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>

namespace Mu::TlkHelper
{
namespace
{
using Mu::Vision::Rect2d;
using Mu::Vision::RunLength;

constexpr std::size_t MOST_DRAWN_POINTS = 10000;
constexpr double SMALLEST_SIDE = 1.1920928955078125e-07; // in pixels
constexpr double EDGE_TOLERANCE = 0.0005;                // in pixels

// The item type of a record in lists.
template <typename Item>
zType ItemType();

template <>
zType ItemType<zPoint64f>()
{
    return zTypeOf(zPoint64f);
}

template <>
zType ItemType<zPoint3d64f>()
{
    return zTypeOf(zPoint3d64f);
}

template <>
zType ItemType<zPoint3d32f>()
{
    return zTypeOf(zPoint3d32f);
}

template <>
zType ItemType<TlkSurfaceGeneralized3dPoint>()
{
    return zBytes_GetType(sizeof(TlkSurfaceGeneralized3dPoint));
}

template <>
zType ItemType<RleRow>()
{
    return zBytes_GetType(sizeof(RleRow));
}

// The items of a list that is not null.
template <typename Item>
std::span<const Item> ItemsOf(const Ta::Place& place, void* list)
{
    if (zArrayList_ItemType(list) != ItemType<Item>())
    {
        Ta::Raise(place, zERROR_FORMAT);
    }
    return {static_cast<const Item*>(zArrayList_Items(list)), zArrayList_Count(list)};
}

template <typename Target>
Target& Required(const Ta::Place& place, Target* target)
{
    if (target == nullptr)
    {
        Ta::Raise(place, zERROR_MISSING);
    }
    return *target;
}

// How many items are made room for, and how far the items that are taken lie apart.
struct Thinning
{
    std::size_t capacity;
    std::size_t stride;
};

Thinning ThinnedTo(const Ta::Place& place, std::size_t maximum, std::size_t count)
{
    if (count <= maximum)
    {
        return {count, 1};
    }
    if (maximum == 0)
    {
        Ta::Raise(place, zERROR_PARAMETER);
    }
    return {maximum, count / maximum};
}

constexpr auto TAKE_ALL = [](const auto&) { return true; };
constexpr auto TAKE_VALID = [](const zPoint3d64f& point) { return IsValidPoint(point) != 0; };

// The one walk of all conversions: every `stride`-th item that `take` wants, as `convert` has it.
template <typename Item, typename Take, typename Convert>
Ta::Object<void*> Converted(const Ta::Place& place, std::span<const Item> items, const Thinning& thinning,
                            const Take& take, const Convert& convert)
{
    using Result = decltype(convert(items.front()));
    Ta::Object<void*> result;
    Ta::Check(place, zArrayList_Construct(result.Out(), ItemType<Result>(), thinning.capacity, nullptr));
    for (std::size_t i = 0; i < items.size(); i += thinning.stride)
    {
        if (take(items[i]))
        {
            const Result item = convert(items[i]);
            Ta::Check(place, zArrayList_Add(result.Get(), &item));
        }
    }
    return result;
}

enum class Room
{
    ForAll,
    AsNeeded,
};

template <typename Take, typename Convert>
Ta::Object<void*> ConvertedTo2d(const Ta::Place& place, void* list, Room room, const Take& take, const Convert& convert)
{
    if (list == nullptr)
    {
        return {};
    }
    const auto points = ItemsOf<zPoint3d64f>(place, list);
    return Converted(place, points, {room == Room::ForAll ? points.size() : 0, 1}, take, convert);
}

template <typename Convert>
void ConvertSurfacePoints(const Ta::Place& place, void* list, std::size_t maximum, void** out, const Convert& convert)
{
    if (list == nullptr)
    {
        return;
    }
    void*& target = Required(place, out);
    const auto points = ItemsOf<TlkSurfaceGeneralized3dPoint>(place, list);
    target = Converted(place, points, ThinnedTo(place, maximum, points.size()), TAKE_ALL, convert).Detach();
}

zPoint3d64f MeanOf(std::span<const zPoint3d64f> points)
{
    zPoint3d64f sum{0.0, 0.0, 0.0};
    for (const zPoint3d64f& point : points)
    {
        sum = {sum.x + point.x, sum.y + point.y, sum.z + point.z};
    }
    const double count = points.empty() ? 1.0 : static_cast<double>(points.size());
    return {sum.x / count, sum.y / count, sum.z / count};
}

// --- order ----------------------------------------------------------------------------------------------------------

struct SortOrder
{
    z16s zPoint16s::*component;
    bool rises;
};

constexpr std::array<SortOrder, 4> SORT_ORDERS = {{
    {&zPoint16s::x, true},
    {&zPoint16s::x, false},
    {&zPoint16s::y, true},
    {&zPoint16s::y, false},
}};

bool IsSorted(std::span<const zPoint16s> points, const SortOrder& order)
{
    const zPoint16s* before = nullptr;
    for (const zPoint16s& point : points)
    {
        if (point.x == zNULL_16S || point.y == zNULL_16S)
        {
            continue;
        }
        if (before != nullptr)
        {
            const z16s lower = order.rises ? before->*order.component : point.*order.component;
            const z16s upper = order.rises ? point.*order.component : before->*order.component;
            if (upper < lower)
            {
                return false;
            }
        }
        before = &point;
    }
    return true;
}

// --- run-length coding ----------------------------------------------------------------------------------------------

// A rectangle in pixels: its corners counter-clockwise from the lowest, and the box of pixels around it.
class Rectangle
{
public:
    Rectangle(const InputData& data, std::span<const zPoint64f, 4> corners)
    {
        std::size_t lowestCorner = 0;
        zPoint64f low = corners[0];
        zPoint64f high = corners[0];
        for (std::size_t i = 1; i < corners.size(); ++i)
        {
            lowestCorner = corners[i].y < low.y ? i : lowestCorner;
            low = {std::min(low.x, corners[i].x), std::min(low.y, corners[i].y)};
            high = {std::max(high.x, corners[i].x), std::max(high.y, corners[i].y)};
        }
        for (std::size_t i = 0; i < p.size(); ++i)
        {
            const zPoint64f& corner = corners[(lowestCorner + i) % corners.size()];
            p[i] = {(corner.x - data.offset.x) / data.scale.x, (corner.y - data.offset.y) / data.scale.y};
        }
        aligned = std::abs(p[0].x - p[1].x) < SMALLEST_SIDE || std::abs(p[0].y - p[1].y) < SMALLEST_SIDE;
        if (!aligned)
        {
            slopeA = (p[0].x - p[3].x) / (p[0].y - p[3].y);
            slopeB = (p[3].x - p[2].x) / (p[3].y - p[2].y);
        }
        // Required: the box is placed by its low corner.
        FindBox(data, {low.x, low.y, high.x - low.x, high.y - low.y, 0.0});
    }

    [[nodiscard]] const Rect2d<int>& Box() const
    {
        return box;
    }

    /// The run of a row of the box.
    [[nodiscard]] RunLength<int> RunOf(int row) const
    {
        const double y = row;
        if (aligned)
        {
            return {box.x, box.width};
        }
        if (y < p[0].y || y > p[2].y)
        {
            return {box.x, 0};
        }
        const double left = y <= p[3].y ? EdgeAt(y, p[0], slopeA, p[0]) : EdgeAt(y, p[3], slopeB, p[0]);
        const double right = y >= p[1].y ? EdgeAt(y, p[1], slopeA, p[1]) : EdgeAt(y, p[0], slopeB, p[1]);
        const int first = std::max(zSaturate<int>(std::ceil(left)), box.x);
        const std::int64_t end = std::int64_t{box.x} + box.width;
        const std::int64_t last = std::min(std::int64_t{zSaturate<int>(std::floor(right))}, end - 1);
        return {first, last >= first ? static_cast<int>(last - first + 1) : 0};
    }

private:
    void FindBox(const InputData& data, const Mu::Vision::Region2d<double>& bounds)
    {
        const auto extent = [](z32s count) { return static_cast<std::size_t>(std::max(count, 0)); };
        const zPoint64f tolerance{EDGE_TOLERANCE, EDGE_TOLERANCE};
        Mu::Vision::GetRegionPixel(extent(data.width), extent(data.length), {data.offset.x, data.offset.y},
                                   {data.scale.x, data.scale.y}, &bounds, &box, &tolerance, 1, 0);
    }

    // The column at which a side through `corner` crosses a row; the slope is in columns a row.
    static double EdgeAt(double y, const zPoint64f& corner, double slope, const zPoint64f& withoutSlope)
    {
        return slope == zNULL_64F ? withoutSlope.x : corner.x + (y - corner.y) * slope;
    }

    std::array<zPoint64f, 4> p{};
    bool aligned = false;
    double slopeA = zNULL_64F; // of the sides from p[0] to p[3] and from p[1] to p[2]
    double slopeB = zNULL_64F; // of the other two
    Rect2d<int> box;
};
} // namespace

zPoint3d64f Convert2dPoint64to3dPoint64(const zPoint64f& point)
{
    if (IsValidPoint(point) == 0)
    {
        return {zNULL_64F, zNULL_64F, zNULL_64F};
    }
    return {point.x, 0.0, point.y};
}

zPoint3d32f Convert3dPoint64to3dPoint32(const zPoint3d64f& point)
{
    return {static_cast<z32f>(point.x), static_cast<z32f>(point.y), static_cast<z32f>(point.z)};
}

Ta::Object<void*> Convert3dPoints64To2dPoints64(void* list)
{
    return ConvertedTo2d(MU_HERE, list, Room::ForAll, TAKE_ALL, [](const zPoint3d64f& p) {
        return zPoint64f{p.x, p.y};
    });
}

Ta::Object<void*> Convert3dPoints64To2dPoints64Flip(void* list)
{
    return ConvertedTo2d(MU_HERE, list, Room::ForAll, TAKE_ALL, [](const zPoint3d64f& p) {
        return zPoint64f{p.y, p.x};
    });
}

Ta::Object<void*> Convert3dPoints64To2dPoints64RemoveNull(void* list)
{
    return ConvertedTo2d(MU_HERE, list, Room::AsNeeded, TAKE_VALID, [](const zPoint3d64f& p) {
        return zPoint64f{p.x, p.y};
    });
}

Ta::Object<void*> ConvertPoints64ToPoints32(void* list)
{
    if (list == nullptr)
    {
        return {};
    }
    const auto points = ItemsOf<zPoint3d64f>(MU_HERE, list);
    if (points.empty())
    {
        return {};
    }
    return Converted(MU_HERE, points, ThinnedTo(MU_HERE, MOST_DRAWN_POINTS, points.size()), TAKE_VALID,
                     Convert3dPoint64to3dPoint32);
}

void ConvertSurfaceGeneralized3dPointsToPoints32f(void* list, unsigned int maximum, void** out)
{
    ConvertSurfacePoints(MU_HERE, list, maximum, out, [](const TlkSurfaceGeneralized3dPoint& p) {
        return Convert3dPoint64to3dPoint32({p.x, p.y, p.z});
    });
}

void ConvertSurfaceGeneralized3dPointsToPoints64f(void* list, unsigned int maximum, void** out)
{
    ConvertSurfacePoints(MU_HERE, list, maximum, out, [](const TlkSurfaceGeneralized3dPoint& p) {
        return zPoint3d64f{p.x, p.y, p.z};
    });
}

void AveragePoint3d64f(void* list, zPoint3d64f* out)
{
    zPoint3d64f& target = Required(MU_HERE, out);
    target = list == nullptr ? zPoint3d64f{0.0, 0.0, 0.0} : MeanOf(ItemsOf<zPoint3d64f>(MU_HERE, list));
}

int IsSortedPoints(const zPoint16s* points, std::size_t count, THL_POINT_SORTED_TYPE order)
{
    const auto index = static_cast<std::size_t>(order);
    if (points == nullptr || index >= SORT_ORDERS.size())
    {
        return 1;
    }
    return IsSorted({points, count}, SORT_ORDERS.at(index)) ? 1 : 0;
}

void RLEGiven4Points(const InputData* data, const zPoint64f* corners, void** list, void* alloc)
{
    if (list == nullptr)
    {
        return;
    }
    const zType rowType = ItemType<RleRow>();
    if (*list != nullptr && zArrayList_ItemType(*list) != rowType)
    {
        MU_FAIL(zERROR_LIST_TYPE, nullptr);
    }
    const Rectangle rectangle(Required(MU_HERE, data), std::span<const zPoint64f, 4>(&Required(MU_HERE, corners), 4));
    const Rect2d<int>& box = rectangle.Box();
    Ta::Object<void*> made;
    if (*list != nullptr)
    {
        MU_CHECK(zArrayList_Purge(*list));
    }
    else
    {
        MU_CHECK(zArrayList_Construct(made.Out(), rowType, static_cast<std::size_t>(box.height), alloc));
    }
    void* const rows = made ? made.Get() : *list;
    for (int i = 0; i < box.height; ++i)
    {
        const int row = box.y + i;
        const RleRow item{row, rectangle.RunOf(row)};
        MU_CHECK(zArrayList_Add(rows, &item));
    }
    if (made)
    {
        *list = made.Detach();
    }
}
} // namespace Mu::TlkHelper
