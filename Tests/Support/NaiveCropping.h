#pragma once

#include <Support/NaiveExtraction.h>

#include <MuVision/Null.h>
#include <MuVision/Sectors.h>
#include <zApi/zSaturate.h>

#include <cstddef>
#include <cstdint>
#include <vector>

// What is seen through a frame, lies in a sector or is cut out, written straight down as in `NaiveExtraction.h`.

namespace Support::Naive
{
inline std::int64_t NearestPixel(double value, double offset, double scale)
{
    const double q = (value - offset) / scale;
    return q > 0.0 ? zSaturate<z32s>(q + 0.5) : zSaturate<z32s>(q - 0.5);
}

/// What an identity frame shows of a region, as `take(point, element)`.
template <typename Take>
void FramedPixels(const SurfaceData& s, const Region3d<double>& region, const Mu::Vision::RefFrame& frame,
                  const Take& take)
{
    const Rect3d<int> box = s.PixelBox(region);
    const auto width = static_cast<std::int64_t>(s.width);
    const auto length = static_cast<std::int64_t>(s.length);
    for (std::int64_t y = box.y; y < std::int64_t{box.y} + box.height && y < length; ++y)
    {
        for (std::int64_t x = box.x; x < std::int64_t{box.x} + box.width; ++x)
        {
            zPoint3d64f point = {World(static_cast<double>(x), s.offset.x, s.scale.x),
                                 World(static_cast<double>(y), s.offset.y, s.scale.y), 0.0};
            point = frame.Apply(point);
            const std::int64_t column = NearestPixel(point.x, s.offset.x, s.scale.x);
            const std::int64_t row = NearestPixel(point.y, s.offset.y, s.scale.y);
            if (column < 0 || column >= width || row < 0 || row >= length)
            {
                continue;
            }
            const auto element = static_cast<std::size_t>(row * width + column);
            point.z = World(s.pixels[element], s.offset.z, s.scale.z);
            if (s.pixels[element] != zNULL_16S && IsWithin(point.z, region.z, region.height))
            {
                take(point, element);
            }
        }
    }
}

template <typename Add>
void PointsInSector(void* message, const Mu::Vision::AnnularSector3d<double>& sector, const Add& add)
{
    const SurfaceData s(message);
    for (std::size_t row = 0; row < s.length; ++row)
    {
        for (std::size_t column = 0; column < s.width; ++column)
        {
            if (s.pixels[row * s.width + column] == zNULL_16S)
            {
                continue;
            }
            const zPoint3d64f p = s.GridPoint(row, column);
            if (Mu::Vision::IsPointInAnnularSector(sector, {p.x, p.y, p.z}, 1) != 0)
            {
                add(p);
            }
        }
    }
}

/// Items row by row.
template <typename Item>
struct Grid
{
    std::size_t rows = 0;
    std::size_t columns = 0;
    std::vector<Item> items;

    [[nodiscard]] bool Has(std::int64_t row, std::int64_t column) const
    {
        return row >= 0 && row < static_cast<std::int64_t>(rows) && column >= 0 &&
               column < static_cast<std::int64_t>(columns);
    }

    [[nodiscard]] const Item& At(std::int64_t row, std::int64_t column) const
    {
        return items[static_cast<std::size_t>(row) * columns + static_cast<std::size_t>(column)];
    }
};

struct CutOut
{
    Grid<z16s> heights;
    Grid<z8u> grey;
    zPoint3d64f origin;
    std::size_t kept = 0;
};

/// A region cut out of a surface with intensities.
inline CutOut ExtractRegion(void* message, const Region3d<double>& region)
{
    const SurfaceData s(message);
    const Rect3d<int> box = s.PixelBox(region);
    const auto rows = static_cast<std::size_t>(box.height);
    const auto columns = static_cast<std::size_t>(box.width);
    CutOut out{{rows, columns, std::vector<z16s>(rows * columns)},
               {rows, columns, std::vector<z8u>(rows * columns)},
               {box.x * s.scale.x + s.offset.x, box.y * s.scale.y + s.offset.y, s.offset.z}};
    for (std::size_t i = 0; i < columns; ++i)
    {
        for (std::size_t j = 0; j < rows; ++j)
        {
            const std::size_t x = static_cast<std::size_t>(box.x) + i;
            const std::size_t y = static_cast<std::size_t>(box.y) + j;
            const bool isThere = y < s.length;
            const z16s pixel = isThere ? s.pixels[y * s.width + x] : zNULL_16S;
            const bool isKept = isThere && !(pixel < box.z) && !(pixel > box.z + box.height);
            out.heights.items[j * columns + i] = isKept ? pixel : z16s{-32768};
            out.grey.items[j * columns + i] = isKept && s.grey != nullptr ? s.grey[y * s.width + x] : z8u{255};
            out.kept += isKept ? 1U : 0U;
        }
    }
    return out;
}

template <typename Item>
struct Cropped
{
    Grid<Item> crop;
    std::size_t kept = 0;
};

/// A crop that is not empty.
template <typename Item>
Cropped<Item> Crop(const Grid<Item>& source, const Rect2d<int>& rect, const Grid<z8u>& mask)
{
    const auto rows = static_cast<std::size_t>(rect.height);
    const auto columns = static_cast<std::size_t>(rect.width);
    Cropped<Item> out{{rows, columns, std::vector<Item>(rows * columns, Mu::Vision::GetNull<Item>())}};
    for (std::int64_t i = 0; i < rect.height; ++i)
    {
        for (std::int64_t j = 0; j < rect.width; ++j)
        {
            if (source.Has(rect.y + i, rect.x + j) && mask.Has(i, j) && mask.At(i, j) != 0)
            {
                out.crop.items[static_cast<std::size_t>(i) * columns + static_cast<std::size_t>(j)] =
                    source.At(rect.y + i, rect.x + j);
                ++out.kept;
            }
        }
    }
    return out;
}
} // namespace Support::Naive
