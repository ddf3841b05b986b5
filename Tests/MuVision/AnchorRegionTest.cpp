#include <MuVision/Anchor.h>

#include "Turns.h"

#include <Support/Random.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

namespace
{
using Mu::Vision::Anchor;
using Mu::Vision::AnchorRegion;
using Mu::Vision::AnchorRegionInv;
using Mu::Vision::CreateAnchorTransform;
using Mu::Vision::Region3d;
using Mu::Vision::RotationOrder;
using Turns::ExpectNear;
using Turns::Sum;
using Turns::TurnedAbout;

constexpr double NONE = -1.7976931348623157e308;
const double NOT_A_NUMBER = std::nan("");

using Box = Region3d<double>;
using Fields = std::array<double, 9>;

Fields FieldsOf(const Box& box)
{
    return {box.x, box.y, box.z, box.width, box.length, box.height, box.xAngle, box.yAngle, box.zAngle};
}

Box Anchored(const Anchor& anchor, const Box& box)
{
    Box moved;
    AnchorRegion(anchor, RotationOrder::XYZ, box, &moved);
    return moved;
}

Box Unanchored(const Anchor& anchor, const Box& box)
{
    Box moved;
    AnchorRegionInv(anchor, RotationOrder::XYZ, box, &moved);
    return moved;
}

void ExpectFields(const Box& actual, const Box& expected, double bound)
{
    constexpr std::array<const char*, 9> names{"x",      "y",      "z",      "width", "length",
                                               "height", "xAngle", "yAngle", "zAngle"};
    const Fields a = FieldsOf(actual);
    const Fields e = FieldsOf(expected);
    for (std::size_t i = 0; i < a.size(); ++i)
    {
        EXPECT_NEAR(a[i], e[i], bound) << names[i];
    }
}

// The eight corners of a box, from the words: its half extents turned about x, then from x towards z, then about z,
// and its centre added.
std::array<zPoint3d64f, 8> CornersOf(const Box& box)
{
    std::array<zPoint3d64f, 8> corners{};
    for (unsigned i = 0; i < 8; ++i)
    {
        const zPoint3d64f half{(i & 1U ? 0.5 : -0.5) * box.width, (i & 2U ? 0.5 : -0.5) * box.length,
                               (i & 4U ? 0.5 : -0.5) * box.height};
        const zPoint3d64f turned =
            TurnedAbout('z', box.zAngle, TurnedAbout('y', -box.yAngle, TurnedAbout('x', box.xAngle, half)));
        corners[i] = Sum(turned, {box.x, box.y, box.z});
    }
    return corners;
}

void ExpectCornersFollow(const Anchor& anchor, const Box& box)
{
    const auto before = CornersOf(box);
    const auto after = CornersOf(Anchored(anchor, box));
    for (std::size_t i = 0; i < before.size(); ++i)
    {
        SCOPED_TRACE("corner " + std::to_string(i));
        ExpectNear(after[i], CreateAnchorTransform(anchor, RotationOrder::XYZ).Apply(before[i]));
    }
}

class Random : public Support::Random
{
public:
    using Support::Random::Random;

    Anchor NextAnchor()
    {
        return {Length(), Length(), Length(), Between(-180, 180), Between(-89, 89), Between(-180, 180)};
    }

    Box NextBox()
    {
        return {Length(),       Length(),           Length(),         Between(0, 50),    Between(0, 50),
                Between(0, 50), Between(-180, 180), Between(-89, 89), Between(-180, 180)};
    }

private:
    double Length()
    {
        return Between(-200, 200);
    }
};

TEST(Anchored_region, has_its_corners_where_the_anchor_takes_them)
{
    constexpr unsigned seed = 91;
    Random random(seed);
    for (int i = 0; i < 10000 && !testing::Test::HasFailure(); ++i)
    {
        SCOPED_TRACE("case " + std::to_string(i) + ", seed " + std::to_string(seed));
        const Anchor anchor = random.NextAnchor();
        ExpectCornersFollow(anchor, random.NextBox());
    }
}

TEST(Anchored_region, comes_back_with_canonical_angles)
{
    constexpr unsigned seed = 92;
    Random random(seed);
    for (int i = 0; i < 10000 && !testing::Test::HasFailure(); ++i)
    {
        SCOPED_TRACE("case " + std::to_string(i) + ", seed " + std::to_string(seed));
        const Anchor anchor = random.NextAnchor();
        const Box box = random.NextBox();
        ExpectFields(Unanchored(anchor, Anchored(anchor, box)), box, 1e-9);
    }
}

TEST(Anchored_region, is_the_other_way_round_too)
{
    constexpr unsigned seed = 93;
    Random random(seed);
    for (int i = 0; i < 10000 && !testing::Test::HasFailure(); ++i)
    {
        SCOPED_TRACE("case " + std::to_string(i) + ", seed " + std::to_string(seed));
        const Anchor anchor = random.NextAnchor();
        const Box box = random.NextBox();
        ExpectFields(Anchored(anchor, Unanchored(anchor, box)), box, 1e-9);
    }
}

TEST(Anchored_region, moves_and_turns_as_by_hand)
{
    struct Case
    {
        const char* name;
        Anchor anchor;
        Box box, expected;
    };
    const std::array cases{
        Case{"moved", {1, 2, 3, 0, 0, 0}, {10, 20, 30, 4, 5, 6, 7, 8, 9}, {11, 22, 33, 4, 5, 6, 7, 8, 9}},
        Case{"turned in the plane of a surface",
             {0, 0, 0, 0, 0, 90},
             {10, 0, 3, 4, 5, 6, 0, 0, 30},
             {0, 10, 3, 4, 5, 6, 0, 0, 120}},
        Case{"past half a turn", {0, 0, 0, 0, 0, 100}, {0, 0, 3, 4, 5, 6, 0, 0, 100}, {0, 0, 3, 4, 5, 6, 0, 0, -160}},
        Case{"to half a turn", {0, 0, 0, 0, 0, -90}, {0, 0, 3, 4, 5, 6, 0, 0, -90}, {0, 0, 3, 4, 5, 6, 0, 0, 180}},
        Case{"turned in the plane of a profile",
             {0, 0, 0, 0, 90, 0},
             {10, 0, 0, 4, 5, 6, 0, 30, 0},
             {0, 0, 10, 4, 5, 6, 0, 120, 0}},
        Case{"turned about x", {0, 0, 0, 90, 0, 0}, {1, 10, 0, 4, 5, 6, 20, 0, 0}, {1, 0, 10, 4, 5, 6, 110, 0, 0}},
        // about x by 90: the box's y goes to z, so its turn about z is one about -y, which is from x towards z
        Case{"about two axes", {0, 0, 0, 90, 0, 0}, {0, 0, 0, 4, 5, 6, 0, 0, 30}, {0, 0, 0, 4, 5, 6, 90, 30, 0}},
        Case{"turned, then moved", {1, 2, 3, 0, 0, 90}, {10, 0, 0, 4, 5, 6, 0, 0, 0}, {1, 12, 3, 4, 5, 6, 0, 0, 90}},
        Case{"nulls of the anchor",
             {NONE, 2, NONE, NONE, NONE, 90},
             {10, 0, 0, 4, 5, 6, 0, 0, 0},
             {0, 12, 0, 4, 5, 6, 0, 0, 90}},
        Case{"a null angle of the region",
             {0, 0, 0, 0, 0, 10},
             {0, 0, 0, 4, 5, 6, 0, 0, NONE},
             {0, 0, 0, 4, 5, 6, 0, 0, 10}},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        ExpectFields(Anchored(c.anchor, c.box), c.expected, 1e-13);
    }
}

TEST(Anchored_region, that_turns_about_one_axis_only_goes_back_exactly)
{
    const Anchor anchor{0, 0, 0, 0, 75, 0};
    const Box box{0, 0, 0, 4, 5, 6, 0, 80, 0};
    EXPECT_EQ(Anchored(anchor, box).yAngle, 155);
    EXPECT_EQ(Unanchored(anchor, Anchored(anchor, box)).yAngle, 80);
}

TEST(Anchored_region, is_unchanged_without_an_anchor)
{
    const Box box{1.1, -2.2, 3.3, 4.4, 5.5, 6.6, 190, 100, -350};
    for (const Anchor& anchor : {Anchor(), Anchor{0, 0, 0, 0, 0, 0}, Anchor{NONE, 0, NONE, 0, NONE, 0}})
    {
        EXPECT_EQ(FieldsOf(Anchored(anchor, box)), FieldsOf(box));
        EXPECT_EQ(FieldsOf(Unanchored(anchor, box)), FieldsOf(box));
    }
}

TEST(Anchored_region, without_a_centre_is_unchanged)
{
    const Anchor anchor{1, 2, 3, 10, 20, 30};
    for (const Box& box : {Box(), Box{NONE, 2, 3, 4, 5, 6, 7, 8, 9}, Box{1, NONE, 3, 4, 5, 6, 7, 8, 9},
                           Box{1, 2, NONE, 4, 5, 6, 7, 8, 9}})
    {
        EXPECT_EQ(FieldsOf(Anchored(anchor, box)), FieldsOf(box));
        EXPECT_EQ(FieldsOf(Unanchored(anchor, box)), FieldsOf(box));
    }
}

TEST(Anchored_region, that_stands_upright_has_no_angle_about_x)
{
    constexpr unsigned seed = 94;
    Random random(seed);
    for (int i = 0; i < 2000 && !testing::Test::HasFailure(); ++i)
    {
        SCOPED_TRACE("case " + std::to_string(i) + ", seed " + std::to_string(seed));
        Anchor anchor = random.NextAnchor();
        Box box = random.NextBox();
        anchor.xAngle = 0;
        anchor.yAngle = i % 2 == 0 ? 90 : -90;
        box.yAngle = 0;
        box.zAngle = 0;
        const Box upright = Anchored(anchor, box);
        EXPECT_EQ(upright.xAngle, 0);
        EXPECT_EQ(upright.yAngle, anchor.yAngle);
        ExpectCornersFollow(anchor, box);
    }
}

TEST(Anchored_region, near_upright_keeps_its_corners)
{
    constexpr unsigned seed = 95;
    Random random(seed);
    for (int i = 0; i < 5000 && !testing::Test::HasFailure(); ++i)
    {
        SCOPED_TRACE("case " + std::to_string(i) + ", seed " + std::to_string(seed));
        Anchor anchor = random.NextAnchor();
        Box box = random.NextBox();
        const double off = std::pow(10.0, random.Between(-17, -1));
        anchor.xAngle = 0;
        anchor.yAngle = 90 - off;
        box.yAngle = 0;
        box.zAngle = 0;
        ExpectCornersFollow(anchor, box);
    }
}

TEST(Anchored_region, takes_a_number_that_is_none_where_it_counts_only)
{
    const Box box{1, 2, 3, 4, 5, 6, 0, 0, 30};
    const Box moved = Anchored({NOT_A_NUMBER, 1, 1, 0, 0, 0}, box);
    EXPECT_TRUE(std::isnan(moved.x));
    EXPECT_EQ(moved.y, 3);
    EXPECT_EQ(moved.zAngle, 30);
    const Box turned = Anchored({0, 0, 0, 0, 0, NOT_A_NUMBER}, box);
    EXPECT_TRUE(std::isnan(turned.x));
    EXPECT_TRUE(std::isnan(turned.zAngle));
    EXPECT_EQ(turned.width, 4);
    const Box wide = Anchored({0, 0, 0, 0, 0, 10}, {1, 2, 3, NOT_A_NUMBER, 5, 6, 0, 0, 0});
    EXPECT_TRUE(std::isnan(wide.width));
    EXPECT_EQ(wide.zAngle, 10);
}

TEST(Anchored_region, may_be_written_over_the_region)
{
    const Anchor anchor{1, 2, 3, 10, 20, 30};
    const Box box{1, 2, 3, 4, 5, 6, 7, 8, 9};
    Box same = box;
    AnchorRegion(anchor, RotationOrder::XYZ, same, &same);
    EXPECT_EQ(FieldsOf(same), FieldsOf(Anchored(anchor, box)));
    AnchorRegionInv(anchor, RotationOrder::XYZ, same, &same);
    ExpectFields(same, box, 1e-12);
}

TEST(Anchored_region, needs_no_result)
{
    const Box box{1, 2, 3, 4, 5, 6, 7, 8, 9};
    EXPECT_NO_FATAL_FAILURE(AnchorRegion(Anchor(), RotationOrder::XYZ, box, nullptr));
    EXPECT_NO_FATAL_FAILURE(AnchorRegionInv(Anchor(), RotationOrder::XYZ, box, nullptr));
}
} // namespace
