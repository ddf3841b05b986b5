#include <Host/Pictures/SvgText.h>

#include <gtest/gtest.h>

namespace
{
using namespace Mu::Host;

TEST(Names_in_an_SVG, count_from_0_by_kind_and_still_agree)
{
    const std::string svg = WithText("<svg><image id=\"image13\"/><image id=\"image29\"/><use href=\"#image29\"/>"
                                     "<g clip-path=\"url(#clip7)\" id=\"surface9\"/><use href=\"#glyph4-2\"/></svg>",
                                     {});
    EXPECT_TRUE(svg.starts_with("<svg><image id=\"image0\"/><image id=\"image1\"/><use href=\"#image1\"/>"
                                "<g clip-path=\"url(#clip0)\" id=\"surface0\"/><use href=\"#glyph0-2\"/>"))
        << svg;
    EXPECT_TRUE(svg.ends_with("</svg>\n"));
}

TEST(Names_in_an_SVG, are_nothing_else_that_looks_like_them)
{
    const std::string svg = WithText("<svg><g width=\"image13\"/>image13 surface7 id= url</svg>", {});
    EXPECT_TRUE(svg.starts_with("<svg><g width=\"image13\"/>image13 surface7 id= url")) << svg;
}

TEST(Texts_in_an_SVG, stand_where_they_are_drawn)
{
    const std::vector<PlacedText> texts{{"a<b", {10, 20}, 16, TextTurn::Across, {10, 8, 30, 16}},
                                        {"up", {50, 60}, 12, TextTurn::Upwards, {40, 20, 15, 40}}};
    const std::string svg = WithText("<svg></svg>", texts);
    EXPECT_NE(svg.find("<text transform=\"translate(10.000,20.000)\" font-size=\"16.000\" textLength=\"30.000\">"
                       "a&lt;b</text>"),
              std::string::npos);
    EXPECT_NE(svg.find("translate(50.000,60.000) rotate(-90)\" font-size=\"12.000\" textLength=\"40.000\">up<"),
              std::string::npos);
}

TEST(Text_for_XML, has_none_of_the_characters_that_it_does_not_allow)
{
    EXPECT_EQ(XmlText("a\xEF\xBF\xBE\xEF\xBF\xBFz"), "a\xEF\xBF\xBD\xEF\xBF\xBDz");
    EXPECT_EQ(XmlText("\xC3\xA4 <&"), "\xC3\xA4 <&");
}
} // namespace
