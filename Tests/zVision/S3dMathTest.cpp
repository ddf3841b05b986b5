#include <Support/FaultWalk.h>

#include <zVision/zS3dMath.h>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace
{
constexpr double INFINITE = std::numeric_limits<double>::infinity();

double Length(const zPoint3d64f& v)
{
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

TEST(Normalising, gives_length_one_in_the_same_direction)
{
    struct Case
    {
        const char* name;
        zPoint3d64f vector, expected;
    };
    constexpr double third = 0.57735026918962576;
    constexpr double tiny = std::numeric_limits<double>::denorm_min();
    constexpr double huge = std::numeric_limits<double>::max();
    for (const Case& c : {
             Case{"3-4-5", {3, 0, -4}, {0.6, 0, -0.8}},
             Case{"along an axis", {0, 0, 2}, {0, 0, 1}},
             Case{"against an axis", {0, -1e-5, 0}, {0, -1, 0}},
             Case{"the longest", {huge, huge, huge}, {third, third, third}},
             Case{"nulls", {-huge, -huge, -huge}, {-third, -third, -third}},
             Case{"the shortest", {tiny, tiny, tiny}, {third, third, third}},
             Case{"the shortest along an axis", {0, tiny, 0}, {0, 1, 0}},
             Case{"squares that overflow", {3e200, 4e200, 0}, {0.6, 0.8, 0}},
             Case{"squares that underflow", {3e-200, 0, 4e-200}, {0.6, 0, 0.8}},
             Case{"lengths far apart", {1e300, 1e-300, 0}, {1, 0, 0}},
         })
    {
        zPoint3d64f vector = c.vector;
        EXPECT_EQ(zS3dMath_Normalize64f(&vector), zOK) << c.name;
        EXPECT_NEAR(vector.x, c.expected.x, 2e-16) << c.name;
        EXPECT_NEAR(vector.y, c.expected.y, 2e-16) << c.name;
        EXPECT_NEAR(vector.z, c.expected.z, 2e-16) << c.name;
    }
}

TEST(Normalising, agrees_with_dividing_by_the_length)
{
    constexpr unsigned seed = 72;
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> coordinate(-1000, 1000);
    for (int i = 0; i < 20000; ++i)
    {
        const zPoint3d64f v{coordinate(random), coordinate(random), coordinate(random)};
        zPoint3d64f unit = v;
        ASSERT_EQ(zS3dMath_Normalize64f(&unit), zOK);
        ASSERT_EQ(unit.x, v.x / Length(v)) << "case " << i << ", seed " << seed;
        ASSERT_EQ(unit.y, v.y / Length(v)) << "case " << i << ", seed " << seed;
        ASSERT_EQ(unit.z, v.z / Length(v)) << "case " << i << ", seed " << seed;
    }
}

TEST(Normalising, leaves_a_vector_of_length_zero)
{
    zPoint3d64f vector{0, 0, 0};
    EXPECT_EQ(zS3dMath_Normalize64f(&vector), zOK);
    EXPECT_EQ(vector.x, 0);
    EXPECT_EQ(vector.y, 0);
    EXPECT_EQ(vector.z, 0);
}

TEST(Normalising, refuses_what_is_not_finite_and_leaves_it)
{
    for (const double bad : {INFINITE, -INFINITE, std::nan("")})
    {
        for (const zPoint3d64f& v : {zPoint3d64f{bad, 1, 2}, zPoint3d64f{1, bad, 2}, zPoint3d64f{1, 2, bad}})
        {
            zPoint3d64f vector = v;
            EXPECT_EQ(zS3dMath_Normalize64f(&vector), zERROR_PARAMETER);
            const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
            EXPECT_TRUE(same(vector.x, v.x) && same(vector.y, v.y) && same(vector.z, v.z));
        }
    }
}

TEST(Normalising, refuses_a_missing_vector)
{
    EXPECT_EQ(zS3dMath_Normalize64f(nullptr), zERROR_MISSING);
}

TEST(Normalising, can_be_made_to_fail)
{
    const auto run = [] {
        zPoint3d64f vector{0, 0, 2};
        return zS3dMath_Normalize64f(&vector);
    };
    EXPECT_EQ(Support::WalkFaults(-4321, run), 1U);
}
} // namespace
