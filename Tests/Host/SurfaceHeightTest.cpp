#include <Host/ToolRunner.h>

#include <Host/ScanMessage.h>
#include <Host/ScanReader.h>

#include "ToolRun.h"

#include <Support/Builders.h>

#include <cmath>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Support::NullPixel;

class SurfaceHeight : public testing::Test
{
protected:
    SurfaceHeight()
    {
        runner.Route("Surface", "scan", place);
        runner.Start();
    }

    std::vector<Result> Measure(const Ta::Object<void*>& message)
    {
        return runner.Execute({{"Surface", {message}}});
    }

    const JobPlace place{"job.json", "tools[0]"};
    ToolRegistry registry = RegistryOf({});
    ToolRunner runner{*registry.Find("SurfaceHeight"), "height", place};
};

double ValueOf(const std::vector<Result>& results, std::string_view output)
{
    const Result result = ResultOf(results, output);
    EXPECT_EQ(result.state, ResultState::Value) << output;
    return result.value;
}

TEST_F(SurfaceHeight, of_hand_worked_pixels)
{
    // Pixels 2, 4, 6, 12 at 5 + z / 2: 6, 7, 8, 11 mm. Mean 8; squares of the differences 4 + 1 + 0 + 9 = 14.
    const auto results =
        Measure(Support::Surface({{2, 4, NullPixel}, {6, 12, NullPixel}}).Offset(9, 9, 5).Scale(1, 1, 0.5));
    EXPECT_DOUBLE_EQ(ValueOf(results, "Minimum"), 6);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Maximum"), 11);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Mean"), 8);
    EXPECT_DOUBLE_EQ(ValueOf(results, "PeakToValley"), 5);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Rms"), std::sqrt(3.5));
    EXPECT_NEAR(ValueOf(results, "ValidShare"), 200.0 / 3, 1e-12);
    EXPECT_EQ(ResultOf(results, "Rms").units, "mm");
    EXPECT_EQ(ResultOf(results, "ValidShare").units, "%");
}

TEST_F(SurfaceHeight, of_a_point_surface_takes_the_z_of_its_points)
{
    const auto results = Measure(Support::PointSurface({{{100, 0, 2}, {200, 0, 4}, {NullPixel, NullPixel, NullPixel}},
                                                        {{-300, 0, 6}, {0, 0, 12}, {NullPixel, NullPixel, NullPixel}}})
                                     .Offset(9, 9, 5)
                                     .Scale(1, 1, 0.5));
    EXPECT_DOUBLE_EQ(ValueOf(results, "Minimum"), 6);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Maximum"), 11);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Rms"), std::sqrt(3.5));
    EXPECT_NEAR(ValueOf(results, "ValidShare"), 200.0 / 3, 1e-12);
}

TEST_F(SurfaceHeight, without_a_valid_pixel_is_null_and_the_share_is_0)
{
    const auto results = Measure(Support::Surface({{NullPixel, NullPixel}}));
    for (const char* const output : {"Minimum", "Maximum", "Mean", "PeakToValley", "Rms"})
    {
        EXPECT_EQ(ResultOf(results, output).state, ResultState::Null) << output;
    }
    EXPECT_EQ(ValueOf(results, "ValidShare"), 0);
}

TEST_F(SurfaceHeight, of_a_single_valid_pixel_has_no_spread)
{
    const auto results = Measure(Support::Surface({{NullPixel, -32767}}).Scale(1, 1, 0.001));
    EXPECT_DOUBLE_EQ(ValueOf(results, "Mean"), -32.767);
    EXPECT_EQ(ValueOf(results, "Rms"), 0);
    EXPECT_EQ(ValueOf(results, "PeakToValley"), 0);
    EXPECT_EQ(ValueOf(results, "ValidShare"), 50);
}

TEST_F(SurfaceHeight, of_an_empty_surface_is_null)
{
    const auto results = Measure(Support::Surface({}));
    EXPECT_EQ(ResultOf(results, "Mean").state, ResultState::Null);
    EXPECT_EQ(ValueOf(results, "ValidShare"), 0);
}

TEST_F(SurfaceHeight, with_a_scale_that_points_down_swaps_its_ends)
{
    const auto results = Measure(Support::Surface({{1, 3}}).Scale(1, 1, -2));
    EXPECT_DOUBLE_EQ(ValueOf(results, "Minimum"), -6);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Maximum"), -2);
    EXPECT_DOUBLE_EQ(ValueOf(results, "PeakToValley"), 4);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Rms"), 2);
}

TEST_F(SurfaceHeight, keeps_its_digits_far_from_zero)
{
    // Alternately 32000 and 32001, a million times each: the spread is exactly half a count.
    std::vector<z16s> row(2000);
    for (std::size_t i = 0; i < row.size(); ++i)
    {
        row[i] = static_cast<z16s>(32000 + i % 2);
    }
    const auto results = Measure(Support::Surface(Support::Rows<z16s>(1000, row)));
    EXPECT_EQ(ValueOf(results, "Mean"), 32000.5);
    EXPECT_EQ(ValueOf(results, "Rms"), 0.5);
}

TEST_F(SurfaceHeight, of_a_null_scan_is_null)
{
    const auto results = Measure(Support::NullMessage());
    EXPECT_EQ(ResultOf(results, "Mean").state, ResultState::Null);
    EXPECT_EQ(ResultOf(results, "ValidShare").state, ResultState::Null);
}

/// The same in long doubles, in two passes, one pixel after the other.
struct Reference
{
    long double minimum = 0;
    long double maximum = 0;
    long double mean = 0;
    long double rms = 0;
    std::size_t valid = 0;

    explicit Reference(const HeightMap& map)
    {
        std::vector<long double> heights;
        for (const std::int16_t height : map.heights)
        {
            if (height != HeightMap::nullHeight)
            {
                heights.push_back(map.offsetMm.z + map.scaleMm.z * static_cast<long double>(height));
            }
        }
        valid = heights.size();
        minimum = *std::ranges::min_element(heights);
        maximum = *std::ranges::max_element(heights);
        for (const long double height : heights)
        {
            mean += height / static_cast<long double>(valid);
        }
        for (const long double height : heights)
        {
            rms += (height - mean) * (height - mean) / static_cast<long double>(valid);
        }
        rms = std::sqrt(rms);
    }
};

void ExpectAsReference(const std::vector<Result>& results, const HeightMap& map)
{
    const Reference expected(map);
    EXPECT_NEAR(ValueOf(results, "Minimum"), static_cast<double>(expected.minimum), 1e-12);
    EXPECT_NEAR(ValueOf(results, "Maximum"), static_cast<double>(expected.maximum), 1e-12);
    EXPECT_NEAR(ValueOf(results, "PeakToValley"), static_cast<double>(expected.maximum - expected.minimum), 1e-12);
    EXPECT_NEAR(ValueOf(results, "Mean"), static_cast<double>(expected.mean), 1e-11);
    EXPECT_NEAR(ValueOf(results, "Rms"), static_cast<double>(expected.rms), 1e-11);
    EXPECT_DOUBLE_EQ(ValueOf(results, "ValidShare"),
                     100 * static_cast<double>(expected.valid) / static_cast<double>(map.heights.size()));
}

TEST_F(SurfaceHeight, agrees_with_a_naive_reference_on_random_maps)
{
    const unsigned seed = 20240611;
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; ++round)
    {
        std::vector<std::int16_t> heights(1 + random() % 100);
        const auto nullsInTen = random() % 10;
        for (std::int16_t& height : heights)
        {
            height = random() % 10 < nullsInTen ? HeightMap::nullHeight : static_cast<std::int16_t>(random());
        }
        heights.front() = static_cast<std::int16_t>(random() % 1000);
        HeightMap map = SmallMap(1, heights);
        map.scaleMm.z = 0.001;
        ExpectAsReference(Measure(MakeSurfaceMessage(map, 0, nullptr)), map);
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ", round " << round;
    }
}

TEST_F(SurfaceHeight, agrees_with_a_naive_reference_on_real_scans)
{
    for (const char* const scan : {"cylinder1.tif", "sample-land.x3p"})
    {
        const HeightMap map = ReadHeightMap(ExampleScan(scan));
        ExpectAsReference(Measure(MakeSurfaceMessage(map, 0, nullptr)), map);
    }
}

TEST_F(SurfaceHeight, of_the_plate_is_what_its_publishers_tell)
{
    const auto results = Measure(MakeSurfaceMessage(ReadHeightMap(ExampleScan("cylinder1.tif")), 0, nullptr));
    EXPECT_NEAR(ValueOf(results, "Minimum"), 0.1, 1e-9);
    EXPECT_NEAR(ValueOf(results, "Maximum"), 31.3, 1e-9);
    // 1 024 099 of 1319 x 2101 samples are invalid.
    EXPECT_DOUBLE_EQ(ValueOf(results, "ValidShare"), 100 * (1319.0 * 2101 - 1024099) / (1319.0 * 2101));
}

nlohmann::json InRegion(nlohmann::json box)
{
    box.update({{"z", 0}, {"height", 1000}});
    return {{"UseRegion", true}, {"Region", box}};
}

TEST_F(SurfaceHeight, of_a_region_leaves_out_what_lies_outside)
{
    // Columns 1 and 2 of rows 0 and 1: 4, invalid, 12, 20 at 5 + z / 2, that is 7, 11, 15. Mean 11; squares 16 + 0
    // + 16.
    const auto surface = Support::Surface({{900, 4, NullPixel, 900}, {900, 12, 20, 900}, {900, 900, 900, 900}})
                             .Offset(0, 0, 5)
                             .Scale(1, 1, 0.5);
    const auto values = InRegion({{"x", 1.5}, {"y", 0.5}, {"width", 1.5}, {"length", 1.5}});
    const auto results = MeasureSurface(registry, "SurfaceHeight", values, surface);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Minimum"), 7);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Maximum"), 15);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Mean"), 11);
    EXPECT_DOUBLE_EQ(ValueOf(results, "PeakToValley"), 8);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Rms"), std::sqrt(32.0 / 3));
    EXPECT_DOUBLE_EQ(ValueOf(results, "ValidShare"), 75);
}

TEST_F(SurfaceHeight, of_a_turned_region_counts_the_samples_under_it)
{
    // A square of 3 by 3 at (3, 3), turned by 45 degrees, reaches 2.12 along the axes: the samples with
    // |dx| + |dy| <= 2.12, that is 1 + 4 + 8 = 13 of them, one of which is invalid.
    std::vector<std::vector<z16s>> rows(7, std::vector<z16s>(7, 10));
    rows[3][1] = NullPixel;
    rows[1][1] = 500;
    const auto values = InRegion({{"x", 3}, {"y", 3}, {"width", 3}, {"length", 3}, {"zAngle", 45}});
    const auto results = MeasureSurface(registry, "SurfaceHeight", values, Support::Surface(rows));
    EXPECT_DOUBLE_EQ(ValueOf(results, "Maximum"), 10);
    EXPECT_DOUBLE_EQ(ValueOf(results, "ValidShare"), 100 * 12 / 13.0);
}

TEST_F(SurfaceHeight, of_a_region_of_points_cannot_tell_the_share)
{
    const auto surface = Support::PointSurface({{{1, 1, 7}, {9, 9, 99}, {NullPixel, NullPixel, NullPixel}}});
    const auto values = InRegion({{"x", 1}, {"y", 1}, {"width", 2}, {"length", 2}});
    const auto results = MeasureSurface(registry, "SurfaceHeight", values, surface);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Mean"), 7);
    EXPECT_EQ(ResultOf(results, "ValidShare").state, ResultState::Null);
}

TEST_F(SurfaceHeight, of_a_region_without_heights_is_null_and_the_share_is_0)
{
    const auto values = InRegion({{"x", 100}, {"y", 1}, {"width", 2}, {"length", 2}});
    const auto results = MeasureSurface(registry, "SurfaceHeight", values, Support::Surface({{1, 2}}));
    EXPECT_EQ(ResultOf(results, "Mean").state, ResultState::Null);
    EXPECT_EQ(ValueOf(results, "ValidShare"), 0);
}

TEST_F(SurfaceHeight, draws_the_first_lowest_and_highest_point_and_their_difference)
{
    // Two lowest at (9, 9) and (11, 9), two highest at (11, 12) and (9, 12), half a mm a count.
    const auto surface = Support::Surface({{2, NullPixel, 2}, {12, 7, 12}}).Offset(9, 9, 5).Scale(1, 3, 0.5);
    const ToolRun run(registry, "SurfaceHeight", nlohmann::json::object(), {{"Surface", surface}});
    EXPECT_EQ(run.Drawn(),
              (std::vector<std::string>{CasingOf({9, 9, 6}, {9, 9, 11}), DimensionOf({9, 9, 6}, {9, 9, 11}),
                                        DotAt({9, 9, 6}), DotAt({9, 12, 11})}));
}

TEST_F(SurfaceHeight, of_points_draws_their_own_places)
{
    const auto surface = Support::PointSurface({{{NullPixel, NullPixel, NullPixel}, {5, 6, 1}, {-7, 8, 3}}});
    const ToolRun run(registry, "SurfaceHeight", nlohmann::json::object(), {{"Surface", surface}});
    EXPECT_EQ(run.Drawn(), (std::vector<std::string>{CasingOf({5, 6, 1}, {5, 6, 3}), DimensionOf({5, 6, 1}, {5, 6, 3}),
                                                     DotAt({5, 6, 1}), DotAt({-7, 8, 3})}));
}

TEST_F(SurfaceHeight, of_a_region_draws_it_with_its_extremes)
{
    const auto surface = Support::Surface({{900, 4, NullPixel, 900}, {900, 12, 20, 900}, {900, 900, 900, 900}});
    const auto values = InRegion({{"x", 1.5}, {"y", 0.5}, {"width", 1.5}, {"length", 1.5}});
    const ToolRun run(registry, "SurfaceHeight", values, {{"Surface", surface}});
    EXPECT_EQ(run.Drawn(),
              (std::vector<std::string>{"region3d (1.5, 0.5, 0) (1.5, 1.5, 1000) 0", CasingOf({1, 0, 4}, {1, 0, 20}),
                                        DimensionOf({1, 0, 4}, {1, 0, 20}), DotAt({1, 0, 4}), DotAt({2, 1, 20})}));
}

TEST_F(SurfaceHeight, that_is_the_same_everywhere_has_no_difference_to_draw)
{
    const ToolRun run(registry, "SurfaceHeight", nlohmann::json::object(), {{"Surface", Support::Surface({{5, 5}})}});
    EXPECT_EQ(run.Drawn(), (std::vector{DotAt({0, 0, 5}), DotAt({0, 0, 5})}));
}

TEST_F(SurfaceHeight, without_heights_draws_no_more_than_its_region)
{
    const auto values = InRegion({{"x", 100}, {"y", 1}, {"width", 2}, {"length", 2}});
    const ToolRun outside(registry, "SurfaceHeight", values, {{"Surface", Support::Surface({{1, 2}})}});
    EXPECT_EQ(outside.Drawn(), std::vector<std::string>{"region3d (100, 1, 0) (2, 2, 1000) 0"});
    const ToolRun nowhere(registry, "SurfaceHeight", nlohmann::json::object(),
                          {{"Surface", Support::Surface({{NullPixel}})}});
    EXPECT_TRUE(nowhere.Drawn().empty());
}

TEST_F(SurfaceHeight, with_its_graphic_switched_off_sends_none)
{
    const ToolRun run(registry, "SurfaceHeight", nlohmann::json::object(), {{"Surface", Support::Surface({{1, 2}})}},
                      {Disabled("Graphic")});
    EXPECT_EQ(run.Value("Mean"), 1.5);
    EXPECT_FALSE(run.Message("Graphic"));
}

TEST_F(SurfaceHeight, of_a_flat_surface_needs_no_region)
{
    const auto flat = Support::Surface({{5, 5}}).BoundingBox({0.5, 0, 5, 1, 0, 0});
    const auto results = MeasureSurface(registry, "SurfaceHeight", nlohmann::json::object(), flat);
    EXPECT_DOUBLE_EQ(ValueOf(results, "Mean"), 5);
}
} // namespace
