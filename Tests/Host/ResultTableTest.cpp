#include <Host/ResultTable.h>

#include "HostTestFiles.h"

#include <Host/TextTable.h>

#include <limits>
#include <sstream>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using TaPipe::PipeDataType;

Result Measured(const char* output, double value, Limits limits, Decision decision)
{
    return {"height",           "SurfaceHeight", output, {},     PipeDataType::Measurement,
            ResultState::Value, value,           "mm",   limits, decision};
}

Result Without(const char* output, ResultState state, PipeDataType type)
{
    return {"height", "SurfaceHeight", output, {}, type, state, 0, "mm", {}, Decision::None};
}

TEST(Result_table, shows_values_with_units_limits_and_decisions)
{
    RunResult run;
    run.scans.push_back({"a.tif", "x/a.tif", 4, 5, 15, {"One.", "Two."}, {}});
    run.scans[0].results = {
        Measured("Mean", 12.3456789, {1, 20}, Decision::Pass), Measured("Maximum", -0.5, {1, {}}, Decision::Fail),
        Measured("Minimum", 1e-7, {{}, 2.5}, Decision::Pass), Measured("Rms", 3, {}, Decision::None)};
    EXPECT_EQ(ResultTable(run, Notes::Count), "scan   tool    output     value      limits     decision\n"
                                              "a.tif  height  Mean     12.3457  mm  1 to 20    pass\n"
                                              "a.tif  height  Maximum     -0.5  mm  from 1     FAIL\n"
                                              "a.tif  height  Minimum    1e-07  mm  up to 2.5  pass\n"
                                              "a.tif  height  Rms            3  mm\n"
                                              "\n"
                                              "a.tif: 4 x 5 samples, 25.0 % without height; 2 notes (--verbose)\n"
                                              "2 passed, 1 failed\n");
}

TEST(Result_table, has_as_many_digits_as_tell_a_value_from_its_limits)
{
    RunResult run;
    run.scans.push_back({"a.tif", "a.tif", 1, 1, 1, {}, {}});
    run.scans[0].results = {Measured("Maximum", -1234.49911, {{}, -1234.4992}, Decision::Fail),
                            Measured("Mean", 12.3456789, {12.3456789, 20}, Decision::Pass)};
    const std::string text = ResultTable(run, Notes::Count);
    EXPECT_NE(text.find("-1234.4991  mm  up to -1234.4992  FAIL\n"), std::string::npos) << text;
    EXPECT_NE(text.find("12.3457  mm  12.3457 to 20"), std::string::npos) << text;
}

TEST(Result_table, tells_points_of_profiles_and_pixels_of_images)
{
    RunResult run;
    run.scans.push_back({"a.csv", "a.csv", 4, 1, 3, {}, {}, PipeDataType::UniformProfile});
    run.scans.push_back({"b.csv", "b.csv", 5, 1, 5, {}, {}, PipeDataType::PointProfile});
    run.scans.push_back({"c.png", "c.png", 3, 2, 6, {}, {}, PipeDataType::Image});
    const std::string text = ResultTable(run, Notes::Count);
    EXPECT_NE(text.find("a.csv: 4 points, 25.0 % without height\n"), std::string::npos) << text;
    EXPECT_NE(text.find("b.csv: 5 points, 0.0 % without height\n"), std::string::npos) << text;
    EXPECT_NE(text.find("c.png: 3 x 2 pixels\n"), std::string::npos) << text;
}

TEST(Result_table, leaves_out_what_is_drawn)
{
    RunResult run;
    run.scans.push_back({"a.tif", "a.tif", 1, 1, 1, {}, {}});
    run.scans[0].results = {Measured("Mean", 12, {}, Decision::None),
                            Without("Graphic", ResultState::Data, PipeDataType::Rendering),
                            Without("Sketch", ResultState::Null, PipeDataType::Rendering)};
    EXPECT_EQ(ResultTable(run, Notes::Count), "scan   tool    output  value\n"
                                              "a.tif  height  Mean       12  mm\n"
                                              "\n"
                                              "a.tif: 1 x 1 samples, 0.0 % without height\n");
}

TEST(Result_table, shows_what_is_no_value_in_words)
{
    RunResult run;
    run.scans.push_back({"a.tif", "a.tif", 1, 1, 1, {}, {}});
    run.scans[0].results = {Without("A", ResultState::Null, PipeDataType::Measurement),
                            Without("B", ResultState::NotSent, PipeDataType::Measurement),
                            Without("C", ResultState::EmptyArray, PipeDataType::Measurement),
                            Without("D", ResultState::Data, PipeDataType::PlaneFeature)};
    run.scans[0].results[0].limits = {1, 2};
    run.scans[0].results[0].decision = Decision::Null;
    run.scans[0].results[1].index = 3;
    EXPECT_EQ(ResultTable(run, Notes::Count), "scan   tool    output          value  limits  decision\n"
                                              "a.tif  height  A                null  1 to 2  null\n"
                                              "a.tif  height  B[3]         not sent\n"
                                              "a.tif  height  C               empty\n"
                                              "a.tif  height  D       plane feature\n"
                                              "\n"
                                              "a.tif: 1 x 1 samples, 0.0 % without height\n"
                                              "0 passed, 0 failed, 1 without a value to decide on\n");
}

TEST(Result_table, shows_the_notes_of_the_reader_on_request)
{
    RunResult run;
    run.scans.push_back({"a.tif", "a.tif", 2, 1, 1, {"Said \x1B[2J the reader."}, {}});
    EXPECT_EQ(ResultTable(run, Notes::Whole), "a.tif: 2 x 1 samples, 50.0 % without height\n"
                                              "  Said ?[2J the reader.\n");
}

TEST(Result_table, stays_within_80_columns_however_long_the_names_are)
{
    RunResult run;
    const std::string name = std::string(100, 'n') + "\xC3\xA4.tif";
    run.scans.push_back({name, name, 1, 1, 1, {}, {}});
    Result result = Measured("Output", -1234.56789, {-12345.6, 12345.6}, Decision::Pass);
    result.tool = std::string(50, 't');
    run.scans[0].results = {result};
    std::istringstream lines(ResultTable(run, Notes::Count));
    std::string line;
    for (int i = 0; i < 2 && std::getline(lines, line); ++i)
    {
        EXPECT_LE(DisplayWidth(line), 80U) << line;
    }
    EXPECT_TRUE(Contains(line, "-1234.57  mm  -12345.6 to 12345.6  pass"));
}

TEST(Run, has_passed_only_if_nothing_failed_or_stayed_undecided)
{
    RunResult run;
    EXPECT_TRUE(HasPassed(run));
    run.scans.emplace_back().results = {Measured("A", 1, {}, Decision::Pass), Measured("B", 1, {}, Decision::None)};
    EXPECT_TRUE(HasPassed(run));
    for (const Decision decision : {Decision::Fail, Decision::Null})
    {
        run.scans[0].results[1].decision = decision;
        EXPECT_FALSE(HasPassed(run));
    }
}
} // namespace
