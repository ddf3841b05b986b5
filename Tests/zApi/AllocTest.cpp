#include <Support/FaultWalk.h>

#include <zApi/zAlloc.h>
#include <zApi/zObject.h>

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <thread>
#include <vector>

using namespace Support;

namespace
{
constexpr std::size_t KEPT_BLOCK = zALLOC_RECYCLE_MIN_BLOCK;
// A large block is kept with its head, in steps of 64 bytes.
constexpr std::size_t HEAD = 64;

class Default_allocator : public testing::Test
{
protected:
    Default_allocator()
    {
        zAlloc_Trim();
    }

    ~Default_allocator() override
    {
        zAlloc_Trim();
    }

    static void* Get(std::size_t size)
    {
        void* memory = nullptr;
        EXPECT_EQ(zAlloc_Get(nullptr, size, &memory), zOK);
        return memory;
    }

    static void Free(void* memory)
    {
        EXPECT_EQ(zAlloc_Free(nullptr, memory), zOK);
    }

    static void GetAndFree(std::size_t size, std::size_t count)
    {
        std::vector<void*> blocks;
        for (std::size_t i = 0; i < count; ++i)
        {
            blocks.push_back(Get(size));
        }
        for (void* block : blocks)
        {
            Free(block);
        }
    }
};

std::uintptr_t Misalignment(const void* memory, std::size_t alignment)
{
    return reinterpret_cast<std::uintptr_t>(memory) % alignment;
}
} // namespace

TEST_F(Default_allocator, Blocks_are_aligned_and_writable_over_their_whole_size)
{
    for (const std::size_t size :
         {std::size_t{1}, std::size_t{15}, std::size_t{4096}, KEPT_BLOCK - 1, KEPT_BLOCK, KEPT_BLOCK + 1})
    {
        void* const block = Get(size);
        EXPECT_EQ(Misalignment(block, alignof(std::max_align_t)), 0U) << size;
        EXPECT_TRUE(size < KEPT_BLOCK || Misalignment(block, 64) == 0U) << size;
        std::memset(block, 0xA5, size);
        Free(block);
    }
}

TEST_F(Default_allocator, Size_zero_gives_a_block_of_its_own)
{
    void* const first = Get(0);
    void* const second = Get(0);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(first, second);
    Free(first);
    Free(second);
}

TEST_F(Default_allocator, Place_for_the_block_is_required)
{
    EXPECT_EQ(zAlloc_Get(nullptr, 1, nullptr), zERROR_MISSING);
}

TEST_F(Default_allocator, Sizes_beyond_the_address_space_have_no_memory)
{
    for (const std::size_t size :
         {std::numeric_limits<std::size_t>::max(), std::numeric_limits<std::size_t>::max() / 2 + 1})
    {
        void* memory = nullptr;
        EXPECT_EQ(zAlloc_Get(nullptr, size, &memory), zERROR_MEMORY);
        EXPECT_EQ(memory, nullptr);
    }
}

TEST_F(Default_allocator, Freeing_null_succeeds)
{
    EXPECT_EQ(zAlloc_Free(nullptr, nullptr), zOK);
}

TEST_F(Default_allocator, Large_block_comes_back_warm_for_a_request_of_its_size)
{
    void* const block = Get(KEPT_BLOCK);
    EXPECT_EQ(zAlloc_KeptBytes(), 0U);
    Free(block);
    EXPECT_EQ(zAlloc_KeptBytes(), KEPT_BLOCK + HEAD);
    void* const again = Get(KEPT_BLOCK);
    EXPECT_EQ(again, block);
    EXPECT_EQ(zAlloc_KeptBytes(), 0U);
    std::memset(again, 1, KEPT_BLOCK);
    Free(again);
}

TEST_F(Default_allocator, Block_below_the_limit_is_not_kept)
{
    GetAndFree(KEPT_BLOCK - 1, 1);
    EXPECT_EQ(zAlloc_KeptBytes(), 0U);
}

TEST_F(Default_allocator, Kept_block_serves_three_quarters_of_its_size_but_not_less)
{
    struct Case
    {
        std::size_t request;
        bool isServed;
    };
    for (const Case& c : {Case{3 * KEPT_BLOCK, true}, Case{3 * KEPT_BLOCK - 1024, false}, Case{4 * KEPT_BLOCK, true},
                          Case{4 * KEPT_BLOCK + 64, false}})
    {
        zAlloc_Trim();
        GetAndFree(4 * KEPT_BLOCK, 1);
        void* const block = Get(c.request);
        EXPECT_EQ(zAlloc_KeptBytes(), c.isServed ? 0 : 4 * KEPT_BLOCK + HEAD) << c.request;
        std::memset(block, 1, c.request);
        Free(block);
    }
}

TEST_F(Default_allocator, Smallest_kept_block_that_fits_is_taken)
{
    void* const large = Get(4 * KEPT_BLOCK);
    void* const small = Get(3 * KEPT_BLOCK);
    Free(large);
    Free(small);
    void* const block = Get(3 * KEPT_BLOCK);
    EXPECT_EQ(block, small);
    Free(block);
}

TEST_F(Default_allocator, Number_of_kept_blocks_is_bounded)
{
    GetAndFree(KEPT_BLOCK, zALLOC_RECYCLE_MAX_BLOCKS + 5);
    EXPECT_EQ(zAlloc_KeptBytes(), zALLOC_RECYCLE_MAX_BLOCKS * (KEPT_BLOCK + HEAD));
}

TEST_F(Default_allocator, Bytes_of_kept_blocks_are_bounded)
{
    constexpr std::size_t THIRD = zALLOC_RECYCLE_MAX_BYTES / 3;
    GetAndFree(THIRD, 4);
    EXPECT_LE(zAlloc_KeptBytes(), zALLOC_RECYCLE_MAX_BYTES);
    EXPECT_GE(zAlloc_KeptBytes(), 2 * THIRD);
}

TEST_F(Default_allocator, Block_beyond_the_bound_is_not_kept_and_evicts_nothing)
{
    GetAndFree(KEPT_BLOCK, 1);
    GetAndFree(zALLOC_RECYCLE_MAX_BYTES, 1);
    EXPECT_EQ(zAlloc_KeptBytes(), KEPT_BLOCK + HEAD);
}

TEST_F(Default_allocator, Oldest_kept_block_goes_first)
{
    void* const oldest = Get(2 * KEPT_BLOCK);
    Free(oldest);
    GetAndFree(KEPT_BLOCK, zALLOC_RECYCLE_MAX_BLOCKS);
    EXPECT_EQ(zAlloc_KeptBytes(), zALLOC_RECYCLE_MAX_BLOCKS * (KEPT_BLOCK + HEAD));
}

TEST_F(Default_allocator, Trim_gives_everything_back)
{
    GetAndFree(KEPT_BLOCK, 3);
    zAlloc_Trim();
    EXPECT_EQ(zAlloc_KeptBytes(), 0U);
}

TEST_F(Default_allocator, Threads_get_blocks_that_nobody_else_writes)
{
    std::vector<std::thread> threads;
    std::vector<int> torn(4, 0);
    for (std::size_t t = 0; t < torn.size(); ++t)
    {
        threads.emplace_back([t, &torn] {
            for (std::size_t i = 0; i < 200; ++i)
            {
                void* memory = nullptr;
                const std::size_t size = KEPT_BLOCK + i * 512;
                if (zAlloc_Get(nullptr, size, &memory) != zOK)
                {
                    ++torn[t];
                    return;
                }
                auto* const bytes = static_cast<unsigned char*>(memory);
                std::memset(bytes, static_cast<int>(t), size);
                torn[t] += bytes[0] == t && bytes[size - 1] == t ? 0 : 1;
                static_cast<void>(zAlloc_Free(nullptr, memory));
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(torn, std::vector<int>(4, 0));
}

TEST(Counting_allocator, Counts_requests_and_what_lives)
{
    const CountingAlloc alloc;
    void* first = nullptr;
    void* second = nullptr;
    ASSERT_EQ(zAlloc_Get(alloc.Get(), 10, &first), zOK);
    ASSERT_EQ(zAlloc_Get(alloc.Get(), KEPT_BLOCK, &second), zOK);
    EXPECT_EQ(alloc.Requests(), 2U);
    EXPECT_EQ(alloc.LiveBlocks(), 2U);
    EXPECT_EQ(alloc.LiveBytes(), 10 + KEPT_BLOCK);
    EXPECT_EQ(zAlloc_Free(alloc.Get(), first), zOK);
    EXPECT_EQ(alloc.LiveBlocks(), 1U);
    EXPECT_EQ(alloc.LiveBytes(), KEPT_BLOCK);
    EXPECT_EQ(zAlloc_Free(alloc.Get(), second), zOK);
    EXPECT_EQ(alloc.Requests(), 2U);
    EXPECT_EQ(alloc.LiveBytes(), 0U);
}

TEST(Counting_allocator, Peak_is_the_most_that_lived_at_one_time)
{
    const CountingAlloc alloc;
    void* first = nullptr;
    void* second = nullptr;
    EXPECT_EQ(alloc.PeakBytes(), 0U);
    ASSERT_EQ(zAlloc_Get(alloc.Get(), 10, &first), zOK);
    ASSERT_EQ(zAlloc_Get(alloc.Get(), 5, &second), zOK);
    ASSERT_EQ(zAlloc_Free(alloc.Get(), first), zOK);
    ASSERT_EQ(zAlloc_Get(alloc.Get(), 7, &first), zOK); // 12 live now
    EXPECT_EQ(alloc.PeakBytes(), 15U);
    ASSERT_EQ(zAlloc_Free(alloc.Get(), second), zOK);
    ASSERT_EQ(zAlloc_Get(alloc.Get(), 9, &second), zOK); // 16 live now
    ASSERT_EQ(zAlloc_Free(alloc.Get(), first), zOK);
    ASSERT_EQ(zAlloc_Free(alloc.Get(), second), zOK);
    EXPECT_EQ(alloc.PeakBytes(), 16U);
}

TEST(Counting_allocator, Peak_takes_no_part_in_a_request_that_fails)
{
    const CountingAlloc alloc;
    void* memory = nullptr;
    alloc.FailAt(1);
    ASSERT_EQ(zAlloc_Get(alloc.Get(), 10, &memory), zERROR_MEMORY);
    EXPECT_EQ(alloc.PeakBytes(), 0U);
}

TEST(Counting_allocator, Freeing_null_counts_nothing)
{
    const CountingAlloc alloc;
    EXPECT_EQ(zAlloc_Free(alloc.Get(), nullptr), zOK);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Counting_allocator, Request_told_to_fail_is_the_only_one_that_does)
{
    const CountingAlloc alloc;
    alloc.FailAt(2);
    std::vector<zStatus> statuses;
    for (int i = 0; i < 4; ++i)
    {
        void* memory = nullptr;
        statuses.push_back(zAlloc_Get(alloc.Get(), 8, &memory));
        static_cast<void>(zAlloc_Free(alloc.Get(), memory));
    }
    EXPECT_EQ(statuses, (std::vector<zStatus>{zOK, zERROR_MEMORY, zOK, zOK}));
    EXPECT_EQ(alloc.Requests(), 4U);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Counting_allocator, Zero_takes_the_failure_back)
{
    const CountingAlloc alloc;
    alloc.FailAt(1);
    alloc.FailAt(0);
    void* memory = nullptr;
    EXPECT_EQ(zAlloc_Get(alloc.Get(), 8, &memory), zOK);
    EXPECT_EQ(zAlloc_Free(alloc.Get(), memory), zOK);
}

TEST(Counting_allocator, Is_an_allocator_that_cannot_be_cloned)
{
    const CountingAlloc alloc;
    EXPECT_TRUE(xzCastClass_ObjectIs(alloc.Get(), zTypeOf(zAlloc)));
    zObject clone = nullptr;
    EXPECT_EQ(xzObject_CloneImpl(&clone, alloc.Get(), nullptr), zERROR_INTERFACE);
    EXPECT_EQ(clone, nullptr);
}

TEST(Counting_allocator, Operations_refuse_other_handles)
{
    EXPECT_EQ(zCountingAlloc_Construct(nullptr), zERROR_MISSING);
    EXPECT_EQ(zCountingAlloc_FailAt(nullptr, 1), zERROR_PARAMETER);
    const zAllocCounts counts = zCountingAlloc_Counts(nullptr);
    EXPECT_EQ(counts.requests + counts.liveBlocks + counts.liveBytes + counts.peakBytes, 0U);
}

TEST(Counting_allocator, Construct_without_memory_fails)
{
    zAlloc alloc = nullptr;
    // The first gate is that of the operation, the second that of its one request.
    const ArmedFault fault(2, zERROR_MEMORY);
    EXPECT_EQ(zCountingAlloc_Construct(&alloc), zERROR_MEMORY);
    EXPECT_EQ(ArmedFault::Failed(), "zAlloc_Get");
    EXPECT_EQ(alloc, nullptr);
}

TEST(Counting_allocator, Counts_are_right_when_threads_share_it)
{
    const CountingAlloc alloc;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
    {
        threads.emplace_back([&alloc] {
            for (int i = 0; i < 500; ++i)
            {
                void* memory = nullptr;
                static_cast<void>(zAlloc_Get(alloc.Get(), 24, &memory));
                static_cast<void>(zAlloc_Free(alloc.Get(), memory));
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(alloc.Requests(), 2000U);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
    EXPECT_EQ(alloc.LiveBytes(), 0U);
}

TEST(Counting_allocator, Failing_calls_come_through_and_a_failing_free_frees)
{
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-55, [&alloc] {
        void* memory = nullptr;
        const zStatus got = zAlloc_Get(alloc.Get(), 8, &memory);
        const zStatus freed = zAlloc_Free(alloc.Get(), memory);
        return got == zOK ? freed : got;
    });
    EXPECT_EQ(calls, 2U);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}
