#include <Host/Pictures/GraphicPainter.h>

#include "PictureTools.h"

#include <MuTlkHelper/GraphicUtils.h>

#include <TaPipe/TpGraphicLabel.h>
#include <TaPipe/TpGraphicLineSet.h>
#include <TaPipe/TpGraphicPlane.h>
#include <TaPipe/TpGraphicPointSet.h>
#include <TaPipe/TpGraphicRegion2d.h>
#include <TaPipe/TpGraphicRegion3d.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using namespace Mu::TlkHelper;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;

constexpr z32u RED = 0xFFFF0000U;
constexpr z32u GREEN = 0xFF00FF00U;
const Colour red = ColourOf(RED);
const Colour green = ColourOf(GREEN);
const Colour ground = HeightColour(0);

/// Graphics over a flat surface from (0, 0) to (10, 10).
class Drawn_graphic : public testing::Test
{
protected:
    Picture Draw() const
    {
        return Drawn(surface.Get(), {graphic.Get()});
    }

    void* G() const
    {
        return graphic.Get();
    }

    Support::SurfaceBuilder surface = FlatSurface();
    Ta::Object<void*> graphic = NewGraphic();
};

TEST_F(Drawn_graphic, has_points_at_their_places_in_their_colour)
{
    GraphicAddPoint(G(), {3, 7, 1}, 8, RED, nullptr, TpPOINT_SHAPE_DOT);
    GraphicAddPoint(G(), {8, 2, 1}, 8, GREEN, nullptr, TpPOINT_SHAPE_SQUARE);
    const Picture picture = Draw();
    EXPECT_TRUE(Shows(picture, 3, 7, red));
    EXPECT_TRUE(Shows(picture, 8, 2, green));
    EXPECT_TRUE(Shows(picture, 7, 3, ground));
}

TEST_F(Drawn_graphic, tells_crosses_squares_and_dots_apart)
{
    constexpr float size = 20;
    GraphicAddPoint(G(), {2, 5, 0}, size, RED, nullptr, TpPOINT_SHAPE_CROSS);
    GraphicAddPoint(G(), {5, 5, 0}, size, RED, nullptr, TpPOINT_SHAPE_SQUARE);
    GraphicAddPoint(G(), {8, 5, 0}, size, RED, nullptr, TpPOINT_SHAPE_DOT);
    const Picture picture = Draw();
    const auto showsAside = [&](double x, double share) {
        const Place centre = picture.DataView()->OnPage(x, 5);
        const double aside = share * size * screenPixel / 2;
        return static_cast<bool>(ShowsOnPage(picture, {centre.x + aside, centre.y + aside}, red));
    };
    EXPECT_FALSE(showsAside(2, 0.5));
    EXPECT_TRUE(showsAside(5, 0.5));
    EXPECT_TRUE(showsAside(5, 0.9));
    EXPECT_TRUE(showsAside(8, 0.5));
    EXPECT_FALSE(showsAside(8, 0.9));
}

TEST_F(Drawn_graphic, draws_points_of_an_unknown_shape_as_dots)
{
    GraphicAddPoint(G(), {5, 5, 0}, 6, RED, nullptr, 77);
    EXPECT_TRUE(Shows(Draw(), 5, 5, red));
}

TEST_F(Drawn_graphic, has_lines_through_all_their_points)
{
    GraphicAddLineSegment(G(), zPoint3d64f{1, 1, 0}, zPoint3d64f{5, 1, 0}, 2, RED, nullptr);
    GraphicAddLineSegment(G(), zPoint3d64f{5, 1, 0}, zPoint3d64f{5, 9, 0}, 2, GREEN, nullptr);
    const Picture picture = Draw();
    EXPECT_TRUE(Shows(picture, 3, 1, red));
    EXPECT_TRUE(Shows(picture, 5, 6, green));
    EXPECT_TRUE(Shows(picture, 7, 1, ground));
}

TEST_F(Drawn_graphic, has_a_dark_rim_that_keeps_lines_visible_on_data_of_their_colour)
{
    GraphicAddLineSegment(G(), zPoint3d64f{1, 5, 0}, zPoint3d64f{9, 5, 0}, 4, RED, nullptr);
    const Picture picture = Draw();
    const Place middle = picture.DataView()->OnPage(5, 5);
    const Colour rim = PixelAt(picture, {middle.x, middle.y + 2 * screenPixel + 1});
    EXPECT_LT(LabOf(rim).lightness, 0.25);
}

TEST_F(Drawn_graphic, has_a_dot_where_a_line_is_seen_end_on)
{
    GraphicAddLineSegment(G(), zPoint3d64f{4, 6, 0}, zPoint3d64f{4, 6, 50}, 2, RED, nullptr);
    EXPECT_TRUE(Shows(Draw(), 4, 6, red));
}

TEST_F(Drawn_graphic, has_arrow_heads_at_the_ends_that_carry_them)
{
    GraphicAddArrow(G(), {2, 5, 0}, {6, 5, 0}, nullptr);
    const Picture picture = Draw();
    const Colour yellow = ColourOf(DecorationColor);
    const auto beside = [&](double x, double along) {
        const Place place = picture.DataView()->OnPage(x, 5);
        return ShowsOnPage(picture, {place.x + along, place.y + 4}, yellow);
    };
    EXPECT_TRUE(beside(6, -14));
    EXPECT_FALSE(beside(2, 14));
    EXPECT_FALSE(beside(4, 0));
}

TEST_F(Drawn_graphic, says_so_where_a_plane_meets_the_picture_outside)
{
    // x + z = 400 meets z = 0 at x = 400.
    GraphicAddPlane(G(), zPlane3d64f{{400, 0, 0}, {1, 0, 1}}, nullptr);
    EXPECT_TRUE(HasText(Draw(), "outside the picture where it meets z = 0 mm"));
}

TEST_F(Drawn_graphic, has_no_longer_arrow_heads_than_the_line_that_they_end)
{
    // 0.02 mm are less than 2 pixels of the page, a whole head has about 15.
    GraphicAddArrow(G(), {5, 5, 0}, {5.02, 5, 0}, nullptr);
    const Picture picture = Draw();
    const Place tip = picture.DataView()->OnPage(5.02, 5);
    for (const double across : {-4.0, 4.0})
    {
        EXPECT_TRUE(ShowsOnPage(picture, {tip.x - 12, tip.y + across}, ground));
    }
}

TEST_F(Drawn_graphic, has_a_ray_from_its_start_to_the_frame_only)
{
    GraphicAddRay(G(), {5, 5, 0}, {1, 0, 3}, 2, RED, nullptr);
    const Picture picture = Draw();
    const Area& frame = picture.DataView()->Frame();
    EXPECT_TRUE(Shows(picture, 5.5, 5, red));
    EXPECT_TRUE(Shows(picture, 9.9, 5, red));
    EXPECT_TRUE(Shows(picture, 4, 5, ground));
    const double y = picture.DataView()->OnPage(5, 5).y;
    EXPECT_FALSE(ShowsOnPage(picture, {frame.Right() + 6, y}, red));
}

TEST_F(Drawn_graphic, has_a_ray_that_starts_outside_where_it_crosses_the_frame)
{
    GraphicAddRay(G(), {-1000, 5, 0}, {1, 0, 0}, 2, RED, nullptr);
    GraphicAddRay(G(), {1000, 8, 0}, {1, 0, 0}, 2, GREEN, nullptr);
    const Picture picture = Draw();
    EXPECT_TRUE(Shows(picture, 1, 5, red));
    EXPECT_TRUE(Shows(picture, 1, 8, ground));
}

TEST_F(Drawn_graphic, has_infinite_lines_across_the_whole_frame)
{
    GraphicAddFittedLine(G(), zPoint3d64f{4, 4, 0}, zPoint3d64f{5, 5, 0}, nullptr);
    const Picture picture = Draw();
    for (const double at : {0.3, 3.0, 7.0, 9.7})
    {
        EXPECT_TRUE(Shows(picture, at, at, ColourOf(FoundFeatureColor))) << at;
    }
}

TEST_F(Drawn_graphic, has_a_dot_where_a_ray_runs_along_the_view)
{
    GraphicAddMeasurementLines(G(), AXIS_Z, {3, 4, 5}, 0, nullptr);
    const Picture picture = Draw();
    EXPECT_TRUE(Shows(picture, 3, 4, ColourOf(DecorationColor)));
    EXPECT_TRUE(Shows(picture, 3, 5, ground));
}

TEST_F(Drawn_graphic, has_no_ray_without_a_direction)
{
    GraphicAddRay(G(), {5, 5, 0}, {0, 0, 0}, 2, RED, nullptr);
    EXPECT_TRUE(Shows(Draw(), 5, 5, ground));
}

TEST_F(Drawn_graphic, has_the_edges_of_a_turned_box)
{
    Region3d<double> region;
    region.x = 5;
    region.y = 5;
    region.z = 0;
    region.width = 6;
    region.length = 2;
    region.height = 1;
    region.zAngle = 30;
    GraphicAddSurfaceRegion(G(), region, nullptr);
    const Picture picture = Draw();
    const double cosine = std::cos(std::numbers::pi / 6);
    const double sine = std::sin(std::numbers::pi / 6);
    EXPECT_TRUE(Shows(picture, 5 + 3 * cosine, 5 + 3 * sine, regionColour));
    EXPECT_TRUE(Shows(picture, 5 - sine, 5 + cosine, regionColour));
    EXPECT_TRUE(Shows(picture, 5 + 3 * cosine - sine, 5 + 3 * sine + cosine, regionColour));
    EXPECT_TRUE(Shows(picture, 5 + 3 * cosine, 5 - 3 * sine, ground));
    EXPECT_TRUE(Shows(picture, 5, 5, ground));
}

TEST_F(Drawn_graphic, has_labels_moved_into_the_frame)
{
    zPoint3d32f corner{9.9F, 9.9F, 0};
    zPoint3d32f outside{99, 99, 0};
    GraphicAddLabel(G(), "a label in the upper right corner", &corner, nullptr);
    GraphicAddLabel(G(), "elsewhere", &outside, nullptr);
    const Picture picture = Draw();
    ASSERT_TRUE(HasText(picture, "a label in the upper right corner"));
    EXPECT_FALSE(HasText(picture, "elsewhere"));
    for (const PlacedText& placed : picture.Page().Texts())
    {
        if (placed.text.starts_with("a label"))
        {
            const Area& frame = picture.DataView()->Frame();
            EXPECT_TRUE(frame.Holds({placed.extents.left, placed.extents.top}));
            EXPECT_TRUE(frame.Holds({placed.extents.Right(), placed.extents.Bottom()}));
        }
    }
}

TEST_F(Drawn_graphic, marks_results_references_and_anchors_each_in_its_way)
{
    using TaPipe::TpGraphicPositionType;
    GraphicAddPosition(G(), {2, 5, 0}, TpGraphicPositionType::Result, nullptr);
    GraphicAddPosition(G(), {5, 5, 0}, TpGraphicPositionType::Reference, nullptr);
    GraphicAddPosition(G(), {8, 5, 0}, TpGraphicPositionType::Anchor, nullptr);
    const Picture picture = Draw();
    const auto shows = [&](double x, double aside, double below) {
        const Place place = picture.DataView()->OnPage(x, 5);
        return static_cast<bool>(ShowsOnPage(picture, {place.x + aside, place.y + below}, positionColour));
    };
    // The middle, a place on the right, one above.
    EXPECT_TRUE(shows(2, 0, 0) && shows(2, 13, 0) && shows(2, 0, -13));
    EXPECT_TRUE(!shows(5, 0, 0) && shows(5, 9, 0) && shows(5, 0, -9) && !shows(5, 0, -13));
    EXPECT_TRUE(shows(8, 0, 0) && !shows(8, 9, 0) && shows(8, 0, -18));
}

TEST_F(Drawn_graphic, has_the_trace_of_a_plane_and_a_note_on_it)
{
    // x + z = 4 meets the heights of the surface, 0 mm, at x = 4.
    GraphicAddPlane(G(), zPlane3d64f{{4, 0, 0}, {1, 0, 1}}, nullptr);
    GraphicAddPlane(G(), zPlane3d64f{{0, 0, 3}, {0, 0, 2}}, nullptr);
    const Picture picture = Draw();
    EXPECT_TRUE(Shows(picture, 4, 1, planeColour));
    EXPECT_TRUE(Shows(picture, 4, 9, planeColour));
    EXPECT_TRUE(Shows(picture, 6, 1, ground));
    EXPECT_TRUE(
        HasText(picture, "plane 1: normal (0.7071, 0, 0.7071), 2.82843 mm from the origin; drawn where it meets"));
    EXPECT_TRUE(HasText(picture, "plane 2: normal (0, 0, 1), 3 mm from the origin; parallel to z = 0 mm"));
}

TEST_F(Drawn_graphic, leaves_out_what_has_no_numbers_and_counts_it)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    GraphicAddPoint(G(), {nan, 1, 1}, 4, RED, nullptr, TpPOINT_SHAPE_DOT);
    GraphicAddLineSegment(G(), zPoint3d64f{1, 5, 0}, zPoint3d64f{9, infinity, 0}, 2, RED, nullptr);
    GraphicAddLineSegment(G(), zPoint3d64f{1, 5, 0}, zPoint3d64f{zNULL_64F, 5, 0}, 2, RED, nullptr);
    GraphicAddRay(G(), {5, 5, 0}, {1, nan, 0}, 2, RED, nullptr);
    GraphicAddRay(G(), {5, 5, zNULL_64F}, {1, 0, 0}, 2, RED, nullptr);
    GraphicAddPosition(G(), {zNULL_64F, 1, 1}, TaPipe::TpGraphicPositionType::Result, nullptr);
    Region3d<double> region;
    region.x = infinity;
    GraphicAddSurfaceRegion(G(), region, nullptr);
    const Picture picture = Draw();
    EXPECT_TRUE(HasText(picture, "not drawn: 7 graphic elements with coordinates that are no numbers"));
    EXPECT_TRUE(Shows(picture, 1, 5, ground));
    EXPECT_TRUE(Shows(picture, 5, 5, ground));
}

TEST_F(Drawn_graphic, takes_coordinates_far_away)
{
    constexpr double far = 1e30;
    GraphicAddLineSegment(G(), zPoint3d64f{-20, 5, 0}, zPoint3d64f{1e6, 5, 0}, 2, RED, nullptr);
    GraphicAddLineSegment(G(), zPoint3d64f{-far, far, 0}, zPoint3d64f{far, far, 0}, 2, GREEN, nullptr);
    GraphicAddPoint(G(), {far, -far, 0}, 2, GREEN, nullptr, TpPOINT_SHAPE_DOT);
    GraphicAddRay(G(), {far, far, far}, {-far, far, 0}, 2, GREEN, nullptr);
    const Picture picture = Draw();
    EXPECT_TRUE(Shows(picture, 5, 5, red));
}

TEST_F(Drawn_graphic, says_how_many_elements_are_too_many)
{
    for (int i = 0; i < 100'003; ++i)
    {
        GraphicAddRay(G(), {1000, 5, 0}, {1, 0, 0}, 1, RED, nullptr);
    }
    EXPECT_TRUE(HasText(Draw(), "not drawn: 3 graphic elements beyond what a picture holds"));
}

TEST_F(Drawn_graphic, leaves_out_lines_of_more_vertices_than_a_picture_holds)
{
    const auto addLine = [this](std::size_t count, float low, float high) {
        std::vector<zPoint3d32f> points(count);
        for (std::size_t i = 0; i < count; ++i)
        {
            points[i] = {static_cast<float>(i % 100) / 10, i % 2 == 0 ? low : high, 0};
        }
        Ta::Object<void*> element;
        MU_CHECK(TpGraphicLineSet_Construct(element.Out(), 3, RED, 0, 0, points.data(), count, nullptr));
        MU_CHECK(TpGraphic_AddLineSet(G(), element.Get()));
        static_cast<void>(element.Detach());
    };
    addLine(1'000'000, 1, 9);
    addLine(200, 3, 3);
    const Picture picture = Draw();
    EXPECT_TRUE(HasText(picture, "not drawn: 1 graphic element beyond what a picture holds"));
    EXPECT_TRUE(Shows(picture, 5, 3, red));
    EXPECT_TRUE(Shows(picture, 5, 7, ground));
}

TEST_F(Drawn_graphic, draws_millions_of_points_once_for_each_pixel)
{
    std::vector<zPoint3d32f> points(3'000'000);
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        points[i] = {static_cast<float>(i % 2) * 2 + 3, 5, 0};
    }
    Ta::Object<void*> element;
    MU_CHECK(TpGraphicPointSet_Construct(element.Out(), 3, 2, RED, points.data(), points.size(), nullptr));
    MU_CHECK(TpGraphic_AddPointSet(G(), element.Get()));
    static_cast<void>(element.Detach());
    const Picture picture = Draw();
    EXPECT_TRUE(Shows(picture, 3, 5, red));
    EXPECT_TRUE(Shows(picture, 5, 5, red));
    EXPECT_FALSE(HasText(picture, "not drawn"));
}

TEST_F(Drawn_graphic, takes_widths_and_sizes_of_any_number)
{
    for (const float width : {0.0F, -5.0F, 1e30F, std::numeric_limits<float>::quiet_NaN()})
    {
        GraphicAddLineSegment(G(), zPoint3d64f{1, 5, 0}, zPoint3d64f{9, 5, 0}, width, RED, nullptr);
        GraphicAddPoint(G(), {5, 8, 0}, width, RED, nullptr, TpPOINT_SHAPE_SQUARE);
    }
    EXPECT_TRUE(Shows(Draw(), 5, 5, red));
}

TEST(Graphic_on_a_profile, is_seen_along_y)
{
    const auto profile = Support::Profile(std::vector<z16s>(11, 0)).Offset(0, 3, 0);
    const Ta::Object<void*> graphic = NewGraphic();
    RegionXZ<double> region;
    region.x = 5;
    region.z = 0;
    region.width = 4;
    region.height = 0.2;
    region.angle = 0;
    GraphicAddProfileRegion(graphic.Get(), region, nullptr);
    GraphicAddRay(graphic.Get(), {1, 999, 0.1}, {0, 1, 0}, 2, RED, nullptr);
    GraphicAddPlane(graphic.Get(), zPlane3d64f{{9, 0, 0}, {1, 0, 0}}, nullptr);
    const Picture picture = Drawn(profile.Get(), {graphic.Get()});
    EXPECT_TRUE(Shows(picture, 7, 0, regionColour));
    EXPECT_TRUE(Shows(picture, 5, 0.1, regionColour));
    EXPECT_TRUE(Shows(picture, 1, 0.1, red));
    EXPECT_TRUE(Shows(picture, 9, -0.2, planeColour));
    EXPECT_TRUE(HasText(picture, "drawn where it meets y = 3 mm"));
}

TEST(Graphic_on_a_profile, has_a_turned_region_with_its_corners_from_x_towards_z)
{
    const auto profile = Support::Profile({0, 2, 4, 6, 8, 10, 8, 6, 4, 2, 0});
    const Ta::Object<void*> graphic = NewGraphic();
    RegionXZ<double> region;
    region.x = 5;
    region.z = 5;
    region.width = 4;
    region.height = 1;
    region.angle = 90;
    GraphicAddProfileRegion(graphic.Get(), region, nullptr);
    const Picture picture = Drawn(profile.Get(), {graphic.Get()});
    EXPECT_TRUE(Shows(picture, 5, 7, regionColour));
    EXPECT_TRUE(Shows(picture, 5.5, 5, regionColour));
    EXPECT_FALSE(Shows(picture, 7, 5, regionColour));
}

TEST(Graphic_on_a_profile, has_the_shadow_of_a_turned_box)
{
    const auto profile = Support::Profile({0, 2, 4, 6, 8, 10, 8, 6, 4, 2, 0});
    const Ta::Object<void*> graphic = NewGraphic();
    Region3d<double> region;
    region.x = 5;
    region.y = 0;
    region.z = 3;
    region.width = 2;
    region.length = 6;
    region.height = 2;
    region.zAngle = 90;
    GraphicAddSurfaceRegion(graphic.Get(), region, nullptr);
    const Picture picture = Drawn(profile.Get(), {graphic.Get()});
    EXPECT_TRUE(Shows(picture, 8, 3, regionColour));
    EXPECT_TRUE(Shows(picture, 5, 4, regionColour));
    EXPECT_FALSE(Shows(picture, 6, 3, regionColour));
}
} // namespace
