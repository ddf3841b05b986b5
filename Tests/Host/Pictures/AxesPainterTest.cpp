#include <Host/Pictures/AxesPainter.h>

#include "PictureTools.h"

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

const PlacedText* TextOf(const Picture& picture, std::string_view text)
{
    const auto found = std::ranges::find(picture.Page().Texts(), text, &PlacedText::text);
    return found == picture.Page().Texts().end() ? nullptr : &*found;
}

TEST(Axes, have_ticks_at_their_places_in_mm)
{
    const Ta::Object<void*> surface = SlopedSurface();
    const Picture picture = Drawn(surface.Get());
    const View& view = *picture.DataView();
    for (const auto& [text, x] : {std::pair("105", 105.0), {"115", 115.0}, {"125", 125.0}})
    {
        const PlacedText* const tick = TextOf(picture, text);
        ASSERT_NE(tick, nullptr) << text;
        EXPECT_NEAR(tick->extents.Centre().x, view.OnPage(x, 0).x, 0.51) << text;
        EXPECT_GT(tick->extents.top, view.Frame().Bottom());
    }
    const PlacedText* const zero = TextOf(picture, "-10");
    ASSERT_NE(zero, nullptr);
    EXPECT_NEAR(zero->extents.Centre().y, view.OnPage(0, -10).y, 2);
    EXPECT_LT(zero->extents.Right(), view.Frame().left);
    EXPECT_TRUE(HasText(picture, "x (mm)"));
    EXPECT_TRUE(HasText(picture, "y (mm)"));
}

TEST(Colour_bar, reaches_from_the_lowest_height_to_the_highest)
{
    const Ta::Object<void*> surface = SlopedSurface();
    const Picture picture = Drawn(surface.Get());
    const Area bar = ColourBarArea(picture.DataView()->Frame());
    EXPECT_LT(Difference(PixelAt(picture, {bar.Centre().x, bar.Bottom() - 2}), HeightColour(0)), 0.02);
    EXPECT_LT(Difference(PixelAt(picture, {bar.Centre().x, bar.top + 2}), HeightColour(1)), 0.02);
    EXPECT_LT(Difference(PixelAt(picture, bar.Centre()), HeightColour(0.5)), 0.02);
    // Heights reach from 3 mm to 3 + 0.01 * (390 + 59) = 7.49 mm; the tick of 5 mm stands at 2 / 4.49.
    const auto& texts = picture.Page().Texts();
    const auto five = std::ranges::find_if(
        texts, [&](const PlacedText& placed) { return placed.text == "5.0" && placed.extents.left > bar.Right(); });
    ASSERT_NE(five, texts.end());
    EXPECT_NEAR(five->extents.Centre().y, bar.Bottom() - bar.height * 2 / 4.49, 2);
    EXPECT_TRUE(HasText(picture, "z (mm)"));
}
} // namespace
