// What an item costs on its way into a list and through a queue.
//
// The rows to compare within one run: AppendRun with CopyRun, which is a memcpy of the same bytes.

#include <TaApi/Object.h>
#include <zApi/zArrayList.h>
#include <zApi/zList.h>
#include <zApi/zQueue.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace
{
using Handle = Ta::Object<void*>;

constexpr std::size_t WAITING = 100; ///< items that stay in a queue or list while others come and go

std::vector<zPoint3d64f> Points(std::size_t count)
{
    std::vector<zPoint3d64f> points(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        const auto number = static_cast<z64f>(i);
        points[i] = {number, number + 0.25, number + 0.5};
    }
    return points;
}

bool Holds(const Handle& list, const std::vector<zPoint3d64f>& points)
{
    return zArrayList_Count(list.Get()) == points.size() &&
           std::memcmp(zArrayList_Items(list.Get()), points.data(), points.size() * sizeof(zPoint3d64f)) == 0;
}

Handle ReservedList(std::size_t capacity)
{
    Handle list;
    MU_CHECK(zArrayList_Construct(list.Out(), zTypeOf(zPoint3d64f), capacity, nullptr));
    return list;
}

void CountPoints(benchmark::State& state)
{
    const std::int64_t points = state.iterations() * state.range(0);
    state.SetItemsProcessed(points);
    state.SetBytesProcessed(points * static_cast<std::int64_t>(sizeof(zPoint3d64f)));
}

void AddEach(benchmark::State& state)
{
    const std::vector<zPoint3d64f> points = Points(static_cast<std::size_t>(state.range(0)));
    const Handle list = ReservedList(points.size());
    for (auto iteration : state)
    {
        MU_CHECK(zArrayList_Purge(list.Get()));
        for (const zPoint3d64f& point : points)
        {
            MU_CHECK(zArrayList_Add(list.Get(), &point));
        }
        benchmark::ClobberMemory();
    }
    CountPoints(state);
    if (!Holds(list, points))
    {
        state.SkipWithError("the list holds other points");
    }
}

/// Reserve, write in place, count up.
void AppendRun(benchmark::State& state)
{
    const std::vector<zPoint3d64f> points = Points(static_cast<std::size_t>(state.range(0)));
    const Handle list = ReservedList(points.size());
    for (auto iteration : state)
    {
        MU_CHECK(zArrayList_Purge(list.Get()));
        MU_CHECK(zArrayList_Reserve(list.Get(), points.size()));
        std::memcpy(zArrayList_Items(list.Get()), points.data(), points.size() * sizeof(zPoint3d64f));
        MU_CHECK(zArrayList_CountUp(list.Get(), points.size()));
        benchmark::ClobberMemory();
    }
    CountPoints(state);
    if (!Holds(list, points))
    {
        state.SkipWithError("the list holds other points");
    }
}

void CopyRun(benchmark::State& state)
{
    const std::vector<zPoint3d64f> points = Points(static_cast<std::size_t>(state.range(0)));
    std::vector<zPoint3d64f> copy(points.size());
    for (auto iteration : state)
    {
        std::memcpy(copy.data(), points.data(), points.size() * sizeof(zPoint3d64f));
        benchmark::ClobberMemory();
    }
    CountPoints(state);
}

/// Adds and removes handles in a queue that holds others, in the order of their numbers.
void QueueAddRemove(benchmark::State& state)
{
    Handle queue;
    MU_CHECK(zQueue_Construct(queue.Out(), zTypeOf(z64s), 0, nullptr));
    z64s next = 0;
    for (; next < static_cast<z64s>(WAITING); ++next)
    {
        MU_CHECK(zQueue_Add(queue.Get(), &next));
    }
    z64s expected = 0;
    for (auto iteration : state)
    {
        z64s removed = -1;
        MU_CHECK(zQueue_Add(queue.Get(), &next));
        MU_CHECK(zQueue_Remove(queue.Get(), &removed));
        ++next;
        expected += removed == expected ? 1 : 0;
    }
    if (expected != static_cast<z64s>(state.iterations()))
    {
        state.SkipWithError("the queue changed the order");
    }
}

void ListAddRemove(benchmark::State& state)
{
    Handle list;
    MU_CHECK(zList_Construct(list.Out(), zTypeOf(z64s), WAITING, nullptr));
    z64s next = 0;
    for (; next < static_cast<z64s>(WAITING); ++next)
    {
        MU_CHECK(zList_Add(list.Get(), &next));
    }
    z64s expected = 0;
    for (auto iteration : state)
    {
        z64s removed = -1;
        MU_CHECK(zList_Add(list.Get(), &next));
        MU_CHECK(zList_Remove(list.Get(), zList_First(list.Get()), &removed));
        ++next;
        expected += removed == expected ? 1 : 0;
    }
    if (expected != static_cast<z64s>(state.iterations()))
    {
        state.SkipWithError("the list changed the order");
    }
}

BENCHMARK(AddEach)->Arg(1'000)->Arg(100'000);
BENCHMARK(AppendRun)->Arg(1'000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK(CopyRun)->Arg(1'000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK(QueueAddRemove);
BENCHMARK(ListAddRemove);
} // namespace
