#include <Host/Pictures/ColourMap.h>

#include <gtest/gtest.h>

#include <cmath>

namespace
{
using namespace Mu::Host;

double Distance(const Lab& a, const Lab& b)
{
    return std::hypot(a.lightness - b.lightness, a.a - b.a, a.b - b.b);
}

TEST(Lab_colour, of_white_has_lightness_1_and_no_hue)
{
    const Lab white = LabOf(Colour{1, 1, 1, 1});
    EXPECT_NEAR(white.lightness, 1, 1e-6);
    EXPECT_NEAR(white.a, 0, 1e-6);
    EXPECT_NEAR(white.b, 0, 1e-6);
}

TEST(Lab_colour, of_red_is_that_of_CSS_Color_4)
{
    const Lab red = LabOf(Colour{1, 0, 0, 1});
    EXPECT_NEAR(red.lightness, 0.62796, 1e-4);
    EXPECT_NEAR(red.a, 0.22486, 1e-4);
    EXPECT_NEAR(red.b, 0.12585, 1e-4);
}

TEST(Lab_colour, goes_there_and_back)
{
    for (const Colour& colour : {Colour{0.2, 0.4, 0.6, 1}, Colour{0, 0, 0, 1}, Colour{0.9, 0.01, 0.5, 1}})
    {
        const Colour back = ColourOf(LabOf(colour));
        EXPECT_NEAR(back.red, colour.red, 1e-5);
        EXPECT_NEAR(back.green, colour.green, 1e-5);
        EXPECT_NEAR(back.blue, colour.blue, 1e-5);
    }
}

TEST(Colour_number, is_alpha_red_green_blue)
{
    EXPECT_EQ(ColourOf(0x80FF4000U), (Colour{1, 64.0 / 255, 0, 128.0 / 255}));
    EXPECT_EQ(NumberOf(Colour{1, 64.0 / 255, 0, 128.0 / 255}), 0x80FF4000U);
}

TEST(Height_colours, lie_evenly_on_a_straight_line)
{
    const Lab first = LabOf(HeightColour(0));
    const Lab last = LabOf(HeightColour(1));
    const double whole = Distance(first, last);
    EXPECT_GT(whole, 0.6);
    for (int i = 0; i < 64; ++i)
    {
        const Lab here = LabOf(HeightColour(i / 64.0));
        const Lab next = LabOf(HeightColour((i + 1) / 64.0));
        EXPECT_NEAR(Distance(here, next), whole / 64, whole / 6400) << i;
        EXPECT_NEAR(Distance(first, next), whole * (i + 1) / 64, whole / 1000) << i;
    }
}

TEST(Height_colours, run_from_dark_blue_to_light_yellow_and_only_get_lighter)
{
    const Lab first = LabOf(HeightColour(0));
    const Lab last = LabOf(HeightColour(1));
    EXPECT_LT(first.lightness, 0.35);
    EXPECT_LT(first.b, -0.1);
    EXPECT_GT(last.lightness, 0.9);
    EXPECT_GT(last.b, 0.1);
    for (int i = 0; i < 255; ++i)
    {
        EXPECT_LT(LabOf(HeightColour(i / 255.0)).lightness, LabOf(HeightColour((i + 1) / 255.0)).lightness) << i;
    }
}

TEST(Height_colours, of_heights_outside_are_those_of_the_ends)
{
    EXPECT_EQ(HeightColour(-3), HeightColour(0));
    EXPECT_EQ(HeightColour(7), HeightColour(1));
    EXPECT_EQ(HeightColour(std::nan("")), HeightColour(0));
}
} // namespace
