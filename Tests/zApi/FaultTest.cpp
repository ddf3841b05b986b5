#include <Support/FaultWalk.h>

#include <zApi/zMem.h>

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

using namespace Support;

namespace
{
zStatus CopyByte()
{
    const char from = 'x';
    char to = 0;
    return zMemCopy(&to, &from, 1);
}

zStatus ThreeCopies()
{
    zTRY(CopyByte());
    zTRY(CopyByte());
    return CopyByte();
}
} // namespace

TEST(Fault, Only_the_call_of_that_number_fails_and_with_that_status)
{
    const ArmedFault fault(3, -123);
    std::vector<zStatus> statuses;
    for (int i = 0; i < 5; ++i)
    {
        statuses.push_back(CopyByte());
    }
    EXPECT_EQ(statuses, (std::vector<zStatus>{zOK, zOK, -123, zOK, zOK}));
}

TEST(Fault, Names_the_operation_that_failed)
{
    const ArmedFault fault(2, -1);
    EXPECT_EQ(CopyByte(), zOK);
    EXPECT_EQ(zFault_Operation(), nullptr);
    char bytes[2] = {'a', 'b'};
    EXPECT_EQ(zMemReverse(bytes, 2), -1);
    EXPECT_STREQ(zFault_Operation(), "zMemReverse");
    EXPECT_EQ(std::string(bytes, 2), "ab");
}

TEST(Fault, Disarmed_nothing_fails_and_the_name_stays)
{
    {
        const ArmedFault fault(1, -1);
        EXPECT_EQ(CopyByte(), -1);
    }
    EXPECT_EQ(CopyByte(), zOK);
    EXPECT_STREQ(zFault_Operation(), "zMemCopy");
}

TEST(Fault, Disarming_in_time_prevents_it)
{
    zFault_Arm(1, -1);
    zFault_Disarm();
    EXPECT_EQ(CopyByte(), zOK);
    EXPECT_EQ(zFault_Operation(), nullptr);
}

TEST(Fault, Arming_again_replaces_the_fault_and_forgets_the_name)
{
    zFault_Arm(1, -1);
    EXPECT_EQ(CopyByte(), -1);
    const ArmedFault fault(2, -2);
    EXPECT_EQ(zFault_Operation(), nullptr);
    EXPECT_EQ(CopyByte(), zOK);
    EXPECT_EQ(CopyByte(), -2);
}

TEST(Fault, Fails_one_call_in_all_threads_together)
{
    const ArmedFault fault(500, -9);
    std::vector<int> failures(4, 0);
    std::vector<std::thread> threads;
    for (int& count : failures)
    {
        threads.emplace_back([&count] {
            for (int i = 0; i < 1000; ++i)
            {
                count += CopyByte() == zOK ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(failures[0] + failures[1] + failures[2] + failures[3], 1);
}

TEST(Fault_walk, Visits_every_call_once)
{
    std::vector<std::string> failed;
    const std::size_t calls = WalkFaults(-4, ThreeCopies, [&failed](const std::string& operation, zStatus status) {
        failed.push_back(operation);
        EXPECT_EQ(status, -4);
    });
    EXPECT_EQ(calls, 3U);
    EXPECT_EQ(failed, std::vector<std::string>(3, "zMemCopy"));
    EXPECT_EQ(zFault_Armed.load(), 0);
}
