#include "ToolFixture.h"

#include <TaApi/Logging.h>
#include <zApi/zVersion.h>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace
{
using namespace Support;
using TaPipe::PipeDataType;
using TaPipe::ToolLifeCycle;

constexpr zRect3d64f BOX{1, 2, 3, 10, 20, 30};
constexpr zRect3d64f OTHER_BOX{4, 5, 6, 11, 21, 31};

Ta::Object<void*> BoxedSurface(const zRect3d64f& box)
{
    return Surface({{1, 2}, {3, 4}}).BoundingBox(box);
}

Ta::Object<void*> BoxedProfile(const zRect3d64f& box)
{
    return Profile({1, 2, 3}).BoundingBox(box);
}

bool IsSameBox(const zRect3d64f& a, const zRect3d64f& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.width == b.width && a.length == b.length && a.height == b.height;
}

class CommonTool : public ToolFixture
{
};

// --- construction and Init ------------------------------------------------------------------------------------------

TEST(CommonTool_construction, gives_every_member_its_initial_value)
{
    ProbeTool tool;
    EXPECT_EQ(tool.toolAlloc, nullptr);
    EXPECT_EQ(tool.outputAlloc, nullptr);
    EXPECT_EQ(tool.referenceMsg, nullptr);
    for (const double value :
         {tool.anchor.x, tool.anchor.y, tool.anchor.z, tool.anchor.xAngle, tool.anchor.yAngle, tool.anchor.zAngle,
          tool.inputBoundingBox.x, tool.inputBoundingBox.y, tool.inputBoundingBox.z, tool.inputBoundingBox.width,
          tool.inputBoundingBox.length, tool.inputBoundingBox.height})
    {
        EXPECT_EQ(value, -1.7976931348623157e308);
    }
    EXPECT_FALSE(Access::AnchorsActive(tool));
    EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
    EXPECT_FALSE(Access::RelativeRegionChanged(tool));
    EXPECT_FALSE(Access::TransformChanged(tool));
    EXPECT_FALSE(Access::DynamicParamsChanged(tool));
    EXPECT_FALSE(tool.acceptNullInputs);
    EXPECT_TRUE(tool.profileInput);
    EXPECT_FALSE(tool.skipFlexibleRegionUpdate);
    EXPECT_EQ(tool.outputVisibilityStride, 1000U);
    EXPECT_EQ(tool.toolName, "MuToolTemplate");
    EXPECT_EQ(ProbeTool::REGION_EXTRA_BORDER_PXL, 4);
    EXPECT_TRUE(Access::HasEmptyLists(tool));
    EXPECT_FALSE(tool.AsyncModeEnabled());
}

TEST(CommonTool_members, stand_in_the_declared_order)
{
    const ProbeTool tool;
    const auto members = Access::Members(tool);
    ASSERT_EQ(members.size(), 24U);
    for (std::size_t i = 1; i < members.size(); ++i)
    {
        EXPECT_LT(members[i - 1].second, members[i].second) << members[i - 1].first << " and " << members[i].first;
    }
}

TEST(CommonTool_init, takes_the_tools_allocator_and_ends_in_one_UpdateConfig)
{
    RecordingHost host;
    const CountingAlloc alloc;
    ProbeTool tool;
    tool.SetToolAllocator(alloc.Get());
    static_cast<TaPipe::ITool&>(tool).Init(host);
    EXPECT_EQ(tool.toolAlloc, alloc.Get());
    EXPECT_EQ(tool.outputAlloc, nullptr);
    EXPECT_EQ(tool.updates, 1);
    EXPECT_EQ(&tool.Params(), &tool.group);
}

TEST(CommonTool_init, hands_a_failure_of_UpdateConfig_to_the_host)
{
    RecordingHost host;
    ProbeTool tool;
    tool.updateConfig = [] { throw std::runtime_error("no configuration"); };
    EXPECT_THROW(static_cast<TaPipe::ITool&>(tool).Init(host), std::runtime_error);
}

TEST(CommonTool_init, and_UpdateDynamicParams_take_the_path_that_a_concrete_tool_overrides)
{
    struct Overriding final : ProbeTool
    {
        void OnParamsChanged() override
        {
            ++calls;
            ProbeTool::OnParamsChanged();
        }

        int calls = 0;
    };
    RecordingHost host;
    Overriding tool;
    static_cast<TaPipe::ITool&>(tool).Init(host);
    EXPECT_EQ(tool.calls, 1);
    tool.UpdateDynamicParams();
    EXPECT_EQ(tool.calls, 2);
}

TEST_F(CommonTool, has_no_FlexRegionRender_output_without_flexible_regions)
{
    EXPECT_EQ(tool.FindOutputById("FlexRegionRender"), nullptr);
}

TEST_F(CommonTool, UpdateDynamicParams_takes_the_whole_path_and_tells_whether_parameters_changed)
{
    EXPECT_FALSE(tool.UpdateDynamicParams());
    EXPECT_EQ(tool.updates, 2);
    Access::DynamicParamsChanged(tool) = true;
    EXPECT_TRUE(tool.UpdateDynamicParams());
    EXPECT_EQ(tool.updates, 3);
}

TEST_F(CommonTool, a_change_of_parameters_by_the_host_ends_in_one_UpdateConfig)
{
    tool.BeginUpdateParams("outer");
    tool.BeginUpdateParams("inner");
    tool.EndUpdateParams();
    EXPECT_EQ(tool.updates, 1);
    tool.EndUpdateParams();
    EXPECT_EQ(tool.updates, 2);
}

TEST_F(CommonTool, UpdateConfig_comes_also_when_flexible_regions_are_left_alone)
{
    tool.skipFlexibleRegionUpdate = true;
    tool.OnParamsChanged();
    EXPECT_EQ(tool.updates, 2);
}

// --- the execution --------------------------------------------------------------------------------------------------

TEST_F(CommonTool, without_regions_goes_through_its_life_straight_to_Execute)
{
    tool.AddInput("Data", AT_END);
    tool.AddMeasurementOutput("Value", false, AT_END);
    tool.Start();
    tool.execute = [this](TaPipe::InputSet&) { tool.SendMeasurement("Value", 2.5, false, nullptr); };
    Deliver({BoxedSurface(BOX)});
    tool.Stop();
    ASSERT_EQ(host.deliveries.size(), 1U);
    EXPECT_EQ(TvMeasureMsg_Value(host.deliveries[0].Message()), 2.5);
    EXPECT_EQ(tool.executions, 1);
    EXPECT_FALSE(Access::RelativeRegionChanged(tool));
    EXPECT_FALSE(Access::TransformChanged(tool));
}

struct RequiredCase
{
    const char* name;
    std::vector<Ta::Object<void*>> messages;
    bool executes;
};

TEST_F(CommonTool, checks_the_messages_of_a_required_input)
{
    tool.AddInput("Data", AT_END);
    const std::vector<RequiredCase> cases = {
        {"no message at all", {}, true},
        {"one message", {Measure(1)}, true},
        {"one null handle", {Ta::Object<void*>()}, false},
        {"one null message", {NullMessage()}, false},
        {"three messages", {Measure(1), Measure(2), Measure(3)}, true},
        {"null message among three", {Measure(1), NullMessage(), Measure(3)}, false},
        {"null handle last of two", {Measure(1), Ta::Object<void*>()}, false},
    };
    for (const RequiredCase& c : cases)
    {
        const int before = tool.executions;
        DeliverSeveral(c.messages);
        EXPECT_EQ(tool.executions - before, c.executes ? 1 : 0) << c.name;
    }
}

TEST_F(CommonTool, a_null_required_input_gives_null_on_every_output)
{
    tool.AddInput("Data", AT_END);
    tool.AddMeasurementOutput("A", false, AT_END);
    tool.AddOutput("B", AT_END).Enable(false);
    Deliver({NullMessage()});
    EXPECT_EQ(host.NullOutputs(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(host.deliveries.size(), 2U);
}

TEST_F(CommonTool, an_optional_null_input_reaches_Execute)
{
    tool.AddInput("Data", AT_END).SetOptional(true);
    tool.execute = [](TaPipe::InputSet& set) { EXPECT_FALSE(set.At(0).Message(true)); };
    Deliver({NullMessage()});
    EXPECT_EQ(tool.executions, 1);
}

TEST_F(CommonTool, that_accepts_null_inputs_is_executed_with_them)
{
    tool.AddInput("Data", AT_END);
    tool.acceptNullInputs = true;
    Deliver({NullMessage()});
    EXPECT_EQ(tool.executions, 1);
}

struct Thrower
{
    const char* name;
    std::function<void()> raise;
};

TEST_F(CommonTool, an_exception_of_any_type_at_any_point_gives_null_on_exactly_the_outputs_not_yet_sent)
{
    struct Unrelated
    {
    };
    const std::vector<Thrower> throwers = {
        {"Ta::Exception", [] { throw Ta::Exception(-997); }},
        {"std::exception", [] { throw std::runtime_error("x"); }},
        {"int", [] { throw 7; }},
        {"text", [] { throw "x"; }},
        {"a type of the tool", [] { throw Unrelated{}; }},
    };
    const std::vector<std::string> ids = {"O0", "O1", "O2", "O3"};
    for (const std::string& id : ids)
    {
        tool.AddMeasurementOutput(id.c_str(), false, AT_END);
    }
    for (const Thrower& thrower : throwers)
    {
        for (std::size_t sent = 0; sent <= ids.size(); ++sent)
        {
            host.deliveries.clear();
            Run([&] {
                for (std::size_t i = 0; i < sent; ++i)
                {
                    tool.SendMeasurement(ids[i].c_str(), 1.0, false, nullptr);
                }
                thrower.raise();
            });
            EXPECT_EQ(host.deliveries.size(), ids.size()) << thrower.name << " after " << sent;
            EXPECT_EQ(host.NullOutputs(),
                      std::vector<std::string>(ids.begin() + static_cast<std::ptrdiff_t>(sent), ids.end()))
                << thrower.name << " after " << sent;
        }
    }
}

TEST_F(CommonTool, an_array_begun_and_not_ended_is_dropped_and_counts_as_not_sent)
{
    TaPipe::ToolOutputInfo& out = tool.AddMeasurementOutput("A", true, AT_END);
    Run([&] {
        tool.BeginSendArray(out);
        tool.SendMeasurement(&out, 1.0, true, nullptr);
        throw 1;
    });
    ASSERT_EQ(host.deliveries.size(), 1U);
    EXPECT_FALSE(host.deliveries[0].isArray);
    EXPECT_TRUE(host.deliveries[0].IsNullMessage());
    EXPECT_EQ(alloc.LiveBlocks(), 1U) << "only the null message lives";
}

TEST_F(CommonTool, a_failing_null_message_leaves_the_execution_as_an_exception)
{
    tool.AddMeasurementOutput("A", false, AT_END);
    tool.execute = [this](TaPipe::InputSet&) {
        alloc.FailAt(1);
        throw 1;
    };
    try
    {
        tool.ProcessInputSet(nullptr, 0);
        FAIL() << "the failure was swallowed";
    }
    catch (const Ta::Exception& exception)
    {
        EXPECT_EQ(exception.Status(), -998);
        EXPECT_STREQ(exception.Function(), "Mu::Tools::CommonTool::SendAllNullOutputs");
    }
    EXPECT_TRUE(host.deliveries.empty());
}

TEST_F(CommonTool, a_failed_execution_is_followed_by_a_good_one)
{
    tool.AddMeasurementOutput("A", false, AT_END);
    Run([] { throw 1; });
    Run([this] { tool.SendMeasurement("A", 3.0, false, nullptr); });
    ASSERT_EQ(host.deliveries.size(), 2U);
    EXPECT_TRUE(host.deliveries[0].IsNullMessage());
    EXPECT_EQ(TvMeasureMsg_Value(host.deliveries[1].Message()), 3.0);
}

TEST_F(CommonTool, a_completed_execution_clears_the_mark_of_changed_routing_and_a_failed_one_does_not)
{
    Access::AnchorRoutingChanged(tool) = true;
    Run([] { throw 1; });
    EXPECT_TRUE(Access::AnchorRoutingChanged(tool));
    Run([] {});
    EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
}

TEST_F(CommonTool, holds_no_message_after_an_execution)
{
    tool.AddInput("Data", AT_END);
    const Ta::Object<void*> surface = BoxedSurface(BOX);
    Deliver({surface});
    EXPECT_EQ(xzObject_ReferenceCount(surface.Get()), 1);
    tool.execute = [](TaPipe::InputSet&) { throw 1; };
    Deliver({surface});
    EXPECT_EQ(xzObject_ReferenceCount(surface.Get()), 1);
}

TEST_F(CommonTool, an_input_past_the_end_is_no_execution)
{
    const TaPipe::MessageInput input{0, {}};
    EXPECT_FALSE(tool.ProcessInputSet(&input, 1));
    EXPECT_EQ(tool.executions, 0);
}

// --- the reference message ------------------------------------------------------------------------------------------

TEST_F(CommonTool, without_a_data_message_has_no_reference_and_looks_again_next_time)
{
    tool.AddInput("Data", AT_END);
    Deliver({BoxedSurface(BOX)}); // a reference from before does not survive
    tool.inputBoundingBox.x = zNULL_64F;
    Deliver({Measure(1)});
    EXPECT_EQ(tool.referenceMsg, nullptr);
    EXPECT_EQ(tool.inputBoundingBox.x, zNULL_64F);
    const Ta::Object<void*> surface = BoxedSurface(OTHER_BOX);
    Deliver({surface});
    EXPECT_EQ(tool.referenceMsg, surface.Get());
    EXPECT_TRUE(IsSameBox(tool.inputBoundingBox, OTHER_BOX));
}

TEST_F(CommonTool, takes_the_first_data_message_of_the_set_as_reference)
{
    for (const char* const id : {"A", "B", "C"})
    {
        tool.AddInput(id, AT_END).SetOptional(true);
    }
    const Ta::Object<void*> first = BoxedSurface(BOX);
    Deliver({Measure(1), first, BoxedSurface(OTHER_BOX)});
    EXPECT_EQ(tool.referenceMsg, first.Get());
    EXPECT_TRUE(IsSameBox(tool.inputBoundingBox, BOX));
}

TEST_F(CommonTool, a_null_message_is_no_reference)
{
    tool.AddInput("A", AT_END).SetOptional(true);
    Ta::Object<void*> null = NullMessage();
    ASSERT_EQ(TvDataMsg_SetBoundingBox(null.Get(), &BOX), zOK);
    Deliver({null});
    EXPECT_EQ(tool.referenceMsg, nullptr);
    EXPECT_EQ(tool.inputBoundingBox.x, zNULL_64F);
}

TEST_F(CommonTool, a_data_message_without_box_leaves_the_box_unknown_so_that_the_next_one_is_taken)
{
    tool.AddInput("Data", AT_END);
    const Ta::Object<void*> bare = Surface({{1}});
    Deliver({bare});
    EXPECT_EQ(tool.referenceMsg, bare.Get());
    EXPECT_EQ(tool.inputBoundingBox.x, zNULL_64F);
    Deliver({BoxedSurface(BOX)});
    EXPECT_TRUE(IsSameBox(tool.inputBoundingBox, BOX));
}

TEST_F(CommonTool, keeps_the_box_that_it_knows)
{
    tool.AddInput("Data", AT_END);
    Deliver({BoxedSurface(BOX)});
    Deliver({BoxedSurface(OTHER_BOX)});
    EXPECT_TRUE(IsSameBox(tool.inputBoundingBox, BOX));
}

TEST_F(CommonTool, in_the_stage_that_takes_defaults_follows_the_box_of_every_message)
{
    tool.AddInput("Data", AT_END);
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    Deliver({BoxedSurface(BOX)});
    Deliver({BoxedSurface(OTHER_BOX)});
    EXPECT_TRUE(IsSameBox(tool.inputBoundingBox, OTHER_BOX));
    EXPECT_EQ(tool.placements, 2);
}

struct StageCase
{
    const char* name;
    ToolLifeCycle stage;
    bool isProfile;
    int placements;
    bool profileInput;
};

class CommonTool_stage : public ToolFixture, public testing::WithParamInterface<StageCase>
{
};

TEST_P(CommonTool_stage, decides_whether_the_scan_places_regions)
{
    const StageCase& c = GetParam();
    tool.AddInput("Data", AT_END);
    tool.UpdateLifeCycle(c.stage);
    Deliver({c.isProfile ? BoxedProfile(BOX) : BoxedSurface(BOX)});
    EXPECT_TRUE(IsSameBox(tool.inputBoundingBox, BOX));
    EXPECT_EQ(tool.placements, c.placements);
    EXPECT_EQ(tool.profileInput, c.profileInput);
    EXPECT_EQ(Access::RelativeRegionChanged(tool), c.placements > 0);
    EXPECT_EQ(tool.executions, 1);
}

INSTANTIATE_TEST_SUITE_P(, CommonTool_stage,
                         testing::Values(StageCase{"operational_surface", ToolLifeCycle::Operational, false, 0, true},
                                         StageCase{"restoring_surface", ToolLifeCycle::Restoring, false, 0, true},
                                         StageCase{"defaults_surface", ToolLifeCycle::TakeDefaults, false, 1, false},
                                         StageCase{"defaults_profile", ToolLifeCycle::TakeDefaults, true, 1, true}),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(CommonTool, in_the_stage_that_takes_defaults_places_nothing_without_a_data_message)
{
    tool.AddInput("Data", AT_END);
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    Deliver({Measure(1)});
    EXPECT_EQ(tool.placements, 0);
    EXPECT_TRUE(tool.profileInput);
    EXPECT_FALSE(Access::RelativeRegionChanged(tool));
    EXPECT_EQ(tool.executions, 1);
}

TEST_F(CommonTool, knows_the_reference_and_its_box_before_it_places_regions_and_executes)
{
    tool.AddInput("Data", AT_END);
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    const Ta::Object<void*> surface = BoxedSurface(BOX);
    tool.initializeRegions = [&] {
        EXPECT_EQ(tool.referenceMsg, surface.Get());
        EXPECT_TRUE(IsSameBox(tool.inputBoundingBox, BOX));
        EXPECT_FALSE(tool.profileInput);
        EXPECT_FALSE(Access::RelativeRegionChanged(tool));
        EXPECT_EQ(tool.executions, 0);
    };
    tool.execute = [&](TaPipe::InputSet&) {
        EXPECT_EQ(tool.placements, 1);
        EXPECT_TRUE(Access::RelativeRegionChanged(tool));
        EXPECT_TRUE(IsSameBox(tool.inputBoundingBox, BOX));
    };
    Deliver({surface});
    EXPECT_EQ(tool.executions, 1);
}

TEST_F(CommonTool, that_cannot_place_its_regions_is_not_executed)
{
    tool.AddInput("Data", AT_END);
    tool.AddMeasurementOutput("A", false, AT_END);
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    tool.initializeRegions = [] { throw std::runtime_error("no place"); };
    Deliver({BoxedSurface(BOX)});
    EXPECT_EQ(tool.executions, 0);
    EXPECT_FALSE(Access::RelativeRegionChanged(tool));
    EXPECT_EQ(host.NullOutputs(), std::vector<std::string>{"A"});
}

TEST_F(CommonTool, checks_required_inputs_before_it_looks_for_the_reference)
{
    tool.AddInput("Required", AT_END);
    tool.AddInput("Data", AT_END);
    tool.AddMeasurementOutput("A", false, AT_END);
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    Deliver({NullMessage(), BoxedSurface(BOX)});
    EXPECT_EQ(tool.inputBoundingBox.x, zNULL_64F);
    EXPECT_EQ(tool.placements, 0);
    ASSERT_EQ(host.deliveries.size(), 1U);
    EXPECT_FALSE(TvDataMsg_HasBoundingBox(host.deliveries[0].Message()));
}

TEST_F(CommonTool, may_change_its_inputs_while_it_is_executed)
{
    tool.AddInput("Fixed", AT_END);
    tool.HandleDynamicInput({"A"}, {"A"}, {PipeDataType::UniformSurface}, 1);
    const Ta::Object<void*> a = BoxedSurface(BOX);
    tool.execute = [&](TaPipe::InputSet& set) {
        tool.HandleDynamicInput({}, {}, {}, 1);
        EXPECT_EQ(tool.InputCount(), 1U);
        EXPECT_EQ(tool.GetDataMessageInput(set, "A"), a.Get()) << "the set keeps what it was delivered with";
    };
    Deliver({Measure(1), a});
    EXPECT_EQ(tool.executions, 1);
}

// --- start and stop -------------------------------------------------------------------------------------------------

struct Notified
{
    explicit Notified(ProbeTool& tool)
    {
        tool.ParamsChangedEvent().Add([this](TaPipe::ITool::ParamsChangeType type) { types.push_back(type); });
    }

    std::vector<TaPipe::ITool::ParamsChangeType> types;
};

TEST_F(CommonTool, start_and_stop_without_anchors_have_nothing_to_write_back)
{
    const Notified notified(tool);
    tool.Start();
    tool.Stop();
    EXPECT_FALSE(Access::AnchorsActive(tool));
    EXPECT_TRUE(notified.types.empty());
}

TEST_F(CommonTool, start_with_a_routed_anchor_tells_the_host_that_the_transform_changes)
{
    Access::AnchorInputs(tool).push_back({});
    Access::AnchorInputs(tool).back().active = true;
    const Notified notified(tool);
    tool.Start();
    EXPECT_TRUE(Access::AnchorsActive(tool));
    EXPECT_TRUE(Access::TransformChanged(tool));
    EXPECT_FALSE(Access::RelativeRegionChanged(tool));
    EXPECT_EQ(notified.types, std::vector{TaPipe::ITool::ParamsChangeType::Values});
}

TEST_F(CommonTool, start_after_the_last_anchor_was_taken_away_forgets_the_anchor)
{
    tool.anchor = {1, 2, 3, 4, 5, 6};
    Access::AnchorRoutingChanged(tool) = true;
    const Notified notified(tool);
    tool.Start();
    EXPECT_EQ(tool.anchor.x, zNULL_64F);
    EXPECT_EQ(tool.anchor.zAngle, zNULL_64F);
    EXPECT_TRUE(Access::RelativeRegionChanged(tool));
    EXPECT_TRUE(Access::TransformChanged(tool));
    EXPECT_TRUE(Access::AnchorRoutingChanged(tool)) << "only an execution takes the mark away";
    EXPECT_TRUE(notified.types.empty());
}

TEST_F(CommonTool, start_with_an_anchor_just_routed_keeps_the_anchor)
{
    Access::AnchorInputs(tool).push_back({});
    Access::AnchorInputs(tool).back().active = true;
    Access::AnchorRoutingChanged(tool) = true;
    tool.anchor = {1, 2, 3, 4, 5, 6};
    const Notified notified(tool);
    tool.Start();
    EXPECT_TRUE(Access::AnchorsActive(tool));
    EXPECT_EQ(tool.anchor.x, 1);
    EXPECT_FALSE(Access::RelativeRegionChanged(tool));
    EXPECT_TRUE(Access::AnchorRoutingChanged(tool));
    EXPECT_EQ(notified.types.size(), 1U);
}

TEST_F(CommonTool, start_forgets_that_anchors_were_active)
{
    Access::AnchorInputs(tool).push_back({});
    Access::AnchorInputs(tool).back().active = true;
    tool.Start();
    tool.Stop();
    Access::AnchorInputs(tool).back().active = false;
    tool.Start();
    EXPECT_FALSE(Access::AnchorsActive(tool));
}

TEST_F(CommonTool, start_and_stop_forget_single_deliveries_that_wait_for_others)
{
    for (const bool starts : {true, false})
    {
        ProbeTool waiting;
        waiting.AddInput("A", AT_END);
        waiting.AddInput("B", AT_END);
        waiting.InputAt(0).Route({0, "scan"});
        waiting.InputAt(1).Route({0, "scan"});
        const Ta::Object<void*> message = Measure(1);
        void* const handle = message.Get();
        EXPECT_FALSE(waiting.Process({0, std::span<void* const>(&handle, 1)}));
        EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 2);
        starts ? waiting.Start() : waiting.Stop();
        EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 1);
    }
}

TEST_F(CommonTool, stop_tells_the_host_once_of_what_changed_and_clears_the_marks)
{
    for (bool* const mark : {&Access::RelativeRegionChanged(tool), &Access::TransformChanged(tool)})
    {
        *mark = true;
        const Notified notified(tool);
        tool.Stop();
        EXPECT_EQ(notified.types.size(), 1U);
        EXPECT_FALSE(*mark);
        tool.Stop();
        EXPECT_EQ(notified.types.size(), 1U);
        tool.ParamsChangedEvent() = {};
    }
}

// --- anchor routing -------------------------------------------------------------------------------------------------

class CommonTool_anchor_routing : public ToolFixture
{
protected:
    void SetUp() override
    {
        ToolFixture::SetUp();
        tool.AddInput("Data", AT_END);
        tool.AddInput("AnchorX", AT_END).SetOptional(true);
        Access::AnchorInputs(tool).push_back({Mu::Tools::AnchorAxis::X, "AnchorX", "Anchor X", 1, false, ""});
    }
};

TEST_F(CommonTool_anchor_routing, of_another_input_changes_nothing)
{
    tool.InputAt(0).Route({0, "source"});
    EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
    EXPECT_TRUE(tool.AllAnchorsInactive());
}

TEST_F(CommonTool_anchor_routing, marks_a_new_route_another_source_and_a_route_taken_away)
{
    for (const char* const source : {"first", "second", ""})
    {
        Access::AnchorRoutingChanged(tool) = false;
        tool.InputAt(1).Route({0, source});
        EXPECT_TRUE(Access::AnchorRoutingChanged(tool)) << source;
        EXPECT_EQ(tool.AllAnchorsInactive(), std::string(source).empty()) << source;
        EXPECT_EQ(Access::AnchorInputs(tool)[0].sourceId, source);
    }
}

TEST_F(CommonTool_anchor_routing, to_the_same_source_marks_nothing)
{
    tool.InputAt(1).Route({0, "source"});
    Access::AnchorRoutingChanged(tool) = false;
    tool.InputAt(1).Route({0, "source"});
    EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
}

TEST_F(CommonTool_anchor_routing, while_restoring_is_taken_in_but_is_no_change_and_clears_one_from_before)
{
    Access::AnchorRoutingChanged(tool) = true;
    tool.UpdateLifeCycle(ToolLifeCycle::Restoring);
    tool.InputAt(1).Route({0, "source"});
    EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
    EXPECT_TRUE(Access::AnchorInputs(tool)[0].active);
    EXPECT_EQ(Access::AnchorInputs(tool)[0].sourceId, "source");
}

TEST_F(CommonTool_anchor_routing, of_another_input_while_restoring_leaves_the_mark)
{
    Access::AnchorRoutingChanged(tool) = true;
    tool.UpdateLifeCycle(ToolLifeCycle::Restoring);
    tool.InputAt(0).Route({0, "source"});
    EXPECT_TRUE(Access::AnchorRoutingChanged(tool));
}

TEST_F(CommonTool_anchor_routing, that_only_becomes_active_is_marked)
{
    Access::AnchorInputs(tool)[0].sourceId = "source";
    tool.InputAt(1).Route({0, "source"});
    EXPECT_TRUE(Access::AnchorRoutingChanged(tool));
    EXPECT_TRUE(Access::AnchorInputs(tool)[0].active);
}

TEST_F(CommonTool_anchor_routing, goes_to_the_first_record_of_an_input)
{
    Access::AnchorInputs(tool).push_back({Mu::Tools::AnchorAxis::Y, "", "", 1, false, ""});
    tool.InputAt(1).Route({0, "source"});
    EXPECT_TRUE(Access::AnchorInputs(tool)[0].active);
    EXPECT_FALSE(Access::AnchorInputs(tool)[1].active);
}

TEST_F(CommonTool, an_anchor_moves_by_the_transform_of_the_vision_library)
{
    const Mu::Vision::Anchor anchor{1, 2, 3, zNULL_64F, zNULL_64F, 90};
    const Mu::Vision::RefFrame frame = tool.CreateTransformMatrix(anchor, Mu::Vision::RotationOrder::XYZ);
    const zPoint3d64f moved = frame.Apply(zPoint3d64f{1, 0, 0}); // turned onto y, then moved
    EXPECT_NEAR(moved.x, 1, 1e-12);
    EXPECT_NEAR(moved.y, 3, 1e-12);
    EXPECT_NEAR(moved.z, 3, 1e-12);
}

// --- inputs ---------------------------------------------------------------------------------------------------------

TEST_F(CommonTool, finds_the_message_of_an_input_by_its_id)
{
    tool.AddInput("A", AT_END).SetOptional(true);
    tool.AddInput("B", AT_END).SetOptional(true);
    const Ta::Object<void*> b = Measure(2);
    tool.execute = [&](TaPipe::InputSet& set) {
        EXPECT_EQ(tool.GetDataMessageInput(set, "B"), b.Get());
        EXPECT_EQ(tool.GetDataMessageInput(set, "C"), nullptr);
        EXPECT_EQ(tool.GetDataMessageInput(set, "A"), nullptr) << "a null message is no data";
    };
    Deliver({NullMessage(), b});
    EXPECT_EQ(tool.executions, 1);
}

class CommonTool_dynamic_inputs : public ToolFixture
{
protected:
    void SetUp() override
    {
        ToolFixture::SetUp();
        tool.AddInput("Fixed", AT_END);
    }

    void Handle(const std::vector<const char*>& ids, std::size_t first = 1)
    {
        tool.HandleDynamicInput(ids, ids, std::vector<PipeDataType>(ids.size(), PipeDataType::Image), first);
    }

    std::vector<std::string> Ids()
    {
        std::vector<std::string> ids;
        for (std::size_t i = 0; i < tool.InputCount(); ++i)
        {
            EXPECT_EQ(tool.InputAt(i).Index(), i);
            ids.emplace_back(tool.InputAt(i).Id());
        }
        return ids;
    }

    using Names = std::vector<std::string>;
};

TEST_F(CommonTool_dynamic_inputs, are_added_optional_with_name_and_format)
{
    tool.HandleDynamicInput({"A"}, {"Input A"}, {PipeDataType::UniformSurface}, 1);
    ASSERT_EQ(tool.InputCount(), 2U);
    TaPipe::ToolInputInfo& added = tool.InputAt(1);
    EXPECT_STREQ(added.Id(), "A");
    EXPECT_STREQ(added.DisplayName(), "Input A");
    EXPECT_TRUE(added.IsOptional());
    ASSERT_EQ(added.AcceptedDataFormats().size(), 1U);
    EXPECT_EQ(added.AcceptedDataFormats()[0], (TaPipe::PipeDataFormat{PipeDataType::UniformSurface, false}));
}

TEST_F(CommonTool_dynamic_inputs, that_stay_keep_their_place_and_their_route)
{
    Handle({"A", "B", "C"});
    tool.InputAt(3).Route({0, "source"});
    Handle({"D", "C", "B"});
    EXPECT_EQ(Ids(), (Names{"Fixed", "B", "C", "D"}));
    EXPECT_TRUE(tool.InputAt(2).IsActive());
    EXPECT_FALSE(tool.InputAt(1).IsActive());
}

TEST_F(CommonTool_dynamic_inputs, all_go_with_an_empty_list)
{
    Handle({"A", "B"});
    Handle({});
    EXPECT_EQ(Ids(), (Names{"Fixed"}));
}

TEST_F(CommonTool_dynamic_inputs, before_the_first_dynamic_index_stay_whatever_the_list_says)
{
    Handle({"Fixed"});
    EXPECT_EQ(Ids(), (Names{"Fixed", "Fixed"}));
}

TEST_F(CommonTool_dynamic_inputs, refuse_lists_of_different_length_and_a_first_index_of_0)
{
    const auto status = [this](std::size_t ids, std::size_t names, std::size_t types, std::size_t first) {
        try
        {
            tool.HandleDynamicInput(std::vector<const char*>(ids, "A"), std::vector<const char*>(names, "A"),
                                    std::vector<PipeDataType>(types), first);
        }
        catch (const Ta::Exception& exception)
        {
            EXPECT_STREQ(exception.Function(), "Mu::Tools::CommonTool::HandleDynamicInput");
            EXPECT_STREQ(exception.Message(), "");
            return exception.Status();
        }
        return zOK;
    };
    EXPECT_EQ(status(1, 0, 1, 1), 0);
    EXPECT_EQ(status(1, 1, 0, 1), 0);
    EXPECT_EQ(status(0, 1, 1, 1), 0);
    EXPECT_EQ(status(0, 0, 0, 0), 0) << "also with empty lists";
    EXPECT_EQ(Ids(), (Names{"Fixed"}));
    EXPECT_EQ(status(0, 0, 0, 1), zOK);
}

// --- user messages --------------------------------------------------------------------------------------------------

class CommonTool_user_message : public ToolFixture
{
protected:
    void SetUp() override
    {
        ToolFixture::SetUp();
        former = Ta::Logging::SetLogHandler({Keep, this});
    }

    void TearDown() override
    {
        Ta::Logging::SetLogHandler(former);
    }

    void Log(std::size_t level, const char* text)
    {
        tool.LogUserMessage(11, "Unit", level, "Probe", "%s", text);
    }

    static zStatus Keep(const Ta::Logging::LogRecord& record, void* context)
    {
        auto& self = *static_cast<CommonTool_user_message*>(context);
        self.lines.push_back(std::to_string(record.level & 0xFU) + " " + record.source + " " + record.file + ":" +
                             std::to_string(record.line) + " " + record.text);
        return self.answer;
    }

    Ta::Logging::LogHandler former{};
    std::vector<std::string> lines;
    zStatus answer = zOK;
};

TEST_F(CommonTool_user_message, is_logged_once_per_run_and_again_in_the_next)
{
    for (const std::size_t level : {INFORMATION, WARNING, ERROR})
    {
        lines.clear();
        tool.Start();
        Run([this, level] { Log(level, "dark"); });
        Run([this, level] { Log(level, "dark"); });
        EXPECT_EQ(lines, (std::vector<std::string>{std::to_string(level & 0xFU) + " Probe Unit:11 dark"}));
        tool.Stop();
        Log(level, "dark");
        EXPECT_EQ(lines.size(), 1U) << "a run ends with the next start";
        tool.Start();
        Run([this, level] { Log(level, "dark"); });
        EXPECT_EQ(lines.size(), 2U);
    }
}

TEST_F(CommonTool_user_message, is_logged_once_per_level)
{
    for (int repeat = 0; repeat < 2; ++repeat)
    {
        Log(INFORMATION, "same");
        Log(WARNING, "same");
        Log(ERROR, "same");
        Log(ERROR, "other");
    }
    EXPECT_EQ(lines, (std::vector<std::string>{"0 Probe Unit:11 same", "1 Probe Unit:11 same", "2 Probe Unit:11 same",
                                               "2 Probe Unit:11 other"}));
}

TEST_F(CommonTool_user_message, is_told_apart_by_its_formatted_text)
{
    tool.LogUserMessage(1, "U", INFORMATION, "S", "%d points", 3);
    tool.LogUserMessage(1, "U", INFORMATION, "S", "%d points", 4);
    tool.LogUserMessage(1, "U", INFORMATION, "S", "%s points", "4");
    EXPECT_EQ(lines.size(), 2U);
}

TEST_F(CommonTool_user_message, of_another_level_raises)
{
    for (const std::size_t level : {std::size_t{0}, std::size_t{1}, ERROR + 1, std::size_t{0x100000000U}})
    {
        try
        {
            Log(level, "x");
            ADD_FAILURE() << level;
        }
        catch (const Ta::Exception& exception)
        {
            EXPECT_EQ(exception.Status(), -996);
            EXPECT_STREQ(exception.Function(), "Mu::Tools::CommonTool::LogUserMessage");
            EXPECT_STREQ(exception.File(), "Libs/MuTlkHelper/MuTlkHelper/CommonTool");
        }
    }
    EXPECT_TRUE(lines.empty());
}

TEST_F(CommonTool_user_message, may_have_511_characters)
{
    Log(INFORMATION, std::string(511, 'a').c_str());
    EXPECT_EQ(lines.size(), 1U);
    EXPECT_THROW(Log(INFORMATION, std::string(512, 'b').c_str()), Ta::Exception);
    EXPECT_EQ(lines.size(), 1U);
}

TEST_F(CommonTool_user_message, that_the_log_refuses_raises_its_status_and_is_tried_again)
{
    answer = -5;
    try
    {
        Log(INFORMATION, "x");
        ADD_FAILURE();
    }
    catch (const Ta::Exception& exception)
    {
        EXPECT_EQ(exception.Status(), -5);
    }
    answer = zOK;
    Log(INFORMATION, "x");
    EXPECT_EQ(lines.size(), 2U);
}

// --- description and thresholds -------------------------------------------------------------------------------------

struct HelpCase
{
    const char* version;
    const char* numbers;
};

TEST(CommonTool_description, makes_the_help_address_from_the_hosts_version)
{
    const std::string former = TaPipe::ToolInfo::HostAppVersion();
    for (const HelpCase& c : {HelpCase{"6.4.2.11", "6.4"}, HelpCase{"12.0", "12.0"}, HelpCase{"7", "7.0"},
                              HelpCase{"", "1.0"}, HelpCase{"new", "1.0"}, HelpCase{"6.x", "1.0"},
                              HelpCase{"6.300.1.1", "1.0"}, HelpCase{"255.255.255.255", "255.255"}})
    {
        ASSERT_EQ(TaPlugin_SetHostInfo(c.version), zOK);
        EXPECT_EQ(TaPipe::ToolInfo::HostAppVersion(), c.version);
        TaPipe::ToolInfo info("SurfaceProbe");
        ProbeTool::Describe(info);
        EXPECT_EQ(info.HelpUrl(), std::string("https://manuals.example.com/manuals/tavro/tavro-") + c.numbers +
                                      "/OrvaneLaserLineProfiler/Content/Inline/SurfaceProbe.htm");
    }
    TaPlugin_SetHostInfo(former);
}

struct ThresholdCase
{
    TvPixelFormat format;
    int max;
    int initial;
};

TEST(CommonTool_thresholds, follow_the_pixel_format)
{
    ProbeTool tool;
    for (const ThresholdCase& c : {ThresholdCase{1, 255, 128},
                                   {3, 255, 128},
                                   {6, 255, 128},
                                   {0x1080001, 255, 128},
                                   {0x2180014, 255, 128},
                                   {0x2180015, 255, 128},
                                   {0x2200016, 255, 128},
                                   {0x2200017, 255, 128},
                                   {0x1100003, 1023, 512},
                                   {0x1100005, 4095, 2048},
                                   {0x1100025, 16383, 8192},
                                   {5, 65535, 32768},
                                   {0x1100007, 65535, 32768},
                                   {0, 65535, 32768},
                                   {2, 65535, 32768},
                                   {-1, 65535, 32768}})
    {
        EXPECT_EQ(tool.UpdateThresholdMax(c.format), c.max) << c.format;
        EXPECT_EQ(tool.UpdateThresholdDefault(c.format), c.initial) << c.format;
    }
}
} // namespace
