#include <zApi/zSaturate.h>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace
{
constexpr z64f INFINITE = std::numeric_limits<z64f>::infinity();
const z64f NOT_A_NUMBER = std::nan("");
} // namespace

TEST(Saturate, Cuts_off_towards_zero_within_the_range)
{
    EXPECT_EQ(zSaturate<z32s>(0.0), 0);
    EXPECT_EQ(zSaturate<z32s>(2.999), 2);
    EXPECT_EQ(zSaturate<z32s>(-2.999), -2);
    EXPECT_EQ(zSaturate<z16s>(-32767.9), -32767);
    EXPECT_EQ(zSaturate<z8u>(255.9), 255);
    EXPECT_EQ(zSaturate<z8u>(-0.9), 0);
    EXPECT_EQ(zSaturate<z64s>(-9007199254740993.0), -9007199254740992);
}

TEST(Saturate, Takes_the_limits_themselves)
{
    EXPECT_EQ(zSaturate<z32s>(2147483647.0), 2147483647);
    EXPECT_EQ(zSaturate<z32s>(-2147483648.0), -2147483647 - 1);
    EXPECT_EQ(zSaturate<z32s>(2147483647.5), 2147483647);
    EXPECT_EQ(zSaturate<z32u>(4294967295.0), 4294967295U);
    // The highest doubles below 2^63 and 2^64.
    EXPECT_EQ(zSaturate<z64s>(9223372036854774784.0), 9223372036854774784);
    EXPECT_EQ(zSaturate<z64u>(18446744073709549568.0), 18446744073709549568U);
}

TEST(Saturate, Gives_the_nearest_limit_beyond_the_range)
{
    for (const z64f above : {2147483648.0, 1e300, INFINITE})
    {
        EXPECT_EQ(zSaturate<z32s>(above), 2147483647);
        EXPECT_EQ(zSaturate<z16s>(above), 32767);
        EXPECT_EQ(zSaturate<z8u>(above), 255);
    }
    for (const z64f below : {-2147483649.0, zNULL_64F, -INFINITE})
    {
        EXPECT_EQ(zSaturate<z32s>(below), -2147483647 - 1);
        EXPECT_EQ(zSaturate<z16s>(below), -32768);
        EXPECT_EQ(zSaturate<z64u>(below), 0U);
    }
    EXPECT_EQ(zSaturate<z64s>(9223372036854775808.0), 9223372036854775807);
    EXPECT_EQ(zSaturate<z64u>(18446744073709551616.0), 18446744073709551615U);
}

TEST(Saturate, Gives_the_lowest_value_for_what_is_no_number)
{
    EXPECT_EQ(zSaturate<z32s>(NOT_A_NUMBER), -2147483647 - 1);
    EXPECT_EQ(zSaturate<z16s>(NOT_A_NUMBER), -32768);
    EXPECT_EQ(zSaturate<z8u>(NOT_A_NUMBER), 0);
}
