#pragma once

#include <MuTlkHelper/ListRun.h>
#include <MuTlkHelper/PixelWorld.h>
#include <MuTlkHelper/VectorCode.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <optional>
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

/// The places below `count`, which is above 0, whose value lies in `bounds`, of values that rise or fall. Null if a
/// value is not finite.
template <typename Value>
std::optional<Span> PlacesIn(std::size_t count, const Bounds& bounds, const Value& value)
{
    const double atFirst = value(0);
    const double atLast = value(count - 1);
    if (!std::isfinite(atFirst) || !std::isfinite(atLast))
    {
        return std::nullopt;
    }
    const double step = (atLast - atFirst) / static_cast<double>(count - 1);
    const auto guess = [&](double bound) {
        const double place = (bound - atFirst) / step;
        return place > 0.0 ? static_cast<std::size_t>(std::min(place, static_cast<double>(count))) : 0;
    };
    const bool rises = atLast >= atFirst;
    const std::size_t first =
        rises ? FirstPlace(count, guess(bounds.low), [&](std::size_t i) { return value(i) >= bounds.low; })
              : FirstPlace(count, guess(bounds.high), [&](std::size_t i) { return value(i) <= bounds.high; });
    const std::size_t end =
        rises ? FirstPlace(count, guess(bounds.high), [&](std::size_t i) { return !(value(i) <= bounds.high); })
              : FirstPlace(count, guess(bounds.low), [&](std::size_t i) { return !(value(i) >= bounds.low); });
    return Span{first, end};
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
        if (!JoinNeighbours(within, count))
        {
            std::fill_n(flags.begin(), count, z8u{0});
            return;
        }
        for (std::size_t i = 0; i < count; ++i)
        {
            flags[i] = within[i * COMPONENTS];
        }
    }

    // Makes of each value's flag that of it and those behind it, as many as an element has, whatever elements they
    // belong to; false if none is left. Where rows or stretches of an image miss a box, this tells so in a tenth of the
    // time.
    template <typename Within>
    static bool JoinNeighbours(Within& within, std::size_t count)
    {
        z8u any = 0;
        for (std::size_t i = 0; i < count * COMPONENTS; ++i)
        {
            z8u all = within[i];
            for (std::size_t next = 1; next < COMPONENTS; ++next)
            {
                all &= within[i + next];
            }
            within[i] = all;
            any |= all;
        }
        return any != 0;
    }

    const z16s* elements;
    const Windows<COMPONENTS>& windows;
};

/// Keeps everything.
struct EveryElement
{
    void operator()(std::size_t /*first*/, std::size_t count, Flags& flags) const
    {
        std::fill_n(flags.begin(), count, z8u{1});
    }
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

/// The places of the flagged elements of a block, and room for what is written behind the last.
using Places = std::array<z8u, BLOCK + 8>;

/// For each set of 8 flags the places of those that are set, lowest first, a byte each.
inline constexpr std::array<z64u, 256> PLACES_OF_SET = [] {
    std::array<z64u, 256> table{};
    for (std::size_t set = 0; set < table.size(); ++set)
    {
        int found = 0;
        for (unsigned place = 0; place < 8; ++place)
        {
            if ((set >> place & 1) != 0)
            {
                table[set] |= z64u{place} << (8 * found++);
            }
        }
    }
    return table;
}();

/// Eight flags at a time: a multiplication gathers their bytes into the bits of a set, another one counts them.
inline std::size_t PlacesOf(const Flags& flags, std::size_t count, Places& places)
{
    static_assert(std::endian::native == std::endian::little);
    constexpr z64u EACH_BYTE = 0x0101010101010101;
    constexpr z64u GATHER = 0x0102040810204080;
    std::size_t found = 0;
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8)
    {
        z64u eight;
        std::memcpy(&eight, &flags[i], sizeof(eight));
        const z64u behind = PLACES_OF_SET[eight * GATHER >> 56] + i * EACH_BYTE;
        std::memcpy(&places[found], &behind, sizeof(behind));
        found += eight * EACH_BYTE >> 56;
    }
    for (; i < count; ++i)
    {
        places[found] = static_cast<z8u>(i);
        found += flags[i];
    }
    return found;
}

/// The first `count` of them.
inline Flags Inverted(const Flags& flags, std::size_t count)
{
    Flags inverted;
    for (std::size_t i = 0; i < count; ++i)
    {
        inverted[i] = flags[i] ^ 1;
    }
    return inverted;
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
        const Test own = test; // flags are bytes, which might be those of the test for all one can see
        if (found * 2 > count)
        {
            // A test of each, in a plain loop, costs less than that of candidates one by one.
            for (std::size_t i = 0; i < count; ++i)
            {
                flags[i] &= static_cast<z8u>(own(first + i));
            }
            return;
        }
        for (std::size_t i = 0; i < found; ++i)
        {
            flags[places[i]] = own(first + places[i]) ? 1 : 0;
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

/// Adds what `make` makes of the kept elements to a list. `make(number)` makes an item of an element's number. If there
/// is a `Make::Sample`, `make.Samples()` is what elements are read of, and `make.Run(samples, count, number, items)`
/// makes items of `count` samples, of which the i-th is that of element `number(i)`, in a plain loop.
template <typename Item, typename Make>
class Output
{
public:
    Output(ListRun<Item>& newList, Make newMake)
        : list(newList)
        , make(std::move(newMake))
    {
    }

    /// The `count` elements from `first` on.
    void TakeAll(std::size_t first, std::size_t count) const
    {
        const auto number = [first](std::size_t i) { return first + i; };
        if constexpr (HAS_SAMPLES)
        {
            make.Run(make.Samples() + first, count, number, list.Room(count));
        }
        else
        {
            MakeEach(count, number);
        }
        list.Added(count);
    }

    /// The elements `first + places[0]`, ..., `first + places[count - 1]`. Their samples are gathered first, so that
    /// the loop over them is the same.
    void TakePlaces(std::size_t first, std::size_t count, const Places& places) const
    {
        const auto number = [first, &places](std::size_t i) { return first + places[i]; };
        if constexpr (HAS_SAMPLES)
        {
            const auto* const samples = make.Samples() + first;
            std::array<typename Make::Sample, BLOCK> gathered;
            for (std::size_t i = 0; i < count; ++i)
            {
                gathered[i] = samples[places[i]];
            }
            make.Run(gathered.data(), count, number, list.Room(count));
        }
        else
        {
            MakeEach(count, number);
        }
        list.Added(count);
    }

    /// The flagged ones of the `count` elements from `first` on, where few are left out. Takes room for all.
    void TakeMost(std::size_t first, std::size_t count, const Flags& flags) const
    {
        if constexpr (requires { Make::GOES_BY_RUNS; })
        {
            TakeRuns(first, count, flags);
        }
        else
        {
            TakeFlagged(first, count, flags);
        }
    }

    [[nodiscard]] bool HasRoom(std::size_t count) const
    {
        return list.HasRoom(count);
    }

private:
    static constexpr bool HAS_SAMPLES = requires
    {
        typename Make::Sample;
    };

    template <typename Number>
    void MakeEach(std::size_t count, const Number& number) const
    {
        Item* const items = list.Room(count);
        for (std::size_t i = 0; i < count; ++i)
        {
            items[i] = make(number(i));
        }
    }

    // Each is written behind those before, and the place moves on only if it is kept: cheaper than to gather samples.
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

    // Cheaper still where nothing is shuffled when items are made of a run.
    void TakeRuns(std::size_t first, std::size_t count, const Flags& flags) const
    {
        Places dropped;
        const std::size_t droppedCount = PlacesOf(Inverted(flags, count), count, dropped);
        std::size_t begin = 0;
        for (std::size_t i = 0; i < droppedCount; ++i)
        {
            TakeAll(first + begin, dropped[i] - begin);
            begin = dropped[i] + std::size_t{1};
        }
        TakeAll(first + begin, count - begin);
    }

    ListRun<Item>& list;
    Make make;
};

// Kept out of the loops, however much of what they call becomes part of them.
template <typename MakeRoom>
[[gnu::noinline, gnu::cold]] void CallSeldom(const MakeRoom& makeRoom, std::size_t first)
{
    makeRoom(first);
}

/// The loop of `WalkSpan`, for whoever compiles it.
template <typename Selection, typename MakeRoom, typename... Outputs>
[[gnu::always_inline]] inline void WalkSpanInline(const Span& span, const Selection& selection,
                                                  const MakeRoom& makeRoom, const Outputs&... outputs)
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
            CallSeldom(makeRoom, first);
        }
        if (kept == count)
        {
            (outputs.TakeAll(first, kept), ...);
        }
        else if (kept * 8 >= count * 7 && (outputs.HasRoom(count) && ...))
        {
            (outputs.TakeMost(first, count, flags), ...);
        }
        else if (kept != 0)
        {
            PlacesOf(flags, count, places);
            (outputs.TakePlaces(first, kept, places), ...);
        }
    }
}

#if MU_HAS_AVX2_CODE
template <typename Selection, typename MakeRoom, typename... Outputs>
[[gnu::target("avx2"), gnu::flatten]] void WalkSpanAvx2(const Span& span, const Selection& selection,
                                                        const MakeRoom& makeRoom, const Outputs&... outputs)
{
    WalkSpanInline(span, selection, makeRoom, outputs...);
}
#endif

/// Hands the kept elements of `span` to the outputs, in order. `makeRoom(first)` is called where their room does not do
/// for those from `first` on.
template <typename Selection, typename MakeRoom, typename... Outputs>
void WalkSpan(const Span& span, const Selection& selection, const MakeRoom& makeRoom, const Outputs&... outputs)
{
#if MU_HAS_AVX2_CODE
    if (BestVectorCode() == VectorCode::Avx2)
    {
        WalkSpanAvx2(span, selection, makeRoom, outputs...);
        return;
    }
#endif
    WalkSpanInline(span, selection, makeRoom, outputs...);
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
