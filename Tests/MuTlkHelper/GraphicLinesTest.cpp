#include "DrawnElements.h"

#include <array>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using Mu::Vision::Line3d;
using Region = Mu::Vision::Region3d<double>;

constexpr zPoint3d64f A{0.1, -2.5, 3.7};
constexpr zPoint3d64f B{4.0, 5.7, -6.25};

// --- ends -----------------------------------------------------------------------------------------------------------

TEST(Ends_of_a_line, lie_half_its_length_from_the_center)
{
    zPoint3d64f first{};
    zPoint3d64f second{};
    GetLineEndPoints({1, 2, 3}, 0.0, 10.0, &first, &second);
    EXPECT_EQ(Drawing({Line(1, 0, PLAIN, {first, second})}), Drawing({Line(1, 0, PLAIN, {{-4, 2, 3}, {6, 2, 3}})}));

    constexpr double ANGLE = 33.3;
    GetLineEndPoints(A, ANGLE, 7.0, &first, &second);
    const double c = std::cos(ANGLE * TO_RADIANS);
    const double s = std::sin(ANGLE * TO_RADIANS);
    EXPECT_EQ(first.x, A.x - c * 7.0 / 2);
    EXPECT_EQ(first.y, A.y - s * 7.0 / 2);
    EXPECT_EQ(first.z, A.z);
    EXPECT_EQ(second.x, A.x + c * 7.0 / 2);
    EXPECT_EQ(second.y, A.y + s * 7.0 / 2);
    EXPECT_EQ(second.z, A.z);
}

TEST(Ends_of_a_line, may_be_stored_over_the_center)
{
    zPoint3d64f first{0, 0, 0};
    zPoint3d64f second{};
    GetLineEndPoints(first, 0.0, 2.0, &first, &second);
    EXPECT_EQ(first.x, -1.0);
    EXPECT_EQ(second.x, 1.0);
}

// --- infinite lines -------------------------------------------------------------------------------------------------

TEST(Infinite_line, is_two_rays_against_each_other)
{
    ExpectDrawn({
        {"floats",
         [](void* g) {
             GraphicAddInfiniteLine(g, zPoint3d32f{1, 2, 3}, zPoint3d32f{4, -5, 6}, COLOR, 1.5F, nullptr);
         },
         {Ray({1, 2, 3}, {4, -5, 6}, 1.5, COLOR), Ray({1, 2, 3}, {-4, 5, -6}, 1.5, COLOR)}},
        {"doubles", [](void* g) { GraphicAddInfiniteLine(g, A, B, COLOR, 1.5F, nullptr); },
         InfiniteLine(A, B, 1.5, COLOR)},
        {"a line of the vision library",
         [](void* g) {
             GraphicAddInfiniteLine(g, Line3d<double>{{A.x, A.y, A.z}, {B.x, B.y, B.z}}, COLOR, 1.5F, nullptr);
         },
         InfiniteLine(A, B, 1.5, COLOR)},
        {"a line of the base library",
         [](void* g) {
             GraphicAddInfiniteLine(g, zLine3d64f{A, B}, COLOR, 1.5F, nullptr);
         },
         InfiniteLine(A, B, 1.5, COLOR)},
    });
}

TEST(Infinite_line, with_a_null_is_drawn_in_its_form_of_floats_only)
{
    for (std::size_t i = 0; i < 6; ++i)
    {
        std::array<double, 6> v = {1, 2, 3, 4, 5, 6};
        v.at(i) = NULL_VALUE;
        const zPoint3d64f point{v[0], v[1], v[2]};
        const zPoint3d64f direction{v[3], v[4], v[5]};
        ExpectDrawn({
            {"doubles", [&](void* g) { GraphicAddInfiniteLine(g, point, direction, COLOR, 1, nullptr); }, {}},
            {"record",
             [&](void* g) {
                 GraphicAddInfiniteLine(g, zLine3d64f{point, direction}, COLOR, 1, nullptr);
             },
             {}},
        });
    }
    constexpr float NULL_32F = -3.4028234663852886e+38F;
    EXPECT_EQ(DrawnBy([](void* g) {
                  GraphicAddInfiniteLine(g, zPoint3d32f{0, 0, 0}, zPoint3d32f{NULL_32F, 1, 0}, COLOR, 1, nullptr);
              }),
              InfiniteLine({0, 0, 0}, {NULL_32F, 1, 0}, 1, COLOR));
}

TEST(Infinite_line, of_a_record_wants_a_direction_with_a_length)
{
    ExpectDrawn({
        {"no length, record",
         [](void* g) {
             GraphicAddInfiniteLine(g, zLine3d64f{A, {0, 0, 0}}, COLOR, 1, nullptr);
         },
         {}},
        {"no length, doubles",
         [](void* g) {
             GraphicAddInfiniteLine(g, A, {0, 0, 0}, COLOR, 1, nullptr);
         },
         InfiniteLine(A, {0, 0, 0}, 1, COLOR)},
        {"short, record",
         [](void* g) {
             GraphicAddInfiniteLine(g, zLine3d64f{A, {0, 1e-30, 0}}, COLOR, 1, nullptr);
         },
         InfiniteLine(A, {0, 1e-30, 0}, 1, COLOR)},
    });
}

TEST(Infinite_line, of_a_record_raises_what_its_direction_cannot_be_normalised_for)
{
    const Raised raised = RaisedFrom([] {
        GraphicAddInfiniteLine(NewGraphic().Get(), zLine3d64f{A, {NOT_A_NUMBER, 0, 0}}, COLOR, 1, nullptr);
    });
    EXPECT_EQ(raised.status, -997);
    EXPECT_EQ(raised.function, "Mu::Vision::IsValidVector");
}

TEST(Line_by_slope_and_intercept, runs_through_the_intercept)
{
    ExpectDrawn({
        {"in space", [](void* g) { GraphicAddLineBySlopeIntercept(g, 0.5, 7, -1.1, 2.5F, COLOR, nullptr); },
         InfiniteLine({0, 7, -1.1}, {1, 0.5, 0}, 2.5, COLOR)},
        {"of a profile", [](void* g) { GraphicAddXZLineBySlopeIntercept(g, 0.5, 7, 2.5F, COLOR, nullptr); },
         InfiniteLine({0, 0, 7}, {1, 0, 0.5}, 2.5, COLOR)},
        {"null slope", [](void* g) { GraphicAddLineBySlopeIntercept(g, NULL_VALUE, 7, 1, 1, COLOR, nullptr); }, {}},
        {"null z", [](void* g) { GraphicAddLineBySlopeIntercept(g, 1, 7, NULL_VALUE, 1, COLOR, nullptr); }, {}},
        {"null intercept", [](void* g) { GraphicAddXZLineBySlopeIntercept(g, 1, NULL_VALUE, 1, COLOR, nullptr); }, {}},
    });
}

// The ends in doubles, narrowed, and their difference in floats.
Drawing LineByPointAngle(double x, double z, double angle)
{
    const double s = std::sin(angle * TO_RADIANS);
    const double c = std::cos(angle * TO_RADIANS);
    const bool rises = std::abs(s) > 1.1920928955078125e-07;
    const bool runs = std::abs(c) > 1.1920928955078125e-07;
    const auto firstZ = static_cast<float>(rises ? z - 10 * s : z);
    const auto secondZ = static_cast<float>(rises ? z + 10 * s : z);
    const auto firstX = static_cast<float>(runs ? x - 10 * c : x);
    const auto secondX = static_cast<float>(runs ? x + 10 * c : x);
    const float width = secondX - firstX;
    const float height = secondZ - firstZ;
    return InfiniteLine({firstX, 0, firstZ}, {width, 0, height}, 1, COLOR);
}

TEST(Line_by_point_and_angle, has_width_1_and_its_difference_in_floats)
{
    const zPoint64f point{1e6 + 0.1, -3.3};
    for (const double angle : {0.0, 30.0, 45.5, 90.0, 180.0, -120.0, 270.0, 1e-9})
    {
        SCOPED_TRACE(angle);
        EXPECT_EQ(DrawnBy([&](void* g) { GraphicAddXZLineByPointAngle(g, point, angle, 5.0F, COLOR, nullptr); }),
                  LineByPointAngle(point.x, point.y, angle));
    }
    EXPECT_EQ(DrawnBy([](void* g) {
                  GraphicAddXZLineByPointAngle(g, {1, 2}, 0.0, 5.0F, COLOR, nullptr);
              }),
              InfiniteLine({-9, 0, 2}, {20, 0, 0}, 1, COLOR));
    EXPECT_EQ(DrawnBy([](void* g) {
                  GraphicAddXZLineByPointAngle(g, {1, 2}, 90.0, 5.0F, COLOR, nullptr);
              }),
              InfiniteLine({1, 0, -8}, {0, 0, 20}, 1, COLOR));
}

// --- segments -------------------------------------------------------------------------------------------------------

TEST(Line_segment, is_a_plain_line_of_two_points)
{
    ExpectDrawn({
        {"doubles",
         [](void* g) { GraphicAddLineSegment(g, A, B, 2.5F, COLOR, nullptr); },
         {Line(2.5, COLOR, PLAIN, {A, B})}},
        {"floats",
         [](void* g) {
             GraphicAddLineSegment(g, std::array<zPoint3d32f, 2>{{{1, 2, 3}, {4, 5, 6}}}, 2.5F, COLOR, nullptr);
         },
         {Line(2.5, COLOR, PLAIN, {{1, 2, 3}, {4, 5, 6}})}},
        {"null",
         [](void* g) {
             GraphicAddLineSegment(g, {NULL_VALUE, 0, 0}, B, 1, COLOR, nullptr);
         },
         {Line(1, COLOR, PLAIN, {{-INFINITE, 0, 0}, B})}},
        {"of a profile",
         [](void* g) {
             GraphicAddProfileLineSegment(g, {1.1, 2}, {3, 4}, 2.5F, COLOR, nullptr);
         },
         {Line(2.5, COLOR, PLAIN, {{1.1, 0, 2}, {3, 0, 4}})}},
    });
}

TEST(Line_segment, of_a_profile_with_a_null_is_not_drawn)
{
    for (std::size_t i = 0; i < 4; ++i)
    {
        std::array<double, 4> v = {1, 2, 3, 4};
        v.at(i) = NULL_VALUE;
        EXPECT_EQ(DrawnBy([&](void* g) {
                      GraphicAddProfileLineSegment(g, {v[0], v[1]}, {v[2], v[3]}, 1, COLOR, nullptr);
                  }),
                  Drawing());
    }
}

// --- lines cut at a box ---------------------------------------------------------------------------------------------

// x from 0 to 10, y from 20 to 24, z from -3 to 3.
constexpr Region BOX{0, 20, -3, 10, 4, 6, 11, 12, 13};

using AddBounded = void (*)(void*, float, z32u, const zPoint3d64f&, double, const Region&, void*);

Drawing Bounded(AddBounded add, const zPoint3d64f& point, double angle, const Region& box)
{
    return DrawnBy([&](void* g) { add(g, 2.5F, COLOR, point, angle, box, nullptr); });
}

Drawing Segment(const zPoint3d64f& first, const zPoint3d64f& second)
{
    return {Line(2.5, COLOR, PLAIN, {first, second})};
}

struct BoundedCase
{
    const char* name;
    zPoint3d64f point;
    double angle;
    Drawing expected;
};

void ExpectBounded(AddBounded add, const Region& box, const std::vector<BoundedCase>& cases)
{
    for (const BoundedCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Bounded(add, c.point, c.angle, box), c.expected);
    }
}

TEST(Line_cut_in_xy, ends_at_the_borders_of_the_box)
{
    ExpectBounded(GraphicAddBoundedLineXY, BOX,
                  {
                      {"horizontal", {5, 21, 7}, 0, Segment({0, 21, 7}, {10, 21, 7})},
                      {"horizontal, backwards", {5, 21, 7}, 180, Segment({0, 21, 7}, {10, 21, 7})},
                      {"horizontal from outside", {50, 21, 7}, 0, Segment({0, 21, 7}, {10, 21, 7})},
                      {"horizontal on the lower edge", {5, 20, 7}, 0, Segment({0, 20, 7}, {10, 20, 7})},
                      {"horizontal on the upper edge", {5, 24, 7}, 0, Segment({0, 24, 7}, {10, 24, 7})},
                      {"horizontal below", {5, 19.9, 7}, 0, {}},
                      {"horizontal above", {5, 24.1, 7}, 0, {}},
                      {"null point", {5, NULL_VALUE, 7}, 0, {}},
                      {"null height", {5, 21, NULL_VALUE}, 0, {}},
                  });
}

TEST(Line_cut_in_xy, compares_the_right_side_with_y_where_it_is_vertical)
{
    const Region low{0, 2, -3, 10, 4, 6};
    ExpectBounded(GraphicAddBoundedLineXY, BOX, {{"y beyond the right side", {5, 20, 0}, 90, {}}});
    ExpectBounded(GraphicAddBoundedLineXY, low,
                  {
                      {"inside", {5, 3, 1}, 90, Segment({5, 2, 1}, {5, 6, 1})},
                      {"downwards", {5, 3, 1}, -90, Segment({5, 2, 1}, {5, 6, 1})},
                      {"y on the right side", {5, 10, 1}, 90, Segment({5, 2, 1}, {5, 6, 1})},
                      {"x beyond the right side", {12, 3, 1}, 90, Segment({12, 2, 1}, {12, 6, 1})},
                      {"x on the left side", {0, 3, 1}, 90, Segment({0, 2, 1}, {0, 6, 1})},
                      {"x left of the box", {-0.1, 3, 1}, 90, {}},
                      {"y above the right side", {5, 10.1, 1}, 90, {}},
                  });
}

// Where a slanting line leaves a box, by the rule: the side, or the top or bottom if it is left there.
zPoint3d64f NaiveCrossing(const zPoint3d64f& p, double angle, double sideX, double yMin, double yMax)
{
    const double s = std::sin(angle * TO_RADIANS);
    const double c = std::cos(angle * TO_RADIANS);
    double x = sideX;
    double y = p.y + (x - p.x) * s / c;
    if (y < yMin)
    {
        y = yMin;
        x = p.x + (y - p.y) * c / s;
    }
    else if (y > yMax)
    {
        y = yMax;
        x = p.x + (y - p.y) * c / s;
    }
    return {x, y, p.z};
}

// The sine of 45 degrees is not its cosine to the last bit.
void ExpectNear(const Drawing& drawing, const Points& ends)
{
    ASSERT_EQ(drawing.size(), 1U);
    const std::vector<double> expected = Line(2.5, COLOR, PLAIN, ends).values;
    ASSERT_EQ(drawing[0].values.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_NEAR(drawing[0].values[i], expected[i], 1e-5);
    }
}

TEST(Line_cut_in_xy, at_45_degrees_ends_on_whichever_border_comes_first)
{
    const Region square{0, 0, 0, 10, 10, 1};
    const Region wide{0, 0, 0, 100, 10, 1};
    ExpectNear(Bounded(GraphicAddBoundedLineXY, {5, 5, 2}, 45, square), {{0, 0, 2}, {10, 10, 2}});
    ExpectNear(Bounded(GraphicAddBoundedLineXY, {50, 5, 2}, 45, wide), {{45, 0, 2}, {55, 10, 2}});
}

TEST(Line_cut_in_xy, that_passes_outside_a_corner_is_not_drawn)
{
    const Region square{0, 0, 0, 10, 10, 1};
    EXPECT_EQ(Bounded(GraphicAddBoundedLineXY, {-2, 9, 0}, 45, square), Drawing());
    EXPECT_EQ(Bounded(GraphicAddBoundedLineXY, {9, 12, 0}, -45, square), Drawing());
    EXPECT_EQ(Bounded(GraphicAddBoundedLineXY, {9, 10, 0}, -45, square).size(), 1U);
}

TEST(Line_cut_in_xy, agrees_with_the_rule_at_every_angle)
{
    std::size_t drawn = 0;
    for (int angle = -179; angle <= 179; ++angle)
    {
        if (angle % 90 == 0)
        {
            continue;
        }
        for (const zPoint3d64f& p : {zPoint3d64f{3, 21.5, 1}, zPoint3d64f{12, 26, 1}, zPoint3d64f{-1, 19, 1}})
        {
            const zPoint3d64f left = NaiveCrossing(p, angle, 0, 20, 24);
            const zPoint3d64f right = NaiveCrossing(p, angle, 10, 20, 24);
            const bool isInside = left.x >= 0 && left.x <= 10 && right.x >= 0 && right.x <= 10;
            drawn += isInside ? 1 : 0;
            EXPECT_EQ(Bounded(GraphicAddBoundedLineXY, p, angle, BOX), isInside ? Segment(left, right) : Drawing())
                << angle;
        }
    }
    EXPECT_GT(drawn, 356U);
    EXPECT_LT(drawn, 3U * 356U);
}

TEST(Line_cut_in_xz, is_the_same_in_x_and_z_at_the_y_of_the_point)
{
    ExpectBounded(GraphicAddBoundedLineXZ, BOX,
                  {
                      {"horizontal", {5, 99, -3}, 0, Segment({0, 99, -3}, {10, 99, -3})},
                      {"horizontal above", {5, 99, 3.1}, 0, {}},
                      {"vertical, y beyond the right side", {5, 99, 0}, 90, {}},
                      {"vertical, y on the right side", {5, 10, 50}, 90, Segment({5, 10, -3}, {5, 10, 3})},
                      {"vertical, left of the box", {-1, 1, 0}, 90, {}},
                      {"null point", {NULL_VALUE, 1, 0}, 0, {}},
                  });
    for (const double angle : {30.0, 60.0, 120.0, -20.5})
    {
        const zPoint3d64f left = NaiveCrossing({4, 1, 0}, angle, 0, -3, 3);
        const zPoint3d64f right = NaiveCrossing({4, 1, 0}, angle, 10, -3, 3);
        EXPECT_EQ(Bounded(GraphicAddBoundedLineXZ, {4, 17, 1}, angle, BOX),
                  Segment({left.x, 17, left.y}, {right.x, 17, right.y}))
            << angle;
    }
}

struct SpaceCase
{
    const char* name;
    zPoint3d64f point;
    zPoint3d64f direction;
    Drawing expected;
};

TEST(Line_cut_in_space, ends_on_the_faces_of_its_first_axis_alone_the_forward_end_first)
{
    const std::vector<SpaceCase> cases = {
        {"along x and y", {4, 22, 0}, {1, 1, 0}, Segment({10, 28, 0}, {0, 18, 0})},
        {"against x", {4, 22, 0}, {-2, 1, 3}, Segment({0, 24, 6}, {10, 19, -9})},
        {"along y", {4, 22, 0}, {0, 2, 1}, Segment({4, 24, 1}, {4, 20, -1})},
        {"against y", {4, 22, 0}, {0, -2, 1}, Segment({4, 20, 1}, {4, 24, -1})},
        {"along z", {4, 22, 0}, {0, 0, 1}, Segment({4, 22, 3}, {4, 22, -3})},
        {"against z", {4, 22, 1}, {0, 0, -1}, Segment({4, 22, -3}, {4, 22, 3})},
        {"hardly along x", {4, 22, 0}, {1e-7, 1, 0}, Segment({4 + 2 * 1e-7, 24, 0}, {4 - 2 * 1e-7, 20, 0})},
        {"from outside", {40, 2, 0}, {1, 0, 0}, Segment({10, 2, 0}, {0, 2, 0})},
        {"no direction", {4, 22, 0}, {0, 0, 0}, {}},
        {"not a number", {4, 22, 0}, {NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER}, {}},
        {"null point", {4, 22, NULL_VALUE}, {1, 0, 0}, {}},
        {"null direction", {4, 22, 0}, {1, NULL_VALUE, 0}, {}},
    };
    for (const SpaceCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(
            DrawnBy([&](void* g) { GraphicAddBoundedLineXYZ(g, 2.5F, COLOR, c.point, c.direction, BOX, nullptr); }),
            c.expected);
    }
}

// x takes any crossing, y and z only one that is above the null that stands for none.
TEST(Line_cut_in_space, of_a_box_without_borders_takes_what_x_gives_and_passes_over_y)
{
    const Region endless{-INFINITE, -INFINITE, -3, NOT_A_NUMBER, NOT_A_NUMBER, 6};
    const auto along = [&](const zPoint3d64f& direction) {
        return LineDrawnBy([&](void* g) {
            GraphicAddBoundedLineXYZ(g, 1, COLOR, {0, 0, 0}, direction, endless, nullptr);
        });
    };
    EXPECT_TRUE(std::isnan(along({1, 0, 1}).at(0).z));
    EXPECT_EQ(along({0, 1, 1}).at(0).z, 3.0);
}

// --- failures -------------------------------------------------------------------------------------------------------

TEST(Lines_without_a_graphic, raise_under_the_name_of_the_element_that_the_host_refused)
{
    EXPECT_EQ(RaisedFrom([] { GraphicAddLineBySlopeIntercept(nullptr, 1, 2, 3, 1, COLOR, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddInfiniteLine"));
    EXPECT_EQ(RaisedFrom([] {
                  GraphicAddBoundedLineXY(nullptr, 1, COLOR, {5, 21, 0}, 0, BOX, nullptr);
              }),
              RaisedByDrawing(-997, "GraphicAddLineSegment"));
    EXPECT_EQ(RaisedFrom([] {
                  GraphicAddProfileLineSegment(nullptr, {1, 2}, {3, 4}, 1, COLOR, nullptr);
              }),
              RaisedByDrawing(-997, "GraphicAddLineSegment"));
}
} // namespace
