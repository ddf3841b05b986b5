#include <Host/PointCloud.h>

#include <Host/ScanFile.h>

#include "CloudTestFiles.h"
#include "ScanTestFiles.h"

#include <cmath>
#include <limits>
#include <map>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

constexpr std::int16_t nullHeight = HeightMap::nullHeight;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

PointCloud Cloud(std::size_t width, std::vector<Vector3> points)
{
    const std::size_t height = points.size() / width;
    return {"cloud.ply", width, height, std::move(points), {}, {}};
}

PointCloud List(std::vector<Vector3> points)
{
    const std::size_t count = points.size();
    return Cloud(count, std::move(points));
}

CloudOptions OnGrid(double x, double y)
{
    CloudOptions options;
    options.spacingMm = {x, y};
    return options;
}

HeightMap Grid(PointCloud cloud, const CloudOptions& options)
{
    return std::get<HeightMap>(MakeScan(std::move(cloud), options));
}

PointMap Surface(PointCloud cloud, const CloudOptions& options = {})
{
    return std::get<PointMap>(MakeScan(std::move(cloud), options));
}

/// Within half of a 65,534th of what the coordinates span.
void ExpectNear(const Vector3& place, const Vector3& expected, double span)
{
    const double most = span / 65534 / 2 * 1.001;
    EXPECT_NEAR(place.x, expected.x, most);
    EXPECT_NEAR(place.y, expected.y, most);
    EXPECT_NEAR(place.z, expected.z, most);
}

TEST(PointCloudTest, Organised_points_keep_their_rows_and_columns)
{
    const std::vector<Vector3> points{{0, 0, 5}, {1, 0.1, 6}, {2, -0.1, 7}, {0, 1, 8}, {1, 1, 9}, {2, 1, 10}};
    const PointMap map = Surface(Cloud(3, points));
    ASSERT_EQ(map.width, 3u);
    ASSERT_EQ(map.length, 2u);
    EXPECT_EQ(map.validCount, 6u);
    EXPECT_TRUE(map.intensity.empty());
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        ExpectNear(PlaceMm(map, i % 3, i / 3), points[i], 5);
    }
}

TEST(PointCloudTest, Each_axis_has_the_finest_steps_that_reach_its_ends)
{
    const PointMap map = Surface(Cloud(2, {{0, -3, 100}, {65534, -3, 100}, {1, 3.5534, 100}, {2, 0, 100}}));
    EXPECT_DOUBLE_EQ(map.scaleMm.x, 1);
    EXPECT_DOUBLE_EQ(map.scaleMm.y, 0.0001);
    EXPECT_EQ(map.points[0].x, -32767);
    EXPECT_EQ(map.points[1].x, 32767);
    EXPECT_EQ(map.points[2].x, -32766);
    // All of one height: kept exactly.
    EXPECT_EQ(map.offsetMm.z, 100);
    EXPECT_EQ(map.points[0].z, 0);
    EXPECT_GT(map.scaleMm.z, 0);
}

TEST(PointCloudTest, Point_with_a_coordinate_that_is_not_finite_is_null)
{
    const PointMap map = Surface(Cloud(2, {{nan, 1, 1}, {1, -infinity, 1}, {1, 1, infinity}, {1, 2, 3}}));
    EXPECT_EQ(map.validCount, 1u);
    EXPECT_TRUE(IsNull(map, 0, 0));
    EXPECT_TRUE(IsNull(map, 1, 0));
    EXPECT_TRUE(IsNull(map, 0, 1));
    EXPECT_EQ(PlaceMm(map, 1, 1), (Vector3{1, 2, 3}));
    EXPECT_TRUE(HasNote(map, "3 of 4 points are invalid."));
}

TEST(PointCloudTest, Organised_cloud_without_any_valid_point_is_a_surface_of_nulls)
{
    const PointMap map = Surface(Cloud(2, {{nan, 1, 1}, {nan, 1, 1}, {nan, 1, 1}, {nan, 1, 1}}));
    EXPECT_EQ(map.validCount, 0u);
    EXPECT_EQ(map.scaleMm, (Vector3{1, 1, 1}));
    EXPECT_EQ(map.offsetMm, (Vector3{0, 0, 0}));
    EXPECT_TRUE(IsNull(map, 1, 1));
}

TEST(PointCloudTest, Unit_makes_mm)
{
    CloudOptions options;
    options.mmPerUnit = 25.4;
    const PointMap map = Surface(Cloud(2, {{0, 0, 1}, {1, 0, 1}, {0, 1, 2}, {1, 1, 2}}), options);
    ExpectNear(PlaceMm(map, 1, 1), {25.4, 25.4, 50.8}, 25.4);
}

struct UpCase
{
    UpAxis up;
    Vector3 expected; ///< of (1, 2, 3)
};

TEST(PointCloudTest, Up_axis_becomes_z_by_a_turn_about_x)
{
    // The turns about x by 0, 180, 90 and -90 degrees.
    const UpCase cases[] = {
        {UpAxis::Z, {1, 2, 3}}, {UpAxis::MinusZ, {1, -2, -3}}, {UpAxis::Y, {1, -3, 2}}, {UpAxis::MinusY, {1, 3, -2}}};
    for (const auto& [up, expected] : cases)
    {
        CloudOptions options;
        options.up = up;
        const PointMap map = Surface(Cloud(2, {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}}), options);
        EXPECT_EQ(PlaceMm(map, 0, 0), expected);
    }
}

TEST(PointCloudTest, Point_belongs_to_the_nearest_node)
{
    // Nodes at 0.5, 1 and 1.5 in x; the middle between two belongs to the higher. In y at 4 and 6.
    const HeightMap map =
        Grid(List({{0.74, 4.99, 1}, {0.75, 5, 2}, {1.24, 3, 3}, {1.25, 6.9, 4}, {1.7, 3.5, 5}}), OnGrid(0.5, 2));
    ASSERT_EQ(map.width, 3u);
    ASSERT_EQ(map.length, 2u);
    EXPECT_EQ(map.offsetMm.x, 0.5);
    EXPECT_EQ(map.offsetMm.y, 4);
    EXPECT_EQ(map.scaleMm.x, 0.5);
    EXPECT_EQ(map.scaleMm.y, 2);
    EXPECT_EQ(map.validCount, 5u);
    EXPECT_NEAR(HeightMm(map, 0, 0), 1, 1e-4);
    EXPECT_NEAR(HeightMm(map, 1, 0), 3, 1e-4);
    EXPECT_NEAR(HeightMm(map, 2, 0), 5, 1e-4);
    EXPECT_EQ(map.heights[3], nullHeight);
    EXPECT_NEAR(HeightMm(map, 1, 1), 2, 1e-4);
    EXPECT_NEAR(HeightMm(map, 2, 1), 4, 1e-4);
}

TEST(PointCloudTest, Nodes_are_whole_multiples_of_the_spacing_below_0_too)
{
    const HeightMap map = Grid(List({{-0.9, -7.4, 1}, {0.2, -2.6, 2}}), OnGrid(1, 5));
    EXPECT_EQ(map.width, 2u);
    EXPECT_EQ(map.length, 1u);
    EXPECT_EQ(map.offsetMm.x, -1);
    EXPECT_EQ(map.offsetMm.y, -5);
}

TEST(PointCloudTest, Highest_point_of_a_cell_counts_with_its_intensity_the_first_of_equals)
{
    PointCloud cloud = List({{0, 0, 1}, {0.1, 0, 3}, {0.2, 0, 3}, {0, 0.2, 2}, {1, 0, 7}, {2, 0, nan}});
    cloud.intensity = {10, 20, 30, 40, 50, 60};
    const HeightMap map = Grid(std::move(cloud), OnGrid(1, 1));
    ASSERT_EQ(map.width, 2u);
    ASSERT_EQ(map.length, 1u);
    EXPECT_NEAR(HeightMm(map, 0, 0), 3, 1e-4);
    EXPECT_EQ(map.intensity, (std::vector<std::uint8_t>{20, 50}));
    EXPECT_TRUE(HasNote(map, "1 of 6 points are invalid"));
}

TEST(PointCloudTest, Up_axis_decides_which_point_is_the_highest)
{
    CloudOptions options = OnGrid(1, 1);
    options.up = UpAxis::MinusZ;
    const HeightMap map = Grid(List({{0, 0, 5}, {0, 0, 4}, {0, 0, 6}}), options);
    EXPECT_NEAR(HeightMm(map, 0, 0), -4, 1e-4);
}

TEST(PointCloudTest, Random_points_fill_the_cells_that_a_plain_search_finds)
{
    constexpr double spacing = 0.25;
    for (unsigned seed = 1; seed < 20; ++seed)
    {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> place(-3, 3);
        std::vector<Vector3> points(300);
        std::ranges::generate(points, [&] { return Vector3{place(random), place(random), place(random)}; });
        std::map<std::pair<long, long>, double> expected;
        for (const Vector3& point : points)
        {
            const std::pair cell{std::lround(std::floor(point.y / spacing + 0.5)),
                                 std::lround(std::floor(point.x / spacing + 0.5))};
            const auto [at, isNew] = expected.try_emplace(cell, point.z);
            at->second = std::max(at->second, point.z);
        }
        const HeightMap map = Grid(List(points), OnGrid(spacing, spacing));
        ASSERT_EQ(map.validCount, expected.size()) << "seed " << seed;
        for (const auto& [cell, height] : expected)
        {
            const auto column = cell.second - std::lround(map.offsetMm.x / spacing);
            const auto row = cell.first - std::lround(map.offsetMm.y / spacing);
            ASSERT_NEAR(HeightMm(map, static_cast<std::size_t>(column), static_cast<std::size_t>(row)), height, 1e-4)
                << "seed " << seed;
        }
    }
}

TEST(PointCloudTest, List_without_spacing_is_refused_with_what_to_write)
{
    for (const PointCloud& cloud : {List({{1, 2, 3}, {4, 5, 6}}), Cloud(1, {{1, 2, 3}, {4, 5, 6}})})
    {
        const auto message = ErrorOf([&] { return MakeScan(cloud, {}); });
        EXPECT_TRUE(Contains(message, "cloud.ply: \"spacing\": the points are not in rows and columns"));
        EXPECT_TRUE(Contains(message, R"("spacing": [0.5, 0.5])"));
        EXPECT_TRUE(Contains(message, "cloud.ply.json"));
    }
}

TEST(PointCloudTest, Organised_cloud_goes_onto_a_grid_if_it_has_a_spacing)
{
    const HeightMap map = Grid(Cloud(2, {{0, 0, 1}, {2, 0, 1}, {0, 1, 2}, {2, 1, 2}}), OnGrid(1, 1));
    EXPECT_EQ(map.width, 3u);
    EXPECT_EQ(map.length, 2u);
}

TEST(PointCloudTest, List_without_any_valid_point_is_refused)
{
    EXPECT_TRUE(Contains(ErrorOf([] {
                             return MakeScan(List({{1, nan, 1}, {1, 1, nan}}), OnGrid(1, 1));
                         }),
                         "no point has finite coordinates"));
}

struct GridCase
{
    std::vector<Vector3> points;
    double spacing;
};

TEST(PointCloudTest, Grid_that_is_too_large_is_refused_with_a_remedy)
{
    const GridCase cases[] = {
        {{{0, 0, 0}, {2000, 2000, 0}}, 1},       // for two points
        {{{0, 0, 0}, {1 << 20, 0, 0}}, 1},       // a side of 2^20 + 1
        {{{0, 0, 0}, {1, 1, 1}}, 1e-300},        // beyond integers
        {{{0, 0, 0}, {1e10, 1, 1}}, 1e-300},     // beyond doubles
        {{{-1e300, 0, 0}, {1e300, 1, 1}}, 1e-9}, // infinite on both sides
    };
    for (const auto& [points, spacing] : cases)
    {
        const auto message = ErrorOf([&] { return MakeScan(List(points), OnGrid(spacing, spacing)); });
        EXPECT_TRUE(Contains(message, "cloud.ply: \"spacing\": a grid of "));
        EXPECT_TRUE(Contains(message, "Give a coarser spacing"));
    }
    EXPECT_EQ(Grid(List({{0, 0, 0}, {1023, 1023, 0}}), OnGrid(1, 1)).heights.size(), 1u << 20);
}

TEST(PointCloudTest, Positions_beyond_the_range_of_numbers_are_refused)
{
    CloudOptions options = OnGrid(1, 1);
    options.mmPerUnit = 1000;
    EXPECT_TRUE(Contains(ErrorOf([&] {
                             return MakeScan(List({{0, 0, 0}, {1e307, 0, 0}}), options);
                         }),
                         "beyond the range of numbers"));
    EXPECT_TRUE(Contains(ErrorOf([&] {
                             return MakeScan(Cloud(2, {{1, 1, -1e308}, {1, 1, 1e308}, {}, {}}), {});
                         }),
                         "beyond the range of numbers"));
}

TEST(PointCloudTest, Count_of_points_is_bounded_in_lists_and_grids)
{
    const auto count = [](std::uint64_t width, std::uint64_t height) {
        return CheckedPointCount("a.pcd", "WIDTH", width, height);
    };
    EXPECT_EQ(count(640, 480), 307200u);
    EXPECT_EQ(count(maxSampleCount, 1), maxSampleCount);
    EXPECT_EQ(count(1, maxSideLength + 1), maxSideLength + 1);
    EXPECT_TRUE(Contains(ErrorOf([&] { return count(0, 1); }), "is empty"));
    EXPECT_TRUE(Contains(ErrorOf([&] { return count(5, 0); }), "is empty"));
    EXPECT_TRUE(Contains(ErrorOf([&] { return count(maxSampleCount + 1, 1); }), "a.pcd: WIDTH: "));
    EXPECT_TRUE(Contains(ErrorOf([&] { return count(maxSideLength + 1, 2); }), "too many"));
    const std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_TRUE(Contains(ErrorOf([&] { return count(most, most); }), "too many"));
}
} // namespace
