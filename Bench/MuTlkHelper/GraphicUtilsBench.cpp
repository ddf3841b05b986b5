// What drawing costs: the elements of a busy tool, and curves.
//
// The rows to compare within one run: Circle with NaiveCircle, which asks the C library for every sine and cosine, and
// DrawMixedElements with its bound of 20 ms for 10,000 elements.

#include <MuTlkHelper/GraphicUtils.h>

#include <Support/GraphicElements.h>

#include <TaApi/Object.h>
#include <zApi/zArrayList.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

using namespace Mu::TlkHelper;

namespace
{
constexpr zPoint3d64f CENTER{0.1, -20.5, 3.3};
constexpr zPoint3d64f OTHER{4.0, 5.7, -6.25};
constexpr Mu::Vision::Region3d<double> BOX{10, 20, 30, 200, 400, 600, 0, 0, 33};
constexpr double RADIUS = 2.7;
constexpr z32u COLOR = 0xFF123456U;

Ta::Object<void*> NewGraphic()
{
    Ta::Object<void*> graphic;
    MU_CHECK(TpGraphic_Construct(graphic.Out(), nullptr));
    return graphic;
}

// --- mixed elements -------------------------------------------------------------------------------------------------

using Draw = void (*)(void* graphic);

// Sixteen elements, every kind among them, as tools mix them.
constexpr std::array<Draw, 10> DRAWINGS = {
    [](void* g) { GraphicAddPoint(g, CENTER, 8.0F, COLOR, nullptr, 2); },
    [](void* g) { GraphicAddLineSegment(g, CENTER, OTHER, 1.0F, COLOR, nullptr); },
    [](void* g) { GraphicAddMeasurementLines(g, AXIS_Z_ANGLE, CENTER, 45.0, nullptr); }, // five elements
    [](void* g) {
        zPoint3d32f at{1, 2, 3};
        GraphicAddLabel(g, "12.345 mm", &at, nullptr);
    },
    [](void* g) { GraphicAddPosition(g, CENTER, TaPipe::TpGraphicPositionType::Result, nullptr); },
    [](void* g) { GraphicAddSurfaceRegion(g, BOX, nullptr); },
    [](void* g) {
        GraphicAddProfileRegion(g, {1, 2, 3, 4, 5}, nullptr);
    },
    [](void* g) {
        GraphicAddPlane(g, zPlane3d64f{CENTER, OTHER}, nullptr);
    },
    [](void* g) { GraphicAddBBox(g, COLOR, BOX, nullptr); },
    [](void* g) {
        GraphicAddZAngleMeasurementLines(g, {10, 20, 30}, 20.0, 50.0, BOX, nullptr);
    }, // four elements
};

constexpr std::array<TaPipe::TpGraphicKind, 8> KINDS = {
    TaPipe::TpGraphicKind::PointSet, TaPipe::TpGraphicKind::LineSet,  TaPipe::TpGraphicKind::Ray,
    TaPipe::TpGraphicKind::Label,    TaPipe::TpGraphicKind::Plane,    TaPipe::TpGraphicKind::Region2d,
    TaPipe::TpGraphicKind::Region3d, TaPipe::TpGraphicKind::Position,
};

Ta::Object<void*> MixedGraphic(std::size_t count)
{
    Ta::Object<void*> graphic = NewGraphic();
    for (std::size_t i = 0; TpGraphic_Count(graphic.Get()) < count; ++i)
    {
        DRAWINGS[i % DRAWINGS.size()](graphic.Get());
    }
    return graphic;
}

bool HasEveryKind(void* graphic)
{
    std::array<std::size_t, KINDS.size()> counts{};
    for (std::size_t i = 0; i < TpGraphic_Count(graphic); ++i)
    {
        for (std::size_t kind = 0; kind < KINDS.size(); ++kind)
        {
            counts[kind] += TpGraphicElement_Kind(TpGraphic_At(graphic, i)) == KINDS[kind] ? 1U : 0U;
        }
    }
    const std::size_t share = TpGraphic_Count(graphic) / (2 * DRAWINGS.size());
    return std::all_of(counts.begin(), counts.end(), [share](std::size_t n) { return n >= share; });
}

void DrawMixedElements(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    if (!HasEveryKind(MixedGraphic(count).Get()))
    {
        return state.SkipWithError("a kind of element is missing");
    }
    for (auto iteration : state)
    {
        benchmark::DoNotOptimize(MixedGraphic(count).Get());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// --- circles --------------------------------------------------------------------------------------------------------

using AddCircle = void (*)(void* graphic, double step);

void LibraryCircle(void* graphic, double step)
{
    GraphicAddCircle(graphic, CENTER, RADIUS, step, 1.0F, COLOR, nullptr, PLANE_XY);
}

zPoint3d32f NaivePoint(double degrees)
{
    const double radians = degrees * (std::numbers::pi / 180.0);
    return {static_cast<float>(CENTER.x + RADIUS * std::cos(radians)),
            static_cast<float>(CENTER.y + RADIUS * std::sin(radians)), static_cast<float>(CENTER.z)};
}

void NaiveCircle(void* graphic, double step)
{
    Ta::Object<void*> list;
    const auto count = static_cast<std::size_t>(360.0 / step + 1.0);
    MU_CHECK(zArrayList_Construct(list.Out(), zTypeOf(zPoint3d32f), count, nullptr));
    for (std::size_t i = 0; i < count; ++i)
    {
        const zPoint3d32f point = NaivePoint(static_cast<double>(i) * step);
        MU_CHECK(zArrayList_Add(list.Get(), &point));
    }
    GraphicAddLines(graphic, list.Get(), 1.0F, COLOR, nullptr);
}

void LibraryEllipseArc(void* graphic, double step)
{
    const Ta::Object<void*> list = CreateEllipseArc(CENTER, RADIUS, RADIUS, 0.0, 360.0, 0.0, step, nullptr, PLANE_XY);
    GraphicAddLines(graphic, list.Get(), 1.0F, COLOR, nullptr);
}

// The last bit of a radius that is computed anew differs.
bool IsCircle(void* graphic, double step, float tolerance)
{
    void* const line = TpGraphic_At(graphic, 0);
    const auto count = static_cast<std::size_t>(360.0 / step + 1.0);
    if (TpGraphicLineSet_Count(line) != count)
    {
        return false;
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        const zPoint3d32f point = TpGraphicLineSet_Points(line)[i];
        const zPoint3d32f expected = NaivePoint(static_cast<double>(i) * step);
        if (!(std::abs(point.x - expected.x) <= tolerance && std::abs(point.y - expected.y) <= tolerance &&
              point.z == expected.z))
        {
            return false;
        }
    }
    return true;
}

/// One circle into a new graphic; the steps are hundredths of a degree.
template <AddCircle Add>
void Circle(benchmark::State& state)
{
    const double step = static_cast<double>(state.range(0)) / 100.0;
    const Ta::Object<void*> graphic = NewGraphic();
    Add(graphic.Get(), step);
    if (!IsCircle(graphic.Get(), step, Add == LibraryEllipseArc ? 1e-5F : 0.0F))
    {
        return state.SkipWithError("no circle");
    }
    for (auto iteration : state)
    {
        const Ta::Object<void*> drawn = NewGraphic();
        Add(drawn.Get(), step);
        benchmark::DoNotOptimize(drawn.Get());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(360.0 / step + 1.0));
}

BENCHMARK(DrawMixedElements)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(Circle<LibraryCircle>)->Arg(100)->Arg(50);
BENCHMARK(Circle<NaiveCircle>)->Arg(100)->Arg(50);
BENCHMARK(Circle<LibraryEllipseArc>)->Arg(100);
} // namespace
