#include <Host/RegionTeacher.h>

#include <Host/JobRunner.h>

#include "AnchorTestScans.h"

#include <bit>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;
using nlohmann::ordered_json;

constexpr double peakX = 17 * 0.5;
constexpr double peakY = 14 * 0.5;
constexpr double peakZ = 200 * 0.1;

constexpr const char* finder = R"({"id": "finder", "type": "Finder"})";
constexpr const char* drawn = R"({"id": "window", "type": "Window", "parameters": {"Region":
    {"x": 6.1, "y": 5.3, "z": 7.7, "width": 3.4, "length": 2.2, "height": 9, "zAngle": 0}}})";
constexpr const char* anchors = R"({"from": "finder/X", "to": "window/AnchorX"},
    {"from": "finder/Y", "to": "window/AnchorY"}, {"from": "finder/Z", "to": "window/AnchorZ"})";
constexpr const char* turned = R"({"from": "finder/Angle", "to": "window/AnchorZAngle"})";

std::string And(const std::string& a, const std::string& b)
{
    return a + ", " + b;
}

class Teaching : public testing::Test
{
protected:
    Teaching()
    {
        WriteFeatureScan(folder / "a.tif");
        WriteFeatureScan(folder / "moved.tif", 5, -3);
        WriteFeatureScan(folder / "off.tif", 0, 0, {0.123, -4.56, 0.7});
        WriteEmptyScan(folder / "empty.tif");
    }

    void Write(const std::string& tools, const std::string& routes, const std::string& scans = R"("a.tif")")
    {
        WriteBytes(folder / "job.json",
                   R"({"scans": [)" + scans + R"(], "tools": [)" + tools + R"(], "routes": [)" + routes + "]}");
    }

    TaughtJob Teach(const char* scan = "a.tif")
    {
        TaughtJob taught = TeachRegions(folder / "job.json", folder / scan, registry);
        WriteBytes(folder / "job.json", taught.text);
        return taught;
    }

    json Parameters(std::size_t tool)
    {
        return json::parse(ReadBytes(folder / "job.json"))["tools"][tool]["parameters"];
    }

    /// The job, as it now stands, on another scan.
    ScanResult Run(const char* scan)
    {
        Job job = ReadJob(folder / "job.json");
        job.scans = {{folder / scan, {}, {folder / "job.json", "scans[0]"}}};
        return RunJob(job, registry).scans.at(0);
    }

    std::string TeachError(const char* scan = "a.tif")
    {
        const std::string before = ReadBytes(folder / "job.json");
        const std::string message = ErrorOf([&] { return TeachRegions(folder / "job.json", folder / scan, registry); });
        EXPECT_EQ(ReadBytes(folder / "job.json"), before);
        return message;
    }

    std::string Place(const std::string& where) const
    {
        return (folder / "job.json").string() + ": " + where + ": ";
    }

    TemporaryFolder folder;
    ToolRegistry registry = RegistryOf({"AnchoredTools", "GoodTools", "FailingTools"});
};

TEST_F(Teaching, writes_the_regions_relative_to_the_anchors_with_their_transform)
{
    Write(And(finder, drawn), anchors);
    Teach();
    const json region = Parameters(1)["Region"];
    EXPECT_NEAR(region["x"].get<double>(), 6.1 - peakX, 1e-12);
    EXPECT_NEAR(region["y"].get<double>(), 5.3 - peakY, 1e-12);
    EXPECT_NEAR(region["z"].get<double>(), 7.7 - peakZ, 1e-12);
    EXPECT_EQ(region["width"], 3.4);
    EXPECT_EQ(region["length"], 2.2);
    EXPECT_EQ(region["height"], 9);
    EXPECT_EQ(region["zAngle"], 0);
    EXPECT_EQ(region["transformMatrix"],
              (json{1.0, 0.0, 0.0, peakX, 0.0, 1.0, 0.0, peakY, 0.0, 0.0, 1.0, peakZ, 0.0, 0.0, 0.0, 1.0}));
}

void ExpectRegion(const ScanResult& scan, double x, double y, double z)
{
    EXPECT_NEAR(ValueOf(scan, "window", "X"), x, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "window", "Y"), y, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "window", "Z"), z, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "window", "Width"), 3.4, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "window", "Length"), 2.2, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "window", "Height"), 9, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "window", "Angle"), 0, 1e-9);
}

TEST_F(Teaching, lets_a_run_measure_in_the_drawn_region_and_move_it_along)
{
    Write(And(finder, drawn), And(anchors, turned));
    Teach();
    const ScanResult same = Run("a.tif");
    ExpectRegion(same, 6.1, 5.3, 7.7);
    EXPECT_NEAR(ValueOf(same, "window", "Mean"), MeanInBox(6.1, 5.3, 3.4, 2.2), 1e-9);
    const ScanResult moved = Run("moved.tif");
    ExpectRegion(moved, 6.1 + 5 * 0.5, 5.3 - 3 * 0.5, 7.7);
    EXPECT_NEAR(ValueOf(moved, "window", "Mean"), MeanInBox(6.1, 5.3, 3.4, 2.2), 1e-9);
    const ScanResult off = Run("off.tif");
    ExpectRegion(off, 6.1 + 0.123, 5.3 - 4.56, 7.7 + 0.7);
    EXPECT_NEAR(ValueOf(off, "window", "Mean"), MeanInBox(6.1, 5.3, 3.4, 2.2) + 0.7, 1e-9);
}

TEST_F(Teaching, lets_regions_turn_about_the_feature)
{
    WriteTurnedScan(folder / "turned.tif");
    Write(And(finder, drawn), And(anchors, turned));
    Teach();
    // (-2.4, -1.7) from the highest point becomes (1.7, -2.4).
    const ScanResult scan = Run("turned.tif");
    EXPECT_NEAR(ValueOf(scan, "window", "X"), peakX + 1.7, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "window", "Y"), peakY - 2.4, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "window", "Angle"), 90, 1e-9);
    EXPECT_NEAR(ValueOf(scan, "window", "Mean"), MeanInBox(6.1, 5.3, 3.4, 2.2), 1e-9);
}

TEST_F(Teaching, on_a_turned_scan_gives_the_region_of_the_upright_one)
{
    WriteTurnedScan(folder / "turned.tif");
    Write(And(finder, R"({"id": "window", "type": "Window", "parameters": {"Region":
              {"x": 10.2, "y": 4.6, "width": 3.4, "length": 2.2, "height": 9, "zAngle": 90}}})"),
          And(anchors, turned));
    Teach("turned.tif");
    EXPECT_NEAR(Parameters(1)["Region"]["x"].get<double>(), -2.4, 1e-12);
    EXPECT_NEAR(Parameters(1)["Region"]["y"].get<double>(), -1.7, 1e-12);
    EXPECT_NEAR(Parameters(1)["Region"]["zAngle"].get<double>(), 0, 1e-12);
    EXPECT_NEAR(ValueOf(Run("a.tif"), "window", "X"), 6.1, 1e-9);
}

TEST_F(Teaching, places_regions_that_the_job_does_not_give_and_writes_them)
{
    Write(And(finder, R"({"id": "window", "type": "Window", "parameters": {"Number": 3}})"), anchors);
    Teach();
    const json region = Parameters(1)["Region"];
    EXPECT_NEAR(region["x"].get<double>(), 9.75 - peakX, 1e-12);
    EXPECT_NEAR(region["width"].get<double>(), 9.75, 1e-12);
    EXPECT_EQ(Parameters(1)["Number"], 3);
    EXPECT_NEAR(ValueOf(Run("moved.tif"), "window", "X"), 9.75 + 5 * 0.5, 1e-9);
}

TEST_F(Teaching, writes_parameters_into_a_tool_that_had_none_and_leaves_other_tools_alone)
{
    Write(And(finder, And(R"({"id": "window", "type": "TwoWindows"})", R"({"id": "still", "type": "Window",
        "parameters": {"Region": {"x": 3}}})")),
          anchors);
    const TaughtJob taught = Teach();
    EXPECT_NEAR(Parameters(1)["Windows"]["Left"]["x"].get<double>(), 9.75 - peakX, 1e-12);
    EXPECT_NEAR(Parameters(1)["Windows"]["Right"]["y"].get<double>(), 9.75 - peakY, 1e-12);
    EXPECT_FALSE(Parameters(1)["Windows"]["Right"].contains("zAngle"));
    EXPECT_EQ(Parameters(2), (json{{"Region", {{"x", 3}}}}));
    EXPECT_TRUE(Parameters(0).is_null());
    EXPECT_EQ(taught.values.size(), 14U);
}

TEST_F(Teaching, refuses_a_region_that_was_taught_before)
{
    Write(And(finder, drawn), anchors);
    Teach();
    const std::string message = TeachError();
    EXPECT_TRUE(Contains(message, Place("tools[1].parameters.Region.transformMatrix") + "the region was taught before"))
        << message;
    EXPECT_TRUE(Contains(message, "take transformMatrix out")) << message;
    // A feature at the origin moves nothing: such a region may be taught as often as one likes.
    Write(And(finder, R"({"id": "window", "type": "Window", "parameters": {"Region":
        {"x": 6, "transformMatrix": [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}}})"),
          anchors);
    Teach();
    EXPECT_NEAR(Parameters(1)["Region"]["x"].get<double>(), 6 - peakX, 1e-12);
}

TEST_F(Teaching, also_writes_the_placed_regions_of_the_tools_that_anchors_come_from)
{
    // Without them, the first window would be placed anew by the first scan of a run, and the second follow it there.
    Write(R"({"id": "first", "type": "Window"}, {"id": "second", "type": "Window", "parameters": {"Region":
        {"x": 6, "y": 5, "z": 10, "width": 3, "length": 2, "height": 19}}}, {"id": "apart", "type": "Window"})",
          R"({"from": "first/X", "to": "second/AnchorX"})");
    Teach();
    EXPECT_NEAR(Parameters(0)["Region"]["x"].get<double>(), 9.75, 1e-12);
    EXPECT_FALSE(Parameters(0)["Region"].contains("transformMatrix"));
    EXPECT_NEAR(Parameters(1)["Region"]["x"].get<double>(), 6 - 9.75, 1e-12);
    EXPECT_TRUE(Parameters(2).is_null());
}

TEST_F(Teaching, tells_each_value_before_and_after)
{
    Write(And(finder, R"({"id": "window", "type": "Window", "parameters": {"Region": {"x": 6, "y": 7}}})"),
          R"({"from": "finder/X", "to": "window/AnchorX"})");
    const TaughtJob taught = Teach();
    ASSERT_EQ(taught.values.size(), 8U);
    EXPECT_EQ(taught.values[0].tool, "window");
    EXPECT_EQ(taught.values[0].region, "Region");
    EXPECT_EQ(taught.values[0].key, "x");
    EXPECT_EQ(taught.values[0].before, 6);
    EXPECT_EQ(taught.values[0].after, 6 - peakX);
    EXPECT_EQ(taught.values[7].key, "transformMatrix");
    EXPECT_TRUE(taught.values[7].before.is_null());
    const std::string table = TaughtTable(taught);
    EXPECT_TRUE(Contains(table, "tool    region  key"));
    EXPECT_TRUE(Contains(table, "window  Region  x                6       -2.5\n"));
    EXPECT_TRUE(Contains(table, "window  Region  width            -       5.0\n"));
}

TEST_F(Teaching, keeps_everything_else_of_the_job_and_its_order)
{
    const std::string text = R"({
    "tools": [
        {
            "type": "Window",
            "parameters": {
                "Region": { "zAngle": 0, "x": 6.1 },
                "Number": 0.1000000000000000055511151231257827
            },
            "outputs": { "Mean": { "limits": [null, 1e22] } },
            "id": "window"
        },
        { "type": "Finder", "id": "finder" }
    ],
    "routes": [{ "to": "window/AnchorX", "from": "finder/X" }],
    "description": "Größe \"A\"",
    "scans": [{ "file": "a.tif", "options": { "spacing": [0.5, 0.5, 0.1] } }]
})";
    WriteBytes(folder / "job.json", text);
    Teach();
    ordered_json expected = ordered_json::parse(text);
    ordered_json taught = ordered_json::parse(ReadBytes(folder / "job.json"));
    ordered_json& region = taught["tools"][0]["parameters"]["Region"];
    std::vector<std::string> keys;
    for (const auto& [key, value] : region.items())
    {
        keys.push_back(key);
    }
    EXPECT_EQ(keys,
              (std::vector<std::string>{"zAngle", "x", "y", "z", "width", "length", "height", "transformMatrix"}));
    region = expected["tools"][0]["parameters"]["Region"];
    EXPECT_EQ(taught.dump(), expected.dump());
}

TEST_F(Teaching, follows_a_chain_of_anchored_tools)
{
    Write(And(finder, And(R"({"id": "middle", "type": "Window", "parameters": {"Region": {"x": 8, "y": 8}}})", drawn)),
          R"({"from": "finder/X", "to": "middle/AnchorX"}, {"from": "middle/X", "to": "window/AnchorX"})");
    Teach();
    EXPECT_NEAR(Parameters(1)["Region"]["x"].get<double>(), 8 - peakX, 1e-12);
    EXPECT_NEAR(Parameters(2)["Region"]["x"].get<double>(), 6.1 - 8, 1e-12);
    EXPECT_NEAR(ValueOf(Run("moved.tif"), "window", "X"), 6.1 + 5 * 0.5, 1e-9);
}

TEST_F(Teaching, reads_the_scan_with_the_options_that_the_job_gives_for_it)
{
    Write(And(finder, drawn), anchors,
          R"("moved.tif", {"file": "../)" + (folder / "").parent_path().filename().string() +
              R"(/a.tif", "options": {"spacing": [1, 1, 0.1]}})");
    Teach();
    EXPECT_NEAR(Parameters(1)["Region"]["x"].get<double>(), 6.1 - 17, 1e-12);
}

struct Case
{
    const char* name;
    std::string tools;
    std::string routes;
    const char* scan;
    const char* where;
    const char* says;
};

class Teaching_of_a_bad_job : public Teaching, public testing::WithParamInterface<Case>
{
};

TEST_P(Teaching_of_a_bad_job, is_an_error_that_names_its_place)
{
    Write(GetParam().tools, GetParam().routes);
    const std::string message = TeachError(GetParam().scan);
    EXPECT_EQ(message.find(Place(GetParam().where)), 0U) << message;
    EXPECT_TRUE(Contains(message, GetParam().says));
}

INSTANTIATE_TEST_SUITE_P(
    , Teaching_of_a_bad_job,
    testing::Values(
        Case{"no_anchor", And(finder, drawn), R"({"from": "finder/Copy", "to": "window/Surface"})", "a.tif", "routes",
             "no route leads to an anchor"},
        Case{"no_value", And(finder, drawn), anchors, "empty.tif", "routes[0]", "\"finder/X\" gives no value on /"},
        Case{"not_a_number", And(R"({"id": "finder", "type": "Sender"})", drawn),
             R"({"from": "finder/NotANumber", "to": "window/AnchorX"})", "a.tif", "routes[0]",
             "\"finder/NotANumber\" gives no value on /"},
        Case{"switched_off", And(R"({"id": "finder", "type": "Finder", "outputs": {"X": {"enabled": false}}})", drawn),
             anchors, "a.tif", "routes[0]", "/a.tif, so \"window/AnchorX\" cannot be taught. Teach on a scan on which"},
        Case{"tool_that_fails", And(finder, R"({"id": "window", "type": "BrokenWindow", "parameters": {"Region":
                                               {"x": 3}}})"),
             anchors, "a.tif", "tools[1]", "tool \"window\" gives nothing on /"},
        Case{"tool_that_finds_nothing_and_draws_where", And(finder, R"({"id": "window", "type": "SurfacePosition",
                "parameters": {"Region": {"x": 500, "y": 500}}})"),
             anchors, "a.tif", "tools[1]", "tool \"window\" gives nothing on /"},
        Case{"tool_that_fails_in_stop", And(finder, And(drawn, R"({"type": "FailsInStop"})")), anchors, "a.tif",
             "tools[2]", "tool \"FailsInStop\" (FailsInStop) failed when it stopped"},
        Case{"no_region", And(finder, R"({"id": "window", "type": "Follower"})"), anchors, "a.tif", "tools",
             "none of the tools with a routed anchor has a region in use."},
        Case{"region_that_cannot_be_placed", And(finder, R"({"id": "window", "type": "Window"})"), anchors, "empty.tif",
             "tools[1]", "has no data to place them by."},
        Case{"unknown_anchor", And(finder, drawn), R"({"from": "finder/X", "to": "window/AnchorXAngle"})", "a.tif",
             "routes[0].to", "has no input \"AnchorXAngle\"."}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(Teaching, needs_a_job_that_is_a_file_and_a_scan_that_is_there)
{
    Write(And(finder, drawn), anchors);
    EXPECT_TRUE(Contains(TeachError("none.tif"),
                         "command line: SCAN: " + (folder / "none.tif").string() + ": there is no such file."));
    const std::string message = ErrorOf([&] { return TeachRegions(folder / "", folder / "a.tif", registry); });
    EXPECT_TRUE(Contains(message, "this is not a file that can be read."));
}
} // namespace
