// What it costs to draw: elements of all kinds made and added to a graphic, read back, copied. 10,000 elements are what
// a busy tool draws in an execution; they are to take well under 20 ms.

#include <Support/GraphicElements.h>

#include <TaApi/Object.h>

#include <benchmark/benchmark.h>

using namespace Support;

namespace
{
const GraphicElement& KindAt(std::size_t index)
{
    return GRAPHIC_ELEMENTS[index % GRAPHIC_ELEMENTS.size()];
}

Ta::Object<void*> GraphicOf(std::size_t count)
{
    Ta::Object<void*> graphic;
    MU_CHECK(TpGraphic_Construct(graphic.Out(), nullptr));
    for (std::size_t i = 0; i < count; ++i)
    {
        Ta::Object<void*> element;
        MU_CHECK(KindAt(i).make(element.Out(), nullptr));
        MU_CHECK(KindAt(i).add(graphic.Get(), element.Get()));
        static_cast<void>(element.Detach());
    }
    return graphic;
}

bool IsRight(void* graphic, std::size_t count)
{
    if (TpGraphic_Count(graphic) != count)
    {
        return false;
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        if (TextOf(TpGraphic_At(graphic, i)) != KindAt(i).made)
        {
            return false;
        }
    }
    return true;
}

void CountItems(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void MakeAndAddElements(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    if (!IsRight(GraphicOf(count).Get(), count))
    {
        return state.SkipWithError("wrong elements");
    }
    for (auto iteration : state)
    {
        benchmark::DoNotOptimize(GraphicOf(count).Get());
    }
    CountItems(state);
}

void ReadElements(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const Ta::Object<void*> graphic = GraphicOf(count);
    std::size_t sum = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        sum += static_cast<std::size_t>(KindAt(i).kind);
    }
    std::size_t found = sum;
    for (auto iteration : state)
    {
        found = 0;
        for (std::size_t i = 0; i < TpGraphic_Count(graphic.Get()); ++i)
        {
            found += static_cast<std::size_t>(TpGraphicElement_Kind(TpGraphic_At(graphic.Get(), i)));
        }
        benchmark::DoNotOptimize(found);
    }
    if (found != sum)
    {
        state.SkipWithError("wrong kinds");
    }
    CountItems(state);
}

void CloneElements(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const Ta::Object<void*> graphic = GraphicOf(count);
    Ta::Object<void*> clone;
    MU_CHECK(xzObject_CloneImpl(clone.Out(), graphic.Get(), nullptr));
    if (!IsRight(clone.Get(), count))
    {
        return state.SkipWithError("wrong elements");
    }
    for (auto iteration : state)
    {
        MU_CHECK(xzObject_CloneImpl(clone.Out(), graphic.Get(), nullptr));
    }
    CountItems(state);
}

BENCHMARK(MakeAndAddElements)->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadElements)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(CloneElements)->Arg(10'000)->Unit(benchmark::kMillisecond);
} // namespace
