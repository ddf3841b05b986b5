#pragma once

#include <MuTlkHelper/PixelBlocks.h>
#include <MuTlkHelper/PixelWorld.h>

#include <MuVision/RegionPixel.h>
#include <TaVision/TvProfileMsg.h>
#include <TaVision/TvSurfaceMsg.h>
#include <zApi/zArray1.h>
#include <zApi/zArray2.h>

#include <cstddef>

// What walks over a message read of it, once, and the world points of its elements.

namespace Mu::TlkHelper
{
constexpr Frame FrameOf(const zPoint3d64f& offset, const zPoint3d64f& scale)
{
    return {{offset.x, scale.x}, {offset.y, scale.y}, {offset.z, scale.z}};
}

/// A surface message, which outlives the view.
struct SurfaceView
{
    explicit SurfaceView(void* surface)
        : message(surface)
        , points(TvSurfaceMsg_PointsArray(surface, 0))
        , width(TvSurfaceMsg_Width(surface))
        , length(TvSurfaceMsg_Length(surface))
        , offset(TvSurfaceMsg_Offset(surface))
        , scale(TvSurfaceMsg_Scale(surface))
        , frame(FrameOf(offset, scale))
    {
    }

    [[nodiscard]] zType PointType() const
    {
        return zArray2_ItemType(points);
    }

    /// The first element of a row.
    template <typename Element>
    [[nodiscard]] const Element* Row(std::size_t row) const
    {
        return static_cast<const Element*>(zArray2_At(points, row, 0));
    }

    /// The 16-bit values of the first row, where those of the others follow, whatever the points are; null if there are
    /// none.
    [[nodiscard]] const z16s* Heights() const
    {
        return static_cast<const z16s*>(TvSurfaceMsg_Points(message));
    }

    /// The first intensity of a row, null if there are none.
    [[nodiscard]] const z8u* IntensityRow(std::size_t row) const
    {
        return static_cast<const z8u*>(TvSurfaceMsg_IntensityAt(message, row, 0));
    }

    [[nodiscard]] Mu::Vision::Rect3d<int> PixelBox(const Mu::Vision::Region3d<double>& region) const
    {
        Mu::Vision::Rect3d<int> box;
        Mu::Vision::GetRegionPixel(width, length, offset, scale, &region, &box, nullptr, 1);
        return box;
    }

    void* message;
    zArray2 points;
    std::size_t width;
    std::size_t length;
    zPoint3d64f offset;
    zPoint3d64f scale;
    Frame frame;
};

/// A profile message, which outlives the view.
struct ProfileView
{
    explicit ProfileView(void* profile)
        : count(TvProfileMsg_PointCount(profile))
        , offset(TvProfileMsg_Offset(profile))
        , scale(TvProfileMsg_Scale(profile))
        , frame(FrameOf(offset, scale))
        , type(TvProfileMsg_PointType(profile))
        , points(TvProfileMsg_Points(profile))
        , intensity(static_cast<const z8u*>(TvProfileMsg_Intensity(profile)))
    {
    }

    [[nodiscard]] const z16s* Pixels() const
    {
        return static_cast<const z16s*>(points);
    }

    [[nodiscard]] const zPoint16s* Pairs() const
    {
        return static_cast<const zPoint16s*>(points);
    }

    [[nodiscard]] Mu::Vision::Rect2d<int> PixelBox(const Mu::Vision::RegionXZ<double>& region, int isPixelGrid) const
    {
        Mu::Vision::Rect2d<int> box;
        Mu::Vision::GetRegionXZPixel(count, {offset.x, offset.z}, {scale.x, scale.z}, &region, &box, nullptr,
                                     isPixelGrid);
        return box;
    }

    std::size_t count;
    zPoint3d64f offset;
    zPoint3d64f scale;
    Frame frame;
    zType type;
    const void* points;
    const z8u* intensity; ///< null if there are none
};

// The world points of elements by their number.

/// A row of height pixels.
struct GridPoints
{
    using Sample = z16s;

    Frame frame;
    double y;
    const z16s* pixels;

    zPoint3d64f operator()(std::size_t column) const
    {
        // Columns fit 32 bits, which turn into doubles at a fraction of the cost of 64.
        return {frame.x.World(static_cast<z32s>(column)), y, frame.z.World(pixels[column])};
    }

    [[nodiscard]] const Sample* Samples() const
    {
        return pixels;
    }

    template <typename Number>
    void Run(const Sample* samples, std::size_t count, const Number& number, zPoint3d64f* items) const
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            items[i] = {frame.x.World(static_cast<z32s>(number(i))), y, frame.z.World(samples[i])};
        }
    }
};

/// Triples with a place of their own.
class TriplePoints
{
public:
    using Sample = zPoint3d16s;
    static constexpr bool GOES_BY_RUNS = true;

    TriplePoints(const Frame& newFrame, const zPoint3d16s* elements)
        : frame(newFrame)
        , triples(elements)
    {
        for (std::size_t i = 0; i < AT_ONCE; ++i)
        {
            const Axis& axis = i % 3 == 0 ? frame.x : i % 3 == 1 ? frame.y : frame.z;
            scales[i] = axis.scale;
            offsets[i] = axis.offset;
        }
    }

    zPoint3d64f operator()(std::size_t element) const
    {
        const zPoint3d16s& triple = triples[element];
        return {frame.x.World(triple.x), frame.y.World(triple.y), frame.z.World(triple.z)};
    }

    [[nodiscard]] const Sample* Samples() const
    {
        return triples;
    }

    /// Components turn into coordinates in the order in which they stand, four whole triples at a time, so that vectors
    /// need not be shuffled.
    template <typename Number>
    void Run(const Sample* samples, std::size_t count, const Number& /*number*/, zPoint3d64f* items) const
    {
        static_assert(sizeof(zPoint3d64f) == 3 * sizeof(double));
        const auto ownScales = scales; // the items are doubles, which might be those of the axes for all one can see
        const auto ownOffsets = offsets;
        const auto* const components = reinterpret_cast<const z16s*>(samples);
        auto* const coordinates = reinterpret_cast<double*>(items);
        const std::size_t rest = count % (AT_ONCE / 3);
        const std::size_t whole = (count - rest) * 3;
        for (std::size_t first = 0; first < whole; first += AT_ONCE)
        {
            for (std::size_t i = 0; i < AT_ONCE; ++i)
            {
                coordinates[first + i] = PixelToWorld(components[first + i], ownOffsets[i], ownScales[i]);
            }
        }
        for (std::size_t i = count - rest; i < count; ++i)
        {
            items[i] = {frame.x.World(samples[i].x), frame.y.World(samples[i].y), frame.z.World(samples[i].z)};
        }
    }

private:
    static constexpr std::size_t AT_ONCE = 12;

    Frame frame;
    const zPoint3d16s* triples;
    std::array<double, AT_ONCE> scales;
    std::array<double, AT_ONCE> offsets;
};

/// A line of height pixels.
struct LinePoints
{
    using Sample = z16s;

    Frame frame;
    const z16s* pixels;

    zPoint64f operator()(std::size_t column) const
    {
        return {frame.x.World(static_cast<z32s>(column)), frame.z.World(pixels[column])};
    }

    [[nodiscard]] const Sample* Samples() const
    {
        return pixels;
    }

    template <typename Number>
    void Run(const Sample* samples, std::size_t count, const Number& number, zPoint64f* items) const
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            items[i] = {frame.x.World(static_cast<z32s>(number(i))), frame.z.World(samples[i])};
        }
    }
};

/// Pairs with a place of their own, their z in the second component.
struct PairPoints
{
    using Sample = zPoint16s;

    Frame frame;
    const zPoint16s* pairs;

    zPoint64f operator()(std::size_t element) const
    {
        return {frame.x.World(pairs[element].x), frame.z.World(pairs[element].y)};
    }

    [[nodiscard]] const Sample* Samples() const
    {
        return pairs;
    }

    template <typename Number>
    void Run(const Sample* samples, std::size_t count, const Number& /*number*/, zPoint64f* items) const
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            items[i] = {frame.x.World(samples[i].x), frame.z.World(samples[i].y)};
        }
    }
};

/// A row of intensities.
struct Intensities
{
    using Sample = z8u;

    const z8u* row;

    z8u operator()(std::size_t element) const
    {
        return row[element];
    }

    [[nodiscard]] const Sample* Samples() const
    {
        return row;
    }

    template <typename Number>
    void Run(const Sample* samples, std::size_t count, const Number& /*number*/, z8u* items) const
    {
        std::copy_n(samples, count, items);
    }
};

// The 16-bit values of elements, one after the other.

inline const z16s* ComponentsOf(const zPoint3d16s* triples)
{
    static_assert(sizeof(zPoint3d16s) == 3 * sizeof(z16s));
    return reinterpret_cast<const z16s*>(triples);
}

inline const z16s* ComponentsOf(const zPoint16s* pairs)
{
    static_assert(sizeof(zPoint16s) == 2 * sizeof(z16s));
    return reinterpret_cast<const z16s*>(pairs);
}
} // namespace Mu::TlkHelper
