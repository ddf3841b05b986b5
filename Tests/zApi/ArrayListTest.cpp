#include <Support/FaultWalk.h>

#include <TaApi/Object.h>
#include <zApi/zArrayList.h>
#include <zApi/zString.h>

#include <gtest/gtest.h>
#include <limits>
#include <vector>

using namespace Support;
using Handle = Ta::Object<void*>;

namespace
{
Handle List(zType itemType, std::size_t capacity = 0, zAlloc alloc = nullptr)
{
    zArrayList list = nullptr;
    EXPECT_EQ(zArrayList_Construct(&list, itemType, capacity, alloc), zOK);
    return Handle(list);
}

Handle Numbers(const std::vector<z32s>& numbers)
{
    Handle list = List(zTypeOf(z32s));
    for (const z32s number : numbers)
    {
        EXPECT_EQ(zArrayList_Add(list.Get(), &number), zOK);
    }
    return list;
}

std::vector<z32s> NumbersIn(const Handle& list)
{
    const auto* const items = static_cast<z32s*>(zArrayList_Items(list.Get()));
    return {items, items + zArrayList_Count(list.Get())};
}

Handle Text(const char* text)
{
    zString string = nullptr;
    EXPECT_EQ(zString_Construct(&string, text, nullptr), zOK);
    return Handle(string);
}

zString TextAt(zArrayList list, std::size_t index)
{
    return *static_cast<zString*>(zArrayList_At(list, index));
}

constexpr std::size_t HUGE_COUNT = std::numeric_limits<std::size_t>::max();

// Fills a list of strings past its first room, clones it, and cleans up.
zStatus BuildAndCloneTexts(zAlloc alloc)
{
    zArrayList list = nullptr;
    zString text = nullptr;
    zArrayList clone = nullptr;
    zStatus status = zArrayList_Construct(&list, zTypeOf(zString), 1, alloc);
    status = status == zOK ? zString_Construct(&text, "content", alloc) : status;
    status = status == zOK ? zArrayList_Add(list, &text) : status;
    status = status == zOK ? zArrayList_Add(list, &text) : status;
    status = status == zOK ? xzObject_CloneImpl(&clone, list, alloc) : status;
    for (zObject object : {clone, text, list})
    {
        static_cast<void>(xzObject_DestroyImpl(object));
    }
    return status;
}
} // namespace

TEST(ArrayList, New_list_is_empty_and_has_the_room_asked_for)
{
    const Handle list = List(zTypeOf(zPoint3d64f), 8);
    EXPECT_EQ(zArrayList_Count(list.Get()), 0U);
    EXPECT_EQ(zArrayList_ItemType(list.Get()), zTypeOf(zPoint3d64f));
    EXPECT_NE(zArrayList_Items(list.Get()), nullptr);
    EXPECT_EQ(zArrayList_At(list.Get(), 0), nullptr);
    EXPECT_EQ(zArrayList_CountUp(list.Get(), 8), zOK);
    EXPECT_EQ(zArrayList_CountUp(list.Get(), 1), zERROR_PARAMETER);
}

TEST(ArrayList, List_without_room_has_no_items)
{
    EXPECT_EQ(zArrayList_Items(List(zTypeOf(z8u)).Get()), nullptr);
}

TEST(ArrayList, Construct_refuses_what_it_cannot_make)
{
    zArrayList list = nullptr;
    EXPECT_EQ(zArrayList_Construct(nullptr, zTypeOf(z8u), 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(zArrayList_Construct(&list, nullptr, 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(zArrayList_Construct(&list, zTypeOf(z16s), HUGE_COUNT, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zArrayList_Construct(&list, zTypeOf(z8u), HUGE_COUNT, nullptr), zERROR_MEMORY);
    EXPECT_EQ(list, nullptr);
}

TEST(ArrayList, Keeps_items_in_order_while_it_grows)
{
    std::vector<z32s> numbers(1000);
    for (std::size_t i = 0; i < numbers.size(); ++i)
    {
        numbers[i] = static_cast<z32s>(i * 3);
    }
    EXPECT_EQ(NumbersIn(Numbers(numbers)), numbers);
}

TEST(ArrayList, Item_of_the_list_itself_can_be_added_when_it_grows)
{
    const Handle list = List(zTypeOf(z32s), 1);
    const z32s first = 42;
    ASSERT_EQ(zArrayList_Add(list.Get(), &first), zOK);
    ASSERT_EQ(zArrayList_Add(list.Get(), zArrayList_At(list.Get(), 0)), zOK);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{42, 42}));
}

TEST(ArrayList, Run_written_behind_the_last_item_is_counted_up)
{
    const Handle list = Numbers({1, 2});
    ASSERT_EQ(zArrayList_Reserve(list.Get(), 5), zOK);
    auto* const items = static_cast<z32s*>(zArrayList_Items(list.Get()));
    items[2] = 3;
    items[3] = 4;
    ASSERT_EQ(zArrayList_CountUp(list.Get(), 2), zOK);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{1, 2, 3, 4}));
}

TEST(ArrayList, Reserve_keeps_items_and_never_shrinks)
{
    const Handle list = Numbers({1, 2, 3});
    ASSERT_EQ(zArrayList_Reserve(list.Get(), 100), zOK);
    const void* const items = zArrayList_Items(list.Get());
    ASSERT_EQ(zArrayList_Reserve(list.Get(), 1), zOK);
    EXPECT_EQ(zArrayList_Items(list.Get()), items);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{1, 2, 3}));
    EXPECT_EQ(zArrayList_CountUp(list.Get(), 97), zOK);
}

TEST(ArrayList, Reserve_beyond_the_address_space_leaves_the_list_as_it_was)
{
    const Handle list = Numbers({1, 2, 3});
    EXPECT_EQ(zArrayList_Reserve(list.Get(), HUGE_COUNT), zERROR_PARAMETER);
    EXPECT_EQ(zArrayList_Reserve(list.Get(), HUGE_COUNT / 4), zERROR_MEMORY);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{1, 2, 3}));
}

TEST(ArrayList, Remove_hands_the_item_out_and_closes_the_gap)
{
    const Handle list = Numbers({1, 2, 3});
    z32s removed = 0;
    ASSERT_EQ(zArrayList_Remove(list.Get(), 1, &removed), zOK);
    EXPECT_EQ(removed, 2);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{1, 3}));
    ASSERT_EQ(zArrayList_Remove(list.Get(), 1, nullptr), zOK);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{1}));
    EXPECT_EQ(zArrayList_Remove(list.Get(), 1, nullptr), zERROR_PARAMETER);
}

TEST(ArrayList, Purge_empties_and_keeps_the_room)
{
    const Handle list = Numbers({1, 2, 3});
    const void* const items = zArrayList_Items(list.Get());
    ASSERT_EQ(zArrayList_Purge(list.Get()), zOK);
    EXPECT_EQ(zArrayList_Count(list.Get()), 0U);
    const z32s number = 9;
    ASSERT_EQ(zArrayList_Add(list.Get(), &number), zOK);
    EXPECT_EQ(zArrayList_Items(list.Get()), items);
    EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{9}));
}

TEST(ArrayList, Operations_refuse_other_handles)
{
    const Handle text = Text("no list");
    const z32s number = 1;
    for (zObject handle : {text.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(zArrayList_Add(handle, &number), zERROR_PARAMETER);
        EXPECT_EQ(zArrayList_CountUp(handle, 0), zERROR_PARAMETER);
        EXPECT_EQ(zArrayList_Reserve(handle, 1), zERROR_PARAMETER);
        EXPECT_EQ(zArrayList_Remove(handle, 0, nullptr), zERROR_PARAMETER);
        EXPECT_EQ(zArrayList_Purge(handle), zERROR_PARAMETER);
        EXPECT_EQ(zArrayList_Count(handle), 0U);
        EXPECT_EQ(zArrayList_ItemType(handle), nullptr);
        EXPECT_EQ(zArrayList_Items(handle), nullptr);
        EXPECT_EQ(zArrayList_At(handle, 0), nullptr);
    }
}

TEST(ArrayList, Adding_needs_an_item)
{
    EXPECT_EQ(zArrayList_Add(List(zTypeOf(z32s)).Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(zArrayList_Add(Numbers({1}).Get(), nullptr), zERROR_MISSING);
}

TEST(ArrayList, Objects_are_shared_by_add_and_handed_over_by_remove)
{
    const Handle text = Text("shared");
    zString raw = text.Get();
    const Handle list = List(zTypeOf(zString));
    ASSERT_EQ(zArrayList_Add(list.Get(), &raw), zOK);
    ASSERT_EQ(zArrayList_Add(list.Get(), &raw), zOK);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 3);

    zString removed = nullptr;
    ASSERT_EQ(zArrayList_Remove(list.Get(), 0, &removed), zOK);
    EXPECT_EQ(removed, raw);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 3);
    ASSERT_EQ(xzObject_DestroyImpl(removed), zOK);

    ASSERT_EQ(zArrayList_Remove(list.Get(), 0, nullptr), zOK);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
}

TEST(ArrayList, Objects_are_released_by_purge_and_by_the_end_of_the_list)
{
    const Handle text = Text("shared");
    zString raw = text.Get();
    {
        const Handle list = List(zTypeOf(zString));
        ASSERT_EQ(zArrayList_Add(list.Get(), &raw), zOK);
        ASSERT_EQ(zArrayList_Purge(list.Get()), zOK);
        EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
        ASSERT_EQ(zArrayList_Add(list.Get(), &raw), zOK);
        EXPECT_EQ(xzObject_ReferenceCount(raw), 2);
    }
    EXPECT_EQ(xzObject_ReferenceCount(raw), 1);
}

TEST(ArrayList, Null_object_is_an_item_too)
{
    const Handle list = List(zTypeOf(zString));
    zString none = nullptr;
    ASSERT_EQ(zArrayList_Add(list.Get(), &none), zOK);
    EXPECT_EQ(zArrayList_Count(list.Get()), 1U);
    EXPECT_EQ(TextAt(list.Get(), 0), nullptr);
}

TEST(ArrayList, Clone_of_values_is_independent)
{
    const Handle list = Numbers({1, 2});
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, list.Get(), nullptr), zOK);
    const Handle clone(cloned);
    ASSERT_EQ(zArrayList_Purge(list.Get()), zOK);
    const z32s number = 3;
    ASSERT_EQ(zArrayList_Add(clone.Get(), &number), zOK);
    EXPECT_EQ(NumbersIn(clone), (std::vector<z32s>{1, 2, 3}));
}

TEST(ArrayList, Clone_of_objects_is_deep)
{
    const Handle text = Text("deep");
    zString raw = text.Get();
    const Handle list = List(zTypeOf(zString));
    ASSERT_EQ(zArrayList_Add(list.Get(), &raw), zOK);
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, list.Get(), nullptr), zOK);
    const Handle clone(cloned);
    EXPECT_EQ(xzObject_ReferenceCount(raw), 2);
    EXPECT_NE(TextAt(clone.Get(), 0), raw);
    EXPECT_STREQ(zString_Chars(TextAt(clone.Get(), 0)), "deep");
}

TEST(ArrayList, Append_that_cannot_grow_keeps_what_stood_before)
{
    const CountingAlloc alloc;
    {
        const Handle list = List(zTypeOf(z32s), 2, alloc.Get());
        const z32s number = 7;
        ASSERT_EQ(zArrayList_Add(list.Get(), &number), zOK);
        ASSERT_EQ(zArrayList_Add(list.Get(), &number), zOK);
        alloc.FailAt(1);
        EXPECT_EQ(zArrayList_Add(list.Get(), &number), zERROR_MEMORY);
        EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{7, 7}));
        EXPECT_EQ(zArrayList_Add(list.Get(), &number), zOK);
        EXPECT_EQ(NumbersIn(list), (std::vector<z32s>{7, 7, 7}));
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(ArrayList, Failing_requests_leave_nothing_behind)
{
    // List 2, string 2, growing 1; in the clone list 2 and two strings of 2.
    EXPECT_EQ(WalkAllocations(BuildAndCloneTexts), 11U);
}

TEST(ArrayList, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&alloc] {
        const zStatus status = BuildAndCloneTexts(alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GE(calls, 11U);
}
