#include <MuVision/Anchor.h>

#include "Turns.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
using Mu::Vision::Anchor;
using Mu::Vision::CreateAnchorTransform;
using Mu::Vision::RefFrame;
using Mu::Vision::RotationOrder;
using Turns::ExpectNear;
using Turns::TurnedAbout;

constexpr double NONE = -1.7976931348623157e308;

TEST(Anchor, starts_without_any_value)
{
    const Anchor anchor;
    for (const double value : {anchor.x, anchor.y, anchor.z, anchor.xAngle, anchor.yAngle, anchor.zAngle})
    {
        EXPECT_EQ(value, NONE);
    }
}

TEST(Anchor_transform, of_an_anchor_without_values_is_the_identity)
{
    EXPECT_TRUE(CreateAnchorTransform(Anchor(), RotationOrder::XYZ).IsIdentity());
}

TEST(Anchor_transform, moves_by_the_values_that_are_there)
{
    const RefFrame frame = CreateAnchorTransform({NONE, 2, NONE, NONE, NONE, NONE}, RotationOrder::XYZ);
    ExpectNear(frame.Apply(zPoint3d64f{1, 1, 1}), {1, 3, 1});
}

TEST(Anchor_transform, turns_from_y_to_z_from_x_to_z_and_from_x_to_y)
{
    const auto turned = [](const Anchor& anchor, const zPoint3d64f& p) {
        return CreateAnchorTransform(anchor, RotationOrder::XYZ).Apply(p);
    };
    ExpectNear(turned({0, 0, 0, 90, 0, 0}, {0, 1, 0}), {0, 0, 1});
    ExpectNear(turned({0, 0, 0, 0, 90, 0}, {1, 0, 0}), {0, 0, 1});
    ExpectNear(turned({0, 0, 0, 0, 0, 90}, {1, 0, 0}), {0, 1, 0});
}

TEST(Anchor_transform, turns_about_x_then_y_then_z_about_the_origin_and_then_moves)
{
    std::mt19937_64 random(20240607);
    std::uniform_real_distribution<double> length(-100, 100);
    std::uniform_real_distribution<double> angle(-360, 360);
    for (int i = 0; i < 1000; ++i)
    {
        const Anchor anchor{length(random), length(random), length(random),
                            angle(random),  angle(random),  angle(random)};
        const zPoint3d64f point{length(random), length(random), length(random)};
        zPoint3d64f expected = TurnedAbout('x', anchor.xAngle, point);
        expected = TurnedAbout('y', -anchor.yAngle, expected);
        expected = TurnedAbout('z', anchor.zAngle, expected);
        expected = {expected.x + anchor.x, expected.y + anchor.y, expected.z + anchor.z};
        ExpectNear(CreateAnchorTransform(anchor, RotationOrder::XYZ).Apply(point), expected);
    }
}

TEST(Anchor_transform, turns_exactly_by_right_angles)
{
    const zPoint3d64f turned =
        CreateAnchorTransform({0, 0, 0, 0, 0, 90}, RotationOrder::XYZ).Apply(zPoint3d64f{3, 4, 5});
    EXPECT_EQ(turned.x, -4);
    EXPECT_EQ(turned.y, 3);
    EXPECT_EQ(turned.z, 5);
}
} // namespace
