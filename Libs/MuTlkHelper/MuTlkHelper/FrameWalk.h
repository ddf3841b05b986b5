#pragma once

#include <MuTlkHelper/SurfaceWalk.h>

#include <MuVision/RefFrame.h>

#include <array>
#include <bit>
#include <cstddef>
#include <optional>

// The walk over a surface that is seen through a frame.

namespace Mu::TlkHelper
{
/// What is seen at the places of a grid: a frame moves each place, and what stands there is seen, if it has a height
/// within bounds. For frames that are the identity, up to signs of zeros.
class FramedGrid
{
public:
    FramedGrid(const SurfaceView& newSurface, const Mu::Vision::RefFrame& newFrame, const Bounds& newHeights)
        : surface(newSurface)
        , toSource(newFrame)
        , heights(newHeights)
        , pixels(newSurface.Heights())
    {
    }

    /// The point that an element of the surface becomes when it is seen at a place.
    [[nodiscard]] zPoint3d64f Point(std::size_t row, std::size_t column, std::size_t element) const
    {
        zPoint3d64f point = Moved(row, column);
        point.z = surface.frame.z.World(pixels[element]);
        return point;
    }

    /// The element that is seen at a place, if there is one.
    [[nodiscard]] std::optional<std::size_t> Element(std::size_t row, std::size_t column) const
    {
        const zPoint3d64f place = Moved(row, column);
        const z64s sourceColumn = surface.frame.x.Pixel(place.x);
        const z64s sourceRow = surface.frame.y.Pixel(place.y);
        if (sourceColumn < 0 || sourceColumn >= static_cast<z64s>(surface.width) || sourceRow < 0 ||
            sourceRow >= static_cast<z64s>(surface.length))
        {
            return std::nullopt;
        }
        const std::size_t element =
            static_cast<std::size_t>(sourceRow) * surface.width + static_cast<std::size_t>(sourceColumn);
        const z16s pixel = pixels[element];
        const bool isSeen = pixel != zNULL_16S && heights.Hold(surface.frame.z.World(pixel));
        return isSeen ? std::optional(element) : std::nullopt;
    }

    /// The heights that are seen, if every place shows the pixel that stands there anyway. Mostly it does; where an
    /// offset is so large that pixels become one world value, or a value is not finite, it does not.
    [[nodiscard]] std::optional<Window> HeightsInPlace(const Span& columns, const Span& rows) const
    {
        using Bits = std::array<z64u, sizeof(zM3dTransform3d) / sizeof(double)>;
        const bool isPlain =
            std::bit_cast<Bits>(toSource.TozTransform()) == std::bit_cast<Bits>(Mu::Vision::RefFrame().TozTransform());
        const std::optional<Window> samples = SamplesIn(heights, surface.frame.z);
        if (!isPlain || surface.PointType() != zTypeOf(z16s) || !samples || !IsInPlace(surface.frame.x, columns) ||
            !IsInPlace(surface.frame.y, rows))
        {
            return std::nullopt;
        }
        return HeightWindow(samples->low, samples->high);
    }

    /// The axes of points that are seen in place: what the frame adds are zeros, which make -0.0 to 0.0.
    [[nodiscard]] Frame AxesInPlace() const
    {
        Frame axes = surface.frame;
        axes.x.offset += 0.0;
        axes.y.offset += 0.0;
        return axes;
    }

private:
    [[nodiscard]] zPoint3d64f Moved(std::size_t row, std::size_t column) const
    {
        return toSource.Apply(zPoint3d64f{surface.frame.x.World(static_cast<double>(column)),
                                          surface.frame.y.World(static_cast<double>(row)), 0.0});
    }

    // An identity leaves finite values as they are, and gives NaN for the rest, which is no pixel.
    static bool IsInPlace(const Axis& axis, const Span& span)
    {
        for (std::size_t i = span.first; i < span.end; ++i)
        {
            if (axis.Pixel(axis.World(static_cast<double>(i))) != static_cast<z64s>(i))
            {
                return false;
            }
        }
        return true;
    }

    const SurfaceView& surface;
    Mu::Vision::RefFrame toSource;
    Bounds heights;
    const z16s* pixels;
};

/// Adds what is seen at the places of a box, place by place. `make(row, column, element)` gives the item of an element
/// of the surface that is seen at a place.
template <typename Item, typename Make>
void WalkFramed(const FramedGrid& grid, const Span& columns, const Span& rows, ListRun<Item>& list, const Make& make)
{
    const auto row = [&](std::size_t number, const auto& visit) {
        const auto isSeen = [&grid, number](std::size_t i) { return grid.Element(number, i).has_value(); };
        // Items of places that show nothing may be made too; any element will do for them.
        const auto makeOf = [&, number](std::size_t i) { return make(number, i, grid.Element(number, i).value_or(0)); };
        visit(columns, TestedSelection(EveryElement(), isSeen), Output(list, makeOf));
    };
    WalkRows(rows, row, list);
}
} // namespace Mu::TlkHelper
