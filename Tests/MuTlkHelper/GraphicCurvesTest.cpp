#include "DrawnElements.h"

#include <MuVision/RefFrame.h>
#include <TaVision/TvSurfaceTransform.h>
#include <zVision/zS3dMath.h>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using Mu::Vision::AnnularSector3d;
using Mu::Vision::RefFrame;

constexpr zPoint3d64f CENTER{0.1, -20.5, 3.3};

// By the table of the planes, with the C library's sine and cosine.
zPoint3d64f InPlane(const zPoint3d64f& c, int plane, double u, double v)
{
    switch (plane)
    {
    case 4:
        return {c.x, c.y + u, c.z + v};
    case 5:
        return {c.x + u, c.y, c.z + v};
    case 6:
        return {c.x + u, c.y + v, c.z};
    default:
        return {0, 0, 0};
    }
}

double Sine(double degrees)
{
    return std::sin(degrees * TO_RADIANS);
}

double Cosine(double degrees)
{
    return std::cos(degrees * TO_RADIANS);
}

zPoint3d64f OnCircle(const zPoint3d64f& c, int plane, double radius, double angle)
{
    return InPlane(c, plane, radius * Cosine(angle), radius * Sine(angle));
}

Points Circle(int plane, double radius, double step, int count)
{
    Points points;
    for (int i = 0; i < count; ++i)
    {
        points.push_back(OnCircle(CENTER, plane, radius, i * step));
    }
    return points;
}

Draw DrawCircle(int plane, double radius, double step)
{
    return [=](void* g) { GraphicAddCircle(g, CENTER, radius, step, 1.5F, COLOR, nullptr, plane); };
}

// --- circles --------------------------------------------------------------------------------------------------------

TEST(Circle, is_a_plain_line_in_its_plane)
{
    for (const int plane : {4, 5, 6, 7, 0})
    {
        SCOPED_TRACE(plane);
        EXPECT_EQ(DrawnBy(DrawCircle(plane, 2.7, 10)), (Drawing{Line(1.5, COLOR, PLAIN, Circle(plane, 2.7, 10, 37))}));
    }
}

TEST(Circle, has_the_same_bits_at_whole_degrees_and_between_them)
{
    EXPECT_EQ(DrawnBy(DrawCircle(6, 1e7, 1)), (Drawing{Line(1.5, COLOR, PLAIN, Circle(6, 1e7, 1, 361))}));
    EXPECT_EQ(DrawnBy(DrawCircle(6, 1e7, 0.3)), (Drawing{Line(1.5, COLOR, PLAIN, Circle(6, 1e7, 0.3, 1201))}));
}

TEST(Circle, stays_open_where_the_step_does_not_divide_it)
{
    const Points open = LineDrawnBy(DrawCircle(6, 2, 7));
    EXPECT_EQ(open.size(), 52U);
    EXPECT_NE(Flat({}, {open.front()}), Flat({}, {open.back()}));
    const Points closed = LineDrawnBy(DrawCircle(6, 2, 10));
    EXPECT_EQ(closed.size(), 37U);
    EXPECT_EQ(Flat({}, {closed.front()}), Flat({}, {closed.back()}));
}

TEST(Circle, with_a_step_beyond_a_turn_is_a_point_and_with_a_negative_one_has_none)
{
    EXPECT_EQ(LineDrawnBy(DrawCircle(6, 2, 400)).size(), 1U);
    EXPECT_TRUE(LineDrawnBy(DrawCircle(6, 2, -1)).empty());
    EXPECT_TRUE(LineDrawnBy(DrawCircle(6, 2, NOT_A_NUMBER)).empty());
}

TEST(Circle, in_a_tilted_plane_is_turned_with_y_reversed_and_moved_to_its_center)
{
    RefFrame frame;
    frame.RotateXYZ(10, -20, 30);
    Points expected;
    for (int i = 0; i < 25; ++i)
    {
        const zPoint3d64f p = frame.Apply(zPoint3d64f{2.7 * Cosine(i * 15), 2.7 * Sine(i * 15), 0});
        expected.push_back({p.x + CENTER.x, p.y + CENTER.y, p.z + CENTER.z});
    }
    EXPECT_EQ(DrawnBy([](void* g) {
                  GraphicAddCircle(g, CENTER, 2.7, {10, 20, 30}, 15, 1.5F, COLOR, nullptr);
              }),
              (Drawing{Line(1.5, COLOR, PLAIN, expected)}));
    // A quarter turn about minus y lifts the first point, at x, to z.
    const Points upright = LineDrawnBy([](void* g) {
        GraphicAddCircle(g, {0, 0, 0}, 2, {0, 90, 0}, 90, 1, COLOR, nullptr);
    });
    EXPECT_EQ(Flat({}, {upright.at(0)}), (std::vector<double>{0, 0, 2}));
}

// --- steps that are refused -----------------------------------------------------------------------------------------

TEST(Curve_with_a_step_of_nothing, is_refused_under_the_name_of_its_function)
{
    const Ta::Object<void*> graphic = NewGraphic();
    void* const g = graphic.Get();
    for (const double step : {0.0, 1e-9, 1e-300})
    {
        EXPECT_EQ(RaisedFrom([&] { GraphicAddCircle(g, CENTER, 1, step, 1, COLOR, nullptr, 6); }),
                  RaisedByDrawing(-997, "GraphicAddCircle"));
        EXPECT_EQ(RaisedFrom([&] { GraphicAddCircle(g, CENTER, 1, {}, step, 1, COLOR, nullptr); }),
                  RaisedByDrawing(-997, "GraphicAddCircle"));
        EXPECT_EQ(RaisedFrom([&] {
                      GraphicAddEllipse(g, CENTER, {1, 2, 0}, 0, step, 6, COLOR, 1, nullptr);
                  }),
                  RaisedByDrawing(-997, "GraphicAddEllipse"));
        EXPECT_EQ(RaisedFrom([&] {
                      GraphicAddAnnularSector(g, {1, 2, 0, 90, {0, 0, 0}}, step, 1, COLOR, nullptr);
                  }),
                  RaisedByDrawing(-997, "GraphicAddAnnularSector"));
        EXPECT_EQ(RaisedFrom([&] { static_cast<void>(CreateEllipseArc(CENTER, 1, 2, 0, 90, 0, step, nullptr, 6)); }),
                  RaisedByDrawing(-997, "CreateEllipseArc"));
    }
    EXPECT_EQ(RaisedFrom([&] { GraphicAddArc(g, CENTER, 1, 0, 1e300, 6, COLOR, 1, nullptr); }),
              RaisedByDrawing(-997, "GraphicAddArc"));
    EXPECT_EQ(TpGraphic_Count(g), 0U);
}

// --- arcs -----------------------------------------------------------------------------------------------------------

// Whole degrees from `start`, and the end angle.
Points Arc(int plane, double radius, double start, double sweep)
{
    Points points;
    const int count = static_cast<int>(sweep + 1.0);
    for (int i = 0; i < count - 1; ++i)
    {
        points.push_back(OnCircle(CENTER, plane, radius, start + i));
    }
    points.push_back(OnCircle(CENTER, plane, radius, start + sweep));
    return points;
}

Drawing ArcDrawn(double start, double sweep, int plane = 6)
{
    return DrawnBy([=](void* g) { GraphicAddArc(g, CENTER, 2.7, start, sweep, plane, COLOR, 1.5F, nullptr); });
}

struct ArcCase
{
    double start, sweep;
    double from, turn; ///< as it is walked
    std::size_t points;
};

TEST(Arc, walks_whole_degrees_forwards_and_ends_at_its_end_angle)
{
    for (const ArcCase& c : {ArcCase{0, 90, 0, 90, 91},
                             {0, -90, 270, 90, 91},
                             {0, 0.5, 0, 0.5, 1},
                             {10, 1, 10, 1, 2},
                             {10.25, 3.5, 10.25, 3.5, 4},
                             {-30, 40, 330, 40, 41},
                             {-720, 5, 0, 5, 6},
                             {360, 5, 360, 5, 6},
                             {725, 5, 5, 5, 6},
                             {300, 359, 300, 359, 360},
                             {0, 800, 0, 800, 801},
                             {20, -800, 300, 800, 801},
                             {0, 2e-7, 0, 2e-7, 1}})
    {
        SCOPED_TRACE(testing::Message() << c.start << " " << c.sweep);
        const Points expected = Arc(6, 2.7, c.from, c.turn);
        EXPECT_EQ(expected.size(), c.points);
        EXPECT_EQ(ArcDrawn(c.start, c.sweep), (Drawing{Line(1.5, COLOR, ARROWS, expected)}));
    }
}

TEST(Arc, lies_in_its_plane)
{
    for (const int plane : {4, 5, 6, 1})
    {
        EXPECT_EQ(ArcDrawn(33.5, 44.25, plane), (Drawing{Line(1.5, COLOR, ARROWS, Arc(plane, 2.7, 33.5, 44.25))}));
    }
}

TEST(Arc, without_a_sweep_or_with_an_angle_that_is_none_draws_nothing)
{
    for (const double sweep : {0.0, 1e-7, -1e-7, NULL_VALUE, NOT_A_NUMBER, INFINITE, -INFINITE})
    {
        EXPECT_EQ(ArcDrawn(10, sweep), Drawing()) << sweep;
    }
    for (const double start : {NULL_VALUE, NOT_A_NUMBER, INFINITE, -INFINITE})
    {
        EXPECT_EQ(ArcDrawn(start, 10), Drawing()) << start;
    }
    EXPECT_EQ(ArcDrawn(-1.7e308, -1.7e308), Drawing());
}

TEST(Arc, that_starts_after_many_turns_is_the_same_and_ends)
{
    EXPECT_EQ(ArcDrawn(360e6 + 10, 5), ArcDrawn(10, 5));
    EXPECT_EQ(ArcDrawn(-360e6 - 10, 5), ArcDrawn(350, 5));
    EXPECT_EQ(ArcDrawn(1e300, 5).size(), 1U);
    EXPECT_EQ(ArcDrawn(-1e300, 5).size(), 1U);
}

// --- arcs in space --------------------------------------------------------------------------------------------------

zPoint64f Tilt(zPoint3d64f normal)
{
    zPoint64f tilt{};
    MU_CHECK(zS3dMath_Normalize64f(&normal));
    MU_CHECK(TvSurfaceTransform_NormalToTilt(&normal, &tilt));
    return tilt;
}

// `count` tilts from `tilt`, each one `step` further.
Points TiltedArc(const zPoint3d64f& center, zPoint64f tilt, const zPoint64f& step, int count, double radius)
{
    Points points;
    for (int i = 0; i < count; ++i)
    {
        zPoint3d64f n{};
        MU_CHECK(TvSurfaceTransform_TiltToNormal(&tilt, &n));
        points.push_back({center.x + n.x * radius, center.y + n.y * radius, center.z + n.z * radius});
        tilt = {tilt.x + step.x, tilt.y + step.y};
        tilt.y = tilt.y > 180 ? tilt.y - 360 : tilt.y;
        tilt.y = tilt.y < -180 ? tilt.y + 360 : tilt.y;
    }
    return points;
}

Drawing SpaceArc(const zPoint3d64f& from, const zPoint3d64f& to)
{
    return DrawnBy([&](void* g) { GraphicAddArcXYZ(g, 1.5F, COLOR, CENTER, from, to, 2.7, nullptr); });
}

TEST(Arc_in_space, has_about_one_point_a_degree_of_tilt)
{
    const zPoint3d64f from{3, 1, 5};
    const zPoint3d64f to{0.2, 2, 4};
    const zPoint64f a = Tilt(from);
    const zPoint64f b = Tilt(to);
    const double turn = b.y - a.y;
    ASSERT_GT(turn, 2.0);
    ASSERT_GT(turn, std::abs(b.x - a.x));
    const int count = static_cast<int>(turn) + 1;
    const zPoint64f step{(b.x - a.x) / (count - 1), turn / (count - 1)};
    EXPECT_EQ(SpaceArc(from, to), (Drawing{Line(1.5, COLOR, ARROWS, TiltedArc(CENTER, a, step, count, 2.7))}));
}

TEST(Arc_in_space, from_level_to_level_is_a_quarter_circle_of_91_points)
{
    const Drawing drawn = SpaceArc({5, 0, 0}, {0, 0.1, 0});
    EXPECT_EQ(drawn, (Drawing{Line(1.5, COLOR, ARROWS, TiltedArc(CENTER, {90, 0}, {0, 1}, 91, 2.7))}));
    const Points points = LineDrawnBy([](void* g) {
        GraphicAddArcXYZ(g, 1, COLOR, {1, 2, 3}, {5, 0, 0}, {0, 0.1, 0}, 2, nullptr);
    });
    EXPECT_EQ(Flat({}, {points.front(), points.back()}), (std::vector<double>{3, 2, 3, 1, 4, 3}));
}

TEST(Arc_in_space, takes_the_short_way_around_where_the_direction_wraps)
{
    const double s = Sine(10);
    const double c = Cosine(10);
    const zPoint64f a = Tilt({-c, s, 0});
    const zPoint64f b = Tilt({-c, -s, 0});
    const double way = 360 - std::abs(a.y) - std::abs(b.y);
    ASSERT_NEAR(way, 20, 1e-9);
    const int count = static_cast<int>(way) + 1;
    const zPoint64f step{(b.x - a.x) / (count - 1), way / (count - 1)};
    EXPECT_EQ(SpaceArc({-c, s, 0}, {-c, -s, 0}),
              (Drawing{Line(1.5, COLOR, ARROWS, TiltedArc(CENTER, a, step, count, 2.7))}));
    EXPECT_EQ(SpaceArc({-c, -s, 0}, {-c, s, 0}),
              (Drawing{Line(1.5, COLOR, ARROWS, TiltedArc(CENTER, b, {-step.x, -step.y}, count, 2.7))}));
}

TEST(Arc_in_space, between_opposite_directions_flips_the_first)
{
    EXPECT_EQ(SpaceArc({-1, -1, -8}, {1, 2, 9}), SpaceArc({1, 1, 8}, {1, 2, 9}));
    const Points points = LineDrawnBy([](void* g) {
        GraphicAddArcXYZ(g, 1, COLOR, {0, 0, 0}, {-1, 0, 0}, {1, 0, 0}, 2, nullptr);
    });
    EXPECT_EQ(Flat({}, points), (std::vector<double>{2, 0, 0, 2, 0, 0}));
}

TEST(Arc_in_space, around_a_null_center_draws_nothing)
{
    for (const zPoint3d64f& center :
         {zPoint3d64f{NULL_VALUE, 0, 0}, zPoint3d64f{0, NULL_VALUE, 0}, zPoint3d64f{0, 0, NULL_VALUE}})
    {
        EXPECT_EQ(DrawnBy([&](void* g) {
                      GraphicAddArcXYZ(g, 1, COLOR, center, {NOT_A_NUMBER, 0, 0}, {1, 0, 0}, 2, nullptr);
                  }),
                  Drawing());
    }
}

TEST(Arc_in_space, of_a_direction_that_is_not_finite_raises)
{
    EXPECT_EQ(RaisedFrom([] { SpaceArc({1, 0, 0}, {0, NOT_A_NUMBER, 0}); }), RaisedByDrawing(-997, "GraphicAddArcXYZ"));
}

// --- ellipses -------------------------------------------------------------------------------------------------------

TEST(Ellipse, lays_half_of_y_along_the_first_axis)
{
    for (const int plane : {4, 5, 6, 9})
    {
        Points expected;
        for (int i = 0; i <= 36; ++i)
        {
            const double u = 2.5 * Cosine(i * 10) * Cosine(33) - 1.5 * Sine(i * 10) * Sine(33);
            const double v = 2.5 * Cosine(i * 10) * Sine(33) + 1.5 * Sine(i * 10) * Cosine(33);
            expected.push_back(InPlane(CENTER, plane, u, v));
        }
        EXPECT_EQ(DrawnBy([&](void* g) {
                      GraphicAddEllipse(g, CENTER, {3, 5, 77}, 33, 10, plane, COLOR, 1.5F, nullptr);
                  }),
                  (Drawing{Line(1.5, COLOR, ARROWS, expected)}));
    }
    const Points points = LineDrawnBy([](void* g) {
        GraphicAddEllipse(g, {0, 0, 0}, {2, 6, 0}, 0, 360, 6, COLOR, 1, nullptr);
    });
    EXPECT_EQ(Flat({}, {points.at(0)}), (std::vector<double>{3, 0, 0}));
}

TEST(Ellipse, has_one_point_more_than_whole_steps)
{
    const auto count = [](double step) {
        return LineDrawnBy([=](void* g) {
                   GraphicAddEllipse(g, CENTER, {3, 5, 0}, 33, step, 6, COLOR, 1, nullptr);
               })
            .size();
    };
    EXPECT_EQ(count(7), 52U);
    EXPECT_EQ(count(10), 37U);
    EXPECT_EQ(count(400), 1U);
    EXPECT_EQ(count(-7), 0U);
}

// --- sectors --------------------------------------------------------------------------------------------------------

Points Sector(const AnnularSector3d<double>& s, int first, int steps, double step)
{
    const zPoint3d64f c{s.center.x, s.center.y, s.center.z};
    Points points;
    for (int i = first; i <= first + steps; ++i)
    {
        points.push_back(OnCircle(c, 6, s.innerRadius, i * step));
    }
    for (int i = first + steps; i >= first; --i)
    {
        points.push_back(OnCircle(c, 6, s.outerRadius, i * step));
    }
    points.push_back(points.front());
    return points;
}

Drawing SectorDrawn(const AnnularSector3d<double>& sector, double step)
{
    return DrawnBy([&](void* g) { GraphicAddAnnularSector(g, sector, step, 1.5F, COLOR, nullptr); });
}

TEST(Annular_sector, goes_along_the_inner_edge_and_back_along_the_outer_one)
{
    const AnnularSector3d<double> quarter{1.5, 2.7, 30, 90, {0.1, -20.5, 3.3}};
    EXPECT_EQ(SectorDrawn(quarter, 10), (Drawing{Line(1.5, COLOR, PLAIN, Sector(quarter, 3, 9, 10))}));
    // 30 / 7 and 90 / 7 count in whole steps.
    EXPECT_EQ(SectorDrawn(quarter, 7), (Drawing{Line(1.5, COLOR, PLAIN, Sector(quarter, 4, 12, 7))}));
    // A fraction of a step: one point on each edge, and the first again.
    EXPECT_EQ(SectorDrawn(quarter, 100), (Drawing{Line(1.5, COLOR, PLAIN, Sector(quarter, 0, 0, 100))}));
}

TEST(Annular_sector, that_starts_below_0_starts_a_turn_later)
{
    const AnnularSector3d<double> sector{1, 2, -30, 60, {0, 0, 0}};
    EXPECT_EQ(SectorDrawn(sector, 10), (Drawing{Line(1.5, COLOR, PLAIN, Sector(sector, 33, 6, 10))}));
}

TEST(Annular_sector, that_goes_backwards_has_no_points)
{
    EXPECT_EQ(SectorDrawn({1, 2, 0, -90, {0, 0, 0}}, 10), (Drawing{Line(1.5, COLOR, PLAIN, {})}));
}

// --- arcs of ellipses -----------------------------------------------------------------------------------------------

std::vector<double> Values(const Ta::Object<void*>& list)
{
    EXPECT_EQ(zArrayList_ItemType(list.Get()), zTypeOf(zPoint3d32f));
    const auto items = ItemsOf<zPoint3d32f>(list);
    return Flat({}, WidePoints(items.data(), items.size()));
}

zPoint3d64f OnEllipse(int plane, double a, double b, double rotation, double angle)
{
    const double c = Cosine(angle);
    const double s = Sine(angle);
    const double r = a * b / std::sqrt(b * b * (c * c) + a * a * (s * s));
    const zPoint3d64f point = InPlane(CENTER, plane, r * c, r * s);
    RefFrame frame;
    frame.RotateAroundPoint({CENTER.x, CENTER.y, CENTER.z}, rotation,
                            {plane == 4 ? 1.0 : 0.0, plane == 5 ? 1.0 : 0.0, plane == 6 ? 1.0 : 0.0});
    return std::abs(rotation) > 1.1920928955078125e-07 ? frame.Apply(point) : point;
}

struct EllipseArcCase
{
    const char* name;
    double start, sweep, step;
    double from, walked; ///< start and step as they are walked
    int count;
};

TEST(Arc_of_an_ellipse, walks_from_its_start_with_the_sign_of_its_sweep)
{
    for (const EllipseArcCase& c : {EllipseArcCase{"forwards", 10, 90, 10, 10, 10, 10},
                                    {"backwards", 10, -90, 10, 10, -10, 10},
                                    {"no sweep", 10, 0, 10, 10, -10, 1},
                                    {"a fraction", 10, 95, 10, 10, 10, 10},
                                    {"a turn", 10, 360, 10, 10, 10, 37},
                                    {"more than a turn", 10, 900, 10, 10, 10, 37},
                                    {"two turns backwards", 10, -720, 10, 10, -10, 73},
                                    {"start below 0", -30, 90, 10, 330, 10, 10},
                                    {"start beyond a turn", 750, 90, 10, 30, 10, 10},
                                    {"negative step", 0, 90, -10, 0, -10, 0}})
    {
        SCOPED_TRACE(c.name);
        for (const int plane : {4, 5, 6})
        {
            for (const double rotation : {0.0, 33.0, 1e-8})
            {
                Points expected;
                for (int i = 0; i < c.count; ++i)
                {
                    expected.push_back(OnEllipse(plane, 3, 2, rotation, i * c.walked + c.from));
                }
                EXPECT_EQ(Values(CreateEllipseArc(CENTER, 3, 2, c.start, c.sweep, rotation, c.step, nullptr, plane)),
                          Flat({}, expected));
            }
        }
    }
}

TEST(Arc_of_an_ellipse, with_equal_axes_lies_on_a_circle)
{
    for (const zPoint3d32f& p : ItemsOf<zPoint3d32f>(CreateEllipseArc({1, 2, 3}, 5, 5, 0, 360, 0, 1, nullptr, 6)))
    {
        EXPECT_NEAR(std::hypot(p.x - 1, p.y - 2), 5, 1e-5);
        EXPECT_EQ(p.z, 3.0F);
    }
}

TEST(Arc_of_an_ellipse, without_axes_stays_in_its_center_and_of_no_plane_at_the_origin)
{
    EXPECT_EQ(Values(CreateEllipseArc({1, 2, 3}, 0, 0, 0, 10, 0, 10, nullptr, 6)),
              (std::vector<double>{1, 2, 3, 1, 2, 3}));
    EXPECT_EQ(Values(CreateEllipseArc({1, 2, 3}, 5, 4, 0, 10, 33, 10, nullptr, 7)),
              (std::vector<double>{0, 0, 0, 0, 0, 0}));
}

TEST(Edge_of_a_sector_of_an_ellipse, joins_the_inner_ellipse_to_the_outer_one)
{
    for (const int plane : {4, 5, 6})
    {
        for (const double rotation : {0.0, 33.0})
        {
            EXPECT_EQ(Values(CreateEllipseSectorEdgeLine(CENTER, 3, 2, 6, 5, rotation, -70.5, nullptr, plane)),
                      Flat({}, {OnEllipse(plane, 3, 2, rotation, -70.5), OnEllipse(plane, 6, 5, rotation, -70.5)}));
        }
    }
    EXPECT_EQ(Values(CreateEllipseSectorEdgeLine({0, 0, 1}, 3, 2, 6, 5, 90, 0, nullptr, 6)),
              (std::vector<double>{0, 3, 1, 0, 6, 1}));
}
} // namespace
