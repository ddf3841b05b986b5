#include "Raised.h"

#include <TaApi/Raise.h>

#include <gtest/gtest.h>

#include <string>

namespace Sample
{
int lineOfCheck = 0;
int lineOfFail = 0;
int lineOfHere = 0;

void CheckStatus(zStatus status)
{
    lineOfCheck = __LINE__ + 1;
    MU_CHECK(status);
}

void Fail(int count)
{
    lineOfFail = __LINE__ + 1;
    MU_FAIL(zERROR_PARAMETER, "%s has %d", "Width", count);
}

void FailWithoutText()
{
    MU_FAIL(zERROR_PRECONDITION, nullptr);
}

void Walk(const Ta::Place& place, zStatus status)
{
    Ta::Check(place, status);
}

void WalkThatSpeaks(const Ta::Place& place)
{
    MU_FAIL_AT(place, zERROR_ENUM, "value %d", 7);
}

void Caller(zStatus status)
{
    lineOfHere = __LINE__ + 1;
    Walk(MU_HERE, status);
}

void CallerOfOneThatSpeaks()
{
    WalkThatSpeaks(MU_HERE);
}

int CountCalls(int& calls)
{
    ++calls;
    return zOK;
}
} // namespace Sample

namespace
{
TEST(Raise, Good_status_raises_nothing)
{
    EXPECT_FALSE(RaisedBy([] { Sample::CheckStatus(zOK); }));
    EXPECT_FALSE(RaisedBy([] { Sample::Caller(zOK); }));
}

TEST(Raise, Every_status_but_1_is_raised_with_its_place_and_without_text)
{
    for (const zStatus status : {0, 2, -1, -984, -998, -999})
    {
        const auto raised = RaisedBy([status] { Sample::CheckStatus(status); });
        ASSERT_TRUE(raised) << status;
        EXPECT_EQ(raised->status, status);
        EXPECT_EQ(raised->line, Sample::lineOfCheck);
        EXPECT_EQ(raised->file, "Tests/TaApi/RaiseTest");
        EXPECT_EQ(raised->function, "Sample::CheckStatus");
        EXPECT_EQ(raised->message, "");
    }
}

TEST(Raise, Own_failure_carries_its_text)
{
    const auto raised = RaisedBy([] { Sample::Fail(3); });
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->status, -997);
    EXPECT_EQ(raised->message, "Width has 3");
    EXPECT_EQ(raised->function, "Sample::Fail");
    EXPECT_EQ(raised->file, "Tests/TaApi/RaiseTest");
    EXPECT_EQ(raised->line, Sample::lineOfFail);
}

TEST(Raise, Own_failure_may_have_no_text)
{
    EXPECT_EQ(Failure([] { Sample::FailWithoutText(); }), "0 ");
}

TEST(Raise, Walk_that_was_handed_a_place_blames_its_caller)
{
    const auto raised = RaisedBy([] { Sample::Caller(-984); });
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->status, -984);
    EXPECT_EQ(raised->function, "Sample::Caller");
    EXPECT_EQ(raised->line, Sample::lineOfHere);

    const auto spoken = RaisedBy([] { Sample::CallerOfOneThatSpeaks(); });
    ASSERT_TRUE(spoken);
    EXPECT_EQ(spoken->status, -996);
    EXPECT_EQ(spoken->message, "value 7");
    EXPECT_EQ(spoken->function, "Sample::CallerOfOneThatSpeaks");
}

TEST(Raise, Checked_call_is_made_once)
{
    int calls = 0;
    MU_CHECK(Sample::CountCalls(calls));
    EXPECT_EQ(calls, 1);
}

TEST(Raise, Source_unit_is_the_file_without_extension)
{
    EXPECT_EQ(Ta::Detail::SourceUnit("Libs/A/Unit.cpp"), "Libs/A/Unit");
    EXPECT_EQ(Ta::Detail::SourceUnit("Libs/A/Unit"), "Libs/A/Unit");
}
} // namespace
