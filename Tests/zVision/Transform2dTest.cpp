#include <Support/FaultWalk.h>

#include <zVision/zM3dTransform2d.h>

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace
{
zM3dTransform2d Identity()
{
    zM3dTransform2d transform{};
    EXPECT_EQ(zM3dTransform2d_Identity(&transform), zOK);
    return transform;
}

zPoint64f Applied(const zM3dTransform2d& transform, const zPoint64f& point)
{
    zPoint64f result{};
    EXPECT_EQ(zM3dTransform2d_Apply(&transform, &point, &result), zOK);
    return result;
}

zPoint64f TurnedBy(double degrees, const zPoint64f& p)
{
    const double angle = degrees * std::acos(-1.0) / 180.0;
    return {p.x * std::cos(angle) - p.y * std::sin(angle), p.x * std::sin(angle) + p.y * std::cos(angle)};
}

TEST(Plane_transform, of_the_identity_leaves_a_point)
{
    const zPoint64f same = Applied(Identity(), {-1.25, 7.5});
    EXPECT_EQ(same.x, -1.25);
    EXPECT_EQ(same.y, 7.5);
}

TEST(Plane_transform, is_the_identity_again_whatever_it_held)
{
    zM3dTransform2d transform{9, 9, 9, 9, 9, 9};
    ASSERT_EQ(zM3dTransform2d_Identity(&transform), zOK);
    EXPECT_EQ(Applied(transform, {3, 4}).x, 3);
    EXPECT_EQ(Applied(transform, {3, 4}).y, 4);
}

TEST(Plane_transform, turns_from_the_first_axis_to_the_second)
{
    zM3dTransform2d transform = Identity();
    ASSERT_EQ(zM3dTransform2d_Rotate(&transform, 90), zOK);
    const zPoint64f turned = Applied(transform, {2, 0});
    EXPECT_EQ(turned.x, 0);
    EXPECT_EQ(turned.y, 2);
}

TEST(Plane_transform, acts_in_the_order_of_its_operations)
{
    zM3dTransform2d moveFirst = Identity();
    ASSERT_EQ(zM3dTransform2d_Translate(&moveFirst, 1, 0), zOK);
    ASSERT_EQ(zM3dTransform2d_Rotate(&moveFirst, 90), zOK);
    EXPECT_EQ(Applied(moveFirst, {2, 5}).x, -5);
    EXPECT_EQ(Applied(moveFirst, {2, 5}).y, 3);

    zM3dTransform2d turnFirst = Identity();
    ASSERT_EQ(zM3dTransform2d_Rotate(&turnFirst, 90), zOK);
    ASSERT_EQ(zM3dTransform2d_Translate(&turnFirst, 1, 0), zOK);
    EXPECT_EQ(Applied(turnFirst, {2, 5}).x, -4);
    EXPECT_EQ(Applied(turnFirst, {2, 5}).y, 2);
}

TEST(Plane_transform, of_a_turned_region_lays_it_along_the_axes)
{
    // A region 4 by 2 around (10, 20), turned by 30 degrees: its corner goes to (2, 1).
    zM3dTransform2d transform = Identity();
    ASSERT_EQ(zM3dTransform2d_Translate(&transform, -10, -20), zOK);
    ASSERT_EQ(zM3dTransform2d_Rotate(&transform, -30), zOK);
    const zPoint64f offCentre = TurnedBy(30, {2, 1});
    const zPoint64f corner = Applied(transform, {10 + offCentre.x, 20 + offCentre.y});
    EXPECT_NEAR(corner.x, 2, 1e-14);
    EXPECT_NEAR(corner.y, 1, 1e-14);
}

TEST(Plane_transform, of_any_operations_moves_as_one_after_the_other_does)
{
    constexpr unsigned seed = 73;
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> value(-400, 400);
    std::uniform_int_distribution<int> coin(0, 1);
    for (int i = 0; i < 5000; ++i)
    {
        zM3dTransform2d transform = Identity();
        const zPoint64f point{value(random), value(random)};
        zPoint64f expected = point;
        for (int step = 0; step < 6; ++step)
        {
            const double a = value(random);
            const double b = value(random);
            const bool turns = coin(random) == 1;
            ASSERT_EQ(turns ? zM3dTransform2d_Rotate(&transform, a) : zM3dTransform2d_Translate(&transform, a, b), zOK);
            expected = turns ? TurnedBy(a, expected) : zPoint64f{expected.x + a, expected.y + b};
        }
        const zPoint64f moved = Applied(transform, point);
        ASSERT_NEAR(moved.x, expected.x, 1e-10) << "case " << i << ", seed " << seed;
        ASSERT_NEAR(moved.y, expected.y, 1e-10) << "case " << i << ", seed " << seed;
    }
}

TEST(Plane_transform, sums_from_left_to_right)
{
    // Any other order of the sums, or a fused product, would keep the 1.
    const zM3dTransform2d transform{1, 1, -1e17, 1, 1, 1};
    const zPoint64f moved = Applied(transform, {1e17, 1});
    EXPECT_EQ(moved.x, 0);
    EXPECT_EQ(moved.y, 1e17);
}

TEST(Plane_transform, applies_in_place)
{
    const zM3dTransform2d transform{1, 2, 3, 4, 5, 6};
    zPoint64f point{10, 100};
    ASSERT_EQ(zM3dTransform2d_Apply(&transform, &point, &point), zOK);
    EXPECT_EQ(point.x, 10 + 200 + 3);
    EXPECT_EQ(point.y, 40 + 500 + 6);
}

TEST(Plane_transform, takes_null_for_a_number)
{
    zM3dTransform2d transform = Identity();
    ASSERT_EQ(zM3dTransform2d_Rotate(&transform, -30), zOK);
    EXPECT_LT(Applied(transform, {0, zNULL_64F}).y, -1e308);
}

TEST(Plane_transform, operations_refuse_what_is_missing)
{
    const zM3dTransform2d transform = Identity();
    const zPoint64f point{1, 2};
    zPoint64f result{7, 8};
    EXPECT_EQ(zM3dTransform2d_Identity(nullptr), zERROR_MISSING);
    EXPECT_EQ(zM3dTransform2d_Translate(nullptr, 1, 2), zERROR_MISSING);
    EXPECT_EQ(zM3dTransform2d_Rotate(nullptr, 1), zERROR_MISSING);
    EXPECT_EQ(zM3dTransform2d_Apply(nullptr, &point, &result), zERROR_MISSING);
    EXPECT_EQ(zM3dTransform2d_Apply(&transform, nullptr, &result), zERROR_MISSING);
    EXPECT_EQ(zM3dTransform2d_Apply(&transform, &point, nullptr), zERROR_MISSING);
    EXPECT_EQ(result.x, 7);
    EXPECT_EQ(result.y, 8);
}

zStatus EveryOperation()
{
    zM3dTransform2d transform{};
    const zPoint64f point{1, 2};
    zPoint64f result{};
    zTRY(zM3dTransform2d_Identity(&transform));
    zTRY(zM3dTransform2d_Translate(&transform, 1, 2));
    zTRY(zM3dTransform2d_Rotate(&transform, 3));
    return zM3dTransform2d_Apply(&transform, &point, &result);
}

TEST(Plane_transform, operations_can_be_made_to_fail)
{
    EXPECT_EQ(Support::WalkFaults(-4321, EveryOperation), 4U);
}
} // namespace
