#pragma once

#include <MuTlkHelper/ListRun.h>
#include <MuTlkHelper/PixelWorld.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>

// The walk over elements of a message: a selection flags those that are kept, a block at a time, and outputs take them.
// No step branches on a single element, so noise costs no more than a smooth surface, and blocks of which nothing or
// everything is kept cost less. The loops are such that a compiler turns them into vector code.

namespace Mu::TlkHelper
{
inline constexpr std::size_t BLOCK = 128;
static_assert(BLOCK <= std::numeric_limits<z8u>::max(), "counts and places within a block are bytes");

/// 1 for an element that is kept, else 0.
using Flags = std::array<z8u, BLOCK>;

/// Elements `first` up to, not including, `end`.
struct Span
{
    std::size_t first;
    std::size_t end;

    [[nodiscard]] constexpr std::size_t Count() const
    {
        return end > first ? end - first : 0;
    }
};

/// The part of `count` elements that stands at `first` and is `length` long.
constexpr Span SpanIn(z64s first, z64s length, std::size_t count)
{
    const z64s last = std::min(first + std::max<z64s>(length, 0), static_cast<z64s>(count));
    const z64s begin = std::clamp<z64s>(first, 0, static_cast<z64s>(count));
    return {static_cast<std::size_t>(begin), static_cast<std::size_t>(std::max(begin, last))};
}

/// A window for each of the `COMPONENTS` 16-bit values of an element.
template <std::size_t COMPONENTS>
class Windows
{
public:
    explicit Windows(const std::array<Window, COMPONENTS>& windows)
    {
        for (std::size_t i = 0; i < low.size(); ++i)
        {
            const Window& window = windows[i % COMPONENTS];
            isEmpty = isEmpty || window.IsEmpty();
            low[i] = static_cast<z16u>(window.low);
            span[i] = static_cast<z16u>(window.high - window.low);
        }
    }

    [[nodiscard]] bool IsEmpty() const
    {
        return isEmpty;
    }

    /// 1 if a value that is the `place`-th of a block lies in its window, else 0.
    [[nodiscard]] z8u Hold(std::size_t place, z16s value) const
    {
        const std::size_t i = COMPONENTS == 1 ? 0 : place;
        return static_cast<z16u>(static_cast<z16u>(value) - low[i]) <= span[i] ? 1 : 0;
    }

private:
    // Repeated for each element of a block, so that the walk over its values is one plain loop.
    static constexpr std::size_t ENTRIES = COMPONENTS == 1 ? 1 : COMPONENTS * BLOCK;

    std::array<z16u, ENTRIES> low;
    std::array<z16u, ENTRIES> span;
    bool isEmpty = false;
};

/// Keeps the elements of which each value lies in its window.
template <std::size_t COMPONENTS>
class WindowSelection
{
public:
    WindowSelection(const z16s* components, const Windows<COMPONENTS>& newWindows)
        : elements(components)
        , windows(newWindows)
    {
    }

    void operator()(std::size_t first, std::size_t count, Flags& flags) const
    {
        const z16s* const block = elements + first * COMPONENTS;
        if (windows.IsEmpty())
        {
            flags.fill(0);
        }
        else if constexpr (COMPONENTS == 1)
        {
            const Windows<1> own = windows; // flags are bytes, which might be those of the windows for all one can see
            for (std::size_t i = 0; i < count; ++i)
            {
                flags[i] = own.Hold(i, block[i]);
            }
        }
        else
        {
            Join(block, count, flags);
        }
    }

private:
    void Join(const z16s* block, std::size_t count, Flags& flags) const
    {
        constexpr std::size_t BEHIND = COMPONENTS - 1; // read, but of no meaning
        std::array<z8u, COMPONENTS * BLOCK + BEHIND> within;
        for (std::size_t i = 0; i < count * COMPONENTS; ++i)
        {
            within[i] = windows.Hold(i, block[i]);
        }
        std::fill_n(within.begin() + static_cast<std::ptrdiff_t>(count * COMPONENTS), BEHIND, z8u{0});
        if (!HasRun(within, count))
        {
            std::fill_n(flags.begin(), count, z8u{0});
            return;
        }
        for (std::size_t i = 0; i < count; ++i)
        {
            z8u all = within[i * COMPONENTS];
            for (std::size_t component = 1; component < COMPONENTS; ++component)
            {
                all &= within[i * COMPONENTS + component];
            }
            flags[i] = all;
        }
    }

    // Whether enough neighbouring values lie in their windows, whatever elements they belong to. Where rows or
    // stretches of an image miss a box, this tells so in a tenth of the time.
    template <typename Within>
    static bool HasRun(const Within& within, std::size_t count)
    {
        z8u any = 0;
        for (std::size_t i = 0; i < count * COMPONENTS; ++i)
        {
            z8u all = within[i];
            for (std::size_t next = 1; next < COMPONENTS; ++next)
            {
                all &= within[i + next];
            }
            any |= all;
        }
        return any != 0;
    }

    const z16s* elements;
    const Windows<COMPONENTS>& windows;
};

inline std::size_t CountOf(const Flags& flags, std::size_t count)
{
    z8u kept = 0; // a block is small enough for it
    for (std::size_t i = 0; i < count; ++i)
    {
        kept = static_cast<z8u>(kept + flags[i]);
    }
    return kept;
}

/// The places of the flagged elements of a block.
using Places = std::array<z8u, BLOCK>;

inline std::size_t PlacesOf(const Flags& flags, std::size_t count, Places& places)
{
    std::size_t found = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        places[found] = static_cast<z8u>(i);
        found += flags[i];
    }
    return found;
}

/// Keeps those candidates of another selection for which a test of the element's number is true.
template <typename Candidates, typename Test>
class TestedSelection
{
public:
    TestedSelection(Candidates newCandidates, Test newTest)
        : candidates(std::move(newCandidates))
        , test(std::move(newTest))
    {
    }

    void operator()(std::size_t first, std::size_t count, Flags& flags) const
    {
        Places places;
        candidates(first, count, flags);
        const std::size_t found = PlacesOf(flags, count, places);
        for (std::size_t i = 0; i < found; ++i)
        {
            flags[places[i]] = test(first + places[i]) ? 1 : 0;
        }
    }

private:
    Candidates candidates;
    Test test;
};

template <typename Selection>
std::size_t CountKept(const Span& span, const Selection& selection)
{
    Flags flags;
    std::size_t kept = 0;
    for (std::size_t first = span.first; first < span.end; first += BLOCK)
    {
        const std::size_t count = std::min(BLOCK, span.end - first);
        selection(first, count, flags);
        kept += CountOf(flags, count);
    }
    return kept;
}

/// Adds what `make` makes of the kept elements to a list.
template <typename Item, typename Make>
class Output
{
public:
    Output(ListRun<Item>& newList, Make newMake)
        : list(newList)
        , make(std::move(newMake))
    {
    }

    /// The `count` elements `first + at(0)`, `first + at(1)`, ...
    template <typename At>
    void Take(std::size_t first, std::size_t count, const At& at) const
    {
        Item* const items = list.Room(count);
        for (std::size_t i = 0; i < count; ++i)
        {
            items[i] = make(first + at(i));
        }
        list.Added(count);
    }

    /// The flagged ones of the `count` elements from `first` on. Each is written behind those before, and the place
    /// moves on only if it is kept: cheaper than to look up their places first, as long as most are kept. Takes room
    /// for all.
    void TakeFlagged(std::size_t first, std::size_t count, const Flags& flags) const
    {
        Item* const items = list.Room(count);
        std::size_t kept = 0;
        for (std::size_t i = 0; i < count; ++i)
        {
            items[kept] = make(first + i);
            kept += flags[i];
        }
        list.Added(kept);
    }

    [[nodiscard]] bool HasRoom(std::size_t count) const
    {
        return list.HasRoom(count);
    }

private:
    ListRun<Item>& list;
    Make make;
};

/// Hands the kept elements of `span` to the outputs, in order. `makeRoom(first)` is called where their room does not do
/// for those from `first` on.
template <typename Selection, typename MakeRoom, typename... Outputs>
void WalkSpan(const Span& span, const Selection& selection, const MakeRoom& makeRoom, const Outputs&... outputs)
{
    Flags flags;
    Places places;
    for (std::size_t first = span.first; first < span.end; first += BLOCK)
    {
        const std::size_t count = std::min(BLOCK, span.end - first);
        selection(first, count, flags);
        const std::size_t kept = CountOf(flags, count);
        if (!(outputs.HasRoom(kept) && ...)) [[unlikely]]
        {
            makeRoom(first);
        }
        if (kept == count)
        {
            (outputs.Take(first, kept, [](std::size_t i) { return i; }), ...);
        }
        else if (kept * 2 > count && (outputs.HasRoom(count) && ...))
        {
            (outputs.TakeFlagged(first, count, flags), ...);
        }
        else if (kept != 0)
        {
            PlacesOf(flags, count, places);
            (outputs.Take(first, kept, [&places](std::size_t i) { return std::size_t{places[i]}; }), ...);
        }
    }
}

/// Walks `rows`. `row(number)` gives the span, the selection and the outputs of a row, `lists` are those that the
/// outputs add to. Where their room does not do, what is still to come is counted once, so that they grow once.
template <typename Row, typename... Lists>
void WalkRows(const Span& rows, const Row& row, Lists&... lists)
{
    std::size_t number = rows.first;
    const auto countFrom = [&](std::size_t first) {
        std::size_t kept = 0;
        for (std::size_t later = number; later < rows.end; ++later)
        {
            row(later, [&](const Span& span, const auto& selection, const auto&...) {
                kept += CountKept({later == number ? first : span.first, span.end}, selection);
            });
        }
        return kept;
    };
    const auto makeRoom = [&](std::size_t first) {
        const std::size_t kept = countFrom(first);
        (lists.Reserve(kept), ...);
    };
    for (; number < rows.end; ++number)
    {
        row(number, [&](const Span& span, const auto& selection, const auto&... outputs) {
            WalkSpan(span, selection, makeRoom, outputs...);
        });
    }
    (lists.Finish(), ...);
}
} // namespace Mu::TlkHelper
