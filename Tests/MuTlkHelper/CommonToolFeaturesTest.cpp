#include "PointTestTools.h"
#include "ToolFixture.h"

#include <map>

namespace
{
using namespace Support;
using TaPipe::PipeDataType;
using TaPipe::ToolOutputInfo;

constexpr zStamp STAMP{1, 22, 333, 4444};
const zPoint3d64f GOOD{1, 2, 3};
const zPoint3d64f OTHER{0, 0, 2};
const zPoint3d64f NO_Z{1, 2, NULL_VALUE};

/// What a feature message holds; empty for a null message.
std::vector<double> Content(void* message)
{
    const auto all = [](std::initializer_list<zPoint3d64f> points, std::initializer_list<double> sizes) {
        std::vector<double> values;
        for (const zPoint3d64f& p : points)
        {
            values.insert(values.end(), {p.x, p.y, p.z});
        }
        values.insert(values.end(), sizes);
        return values;
    };
    if (xzCastClass_ObjectIs(message, zTypeOf(TvPointFeatureMsg)))
    {
        return all({TvPointFeatureMsg_Position(message)}, {});
    }
    if (xzCastClass_ObjectIs(message, zTypeOf(TvLineFeatureMsg)))
    {
        return all({TvLineFeatureMsg_Position(message), TvLineFeatureMsg_Direction(message)}, {});
    }
    if (xzCastClass_ObjectIs(message, zTypeOf(TvPlaneFeatureMsg)))
    {
        return all({TvPlaneFeatureMsg_Normal(message)}, {TvPlaneFeatureMsg_OriginDistance(message)});
    }
    if (xzCastClass_ObjectIs(message, zTypeOf(TvCircleFeatureMsg)))
    {
        return all({TvCircleFeatureMsg_Position(message), TvCircleFeatureMsg_Normal(message)},
                   {TvCircleFeatureMsg_Radius(message)});
    }
    EXPECT_TRUE(xzCastClass_ObjectIs(message, zTypeOf(TvNullMsg)));
    return {};
}

std::vector<std::uint64_t> BitsOfAll(const std::vector<double>& values)
{
    std::vector<std::uint64_t> bits;
    for (const double value : values)
    {
        bits.push_back(Bits(value));
    }
    return bits;
}

class Features : public ToolFixture
{
protected:
    void SetUp() override
    {
        ToolFixture::SetUp();
        Add("Point", PipeDataType::PointFeature);
        Add("Line", PipeDataType::LineFeature);
        Add("Plane", PipeDataType::PlaneFeature);
        Add("Circle", PipeDataType::CircleFeature);
    }

    void Add(const char* id, PipeDataType type)
    {
        tool.AddOutput(id, AT_END).SetDataFormat(type, false);
    }

    ToolOutputInfo* Out(const char* id)
    {
        return tool.FindOutputById(id);
    }

    /// What `body`, as an execution, sent on its one output as one message.
    std::vector<double> SentBy(const std::function<void()>& body)
    {
        host.deliveries.clear();
        Run(body);
        EXPECT_EQ(host.deliveries.size(), 1U);
        if (host.deliveries.size() != 1)
        {
            return {};
        }
        EXPECT_FALSE(host.deliveries[0].isArray);
        EXPECT_EQ(host.deliveries[0].sendKind, 1);
        return Content(host.deliveries[0].Message());
    }

    /// What `body` sent as one array.
    std::vector<std::vector<double>> ArrayBy(const std::function<void()>& body)
    {
        host.deliveries.clear();
        Run(body);
        EXPECT_EQ(host.deliveries.size(), 1U);
        std::vector<std::vector<double>> contents;
        for (const Delivery& sent : host.deliveries)
        {
            EXPECT_TRUE(sent.isArray);
            for (const Ta::Object<void*>& message : sent.messages)
            {
                contents.push_back(Content(message.Get()));
            }
        }
        return contents;
    }

    void ExpectRaised(int status, const std::string& function, const std::string& text,
                      const std::function<void()>& body)
    {
        const std::vector<Ta::Exception> raised = RaisedBy(body);
        ASSERT_EQ(raised.size(), 1U);
        EXPECT_EQ(raised[0].Status(), status);
        EXPECT_EQ(raised[0].Function(), "Mu::Tools::CommonTool::" + function);
        EXPECT_STREQ(raised[0].File(), "Libs/MuTlkHelper/MuTlkHelper/CommonTool");
        EXPECT_EQ(raised[0].Message(), text);
        host.deliveries.clear();
    }
};

using Values = std::vector<double>;
const Values NONE;

// --- one feature ----------------------------------------------------------------------------------------------------

TEST_F(Features, arrive_as_they_were_sent_by_every_way_of_address)
{
    const Values point{1, 2, 3};
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePoint(Out("Point"), GOOD, false, nullptr); }), point);
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePoint("Point", GOOD, false, nullptr); }), point);
    const Values line{1, 2, 3, 0, 0, 2};
    EXPECT_EQ(SentBy([&] { tool.SendFeatureLine(Out("Line"), GOOD, OTHER, false, nullptr); }), line);
    EXPECT_EQ(SentBy([&] { tool.SendFeatureLine("Line", GOOD, OTHER, false, nullptr); }), line);
    EXPECT_EQ(SentBy([&] { tool.SendFeatureLine(std::size_t{1}, GOOD, OTHER, false); }), line);
    const Values plane{0, 0, 2, 7};
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePlane(Out("Plane"), OTHER, 7, false, nullptr); }), plane);
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePlane("Plane", OTHER, 7, false, nullptr); }), plane);
    const Values circle{1, 2, 3, 0, 0, 2, 4.5};
    EXPECT_EQ(SentBy([&] { tool.SendFeatureCircle(Out("Circle"), GOOD, OTHER, 4.5, false, nullptr); }), circle);
    EXPECT_EQ(SentBy([&] { tool.SendFeatureCircle("Circle", GOOD, OTHER, 4.5, false, nullptr); }), circle);
    EXPECT_EQ(SentBy([&] { tool.SendFeatureCircle(std::size_t{3}, GOOD, OTHER, 4.5, false); }), circle);
}

TEST_F(Features, of_planes_by_a_point_have_the_product_as_distance)
{
    const zPlane3d64f plane{{2, 3, 5}, {7, 11, -13}}; // 14 + 33 - 65
    const Values expected{7, 11, -13, -18};
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePlane("Plane", plane, false, nullptr); }), expected);
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePlane(std::size_t{2}, plane, false); }), expected);
    EXPECT_EQ(ArrayBy([&] { tool.SendArrayedFeaturePlanes("Plane", std::vector<zPlane3d64f>{plane}); }),
              std::vector<Values>{expected});
}

TEST_F(Features, of_planes_through_a_null_point_are_null_where_the_product_is)
{
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePlane("Plane", {NULL_POINT, {0, 0, 1}}, false, nullptr); }), NONE);
    EXPECT_EQ(SentBy([&] {
                  tool.SendFeaturePlane("Plane", {NULL_POINT, {0, 0, -1}}, false, nullptr);
              }),
              (Values{0, 0, -1, -NULL_VALUE}))
        << "only the product is looked at";
}

TEST_F(Features, that_are_not_valid_are_null_messages)
{
    for (const zPoint3d64f& bad : {zPoint3d64f{NULL_VALUE, 2, 3}, zPoint3d64f{1, NULL_VALUE, 3}, NO_Z})
    {
        EXPECT_EQ(SentBy([&] { tool.SendFeaturePoint("Point", bad, false, nullptr); }), NONE);
        EXPECT_EQ(SentBy([&] { tool.SendFeatureLine("Line", bad, GOOD, false, nullptr); }), NONE);
        EXPECT_EQ(SentBy([&] { tool.SendFeatureLine("Line", GOOD, bad, false, nullptr); }), NONE);
        EXPECT_EQ(SentBy([&] { tool.SendFeaturePlane("Plane", bad, 1, false, nullptr); }), NONE);
        EXPECT_EQ(SentBy([&] { tool.SendFeatureCircle("Circle", bad, GOOD, 1, false, nullptr); }), NONE);
        EXPECT_EQ(SentBy([&] { tool.SendFeatureCircle("Circle", GOOD, bad, 1, false, nullptr); }), NONE);
    }
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePlane("Plane", GOOD, NULL_VALUE, false, nullptr); }), NONE);
}

TEST_F(Features, of_circles_need_a_radius_above_0)
{
    for (const double radius : {0.0, -0.0, -1.0, NULL_VALUE, NOT_A_NUMBER, -INFINITE})
    {
        EXPECT_EQ(SentBy([&] { tool.SendFeatureCircle("Circle", GOOD, GOOD, radius, false, nullptr); }), NONE)
            << radius;
    }
    for (const double radius : {std::numeric_limits<double>::denorm_min(), INFINITE})
    {
        EXPECT_EQ(SentBy([&] { tool.SendFeatureCircle("Circle", GOOD, GOOD, radius, false, nullptr); }).back(), radius);
    }
}

TEST_F(Features, with_coordinates_that_are_no_numbers_are_valid)
{
    const zPoint3d64f odd{NOT_A_NUMBER, INFINITE, 0};
    const Values bare{NOT_A_NUMBER, INFINITE, 0};
    EXPECT_EQ(BitsOfAll(SentBy([&] { tool.SendFeaturePoint("Point", odd, false, nullptr); })), BitsOfAll(bare));
    EXPECT_EQ(SentBy([&] { tool.SendFeatureLine("Line", odd, odd, false, nullptr); }).size(), 6U);
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePlane("Plane", odd, NOT_A_NUMBER, false, nullptr); }).size(), 4U);
    EXPECT_EQ(SentBy([&] { tool.SendFeatureCircle("Circle", odd, odd, 1, false, nullptr); }).size(), 7U);
}

TEST_F(Features, carry_their_stamp_and_lose_it_with_their_geometry)
{
    const std::vector<std::pair<bool, std::function<void()>>> sends = {
        {true, [&] { tool.SendFeaturePoint("Point", GOOD, false, &STAMP); }},
        {true, [&] { tool.SendFeatureLine("Line", GOOD, GOOD, false, &STAMP); }},
        {true, [&] { tool.SendFeaturePlane("Plane", GOOD, 1, false, &STAMP); }},
        {true,
         [&] {
             tool.SendFeaturePlane("Plane", {GOOD, GOOD}, false, &STAMP);
         }},
        {true, [&] { tool.SendFeatureCircle("Circle", GOOD, GOOD, 1, false, &STAMP); }},
        {false, [&] { tool.SendFeaturePoint("Point", NO_Z, false, &STAMP); }},
        {false, [&] { tool.SendFeatureLine("Line", NO_Z, GOOD, false, &STAMP); }},
        {false, [&] { tool.SendFeaturePlane("Plane", GOOD, NULL_VALUE, false, &STAMP); }},
        {false, [&] { tool.SendFeatureCircle("Circle", GOOD, GOOD, 0, false, &STAMP); }},
        {false, [&] { tool.SendFeaturePoint("Point", GOOD, false, nullptr); }}};
    for (const auto& [isStamped, send] : sends)
    {
        SentBy(send);
        const zStamp stamp = TvDataMsg_Stamp(host.deliveries.at(0).Message());
        EXPECT_EQ(stamp.sequence, isStamped ? 22U : 0U);
        EXPECT_EQ(stamp.time, isStamped ? 333U : 0U);
        EXPECT_EQ(stamp.encoder, isStamped ? 4444 : 0);
    }
}

TEST_F(Features, go_into_an_array_that_was_begun)
{
    const auto contents = ArrayBy([&] {
        tool.BeginSendArray(*Out("Line"));
        tool.SendFeatureLine("Line", GOOD, OTHER, true, &STAMP);
        tool.SendFeatureLine(std::size_t{1}, NO_Z, OTHER, true);
        tool.EndSendArray(*Out("Line"));
    });
    EXPECT_EQ(contents, (std::vector<Values>{{1, 2, 3, 0, 0, 2}, NONE}));
    EXPECT_EQ(TvDataMsg_Stamp(host.deliveries.at(0).messages.at(0).Get()).sequence, 22U);
}

// --- outputs that do not take them ----------------------------------------------------------------------------------

TEST_F(Features, are_refused_by_outputs_of_another_type_even_if_these_are_disabled)
{
    tool.toolName = "Gauge";
    const std::map<std::string, std::function<void(ToolOutputInfo*)>> sends = {
        {"Point", [&](ToolOutputInfo* out) { tool.SendFeaturePoint(out, GOOD, false, nullptr); }},
        {"Line", [&](ToolOutputInfo* out) { tool.SendFeatureLine(out, GOOD, GOOD, false, nullptr); }},
        {"Plane", [&](ToolOutputInfo* out) { tool.SendFeaturePlane(out, GOOD, 1, false, nullptr); }},
        {"Circle", [&](ToolOutputInfo* out) { tool.SendFeatureCircle(out, GOOD, GOOD, 1, false, nullptr); }}};
    tool.AddMeasurementOutput("Measurement", false, AT_END);
    for (std::size_t i = 0; i < tool.OutputCount(); ++i)
    {
        ToolOutputInfo& output = tool.OutputAt(i);
        output.Enable(false);
        for (const auto& [id, send] : sends)
        {
            if (id == output.Id())
            {
                Run([&, &call = send] { call(&output); });
                EXPECT_TRUE(host.deliveries.empty()) << "disabled";
                continue;
            }
            ExpectRaised(-984, "CheckOutputFormat",
                         std::string("Tool output format is not (tool: Gauge[") + output.DisplayName() + "]).",
                         [&, &call = send] { call(&output); });
        }
    }
}

TEST_F(Features, pass_on_an_arrayed_output_of_their_type)
{
    Out("Point")->SetDataFormat(PipeDataType::PointFeature, true);
    EXPECT_EQ(SentBy([&] { tool.SendFeaturePoint("Point", GOOD, false, nullptr); }), (Values{1, 2, 3}));
}

TEST_F(Features, are_not_sent_on_disabled_outputs)
{
    for (std::size_t i = 0; i < tool.OutputCount(); ++i)
    {
        tool.OutputAt(i).Enable(false);
    }
    Run([&] {
        tool.SendFeaturePoint("Point", GOOD, false, nullptr);
        tool.SendFeaturePoint("Point", NO_Z, false, nullptr);
        tool.SendFeatureLine(std::size_t{1}, GOOD, GOOD, false);
        tool.SendFeaturePlane(std::size_t{2}, {GOOD, GOOD}, false);
        tool.SendFeatureCircle(std::size_t{3}, GOOD, GOOD, 1, false);
        tool.SendArrayedFeaturePoints("Point", {GOOD});
        tool.SendArrayedFeaturePoints("Point", {});
        tool.SendArrayedFeatureLines("Line", {GOOD}, {});
        tool.SendArrayedFeaturePlanes("Plane", {{GOOD, GOOD}});
        tool.SendArrayedFeaturePlanes(Out("Plane"), {}, {});
        tool.SendArrayedFeatureCircles(std::size_t{3}, {GOOD}, {GOOD}, {1});
    });
    EXPECT_TRUE(host.deliveries.empty());
}

TEST_F(Features, to_outputs_that_are_not_there_raise)
{
    ToolOutputInfo* const none = nullptr;
    const std::vector<std::pair<const char*, std::function<void()>>> sends = {
        {"SendFeaturePoint", [&] { tool.SendFeaturePoint(none, GOOD, false, nullptr); }},
        {"SendFeaturePoint", [&] { tool.SendFeaturePoint("x", GOOD, false, nullptr); }},
        {"SendFeatureLine", [&] { tool.SendFeatureLine(none, GOOD, GOOD, false, nullptr); }},
        {"SendFeatureLine", [&] { tool.SendFeatureLine("x", GOOD, GOOD, false, nullptr); }},
        {"SendFeaturePlane", [&] { tool.SendFeaturePlane(none, GOOD, 1, false, nullptr); }},
        {"SendFeaturePlane", [&] { tool.SendFeaturePlane("x", GOOD, 1, false, nullptr); }},
        {"SendFeaturePlane",
         [&] {
             tool.SendFeaturePlane("x", {GOOD, GOOD}, false, nullptr);
         }},
        {"SendFeatureCircle", [&] { tool.SendFeatureCircle(none, GOOD, GOOD, 1, false, nullptr); }},
        {"SendFeatureCircle", [&] { tool.SendFeatureCircle("x", GOOD, GOOD, 1, false, nullptr); }},
        {"SendArrayedFeaturePoints", [&] { tool.SendArrayedFeaturePoints(none, {}); }},
        {"SendArrayedFeaturePoints", [&] { tool.SendArrayedFeaturePoints("x", {}); }},
        {"SendArrayedFeatureLines", [&] { tool.SendArrayedFeatureLines("x", {}, {}); }},
        {"SendArrayedFeaturePlanes", [&] { tool.SendArrayedFeaturePlanes(none, {}, {}); }},
        {"SendArrayedFeaturePlanes", [&] { tool.SendArrayedFeaturePlanes("x", {}); }},
        {"SendArrayedFeatureCircles", [&] { tool.SendArrayedFeatureCircles(none, {}, {}, {}); }}};
    for (const auto& [function, send] : sends)
    {
        ExpectRaised(-999, function, "", send);
    }
}

TEST_F(Features, to_an_index_past_the_end_raise)
{
    const std::vector<std::function<void()>> sends = {
        [&] { tool.SendFeatureLine(std::size_t{4}, GOOD, GOOD, false); },
        [&] {
            tool.SendFeaturePlane(std::size_t{4}, {GOOD, GOOD}, false);
        },
        [&] { tool.SendFeatureCircle(std::size_t{4}, GOOD, GOOD, 1, false); },
        [&] { tool.SendArrayedFeatureCircles(std::size_t{4}, {GOOD}, {GOOD}, {1}); }};
    for (const auto& send : sends)
    {
        const std::vector<Ta::Exception> raised = RaisedBy(send);
        ASSERT_EQ(raised.size(), 1U);
        EXPECT_EQ(raised[0].Status(), -997);
    }
}

// --- arrays ---------------------------------------------------------------------------------------------------------

TEST_F(Features, in_arrays_come_in_order_with_a_null_message_for_each_that_is_not_valid)
{
    const std::vector<Values> points{{1, 2, 3}, NONE, {0, 0, 2}};
    EXPECT_EQ(ArrayBy([&] { tool.SendArrayedFeaturePoints(Out("Point"), {GOOD, NO_Z, OTHER}); }), points);
    EXPECT_EQ(ArrayBy([&] { tool.SendArrayedFeaturePoints("Point", {GOOD, NO_Z, OTHER}); }), points);
    EXPECT_EQ(ArrayBy([&] {
                  tool.SendArrayedFeatureLines("Line", {GOOD, GOOD}, {OTHER, NO_Z});
              }),
              (std::vector<Values>{{1, 2, 3, 0, 0, 2}, NONE}));
    EXPECT_EQ(ArrayBy([&] {
                  tool.SendArrayedFeaturePlanes(Out("Plane"), {OTHER, GOOD}, {5, NULL_VALUE});
              }),
              (std::vector<Values>{{0, 0, 2, 5}, NONE}));
    EXPECT_EQ(ArrayBy([&] {
                  tool.SendArrayedFeaturePlanes("Plane", {{GOOD, OTHER}, {GOOD, NO_Z}});
              }),
              (std::vector<Values>{{0, 0, 2, 6}, NONE}));
    const std::vector<Values> circles{{1, 2, 3, 0, 0, 2, 4}, NONE};
    EXPECT_EQ(ArrayBy([&] {
                  tool.SendArrayedFeatureCircles(Out("Circle"), {GOOD, GOOD}, {OTHER, OTHER}, {4, 0});
              }),
              circles);
    EXPECT_EQ(ArrayBy([&] {
                  tool.SendArrayedFeatureCircles(std::size_t{3}, {GOOD, GOOD}, {OTHER, OTHER}, {4, 0});
              }),
              circles);
}

TEST_F(Features, in_an_empty_array_are_a_handle_without_message)
{
    const std::vector<std::function<void()>> sends = {
        [&] { tool.SendArrayedFeaturePoints("Point", {}); },
        [&] { tool.SendArrayedFeatureLines("Line", {}, {GOOD}); },
        [&] { tool.SendArrayedFeaturePlanes(Out("Plane"), {}, {}); },
        [&] { tool.SendArrayedFeaturePlanes("Plane", {}); },
        [&] { tool.SendArrayedFeatureCircles(Out("Circle"), {}, {}, {}); },
        [&] { tool.SendArrayedFeatureCircles(std::size_t{3}, {}, {}, {}); },
        [&] { tool.SendArrayedFeaturePoints("Circle", {}); }}; // its type is not looked at
    for (const auto& send : sends)
    {
        host.deliveries.clear();
        Run(send);
        ASSERT_EQ(host.deliveries.size(), 1U);
        EXPECT_FALSE(host.deliveries[0].isArray);
        ASSERT_EQ(host.deliveries[0].messages.size(), 1U);
        EXPECT_EQ(host.deliveries[0].Message(), nullptr);
    }
}

TEST_F(Features, in_arrays_on_outputs_of_another_type_raise_in_the_single_send)
{
    const std::string text = "Tool output format is not (tool: MuToolTemplate[";
    ExpectRaised(-984, "CheckOutputFormat", text + Out("Circle")->DisplayName() + "]).",
                 [&] { tool.SendArrayedFeaturePoints("Circle", {GOOD}); });
}

TEST_F(Features, of_planes_and_circles_in_arrays_need_lists_of_equal_length)
{
    for (const bool enabled : {true, false})
    {
        Out("Plane")->Enable(enabled);
        Out("Circle")->Enable(enabled);
        ExpectRaised(-997, "SendArrayedFeaturePlanes", "",
                     [&] { tool.SendArrayedFeaturePlanes(Out("Plane"), {GOOD}, {}); });
        ExpectRaised(-997, "SendArrayedFeaturePlanes", "",
                     [&] { tool.SendArrayedFeaturePlanes(Out("Plane"), {}, {1}); });
        ExpectRaised(-997, "SendArrayedFeatureCircles", "",
                     [&] { tool.SendArrayedFeatureCircles(Out("Circle"), {GOOD}, {}, {1}); });
        ExpectRaised(-997, "SendArrayedFeatureCircles", "", [&] {
            tool.SendArrayedFeatureCircles(Out("Circle"), {GOOD}, {GOOD}, {1, 2});
        });
        ExpectRaised(-997, "SendArrayedFeatureCircles", "",
                     [&] { tool.SendArrayedFeatureCircles(std::size_t{3}, {}, {GOOD}, {}); });
    }
    ToolOutputInfo* const none = nullptr;
    ExpectRaised(-997, "SendArrayedFeatureCircles", "", [&] { tool.SendArrayedFeatureCircles(none, {GOOD}, {}, {}); });
}

TEST_F(Features, of_lines_in_arrays_are_as_many_as_their_positions)
{
    EXPECT_EQ(ArrayBy([&] {
                  tool.SendArrayedFeatureLines("Line", {GOOD}, {OTHER, GOOD, GOOD});
              }),
              (std::vector<Values>{{1, 2, 3, 0, 0, 2}}));
    EXPECT_EQ(ArrayBy([&] {
                  tool.SendArrayedFeatureLines("Line", {GOOD, GOOD, GOOD}, {OTHER});
              }),
              (std::vector<Values>{{1, 2, 3, 0, 0, 2}, NONE, NONE}))
        << "a line without direction is not valid";
}

// --- how they are made ----------------------------------------------------------------------------------------------

TEST_F(Features, are_set_in_a_fixed_order)
{
    const std::vector<std::pair<std::function<void()>, std::vector<std::string>>> orders = {
        {[&] { tool.SendFeaturePoint("Point", GOOD, false, &STAMP); },
         {"TvPointFeatureMsg_Construct", "TvPointFeatureMsg_SetPosition", "TvDataMsg_SetStamp"}},
        {[&] { tool.SendFeatureLine("Line", GOOD, GOOD, false, &STAMP); },
         {"TvLineFeatureMsg_Construct", "TvLineFeatureMsg_SetPosition", "TvLineFeatureMsg_SetDirection",
          "TvDataMsg_SetStamp"}},
        {[&] { tool.SendFeaturePlane("Plane", GOOD, 1, false, &STAMP); },
         {"TvPlaneFeatureMsg_Construct", "TvPlaneFeatureMsg_SetOriginDistance", "TvPlaneFeatureMsg_SetNormal",
          "TvDataMsg_SetStamp"}},
        {[&] { tool.SendFeatureCircle("Circle", GOOD, GOOD, 1, false, &STAMP); },
         {"TvCircleFeatureMsg_Construct", "TvCircleFeatureMsg_SetPosition", "TvCircleFeatureMsg_SetNormal",
          "TvCircleFeatureMsg_SetRadius", "TvDataMsg_SetStamp"}}};
    for (const auto& [send, expected] : orders)
    {
        std::vector<std::string> met;
        Run([&, &call = send] {
            WalkFaults(
                -77, [&] { return FailureOf(call); },
                [&met](const std::string& operation, const auto&) {
                    if (operation.starts_with("Tv"))
                    {
                        met.push_back(operation);
                    }
                });
        });
        EXPECT_EQ(met, expected);
    }
}

TEST_F(Features, take_one_request_each_and_leave_nothing_behind)
{
    const std::size_t before = alloc.Requests();
    Run([&] {
        tool.SendFeaturePoint("Point", GOOD, false, &STAMP);
        tool.SendFeatureLine("Line", GOOD, GOOD, false, &STAMP);
        tool.SendFeaturePlane("Plane", GOOD, 1, false, &STAMP);
        tool.SendFeatureCircle("Circle", NO_Z, GOOD, 1, false, &STAMP);
    });
    EXPECT_EQ(alloc.Requests() - before, 4U);
    EXPECT_EQ(alloc.LiveBlocks(), 4U) << "what the host keeps";
    host.deliveries.clear();
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

// --- beside a plain reading of the rules ----------------------------------------------------------------------------

bool Valid(const zPoint3d64f& p)
{
    return !IsNull(p);
}

Values Together(std::initializer_list<double> values, bool isValid)
{
    return isValid ? Values(values) : NONE;
}

TEST_F(Features, agree_with_their_rules_bit_by_bit)
{
    constexpr unsigned SEED = 371;
    constexpr std::size_t CASES = 20000;
    constexpr std::size_t BATCH = 100;
    OddRandom random(SEED);
    std::size_t nulls = 0;
    for (std::size_t done = 0; done < CASES; done += BATCH)
    {
        std::vector<Values> expected;
        Run([&] {
            for (std::size_t i = 0; i < BATCH; ++i)
            {
                const zPoint3d64f a = random.Point(20);
                const zPoint3d64f b = random.Point(20);
                const double size = random.Number(5);
                const double distance = b.x * a.x + b.y * a.y + b.z * a.z;
                tool.SendFeaturePoint("Point", a, false, nullptr);
                expected.push_back(Together({a.x, a.y, a.z}, Valid(a)));
                tool.SendFeatureLine("Line", a, b, false, nullptr);
                expected.push_back(Together({a.x, a.y, a.z, b.x, b.y, b.z}, Valid(a) && Valid(b)));
                tool.SendFeaturePlane("Plane", b, size, false, nullptr);
                expected.push_back(Together({b.x, b.y, b.z, size}, Valid(b) && size != NULL_VALUE));
                tool.SendFeaturePlane("Plane", {a, b}, false, nullptr);
                expected.push_back(Together({b.x, b.y, b.z, distance}, Valid(b) && distance != NULL_VALUE));
                tool.SendFeatureCircle("Circle", a, b, size, false, nullptr);
                expected.push_back(Together({a.x, a.y, a.z, b.x, b.y, b.z, size}, Valid(a) && Valid(b) && size > 0.0));
            }
        });
        ASSERT_EQ(host.deliveries.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i)
        {
            ASSERT_EQ(BitsOfAll(Content(host.deliveries[i].Message())), BitsOfAll(expected[i]))
                << "message " << i << " of the batch from " << done << ", seed " << SEED;
            nulls += expected[i].empty() ? std::size_t{1} : 0;
        }
        host.deliveries.clear();
    }
    EXPECT_GT(nulls, CASES / 2) << "of " << 5 * CASES;
    EXPECT_LT(nulls, 2 * CASES);
}
} // namespace
