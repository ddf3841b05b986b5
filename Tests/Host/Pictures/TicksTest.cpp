#include <Host/Pictures/Ticks.h>

#include <gmock/gmock.h>

#include <limits>

namespace
{
using namespace Mu::Host;
using testing::ElementsAre;

struct Case
{
    const char* name;
    Range range;
    std::size_t most;
    std::vector<std::string> texts;
};

class Ticks_of_a_range : public testing::TestWithParam<Case>
{
};

TEST_P(Ticks_of_a_range, stand_at_round_values)
{
    EXPECT_EQ(RoundTicks(GetParam().range, GetParam().most).texts, GetParam().texts);
}

INSTANTIATE_TEST_SUITE_P(
    , Ticks_of_a_range,
    testing::Values(Case{"ends_included", {0, 10}, 6, {"0", "2", "4", "6", "8", "10"}},
                    Case{"by_5", {-7, 13}, 6, {"-5", "0", "5", "10"}},
                    Case{"decimals", {0.11, 0.52}, 6, {"0.2", "0.3", "0.4", "0.5"}},
                    Case{"zero_without_sign", {-0.1, 0.1}, 3, {"-0.1", "0.0", "0.1"}},
                    Case{"downwards", {4, 0}, 5, {"0", "1", "2", "3", "4"}},
                    Case{"large_offset", {100000, 100001}, 3, {"100000.0", "100000.5", "100001.0"}},
                    Case{"large", {0, 2e8}, 3, {"0", "1e+08", "2e+08"}},
                    Case{
                        "large_between", {0, 3e10}, 7, {"0", "5e+09", "1e+10", "1.5e+10", "2e+10", "2.5e+10", "3e+10"}},
                    Case{"small", {0, 2e-8}, 3, {"0", "1e-08", "2e-08"}}, Case{"one_value", {5, 5}, 4, {"5"}},
                    Case{"lost_in_the_value", {1e17, 1e17 + 16}, 5, {"1e+17"}}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Ticks, of_what_is_not_finite_are_none)
{
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(RoundTicks({0, infinity}, 5).places.empty());
    EXPECT_TRUE(RoundTicks({std::numeric_limits<double>::quiet_NaN(), 1}, 5).places.empty());
    EXPECT_TRUE(
        RoundTicks({std::numeric_limits<double>::lowest(), std::numeric_limits<double>::max()}, 5).places.empty());
}

TEST(Ticks, are_never_more_than_asked_for_and_lie_within)
{
    for (double high = 1e-3; high < 1e4; high *= 1.37)
    {
        for (const std::size_t most : {2U, 3U, 7U, 20U})
        {
            const Ticks ticks = RoundTicks({-high / 3, high}, most);
            EXPECT_LE(ticks.places.size(), most);
            EXPECT_GE(ticks.places.size(), 1U);
            EXPECT_GE(ticks.places.front(), -high / 3 * (1 + 1e-6));
            EXPECT_LE(ticks.places.back(), high * (1 + 1e-6));
        }
    }
}
} // namespace
