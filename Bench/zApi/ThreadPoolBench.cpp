// What a parallel loop costs beside its work, by the number of indexes.

#include <TaApi/Raise.h>
#include <zApi/zThreadPool.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace
{
zStatus Mark(void* context, std::size_t index)
{
    ++static_cast<int*>(context)[index];
    return zOK;
}

void EmptyLoop(benchmark::State& state)
{
    std::vector<int> marks(static_cast<std::size_t>(state.range(0)));
    for (auto iteration : state)
    {
        MU_CHECK(zThreadPool_ParallelFor(zThreadPool_Default(), marks.size(), Mark, marks.data()));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    if (marks != std::vector<int>(marks.size(), static_cast<int>(state.iterations())))
    {
        state.SkipWithError("an index was not called once a loop");
    }
}

BENCHMARK(EmptyLoop)->Arg(1)->Arg(2)->Arg(1000)->UseRealTime();
} // namespace
