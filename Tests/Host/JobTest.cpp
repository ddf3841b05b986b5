#include <Host/Job.h>

#include "HostTestFiles.h"

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

class JobFile : public testing::Test
{
protected:
    Job Read(std::string_view text)
    {
        WriteBytes(folder / "job.json", text);
        return ReadJob(folder / "job.json");
    }

    /// The message without the file it begins with.
    std::string ErrorIn(std::string_view text)
    {
        const std::string message = ErrorOf([&] { return Read(text); });
        const std::string file = (folder / "job.json").string() + ": ";
        EXPECT_EQ(message.find(file), 0U) << message;
        return message.substr(std::min(message.size(), file.size()));
    }

    TemporaryFolder folder;
};

TEST_F(JobFile, gives_scans_relative_to_its_folder_with_their_options)
{
    const Job job = Read(R"({"scans": ["a.tif", {"file": "sub/b.tif", "options": {"invalid": 3}}, "/c.x3p"],
                             "tools": [{"type": "T"}]})");
    ASSERT_EQ(job.scans.size(), 3U);
    EXPECT_EQ(job.scans[0].file, folder / "a.tif");
    EXPECT_TRUE(job.scans[0].options.is_null());
    EXPECT_EQ(job.scans[1].file, folder / "sub/b.tif");
    EXPECT_EQ(job.scans[1].options["invalid"], 3);
    EXPECT_EQ(job.scans[1].place.where, "scans[1]");
    EXPECT_EQ(job.scans[2].file, "/c.x3p");
}

TEST_F(JobFile, gives_tools_with_parameters_and_outputs)
{
    const Job job = Read(R"({"scans": ["a"], "tools": [{"type": "T"}, {"id": "t2", "type": "T", "input": "Surface",
        "parameters": {"Region": {"x": 1}},
        "outputs": {"A": {"limits": [1, null]}, "B": {"enabled": false}, "C": {"limits": [null, 2.5]}}}]})");
    ASSERT_EQ(job.tools.size(), 2U);
    EXPECT_EQ(job.tools[0].id, "T");
    EXPECT_EQ(job.tools[0].scanInput, "");
    EXPECT_TRUE(job.tools[0].parameters.is_object());
    const ToolSetup& tool = job.tools[1];
    EXPECT_EQ(tool.id, "t2");
    EXPECT_EQ(tool.scanInput, "Surface");
    EXPECT_EQ(tool.parameters["Region"]["x"], 1);
    ASSERT_EQ(tool.outputs.size(), 3U);
    EXPECT_EQ(tool.outputs[0].lowerLimit, 1);
    EXPECT_EQ(tool.outputs[0].upperLimit, std::nullopt);
    EXPECT_EQ(tool.outputs[1].enabled, false);
    EXPECT_FALSE(tool.outputs[1].hasLimits);
    EXPECT_EQ(tool.outputs[2].enabled, std::nullopt);
    EXPECT_EQ(tool.outputs[2].upperLimit, 2.5);
}

TEST_F(JobFile, gives_routes)
{
    const Job job = Read(R"({"scans": ["a"], "tools": [{"id": "a", "type": "T"}, {"id": "b", "type": "T"}],
                             "routes": [{"from": "a/Mean", "to": "b/Anchor/X"}]})");
    ASSERT_EQ(job.routes.size(), 1U);
    EXPECT_EQ(job.routes[0].from.tool, "a");
    EXPECT_EQ(job.routes[0].from.name, "Mean");
    EXPECT_EQ(job.routes[0].to.name, "Anchor/X");
}

struct Case
{
    const char* name;
    const char* text;
    const char* says;
};

class Bad_job : public JobFile, public testing::WithParamInterface<Case>
{
};

TEST_P(Bad_job, is_an_error_that_names_place_and_remedy)
{
    EXPECT_TRUE(Contains(ErrorIn(GetParam().text), GetParam().says));
}

#define JOB_WITH(tool) R"({"scans": ["a"], "tools": [)" tool "]}"
#define JOB_ROUTED(route) R"({"scans": ["a"], "tools": [{"id": "a", "type": "T"}], "routes": [)" route "]}"

INSTANTIATE_TEST_SUITE_P(
    , Bad_job,
    testing::Values(
        Case{"empty", "", "The document is no JSON"}, Case{"no_json", "{\"scans\": [", "The document is no JSON"},
        Case{"key_twice", R"({"scans": ["a"], "tools": [{"type": "T", "parameters": {"A": 1, "A": 2}}]})",
             "tools[0].parameters.A: the key stands twice in one object. Keep one of the two."},
        Case{"no_object", "[]", "this is array, not an object. Write an object"},
        Case{"no_scans", R"({"tools": [{"type": "T"}]})", "the key \"scans\" is missing. Add \"scans\""},
        Case{"no_tools", R"({"scans": ["a"]})", "the key \"tools\" is missing. Add \"tools\""},
        Case{"scans_empty", R"({"scans": [], "tools": [{"type": "T"}]})", "scans: the list is empty"},
        Case{"tools_empty", R"({"scans": ["a"], "tools": []})", "tools: the list is empty"},
        Case{"unknown_key", R"({"scans": ["a"], "tool": []})",
             "tool: there is no such key. Did you mean \"tools\"? Known here: description, scans, tools, routes."},
        Case{"unknown_tool_key", JOB_WITH(R"({"type": "T", "params": {}})"),
             "tools[0].params: there is no such key. Known here: id, type, input, parameters, outputs."},
        Case{"unknown_output_key", JOB_WITH(R"({"type": "T", "outputs": {"Mean": {"limit": []}}})"),
             "tools[0].outputs.Mean.limit: there is no such key. Did you mean \"limits\"?"},
        Case{"scan_no_text", R"({"scans": [7], "tools": [{"type": "T"}]})", "scans[0]: this is number, not an object"},
        Case{"scan_empty", R"({"scans": [""], "tools": [{"type": "T"}]})", "scans[0]: this is string, not an object"},
        Case{"scan_options", R"({"scans": [{"file": "a", "options": 1}], "tools": [{"type": "T"}]})",
             "scans[0].options: this is number, not an object"},
        Case{"tool_no_type", JOB_WITH(R"({"id": "a"})"), "tools[0]: the key \"type\" is missing"},
        Case{"tool_type_number", JOB_WITH(R"({"type": 3})"), "tools[0].type: this is number, not a text"},
        Case{"tool_type_empty", JOB_WITH(R"({"type": ""})"), "tools[0].type: this is empty, not a text"},
        Case{"id_twice", JOB_WITH(R"({"type": "T"}, {"type": "T"})"),
             "tools[1]: a tool of the id \"T\" stands before it. Give each tool an \"id\" of its own"},
        Case{"id_slash", JOB_WITH(R"({"type": "T", "id": "a/b"})"), "tools[0].id: \"a/b\" cannot name a tool"},
        Case{"id_scan", JOB_WITH(R"({"type": "T", "id": "scan"})"), "tools[0].id: \"scan\" cannot name a tool"},
        Case{"limits_three", JOB_WITH(R"({"type": "T", "outputs": {"M": {"limits": [1, 2, 3]}}})"),
             "tools[0].outputs.M.limits: the list has 3 entries. Write 2 at most"},
        Case{"limits_one", JOB_WITH(R"({"type": "T", "outputs": {"M": {"limits": [1]}}})"),
             "tools[0].outputs.M.limits: this list has 1 entries. Write two, [low, high]"},
        Case{"limits_text", JOB_WITH(R"({"type": "T", "outputs": {"M": {"limits": [1, "2"]}}})"),
             "tools[0].outputs.M.limits[1]: this is string, not a number"},
        Case{"limits_swapped", JOB_WITH(R"({"type": "T", "outputs": {"M": {"limits": [2, 1]}}})"),
             "tools[0].outputs.M: the lower limit 2 is above the upper limit 1"},
        Case{"enabled_text", JOB_WITH(R"({"type": "T", "outputs": {"M": {"enabled": "no"}}})"),
             "tools[0].outputs.M.enabled: this is string. Write true or false"},
        Case{"route_incomplete", JOB_ROUTED(R"({"from": "a/Mean"})"), "routes[0]: the key \"to\" is missing"},
        Case{"route_no_slash", JOB_ROUTED(R"({"from": "a", "to": "a/X"})"),
             "routes[0].from: \"a\" is no output or input of a tool. Write the tool's id, a slash"},
        Case{"route_unknown_tool", JOB_ROUTED(R"({"from": "a/M", "to": "b/X"})"),
             "routes[0].to: the job has no tool \"b\". Known here: a."},
        Case{"route_to_itself", JOB_ROUTED(R"({"from": "a/M", "to": "a/X"})"),
             "routes[0]: tools wait for each other in a circle, or behind one: \"a\"."}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(JobFile, that_is_not_there_is_an_error)
{
    const std::string message = ErrorOf([&] { return ReadJob(folder / "none.json"); });
    EXPECT_EQ(message.find((folder / "none.json").string() + ": there is no such file."), 0U) << message;
}

TEST_F(JobFile, may_be_nested_only_so_deep)
{
    EXPECT_TRUE(Contains(ErrorIn(std::string(100000, '[')), "nested more than 64 deep"));
}

TEST_F(JobFile, may_have_only_so_many_tools)
{
    std::string tools;
    for (int i = 0; i < 251; ++i)
    {
        tools += std::string(i == 0 ? "" : ",") + R"({"type": "T", "id": "t)" + std::to_string(i) + "\"}";
    }
    EXPECT_TRUE(Contains(ErrorIn(R"({"scans": ["a"], "tools": [)" + tools + "]}"),
                         "tools: the list has 251 entries. Write 250 at most"));
}

TEST_F(JobFile, with_two_routes_to_one_input_is_an_error)
{
    EXPECT_TRUE(Contains(ErrorIn(R"({"scans": ["a"], "tools": [{"id": "a", "type": "T"}, {"id": "b", "type": "T"}],
                                     "routes": [{"from": "a/M", "to": "b/X"}, {"from": "a/N", "to": "b/X"}]})"),
                         "routes[1].to: \"b/X\" has a route already. Keep one of the two"));
}

Job JobOfRoutes(std::size_t toolCount, const std::vector<std::pair<int, int>>& routes)
{
    Job job;
    for (std::size_t i = 0; i < toolCount; ++i)
    {
        job.tools.emplace_back().id = std::to_string(i);
    }
    for (const auto& [from, to] : routes)
    {
        job.routes.push_back({{std::to_string(from), "M"}, {std::to_string(to), "X"}, {"job.json", "routes[0]"}});
    }
    return job;
}

TEST(Execution_order, is_that_of_the_job_where_routes_allow_it)
{
    EXPECT_EQ(ExecutionOrder(JobOfRoutes(3, {})), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(ExecutionOrder(JobOfRoutes(4, {{3, 0}, {2, 3}})), (std::vector<std::size_t>{1, 2, 3, 0}));
    EXPECT_EQ(ExecutionOrder(JobOfRoutes(3, {{0, 2}, {1, 2}, {0, 1}})), (std::vector<std::size_t>{0, 1, 2}));
}

TEST(Execution_order, of_a_circle_is_an_error_that_names_its_tools)
{
    const std::string message = ErrorOf([] { return ExecutionOrder(JobOfRoutes(4, {{0, 1}, {1, 2}, {2, 1}})); });
    EXPECT_TRUE(Contains(message, "in a circle, or behind one: \"1\", \"2\". "));
    EXPECT_TRUE(Contains(message, "Take one of the routes between them away"));
}
} // namespace
