#include <Host/JobRunner.h>

#include "HostTestFiles.h"

#include <Host/JobLine.h>

#include <TaVision/TvSurfaceMsg.h>

#include <cmath>
#include <fstream>
#include <numbers>
#include <utility>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

class JobOnScans : public testing::Test
{
protected:
    JobOnScans()
    {
        WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
        WriteSmallScan(folder / "b.tif", {0, 0, 7, 0});
        WriteSmallScan(folder / "none.tif", {0, 0, 0, 0});
    }

    RunResult Run(const std::string& scans, const std::string& tools, const std::string& routes = "")
    {
        WriteBytes(folder / "job.json",
                   R"({"scans": [)" + scans + R"(], "tools": [)" + tools + R"(], "routes": [)" + routes + "]}");
        return RunJob(ReadJob(folder / "job.json"), registry);
    }

    std::string ErrorIn(const std::string& scans, const std::string& tools, const std::string& routes = "")
    {
        const std::string message = ErrorOf([&] { return Run(scans, tools, routes); });
        const std::string file = (folder / "job.json").string() + ": ";
        EXPECT_EQ(message.find(file), 0U) << message;
        return message.substr(std::min(message.size(), file.size()));
    }

    TemporaryFolder folder;
    ToolRegistry registry = RegistryOf({"GoodTools", "FailingTools"});
};

TEST_F(JobOnScans, gives_the_results_of_each_scan_in_turn)
{
    const RunResult run = Run(R"("a.tif", "b.tif")", R"({"type": "SurfaceHeight"})");
    ASSERT_EQ(run.scans.size(), 2U);
    EXPECT_EQ(run.scans[0].name, "a.tif");
    EXPECT_EQ(run.scans[0].width, 2U);
    EXPECT_EQ(run.scans[0].validCount, 4U);
    EXPECT_DOUBLE_EQ(ResultOf(run.scans[0].results, "Mean").value, 3);
    EXPECT_DOUBLE_EQ(ResultOf(run.scans[1].results, "Mean").value, 7);
    EXPECT_DOUBLE_EQ(ResultOf(run.scans[1].results, "ValidShare").value, 25);
}

TEST_F(JobOnScans, tells_an_observer_of_each_scan_with_its_message_results_and_graphics)
{
    registry.AddPlugin(PluginFile("DrawingTools"));
    WriteBytes(folder / "job.json",
               R"({"scans": ["a.tif", "b.tif"], "tools": [{"type": "SurfaceHeight"}, {"type": "Draftsman"}]})");
    std::vector<std::string> names;
    const RunResult run = RunJob(ReadJob(folder / "job.json"), registry, [&](const ExecutedScan& executed) {
        names.push_back(executed.result.name);
        EXPECT_EQ(TvSurfaceMsg_Width(executed.message.Get()), 2U);
        EXPECT_EQ(CountOf(executed.result.results, "Mean"), 1U);
        // That of SurfaceHeight; of the other tool one alone, and two of an array of three, of which one is null. Those
        // switched off and null are none.
        EXPECT_EQ(executed.line.Renderings().size(), 4U);
    });
    EXPECT_EQ(names, (std::vector<std::string>{"a.tif", "b.tif"}));
    EXPECT_EQ(run.scans.size(), 2U);
}

TEST_F(JobOnScans, counts_the_scans_in_their_stamps_from_0)
{
    const RunResult run = Run(R"("a.tif", "a.tif", "a.tif")", R"({"type": "Sender"})");
    EXPECT_EQ(ResultOf(run.scans[0].results, "Sequence").value, 0);
    EXPECT_EQ(ResultOf(run.scans[2].results, "Sequence").value, 2);
}

TEST_F(JobOnScans, takes_reader_options_of_the_job)
{
    const RunResult run =
        Run(R"({"file": "a.tif", "options": {"invalid": 6, "spacing": [1, 1, 2]}})", R"({"type": "SurfaceHeight"})");
    EXPECT_DOUBLE_EQ(ResultOf(run.scans[0].results, "Maximum").value, 6);
    EXPECT_DOUBLE_EQ(ResultOf(run.scans[0].results, "ValidShare").value, 75);
}

TEST_F(JobOnScans, routes_a_measurement_to_a_tool_that_stands_before_its_source)
{
    const RunResult run = Run(R"("a.tif", "none.tif")",
                              R"({"id": "twice", "type": "Doubler"}, {"id": "height", "type": "SurfaceHeight"})",
                              R"({"from": "height/Maximum", "to": "twice/Value"})");
    EXPECT_DOUBLE_EQ(ResultOf(run.scans[0].results, "Twice").value, 12);
    EXPECT_EQ(run.scans[0].results[0].tool, "twice");
    EXPECT_EQ(ResultOf(run.scans[1].results, "Maximum").state, ResultState::Null);
    EXPECT_EQ(ResultOf(run.scans[1].results, "Twice").state, ResultState::Null);
}

TEST_F(JobOnScans, routes_arrays_with_their_nulls_and_empty_ones)
{
    const RunResult run = Run(R"("a.tif")",
                              R"({"id": "s", "type": "Sender"}, {"id": "full", "type": "Doubler"},
                                 {"id": "empty", "type": "Doubler"})",
                              R"({"from": "s/Sequence", "to": "full/Value"}, {"from": "s/List", "to": "full/Values"},
                                 {"from": "s/Nothing", "to": "empty/Value"},
                                 {"from": "s/EmptyList", "to": "empty/Values"})");
    std::vector<Result> full;
    std::vector<Result> empty;
    for (const Result& result : run.scans[0].results)
    {
        (result.tool == "full" ? full : empty).push_back(result);
    }
    EXPECT_EQ(ResultOf(full, "Count").value, 3);
    EXPECT_EQ(ResultOf(full, "Sum").value, 4);
    EXPECT_EQ(ResultOf(empty, "Count").value, 0);
    EXPECT_EQ(ResultOf(empty, "Twice").state, ResultState::Null);
}

TEST_F(JobOnScans, routes_no_data_from_a_disabled_output)
{
    const RunResult run = Run(R"("a.tif")", R"({"id": "s", "type": "Sender"}, {"id": "d", "type": "Doubler"})",
                              R"({"from": "s/Off", "to": "d/Value"})");
    EXPECT_EQ(ResultOf(run.scans[0].results, "Twice").state, ResultState::Null);
}

TEST_F(JobOnScans, routes_a_surface_from_tool_to_tool_instead_of_the_scan)
{
    const RunResult run = Run(R"("a.tif")", R"({"id": "s", "type": "Sender"}, {"id": "h", "type": "SurfaceHeight"})",
                              R"({"from": "s/Copy", "to": "h/Surface"})");
    EXPECT_DOUBLE_EQ(ResultOf(run.scans[0].results, "Maximum").value, 6);
}

TEST_F(JobOnScans, hands_the_scan_to_the_input_that_the_job_names)
{
    const std::string sender = R"({"id": "first", "type": "Sender"},
                                  {"id": "s", "type": "Sender", "input": "Second"})";
    const RunResult run = Run(R"("a.tif", "a.tif")", sender, R"({"from": "first/Copy", "to": "s/Surface"})");
    EXPECT_EQ(run.scans[1].results.back().state, ResultState::Data);
}

struct Case
{
    const char* name;
    const char* scans;
    const char* tools;
    const char* routes;
    const char* says;
};

class Job_that_cannot_run : public JobOnScans, public testing::WithParamInterface<Case>
{
};

TEST_P(Job_that_cannot_run, is_an_error_that_names_its_place)
{
    EXPECT_TRUE(Contains(ErrorIn(GetParam().scans, GetParam().tools, GetParam().routes), GetParam().says));
}

constexpr const char* two = R"({"id": "s", "type": "Sender"}, {"id": "d", "type": "Doubler"})";

INSTANTIATE_TEST_SUITE_P(
    , Job_that_cannot_run,
    testing::Values(
        Case{"unknown_tool", R"("a.tif")", R"({"type": "SurfaceHight"})", "",
             "tools[0].type: there is no tool \"SurfaceHight\". Did you mean \"SurfaceHeight\"? Known here: "},
        Case{"unknown_parameter", R"("a.tif")", R"({"type": "Diary"}, {"type": "Dynamic", "parameters": {"Cout": 1}})",
             "", "tools[1].parameters.Cout: tool Dynamic has no such parameter. Did you mean \"Count\"?"},
        Case{"parameter_type", R"("a.tif")", R"({"type": "Dynamic", "parameters": {"Count": true}})", "",
             "tools[0].parameters.Count: takes a whole number, but was given true. Give it a whole number."},
        Case{"parameter_limit", R"("a.tif")", R"({"type": "Dynamic", "parameters": {"Count": -1}})", "",
             "tools[0].parameters.Count: "},
        Case{"unknown_output", R"("a.tif")", R"({"type": "SurfaceHeight", "outputs": {"Maen": {"limits": [0, 1]}}})",
             "",
             "tools[0].outputs.Maen: tool \"SurfaceHeight\" (SurfaceHeight) has no output \"Maen\". Did you mean "
             "\"Mean\"?"},
        Case{"unknown_scan_input", R"("a.tif")", R"({"type": "SurfaceHeight", "input": "Surfaces"})", "",
             "tools[0].input: tool \"SurfaceHeight\" (SurfaceHeight) has no input \"Surfaces\". Did you mean "
             "\"Surface\"?"},
        Case{"scan_input_of_another_kind", R"("a.tif")", R"({"type": "Sender", "input": "Other"})", "",
             "tools[0].input: input \"Other\" does not take scans."},
        Case{"scan_input_with_a_route", R"("a.tif")",
             R"({"id": "s", "type": "Sender"}, {"id": "h", "type": "SurfaceHeight", "input": "Surface"})",
             R"({"from": "s/Copy", "to": "h/Surface"})", "tools[1].input: input \"Surface\" has a route already."},
        Case{"required_input_without_route", R"("a.tif")", R"({"type": "Doubler"})", "",
             "tools[0]: nothing comes to input \"Value\" of tool \"Doubler\", which it cannot do without. Add a route"},
        Case{"unknown_route_output", R"("a.tif")", two, R"({"from": "s/Sequense", "to": "d/Value"})",
             "routes[0].from: tool \"s\" (Sender) has no output \"Sequense\". Did you mean \"Sequence\"?"},
        Case{"unknown_route_input", R"("a.tif")", two, R"({"from": "s/Sequence", "to": "d/Valu"})",
             "routes[0].to: tool \"d\" (Doubler) has no input \"Valu\". Did you mean \"Value\"? Known here: Value, "
             "Values."},
        Case{"route_of_another_kind", R"("a.tif")", two, R"({"from": "s/Copy", "to": "d/Value"})",
             "routes[0]: the output gives uniform surface, which the input does not take."},
        Case{"route_of_an_array", R"("a.tif")", two, R"({"from": "s/List", "to": "d/Value"})",
             "routes[0]: the output gives arrays of measurement, which the input does not take."},
        Case{"tool_that_fails_to_start", R"("a.tif")", R"({"type": "FailsInStart"})", "",
             "tools[0]: tool \"FailsInStart\" (FailsInStart) failed when it started: this step failed."},
        Case{"bad_reader_options", R"({"file": "a.tif", "options": {"spacng": [1, 1, 1]}})",
             R"({"type": "SurfaceHeight"})", "", "scans[0].options"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(JobOnScans, refuses_a_profile_for_a_tool_of_surfaces)
{
    WriteBytes(folder / "profile.csv", "0 1\n1 2\n2 3\n");
    const std::string message =
        ErrorIn(R"("a.tif", {"file": "profile.csv", "options": {"unit": "mm"}})", R"({"type": "SurfaceHeight"})");
    EXPECT_EQ(message.find("tools[0]: input \"Surface\" of tool \"SurfaceHeight\" does not take this kind of scan, "
                           "uniform profile. Give scans of a kind that it takes (uniform surface, point surface)"),
              0U)
        << message;
}

TEST_F(JobOnScans, names_a_scan_that_is_missing_and_its_place_in_the_job)
{
    const std::string problem = "scans[1]: " + (folder / "missing.tif").string() + ": there is no such file.";
    EXPECT_EQ(ErrorIn(R"("a.tif", "missing.tif")", R"({"type": "SurfaceHeight"})").find(problem), 0U);
    EXPECT_EQ(ErrorIn(R"("a.tif", {"file": "missing.tif"})", R"({"type": "SurfaceHeight"})").find(problem), 0U);
}

TEST_F(JobOnScans, misses_a_scan_before_it_reads_another)
{
    WriteBytes(folder / "text.tif", "no scan at all");
    EXPECT_TRUE(Contains(ErrorIn(R"("text.tif", "missing.tif")", R"({"type": "SurfaceHeight"})"),
                         "missing.tif: there is no such file."));
}

TEST_F(JobOnScans, names_a_scan_that_is_broken)
{
    WriteBytes(folder / "text.tif", "no scan at all");
    WriteBytes(folder / "half.tif", ReadBytes(folder / "a.tif").substr(0, 20));
    WriteBytes(folder / "half.tif.json", R"({"spacing": [1, 1, 1]})");
    for (const char* const name : {"text.tif", "half.tif"})
    {
        const std::string message =
            ErrorOf([&] { return Run(std::string("\"a.tif\", \"") + name + "\"", R"({"type": "SurfaceHeight"})"); });
        EXPECT_EQ(message.find((folder / name).string() + ": "), 0U) << message;
    }
}

TEST_F(JobOnScans, says_when_no_tools_were_found)
{
    registry = ToolRegistry("1.0");
    EXPECT_TRUE(Contains(ErrorIn(R"("a.tif")", R"({"type": "SurfaceHeight"})"),
                         "there is no tool \"SurfaceHeight\". No tools were found: name their folder with --tools."));
}

RunResult RunExample(const std::string& name)
{
    return RunJob(ReadJob(std::filesystem::path(MU_EXAMPLES_DIR) / "Jobs" / name), RegistryOf({}));
}

double ValueIn(const RunResult& run, const std::string& tool, const std::string& output)
{
    const auto& results = run.scans.at(0).results;
    return std::ranges::find_if(results, [&](const Result& r) { return r.tool == tool && r.output == output; })->value;
}

TEST(Example_jobs, find_the_table_where_the_publishers_of_its_cloud_do)
{
    // -0.0161854 x + 0.837724 y + 0.545855 z = 0.528787 m as the camera sees it; turned about x until -z is up, and
    // solved for z: the slopes along x and y, and the place at x = y = 0. They allowed points 30 mm beside it.
    const double slopeX = -0.0161854 / 0.545855;
    const double slopeY = -0.837724 / 0.545855;
    const RunResult run = RunExample("table.json");
    EXPECT_NEAR(ValueIn(run, "table", "XAngle"), std::atan(slopeY) * 180 / std::numbers::pi, 0.5);
    EXPECT_NEAR(ValueIn(run, "table", "YAngle"), std::atan(slopeX) * 180 / std::numbers::pi, 0.5);
    EXPECT_NEAR(ValueIn(run, "table", "ZOffset"), -528.787 / 0.545855, 5);
    EXPECT_TRUE(HasPassed(run));
}

TEST(Example_jobs, find_the_tip_and_the_flank_of_the_tool_where_its_text_has_them)
{
    std::pair<double, double> tip{0, 0};
    std::pair<double, double> flank{1, 0};
    std::ifstream text(ExampleScan("D906-5.txt"));
    for (double x = 0, z = 0; text >> x >> z;)
    {
        tip = z > tip.second ? std::pair(x, z) : tip;
        const bool isInRegion = x >= 0.25 && x <= 0.45 && z >= 2.1 && z <= 2.5;
        flank = isInRegion && x < flank.first ? std::pair(x, z) : flank;
    }
    const RunResult run = RunExample("tooltip.json");
    // A sample is off by up to half a step of 16 bits, 0.01 um.
    EXPECT_NEAR(ValueIn(run, "tip", "X"), tip.first, 1e-5);
    EXPECT_NEAR(ValueIn(run, "tip", "Z"), tip.second, 1e-5);
    EXPECT_NEAR(ValueIn(run, "flank", "X"), flank.first, 1e-5);
    EXPECT_NEAR(ValueIn(run, "flank", "Z"), flank.second, 1e-5);
    EXPECT_TRUE(HasPassed(run));
}
} // namespace
