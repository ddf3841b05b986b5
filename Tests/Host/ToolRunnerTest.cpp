#include <Host/ToolRunner.h>

#include <Host/ScanMessage.h>

#include "HostTestFiles.h"

#include <Support/CountingAlloc.h>
#include <TaApi/JsonSerializer.h>

#include <cmath>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;

const JobPlace place{"job.json", "tools[0]"};

class ToolRunnerOn : public testing::Test
{
protected:
    std::unique_ptr<ToolRunner> Make(const char* type)
    {
        return std::make_unique<ToolRunner>(*registry.Find(type), "tool", place);
    }

    static std::vector<Result> Execute(ToolRunner& runner, z64u sequence = 0)
    {
        return runner.Execute({{"Surface", {MakeSurfaceMessage(SmallMap(2, {1, 2, 3, 4}), sequence, nullptr)}}});
    }

    static std::string Calls(const ToolRunner& runner)
    {
        return Ta::Properties::JsonSerializer::Serialize(runner.Tool().Params())["Calls"];
    }

    static json Values(const ToolRunner& runner)
    {
        return Ta::Properties::JsonSerializer::Serialize(runner.Tool().Params());
    }

    ToolRegistry registry = RegistryOf({"GoodTools", "FailingTools"});
};

TEST_F(ToolRunnerOn, a_tool_calls_it_in_the_order_of_its_life)
{
    const auto runner = Make("Diary");
    runner->Restore({{"Number", 3}});
    runner->ConfigureOutput({"Value", std::nullopt, true, 1.0, std::nullopt, place});
    runner->Route("Surface", "scan", place);
    runner->Start();
    static_cast<void>(Execute(*runner));
    static_cast<void>(Execute(*runner));
    runner->Stop();
    EXPECT_EQ(Calls(*runner), "allocator@0;init@0;config@0;config@2;limits Value@2;route Surface scan@1;"
                              "start@1;execute@1;execute@0;stop@0;");
}

TEST_F(ToolRunnerOn, a_tool_with_region_values_lets_no_region_take_defaults)
{
    const auto runner = Make("Diary");
    runner->Restore({{"Region", {{"width", 2}}}});
    runner->Route("Surface", "scan", place);
    runner->Start();
    static_cast<void>(Execute(*runner));
    EXPECT_TRUE(Contains(Calls(*runner), "route Surface scan@2;start@0;execute@0;"));
}

TEST_F(ToolRunnerOn, a_tool_that_cannot_be_stopped_may_still_be_dropped)
{
    auto runner = Make("FailsInStop");
    runner->Start();
    EXPECT_NO_THROW(runner.reset());
}

TEST_F(ToolRunnerOn, dynamic_parameters_delivers_keys_once_they_are_there)
{
    const json values = {{"Count", 2},
                         {"Region 1", {{"Points", 1}, {"Point 1", 10}}},
                         {"Region 2", {{"Points", 2}, {"Point 1", 3}, {"Point 2", 0.5}}}};
    const auto runner = Make("Dynamic");
    runner->Restore(values);
    EXPECT_EQ(Values(*runner), values);
    runner->Start();
    EXPECT_EQ(ResultOf(Execute(*runner), "Sum").value, 13.5);
}

struct BadParameters
{
    const char* name;
    const char* values;
    const char* says;
};

class Bad_parameters : public ToolRunnerOn, public testing::WithParamInterface<BadParameters>
{
};

TEST_P(Bad_parameters, are_an_error_that_names_the_path_and_the_remedy)
{
    const auto runner = Make("Dynamic");
    const std::string message = ErrorOf([&] {
        runner->Restore(json::parse(GetParam().values));
        return 0;
    });
    EXPECT_EQ(message.find("job.json: tools[0].parameters."), 0U) << message;
    EXPECT_TRUE(Contains(message, GetParam().says));
}

INSTANTIATE_TEST_SUITE_P(
    , Bad_parameters,
    testing::Values(
        BadParameters{"unknown_key", R"({"Cuont": 1})",
                      ".Cuont: tool Dynamic has no such parameter. Did you mean \"Count\"? Known here: Count."},
        BadParameters{"key_that_never_comes", R"({"Count": 1, "Region 2": {"Points": 1}})",
                      ".Region 2: tool Dynamic has no such parameter. Did you mean \"Region 1\"? Known"},
        BadParameters{"key_that_never_comes_two_levels_down",
                      R"({"Count": 1, "Region 1": {"Points": 1, "Point 2": 3}})",
                      ".Region 1/Point 2: tool Dynamic has no such parameter. Did you mean \"Point 1\"? Known"},
        BadParameters{"wrong_type", R"({"Count": "two"})", ".Count: takes a whole number, but was given \"two\"."},
        BadParameters{"wrong_type_two_levels_down", R"({"Count": 1, "Region 1": {"Points": 1, "Point 1": []}})",
                      ".Region 1/Point 1: takes a number, but was given a list of 0 entries."},
        BadParameters{"above_its_maximum", R"({"Count": 5})", "It was given 5; allowed: minimum 0, maximum 4."},
        BadParameters{"group_as_value", R"({"Count": 1, "Region 1": 3})", ".Region 1: takes an object"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(ToolRunnerOn, every_kind_of_output_tells_what_left)
{
    const auto runner = Make("Sender");
    runner->Start();
    const std::vector<Result> results = Execute(*runner, 41);
    const Result sequence = ResultOf(results, "Sequence");
    EXPECT_EQ(sequence.state, ResultState::Value);
    EXPECT_EQ(sequence.value, 41);
    EXPECT_EQ(sequence.tool, "tool");
    EXPECT_EQ(sequence.toolType, "Sender");
    EXPECT_EQ(ResultOf(results, "Null").state, ResultState::Null);
    EXPECT_EQ(ResultOf(results, "Nothing").state, ResultState::NotSent);
    EXPECT_TRUE(std::isnan(ResultOf(results, "NotANumber").value));
    EXPECT_EQ(ResultOf(results, "Copy").state, ResultState::Data);
    EXPECT_EQ(ResultOf(results, "Copy").dataType, TaPipe::PipeDataType::UniformSurface);
    EXPECT_EQ(ResultOf(results, "EmptyList").state, ResultState::EmptyArray);
    EXPECT_EQ(CountOf(results, "List"), 3U);
    EXPECT_EQ(ResultOf(results, "List", 0).value, 1);
    EXPECT_EQ(ResultOf(results, "List", 0).units, "deg");
    EXPECT_EQ(ResultOf(results, "List", 1).state, ResultState::Null);
    EXPECT_EQ(ResultOf(results, "List", 2).value, 3);
}

TEST_F(ToolRunnerOn, a_disabled_output_gives_no_result)
{
    const auto runner = Make("Sender");
    runner->Start();
    EXPECT_EQ(CountOf(Execute(*runner), "Off"), 0U);
    runner->ConfigureOutput({"Off", true, false, {}, {}, place});
    runner->ConfigureOutput({"Null", false, false, {}, {}, place});
    const std::vector<Result> results = Execute(*runner);
    EXPECT_EQ(ResultOf(results, "Off").value, 1);
    EXPECT_EQ(CountOf(results, "Null"), 0U);
}

struct DecisionCase
{
    const char* name;
    const char* output;
    std::optional<double> lower;
    std::optional<double> upper;
    Decision decision;
};

class Decision_on : public ToolRunnerOn, public testing::WithParamInterface<DecisionCase>
{
};

TEST_P(Decision_on, an_output_follows_its_limits)
{
    const DecisionCase& c = GetParam();
    const auto runner = Make("Sender");
    runner->ConfigureOutput({c.output, std::nullopt, true, c.lower, c.upper, place});
    runner->Start();
    EXPECT_EQ(ResultOf(Execute(*runner, 5), c.output).decision, c.decision);
}

constexpr std::nullopt_t open = std::nullopt;

INSTANTIATE_TEST_SUITE_P(, Decision_on,
                         testing::Values(DecisionCase{"open", "Sequence", open, open, Decision::None},
                                         DecisionCase{"inside", "Sequence", 4, 6, Decision::Pass},
                                         DecisionCase{"on_the_lower_limit", "Sequence", 5, open, Decision::Pass},
                                         DecisionCase{"on_the_upper_limit", "Sequence", open, 5, Decision::Pass},
                                         DecisionCase{"below", "Sequence", 5.5, open, Decision::Fail},
                                         DecisionCase{"above", "Sequence", open, 4.5, Decision::Fail},
                                         DecisionCase{"not_a_number", "NotANumber", open, open, Decision::Fail},
                                         DecisionCase{"null_with_limits", "Null", 0, 1, Decision::Null},
                                         DecisionCase{"null_without_limits", "Null", open, open, Decision::None},
                                         DecisionCase{"not_sent_with_limits", "Nothing", 0, 1, Decision::Null}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(ToolRunnerOn, unknown_names_lists_those_there_are)
{
    const auto runner = Make("Diary");
    EXPECT_TRUE(Contains(ErrorOf([&] {
                             runner->ConfigureOutput({"Valeu", true, false, {}, {}, place});
                             return 0;
                         }),
                         "tool \"tool\" (Diary) has no output \"Valeu\". Did you mean \"Value\"? Known here: Value."));
    EXPECT_TRUE(Contains(ErrorOf([&] {
                             runner->Route("AnchorX", "a/b", place);
                             return 0;
                         }),
                         "tool \"tool\" (Diary) has no input \"AnchorX\". Known here: Surface."));
}

TEST_F(ToolRunnerOn, an_output_that_is_no_measurement_takes_no_limits)
{
    const auto runner = Make("Sender");
    EXPECT_TRUE(Contains(ErrorOf([&] {
                             runner->ConfigureOutput({"Copy", {}, true, 1.0, {}, place});
                             return 0;
                         }),
                         "the output gives uniform surface, which has no limits. Take the limits out."));
}

TEST_F(ToolRunnerOn, a_tool_that_fails_in_execute_gets_null_results)
{
    const auto runner = Make("FailsInExecute");
    runner->Start();
    EXPECT_EQ(ResultOf(Execute(*runner), "Value").state, ResultState::Null);
}

struct FailureCase
{
    const char* type;
    const char* says;
};

class Failing_tool : public ToolRunnerOn, public testing::WithParamInterface<FailureCase>
{
protected:
    void LiveThrough()
    {
        const auto runner = Make(GetParam().type);
        runner->Restore({{"Number", 1}});
        runner->Route("Surface", "scan", place);
        runner->Start();
        static_cast<void>(Execute(*runner));
        runner->Stop();
    }
};

TEST_P(Failing_tool, is_an_error_that_names_tool_and_step)
{
    const std::string message = ErrorOf([&] {
        LiveThrough();
        return 0;
    });
    EXPECT_EQ(message, std::string("job.json: tools[0]: tool \"tool\" (") + GetParam().type + ") failed " +
                           GetParam().says +
                           ": this step failed. Correct the job if the text says how, else mend the tool.");
}

INSTANTIATE_TEST_SUITE_P(, Failing_tool,
                         testing::Values(FailureCase{"FailsInInit", "when it was set up"},
                                         FailureCase{"FailsInConfig", "when it took its parameters over"},
                                         FailureCase{"FailsWhenRouted", "when an input was routed"},
                                         FailureCase{"FailsInStart", "when it started"},
                                         FailureCase{"FailsInStop", "when it stopped"}),
                         [](const auto& test) { return std::string(test.param.type); });

TEST_F(ToolRunnerOn, its_allocator_leaves_nothing_behind)
{
    const Support::CountingAlloc alloc;
    {
        ToolRunner runner(*registry.Find("Sender"), "tool", place, alloc.Get());
        runner.Start();
        static_cast<void>(Execute(runner));
        EXPECT_GT(alloc.LiveBlocks(), 0U);
        runner.Stop();
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}
} // namespace
