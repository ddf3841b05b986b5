#include <Host/CommandLineJob.h>

#include "HostTestFiles.h"

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;

struct ParameterCase
{
    const char* name;
    std::vector<std::string> words;
    const char* parameters;
};

class Parameter_words : public testing::TestWithParam<ParameterCase>
{
};

TEST_P(Parameter_words, become_the_parameters_of_the_tool)
{
    const Job job = MakeJob({"T", {"a.tif"}, GetParam().words, {}});
    EXPECT_EQ(job.tools.at(0).parameters, json::parse(GetParam().parameters));
}

INSTANTIATE_TEST_SUITE_P(
    , Parameter_words,
    testing::Values(ParameterCase{"none", {}, "{}"}, ParameterCase{"number", {"A=1.5"}, R"({"A": 1.5})"},
                    ParameterCase{"flag", {"A=true"}, R"({"A": true})"},
                    ParameterCase{"text", {"A=north side"}, R"({"A": "north side"})"},
                    ParameterCase{"text_of_digits", {"A=\"7\""}, R"({"A": "7"})"},
                    ParameterCase{"empty_text", {"A="}, R"({"A": ""})"},
                    ParameterCase{"text_with_equals", {"A=b=c"}, R"({"A": "b=c"})"},
                    ParameterCase{"list", {"A=[1,2]"}, R"({"A": [1, 2]})"},
                    ParameterCase{"groups", {"R/x=1", "R/S/y=2"}, R"({"R": {"x": 1, "S": {"y": 2}}})"}),
    [](const auto& test) { return std::string(test.param.name); });

struct LimitsCase
{
    const char* name;
    const char* word;
    std::optional<double> lower;
    std::optional<double> upper;
};

class Limit_words : public testing::TestWithParam<LimitsCase>
{
};

TEST_P(Limit_words, become_limits_of_an_output)
{
    const Job job = MakeJob({"T", {"a.tif"}, {}, {GetParam().word}});
    const OutputSetup& output = job.tools.at(0).outputs.at(0);
    EXPECT_EQ(output.id, "Mean");
    EXPECT_TRUE(output.hasLimits);
    EXPECT_EQ(output.lowerLimit, GetParam().lower);
    EXPECT_EQ(output.upperLimit, GetParam().upper);
}

INSTANTIATE_TEST_SUITE_P(, Limit_words,
                         testing::Values(LimitsCase{"both", "Mean=-1.5:2e3", -1.5, 2000},
                                         LimitsCase{"lower", "Mean=1:", 1, std::nullopt},
                                         LimitsCase{"upper", "Mean=:1", std::nullopt, 1},
                                         LimitsCase{"none", "Mean=:", std::nullopt, std::nullopt}),
                         [](const auto& test) { return std::string(test.param.name); });

struct BadCase
{
    const char* name;
    std::vector<std::string> parameters;
    std::vector<std::string> limits;
    const char* says;
};

class Bad_words : public testing::TestWithParam<BadCase>
{
};

TEST_P(Bad_words, are_an_error_that_names_the_option_and_the_form)
{
    const std::string message = ErrorOf([] {
        return MakeJob({"T", {"a.tif"}, GetParam().parameters, GetParam().limits});
    });
    EXPECT_EQ(message.find("command line: "), 0U);
    EXPECT_TRUE(Contains(message, GetParam().says));
}

INSTANTIATE_TEST_SUITE_P(
    , Bad_words,
    testing::Values(BadCase{"no_value", {"A"}, {}, "--param: \"A\" is incomplete. Write it as Key=Value."},
                    BadCase{"no_key", {"=1"}, {}, "--param: \"=1\" is incomplete."},
                    BadCase{"empty_group", {"A//b=1"}, {}, "--param: \"A//b\" is no key of a parameter."},
                    BadCase{"value_as_group", {"A=1", "A/b=2"}, {}, "--param: \"A/b\" is no key of a parameter."},
                    BadCase{"key_twice", {"A=1", "B=1", "A=2"}, {}, "--param: \"A\" is given twice. Give each key one"},
                    BadCase{"key_in_a_group_twice", {"A/b=1", "A/b=1"}, {}, "--param: \"A/b\" is given twice."},
                    BadCase{"group_as_value", {"A/b=1", "A=1"}, {}, "--param: \"A\" is given twice."},
                    BadCase{"output_twice",
                            {},
                            {"Mean=1:2", "Mean=1:"},
                            "--limits: output \"Mean\" is given limits twice. Give them once."},
                    BadCase{
                        "no_limits", {}, {"Mean"}, "--limits: \"Mean\" is incomplete. Write it as Output=low:high."},
                    BadCase{"no_colon", {}, {"Mean=3"}, "--limits: \"Mean=3\" has no limits."},
                    BadCase{"no_number", {}, {"Mean=1:x"}, "--limits: \"x\" is no number."},
                    BadCase{"not_finite", {}, {"Mean=nan:1"}, "--limits: \"nan\" is no number."},
                    BadCase{"swapped", {}, {"Mean=2:1"}, "--limits: the lower limit 2 is above the upper limit 1."}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Parameter_word, cannot_nest_without_bound)
{
    std::string deep;
    for (int i = 0; i < 33; ++i)
    {
        deep += "a/";
    }
    EXPECT_TRUE(Contains(ErrorOf([&] { return MakeJob({"T", {}, {deep + "a=1"}, {}}); }), "is no key of a parameter"));
}
} // namespace
