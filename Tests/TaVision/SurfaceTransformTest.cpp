#include <Support/MessageChecks.h>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <random>

using namespace Support;

namespace
{
zPoint64f TiltOf(const zPoint3d64f& normal)
{
    zPoint64f tilt = {zNULL_64F, zNULL_64F};
    EXPECT_EQ(TvSurfaceTransform_NormalToTilt(&normal, &tilt), zOK);
    return tilt;
}

zPoint3d64f NormalOf(const zPoint64f& tilt)
{
    zPoint3d64f normal = {zNULL_64F, zNULL_64F, zNULL_64F};
    EXPECT_EQ(TvSurfaceTransform_TiltToNormal(&tilt, &normal), zOK);
    return normal;
}

struct Case
{
    const char* name;
    zPoint3d64f normal; ///< of length 1
    zPoint64f tilt;
};

void PrintTo(const Case& testCase, std::ostream* out)
{
    *out << testCase.name;
}

class Tilt : public testing::TestWithParam<Case>
{
};

constexpr double DIAGONAL = 0.70710678118654752; // half the root of 2
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double ENDLESS = std::numeric_limits<double>::infinity();
constexpr double HUGE_LENGTH = 1e300;
constexpr double TINY_LENGTH = 1e-300;
} // namespace

TEST_P(Tilt, Is_lean_and_direction_of_the_normal)
{
    for (const double length : {1.0, 250.0, HUGE_LENGTH, TINY_LENGTH})
    {
        const zPoint3d64f& n = GetParam().normal;
        const zPoint64f tilt = TiltOf({n.x * length, n.y * length, n.z * length});
        EXPECT_NEAR(tilt.x, GetParam().tilt.x, 1e-12) << length;
        EXPECT_NEAR(tilt.y, GetParam().tilt.y, 1e-12) << length;
    }
}

TEST_P(Tilt, Gives_the_normal_back)
{
    const zPoint3d64f normal = NormalOf(GetParam().tilt);
    EXPECT_NEAR(normal.x, GetParam().normal.x, 1e-15);
    EXPECT_NEAR(normal.y, GetParam().normal.y, 1e-15);
    EXPECT_NEAR(normal.z, GetParam().normal.z, 1e-15);
}

INSTANTIATE_TEST_SUITE_P(, Tilt,
                         testing::Values(Case{"up", {0, 0, 1}, {0, 0}}, Case{"down", {0, 0, -1}, {180, 0}},
                                         Case{"along_x", {1, 0, 0}, {90, 0}}, Case{"against_x", {-1, 0, 0}, {90, 180}},
                                         Case{"along_y", {0, 1, 0}, {90, 90}}, Case{"against_y", {0, -1, 0}, {90, -90}},
                                         Case{"between_x_and_z", {DIAGONAL, 0, DIAGONAL}, {45, 0}},
                                         Case{"between_y_and_down", {0, DIAGONAL, -DIAGONAL}, {135, 90}},
                                         Case{"between_back_and_left", {-DIAGONAL, -DIAGONAL, 0}, {90, -135}}),
                         CaseName());

TEST(SurfaceTransform, Vector_without_length_counts_as_level)
{
    const zPoint64f tilt = TiltOf({0, 0, 0});
    EXPECT_EQ(tilt.x, 0);
    EXPECT_EQ(tilt.y, 0);
}

TEST(SurfaceTransform, Sign_of_a_zero_does_not_matter)
{
    EXPECT_EQ(TiltOf({-1, -0.0, 0}).y, 180);
    EXPECT_EQ(TiltOf({-0.0, -0.0, 1}).y, 0);
    EXPECT_EQ(TiltOf({-0.0, 0.0, -1}).y, 0);
    EXPECT_EQ(TiltOf({-0.0, -0.0, -0.0}).x, 0);
}

TEST(SurfaceTransform, Angles_beyond_their_ranges_go_round)
{
    EXPECT_EQ(Fields(NormalOf({450, 0})), (std::vector<double>{1, 0, 0}));
    EXPECT_EQ(Fields(NormalOf({90, 270})), (std::vector<double>{0, -1, 0}));
    EXPECT_EQ(Fields(NormalOf({-90, 180})), (std::vector<double>{1, 0, 0}));
}

TEST(SurfaceTransform, Normal_comes_back_from_its_tilt)
{
    constexpr unsigned SEED = 20;
    std::mt19937 random(SEED);
    std::normal_distribution<double> coordinate;
    for (int i = 0; i < 10'000; ++i)
    {
        zPoint3d64f n = {coordinate(random), coordinate(random), coordinate(random)};
        const double length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
        const zPoint64f tilt = TiltOf(n);
        const zPoint3d64f back = NormalOf(tilt);
        ASSERT_GE(tilt.x, 0);
        ASSERT_LE(tilt.x, 180);
        ASSERT_GT(tilt.y, -180);
        ASSERT_LE(tilt.y, 180);
        ASSERT_NEAR(back.x, n.x / length, 1e-14) << "seed " << SEED << ", normal " << i;
        ASSERT_NEAR(back.y, n.y / length, 1e-14) << "seed " << SEED << ", normal " << i;
        ASSERT_NEAR(back.z, n.z / length, 1e-14) << "seed " << SEED << ", normal " << i;
    }
}

TEST(SurfaceTransform, Values_without_meaning_are_refused_and_change_nothing)
{
    for (const double bad : {NOT_A_NUMBER, ENDLESS, -ENDLESS, zNULL_64F})
    {
        zPoint64f tilt = {7, 8};
        zPoint3d64f normal = {7, 8, 9};
        for (const zPoint3d64f& n : {zPoint3d64f{bad, 0, 1}, {0, bad, 1}, {0, 1, bad}})
        {
            EXPECT_EQ(TvSurfaceTransform_NormalToTilt(&n, &tilt), zERROR_PARAMETER);
        }
        for (const zPoint64f& t : {zPoint64f{bad, 0}, {0, bad}})
        {
            EXPECT_EQ(TvSurfaceTransform_TiltToNormal(&t, &normal), zERROR_PARAMETER);
        }
        EXPECT_EQ(tilt.x, 7);
        EXPECT_EQ(tilt.y, 8);
        EXPECT_EQ(Fields(normal), (std::vector<double>{7, 8, 9}));
    }
}

TEST(SurfaceTransform, Null_pointers_are_refused)
{
    zPoint64f tilt = {7, 8};
    zPoint3d64f normal = {7, 8, 9};
    EXPECT_EQ(TvSurfaceTransform_NormalToTilt(nullptr, &tilt), zERROR_MISSING);
    EXPECT_EQ(TvSurfaceTransform_NormalToTilt(&normal, nullptr), zERROR_MISSING);
    EXPECT_EQ(TvSurfaceTransform_TiltToNormal(nullptr, &normal), zERROR_MISSING);
    EXPECT_EQ(TvSurfaceTransform_TiltToNormal(&tilt, nullptr), zERROR_MISSING);
}

TEST(SurfaceTransform, Failing_calls_change_nothing)
{
    zPoint64f tilt = {7, 8};
    zPoint3d64f normal = {7, 8, 9};
    {
        const ArmedFault fault(1, -66);
        EXPECT_EQ(TvSurfaceTransform_NormalToTilt(&normal, &tilt), -66);
    }
    {
        const ArmedFault fault(1, -66);
        EXPECT_EQ(TvSurfaceTransform_TiltToNormal(&tilt, &normal), -66);
    }
    EXPECT_EQ(tilt.x, 7);
    EXPECT_EQ(normal.x, 7);
}
