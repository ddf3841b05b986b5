#include <Support/MessageChecks.h>

#include <gtest/gtest.h>
#include <limits>

using namespace Support;

namespace
{
Ta::Object<void*> NewProfile(zType itemType, std::size_t count, zAlloc alloc = nullptr)
{
    TvProfileMsg msg = nullptr;
    EXPECT_EQ(TvProfileMsg_Construct(&msg, itemType, 1, count, alloc), zOK);
    return Ta::Object<void*>(msg);
}

Ta::Object<void*> Array(zType itemType, std::size_t length)
{
    zArray1 array = nullptr;
    EXPECT_EQ(zArray1_Construct(&array, itemType, length, nullptr), zOK);
    EXPECT_EQ(zArray1_Zero(array), zOK);
    return Ta::Object<void*>(array);
}

template <typename Item>
std::vector<Item> ItemsOf(const void* items, std::size_t count)
{
    const auto* const typed = static_cast<const Item*>(items);
    return {typed, typed + count};
}

constexpr std::size_t HUGE_COUNT = std::numeric_limits<std::size_t>::max();
} // namespace

TEST(ProfileMsg, New_one_has_null_points_of_its_type)
{
    for (const zType pointType : {zTypeOf(z16s), zTypeOf(zPoint16s)})
    {
        const auto msg = NewProfile(pointType, 3);
        EXPECT_EQ(TvProfileMsg_PointCount(msg.Get()), 3U);
        EXPECT_EQ(TvProfileMsg_PointType(msg.Get()), pointType);
        const std::size_t coordinates = 3 * pointType->size / sizeof(z16s);
        EXPECT_EQ(ItemsOf<z16s>(TvProfileMsg_Points(msg.Get()), coordinates), std::vector<z16s>(coordinates, -32768));
        zArray1 const points = TvProfileMsg_PointsArray(msg.Get(), 0);
        EXPECT_EQ(zArray1_Length(points), 3U);
        EXPECT_EQ(zArray1_ItemType(points), pointType);
        EXPECT_EQ(TvProfileMsg_PointsArray(msg.Get(), 1), nullptr);
    }
}

TEST(ProfileMsg, New_one_has_offset_zero_scale_one_and_no_intensity)
{
    const auto msg = NewProfile(zTypeOf(z16s), 3);
    EXPECT_EQ(Fields(TvProfileMsg_Offset(msg.Get())), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(Fields(TvProfileMsg_Scale(msg.Get())), (std::vector<double>{1, 1, 1}));
    EXPECT_EQ(Fields(TvProfileMsg_BoundingBoxAt(msg.Get(), 0)), UNKNOWN_BOX);
    EXPECT_FALSE(TvProfileMsg_HasIntensity(msg.Get()));
    EXPECT_EQ(TvProfileMsg_Intensity(msg.Get()), nullptr);
    EXPECT_EQ(TvProfileMsg_IntensityArray(msg.Get(), 0), nullptr);
}

TEST(ProfileMsg, Construct_refuses_what_it_cannot_make)
{
    const CountingAlloc alloc;
    TvProfileMsg msg = nullptr;
    EXPECT_EQ(TvProfileMsg_Construct(nullptr, zTypeOf(z16s), 1, 1, alloc.Get()), zERROR_MISSING);
    EXPECT_EQ(TvProfileMsg_Construct(&msg, nullptr, 1, 1, alloc.Get()), zERROR_MISSING);
    EXPECT_EQ(TvProfileMsg_Construct(&msg, zTypeOf(z16u), 1, 1, alloc.Get()), zERROR_FORMAT);
    EXPECT_EQ(TvProfileMsg_Construct(&msg, zTypeOf(zPoint3d16s), 1, 1, alloc.Get()), zERROR_FORMAT);
    EXPECT_EQ(TvProfileMsg_Construct(&msg, zTypeOf(z16s), 0, 1, alloc.Get()), zERROR_PARAMETER);
    EXPECT_EQ(TvProfileMsg_Construct(&msg, zTypeOf(z16s), 2, 1, alloc.Get()), zERROR_PARAMETER);
    EXPECT_EQ(TvProfileMsg_Construct(&msg, zTypeOf(z16s), 1, TvMSG_MAX_ITEMS + 1, alloc.Get()), zERROR_PARAMETER);
    EXPECT_EQ(TvProfileMsg_Construct(&msg, zTypeOf(z16s), 1, HUGE_COUNT, alloc.Get()), zERROR_PARAMETER);
    EXPECT_EQ(msg, nullptr);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(ProfileMsg, Without_points_copies_an_empty_array)
{
    const auto msg = NewProfile(zTypeOf(z16s), 0);
    EXPECT_EQ(TvProfileMsg_PointCount(msg.Get()), 0U);
    EXPECT_EQ(TvProfileMsg_Points(msg.Get()), nullptr);
    EXPECT_EQ(TvProfileMsg_CopyPointsArray(msg.Get(), Array(zTypeOf(z16s), 0).Get()), zOK);
}

TEST(ProfileMsg, Points_keep_their_order)
{
    const auto heights = Profile({5, NullPixel, -7});
    EXPECT_EQ(ItemsOf<z16s>(TvProfileMsg_Points(heights.Get()), 3), (std::vector<z16s>{5, -32768, -7}));
    const auto pairs = PointProfile({{1, 2}, {3, 4}});
    const auto* const points = static_cast<zPoint16s*>(TvProfileMsg_Points(pairs.Get()));
    EXPECT_EQ(points[1].x, 3);
    EXPECT_EQ(points[1].y, 4);
}

TEST(ProfileMsg, Keeps_offset_scale_and_box)
{
    const zRect3d64f box = {1, 2, 3, 4, 5, 6};
    const auto msg = Profile({1}).Offset(1, 2, 3).Scale(4, 5, 6);
    EXPECT_EQ(TvProfileMsg_SetBoundingBox(msg.Get(), &box), zOK);
    EXPECT_EQ(Fields(TvProfileMsg_Offset(msg.Get())), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(Fields(TvProfileMsg_Scale(msg.Get())), (std::vector<double>{4, 5, 6}));
    EXPECT_EQ(Fields(TvProfileMsg_BoundingBoxAt(msg.Get(), 0)), Fields(box));
    EXPECT_EQ(Fields(TvProfileMsg_BoundingBoxAt(msg.Get(), 1)), UNKNOWN_BOX);
    EXPECT_EQ(Fields(TvDataMsg_BoundingBox(msg.Get())), Fields(box));
}

TEST(ProfileMsg, Null_pointers_are_refused)
{
    const auto msg = Profile({1});
    EXPECT_EQ(TvProfileMsg_SetOffset(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvProfileMsg_SetScale(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvProfileMsg_SetBoundingBox(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvProfileMsg_CopyPointsArray(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvProfileMsg_CopyIntensityArray(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvProfileMsg_AllocateIntensity(msg.Get(), nullptr), zERROR_MISSING);
}

TEST(ProfileMsg, Copies_points_of_its_type_and_length_only)
{
    const auto msg = NewProfile(zTypeOf(z16s), 2);
    zArray2 grid = nullptr;
    ASSERT_EQ(zArray2_Construct(&grid, zTypeOf(z16s), 1, 2, nullptr), zOK);
    const Ta::Object<void*> gridOwner(grid);
    EXPECT_EQ(TvProfileMsg_CopyPointsArray(msg.Get(), grid), zERROR_FORMAT);
    EXPECT_EQ(TvProfileMsg_CopyPointsArray(msg.Get(), Array(zTypeOf(zPoint16s), 2).Get()), zERROR_FORMAT);
    EXPECT_EQ(TvProfileMsg_CopyPointsArray(msg.Get(), Array(zTypeOf(z16s), 3).Get()), zERROR_PARAMETER);
    const auto points = Array(zTypeOf(z16s), 2);
    *static_cast<z16s*>(zArray1_At(points.Get(), 1)) = 12;
    EXPECT_EQ(TvProfileMsg_CopyPointsArray(msg.Get(), points.Get()), zOK);
    EXPECT_EQ(ItemsOf<z16s>(TvProfileMsg_Points(msg.Get()), 2), (std::vector<z16s>{0, 12}));
}

TEST(ProfileMsg, Copied_intensities_are_allocated_if_there_are_none)
{
    const auto msg = Profile({1, 2});
    const auto grey = Array(zTypeOf(z8u), 2);
    *static_cast<z8u*>(zArray1_At(grey.Get(), 0)) = 200;
    ASSERT_EQ(TvProfileMsg_CopyIntensityArray(msg.Get(), grey.Get()), zOK);
    EXPECT_EQ(TvProfileMsg_IntensityType(msg.Get()), zTypeOf(z8u));
    EXPECT_EQ(ItemsOf<z8u>(TvProfileMsg_Intensity(msg.Get()), 2), (std::vector<z8u>{200, 0}));
    EXPECT_EQ(zArray1_Length(TvProfileMsg_IntensityArray(msg.Get(), 0)), 2U);
    EXPECT_EQ(TvProfileMsg_IntensityArray(msg.Get(), 1), nullptr);
    EXPECT_EQ(TvProfileMsg_CopyIntensityArray(msg.Get(), Array(zTypeOf(z16u), 2).Get()), zERROR_FORMAT);
    EXPECT_EQ(TvProfileMsg_CopyIntensityArray(msg.Get(), Array(zTypeOf(z8u), 3).Get()), zERROR_PARAMETER);
}

TEST(ProfileMsg, New_intensities_are_zero_and_of_the_type_asked_for)
{
    const auto msg = Profile({1, 2}).Intensity({3, 4});
    ASSERT_EQ(TvProfileMsg_AllocateIntensity(msg.Get(), zTypeOf(z16u)), zOK);
    EXPECT_EQ(ItemsOf<z16u>(TvProfileMsg_Intensity(msg.Get()), 2), (std::vector<z16u>{0, 0}));
    EXPECT_EQ(TvProfileMsg_AllocateIntensity(msg.Get(), zTypeOf(z64f)), zERROR_FORMAT);
    EXPECT_EQ(TvProfileMsg_IntensityType(msg.Get()), zTypeOf(z16u));
}

TEST(ProfileMsg, Intensities_stay_if_new_ones_cannot_be_had)
{
    const CountingAlloc alloc;
    {
        const auto msg = Profile({1, 2}, alloc.Get()).Intensity({3, 4});
        alloc.FailAt(1);
        EXPECT_EQ(TvProfileMsg_AllocateIntensity(msg.Get(), zTypeOf(z8u)), zERROR_MEMORY);
        EXPECT_EQ(ItemsOf<z8u>(TvProfileMsg_Intensity(msg.Get()), 2), (std::vector<z8u>{3, 4}));
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(ProfileMsg, Clone_is_independent)
{
    const auto msg = PointProfile({{1, 2}}).Intensity16({700}).Offset(1, 2, 3);
    const auto clone = CloneOf(msg.Get());
    static_cast<zPoint16s*>(TvProfileMsg_Points(msg.Get()))->x = 99;
    *static_cast<z16u*>(TvProfileMsg_Intensity(msg.Get())) = 99;
    EXPECT_EQ(static_cast<zPoint16s*>(TvProfileMsg_Points(clone.Get()))->x, 1);
    EXPECT_EQ(*static_cast<z16u*>(TvProfileMsg_Intensity(clone.Get())), 700);
    EXPECT_EQ(Fields(TvProfileMsg_Offset(clone.Get())), (std::vector<double>{1, 2, 3}));
}

TEST(ProfileMsg, Other_handles_are_refused)
{
    const zPoint3d64f point = {1, 2, 3};
    const zRect3d64f box = {1, 2, 3, 4, 5, 6};
    const auto array = Array(zTypeOf(z16s), 1);
    const auto surface = Surface({{1}}).Intensity({{2}}).BoundingBox(box);
    for (void* const handle : {surface.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(TvProfileMsg_SetOffset(handle, &point), zERROR_PARAMETER);
        EXPECT_EQ(TvProfileMsg_SetScale(handle, &point), zERROR_PARAMETER);
        EXPECT_EQ(TvProfileMsg_SetBoundingBox(handle, &box), zERROR_PARAMETER);
        EXPECT_EQ(TvProfileMsg_CopyPointsArray(handle, array.Get()), zERROR_PARAMETER);
        EXPECT_EQ(TvProfileMsg_CopyIntensityArray(handle, array.Get()), zERROR_PARAMETER);
        EXPECT_EQ(TvProfileMsg_AllocateIntensity(handle, zTypeOf(z8u)), zERROR_PARAMETER);
        EXPECT_EQ(TvProfileMsg_PointCount(handle), 0U);
        EXPECT_EQ(TvProfileMsg_PointType(handle), nullptr);
        EXPECT_EQ(TvProfileMsg_Points(handle), nullptr);
        EXPECT_EQ(TvProfileMsg_PointsArray(handle, 0), nullptr);
        EXPECT_FALSE(TvProfileMsg_HasIntensity(handle));
        EXPECT_EQ(Fields(TvProfileMsg_BoundingBoxAt(handle, 0)), UNKNOWN_BOX);
    }
}

TEST(ProfileMsg, Failures_leave_nothing_behind)
{
    const auto points = Array(zTypeOf(zPoint16s), 3);
    const auto grey = Array(zTypeOf(z8u), 3);
    EXPECT_EQ(ExpectCleanFailures([&](zObject* msg, zAlloc alloc) {
                  zTRY(TvProfileMsg_Construct(msg, zTypeOf(zPoint16s), 1, 3, alloc));
                  zTRY(TvProfileMsg_CopyPointsArray(*msg, points.Get()));
                  return TvProfileMsg_CopyIntensityArray(*msg, grey.Get());
              }),
              10U);
}
