#include <MuTlkHelper/WholeDegrees.h>

#include <gtest/gtest.h>

namespace
{
using Mu::TlkHelper::Detail::LAST_WHOLE_DEGREE;
using Mu::TlkHelper::Detail::SineCosine;
using Mu::TlkHelper::Detail::SineCosineOf;
using Mu::TlkHelper::Detail::WHOLE_DEGREES;

// Volatile, so that the C library computes it and not the compiler.
double Radians(double degrees)
{
    const volatile double radians = degrees * (3.141592653589793 / 180.0);
    return radians;
}

TEST(Table_of_whole_degrees, holds_the_sines_and_cosines_of_the_C_library)
{
    std::size_t sure = 0;
    for (std::size_t degree = 0; degree <= LAST_WHOLE_DEGREE; ++degree)
    {
        const SineCosine& entry = WHOLE_DEGREES.at(degree);
        if (std::isnan(entry.sine))
        {
            EXPECT_TRUE(std::isnan(entry.cosine)) << degree;
            continue;
        }
        ++sure;
        EXPECT_EQ(entry.sine, std::sin(Radians(static_cast<double>(degree)))) << degree;
        EXPECT_EQ(entry.cosine, std::cos(Radians(static_cast<double>(degree)))) << degree;
    }
    // One of a hundred values lies so close to the middle between two doubles that either may be given.
    EXPECT_GE(sure, LAST_WHOLE_DEGREE * 9 / 10);
}

TEST(Table_of_whole_degrees, is_constant)
{
    constexpr SineCosine RIGHT_ANGLE = WHOLE_DEGREES[90];
    static_assert(RIGHT_ANGLE.sine == 1.0);
    static_assert(RIGHT_ANGLE.cosine == 6.123233995736766e-17);
    EXPECT_EQ(RIGHT_ANGLE.cosine, std::cos(Radians(90.0)));
}

TEST(Sine_and_cosine_of_degrees, are_those_of_the_radians_at_any_angle)
{
    for (const double degrees : {0.0, -0.0, 1.0, 0.5, 1.5, 29.999999999999996, 297.0, 351.0, 359.5, 360.0, 360.5, 361.0,
                                 -1.0, -90.0, 720.0, 1e9, 1e300})
    {
        const SineCosine turn = SineCosineOf(degrees);
        EXPECT_EQ(turn.sine, std::sin(Radians(degrees))) << degrees;
        EXPECT_EQ(std::signbit(turn.sine), std::signbit(std::sin(Radians(degrees)))) << degrees;
        EXPECT_EQ(turn.cosine, std::cos(Radians(degrees))) << degrees;
    }
    for (int degree = -720; degree <= 720; ++degree)
    {
        EXPECT_EQ(SineCosineOf(degree).sine, std::sin(Radians(degree))) << degree;
        EXPECT_EQ(SineCosineOf(degree).cosine, std::cos(Radians(degree))) << degree;
    }
}

TEST(Sine_and_cosine_of_degrees, of_an_angle_that_is_not_finite_are_not_numbers)
{
    for (const double degrees : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    {
        EXPECT_TRUE(std::isnan(SineCosineOf(degrees).sine));
        EXPECT_TRUE(std::isnan(SineCosineOf(-degrees).cosine));
    }
}
} // namespace
