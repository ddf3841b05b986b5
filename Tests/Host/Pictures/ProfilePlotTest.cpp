#include <Host/Pictures/ProfilePlot.h>

#include "PictureTools.h"

#include <limits>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Support::NullPixel;
using Support::PointProfile;
using Support::Profile;

const Colour white{1, 1, 1, 1};
const Colour line{0.10, 0.30, 0.62, 1};

TEST(Profile_plot, draws_a_line_through_its_points_in_mm)
{
    const auto profile = Profile({0, 10, 20, 30}).Scale(2, 1, 0.5).Offset(100, 0, 7);
    const Picture picture = Drawn(profile.Get());
    EXPECT_TRUE(Shows(picture, 100, 7, line));
    EXPECT_TRUE(Shows(picture, 103, 14.5, line));
    EXPECT_TRUE(Shows(picture, 106, 22, line));
    EXPECT_TRUE(Shows(picture, 101, 20, white));
    EXPECT_TRUE(HasText(picture, "x (mm)"));
    EXPECT_TRUE(HasText(picture, "z (mm)"));
}

TEST(Profile_plot, has_a_gap_where_points_are_invalid)
{
    const auto profile = Profile({0, 0, 0, NullPixel, 0, 0, 9});
    const Picture picture = Drawn(profile.Get());
    EXPECT_TRUE(Shows(picture, 1.5, 0, line));
    EXPECT_TRUE(Shows(picture, 3, 0, white));
    EXPECT_TRUE(Shows(picture, 4.5, 0, line));
}

TEST(Profile_plot, draws_points_with_positions_of_their_own_as_dots)
{
    const auto profile = PointProfile({{0, 0}, {10, 5}, {NullPixel, NullPixel}, {4, 8}}).Scale(0.1, 1, 0.1);
    const Picture picture = Drawn(profile.Get());
    EXPECT_TRUE(Shows(picture, 0, 0, line));
    EXPECT_TRUE(Shows(picture, 1, 0.5, line));
    EXPECT_TRUE(Shows(picture, 0.4, 0.8, line));
    EXPECT_TRUE(Shows(picture, 0.5, 0.25, white));
}

TEST(Profile_plot, colours_points_by_their_intensity)
{
    const auto profile = Profile({0, 5, 0}).Intensity({10, 200, 105});
    const Picture picture = Drawn(profile.Get());
    EXPECT_TRUE(Shows(picture, 0, 0, HeightColour(0)));
    EXPECT_TRUE(Shows(picture, 1, 5, HeightColour(1)));
    EXPECT_TRUE(Shows(picture, 2, 0, HeightColour(0.5)));
    EXPECT_TRUE(HasText(picture, "intensity"));
    const auto wide = PointProfile({{0, 0}, {5, 5}}).Intensity16({1000, 60000});
    EXPECT_EQ(ProfilePlot(wide.Get()).Intensities()->high, 60000);
}

TEST(Profile_plot, shows_the_extremes_of_many_points_in_a_column)
{
    std::vector<z16s> heights(200'000, 0);
    heights[100'003] = 20'000;
    const auto profile = Profile(heights).Scale(0.001, 1, 0.001);
    const Picture picture = Drawn(profile.Get());
    EXPECT_TRUE(Shows(picture, 100.003, 15, line));
}

TEST(Profile_plot, draws_a_million_single_points)
{
    std::vector<z16s> heights(1'000'000, NullPixel);
    for (std::size_t i = 0; i < heights.size(); i += 2)
    {
        heights[i] = static_cast<z16s>(i % 2'000);
    }
    const auto profile = Profile(heights).Scale(0.001, 1, 0.1);
    EXPECT_TRUE(Shows(Drawn(profile.Get()), 500, 100, line));
}

TEST(Profile_plot, says_by_how_much_heights_are_stretched)
{
    const auto flat = Profile({0, 1, 0, 1, 0}).Scale(10, 1, 0.001);
    const Picture picture = Drawn(flat.Get());
    EXPECT_TRUE(HasText(picture, "heights are stretched "));
    const View& view = *picture.DataView();
    EXPECT_GT(view.Frame().height / view.Up().Extent(), 100 * view.Frame().width / view.Across().Extent());
    const auto steep = Profile({0, 10, 0});
    EXPECT_FALSE(HasText(Drawn(steep.Get()), "stretched"));
}

TEST(Profile_plot, of_one_point_and_of_equal_heights_has_an_extent)
{
    for (const std::vector<z16s>& heights : {std::vector<z16s>{7}, std::vector<z16s>{7, 7, 7}})
    {
        const auto profile = Profile(heights);
        const ProfilePlot plot(profile.Get());
        EXPECT_GT(plot.Across().Extent(), 0);
        EXPECT_GT(plot.Up().Extent(), 0);
        EXPECT_TRUE(Shows(Drawn(profile.Get()), 0, 7, line));
    }
}

TEST(Profile_plot, without_valid_points_is_a_note)
{
    const auto nulls = Profile({NullPixel, NullPixel});
    EXPECT_TRUE(HasText(Drawn(nulls.Get()), "the profile has no valid points"));
    const auto empty = Profile({});
    EXPECT_FALSE(Drawn(empty.Get()).DataView());
}
} // namespace
