#include <Support/FaultWalk.h>

#include <TaApi/Object.h>
#include <zApi/zQueue.h>
#include <zApi/zString.h>

#include <deque>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

using namespace Support;
using Handle = Ta::Object<void*>;

namespace
{
constexpr std::size_t HUGE_COUNT = std::numeric_limits<std::size_t>::max();

Handle Queue(zType itemType, std::size_t capacity = 0, zAlloc alloc = nullptr)
{
    zQueue queue = nullptr;
    EXPECT_EQ(zQueue_Construct(&queue, itemType, capacity, alloc), zOK);
    return Handle(queue);
}

void Add(const Handle& queue, const std::vector<z32s>& numbers)
{
    for (const z32s number : numbers)
    {
        ASSERT_EQ(zQueue_Add(queue.Get(), &number), zOK);
    }
}

z32s Take(const Handle& queue)
{
    z32s number = -1;
    EXPECT_EQ(zQueue_Remove(queue.Get(), &number), zOK);
    return number;
}

std::vector<z32s> TakeAll(const Handle& queue)
{
    std::vector<z32s> numbers;
    while (zQueue_Count(queue.Get()) > 0)
    {
        numbers.push_back(Take(queue));
    }
    return numbers;
}

/// A queue of room 4 that holds 2, 3, 4, 5 and wraps behind the 3.
Handle Wrapped()
{
    Handle queue = Queue(zTypeOf(z32s), 4);
    Add(queue, {0, 1, 2, 3});
    EXPECT_EQ(Take(queue), 0);
    EXPECT_EQ(Take(queue), 1);
    Add(queue, {4, 5});
    return queue;
}

Handle Text(const char* text)
{
    zString string = nullptr;
    EXPECT_EQ(zString_Construct(&string, text, nullptr), zOK);
    return Handle(string);
}

/// Fills a queue of strings until it wraps and grows, clones it, and cleans up.
zStatus BuildAndCloneTexts(zAlloc alloc)
{
    zQueue queue = nullptr;
    zString text = nullptr;
    zQueue clone = nullptr;
    zStatus status = zQueue_Construct(&queue, zTypeOf(zString), 2, alloc);
    status = status == zOK ? zString_Construct(&text, "content", alloc) : status;
    status = status == zOK ? zQueue_Add(queue, &text) : status;
    status = status == zOK ? zQueue_Add(queue, &text) : status;
    status = status == zOK ? zQueue_Remove(queue, nullptr) : status;
    status = status == zOK ? zQueue_Add(queue, &text) : status;
    status = status == zOK ? xzObject_CloneImpl(&clone, queue, alloc) : status;
    status = status == zOK ? zQueue_Add(queue, &text) : status;
    status = status == zOK ? zQueue_Purge(clone) : status;
    for (zObject object : {clone, text, queue})
    {
        static_cast<void>(xzObject_DestroyImpl(object));
    }
    return status;
}
} // namespace

TEST(Queue, New_queue_is_empty)
{
    const Handle queue = Queue(zTypeOf(zPoint3d64f), 8);
    EXPECT_EQ(zQueue_Count(queue.Get()), 0U);
    EXPECT_EQ(zQueue_ItemType(queue.Get()), zTypeOf(zPoint3d64f));
    EXPECT_EQ(zQueue_Remove(queue.Get(), nullptr), zERROR_MISSING);
}

TEST(Queue, Construct_refuses_what_it_cannot_make)
{
    zQueue queue = nullptr;
    EXPECT_EQ(zQueue_Construct(nullptr, zTypeOf(z8u), 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(zQueue_Construct(&queue, nullptr, 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(zQueue_Construct(&queue, zTypeOf(z16s), HUGE_COUNT, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zQueue_Construct(&queue, zTypeOf(z8u), HUGE_COUNT, nullptr), zERROR_MEMORY);
    EXPECT_EQ(queue, nullptr);
}

TEST(Queue, First_in_is_first_out_also_where_the_ring_wraps_and_grows)
{
    EXPECT_EQ(TakeAll(Wrapped()), (std::vector<z32s>{2, 3, 4, 5}));
    const Handle growing = Wrapped();
    Add(growing, {6, 7, 8});
    EXPECT_EQ(TakeAll(growing), (std::vector<z32s>{2, 3, 4, 5, 6, 7, 8}));
}

TEST(Queue, Without_first_room_it_grows_all_the_same)
{
    const Handle queue = Queue(zTypeOf(z32s));
    Add(queue, {1, 2});
    EXPECT_EQ(TakeAll(queue), (std::vector<z32s>{1, 2}));
}

TEST(Queue, Within_its_room_it_asks_for_no_memory)
{
    const CountingAlloc alloc;
    {
        const Handle queue = Queue(zTypeOf(z32s), 2, alloc.Get());
        const std::size_t requests = alloc.Requests();
        for (z32s i = 0; i < 100; ++i)
        {
            Add(queue, {i, i + 1});
            ASSERT_EQ(Take(queue), i);
            ASSERT_EQ(zQueue_Purge(queue.Get()), zOK);
        }
        EXPECT_EQ(alloc.Requests(), requests);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Queue, Operations_refuse_other_handles)
{
    const Handle text = Text("no queue");
    z32s number = 1;
    for (zObject handle : {text.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(zQueue_Add(handle, &number), zERROR_PARAMETER);
        EXPECT_EQ(zQueue_Remove(handle, &number), zERROR_PARAMETER);
        EXPECT_EQ(zQueue_Purge(handle), zERROR_PARAMETER);
        EXPECT_EQ(zQueue_Count(handle), 0U);
        EXPECT_EQ(zQueue_ItemType(handle), nullptr);
    }
    EXPECT_EQ(number, 1);
    EXPECT_EQ(zQueue_Add(Queue(zTypeOf(z32s)).Get(), nullptr), zERROR_MISSING);
}

TEST(Queue, Objects_are_shared_by_add_and_handed_over_by_remove)
{
    const Handle text = Text("shared");
    zString raw = text.Get();
    {
        const Handle queue = Queue(zTypeOf(zString), 4);
        for (int i = 0; i < 4; ++i)
        {
            ASSERT_EQ(zQueue_Add(queue.Get(), &raw), zOK);
        }
        EXPECT_EQ(xzObject_ReferenceCount(raw), 5);
        zString removed = nullptr;
        ASSERT_EQ(zQueue_Remove(queue.Get(), &removed), zOK);
        EXPECT_EQ(removed, raw);
        EXPECT_EQ(xzObject_ReferenceCount(raw), 5);
        ASSERT_EQ(xzObject_DestroyImpl(removed), zOK);
        ASSERT_EQ(zQueue_Remove(queue.Get(), nullptr), zOK);
        EXPECT_EQ(xzObject_ReferenceCount(raw), 3);
        ASSERT_EQ(zQueue_Add(queue.Get(), &raw), zOK);
        ASSERT_EQ(zQueue_Purge(queue.Get()), zOK);
        EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
        ASSERT_EQ(zQueue_Add(queue.Get(), &raw), zOK);
    }
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
}

TEST(Queue, Clone_of_a_wrapped_queue_holds_the_same_and_is_independent)
{
    const Handle queue = Wrapped();
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, queue.Get(), nullptr), zOK);
    const Handle clone(cloned);
    ASSERT_EQ(zQueue_Purge(queue.Get()), zOK);
    Add(clone, {6});
    EXPECT_EQ(TakeAll(clone), (std::vector<z32s>{2, 3, 4, 5, 6}));
}

TEST(Queue, Clone_of_an_empty_queue_is_empty)
{
    const Handle queue = Queue(zTypeOf(z32s));
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, queue.Get(), nullptr), zOK);
    const Handle clone(cloned);
    EXPECT_EQ(zQueue_Count(clone.Get()), 0U);
    EXPECT_EQ(zQueue_ItemType(clone.Get()), zTypeOf(z32s));
}

TEST(Queue, Clone_of_objects_is_deep)
{
    const Handle text = Text("deep");
    zString raw = text.Get();
    const Handle queue = Queue(zTypeOf(zString));
    ASSERT_EQ(zQueue_Add(queue.Get(), &raw), zOK);
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, queue.Get(), nullptr), zOK);
    const Handle clone(cloned);
    zString removed = nullptr;
    ASSERT_EQ(zQueue_Remove(clone.Get(), &removed), zOK);
    const Handle copy(removed);
    EXPECT_NE(removed, raw);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 2);
    EXPECT_STREQ(zString_Chars(removed), "deep");
}

TEST(Queue, Append_that_cannot_grow_keeps_what_stood_before)
{
    const CountingAlloc alloc;
    {
        const Handle queue = Queue(zTypeOf(z32s), 1, alloc.Get());
        Add(queue, {7});
        const z32s number = 8;
        alloc.FailAt(1);
        EXPECT_EQ(zQueue_Add(queue.Get(), &number), zERROR_MEMORY);
        Add(queue, {9});
        EXPECT_EQ(TakeAll(queue), (std::vector<z32s>{7, 9}));
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Queue, Does_as_a_deque_does_on_random_operations)
{
    constexpr unsigned SEED = 12;
    SCOPED_TRACE("seed " + std::to_string(SEED));
    std::mt19937 random(SEED);
    const Handle queue = Queue(zTypeOf(z32s), 3);
    std::deque<z32s> model;
    for (int step = 0; step < 20'000; ++step)
    {
        const auto choice = random() % 1000;
        // Filling and draining take turns, so that the ring wraps at many places and sizes.
        const unsigned addShare = step / 500 % 2 == 0 ? 600 : 400;
        if (choice < addShare)
        {
            const auto number = static_cast<z32s>(random());
            Add(queue, {number});
            model.push_back(number);
        }
        else if (!model.empty())
        {
            ASSERT_EQ(Take(queue), model.front());
            model.pop_front();
        }
        ASSERT_EQ(zQueue_Count(queue.Get()), model.size());
    }
    EXPECT_EQ(TakeAll(queue), (std::vector<z32s>{model.begin(), model.end()}));
}

TEST(Queue, Failing_requests_leave_nothing_behind)
{
    // Queue 2, string 2; in the clone queue 2 and two strings of 2; growing 1.
    EXPECT_EQ(WalkAllocations(BuildAndCloneTexts), 11U);
}

TEST(Queue, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&alloc] {
        const zStatus status = BuildAndCloneTexts(alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GE(calls, 11U);
}
