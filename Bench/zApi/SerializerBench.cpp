// What it costs to bring numbers into a warm memory stream and out of it again.
//
// The rows to compare within one run: the writes and reads of a size with Copy of that size, a memcpy of the same
// bytes.

#include <TaApi/Object.h>
#include <zApi/zMemory.h>
#include <zApi/zSerializer.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace
{
using Handle = Ta::Object<void*>;

/// Numbers that one call writes: a record's, or all of them.
enum class Group : std::size_t
{
    Single = 1,
    Record = 16,
    Everything = 0
};

std::vector<z64f> Numbers(benchmark::State& state)
{
    std::vector<z64f> numbers(static_cast<std::size_t>(state.range(0)));
    for (std::size_t i = 0; i < numbers.size(); ++i)
    {
        numbers[i] = static_cast<z64f>(i) * 0.5;
    }
    return numbers;
}

std::size_t GroupSize(Group group, std::size_t count)
{
    return group == Group::Everything ? count : static_cast<std::size_t>(group);
}

/// Writes all numbers to the stream, group by group.
void WriteAll(const Handle& stream, const std::vector<z64f>& numbers, std::size_t groupSize)
{
    Handle serializer;
    MU_CHECK(zSerializer_Construct(serializer.Out(), stream.Get(), nullptr, nullptr));
    for (std::size_t i = 0; i < numbers.size(); i += groupSize)
    {
        MU_CHECK(xzSerializer_WritePrimitives(serializer.Get(), &numbers[i], sizeof(z64f), groupSize));
    }
    MU_CHECK(xzSerializer_FlushEx(serializer.Get(), 1));
}

void ReadAll(const Handle& stream, std::vector<z64f>& numbers, std::size_t groupSize)
{
    Handle serializer;
    MU_CHECK(zSerializer_Construct(serializer.Out(), stream.Get(), nullptr, nullptr));
    for (std::size_t i = 0; i < numbers.size(); i += groupSize)
    {
        MU_CHECK(xzSerializer_ReadPrimitives(serializer.Get(), &numbers[i], sizeof(z64f), groupSize));
    }
}

Handle WarmStream(std::size_t bytes)
{
    Handle stream;
    MU_CHECK(zMemory_Construct(stream.Out(), nullptr));
    MU_CHECK(zMemory_Reserve(stream.Get(), bytes));
    std::vector<char> zeros(bytes);
    MU_CHECK(zStream_Write(stream.Get(), zeros.data(), bytes));
    MU_CHECK(zMemory_Purge(stream.Get()));
    return stream;
}

void CountNumbers(benchmark::State& state)
{
    const std::int64_t numbers = state.iterations() * state.range(0);
    state.SetItemsProcessed(numbers);
    state.SetBytesProcessed(numbers * static_cast<std::int64_t>(sizeof(z64f)));
}

template <Group group>
void Write(benchmark::State& state)
{
    const std::vector<z64f> numbers = Numbers(state);
    const std::size_t bytes = numbers.size() * sizeof(z64f);
    const Handle stream = WarmStream(bytes);
    for (auto iteration : state)
    {
        MU_CHECK(zMemory_Purge(stream.Get()));
        WriteAll(stream, numbers, GroupSize(group, numbers.size()));
        benchmark::ClobberMemory();
    }
    CountNumbers(state);
    // On a little-endian machine the stream holds the numbers as they stand.
    if (zMemory_Length(stream.Get()) != bytes || std::memcmp(zMemory_At(stream.Get(), 0), numbers.data(), bytes) != 0)
    {
        state.SkipWithError("the stream holds other bytes");
    }
}

template <Group group>
void Read(benchmark::State& state)
{
    const std::vector<z64f> numbers = Numbers(state);
    const Handle stream = WarmStream(numbers.size() * sizeof(z64f));
    WriteAll(stream, numbers, numbers.size());
    std::vector<z64f> read(numbers.size());
    for (auto iteration : state)
    {
        MU_CHECK(zStream_Seek(stream.Get(), 0, zSTREAM_BEGIN));
        ReadAll(stream, read, GroupSize(group, numbers.size()));
        benchmark::ClobberMemory();
    }
    CountNumbers(state);
    if (read != numbers)
    {
        state.SkipWithError("other numbers were read");
    }
}

void Copy(benchmark::State& state)
{
    const std::vector<z64f> numbers = Numbers(state);
    std::vector<z64f> copy(numbers.size());
    for (auto iteration : state)
    {
        std::memcpy(copy.data(), numbers.data(), numbers.size() * sizeof(z64f));
        benchmark::ClobberMemory();
    }
    CountNumbers(state);
}

// A group of records, and a surface of 2048 x 4096 heights.
constexpr int SMALL = 1 << 13;
constexpr int LARGE = 1 << 21;

BENCHMARK(Copy)->Arg(SMALL)->Arg(LARGE);
BENCHMARK(Write<Group::Single>)->Arg(SMALL)->Arg(LARGE);
BENCHMARK(Write<Group::Record>)->Arg(SMALL)->Arg(LARGE);
BENCHMARK(Write<Group::Everything>)->Arg(SMALL)->Arg(LARGE);
BENCHMARK(Read<Group::Single>)->Arg(SMALL)->Arg(LARGE);
BENCHMARK(Read<Group::Record>)->Arg(SMALL)->Arg(LARGE);
BENCHMARK(Read<Group::Everything>)->Arg(SMALL)->Arg(LARGE);
} // namespace
