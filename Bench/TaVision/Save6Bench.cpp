// What it costs to clone a large surface, to save it into a warm memory stream and to load it from there.
//
// The rows to compare within one run: each with Copy, a memcpy of the same pixels. A clone is to take at most 1.1 times
// that, saving and loading 2.0 times each.

#include <TaApi/Object.h>
#include <TaVision/TaVision.h>
#include <zApi/zApi.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace
{
using Handle = Ta::Object<void*>;

constexpr std::size_t ROWS = 2048;
constexpr std::size_t COLUMNS = 4096;
constexpr std::size_t BYTES = ROWS * COLUMNS * sizeof(z16s);

std::vector<z16s> Heights()
{
    std::vector<z16s> heights(ROWS * COLUMNS);
    for (std::size_t i = 0; i < heights.size(); ++i)
    {
        heights[i] = static_cast<z16s>(i * 2654435761U >> 16U);
    }
    return heights;
}

Handle SurfaceOf(const std::vector<z16s>& heights)
{
    Handle surface;
    MU_CHECK(TvSurfaceMsg_ConstructSimple(surface.Out(), COLUMNS, ROWS, nullptr));
    std::memcpy(TvSurfaceMsg_Points(surface.Get()), heights.data(), BYTES);
    return surface;
}

Handle StreamOf(const Handle& object)
{
    Handle stream;
    MU_CHECK(zMemory_Construct(stream.Out(), nullptr));
    MU_CHECK(zSave6_ToStream(object.Get(), stream.Get()));
    return stream;
}

/// Ends a benchmark: says how much was moved, and whether `surface` holds what it should.
void Finish(benchmark::State& state, const Handle& surface, const std::vector<z16s>& heights)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(BYTES));
    const void* const points = TvSurfaceMsg_Points(surface.Get());
    if (points == nullptr || std::memcmp(points, heights.data(), BYTES) != 0)
    {
        state.SkipWithError("the surface holds other heights");
    }
}

void Copy(benchmark::State& state)
{
    const std::vector<z16s> heights = Heights();
    const Handle surface = SurfaceOf(std::vector<z16s>(heights.size()));
    for (auto iteration : state)
    {
        std::memcpy(TvSurfaceMsg_Points(surface.Get()), heights.data(), BYTES);
        benchmark::ClobberMemory();
    }
    Finish(state, surface, heights);
}

void Clone(benchmark::State& state)
{
    const std::vector<z16s> heights = Heights();
    const Handle surface = SurfaceOf(heights);
    Handle clone;
    for (auto iteration : state)
    {
        MU_CHECK(xzObject_CloneImpl(clone.Out(), surface.Get(), nullptr));
        benchmark::ClobberMemory();
    }
    Finish(state, clone, heights);
}

void Save(benchmark::State& state)
{
    const std::vector<z16s> heights = Heights();
    const Handle surface = SurfaceOf(heights);
    const Handle stream = StreamOf(surface);
    for (auto iteration : state)
    {
        MU_CHECK(zMemory_Purge(stream.Get()));
        MU_CHECK(zSave6_ToStream(surface.Get(), stream.Get()));
        benchmark::ClobberMemory();
    }
    Handle loaded;
    MU_CHECK(TaVision_RegisterTypes());
    MU_CHECK(zStream_Seek(stream.Get(), 0, zSTREAM_BEGIN));
    MU_CHECK(zLoad6_FromStream(loaded.Out(), stream.Get(), nullptr));
    Finish(state, loaded, heights);
}

void Load(benchmark::State& state)
{
    const std::vector<z16s> heights = Heights();
    const Handle stream = StreamOf(SurfaceOf(heights));
    Handle loaded;
    MU_CHECK(TaVision_RegisterTypes());
    for (auto iteration : state)
    {
        MU_CHECK(zStream_Seek(stream.Get(), 0, zSTREAM_BEGIN));
        MU_CHECK(zLoad6_FromStream(loaded.Out(), stream.Get(), nullptr));
        benchmark::ClobberMemory();
    }
    Finish(state, loaded, heights);
}

BENCHMARK(Copy)->Unit(benchmark::kMillisecond);
BENCHMARK(Clone)->Unit(benchmark::kMillisecond);
BENCHMARK(Save)->Unit(benchmark::kMillisecond);
BENCHMARK(Load)->Unit(benchmark::kMillisecond);
} // namespace
