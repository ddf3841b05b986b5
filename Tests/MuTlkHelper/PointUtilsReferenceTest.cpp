#include "PointTestTools.h"

#include <MuTlkHelper/PointUtils.h>
#include <MuTlkHelper/TlkSurfaceGeneralized3dPoint.h>

// The conversions of points beside a plain reading of their rules, over random input, bit by bit.

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using SurfacePoint = TlkSurfaceGeneralized3dPoint;

constexpr int CASES = 20000;

std::vector<zPoint3d64f> RandomPoints(OddRandom& random, std::size_t longest)
{
    std::vector<zPoint3d64f> points(random.Below(longest + 1));
    for (zPoint3d64f& point : points)
    {
        point = random.Point(12);
    }
    return points;
}

TEST(Points_in_2D, agree_with_their_rule_bit_by_bit)
{
    constexpr unsigned SEED = 361;
    OddRandom random(SEED);
    std::size_t nulls = 0;
    std::size_t all = 0;
    for (int i = 0; i < CASES; ++i)
    {
        const std::vector<zPoint3d64f> points = RandomPoints(random, 20);
        std::vector<zPoint64f> kept;
        std::vector<zPoint64f> flipped;
        std::vector<zPoint64f> valid;
        for (const zPoint3d64f& p : points)
        {
            kept.push_back({p.x, p.y});
            flipped.push_back({p.y, p.x});
            if (!IsNull(p))
            {
                valid.push_back({p.x, p.y});
            }
        }
        const Ta::Object<void*> list = PointList(points);
        const zType flat = zTypeOf(zPoint64f);
        ASSERT_EQ(Bits(Items<zPoint64f>(Convert3dPoints64To2dPoints64(list.Get()).Get(), flat)), Bits(kept))
            << CaseText(i, SEED);
        ASSERT_EQ(Bits(Items<zPoint64f>(Convert3dPoints64To2dPoints64Flip(list.Get()).Get(), flat)), Bits(flipped))
            << CaseText(i, SEED);
        ASSERT_EQ(Bits(Items<zPoint64f>(Convert3dPoints64To2dPoints64RemoveNull(list.Get()).Get(), flat)), Bits(valid))
            << CaseText(i, SEED);
        nulls += points.size() - valid.size();
        all += points.size();
    }
    EXPECT_GT(nulls, all / 50);
    EXPECT_LT(nulls, all / 2);
}

TEST(Single_points, agree_with_their_rules_bit_by_bit)
{
    constexpr unsigned SEED = 362;
    OddRandom random(SEED);
    int nulls = 0;
    int infinite = 0;
    for (int i = 0; i < CASES; ++i)
    {
        const zPoint3d64f p = random.Point(8);
        const bool isNull = p.x == NULL_VALUE || p.y == NULL_VALUE;
        ASSERT_EQ(Bits(Convert2dPoint64to3dPoint64({p.x, p.y})), Bits(isNull ? NULL_POINT : zPoint3d64f{p.x, 0.0, p.y}))
            << CaseText(i, SEED);
        const zPoint3d32f narrow = Convert3dPoint64to3dPoint32(p);
        ASSERT_EQ(Bits(narrow), (BitsOf(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z))))
            << CaseText(i, SEED);
        nulls += isNull ? 1 : 0;
        infinite += std::isinf(narrow.x) && std::isfinite(p.x) ? 1 : 0;
    }
    EXPECT_GT(nulls, CASES / 50);
    EXPECT_GT(infinite, CASES / 50);
}

// As the rule has it: the stride, then the walk.
template <typename Point, typename Item, typename Convert>
std::vector<Point> NaiveThinned(const std::vector<Item>& items, std::size_t maximum, const Convert& convert)
{
    std::size_t stride = 1;
    if (items.size() > maximum)
    {
        stride = items.size() / maximum;
    }
    std::vector<Point> result;
    for (std::size_t i = 0; i < items.size(); i = i + stride)
    {
        convert(items[i], result);
    }
    return result;
}

TEST(Surface_points, agree_with_their_rule_bit_by_bit)
{
    constexpr unsigned SEED = 363;
    OddRandom random(SEED);
    int thinned = 0;
    int beyondMaximum = 0;
    int withNulls = 0;
    for (int i = 0; i < CASES; ++i)
    {
        std::vector<SurfacePoint> points;
        for (const zPoint3d64f& p : RandomPoints(random, 40))
        {
            points.push_back({p.x, p.y, p.z, 1, 2, 3, 4});
        }
        const auto maximum = static_cast<unsigned>(random.Below(30) + 1);
        const auto expected64 = NaiveThinned<zPoint3d64f>(points, maximum, [](const SurfacePoint& p, auto& result) {
            result.push_back({p.x, p.y, p.z});
        });
        const auto expected32 = NaiveThinned<zPoint3d32f>(points, maximum, [](const SurfacePoint& p, auto& result) {
            result.push_back({static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)});
        });
        const Ta::Object<void*> list = List(zBytes_GetType(40), points);
        void* out64 = nullptr;
        void* out32 = nullptr;
        ConvertSurfaceGeneralized3dPointsToPoints64f(list.Get(), maximum, &out64);
        ConvertSurfaceGeneralized3dPointsToPoints32f(list.Get(), maximum, &out32);
        const Ta::Object<void*> points64(out64);
        const Ta::Object<void*> points32(out32);
        ASSERT_EQ(Bits(Items<zPoint3d64f>(out64, zTypeOf(zPoint3d64f))), Bits(expected64)) << CaseText(i, SEED);
        ASSERT_EQ(Bits(Items<zPoint3d32f>(out32, zTypeOf(zPoint3d32f))), Bits(expected32)) << CaseText(i, SEED);
        thinned += expected64.size() < points.size() ? 1 : 0;
        beyondMaximum += expected64.size() > maximum ? 1 : 0;
        withNulls += std::any_of(expected64.begin(), expected64.end(), IsNull) ? 1 : 0;
    }
    EXPECT_GT(thinned, CASES / 4);
    EXPECT_GT(beyondMaximum, CASES / 10);
    EXPECT_GT(withNulls, CASES / 10);
}

TEST(Points_in_32_bits, agree_with_their_rule_bit_by_bit)
{
    constexpr unsigned SEED = 364;
    OddRandom random(SEED);
    int thinned = 0;
    std::size_t nulls = 0;
    for (int i = 0; i < CASES; ++i)
    {
        // Long lists take long: one in a thousand.
        std::vector<zPoint3d64f> points = RandomPoints(random, i % 1000 == 0 ? 50000 : 20);
        points.push_back(random.Point(12));
        const auto expected = NaiveThinned<zPoint3d32f>(points, 10000, [&nulls](const zPoint3d64f& p, auto& result) {
            if (IsNull(p))
            {
                ++nulls;
                return;
            }
            result.push_back({static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)});
        });
        const Ta::Object<void*> narrow = ConvertPoints64ToPoints32(PointList(points).Get());
        ASSERT_EQ(Bits(Items<zPoint3d32f>(narrow.Get(), zTypeOf(zPoint3d32f))), Bits(expected)) << CaseText(i, SEED);
        thinned += points.size() >= 20000 ? 1 : 0;
    }
    EXPECT_GT(thinned, 5);
    EXPECT_GT(nulls, static_cast<std::size_t>(CASES / 10));
}

TEST(Mean_points, agree_with_their_rule_bit_by_bit)
{
    constexpr unsigned SEED = 365;
    OddRandom random(SEED);
    int ordinary = 0;
    int empty = 0;
    for (int i = 0; i < CASES; ++i)
    {
        std::vector<zPoint3d64f> points(random.Below(12));
        for (zPoint3d64f& point : points)
        {
            point = random.Point(60);
        }
        double x = 0;
        double y = 0;
        double z = 0;
        for (const zPoint3d64f& p : points)
        {
            x += p.x;
            y += p.y;
            z += p.z;
        }
        const auto count = static_cast<double>(points.size());
        const zPoint3d64f expected =
            points.empty() ? zPoint3d64f{0, 0, 0} : zPoint3d64f{x / count, y / count, z / count};
        zPoint3d64f mean{1, 1, 1};
        AveragePoint3d64f(PointList(points).Get(), &mean);
        ASSERT_EQ(Bits(mean), Bits(expected)) << CaseText(i, SEED);
        empty += points.empty() ? 1 : 0;
        ordinary += std::isfinite(x) && std::isfinite(y) && std::isfinite(z) ? 1 : 0;
    }
    EXPECT_GT(empty, CASES / 50);
    EXPECT_GT(ordinary, CASES / 2);
    EXPECT_LT(ordinary, CASES);
}

int NaiveSorted(const std::vector<zPoint16s>& points, int order)
{
    std::vector<int> values;
    for (const zPoint16s& p : points)
    {
        if (p.x != -32768 && p.y != -32768)
        {
            values.push_back(order < 2 ? p.x : p.y);
        }
    }
    for (std::size_t i = 1; i < values.size(); ++i)
    {
        const bool falls = values[i] < values[i - 1];
        const bool rises = values[i] > values[i - 1];
        if ((order == 0 || order == 2) ? falls : rises)
        {
            return 0;
        }
    }
    return 1;
}

// A line that mostly runs one way, with nulls, equal neighbours, and now and then a step back.
std::vector<zPoint16s> RandomLine(OddRandom& random)
{
    std::vector<zPoint16s> line(random.Below(12));
    int x = static_cast<int>(random.Below(100)) - 50;
    int y = static_cast<int>(random.Below(100)) - 50;
    const int stepX = random.Chance(0.5) ? 1 : -1;
    const int stepY = random.Chance(0.5) ? 1 : -1;
    for (zPoint16s& p : line)
    {
        x += (random.Chance(0.05) ? -stepX : stepX) * static_cast<int>(random.Below(3));
        y += (random.Chance(0.05) ? -stepY : stepY) * static_cast<int>(random.Below(3));
        p = {static_cast<z16s>(random.Chance(0.1) ? -32768 : x), static_cast<z16s>(random.Chance(0.1) ? -32768 : y)};
    }
    return line;
}

TEST(Pixel_lines, agree_with_their_rule)
{
    constexpr unsigned SEED = 366;
    OddRandom random(SEED);
    std::array<int, 4> sorted{};
    for (int i = 0; i < CASES; ++i)
    {
        const std::vector<zPoint16s> line = RandomLine(random);
        for (int order = 0; order < 4; ++order)
        {
            const int expected = NaiveSorted(line, order);
            ASSERT_EQ(IsSortedPoints(line.data(), line.size(), static_cast<THL_POINT_SORTED_TYPE>(order)), expected)
                << CaseText(i, SEED) << ", order " << order;
            sorted.at(static_cast<std::size_t>(order)) += expected;
        }
    }
    for (const int count : sorted)
    {
        EXPECT_GT(count, CASES / 5);
        EXPECT_LT(count, CASES * 4 / 5);
    }
}
} // namespace
