#include <Host/Pictures/Canvas.h>

#include <gtest/gtest.h>

#include <array>

namespace
{
using namespace Mu::Host;

constexpr TextStyle style{16, {0, 0, 0, 1}, Weight::Normal};

TEST(Canvas_page, begins_white_and_takes_colours_where_they_are_put)
{
    Canvas canvas(PictureFormat::Png, 40, 20);
    canvas.Fill(Area{10, 5, 10, 10}, {1, 0, 0, 1});
    EXPECT_EQ(canvas.PixelAt(9, 5), (Colour{1, 1, 1, 1}));
    EXPECT_EQ(canvas.PixelAt(10, 5), (Colour{1, 0, 0, 1}));
    EXPECT_EQ(canvas.PixelAt(19, 14), (Colour{1, 0, 0, 1}));
    EXPECT_EQ(canvas.PixelAt(20, 14), (Colour{1, 1, 1, 1}));
}

TEST(Canvas_page, keeps_what_lies_outside_a_clip)
{
    Canvas canvas(PictureFormat::Png, 40, 20);
    canvas.Clip({0, 0, 20, 20});
    canvas.Fill(canvas.Page(), {0, 0, 1, 1});
    canvas.EndClip();
    EXPECT_EQ(canvas.PixelAt(19, 3), (Colour{0, 0, 1, 1}));
    EXPECT_EQ(canvas.PixelAt(21, 3), (Colour{1, 1, 1, 1}));
}

TEST(Canvas_page, shows_images_pixel_by_pixel)
{
    Canvas canvas(PictureFormat::Png, 40, 20);
    canvas.Image({2, 1, {0xFF112233U, 0xFF445566U}}, {7, 3});
    EXPECT_EQ(NumberOf(canvas.PixelAt(7, 3)), 0xFF112233U);
    EXPECT_EQ(NumberOf(canvas.PixelAt(8, 3)), 0xFF445566U);
    EXPECT_EQ(NumberOf(canvas.PixelAt(9, 3)), 0xFFFFFFFFU);
}

TEST(Canvas_page, has_no_pixels_to_read_beyond_it_or_in_other_formats)
{
    EXPECT_EQ(Canvas(PictureFormat::Png, 40, 20).PixelAt(40, 0).alpha, 0);
    EXPECT_EQ(Canvas(PictureFormat::Svg, 40, 20).PixelAt(1, 1).alpha, 0);
}

TEST(Canvas_text, knows_its_extents)
{
    Canvas canvas(PictureFormat::Png, 400, 400);
    canvas.Text("Wide", {100, 100}, style);
    canvas.Text("Wide", {100, 200}, style, TextFrom::Right);
    canvas.Text("Wide", {300, 200}, style, TextFrom::Middle, TextTurn::Upwards);
    const auto& texts = canvas.Texts();
    ASSERT_EQ(texts.size(), 3U);
    const double width = canvas.TextWidth("Wide", style);
    EXPECT_GT(width, 30);
    EXPECT_EQ(texts[0].extents.left, 100);
    EXPECT_DOUBLE_EQ(texts[0].extents.width, width);
    EXPECT_DOUBLE_EQ(texts[1].extents.Right(), 100);
    EXPECT_DOUBLE_EQ(texts[2].extents.Centre().y, 200);
    EXPECT_DOUBLE_EQ(texts[2].extents.height, width);
}

TEST(Canvas_text, takes_any_bytes)
{
    for (const PictureFormat format : {PictureFormat::Png, PictureFormat::Svg, PictureFormat::Pdf})
    {
        Canvas canvas(format, 400, 100);
        for (const std::string& text : {std::string("\xFF\xFE broken"), std::string("a\0b", 3), std::string("\x1B[31m"),
                                        std::string("\xEF\xBF\xBF<&\">"), std::string("Höhe µm"), std::string()})
        {
            canvas.Text(text, {10, 50}, style);
        }
        EXPECT_EQ(canvas.Texts()[1].text, "a?b");
        EXPECT_EQ(canvas.Texts()[2].text, "?[31m");
        EXPECT_EQ(canvas.Texts()[3].text, "\xEF\xBF\xBD<&\">");
        EXPECT_FALSE(canvas.Encode().empty());
    }
}

TEST(Canvas_text, is_cut_to_the_width_that_there_is)
{
    const Canvas canvas(PictureFormat::Png, 400, 100);
    EXPECT_EQ(canvas.Fitted("short", style, 200), "short");
    for (const std::string& text : {std::string(100'000, 'x'), std::string(50, 'W'), std::string(60, 'i')})
    {
        const std::string fitted = canvas.Fitted(text, style, 200);
        EXPECT_LE(canvas.TextWidth(fitted, style), 200);
        EXPECT_GT(canvas.TextWidth(fitted, style), 160);
        EXPECT_TRUE(fitted.ends_with("\xE2\x80\xA6"));
    }
    EXPECT_EQ(canvas.Fitted("anything", style, 0), "");
}

TEST(Canvas_file, begins_as_its_format_does)
{
    EXPECT_TRUE(Canvas(PictureFormat::Png, 40, 20).Encode().starts_with("\x89PNG\r\n"));
    EXPECT_TRUE(Canvas(PictureFormat::Pdf, 40, 20).Encode().starts_with("%PDF-1."));
    EXPECT_TRUE(Canvas(PictureFormat::Svg, 40, 20).Encode().starts_with("<?xml"));
}

TEST(Canvas_file, has_texts_of_an_SVG_as_texts)
{
    Canvas canvas(PictureFormat::Svg, 400, 100);
    canvas.Text("a < b & \"c\"", {10, 50}, style);
    const std::string svg = canvas.Encode();
    EXPECT_NE(svg.find(">a &lt; b &amp; \"c\"</text>"), std::string::npos);
    EXPECT_TRUE(svg.ends_with("</svg>\n"));
}
} // namespace
