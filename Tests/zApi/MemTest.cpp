#include <Support/FaultWalk.h>

#include <zApi/zMem.h>

#include <gtest/gtest.h>
#include <string>

using namespace Support;

TEST(Mem, Copies_bytes_and_no_more)
{
    std::string to = "......";
    EXPECT_EQ(zMemCopy(to.data() + 1, "abc", 3), zOK);
    EXPECT_EQ(to, ".abc..");
}

TEST(Mem, Reverses_in_place)
{
    struct Case
    {
        std::string before;
        std::string after;
    };
    for (Case c : {Case{"a", "a"}, Case{"ab", "ba"}, Case{"abc", "cba"}, Case{"abcd", "dcba"}})
    {
        EXPECT_EQ(zMemReverse(c.before.data(), c.before.size()), zOK);
        EXPECT_EQ(c.before, c.after);
    }
}

TEST(Mem, Reverse_copy_leaves_the_source)
{
    const std::string from = "abcd";
    std::string to = "......";
    EXPECT_EQ(zMemReverseCopy(to.data() + 1, from.data(), 4), zOK);
    EXPECT_EQ(to, ".dcba.");
    EXPECT_EQ(from, "abcd");
}

TEST(Mem, Size_zero_succeeds_with_any_pointers)
{
    EXPECT_EQ(zMemCopy(nullptr, nullptr, 0), zOK);
    EXPECT_EQ(zMemReverse(nullptr, 0), zOK);
    EXPECT_EQ(zMemReverseCopy(nullptr, nullptr, 0), zOK);
}

TEST(Mem, Null_pointers_are_refused)
{
    char byte = 0;
    EXPECT_EQ(zMemCopy(nullptr, &byte, 1), zERROR_MISSING);
    EXPECT_EQ(zMemCopy(&byte, nullptr, 1), zERROR_MISSING);
    EXPECT_EQ(zMemReverse(nullptr, 1), zERROR_MISSING);
    EXPECT_EQ(zMemReverseCopy(nullptr, &byte, 1), zERROR_MISSING);
    EXPECT_EQ(zMemReverseCopy(&byte, nullptr, 1), zERROR_MISSING);
}

TEST(Mem, Failing_calls_change_nothing)
{
    std::string to = "ab";
    EXPECT_EQ(WalkFaults(
                  -6, [&to] { return zMemCopy(to.data(), "xy", 2); },
                  [&to](const std::string&, zStatus status) {
                      EXPECT_EQ(status, -6);
                      EXPECT_EQ(to, "ab");
                  }),
              1U);
    EXPECT_EQ(to, "xy");
    EXPECT_EQ(WalkFaults(-6, [&to] { return zMemReverse(to.data(), 2); }), 1U);
    EXPECT_EQ(to, "yx");
    EXPECT_EQ(WalkFaults(-6, [&to] { return zMemReverseCopy(to.data(), "pq", 2); }), 1U);
    EXPECT_EQ(to, "qp");
}
