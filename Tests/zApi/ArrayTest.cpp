#include <Support/FaultWalk.h>

#include <TaApi/Object.h>
#include <zApi/zArray1.h>
#include <zApi/zArray2.h>
#include <zApi/zString.h>

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>

using namespace Support;
using Handle = Ta::Object<void*>;

namespace
{
Handle Array1(zType itemType, std::size_t length, zAlloc alloc = nullptr)
{
    zArray1 array = nullptr;
    EXPECT_EQ(zArray1_Construct(&array, itemType, length, alloc), zOK);
    return Handle(array);
}

Handle Array2(zType itemType, std::size_t rows, std::size_t columns, zAlloc alloc = nullptr)
{
    zArray2 array = nullptr;
    EXPECT_EQ(zArray2_Construct(&array, itemType, rows, columns, alloc), zOK);
    return Handle(array);
}

Handle Text(const char* text, zAlloc alloc = nullptr)
{
    zString string = nullptr;
    EXPECT_EQ(zString_Construct(&string, text, alloc), zOK);
    return Handle(string);
}

zString TextAt(zArray2 array, std::size_t row, std::size_t column)
{
    return *static_cast<zString*>(zArray2_At(array, row, column));
}

constexpr std::size_t HUGE_COUNT = std::numeric_limits<std::size_t>::max();

// Builds a 1 x 2 array of strings, clones it, and cleans up.
zStatus BuildAndCloneTexts(zAlloc alloc)
{
    zArray2 array = nullptr;
    zString text = nullptr;
    zArray2 clone = nullptr;
    zStatus status = zArray2_Construct(&array, zTypeOf(zString), 1, 2, alloc);
    status = status == zOK ? zString_Construct(&text, "content", alloc) : status;
    status = status == zOK ? zArray2_SetItem(array, 0, 0, &text) : status;
    status = status == zOK ? zArray2_SetItem(array, 0, 1, &text) : status;
    status = status == zOK ? xzObject_CloneImpl(&clone, array, alloc) : status;
    for (zObject object : {clone, text, array})
    {
        static_cast<void>(xzObject_DestroyImpl(object));
    }
    return status;
}
} // namespace

TEST(Array1, Has_length_item_type_and_items_without_gaps)
{
    const Handle array = Array1(zTypeOf(z16s), 5);
    EXPECT_EQ(zArray1_Length(array.Get()), 5U);
    EXPECT_EQ(zArray1_ItemType(array.Get()), zTypeOf(z16s));
    auto* const items = static_cast<z16s*>(zArray1_Items(array.Get()));
    std::iota(items, items + 5, z16s{10});
    EXPECT_EQ(*static_cast<z16s*>(zArray1_At(array.Get(), 4)), 14);
    EXPECT_EQ(zArray1_At(array.Get(), 5), nullptr);
}

TEST(Array1, Empty_array_has_no_items)
{
    const Handle array = Array1(zTypeOf(z64f), 0);
    EXPECT_EQ(zArray1_Length(array.Get()), 0U);
    EXPECT_EQ(zArray1_Items(array.Get()), nullptr);
    EXPECT_EQ(zArray1_Zero(array.Get()), zOK);
}

TEST(Array1, Construct_refuses_what_it_cannot_make)
{
    zArray1 array = nullptr;
    EXPECT_EQ(zArray1_Construct(nullptr, zTypeOf(z16s), 1, nullptr), zERROR_MISSING);
    EXPECT_EQ(zArray1_Construct(&array, nullptr, 1, nullptr), zERROR_MISSING);
    EXPECT_EQ(zArray1_Construct(&array, zTypeOf(z16s), HUGE_COUNT, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zArray1_Construct(&array, zTypeOf(z8u), HUGE_COUNT, nullptr), zERROR_MEMORY);
    EXPECT_EQ(array, nullptr);
}

TEST(Array1, Operations_refuse_a_zArray2_and_null)
{
    const Handle other = Array2(zTypeOf(z16s), 2, 2);
    for (zObject handle : {other.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(zArray1_Zero(handle), zERROR_PARAMETER);
        EXPECT_EQ(zArray1_Length(handle), 0U);
        EXPECT_EQ(zArray1_ItemType(handle), nullptr);
        EXPECT_EQ(zArray1_Items(handle), nullptr);
        EXPECT_EQ(zArray1_At(handle, 0), nullptr);
    }
}

TEST(Array1, Zero_clears_values)
{
    const Handle array = Array1(zTypeOf(z32u), 3);
    for (std::size_t i = 0; i < 3; ++i)
    {
        *static_cast<z32u*>(zArray1_At(array.Get(), i)) = 7;
    }
    ASSERT_EQ(zArray1_Zero(array.Get()), zOK);
    const auto* const items = static_cast<z32u*>(zArray1_Items(array.Get()));
    EXPECT_EQ(std::accumulate(items, items + 3, z32u{0}), 0U);
}

TEST(Array1, Clone_is_independent)
{
    const Handle array = Array1(zTypeOf(z16s), 2);
    *static_cast<z16s*>(zArray1_At(array.Get(), 0)) = 3;
    *static_cast<z16s*>(zArray1_At(array.Get(), 1)) = 4;
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, array.Get(), nullptr), zOK);
    const Handle clone(cloned);
    *static_cast<z16s*>(zArray1_At(array.Get(), 1)) = 9;
    EXPECT_EQ(xzObject_Type(clone.Get()), zTypeOf(zArray1));
    EXPECT_EQ(zArray1_Length(clone.Get()), 2U);
    EXPECT_EQ(*static_cast<z16s*>(zArray1_At(clone.Get(), 0)), 3);
    EXPECT_EQ(*static_cast<z16s*>(zArray1_At(clone.Get(), 1)), 4);
}

TEST(Array2, Dimension_zero_is_its_rows)
{
    const Handle array = Array2(zTypeOf(z8u), 2, 3);
    EXPECT_EQ(zArray2_Length(array.Get(), 0), 2U);
    EXPECT_EQ(zArray2_Length(array.Get(), 1), 3U);
    EXPECT_EQ(zArray2_Length(array.Get(), 2), 0U);
    EXPECT_EQ(zArray2_ItemType(array.Get()), zTypeOf(z8u));
}

TEST(Array2, Rows_follow_each_other)
{
    const Handle array = Array2(zTypeOf(zPoint3d16s), 2, 3);
    const auto* const items = static_cast<zPoint3d16s*>(zArray2_Items(array.Get()));
    EXPECT_EQ(zArray2_At(array.Get(), 0, 2), items + 2);
    EXPECT_EQ(zArray2_At(array.Get(), 1, 0), items + 3);
    EXPECT_EQ(zArray2_At(array.Get(), 1, 2), items + 5);
}

TEST(Array2, Places_outside_are_null)
{
    const Handle array = Array2(zTypeOf(z8u), 2, 3);
    EXPECT_EQ(zArray2_At(array.Get(), 2, 0), nullptr);
    EXPECT_EQ(zArray2_At(array.Get(), 0, 3), nullptr);
    EXPECT_EQ(zArray2_At(array.Get(), HUGE_COUNT, HUGE_COUNT), nullptr);
    EXPECT_EQ(zArray2_Items(Array2(zTypeOf(z8u), 0, 3).Get()), nullptr);
    EXPECT_EQ(zArray2_Items(Array2(zTypeOf(z8u), 3, 0).Get()), nullptr);
}

TEST(Array2, Construct_refuses_what_it_cannot_make)
{
    zArray2 array = nullptr;
    EXPECT_EQ(zArray2_Construct(nullptr, zTypeOf(z16s), 1, 1, nullptr), zERROR_MISSING);
    EXPECT_EQ(zArray2_Construct(&array, nullptr, 1, 1, nullptr), zERROR_MISSING);
    EXPECT_EQ(zArray2_Construct(&array, zTypeOf(z8u), HUGE_COUNT, 2, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zArray2_Construct(&array, zTypeOf(z16s), HUGE_COUNT / 2, 2, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zArray2_Construct(&array, zTypeOf(z8u), HUGE_COUNT / 2, 2, nullptr), zERROR_MEMORY);
    EXPECT_EQ(array, nullptr);
}

TEST(Array2, SetItem_copies_to_its_place_only)
{
    const Handle array = Array2(zTypeOf(z16s), 2, 2);
    ASSERT_EQ(zArray2_Zero(array.Get()), zOK);
    const z16s value = -5;
    ASSERT_EQ(zArray2_SetItem(array.Get(), 1, 0, &value), zOK);
    const auto* const items = static_cast<z16s*>(zArray2_Items(array.Get()));
    EXPECT_EQ(std::vector<z16s>(items, items + 4), (std::vector<z16s>{0, 0, -5, 0}));
}

TEST(Array2, SetItem_refuses_places_outside_and_null_items)
{
    const Handle array = Array2(zTypeOf(z16s), 1, 1);
    const z16s value = 1;
    EXPECT_EQ(zArray2_SetItem(array.Get(), 1, 0, &value), zERROR_PARAMETER);
    EXPECT_EQ(zArray2_SetItem(array.Get(), 0, 1, &value), zERROR_PARAMETER);
    EXPECT_EQ(zArray2_SetItem(array.Get(), 0, 0, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zArray2_SetItem(nullptr, 0, 0, &value), zERROR_PARAMETER);
}

TEST(Array2, Operations_refuse_a_zArray1_and_null)
{
    const Handle other = Array1(zTypeOf(z16s), 2);
    for (zObject handle : {other.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(zArray2_Zero(handle), zERROR_PARAMETER);
        EXPECT_EQ(zArray2_Length(handle, 0), 0U);
        EXPECT_EQ(zArray2_ItemType(handle), nullptr);
        EXPECT_EQ(zArray2_Items(handle), nullptr);
    }
}

TEST(Array2, Object_items_begin_null_and_hold_a_reference_each)
{
    const Handle text = Text("shared");
    {
        const Handle array = Array2(zTypeOf(zString), 1, 2);
        EXPECT_EQ(TextAt(array.Get(), 0, 0), nullptr);
        zString raw = text.Get();
        ASSERT_EQ(zArray2_SetItem(array.Get(), 0, 0, &raw), zOK);
        ASSERT_EQ(zArray2_SetItem(array.Get(), 0, 1, &raw), zOK);
        EXPECT_EQ(xzObject_ReferenceCount(text.Get()), 3);
        ASSERT_EQ(zArray2_SetItem(array.Get(), 0, 0, &raw), zOK);
        EXPECT_EQ(xzObject_ReferenceCount(text.Get()), 3);
        ASSERT_EQ(zArray2_Zero(array.Get()), zOK);
        EXPECT_EQ(xzObject_ReferenceCount(text.Get()), 1);
        ASSERT_EQ(zArray2_SetItem(array.Get(), 0, 1, &raw), zOK);
    }
    EXPECT_EQ(xzObject_ReferenceCount(text.Get()), 1);
}

TEST(Array2, Clone_of_objects_is_deep)
{
    const Handle text = Text("deep");
    const Handle array = Array2(zTypeOf(zString), 1, 2);
    zString raw = text.Get();
    ASSERT_EQ(zArray2_SetItem(array.Get(), 0, 0, &raw), zOK);
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, array.Get(), nullptr), zOK);
    const Handle clone(cloned);
    EXPECT_EQ(xzObject_ReferenceCount(text.Get()), 2);
    EXPECT_NE(TextAt(clone.Get(), 0, 0), text.Get());
    EXPECT_STREQ(zString_Chars(TextAt(clone.Get(), 0, 0)), "deep");
    EXPECT_EQ(TextAt(clone.Get(), 0, 1), nullptr);
}

TEST(Array2, Failing_requests_leave_nothing_behind)
{
    // Array and string cost two blocks each, and as many again in the clone, where the string stands twice.
    EXPECT_EQ(WalkAllocations(BuildAndCloneTexts), 10U);
}

TEST(Array2, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&alloc] {
        const zStatus status = BuildAndCloneTexts(alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GE(calls, 10U);
}
