#include <Tools/ToolGraphic.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{
/// Relative luminance of a colour, WCAG 2.1.
double Luminance(z32u colour)
{
    const auto linear = [colour](unsigned shift) {
        const double part = static_cast<double>((colour >> shift) & 0xFFU) / 255;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

/// Contrast ratio of two colours, from 1 to 21, WCAG 2.1: graphics are to have 3.
double Contrast(z32u a, z32u b)
{
    const auto [darker, brighter] = std::minmax({Luminance(a), Luminance(b)});
    return (brighter + 0.05) / (darker + 0.05);
}

constexpr z32u WHITE = 0xFFFFFFFF;

TEST(ToolColours, of_what_was_found_stand_out_from_white_and_from_both_ends_of_height_maps)
{
    ASSERT_NEAR(Contrast(WHITE, 0xFF000000), 21, 1e-12);
    for (const z32u background : {WHITE, 0xFF440154, 0xFF352A87, 0xFF00204D, 0xFFFDE725, 0xFFF9FB0E, 0xFFFFE945})
    {
        EXPECT_GE(Contrast(ToolColours::FOUND, background), 3) << std::hex << background;
    }
}

TEST(ToolColours, of_what_was_found_have_a_hue_that_height_maps_pass_by)
{
    // From blue over green to yellow the red is never much above the green.
    EXPECT_GE((ToolColours::FOUND >> 16U) & 0xFFU, 200U);
    EXPECT_LE((ToolColours::FOUND >> 8U) & 0xFFU, 50U);
}

TEST(ToolColours, of_dimensions_stand_out_from_what_is_bright_by_their_casing_and_from_what_is_dark_themselves)
{
    for (const z32u bright : {WHITE, 0xFFFDE725, 0xFFF9FB0E, 0xFFFFE945})
    {
        EXPECT_GE(Contrast(ToolColours::CASING, bright), 3) << std::hex << bright;
    }
    for (const z32u dark : {0xFF440154, 0xFF352A87, 0xFF00204D, ToolColours::CASING})
    {
        EXPECT_GE(Contrast(Mu::TlkHelper::DecorationColor, dark), 3) << std::hex << dark;
    }
}

TEST(ToolColours, are_opaque)
{
    EXPECT_EQ(ToolColours::FOUND >> 24U, 0xFFU);
    EXPECT_EQ(ToolColours::CASING >> 24U, 0xFFU);
}
} // namespace
