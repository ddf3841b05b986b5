#include <Host/Pictures/ImagePixels.h>

#include "PictureTools.h"

#include <MuTlkHelper/GraphicUtils.h>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Support::Rows;

Colour Grey(double value)
{
    return {value / 255, value / 255, value / 255, 1};
}

TEST(Image_picture, has_row_0_on_top_and_pixels_centred_on_their_numbers)
{
    const auto image = Support::Image(Rows<z8u>{{0, 50, 100}, {150, 200, 250}});
    const Picture picture = Drawn(image.Get());
    EXPECT_LT(picture.DataView()->OnPage(0, 0).y, picture.DataView()->OnPage(0, 1).y);
    EXPECT_TRUE(Shows(picture, 0, 0, Grey(0)));
    EXPECT_TRUE(Shows(picture, 2, 0, Grey(100)));
    EXPECT_TRUE(Shows(picture, 0, 1, Grey(150)));
    EXPECT_TRUE(Shows(picture, 2.4, 1.4, Grey(250)));
    EXPECT_TRUE(Shows(picture, 1.6, 0.6, Grey(250)));
    EXPECT_TRUE(HasText(picture, "x (px)"));
}

TEST(Image_picture, has_graphics_on_the_pixels_that_they_name)
{
    const auto image = Support::Image(Rows<z8u>(20, std::vector<z8u>(20, 0)));
    const Ta::Object<void*> graphic = NewGraphic();
    Mu::TlkHelper::GraphicAddPoint(graphic.Get(), {3, 17, 0}, 4, 0xFFFF0000U, nullptr, 2);
    const Picture picture = Drawn(image.Get(), {graphic.Get()});
    EXPECT_TRUE(Shows(picture, 3, 17, {1, 0, 0, 1}));
    EXPECT_GT(picture.DataView()->OnPage(3, 17).y, picture.DataView()->Frame().Centre().y);
}

TEST(Image_picture, shows_colours_of_both_colour_formats)
{
    const auto withFourth = Support::Image(Rows<zRgb>{{{0, 128, 255, 0}}}, TvPIXEL_FORMAT_BGRX8);
    EXPECT_TRUE(Shows(Drawn(withFourth.Get()), 0, 0, {1, 128.0 / 255, 0, 1}));
    const auto packed = Support::Image(Rows<zRgb24>{{{255, 0, 128}}}, TvPIXEL_FORMAT_BGR8_PACKED);
    EXPECT_TRUE(Shows(Drawn(packed.Get()), 0, 0, {128.0 / 255, 0, 1, 1}));
}

TEST(Image_picture, shows_the_brightest_of_16_bits_as_white_and_says_so)
{
    const auto image = Support::Image(Rows<z16u>{{0, 2000, 4000}}, TvPIXEL_FORMAT_GREY16);
    const Picture picture = Drawn(image.Get());
    EXPECT_TRUE(Shows(picture, 1, 0, Grey(127.5)));
    EXPECT_TRUE(Shows(picture, 2, 0, Grey(255)));
    EXPECT_TRUE(HasText(picture, "white is 4000"));
}

TEST(Image_picture, shows_masks_in_black_and_white_and_mosaics_in_grey)
{
    const auto mask = Support::Image(Rows<z8u>{{0, 1}}, TvPIXEL_FORMAT_MASK8);
    EXPECT_TRUE(Shows(Drawn(mask.Get()), 1, 0, Grey(255)));
    const auto mosaic = Support::Image(Rows<z8u>{{0, 77}}, TvPIXEL_FORMAT_MOSAIC8);
    EXPECT_TRUE(Shows(Drawn(mosaic.Get()), 1, 0, Grey(77)));
    EXPECT_TRUE(HasText(Drawn(mosaic.Get()), "raw samples behind a colour filter"));
}

TEST(Image_picture, says_that_a_format_is_not_drawn)
{
    const auto image = Support::Image(Rows<zRgb24>{{{1, 2, 3}}}, TvPIXEL_FORMAT_PFNC_RGB8);
    const Picture picture = Drawn(image.Get());
    EXPECT_TRUE(HasText(picture, "pixels of format 0x2180014 are not drawn"));
    EXPECT_TRUE(Shows(picture, 0, 0, {1, 1, 1, 1}));
}

TEST(Image_picture, shows_means_of_pixels_that_are_smaller_than_its_own)
{
    Rows<z8u> rows(3000, std::vector<z8u>(3000));
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        std::fill(rows[i].begin(), rows[i].end(), i % 2 == 0 ? 0 : 200);
    }
    const auto image = Support::Image(rows);
    const Picture picture = Drawn(image.Get());
    const Colour middle = PixelAt(picture, picture.DataView()->Frame().Centre());
    EXPECT_GT(middle.red, 60.0 / 255);
    EXPECT_LT(middle.red, 140.0 / 255);
}

TEST(Image_picture, without_pixels_is_a_note)
{
    const auto image = Support::Image(Rows<z8u>{});
    EXPECT_TRUE(HasText(Drawn(image.Get()), "the image has no pixels"));
}
} // namespace
