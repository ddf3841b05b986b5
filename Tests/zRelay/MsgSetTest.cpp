#include <Support/FaultWalk.h>

#include <TaApi/Object.h>
#include <zApi/zObjectType.h>
#include <zRelay/zMsgSetClass.h>
#include <zRelay/zRelay.h>

#include <gtest/gtest.h>
#include <limits>

using namespace Support;

// A message of one's own: what a host author writes to add a family.
zDECLARE_TYPE(TestMsg);

namespace
{
void Release(zObject object) noexcept
{
    xzMsgSet_Release(static_cast<zMsgSetClass*>(object));
}

zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    zMsgSetClass* made = nullptr;
    zTRY(zObjectType_New(zTypeOf(TestMsg), alloc, &made));
    return zObjectType_Finish(made, xzMsgSet_CopyStamps(made, static_cast<zMsgSetClass*>(object)), clone);
}

constexpr zObjectOps testMsgOps = {Release, Clone};
} // namespace

zDEFINE_OBJECT_TYPE(TestMsg, zMsgSet, &testMsgOps);

namespace
{
zStatus Construct(zObject* msg, std::size_t count, zAlloc alloc)
{
    zMsgSetClass* made = nullptr;
    zTRY(zObjectType_New(zTypeOf(TestMsg), alloc, &made));
    return zObjectType_Finish(made, xzMsgSet_Init(made, count), msg);
}

Ta::Object<void*> Message(std::size_t count, zAlloc alloc = nullptr)
{
    zObject msg = nullptr;
    EXPECT_EQ(Construct(&msg, count, alloc), zOK);
    return Ta::Object<void*>(msg);
}

zStatus BuildAndClone(zAlloc alloc)
{
    zObject msg = nullptr;
    zObject clone = nullptr;
    zStatus status = Construct(&msg, 3, alloc);
    status = status == zOK ? xzObject_CloneImpl(&clone, msg, alloc) : status;
    static_cast<void>(xzObject_DestroyImpl(clone));
    static_cast<void>(xzObject_DestroyImpl(msg));
    return status;
}
} // namespace

TEST(Stamp, Its_fields_of_64_bits_stand_in_this_order)
{
    static_assert(offsetof(zStamp, sequence) == 8);
    static_assert(offsetof(zStamp, time) == 16);
    static_assert(offsetof(zStamp, encoder) == 24);
    static_assert(sizeof(zStamp) == 32);
}

TEST(MsgSet, Has_as_many_stamps_as_asked_for_and_one_at_least)
{
    EXPECT_EQ(zMsgSet_Count(Message(0).Get()), 1U);
    EXPECT_EQ(zMsgSet_Count(Message(1).Get()), 1U);
    EXPECT_EQ(zMsgSet_Count(Message(5).Get()), 5U);
}

TEST(MsgSet, New_stamps_are_zero)
{
    const auto msg = Message(3);
    for (std::size_t i = 0; i < 3; ++i)
    {
        const zStamp* const stamp = zMsgSet_StampAt(msg.Get(), i);
        ASSERT_NE(stamp, nullptr);
        EXPECT_EQ(stamp->source | stamp->sequence | stamp->time, 0U);
        EXPECT_EQ(stamp->encoder, 0);
    }
}

TEST(MsgSet, Every_stamp_keeps_what_was_set)
{
    const auto msg = Message(3);
    for (std::size_t i = 0; i < 3; ++i)
    {
        const zStamp stamp = {i, 10 + i, 20 + i, -30 - static_cast<z64s>(i)};
        ASSERT_EQ(zMsgSet_SetStampAt(msg.Get(), i, &stamp), zOK);
    }
    for (std::size_t i = 0; i < 3; ++i)
    {
        const zStamp* const stamp = zMsgSet_StampAt(msg.Get(), i);
        EXPECT_EQ(stamp->source, i);
        EXPECT_EQ(stamp->sequence, 10 + i);
        EXPECT_EQ(stamp->time, 20 + i);
        EXPECT_EQ(stamp->encoder, -30 - static_cast<z64s>(i));
    }
}

TEST(MsgSet, Places_past_the_end_null_stamps_and_other_handles_are_refused)
{
    const auto msg = Message(2);
    const CountingAlloc other;
    const zStamp stamp{};
    EXPECT_EQ(zMsgSet_SetStampAt(msg.Get(), 2, &stamp), zERROR_PARAMETER);
    EXPECT_EQ(zMsgSet_SetStampAt(msg.Get(), 0, nullptr), zERROR_MISSING);
    EXPECT_EQ(zMsgSet_SetStampAt(other.Get(), 0, &stamp), zERROR_PARAMETER);
    EXPECT_EQ(zMsgSet_SetStampAt(nullptr, 0, &stamp), zERROR_PARAMETER);
    EXPECT_EQ(zMsgSet_StampAt(msg.Get(), 2), nullptr);
    EXPECT_EQ(zMsgSet_StampAt(other.Get(), 0), nullptr);
    EXPECT_EQ(zMsgSet_Count(other.Get()), 0U);
    EXPECT_EQ(zMsgSet_Count(nullptr), 0U);
}

TEST(MsgSet, More_stamps_than_make_sense_are_refused)
{
    const CountingAlloc alloc;
    zObject msg = nullptr;
    for (const std::size_t count : {zMSGSET_MAX_STAMPS + 1, std::numeric_limits<std::size_t>::max()})
    {
        EXPECT_EQ(Construct(&msg, count, alloc.Get()), zERROR_PARAMETER);
    }
    EXPECT_EQ(msg, nullptr);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(MsgSet, One_stamp_costs_no_memory_beside_the_object)
{
    const CountingAlloc alloc;
    const auto msg = Message(1, alloc.Get());
    EXPECT_EQ(alloc.Requests(), 1U);
}

TEST(MsgSet, Clone_has_stamps_of_its_own)
{
    const auto msg = Message(2);
    zStamp stamp = {1, 2, 3, 4};
    ASSERT_EQ(zMsgSet_SetStampAt(msg.Get(), 0, &stamp), zOK);
    ASSERT_EQ(zMsgSet_SetStampAt(msg.Get(), 1, &stamp), zOK);
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, msg.Get(), nullptr), zOK);
    const Ta::Object<void*> clone(cloned);
    stamp.sequence = 99;
    ASSERT_EQ(zMsgSet_SetStampAt(msg.Get(), 0, &stamp), zOK);
    ASSERT_EQ(zMsgSet_SetStampAt(msg.Get(), 1, &stamp), zOK);
    EXPECT_EQ(zMsgSet_Count(clone.Get()), 2U);
    EXPECT_EQ(zMsgSet_StampAt(clone.Get(), 0)->sequence, 2U);
    EXPECT_EQ(zMsgSet_StampAt(clone.Get(), 1)->sequence, 2U);
}

TEST(MsgSet, Failing_requests_leave_nothing_behind)
{
    EXPECT_EQ(WalkAllocations(BuildAndClone), 4U);
}

TEST(MsgSet, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    EXPECT_GE(WalkFaults(-77,
                         [&alloc] {
                             const zStatus status = BuildAndClone(alloc.Get());
                             EXPECT_EQ(alloc.LiveBlocks(), 0U);
                             return status;
                         }),
              8U);
}
