#include <Support/MessageChecks.h>

#include <gtest/gtest.h>

using namespace Support;

TEST(NullMsg, Costs_one_request)
{
    const CountingAlloc alloc;
    {
        const auto msg = NullMessage(alloc.Get());
        EXPECT_EQ(alloc.Requests(), 1U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(NullMsg, Has_a_stamp_for_each_frame_and_one_at_least)
{
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{3}})
    {
        TvNullMsg msg = nullptr;
        ASSERT_EQ(TvNullMsg_Construct(&msg, count, nullptr), zOK);
        const Ta::Object<void*> owner(msg);
        EXPECT_EQ(zMsgSet_Count(msg), count == 0 ? 1 : count);
    }
}

TEST(NullMsg, Stamp_zero_can_be_set)
{
    const auto msg = NullMessage();
    const zStamp stamp = {1, 2, 3, 4};
    EXPECT_EQ(zMsgSet_SetStampAt(msg.Get(), 0, &stamp), zOK);
    EXPECT_EQ(zMsgSet_StampAt(msg.Get(), 0)->sequence, 2U);
}

TEST(NullMsg, Construct_refuses_what_it_cannot_make)
{
    TvNullMsg msg = nullptr;
    EXPECT_EQ(TvNullMsg_Construct(nullptr, 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(TvNullMsg_Construct(&msg, zMSGSET_MAX_STAMPS + 1, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(msg, nullptr);
}

TEST(NullMsg, Failures_leave_nothing_behind)
{
    EXPECT_EQ(ExpectCleanFailures([](zObject* msg, zAlloc alloc) { return TvNullMsg_Construct(msg, 0, alloc); }), 2U);
    EXPECT_EQ(ExpectCleanFailures([](zObject* msg, zAlloc alloc) { return TvNullMsg_Construct(msg, 4, alloc); }), 4U);
}
