#pragma once

#include <MuTlkHelper/PixelBlocks.h>
#include <MuTlkHelper/PixelWorld.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#define MU_HAS_STREAMING_STORES 1
#else
#define MU_HAS_STREAMING_STORES 0
#endif

// A row that is cut out of another one: each item is that of the source or, where a test says no, a fill value. The
// test is no branch, so that every mask takes the same time.

namespace Mu::TlkHelper
{
/// Where a row is written to: into the caches, or past them. Both give the same bytes.
enum class Stores
{
    Cached,
    Streaming
};

/// Keeps the items whose byte is not 0.
struct MaskTest
{
    const z8u* mask;

    [[gnu::always_inline]] bool operator()(std::size_t i) const
    {
        return mask[i] != 0;
    }

    [[nodiscard]] MaskTest From(std::size_t first) const
    {
        return {mask + first};
    }
};

/// Keeps the items of which the pixel lies in a window, which is not empty.
struct WindowTest
{
    const z16s* pixels;
    Window window;

    [[gnu::always_inline]] bool operator()(std::size_t i) const
    {
        // One compare for both bounds: what lies below wraps round.
        const auto above = static_cast<z16u>(static_cast<z16u>(pixels[i]) - static_cast<z16u>(window.low));
        return above <= static_cast<z16u>(window.high - window.low);
    }

    [[nodiscard]] WindowTest From(std::size_t first) const
    {
        return {pixels + first, window};
    }
};

/// Writes `count` items. `row` is no part of anything else that is read.
template <typename Item, typename Test>
[[gnu::always_inline]] inline void SelectItems(Item* __restrict__ row, const Item* source, std::size_t count, Item fill,
                                               Test test)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        const Item item = source[i]; // read whatever the test says
        row[i] = test(i) ? item : fill;
    }
}

#if MU_HAS_STREAMING_STORES
/// The same past the caches. A result that they do not hold anyway is not read into them before it is written, which
/// is a quarter of the time. `FinishStreaming` comes after the last row.
template <typename Item, typename Test>
void StreamItems(Item* row, const Item* source, std::size_t count, Item fill, Test test)
{
    constexpr std::size_t LINE = 64;
    constexpr std::size_t VECTOR = sizeof(__m128i);
    alignas(LINE) std::array<Item, LINE> block; // few enough to stay in registers
    const std::size_t beforeLine = (LINE - reinterpret_cast<std::uintptr_t>(row) % LINE) % LINE / sizeof(Item);
    std::size_t i = std::min(count, beforeLine);
    SelectItems(row, source, i, fill, test);
    for (; i + block.size() <= count; i += block.size())
    {
        SelectItems(block.data(), source + i, block.size(), fill, test.From(i));
        for (std::size_t part = 0; part < block.size(); part += VECTOR / sizeof(Item))
        {
            _mm_stream_si128(reinterpret_cast<__m128i*>(row + i + part),
                             _mm_load_si128(reinterpret_cast<const __m128i*>(&block[part])));
        }
    }
    SelectItems(row + i, source + i, count - i, fill, test.From(i));
}

inline void FinishStreaming()
{
    _mm_sfence();
}
#else
template <typename Item, typename Test>
void StreamItems(Item* row, const Item* source, std::size_t count, Item fill, Test test)
{
    SelectItems(row, source, count, fill, test);
}

inline void FinishStreaming() {}
#endif

template <typename Item, typename Test>
void SelectItems(Item* row, const Item* source, std::size_t count, Item fill, Test test, Stores stores)
{
    stores == Stores::Streaming ? StreamItems(row, source, count, fill, test)
                                : SelectItems(row, source, count, fill, test);
}

/// The part of `count` items from `first` of a source on that a source of `length` items has.
constexpr Span PresentPart(z64s first, std::size_t count, std::size_t length)
{
    return SpanIn(-first, static_cast<z64s>(length), count);
}
} // namespace Mu::TlkHelper
