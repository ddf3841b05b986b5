#include <MuVision/RefFrame.h>

#include "Turns.h"

#include <Support/Random.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace
{
using Mu::Vision::Point3d;
using Mu::Vision::RefFrame;
using Mu::Vision::Region3d;
using Turns::Difference;
using Turns::ExpectNear;
using Turns::Sum;
using Turns::TurnedAbout;
using Turns::TurnedAboutAxis;

constexpr double NONE = -1.7976931348623157e308;

constexpr zM3dTransform3d ROWS{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};

TEST(RefFrame, starts_as_the_identity)
{
    const RefFrame frame;
    EXPECT_TRUE(frame.IsIdentity());
    const zPoint3d64f same = frame.Apply(zPoint3d64f{1.5, -2.5, 3.5});
    EXPECT_EQ(same.x, 1.5);
    EXPECT_EQ(same.y, -2.5);
    EXPECT_EQ(same.z, 3.5);
}

TEST(RefFrame, with_any_entry_off_is_no_identity)
{
    for (std::size_t i = 0; i < 12; ++i)
    {
        std::array<double, 12> entries{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
        entries[i] = std::nextafter(entries[i], 2.0);
        const zM3dTransform3d rows{entries[0], entries[1], entries[2], entries[3], entries[4],  entries[5],
                                   entries[6], entries[7], entries[8], entries[9], entries[10], entries[11]};
        EXPECT_FALSE(RefFrame(rows).IsIdentity()) << "entry " << i;
    }
}

TEST(RefFrame, goes_back_to_the_identity)
{
    RefFrame frame(ROWS);
    EXPECT_FALSE(frame.IsIdentity());
    EXPECT_EQ(&frame.SetIdentity(), &frame);
    EXPECT_TRUE(frame.IsIdentity());
}

TEST(RefFrame, applies_its_rows)
{
    const RefFrame frame(ROWS);
    const zPoint3d64f point = frame.Apply(zPoint3d64f{1, 10, 100});
    EXPECT_EQ(point.x, 1 + 20 + 300 + 4);
    EXPECT_EQ(point.y, 5 + 60 + 700 + 8);
    EXPECT_EQ(point.z, 9 + 100 + 1100 + 12);
    const Point3d<double> same = frame.Apply(Point3d<double>{1, 10, 100});
    EXPECT_EQ(same.x, point.x);
    EXPECT_EQ(same.y, point.y);
    EXPECT_EQ(same.z, point.z);
}

TEST(RefFrame, applies_to_an_array_in_place)
{
    std::array<zPoint3d64f, 3> points{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    RefFrame(ROWS).ApplyN(points.data(), points.size(), points.data());
    EXPECT_EQ(points[0].x, 5);
    EXPECT_EQ(points[1].y, 14);
    EXPECT_EQ(points[2].z, 23);
}

TEST(RefFrame, gives_its_rows_out)
{
    const zM3dTransform3d rows = RefFrame(ROWS).TozTransform();
    EXPECT_EQ(rows.xt, 4);
    EXPECT_EQ(rows.yz, 7);
    EXPECT_EQ(rows.zx, 9);
}

class Random : public Support::Random
{
public:
    using Support::Random::Random;

    Point3d<double> Point(double reach)
    {
        return {Between(-reach, reach), Between(-reach, reach), Between(-reach, reach)};
    }
};

zPoint3d64f Plain(const Point3d<double>& point)
{
    return {point.x, point.y, point.z};
}

TEST(RefFrame_rotation, is_right_handed)
{
    const zPoint3d64f point{1, 2, 3};
    ExpectNear(RefFrame().Rotate(90, {1, 0, 0}).Apply(point), {1, -3, 2}, 0);
    ExpectNear(RefFrame().Rotate(90, {0, 1, 0}).Apply(point), {3, 2, -1}, 0);
    ExpectNear(RefFrame().Rotate(90, {0, 0, 1}).Apply(point), {-2, 1, 3}, 0);
    ExpectNear(RefFrame().Rotate(120, {1, 1, 1}).Apply(point), {3, 1, 2}, 1e-15);
}

TEST(RefFrame_rotation, keeps_what_lies_along_a_main_axis_exactly)
{
    Random random(81);
    for (int i = 0; i < 2000; ++i)
    {
        const double angle = random.Between(-400, 400);
        const double height = random.Between(-1000, 1000);
        const zPoint3d64f point{random.Between(-10, 10), random.Between(-10, 10), height};
        ASSERT_EQ(RefFrame().Rotate(angle, {0, 0, 1}).Apply(point).z, height) << angle << ", seed 81";
    }
}

TEST(RefFrame_rotation, returns_the_frame)
{
    RefFrame frame;
    EXPECT_EQ(&frame.Rotate(1, {0, 0, 1}), &frame);
    EXPECT_EQ(&frame.RotateAroundPoint({1, 2, 3}, 1, {0, 0, 1}), &frame);
    EXPECT_EQ(&frame.RotateXYZ(1, 2, 3), &frame);
    EXPECT_EQ(&frame.Rotate(Region3d<double>(), true), &frame);
}

TEST(RefFrame_rotation, does_not_depend_on_the_length_of_the_axis)
{
    constexpr double huge = std::numeric_limits<double>::max();
    constexpr double tiny = std::numeric_limits<double>::denorm_min();
    const zPoint3d64f point{1, 2, 3};
    for (const double length : {huge, 1e200, 1.0, 1e-200, tiny})
    {
        ExpectNear(RefFrame().Rotate(120, {length, length, length}).Apply(point), {3, 1, 2}, 1e-15);
    }
}

TEST(RefFrame_rotation, by_nothing_leaves_the_identity)
{
    EXPECT_TRUE(RefFrame().Rotate(0, {1, 2, 3}).IsIdentity());
    EXPECT_TRUE(RefFrame().Rotate(360, {0, 0, 1}).IsIdentity());
    EXPECT_TRUE(RefFrame().Rotate(NONE, {1, 2, 3}).IsIdentity());
    EXPECT_TRUE(RefFrame().Rotate(30, {0, 0, 0}).IsIdentity());
    EXPECT_TRUE(RefFrame().RotateXYZ(NONE, NONE, NONE).IsIdentity());
    EXPECT_TRUE(RefFrame().RotateAroundPoint({NONE, 0, 0}, 30, {0, 0, 1}).IsIdentity());
    EXPECT_TRUE(RefFrame().RotateAroundPoint({0, NONE, 0}, 30, {0, 0, 1}).IsIdentity());
    EXPECT_TRUE(RefFrame().RotateAroundPoint({0, 0, NONE}, 30, {0, 0, 1}).IsIdentity());
    EXPECT_TRUE(RefFrame().Rotate(Region3d<double>{NONE, 2, 3, 1, 1, 1, 0, 0, 30}, true).IsIdentity());
    EXPECT_TRUE(RefFrame().Rotate(Region3d<double>{1, NONE, 3, 1, 1, 1, 0, 0, 30}, true).IsIdentity());
    EXPECT_TRUE(RefFrame().Rotate(Region3d<double>{0, 0, 3, 1, 1, 1, 0, 0, NONE}, true).IsIdentity());
}

TEST(RefFrame_rotation, about_what_is_not_finite_gives_no_number)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double bad : {infinity, std::nan("")})
    {
        const zPoint3d64f spoilt = RefFrame().Rotate(30, {bad, 0, 1}).Apply(zPoint3d64f{1, 2, 3});
        EXPECT_TRUE(std::isnan(spoilt.x) && std::isnan(spoilt.y) && std::isnan(spoilt.z));
        EXPECT_TRUE(std::isnan(RefFrame().Rotate(bad, {0, 0, 1}).Apply(zPoint3d64f{1, 2, 3}).x));
    }
}

TEST(RefFrame_rotation, acts_after_what_is_in_the_frame)
{
    constexpr unsigned seed = 82;
    Random random(seed);
    for (int i = 0; i < 5000; ++i)
    {
        const Point3d<double> axis = random.Point(5);
        const Point3d<double> around = random.Point(100);
        const double first = random.Between(-400, 400);
        const double second = random.Between(-400, 400);
        const double x = random.Between(-400, 400);
        const double y = random.Between(-400, 400);
        const double z = random.Between(-400, 400);
        const zPoint3d64f point = Plain(random.Point(100));

        RefFrame frame;
        frame.Rotate(first, axis).RotateAroundPoint(around, second, axis).RotateXYZ(x, y, z);
        zPoint3d64f expected = TurnedAboutAxis(Plain(axis), first, point);
        expected = Difference(expected, Plain(around));
        expected = Sum(TurnedAboutAxis(Plain(axis), second, expected), Plain(around));
        expected = TurnedAbout('z', z, TurnedAbout('y', y, TurnedAbout('x', x, expected)));
        SCOPED_TRACE("case " + std::to_string(i) + ", seed " + std::to_string(seed));
        ExpectNear(frame.Apply(point), expected, 1e-10);
        if (testing::Test::HasFailure())
        {
            return;
        }
    }
}

TEST(RefFrame_rotation, around_a_point_keeps_it)
{
    constexpr unsigned seed = 83;
    Random random(seed);
    for (int i = 0; i < 5000; ++i)
    {
        const Point3d<double> point = random.Point(1000);
        RefFrame frame;
        frame.RotateAroundPoint(point, random.Between(-400, 400), random.Point(1));
        const Point3d<double> kept = frame.Apply(point);
        ASSERT_NEAR(kept.x, point.x, 2e-12) << "seed " << seed;
        ASSERT_NEAR(kept.y, point.y, 2e-12) << "seed " << seed;
        ASSERT_NEAR(kept.z, point.z, 2e-12) << "seed " << seed;
    }
}

TEST(RefFrame_rotation, of_a_region_lays_it_along_the_axes_in_place)
{
    // 4 by 2 around (10, 20), turned by 30 degrees: its corner comes to (12, 21).
    const Region3d<double> region{10, 20, 5, 4, 2, 7, 15, 25, 30};
    const zPoint3d64f corner = Sum(TurnedAbout('z', 30, {2, 1, 0}), {10, 20, 6});
    RefFrame toAxes;
    ExpectNear(toAxes.Rotate(region, true).Apply(corner), {12, 21, 6}, 1e-14);
    RefFrame back;
    ExpectNear(back.Rotate(region, false).Apply(zPoint3d64f{12, 21, 6}), corner, 1e-14);
}

TEST(RefFrame_rotation, of_a_region_needs_no_height)
{
    const Region3d<double> region{0, 0, NONE, 4, 2, 7, 0, 0, 90};
    ExpectNear(RefFrame().Rotate(region, true).Apply(zPoint3d64f{1, 2, 3}), {2, -1, 3}, 0);
}
} // namespace
