#include "ToolFixture.h"

#include <zApi/zString.h>

#include <array>
#include <cmath>
#include <limits>

namespace
{
using namespace Support;
using TaPipe::PipeDataType;
using TaPipe::ToolOutputInfo;
using Visibility = Mu::Tools::CommonTool::OutputVisibility;

constexpr double NULL_VALUE = -1.7976931348623157e308;
constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr zStamp STAMP{1, 22, 333, 4444};

class Outputs : public ToolFixture
{
protected:
    ToolOutputInfo& AddLimited(const char* id, double lower, double upper)
    {
        ToolOutputInfo& output = tool.AddMeasurementOutput(id, false, AT_END);
        auto& limits = dynamic_cast<TaPipe::OutputMeasurementParams&>(output.Params());
        limits.lowerLimit.Set(lower);
        limits.upperLimit.Set(upper);
        return output;
    }

    [[nodiscard]] void* Sent() const
    {
        EXPECT_EQ(host.deliveries.size(), 1U);
        return host.deliveries.empty() ? nullptr : host.deliveries.front().Message();
    }

    void ExpectRaised(int status, const char* function, const std::function<void()>& body)
    {
        const std::vector<Ta::Exception> raised = RaisedBy(body);
        ASSERT_EQ(raised.size(), 1U);
        EXPECT_EQ(raised[0].Status(), status);
        EXPECT_EQ(raised[0].Function(), std::string("Mu::Tools::CommonTool::") + function);
        EXPECT_STREQ(raised[0].File(), "Libs/MuTlkHelper/MuTlkHelper/CommonTool");
        EXPECT_GT(raised[0].Line(), 0);
    }

    void ExpectRaisedWithoutText(int status, const char* function, const std::function<void()>& body)
    {
        ExpectRaised(status, function, [&] {
            try
            {
                body();
            }
            catch (const Ta::Exception& exception)
            {
                EXPECT_STREQ(exception.Message(), "");
                throw;
            }
        });
    }
};

// --- registry -------------------------------------------------------------------------------------------------------

TEST_F(Outputs, are_found_by_id)
{
    ToolOutputInfo& a = tool.AddOutput("A", AT_END);
    ToolOutputInfo& b = tool.AddMeasurementOutput("B", true, 0);
    EXPECT_EQ(tool.FindOutputById("A"), &a);
    EXPECT_EQ(tool.FindOutputById("B"), &b);
    EXPECT_EQ(tool.FindOutputById("C"), nullptr);
    EXPECT_EQ(tool.FindOutputById(nullptr), nullptr);
    EXPECT_EQ(b.Index(), 0U);
    EXPECT_EQ(a.Index(), 1U);
    EXPECT_EQ(b.DataFormat(), (TaPipe::PipeDataFormat{PipeDataType::Measurement, true}));
    EXPECT_TRUE(a.IsEnabled());
}

TEST_F(Outputs, that_were_added_past_this_class_are_found_too)
{
    struct Past : ProbeTool
    {
        using TaPipe::Tools::CommonTool::AddOutput;
    };
    Past past;
    ToolOutputInfo& output = past.AddOutput("Host", AT_END);
    EXPECT_EQ(static_cast<Mu::Tools::CommonTool&>(past).FindOutputById("Host"), &output);
}

TEST_F(Outputs, of_an_id_added_twice_are_found_as_the_later_one)
{
    tool.AddOutput("A", AT_END);
    ToolOutputInfo& later = tool.AddOutput("A", AT_END);
    EXPECT_EQ(tool.FindOutputById("A"), &later);
}

TEST_F(Outputs, are_no_longer_found_once_removed)
{
    tool.AddOutput("A", AT_END);
    ToolOutputInfo& b = tool.AddOutput("B", AT_END);
    tool.RemoveOutput(0);
    EXPECT_EQ(tool.FindOutputById("A"), nullptr);
    EXPECT_EQ(tool.FindOutputById("B"), &b);
    EXPECT_EQ(tool.OutputCount(), 1U);
    EXPECT_EQ(b.Index(), 0U);
}

TEST_F(Outputs, past_the_end_are_removed_without_effect)
{
    tool.AddOutput("A", AT_END);
    tool.RemoveOutput(1);
    tool.RemoveOutput(AT_END);
    EXPECT_EQ(tool.OutputCount(), 1U);
    EXPECT_NE(tool.FindOutputById("A"), nullptr);
}

TEST_F(Outputs, tell_whether_they_are_enabled)
{
    tool.AddOutput("A", AT_END);
    EXPECT_TRUE(tool.IsOutputEnabled("A"));
    tool.FindOutputById("A")->Enable(false);
    EXPECT_FALSE(tool.IsOutputEnabled("A"));
    ExpectRaisedWithoutText(-999, "IsOutputEnabled", [this] { tool.IsOutputEnabled("B"); });
}

struct VisibilityCase
{
    std::size_t priority;
    Visibility visibility;
    std::size_t stride;
    std::size_t expected;
};

TEST_F(Outputs, keep_their_order_when_their_visibility_changes)
{
    ToolOutputInfo& output = tool.AddOutput("A", AT_END);
    for (const VisibilityCase& c : {VisibilityCase{1005, Visibility::Advanced, 1000, 2005},
                                    {7, Visibility::Rendering, 1000, 1007},
                                    {2999, Visibility::Standard, 1000, 999},
                                    {1000, Visibility::Rendering, 1000, 1000},
                                    {123, Visibility::Advanced, 100, 223}})
    {
        tool.outputVisibilityStride = c.stride;
        output.SetPriority(c.priority);
        tool.SetOutputVisiblity(&output, c.visibility);
        EXPECT_EQ(output.Priority(), c.expected);
    }
}

// --- the format check -----------------------------------------------------------------------------------------------

struct FormatCase
{
    const char* name;
    TaPipe::PipeDataFormat declared;
    TaPipe::PipeDataFormat sent;
    bool ignoreType;
    const char* text; ///< null where the format passes
};

TEST_F(Outputs, are_checked_for_their_format)
{
    using enum PipeDataType;
    const char* const notArrayed = "Tool output format is not arrayed (tool: Probe[Shown]).";
    const char* const notOfType = "Tool output format is not (tool: Probe[Shown]).";
    tool.toolName = "Probe";
    ToolOutputInfo& output = tool.AddOutput("A", AT_END).SetDisplayName("Shown");
    for (const FormatCase& c : {FormatCase{"same", {Image, false}, {Image, false}, false, nullptr},
                                {"arrayed output", {Image, true}, {Image, false}, false, nullptr},
                                {"both arrayed", {Image, true}, {Image, true}, false, nullptr},
                                {"array to single", {Image, false}, {Image, true}, false, notArrayed},
                                {"array to single, type ignored", {Image, false}, {Image, true}, true, notArrayed},
                                {"other type", {Image, false}, {Measurement, false}, false, notOfType},
                                {"other type, ignored", {Image, false}, {Measurement, false}, true, nullptr},
                                {"both wrong", {Image, false}, {Measurement, true}, false, notArrayed}})
    {
        output.SetDataFormat(c.declared.type, c.declared.isArray);
        try
        {
            Access::CheckOutputFormat(tool, &output, c.sent, c.ignoreType);
            EXPECT_EQ(c.text, nullptr) << c.name;
        }
        catch (const Ta::Exception& exception)
        {
            EXPECT_EQ(exception.Status(), -984) << c.name;
            EXPECT_STREQ(exception.Message(), c.text) << c.name;
            EXPECT_STREQ(exception.Function(), "Mu::Tools::CommonTool::CheckOutputFormat");
        }
    }
}

TEST_F(Outputs, that_are_disabled_are_checked_for_their_format_all_the_same)
{
    tool.AddOutput("A", AT_END).SetDataFormat(PipeDataType::Image, false).Enable(false);
    ExpectRaised(-984, "CheckOutputFormat", [this] { tool.SendMeasurement("A", 1.0, false, nullptr); });
    EXPECT_EQ(host.NullOutputs(), std::vector<std::string>{"A"});
}

// --- single measurements --------------------------------------------------------------------------------------------

struct DecisionCase
{
    const char* name;
    double value;
    double lower;
    double upper;
    bool passes;
};

class Decision : public Outputs, public testing::WithParamInterface<DecisionCase>
{
};

TEST_P(Decision, is_made_against_inclusive_limits)
{
    const DecisionCase& c = GetParam();
    ToolOutputInfo& output = AddLimited("A", c.lower, c.upper);
    Run([&] { tool.SendMeasurement(&output, c.value, false, nullptr); });
    ASSERT_TRUE(host.deliveries[0].IsMeasurement());
    EXPECT_EQ(TvMeasureMsg_Status(Sent()), c.passes);
    EXPECT_EQ(host.deliveries[0].sendKind, 1);
}

INSTANTIATE_TEST_SUITE_P(
    , Decision,
    testing::Values(DecisionCase{"inside", 1.5, 1, 2, true}, DecisionCase{"on_the_lower_limit", 1, 1, 2, true},
                    DecisionCase{"on_the_upper_limit", 2, 1, 2, true},
                    DecisionCase{"just_below", std::nextafter(1.0, 0.0), 1, 2, false},
                    DecisionCase{"just_above", std::nextafter(2.0, 3.0), 1, 2, false},
                    DecisionCase{"not_a_number", NOT_A_NUMBER, -10, 10, false},
                    DecisionCase{"infinite", INFINITE, 0, std::numeric_limits<double>::max(), false},
                    DecisionCase{"limits_crossed", 1.5, 2, 1, false}),
    [](const auto& instance) { return instance.param.name; });

TEST_F(Outputs, of_measurements_have_limits_that_pass_every_finite_value)
{
    ToolOutputInfo& output = tool.AddMeasurementOutput("A", false, AT_END);
    for (const double value : {0.0, std::numeric_limits<double>::max(), std::nextafter(NULL_VALUE, 0.0)})
    {
        host.deliveries.clear();
        Run([&] { tool.SendMeasurement(&output, value, false, nullptr); });
        EXPECT_TRUE(TvMeasureMsg_Status(Sent())) << value;
        EXPECT_EQ(TvMeasureMsg_Value(Sent()), value);
    }
}

TEST_F(Outputs, without_limits_pass_every_measurement)
{
    tool.AddOutput("A", AT_END).SetDataFormat(PipeDataType::Measurement, false);
    Run([this] { tool.SendMeasurement("A", NOT_A_NUMBER, false, nullptr); });
    EXPECT_TRUE(TvMeasureMsg_Status(Sent()));
    EXPECT_TRUE(std::isnan(TvMeasureMsg_Value(Sent())));
}

TEST_F(Outputs, get_a_null_measurement_as_a_null_message_without_stamp)
{
    AddLimited("A", 0, 1);
    Run([this] { tool.SendMeasurement("A", NULL_VALUE, false, &STAMP); });
    ASSERT_TRUE(host.deliveries[0].IsNullMessage());
    const zStamp stamp = TvDataMsg_Stamp(Sent());
    EXPECT_EQ(stamp.sequence, zStamp{}.sequence);
    EXPECT_EQ(stamp.time, zStamp{}.time);
}

TEST_F(Outputs, get_the_stamp_of_a_measurement)
{
    AddLimited("A", 0, 1);
    Run([this] { tool.SendMeasurement("A", 0.5, false, &STAMP); });
    const zStamp stamp = TvDataMsg_Stamp(Sent());
    EXPECT_EQ(stamp.sequence, 22U);
    EXPECT_EQ(stamp.time, 333U);
    EXPECT_EQ(stamp.encoder, 4444);
}

TEST_F(Outputs, that_are_disabled_send_nothing)
{
    ToolOutputInfo& output = AddLimited("A", 0, 1);
    output.Enable(false);
    zPoint3d64f position{1, 2, 3};
    Run([&] {
        tool.SendMeasurement("A", 0.5, false, nullptr);
        tool.SendMeasurementInPosition("A", 0.5, position, false, nullptr);
        tool.SendArrayedMeasurements("A", {1, 2});
        tool.SendArrayedMeasurements("A", {});
        std::vector<zPoint3d64f> positions{position};
        tool.SendArrayedMeasurementsInPosition("A", {1}, positions);
        tool.SendMeasurementAll(1);
    });
    EXPECT_TRUE(host.deliveries.empty());
}

TEST_F(Outputs, get_a_measurement_in_position_without_decision)
{
    ToolOutputInfo& output = AddLimited("A", 10, 20);
    zPoint3d64f position{1, 2, 3};
    Run([&] { tool.SendMeasurementInPosition(&output, 0.5, position, false, &STAMP); });
    ASSERT_TRUE(host.deliveries[0].IsMeasurement());
    EXPECT_TRUE(TvMeasureMsg_Status(Sent())) << "outside the limits, which are not looked at";
    const zPoint3d64f label = TvMeasureMsg_LabelPosition(Sent());
    EXPECT_EQ(label.x, 1);
    EXPECT_EQ(label.y, 2);
    EXPECT_EQ(label.z, 3);
    EXPECT_EQ(TvDataMsg_Stamp(Sent()).sequence, 22U);
}

TEST_F(Outputs, get_a_null_measurement_in_position_as_a_null_message_with_stamp)
{
    AddLimited("A", 0, 1);
    zPoint3d64f position{1, 2, 3};
    Run([&] { tool.SendMeasurementInPosition("A", NULL_VALUE, position, false, &STAMP); });
    ASSERT_TRUE(host.deliveries[0].IsNullMessage());
    EXPECT_EQ(TvDataMsg_Stamp(Sent()).sequence, 22U);
}

TEST_F(Outputs, that_are_disabled_are_not_checked_for_their_format_in_position)
{
    tool.AddOutput("A", AT_END).SetDataFormat(PipeDataType::Image, false).Enable(false);
    zPoint3d64f position{};
    Run([&] { tool.SendMeasurementInPosition("A", 1.0, position, false, nullptr); });
    EXPECT_TRUE(host.deliveries.empty());
    tool.FindOutputById("A")->Enable(true);
    ExpectRaised(-984, "CheckOutputFormat",
                 [&] { tool.SendMeasurementInPosition("A", 1.0, position, false, nullptr); });
}

TEST_F(Outputs, make_measurement_messages_by_all_three_ways_of_address)
{
    ToolOutputInfo& output = AddLimited("A", 5, 6);
    for (const Ta::Object<void*>& message :
         {tool.CreateMeasurementMessage(output, 1.5, false), tool.CreateMeasurementMessage("A", 1.5, true),
          tool.CreateMeasurementMessage(std::size_t{0}, 1.5, false)})
    {
        EXPECT_TRUE(xzCastClass_ObjectIs(message.Get(), zTypeOf(TvMeasureMsg)));
        EXPECT_EQ(TvMeasureMsg_Value(message.Get()), 1.5);
        EXPECT_TRUE(TvMeasureMsg_Status(message.Get())) << "no decision is made";
    }
    EXPECT_TRUE(xzCastClass_ObjectIs(tool.CreateMeasurementMessage("A", NULL_VALUE, false).Get(), zTypeOf(TvNullMsg)));
    EXPECT_TRUE(
        xzCastClass_ObjectIs(tool.CreateMeasurementMessage("A", NOT_A_NUMBER, false).Get(), zTypeOf(TvMeasureMsg)));
}

TEST_F(Outputs, make_no_measurement_message_for_another_format)
{
    ToolOutputInfo& image = tool.AddOutput("A", AT_END).SetDataFormat(PipeDataType::Image, false);
    ExpectRaised(-984, "CheckOutputFormat", [&] { tool.CreateMeasurementMessage(image, 1, false); });
}

TEST_F(Outputs, of_measurements_that_are_enabled_all_get_one_value)
{
    AddLimited("A", 10, 20);
    tool.AddOutput("B", AT_END).SetDataFormat(PipeDataType::Image, false);
    AddLimited("C", 10, 20).Enable(false);
    tool.AddMeasurementOutput("D", true, AT_END);
    Run([this] { tool.SendMeasurementAll(0.5); });
    ASSERT_EQ(host.deliveries.size(), 2U);
    EXPECT_EQ(host.deliveries[0].output, "A");
    EXPECT_EQ(host.deliveries[1].output, "D");
    for (const Delivery& delivery : host.deliveries)
    {
        EXPECT_EQ(TvMeasureMsg_Value(delivery.Message()), 0.5);
        EXPECT_TRUE(TvMeasureMsg_Status(delivery.Message())) << "outside the limits, which are not looked at";
    }
}

// --- arrays ---------------------------------------------------------------------------------------------------------

TEST_F(Outputs, get_arrayed_measurements_as_one_unit_with_decisions)
{
    AddLimited("A", 1, 2).SetDataFormat(PipeDataType::Measurement, true);
    Run([this] { tool.SendArrayedMeasurements("A", {1, 3, NULL_VALUE}); });
    ASSERT_EQ(host.deliveries.size(), 1U);
    const Delivery& sent = host.deliveries[0];
    EXPECT_TRUE(sent.isArray);
    ASSERT_EQ(sent.messages.size(), 3U);
    EXPECT_EQ(TvMeasureMsg_Value(sent.messages[0].Get()), 1);
    EXPECT_TRUE(TvMeasureMsg_Status(sent.messages[0].Get()));
    EXPECT_FALSE(TvMeasureMsg_Status(sent.messages[1].Get()));
    EXPECT_TRUE(xzCastClass_ObjectIs(sent.messages[2].Get(), zTypeOf(TvNullMsg)));
}

TEST_F(Outputs, get_arrayed_measurements_in_position)
{
    AddLimited("A", 1, 2).SetDataFormat(PipeDataType::Measurement, true);
    std::vector<zPoint3d64f> positions{{1, 2, 3}, {4, 5, 6}};
    Run([&] { tool.SendArrayedMeasurementsInPosition("A", {7, 8}, positions); });
    ASSERT_EQ(host.deliveries.size(), 1U);
    const Delivery& sent = host.deliveries[0];
    EXPECT_TRUE(sent.isArray);
    ASSERT_EQ(sent.messages.size(), 2U);
    EXPECT_EQ(TvMeasureMsg_Value(sent.messages[1].Get()), 8);
    EXPECT_EQ(TvMeasureMsg_LabelPosition(sent.messages[1].Get()).y, 5);
    EXPECT_TRUE(TvMeasureMsg_Status(sent.messages[1].Get())) << "no decision is made";
}

TEST_F(Outputs, get_an_empty_array_as_a_handle_without_message)
{
    AddLimited("A", 1, 2).SetDataFormat(PipeDataType::Measurement, true);
    std::vector<zPoint3d64f> positions;
    Run([&] { tool.SendArrayedMeasurements("A", {}); });
    Run([&] { tool.SendArrayedMeasurementsInPosition("A", {}, positions); });
    ASSERT_EQ(host.deliveries.size(), 2U);
    for (const Delivery& sent : host.deliveries)
    {
        EXPECT_FALSE(sent.isArray);
        ASSERT_EQ(sent.messages.size(), 1U);
        EXPECT_EQ(sent.messages[0].Get(), nullptr);
    }
}

TEST_F(Outputs, of_another_type_take_an_empty_array_unchecked)
{
    tool.AddOutput("A", AT_END).SetDataFormat(PipeDataType::Image, true);
    Run([this] { tool.SendArrayedMeasurements("A", {}); });
    ASSERT_EQ(host.deliveries.size(), 1U);
    EXPECT_EQ(host.deliveries[0].Message(), nullptr);
    ExpectRaised(-984, "CheckOutputFormat", [this] { tool.SendArrayedMeasurements("A", {1}); });
}

TEST_F(Outputs, of_measurements_all_get_null_for_a_null_value)
{
    AddLimited("A", 10, 20);
    AddLimited("B", 10, 20);
    Run([this] { tool.SendMeasurementAll(NULL_VALUE); });
    EXPECT_EQ(host.NullOutputs(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(host.deliveries.size(), 2U);
}

TEST_F(Outputs, have_no_visibility_with_a_stride_of_0)
{
    ToolOutputInfo& output = tool.AddOutput("A", AT_END);
    tool.outputVisibilityStride = 0;
    ExpectRaised(-997, "SetOutputVisiblity", [&] { tool.SetOutputVisiblity(&output, Visibility::Advanced); });
}

TEST_F(Outputs, with_an_empty_array_or_an_array_count_as_sent)
{
    for (const char* const id : {"A", "B", "C"})
    {
        AddLimited(id, 1, 2).SetDataFormat(PipeDataType::Measurement, true);
    }
    Run([this] {
        tool.SendArrayedMeasurements("A", {});
        tool.SendArrayedMeasurements("B", {1});
        throw 1;
    });
    EXPECT_EQ(host.NullOutputs(), std::vector<std::string>{"C"});
    EXPECT_EQ(host.deliveries.size(), 3U);
}

TEST_F(Outputs, refuse_positions_of_another_number_than_the_measurements)
{
    AddLimited("A", 1, 2);
    std::vector<zPoint3d64f> positions{{1, 2, 3}};
    ExpectRaisedWithoutText(-997, "SendArrayedMeasurementsInPosition", [&] {
        tool.SendArrayedMeasurementsInPosition("A", {1, 2}, positions);
    });
    ExpectRaisedWithoutText(-997, "SendArrayedMeasurementsInPosition",
                            [&] { tool.SendArrayedMeasurementsInPosition("unknown", {}, positions); });
}

TEST_F(Outputs, know_in_the_execution_whether_they_were_sent)
{
    ToolOutputInfo& a = AddLimited("A", 0, 1);
    ToolOutputInfo& b = AddLimited("B", 0, 1);
    Run([&] {
        EXPECT_FALSE(tool.OutputAlreadySent(&a));
        tool.SendMeasurement(&a, 1, false, nullptr);
        tool.SendNull(&b);
        EXPECT_TRUE(tool.OutputAlreadySent(&a));
        EXPECT_TRUE(tool.OutputAlreadySent(&b));
        EXPECT_FALSE(tool.OutputAlreadySent(nullptr));
    });
    Run([&] { EXPECT_FALSE(tool.OutputAlreadySent(&a)); });
}

// --- nulls and texts ------------------------------------------------------------------------------------------------

TEST_F(Outputs, get_null_whether_enabled_or_of_any_format)
{
    ToolOutputInfo& image = tool.AddOutput("A", AT_END).SetDataFormat(PipeDataType::Image, false);
    image.Enable(false);
    Run([&] {
        tool.SendNull(&image);
        tool.SendNull("A");
    });
    ASSERT_EQ(host.deliveries.size(), 2U);
    EXPECT_TRUE(host.deliveries[0].IsNullMessage());
    EXPECT_TRUE(host.deliveries[1].IsNullMessage());
    EXPECT_FALSE(TvDataMsg_HasBoundingBox(host.deliveries[0].Message()));
}

TEST_F(Outputs, of_a_failed_execution_get_null_with_the_box_of_the_input_if_it_is_known)
{
    tool.AddOutput("A", AT_END);
    Run([] { throw 1; });
    EXPECT_FALSE(TvDataMsg_HasBoundingBox(Sent()));
    host.deliveries.clear();
    tool.inputBoundingBox = {1, 2, 3, 4, 5, 6};
    Run([] { throw 1; });
    ASSERT_TRUE(TvDataMsg_HasBoundingBox(Sent()));
    EXPECT_EQ(TvDataMsg_BoundingBox(Sent()).x, 1);
    EXPECT_EQ(TvDataMsg_BoundingBox(Sent()).height, 6);
}

TEST_F(Outputs, that_are_disabled_or_arrayed_get_one_null_message_after_a_failure)
{
    tool.AddMeasurementOutput("A", true, AT_END);
    tool.AddMeasurementOutput("B", false, AT_END).Enable(false);
    Run([] { throw 1; });
    EXPECT_EQ(host.NullOutputs(), (std::vector<std::string>{"A", "B"}));
    EXPECT_FALSE(host.deliveries[0].isArray);
}

TEST_F(Outputs, get_a_text_with_its_terminator)
{
    tool.AddOutput("A", AT_END);
    std::array<char, 4> text{'a', 'b', 'c', '\0'};
    std::array<char, 1> empty{'\0'};
    Run([&] { tool.SendString(0, text.data()); });
    Run([&] { tool.SendString(0, empty.data()); });
    ASSERT_EQ(host.deliveries.size(), 2U);
    ASSERT_EQ(TvGenericMsg_Size(host.deliveries[0].Message()), 4U);
    EXPECT_STREQ(static_cast<const char*>(TvGenericMsg_Buffer(host.deliveries[0].Message())), "abc");
    EXPECT_EQ(TvGenericMsg_Size(host.deliveries[1].Message()), 1U);
    host.deliveries.clear();
    tool.OutputAt(0).Enable(false);
    Run([&] { tool.SendString(0, text.data()); });
    EXPECT_TRUE(host.deliveries.empty());
}

// --- outputs that are not there -------------------------------------------------------------------------------------

struct MissingCase
{
    const char* function;
    std::function<void(ProbeTool&)> call;
};

TEST_F(Outputs, that_are_not_there_raise)
{
    zPoint3d64f position{};
    std::vector<zPoint3d64f> positions{position};
    ToolOutputInfo* const none = nullptr;
    const std::vector<MissingCase> cases = {
        {"SendMeasurement", [](ProbeTool& t) { t.SendMeasurement("x", 1, false, nullptr); }},
        {"SendMeasurement", [&](ProbeTool& t) { t.SendMeasurement(none, 1, false, nullptr); }},
        {"SendMeasurementInPosition",
         [&](ProbeTool& t) { t.SendMeasurementInPosition("x", 1, position, false, nullptr); }},
        {"SendMeasurementInPosition",
         [&](ProbeTool& t) { t.SendMeasurementInPosition(none, 1, position, false, nullptr); }},
        {"SendArrayedMeasurements", [](ProbeTool& t) { t.SendArrayedMeasurements("x", {1}); }},
        {"SendArrayedMeasurements", [](ProbeTool& t) { t.SendArrayedMeasurements("x", {}); }},
        {"SendArrayedMeasurements", [&](ProbeTool& t) { t.SendArrayedMeasurements(none, {1}); }},
        {"SendArrayedMeasurementsInPosition",
         [&](ProbeTool& t) { t.SendArrayedMeasurementsInPosition("x", {1}, positions); }},
        {"SendNull", [](ProbeTool& t) { t.SendNull("x"); }},
        {"SendNull", [&](ProbeTool& t) { t.SendNull(none); }},
        {"CreateMeasurementMessage", [](ProbeTool& t) { t.CreateMeasurementMessage("x", 1, false); }},
        {"SetOutputVisiblity", [&](ProbeTool& t) { t.SetOutputVisiblity(none, Visibility::Advanced); }},
    };
    for (const MissingCase& c : cases)
    {
        ExpectRaisedWithoutText(-999, c.function, [&] { c.call(tool); });
    }
}
} // namespace
