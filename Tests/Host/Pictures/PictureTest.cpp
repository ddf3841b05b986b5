#include <Host/Pictures/Picture.h>

#include "PictureTools.h"

#include <Host/Pictures/SurfaceImage.h>

#include <MuTlkHelper/GraphicUtils.h>

#include <limits>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Support::NullPixel;
using Support::PointSurface;
using Support::Rows;
using Support::Surface;

TEST(Surface_picture, shows_invalid_samples_where_they_are_and_what_they_look_like)
{
    const Ta::Object<void*> surface = SlopedSurface();
    const Picture picture = Drawn(surface.Get());
    const View& view = *picture.DataView();
    const Place place = view.OnPage(102, -16.5);
    const auto column = static_cast<std::size_t>(std::floor(place.x - view.Frame().left));
    const auto row = static_cast<std::size_t>(std::floor(place.y - view.Frame().top));
    EXPECT_EQ(NumberOf(PixelAt(picture, place)), InvalidPixel(column, row));
    EXPECT_TRUE(HasText(picture, "no height"));
}

TEST(Surface_picture, is_titled_by_the_scan)
{
    const auto surface = FlatSurface();
    const Picture picture = Drawn(surface.Get());
    EXPECT_TRUE(HasText(picture, "scan.tif"));
    EXPECT_TRUE(HasText(picture, "11 x 11 samples, 0.0 % without height"));
}

TEST(Picture_files, are_the_same_bytes_each_time)
{
    const Ta::Object<void*> surface = SlopedSurface();
    const Ta::Object<void*> graphic = NewGraphic();
    Mu::TlkHelper::GraphicAddFittedLine(graphic.Get(), zPoint3d64f{110, -10, 3}, zPoint3d64f{111, -9, 3}, nullptr);
    zPoint3d32f place{110, -10, 0};
    Mu::TlkHelper::GraphicAddLabel(graphic.Get(), "here", &place, nullptr);
    for (const PictureFormat format : {PictureFormat::Png, PictureFormat::Svg, PictureFormat::Pdf})
    {
        const std::string first = Encoded(surface.Get(), format, {graphic.Get()});
        EXPECT_GT(first.size(), 5'000U);
        EXPECT_TRUE(first == Encoded(surface.Get(), format, {graphic.Get()})) << static_cast<int>(format);
    }
}

TEST(Picture_as_SVG, holds_its_texts)
{
    const Ta::Object<void*> surface = SlopedSurface();
    const std::string svg =
        Encoded(surface.Get(), PictureFormat::Svg, {}, ScanOf({Measured("Width", 1, Decision::Fail)}));
    for (const char* const text : {">scan.tif<", ">x (mm)<", ">Width<", ">FAIL<", ">no height<"})
    {
        EXPECT_NE(svg.find(text), std::string::npos) << text;
    }
    EXPECT_NE(svg.find("<image "), std::string::npos);
}

TEST(Picture_as_PDF, has_no_date)
{
    const Ta::Object<void*> surface = SlopedSurface();
    const std::string pdf = Encoded(surface.Get(), PictureFormat::Pdf);
    EXPECT_TRUE(pdf.starts_with("%PDF-"));
    EXPECT_EQ(pdf.find("Date"), std::string::npos);
}

TEST(Picture, has_all_texts_on_the_page)
{
    const Ta::Object<void*> surface = SlopedSurface();
    const auto tall = Surface(Rows<z16s>(500, {1, 2}));
    const auto wide =
        Surface({std::vector<z16s>(5000, 1)}).Scale(0.001, 0.001, 1e-6).Offset(123456.789, -9876.54321, 1);
    const auto profile = Support::Profile({0, 1, 2}).Scale(1e-5, 1, 1e-9).Offset(12345, 0, 1).Intensity({1, 2, 3});
    const auto image = Support::Image(Rows<z8u>(3, std::vector<z8u>(4000, 9)));
    for (void* const message : {surface.Get(), tall.Get(), wide.Get(), profile.Get(), image.Get()})
    {
        EXPECT_TRUE(TextsAreOnThePage(Drawn(message, {}, ScanOf({Measured("A", 1, Decision::Pass)}))));
        EXPECT_TRUE(TextsAreOnThePage(Drawn(message)));
    }
}

TEST(Picture, is_as_high_as_what_it_shows)
{
    const auto wide = Surface(Rows<z16s>(10, std::vector<z16s>(100, 1)));
    const auto tall = Surface(Rows<z16s>(100, std::vector<z16s>(10, 1)));
    const double low = Drawn(wide.Get()).Page().Page().height;
    EXPECT_LT(low, 700);
    EXPECT_EQ(Drawn(tall.Get()).Page().Page().height, pictureHeight);
    const std::vector<Result> results(20, Measured("A", 1, Decision::Pass));
    const Picture withTable = Drawn(wide.Get(), {}, ScanOf(results));
    EXPECT_GT(withTable.Page().Page().height, low);
    EXPECT_TRUE(TextsAreOnThePage(withTable));
    EXPECT_FALSE(HasText(withTable, "more"));
}

TEST(Picture, of_something_else_is_a_note)
{
    const Ta::Object<void*> measure = Support::Measure(3);
    EXPECT_TRUE(HasText(Drawn(measure.Get()), "neither a surface nor a profile nor an image"));
    EXPECT_TRUE(HasText(Drawn(nullptr), "neither a surface nor a profile nor an image"));
}

TEST(Picture, is_drawn_without_graphics_where_other_objects_are_handed_over)
{
    const auto surface = FlatSurface();
    EXPECT_TRUE(Drawn(surface.Get(), {nullptr, surface.Get()}).DataView());
}

struct Case
{
    const char* name;
    Ta::Object<void*> message;
};

class Odd_scan : public testing::TestWithParam<Case>
{
};

TEST_P(Odd_scan, is_drawn_in_all_formats_with_all_kinds_of_graphics)
{
    using namespace Mu::TlkHelper;
    const Ta::Object<void*> graphic = NewGraphic();
    GraphicAddPoint(graphic.Get(), {1, 2, 3}, 4, 0xFFFF0000U, nullptr, 2);
    GraphicAddFittedLine(graphic.Get(), zPoint3d64f{1, 2, 3}, zPoint3d64f{4, 5, 7}, nullptr);
    GraphicAddArrow(graphic.Get(), {0, 0, 0}, {1, 1, 1}, nullptr);
    GraphicAddPlane(graphic.Get(), zPlane3d64f{{4, 0, 0}, {1, 0.5, 1}}, nullptr);
    GraphicAddPosition(graphic.Get(), {1, 1, 1}, static_cast<TaPipe::TpGraphicPositionType>(9), nullptr);
    zPoint3d32f place{0, 0, 0};
    GraphicAddLabel(graphic.Get(), (std::string(100'000, 'y') + "\xC3").c_str(), &place, nullptr);
    const Picture picture = Drawn(GetParam().message.Get(), {graphic.Get()});
    EXPECT_TRUE(TextsAreOnThePage(picture));
    for (const PictureFormat format : {PictureFormat::Svg, PictureFormat::Pdf})
    {
        EXPECT_GT(Encoded(GetParam().message.Get(), format, {graphic.Get()}).size(), 1'000U);
    }
}

constexpr double nan64 = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    , Odd_scan,
    testing::Values(Case{"empty", Surface({})}, Case{"one_sample", Surface({{5}})},
                    Case{"one_null", Surface({{NullPixel}})},
                    Case{"all_null", Surface(Rows<z16s>(30, std::vector<z16s>(40, NullPixel)))},
                    Case{"huge_offset", Surface({{1, 2}, {3, 4}}).Offset(1e300, -1e300, 1e300)},
                    Case{"infinite_offset", Surface({{1, 2}, {3, 4}}).Offset(infinity, 0, -infinity)},
                    Case{"scale_that_is_no_number", Surface({{1, 2}, {3, 4}}).Scale(nan64, nan64, nan64)},
                    Case{"scale_0", Surface({{1, 2}, {3, 4}}).Scale(0, 0, 0)},
                    Case{"huge_scale", Surface({{1, 2}, {3, 4}}).Scale(1e29, 1e29, 1e29)},
                    Case{"largest_scale", Surface({{1, 2}, {3, 4}}).Scale(1e308, 1e308, 1e308)},
                    Case{"tiny_scale", Surface({{1, 2}, {3, 4}}).Scale(1e-29, 1e-29, 1e-29)},
                    Case{"scales_far_apart", Surface({{1, 2}, {3, 4}}).Scale(1e-29, 1e29, 1)},
                    Case{"negative_scale", Surface({{1, 2}, {3, 4}}).Scale(-1, -2, -3)},
                    Case{"extreme_heights", Surface({{-32767, 32767}}).Scale(1, 1, 1e29)},
                    Case{"strip", Surface({std::vector<z16s>(20'000, 7)})},
                    Case{"upright_strip", Surface(Rows<z16s>(20'000, {7}))},
                    Case{"surface_with_intensities", Surface({{1, 2}}).Intensity({{3, 4}})},
                    Case{"one_point", PointSurface({{{5, 6, 7}}})},
                    Case{"points_all_null", PointSurface({{{NullPixel, NullPixel, NullPixel}}})},
                    Case{"points_with_half_a_null", PointSurface({{{NullPixel, 32767, 7}, {32767, NullPixel, 7}}})},
                    Case{"points_with_a_scale_of_0", PointSurface({{{5, 6, 7}, {1, 2, 3}}}).Scale(0, 1, 1)},
                    Case{"points_in_a_line", PointSurface({{{0, 0, 1}, {0, 9, 1}, {0, 20'000, 1}}})},
                    Case{"empty_profile", Support::Profile({})}, Case{"profile_of_one_point", Support::Profile({3})},
                    Case{"profile_without_a_scale", Support::Profile({3, 4, 5}).Scale(nan64, 0, infinity)},
                    Case{"profile_far_away", Support::Profile({3, 4, 5}).Offset(1e300, nan64, -1e300)},
                    Case{"profile_of_points_in_one_place", Support::PointProfile({{1, 1}, {1, 1}})},
                    Case{"image_of_one_pixel", Support::Image(Rows<z8u>{{200}})},
                    Case{"image_strip", Support::Image(Rows<z8u>{std::vector<z8u>(30'000, 3)})}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Scan_without_a_usable_scale, is_drawn_by_samples_without_its_graphics)
{
    const auto surface = Surface({{1, 2}, {3, 4}}).Scale(0, nan64, 1);
    const Ta::Object<void*> graphic = NewGraphic();
    Mu::TlkHelper::GraphicAddPoint(graphic.Get(), {1, 1, 0}, 4, 0xFFFF0000U, nullptr, 2);
    const Picture picture = Drawn(surface.Get(), {graphic.Get()});
    EXPECT_TRUE(HasText(picture, "x (samples)"));
    EXPECT_TRUE(HasText(picture, "graphics are not drawn"));
    EXPECT_FALSE(Shows(picture, 1, 1, {1, 0, 0, 1}));
}

TEST(Picture_of_a_large_scan, shows_all_of_it)
{
    constexpr std::size_t side = 4096;
    Ta::Object<void*> message;
    MU_CHECK(TvSurfaceMsg_ConstructSimple(message.Out(), side, side, nullptr));
    auto* const heights = static_cast<z16s*>(TvSurfaceMsg_Points(message.Get()));
    for (std::size_t i = 0; i < side * side; ++i)
    {
        heights[i] = static_cast<z16s>(i / side);
    }
    const Picture picture = Drawn(message.Get());
    const View& view = *picture.DataView();
    EXPECT_LT(view.Across().low, -0.5);
    EXPECT_GT(view.Up().high, 4095.5);
    const auto lightness = [&](double y) { return LabOf(PixelAt(picture, view.OnPage(2000, y))).lightness; };
    EXPECT_LT(lightness(100), lightness(2000));
    EXPECT_LT(lightness(2000), lightness(4000));
}
} // namespace
