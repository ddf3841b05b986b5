#include "PointTestTools.h"

#include <MuTlkHelper/FeatureUtils.h>

#include <Support/Builders.h>
#include <zVision/zS3dMath.h>

// The geometry beside a plain reading of its rules, over random input, bit by bit.

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using Mu::Vision::PlaneParams;

constexpr int CASES = 40000;

bool IsFinite(const zPoint3d64f& p)
{
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

struct LineCounts
{
    int solved = 0;
    int guarded = 0;
    int notFinite = 0;
};

zPoint3d64f NaiveSolveForX(const zLine3d64f& line, double x)
{
    zPoint3d64f result = NULL_POINT;
    if (std::fabs(line.direction.x) > 0x1p-23)
    {
        const double t = (x - line.point.x) / line.direction.x;
        result.x = x;
        result.y = line.point.y + t * line.direction.y;
        result.z = line.point.z + t * line.direction.z;
    }
    return result;
}

zPoint3d64f NaiveSolveForY(const zLine3d64f& line, double y)
{
    zPoint3d64f result = NULL_POINT;
    if (std::fabs(line.direction.x) > 0x1p-23)
    {
        const double t = (y - line.point.y) / line.direction.y;
        result.x = line.point.x + t * line.direction.x;
        result.y = y;
        result.z = line.point.z + t * line.direction.z;
    }
    return result;
}

TEST(Solved_lines, agree_with_their_rule_bit_by_bit)
{
    constexpr unsigned SEED = 351;
    OddRandom random(SEED);
    LineCounts counts;
    for (int i = 0; i < CASES; ++i)
    {
        const zPoint3d64f point = random.Point(30);
        const zLine3d64f line{point, random.Chance(0.1) ? zPoint3d64f{1e-7, random.Number(4), 1} : random.Point(12)};
        const double at = random.Number(30);
        const zPoint3d64f forX = LineSolveForX(line, at);
        const zPoint3d64f forY = LineSolveForY(line, at);
        ASSERT_EQ(Bits(forX), Bits(NaiveSolveForX(line, at))) << CaseText(i, SEED);
        ASSERT_EQ(Bits(forY), Bits(NaiveSolveForY(line, at))) << CaseText(i, SEED);
        const bool guarded = IsNull(forX) && IsNull(forY);
        counts.guarded += guarded ? 1 : 0;
        counts.solved += !guarded && IsFinite(forX) && IsFinite(forY) ? 1 : 0;
        counts.notFinite += !IsFinite(forX) || !IsFinite(forY) ? 1 : 0;
    }
    EXPECT_GT(counts.solved, CASES / 2);
    EXPECT_GT(counts.guarded, CASES / 20);
    EXPECT_GT(counts.notFinite, CASES / 20);
}

zPoint3d64f NaiveCrossing(const zPoint3d64f& n, double s)
{
    zPoint3d64f point = NULL_POINT;
    if (n.z != 0.0)
    {
        point = {0.0, 0.0, s / n.z};
    }
    else if (n.y != 0.0)
    {
        point = {0.0, s / n.y, 0.0};
    }
    else if (n.x != 0.0)
    {
        point = {s / n.x, 0.0, 0.0};
    }
    return point;
}

// Normals with zeros in them, so that every axis has its turn; some are not to be used.
zPoint3d64f RandomNormal(OddRandom& random)
{
    const auto component = [&random] { return random.Chance(0.4) ? 0.0 : random.Number(40); };
    const double x = component();
    const double y = component();
    return {x, y, component()};
}

struct PlaneCounts
{
    int axis[3] = {0, 0, 0};
    int null = 0;
    int raised = 0;

    void Count(const zPlane3d64f& plane)
    {
        null += IsNull(plane.point) || IsNull(plane.normal) ? 1 : 0;
        ++axis[plane.normal.z != 0.0 ? 2 : plane.normal.y != 0.0 ? 1 : 0];
    }

    void ExpectAll() const
    {
        EXPECT_GT(axis[0], CASES / 20);
        EXPECT_GT(axis[1], CASES / 20);
        EXPECT_GT(axis[2], CASES / 20);
        EXPECT_GT(null, CASES / 20);
        EXPECT_GT(raised, CASES / 200);
    }
};

// What `make` gives or raises, beside what it must.
template <typename Make>
void ExpectPlane(const Make& make, bool raises, const zPlane3d64f& expected, PlaneCounts& counts)
{
    zPlane3d64f plane{};
    const auto failure = FailureOf([&] { plane = make(); });
    ASSERT_EQ(failure.has_value(), raises);
    if (failure)
    {
        ++counts.raised;
        return;
    }
    ASSERT_EQ(Bits(plane), Bits(expected));
    counts.Count(plane);
}

TEST(Planes_from_params, agree_with_their_rule_bit_by_bit)
{
    constexpr unsigned SEED = 352;
    OddRandom random(SEED);
    PlaneCounts counts;
    for (int i = 0; i < CASES; ++i)
    {
        SCOPED_TRACE(CaseText(i, SEED));
        const zPoint3d64f normal = RandomNormal(random);
        const double d = random.Number(20);
        const bool isNull = IsNull(normal) || d == NULL_VALUE;
        zPlane3d64f expected{NULL_POINT, NULL_POINT};
        if (!isNull && (normal.x != 0.0 || normal.y != 0.0 || normal.z != 0.0))
        {
            expected = {NaiveCrossing(normal, -d), normal};
        }
        ASSERT_NO_FATAL_FAILURE(ExpectPlane(
            [&] {
                return GetPlaneFromParams({normal.x, normal.y, normal.z, d});
            },
            !isNull && !IsFinite(normal), expected, counts));
    }
    counts.ExpectAll();
}

TEST(Planes_through_points, agree_with_their_rule_bit_by_bit)
{
    constexpr unsigned SEED = 353;
    OddRandom random(SEED);
    PlaneCounts counts;
    for (int i = 0; i < CASES; ++i)
    {
        SCOPED_TRACE(CaseText(i, SEED));
        const zPoint3d64f normal = RandomNormal(random);
        const zPoint3d64f point = random.Point(40);
        const bool isNull = IsNull(normal) || IsNull(point);
        zPlane3d64f expected{NULL_POINT, NULL_POINT};
        zPoint3d64f n = normal;
        if (!isNull && zS3dMath_Normalize64f(&n) == zOK)
        {
            expected = {NaiveCrossing(n, n.x * point.x + n.y * point.y + n.z * point.z), n};
        }
        ASSERT_NO_FATAL_FAILURE(ExpectPlane([&] { return GetPlaneFromNormalAndPoint(normal, point); },
                                            !isNull && !IsFinite(normal), expected, counts));
    }
    counts.ExpectAll();
}

// Where numbers are ordinary, both ways to a plane describe the same points.
TEST(Planes_through_points, hold_their_point)
{
    constexpr unsigned SEED = 354;
    OddRandom random(SEED);
    for (int i = 0; i < CASES; ++i)
    {
        const zPoint3d64f normal{random.Between(-1, 1), random.Between(-1, 1), random.Between(0.1, 1)};
        const zPoint3d64f point{random.Between(-50, 50), random.Between(-50, 50), random.Between(-50, 50)};
        const zPlane3d64f plane = GetPlaneFromNormalAndPoint(normal, point);
        const double away = plane.normal.x * (point.x - plane.point.x) + plane.normal.y * (point.y - plane.point.y) +
                            plane.normal.z * (point.z - plane.point.z);
        ASSERT_NEAR(away, 0.0, 1e-11) << CaseText(i, SEED);
    }
}

TEST(Features_of_messages, agree_with_their_rule_bit_by_bit)
{
    constexpr unsigned SEED = 355;
    OddRandom random(SEED);
    int valid = 0;
    int raised = 0;
    for (int i = 0; i < CASES / 2; ++i)
    {
        const zPoint3d64f a = random.Point(40);
        const zPoint3d64f b = RandomNormal(random);
        const double size = random.Number();
        const zLine3d64f line = GetLineFromFeatureMessage(LineFeature(a, b).Get());
        ASSERT_EQ(Bits(line), Bits(zLine3d64f{a, b})) << CaseText(i, SEED);
        ASSERT_EQ(IsValidLine(line), IsNull(a) || IsNull(b) ? 0 : 1) << CaseText(i, SEED);
        ASSERT_EQ(IsValidPlane({a, b}), IsNull(a) || IsNull(b) ? 0 : 1) << CaseText(i, SEED);
        valid += IsValidLine(line);
        const auto circle = GetCircleFromFeatureMessage(CircleFeature(a, b, size).Get());
        ASSERT_EQ(Bits(circle.center), Bits(a)) << CaseText(i, SEED);
        ASSERT_EQ(Bits(circle.normal), Bits(b)) << CaseText(i, SEED);
        ASSERT_EQ(Bits(circle.radius), Bits(size)) << CaseText(i, SEED);
        PlaneParams<double> plane;
        const auto failure = FailureOf([&] { plane = GetPlaneFromFeatureMessage(PlaneFeature(b, size).Get()); });
        ASSERT_EQ(failure.has_value(), !IsFinite(b)) << CaseText(i, SEED);
        raised += failure ? 1 : 0;
        if (!failure)
        {
            zPoint3d64f n = b;
            ASSERT_EQ(zS3dMath_Normalize64f(&n), zOK);
            ASSERT_EQ(BitsOf(plane.a, plane.b, plane.c, plane.d), BitsOf(n.x, n.y, n.z, -size)) << CaseText(i, SEED);
        }
    }
    EXPECT_GT(valid, CASES / 4);
    EXPECT_LT(valid, CASES / 2);
    EXPECT_GT(raised, CASES / 400);
}
} // namespace
