#include <Support/FaultWalk.h>
#include <Support/ResourceLimit.h>

#include <TaApi/Object.h>
#include <zApi/zArray1.h>
#include <zApi/zString.h>
#include <zApi/zThreadPool.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <mutex>
#include <numeric>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace Support;
using Handle = Ta::Object<void*>;

namespace
{
Handle Pool(std::size_t threads, zAlloc alloc = nullptr)
{
    zThreadPool pool = nullptr;
    EXPECT_EQ(zThreadPool_Construct(&pool, threads, alloc), zOK);
    return Handle(pool);
}

/// Calls `body(index)`, which returns a status, in parallel.
template <typename Body>
zStatus ParallelFor(zThreadPool pool, std::size_t count, Body& body)
{
    return zThreadPool_ParallelFor(
        pool, count, [](void* context, std::size_t index) { return (*static_cast<Body*>(context))(index); }, &body);
}

zStatus Succeed(void* /*context*/, std::size_t /*index*/)
{
    return zOK;
}

/// Lets threads go on once `expected` of them have come.
class Meeting
{
public:
    explicit Meeting(std::size_t expectedThreads)
        : expected(expectedThreads)
    {
    }

    /// False if the others do not come within a time that is long for any machine.
    bool Join()
    {
        std::unique_lock lock(mutex);
        ++present;
        everybodyCame.notify_all();
        return everybodyCame.wait_for(lock, std::chrono::seconds(60), [this] { return present >= expected; });
    }

private:
    std::size_t expected;
    std::size_t present = 0;
    std::mutex mutex;
    std::condition_variable everybodyCame;
};

/// Ends the process with 0 if the pool works, with the caller alone.
[[noreturn]] void AskForDefaultPoolWithoutThreads()
{
    // Room for a pool, but for no stack.
    const ResourceLimit addressSpace(RLIMIT_AS, TakenAddressSpace() + (rlim_t{1} << 20U));
    zThreadPool const pool = zThreadPool_Default();
    const zStatus status = zThreadPool_ParallelFor(pool, 100, Succeed, nullptr);
    std::_Exit(zThreadPool_Count(pool) == 1 && status == zOK ? 0 : 1);
}

constexpr std::size_t poolSizes[] = {1, 2, 3, 8};
} // namespace

TEST(ThreadPool, Default_pool_is_one_and_has_a_thread_for_each_processor)
{
    zThreadPool const pool = zThreadPool_Default();
    ASSERT_NE(pool, nullptr);
    EXPECT_EQ(zThreadPool_Default(), pool);
    EXPECT_EQ(zThreadPool_Count(pool), std::max(1U, std::thread::hardware_concurrency()));
    EXPECT_EQ(zThreadPool_ParallelFor(pool, 100, Succeed, nullptr), zOK);
}

TEST(ThreadPool, Default_pool_is_one_for_all_threads)
{
    std::vector<zThreadPool> seen(8);
    std::vector<std::thread> threads;
    for (zThreadPool& pool : seen)
    {
        threads.emplace_back([&pool] { pool = zThreadPool_Default(); });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(std::set<zThreadPool>(seen.begin(), seen.end()).size(), 1U);
}

TEST(ThreadPool, Construct_refuses_what_it_cannot_make)
{
    zThreadPool pool = nullptr;
    EXPECT_EQ(zThreadPool_Construct(nullptr, 1, nullptr), zERROR_MISSING);
    EXPECT_EQ(zThreadPool_Construct(&pool, 0, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zThreadPool_Construct(&pool, zTHREADPOOL_MAX_THREADS + 1, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(pool, nullptr);
}

TEST(ThreadPool, Construct_fails_if_the_system_gives_no_or_too_few_threads)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "The sanitizers need all of the address space.";
#endif
    const CountingAlloc alloc;
    // Room for the stack of no thread, and for a few of the many that are asked for.
    for (const rlim_t room : {rlim_t{0}, rlim_t{64} << 20U})
    {
        zThreadPool pool = nullptr;
        zStatus status = zOK;
        {
            const ResourceLimit addressSpace(RLIMIT_AS, TakenAddressSpace() + room);
            status = zThreadPool_Construct(&pool, zTHREADPOOL_MAX_THREADS, alloc.Get());
        }
        EXPECT_EQ(status, zERROR_MEMORY) << room;
        EXPECT_EQ(pool, nullptr);
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
    }
}

TEST(ThreadPool, Default_pool_is_the_caller_alone_if_the_system_gives_no_thread)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "The sanitizers need all of the address space.";
#endif
    // A process of its own, in which nobody has asked for the pool yet.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(AskForDefaultPoolWithoutThreads(), testing::ExitedWithCode(0), "");
}

TEST(ThreadPool, Operations_refuse_other_handles_and_need_a_body)
{
    zString string = nullptr;
    ASSERT_EQ(zString_Construct(&string, "no pool", nullptr), zOK);
    const Handle text(string);
    for (zObject handle : {text.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(zThreadPool_Count(handle), 0U);
        EXPECT_EQ(zThreadPool_ParallelFor(handle, 1, Succeed, nullptr), zERROR_PARAMETER);
    }
    EXPECT_EQ(zThreadPool_ParallelFor(Pool(2).Get(), 1, nullptr, nullptr), zERROR_MISSING);
}

TEST(ThreadPool, Every_index_is_called_once_and_done_when_the_loop_returns)
{
    for (const std::size_t threads : poolSizes)
    {
        const Handle pool = Pool(threads);
        EXPECT_EQ(zThreadPool_Count(pool.Get()), threads);
        for (const std::size_t count : {0U, 1U, 2U, 7U, 1000U})
        {
            std::vector<int> calls(count);
            auto body = [&calls](std::size_t index) { return ++calls[index], zOK; };
            EXPECT_EQ(ParallelFor(pool.Get(), count, body), zOK);
            EXPECT_EQ(calls, std::vector<int>(count, 1));
        }
    }
}

TEST(ThreadPool, All_threads_of_the_pool_work_the_caller_among_them)
{
    const Handle pool = Pool(4);
    Meeting meeting(4);
    std::mutex mutex;
    std::set<std::thread::id> workers;
    auto body = [&](std::size_t /*index*/) {
        {
            const std::lock_guard lock(mutex);
            workers.insert(std::this_thread::get_id());
        }
        return meeting.Join() ? zOK : -5;
    };
    EXPECT_EQ(ParallelFor(pool.Get(), 4, body), zOK);
    EXPECT_EQ(workers.size(), 4U);
    EXPECT_EQ(workers.count(std::this_thread::get_id()), 1U);
}

TEST(ThreadPool, Pool_of_one_works_in_the_calling_thread_in_order)
{
    const Handle pool = Pool(1);
    std::vector<std::size_t> order;
    auto body = [&order, caller = std::this_thread::get_id()](std::size_t index) {
        order.push_back(index);
        return std::this_thread::get_id() == caller ? zOK : -5;
    };
    EXPECT_EQ(ParallelFor(pool.Get(), 5, body), zOK);
    EXPECT_EQ(order, (std::vector<std::size_t>{0, 1, 2, 3, 4}));
}

TEST(ThreadPool, Failure_of_the_lowest_index_is_returned)
{
    for (const std::size_t threads : poolSizes)
    {
        const Handle pool = Pool(threads);
        auto body = [](std::size_t index) -> zStatus { return index < 10 ? zOK : -static_cast<zStatus>(index); };
        for (int round = 0; round < 200; ++round)
        {
            ASSERT_EQ(ParallelFor(pool.Get(), 100, body), -10);
        }
    }
}

TEST(ThreadPool, After_a_failure_no_further_index_is_begun)
{
    const Handle pool = Pool(1);
    std::size_t calls = 0;
    auto body = [&calls](std::size_t index) -> zStatus {
        ++calls;
        return index == 2 ? -5 : zOK;
    };
    EXPECT_EQ(ParallelFor(pool.Get(), std::numeric_limits<std::size_t>::max(), body), -5);
    EXPECT_EQ(calls, 3U);
}

TEST(ThreadPool, Exception_counts_as_a_failure_and_the_pool_goes_on)
{
    const Handle pool = Pool(2);
    auto body = [](std::size_t index) -> zStatus {
        if (index == 3)
        {
            throw std::runtime_error("body");
        }
        return zOK;
    };
    EXPECT_EQ(ParallelFor(pool.Get(), 10, body), zERROR_PRECONDITION);
    EXPECT_EQ(zThreadPool_ParallelFor(pool.Get(), 10, Succeed, nullptr), zOK);
}

TEST(ThreadPool, Nested_loops_do_not_wait_for_each_other)
{
    for (const std::size_t threads : poolSizes)
    {
        const Handle pool = Pool(threads);
        std::atomic<int> calls{0};
        auto innermost = [&calls](std::size_t /*index*/) { return ++calls, zOK; };
        auto inner = [&](std::size_t /*index*/) { return ParallelFor(pool.Get(), 10, innermost); };
        auto outer = [&](std::size_t /*index*/) { return ParallelFor(pool.Get(), 10, inner); };
        EXPECT_EQ(ParallelFor(pool.Get(), 10, outer), zOK);
        EXPECT_EQ(calls, 1000);
    }
}

TEST(ThreadPool, Several_threads_use_one_pool_at_once)
{
    const Handle pool = Pool(3);
    std::vector<z64s> sums(8, 0);
    std::vector<std::thread> callers;
    for (z64s& sum : sums)
    {
        callers.emplace_back([&sum, &pool] {
            for (int round = 0; round < 50; ++round)
            {
                std::vector<z64s> squares(100);
                auto body = [&squares](std::size_t index) {
                    squares[index] = static_cast<z64s>(index * index);
                    return zOK;
                };
                EXPECT_EQ(ParallelFor(pool.Get(), squares.size(), body), zOK);
                sum += std::accumulate(squares.begin(), squares.end(), z64s{0});
            }
        });
    }
    for (std::thread& caller : callers)
    {
        caller.join();
    }
    // The squares of 0 to 99 add up to 328350.
    EXPECT_EQ(sums, std::vector<z64s>(8, 50 * 328'350));
}

TEST(ThreadPool, What_bodies_wrote_is_seen_after_the_loop_and_objects_may_be_shared)
{
    const CountingAlloc alloc;
    {
        zArray1 array = nullptr;
        ASSERT_EQ(zArray1_Construct(&array, zTypeOf(z32s), 8, alloc.Get()), zOK);
        const Handle shared(array);
        const Handle pool = Pool(8);
        for (int round = 0; round < 50; ++round)
        {
            auto body = [array](std::size_t index) -> zStatus {
                zTRY(xzObject_ShareImpl(array));
                *static_cast<z32s*>(zArray1_At(array, index)) = static_cast<z32s>(index);
                return xzObject_DestroyImpl(array);
            };
            ASSERT_EQ(ParallelFor(pool.Get(), 8, body), zOK);
            const auto* const items = static_cast<z32s*>(zArray1_Items(array));
            ASSERT_EQ(std::accumulate(items, items + 8, 0), 28);
        }
        EXPECT_EQ(xzObject_ReferenceCount(array), 1);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(ThreadPool, Pool_that_ends_right_after_a_loop_leaves_nothing_behind)
{
    const CountingAlloc alloc;
    for (int round = 0; round < 100; ++round)
    {
        const Handle pool = Pool(4, alloc.Get());
        EXPECT_EQ(zThreadPool_ParallelFor(pool.Get(), 3, Succeed, nullptr), zOK);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(ThreadPool, Loop_without_memory_fails_and_calls_nothing)
{
    const CountingAlloc alloc;
    {
        const Handle pool = Pool(2, alloc.Get());
        int calls = 0;
        auto body = [&calls](std::size_t /*index*/) { return ++calls, zOK; };
        alloc.FailAt(1);
        EXPECT_EQ(ParallelFor(pool.Get(), 5, body), zERROR_MEMORY);
        EXPECT_EQ(calls, 0);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(ThreadPool, Failing_requests_leave_nothing_behind)
{
    // The pool and the loop.
    EXPECT_EQ(WalkAllocations([](zAlloc alloc) {
                  zThreadPool pool = nullptr;
                  zStatus status = zThreadPool_Construct(&pool, 2, alloc);
                  status = status == zOK ? zThreadPool_ParallelFor(pool, 5, Succeed, nullptr) : status;
                  static_cast<void>(xzObject_DestroyImpl(pool));
                  return status;
              }),
              2U);
}

TEST(ThreadPool, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&alloc] {
        zThreadPool pool = nullptr;
        zStatus status = zThreadPool_Construct(&pool, 1, alloc.Get());
        status = status == zOK ? zThreadPool_ParallelFor(pool, 5, Succeed, nullptr) : status;
        static_cast<void>(xzObject_DestroyImpl(pool));
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GE(calls, 4U);
}
