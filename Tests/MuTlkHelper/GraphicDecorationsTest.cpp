#include "DrawnElements.h"

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using Region = Mu::Vision::Region3d<double>;

constexpr zPoint3d64f A{0.1, -2.5, 3.7};
constexpr zPoint3d64f B{4.3, 5.7, -6.25};

Drawing Arc(const zPoint3d64f& center, double radius, double start, double sweep, int plane)
{
    return DrawnBy(
        [&](void* g) { GraphicAddArc(g, center, radius, start, sweep, plane, DecorationColor, 1.0F, nullptr); });
}

// --- a measured point -----------------------------------------------------------------------------------------------

TEST(Measurement_lines, run_along_what_was_measured_across)
{
    const zPoint3d64f turned{std::cos(33 * TO_RADIANS), std::sin(33 * TO_RADIANS), 0};
    const auto draw = [](int axis) { return [axis](void* g) { GraphicAddMeasurementLines(g, axis, A, 33, nullptr); }; };
    ExpectDrawn({
        {"x", draw(1), InfiniteLine(A, {0, 1, 0}, 1, YELLOW)},
        {"y", draw(2), InfiniteLine(A, {1, 0, 0}, 1, YELLOW)},
        {"z", draw(3), {Ray(A, {0, 0, -1}, 1, YELLOW)}},
        {"angle about z", draw(6),
         InfiniteLine(A, {1, 0, 0}, 1, YELLOW) + InfiniteLine(A, turned, 1, YELLOW) + Arc(A, 5, 0, 33, 6)},
        {"direct", draw(0), {}},
        {"angle about x", draw(4), {}},
        {"angle about y", draw(5), {}},
        {"no axis", draw(-1), {}},
        {"beyond all axes", draw(7), {}},
    });
    EXPECT_EQ(Arc(A, 5, 0, 33, 6).size(), 1U);
}

TEST(Measurement_lines, of_a_null_point_are_drawn)
{
    EXPECT_EQ(DrawnBy([](void* g) {
                  GraphicAddMeasurementLines(g, 1, {NULL_VALUE, 0, 0}, 0, nullptr);
              }),
              InfiniteLine({-INFINITE, 0, 0}, {0, 1, 0}, 1, YELLOW));
}

constexpr zRect3d64f BOUNDS{10, 20, 30, 2, 4, 6};

Drawing LineByAngle(const zPoint64f& point, double angle)
{
    return DrawnBy([&](void* g) { GraphicAddXZLineByPointAngle(g, point, angle, 1.0F, DecorationColor, nullptr); });
}

TEST(Profile_measurement_lines, span_three_times_the_bounds_to_either_side)
{
    const auto draw = [](int axis) {
        return [axis](void* g) { GraphicAddProfileMeasurementLines(g, axis, {1.1, 2.2}, 33, BOUNDS, nullptr); };
    };
    const Drawing alongX = {Line(1, YELLOW, PLAIN, {{4, 0, 2.2}, {16, 0, 2.2}})};
    ExpectDrawn({
        {"x", draw(1), {Line(1, YELLOW, PLAIN, {{1.1, 0, 12}, {1.1, 0, 48}})}},
        {"z", draw(3), alongX},
        {"angle about y", draw(5), alongX + LineByAngle({1.1, 2.2}, 33) + Arc({1.1, 0, 2.2}, 5, 0, 33, 5)},
        {"direct", draw(0), {}},
        {"y", draw(2), {}},
        {"angle about x", draw(4), {}},
        {"angle about z", draw(6), {}},
    });
}

TEST(Profile_measurement_lines, of_unknown_bounds_lack_the_line_of_the_axis)
{
    const auto draw = [](int axis, const zRect3d64f& bounds) {
        return [axis, bounds](void* g) { GraphicAddProfileMeasurementLines(g, axis, {1.1, 2.2}, 33, bounds, nullptr); };
    };
    const zRect3d64f noX{NULL_VALUE, 20, 30, 2, 4, 6};
    const zRect3d64f noZ{10, 20, NULL_VALUE, 2, 4, 6};
    ExpectDrawn({
        {"x without z", draw(1, noZ), {}},
        {"x without x", draw(1, noX), {Line(1, YELLOW, PLAIN, {{1.1, 0, 12}, {1.1, 0, 48}})}},
        {"z without x", draw(3, noX), {}},
        {"z without z", draw(3, noZ), {Line(1, YELLOW, PLAIN, {{4, 0, 2.2}, {16, 0, 2.2}})}},
        {"angle without x", draw(5, noX), LineByAngle({1.1, 2.2}, 33) + Arc({1.1, 0, 2.2}, 5, 0, 33, 5)},
    });
}

// --- distances ------------------------------------------------------------------------------------------------------

TEST(Distance_lines, run_from_the_first_point_along_the_axis)
{
    const auto draw = [](int axis) { return [axis](void* g) { GraphicAddDistanceLines(g, axis, A, B, nullptr); }; };
    ExpectDrawn({
        {"x", draw(1), {Line(1, YELLOW, ARROWS, {A, {B.x, A.y, A.z}})}},
        {"y", draw(2), {Line(1, YELLOW, ARROWS, {A, {A.x, B.y, A.z}})}},
        {"z", draw(3), {Line(1, YELLOW, ARROWS, {A, {A.x, A.y, B.z}})}},
        {"direct", draw(0), {Line(2, YELLOW, ARROWS, {A, B})}},
        {"angle about x", draw(4), {}},
        {"angle about y", draw(5), {}},
        {"no axis", draw(-1), {}},
        {"null",
         [](void* g) {
             GraphicAddDistanceLines(g, 0, {NULL_VALUE, 0, 0}, B, nullptr);
         },
         {Line(2, YELLOW, ARROWS, {{-INFINITE, 0, 0}, B})}},
    });
}

TEST(Profile_distance_lines, lie_at_y_0_and_know_no_y)
{
    const auto draw = [](int axis) {
        return [axis](void* g) { GraphicAddProfileDistanceLines(g, axis, {1.1, 2}, {3, 4}, nullptr); };
    };
    ExpectDrawn({
        {"x", draw(1), {Line(1, YELLOW, ARROWS, {{1.1, 0, 2}, {3, 0, 2}})}},
        {"y", draw(2), {}},
        {"z", draw(3), {Line(1, YELLOW, ARROWS, {{1.1, 0, 2}, {1.1, 0, 4}})}},
        {"direct", draw(0), {Line(2, YELLOW, ARROWS, {{1.1, 0, 2}, {3, 0, 4}})}},
        {"angle about y", draw(5), {}},
    });
}

// --- angles ---------------------------------------------------------------------------------------------------------

// Centre (50, 100, 5); by its corners x 0 to 100, y 80 to 120, z 0 to 10.
constexpr Region REGION{50, 100, 5, 100, 40, 10, 0, 0, 0};

Drawing Segment(const zPoint3d64f& a, const zPoint3d64f& b)
{
    return {Line(1, YELLOW, PLAIN, {a, b})};
}

Drawing Vertex(const zPoint3d64f& vertex)
{
    return {Marks(8, 2, YELLOW, {vertex})};
}

TEST(Z_angle_lines, are_two_arms_through_the_region_a_dot_and_an_arc)
{
    const zPoint3d64f vertex{30, 100, 5};
    // 180 degrees, so that both arms lie along x and their ends are seen by eye.
    EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddZAngleMeasurementLines(g, vertex, 0, 180, REGION, nullptr); }),
              Segment({0, 100, 5}, {100, 100, 5}) + Segment({0, 100, 5}, {100, 100, 5}) + Vertex(vertex) +
                  Arc(vertex, 5, 0, 180, 6));
}

// The corner-style box that a margin around the vertex makes of a region, step by step as it is told.
Region NaiveBox(const Region& region, const zPoint3d64f& v, double rx, double ry, double rz)
{
    Region box = region;
    box.x = region.x - region.width / 2;
    box.y = region.y - region.length / 2;
    box.z = region.z - region.height / 2;
    if (box.x > v.x - rx)
    {
        box.width += box.x - v.x + rx;
        box.x = v.x - rx;
    }
    if (v.x + rx > box.x + box.width)
    {
        box.width = v.x + rx - box.x;
    }
    if (box.y > v.y - ry)
    {
        box.length += box.y - v.y + ry;
        box.y = v.y - ry;
    }
    if (v.y + ry > box.y + box.length)
    {
        box.length = v.y + ry - box.y;
    }
    if (box.z > v.z - rz)
    {
        box.height += box.z - v.z + rz;
        box.z = v.z - rz;
    }
    if (v.z + rz > box.z + box.height)
    {
        box.height = v.z + rz - box.z;
    }
    return box;
}

const std::vector<zPoint3d64f> VERTICES = {{30.3, 100.1, 5}, {-40.7, 100, 5},   {140.3, 100, 5},
                                           {50, 33.3, 5},    {50, 177.7, 5},    {50, 100, -33.3},
                                           {50, 100, 77.7},  {-3.1, 200.7, -9}, {104.9, 80.01, 9.9}};

using AddAngle = void (*)(void*, const zPoint3d64f&, double, double, const Region&, void*);
using AddArm = void (*)(void*, float, z32u, const zPoint3d64f&, double, const Region&, void*);

// The arms at 20 and 70 degrees in the region grown by `margin`, the vertex, and the arc in `plane`.
void ExpectAngleAtEveryVertex(AddAngle addAngle, AddArm addArm, const zPoint3d64f& margin, int plane)
{
    for (const zPoint3d64f& v : VERTICES)
    {
        const Region box = NaiveBox(REGION, v, margin.x, margin.y, margin.z);
        const Drawing arms = DrawnBy([&](void* g) {
            addArm(g, 1, DecorationColor, v, 20, box, nullptr);
            addArm(g, 1, DecorationColor, v, 70, box, nullptr);
        });
        EXPECT_EQ(DrawnBy([&](void* g) { addAngle(g, v, 20, 50, REGION, nullptr); }),
                  arms + Vertex(v) + Arc(v, 5, 20, 50, plane));
    }
}

TEST(Z_angle_lines, grow_the_region_by_a_twentieth_around_the_vertex)
{
    ExpectAngleAtEveryVertex(GraphicAddZAngleMeasurementLines, GraphicAddBoundedLineXY, {5, 5, 0}, 6);
}

TEST(Z_angle_lines, at_a_vertex_outside_reach_past_it)
{
    const zPoint3d64f vertex{140, 100, 5};
    const Drawing drawn =
        DrawnBy([&](void* g) { GraphicAddZAngleMeasurementLines(g, vertex, 0, 180, REGION, nullptr); });
    EXPECT_EQ(drawn, Segment({0, 100, 5}, {145, 100, 5}) + Segment({0, 100, 5}, {145, 100, 5}) + Vertex(vertex) +
                         Arc(vertex, 5, 0, 180, 6));
}

TEST(Y_angle_lines, count_the_height_double_and_grow_x_and_z)
{
    ExpectAngleAtEveryVertex(GraphicAddYAngleMeasurementLines, GraphicAddBoundedLineXZ, {5, 0, 5}, 5);
}

TEST(Angle_lines, have_an_arc_of_a_twentieth_of_the_region_or_a_tenth_of_its_height)
{
    const Region cube{0, 0, 0, 100, 60, 100, 0, 0, 0};
    const Drawing z = DrawnBy([&](void* g) { GraphicAddZAngleMeasurementLines(g, {0, 0, 0}, 0, 90, cube, nullptr); });
    const Drawing y = DrawnBy([&](void* g) { GraphicAddYAngleMeasurementLines(g, {0, 0, 0}, 0, 90, cube, nullptr); });
    EXPECT_EQ(Drawing({z.back()}), Arc({0, 0, 0}, 5, 0, 90, 6));
    EXPECT_EQ(Drawing({y.back()}), Arc({0, 0, 0}, 10, 0, 90, 5));
    // Length before width, and width before height, where they are larger.
    const Region longRegion{0, 0, 0, 100, 200, 40, 0, 0, 0};
    EXPECT_EQ(Drawing({DrawnBy([&](void* g) {
                           GraphicAddZAngleMeasurementLines(g, {0, 0, 0}, 0, 90, longRegion, nullptr);
                       }).back()}),
              Arc({0, 0, 0}, 10, 0, 90, 6));
    EXPECT_EQ(Drawing({DrawnBy([&](void* g) {
                           GraphicAddYAngleMeasurementLines(g, {0, 0, 0}, 0, 90, longRegion, nullptr);
                       }).back()}),
              Arc({0, 0, 0}, 5, 0, 90, 5));
}

TEST(Angle_lines, without_a_sweep_are_two_equal_arms_and_the_vertex)
{
    const zPoint3d64f vertex{30, 100, 5};
    EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddZAngleMeasurementLines(g, vertex, 0, 0, REGION, nullptr); }),
              Segment({0, 100, 5}, {100, 100, 5}) + Segment({0, 100, 5}, {100, 100, 5}) + Vertex(vertex));
    EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddYAngleMeasurementLines(g, vertex, 0, 0, REGION, nullptr); }),
              Segment({0, 100, 5}, {100, 100, 5}) + Segment({0, 100, 5}, {100, 100, 5}) + Vertex(vertex));
}

TEST(Angle_lines, around_a_null_vertex_draw_nothing)
{
    for (const zPoint3d64f& v :
         {zPoint3d64f{NULL_VALUE, 0, 0}, zPoint3d64f{0, NULL_VALUE, 0}, zPoint3d64f{0, 0, NULL_VALUE}})
    {
        EXPECT_EQ(DrawnBy([&](void* g) {
                      GraphicAddZAngleMeasurementLines(g, v, 0, 90, REGION, nullptr);
                      GraphicAddYAngleMeasurementLines(g, v, 0, 90, REGION, nullptr);
                      GraphicAddProjectedAngleMeasurementLines(g, v, 0, 90, 1, REGION, nullptr);
                      GraphicAddAngleMeasurementLines(g, v, {1, 0, 0}, {0, 1, 0}, REGION, nullptr);
                      GraphicAddAngleMeasurementLines(g, {0, 0, 0}, v, {0, 1, 0}, REGION, nullptr);
                      GraphicAddAngleMeasurementLines(g, {0, 0, 0}, {0, 1, 0}, v, REGION, nullptr);
                  }),
                  Drawing());
    }
}

TEST(Projected_angle_lines, are_those_about_z_or_about_y)
{
    const zPoint3d64f v{30, 100, 5};
    const auto projected = [&](int useZ) {
        return DrawnBy([&](void* g) { GraphicAddProjectedAngleMeasurementLines(g, v, 20, 50, useZ, REGION, nullptr); });
    };
    const Drawing z = DrawnBy([&](void* g) { GraphicAddZAngleMeasurementLines(g, v, 20, 50, REGION, nullptr); });
    const Drawing y = DrawnBy([&](void* g) { GraphicAddYAngleMeasurementLines(g, v, 20, 50, REGION, nullptr); });
    EXPECT_NE(z, y);
    EXPECT_EQ(projected(1), z);
    EXPECT_EQ(projected(-7), z);
    EXPECT_EQ(projected(0), y);
}

Drawing ArmsAndArc(const zPoint3d64f& vertex, const zPoint3d64f& from, const zPoint3d64f& to, const Region& box,
                   double radius)
{
    return DrawnBy([&](void* g) {
               GraphicAddBoundedLineXYZ(g, 1, DecorationColor, vertex, from, box, nullptr);
               GraphicAddBoundedLineXYZ(g, 1, DecorationColor, vertex, to, box, nullptr);
           }) +
           Vertex(vertex) +
           DrawnBy([&](void* g) { GraphicAddArcXYZ(g, 1, DecorationColor, vertex, from, to, radius, nullptr); });
}

TEST(Angle_lines_in_space, end_at_the_faces_of_the_region)
{
    const zPoint3d64f vertex{30, 100, 5};
    EXPECT_EQ(DrawnBy([&](void* g) {
                  GraphicAddAngleMeasurementLines(g, vertex, {1, 0, 0}, {0, 1, 0}, REGION, nullptr);
              }),
              Segment({100, 100, 5}, {0, 100, 5}) + Segment({30, 120, 5}, {30, 80, 5}) + Vertex(vertex) +
                  DrawnBy([&](void* g) {
                      GraphicAddArcXYZ(g, 1, DecorationColor, vertex, {1, 0, 0}, {0, 1, 0}, 5, nullptr);
                  }));
}

TEST(Angle_lines_in_space, grow_the_region_to_hold_both_directions_times_their_size)
{
    // Beyond the region on every side: 5 times the lowest and the highest components.
    const zPoint3d64f from{-2, 3, 0.5};
    const zPoint3d64f to{4, -1, 0.25};
    const zPoint3d64f vertex{140, 60, 20};
    // x from 0 to 140 + 20, y from 60 - 5 to 120, z from 0 to 20 + 2.5.
    const Region grown{0, 55, 0, 160, 65, 22.5, 0, 0, 0};
    EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddAngleMeasurementLines(g, vertex, from, to, REGION, nullptr); }),
              ArmsAndArc(vertex, from, to, grown, 5));
    // x from -40 - 10, y from 80 to 200 + 15, z from -30 + 1.25 to 10.
    const zPoint3d64f opposite{-40, 200, -30};
    const Region grownOther{-50, 80, -28.75, 150, 135, 38.75, 0, 0, 0};
    EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddAngleMeasurementLines(g, opposite, from, to, REGION, nullptr); }),
              ArmsAndArc(opposite, from, to, grownOther, 5));
}

// --- failures -------------------------------------------------------------------------------------------------------

TEST(Decorations_without_a_graphic, raise_under_the_name_of_what_makes_the_element)
{
    const zPoint3d64f v{30, 100, 5};
    EXPECT_EQ(RaisedFrom([] { GraphicAddMeasurementLines(nullptr, 1, A, 0, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddInfiniteLine"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddMeasurementLines(nullptr, 3, A, 0, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddMeasurementLines"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddProfileMeasurementLines(nullptr, 1, {}, 0, BOUNDS, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddLineSegment"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddDistanceLines(nullptr, 0, A, B, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddDistanceLines"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddProfileDistanceLines(nullptr, 0, {}, {}, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddProfileDistanceLines"));
    EXPECT_EQ(RaisedFrom([&] { GraphicAddZAngleMeasurementLines(nullptr, v, 0, 90, REGION, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddLineSegment"));
    EXPECT_EQ(RaisedFrom([] { GraphicAddDistanceLines(nullptr, 4, A, B, nullptr); }), Raised());
}
} // namespace
