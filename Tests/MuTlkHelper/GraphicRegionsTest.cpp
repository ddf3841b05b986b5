#include "DrawnElements.h"

#include <MuVision/RefFrame.h>

#include <array>
#include <utility>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using Mu::Vision::PlaneParams;
using Mu::Vision::RefFrame;
using Mu::Vision::Region2d;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;
using TaPipe::TpGraphicKind;

constexpr Region3d<double> BOX{10, 20, 30, 2, 4, 6, 11, 12, 90};
constexpr Region2d<double> FLAT{10, 20, 2, 4, 90};
constexpr RegionXZ<double> UPRIGHT{10, 20, 2, 4, 0};

// The corners by hand: half extents 1, 2, 3 around a centre, in the walk over all edges.
Points WalkAround(const zPoint3d64f& c)
{
    const zPoint3d64f c0{c.x - 1, c.y - 2, c.z - 3};
    const zPoint3d64f c1{c.x + 1, c.y - 2, c.z - 3};
    const zPoint3d64f c2{c.x + 1, c.y + 2, c.z - 3};
    const zPoint3d64f c3{c.x - 1, c.y + 2, c.z - 3};
    const zPoint3d64f c4{c.x - 1, c.y - 2, c.z + 3};
    const zPoint3d64f c5{c.x + 1, c.y - 2, c.z + 3};
    const zPoint3d64f c6{c.x + 1, c.y + 2, c.z + 3};
    const zPoint3d64f c7{c.x - 1, c.y + 2, c.z + 3};
    return {c0, c1, c2, c3, c0, c4, c5, c6, c7, c4, c7, c3, c2, c6, c5, c1};
}

template <typename Region>
Region With(Region region, double Region::*member, double value)
{
    region.*member = value;
    return region;
}

// --- regions of the host --------------------------------------------------------------------------------------------

TEST(Drawing_a_region, hands_it_to_the_host_with_its_angle_in_radians)
{
    ExpectDrawn({
        {"of a profile",
         [](void* g) {
             GraphicAddProfileRegion(g, {1, 2, 3, 4, 33}, nullptr);
         },
         {Other(TpGraphicKind::Region2d, {1, 2, 3, 4, 33 * TO_RADIANS})}},
        {"of a profile, angle null",
         [](void* g) {
             GraphicAddProfileRegion(g, {1, 2, 3, 4, NULL_VALUE}, nullptr);
         },
         {Other(TpGraphicKind::Region2d, {1, 2, 3, 4, 0})}},
        {"of a surface",
         [](void* g) {
             GraphicAddSurfaceRegion(g, {1, 2, 3, 4, 5, 6, 7, 8, -90}, nullptr);
         },
         {Other(TpGraphicKind::Region3d, {1, 2, 3, 4, 5, 6, -90 * TO_RADIANS})}},
        {"of a surface, angle null",
         [](void* g) {
             GraphicAddSurfaceRegion(g, {1, 2, 3, 4, 5, 6, 7, 8, NULL_VALUE}, nullptr);
         },
         {Other(TpGraphicKind::Region3d, {1, 2, 3, 4, 5, 6, 0})}},
        {"not valid",
         [](void* g) {
             GraphicAddProfileRegion(g, {}, nullptr);
             GraphicAddSurfaceRegion(g, {}, nullptr);
         },
         {Other(TpGraphicKind::Region2d, {NULL_VALUE, NULL_VALUE, 0, 0, 0}),
          Other(TpGraphicKind::Region3d, {NULL_VALUE, NULL_VALUE, NULL_VALUE, 0, 0, 0, 0})}},
    });
}

// --- wire-frames ----------------------------------------------------------------------------------------------------

TEST(Drawing_a_transformed_region, outlines_its_moved_corners_and_passes_over_its_angle)
{
    const zM3dTransform2d turn{0, -1, 100, 1, 0, 200}; // a quarter turn, then a move
    ExpectDrawn({
        {"turned",
         [&](void* g) {
             GraphicAddTransformedRegionXZ(g, {10, 20, 2, 4, 33}, turn, nullptr);
         },
         {Line(1, CYAN, PLAIN, {{82, 0, 209}, {78, 0, 209}, {78, 0, 211}, {82, 0, 211}, {82, 0, 209}})}},
    });
}

TEST(Drawing_a_box, walks_its_twelve_edges_turned_by_90_degrees_less)
{
    ExpectDrawn({
        {"at 90 degrees",
         [](void* g) { GraphicAddBBox(g, COLOR, BOX, nullptr); },
         {Line(2, COLOR, PLAIN, WalkAround({10, 20, 30}))}},
        {"at 0 degrees: x becomes -y",
         [](void* g) { GraphicAddBBox(g, COLOR, With(BOX, &Region3d<double>::zAngle, 0), nullptr); },
         {Line(2, COLOR, PLAIN,
               {{8, 21, 27},
                {8, 19, 27},
                {12, 19, 27},
                {12, 21, 27},
                {8, 21, 27},
                {8, 21, 33},
                {8, 19, 33},
                {12, 19, 33},
                {12, 21, 33},
                {8, 21, 33},
                {12, 21, 33},
                {12, 21, 27},
                {12, 19, 27},
                {12, 19, 33},
                {8, 19, 33},
                {8, 19, 27}})}},
    });
}

TEST(Drawing_a_box, turned_at_an_angle_agrees_with_the_frame)
{
    const Region3d<double> box{0.1, 0.2, 0.3, 2, 4, 6, 0, 0, 33};
    RefFrame frame;
    frame.Rotate(33.0 - 90.0, {0, 0, 1});
    Points expected;
    for (const zPoint3d64f& corner : WalkAround({0, 0, 0}))
    {
        const zPoint3d64f turned = frame.Apply(corner);
        expected.push_back({turned.x + 0.1, turned.y + 0.2, turned.z + 0.3});
    }
    EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddBBox(g, COLOR, box, nullptr); }),
              (Drawing{Line(2, COLOR, PLAIN, expected)}));
}

// Corners around the origin, turned by the formula, moved.
std::vector<zPoint64f> NaiveRectangle(double halfX, double halfY, double degrees, double x, double y)
{
    const double s = std::sin(degrees * TO_RADIANS);
    const double c = std::cos(degrees * TO_RADIANS);
    std::vector<zPoint64f> corners;
    for (const auto& [px, py] : std::array<std::pair<double, double>, 5>{
             {{-halfX, -halfY}, {halfX, -halfY}, {halfX, halfY}, {-halfX, halfY}, {-halfX, -halfY}}})
    {
        corners.push_back({px * c - py * s + x, px * s + py * c + y});
    }
    return corners;
}

TEST(Drawing_a_rectangle, in_xy_is_turned_by_90_degrees_less)
{
    for (const double angle : {90.0, 0.0, 33.3, -100.0})
    {
        Points expected;
        for (const zPoint64f& corner : NaiveRectangle(1, 2, angle - 90, 10, 20))
        {
            expected.push_back({corner.x, corner.y, 7.5});
        }
        EXPECT_EQ(DrawnBy([&](void* g) {
                      GraphicAddXYBBox(g, COLOR, With(FLAT, &Region2d<double>::angle, angle), 7.5, nullptr);
                  }),
                  (Drawing{Line(2, COLOR, PLAIN, expected)}))
            << angle;
    }
    EXPECT_EQ(
        DrawnBy([](void* g) { GraphicAddXYBBox(g, COLOR, FLAT, 7.5, nullptr); }),
        (Drawing{Line(2, COLOR, PLAIN, {{9, 18, 7.5}, {11, 18, 7.5}, {11, 22, 7.5}, {9, 22, 7.5}, {9, 18, 7.5}})}));
}

TEST(Drawing_a_rectangle, in_xz_is_turned_by_its_angle)
{
    EXPECT_EQ(DrawnBy([](void* g) { GraphicAddXZBBox(g, COLOR, UPRIGHT, nullptr); }),
              (Drawing{Line(2, COLOR, PLAIN, {{9, 0, 18}, {11, 0, 18}, {11, 0, 22}, {9, 0, 22}, {9, 0, 18}})}));
    for (const double angle : {90.0, 33.3, -100.0})
    {
        Points expected;
        for (const zPoint64f& corner : NaiveRectangle(1, 2, angle, 10, 20))
        {
            expected.push_back({corner.x, 0, corner.y});
        }
        EXPECT_EQ(DrawnBy([&](void* g) {
                      GraphicAddXZBBox(g, COLOR, With(UPRIGHT, &RegionXZ<double>::angle, angle), nullptr);
                  }),
                  (Drawing{Line(2, COLOR, PLAIN, expected)}))
            << angle;
    }
}

TEST(Drawing_a_rectangle, in_space_is_turned_in_its_plane_then_by_the_rotation_with_y_reversed)
{
    const Region2d<double> region{3, 4, 2, 6, 33};
    const zPoint3d64f rotation{10, 20, -30};
    const zPoint3d64f offset{0.1, 0.2, 0.3};
    RefFrame frame;
    frame.RotateXYZ(10, -20, -30);
    Points expected;
    for (const zPoint64f& corner : NaiveRectangle(1, 3, 33.0 - 90.0, 3, 4))
    {
        const zPoint3d64f turned = frame.Apply(zPoint3d64f{corner.x, corner.y, 0});
        expected.push_back({turned.x + offset.x, turned.y + offset.y, turned.z + offset.z});
    }
    EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddRect(g, region, rotation, offset, 1.5F, COLOR, nullptr); }),
              (Drawing{Line(1.5, COLOR, PLAIN, expected)}));
    // A quarter turn about minus y takes x to z, about plus y it would take x to minus z.
    EXPECT_EQ(LineDrawnBy([](void* g) {
                  GraphicAddRect(g, {5, 0, 2, 2, 90}, {0, 90, 0}, {0, 0, 0}, 1, COLOR, nullptr);
              })
                  .at(0)
                  .z,
              4.0);
}

TEST(Drawing_a_region_that_is_not_valid, draws_nothing)
{
    for (const auto member : {&Region3d<double>::x, &Region3d<double>::y, &Region3d<double>::z})
    {
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddBBox(g, COLOR, With(BOX, member, NULL_VALUE), nullptr); }),
                  Drawing());
    }
    for (const auto member : {&Region3d<double>::width, &Region3d<double>::length, &Region3d<double>::height})
    {
        for (const double extent : {0.0, -1.0, NOT_A_NUMBER})
        {
            EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddBBox(g, COLOR, With(BOX, member, extent), nullptr); }),
                      Drawing());
        }
    }
    const std::vector<std::pair<double Region2d<double>::*, double>> flat = {{&Region2d<double>::x, NULL_VALUE},
                                                                             {&Region2d<double>::y, NULL_VALUE},
                                                                             {&Region2d<double>::width, 0},
                                                                             {&Region2d<double>::length, 0}};
    for (const auto& [member, value] : flat)
    {
        const Region2d<double> region = With(FLAT, member, value);
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddXYBBox(g, COLOR, region, 1, nullptr); }), Drawing());
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddRect(g, region, {}, {}, 1, COLOR, nullptr); }), Drawing());
    }
    const std::vector<std::pair<double RegionXZ<double>::*, double>> upright = {{&RegionXZ<double>::x, NULL_VALUE},
                                                                                {&RegionXZ<double>::z, NULL_VALUE},
                                                                                {&RegionXZ<double>::width, 0},
                                                                                {&RegionXZ<double>::height, 0}};
    for (const auto& [member, value] : upright)
    {
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddXZBBox(g, COLOR, With(UPRIGHT, member, value), nullptr); }),
                  Drawing());
    }
    EXPECT_EQ(DrawnBy([](void* g) { GraphicAddXYBBox(g, COLOR, FLAT, NULL_VALUE, nullptr); }), Drawing());
}

// --- planes ---------------------------------------------------------------------------------------------------------

TEST(Drawing_a_plane, tells_normal_and_distance)
{
    const double product = 0.1 * 3.3 + -2.0 * 4.7 + 1.5 * 5.9;
    ExpectDrawn({
        {"point and normal",
         [](void* g) {
             GraphicAddPlane(g, zPlane3d64f{{3.3, 4.7, 5.9}, {0.1, -2, 1.5}}, nullptr);
         },
         {Other(TpGraphicKind::Plane, {AsFloat(0.1), -2, 1.5, AsFloat(product)})}},
        {"no length",
         [](void* g) {
             GraphicAddPlane(g, zPlane3d64f{{3, 4, 5}, {0, 0, 0}}, nullptr);
         },
         {Other(TpGraphicKind::Plane, {0, 0, 0, 0})}},
        {"params",
         [](void* g) {
             GraphicAddPlane(g, PlaneParams<double>{0.1, -2, 1.5, 4.1}, nullptr);
         },
         {Other(TpGraphicKind::Plane, {AsFloat(0.1), -2, 1.5, AsFloat(-4.1)})}},
        {"params, no length",
         [](void* g) {
             GraphicAddPlane(g, PlaneParams<double>{0, 0, 0, 4}, nullptr);
         },
         {}},
    });
}

TEST(Drawing_a_plane, with_a_null_draws_nothing)
{
    for (std::size_t i = 0; i < 6; ++i)
    {
        std::array<double, 6> v = {1, 2, 3, 4, 5, 6};
        v.at(i) = NULL_VALUE;
        EXPECT_EQ(DrawnBy([&](void* g) {
                      GraphicAddPlane(g, zPlane3d64f{{v[0], v[1], v[2]}, {v[3], v[4], v[5]}}, nullptr);
                  }),
                  Drawing());
        if (i < 4)
        {
            EXPECT_EQ(DrawnBy([&](void* g) {
                          GraphicAddPlane(g, PlaneParams<double>{v[0], v[1], v[2], v[3]}, nullptr);
                      }),
                      Drawing());
        }
    }
}

TEST(Drawing_a_plane, whose_params_cannot_be_normalised_raises_under_the_test_of_vectors)
{
    const Raised raised = RaisedFrom([] {
        GraphicAddPlane(NewGraphic().Get(), PlaneParams<double>{1, INFINITE, 0, 0}, nullptr);
    });
    EXPECT_EQ(raised.status, -997);
    EXPECT_EQ(raised.function, "Mu::Vision::IsValidVector");
}

// --- missing graphics -----------------------------------------------------------------------------------------------

TEST(Missing_graphic, is_raised_before_anything_is_looked_at)
{
    const zPlane3d64f nullPlane{{NULL_VALUE, 0, 0}, {0, 0, 1}};
    EXPECT_EQ(RaisedFrom([] { GraphicAddBBox(nullptr, COLOR, {}, nullptr); }), RaisedByDrawing(-997, "GraphicAddBBox"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddXYBBox(nullptr, COLOR, {}, NULL_VALUE, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddXYBBox"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddXZBBox(nullptr, COLOR, {}, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddXZBBox"));
    EXPECT_EQ(RaisedFrom([&] { GraphicAddPlane(nullptr, nullPlane, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddPlane"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddPlane(nullptr, PlaneParams<double>{}, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddPlane"));
}

TEST(Missing_graphic, of_the_other_regions_is_left_to_the_host)
{
    EXPECT_EQ(RaisedFrom([] { GraphicAddProfileRegion(nullptr, UPRIGHT, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddProfileRegion"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddSurfaceRegion(nullptr, BOX, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddSurfaceRegion"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddRect(nullptr, FLAT, {}, {}, 1, COLOR, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddLines"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddRect(nullptr, {}, {}, {}, 1, COLOR, nullptr); }), Raised());
}

// --- contours -------------------------------------------------------------------------------------------------------

Points ContourOf(const Region3d<double>& region, const zM3dTransform3d& transform)
{
    Ta::Object<void*> list;
    GetRegionContour(region, transform, list.Out());
    EXPECT_TRUE(static_cast<bool>(list));
    EXPECT_EQ(zArrayList_ItemType(list.Get()), zTypeOf(zPoint3d64f));
    return ItemsOf<zPoint3d64f>(list);
}

TEST(Contour_of_a_region, walks_the_box_without_its_angles_through_the_transform)
{
    const zM3dTransform3d turn{0, -1, 0, 100, 1, 0, 0, 200, 0, 0, 2, 300};
    Points expected;
    for (const zPoint3d64f& p : WalkAround({10, 20, 30}))
    {
        expected.push_back({-p.y + 100, p.x + 200, 2 * p.z + 300});
    }
    EXPECT_EQ(Flat({}, ContourOf(BOX, turn)), Flat({}, expected));
}

TEST(Contour_of_a_region, with_a_null_in_the_transform_is_an_empty_list)
{
    for (std::size_t i = 0; i < 12; ++i)
    {
        std::array<double, 12> v = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
        v.at(i) = NULL_VALUE;
        EXPECT_TRUE(ContourOf(BOX, {v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], v[10], v[11]}).empty());
    }
}
} // namespace
