#include <Support/FaultWalk.h>

#include <zVision/zM3dTransform3d.h>

#include <gtest/gtest.h>
#include <random>

namespace
{
constexpr zM3dTransform3d ROWS{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};

TEST(Space_transform, applies_its_rows)
{
    const zPoint3d64f point{1, 10, 100};
    zPoint3d64f result{};
    ASSERT_EQ(zM3dTransform3d_Apply(&ROWS, &point, &result), zOK);
    EXPECT_EQ(result.x, 1 + 20 + 300 + 4);
    EXPECT_EQ(result.y, 5 + 60 + 700 + 8);
    EXPECT_EQ(result.z, 9 + 100 + 1100 + 12);
}

TEST(Space_transform, applies_in_place)
{
    zPoint3d64f point{1, 0, 0};
    ASSERT_EQ(zM3dTransform3d_Apply(&ROWS, &point, &point), zOK);
    EXPECT_EQ(point.x, 5);
    EXPECT_EQ(point.y, 13);
    EXPECT_EQ(point.z, 21);
}

TEST(Space_transform, sums_products_from_left_to_right_and_the_translation_last)
{
    constexpr unsigned seed = 74;
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> value(-1000, 1000);
    const auto next = [&] { return value(random); };
    for (int i = 0; i < 5000; ++i)
    {
        const zM3dTransform3d t{next(), next(), next(), next(), next(), next(),
                                next(), next(), next(), next(), next(), next()};
        const zPoint3d64f p{next(), next(), next()};
        zPoint3d64f result{};
        ASSERT_EQ(zM3dTransform3d_Apply(&t, &p, &result), zOK);
        ASSERT_EQ(result.x, ((t.xx * p.x + t.xy * p.y) + t.xz * p.z) + t.xt) << "case " << i << ", seed " << seed;
        ASSERT_EQ(result.y, ((t.yx * p.x + t.yy * p.y) + t.yz * p.z) + t.yt) << "case " << i << ", seed " << seed;
        ASSERT_EQ(result.z, ((t.zx * p.x + t.zy * p.y) + t.zz * p.z) + t.zt) << "case " << i << ", seed " << seed;
    }
}

TEST(Space_transform, refuses_what_is_missing)
{
    const zPoint3d64f point{1, 2, 3};
    zPoint3d64f result{};
    EXPECT_EQ(zM3dTransform3d_Apply(nullptr, &point, &result), zERROR_MISSING);
    EXPECT_EQ(zM3dTransform3d_Apply(&ROWS, nullptr, &result), zERROR_MISSING);
    EXPECT_EQ(zM3dTransform3d_Apply(&ROWS, &point, nullptr), zERROR_MISSING);
}

TEST(Space_transform, can_be_made_to_fail)
{
    const auto run = [] {
        zPoint3d64f point{1, 2, 3};
        return zM3dTransform3d_Apply(&ROWS, &point, &point);
    };
    EXPECT_EQ(Support::WalkFaults(-4321, run), 1U);
}
} // namespace
