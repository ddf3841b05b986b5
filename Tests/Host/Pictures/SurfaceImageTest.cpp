#include <Host/Pictures/SurfaceImage.h>

#include "PictureTools.h"

#include "../ScanTestFiles.h"

#include <limits>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Support::NullPixel;
using Support::PointSurface;
using Support::Surface;

/// The view of all of a surface, a pixel of `side` for each mm.
View ViewOf(const SurfaceImage& surface, double side)
{
    return {Plane::XY,
            {0, 0, surface.Across().Extent() * side, surface.Up().Extent() * side},
            surface.Across(),
            surface.Up()};
}

std::uint32_t PixelOf(const PixelImage& image, std::size_t column, std::size_t row)
{
    return image.pixels.at(row * image.width + column);
}

Colour ColourAt(const PixelImage& image, std::size_t column, std::size_t row)
{
    return ColourOf(PixelOf(image, column, row));
}

bool IsInvalid(const PixelImage& image, std::size_t column, std::size_t row)
{
    return PixelOf(image, column, row) == InvalidPixel(column, row);
}

TEST(Surface_image, shows_the_first_row_at_the_bottom)
{
    const auto message = Surface({{0, 100}, {200, 300}}).Scale(1, 1, 0.01);
    const SurfaceImage surface(message.Get());
    const PixelImage image = surface.Draw(ViewOf(surface, 1));
    ASSERT_EQ(image.width, 2U);
    ASSERT_EQ(image.height, 2U);
    const auto lightness = [&](std::size_t column, std::size_t row) {
        return LabOf(ColourAt(image, column, row)).lightness;
    };
    EXPECT_LT(lightness(0, 1), lightness(1, 1));
    EXPECT_LT(lightness(1, 1), lightness(0, 0));
    EXPECT_LT(lightness(0, 0), lightness(1, 0));
}

TEST(Surface_image, knows_the_heights_in_mm)
{
    const auto message = Surface({{-5, 7}, {NullPixel, 2}}).Scale(1, 1, 0.5).Offset(0, 0, 10);
    const SurfaceImage surface(message.Get());
    EXPECT_EQ(surface.Heights()->low, 7.5);
    EXPECT_EQ(surface.Heights()->high, 13.5);
    const auto turned = Surface({{-5, 7}}).Scale(1, 1, -0.5);
    EXPECT_EQ(SurfaceImage(turned.Get()).Heights()->low, -3.5);
    EXPECT_EQ(SurfaceImage(turned.Get()).Heights()->high, 2.5);
}

TEST(Surface_image, has_the_pattern_of_invalid_samples_where_nothing_was_measured)
{
    const auto message = Surface({{1, NullPixel}, {1, 1}});
    const SurfaceImage surface(message.Get());
    const PixelImage image = surface.Draw(ViewOf(surface, 10));
    for (std::size_t row = 0; row < 20; ++row)
    {
        for (std::size_t column = 0; column < 20; ++column)
        {
            EXPECT_EQ(IsInvalid(image, column, row), column >= 10 && row >= 10) << column << ", " << row;
        }
    }
}

TEST(Invalid_pattern, has_colours_that_no_height_has)
{
    for (const std::size_t column : {0U, 5U})
    {
        const Lab lab = LabOf(ColourOf(InvalidPixel(column, 0)));
        for (int i = 0; i <= 255; ++i)
        {
            const Lab height = LabOf(HeightColour(i / 255.0));
            EXPECT_GT(std::hypot(lab.lightness - height.lightness, lab.a - height.a, lab.b - height.b), 0.1) << i;
        }
    }
    EXPECT_NE(InvalidPixel(0, 0), InvalidPixel(5, 0));
}

TEST(Surface_image, shows_the_mean_of_the_valid_samples_in_a_pixel)
{
    // Two pixels of 2 x 2 samples each: 0, null, 40, null make 20; all of 40 make 40.
    const auto message = Surface({{0, NullPixel, 40, 40, 0}, {40, NullPixel, 40, 40, 0}});
    const SurfaceImage surface(message.Get());
    const View view(Plane::XY, {0, 0, 2, 1}, {-0.5, 3.5}, {-0.5, 1.5});
    const PixelImage image = surface.Draw(view);
    ASSERT_EQ(image.pixels.size(), 2U);
    EXPECT_LT(Difference(ColourAt(image, 0, 0), HeightColour(0.5)), 0.02);
    EXPECT_GT(Difference(ColourAt(image, 1, 0), HeightColour(0.5)), 0.1);
    EXPECT_TRUE(Contains(surface.Sampling(view), "mean of the valid samples"));
}

TEST(Surface_image, is_not_hidden_by_single_invalid_samples)
{
    Support::Rows<z16s> rows(100, std::vector<z16s>(100, 5));
    for (std::size_t i = 0; i < 100; i += 2)
    {
        std::fill(rows[i].begin(), rows[i].end(), NullPixel);
    }
    const auto message = Surface(rows);
    const SurfaceImage surface(message.Get());
    const PixelImage image = surface.Draw(ViewOf(surface, 0.1));
    ASSERT_EQ(image.pixels.size(), 100U);
    EXPECT_TRUE(std::ranges::all_of(image.pixels, [&](auto pixel) { return pixel == NumberOf(HeightColour(0)); }));
}

TEST(Surface_image, leaves_what_lies_beside_the_surface_free)
{
    const auto message = Surface({{1}});
    const SurfaceImage surface(message.Get());
    const PixelImage image = surface.Draw({Plane::XY, {0, 0, 3, 3}, {-1.5, 1.5}, {-1.5, 1.5}});
    EXPECT_EQ(PixelOf(image, 0, 0), 0U);
    EXPECT_EQ(PixelOf(image, 1, 1), NumberOf(HeightColour(0)));
}

TEST(Surface_image, runs_the_other_way_with_a_negative_scale)
{
    const auto message = Surface({{NullPixel, 1, 1}}).Scale(-1, 1, 1);
    const SurfaceImage surface(message.Get());
    EXPECT_EQ(surface.Across().low, -2.5);
    const PixelImage image = surface.Draw(ViewOf(surface, 1));
    EXPECT_TRUE(IsInvalid(image, 2, 0));
    EXPECT_FALSE(IsInvalid(image, 0, 0));
}

TEST(Surface_image, lights_slopes_towards_the_upper_left_and_shades_the_others)
{
    // Two roofs: one rises to the right, and so faces the upper left; the other falls.
    const auto message = Surface({{0, 50, 100, 50, 0}, {0, 50, 100, 50, 0}, {0, 50, 100, 50, 0}});
    const SurfaceImage surface(message.Get());
    const PixelImage image = surface.Draw(ViewOf(surface, 1));
    EXPECT_GT(LabOf(ColourAt(image, 1, 1)).lightness, LabOf(HeightColour(0.5)).lightness + 0.03);
    EXPECT_LT(LabOf(ColourAt(image, 3, 1)).lightness, LabOf(HeightColour(0.5)).lightness - 0.03);
}

TEST(Points_of_a_surface, come_to_lie_at_their_places_the_highest_on_top)
{
    // The corners, and two points at (9, 0), the lower one later.
    const auto message = PointSurface({{{0, 0, 0}, {9, 9, 5}}, {{9, 0, 10}, {9, 0, 0}}});
    const SurfaceImage surface(message.Get());
    EXPECT_EQ(surface.Across().low, -0.5);
    EXPECT_EQ(surface.Across().high, 9.5);
    const View view(Plane::XY, {0, 0, 10, 10}, surface.Across(), surface.Up());
    const PixelImage image = surface.Draw(view);
    EXPECT_GT(LabOf(ColourAt(image, 9, 9)).lightness, LabOf(HeightColour(0.8)).lightness);
    EXPECT_FALSE(IsInvalid(image, 0, 9));
    EXPECT_FALSE(IsInvalid(image, 9, 0));
    EXPECT_TRUE(IsInvalid(image, 0, 0));
    EXPECT_TRUE(IsInvalid(image, 5, 9));
}

TEST(Points_of_a_surface, that_are_null_have_no_place)
{
    const auto none = PointSurface({{{NullPixel, NullPixel, NullPixel}}});
    EXPECT_FALSE(SurfaceImage(none.Get()).HasExtent());
    const auto one = PointSurface({{{NullPixel, NullPixel, NullPixel}, {3, 4, 5}}});
    EXPECT_EQ(SurfaceImage(one.Get()).Across().low, 2.5);
}

TEST(Surface_without_valid_heights, has_an_extent_but_no_heights)
{
    const auto message = Surface({{NullPixel, NullPixel}});
    const SurfaceImage surface(message.Get());
    EXPECT_TRUE(surface.HasExtent());
    EXPECT_FALSE(surface.Heights());
    const PixelImage image = surface.Draw(ViewOf(surface, 10));
    EXPECT_TRUE(IsInvalid(image, 3, 3));
}

TEST(Surface_without_samples, has_no_extent)
{
    const auto message = Surface({});
    EXPECT_FALSE(SurfaceImage(message.Get()).HasExtent());
}
} // namespace
