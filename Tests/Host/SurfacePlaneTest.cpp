#include "ToolRun.h"

#include <Host/JobRunner.h>
#include <Host/ScanMessage.h>

#include <Support/Builders.h>

#include <array>
#include <cmath>
#include <fstream>
#include <numbers>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;
using Support::NullPixel;

const std::vector<std::string> ALL_RESULTS = {"XAngle", "YAngle", "ZOffset", "Flatness", "Plane"};

json Everywhere()
{
    return {{"x", 0}, {"y", 0}, {"z", 0}, {"width", 1e6}, {"length", 1e6}, {"height", 1e6}};
}

class SurfacePlane : public testing::Test
{
protected:
    ToolRun Measure(const Ta::Object<void*>& message, json region = Everywhere())
    {
        return {registry, "SurfacePlane", {{"Region", region}}, {{"Surface", message}}};
    }

    ToolRegistry registry = RegistryOf({});
};

double Degrees(double slope)
{
    return std::atan(slope) * 180 / std::numbers::pi;
}

void ExpectPlane(const ToolRun& run, const zPoint3d64f& normal, double distance, double tolerance = 1e-12)
{
    const auto message = run.Message("Plane");
    const zPoint3d64f sent = TvPlaneFeatureMsg_Normal(message.Get());
    EXPECT_NEAR(sent.x, normal.x, tolerance);
    EXPECT_NEAR(sent.y, normal.y, tolerance);
    EXPECT_NEAR(sent.z, normal.z, tolerance);
    EXPECT_NEAR(TvPlaneFeatureMsg_OriginDistance(message.Get()), distance, tolerance * (1 + std::abs(distance)));
}

TEST_F(SurfacePlane, of_samples_on_a_plane_is_that_plane)
{
    // Counts of 2 * column + 2 * row are 0.5 mm per mm in x and 0.25 mm per mm in y: z = x / 2 + y / 4 - 10.
    const auto surface = Support::Surface({{0, 2, NullPixel, 6}, {2, 4, 6, 8}, {4, NullPixel, 8, 10}})
                             .Offset(10, 20, 0)
                             .Scale(1, 2, 0.25);
    const ToolRun run = Measure(surface);
    EXPECT_NEAR(run.Value("YAngle"), Degrees(0.5), 1e-12);
    EXPECT_NEAR(run.Value("XAngle"), Degrees(0.25), 1e-12);
    EXPECT_NEAR(run.Value("ZOffset"), -10, 1e-12);
    EXPECT_NEAR(run.Value("Flatness"), 0, 1e-12);
    const double length = std::sqrt(0.25 + 0.0625 + 1);
    ExpectPlane(run, {-0.5 / length, -0.25 / length, 1 / length}, -10 / length);
    EXPECT_EQ(run.Units("XAngle"), "deg");
    EXPECT_EQ(run.Units("Flatness"), "mm");
}

TEST_F(SurfacePlane, of_four_corners_one_of_which_is_raised_is_worked_out_by_hand)
{
    // At (-1, -1), (1, -1), (-1, 1), (1, 1) there are 0, 0, 0, 4: the slopes are 4 / 4, the mean is 1, and z = x + y +
    // 1 passes the corners by 1, -1, -1, 1 in z, a root of three less along its normal.
    const auto surface = Support::Surface({{0, 0}, {0, 4}}).Offset(-1, -1, 0).Scale(2, 2, 1);
    const ToolRun run = Measure(surface);
    EXPECT_NEAR(run.Value("XAngle"), 45, 1e-12);
    EXPECT_NEAR(run.Value("YAngle"), 45, 1e-12);
    EXPECT_NEAR(run.Value("ZOffset"), 1, 1e-12);
    EXPECT_NEAR(run.Value("Flatness"), 2 / std::sqrt(3.0), 1e-12);
}

TEST_F(SurfacePlane, that_rises_with_x_only_is_tilted_about_y_only)
{
    const ToolRun run = Measure(Support::Surface({{0, 1}, {0, 1}}));
    EXPECT_NEAR(run.Value("YAngle"), 45, 1e-12);
    EXPECT_NEAR(run.Value("XAngle"), 0, 1e-12);
}

TEST_F(SurfacePlane, of_a_point_surface_takes_the_places_of_its_points)
{
    // z = 2 x - y + 3 at points that lie anywhere.
    const auto surface = Support::PointSurface(
        {{{0, 0, 3}, {5, 1, 12}, {NullPixel, NullPixel, NullPixel}}, {{-2, 7, -8}, {4, 4, 7}, {1, -3, 8}}});
    const ToolRun run = Measure(surface);
    EXPECT_NEAR(run.Value("YAngle"), Degrees(2), 1e-12);
    EXPECT_NEAR(run.Value("XAngle"), Degrees(-1), 1e-12);
    EXPECT_NEAR(run.Value("ZOffset"), 3, 1e-12);
}

TEST_F(SurfacePlane, leaves_out_what_lies_outside_of_its_region)
{
    const auto surface = Support::Surface({{0, 1, 90}, {0, 1, -70}, {50, 60, 70}});
    const json box = {{"x", 0.5}, {"y", 0.5}, {"z", 0}, {"width", 1}, {"length", 1}, {"height", 1000}};
    const ToolRun run = Measure(surface, box);
    EXPECT_NEAR(run.Value("YAngle"), 45, 1e-12);
    EXPECT_NEAR(run.Value("Flatness"), 0, 1e-12);
}

struct FlatCase
{
    const char* name;
    Ta::Object<void*> (*make)();
};

class Surface_without_plane : public SurfacePlane, public testing::WithParamInterface<FlatCase>
{
};

TEST_P(Surface_without_plane, gives_nulls_and_draws_its_region_alone)
{
    const ToolRun run = Measure(GetParam().make());
    EXPECT_EQ(run.Nulls(), ALL_RESULTS);
    EXPECT_EQ(run.Drawn(), (std::vector<std::string>{"region3d (0, 0, 0) (1e+06, 1e+06, 1e+06) 0"}));
}

INSTANTIATE_TEST_SUITE_P(
    , Surface_without_plane,
    testing::Values(
        FlatCase{"empty", [] { return Ta::Object<void*>(Support::Surface({})); }},
        FlatCase{"of_nulls",
                 [] {
                     return Ta::Object<void*>(Support::Surface({{NullPixel, NullPixel}, {NullPixel, NullPixel}}));
                 }},
        FlatCase{"of_one_point", [] { return Ta::Object<void*>(Support::Surface({{5}})); }},
        FlatCase{"of_two_points",
                 [] {
                     return Ta::Object<void*>(Support::Surface({{5, NullPixel}, {NullPixel, 5}}));
                 }},
        FlatCase{"of_a_row",
                 [] {
                     return Ta::Object<void*>(Support::Surface({{5, 6, 9, 1}}).Offset(0.1, 0.7, 0).Scale(0.1, 0.3, 1));
                 }},
        FlatCase{"of_a_column",
                 [] {
                     return Ta::Object<void*>(Support::Surface({{5}, {6}, {9}}).Offset(0.1, 0.7, 0).Scale(0.1, 0.3, 1));
                 }},
        FlatCase{"of_a_diagonal",
                 [] {
                     return Ta::Object<void*>(
                         Support::Surface(
                             {{5, NullPixel, NullPixel}, {NullPixel, 5, NullPixel}, {NullPixel, NullPixel, 7}})
                             .Offset(123.456, -0.3, 0)
                             .Scale(0.1, 0.7, 1));
                 }},
        FlatCase{
            "of_one_place",
            [] {
                return Ta::Object<void*>(Support::PointSurface({{{3, 7, 1}, {3, 7, 5}, {3, 7, 9}}}).Scale(0.1, 0.1, 1));
            }},
        FlatCase{"of_an_upright_wall",
                 [] {
                     return Ta::Object<void*>(
                         Support::PointSurface({{{1, 1, 0}, {2, 2, 0}, {1, 1, 5}, {2, 2, 9}}}).Scale(0.1, 0.3, 1));
                 }}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(SurfacePlane, of_a_null_scan_is_null_and_so_is_the_graphic)
{
    std::vector<std::string> everything = ALL_RESULTS;
    everything.emplace_back("Graphic");
    EXPECT_EQ(Measure(Support::NullMessage()).Nulls(), everything);
}

/// Points of whole numbers along a line, in a random order, with offset and scales that are not.
struct RandomLine
{
    explicit RandomLine(std::mt19937& random)
    {
        const auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
        const int xStep = number(-3, 3);
        const int yStep = xStep == 0 ? 1 : number(-3, 3);
        const int count = number(3, 300);
        for (int i = 0; i < count; ++i)
        {
            const int place = number(0, 5000);
            points.push_back(
                {static_cast<z16s>(xStep * place), static_cast<z16s>(yStep * place), static_cast<z16s>(number(-9, 9))});
        }
        offset = {number(-999999, 999999) / 1e3, number(-999999, 999999) / 1e3, 0};
        scale = {number(1, 9999) / 1e5, number(1, 9999) / 1e5, 0.1};
    }

    [[nodiscard]] Ta::Object<void*> Message() const
    {
        return Support::PointSurface({points}).Offset(offset.x, offset.y, 0).Scale(scale.x, scale.y, scale.z);
    }

    /// Whether all points but the first tell of the line.
    [[nodiscard]] bool IsKnownWithoutTheFirst() const
    {
        return std::any_of(points.begin() + 2, points.end(),
                           [this](const auto& point) { return point.x != points[1].x || point.y != points[1].y; });
    }

    std::vector<zPoint3d16s> points;
    zPoint3d64f offset{};
    zPoint3d64f scale{};
};

TEST_F(SurfacePlane, tells_points_on_a_line_from_points_that_are_a_sample_off)
{
    const unsigned seed = 20250307;
    std::mt19937 random(seed);
    int told = 0;
    for (int round = 0; round < 500; ++round)
    {
        RandomLine line(random);
        ASSERT_EQ(Measure(line.Message()).Nulls(), ALL_RESULTS) << "seed " << seed << ", round " << round;
        if (!line.IsKnownWithoutTheFirst())
        {
            continue;
        }
        // One sample along an axis leaves every line but those along that axis.
        zPoint3d16s& moved = line.points.front();
        const bool isAlongX = std::ranges::all_of(line.points, [&](const auto& point) { return point.y == moved.y; });
        (isAlongX ? moved.y : moved.x) += 1;
        ASSERT_TRUE(Measure(line.Message()).Nulls().empty()) << "seed " << seed << ", round " << round;
        ++told;
    }
    EXPECT_GT(told, 400);
}

using Real = long double;

/// The normal equations about the centroid, in long doubles.
struct Reference
{
    Real xSlope;
    Real ySlope;
    Real zOffset;
    Real flatness;

    explicit Reference(const std::vector<std::array<Real, 3>>& points)
    {
        std::array<Real, 3> mean{};
        for (const auto& point : points)
        {
            for (std::size_t i = 0; i < 3; ++i)
            {
                mean[i] += point[i] / static_cast<Real>(points.size());
            }
        }
        Real xx = 0, xy = 0, yy = 0, xz = 0, yz = 0;
        for (const auto& point : points)
        {
            const Real x = point[0] - mean[0], y = point[1] - mean[1], z = point[2] - mean[2];
            xx += x * x, xy += x * y, yy += y * y, xz += x * z, yz += y * z;
        }
        const Real determinant = xx * yy - xy * xy;
        xSlope = (xz * yy - yz * xy) / determinant;
        ySlope = (yz * xx - xz * xy) / determinant;
        zOffset = mean[2] - xSlope * mean[0] - ySlope * mean[1];
        const auto above = [&](const auto& point) { return point[2] - xSlope * point[0] - ySlope * point[1]; };
        const auto [lowest, highest] = std::ranges::minmax(points, {}, above);
        flatness = (above(highest) - above(lowest)) / std::sqrt(1 + xSlope * xSlope + ySlope * ySlope);
    }
};

/// The points of a map that `isIn` takes by their place in mm.
template <typename IsIn>
std::vector<std::array<Real, 3>> PointsOf(const HeightMap& map, const IsIn& isIn)
{
    std::vector<std::array<Real, 3>> points;
    for (std::size_t i = 0; i < map.heights.size(); ++i)
    {
        const double x = map.offsetMm.x + map.scaleMm.x * static_cast<double>(i % map.width);
        const double y = map.offsetMm.y + map.scaleMm.y * static_cast<double>(i / map.width);
        const double z = map.offsetMm.z + map.scaleMm.z * map.heights[i];
        if (map.heights[i] != HeightMap::nullHeight && isIn(x, y, z))
        {
            points.push_back({x, y, z});
        }
    }
    return points;
}

/// @param tolerance  in mm, and in mm per mm
void ExpectAsReference(const ToolRun& run, const Reference& expected, double tolerance)
{
    const auto xSlope = static_cast<double>(expected.xSlope);
    const auto ySlope = static_cast<double>(expected.ySlope);
    EXPECT_NEAR(run.Value("YAngle"), Degrees(xSlope), tolerance * 60);
    EXPECT_NEAR(run.Value("XAngle"), Degrees(ySlope), tolerance * 60);
    EXPECT_NEAR(run.Value("ZOffset"), static_cast<double>(expected.zOffset), tolerance * 1000);
    EXPECT_NEAR(run.Value("Flatness"), static_cast<double>(expected.flatness), tolerance * 100);
    const double length = std::hypot(xSlope, ySlope, 1.0);
    ExpectPlane(run, {-xSlope / length, -ySlope / length, 1 / length}, static_cast<double>(expected.zOffset) / length,
                tolerance * 1000);
}

bool Anywhere(double /*x*/, double /*y*/, double /*z*/)
{
    return true;
}

TEST_F(SurfacePlane, agrees_with_a_naive_reference_on_random_maps)
{
    const unsigned seed = 20250308;
    std::mt19937 random(seed);
    for (int round = 0; round < 1000; ++round)
    {
        const std::size_t width = 2 + random() % 20;
        std::vector<std::int16_t> heights(width * (2 + random() % 20));
        for (std::size_t i = 0; i < heights.size(); ++i)
        {
            const auto slope = static_cast<int>(i % width) * 100 - static_cast<int>(i / width) * 70;
            heights[i] = random() % 5 == 0 ? HeightMap::nullHeight
                                           : static_cast<std::int16_t>(slope + static_cast<int>(random() % 500));
        }
        // Three corners, so that there always is a plane.
        heights.front() = heights[width - 1] = heights[heights.size() - width] = 7;
        HeightMap map = SmallMap(width, heights);
        map.offsetMm = {static_cast<double>(random() % 1000), -static_cast<double>(random() % 1000), 3};
        ExpectAsReference(Measure(MakeSurfaceMessage(map, 0, nullptr)), Reference(PointsOf(map, Anywhere)), 1e-12);
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ", round " << round;
    }
}

/// The slopes of the plane through points of whole numbers, by normal equations in whole numbers, which lose nothing.
zPoint64f ExactSlopes(const std::vector<zPoint3d16s>& points)
{
    __extension__ using Wide = __int128;
    const auto sum = [&](const auto& term) {
        Wide total = 0;
        for (const zPoint3d16s& point : points)
        {
            total += term(point);
        }
        return total;
    };
    const auto product = [&](z16s zPoint3d16s::*a, z16s zPoint3d16s::*b) {
        const Wide ofProducts = sum([&](const zPoint3d16s& point) { return point.*a * point.*b; });
        const auto of = [&](z16s zPoint3d16s::*c) { return sum([c](const zPoint3d16s& point) { return point.*c; }); };
        return static_cast<Wide>(points.size()) * ofProducts - of(a) * of(b);
    };
    const auto x = &zPoint3d16s::x;
    const auto y = &zPoint3d16s::y;
    const auto z = &zPoint3d16s::z;
    const Wide determinant = product(x, x) * product(y, y) - product(x, y) * product(x, y);
    const Wide xPart = product(x, z) * product(y, y) - product(y, z) * product(x, y);
    const Wide yPart = product(y, z) * product(x, x) - product(x, z) * product(x, y);
    return {static_cast<double>(xPart) / static_cast<double>(determinant),
            static_cast<double>(yPart) / static_cast<double>(determinant)};
}

TEST_F(SurfacePlane, of_a_turned_strip_of_points_keeps_its_digits_across)
{
    // Two lines of points side by side along the diagonal, twenty thousand times as long as they are apart. The normal
    // equations in doubles are off by a millionth here, and those in long doubles by 3e-10.
    std::vector<zPoint3d16s> row;
    for (int i = 0; i < 20000; ++i)
    {
        row.push_back({static_cast<z16s>(i), static_cast<z16s>(i), static_cast<z16s>(i / 7)});
        row.push_back({static_cast<z16s>(i + 1), static_cast<z16s>(i - 1), static_cast<z16s>(i / 7 + 3 + i % 2)});
    }
    const double scale = 1.0 / 1024; // exact in binary, as the points then are
    const ToolRun run = Measure(Support::PointSurface({row}).Scale(scale, scale, scale));
    const zPoint64f expected = ExactSlopes(row);
    EXPECT_NEAR(run.Value("YAngle"), Degrees(expected.x), 1e-11);
    EXPECT_NEAR(run.Value("XAngle"), Degrees(expected.y), 1e-11);
}

json BoxOf(double x, double y, double z, double width, double length, double height)
{
    return {{"x", x}, {"y", y}, {"z", z}, {"width", width}, {"length", length}, {"height", height}};
}

TEST_F(SurfacePlane, of_the_flat_block_of_a_real_scan_agrees_with_a_naive_reference)
{
    const HeightMap map = ReadHeightMap(ExampleScan("cylinder1.tif"));
    const auto onBlock = [](double x, double y, double z) {
        return std::abs(x - 110) <= 15 + 1e-6 && std::abs(y - 130) <= 20 + 1e-6 && std::abs(z - 20.7) <= 2;
    };
    const auto points = PointsOf(map, onBlock);
    EXPECT_GT(points.size(), 100000U);
    const ToolRun run = Measure(MakeSurfaceMessage(map, 0, nullptr), BoxOf(110, 130, 20.7, 30, 40, 4));
    ExpectAsReference(run, Reference(points), 1e-12);
    // A plate that was milled flat and lies nearly level, scanned in steps of 0.1 mm.
    EXPECT_LT(std::abs(run.Value("XAngle")), 3);
    EXPECT_LT(std::abs(run.Value("YAngle")), 3);
    EXPECT_LT(run.Value("Flatness"), 1);
}

TEST_F(SurfacePlane, of_the_example_job_is_what_the_top_of_the_cylinder_is_measured_from)
{
    const HeightMap map = ReadHeightMap(ExampleScan("cylinder1.tif"));
    const ScanResult scan =
        RunJob(ReadJob(std::filesystem::path(MU_EXAMPLES_DIR) / "Jobs/plane.json"), registry).scans.at(0);
    const auto value = [&scan](std::string_view tool, std::string_view output) {
        const auto isIt = [&](const Result& result) { return result.tool == tool && result.output == output; };
        return std::ranges::find_if(scan.results, isIt)->value;
    };
    const Reference block(PointsOf(map, [](double x, double y, double z) {
        return std::abs(x - 110) <= 15 + 1e-6 && std::abs(y - 130) <= 20 + 1e-6 && std::abs(z - 20.7) <= 2;
    }));
    EXPECT_NEAR(value("block", "YAngle"), Degrees(static_cast<double>(block.xSlope)), 1e-9);
    EXPECT_NEAR(value("block", "XAngle"), Degrees(static_cast<double>(block.ySlope)), 1e-9);
    EXPECT_NEAR(value("block", "Flatness"), static_cast<double>(block.flatness), 1e-9);
    const auto onTop = PointsOf(map, [](double x, double y, double z) {
        return std::abs(x - 81.5) <= 7 + 1e-6 && std::abs(y - 90) <= 7 + 1e-6 && std::abs(z - 30.9) <= 2;
    });
    Real above = 0;
    for (const auto& point : onTop)
    {
        above += (point[2] - block.xSlope * point[0] - block.ySlope * point[1] - block.zOffset) /
                 static_cast<Real>(onTop.size());
    }
    const Real distance = above / std::sqrt(1 + block.xSlope * block.xSlope + block.ySlope * block.ySlope);
    EXPECT_NEAR(value("height", "Distance"), static_cast<double>(distance), 1e-9);
    EXPECT_TRUE(HasPassed({{scan}}));
}

TEST_F(SurfacePlane, of_a_confocal_scan_is_what_its_publishers_found)
{
    // Lines of x, y, z with blank lines between the 101 rows.
    std::ifstream file(ExampleScan("nanovea-test2.txt"));
    std::vector<double> heights;
    double x = 0, y = 0, z = 0;
    for (char comma = 0; file >> x >> comma >> y >> comma >> z;)
    {
        heights.push_back(z);
    }
    ASSERT_EQ(heights.size(), 101U * 101U);
    SampleGrid grid;
    grid.columns = grid.rows = 101;
    grid.spacingMm = {0.005, 0.005, 1};
    const HeightMap map = BuildHeightMap<double>(grid, heights, {});
    const ToolRun run = Measure(MakeSurfaceMessage(map, 0, nullptr));
    const zPoint3d64f normal = TvPlaneFeatureMsg_Normal(run.Message("Plane").Get());
    // Heights become counts of 0.0016, of which the slopes feel a ten thousandth.
    EXPECT_NEAR(-normal.x / normal.z, 17.62289, 2e-4);
    EXPECT_NEAR(-normal.y / normal.z, 112.53037, 2e-4);
    EXPECT_NEAR(run.Value("ZOffset"), 214.83110, 1e-4);
    EXPECT_NEAR(run.Value("YAngle"), Degrees(17.62289), 1e-4);
    EXPECT_NEAR(run.Value("XAngle"), Degrees(112.53037), 1e-4);
}

TEST_F(SurfacePlane, follows_its_anchor)
{
    // Level at 1 in the first three columns, and at 45 degrees in the last three.
    const auto surface = Support::Surface({{1, 1, 1, 5, 6, 7}, {1, 1, 1, 5, 6, 7}});
    const json parameters = {{"Region", BoxOf(1, 0.5, 0, 2, 1, 100)}};
    EXPECT_NEAR(Measure(surface, parameters["Region"]).Value("YAngle"), 0, 1e-12);
    const ToolRun moved(registry, "SurfacePlane", parameters, {{"Surface", surface}, {"AnchorX", Support::Measure(3)}});
    EXPECT_NEAR(moved.Value("YAngle"), 45, 1e-12);
    EXPECT_EQ(moved.Drawn().at(0), "region3d (4, 0.5, 0) (2, 1, 100) 0");
}

TEST_F(SurfacePlane, draws_region_plane_tilts_and_extreme_points)
{
    // z = 3 x / 4 at (0, 0), (4, 0), (0, 4), (4, 4).
    const auto surface = Support::Surface({{0, 3}, {0, 3}}).Scale(4, 4, 1);
    const ToolRun run = Measure(surface, BoxOf(2, 2, 0, 16, 8, 100));
    const std::vector<std::string> drawn = run.Drawn();
    ASSERT_EQ(drawn.size(), 16U);
    EXPECT_EQ(drawn[0], "region3d (2, 2, 0) (16, 8, 100) 0");
    void* const plane = TpGraphic_At(run.Graphic(), 1);
    const zPoint3d32f normal = TpGraphicPlane_Normal(plane);
    EXPECT_NEAR(normal.x, -0.6, 1e-6);
    EXPECT_NEAR(normal.y, 0, 1e-6);
    EXPECT_NEAR(normal.z, 0.8, 1e-6);
    EXPECT_NEAR(TpGraphicPlane_Distance(plane), 0, 1e-6);
    // Arms of 1.25 times a quarter of the shorter side, from the centroid (2, 2, 1.5) along x and along the plane.
    EXPECT_EQ(drawn[2], CasingOf({2, 2, 1.5}, {4.5, 2, 1.5}));
    EXPECT_EQ(drawn[3], CasingOf({2, 2, 1.5}, {4, 2, 3}));
    EXPECT_EQ(drawn[5],
              TextOf("lines 1 ", 0xFFFFFF00U, " 0 0 ", zPoint3d32f{2, 2, 1.5}, ' ', zPoint3d32f{4.5, 2, 1.5}));
    // An arc of radius 2 with arrows.
    EXPECT_EQ(drawn[7].find(TextOf("lines 1 ", 0xFFFFFF00U, " 1 1 ", zPoint3d32f{4, 2, 1.5})), 0U) << drawn[7];
    EXPECT_TRUE(drawn[7].ends_with(TextOf(' ', zPoint3d32f{3.6F, 2, 2.7F}))) << drawn[7];
    EXPECT_EQ(drawn[8], CasingOf({2, 2, 1.5}, {2, 4.5, 1.5}));
    EXPECT_TRUE(drawn[14].starts_with(TextOf("points 8 2 ", ToolColours::FOUND))) << drawn[14];
    EXPECT_TRUE(drawn[15].starts_with(TextOf("points 8 2 ", ToolColours::FOUND))) << drawn[15];
}

TEST_F(SurfacePlane, marks_the_points_that_its_flatness_is_between)
{
    // Level at 0 by their corners, with a point as far above as another is below in the middle.
    const auto surface =
        Support::PointSurface({{{-1, -1, 0}, {1, -1, 0}, {0, 0, 8}, {0, 0, -8}, {-1, 1, 0}, {1, 1, 0}}});
    const ToolRun run = Measure(surface);
    EXPECT_NEAR(run.Value("Flatness"), 16, 1e-12);
    EXPECT_EQ(run.Drawn().at(14), DotAt({0, 0, -8}));
    EXPECT_EQ(run.Drawn().at(15), DotAt({0, 0, 8}));
}

TEST_F(SurfacePlane, with_its_graphic_switched_off_sends_none)
{
    const ToolRun run(registry, "SurfacePlane", {{"Region", Everywhere()}},
                      {{"Surface", Support::Surface({{0, 1}, {0, 1}})}}, {Disabled("Graphic")});
    EXPECT_NEAR(run.Value("YAngle"), 45, 1e-12);
    EXPECT_FALSE(run.Message("Graphic"));
}
} // namespace
