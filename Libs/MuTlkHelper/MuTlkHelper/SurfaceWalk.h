#pragma once

#include <MuTlkHelper/MessageView.h>
#include <MuTlkHelper/TurnedBox.h>

#include <cstddef>
#include <optional>

// The walks over the elements of a surface, row by row. `makeOfRow(row, elements)` gives what turns the number of an
// element of that row into an item of the list; whatever fails is raised at the list's place.

namespace Mu::TlkHelper
{
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
} // namespace Mu::TlkHelper
