#include <Host/Pictures/GridAxis.h>

#include <gtest/gtest.h>

#include <limits>

namespace
{
using namespace Mu::Host;

TEST(Grid_axis, reaches_half_a_step_beyond_its_samples)
{
    EXPECT_EQ(GridAxis(10, 2).Extent(3).low, 9);
    EXPECT_EQ(GridAxis(10, 2).Extent(3).high, 15);
    EXPECT_EQ(GridAxis(10, -2).Extent(3).low, 5);
    EXPECT_EQ(GridAxis(10, -2).Extent(3).high, 11);
}

struct Case
{
    const char* name;
    double scale;
    Range piece;
    std::size_t first, end;
};

class Samples_in_a_piece : public testing::TestWithParam<Case>
{
};

TEST_P(Samples_in_a_piece, are_those_within_or_the_nearest)
{
    const auto samples = GridAxis(0, GetParam().scale).SamplesIn(GetParam().piece, 5);
    EXPECT_EQ(samples.first, GetParam().first);
    EXPECT_EQ(samples.end, GetParam().end);
}

INSTANTIATE_TEST_SUITE_P(
    , Samples_in_a_piece,
    testing::Values(Case{"several", 1, {0.5, 3.5}, 1, 4}, Case{"low_end_included", 1, {1, 3}, 1, 3},
                    Case{"downwards", 1, {3.5, 0.5}, 1, 4}, Case{"between_two", 1, {1.6, 1.9}, 2, 3},
                    Case{"beyond_the_low_end", 1, {-9, -8}, 0, 0}, Case{"over_the_high_end", 1, {3.5, 99}, 4, 5},
                    Case{"negative_scale", -1, {-2.5, -0.5}, 1, 3}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Parts_of_a_range, share_out_every_sample_once)
{
    const GridAxis axis(3, 0.7);
    std::size_t next = 0;
    for (const auto& samples : SamplesOfParts(axis, 1000, axis.Extent(1000), 37))
    {
        EXPECT_EQ(samples.first, next);
        next = samples.end;
    }
    EXPECT_EQ(next, 1000U);
}

TEST(Grid_axis, counts_samples_if_offset_or_scale_are_of_no_use)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const GridAxis& axis : {GridAxis(0, 0), GridAxis(nan, 1), GridAxis(0, nan), GridAxis(infinity, 1),
                                 GridAxis(1e300, 1), GridAxis(1e14, 1), GridAxis(0, 1e308), GridAxis(0, 5e-324)})
    {
        EXPECT_FALSE(axis.IsInMm());
        EXPECT_EQ(axis.At(7), 7);
    }
    EXPECT_TRUE(GridAxis(1e6, 1e-3).IsInMm());
}
} // namespace
