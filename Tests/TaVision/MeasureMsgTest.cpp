#include <Support/MessageChecks.h>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace Support;

namespace
{
Ta::Object<void*> NewMeasure(std::size_t count, z32u sourceId, zAlloc alloc = nullptr)
{
    TvMeasureMsg msg = nullptr;
    EXPECT_EQ(TvMeasureMsg_Construct(&msg, count, sourceId, alloc), zOK);
    return Ta::Object<void*>(msg);
}

const std::vector<double> NO_POSITION(3, zNULL_64F);
} // namespace

TEST(MeasureMsg, New_one_has_no_value_and_no_label_and_passes)
{
    const auto msg = NewMeasure(1, 77);
    EXPECT_EQ(TvMeasureMsg_Value(msg.Get()), zNULL_64F);
    EXPECT_TRUE(TvMeasureMsg_Status(msg.Get()));
    EXPECT_FALSE(TvMeasureMsg_HasLabelPosition(msg.Get()));
    EXPECT_EQ(Fields(TvMeasureMsg_LabelPosition(msg.Get())), NO_POSITION);
    EXPECT_EQ(TvMeasureMsg_SourceId(msg.Get()), 77U);
}

TEST(MeasureMsg, Costs_one_request_with_all_that_can_be_set)
{
    const CountingAlloc alloc;
    {
        const zStamp stamp{};
        const auto msg = Measure(1.5, alloc.Get()).Failed().Label(1, 2, 3).Stamp(stamp);
        EXPECT_EQ(alloc.Requests(), 1U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(MeasureMsg, Keeps_value_decision_and_label)
{
    const auto msg = Measure(1.5).Failed().Label(1, 2, 3);
    EXPECT_EQ(TvMeasureMsg_Value(msg.Get()), 1.5);
    EXPECT_FALSE(TvMeasureMsg_Status(msg.Get()));
    EXPECT_TRUE(TvMeasureMsg_HasLabelPosition(msg.Get()));
    EXPECT_EQ(Fields(TvMeasureMsg_LabelPosition(msg.Get())), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(TvMeasureMsg_SetStatus(msg.Get(), true), zOK);
    EXPECT_TRUE(TvMeasureMsg_Status(msg.Get()));
}

TEST(MeasureMsg, Nan_is_a_value)
{
    EXPECT_TRUE(std::isnan(TvMeasureMsg_Value(Measure(std::numeric_limits<double>::quiet_NaN()).Get())));
}

TEST(MeasureMsg, Label_with_null_x_is_unknown)
{
    const auto msg = Measure(1.5).Label(1, 2, 3).Label(zNULL_64F, 0, 0);
    EXPECT_FALSE(TvMeasureMsg_HasLabelPosition(msg.Get()));
}

TEST(MeasureMsg, Label_of_a_null_message_is_taken_without_effect)
{
    const auto null = NullMessage();
    EXPECT_EQ(TvMeasureMsg_SetLabelPosition(null.Get(), 1, 2, 3), zOK);
    EXPECT_FALSE(TvMeasureMsg_HasLabelPosition(null.Get()));
    EXPECT_EQ(Fields(TvMeasureMsg_LabelPosition(null.Get())), NO_POSITION);
}

TEST(MeasureMsg, Stamps_are_set_on_measurement_and_null_message)
{
    const zStamp stamp = {1, 2, 3, 4};
    const auto measure = NewMeasure(2, 0);
    EXPECT_EQ(TvMeasureMsg_SetStampAt(measure.Get(), 1, &stamp), zOK);
    EXPECT_EQ(zMsgSet_StampAt(measure.Get(), 1)->time, 3U);
    EXPECT_EQ(zMsgSet_StampAt(measure.Get(), 0)->time, 0U);
    EXPECT_EQ(TvMeasureMsg_SetStampAt(measure.Get(), 2, &stamp), zERROR_PARAMETER);
    EXPECT_EQ(TvMeasureMsg_SetStampAt(measure.Get(), 0, nullptr), zERROR_MISSING);

    const auto null = NullMessage();
    EXPECT_EQ(TvMeasureMsg_SetStampAt(null.Get(), 0, &stamp), zOK);
    EXPECT_EQ(zMsgSet_StampAt(null.Get(), 0)->time, 3U);
    EXPECT_EQ(TvMeasureMsg_SetStampAt(null.Get(), 1, &stamp), zERROR_PARAMETER);
}

TEST(MeasureMsg, Other_handles_are_refused)
{
    const zStamp stamp{};
    const auto profile = Profile({1});
    for (void* const handle : {profile.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(TvMeasureMsg_SetValue(handle, 1), zERROR_PARAMETER);
        EXPECT_EQ(TvMeasureMsg_SetStatus(handle, true), zERROR_PARAMETER);
        EXPECT_EQ(TvMeasureMsg_SetLabelPosition(handle, 1, 2, 3), zERROR_PARAMETER);
        EXPECT_EQ(TvMeasureMsg_SetStampAt(handle, 0, &stamp), zERROR_PARAMETER);
        EXPECT_EQ(TvMeasureMsg_Value(handle), zNULL_64F);
        EXPECT_FALSE(TvMeasureMsg_Status(handle));
        EXPECT_EQ(TvMeasureMsg_SourceId(handle), 0U);
    }
    const auto null = NullMessage();
    EXPECT_EQ(TvMeasureMsg_SetValue(null.Get(), 1), zERROR_PARAMETER);
    EXPECT_EQ(TvMeasureMsg_SetStatus(null.Get(), true), zERROR_PARAMETER);
}

TEST(MeasureMsg, Construct_refuses_what_it_cannot_make)
{
    TvMeasureMsg msg = nullptr;
    EXPECT_EQ(TvMeasureMsg_Construct(nullptr, 1, 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(TvMeasureMsg_Construct(&msg, std::numeric_limits<std::size_t>::max(), 0, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(msg, nullptr);
}

TEST(MeasureMsg, Clone_is_independent)
{
    auto msg = NewMeasure(1, 5);
    ASSERT_EQ(TvMeasureMsg_SetValue(msg.Get(), 2.5), zOK);
    ASSERT_EQ(TvMeasureMsg_SetStatus(msg.Get(), false), zOK);
    ASSERT_EQ(TvMeasureMsg_SetLabelPosition(msg.Get(), 1, 2, 3), zOK);
    const auto clone = CloneOf(msg.Get());
    ASSERT_EQ(TvMeasureMsg_SetValue(msg.Get(), 9), zOK);
    EXPECT_EQ(TvMeasureMsg_Value(clone.Get()), 2.5);
    EXPECT_FALSE(TvMeasureMsg_Status(clone.Get()));
    EXPECT_EQ(Fields(TvMeasureMsg_LabelPosition(clone.Get())), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(TvMeasureMsg_SourceId(clone.Get()), 5U);
}

TEST(MeasureMsg, Failures_leave_nothing_behind)
{
    EXPECT_EQ(ExpectCleanFailures([](zObject* msg, zAlloc alloc) {
                  const zStamp stamp{};
                  zTRY(TvMeasureMsg_Construct(msg, 2, 0, alloc));
                  zTRY(TvMeasureMsg_SetValue(*msg, 1));
                  zTRY(TvMeasureMsg_SetStatus(*msg, true));
                  zTRY(TvMeasureMsg_SetLabelPosition(*msg, 1, 2, 3));
                  return TvMeasureMsg_SetStampAt(*msg, 1, &stamp);
              }),
              4U);
}
