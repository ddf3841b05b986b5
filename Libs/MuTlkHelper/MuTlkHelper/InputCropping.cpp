#include <MuTlkHelper/InputUtils.h>

#include <MuTlkHelper/ArgumentChecks.h>
#include <MuTlkHelper/CropRow.h>
#include <MuTlkHelper/FrameWalk.h>

#include <MuVision/Null.h>
#include <TaVision/TvPointFeatureMsg.h>
#include <zApi/zArray1.h>
#include <zApi/zSaturate.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>

// The second file of InputUtils: surfaces seen through a frame, sectors, and what is cut out.

namespace Mu::TlkHelper
{
using Mu::Vision::Rect2d;
using Mu::Vision::Rect3d;
using Mu::Vision::RefFrame;
using Mu::Vision::Region3d;

// Through a frame.

namespace
{
bool TakesTheWalk(const RefFrame* frame)
{
    // Required: it is the identity that is walked through; what moves anything does not count.
    return frame != nullptr && frame->IsIdentity();
}

// What a walk through a frame visits.
struct FramedBox
{
    Span columns;
    Span rows;

    FramedBox(const SurfaceView& surface, const Region3d<double>& region)
    {
        const Rect3d<int> box = surface.PixelBox(region);
        columns = SpanIn(box.x, box.width, surface.width);
        // Required: as many rows as the box is heights high; its length plays no part.
        rows = SpanIn(box.y, box.height, surface.length);
    }

    [[nodiscard]] std::size_t PixelCount() const
    {
        return columns.Count() * rows.Count();
    }
};
} // namespace

void GetTransformedPointsFromRegion(void* message, const Region3d<double>& region, RefFrame* frame, void** list,
                                    void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    if (!TakesTheWalk(frame))
    {
        GetPointsFromRegion(message, region, list, alloc);
        return;
    }
    const SurfaceView surface(message);
    const FramedBox box(surface, region);
    // Required: here the list is not made by the allocator, with intensities it is.
    KeepOrRebuildList(MU_HERE, list, zTypeOf(zPoint3d64f), box.PixelCount(), nullptr);
    const FramedGrid grid(surface, *frame, BoundsOf(region.z, region.height));
    ListRun<zPoint3d64f> points(MU_HERE, *list);
    if (const std::optional<Window> heights = grid.HeightsInPlace(box.columns, box.rows))
    {
        const Frame axes = grid.AxesInPlace();
        WalkGrid(surface, {box.columns, box.rows, *heights}, points, GridPointsOf(axes));
        return;
    }
    const auto pointOf = [&grid](std::size_t row, std::size_t column, std::size_t element) {
        return grid.Point(row, column, element);
    };
    WalkFramed(grid, box.columns, box.rows, points, pointOf);
}

void GetTransformedIntensityFromRegion(void* message, const Region3d<double>& region, RefFrame* frame, void** list,
                                       void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    if (!TvSurfaceMsg_HasIntensity(message))
    {
        return;
    }
    if (!TakesTheWalk(frame))
    {
        GetIntensitiesFromRegion(message, region, list, alloc);
        return;
    }
    RequireBytes(MU_HERE, IntensityTypeOfSurface(message));
    const SurfaceView surface(message);
    const FramedBox box(surface, region);
    KeepOrRebuildList(MU_HERE, list, zTypeOf(z8u), box.PixelCount(), alloc);
    const FramedGrid grid(surface, *frame, BoundsOf(region.z, region.height));
    ListRun<z8u> bytes(MU_HERE, *list);
    if (const std::optional<Window> heights = grid.HeightsInPlace(box.columns, box.rows))
    {
        WalkGrid(surface, {box.columns, box.rows, *heights}, bytes, IntensitiesOf(surface));
        return;
    }
    const auto byteOf = [first = surface.IntensityRow(0)](std::size_t /*row*/, std::size_t /*column*/,
                                                          std::size_t element) { return first[element]; };
    WalkFramed(grid, box.columns, box.rows, bytes, byteOf);
}

// In a sector.

void GetPointsInAnnularSector(void* message, const Mu::Vision::AnnularSector3d<double>& sector, void** list)
{
    constexpr std::size_t SECTOR_CAPACITY = 1000;
    RequireArguments(MU_HERE, message, list);
    // Required: a list is never kept, not even one of points.
    RebuildList(MU_HERE, list, zTypeOf(zPoint3d64f), SECTOR_CAPACITY, nullptr);
    ListRun<zPoint3d64f> points(MU_HERE, *list);
    WalkSector(MU_HERE, SurfaceView(message), sector, points);
}

// Cut out.

namespace
{
// From here on a result and what it comes from fill most of a last cache.
constexpr std::size_t STREAMED_BYTES = std::size_t{8} << 20;

// Writes the rows of a crop: `source(row)` gives what the columns that are there come from, `test(row)` which of them
// are kept; the rest is `fill`.
template <typename Item, typename Source, typename Test>
void WriteCrop(zArray2 crop, const Span& columns, const Span& rows, Item fill, const Source& source, const Test& test)
{
    const std::size_t width = zArray2_Length(crop, 1);
    const std::size_t length = zArray2_Length(crop, 0);
    const Stores stores = width * length * sizeof(Item) < STREAMED_BYTES ? Stores::Cached : Stores::Streaming;
    auto* out = static_cast<Item*>(zArray2_Items(crop));
    for (std::size_t row = 0; row < length; ++row, out += width)
    {
        const Span kept = row >= rows.first && row < rows.end ? columns : Span{width, width};
        std::fill(out, out + kept.first, fill);
        if (kept.Count() != 0)
        {
            SelectItems(out + kept.first, source(row), kept.Count(), fill, test(row), stores);
        }
        std::fill(out + kept.end, out + width, fill);
    }
    if (stores == Stores::Streaming)
    {
        FinishStreaming();
    }
}

// A box of a surface as arrays of its own.
struct SurfaceCrop
{
    const SurfaceView& surface;
    Rect3d<int> box;
    Span columns; // of the crop, that the surface has
    Span rows;
    Window heights;

    SurfaceCrop(const SurfaceView& newSurface, const Region3d<double>& region)
        : surface(newSurface)
        , box(newSurface.PixelBox(region))
        , columns(PresentPart(box.x, Width(), newSurface.width))
        , rows(PresentPart(box.y, Length(), newSurface.length))
        , heights(WindowWithin(EVERY_PIXEL, box.z, z64s{box.z} + box.height))
    {
        if (heights.IsEmpty())
        {
            rows = {0, 0};
        }
    }

    [[nodiscard]] std::size_t Width() const
    {
        return static_cast<std::size_t>(std::max(box.width, 0));
    }

    // Required: as many rows as the box is heights high; its length plays no part.
    [[nodiscard]] std::size_t Length() const
    {
        return static_cast<std::size_t>(std::max(box.height, 0));
    }

    template <typename Item>
    void Write(zArray2 crop, const Item* items, Item fill) const
    {
        const auto* const pixels = surface.Heights();
        const auto first = [this](std::size_t row) {
            const auto sourceRow = static_cast<std::size_t>(box.y + static_cast<z64s>(row));
            return sourceRow * surface.width + static_cast<std::size_t>(box.x + static_cast<z64s>(columns.first));
        };
        WriteCrop(
            crop, columns, rows, fill, [&](std::size_t row) { return items + first(row); },
            [&](std::size_t row) {
                return WindowTest{pixels + first(row), heights};
            });
    }
};
} // namespace

void SurfaceExtractRegion(void* message, const Region3d<double>& region, Ta::Object<void*>& heights,
                          Ta::Object<void*>& intensities, zPoint3d64f* origin)
{
    constexpr z8u NO_INTENSITY = 255;
    RequireArguments(MU_HERE, message, &heights);
    if (&heights == &intensities)
    {
        MU_FAIL(zERROR_PARAMETER, nullptr); // no handle holds two arrays
    }
    InputData data;
    SetInputData(message, &data); // shared: one of the handles may hold the message
    const bool withIntensity = data.hasIntensity != 0 && intensities;
    if (withIntensity)
    {
        RequireBytes(MU_HERE, IntensityTypeOfSurface(message));
    }
    const SurfaceView surface(message);
    const SurfaceCrop crop(surface, region);
    if (origin != nullptr)
    {
        // Required: z is the offset, not the region's.
        *origin = {surface.frame.x.World(crop.box.x), surface.frame.y.World(crop.box.y), surface.offset.z};
    }
    MU_CHECK(zArray2_Construct(heights.Out(), zTypeOf(z16s), crop.Length(), crop.Width(), nullptr));
    if (withIntensity)
    {
        MU_CHECK(zArray2_Construct(intensities.Out(), zTypeOf(z8u), crop.Length(), crop.Width(), nullptr));
        crop.Write(intensities.Get(), surface.IntensityRow(0), NO_INTENSITY);
    }
    crop.Write(heights.Get(), surface.Heights(), zNULL_16S);
}

namespace
{
template <typename T>
Ta::Object<void*> Cropped(const Ta::Place& place, void* array, const Rect2d<int>& rect, void* mask, void* alloc)
{
    if (rect.width < 1 || rect.height < 1)
    {
        return {};
    }
    RequireValues(place, array, sizeof(T));
    RequireValues(place, mask, sizeof(z8u));
    const auto width = static_cast<std::size_t>(rect.width);
    const auto length = static_cast<std::size_t>(rect.height);
    const Span columns = PresentPart(rect.x, std::min(width, zArray2_Length(mask, 1)), zArray2_Length(array, 1));
    const Span rows = PresentPart(rect.y, std::min(length, zArray2_Length(mask, 0)), zArray2_Length(array, 0));
    Ta::Object<void*> crop;
    Ta::Check(place, zArray2_Construct(crop.Out(), zArray2_ItemType(array), length, width, alloc));
    const auto source = [&](std::size_t row) {
        const auto sourceRow = static_cast<std::size_t>(rect.y + static_cast<z64s>(row));
        const auto sourceColumn = static_cast<std::size_t>(rect.x + static_cast<z64s>(columns.first));
        return static_cast<const T*>(zArray2_At(array, sourceRow, sourceColumn));
    };
    const auto test = [&](std::size_t row) {
        return MaskTest{static_cast<const z8u*>(zArray2_At(mask, row, columns.first))};
    };
    WriteCrop(crop.Get(), columns, rows, Mu::Vision::GetNull<T>(), source, test);
    return crop;
}
} // namespace

template <>
Ta::Object<void*> CropRoi<unsigned char>(void* array, const Rect2d<int>& rect, void* mask, void* alloc)
{
    return Cropped<unsigned char>(MU_HERE, array, rect, mask, alloc);
}

template <>
Ta::Object<void*> CropRoi<short>(void* array, const Rect2d<int>& rect, void* mask, void* alloc)
{
    return Cropped<short>(MU_HERE, array, rect, mask, alloc);
}

template <>
Ta::Object<void*> CropRoi<int>(void* array, const Rect2d<int>& rect, void* mask, void* alloc)
{
    return Cropped<int>(MU_HERE, array, rect, mask, alloc);
}

// A surface that travels as a point: the halves of its handle in x and y, and a mark in z.

namespace
{
constexpr double SURFACE_MARK = 1.0 + static_cast<double>(5.66e-14F);
static_assert(std::bit_cast<z64u>(SURFACE_MARK) == 0x3FF00000000000FF);

constexpr double HALF_UNIT = 1e12;
constexpr int HALF_BITS = 32;

double FromHalf(z64u half)
{
    return 1.0 + static_cast<double>(static_cast<z32u>(half)) / HALF_UNIT;
}

z64u ToHalf(double coordinate)
{
    return zSaturate<z64u>((coordinate - 1.0) * HALF_UNIT + 0.5);
}

bool IsPointFeature(void* feature)
{
    return xzCastClass_ObjectIs(feature, zTypeOf(TvPointFeatureMsg));
}

bool IsMarked(const zPoint3d64f& position)
{
    return position.z == SURFACE_MARK;
}
} // namespace

void ValidateSurfaceFeature(void* feature)
{
    if (!IsPointFeature(feature) || !IsMarked(TvPointFeatureMsg_Position(feature)))
    {
        MU_FAIL(zERROR_PRECONDITION, nullptr);
    }
}

void* SurfaceFeatureToSurfaceMsg(void* feature)
{
    if (!IsPointFeature(feature))
    {
        return nullptr;
    }
    const zPoint3d64f position = TvPointFeatureMsg_Position(feature);
    if (!IsMarked(position))
    {
        return nullptr;
    }
    const z64u handle = ToHalf(position.x) << HALF_BITS | ToHalf(position.y);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the handle went the other way
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(handle));
}

zPoint3d64f SurfaceMsgToSurfaceFeature(void* message)
{
    const z64u handle = reinterpret_cast<std::uintptr_t>(message);
    return {FromHalf(handle >> HALF_BITS), FromHalf(handle), SURFACE_MARK};
}

// Arrays that are kept where they fit. A type that is null fits none.

void ReallocateArray1(Ta::Object<void*>& object, zType itemType, std::size_t length, void* alloc)
{
    const bool isKept =
        itemType != nullptr && zArray1_ItemType(object.Get()) == itemType && zArray1_Length(object.Get()) == length;
    if (!isKept)
    {
        MU_CHECK(zArray1_Construct(object.Out(), itemType, length, alloc));
    }
}

void ReallocateArray2(Ta::Object<void*>& object, zType itemType, std::size_t rows, std::size_t columns, void* alloc)
{
    const bool isKept = itemType != nullptr && zArray2_ItemType(object.Get()) == itemType &&
                        zArray2_Length(object.Get(), 0) == rows && zArray2_Length(object.Get(), 1) == columns;
    if (!isKept)
    {
        MU_CHECK(zArray2_Construct(object.Out(), itemType, rows, columns, alloc));
    }
}
} // namespace Mu::TlkHelper
