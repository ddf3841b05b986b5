#pragma once

#include <MuTlkHelper/MessageView.h>
#include <MuTlkHelper/TurnedBox.h>

#include <MuVision/Sectors.h>
#include <TaApi/Object.h>
#include <zApi/zArray1.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

// The walks over the elements of a surface, row by row. `makeOfRow(row, elements)` gives what turns the number of an
// element of that row into an item of the list; whatever fails is raised at the list's place.

namespace Mu::TlkHelper
{
/// The point of every pixel of a walk over a grid.
inline auto GridPointsOf(const Frame& frame)
{
    return [&frame](std::size_t row, const z16s* pixels) {
        return GridPoints{frame, frame.y.World(static_cast<double>(row)), pixels};
    };
}

/// The intensity of every element of a walk over a surface.
inline auto IntensitiesOf(const SurfaceView& surface)
{
    return [&surface](std::size_t row, const auto* /*elements*/) { return Intensities{surface.IntensityRow(row)}; };
}

/// Pixels of a grid.
struct GridBox
{
    Span columns;
    Span rows;
    Window heights;
};

template <typename Item, typename MakeOfRow>
void WalkGrid(const SurfaceView& surface, const GridBox& box, ListRun<Item>& list, const MakeOfRow& makeOfRow)
{
    if (box.heights.IsEmpty())
    {
        return;
    }
    const Windows<1> heights({box.heights});
    const auto row = [&](std::size_t number, const auto& visit) {
        const auto* const pixels = surface.Row<z16s>(number);
        visit(box.columns, WindowSelection<1>(pixels, heights), Output(list, makeOfRow(number, pixels)));
    };
    WalkRows(box.rows, row, list);
}

/// The windows of the samples that lie in a box, null if the axes are not finite.
inline std::optional<Windows<3>> WindowsOf(const Box& box, const Frame& frame)
{
    const auto x = SamplesIn(box.x, frame.x);
    const auto y = SamplesIn(box.y, frame.y);
    const auto z = SamplesIn(box.z, frame.z);
    if (!x || !y || !z)
    {
        return std::nullopt;
    }
    // Required: a null x or y counts as a value like any other, only a null z is left out.
    return Windows<3>({*x, *y, HeightWindow(z->low, z->high)});
}

/// Triples of which the world point lies in the box of `region`.
template <typename Item, typename MakeOfRow>
void WalkTriples(const SurfaceView& surface, const Mu::Vision::Region3d<double>& region, ListRun<Item>& list,
                 const MakeOfRow& makeOfRow)
{
    const Box box(region);
    const std::optional<Windows<3>> windows = WindowsOf(box, surface.frame);
    if (windows && windows->IsEmpty())
    {
        return;
    }
    const Windows<3> withHeight({EVERY_PIXEL, EVERY_PIXEL, NOT_NULL});
    const auto row = [&](std::size_t number, const auto& visit) {
        const auto* const triples = surface.Row<zPoint3d16s>(number);
        const auto* const components = ComponentsOf(triples);
        const Output output(list, makeOfRow(number, triples));
        const Span span{0, surface.width};
        if (windows)
        {
            visit(span, WindowSelection<3>(components, *windows), output);
        }
        else
        {
            const TriplePoints points{surface.frame, triples};
            const auto isInside = [&box, points](std::size_t i) { return box.Hold(points(i)); };
            visit(span, TestedSelection(WindowSelection<3>(components, withHeight), isInside), output);
        }
    };
    WalkRows({0, surface.length}, row, list);
}

/// The heights that may lie in a turned box.
inline Window HeightsIn(const TurnedBox& box)
{
    const std::optional<Window>& heights = box.Heights();
    return heights ? HeightWindow(heights->low, heights->high) : NOT_NULL;
}

/// Pixels of a grid of which the world point lies in a turned box.
inline void WalkTurnedGrid(const SurfaceView& surface, const TurnedBox& box, ListRun<zPoint3d64f>& list)
{
    const Window heights = HeightsIn(box);
    if (heights.IsEmpty())
    {
        return;
    }
    const Windows<1> inside({heights});
    const Windows<1> notNull({NOT_NULL});
    const auto row = [&](std::size_t number, const auto& visit) {
        const auto* const pixels = surface.Row<z16s>(number);
        const GridPoints points{surface.frame, surface.frame.y.World(static_cast<double>(number)), pixels};
        if (const std::optional<Span> columns = box.Columns(number, surface.width))
        {
            visit(*columns, WindowSelection<1>(pixels, inside), Output(list, points));
        }
        else
        {
            const auto isInside = [&box, points](std::size_t i) { return box.Hold(points(i)); };
            visit(Span{0, surface.width}, TestedSelection(WindowSelection<1>(pixels, notNull), isInside),
                  Output(list, points));
        }
    };
    WalkRows({0, surface.length}, row, list);
}

/// Triples of which the world point lies in a turned box.
inline void WalkTurnedTriples(const SurfaceView& surface, const TurnedBox& box, ListRun<zPoint3d64f>& list)
{
    // Required: all three components must be there, where the straight walk looks at z only.
    const auto [aroundX, aroundY] = box.Around();
    const Windows<3> candidates({aroundX, aroundY, HeightsIn(box)});
    const bool isInPlane = box.Heights() && surface.frame.x.IsFinite() && surface.frame.y.IsFinite();
    if (candidates.IsEmpty())
    {
        return;
    }
    const auto row = [&](std::size_t number, const auto& visit) {
        const auto* const triples = surface.Row<zPoint3d16s>(number);
        const TriplePoints points{surface.frame, triples};
        const WindowSelection<3> candidatesOfRow(ComponentsOf(triples), candidates);
        const Span span{0, surface.width};
        const Output output(list, points);
        if (isInPlane)
        {
            const auto isInside = [&box, points](std::size_t i) { return box.HoldInPlane(points(i)); };
            visit(span, TestedSelection(candidatesOfRow, isInside), output);
        }
        else
        {
            const auto isInside = [&box, points](std::size_t i) { return box.Hold(points(i)); };
            visit(span, TestedSelection(candidatesOfRow, isInside), output);
        }
    };
    WalkRows({0, surface.length}, row, list);
}

/// What a selection says of the elements of a box, a byte for each.
class StoredFlags
{
public:
    /// `selectionOf(row)` is asked once for each row.
    template <typename SelectionOf>
    StoredFlags(const Ta::Place& place, const Span& newColumns, const Span& newRows, const SelectionOf& selectionOf)
        : columns(newColumns)
        , rows(newRows)
    {
        Ta::Check(place, zArray1_Construct(flags.Out(), zTypeOf(z8u), columns.Count() * rows.Count(), nullptr));
        bytes = static_cast<z8u*>(zArray1_Items(flags.Get()));
        for (std::size_t row = rows.first; row < rows.end; ++row)
        {
            Store(selectionOf(row), RowOf(row));
        }
    }

    /// Keeps what was kept of a row.
    [[nodiscard]] auto Row(std::size_t row) const
    {
        return [stored = RowOf(row), first = columns.first](std::size_t begin, std::size_t count, Flags& block) {
            std::copy_n(stored + (begin - first), count, block.begin());
        };
    }

private:
    [[nodiscard]] z8u* RowOf(std::size_t row) const
    {
        return bytes + (row - rows.first) * columns.Count();
    }

    template <typename Selection>
    void Store(const Selection& selection, z8u* stored) const
    {
        Flags block;
        for (std::size_t first = columns.first; first < columns.end; first += BLOCK)
        {
            const std::size_t count = std::min(BLOCK, columns.end - first);
            selection(first, count, block);
            stored = std::copy_n(block.begin(), count, stored);
        }
    }

    Span columns;
    Span rows;
    Ta::Object<void*> flags;
    z8u* bytes = nullptr;
};

/// Squares of smaller distances are no longer told apart.
inline constexpr double SMALLEST_SQUARED = 1e-150;

/// The places of a ring along one axis, and some more; all of them if a value is not finite.
inline Span PlacesOfRing(std::size_t count, const Axis& axis, double centre, double radius)
{
    // Rounding moves a distance by some 1e-16 of the values in it, and the bounds of a ring may be a little wider.
    const double reach = std::abs(radius) + 1e-9 * (std::abs(radius) + std::abs(centre)) + SMALLEST_SQUARED;
    const auto world = [&axis](std::size_t i) { return axis.World(static_cast<double>(i)); };
    const auto places = count == 0 ? std::nullopt : PlacesIn(count, {centre - reach, centre + reach}, world);
    return places ? *places : Span{0, count};
}

/// Pixels of a grid of which the world point lies in a sector. Points are read as 16-bit heights, whatever they are.
inline void WalkSector(const Ta::Place& place, const SurfaceView& surface,
                       const Mu::Vision::AnnularSector3d<double>& sector, ListRun<zPoint3d64f>& list)
{
    const Span columns = PlacesOfRing(surface.width, surface.frame.x, sector.center.x, sector.outerRadius);
    const Span rows = PlacesOfRing(surface.length, surface.frame.y, sector.center.y, sector.outerRadius);
    const Windows<1> notNull({NOT_NULL});
    const auto pointsOf = GridPointsOf(surface.frame);
    const auto pixelsOf = [&surface, heights = surface.Heights()](std::size_t row) {
        return heights + row * surface.width;
    };
    const auto test = [&](std::size_t row) {
        const auto isInside = [sector, points = pointsOf(row, pixelsOf(row))](std::size_t i) {
            const zPoint3d64f point = points(i);
            return Mu::Vision::IsPointInAnnularSector(sector, {point.x, point.y, point.z}, 1) != 0;
        };
        return TestedSelection(WindowSelection<1>(pixelsOf(row), notNull), isInside);
    };
    // A test may take an arc tangent: what it says is kept for the count that comes before the points.
    const StoredFlags stored(place, columns, rows, test);
    const auto row = [&](std::size_t number, const auto& visit) {
        visit(columns, stored.Row(number), Output(list, pointsOf(number, pixelsOf(number))));
    };
    WalkRows(rows, row, list);
}
} // namespace Mu::TlkHelper
