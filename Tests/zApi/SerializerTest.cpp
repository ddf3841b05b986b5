#include <Support/FaultWalk.h>
#include <Support/TemporaryFolder.h>

#include <TaApi/Object.h>
#include <zApi/zFile.h>
#include <zApi/zMemory.h>
#include <zApi/zSerializer.h>
#include <zApi/zString.h>

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

using namespace Support;
using Handle = Ta::Object<void*>;
using Bytes = std::vector<z8u>;

namespace
{
constexpr zSerializerFormat DEFAULT{};
constexpr zSerializerFormat LONG_SIZES{8, zBYTE_ORDER_LITTLE};
constexpr zSerializerFormat BIG{4, zBYTE_ORDER_BIG};
constexpr zSerializerFormat BIG_LONG_SIZES{8, zBYTE_ORDER_BIG};
constexpr zSerializerFormat formats[] = {DEFAULT, LONG_SIZES, BIG, BIG_LONG_SIZES};

Handle Memory()
{
    zMemory memory = nullptr;
    EXPECT_EQ(zMemory_Construct(&memory, nullptr), zOK);
    return Handle(memory);
}

/// A stream that reads `bytes` in place.
Handle Attached(Bytes& bytes)
{
    Handle memory = Memory();
    EXPECT_EQ(zMemory_Attach(memory.Get(), bytes.data(), 0, bytes.size(), bytes.size()), zOK);
    return memory;
}

Handle Serializer(const Handle& stream, const zSerializerFormat* format = nullptr, zAlloc alloc = nullptr)
{
    zSerializer serializer = nullptr;
    EXPECT_EQ(zSerializer_Construct(&serializer, stream.Get(), format, alloc), zOK);
    return Handle(serializer);
}

Bytes Content(const Handle& memory)
{
    const auto* const first = static_cast<z8u*>(zMemory_At(memory.Get(), 0));
    return first == nullptr ? Bytes() : Bytes(first, first + zMemory_Length(memory.Get()));
}

template <typename T>
zStatus Write(const Handle& serializer, const std::vector<T>& items)
{
    return xzSerializer_WritePrimitives(serializer.Get(), items.data(), sizeof(T), items.size());
}

template <typename T>
std::vector<T> Read(const Handle& serializer, std::size_t count)
{
    std::vector<T> items(count);
    EXPECT_EQ(xzSerializer_ReadPrimitives(serializer.Get(), items.data(), sizeof(T), count), zOK);
    return items;
}

/// One of each kind.
zStatus WriteSample(const Handle& serializer)
{
    zTRY(Write<z8u>(serializer, {0x01, 0x02}));
    zTRY(Write<z16s>(serializer, {-2, 0x0304}));
    zTRY(Write<z32u>(serializer, {0x05060708U}));
    zTRY(Write<z64s>(serializer, {0x090A0B0C0D0E0F10}));
    zTRY(Write<z32f>(serializer, {1.0F}));
    zTRY(Write<z64f>(serializer, {-2.0}));
    return xzSerializer_WriteSize(serializer.Get(), 0x11121314U);
}

const Bytes littleSample = {0x01, 0x02,                                     // bytes
                            0xFE, 0xFF, 0x04, 0x03,                         // 16 bits
                            0x08, 0x07, 0x06, 0x05,                         // 32 bits
                            0x10, 0x0F, 0x0E, 0x0D, 0x0C, 0x0B, 0x0A, 0x09, // 64 bits
                            0x00, 0x00, 0x80, 0x3F,                         // 1.0 in 32 bits
                            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xC0, // -2.0 in 64 bits
                            0x14, 0x13, 0x12, 0x11};                        // the size

const Bytes bigSample = {0x01, 0x02, 0xFF, 0xFE, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A,
                         0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x10, 0x3F, 0x80, 0x00, 0x00, 0xC0, 0x00,
                         0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x11, 0x12, 0x13, 0x14};

/// The sample with its size field of 8 bytes: four zeros more, behind or in front.
Bytes WithLongSize(const Bytes& sample, std::size_t zerosAt)
{
    Bytes bytes = sample;
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(zerosAt), 4, 0);
    return bytes;
}

Bytes SampleIn(const zSerializerFormat* format)
{
    const Handle memory = Memory();
    const Handle serializer = Serializer(memory, format);
    EXPECT_EQ(WriteSample(serializer), zOK);
    EXPECT_EQ(xzSerializer_FlushEx(serializer.Get(), 1), zOK);
    return Content(memory);
}

/// Reads the sample; a failure comes before the first wrong value.
zStatus CheckSample(const Handle& serializer)
{
    z8u bytes[2] = {};
    z16s shorts[2] = {};
    z32u word = 0;
    z64s longWord = 0;
    z32f single = 0;
    z64f real = 0;
    std::size_t size = 0;
    zTRY(xzSerializer_ReadPrimitives(serializer.Get(), bytes, 1, 2));
    zTRY(xzSerializer_ReadPrimitives(serializer.Get(), shorts, 2, 2));
    zTRY(xzSerializer_ReadPrimitives(serializer.Get(), &word, 4, 1));
    zTRY(xzSerializer_ReadPrimitives(serializer.Get(), &longWord, 8, 1));
    zTRY(xzSerializer_ReadPrimitives(serializer.Get(), &single, 4, 1));
    zTRY(xzSerializer_ReadPrimitives(serializer.Get(), &real, 8, 1));
    zTRY(xzSerializer_ReadSize(serializer.Get(), &size));
    EXPECT_EQ(bytes[0] * 256 + bytes[1], 0x0102);
    EXPECT_EQ(shorts[0], -2);
    EXPECT_EQ(shorts[1], 0x0304);
    EXPECT_EQ(word, 0x05060708U);
    EXPECT_EQ(longWord, 0x090A0B0C0D0E0F10);
    EXPECT_EQ(single, 1.0F);
    EXPECT_EQ(real, -2.0);
    EXPECT_EQ(size, 0x11121314U);
    return zOK;
}

/// Counts from 0 up, wrapping.
template <typename T>
std::vector<T> Ramp(std::size_t count)
{
    std::vector<T> items(count);
    std::iota(items.begin(), items.end(), T{0});
    return items;
}
} // namespace

TEST(Serializer, Writes_little_endian_with_sizes_of_four_bytes)
{
    EXPECT_EQ(SampleIn(nullptr), littleSample);
    EXPECT_EQ(SampleIn(&DEFAULT), littleSample);
}

TEST(Serializer, Writes_as_its_format_says)
{
    EXPECT_EQ(SampleIn(&LONG_SIZES), WithLongSize(littleSample, littleSample.size()));
    EXPECT_EQ(SampleIn(&BIG), bigSample);
    EXPECT_EQ(SampleIn(&BIG_LONG_SIZES), WithLongSize(bigSample, bigSample.size() - 4));
}

TEST(Serializer, Reads_what_it_wrote_in_every_format)
{
    for (const zSerializerFormat& format : formats)
    {
        Bytes bytes = SampleIn(&format);
        EXPECT_EQ(CheckSample(Serializer(Attached(bytes), &format)), zOK);
    }
}

TEST(Serializer, Truncated_stream_ends_the_read_wherever_it_is_cut)
{
    for (const zSerializerFormat& format : formats)
    {
        const Bytes whole = SampleIn(&format);
        for (std::size_t length = 0; length < whole.size(); ++length)
        {
            SCOPED_TRACE(length);
            Bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            EXPECT_EQ(CheckSample(Serializer(Attached(part), &format)), zERROR_END);
        }
    }
}

TEST(Serializer, Read_past_the_end_changes_nothing)
{
    for (const std::size_t asked : {std::size_t{3}, std::size_t{1000}, std::size_t{100'000}})
    {
        SCOPED_TRACE(asked);
        Bytes bytes = {1, 0, 2, 0, 3, 0};
        const Handle serializer = Serializer(Attached(bytes));
        EXPECT_EQ(Read<z16s>(serializer, 1), (std::vector<z16s>{1}));
        std::vector<z16s> items(asked, -1);
        EXPECT_EQ(xzSerializer_ReadPrimitives(serializer.Get(), items.data(), 2, asked), zERROR_END);
        EXPECT_EQ(items, std::vector<z16s>(asked, -1));
        std::size_t size = 77;
        EXPECT_EQ(Read<z16s>(serializer, 1), (std::vector<z16s>{2}));
        EXPECT_EQ(xzSerializer_ReadSize(serializer.Get(), &size), zERROR_END);
        EXPECT_EQ(size, 77U);
        EXPECT_EQ(Read<z16s>(serializer, 1), (std::vector<z16s>{3}));
    }
}

TEST(Serializer, Run_of_no_primitives_succeeds_whatever_came_before)
{
    // Before the first use there is neither a place to read from nor one to write to.
    Bytes bytes = {1, 2};
    z8u item = 0xEE;
    const Handle fresh = Serializer(Attached(bytes));
    EXPECT_EQ(xzSerializer_ReadPrimitives(fresh.Get(), &item, 1, 0), zOK);
    EXPECT_EQ(xzSerializer_WritePrimitives(fresh.Get(), &item, 1, 0), zOK);
    EXPECT_EQ(Read<z8u>(fresh, 1), Bytes{1});
    EXPECT_EQ(xzSerializer_WritePrimitives(fresh.Get(), &item, 1, 0), zOK);
    EXPECT_EQ(Read<z8u>(fresh, 1), Bytes{2});
    EXPECT_EQ(xzSerializer_ReadPrimitives(fresh.Get(), &item, 1, 0), zOK);
    EXPECT_EQ(item, 0xEE);
    EXPECT_EQ(bytes, (Bytes{1, 2}));
}

TEST(Serializer, Size_that_does_not_fit_its_field_is_refused)
{
    const Handle memory = Memory();
    const Handle serializer = Serializer(memory);
    EXPECT_EQ(xzSerializer_WriteSize(serializer.Get(), 0xFFFFFFFFU), zOK);
    EXPECT_EQ(xzSerializer_WriteSize(serializer.Get(), 0x100000000U), zERROR_PARAMETER);
    EXPECT_EQ(xzSerializer_WriteSize(serializer.Get(), std::numeric_limits<std::size_t>::max()), zERROR_PARAMETER);
    ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 0), zOK);
    EXPECT_EQ(Content(memory), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(Serializer, Long_size_field_holds_every_size)
{
    const Handle memory = Memory();
    const Handle serializer = Serializer(memory, &LONG_SIZES);
    ASSERT_EQ(xzSerializer_WriteSize(serializer.Get(), 0x0102030405060708U), zOK);
    ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 0), zOK);
    EXPECT_EQ(Content(memory), (Bytes{8, 7, 6, 5, 4, 3, 2, 1}));
    ASSERT_EQ(zStream_Seek(memory.Get(), 0, zSTREAM_BEGIN), zOK);
    std::size_t size = 0;
    ASSERT_EQ(xzSerializer_ReadSize(serializer.Get(), &size), zOK);
    EXPECT_EQ(size, 0x0102030405060708U);
}

TEST(Serializer, Construct_refuses_what_it_cannot_make)
{
    const Handle memory = Memory();
    zString string = nullptr;
    ASSERT_EQ(zString_Construct(&string, "no stream", nullptr), zOK);
    const Handle text(string);
    zSerializer serializer = nullptr;
    EXPECT_EQ(zSerializer_Construct(nullptr, memory.Get(), nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(zSerializer_Construct(&serializer, nullptr, nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(zSerializer_Construct(&serializer, text.Get(), nullptr, nullptr), zERROR_PARAMETER);
    for (const zSerializerFormat& format : {zSerializerFormat{2, 0}, zSerializerFormat{0, 0}, zSerializerFormat{4, 2}})
    {
        EXPECT_EQ(zSerializer_Construct(&serializer, memory.Get(), &format, nullptr), zERROR_FORMAT);
    }
    EXPECT_EQ(serializer, nullptr);
    EXPECT_EQ(xzObject_ReferenceCount(memory.Get()), 1);
}

TEST(Serializer, Operations_refuse_other_handles)
{
    const Handle memory = Memory();
    z32u item = 7;
    std::size_t size = 7;
    for (zObject handle : {memory.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(xzSerializer_WritePrimitives(handle, &item, 4, 1), zERROR_PARAMETER);
        EXPECT_EQ(xzSerializer_ReadPrimitives(handle, &item, 4, 1), zERROR_PARAMETER);
        EXPECT_EQ(xzSerializer_WriteSize(handle, 1), zERROR_PARAMETER);
        EXPECT_EQ(xzSerializer_ReadSize(handle, &size), zERROR_PARAMETER);
        EXPECT_EQ(xzSerializer_FlushEx(handle, 1), zERROR_PARAMETER);
    }
    EXPECT_EQ(item, 7U);
}

TEST(Serializer, Arguments_are_checked)
{
    constexpr std::size_t HUGE_COUNT = std::numeric_limits<std::size_t>::max();
    Bytes bytes(64);
    const Handle serializer = Serializer(Attached(bytes));
    z64u items[2] = {};
    for (const std::size_t itemSize : {0U, 3U, 5U, 16U})
    {
        EXPECT_EQ(xzSerializer_WritePrimitives(serializer.Get(), items, itemSize, 1), zERROR_FORMAT);
        EXPECT_EQ(xzSerializer_ReadPrimitives(serializer.Get(), items, itemSize, 1), zERROR_FORMAT);
    }
    EXPECT_EQ(xzSerializer_WritePrimitives(serializer.Get(), items, 8, HUGE_COUNT / 4), zERROR_PARAMETER);
    EXPECT_EQ(xzSerializer_ReadPrimitives(serializer.Get(), items, 8, HUGE_COUNT / 4), zERROR_PARAMETER);
    EXPECT_EQ(xzSerializer_WritePrimitives(serializer.Get(), nullptr, 8, 1), zERROR_MISSING);
    EXPECT_EQ(xzSerializer_ReadPrimitives(serializer.Get(), nullptr, 8, 1), zERROR_MISSING);
    EXPECT_EQ(xzSerializer_ReadSize(serializer.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(xzSerializer_WritePrimitives(serializer.Get(), nullptr, 8, 0), zOK);
    EXPECT_EQ(xzSerializer_ReadPrimitives(serializer.Get(), nullptr, 8, 0), zOK);
}

TEST(Serializer, Bytes_are_in_the_stream_after_a_flush_at_the_latest)
{
    const Handle memory = Memory();
    const Handle serializer = Serializer(memory);
    ASSERT_EQ(Write<z8u>(serializer, {1, 2, 3}), zOK);
    ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 0), zOK);
    EXPECT_EQ(Content(memory), (Bytes{1, 2, 3}));
    EXPECT_EQ(zStream_Tell(memory.Get()), 3U);
}

TEST(Serializer, Flush_reaches_through_the_stream_on_request)
{
    const TemporaryFolder folder;
    zFile opened = nullptr;
    ASSERT_EQ(zFile_Construct(&opened, folder.Path("file").c_str(), zFILE_WRITE, nullptr), zOK);
    const Handle file(opened);
    const Handle serializer = Serializer(file);
    ASSERT_EQ(Write<z8u>(serializer, {'a', 'b'}), zOK);
    ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 0), zOK);
    EXPECT_EQ(FileContent(folder.Path("file")), "");
    ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 1), zOK);
    EXPECT_EQ(FileContent(folder.Path("file")), "ab");
}

TEST(Serializer, End_writes_what_is_buffered_and_gives_the_stream_back)
{
    const Handle memory = Memory();
    ASSERT_EQ(Write<z16s>(Serializer(memory), {1, 2}), zOK);
    EXPECT_EQ(Content(memory), (Bytes{1, 0, 2, 0}));
    EXPECT_EQ(xzObject_ReferenceCount(memory.Get()), 1);
}

TEST(Serializer, What_was_read_ahead_is_given_back)
{
    Bytes bytes = {1, 2, 3, 4, 5};
    const Handle memory = Attached(bytes);
    {
        const Handle serializer = Serializer(memory);
        EXPECT_EQ(Read<z8u>(serializer, 2), (Bytes{1, 2}));
        ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 0), zOK);
        EXPECT_EQ(zStream_Tell(memory.Get()), 2U);
        EXPECT_EQ(Read<z8u>(serializer, 1), (Bytes{3}));
    }
    EXPECT_EQ(zStream_Tell(memory.Get()), 3U);
}

TEST(Serializer, Reading_and_writing_can_take_turns)
{
    Bytes bytes = {1, 2, 3, 4, 5, 6};
    const Handle memory = Attached(bytes);
    const Handle serializer = Serializer(memory);
    EXPECT_EQ(Read<z8u>(serializer, 2), (Bytes{1, 2}));
    ASSERT_EQ(Write<z8u>(serializer, {30, 40}), zOK);
    EXPECT_EQ(Read<z8u>(serializer, 1), (Bytes{5}));
    ASSERT_EQ(Write<z8u>(serializer, {60}), zOK);
    ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 0), zOK);
    EXPECT_EQ(bytes, (Bytes{1, 2, 30, 40, 5, 60}));
}

TEST(Serializer, Runs_beyond_the_buffer_come_through)
{
    for (const zSerializerFormat& format : formats)
    {
        for (const std::size_t count : {2047U, 2048U, 2049U, 50'000U})
        {
            const std::vector<z64s> items = Ramp<z64s>(count);
            const Handle memory = Memory();
            const Handle serializer = Serializer(memory, &format);
            ASSERT_EQ(Write<z8u>(serializer, {9}), zOK);
            ASSERT_EQ(Write(serializer, items), zOK);
            ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 0), zOK);
            ASSERT_EQ(zMemory_Length(memory.Get()), 1 + count * 8);
            ASSERT_EQ(zStream_Seek(memory.Get(), 0, zSTREAM_BEGIN), zOK);
            EXPECT_EQ(Read<z8u>(serializer, 1), (Bytes{9}));
            EXPECT_EQ(Read<z64s>(serializer, count), items);
        }
    }
}

TEST(Serializer, Writes_and_reads_what_a_naive_coder_does_on_random_runs)
{
    constexpr unsigned SEED = 14;
    SCOPED_TRACE("seed " + std::to_string(SEED));
    std::mt19937 random(SEED);
    const Handle memory = Memory();
    const Handle serializer = Serializer(memory);
    Bytes expected;
    std::vector<std::pair<std::size_t, std::size_t>> runs; // item size and count
    for (int run = 0; run < 2000; ++run)
    {
        const std::size_t itemSize = std::size_t{1} << random() % 4;
        const std::size_t count = random() % (run % 50 == 0 ? 5000 : 20);
        Bytes bytes(itemSize * count);
        std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<z8u>(random()); });
        // The items, made number by number from their little-endian bytes.
        Bytes items(bytes.size());
        for (std::size_t i = 0; i < count; ++i)
        {
            z64u value = 0;
            for (std::size_t b = itemSize; b > 0; --b)
            {
                value = value << 8U | bytes[i * itemSize + b - 1];
            }
            const auto put = [&](auto number) { std::memcpy(&items[i * itemSize], &number, itemSize); };
            itemSize == 1   ? put(static_cast<z8u>(value))
            : itemSize == 2 ? put(static_cast<z16u>(value))
            : itemSize == 4 ? put(static_cast<z32u>(value))
                            : put(value);
        }
        ASSERT_EQ(xzSerializer_WritePrimitives(serializer.Get(), items.data(), itemSize, count), zOK);
        expected.insert(expected.end(), bytes.begin(), bytes.end());
        runs.emplace_back(itemSize, count);
    }
    ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 1), zOK);
    ASSERT_EQ(Content(memory), expected);
    ASSERT_EQ(zStream_Seek(memory.Get(), 0, zSTREAM_BEGIN), zOK);
    std::size_t offset = 0;
    for (const auto& [itemSize, count] : runs)
    {
        Bytes items(itemSize * count);
        ASSERT_EQ(xzSerializer_ReadPrimitives(serializer.Get(), items.data(), itemSize, count), zOK);
        for (std::size_t i = 0; i < items.size(); ++i)
        {
            ASSERT_EQ(items[i], expected[offset + i]) << "little-endian machines read the bytes as they stand";
        }
        offset += items.size();
    }
}

TEST(Serializer, Failing_write_to_the_stream_keeps_what_is_buffered)
{
    std::array<z8u, 4> room{};
    const Handle memory = Memory();
    ASSERT_EQ(zMemory_Attach(memory.Get(), room.data(), 0, 0, room.size()), zOK);
    const Handle serializer = Serializer(memory);
    ASSERT_EQ(Write<z8u>(serializer, {1, 2, 3, 4, 5}), zOK);
    EXPECT_EQ(xzSerializer_FlushEx(serializer.Get(), 0), zERROR_PARAMETER);
    std::array<z8u, 8> larger{};
    ASSERT_EQ(zMemory_Attach(memory.Get(), larger.data(), 0, 0, larger.size()), zOK);
    ASSERT_EQ(xzSerializer_FlushEx(serializer.Get(), 0), zOK);
    EXPECT_EQ(Content(memory), (Bytes{1, 2, 3, 4, 5}));
}

TEST(Serializer, Cannot_be_cloned)
{
    const Handle serializer = Serializer(Memory());
    zObject clone = nullptr;
    EXPECT_EQ(xzObject_CloneImpl(&clone, serializer.Get(), nullptr), zERROR_INTERFACE);
}

TEST(Serializer, Failing_requests_leave_nothing_behind)
{
    const std::size_t requests = WalkAllocations([](zAlloc alloc) {
        zMemory memory = nullptr;
        zSerializer serializer = nullptr;
        zStatus status = zMemory_Construct(&memory, alloc);
        status = status == zOK ? zSerializer_Construct(&serializer, memory, nullptr, alloc) : status;
        status = status == zOK ? xzSerializer_WriteSize(serializer, 5) : status;
        status = status == zOK ? xzSerializer_FlushEx(serializer, 1) : status;
        static_cast<void>(xzObject_DestroyImpl(serializer));
        static_cast<void>(xzObject_DestroyImpl(memory));
        return status;
    });
    // Stream, serializer and its buffer, the stream's bytes; and the end tries the last one again.
    EXPECT_EQ(requests, 4U);
}

TEST(Serializer, Failing_calls_come_through_and_leave_nothing_behind)
{
    for (const zSerializerFormat& format : {DEFAULT, BIG})
    {
        const CountingAlloc alloc;
        const std::size_t calls = WalkFaults(-77, [&] {
            zMemory memory = nullptr;
            zSerializer serializer = nullptr;
            std::size_t size = 0;
            zStatus status = zMemory_Construct(&memory, alloc.Get());
            status = status == zOK ? zSerializer_Construct(&serializer, memory, &format, alloc.Get()) : status;
            status = status == zOK ? xzSerializer_WriteSize(serializer, 5) : status;
            status = status == zOK ? xzSerializer_FlushEx(serializer, 1) : status;
            status = status == zOK ? zStream_Seek(memory, 0, zSTREAM_BEGIN) : status;
            status = status == zOK ? xzSerializer_ReadSize(serializer, &size) : status;
            EXPECT_EQ(size, status == zOK ? 5U : 0U);
            static_cast<void>(xzObject_DestroyImpl(serializer));
            static_cast<void>(xzObject_DestroyImpl(memory));
            EXPECT_EQ(alloc.LiveBlocks(), 0U);
            return status;
        });
        EXPECT_GE(calls, 15U);
    }
}
