#include "ToolFixture.h"

#include <MuTlkHelper/GraphicUtils.h>

#include <Support/FaultWalk.h>

#include <TaPipe/TpGraphic.h>
#include <TaPipe/TpGraphicElement.h>
#include <TaVision/TvRenderingMsg.h>

#include <set>

namespace
{
using namespace Support;
using TaPipe::PipeDataFormat;
using TaPipe::PipeDataType;
using TaPipe::ToolOutputInfo;

constexpr z8u SPACE_TYPE = 200;

Ta::Object<void*> NewGraphic()
{
    Ta::Object<void*> graphic;
    MU_CHECK(TpGraphic_Construct(graphic.Out(), nullptr));
    Mu::TlkHelper::GraphicAddArrow(graphic.Get(), {1, 2, 3}, {4, 5, 6}, nullptr);
    return graphic;
}

class Rendering_outputs : public ToolFixture
{
protected:
    void ExpectRendering(const Ta::Object<void*>& message, const Ta::Object<void*>& rendering)
    {
        ASSERT_TRUE(xzCastClass_ObjectIs(message.Get(), zTypeOf(TvRenderingMsg)));
        EXPECT_EQ(TvRenderingMsg_Rendering(message.Get()), rendering.Get());
        EXPECT_EQ(TvDataMsg_SpaceType(message.Get()), SPACE_TYPE);
    }

    void ExpectRaised(int status, const char* function, const std::string& text, const std::function<void()>& body)
    {
        const std::vector<Ta::Exception> raised = RaisedBy(body);
        ASSERT_EQ(raised.size(), 1U);
        EXPECT_EQ(raised[0].Status(), status);
        EXPECT_EQ(raised[0].Function(), std::string("Mu::Tools::CommonTool::") + function);
        EXPECT_STREQ(raised[0].File(), "Libs/MuTlkHelper/MuTlkHelper/CommonTool");
        EXPECT_EQ(raised[0].Message(), text);
        host.deliveries.clear();
    }

    Ta::Object<void*> graphic = NewGraphic();
};

TEST_F(Rendering_outputs, are_declared_for_graphics_and_come_behind_results)
{
    tool.AddOutput("First", AT_END);
    const ToolOutputInfo& one = tool.AddRenderingOutput("One", false);
    const ToolOutputInfo& many = tool.AddRenderingOutput("Many", true);
    EXPECT_EQ(one.DataFormat(), (PipeDataFormat{PipeDataType::Rendering, false}));
    EXPECT_EQ(many.DataFormat(), (PipeDataFormat{PipeDataType::Rendering, true}));
    EXPECT_EQ(static_cast<int>(one.DataFormat().type), 70);
    EXPECT_EQ(one.Index(), 1U);
    EXPECT_EQ(many.Index(), 2U);
    EXPECT_EQ(one.Priority() / 1000, 1U);
    EXPECT_EQ(tool.FindOutputById("First")->Priority() / 1000, 0U);
    EXPECT_EQ(tool.FindOutputById("Many"), &many);
}

TEST_F(Rendering_outputs, send_a_graphic_of_which_the_caller_keeps_its_reference)
{
    ToolOutputInfo& output = tool.AddRenderingOutput("A", false);
    Run([&] { tool.RenderGraphics(&output, graphic.Get(), SPACE_TYPE, false); });
    Run([&] { tool.RenderGraphics("A", graphic.Get(), SPACE_TYPE, false); });
    ASSERT_EQ(host.deliveries.size(), 2U);
    for (const Delivery& delivery : host.deliveries)
    {
        EXPECT_FALSE(delivery.isArray);
        EXPECT_EQ(delivery.sendKind, 1);
        ASSERT_EQ(delivery.messages.size(), 1U);
        ExpectRendering(delivery.messages[0], graphic);
    }
    EXPECT_EQ(xzObject_ReferenceCount(graphic.Get()), 3);
    host.deliveries.clear();
    EXPECT_EQ(xzObject_ReferenceCount(graphic.Get()), 1);
}

TEST_F(Rendering_outputs, send_a_missing_graphic_as_a_null_message)
{
    tool.AddRenderingOutput("A", false);
    Run([&] { tool.RenderGraphics("A", nullptr, SPACE_TYPE, false); });
    ASSERT_EQ(host.deliveries.size(), 1U);
    EXPECT_TRUE(host.deliveries[0].IsNullMessage());
}

TEST_F(Rendering_outputs, send_arrays_with_null_messages_for_null_handles)
{
    ToolOutputInfo& output = tool.AddRenderingOutput("A", true);
    const std::vector<Ta::Object<void*>> graphics{graphic, Ta::Object<void*>(), NewGraphic()};
    Run([&] { tool.RenderArrayedGraphics(&output, graphics, SPACE_TYPE); });
    Run([&] { tool.RenderArrayedGraphics("A", graphics, SPACE_TYPE); });
    ASSERT_EQ(host.deliveries.size(), 2U);
    for (const Delivery& delivery : host.deliveries)
    {
        EXPECT_TRUE(delivery.isArray);
        ASSERT_EQ(delivery.messages.size(), 3U);
        ExpectRendering(delivery.messages[0], graphics[0]);
        EXPECT_TRUE(xzCastClass_ObjectIs(delivery.messages[1].Get(), zTypeOf(TvNullMsg)));
        ExpectRendering(delivery.messages[2], graphics[2]);
    }
}

TEST_F(Rendering_outputs, send_an_empty_array_as_a_null_handle)
{
    tool.AddRenderingOutput("A", true);
    Run([&] { tool.RenderArrayedGraphics("A", {}, SPACE_TYPE); });
    ASSERT_EQ(host.deliveries.size(), 1U);
    EXPECT_FALSE(host.deliveries[0].isArray);
    EXPECT_EQ(host.deliveries[0].Message(), nullptr);
}

TEST_F(Rendering_outputs, that_are_disabled_send_nothing)
{
    tool.AddRenderingOutput("A", true).Enable(false);
    Run([&] {
        tool.RenderGraphics("A", graphic.Get(), SPACE_TYPE, false);
        tool.RenderArrayedGraphics("A", {graphic}, SPACE_TYPE);
        tool.RenderArrayedGraphics("A", {}, SPACE_TYPE);
    });
    EXPECT_TRUE(host.deliveries.empty());
    EXPECT_EQ(xzObject_ReferenceCount(graphic.Get()), 1);
}

TEST_F(Rendering_outputs, that_are_missing_are_raised_with_their_id)
{
    ToolOutputInfo* const none = nullptr;
    ExpectRaised(-999, "RenderGraphics", "Missing graphic id: B",
                 [&] { tool.RenderGraphics("B", graphic.Get(), SPACE_TYPE, false); });
    ExpectRaised(-999, "RenderArrayedGraphics", "Missing graphic id: B",
                 [&] { tool.RenderArrayedGraphics("B", {graphic}, SPACE_TYPE); });
    ExpectRaised(-999, "RenderArrayedGraphics", "Missing graphic id: (null)",
                 [&] { tool.RenderArrayedGraphics(none, {}, SPACE_TYPE); });
    ExpectRaised(-999, "RenderGraphics", "", [&] { tool.RenderGraphics(none, nullptr, SPACE_TYPE, false); });
}

TEST_F(Rendering_outputs, of_another_type_are_refused_also_when_disabled)
{
    ToolOutputInfo& output = tool.AddMeasurementOutput("A", false, AT_END);
    output.Enable(false);
    const std::string text =
        std::string("Tool output format is not (tool: MuToolTemplate[") + output.DisplayName() + "]).";
    ExpectRaised(-984, "CheckOutputFormat", text, [&] { tool.RenderGraphics(&output, nullptr, SPACE_TYPE, false); });
}

// Whatever fails, the graphic keeps the caller's reference only, and the tool works afterwards.
TEST_F(Rendering_outputs, raise_the_status_of_every_failing_base_call)
{
    constexpr zStatus INJECTED = -4242;
    tool.AddRenderingOutput("A", false);
    std::set<std::string> met;
    for (std::size_t n = 1; n < MOST_STEPS; ++n)
    {
        std::vector<Ta::Exception> raised;
        Run([&] {
            const ArmedFault fault(n, INJECTED);
            try
            {
                tool.RenderGraphics("A", graphic.Get(), SPACE_TYPE, false);
            }
            catch (const Ta::Exception& exception)
            {
                raised.push_back(exception);
            }
        });
        const std::string operation = ArmedFault::Failed();
        host.deliveries.clear();
        EXPECT_EQ(xzObject_ReferenceCount(graphic.Get()), 1) << operation;
        EXPECT_EQ(alloc.LiveBlocks(), 0U) << operation;
        if (operation.empty())
        {
            break;
        }
        met.insert(operation);
        ASSERT_EQ(raised.empty(), IsRelease(operation)) << operation;
        if (!raised.empty())
        {
            EXPECT_EQ(raised[0].Status(), INJECTED);
            // A message is shared by the recording host, a graphic by the tool.
            const std::string function = raised[0].Function();
            EXPECT_TRUE(operation == "xzObject_ShareImpl"
                            ? function == "Ta::Object<void *>::Reset" || function == "Ta::Object<void *>::Object"
                            : function == "Mu::Tools::CommonTool::RenderGraphics")
                << operation << " " << function;
        }
        Run([&] { tool.RenderGraphics("A", graphic.Get(), SPACE_TYPE, false); });
        EXPECT_EQ(host.deliveries.size(), 1U);
        host.deliveries.clear();
    }
    for (const char* const operation :
         {"TvRenderingMsg_Construct", "TvRenderingMsg_SetRendering", "TvDataMsg_SetSpaceType", "xzObject_ShareImpl"})
    {
        EXPECT_TRUE(met.contains(operation)) << operation;
    }
}
} // namespace
