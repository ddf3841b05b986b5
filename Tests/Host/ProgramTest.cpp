#include <Host/TextTable.h>

#include "AnchorTestScans.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <sstream>

namespace
{
using namespace Mu::Host::Testing;
using Mu::Host::DisplayWidth;
using nlohmann::json;
namespace fs = std::filesystem;

struct Ended
{
    int code = -1;
    std::string out;
    std::string err;
};

/// Runs the program by the shell, with the words of a command line behind its name.
class Program : public testing::Test
{
protected:
    Ended Run(const std::string& words)
    {
        const fs::path err = folder / "err";
        const std::string command =
            "cd '" + (folder / "").string() + "' && '" MU_PROGRAM "' " + words + " 2>'" + err.string() + "'";
        FILE* const pipe = popen(command.c_str(), "r");
        Ended ended;
        std::array<char, 4096> block{};
        for (std::size_t size = 0; (size = fread(block.data(), 1, block.size(), pipe)) > 0;)
        {
            ended.out.append(block.data(), size);
        }
        const int status = pclose(pipe);
        ended.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        ended.err = ReadBytes(err);
        fs::remove(err);
        return ended;
    }

    static std::string Example(const std::string& name)
    {
        return "'" MU_EXAMPLES_DIR "/" + name + "'";
    }

    std::vector<std::string> Files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder / ""))
        {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    static std::string Plugins(const char* name)
    {
        return "--tools '" + fs::path(MU_PLUGINS_DIR).string() + "' " + name;
    }

    TemporaryFolder folder;
};

std::vector<std::string> Lines(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
    {
        lines.push_back(line);
    }
    return lines;
}

TEST_F(Program, lists_the_tools_beside_it)
{
    const Ended ended = Run("list");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
    EXPECT_TRUE(Contains(ended.out, "SurfaceHeight    1.0.0    Height"));
    const Ended asJson = Run("list --json");
    EXPECT_EQ(asJson.code, 0);
    std::vector<std::string> types;
    for (const json& tool : json::parse(asJson.out))
    {
        types.push_back(tool["type"]);
    }
    EXPECT_EQ(types, (std::vector<std::string>{"FeatureDistance", "ProfilePosition", "SurfaceHeight", "SurfacePlane",
                                               "SurfacePosition"}));
}

TEST_F(Program, reports_broken_plugins_and_lists_the_others)
{
    const Ended ended = Run(Plugins("list"));
    EXPECT_EQ(ended.code, 2);
    EXPECT_TRUE(Contains(ended.out, "Dynamic"));
    EXPECT_EQ(Lines(ended.err).size(), 9U) << ended.err;
    for (const std::string& line : Lines(ended.err))
    {
        EXPECT_EQ(line.find("tlk: " MU_PLUGINS_DIR), 0U) << line;
    }
}

TEST_F(Program, inspects_a_tool)
{
    const Ended ended = Run("inspect SurfaceHeight");
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(Contains(ended.out, "\nInputs\n  Surface       required  uniform surface, point surface\n"));
    EXPECT_TRUE(Contains(ended.out, "\nOutputs\n  Minimum       measurement  mm  Minimum\n"));
    const json tool = json::parse(Run("inspect SurfaceHeight --json").out);
    EXPECT_EQ(tool["type"], "SurfaceHeight");
    EXPECT_EQ(tool["inputs"][0]["id"], "Surface");
    EXPECT_EQ(tool["inputs"][0]["optional"], false);
    EXPECT_EQ(tool["outputs"].size(), 7U);
    EXPECT_EQ(tool["outputs"][5]["units"], "%");
    EXPECT_EQ(tool["outputs"][6]["id"], "Graphic");
    EXPECT_EQ(tool["parameters"]["type"], "object");
}

TEST_F(Program, inspects_parameters_with_their_range)
{
    const Ended ended = Run(Plugins("inspect Dynamic"));
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(Contains(ended.out, "\nParameters\n         type     value  range        title\n"
                                    "  Count  integer  0      from 0 to 4  Count\n"));
    const json tool = json::parse(Run(Plugins("inspect Dynamic --json")).out);
    EXPECT_EQ(tool["parameters"]["properties"]["Count"]["maximum"], 4);
    EXPECT_EQ(tool["values"]["Count"], 0);
}

TEST_F(Program, runs_the_job_of_the_plate_and_all_decisions_pass)
{
    const Ended ended = Run("run " + Example("Jobs/plate.json"));
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.err, "");
    EXPECT_TRUE(Contains(ended.out, "Maximum          31.3  mm  30.5 to 31.5  pass\n"));
    EXPECT_TRUE(Contains(ended.out, "4 passed, 0 failed\n"));
    for (const std::string& line : Lines(ended.out))
    {
        EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST_F(Program, runs_the_job_of_the_land_and_all_decisions_pass)
{
    const Ended ended = Run("run --verbose " + Example("Jobs/land.json"));
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_TRUE(Contains(ended.out, "PeakToValley      0.131972  mm  0.1 to 0.15  pass\n"));
    EXPECT_TRUE(Contains(ended.out, "main.xml/Record3/Mask was ignored.\n"));
}

TEST_F(Program, ends_with_1_when_a_decision_fails)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    const Ended ended = Run("run SurfaceHeight a.tif --limits Mean=0:2 --limits Maximum=:6");
    EXPECT_EQ(ended.code, 1) << ended.err;
    EXPECT_TRUE(Contains(ended.out, "0 to 2   FAIL\n"));
    EXPECT_TRUE(Contains(ended.out, "1 passed, 1 failed\n"));
}

TEST_F(Program, ends_with_1_when_there_is_no_value_to_hold_against_limits)
{
    WriteSmallScan(folder / "none.tif", {0, 0, 0, 0});
    EXPECT_EQ(Run("run SurfaceHeight none.tif").code, 0);
    const Ended ended = Run("run SurfaceHeight none.tif --limits Mean=0:2");
    EXPECT_EQ(ended.code, 1);
    EXPECT_TRUE(Contains(ended.out, "0 passed, 0 failed, 1 without a value to decide on\n"));
}

TEST_F(Program, takes_parameters_from_the_command_line)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    const Ended ended = Run(Plugins("run Dynamic a.tif --param Count=1 --param 'Region 1/Points=1' "
                                    "--param 'Region 1/Point 1=2.5' --csv -"));
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(Contains(ended.out, "a.tif,Dynamic,Sum,,value,2.5,,,,\n"));
}

TEST_F(Program, writes_the_same_numbers_as_json_and_csv)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    WriteSmallScan(folder / "b.tif", {0, 3, 4, 9});
    const Ended ended = Run("run SurfaceHeight a.tif b.tif --json r.json --csv r.csv --limits Mean=1:5.5");
    EXPECT_EQ(ended.code, 0) << ended.err;
    const json document = json::parse(ReadBytes(folder / "r.json"));
    const std::vector<std::string> csv = Lines(ReadBytes(folder / "r.csv"));
    ASSERT_EQ(csv.size(), 15U);
    std::size_t line = 1;
    for (const json& scan : document["scans"])
    {
        for (const json& result : scan["results"])
        {
            std::vector<std::string> fields;
            std::istringstream stream(csv.at(line++) + ",");
            for (std::string field; std::getline(stream, field, ',');)
            {
                fields.push_back(field);
            }
            ASSERT_EQ(fields.size(), 10U);
            EXPECT_EQ(fields[0], scan["file"]);
            EXPECT_EQ(fields[2], result["output"]);
            // All but the graphic are numbers.
            ASSERT_EQ(fields[4], fields[2] == "Graphic" ? "data" : "value");
            EXPECT_EQ(fields[5].empty() ? json() : json(std::stod(fields[5])), result.value("value", json()));
            EXPECT_EQ(fields[9], result.value("decision", ""));
        }
    }
    EXPECT_TRUE(document["passed"].get<bool>());
    EXPECT_EQ(document["scans"][1]["results"][2]["value"], 16.0 / 3);
}

TEST_F(Program, shows_json_or_csv_in_place_of_the_table)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    const Ended asJson = Run("run SurfaceHeight a.tif --json -");
    EXPECT_EQ(json::parse(asJson.out)["scans"].size(), 1U);
    const Ended asCsv = Run("run SurfaceHeight a.tif --csv -");
    EXPECT_EQ(Lines(asCsv.out).size(), 8U);
}

TEST_F(Program, draws_a_picture_of_a_scan_with_its_results)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    for (const char* const name : {"out.png", "out.svg", "out.pdf"})
    {
        const Ended ended = Run("run SurfaceHeight a.tif --limits Mean=0:2 --picture " + std::string(name));
        EXPECT_EQ(ended.code, 1) << ended.err;
        EXPECT_TRUE(Contains(ended.out, "FAIL"));
    }
    EXPECT_TRUE(ReadBytes(folder / "out.png").starts_with("\x89PNG"));
    EXPECT_TRUE(ReadBytes(folder / "out.pdf").starts_with("%PDF"));
    const std::string svg = ReadBytes(folder / "out.svg");
    for (const char* const text : {">a.tif<", ">Mean<", ">0 to 2<", ">FAIL<", ">z (mm)<"})
    {
        EXPECT_TRUE(Contains(svg, text));
    }
}

TEST_F(Program, draws_what_tools_send_alone_and_in_arrays)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    const Ended ended = Run(Plugins("run Draftsman a.tif --picture out.svg"));
    EXPECT_EQ(ended.code, 0) << ended.err;
    const std::string svg = ReadBytes(folder / "out.svg");
    EXPECT_TRUE(Contains(svg, ">width 12.5 mm<"));
    EXPECT_TRUE(Contains(svg, ">plane 1<"));
    // The element without numbers is in the array; the output that is switched off would make it two.
    EXPECT_TRUE(Contains(svg, ">not drawn: 1 graphic element with coordinates that are no numbers<"));
}

TEST_F(Program, draws_a_picture_for_each_of_several_scans)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    WriteSmallScan(folder / "b.tif", {1, 2, 3, 7});
    EXPECT_EQ(Run("run SurfaceHeight a.tif b.tif --picture out.svg").code, 0);
    EXPECT_TRUE(Contains(ReadBytes(folder / "out-1-a.svg"), ">a.tif<"));
    EXPECT_TRUE(Contains(ReadBytes(folder / "out-2-b.svg"), ">b.tif<"));
    EXPECT_FALSE(fs::exists(folder / "out.svg"));
}

TEST_F(Program, writes_the_same_picture_again)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    for (const std::string ending : {".png", ".svg", ".pdf"})
    {
        EXPECT_EQ(Run("run SurfaceHeight a.tif --picture first" + ending).code, 0);
        EXPECT_EQ(Run("run SurfaceHeight a.tif --picture second" + ending).code, 0);
        EXPECT_TRUE(ReadBytes(folder / ("first" + ending)) == ReadBytes(folder / ("second" + ending))) << ending;
    }
}

TEST_F(Program, tells_its_version_and_help)
{
    EXPECT_TRUE(Contains(Run("--version").out, "tlk "));
    const Ended help = Run("--help");
    EXPECT_EQ(help.code, 0);
    EXPECT_TRUE(Contains(help.out, "tlk run SurfaceHeight scan.x3p"));
    EXPECT_TRUE(Contains(help.out, "Exit codes: 0"));
    EXPECT_EQ(Run("run --help").code, 0);
}

struct Case
{
    const char* name;
    const char* words;
    const char* says;
};

class Bad_use : public Program, public testing::WithParamInterface<Case>
{
};

TEST_P(Bad_use, ends_with_2_and_one_message_and_writes_nothing)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    WriteBytes(folder / "text.tif", "no scan at all");
    WriteBytes(folder / "half.tif", ReadBytes(folder / "a.tif").substr(0, 30));
    WriteBytes(folder / "half.tif.json", R"({"spacing": [1, 1, 1]})");
    WriteBytes(folder / "text.json", "no job at all");
    WriteBytes(folder / "key.json", R"({"scans": ["a.tif"], "tools": [{"type": "SurfaceHeight", "output": {}}]})");
    WriteBytes(folder / "good.json", R"({"scans": ["a.tif"], "tools": [{"type": "SurfaceHeight"}]})");
    WriteBytes(folder / "off.json", R"({"scans": ["a.tif"], "tools": [{"type": "SurfaceHeight", "outputs":)"
                                    R"( {"Mean": {"enabled": false, "limits": [0, 1]}}}]})");
    WriteBytes(folder / "null.json", R"({"scans": ["a.tif\u0000x"], "tools": [{"type": "SurfaceHeight"}]})");
    const auto before = Files();
    const Ended ended = Run(GetParam().words);
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_TRUE(Contains(ended.err, GetParam().says)) << ended.err;
    EXPECT_EQ(Lines(ended.err).size(), 1U) << ended.err;
    EXPECT_EQ(Files(), before);
}

INSTANTIATE_TEST_SUITE_P(
    , Bad_use,
    testing::Values(
        Case{"missing_folder", "--tools none list", "tlk: none: the folder of tools cannot be read"},
        Case{"unknown_tool", "inspect SurfaceHeigth",
             "tlk: command line: inspect: there is no tool \"SurfaceHeigth\". Did you mean \"SurfaceHeight\"?"},
        Case{"unknown_tool_to_run", "run Surface a.tif", "tlk: command line: run: there is no tool \"Surface\"."},
        Case{"no_scan", "run SurfaceHeight", "tlk: command line: run: there is no scan for the tool."},
        Case{"missing_job", "run none.json --json r.json", "tlk: none.json: there is no such file."},
        Case{"job_no_json", "run text.json --json r.json", "tlk: text.json: The document is no JSON"},
        Case{"job_unknown_key", "run key.json --json r.json",
             "tlk: key.json: tools[0].output: there is no such key. Did you mean \"outputs\"?"},
        Case{"job_with_scans", "run key.json a.tif", "a job tells its scans, parameters and limits itself."},
        Case{"unknown_parameter", "run SurfaceHeight a.tif --param Width=3 --csv r.csv",
             "tlk: command line: SurfaceHeight.parameters.Width: tool SurfaceHeight has no such parameter."},
        Case{"unknown_output", "run SurfaceHeight a.tif --limits Men=1:2",
             "tlk: command line: --limits: tool \"SurfaceHeight\" (SurfaceHeight) has no output \"Men\". Did you mean "
             "\"Mean\"?"},
        Case{"missing_scan", "run SurfaceHeight a.tif none.tif --csv r.csv",
             "tlk: command line: SCAN: none.tif: there is no such file."},
        Case{"scan_of_another_format", "run SurfaceHeight a.tif text.tif --csv r.csv",
             "tlk: text.tif: first bytes: the file begins neither as a TIFF, PNG, X3P, PLY or PCD file nor as a "
             "text with lines of numbers."},
        Case{"truncated_scan", "run SurfaceHeight half.tif --csv r.csv", "tlk: half.tif: "},
        Case{"no_folder_for_results", "run SurfaceHeight a.tif --json none/r.json", "none/r.json: "},
        Case{"result_in_place_of_a_scan", "run SurfaceHeight a.tif --csv a.tif",
             "tlk: command line: run: the results would take the place of \"a.tif\"."},
        Case{"result_in_place_of_a_sidecar", "run SurfaceHeight a.tif --json ./a.tif.json",
             "the results would take the place of \"a.tif.json\"."},
        Case{"result_in_place_of_the_job", "run good.json --json good.json",
             "the results would take the place of \"good.json\"."},
        Case{"results_in_one_file", "run SurfaceHeight a.tif --json r --csv ./r",
             "the results would take the place of \"r\"."},
        Case{"limits_of_an_output_switched_off", "run off.json --csv r.csv",
             "the output has limits and is switched off, so nothing would be decided."},
        Case{"null_in_the_name_of_a_scan", "run null.json",
             "tlk: null.json: scans[0]: the name of the file holds a null character."},
        Case{"parameter_twice", "run SurfaceHeight a.tif --param A=1 --param A=2",
             "tlk: command line: --param: \"A\" is given twice."},
        Case{"teaching_without_an_anchor", "teach good.json a.tif",
             "tlk: good.json: routes: no route leads to an anchor"},
        Case{"teaching_a_folder", "teach . a.tif", "tlk: .: this is not a file that can be read."},
        Case{"teaching_a_job_that_is_not_there", "teach none.json a.tif", "tlk: none.json: there is no such file."},
        Case{"picture_on_the_terminal", "run SurfaceHeight a.tif --picture -",
             "tlk: command line: --picture: a picture cannot go to the terminal."},
        Case{"picture_of_an_unknown_format", "run SurfaceHeight none.tif --picture out.jpg",
             "tlk: command line: --picture: \"out.jpg\" has no ending that names a format of pictures."},
        Case{"picture_in_place_of_a_result", "run SurfaceHeight a.tif --picture r.svg --json ./r.svg",
             "the results would take the place of \"r.svg\"."},
        Case{"pictures_of_a_job_that_fails", "run SurfaceHeight a.tif half.tif --picture out.png", "tlk: half.tif: "},
        Case{"no_folder_for_a_picture", "run SurfaceHeight a.tif --picture none/out.png", "none/out.png: "},
        Case{"two_on_the_terminal", "run SurfaceHeight a.tif --json - --csv -",
             "JSON and CSV cannot both go to the terminal."}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(Program, names_a_word_that_is_no_command)
{
    EXPECT_TRUE(Contains(Run("insect").err, "tlk: command line: there is no command or option \"insect\". Did you mean "
                                            "\"inspect\"? Known here: list, inspect, run, teach."));
    EXPECT_TRUE(Contains(Run("--verson list").err, "--verson"));
    EXPECT_TRUE(Contains(Run("run SurfaceHeight a.tif --colour").err, "--colour"));
    EXPECT_TRUE(Contains(Run("list x").err, "x\n"));
}

TEST_F(Program, inspects_a_region_with_its_units_and_what_is_read_only)
{
    const Ended ended = Run(Plugins("inspect TwoWindows"));
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(Contains(ended.out, "\n  AnchorX       optional  measurement\n"));
    EXPECT_TRUE(Contains(ended.out, "\n  Windows/Left/width             number  5.0"));
    EXPECT_TRUE(Contains(ended.out, "mm                Width (X)\n"));
    EXPECT_TRUE(Contains(ended.out, "\n  Windows/Left/transformMatrix   array   [1.0,0.0"));
    EXPECT_TRUE(Contains(ended.out, "read only"));
    for (const std::string& line : Lines(ended.out))
    {
        EXPECT_LE(DisplayWidth(line), 80U) << line;
    }
}

constexpr const char* anchoredJob = R"({"scans": ["moved.tif"],
    "tools": [{"id": "finder", "type": "Finder"},
              {"id": "window", "type": "Window", "parameters": {"Region": {"x": 6, "y": 5}}}],
    "routes": [{"from": "finder/X", "to": "window/AnchorX"}]})";

TEST_F(Program, teaches_a_job_so_that_it_runs_in_the_drawn_region)
{
    WriteFeatureScan(folder / "a.tif");
    WriteFeatureScan(folder / "moved.tif", 4, 0);
    WriteBytes(folder / "job.json", anchoredJob);
    const Ended taught = Run(Plugins("teach job.json a.tif"));
    EXPECT_EQ(taught.code, 0) << taught.err;
    EXPECT_TRUE(Contains(taught.out, "window  Region  x                6       -2.5\n"));
    EXPECT_TRUE(Contains(taught.out, "\nWritten to job.json: "));
    const Ended run = Run(Plugins("run job.json --csv -"));
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(Contains(run.out, "moved.tif,window,X,,value,8"));
    EXPECT_FALSE(Contains(run.err, "warning"));
}

TEST_F(Program, says_that_a_job_is_taught_where_the_table_of_it_is_lost)
{
    WriteFeatureScan(folder / "a.tif");
    WriteBytes(folder / "job.json", anchoredJob);
    const Ended ended = Run(Plugins("teach job.json a.tif") + " >/dev/full");
    EXPECT_EQ(ended.code, 2);
    EXPECT_TRUE(Contains(ended.err, "job.json is written")) << ended.err;
    EXPECT_TRUE(Contains(ended.err, "Do not teach it again")) << ended.err;
    EXPECT_NE(ReadBytes(folder / "job.json"), anchoredJob);
}

TEST_F(Program, warns_of_a_read_only_value_that_a_user_gives)
{
    WriteFeatureScan(folder / "a.tif");
    const Ended run = Run(Plugins("run Window a.tif --param 'Region/transformMatrix=[]'"));
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(Contains(run.err, "warning: ")) << run.err;
}

TEST_F(Program, does_not_teach_what_it_cannot_write)
{
    WriteFeatureScan(folder / "a.tif");
    // The temporary file beside it would have too long a name.
    const std::string name(250, 'j');
    WriteBytes(folder / name, anchoredJob);
    const Ended ended = Run(Plugins(("teach " + name + " a.tif").c_str()));
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_TRUE(Contains(ended.err, "no file can be made beside it"));
    EXPECT_EQ(ReadBytes(folder / name), anchoredJob);
}

class Bad_words_for : public Program, public testing::WithParamInterface<const char*>
{
};

TEST_P(Bad_words_for, the_program_end_with_2_and_point_to_the_help)
{
    const Ended ended = Run(GetParam());
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_TRUE(Contains(ended.err, "--help"));
}

INSTANTIATE_TEST_SUITE_P(, Bad_words_for,
                         testing::Values("", "walk", "run", "run T a.tif --colour", "inspect", "list x", "teach",
                                         "teach a.json", "teach a b c"),
                         [](const auto& test) { return "case_" + std::to_string(test.index); });

TEST_F(Program, writes_no_result_when_a_later_file_cannot_be_written)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    WriteBytes(folder / "r.csv", "old");
    EXPECT_EQ(Run("run SurfaceHeight a.tif --json none/r.json --csv r.csv").code, 2);
    EXPECT_EQ(ReadBytes(folder / "r.csv"), "old");
}

TEST_F(Program, that_a_tool_ends_says_so_and_does_not_pass)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    const Ended ended = Run(Plugins("run EndsTheProgram a.tif --csv r.csv"));
    EXPECT_EQ(ended.code, 2);
    EXPECT_TRUE(Contains(Lines(ended.err).back(), "a tool ended the program; there are no results."));
    EXPECT_FALSE(fs::exists(folder / "r.csv"));
}

struct FailingCase
{
    const char* type;
    const char* says;
};

class Failing_tool_in : public Program, public testing::WithParamInterface<FailingCase>
{
};

TEST_P(Failing_tool_in, the_program_ends_it_with_2_and_names_the_tool)
{
    WriteSmallScan(folder / "a.tif", {1, 2, 3, 6});
    const std::string words = std::string("run ") + GetParam().type + " a.tif --csv r.csv";
    const Ended ended = Run(Plugins(words.c_str()));
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_TRUE(Contains(Lines(ended.err).back(), GetParam().says));
    EXPECT_TRUE(Contains(Lines(ended.err).back(), GetParam().type));
    EXPECT_FALSE(fs::exists(folder / "r.csv"));
}

INSTANTIATE_TEST_SUITE_P(, Failing_tool_in,
                         testing::Values(FailingCase{"ThrowsException", "the camera is not calibrated"},
                                         FailingCase{"ThrowsInt", "an exception that is no std::exception"},
                                         FailingCase{"FailsInInit", "failed when it was set up: this step failed"},
                                         FailingCase{"FailsInStop", "failed when it stopped: this step failed"}),
                         [](const auto& test) { return std::string(test.param.type); });
} // namespace
