#include <zVision/zDegrees.h>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace
{
TEST(Degrees, turn_exactly_at_multiples_of_a_right_angle)
{
    struct Case
    {
        double degrees, sine, cosine;
    };
    for (const Case& c : {Case{0, 0, 1}, Case{90, 1, 0}, Case{180, 0, -1}, Case{270, -1, 0}, Case{360, 0, 1},
                          Case{450, 1, 0}, Case{-90, -1, 0}, Case{-180, 0, -1}, Case{-270, 1, 0}, Case{-360, 0, 1},
                          Case{36e9 + 90, 1, 0}, Case{-36e9 - 90, -1, 0}})
    {
        const zDegreesTurn turn = zDegrees_Turn(c.degrees);
        EXPECT_EQ(turn.sine, c.sine) << c.degrees;
        EXPECT_EQ(turn.cosine, c.cosine) << c.degrees;
    }
}

TEST(Degrees, are_those_of_the_unit_circle)
{
    constexpr unsigned seed = 71;
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> angle(-800, 800);
    const long double perDegree = std::acos(-1.0L) / 180.0L;
    for (int i = 0; i < 20000; ++i)
    {
        const double degrees = angle(random);
        const zDegreesTurn turn = zDegrees_Turn(degrees);
        const auto radians = static_cast<long double>(degrees) * perDegree;
        ASSERT_NEAR(turn.sine, static_cast<double>(std::sin(radians)), 3e-16) << degrees << ", seed " << seed;
        ASSERT_NEAR(turn.cosine, static_cast<double>(std::cos(radians)), 3e-16) << degrees << ", seed " << seed;
    }
}

TEST(Degrees, that_are_not_finite_give_no_number)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double degrees : {infinity, -infinity, std::nan("")})
    {
        EXPECT_TRUE(std::isnan(zDegrees_Turn(degrees).sine));
        EXPECT_TRUE(std::isnan(zDegrees_Turn(degrees).cosine));
    }
}
} // namespace
