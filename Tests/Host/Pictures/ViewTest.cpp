#include <Host/Pictures/View.h>

#include <gtest/gtest.h>

#include <cmath>

namespace
{
using namespace Mu::Host;

constexpr Area square{100, 50, 200, 200};

TEST(View_of_a_surface, puts_low_x_left_and_low_y_at_the_bottom)
{
    const View view(Plane::XY, square, {-10, 10}, {0, 40});
    EXPECT_EQ(view.OnPage(-10, 0).x, 100);
    EXPECT_EQ(view.OnPage(-10, 0).y, 250);
    EXPECT_EQ(view.OnPage(zPoint3d64f{5, 30, 999}).x, 250);
    EXPECT_EQ(view.OnPage(zPoint3d64f{5, 30, 999}).y, 100);
}

TEST(View_of_a_profile, takes_z_for_the_height)
{
    const View view(Plane::XZ, square, {0, 10}, {0, 10});
    EXPECT_EQ(view.OnPage(zPoint3d64f{5, 999, 10}).y, 50);
}

TEST(View_of_an_image, puts_row_0_on_top)
{
    const View view(Plane::Image, square, {-0.5, 9.5}, {9.5, -0.5});
    EXPECT_EQ(view.OnPage(zPoint3d64f{0, 0, 0}).x, 110);
    EXPECT_EQ(view.OnPage(zPoint3d64f{0, 0, 0}).y, 60);
    EXPECT_EQ(view.OnPage(zPoint3d64f{0, 9, 0}).y, 240);
    EXPECT_GT(view.DirectionOnPage({0, 1, 0}).y, 0);
}

TEST(View, turns_places_back_into_the_world)
{
    const View view(Plane::XY, square, {-10, 10}, {0, 40});
    EXPECT_DOUBLE_EQ(view.AcrossAt(view.OnPage(3, 7).x), 3);
    EXPECT_DOUBLE_EQ(view.UpAt(view.OnPage(3, 7).y), 7);
}

TEST(View, gives_directions_the_lengths_of_the_page)
{
    const View view(Plane::XY, square, {-10, 10}, {0, 40});
    EXPECT_EQ(view.DirectionOnPage({1, 1, 5}).x, 10);
    EXPECT_EQ(view.DirectionOnPage({1, 1, 5}).y, -5);
}

TEST(Fitted_view, has_the_same_scale_on_both_axes)
{
    for (const double height : {0.001, 1.0, 3.7, 100.0, 1e6})
    {
        const View view = View::Fitted(Plane::XY, {10, 10, 800, 600}, {0, 7}, {2, 2 + height}, Scales::Equal);
        const double across = view.Frame().width / view.Across().Extent();
        const double up = view.Frame().height / view.Up().Extent();
        EXPECT_NEAR(across / up, 1, 1e-9) << height;
        EXPECT_LE(view.Frame().Right(), 810);
        EXPECT_LE(view.Frame().Bottom(), 610);
        EXPECT_GE(view.Frame().width, 100);
        EXPECT_GE(view.Frame().height, 100);
        EXPECT_EQ(view.Frame().left, std::floor(view.Frame().left));
        EXPECT_LE(view.Across().low, 1e-9);
        EXPECT_GE(view.Up().high, 2 + height - 0.01 * height);
    }
}

TEST(Fitted_view, with_free_scales_takes_all_of_the_room)
{
    const View view = View::Fitted(Plane::XZ, {10, 10, 800, 600}, {0, 7}, {0, 0.001}, Scales::Free);
    EXPECT_EQ(view.Frame().height, 600);
    EXPECT_EQ(view.Up().high, 0.001);
}

struct Case
{
    const char* name;
    Segment line;
    std::optional<Segment> asSegment;
    std::optional<Segment> asRay;
};

class Clipping : public testing::TestWithParam<Case>
{
};

void ExpectSame(const std::optional<Segment>& found, const std::optional<Segment>& expected)
{
    ASSERT_EQ(found.has_value(), expected.has_value());
    if (found)
    {
        EXPECT_NEAR(found->first.x, expected->first.x, 1e-9);
        EXPECT_NEAR(found->first.y, expected->first.y, 1e-9);
        EXPECT_NEAR(found->last.x, expected->last.x, 1e-9);
        EXPECT_NEAR(found->last.y, expected->last.y, 1e-9);
    }
}

TEST_P(Clipping, keeps_what_lies_in_the_area)
{
    const Area area{0, 0, 10, 10};
    ExpectSame(Clipped(GetParam().line, area), GetParam().asSegment);
    ExpectSame(ClippedRay(GetParam().line, area), GetParam().asRay);
}

INSTANTIATE_TEST_SUITE_P(
    , Clipping,
    testing::Values(Case{"inside", {{2, 5}, {4, 5}}, Segment{{2, 5}, {4, 5}}, Segment{{2, 5}, {10, 5}}},
                    Case{"across", {{-5, 5}, {15, 5}}, Segment{{0, 5}, {10, 5}}, Segment{{0, 5}, {10, 5}}},
                    Case{"before_the_area", {{-5, 5}, {-4, 5}}, std::nullopt, Segment{{0, 5}, {10, 5}}},
                    Case{"behind_the_area", {{12, 5}, {14, 5}}, std::nullopt, std::nullopt},
                    Case{"past_a_corner", {{-5, 8}, {4, 17}}, std::nullopt, std::nullopt},
                    Case{"diagonal", {{5, 5}, {6, 6}}, Segment{{5, 5}, {6, 6}}, Segment{{5, 5}, {10, 10}}},
                    Case{"upright", {{3, 3}, {3, 2}}, Segment{{3, 3}, {3, 2}}, Segment{{3, 3}, {3, 0}}},
                    Case{"point_inside", {{3, 3}, {3, 3}}, Segment{{3, 3}, {3, 3}}, std::nullopt},
                    Case{"point_outside", {{-3, 3}, {-3, 3}}, std::nullopt, std::nullopt},
                    Case{"endless", {{-1e308, 5}, {1e308, 5}}, std::nullopt, std::nullopt}),
    [](const auto& test) { return std::string(test.param.name); });
} // namespace
