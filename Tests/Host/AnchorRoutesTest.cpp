#include <Host/JobLine.h>
#include <Host/JobRunner.h>
#include <Host/ScanMessage.h>
#include <Host/ScanReader.h>
#include <Host/ToolRunner.h>

#include "AnchorTestScans.h"

#include <Support/Builders.h>
#include <TaApi/JsonSerializer.h>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;
using Ta::Properties::JsonSerializer;

constexpr const char* anchorsXY = R"({"from": "finder/X", "to": "window/AnchorX"},
                                     {"from": "finder/Y", "to": "window/AnchorY"})";

class AnchoredJob : public testing::Test
{
protected:
    AnchoredJob()
    {
        WriteFeatureScan(folder / "a.tif");
        WriteFeatureScan(folder / "moved.tif", 4, -2);
        WriteEmptyScan(folder / "empty.tif");
    }

    std::filesystem::path Write(const std::string& scans, const std::string& tools, const std::string& routes)
    {
        WriteBytes(folder / "job.json",
                   R"({"scans": [)" + scans + R"(], "tools": [)" + tools + R"(], "routes": [)" + routes + "]}");
        return folder / "job.json";
    }

    RunResult Run(const std::string& scans, const std::string& tools, const std::string& routes)
    {
        return RunJob(ReadJob(Write(scans, tools, routes)), registry);
    }

    TemporaryFolder folder;
    ToolRegistry registry = RegistryOf({"AnchoredTools", "GoodTools"});
};

TEST_F(AnchoredJob, measures_in_regions_relative_to_the_feature_that_another_tool_finds)
{
    // The window stands before its source: the order of execution follows the routes.
    const RunResult run = Run(R"("a.tif", "moved.tif")",
                              R"({"id": "window", "type": "Window", "parameters": {"Region": {"x": -2, "y": 1}}},
                                 {"id": "finder", "type": "Finder"})",
                              anchorsXY);
    EXPECT_NEAR(ValueOf(run.scans[0], "window", "X"), 17 * 0.5 - 2, 1e-12);
    EXPECT_NEAR(ValueOf(run.scans[0], "window", "Y"), 14 * 0.5 + 1, 1e-12);
    EXPECT_NEAR(ValueOf(run.scans[1], "window", "X"), 21 * 0.5 - 2, 1e-12);
    EXPECT_NEAR(ValueOf(run.scans[1], "window", "Y"), 12 * 0.5 + 1, 1e-12);
}

TEST_F(AnchoredJob, gives_nulls_where_nothing_is_found_and_goes_on_with_the_next_scan)
{
    const RunResult run = Run(R"("a.tif", "empty.tif", "moved.tif")",
                              R"({"id": "window", "type": "Window", "parameters": {"Region": {"x": -2, "y": 1}}},
                                 {"id": "finder", "type": "Finder"})",
                              anchorsXY);
    EXPECT_EQ(StateOf(run.scans[1], "finder", "X"), ResultState::Null);
    for (const char* const output : {"X", "Y", "Z", "Width", "Length", "Height", "Angle", "Mean"})
    {
        EXPECT_EQ(StateOf(run.scans[1], "window", output), ResultState::Null) << output;
    }
    EXPECT_NEAR(ValueOf(run.scans[2], "window", "X"), 21 * 0.5 - 2, 1e-12);
}

TEST_F(AnchoredJob, without_region_values_follows_from_where_the_first_scan_places_the_regions)
{
    const RunResult run = Run(R"("a.tif", "moved.tif", "a.tif")",
                              R"({"id": "window", "type": "Window"}, {"id": "finder", "type": "Finder"})", anchorsXY);
    // The middle half of 19.5 mm by 19.5 mm.
    for (const std::size_t scan : {0U, 2U})
    {
        EXPECT_NEAR(ValueOf(run.scans[scan], "window", "X"), 9.75, 1e-12);
        EXPECT_NEAR(ValueOf(run.scans[scan], "window", "Y"), 9.75, 1e-12);
        EXPECT_NEAR(ValueOf(run.scans[scan], "window", "Width"), 9.75, 1e-12);
    }
    EXPECT_NEAR(ValueOf(run.scans[1], "window", "X"), 9.75 + 4 * 0.5, 1e-12);
    EXPECT_NEAR(ValueOf(run.scans[1], "window", "Y"), 9.75 - 2 * 0.5, 1e-12);
    EXPECT_NEAR(ValueOf(run.scans[1], "window", "Mean"), MeanInBox(9.75, 9.75, 9.75, 9.75), 1e-9);
}

TEST_F(AnchoredJob, without_region_values_passes_over_scans_without_heights)
{
    const RunResult run = Run(R"("empty.tif", "empty.tif", "a.tif", "moved.tif")",
                              R"({"id": "window", "type": "Window"}, {"id": "finder", "type": "Finder"})", anchorsXY);
    EXPECT_EQ(StateOf(run.scans[1], "window", "X"), ResultState::Null);
    EXPECT_NEAR(ValueOf(run.scans[2], "window", "X"), 9.75, 1e-12);
    EXPECT_NEAR(ValueOf(run.scans[3], "window", "X"), 9.75 + 4 * 0.5, 1e-12);
}

TEST_F(AnchoredJob, that_gives_no_more_than_a_transform_places_its_regions_by_the_first_scan)
{
    const RunResult run = Run(R"("a.tif")",
                              R"({"id": "window", "type": "Window", "parameters": {"Region": {"transformMatrix": []}}},
                                 {"id": "finder", "type": "Finder"})",
                              anchorsXY);
    EXPECT_NEAR(ValueOf(run.scans[0], "window", "X"), 9.75, 1e-12);
}

TEST_F(AnchoredJob, puts_data_before_measurements_in_the_input_set)
{
    const std::string tools = R"({"id": "finder", "type": "Finder"}, {"id": "follower", "type": "Follower"})";
    const std::string anchor = R"({"from": "finder/X", "to": "follower/AnchorX"})";
    EXPECT_EQ(ValueOf(Run(R"("a.tif")", tools, anchor).scans[0], "follower", "Before"), 0);
    EXPECT_EQ(
        ValueOf(Run(R"("a.tif")", tools, anchor + R"(, {"from": "finder/Copy", "to": "follower/Surface"})").scans[0],
                "follower", "Before"),
        0);
}

struct Case
{
    const char* name;
    const char* region;
    const char* routes;
    const char* says;
};

class Bad_anchored_job : public AnchoredJob, public testing::WithParamInterface<Case>
{
};

TEST_P(Bad_anchored_job, is_an_error_that_names_its_place)
{
    const std::string tools = std::string(R"({"id": "finder", "type": "Finder"}, {"id": "other", "type": "Window"},
                                             {"id": "window", "type": "Window", "parameters": {"Region": )") +
                              GetParam().region + "}}";
    const std::string message = ErrorOf([&] { return Run(R"("a.tif")", tools, GetParam().routes); });
    EXPECT_EQ(message.find((folder / "job.json").string() + ": " + GetParam().says), 0U) << message;
}

#define TWELVE "1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0"

INSTANTIATE_TEST_SUITE_P(
    , Bad_anchored_job,
    testing::Values(
        Case{"two_routes_to_one_anchor", "{}",
             R"({"from": "finder/X", "to": "window/AnchorX"}, {"from": "finder/Y", "to": "window/AnchorX"})",
             "routes[1].to: \"window/AnchorX\" has a route already. Keep one of the two."},
        Case{"circle_through_anchors", "{}",
             R"({"from": "other/X", "to": "window/AnchorX"}, {"from": "window/Y", "to": "other/AnchorY"})",
             "routes[0]: tools wait for each other in a circle, or behind one: \"other\", \"window\"."},
        Case{"circle_of_one", "{}", R"({"from": "window/X", "to": "window/AnchorX"})",
             "routes[0]: tools wait for each other in a circle, or behind one: \"window\"."},
        Case{"surface_to_an_anchor", "{}", R"({"from": "finder/Copy", "to": "window/AnchorX"})",
             "routes[0]: the output gives uniform surface, which the input does not take."},
        Case{"array_to_an_anchor", "{}", R"({"from": "finder/List", "to": "window/AnchorX"})",
             "routes[0]: the output gives arrays of measurement, which the input does not take."},
        Case{"anchor_that_the_tool_does_not_have", "{}", R"({"from": "finder/X", "to": "window/AnchorXAngle"})",
             "routes[0].to: tool \"window\" (Window) has no input \"AnchorXAngle\". Did you mean \"AnchorZAngle\"?"},
        Case{"transform_too_short", R"({"transformMatrix": [)" TWELVE "]}", "",
             "tools[2].parameters.Region/transformMatrix: the list has 12 entries. Write the 16 numbers"},
        Case{"transform_too_long", R"({"transformMatrix": [)" TWELVE ", 0, 0, 0, 1, 0]}", "",
             "tools[2].parameters.Region/transformMatrix: the list has 17 entries."},
        Case{"transform_of_texts", R"({"transformMatrix": [)" TWELVE ", 0, 0, \"NaN\", 1]}", "",
             "tools[2].parameters.Region/transformMatrix[14]: this is no number."},
        Case{"transform_that_is_no_list", R"({"transformMatrix": {"xx": 1}})", "",
             "tools[2].parameters.Region/transformMatrix: this is object, not a list of numbers."},
        Case{"transform_null", R"({"transformMatrix": null})", "",
             "tools[2].parameters.Region/transformMatrix: this is null, not a list of numbers."}),
    [](const auto& test) { return std::string(test.param.name); });

const JobPlace place{"job.json", "tools[0]"};

/// Drives one tool by hand.
class Region_placed_by_data : public testing::Test
{
protected:
    Region_placed_by_data()
    {
        runner.Route("Surface", "a/Copy", place);
        runner.Route("AnchorX", "a/X", place);
        runner.Start();
    }

    std::vector<Result> Execute(const Ta::Object<void*>& surface, const Ta::Object<void*>& x)
    {
        return runner.Execute({{"Surface", {surface}}, {"AnchorX", {x}}});
    }

    // 3 by 3 samples at 0.5 mm by 0.25 mm from (10, 20) on: centre 10.5, 20.25; the smaller side has 0.5 mm.
    const Ta::Object<void*> data = MakeSurfaceMessage(SmallMap(3, {1, 2, 3, 4, 5, 6, 7, 8, 9}), 0, nullptr);
    const Ta::Object<void*> none;
    ToolRegistry registry = RegistryOf({"AnchoredTools"});
    ToolRunner runner{*registry.Find("TwoWindows"), "tool", place};
};

TEST_F(Region_placed_by_data, ignores_an_anchor_that_came_before_the_data)
{
    static_cast<void>(Execute(none, Support::Measure(100)));
    EXPECT_TRUE(runner.TakesDefaults());
    EXPECT_NEAR(ResultOf(Execute(data, Support::Measure(3)), "X").value, 10.5, 1e-12);
    EXPECT_FALSE(runner.TakesDefaults());
    EXPECT_NEAR(ResultOf(Execute(data, Support::Measure(5)), "X").value, 12.5, 1e-12);
}

TEST_F(Region_placed_by_data, stays_when_the_first_data_has_no_anchor)
{
    EXPECT_EQ(ResultOf(Execute(data, none), "X").state, ResultState::Null);
    EXPECT_FALSE(runner.TakesDefaults());
    EXPECT_NEAR(ResultOf(Execute(data, Support::Measure(5)), "X").value, 10.5, 1e-12);
    EXPECT_NEAR(ResultOf(Execute(data, Support::Measure(4)), "X").value, 9.5, 1e-12);
}

TEST_F(Region_placed_by_data, is_not_placed_by_a_surface_without_bounding_box)
{
    const Ta::Object<void*> boxless = Support::Surface({{1, 2}, {3, 4}});
    static_cast<void>(Execute(boxless, Support::Measure(1)));
    EXPECT_TRUE(runner.TakesDefaults());
}

TEST(Required_data_that_is_missing, leaves_regions_to_be_placed)
{
    const ToolRegistry registry = RegistryOf({"AnchoredTools", "GoodTools"});
    ToolRunner runner(*registry.Find("Window"), "tool", place);
    runner.Route("Surface", "scan", place);
    runner.Start();
    static_cast<void>(runner.Execute({{"Surface", {Ta::Object<void*>()}}}));
    EXPECT_TRUE(runner.TakesDefaults());
    const auto data = MakeSurfaceMessage(SmallMap(3, {1, 2, 3, 4, 5, 6, 7, 8, 9}), 0, nullptr);
    EXPECT_NEAR(ResultOf(runner.Execute({{"Surface", {data}}}), "X").value, 10.5, 1e-12);
    EXPECT_FALSE(runner.TakesDefaults());
}

TEST_F(AnchoredJob, routed_between_runs_leaves_regions_where_they_are_and_tells_them_relative)
{
    const Job job = ReadJob(Write(R"("a.tif", "moved.tif")",
                                  R"({"id": "window", "type": "Window", "parameters": {"Region": {"x": 6, "y": 5}}},
                                     {"id": "finder", "type": "Finder"})",
                                  anchorsXY));
    JobLine line(job, registry, AnchorRoutes::Later);
    ScanResult scan;
    const auto first = ReadScanData(job.scans[0], 0, scan);
    line.Start();
    scan.results = line.Execute(first);
    EXPECT_EQ(ValueOf(scan, "window", "X"), 6);
    line.Stop();
    line.RouteAnchors();
    line.Start();
    scan.results = line.Execute(first);
    EXPECT_NEAR(ValueOf(scan, "window", "X"), 6, 1e-12);
    scan.results = line.Execute(ReadScanData(job.scans[1], 1, scan));
    EXPECT_NEAR(ValueOf(scan, "window", "X"), 6 + 4 * 0.5, 1e-12);
    line.Stop();
    const json values = JsonSerializer::Serialize(line.RunnerOf("window").Tool().Params());
    EXPECT_NEAR(values["Region"]["x"].get<double>(), 6 - 17 * 0.5, 1e-12);
}

/// The mean place of the heights of a map that `isIn` takes by their place in mm.
template <typename IsIn>
zPoint3d64f MeanOf(const HeightMap& map, const IsIn& isIn)
{
    zPoint3d64f sum{0, 0, 0};
    double count = 0;
    for (std::size_t i = 0; i < map.heights.size(); ++i)
    {
        const zPoint3d64f point{map.offsetMm.x + map.scaleMm.x * static_cast<double>(i % map.width),
                                map.offsetMm.y + map.scaleMm.y * static_cast<double>(i / map.width),
                                map.offsetMm.z + map.scaleMm.z * map.heights[i]};
        if (map.heights[i] != HeightMap::nullHeight && isIn(point))
        {
            sum = {sum.x + point.x, sum.y + point.y, sum.z + point.z};
            ++count;
        }
    }
    return {sum.x / count, sum.y / count, sum.z / count};
}

TEST(Example_of_an_anchored_job, measures_in_the_regions_that_were_drawn_on_its_scan)
{
    const HeightMap map = ReadHeightMap(ExampleScan("cylinder1.tif"));
    const Job job = ReadJob(std::filesystem::path(MU_EXAMPLES_DIR) / "Jobs/cylinder.json");
    const ScanResult scan = RunJob(job, RegistryOf({})).scans.at(0);
    // Nothing of the plate but the top of the cylinder is above 28 mm.
    const zPoint3d64f cylinder = MeanOf(map, [](const zPoint3d64f& point) { return point.z > 28.05; });
    EXPECT_NEAR(ValueOf(scan, "cylinder", "X"), cylinder.x, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "cylinder", "Y"), cylinder.y, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "cylinder", "Z"), cylinder.z, 1e-9);
    // Squares of 14 mm, drawn at (81.5, 90) on the cylinder and at (111.5, 90) on the block.
    const auto inSquare = [](double x, double low, double high) {
        return [x, low, high](const zPoint3d64f& point) {
            return std::abs(point.x - x) <= 7 + 1e-6 && std::abs(point.y - 90) <= 7 + 1e-6 && point.z >= low &&
                   point.z <= high;
        };
    };
    EXPECT_NEAR(ValueOf(scan, "top", "Mean"), MeanOf(map, inSquare(81.5, 29, 33)).z, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "block", "Mean"), MeanOf(map, inSquare(111.5, 17.5, 23.5)).z, 1e-9);
    EXPECT_TRUE(HasPassed({{scan}}));
}
} // namespace
