#include "../TaApi/LogCapture.h"
#include "AnchorFixture.h"

#include <MuTlkHelper/AnchorInput.h>
#include <MuTlkHelper/AnchoredRegion.h>

#include <Support/FaultWalk.h>

#include <cmath>
#include <limits>
#include <memory>
#include <set>
#include <stdexcept>

namespace
{
using namespace Support;
using Mu::TlkHelper::AnchoredRegionInterface;
using Mu::TlkHelper::AnchoredSurfaceRegion;
using Mu::TlkHelper::AnchorType;
using Mu::Tools::AnchorInput;
using TaPipe::PipeDataType;
using TaPipe::ToolLifeCycle;

using Texts = std::vector<std::string>;

constexpr double NULL_VALUE = -1.7976931348623157e308;
constexpr zStatus INJECTED = -4242;
constexpr std::array<double, 6> NULL_ANCHOR = {NULL_VALUE, NULL_VALUE, NULL_VALUE, NULL_VALUE, NULL_VALUE, NULL_VALUE};
constexpr Anchor ANCHOR{1, 2, 3, 4, 5, 6};

struct AxisText
{
    const char* id;
    const char* displayName;
};

// By the number of the axis.
constexpr std::array<AxisText, 6> AXIS_TEXTS = {{
    {"AnchorX", "Anchor X"},
    {"AnchorY", "Anchor Y"},
    {"AnchorZ", "Anchor Z"},
    {"AnchorXAngle", "Anchor X Angle"},
    {"AnchorYAngle", "Anchor Y Angle"},
    {"AnchorZAngle", "Anchor Z Angle"},
}};

class Anchor_inputs : public ToolFixture
{
protected:
    std::vector<int> Axes()
    {
        std::vector<int> axes;
        for (const AnchorInput& record : Access::AnchorInputs(tool))
        {
            axes.push_back(static_cast<int>(record.axis));
        }
        return axes;
    }

    /// What ExtractAnchorInputs gives in an execution with these values.
    Anchor Extracted(const Anchor& anchor)
    {
        Anchor extracted;
        tool.execute = [&](TaPipe::InputSet& set) { extracted = tool.ExtractAnchorInputs(set); };
        ScanOf(tool, {}, anchor);
        tool.execute = nullptr;
        return extracted;
    }

    /// What ExtractAnchorInputs raises in the execution that `deliver` brings about.
    std::vector<Ta::Exception> RaisedByExtracting(const std::function<void()>& deliver)
    {
        std::vector<Ta::Exception> raised;
        tool.execute = [&](TaPipe::InputSet& set) {
            try
            {
                static_cast<void>(tool.ExtractAnchorInputs(set));
            }
            catch (const Ta::Exception& exception)
            {
                raised.push_back(exception);
                throw;
            }
        };
        deliver();
        tool.execute = nullptr;
        return raised;
    }

    std::vector<Ta::Exception> RaisedByExtracting(const Anchor& anchor)
    {
        return RaisedByExtracting([&] { ScanOf(tool, {}, anchor); });
    }

    static void ExpectRaised(const std::vector<Ta::Exception>& raised, int status, const char* text)
    {
        ASSERT_EQ(raised.size(), 1U);
        EXPECT_EQ(raised[0].Status(), status);
        EXPECT_STREQ(raised[0].Message(), text);
        EXPECT_STREQ(raised[0].Function(), "Mu::Tools::CommonTool::ExtractAnchorInputs");
        EXPECT_STREQ(raised[0].File(), "Libs/MuTlkHelper/MuTlkHelper/CommonTool");
    }
};

// --- declaring the inputs -------------------------------------------------------------------------------------------

TEST(AnchorInput, has_no_input_and_no_source_at_first)
{
    const AnchorInput input;
    EXPECT_EQ(input.id, "");
    EXPECT_EQ(input.displayName, "");
    EXPECT_EQ(input.inputIndex, static_cast<std::size_t>(-1));
    EXPECT_FALSE(input.active);
    EXPECT_EQ(input.sourceId, "");
}

TEST(AnchorAxis, counts_from_x_to_the_z_angle)
{
    for (std::size_t i = 0; i < ALL_ANCHOR_AXES.size(); ++i)
    {
        EXPECT_EQ(static_cast<std::size_t>(ALL_ANCHOR_AXES[i]), i);
    }
}

struct TypeCase
{
    int type;
    bool withAngles;
    std::vector<int> axes;
};

TEST_F(Anchor_inputs, are_those_of_the_kind_of_anchor)
{
    const std::vector<TypeCase> cases = {
        {0, false, {0, 2}},      {0, true, {0, 2, 4}},  {1, false, {0, 1, 2}},
        {1, true, {0, 1, 2, 5}}, {2, false, {0, 1, 2}}, {2, true, {0, 1, 2, 3, 4, 5}},
        {3, false, {0, 1}},      {3, true, {0, 1, 5}},  {4, true, {}},
        {-1, true, {}},
    };
    tool.AddInput("Data", AT_END);
    for (const TypeCase& c : cases)
    {
        SCOPED_TRACE("type " + std::to_string(c.type) + (c.withAngles ? " with angles" : ""));
        while (tool.InputCount() > 1)
        {
            tool.RemoveInput(1);
        }
        tool.AddAnchorInputs(static_cast<AnchorType>(c.type), c.withAngles);
        ASSERT_EQ(Axes(), c.axes);
        ASSERT_EQ(tool.InputCount(), 1 + c.axes.size());
        for (std::size_t i = 0; i < c.axes.size(); ++i)
        {
            const AnchorInput& record = Access::AnchorInputs(tool)[i];
            const AxisText& text = AXIS_TEXTS[static_cast<std::size_t>(c.axes[i])];
            EXPECT_EQ(record.id, text.id);
            EXPECT_EQ(record.displayName, text.displayName);
            EXPECT_EQ(record.inputIndex, 1 + i);
            EXPECT_FALSE(record.active);
            EXPECT_EQ(record.sourceId, "");
            const TaPipe::ToolInputInfo& input = tool.InputAt(1 + i);
            EXPECT_STREQ(input.Id(), text.id);
            EXPECT_STREQ(input.DisplayName(), text.displayName);
            EXPECT_TRUE(input.IsOptional());
            ASSERT_EQ(input.AcceptedDataFormats().size(), 1U);
            EXPECT_EQ(input.AcceptedDataFormats()[0], (TaPipe::PipeDataFormat{PipeDataType::Measurement, false}));
        }
    }
}

TEST_F(Anchor_inputs, added_twice_are_there_twice_and_only_the_second_ones_are_read)
{
    tool.AddAnchorInputs(AnchorType::Profile, false);
    tool.InputAt(0).Route({0, "first"});
    tool.AddAnchorInputs(AnchorType::Profile, false);
    EXPECT_EQ(tool.InputCount(), 4U);
    ASSERT_EQ(Access::AnchorInputs(tool).size(), 2U);
    EXPECT_EQ(Access::AnchorInputs(tool)[0].inputIndex, 2U);
    EXPECT_EQ(Access::AnchorInputs(tool)[1].inputIndex, 3U);
    EXPECT_TRUE(tool.AllAnchorsInactive()) << "the records are new";
    Access::AnchorRoutingChanged(tool) = false;
    tool.InputAt(0).Route({0, "second"});
    EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
    tool.InputAt(3).Route({0, "second"});
    EXPECT_TRUE(Access::AnchorRoutingChanged(tool));
    EXPECT_FALSE(tool.AllAnchorsInactive());
}

TEST_F(Anchor_inputs, are_all_inactive_until_one_is_routed)
{
    EXPECT_TRUE(tool.AllAnchorsInactive()) << "there are none";
    tool.AddAnchorInputs(AnchorType::Box, true);
    EXPECT_TRUE(tool.AllAnchorsInactive());
    for (const AnchorAxis axis : ALL_ANCHOR_AXES)
    {
        RouteAnchors(tool, {axis}, "source");
        EXPECT_FALSE(tool.AllAnchorsInactive());
        RouteAnchors(tool, {axis}, "");
        EXPECT_TRUE(tool.AllAnchorsInactive());
    }
}

// The walks over failing calls rest on this: there is no status that declaring the inputs or Init could drop.
TEST(Anchor_inputs_declared, call_nothing_that_could_fail)
{
    RecordingHost host;
    const std::size_t calls = WalkFaults(INJECTED, [&host] {
        ProbeTool tool;
        tool.AddAnchorInputs(AnchorType::Box, true);
        static_cast<TaPipe::ITool&>(tool).Init(host);
        return zOK;
    });
    EXPECT_EQ(calls, 0U);
}

// --- reading them ---------------------------------------------------------------------------------------------------

TEST_F(Anchor_inputs, give_the_values_of_the_axes_that_are_routed)
{
    tool.AddInput("Data", AT_END).SetOptional(true);
    tool.AddAnchorInputs(AnchorType::Box, true);
    EXPECT_EQ(Fields(Extracted(ANCHOR)), NULL_ANCHOR);
    for (unsigned routed = 0; routed < 1U << ALL_ANCHOR_AXES.size(); ++routed)
    {
        std::array<double, 6> expected = NULL_ANCHOR;
        std::vector<AnchorAxis> axes;
        for (std::size_t i = 0; i < ALL_ANCHOR_AXES.size(); ++i)
        {
            if ((routed >> i & 1U) != 0)
            {
                axes.push_back(ALL_ANCHOR_AXES[i]);
                expected[i] = Fields(ANCHOR)[i];
            }
        }
        RouteAnchors(tool, ALL_ANCHOR_AXES, "");
        RouteAnchors(tool, axes, "source");
        EXPECT_EQ(Fields(Extracted(ANCHOR)), expected) << "axes " << routed;
    }
}

TEST_F(Anchor_inputs, give_the_value_whatever_it_is)
{
    tool.AddAnchorInputs(AnchorType::Profile, false);
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    const Ta::Object<void*> nullValue = Measure(NULL_VALUE);
    tool.execute = [this](TaPipe::InputSet& set) { EXPECT_EQ(tool.ExtractAnchorInputs(set).x, NULL_VALUE); };
    Deliver({nullValue});
    EXPECT_EQ(tool.executions, 1);
    Anchor odd;
    odd.x = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(Extracted(odd).x));
    odd.x = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Extracted(odd).x, odd.x);
}

TEST_F(Anchor_inputs, hold_no_message_afterwards)
{
    tool.AddAnchorInputs(AnchorType::Profile, false);
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    tool.Start();
    const Ta::Object<void*> message = Measure(4);
    Deliver({message});
    EXPECT_EQ(tool.anchor.x, 4.0);
    EXPECT_EQ(xzObject_ReferenceCount(message.Get()), 1);
}

TEST_F(Anchor_inputs, raise_on_a_null_message)
{
    tool.AddAnchorInputs(AnchorType::Box, true);
    for (const AnchorAxis axis : ALL_ANCHOR_AXES)
    {
        RouteAnchors(tool, ALL_ANCHOR_AXES, "source");
        Anchor anchor = ANCHOR;
        anchor.*ANCHOR_FIELDS[static_cast<std::size_t>(axis)] = NULL_VALUE;
        ExpectRaised(RaisedByExtracting(anchor), -997, "Invalid anchor input.");
        RouteAnchors(tool, {axis}, "");
        EXPECT_TRUE(RaisedByExtracting(anchor).empty()) << "an input without a route is not read";
    }
}

TEST_F(Anchor_inputs, raise_where_the_host_leaves_a_routed_one_out_of_the_set)
{
    tool.AddAnchorInputs(AnchorType::Profile, false);
    RouteAnchors(tool, {AnchorAxis::Z}, "source");
    const auto raised = RaisedByExtracting([this] { Deliver({Measure(1)}); }); // on the input of x
    ExpectRaised(raised, -997, "Invalid anchor input.");
}

TEST_F(Anchor_inputs, raise_on_an_axis_that_does_not_exist)
{
    tool.AddAnchorInputs(AnchorType::Profile, false);
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    for (const int axis : {6, 7, -1})
    {
        Access::AnchorInputs(tool)[0].axis = static_cast<AnchorAxis>(axis);
        const auto raised = RaisedByExtracting([this] { Deliver({Measure(1)}); });
        ExpectRaised(raised, -996, "Unknown anchor axis");
    }
}

// --- the calls that go to all regions -------------------------------------------------------------------------------

/// A region that notes what it is told to do.
class NotingRegion final : public AnchoredRegionInterface
{
public:
    NotingRegion(std::string ownName, Texts& calls)
        : name(std::move(ownName))
        , noted(calls)
    {
    }

    void SynchronizeRegion() override
    {
        Note("SynchronizeRegion");
    }

    void RefreshRelativeRegion() override
    {
        Note("RefreshRelativeRegion");
    }

    void RefreshConfigRegion() override
    {
        Note("RefreshConfigRegion");
    }

    void CalculateTransformMatrix(const Anchor& anchor) override
    {
        Note("CalculateTransformMatrix", anchor);
    }

    void CalculateAbsoluteRegion(const Anchor& anchor) override
    {
        Note("CalculateAbsoluteRegion", anchor);
    }

    void CalculateRelativeRegion(const Anchor& anchor) override
    {
        Note("CalculateRelativeRegion", anchor);
    }

    void ResetTransformMatrix() override
    {
        Note("ResetTransformMatrix");
    }

    void SetTransformMatrixAsInvalid() override
    {
        Note("SetTransformMatrixAsInvalid");
    }

    void RefreshConfigTransformMatrix() override
    {
        Note("RefreshConfigTransformMatrix");
    }

    bool IsTransformMatrixIdentity() override
    {
        ++identityQuestions;
        return isIdentity;
    }

    bool IsRegionUsed() override
    {
        return isUsed;
    }

    void SetRegionUsed(bool used) override
    {
        isUsed = used;
    }

    Mu::Vision::MaskType GetRegionType() override
    {
        return Mu::Vision::MaskType::Rectangle;
    }

    ~NotingRegion() override = default;

    bool isIdentity = true;
    int identityQuestions = 0;
    bool isUsed = true;

private:
    void Note(const char* call)
    {
        noted.push_back(name + "." + call);
    }

    void Note(const char* call, const Anchor& anchor)
    {
        const std::string x = anchor.x == NULL_VALUE ? "null" : std::to_string(static_cast<int>(anchor.x));
        noted.push_back(name + "." + call + "(" + x + ")");
    }

    std::string name;
    Texts& noted;
};

class Region_calls : public Anchor_inputs
{
protected:
    void SetUp() override
    {
        Anchor_inputs::SetUp();
        tool.AddAnchorInputs(AnchorType::Profile, false);
        tool.RegisterAnchoredRegion(&a);
        tool.RegisterAnchoredRegion(&b);
        tool.ParamsChangedEvent().Add([this](TaPipe::ITool::ParamsChangeType type) {
            calls.emplace_back(type == TaPipe::ITool::ParamsChangeType::Values ? "notify" : "notify structure");
        });
        tool.initializeRegions = [this] { calls.emplace_back("place"); };
        tool.execute = [this](TaPipe::InputSet&) { calls.emplace_back("Execute"); };
    }

    /// What was noted since the last time.
    Texts Taken()
    {
        return std::exchange(calls, {});
    }

    void Scan(double x)
    {
        Anchor anchor;
        anchor.x = x;
        ScanOf(tool, {}, anchor);
    }

    Texts calls;
    NotingRegion a{"a", calls};
    NotingRegion b{"b", calls};
};

TEST_F(Region_calls, go_to_every_region_in_order)
{
    struct Call
    {
        const char* name;
        void (*run)(Mu::Tools::CommonTool&);
        const char* argument;
    };
    tool.anchor = ANCHOR;
    for (const Call& c : {
             Call{"SynchronizeRegion", Access::SynchronizeRegion, ""},
             Call{"RefreshRelativeRegion", Access::RefreshRelativeRegion, ""},
             Call{"ResetTransformMatrix", Access::ResetTransformMatrix, ""},
             Call{"SetTransformMatrixAsInvalid", Access::SetTransformMatrixAsInvalid, ""},
             Call{"CalculateRelativeRegion", Access::CalculateRelativeRegion, "(1)"},
             Call{"CalculateAbsoluteRegion", Access::CalculateAbsoluteRegion, "(1)"},
             Call{"CalculateTransformMatrix", Access::CalculateTransformMatrix, "(1)"},
         })
    {
        c.run(tool);
        const std::string call = std::string(".") + c.name + c.argument;
        EXPECT_EQ(Taken(), (Texts{"a" + call, "b" + call}));
    }
}

TEST_F(Region_calls, go_twice_to_a_region_that_is_registered_twice)
{
    tool.RegisterAnchoredRegion(&a);
    Access::SynchronizeRegion(tool);
    EXPECT_EQ(Taken(), (Texts{"a.SynchronizeRegion", "b.SynchronizeRegion", "a.SynchronizeRegion"}));
}

TEST_F(Region_calls, do_not_know_of_a_null_region)
{
    tool.RegisterAnchoredRegion(nullptr);
    EXPECT_EQ(Access::AnchoredRegions(tool), (std::vector<AnchoredRegionInterface*>{&a, &b}));
    Access::SynchronizeRegion(tool);
    EXPECT_EQ(Taken(), (Texts{"a.SynchronizeRegion", "b.SynchronizeRegion"}));
}

TEST_F(Region_calls, write_back_only_what_changed)
{
    tool.anchor = ANCHOR;
    const Texts transform = {"a.CalculateTransformMatrix(1)", "b.CalculateTransformMatrix(1)",
                             "a.RefreshConfigTransformMatrix", "b.RefreshConfigTransformMatrix"};
    const Texts regions = {"a.RefreshConfigRegion", "b.RefreshConfigRegion"};
    for (const bool transformChanged : {false, true})
    {
        for (const bool relativeChanged : {false, true})
        {
            Access::TransformChanged(tool) = transformChanged;
            Access::RelativeRegionChanged(tool) = relativeChanged;
            Access::RefreshConfigRegion(tool);
            Texts expected = transformChanged ? transform : Texts();
            if (relativeChanged)
            {
                expected.insert(expected.end(), regions.begin(), regions.end());
            }
            EXPECT_EQ(Taken(), expected);
            EXPECT_EQ(Access::TransformChanged(tool), transformChanged) << "Stop clears the marks";
            EXPECT_EQ(Access::RelativeRegionChanged(tool), relativeChanged) << "Stop clears the marks";
        }
    }
}

TEST_F(Region_calls, find_an_identity_only_if_every_region_has_one)
{
    for (const bool first : {true, false})
    {
        for (const bool second : {true, false})
        {
            a.isIdentity = first;
            b.isIdentity = second;
            EXPECT_EQ(Access::IsTransformMatrixIdentity(tool), first && second);
        }
    }
    EXPECT_EQ(b.identityQuestions, 4) << "it is asked behind one that says no, too";
    ProbeTool bare;
    EXPECT_TRUE(Access::IsTransformMatrixIdentity(bare)) << "a tool without regions";
}

TEST_F(Region_calls, of_a_start_without_anchors_synchronise)
{
    tool.Start();
    EXPECT_EQ(Taken(), (Texts{"a.SynchronizeRegion", "b.SynchronizeRegion"}));
    Scan(1);
    EXPECT_EQ(Taken(), Texts{"Execute"});
    tool.Stop();
    EXPECT_EQ(Taken(), Texts());
}

TEST_F(Region_calls, of_a_start_with_an_anchor_come_before_and_after_the_host_hears_of_the_transform)
{
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    tool.Start();
    EXPECT_EQ(Taken(), (Texts{"a.SetTransformMatrixAsInvalid", "b.SetTransformMatrixAsInvalid", "notify",
                              "a.RefreshRelativeRegion", "b.RefreshRelativeRegion"}));
}

TEST_F(Region_calls, of_a_start_after_the_last_anchor_went_forget_it)
{
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    tool.anchor = ANCHOR;
    RouteAnchors(tool, {AnchorAxis::X}, "");
    tool.Start();
    EXPECT_EQ(Taken(), (Texts{"a.CalculateRelativeRegion(null)", "b.CalculateRelativeRegion(null)",
                              "a.ResetTransformMatrix", "b.ResetTransformMatrix"}));
    EXPECT_EQ(Fields(tool.anchor), NULL_ANCHOR);
    tool.Stop();
    EXPECT_EQ(Taken(), (Texts{"a.CalculateTransformMatrix(null)", "b.CalculateTransformMatrix(null)",
                              "a.RefreshConfigTransformMatrix", "b.RefreshConfigTransformMatrix",
                              "a.RefreshConfigRegion", "b.RefreshConfigRegion", "notify"}));
}

TEST_F(Region_calls, of_an_execution_come_before_Execute_and_define_the_relative_region_once)
{
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    tool.Start();
    calls.clear();
    Scan(4);
    EXPECT_EQ(Taken(), (Texts{"a.CalculateRelativeRegion(4)", "b.CalculateRelativeRegion(4)", "Execute"}));
    EXPECT_TRUE(Access::RelativeRegionChanged(tool));
    Scan(5);
    EXPECT_EQ(Taken(), (Texts{"a.CalculateAbsoluteRegion(5)", "b.CalculateAbsoluteRegion(5)", "Execute"}));
    tool.Stop();
    EXPECT_EQ(Taken(),
              (Texts{"a.CalculateTransformMatrix(5)", "b.CalculateTransformMatrix(5)", "a.RefreshConfigTransformMatrix",
                     "b.RefreshConfigTransformMatrix", "a.RefreshConfigRegion", "b.RefreshConfigRegion", "notify"}));
}

TEST_F(Region_calls, of_an_execution_wait_for_the_start_that_sees_the_anchor)
{
    tool.Start();
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    calls.clear();
    Scan(4);
    EXPECT_EQ(Taken(), Texts{"Execute"}) << "anchors become active at a start";
    EXPECT_EQ(Fields(tool.anchor), NULL_ANCHOR);
}

TEST_F(Region_calls, of_an_execution_with_restored_routes_move_the_regions)
{
    tool.UpdateLifeCycle(ToolLifeCycle::Restoring);
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    tool.UpdateLifeCycle(ToolLifeCycle::Operational);
    tool.Start();
    calls.clear();
    Scan(4);
    EXPECT_EQ(Taken(), (Texts{"a.CalculateAbsoluteRegion(4)", "b.CalculateAbsoluteRegion(4)", "Execute"}));
    EXPECT_FALSE(Access::RelativeRegionChanged(tool));
    tool.Stop();
    EXPECT_EQ(Taken(), (Texts{"a.CalculateTransformMatrix(4)", "b.CalculateTransformMatrix(4)",
                              "a.RefreshConfigTransformMatrix", "b.RefreshConfigTransformMatrix", "notify"}));
}

TEST_F(Region_calls, in_the_stage_that_takes_defaults_place_first_then_follow_the_anchor)
{
    tool.AddInput("Data", AT_END).SetOptional(true);
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    tool.Start();
    calls.clear();
    // A surface without bounding box places no region, so that the base leaves these two alone.
    const Ta::Object<void*> surface = Surface({{1}});
    const Ta::Object<void*> x = Measure(4);
    void* const handles[] = {surface.Get(), x.Get()};
    const TaPipe::MessageInput inputs[] = {{2, std::span<void* const>(&handles[0], 1)},
                                           {0, std::span<void* const>(&handles[1], 1)}};
    ASSERT_TRUE(tool.ProcessInputSet(inputs, 2));
    EXPECT_EQ(Taken(), (Texts{"place", "a.SynchronizeRegion", "b.SynchronizeRegion", "a.CalculateRelativeRegion(4)",
                              "b.CalculateRelativeRegion(4)", "Execute"}));
    tool.Stop();
    EXPECT_EQ(Taken(), Texts{"notify"}) << "the parameters keep the place that they were given";
    EXPECT_FALSE(Access::RelativeRegionChanged(tool));
    EXPECT_FALSE(Access::TransformChanged(tool));
}

TEST_F(Region_calls, do_not_come_in_an_execution_that_ends_before)
{
    tool.AddInput("Data", AT_END);
    RouteAnchors(tool, {AnchorAxis::X}, "source");
    tool.Start();
    calls.clear();
    const Ta::Object<void*> x = Measure(4);
    void* const handles[] = {nullptr, x.Get()};
    const TaPipe::MessageInput inputs[] = {{2, std::span<void* const>(&handles[0], 1)},
                                           {0, std::span<void* const>(&handles[1], 1)}};
    ASSERT_TRUE(tool.ProcessInputSet(inputs, 2));
    EXPECT_EQ(Taken(), Texts());
    EXPECT_EQ(Fields(tool.anchor), NULL_ANCHOR);
    EXPECT_TRUE(Access::AnchorRoutingChanged(tool));
}

TEST_F(Region_calls, do_not_come_for_a_null_anchor_and_every_output_is_null)
{
    tool.AddMeasurementOutput("A", false, AT_END);
    tool.AddMeasurementOutput("B", false, AT_END);
    RouteAnchors(tool, {AnchorAxis::X, AnchorAxis::Z}, "source");
    tool.Start();
    tool.anchor = ANCHOR;
    calls.clear();
    for (const Anchor& anchor : {Anchor{NULL_VALUE, 0, 3, 0, 0, 0}, Anchor{1, 0, NULL_VALUE, 0, 0, 0}})
    {
        host.deliveries.clear();
        ScanOf(tool, {}, anchor);
        EXPECT_EQ(Taken(), Texts());
        EXPECT_EQ(host.NullOutputs(), (Texts{"A", "B"}));
        EXPECT_EQ(host.deliveries.size(), 2U);
        EXPECT_EQ(Fields(tool.anchor), Fields(ANCHOR)) << "the last good one";
        EXPECT_TRUE(Access::AnchorRoutingChanged(tool));
    }
}

// --- failures -------------------------------------------------------------------------------------------------------

class Anchored_execution : public ToolFixture
{
protected:
    void SetUp() override
    {
        ToolFixture::SetUp();
        tool.AddInput("Data", AT_END);
        tool.AddMeasurementOutput("A", false, AT_END);
        tool.AddAnchorInputs(AnchorType::Surface, true);
        tool.RegisterAnchoredRegion(&region);
        SetParameters(region, PLACE);
        tool.Start();
        tool.Stop();
        RouteAnchors(tool, ALL_ANCHOR_AXES, "source");
        tool.Start();
    }

    void Scan()
    {
        ScanOf(tool, Surface({{1, 2}}).BoundingBox({1, 2, 3, 4, 5, 6}), {1, 2, 3, 0, 0, 90});
    }

    /// A good execution: the region stays, and its relative region is worked out from that.
    void ExpectGoodScan()
    {
        host.deliveries.clear();
        tool.execute = [this](TaPipe::InputSet&) { tool.SendMeasurement("A", 5, false, nullptr); };
        Scan();
        ASSERT_EQ(host.deliveries.size(), 1U);
        EXPECT_TRUE(host.deliveries[0].IsMeasurement());
        host.deliveries.clear();
        ExpectNear(Fields(region.absoluteRegion), PLACE);
        ExpectNear(Fields(region.relativeRegion), RELATIVE);
        EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
    }

    static constexpr RegionFields PLACE = {10, 20, 30, 4, 6, 8, 0, 0, 0};
    static constexpr RegionFields RELATIVE = {18, -9, 27, 4, 6, 8, 0, 0, -90};

    AnchoredSurfaceRegion region{true};
};

TEST_F(Anchored_execution, ends_in_null_outputs_whatever_call_before_Execute_fails)
{
    std::set<std::string> met;
    const std::size_t steps = WalkFaults(
        INJECTED,
        [&] {
            Access::AnchorRoutingChanged(tool) = true;
            host.deliveries.clear();
            const int before = tool.executions;
            tool.execute = [this](TaPipe::InputSet&) {
                zFault_Disarm();
                tool.SendMeasurement("A", 5, false, nullptr);
            };
            try
            {
                Scan();
            }
            catch (const Ta::Exception& exception)
            {
                EXPECT_EQ(exception.Status(), INJECTED) << "making or delivering the messages failed";
                host.deliveries.clear();
                return false;
            }
            return tool.executions > before;
        },
        [&](const std::string& operation, bool executed) {
            met.insert(operation);
            EXPECT_EQ(executed, IsRelease(operation));
            EXPECT_TRUE(host.deliveries.empty() || host.deliveries[0].IsNullMessage() == !executed);
            EXPECT_EQ(Access::AnchorRoutingChanged(tool), !executed);
            EXPECT_EQ(alloc.LiveBlocks(), host.deliveries.size());
            ExpectGoodScan();
            EXPECT_EQ(alloc.LiveBlocks(), 0U);
        });
    EXPECT_GT(steps, 0U);
    EXPECT_TRUE(met.contains("xzObject_ShareImpl"));
    EXPECT_TRUE(met.contains("xzObject_DestroyImpl"));
}

TEST_F(Anchored_execution, ends_in_a_null_output_when_its_message_cannot_be_made)
{
    std::size_t failures = 0;
    for (std::size_t n = 1;; ++n)
    {
        ASSERT_LT(n, MOST_STEPS);
        Access::AnchorRoutingChanged(tool) = true;
        bool raised = true;
        tool.execute = [&](TaPipe::InputSet&) {
            alloc.FailAt(n);
            tool.SendMeasurement("A", 5, false, nullptr);
            raised = false;
        };
        Scan();
        alloc.FailAt(0);
        ASSERT_EQ(host.deliveries.size(), 1U);
        EXPECT_EQ(host.deliveries[0].IsNullMessage(), raised);
        EXPECT_EQ(Access::AnchorRoutingChanged(tool), raised);
        ExpectGoodScan();
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        if (!raised)
        {
            break;
        }
        ++failures;
    }
    EXPECT_GE(failures, 1U);
}

TEST_F(Anchored_execution, asks_the_tools_allocator_for_its_messages_only)
{
    ExpectGoodScan();
    const std::size_t before = alloc.Requests();
    tool.execute = nullptr;
    Scan();
    Scan();
    EXPECT_EQ(alloc.Requests(), before);
}

TEST_F(Anchored_execution, hands_a_refused_write_back_at_Stop_to_the_host)
{
    ExpectGoodScan();
    const LogCapture log;      // the refusal is logged, too
    region.y.EnableMinimum(0); // the relative region has y at -9
    try
    {
        tool.Stop();
        ADD_FAILURE() << "a value outside its limit was taken";
    }
    catch (const Ta::Exception& exception)
    {
        EXPECT_EQ(exception.Status(), -997);
    }
    EXPECT_EQ(region.x.Get(), 18.0) << "written before";
    EXPECT_EQ(region.y.Get(), 20.0);
    EXPECT_EQ(region.z.Get(), 30.0) << "not written any more";
    EXPECT_TRUE(Access::RelativeRegionChanged(tool)) << "it can be tried again";
    region.y.SetMinimum(-100);
    tool.Stop();
    ExpectNear(Parameters(region), RELATIVE);
}
} // namespace
