// What it costs to cut surfaces, to see them through a frame and to gather a sector, beside the same written straight
// down, and beside the copying of what comes out.
//
// The rows to compare within one run, for each case: Library with Plain and with Copy. A crop is to take at most 1.25
// times the copy of its pixels, under every mask.

#include "BenchSurface.h"

#if MU_HAS_OPENCV
#include "ImagePeer.h"
#endif

#include <MuTlkHelper/InputUtils.h>

#include <Support/Lists.h>
#include <Support/NaiveCropping.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace
{
using namespace Bench;
using namespace Mu::TlkHelper;
using namespace Support;
using Mu::Vision::AnnularSector3d;
using Mu::Vision::Rect2d;
using Mu::Vision::RefFrame;
using Mu::Vision::Region3d;

constexpr Rect2d<int> WHOLE{0, 0, static_cast<int>(WIDTH), static_cast<int>(LENGTH)};

// Masks.

using IsKept = z8u (*)(std::size_t row, std::size_t column, std::mt19937& engine);

struct MaskKind
{
    const char* name;
    IsKept isKept;
};

constexpr MaskKind MASKS[] = {
    {"Disc",
     [](std::size_t row, std::size_t column, std::mt19937&) {
         const double x = static_cast<double>(column) * SCALE.x - MIDDLE_X;
         const double y = static_cast<double>(row) * SCALE.y - MIDDLE_Y;
         return static_cast<z8u>(x * x + y * y < MIDDLE_Y * MIDDLE_Y ? 1 : 0);
     }},
    {"Random", [](std::size_t, std::size_t, std::mt19937& engine) { return static_cast<z8u>(engine() % 2); }},
    {"Full", [](std::size_t, std::size_t, std::mt19937&) { return z8u{1}; }},
    {"Empty", [](std::size_t, std::size_t, std::mt19937&) { return z8u{0}; }},
};

Ta::Object<void*> MakeMask(IsKept isKept)
{
    std::mt19937 engine(7);
    std::vector<z8u> bytes(WIDTH * LENGTH);
    for (std::size_t i = 0; i < bytes.size(); ++i)
    {
        bytes[i] = isKept(i / WIDTH, i % WIDTH, engine);
    }
    return NewGrid(zTypeOf(z8u), LENGTH, WIDTH, bytes);
}

void* SurfacePoints()
{
    return TvSurfaceMsg_PointsArray(Heights(Data::Smooth).Get(), 0);
}

Ta::Object<void*> PlainCrop(void* array, void* mask)
{
    Ta::Object<void*> crop;
    MU_CHECK(zArray2_Construct(crop.Out(), zTypeOf(z16s), LENGTH, WIDTH, nullptr));
    for (std::size_t row = 0; row < LENGTH; ++row)
    {
        const auto* const source = static_cast<const z16s*>(zArray2_At(array, row, 0));
        const auto* const bytes = static_cast<const z8u*>(zArray2_At(mask, row, 0));
        auto* const out = static_cast<z16s*>(zArray2_At(crop.Get(), row, 0));
        for (std::size_t i = 0; i < WIDTH; ++i)
        {
            if (bytes[i] != 0)
            {
                out[i] = source[i];
            }
            else
            {
                out[i] = zNULL_16S;
            }
        }
    }
    return crop;
}

#if MU_HAS_OPENCV
void CropImage(benchmark::State& state, IsKept isKept)
{
    const Ta::Object<void*> mask = MakeMask(isKept);
    const auto* const pixels = static_cast<const z16s*>(zArray2_Items(SurfacePoints()));
    const auto* const bytes = static_cast<const z8u*>(zArray2_Items(mask.Get()));
    const std::vector<z16s> expected = ItemsOfGrid<z16s>(PlainCrop(SurfacePoints(), mask.Get()).Get());
    cv::Mat out;
    CropByImages(pixels, bytes, LENGTH, WIDTH, out);
    if (!std::equal(expected.begin(), expected.end(), out.ptr<z16s>()))
    {
        state.SkipWithError("the crop is not that of the plain loop");
        return;
    }
    for (auto iteration : state)
    {
        CropByImages(pixels, bytes, LENGTH, WIDTH, out);
        benchmark::ClobberMemory();
    }
}
#endif

void CropLibrary(benchmark::State& state, IsKept isKept)
{
    const Ta::Object<void*> mask = MakeMask(isKept);
    if (ItemsOfGrid<z16s>(CropRoi<short>(SurfacePoints(), WHOLE, mask.Get()).Get()) !=
        ItemsOfGrid<z16s>(PlainCrop(SurfacePoints(), mask.Get()).Get()))
    {
        state.SkipWithError("the crop is not that of the plain loop");
        return;
    }
    for (auto iteration : state)
    {
        const Ta::Object<void*> crop = CropRoi<short>(SurfacePoints(), WHOLE, mask.Get());
        benchmark::DoNotOptimize(crop.Get());
        benchmark::ClobberMemory();
    }
}

void CropPlain(benchmark::State& state, IsKept isKept)
{
    const Ta::Object<void*> mask = MakeMask(isKept);
    for (auto iteration : state)
    {
        const Ta::Object<void*> crop = PlainCrop(SurfacePoints(), mask.Get());
        benchmark::DoNotOptimize(crop.Get());
        benchmark::ClobberMemory();
    }
}

void CropCopy(benchmark::State& state)
{
    std::vector<z16s> copy(WIDTH * LENGTH);
    for (auto iteration : state)
    {
        std::memcpy(copy.data(), zArray2_Items(SurfacePoints()), copy.size() * sizeof(z16s));
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
}

// Lists of points.

struct ListCase
{
    const char* name;
    std::function<void(void** list)> library;
    std::function<void(void* list)> plain;
};

const Region3d<double> HIGH{MIDDLE_X, MIDDLE_Y, 0, 1e6, 1e6, 1e6, 0, 0, 0};
const Region3d<double> HALF{MIDDLE_X, MIDDLE_Y, 10.0, 1e6, 1e6, 20.0, 0, 0, 0};
RefFrame identity;

ListCase Framed(const char* name, Data data, const Region3d<double>& region)
{
    void* const surface = Heights(data).Get();
    return {name, [=](void** list) { GetTransformedPointsFromRegion(surface, region, &identity, list); },
            [=](void* list) {
                Naive::FramedPixels(
                    Naive::SurfaceData(surface), region, identity,
                    [list](const zPoint3d64f& point, std::size_t) { MU_CHECK(zArrayList_Add(list, &point)); });
            }};
}

ListCase Sector(const char* name, Data data, const AnnularSector3d<double>& sector)
{
    void* const surface = Heights(data).Get();
    return {name, [=](void** list) { GetPointsInAnnularSector(surface, sector, list); },
            [=](void* list) {
                Naive::PointsInSector(surface, sector,
                                      [list](const zPoint3d64f& point) { MU_CHECK(zArrayList_Add(list, &point)); });
            }};
}

std::vector<ListCase> ListCases()
{
    const auto ring = [](double inner, double outer, double range) {
        return AnnularSector3d<double>{inner, outer, 20, range, {MIDDLE_X, MIDDLE_Y, 0}};
    };
    return {Framed("FramedAll", Data::Smooth, HIGH),
            Framed("FramedHalfSmooth", Data::Smooth, HALF),
            Framed("FramedHalfNoise", Data::Noise, HALF),
            Sector("RingLarge", Data::Smooth, ring(2, 10, 360)),
            Sector("RingSmall", Data::Smooth, ring(0.2, 1, 360)),
            Sector("SectorLarge", Data::Smooth, ring(2, 10, 120)),
            Sector("SectorNoise", Data::Noise, ring(2, 10, 120))};
}

void ListLibrary(benchmark::State& state, const ListCase& c)
{
    const Handle plain(NewList(zTypeOf(zPoint3d64f)));
    Handle list;
    c.library(list.Out());
    c.plain(plain.Get());
    const std::size_t count = zArrayList_Count(plain.Get());
    if (zArrayList_Count(list.Get()) != count || count == 0 ||
        std::memcmp(zArrayList_Items(plain.Get()), zArrayList_Items(list.Get()), count * sizeof(zPoint3d64f)) != 0)
    {
        state.SkipWithError("the points are not those of the plain loop");
        return;
    }
    for (auto iteration : state)
    {
        MU_CHECK(zArrayList_Purge(list.Get()));
        c.library(list.Out());
        benchmark::ClobberMemory();
    }
    state.counters["points"] = static_cast<double>(count);
}

void ListPlain(benchmark::State& state, const ListCase& c)
{
    const Handle list(NewList(zTypeOf(zPoint3d64f)));
    c.plain(list.Get());
    for (auto iteration : state)
    {
        MU_CHECK(zArrayList_Purge(list.Get()));
        c.plain(list.Get());
        benchmark::ClobberMemory();
    }
}

void ListCopy(benchmark::State& state, const ListCase& c)
{
    const Handle list(NewList(zTypeOf(zPoint3d64f)));
    c.plain(list.Get());
    std::vector<char> copy(zArrayList_Count(list.Get()) * sizeof(zPoint3d64f));
    for (auto iteration : state)
    {
        std::memcpy(copy.data(), zArrayList_Items(list.Get()), copy.size());
        benchmark::ClobberMemory();
    }
}

// All columns, and as many rows.
const Region3d<double> CUT{MIDDLE_X, MIDDLE_Y, 0, 1e6, 1e6, static_cast<double>(LENGTH) * SCALE.z, 0, 0, 0};

void ExtractLibrary(benchmark::State& state)
{
    void* const surface = Heights(Data::Noise).Get();
    Ta::Object<void*> heights;
    Ta::Object<void*> none;
    SurfaceExtractRegion(surface, CUT, heights, none, nullptr);
    if (ItemsOfGrid<z16s>(heights.Get()) != Naive::ExtractRegion(surface, CUT).heights.items)
    {
        state.SkipWithError("the heights are not those of the plain loop");
        return;
    }
    for (auto iteration : state)
    {
        SurfaceExtractRegion(surface, CUT, heights, none, nullptr);
        benchmark::ClobberMemory();
    }
}

void ExtractPlain(benchmark::State& state)
{
    void* const surface = Heights(Data::Noise).Get();
    for (auto iteration : state)
    {
        benchmark::DoNotOptimize(Naive::ExtractRegion(surface, CUT).heights.items.data());
    }
}

[[maybe_unused]] const bool registered = [] {
    const auto add = [](const std::string& name, const auto& run, const auto&... arguments) {
        benchmark::RegisterBenchmark(name.c_str(), run, arguments...)->Unit(benchmark::kMillisecond);
    };
    add("Crop/Copy", CropCopy);
    for (const MaskKind& mask : MASKS)
    {
        add(std::string("Crop") + mask.name + "/Library", CropLibrary, mask.isKept);
        add(std::string("Crop") + mask.name + "/Plain", CropPlain, mask.isKept);
#if MU_HAS_OPENCV
        add(std::string("Crop") + mask.name + "/OpenCV", CropImage, mask.isKept);
#endif
    }
    for (const ListCase& c : ListCases())
    {
        add(c.name + std::string("/Copy"), ListCopy, c);
        add(c.name + std::string("/Library"), ListLibrary, c);
        add(c.name + std::string("/Plain"), ListPlain, c);
    }
    add("Extract/Library", ExtractLibrary);
    add("Extract/Plain", ExtractPlain);
    return true;
}();
} // namespace
