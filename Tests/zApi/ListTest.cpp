#include <Support/FaultWalk.h>

#include <TaApi/Object.h>
#include <zApi/zList.h>
#include <zApi/zString.h>

#include <cstdint>
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

Handle List(zType itemType, std::size_t capacity = 0, zAlloc alloc = nullptr)
{
    zList list = nullptr;
    EXPECT_EQ(zList_Construct(&list, itemType, capacity, alloc), zOK);
    return Handle(list);
}

Handle Numbers(const std::vector<z32s>& numbers)
{
    Handle list = List(zTypeOf(z32s));
    for (const z32s number : numbers)
    {
        EXPECT_EQ(zList_Add(list.Get(), &number), zOK);
    }
    return list;
}

/// The numbers found by going from place to place.
std::vector<z32s> NumbersIn(const Handle& list)
{
    std::vector<z32s> numbers;
    for (zListItem place = zList_First(list.Get()); place != nullptr; place = zList_Next(list.Get(), place))
    {
        numbers.push_back(*static_cast<z32s*>(zList_At(list.Get(), place)));
    }
    return numbers;
}

z32s NumberAt(const Handle& list, std::size_t index)
{
    return *static_cast<z32s*>(zList_At(list.Get(), zList_AtIndex(list.Get(), index)));
}

Handle Text(const char* text)
{
    zString string = nullptr;
    EXPECT_EQ(zString_Construct(&string, text, nullptr), zOK);
    return Handle(string);
}

zString TextAt(const Handle& list, std::size_t index)
{
    return *static_cast<zString*>(zList_At(list.Get(), zList_AtIndex(list.Get(), index)));
}

/// Fills a list of strings past its first room, clones it, and cleans up.
zStatus BuildAndCloneTexts(zAlloc alloc)
{
    zList list = nullptr;
    zString text = nullptr;
    zList clone = nullptr;
    zStatus status = zList_Construct(&list, zTypeOf(zString), 1, alloc);
    status = status == zOK ? zString_Construct(&text, "content", alloc) : status;
    status = status == zOK ? zList_Add(list, &text) : status;
    status = status == zOK ? zList_Add(list, &text) : status;
    status = status == zOK ? xzObject_CloneImpl(&clone, list, alloc) : status;
    status = status == zOK ? zList_Purge(clone) : status;
    status = status == zOK ? zList_Remove(list, zList_First(list), nullptr) : status;
    for (zObject object : {clone, text, list})
    {
        static_cast<void>(xzObject_DestroyImpl(object));
    }
    return status;
}
} // namespace

TEST(List, New_list_is_empty)
{
    const Handle list = List(zTypeOf(zPoint3d64f), 8);
    EXPECT_EQ(zList_Count(list.Get()), 0U);
    EXPECT_EQ(zList_ItemType(list.Get()), zTypeOf(zPoint3d64f));
    EXPECT_EQ(zList_First(list.Get()), nullptr);
    EXPECT_EQ(zList_AtIndex(list.Get(), 0), nullptr);
}

TEST(List, Construct_refuses_what_it_cannot_make)
{
    zList list = nullptr;
    EXPECT_EQ(zList_Construct(nullptr, zTypeOf(z8u), 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(zList_Construct(&list, nullptr, 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(zList_Construct(&list, zTypeOf(z8u), HUGE_COUNT, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zList_Construct(&list, zBytes_GetType(HUGE_COUNT), 0, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zList_Construct(&list, zTypeOf(z8u), HUGE_COUNT / 64, nullptr), zERROR_MEMORY);
    EXPECT_EQ(list, nullptr);
}

TEST(List, Keeps_items_in_order_while_it_grows)
{
    std::vector<z32s> numbers(1000);
    for (std::size_t i = 0; i < numbers.size(); ++i)
    {
        numbers[i] = static_cast<z32s>(i * 3);
    }
    const Handle list = Numbers(numbers);
    EXPECT_EQ(NumbersIn(list), numbers);
    EXPECT_EQ(zList_Count(list.Get()), 1000U);
}

TEST(List, Place_is_found_by_index_from_either_end)
{
    const Handle list = Numbers({10, 11, 12, 13, 14});
    for (std::size_t i = 0; i < 5; ++i)
    {
        EXPECT_EQ(NumberAt(list, i), static_cast<z32s>(10 + i));
    }
    EXPECT_EQ(zList_AtIndex(list.Get(), 5), nullptr);
}

TEST(List, Items_are_aligned_and_never_move)
{
    const Handle list = List(zBytes_GetType(5), 1);
    const char bytes[5] = {'a', 'b', 'c', 'd', 'e'};
    ASSERT_EQ(zList_Add(list.Get(), bytes), zOK);
    const void* const first = zList_At(list.Get(), zList_First(list.Get()));
    for (int i = 0; i < 100; ++i)
    {
        ASSERT_EQ(zList_Add(list.Get(), bytes), zOK);
    }
    EXPECT_EQ(zList_At(list.Get(), zList_First(list.Get())), first);
    for (zListItem place = zList_First(list.Get()); place != nullptr; place = zList_Next(list.Get(), place))
    {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(zList_At(list.Get(), place)) % 16, 0U);
    }
}

TEST(List, Remove_hands_the_item_out_and_closes_the_gap)
{
    const Handle list = Numbers({1, 2, 3, 4});
    z32s removed = 0;
    ASSERT_EQ(zList_Remove(list.Get(), zList_AtIndex(list.Get(), 1), &removed), zOK);
    EXPECT_EQ(removed, 2);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{1, 3, 4}));
    ASSERT_EQ(zList_Remove(list.Get(), zList_First(list.Get()), nullptr), zOK);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{3, 4}));
    ASSERT_EQ(zList_Remove(list.Get(), zList_AtIndex(list.Get(), 1), nullptr), zOK);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{3}));
    ASSERT_EQ(zList_Remove(list.Get(), zList_First(list.Get()), nullptr), zOK);
    EXPECT_EQ(zList_Count(list.Get()), 0U);
    EXPECT_EQ(zList_First(list.Get()), nullptr);
}

TEST(List, Only_places_of_the_list_itself_are_taken)
{
    const Handle list = Numbers({1, 2});
    const Handle other = Numbers({3});
    zListItem const removed = zList_First(list.Get());
    ASSERT_EQ(zList_Remove(list.Get(), removed, nullptr), zOK);
    for (zListItem place : {removed, zList_First(other.Get()), zListItem{nullptr}})
    {
        EXPECT_EQ(zList_Remove(list.Get(), place, nullptr), zERROR_MISSING);
        EXPECT_EQ(zList_Next(list.Get(), place), nullptr);
        EXPECT_EQ(zList_At(list.Get(), place), nullptr);
    }
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{2}));
    EXPECT_EQ(NumbersIn(other), (std::vector<z32s>{3}));
}

TEST(List, Room_of_removed_items_is_used_again)
{
    const CountingAlloc alloc;
    {
        const Handle list = List(zTypeOf(z32s), 2, alloc.Get());
        const std::size_t requests = alloc.Requests();
        for (z32s i = 0; i < 100; ++i)
        {
            ASSERT_EQ(zList_Add(list.Get(), &i), zOK);
            ASSERT_EQ(zList_Add(list.Get(), &i), zOK);
            ASSERT_EQ(zList_Remove(list.Get(), zList_First(list.Get()), nullptr), zOK);
            ASSERT_EQ(zList_Purge(list.Get()), zOK);
        }
        EXPECT_EQ(alloc.Requests(), requests);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(List, Operations_refuse_other_handles)
{
    const Handle text = Text("no list");
    const z32s number = 1;
    for (zObject handle : {text.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(zList_Add(handle, &number), zERROR_PARAMETER);
        EXPECT_EQ(zList_Remove(handle, nullptr, nullptr), zERROR_PARAMETER);
        EXPECT_EQ(zList_Purge(handle), zERROR_PARAMETER);
        EXPECT_EQ(zList_Count(handle), 0U);
        EXPECT_EQ(zList_ItemType(handle), nullptr);
        EXPECT_EQ(zList_First(handle), nullptr);
        EXPECT_EQ(zList_AtIndex(handle, 0), nullptr);
        EXPECT_EQ(zList_Next(handle, nullptr), nullptr);
        EXPECT_EQ(zList_At(handle, nullptr), nullptr);
    }
    EXPECT_EQ(zList_Add(Numbers({1}).Get(), nullptr), zERROR_MISSING);
}

TEST(List, Objects_are_shared_by_add_and_handed_over_by_remove)
{
    const Handle text = Text("shared");
    zString raw = text.Get();
    {
        const Handle list = List(zTypeOf(zString));
        for (int i = 0; i < 4; ++i)
        {
            ASSERT_EQ(zList_Add(list.Get(), &raw), zOK);
        }
        EXPECT_EQ(xzObject_ReferenceCount(raw), 5);
        zString removed = nullptr;
        ASSERT_EQ(zList_Remove(list.Get(), zList_First(list.Get()), &removed), zOK);
        EXPECT_EQ(removed, raw);
        EXPECT_EQ(xzObject_ReferenceCount(raw), 5);
        ASSERT_EQ(xzObject_DestroyImpl(removed), zOK);
        ASSERT_EQ(zList_Remove(list.Get(), zList_First(list.Get()), nullptr), zOK);
        EXPECT_EQ(xzObject_ReferenceCount(raw), 3);
        ASSERT_EQ(zList_Purge(list.Get()), zOK);
        EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
        ASSERT_EQ(zList_Add(list.Get(), &raw), zOK);
    }
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
}

TEST(List, Clone_of_objects_is_deep)
{
    const Handle text = Text("deep");
    zString raw = text.Get();
    zString none = nullptr;
    const Handle list = List(zTypeOf(zString));
    ASSERT_EQ(zList_Add(list.Get(), &raw), zOK);
    ASSERT_EQ(zList_Add(list.Get(), &none), zOK);
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, list.Get(), nullptr), zOK);
    const Handle clone(cloned);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 2);
    EXPECT_EQ(zList_Count(clone.Get()), 2U);
    EXPECT_NE(TextAt(clone, 0), raw);
    EXPECT_STREQ(zString_Chars(TextAt(clone, 0)), "deep");
    EXPECT_EQ(TextAt(clone, 1), nullptr);
}

TEST(List, Append_that_cannot_grow_keeps_what_stood_before)
{
    const CountingAlloc alloc;
    {
        const Handle list = List(zTypeOf(z32s), 1, alloc.Get());
        const z32s number = 7;
        ASSERT_EQ(zList_Add(list.Get(), &number), zOK);
        alloc.FailAt(1);
        EXPECT_EQ(zList_Add(list.Get(), &number), zERROR_MEMORY);
        EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{7}));
        EXPECT_EQ(zList_Add(list.Get(), &number), zOK);
        EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{7, 7}));
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(List, Does_as_a_deque_does_on_random_operations)
{
    constexpr unsigned SEED = 11;
    SCOPED_TRACE("seed " + std::to_string(SEED));
    std::mt19937 random(SEED);
    const Handle list = List(zTypeOf(z32s));
    std::deque<z32s> model;
    for (int step = 0; step < 20'000; ++step)
    {
        const auto number = static_cast<z32s>(random());
        const std::size_t index = model.empty() ? 0 : random() % model.size();
        if (random() % 100 < 55)
        {
            ASSERT_EQ(zList_Add(list.Get(), &number), zOK);
            model.push_back(number);
        }
        else if (!model.empty())
        {
            z32s removed = 0;
            ASSERT_EQ(NumberAt(list, index), model[index]);
            ASSERT_EQ(zList_Remove(list.Get(), zList_AtIndex(list.Get(), index), &removed), zOK);
            ASSERT_EQ(removed, model[index]);
            model.erase(model.begin() + static_cast<std::ptrdiff_t>(index));
        }
        ASSERT_EQ(zList_Count(list.Get()), model.size());
    }
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{model.begin(), model.end()}));
}

TEST(List, Failing_requests_leave_nothing_behind)
{
    // List 2, string 2, growing 1; in the clone list 2 and two strings of 2.
    EXPECT_EQ(WalkAllocations(BuildAndCloneTexts), 11U);
}

TEST(List, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&alloc] {
        const zStatus status = BuildAndCloneTexts(alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GE(calls, 11U);
}
