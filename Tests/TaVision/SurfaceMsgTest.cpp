#include <Support/MessageChecks.h>

#include <gtest/gtest.h>
#include <limits>

using namespace Support;

namespace
{
struct Kind
{
    const char* name;
    zStatus (*construct)(TvSurfaceMsg* msg, std::size_t width, std::size_t length, zAlloc alloc);
    zType pointType;
    bool isResampled;
};

void PrintTo(const Kind& kind, std::ostream* out)
{
    *out << kind.name;
}

class Surface_message : public testing::TestWithParam<Kind>
{
protected:
    static Ta::Object<void*> Make(std::size_t width, std::size_t length, zAlloc alloc = nullptr)
    {
        TvSurfaceMsg msg = nullptr;
        EXPECT_EQ(GetParam().construct(&msg, width, length, alloc), zOK);
        return Ta::Object<void*>(msg);
    }
};

Ta::Object<void*> Array(zType itemType, std::size_t rows, std::size_t columns)
{
    zArray2 array = nullptr;
    EXPECT_EQ(zArray2_Construct(&array, itemType, rows, columns, nullptr), zOK);
    EXPECT_EQ(zArray2_Zero(array), zOK);
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

TEST_P(Surface_message, Has_length_rows_by_width_columns_of_its_point_type)
{
    const auto msg = Make(3, 2);
    EXPECT_EQ(TvSurfaceMsg_Width(msg.Get()), 3U);
    EXPECT_EQ(TvSurfaceMsg_Length(msg.Get()), 2U);
    EXPECT_EQ(TvSurfaceMsg_PointType(msg.Get()), GetParam().pointType);
    EXPECT_EQ(TvSurfaceMsg_IsResampled(msg.Get()), GetParam().isResampled);
    zArray2 const points = TvSurfaceMsg_PointsArray(msg.Get(), 0);
    EXPECT_EQ(zArray2_Length(points, 0), 2U);
    EXPECT_EQ(zArray2_Length(points, 1), 3U);
    EXPECT_EQ(zArray2_ItemType(points), GetParam().pointType);
    EXPECT_EQ(TvSurfaceMsg_PointsArray(msg.Get(), 1), nullptr);
}

TEST_P(Surface_message, New_points_are_null_in_every_coordinate)
{
    const auto msg = Make(3, 2);
    const std::size_t coordinates = 6 * GetParam().pointType->size / sizeof(z16s);
    EXPECT_EQ(ItemsOf<z16s>(TvSurfaceMsg_Points(msg.Get()), coordinates), std::vector<z16s>(coordinates, -32768));
}

TEST_P(Surface_message, New_one_has_offset_zero_scale_one_and_no_intensity)
{
    const auto msg = Make(3, 2);
    EXPECT_EQ(Fields(TvSurfaceMsg_Offset(msg.Get())), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(Fields(TvSurfaceMsg_Scale(msg.Get())), (std::vector<double>{1, 1, 1}));
    EXPECT_EQ(Fields(TvSurfaceMsg_BoundingBox(msg.Get())), UNKNOWN_BOX);
    EXPECT_FALSE(TvSurfaceMsg_HasIntensity(msg.Get()));
    EXPECT_EQ(TvSurfaceMsg_IntensityType(msg.Get()), nullptr);
    EXPECT_EQ(TvSurfaceMsg_Intensity(msg.Get()), nullptr);
    EXPECT_EQ(TvSurfaceMsg_IntensityAt(msg.Get(), 0, 0), nullptr);
    EXPECT_EQ(TvSurfaceMsg_IntensityArray(msg.Get(), 0), nullptr);
}

TEST_P(Surface_message, Keeps_offset_and_scale)
{
    const auto msg = Make(1, 1);
    const zPoint3d64f offset = {1, 2, 3};
    const zPoint3d64f scale = {4, 5, 6};
    ASSERT_EQ(TvSurfaceMsg_SetOffset(msg.Get(), &offset), zOK);
    ASSERT_EQ(TvSurfaceMsg_SetScale(msg.Get(), &scale), zOK);
    EXPECT_EQ(TvSurfaceMsg_SetOffset(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvSurfaceMsg_SetScale(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(Fields(TvSurfaceMsg_Offset(msg.Get())), Fields(offset));
    EXPECT_EQ(Fields(TvSurfaceMsg_Scale(msg.Get())), Fields(scale));
}

TEST_P(Surface_message, Only_the_flag_that_fits_the_points_is_taken)
{
    const auto msg = Make(1, 1);
    const bool isResampled = GetParam().isResampled;
    EXPECT_EQ(TvSurfaceMsg_SetIsResampled(msg.Get(), isResampled), zOK);
    EXPECT_EQ(TvSurfaceMsg_SetIsResampled(msg.Get(), !isResampled), zERROR_PARAMETER);
    EXPECT_EQ(TvSurfaceMsg_IsResampled(msg.Get()), isResampled);
}

TEST_P(Surface_message, Without_rows_or_columns_has_no_points)
{
    for (const auto& [width, length] : {std::pair<std::size_t, std::size_t>{0, 0}, {0, 5}, {5, 0}})
    {
        const auto msg = Make(width, length);
        EXPECT_EQ(TvSurfaceMsg_Width(msg.Get()), width);
        EXPECT_EQ(TvSurfaceMsg_Length(msg.Get()), length);
        EXPECT_EQ(TvSurfaceMsg_Points(msg.Get()), nullptr);
        EXPECT_NE(TvSurfaceMsg_PointsArray(msg.Get(), 0), nullptr);
        EXPECT_EQ(TvSurfaceMsg_AllocateIntensity(msg.Get(), zTypeOf(z8u)), zOK);
        EXPECT_TRUE(TvSurfaceMsg_HasIntensity(msg.Get()));
        EXPECT_EQ(TvSurfaceMsg_Intensity(msg.Get()), nullptr);
        EXPECT_EQ(TvSurfaceMsg_CopyPointsArray(msg.Get(), Array(GetParam().pointType, length, width).Get()), zOK);
    }
}

TEST_P(Surface_message, Absurd_sizes_are_refused)
{
    const CountingAlloc alloc;
    TvSurfaceMsg msg = nullptr;
    for (const auto& [width, length] : {std::pair<std::size_t, std::size_t>{HUGE_COUNT, HUGE_COUNT},
                                        {HUGE_COUNT, 0},
                                        {0, HUGE_COUNT},
                                        {std::size_t{1} << 32U, std::size_t{1} << 32U},
                                        {TvMSG_MAX_ITEMS, 2},
                                        {1, TvMSG_MAX_ITEMS + 1}})
    {
        EXPECT_EQ(GetParam().construct(&msg, width, length, alloc.Get()), zERROR_PARAMETER) << width << " x " << length;
    }
    EXPECT_EQ(GetParam().construct(nullptr, 1, 1, alloc.Get()), zERROR_MISSING);
    EXPECT_EQ(msg, nullptr);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST_P(Surface_message, Copies_points_of_its_type_and_size_only)
{
    const auto msg = Make(3, 2);
    const zType other = GetParam().isResampled ? zTypeOf(zPoint3d16s) : zTypeOf(z16s);
    zArray1 line = nullptr;
    ASSERT_EQ(zArray1_Construct(&line, GetParam().pointType, 6, nullptr), zOK);
    const Ta::Object<void*> lineOwner(line);
    EXPECT_EQ(TvSurfaceMsg_CopyPointsArray(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvSurfaceMsg_CopyPointsArray(msg.Get(), line), zERROR_FORMAT);
    EXPECT_EQ(TvSurfaceMsg_CopyPointsArray(msg.Get(), Array(other, 2, 3).Get()), zERROR_FORMAT);
    EXPECT_EQ(TvSurfaceMsg_CopyPointsArray(msg.Get(), Array(GetParam().pointType, 3, 2).Get()), zERROR_PARAMETER);
    EXPECT_EQ(TvSurfaceMsg_CopyPointsArray(msg.Get(), TvSurfaceMsg_PointsArray(msg.Get(), 0)), zOK);
    EXPECT_EQ(*static_cast<z16s*>(TvSurfaceMsg_Points(msg.Get())), -32768);

    const auto points = Array(GetParam().pointType, 2, 3);
    EXPECT_EQ(TvSurfaceMsg_CopyPointsArray(msg.Get(), points.Get()), zOK);
    EXPECT_NE(TvSurfaceMsg_PointsArray(msg.Get(), 0), points.Get());
    const std::size_t coordinates = 6 * GetParam().pointType->size / sizeof(z16s);
    EXPECT_EQ(ItemsOf<z16s>(TvSurfaceMsg_Points(msg.Get()), coordinates), std::vector<z16s>(coordinates, 0));
}

TEST_P(Surface_message, Failures_leave_nothing_behind)
{
    const auto points = Array(GetParam().pointType, 2, 3);
    const auto grey = Array(zTypeOf(z8u), 2, 3);
    const auto construct = GetParam().construct;
    // The message and two arrays of two blocks each, and as many in the clone.
    EXPECT_EQ(ExpectCleanFailures([&, construct](zObject* msg, zAlloc alloc) {
                  zTRY(construct(msg, 3, 2, alloc));
                  zTRY(TvSurfaceMsg_CopyPointsArray(*msg, points.Get()));
                  return TvSurfaceMsg_CopyIntensityArray(*msg, grey.Get());
              }),
              10U);
}

INSTANTIATE_TEST_SUITE_P(, Surface_message,
                         testing::Values(Kind{"resampled", TvSurfaceMsg_ConstructSimple, zTypeOf(z16s), true},
                                         Kind{"unresampled", TvSurfaceMsg_ConstructUnresampledSimple,
                                              zTypeOf(zPoint3d16s), false}),
                         CaseName());

TEST(SurfaceMsg, Pixel_stands_at_its_row_and_column)
{
    const auto msg = Surface({{1, 2, 3}, {4, NullPixel, 6}});
    EXPECT_EQ(ItemsOf<z16s>(TvSurfaceMsg_Points(msg.Get()), 6), (std::vector<z16s>{1, 2, 3, 4, -32768, 6}));
    EXPECT_EQ(*static_cast<z16s*>(TvSurfaceMsg_PointsAt(msg.Get(), 1, 2)), 6);
    EXPECT_EQ(*static_cast<z16s*>(zArray2_At(TvSurfaceMsg_PointsArray(msg.Get(), 0), 1, 0)), 4);
    EXPECT_EQ(TvSurfaceMsg_PointsAt(msg.Get(), 2, 0), nullptr);
    EXPECT_EQ(TvSurfaceMsg_PointsAt(msg.Get(), 0, 3), nullptr);
}

TEST(SurfaceMsg, Triple_stands_at_its_row_and_column)
{
    const auto msg = PointSurface({{{1, 2, 3}, {4, 5, 6}}});
    const auto* const point = static_cast<zPoint3d16s*>(TvSurfaceMsg_PointsAt(msg.Get(), 0, 1));
    EXPECT_EQ(point->x, 4);
    EXPECT_EQ(point->y, 5);
    EXPECT_EQ(point->z, 6);
}

TEST(SurfaceMsg, New_intensities_are_zero_and_of_the_type_asked_for)
{
    const auto msg = Surface({{1, 2}, {3, 4}});
    ASSERT_EQ(TvSurfaceMsg_AllocateIntensity(msg.Get(), zTypeOf(z16u)), zOK);
    EXPECT_TRUE(TvSurfaceMsg_HasIntensity(msg.Get()));
    EXPECT_EQ(TvSurfaceMsg_IntensityType(msg.Get()), zTypeOf(z16u));
    EXPECT_EQ(ItemsOf<z16u>(TvSurfaceMsg_Intensity(msg.Get()), 4), std::vector<z16u>(4, 0));
    ASSERT_EQ(TvSurfaceMsg_AllocateIntensity(msg.Get(), zTypeOf(z8u)), zOK);
    EXPECT_EQ(TvSurfaceMsg_IntensityType(msg.Get()), zTypeOf(z8u));
    zArray2 const array = TvSurfaceMsg_IntensityArray(msg.Get(), 0);
    EXPECT_EQ(zArray2_Length(array, 0), 2U);
    EXPECT_EQ(zArray2_Length(array, 1), 2U);
    EXPECT_EQ(TvSurfaceMsg_IntensityArray(msg.Get(), 1), nullptr);
}

TEST(SurfaceMsg, Intensity_types_other_than_bytes_and_words_are_refused)
{
    const auto msg = Surface({{1, 2}}).Intensity({{7, 8}});
    EXPECT_EQ(TvSurfaceMsg_AllocateIntensity(msg.Get(), zTypeOf(z16s)), zERROR_FORMAT);
    EXPECT_EQ(TvSurfaceMsg_AllocateIntensity(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(ItemsOf<z8u>(TvSurfaceMsg_Intensity(msg.Get()), 2), (std::vector<z8u>{7, 8}));
}

TEST(SurfaceMsg, Intensities_stay_if_new_ones_cannot_be_had)
{
    const CountingAlloc alloc;
    {
        const auto msg = Surface({{1, 2}}, alloc.Get()).Intensity({{7, 8}});
        alloc.FailAt(1);
        EXPECT_EQ(TvSurfaceMsg_AllocateIntensity(msg.Get(), zTypeOf(z8u)), zERROR_MEMORY);
        EXPECT_EQ(ItemsOf<z8u>(TvSurfaceMsg_Intensity(msg.Get()), 2), (std::vector<z8u>{7, 8}));
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(SurfaceMsg, Intensity_stands_at_its_row_and_column)
{
    const auto bytes = Surface({{0, 0}, {0, 0}}).Intensity({{1, 2}, {3, 4}});
    EXPECT_EQ(*static_cast<z8u*>(TvSurfaceMsg_IntensityAt(bytes.Get(), 1, 0)), 3);
    EXPECT_EQ(TvSurfaceMsg_IntensityAt(bytes.Get(), 2, 0), nullptr);
    EXPECT_EQ(TvSurfaceMsg_IntensityAt(bytes.Get(), 0, 2), nullptr);
    const auto words = Surface({{0, 0}, {0, 0}}).Intensity16({{1, 2}, {3, 1000}});
    EXPECT_EQ(*static_cast<z16u*>(TvSurfaceMsg_IntensityAt(words.Get(), 1, 1)), 1000);
}

TEST(SurfaceMsg, Copied_intensities_are_allocated_if_there_are_none)
{
    const auto msg = Surface({{1, 2}});
    const auto grey = Array(zTypeOf(z16u), 1, 2);
    *static_cast<z16u*>(zArray2_At(grey.Get(), 0, 1)) = 500;
    ASSERT_EQ(TvSurfaceMsg_CopyIntensityArray(msg.Get(), grey.Get()), zOK);
    EXPECT_EQ(ItemsOf<z16u>(TvSurfaceMsg_Intensity(msg.Get()), 2), (std::vector<z16u>{0, 500}));
    EXPECT_EQ(xzObject_ReferenceCount(grey.Get()), 1);
}

TEST(SurfaceMsg, Intensities_of_another_type_or_size_are_not_copied)
{
    const auto msg = Surface({{1, 2}});
    EXPECT_EQ(TvSurfaceMsg_CopyIntensityArray(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvSurfaceMsg_CopyIntensityArray(msg.Get(), Array(zTypeOf(z16s), 1, 2).Get()), zERROR_FORMAT);
    EXPECT_EQ(TvSurfaceMsg_CopyIntensityArray(msg.Get(), msg.Get()), zERROR_FORMAT);
    EXPECT_EQ(TvSurfaceMsg_CopyIntensityArray(msg.Get(), Array(zTypeOf(z8u), 2, 1).Get()), zERROR_PARAMETER);
    EXPECT_FALSE(TvSurfaceMsg_HasIntensity(msg.Get()));
    ASSERT_EQ(TvSurfaceMsg_AllocateIntensity(msg.Get(), zTypeOf(z8u)), zOK);
    EXPECT_EQ(TvSurfaceMsg_CopyIntensityArray(msg.Get(), Array(zTypeOf(z16u), 1, 2).Get()), zERROR_FORMAT);
}

TEST(SurfaceMsg, Array_outlives_its_message_when_shared)
{
    Ta::Object<void*> points;
    {
        const auto msg = Surface({{1, 2}});
        points.Reset(TvSurfaceMsg_PointsArray(msg.Get(), 0), true);
    }
    EXPECT_EQ(xzObject_ReferenceCount(points.Get()), 1);
    EXPECT_EQ(*static_cast<z16s*>(zArray2_At(points.Get(), 0, 1)), 2);
}

TEST(SurfaceMsg, Clone_is_independent)
{
    const auto msg = Surface({{1, 2}}).Intensity({{7, 8}}).Offset(1, 2, 3).Scale(4, 5, 6);
    const auto clone = CloneOf(msg.Get());
    *static_cast<z16s*>(TvSurfaceMsg_Points(msg.Get())) = 99;
    *static_cast<z8u*>(TvSurfaceMsg_Intensity(msg.Get())) = 99;
    EXPECT_EQ(ItemsOf<z16s>(TvSurfaceMsg_Points(clone.Get()), 2), (std::vector<z16s>{1, 2}));
    EXPECT_EQ(ItemsOf<z8u>(TvSurfaceMsg_Intensity(clone.Get()), 2), (std::vector<z8u>{7, 8}));
    EXPECT_EQ(TvSurfaceMsg_Width(clone.Get()), 2U);
    EXPECT_EQ(Fields(TvSurfaceMsg_Offset(clone.Get())), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(Fields(TvSurfaceMsg_Scale(clone.Get())), (std::vector<double>{4, 5, 6}));
    EXPECT_EQ(TvSurfaceMsg_AllocateIntensity(clone.Get(), zTypeOf(z16u)), zOK);
}

TEST(SurfaceMsg, Other_handles_are_refused)
{
    const zPoint3d64f point = {1, 2, 3};
    const auto array = Array(zTypeOf(z16s), 1, 1);
    const auto profile = Profile({1}).Intensity({2}).BoundingBox({1, 2, 3, 4, 5, 6}).Offset(1, 1, 1);
    for (void* const handle : {profile.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(TvSurfaceMsg_SetOffset(handle, &point), zERROR_PARAMETER);
        EXPECT_EQ(TvSurfaceMsg_SetScale(handle, &point), zERROR_PARAMETER);
        EXPECT_EQ(TvSurfaceMsg_SetIsResampled(handle, false), zERROR_PARAMETER);
        EXPECT_EQ(TvSurfaceMsg_CopyPointsArray(handle, array.Get()), zERROR_PARAMETER);
        EXPECT_EQ(TvSurfaceMsg_AllocateIntensity(handle, zTypeOf(z8u)), zERROR_PARAMETER);
        EXPECT_EQ(TvSurfaceMsg_CopyIntensityArray(handle, array.Get()), zERROR_PARAMETER);
        EXPECT_EQ(TvSurfaceMsg_Width(handle), 0U);
        EXPECT_EQ(TvSurfaceMsg_Length(handle), 0U);
        EXPECT_EQ(Fields(TvSurfaceMsg_Offset(handle)), (std::vector<double>{0, 0, 0}));
        EXPECT_EQ(Fields(TvSurfaceMsg_BoundingBox(handle)), UNKNOWN_BOX);
        EXPECT_FALSE(TvSurfaceMsg_IsResampled(handle));
        EXPECT_EQ(TvSurfaceMsg_PointType(handle), nullptr);
        EXPECT_EQ(TvSurfaceMsg_Points(handle), nullptr);
        EXPECT_EQ(TvSurfaceMsg_PointsAt(handle, 0, 0), nullptr);
        EXPECT_EQ(TvSurfaceMsg_PointsArray(handle, 0), nullptr);
        EXPECT_EQ(TvSurfaceMsg_Intensity(handle), nullptr);
        EXPECT_FALSE(TvSurfaceMsg_HasIntensity(handle));
    }
}
