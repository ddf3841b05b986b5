#include <Support/FaultWalk.h>

#include <MuVision/ArrayFill.h>

#include <TaApi/Object.h>
#include <zApi/zArray1.h>
#include <zApi/zString.h>

#include <cfloat>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace
{
using Mu::Vision::Array1FillMin;
using Handle = Ta::Object<void*>;

Handle Array(zType itemType, std::size_t length)
{
    zArray1 array = nullptr;
    EXPECT_EQ(zArray1_Construct(&array, itemType, length, nullptr), zOK);
    return Handle(array);
}

// What an array of three items of `type` holds after the call: components of type `Component`.
template <typename Component>
void ExpectFilled(zType type, Component lowest)
{
    SCOPED_TRACE(type->name);
    const Handle array = Array(type, 3);
    std::memset(zArray1_Items(array.Get()), 0x5A, 3 * type->size);
    ASSERT_EQ(Array1FillMin(array.Get()), zOK);
    const auto* const items = static_cast<const Component*>(zArray1_Items(array.Get()));
    const std::vector<Component> components(items, items + 3 * type->size / sizeof(Component));
    EXPECT_EQ(components, std::vector<Component>(components.size(), lowest));
}

TEST(Filling_with_the_lowest_value, takes_that_of_the_item_type)
{
    ExpectFilled<z8u>(zTypeOf(z8u), 0);
    ExpectFilled<z16u>(zTypeOf(z16u), 0);
    ExpectFilled<z16s>(zTypeOf(z16s), -32768);
    ExpectFilled<z32s>(zTypeOf(z32s), -2147483647 - 1);
    ExpectFilled<z32u>(zTypeOf(z32u), 0);
    ExpectFilled<z64s>(zTypeOf(z64s), INT64_MIN);
    ExpectFilled<z32f>(zTypeOf(z32f), -FLT_MAX);
    ExpectFilled<z64f>(zTypeOf(z64f), -DBL_MAX);
}

TEST(Filling_with_the_lowest_value, takes_every_component_of_points_and_colours)
{
    ExpectFilled<z16s>(zTypeOf(zPoint16s), -32768);
    ExpectFilled<z16s>(zTypeOf(zPoint3d16s), -32768);
    ExpectFilled<z32f>(zTypeOf(zPoint32f), -FLT_MAX);
    ExpectFilled<z32f>(zTypeOf(zPoint3d32f), -FLT_MAX);
    ExpectFilled<z64f>(zTypeOf(zPoint64f), -DBL_MAX);
    ExpectFilled<z64f>(zTypeOf(zPoint3d64f), -DBL_MAX);
    ExpectFilled<z8u>(zTypeOf(zRgb), 0);
    ExpectFilled<z8u>(zTypeOf(zRgb24), 0);
}

TEST(Filling_with_the_lowest_value, takes_an_empty_array)
{
    EXPECT_EQ(Array1FillMin(Array(zTypeOf(z16s), 0).Get()), zOK);
}

TEST(Filling_with_the_lowest_value, refuses_what_is_no_array)
{
    zString text = nullptr;
    ASSERT_EQ(zString_Construct(&text, "text", nullptr), zOK);
    const Handle string(text);
    EXPECT_EQ(Array1FillMin(nullptr), zERROR_PARAMETER);
    EXPECT_EQ(Array1FillMin(string.Get()), zERROR_PARAMETER);
}

TEST(Filling_with_the_lowest_value, refuses_items_that_have_none_and_leaves_them)
{
    const Handle texts = Array(zTypeOf(zString), 2);
    EXPECT_EQ(Array1FillMin(texts.Get()), zERROR_FORMAT);
    EXPECT_EQ(*static_cast<zString*>(zArray1_At(texts.Get(), 0)), nullptr);

    const Handle records = Array(zBytes_GetType(12), 1);
    std::memset(zArray1_Items(records.Get()), 7, 12);
    EXPECT_EQ(Array1FillMin(records.Get()), zERROR_FORMAT);
    EXPECT_EQ(static_cast<unsigned char*>(zArray1_Items(records.Get()))[11], 7);
}

TEST(Filling_with_the_lowest_value, can_be_made_to_fail)
{
    const Handle array = Array(zTypeOf(z16s), 2);
    EXPECT_EQ(Support::WalkFaults(-4321, [&] { return Array1FillMin(array.Get()); }), 1U);
}
} // namespace
