#pragma once

#include <MuVision/RefFrame.h>
#include <MuVision/RegionPixel.h>
#include <TaApi/Raise.h>
#include <TaVision/TaVision.h>
#include <zVision/zM3dTransform2d.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

// The extraction of points and intensities written straight down: element by element, with nothing thought of but what
// the words of each member say. `add` (and `addGrey`) take one item at a time.

namespace Support::Naive
{
using Mu::Vision::Rect2d;
using Mu::Vision::Rect3d;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;

inline double World(double pixel, double offset, double scale)
{
    return pixel * scale + offset;
}

inline bool IsWithin(double value, double centre, double extent)
{
    return value >= centre - extent / 2 && value <= centre + extent / 2;
}

inline bool IsInRegion(const Region3d<double>& r, const zPoint3d64f& p)
{
    return IsWithin(p.x, r.x, r.width) && IsWithin(p.y, r.y, r.length) && IsWithin(p.z, r.z, r.height);
}

inline bool IsInRegion(const RegionXZ<double>& r, const zPoint64f& p)
{
    return IsWithin(p.x, r.x, r.width) && IsWithin(p.y, r.z, r.height);
}

/// A surface message.
struct SurfaceData
{
    explicit SurfaceData(void* message)
        : width(TvSurfaceMsg_Width(message))
        , length(TvSurfaceMsg_Length(message))
        , offset(TvSurfaceMsg_Offset(message))
        , scale(TvSurfaceMsg_Scale(message))
        , isResampled(TvSurfaceMsg_IsResampled(message))
        , pixels(static_cast<const z16s*>(TvSurfaceMsg_Points(message)))
        , triples(static_cast<const zPoint3d16s*>(TvSurfaceMsg_Points(message)))
        , grey(static_cast<const z8u*>(TvSurfaceMsg_Intensity(message)))
    {
    }

    [[nodiscard]] zPoint3d64f GridPoint(std::size_t row, std::size_t column) const
    {
        return {World(static_cast<double>(column), offset.x, scale.x),
                World(static_cast<double>(row), offset.y, scale.y),
                World(pixels[row * width + column], offset.z, scale.z)};
    }

    [[nodiscard]] zPoint3d64f TriplePoint(std::size_t i) const
    {
        return {World(triples[i].x, offset.x, scale.x), World(triples[i].y, offset.y, scale.y),
                World(triples[i].z, offset.z, scale.z)};
    }

    [[nodiscard]] bool HasNull(std::size_t i) const
    {
        return triples[i].x == zNULL_16S || triples[i].y == zNULL_16S || triples[i].z == zNULL_16S;
    }

    [[nodiscard]] Rect3d<int> PixelBox(const Region3d<double>& region) const
    {
        Rect3d<int> box;
        Mu::Vision::GetRegionPixel(width, length, offset, scale, &region, &box, nullptr, 1);
        return box;
    }

    std::size_t width;
    std::size_t length;
    zPoint3d64f offset;
    zPoint3d64f scale;
    bool isResampled;
    const z16s* pixels;
    const zPoint3d16s* triples;
    const z8u* grey;
};

/// The pixels of `rows` rows of a box, as `take(row, column)`. Rows that the surface does not have are not visited.
template <typename Take>
void ForBox(const SurfaceData& s, const Rect3d<int>& box, int rows, const Take& take)
{
    for (std::int64_t row = box.y; row < std::int64_t{box.y} + rows; ++row)
    {
        for (std::int64_t column = box.x; column < std::int64_t{box.x} + box.width; ++column)
        {
            if (row >= static_cast<std::int64_t>(s.length))
            {
                continue;
            }
            const auto r = static_cast<std::size_t>(row);
            const auto c = static_cast<std::size_t>(column);
            const z16s pixel = s.pixels[r * s.width + c];
            if (pixel != zNULL_16S && pixel >= box.z && pixel <= box.z + box.height)
            {
                take(r, c);
            }
        }
    }
}

template <typename Add>
void AllPoints(void* message, const Add& add)
{
    const SurfaceData s(message);
    for (std::size_t row = 0; row < s.length; ++row)
    {
        for (std::size_t column = 0; column < s.width; ++column)
        {
            if (s.pixels[row * s.width + column] != zNULL_16S)
            {
                add(s.GridPoint(row, column));
            }
        }
    }
}

template <typename Add>
void Cloud(void* message, const Add& add)
{
    constexpr float NONE = std::numeric_limits<float>::quiet_NaN();
    const SurfaceData s(message);
    for (std::size_t i = 0; i < s.width * s.length; ++i)
    {
        const bool isNull = s.isResampled ? s.pixels[i] == zNULL_16S : s.HasNull(i);
        const zPoint3d64f p = s.isResampled ? s.GridPoint(i / s.width, i % s.width) : s.TriplePoint(i);
        add(isNull ? zPoint3d32f{NONE, NONE, NONE}
                   : zPoint3d32f{static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)});
    }
}

template <typename Add>
void TurnedPoints(const SurfaceData& s, const Region3d<double>& region, const Add& add)
{
    Mu::Vision::RefFrame frame;
    frame.Rotate(region, true);
    for (std::size_t row = 0; row < s.length; ++row)
    {
        for (std::size_t column = 0; column < s.width; ++column)
        {
            const std::size_t i = row * s.width + column;
            if (s.isResampled ? s.pixels[i] == zNULL_16S : s.HasNull(i))
            {
                continue;
            }
            const zPoint3d64f point = s.isResampled ? s.GridPoint(row, column) : s.TriplePoint(i);
            if (IsInRegion(region, frame.Apply(point)))
            {
                add(point);
            }
        }
    }
}

template <typename Add>
void PointsFromRegion(void* message, const Region3d<double>& region, const Add& add)
{
    const SurfaceData s(message);
    if (!(std::abs(region.zAngle) < 1.1920928955078125e-07))
    {
        TurnedPoints(s, region, add);
    }
    else if (s.isResampled)
    {
        const Rect3d<int> box = s.PixelBox(region);
        if (box.width >= 1 && box.length >= 1)
        {
            ForBox(s, box, box.length, [&](std::size_t row, std::size_t column) { add(s.GridPoint(row, column)); });
        }
    }
    else
    {
        for (std::size_t i = 0; i < s.width * s.length; ++i)
        {
            if (s.triples[i].z != zNULL_16S && IsInRegion(region, s.TriplePoint(i)))
            {
                add(s.TriplePoint(i));
            }
        }
    }
}

template <typename Add>
void IntensitiesFromRegion(void* message, const Region3d<double>& region, const Add& add)
{
    const SurfaceData s(message);
    if (s.isResampled)
    {
        const Rect3d<int> box = s.PixelBox(region);
        if (box.width >= 1 && box.height >= 1)
        {
            ForBox(s, box, box.height,
                   [&](std::size_t row, std::size_t column) { add(s.grey[row * s.width + column]); });
        }
        return;
    }
    for (std::size_t i = 0; i < s.width * s.length; ++i)
    {
        if (s.triples[i].z != zNULL_16S && IsInRegion(region, s.TriplePoint(i)))
        {
            add(s.grey[i]);
        }
    }
}

/// A profile message.
struct ProfileData
{
    explicit ProfileData(void* message)
        : count(TvProfileMsg_PointCount(message))
        , offset(TvProfileMsg_Offset(message))
        , scale(TvProfileMsg_Scale(message))
        , isResampled(TvProfileMsg_PointType(message) == zTypeOf(z16s))
        , pixels(static_cast<const z16s*>(TvProfileMsg_Points(message)))
        , pairs(static_cast<const zPoint16s*>(TvProfileMsg_Points(message)))
        , grey(static_cast<const z8u*>(TvProfileMsg_Intensity(message)))
    {
    }

    [[nodiscard]] zPoint64f Point(std::size_t i) const
    {
        const double x = isResampled ? static_cast<double>(i) : pairs[i].x;
        return {World(x, offset.x, scale.x), World(Height(i), offset.z, scale.z)};
    }

    [[nodiscard]] z16s Height(std::size_t i) const
    {
        return isResampled ? pixels[i] : pairs[i].y;
    }

    [[nodiscard]] bool HasNull(std::size_t i) const
    {
        return Height(i) == zNULL_16S || (!isResampled && pairs[i].x == zNULL_16S);
    }

    [[nodiscard]] Rect2d<int> PixelBox(const RegionXZ<double>& region, int isPixelGrid) const
    {
        Rect2d<int> box;
        Mu::Vision::GetRegionXZPixel(count, {offset.x, offset.z}, {scale.x, scale.z}, &region, &box, nullptr,
                                     isPixelGrid);
        return box;
    }

    std::size_t count;
    zPoint3d64f offset;
    zPoint3d64f scale;
    bool isResampled;
    const z16s* pixels;
    const zPoint16s* pairs;
    const z8u* grey;
};

/// Every point, as its number.
template <typename Take>
void AllProfilePoints(const ProfileData& p, const Take& take)
{
    for (std::size_t i = 0; i < p.count; ++i)
    {
        if (!p.HasNull(i))
        {
            take(i);
        }
    }
}

/// The points of a region, as their numbers. `far` is 0 with an open upper bound and 1 with a closed one.
template <typename Take>
void ProfileRegion(const ProfileData& p, const RegionXZ<double>& region, int far, const Take& take)
{
    if (p.isResampled)
    {
        const Rect2d<int> box = p.PixelBox(region, 1);
        if (box.width < 1 || box.height < 1)
        {
            return;
        }
        for (std::int64_t i = box.x; i < std::int64_t{box.x} + box.width; ++i)
        {
            const z16s pixel = p.pixels[i];
            if (pixel != zNULL_16S && pixel >= box.y && pixel < box.y + box.height + far)
            {
                take(static_cast<std::size_t>(i));
            }
        }
        return;
    }
    for (std::size_t i = 0; i < p.count; ++i)
    {
        if (p.pairs[i].y != zNULL_16S && IsInRegion(region, p.Point(i)))
        {
            take(i);
        }
    }
}

/// Which elements a mask leaves as they are: 0 for one that becomes null.
inline std::vector<int> KeptByMask(const ProfileData& p, const RegionXZ<double>& region)
{
    std::vector<int> kept(p.count, 0);
    const Rect2d<int> box = p.PixelBox(region, 1);
    for (std::size_t i = 0; i < p.count; ++i)
    {
        if (!p.isResampled)
        {
            kept[i] = p.pairs[i].y == zNULL_16S || IsInRegion(region, p.Point(i)) ? 1 : 0;
            continue;
        }
        const auto x = static_cast<std::int64_t>(i);
        const std::int64_t z = p.pixels[i];
        const bool isInRect =
            x >= box.x && x <= std::int64_t{box.x} + box.width && z >= box.y && z <= std::int64_t{box.y} + box.height;
        kept[i] = box.width >= 1 && box.height >= 1 && (z == zNULL_16S || isInRect) ? 1 : 0;
    }
    return kept;
}

/// Whether an empty box clears points and intensities as a whole.
inline bool IsMaskEmpty(const ProfileData& p, const RegionXZ<double>& region)
{
    const Rect2d<int> box = p.PixelBox(region, 1);
    return p.isResampled && (box.width < 1 || box.height < 1);
}

/// The points that one of several regions holds, as their numbers.
template <typename Take>
void ProfileRegions(const ProfileData& p, const std::vector<RegionXZ<double>>& regions, const Take& take)
{
    std::vector<Rect2d<int>> boxes;
    for (const RegionXZ<double>& region : regions)
    {
        boxes.push_back(p.PixelBox(region, p.isResampled ? 1 : 0));
    }
    for (std::size_t i = 0; i < p.count; ++i)
    {
        if (p.HasNull(i))
        {
            continue;
        }
        const std::int64_t x = p.isResampled ? static_cast<std::int64_t>(i) : p.pairs[i].x;
        const std::int64_t z = p.Height(i);
        for (const Rect2d<int>& box : boxes)
        {
            if (x >= box.x && x < std::int64_t{box.x} + box.width && z >= box.y && z < std::int64_t{box.y} + box.height)
            {
                take(i);
                break;
            }
        }
    }
}

/// The points that one of several turned regions holds.
template <typename Add>
void TurnedProfileRegions(const ProfileData& p, const std::vector<RegionXZ<double>>& regions,
                          const std::vector<double>& angles, const Add& add)
{
    for (std::size_t i = 0; i < p.count; ++i)
    {
        const z16s x = p.isResampled ? static_cast<z16s>(i) : p.pairs[i].x;
        const z16s z = p.Height(i);
        const zPoint64f point = {World(x, p.offset.x, p.scale.x),
                                 z == zNULL_16S ? zNULL_64F : World(z, p.offset.z, p.scale.z)};
        for (std::size_t j = 0; j < regions.size(); ++j)
        {
            zM3dTransform2d t;
            zPoint64f turned;
            MU_CHECK(zM3dTransform2d_Identity(&t));
            MU_CHECK(zM3dTransform2d_Translate(&t, -regions[j].x, -regions[j].z));
            MU_CHECK(zM3dTransform2d_Rotate(&t, -angles[j]));
            MU_CHECK(zM3dTransform2d_Apply(&t, &point, &turned));
            if (turned.x >= -regions[j].width / 2 && turned.x <= regions[j].width / 2 &&
                turned.y >= -regions[j].height / 2 && turned.y <= regions[j].height / 2)
            {
                add(point);
                break;
            }
        }
    }
}
} // namespace Support::Naive
