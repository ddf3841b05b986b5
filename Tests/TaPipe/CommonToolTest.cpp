#include <TaPipe/CommonTool.h>

#include <Support/Builders.h>
#include <Support/CountingAlloc.h>
#include <Support/RecordingHost.h>

#include <gtest/gtest.h>

#include <array>

namespace
{
using namespace Support;
using TaPipe::MessageInput;
using TaPipe::PipeDataType;
using TaPipe::ToolLifeCycle;

constexpr std::size_t AT_END = static_cast<std::size_t>(-1);

/// The host's tool base with its protected part open, noting what it is told.
class BareTool final : public TaPipe::Tools::CommonTool
{
public:
    using Base = TaPipe::Tools::CommonTool;
    using Base::AddInput;
    using Base::AddMeasurementOutput;
    using Base::AddOutput;
    using Base::BeginSendArray;
    using Base::EndSendArray;
    using Base::FindOutputById;
    using Base::Init;
    using Base::NotifyParamsChanged;
    using Base::OutputAlreadySent;
    using Base::RegisterAction;
    using Base::RemoveInput;
    using Base::RemoveOutput;
    using Base::Send;
    using Base::WriteToArray;

    explicit BareTool(bool isAsync = false)
        : Base(isAsync)
    {
    }

    void OnAllInputsReady(InputSet& set) override
    {
        Base::OnAllInputsReady(set);
        told.push_back("execute " + std::to_string(set.Count()));
        if (execute)
        {
            execute();
        }
    }

    void OnParamsChanged() override
    {
        told.emplace_back("params");
    }

    void OnInputSourceChanged(ToolInputInfo& input) override
    {
        told.push_back(std::string("source of ") + input.Id());
    }

    void OnInputRouted(ToolInputInfo& input, InputRoutedInfo info) override
    {
        told.push_back(std::string("route of ") + input.Id() + " to " + info.sourceId);
    }

    void OnOutputParamsChanged(ToolOutputInfo& output) override
    {
        told.push_back(std::string("params of ") + output.Id());
    }

    void OnLifeCycleUpdated() override
    {
        told.push_back("stage " + std::to_string(static_cast<int>(LifeCycle())));
    }

    std::function<void()> execute;
    std::vector<std::string> told;
};

class Tool_base : public testing::Test
{
protected:
    template <typename Body>
    static void ExpectRaised(int status, const char* function, const Body& body)
    {
        try
        {
            body();
            ADD_FAILURE() << function << " did not raise";
        }
        catch (const Ta::Exception& exception)
        {
            EXPECT_EQ(exception.Status(), status);
            EXPECT_EQ(exception.Function(), std::string("TaPipe::Tools::CommonTool::") + function);
        }
    }

    using Told = std::vector<std::string>;

    RecordingHost host;
    Ta::Params::Group group{"Parameters"};
    BareTool tool;
};

TEST_F(Tool_base, tells_its_mode)
{
    EXPECT_FALSE(tool.AsyncModeEnabled());
    EXPECT_TRUE(BareTool(true).AsyncModeEnabled());
    EXPECT_EQ(tool.InterfaceVersion(), 1U);
    EXPECT_STREQ(tool.ParamsVersion(), "1");
    EXPECT_FALSE(tool.IsBatched());
    tool.SetBatched(true);
    EXPECT_TRUE(tool.IsBatched());
    EXPECT_EQ(tool.MetricsKeeper(), static_cast<TaCommon::IMetricsKeeper*>(&tool));
}

TEST_F(Tool_base, has_parameters_from_Init_on)
{
    ExpectRaised(-999, "Params", [this] { static_cast<void>(tool.Params()); });
    tool.Init(host, group);
    EXPECT_EQ(&tool.Params(), &group);
}

TEST_F(Tool_base, notes_its_stage_of_life_before_it_is_told)
{
    EXPECT_EQ(tool.LifeCycle(), ToolLifeCycle::Operational);
    tool.UpdateLifeCycle(ToolLifeCycle::Restoring);
    EXPECT_EQ(tool.told, Told{"stage 2"});
}

TEST_F(Tool_base, hears_of_parameters_once_at_the_end_of_the_outermost_change)
{
    tool.BeginUpdateParams("a");
    tool.BeginUpdateParams("b");
    tool.EndUpdateParams();
    EXPECT_TRUE(tool.told.empty());
    tool.EndUpdateParams();
    EXPECT_EQ(tool.told, Told{"params"});
    ExpectRaised(0, "EndUpdateParams", [this] { tool.EndUpdateParams(); });
    EXPECT_FALSE(tool.UpdateDynamicParams());
}

TEST_F(Tool_base, numbers_inputs_and_outputs_anew_as_they_come_and_go)
{
    tool.AddInput("B", AT_END);
    tool.AddInput("A", 0);
    tool.AddInput("C", 17);
    EXPECT_EQ(tool.InputCount(), 3U);
    tool.RemoveInput(1);
    ASSERT_EQ(tool.InputCount(), 2U);
    EXPECT_STREQ(tool.InputAt(0).Id(), "A");
    EXPECT_STREQ(tool.InputAt(1).Id(), "C");
    EXPECT_EQ(tool.InputAt(1).Index(), 1U);
    tool.AddOutput("Y", AT_END);
    tool.AddMeasurementOutput("X", true, 0);
    EXPECT_EQ(tool.FindOutputById("Y")->Index(), 1U);
    tool.RemoveOutput(0);
    EXPECT_EQ(tool.FindOutputById("Y")->Index(), 0U);
    EXPECT_EQ(tool.FindOutputById("X"), nullptr);
}

TEST_F(Tool_base, raises_for_places_past_the_end_and_missing_ids)
{
    ExpectRaised(-997, "InputAt", [this] { tool.InputAt(0); });
    ExpectRaised(-997, "OutputAt", [this] { tool.OutputAt(0); });
    ExpectRaised(-997, "OutputParams", [this] { tool.OutputParams(0); });
    ExpectRaised(-997, "ActionAt", [this] { tool.ActionAt(0); });
    ExpectRaised(-997, "RemoveInput", [this] { tool.RemoveInput(0); });
    ExpectRaised(-997, "RemoveOutput", [this] { tool.RemoveOutput(0); });
    ExpectRaised(-999, "AddInput", [this] { tool.AddInput(nullptr, AT_END); });
    ExpectRaised(-999, "AddOutput", [this] { tool.AddOutput(nullptr, AT_END); });
    ExpectRaised(-999, "AddMeasurementOutput", [this] { tool.AddMeasurementOutput(nullptr, false, AT_END); });
}

TEST_F(Tool_base, gives_measurement_outputs_limits_and_others_none)
{
    tool.AddOutput("A", AT_END);
    tool.AddMeasurementOutput("B", true, AT_END);
    EXPECT_EQ(dynamic_cast<TaPipe::OutputMeasurementParams*>(&tool.OutputParams(0)), nullptr);
    EXPECT_NE(dynamic_cast<TaPipe::OutputMeasurementParams*>(&tool.OutputParams(1)), nullptr);
    EXPECT_EQ(tool.OutputAt(1).DataFormat(), (TaPipe::PipeDataFormat{PipeDataType::Measurement, true}));
    tool.OutputAt(1).NotifyParamsChanged();
    EXPECT_EQ(tool.told, Told{"params of B"});
}

TEST_F(Tool_base, hears_of_another_source_before_it_hears_of_the_route)
{
    tool.AddInput("A", AT_END);
    tool.InputAt(0).Route({0, "scan"});
    tool.InputAt(0).Route({0, "scan"});
    EXPECT_EQ(tool.told, (Told{"source of A", "route of A to scan", "route of A to scan"}));
}

TEST_F(Tool_base, runs_actions_by_name)
{
    int runs = 0;
    tool.RegisterAction("Count", [&runs] { ++runs; });
    ASSERT_EQ(tool.ActionCount(), 1U);
    EXPECT_STREQ(tool.ActionAt(0).Name(), "Count");
    tool.Invoke("Count");
    tool.RegisterAction("Count", [&runs] { runs += 10; });
    EXPECT_EQ(tool.ActionCount(), 1U);
    tool.Invoke("Count");
    EXPECT_EQ(runs, 11);
    ExpectRaised(-999, "Invoke", [this] { tool.Invoke("Unknown"); });
    ExpectRaised(-999, "Invoke", [this] { tool.Invoke(nullptr); });
}

TEST_F(Tool_base, cannot_send_before_Init)
{
    TaPipe::ToolOutputInfo& output = tool.AddOutput("A", AT_END);
    ExpectRaised(-999, "Send", [&] { tool.Send(output, Measure(1), 1); });
    tool.BeginSendArray(output);
    ExpectRaised(-999, "EndSendArray", [&] { tool.EndSendArray(output); });
}

TEST_F(Tool_base, writes_and_ends_arrays_that_were_begun_only)
{
    tool.Init(host, group);
    TaPipe::ToolOutputInfo& output = tool.AddOutput("A", AT_END);
    ExpectRaised(0, "WriteToArray", [&] { tool.WriteToArray(output, Measure(1), 1); });
    ExpectRaised(0, "EndSendArray", [&] { tool.EndSendArray(output); });
    tool.BeginSendArray(output);
    tool.WriteToArray(output, Measure(1), 1);
    tool.BeginSendArray(output);
    tool.WriteToArray(output, Measure(2), 1);
    EXPECT_FALSE(tool.OutputAlreadySent(&output));
    tool.EndSendArray(output);
    EXPECT_TRUE(tool.OutputAlreadySent(&output));
    ASSERT_EQ(host.deliveries.size(), 1U);
    ASSERT_EQ(host.deliveries[0].messages.size(), 1U) << "the array begun before was dropped";
    EXPECT_EQ(TvMeasureMsg_Value(host.deliveries[0].Message()), 2);
    ExpectRaised(0, "EndSendArray", [&] { tool.EndSendArray(output); });
}

TEST_F(Tool_base, passes_on_what_it_sends_and_forgets_it_at_the_next_execution)
{
    tool.Init(host, group);
    TaPipe::ToolOutputInfo& output = tool.AddOutput("A", AT_END);
    tool.Send(output, Measure(1), 42);
    tool.Send(output, Ta::Object<void*>(), 1);
    ASSERT_EQ(host.deliveries.size(), 2U);
    EXPECT_EQ(host.deliveries[0].sendKind, 42);
    EXPECT_EQ(host.deliveries[1].Message(), nullptr);
    EXPECT_TRUE(tool.OutputAlreadySent(&output));
    tool.ProcessInputSet(nullptr, 0);
    EXPECT_FALSE(tool.OutputAlreadySent(&output));
}

TEST_F(Tool_base, drops_an_array_that_an_execution_did_not_end)
{
    tool.Init(host, group);
    TaPipe::ToolOutputInfo& output = tool.AddOutput("A", AT_END);
    const Ta::Object<void*> message = Measure(1);
    tool.execute = [&] {
        tool.BeginSendArray(output);
        tool.WriteToArray(output, message, 1);
    };
    tool.ProcessInputSet(nullptr, 0);
    EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 1);
    EXPECT_TRUE(host.deliveries.empty());
}

TEST_F(Tool_base, executes_single_deliveries_once_all_routed_inputs_have_come)
{
    tool.AddInput("A", AT_END);
    tool.AddInput("B", AT_END);
    tool.AddInput("C", AT_END);
    tool.InputAt(0).Route({0, "scan"});
    tool.InputAt(1).Route({0, "scan"});
    tool.told.clear();
    const Ta::Object<void*> message = Measure(1);
    const std::array<void*, 1> handle{message.Get()};
    EXPECT_FALSE(tool.Process({1, handle}));
    EXPECT_TRUE(tool.Process({0, handle}));
    EXPECT_EQ(tool.told, Told{"execute 2"});
    EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 1);
    EXPECT_FALSE(tool.Process({3, handle})) << "an input past the end";
    EXPECT_FALSE(tool.Process({0, handle}));
    tool.Stop();
    EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 1) << "what was pending ends with the run";
}

TEST_F(Tool_base, takes_an_input_once_per_execution)
{
    tool.AddInput("A", AT_END);
    tool.AddInput("B", AT_END);
    tool.InputAt(0).Route({0, "scan"});
    tool.InputAt(1).Route({0, "scan"});
    tool.told.clear();
    const Ta::Object<void*> first = Measure(1);
    const Ta::Object<void*> second = Measure(2);
    const std::array<void*, 1> firstHandle{first.Get()};
    const std::array<void*, 1> secondHandle{second.Get()};
    const std::array<MessageInput, 2> twice{MessageInput{0, firstHandle}, MessageInput{0, secondHandle}};
    EXPECT_FALSE(tool.ProcessInputSet(twice.data(), twice.size()));
    EXPECT_FALSE(tool.Process({0, firstHandle}));
    EXPECT_FALSE(tool.Process({0, secondHandle}));
    EXPECT_EQ(xzObject_ReferenceCount(second.Get()), 1) << "what is pending stays";
    EXPECT_TRUE(tool.Process({1, firstHandle}));
    EXPECT_EQ(tool.told, Told{"execute 2"});
}

TEST_F(Tool_base, keeps_what_is_pending_when_no_input_is_removed)
{
    tool.AddInput("A", AT_END);
    tool.AddInput("B", AT_END);
    tool.InputAt(0).Route({0, "scan"});
    tool.InputAt(1).Route({0, "scan"});
    const Ta::Object<void*> message = Measure(1);
    const std::array<void*, 1> handle{message.Get()};
    tool.Process({0, handle});
    ExpectRaised(-997, "RemoveInput", [this] { tool.RemoveInput(2); });
    EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 2);
    tool.RemoveInput(1);
    EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 1);
}

TEST_F(Tool_base, may_register_an_action_anew_from_within_it)
{
    int runs = 0;
    tool.RegisterAction("Count", [this, &runs] {
        tool.RegisterAction("Count", [&runs] { runs += 10; });
        ++runs;
    });
    tool.Invoke("Count");
    tool.Invoke("Count");
    EXPECT_EQ(runs, 11);
    ExpectRaised(-999, "RegisterAction", [this] { tool.RegisterAction(nullptr, [] {}); });
}

TEST_F(Tool_base, shows_a_missing_name_as_an_empty_one)
{
    EXPECT_STREQ(tool.AddInput("A", AT_END).SetDisplayName(nullptr).DisplayName(), "");
    TaPipe::ToolOutputInfo& output = tool.AddOutput("A", AT_END);
    output.SetDisplayName(nullptr).SetUnits(nullptr).AssociateOutput(nullptr);
    EXPECT_STREQ(output.DisplayName(), "");
    EXPECT_STREQ(output.Units(), "");
    EXPECT_TRUE(output.AssociatedOutputs().empty());
}

TEST_F(Tool_base, counts_executions_and_messages)
{
    tool.Init(host, group);
    TaPipe::ToolOutputInfo& output = tool.AddOutput("A", AT_END);
    tool.execute = [&] { tool.Send(output, Measure(1), 1); };
    tool.ProcessInputSet(nullptr, 0);
    tool.ProcessInputSet(nullptr, 0);
    const auto figure = [](Ta::Properties::Structure& metrics, const char* key) {
        return dynamic_cast<Ta::Params::Value<std::size_t>&>(*metrics.Find(key)).Get();
    };
    EXPECT_EQ(figure(tool.MetricsKeeper()->UpdateMetrics(), "executions"), 2U);
    EXPECT_EQ(figure(tool.MetricsKeeper()->UpdateMetrics(), "messages"), 2U);
    tool.MetricsKeeper()->ResetMetrics();
    EXPECT_EQ(figure(tool.MetricsKeeper()->UpdateMetrics(), "executions"), 0U);
}

TEST_F(Tool_base, tells_listeners_of_changed_parameters_until_they_leave)
{
    using Change = TaPipe::ITool::ParamsChangeType;
    std::vector<Change> changes;
    const std::size_t number = tool.ParamsChangedEvent().Add([&](Change change) { changes.push_back(change); });
    tool.NotifyParamsChanged(false);
    tool.NotifyParamsChanged(true);
    tool.ParamsChangedEvent().Remove(number);
    tool.NotifyParamsChanged(false);
    EXPECT_EQ(changes, (std::vector<Change>{Change::Values, Change::Structure}));
}

TEST_F(Tool_base, has_the_allocator_that_it_was_given)
{
    EXPECT_EQ(tool.ToolAlloc(), nullptr);
    const CountingAlloc alloc;
    tool.SetToolAllocator(alloc.Get());
    EXPECT_EQ(tool.ToolAlloc(), alloc.Get());
}
} // namespace
