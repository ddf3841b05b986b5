#include <Support/MessageChecks.h>

#include <zApi/zString.h>

#include <gtest/gtest.h>
#include <ostream>
#include <thread>

using namespace Support;

namespace
{
struct Family
{
    const char* name;
    Ta::Object<void*> (*make)();
    zType type;
    bool hasSamples;
};

void PrintTo(const Family& family, std::ostream* out)
{
    *out << family.name;
}

class Every_message : public testing::TestWithParam<Family>
{
protected:
    const Ta::Object<void*> msg = GetParam().make();
};

Ta::Object<void*> NoMessage()
{
    zString text = nullptr;
    EXPECT_EQ(zString_Construct(&text, "no message", nullptr), zOK);
    return Ta::Object<void*>(text);
}

constexpr zRect3d64f BOX = {1, 2, 3, 40, 50, 60};
constexpr TvFoRTransform TRANSFORM = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
constexpr zStamp STAMP = {7, 8, 9, -10};
} // namespace

TEST_P(Every_message, Is_a_message_and_has_a_stamp)
{
    EXPECT_EQ(xzObject_Type(msg.Get()), GetParam().type);
    EXPECT_TRUE(xzCastClass_ObjectIs(msg.Get(), zTypeOf(TvMsg)));
    EXPECT_TRUE(xzCastClass_ObjectIs(msg.Get(), zTypeOf(zMsgSet)));
    EXPECT_EQ(zMsgSet_Count(msg.Get()), 1U);
}

TEST_P(Every_message, Is_a_data_message_only_if_it_carries_samples)
{
    EXPECT_EQ(xzCastClass_ObjectIs(msg.Get(), zTypeOf(TvDataMsg)), GetParam().hasSamples);
}

TEST_P(Every_message, New_one_has_no_box_the_identity_and_a_zero_stamp)
{
    EXPECT_FALSE(TvDataMsg_HasBoundingBox(msg.Get()));
    EXPECT_EQ(Fields(TvDataMsg_BoundingBox(msg.Get())), UNKNOWN_BOX);
    EXPECT_EQ(Fields(TvDataMsg_Transform(msg.Get())), (std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0}));
    EXPECT_EQ(Fields(TvDataMsg_Stamp(msg.Get())), (std::vector<z64s>{0, 0, 0, 0}));
    EXPECT_EQ(TvDataMsg_SpaceType(msg.Get()), 0);
}

TEST_P(Every_message, Keeps_what_is_set)
{
    ASSERT_EQ(TvDataMsg_SetBoundingBox(msg.Get(), &BOX), zOK);
    ASSERT_EQ(TvDataMsg_SetTransform(msg.Get(), &TRANSFORM), zOK);
    ASSERT_EQ(TvDataMsg_SetStamp(msg.Get(), &STAMP), zOK);
    ASSERT_EQ(TvDataMsg_SetSpaceType(msg.Get(), 3), zOK);
    EXPECT_TRUE(TvDataMsg_HasBoundingBox(msg.Get()));
    EXPECT_EQ(Fields(TvDataMsg_BoundingBox(msg.Get())), Fields(BOX));
    EXPECT_EQ(Fields(TvDataMsg_Transform(msg.Get())), Fields(TRANSFORM));
    EXPECT_EQ(Fields(TvDataMsg_Stamp(msg.Get())), Fields(STAMP));
    EXPECT_EQ(TvDataMsg_SpaceType(msg.Get()), 3);
}

TEST_P(Every_message, Time_and_encoder_are_those_of_stamp_zero)
{
    ASSERT_EQ(zMsgSet_SetStampAt(msg.Get(), 0, &STAMP), zOK);
    EXPECT_EQ(TvDataMsg_Time(msg.Get()), 9U);
    EXPECT_EQ(TvDataMsg_Encoder(msg.Get()), -10);
    ASSERT_EQ(TvDataMsg_SetTime(msg.Get(), 19), zOK);
    ASSERT_EQ(TvDataMsg_SetEncoder(msg.Get(), -20), zOK);
    EXPECT_EQ(Fields(*zMsgSet_StampAt(msg.Get(), 0)), (std::vector<z64s>{7, 8, 19, -20}));
}

TEST_P(Every_message, Box_with_null_x_is_unknown)
{
    ASSERT_EQ(TvDataMsg_SetBoundingBox(msg.Get(), &BOX), zOK);
    const zRect3d64f unknown = {zNULL_64F, 2, 3, 4, 5, 6};
    ASSERT_EQ(TvDataMsg_SetBoundingBox(msg.Get(), &unknown), zOK);
    EXPECT_FALSE(TvDataMsg_HasBoundingBox(msg.Get()));
    EXPECT_EQ(Fields(TvDataMsg_BoundingBox(msg.Get())), UNKNOWN_BOX);
}

TEST_P(Every_message, Null_pointers_are_refused_and_change_nothing)
{
    ASSERT_EQ(TvDataMsg_SetBoundingBox(msg.Get(), &BOX), zOK);
    EXPECT_EQ(TvDataMsg_SetBoundingBox(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvDataMsg_SetTransform(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(TvDataMsg_SetStamp(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(Fields(TvDataMsg_BoundingBox(msg.Get())), Fields(BOX));
}

TEST_P(Every_message, Clone_is_independent)
{
    ASSERT_EQ(TvDataMsg_SetBoundingBox(msg.Get(), &BOX), zOK);
    ASSERT_EQ(TvDataMsg_SetTransform(msg.Get(), &TRANSFORM), zOK);
    ASSERT_EQ(TvDataMsg_SetStamp(msg.Get(), &STAMP), zOK);
    ASSERT_EQ(TvDataMsg_SetSpaceType(msg.Get(), 3), zOK);
    const auto clone = CloneOf(msg.Get());
    ASSERT_EQ(TvDataMsg_SetTime(msg.Get(), 1000), zOK);
    ASSERT_EQ(TvDataMsg_SetTransform(msg.Get(), &TvFOR_TRANSFORM_IDENTITY), zOK);
    EXPECT_EQ(xzObject_Type(clone.Get()), GetParam().type);
    EXPECT_EQ(xzObject_ReferenceCount(clone.Get()), 1);
    EXPECT_EQ(Fields(TvDataMsg_BoundingBox(clone.Get())), Fields(BOX));
    EXPECT_EQ(Fields(TvDataMsg_Transform(clone.Get())), Fields(TRANSFORM));
    EXPECT_EQ(Fields(TvDataMsg_Stamp(clone.Get())), Fields(STAMP));
    EXPECT_EQ(TvDataMsg_SpaceType(clone.Get()), 3);
}

TEST_P(Every_message, Failing_setters_change_nothing)
{
    void* const raw = msg.Get();
    zStatus (*const setters[])(void*) = {[](void* m) { return TvDataMsg_SetBoundingBox(m, &BOX); },
                                         [](void* m) { return TvDataMsg_SetTime(m, 1); },
                                         [](void* m) { return TvDataMsg_SetEncoder(m, 1); },
                                         [](void* m) { return TvDataMsg_SetStamp(m, &STAMP); },
                                         [](void* m) { return TvDataMsg_SetTransform(m, &TRANSFORM); },
                                         [](void* m) { return TvDataMsg_SetSpaceType(m, 1); }};
    for (const auto& set : setters)
    {
        const ArmedFault fault(1, -66);
        EXPECT_EQ(set(raw), -66);
    }
    EXPECT_FALSE(TvDataMsg_HasBoundingBox(raw));
    EXPECT_EQ(Fields(TvDataMsg_Stamp(raw)), (std::vector<z64s>{0, 0, 0, 0}));
    EXPECT_EQ(Fields(TvDataMsg_Transform(raw)), Fields(TvFOR_TRANSFORM_IDENTITY));
    EXPECT_EQ(TvDataMsg_SpaceType(raw), 0);
}

TEST_P(Every_message, Threads_share_and_release_it)
{
    void* const raw = GetParam().make().Detach();
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
    {
        ASSERT_EQ(xzObject_ShareImpl(raw), zOK);
        threads.emplace_back([raw] {
            for (int i = 0; i < 500; ++i)
            {
                static_cast<void>(xzObject_ShareImpl(raw));
                static_cast<void>(TvDataMsg_Stamp(raw));
                static_cast<void>(xzObject_DestroyImpl(raw));
            }
            static_cast<void>(xzObject_DestroyImpl(raw));
        });
    }
    EXPECT_EQ(xzObject_DestroyImpl(raw), zOK);
    for (std::thread& thread : threads)
    {
        thread.join();
    }
}

INSTANTIATE_TEST_SUITE_P(
    , Every_message,
    testing::Values(Family{"surface",
                           [] {
                               return Ta::Object<void*>(Surface({{1, 2}, {3, 4}}));
                           },
                           zTypeOf(TvSurfaceMsg), true},
                    Family{"profile",
                           [] {
                               return Ta::Object<void*>(Profile({1, 2}));
                           },
                           zTypeOf(TvProfileMsg), true},
                    Family{"measure", [] { return Ta::Object<void*>(Measure(1.5)); }, zTypeOf(TvMeasureMsg), false},
                    Family{"null", [] { return Ta::Object<void*>(NullMessage()); }, zTypeOf(TvNullMsg), false},
                    Family{"generic",
                           [] {
                               return Ta::Object<void*>(Generic(1, {1, 2}));
                           },
                           zTypeOf(TvGenericMsg), false},
                    Family{"image",
                           [] {
                               return Ta::Object<void*>(Image({{1, 2}, {3, 4}}));
                           },
                           zTypeOf(TvImageMsg), true},
                    Family{"point",
                           [] {
                               return Ta::Object<void*>(PointFeature({1, 2, 3}));
                           },
                           zTypeOf(TvPointFeatureMsg), false},
                    Family{"line",
                           [] {
                               return Ta::Object<void*>(LineFeature({1, 2, 3}, {0, 0, 1}));
                           },
                           zTypeOf(TvLineFeatureMsg), false},
                    Family{"circle",
                           [] {
                               return Ta::Object<void*>(CircleFeature({1, 2, 3}, {0, 0, 1}, 4));
                           },
                           zTypeOf(TvCircleFeatureMsg), false},
                    Family{"plane",
                           [] {
                               return Ta::Object<void*>(PlaneFeature({0, 0, 1}, 4));
                           },
                           zTypeOf(TvPlaneFeatureMsg), false},
                    Family{"rendering", [] { return Ta::Object<void*>(Rendering(NoMessage())); },
                           zTypeOf(TvRenderingMsg), false}),
    CaseName());

TEST(DataMsg, Handles_of_other_types_are_refused_and_have_defaults)
{
    const auto text = NoMessage();
    for (void* const handle : {text.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(TvDataMsg_SetBoundingBox(handle, &BOX), zERROR_PARAMETER);
        EXPECT_EQ(TvDataMsg_SetTransform(handle, &TRANSFORM), zERROR_PARAMETER);
        EXPECT_EQ(TvDataMsg_SetStamp(handle, &STAMP), zERROR_PARAMETER);
        EXPECT_EQ(TvDataMsg_SetTime(handle, 1), zERROR_PARAMETER);
        EXPECT_EQ(TvDataMsg_SetEncoder(handle, 1), zERROR_PARAMETER);
        EXPECT_EQ(TvDataMsg_SetSpaceType(handle, 1), zERROR_PARAMETER);
        EXPECT_FALSE(TvDataMsg_HasBoundingBox(handle));
        EXPECT_EQ(Fields(TvDataMsg_BoundingBox(handle)), UNKNOWN_BOX);
        EXPECT_EQ(Fields(TvDataMsg_Transform(handle)), Fields(TvFOR_TRANSFORM_IDENTITY));
        EXPECT_EQ(TvDataMsg_Time(handle), 0U);
        EXPECT_EQ(TvDataMsg_Encoder(handle), 0);
        EXPECT_EQ(TvDataMsg_Width(handle), 0U);
        EXPECT_EQ(TvDataMsg_Ranges(handle, 0, 0), nullptr);
        EXPECT_EQ(TvDataMsg_RangeArray(handle, 0), nullptr);
    }
}

TEST(DataMsg, Grid_is_that_of_the_surface_or_profile)
{
    const auto surface = Surface({{1, 2, 3}, {4, 5, 6}}).Offset(1, 2, 3).Scale(4, 5, 6);
    EXPECT_EQ(TvDataMsg_Width(surface.Get()), 3U);
    EXPECT_EQ(TvDataMsg_Length(surface.Get()), 2U);
    EXPECT_EQ(Fields(TvDataMsg_Offset(surface.Get())), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(Fields(TvDataMsg_Scale(surface.Get())), (std::vector<double>{4, 5, 6}));

    const auto profile = Profile({1, 2, 3, 4}).Offset(7, 8, 9).Scale(0.1, 0.2, 0.3);
    EXPECT_EQ(TvDataMsg_Width(profile.Get()), 4U);
    EXPECT_EQ(TvDataMsg_Length(profile.Get()), 1U);
    EXPECT_EQ(Fields(TvDataMsg_Offset(profile.Get())), (std::vector<double>{7, 8, 9}));
    EXPECT_EQ(Fields(TvDataMsg_Scale(profile.Get())), (std::vector<double>{0.1, 0.2, 0.3}));
}

TEST(DataMsg, Message_without_samples_has_no_grid)
{
    const auto measure = Measure(1);
    EXPECT_EQ(TvDataMsg_Width(measure.Get()), 0U);
    EXPECT_EQ(TvDataMsg_Length(measure.Get()), 0U);
    EXPECT_EQ(Fields(TvDataMsg_Offset(measure.Get())), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(Fields(TvDataMsg_Scale(measure.Get())), (std::vector<double>{1, 1, 1}));
}

TEST(DataMsg, Range_is_the_point_or_pixel_at_its_row_and_column)
{
    const auto surface = Surface({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(*static_cast<z16s*>(TvDataMsg_Ranges(surface.Get(), 1, 1)), 5);
    EXPECT_EQ(TvDataMsg_Ranges(surface.Get(), 2, 0), nullptr);
    EXPECT_EQ(TvDataMsg_Ranges(surface.Get(), 0, 3), nullptr);
    const auto profile = PointProfile({{1, 2}, {3, 4}});
    EXPECT_EQ(static_cast<zPoint16s*>(TvDataMsg_Ranges(profile.Get(), 0, 1))->y, 4);
    EXPECT_EQ(TvDataMsg_Ranges(profile.Get(), 1, 0), nullptr);
    const auto image = Image({{1, 2}, {3, 4}, {5, 6}});
    EXPECT_EQ(*static_cast<z8u*>(TvDataMsg_Ranges(image.Get(), 2, 1)), 6);
    EXPECT_EQ(TvDataMsg_Ranges(image.Get(), 3, 0), nullptr);
}

TEST(DataMsg, Range_array_is_that_of_the_points_or_pixels)
{
    const auto surface = Surface({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(TvDataMsg_RangeArray(surface.Get(), 0), TvSurfaceMsg_PointsArray(surface.Get(), 0));
    EXPECT_EQ(TvDataMsg_RangeArray(surface.Get(), 1), nullptr);
    const auto profile = Profile({1, 2});
    EXPECT_EQ(TvDataMsg_RangeArray(profile.Get(), 0), TvProfileMsg_PointsArray(profile.Get(), 0));
    const auto image = Image({{1, 2}, {3, 4}, {5, 6}});
    zArray2 const pixels = TvDataMsg_RangeArray(image.Get(), 0);
    EXPECT_EQ(zArray2_Length(pixels, 0), 3U);
    EXPECT_EQ(zArray2_Length(pixels, 1), 2U);
    EXPECT_EQ(xzObject_ReferenceCount(pixels), 1);
}

TEST(DataMsg, Message_without_samples_has_no_ranges)
{
    const auto measure = Measure(1);
    EXPECT_EQ(TvDataMsg_Ranges(measure.Get(), 0, 0), nullptr);
    EXPECT_EQ(TvDataMsg_RangeArray(measure.Get(), 0), nullptr);
}

TEST(DataMsg, Surface_without_columns_has_an_array_and_no_ranges)
{
    const auto surface = Surface({{}, {}});
    EXPECT_EQ(TvDataMsg_Ranges(surface.Get(), 0, 0), nullptr);
    EXPECT_NE(TvDataMsg_RangeArray(surface.Get(), 0), nullptr);
}
