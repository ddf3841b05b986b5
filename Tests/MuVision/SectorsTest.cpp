#include <MuVision/Sectors.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <string>

namespace
{
using Mu::Vision::IsPointInAnnularSector;
using Mu::Vision::Point3d;
using Sector = Mu::Vision::AnnularSector3d<double>;

constexpr double NONE = -1.7976931348623157e308;
constexpr double INFINITE = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::nan("");

Sector Ring(double inner, double outer, double start = 0, double range = 360)
{
    return {inner, outer, start, range, {0, 0, 0}};
}

Point3d<double> At(double radius, double degrees)
{
    const double angle = degrees * std::acos(-1.0) / 180.0;
    return {radius * std::cos(angle), radius * std::sin(angle), 0};
}

struct Case
{
    const char* name;
    Sector sector;
    Point3d<double> point;
    int withBounds;
    int withoutBounds;
};

TEST(Annular_sector, holds_points_as_by_hand)
{
    const Case cases[] = {
        {"between the radii", Ring(1, 2), {1.5, 0, 0}, 1, 1},
        {"inside the inner radius", Ring(1, 2), {0.999999, 0, 0}, 0, 0},
        {"outside the outer radius", Ring(1, 2), {0, -2.000001, 0}, 0, 0},
        {"on the inner radius", Ring(1, 2), {0, 1, 0}, 1, 0},
        {"on the outer radius", Ring(1, 2), {-2, 0, 0}, 1, 0},
        {"on the outer radius by rounded numbers", Ring(0, 0.5), {3 * 0.1, 4 * 0.1, 0}, 1, 0},
        {"the height does not count", Ring(1, 2), {1.5, 0, 1e300}, 1, 1},
        {"a height that is null does not count", Ring(1, 2), {1.5, 0, NONE}, 1, 1},
        {"center of a disc", Ring(0, 2), {0, 0, 0}, 1, 1},
        {"center of a disc sector", Ring(0, 2, 30, 60), {0, 0, 0}, 1, 0},
        {"center of a ring", Ring(1, 2), {0, 0, 0}, 0, 0},
        {"a negative inner radius is no bound", Ring(-5, 2), {0, 0.1, 0}, 1, 1},
        {"a negative outer radius holds nothing", Ring(0, -2), {0, 0.1, 0}, 0, 0},
        {"radii the wrong way round hold nothing", Ring(2, 1), {1.5, 0, 0}, 0, 0},
        {"a circle line", Ring(2, 2), {0, 2, 0}, 1, 0},
        {"the first quarter is from x to y", Ring(1, 2, 0, 90), At(1.5, 45), 1, 1},
        {"and not the other way", Ring(1, 2, 0, 90), At(1.5, -45), 0, 0},
        {"on the start", Ring(1, 2, 0, 90), {1.5, 0, 0}, 1, 0},
        {"on the end", Ring(1, 2, 0, 90), {0, 1.5, 0}, 1, 0},
        {"on an odd start", Ring(1, 2, 37, 100), At(1.5, 37), 1, 0},
        {"on an odd end", Ring(1, 2, 37, 100), At(1.5, 137), 1, 0},
        {"a hair before the start", Ring(1, 2, 37, 100), At(1.5, 37 - 1e-6), 0, 0},
        {"a hair after the end", Ring(1, 2, 37, 100), At(1.5, 137 + 1e-6), 0, 0},
        {"a negative range goes back", Ring(1, 2, 30, -60), At(1.5, 0), 1, 1},
        {"a negative range leaves out what is ahead", Ring(1, 2, 30, -60), At(1.5, 60), 0, 0},
        {"on the start of a negative range", Ring(1, 2, 30, -60), At(1.5, 30), 1, 0},
        {"on the end of a negative range", Ring(1, 2, 30, -60), At(1.5, -30), 1, 0},
        {"across the back", Ring(1, 2, 170, 20), At(1.5, -175), 1, 1},
        {"beyond half a turn", Ring(1, 2, 0, 270), At(1.5, -100), 1, 1},
        {"in the gap of a large sector", Ring(1, 2, 0, 270), At(1.5, -80), 0, 0},
        {"start many turns on", Ring(1, 2, 3600 + 30, 20), At(1.5, 40), 1, 1},
        {"start many turns back", Ring(1, 2, -3600 + 30, 20), At(1.5, 40), 1, 1},
        {"full ring backwards", Ring(1, 2, 90, -360), At(1.5, 17), 1, 1},
        {"more than a full ring", Ring(1, 2, 90, 720), At(1.5, 90), 1, 1},
        {"no range is a ray", Ring(1, 2, 90, 0), {0, 1.5, 0}, 1, 0},
        {"beside the ray", Ring(1, 2, 90, 0), {0.001, 1.5, 0}, 0, 0},
    };
    for (const Case& c : cases)
    {
        EXPECT_EQ(IsPointInAnnularSector(c.sector, c.point, 1), c.withBounds) << c.name;
        EXPECT_EQ(IsPointInAnnularSector(c.sector, c.point, 0), c.withoutBounds) << c.name << ", without bounds";
    }
}

TEST(Annular_sector, holds_nothing_where_a_value_is_missing)
{
    const Point3d<double> point{1.5, 0, 0};
    const Sector sectors[] = {
        Sector(),
        {0, INFINITE, 0, 360, {NONE, 0, 0}},
        {0, INFINITE, 0, 360, {0, NONE, 0}},
        {NOT_A_NUMBER, 2, 0, 360, {0, 0, 0}},
        {1, NOT_A_NUMBER, 0, 360, {0, 0, 0}},
        {1, 2, NOT_A_NUMBER, 90, {0, 0, 0}},
        {1, 2, 0, NOT_A_NUMBER, {0, 0, 0}},
        {1, 2, 0, 360, {NOT_A_NUMBER, 0, 0}},
        {1, 2, INFINITE, 90, {0, 0, 0}},
    };
    for (const Sector& sector : sectors)
    {
        EXPECT_EQ(IsPointInAnnularSector(sector, point, 1), 0) << "sector " << (&sector - sectors);
    }
    EXPECT_EQ(IsPointInAnnularSector(Ring(0, INFINITE), {NONE, 0, 0}, 1), 0);
    EXPECT_EQ(IsPointInAnnularSector(Ring(0, INFINITE), {0, NOT_A_NUMBER, 0}, 1), 0);
    EXPECT_EQ(IsPointInAnnularSector(Ring(0, 1, NOT_A_NUMBER, 90), {0, 0, 0}, 1), 0);
    EXPECT_EQ(IsPointInAnnularSector(Ring(0, INFINITE), {1e150, -1e150, 0}, 1), 1);
}

// By the sides of the two rays on which a point lies; nothing where it is too close to a bound to tell.
std::optional<int> Reference(const Sector& sector, const Point3d<double>& point)
{
    constexpr long double close = 1e-7L;
    const long double x = static_cast<long double>(point.x) - static_cast<long double>(sector.center.x);
    const long double y = static_cast<long double>(point.y) - static_cast<long double>(sector.center.y);
    const long double radius = std::hypot(x, y);
    const long double low = std::fmin(sector.startAngle, sector.startAngle + sector.angleRange);
    const long double extent = std::fabs(sector.angleRange);
    const auto sideOf = [&](long double degrees) {
        const long double angle = degrees * std::acos(-1.0L) / 180.0L;
        return (std::cos(angle) * y - std::sin(angle) * x) / radius;
    };
    const long double leftOfFirst = sideOf(low);
    const long double leftOfLast = sideOf(low + extent);
    if (std::fabs(radius - static_cast<long double>(sector.innerRadius)) < close ||
        std::fabs(radius - static_cast<long double>(sector.outerRadius)) < close || std::fabs(leftOfFirst) < close ||
        std::fabs(leftOfLast) < close)
    {
        return std::nullopt;
    }
    const bool inRing =
        radius > static_cast<long double>(sector.innerRadius) && radius < static_cast<long double>(sector.outerRadius);
    const bool between = extent <= 180 ? leftOfFirst > 0 && leftOfLast < 0 : leftOfFirst > 0 || leftOfLast < 0;
    return inRing && (extent >= 360 || between) ? 1 : 0;
}

TEST(Annular_sector, agrees_with_the_sides_of_its_rays)
{
    constexpr unsigned seed = 111;
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> angle(-400, 400);
    std::uniform_real_distribution<double> place(-10, 10);
    std::uniform_real_distribution<double> radius(0, 8);
    int told = 0;
    int inside = 0;
    constexpr int cases = 50000;
    for (int i = 0; i < cases; ++i)
    {
        const Sector sector{radius(random) / 2, radius(random), angle(random), angle(random), {place(random), 1, 2}};
        const Point3d<double> point{place(random), place(random), place(random)};
        const std::optional<int> expected = Reference(sector, point);
        if (!expected)
        {
            continue;
        }
        ++told;
        inside += *expected;
        ASSERT_EQ(IsPointInAnnularSector(sector, point, 1), *expected) << "case " << i << ", seed " << seed;
        ASSERT_EQ(IsPointInAnnularSector(sector, point, 0), *expected) << "case " << i << ", seed " << seed;
    }
    EXPECT_GT(told, cases * 99 / 100);
    EXPECT_GT(inside, cases / 50);
}
} // namespace
