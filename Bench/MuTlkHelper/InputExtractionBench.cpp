// What it costs to get points out of messages, beside the same written straight down, and beside the copying of what
// comes out.
//
// The rows to compare within one run, for each case: Library with Plain and with Copy (a memcpy of the points that come
// out), NothingKept with CountPass, MaskProfile with CloneProfile,
// MaskPixelsOnly with CopyPixels.

#include "BenchSurface.h"

#if MU_HAS_PCL
#include "CloudPeer.h"
#endif
#if MU_HAS_OPENCV
#include "ImagePeer.h"
#endif

#include <MuTlkHelper/InputUtils.h>
#include <MuTlkHelper/MaskPixels.h>

#include <Support/Lists.h>
#include <Support/NaiveExtraction.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace
{
using namespace Bench;
using namespace Mu::TlkHelper;
using namespace Support;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;

constexpr double ENDLESS = 1e6;

const Ta::Object<void*>& Triples()
{
    static const Ta::Object<void*> made = [] {
        Ta::Object<void*> surface;
        const zPoint3d64f scale = {SCALE.x / 8, SCALE.y / 8, SCALE.z}; // columns to 32767
        MU_CHECK(TvSurfaceMsg_ConstructUnresampledSimple(surface.Out(), WIDTH, LENGTH, nullptr));
        MU_CHECK(TvSurfaceMsg_SetScale(surface.Get(), &scale));
        auto* const triples = static_cast<zPoint3d16s*>(TvSurfaceMsg_Points(surface.Get()));
        const auto* const pixels = static_cast<const z16s*>(TvSurfaceMsg_Points(Heights(Data::Smooth).Get()));
        for (std::size_t i = 0; i < WIDTH * LENGTH; ++i)
        {
            const auto x = static_cast<z16s>(i % WIDTH * 8);
            const auto y = static_cast<z16s>(i / WIDTH * 8);
            triples[i] =
                pixels[i] == zNULL_16S ? zPoint3d16s{zNULL_16S, zNULL_16S, zNULL_16S} : zPoint3d16s{x, y, pixels[i]};
        }
        return surface;
    }();
    return made;
}

struct Case
{
    const char* name;
    void* surface;
    Region3d<double> region;
};

std::vector<Case> Cases()
{
    void* const smooth = Heights(Data::Smooth).Get();
    void* const noise = Heights(Data::Noise).Get();
    const double tenth = std::sqrt(0.1) * 2;
    const Region3d<double> all{0, 0, 0, ENDLESS, ENDLESS, ENDLESS, 0, 0, 0};
    const Region3d<double> part{MIDDLE_X, MIDDLE_Y, 0, tenth * MIDDLE_X, tenth * MIDDLE_Y, ENDLESS, 0, 0, 0};
    const Region3d<double> half{0, 0, 10.0, ENDLESS, ENDLESS, 20.0, 0, 0, 0};
    const Region3d<double> none{0, 0, 30.0, ENDLESS, ENDLESS, 10.0, 0, 0, 0};
    const Region3d<double> turned{MIDDLE_X, MIDDLE_Y, 0, 20, 15, ENDLESS, 0, 0, 30};
    const Region3d<double> small{MIDDLE_X, MIDDLE_Y, 0, 4, 2, ENDLESS, 0, 0, 30};
    return {{"Everything", smooth, all},
            {"Tenth", smooth, part},
            {"HalfSmooth", smooth, half},
            {"HalfNoise", noise, half},
            {"NothingKept", smooth, none},
            {"TurnedThird", smooth, turned},
            {"TurnedSmall", smooth, small},
            {"TriplesAll", Triples().Get(), all},
            {"TriplesTenth", Triples().Get(), part},
            {"TriplesTurned", Triples().Get(), turned}};
}

void PlainInto(void* surface, const Region3d<double>& region, void* list)
{
    Naive::PointsFromRegion(surface, region,
                            [list](const zPoint3d64f& point) { MU_CHECK(zArrayList_Add(list, &point)); });
}

// Library and plain give the same, in lists that are warm then.
bool IsSame(const Case& c, void* plain, void** library)
{
    PlainInto(c.surface, c.region, plain);
    GetPointsFromRegion(c.surface, c.region, library);
    const std::size_t count = zArrayList_Count(plain);
    return zArrayList_Count(*library) == count &&
           (count == 0 ||
            std::memcmp(zArrayList_Items(plain), zArrayList_Items(*library), count * sizeof(zPoint3d64f)) == 0);
}

void Library(benchmark::State& state, const Case& c)
{
    const Handle plain(NewList(zTypeOf(zPoint3d64f)));
    Handle list;
    if (!IsSame(c, plain.Get(), list.Out()))
    {
        state.SkipWithError("the points are not those of the plain loop");
        return;
    }
    for (auto iteration : state)
    {
        MU_CHECK(zArrayList_Purge(list.Get()));
        GetPointsFromRegion(c.surface, c.region, list.Out());
        benchmark::ClobberMemory();
    }
    state.counters["points"] = static_cast<double>(zArrayList_Count(list.Get()));
}

void Plain(benchmark::State& state, const Case& c)
{
    const Handle list(NewList(zTypeOf(zPoint3d64f)));
    PlainInto(c.surface, c.region, list.Get());
    for (auto iteration : state)
    {
        MU_CHECK(zArrayList_Purge(list.Get()));
        PlainInto(c.surface, c.region, list.Get());
        benchmark::ClobberMemory();
    }
}

void Copy(benchmark::State& state, const Case& c)
{
    const Handle list(NewList(zTypeOf(zPoint3d64f)));
    PlainInto(c.surface, c.region, list.Get());
    const std::size_t bytes = zArrayList_Count(list.Get()) * sizeof(zPoint3d64f);
    std::vector<char> copy(bytes);
    for (auto iteration : state)
    {
        if (bytes != 0)
        {
            std::memcpy(copy.data(), zArrayList_Items(list.Get()), bytes);
        }
        benchmark::ClobberMemory();
    }
}

#if MU_HAS_PCL
void Cloud(benchmark::State& state, const Case& c)
{
    CloudPeer peer(c.surface, c.region);
    const Handle plain(NewList(zTypeOf(zPoint3d64f)));
    PlainInto(c.surface, c.region, plain.Get());
    const auto expected = static_cast<double>(zArrayList_Count(plain.Get()));
    // Floats round some points across a bound.
    if (std::abs(static_cast<double>(peer.Filter()) - expected) > 0.01 * expected)
    {
        state.SkipWithError("the points are not those of the plain loop");
        return;
    }
    for (auto iteration : state)
    {
        benchmark::DoNotOptimize(peer.Filter());
    }
}
#endif

// The least that a window test of every pixel costs.
void CountPass(benchmark::State& state)
{
    const auto* const pixels = static_cast<const z16s*>(TvSurfaceMsg_Points(Heights(Data::Smooth).Get()));
    for (auto iteration : state)
    {
        int kept = 0;
        for (std::size_t i = 0; i < WIDTH * LENGTH; ++i)
        {
            kept += static_cast<z16u>(pixels[i] - 25000) <= 5000 ? 1 : 0;
        }
        benchmark::DoNotOptimize(kept);
    }
}

Ta::Object<void*> WavyProfile(std::size_t count)
{
    std::mt19937 engine(7);
    Ta::Object<void*> profile;
    MU_CHECK(TvProfileMsg_Construct(profile.Out(), zTypeOf(z16s), 1, count, nullptr));
    auto* const pixels = static_cast<z16s*>(TvProfileMsg_Points(profile.Get()));
    for (std::size_t i = 0; i < count; ++i)
    {
        pixels[i] = HeightAt(0, i, Data::Noise, engine);
    }
    return profile;
}

RegionXZ<double> MiddleOf(std::size_t count)
{
    return {static_cast<double>(count) / 2, 0, static_cast<double>(count) * 0.9, 20000, 0};
}

// The whole call: clone, mask, release.
void MaskProfile(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const Ta::Object<void*> profile = WavyProfile(count);
    for (auto iteration : state)
    {
        Handle array;
        GetPointArrayFromRegionXZ(profile.Get(), MiddleOf(count), array.Out());
        benchmark::DoNotOptimize(array.Get());
    }
}

void CloneProfile(benchmark::State& state)
{
    const Ta::Object<void*> profile = WavyProfile(static_cast<std::size_t>(state.range(0)));
    for (auto iteration : state)
    {
        Handle array;
        MU_CHECK(xzObject_CloneImpl(array.Out(), TvProfileMsg_PointsArray(profile.Get(), 0), nullptr));
        benchmark::DoNotOptimize(array.Get());
    }
}

// The masking alone, in place, and a copy of the profile.
void MaskPixelsOnly(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const Ta::Object<void*> profile = WavyProfile(count);
    auto* const pixels = static_cast<z16s*>(TvProfileMsg_Points(profile.Get()));
    for (auto iteration : state)
    {
        MaskPixels(pixels, count, {count / 20, count - count / 20}, {-10000, 10000}, BestVectorCode());
        benchmark::ClobberMemory();
    }
}

void CopyPixels(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const Ta::Object<void*> profile = WavyProfile(count);
    std::vector<z16s> copy(count);
    for (auto iteration : state)
    {
        std::memcpy(copy.data(), TvProfileMsg_Points(profile.Get()), count * sizeof(z16s));
        benchmark::ClobberMemory();
    }
}

void PlainMask(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const Ta::Object<void*> profile = WavyProfile(count);
    const Naive::ProfileData data(profile.Get());
    for (auto iteration : state)
    {
        std::vector<int> kept = Naive::KeptByMask(data, MiddleOf(count));
        benchmark::DoNotOptimize(kept.data());
    }
}

#if MU_HAS_OPENCV
void MaskImage(benchmark::State& state)
{
    const auto count = static_cast<int>(state.range(0));
    const Ta::Object<void*> profile = WavyProfile(static_cast<std::size_t>(count));
    const auto* const pixels = static_cast<const z16s*>(TvProfileMsg_Points(profile.Get()));
    std::vector<z16s> expected(pixels, pixels + count);
    const auto end = static_cast<std::size_t>(count - count / 20);
    MaskPixels(expected.data(), expected.size(), {static_cast<std::size_t>(count / 20), end}, {-10000, 10000},
               BestVectorCode());
    cv::Mat out;
    MaskByImages(pixels, count, count / 20, static_cast<int>(end), -10000, 10000, out);
    if (!std::equal(expected.begin(), expected.end(), out.ptr<z16s>()))
    {
        state.SkipWithError("the mask is not that of the library");
        return;
    }
    for (auto iteration : state)
    {
        MaskByImages(pixels, count, count / 20, static_cast<int>(end), -10000, 10000, out);
        benchmark::ClobberMemory();
    }
}
#endif

// A list made anew each time, for which fresh memory is the cost.
void NewListEachTime(benchmark::State& state)
{
    const Case all = Cases().front();
    for (auto iteration : state)
    {
        Handle list;
        GetPointsFromRegion(all.surface, all.region, list.Out());
        benchmark::DoNotOptimize(list.Get());
    }
}

[[maybe_unused]] const bool registered = [] {
    for (const Case& c : Cases())
    {
        const std::string name = c.name;
        benchmark::RegisterBenchmark((name + "/Copy").c_str(), Copy, c)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + "/Library").c_str(), Library, c)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + "/Plain").c_str(), Plain, c)->Unit(benchmark::kMillisecond);
#if MU_HAS_PCL
        benchmark::RegisterBenchmark((name + "/CropBox").c_str(), Cloud, c)->Unit(benchmark::kMillisecond);
#endif
    }
    return true;
}();

BENCHMARK(CountPass)->Unit(benchmark::kMillisecond);
BENCHMARK(NewListEachTime)->Unit(benchmark::kMillisecond);
BENCHMARK(CopyPixels)->Arg(1024)->Arg(4096);
BENCHMARK(MaskPixelsOnly)->Arg(1024)->Arg(4096);
BENCHMARK(CloneProfile)->Arg(1024)->Arg(4096);
BENCHMARK(MaskProfile)->Arg(1024)->Arg(4096);
BENCHMARK(PlainMask)->Arg(1024)->Arg(4096);
#if MU_HAS_OPENCV
BENCHMARK(MaskImage)->Arg(1024)->Arg(4096);
#endif
} // namespace
