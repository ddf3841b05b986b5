#include "ToolFixture.h"

#include <Support/FaultWalk.h>
#include <Support/IgnoredStatuses.h>

#include <array>
#include <set>

namespace
{
using namespace Support;

constexpr zStatus INJECTED = -4242;
constexpr double NULL_VALUE = -1.7976931348623157e308;
constexpr zStamp STAMP{1, 2, 3, 4};

constexpr std::array<Ignored, 5> IGNORED = {{
    {"xzObject_DestroyImpl", "a handle that ends releases all the same; its destructor must not throw"},
    {"zAlloc_Free", "the memory is freed all the same"},
    {"TvMeasureMsg_SetStampAt", "SendMeasurement: the measurement is worth more than its stamp"},
    {"zMsgSet_SetStampAt", "SendMeasurement, by way of TvMeasureMsg_SetStampAt"},
    {"TvDataMsg_SetStamp", "the sends of features: a feature is worth more than its stamp"},
}};

struct SendCase
{
    const char* name;
    std::function<void(ProbeTool&)> send;
    std::set<std::string> raisedBy; ///< the operations that may raise
    std::set<std::string> mustFail; ///< base operations that the walk must have met
    bool mayIgnoreStamp = false;
    TaPipe::PipeDataType type = TaPipe::PipeDataType::Measurement;
};

std::vector<SendCase> MeasurementCases()
{
    static zPoint3d64f position{1, 2, 3};
    static std::vector<zPoint3d64f> positions{position, position};
    static std::array<char, 3> text{'a', 'b', '\0'};
    const std::string measure = "TvMeasureMsg_Construct";
    const std::string null = "TvNullMsg_Construct";
    return {
        {"SendMeasurement",
         [](ProbeTool& t) { t.SendMeasurement("A", 1, false, nullptr); },
         {"SendMeasurement"},
         {measure, "TvMeasureMsg_SetValue", "TvMeasureMsg_SetStatus", "zAlloc_Get"}},
        {"SendMeasurement with stamp",
         [](ProbeTool& t) { t.SendMeasurement("A", 1, false, &STAMP); },
         {"SendMeasurement"},
         {measure, "TvMeasureMsg_SetValue", "TvMeasureMsg_SetStampAt", "TvMeasureMsg_SetStatus"},
         true},
        {"SendMeasurement of null",
         [](ProbeTool& t) { t.SendMeasurement("A", NULL_VALUE, false, &STAMP); },
         {"SendMeasurement"},
         {null}},
        {"SendMeasurementInPosition",
         [](ProbeTool& t) { t.SendMeasurementInPosition("A", 1, position, false, &STAMP); },
         {"SendMeasurementInPosition", "CreateMeasurementMessage"},
         {measure, "TvMeasureMsg_SetLabelPosition", "TvMeasureMsg_SetStampAt"}},
        {"SendMeasurementInPosition of null",
         [](ProbeTool& t) { t.SendMeasurementInPosition("A", NULL_VALUE, position, false, &STAMP); },
         {"SendMeasurementInPosition", "CreateMeasurementMessage"},
         {null, "TvMeasureMsg_SetLabelPosition", "TvMeasureMsg_SetStampAt"}},
        {"SendMeasurementAll",
         [](ProbeTool& t) { t.SendMeasurementAll(1); },
         {"CreateMeasurementMessage"},
         {measure, "TvMeasureMsg_SetValue"}},
        {"SendArrayedMeasurements",
         [](ProbeTool& t) {
             t.SendArrayedMeasurements("A", {1, NULL_VALUE, 2});
         },
         {"SendMeasurement"},
         {measure, null, "TvMeasureMsg_SetValue", "TvMeasureMsg_SetStatus"}},
        {"SendArrayedMeasurementsInPosition",
         [](ProbeTool& t) {
             t.SendArrayedMeasurementsInPosition("A", {1, 2}, positions);
         },
         {"SendMeasurementInPosition", "CreateMeasurementMessage"},
         {measure, "TvMeasureMsg_SetValue", "TvMeasureMsg_SetLabelPosition"}},
        {"SendNull", [](ProbeTool& t) { t.SendNull("A"); }, {"SendNull"}, {null}},
        {"SendString",
         [](ProbeTool& t) { t.SendString(0, text.data()); },
         {"SendString"},
         {"TvGenericMsg_Construct", "TvGenericMsg_SetBuffer"}},
    };
}

std::vector<SendCase> FeatureCases()
{
    using TaPipe::PipeDataType;
    static const zPoint3d64f good{1, 2, 3};
    static const zPoint3d64f bad{1, 2, NULL_VALUE};
    const std::string null = "TvNullMsg_Construct";
    return {
        {"SendFeaturePoint",
         [](ProbeTool& t) { t.SendFeaturePoint("A", good, false, &STAMP); },
         {"SendFeaturePoint"},
         {"TvPointFeatureMsg_Construct", "TvPointFeatureMsg_SetPosition", "TvDataMsg_SetStamp"},
         true,
         PipeDataType::PointFeature},
        {"SendFeatureLine",
         [](ProbeTool& t) { t.SendFeatureLine("A", good, good, false, &STAMP); },
         {"SendFeatureLine"},
         {"TvLineFeatureMsg_Construct", "TvLineFeatureMsg_SetPosition", "TvLineFeatureMsg_SetDirection",
          "TvDataMsg_SetStamp"},
         true,
         PipeDataType::LineFeature},
        {"SendFeaturePlane",
         [](ProbeTool& t) {
             t.SendFeaturePlane("A", {good, good}, false, &STAMP);
         },
         {"SendFeaturePlane"},
         {"TvPlaneFeatureMsg_Construct", "TvPlaneFeatureMsg_SetOriginDistance", "TvPlaneFeatureMsg_SetNormal",
          "TvDataMsg_SetStamp"},
         true,
         PipeDataType::PlaneFeature},
        {"SendFeatureCircle",
         [](ProbeTool& t) { t.SendFeatureCircle("A", good, good, 1, false, &STAMP); },
         {"SendFeatureCircle"},
         {"TvCircleFeatureMsg_Construct", "TvCircleFeatureMsg_SetPosition", "TvCircleFeatureMsg_SetNormal",
          "TvCircleFeatureMsg_SetRadius", "TvDataMsg_SetStamp"},
         true,
         PipeDataType::CircleFeature},
        {"SendFeaturePoint of null",
         [](ProbeTool& t) { t.SendFeaturePoint("A", bad, false, &STAMP); },
         {"SendFeaturePoint"},
         {null},
         false,
         PipeDataType::PointFeature},
        {"SendArrayedFeaturePoints",
         [](ProbeTool& t) {
             t.SendArrayedFeaturePoints("A", {good, bad});
         },
         {"SendFeaturePoint"},
         {"TvPointFeatureMsg_Construct", null},
         false,
         PipeDataType::PointFeature},
        {"SendArrayedFeatureLines",
         [](ProbeTool& t) {
             t.SendArrayedFeatureLines("A", {good, good}, {good});
         },
         {"SendFeatureLine"},
         {"TvLineFeatureMsg_Construct", null},
         false,
         PipeDataType::LineFeature},
        {"SendArrayedFeaturePlanes",
         [](ProbeTool& t) {
             t.SendArrayedFeaturePlanes("A", {{good, good}, {good, bad}});
         },
         {"SendFeaturePlane"},
         {"TvPlaneFeatureMsg_Construct", null},
         false,
         PipeDataType::PlaneFeature},
        {"SendArrayedFeatureCircles",
         [](ProbeTool& t) {
             t.SendArrayedFeatureCircles(std::size_t{0}, {good, good}, {good, good}, {1, 0});
         },
         {"SendFeatureCircle"},
         {"TvCircleFeatureMsg_Construct", null},
         false,
         PipeDataType::CircleFeature},
    };
}

std::vector<SendCase> SendCases()
{
    std::vector<SendCase> cases = MeasurementCases();
    for (SendCase& c : FeatureCases())
    {
        cases.push_back(std::move(c));
    }
    return cases;
}

/// What one run of a send did.
struct Outcome
{
    bool raised = false;
    int status = zOK;
    std::string function;
    std::string file;
    std::string message;
};

class Sends : public ToolFixture
{
protected:
    void SetUp() override
    {
        ToolFixture::SetUp();
        tool.AddMeasurementOutput("A", true, AT_END);
    }

    void Prepare(const SendCase& c)
    {
        tool.FindOutputById("A")->SetDataFormat(c.type, true);
    }

    Outcome Send(const SendCase& c)
    {
        Outcome outcome;
        Run([&] {
            try
            {
                c.send(tool);
            }
            catch (const Ta::Exception& exception)
            {
                outcome = {true, exception.Status(), exception.Function(), exception.File(), exception.Message()};
            }
            zFault_Disarm(); // what follows is the library's handling, not the send
        });
        host.deliveries.clear();
        return outcome;
    }

    static void ExpectRaised(const SendCase& c, const Outcome& outcome, int status)
    {
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.message, "");
        if (ArmedFault::Failed() == "xzObject_ShareImpl")
        {
            // The recording host could not share a message that it was handed.
            EXPECT_EQ(outcome.function, "Ta::Object<void *>::Object");
            return;
        }
        EXPECT_EQ(outcome.file, "Libs/MuTlkHelper/MuTlkHelper/CommonTool");
        constexpr std::string_view PREFIX = "Mu::Tools::CommonTool::";
        ASSERT_EQ(outcome.function.substr(0, PREFIX.size()), PREFIX);
        EXPECT_TRUE(c.raisedBy.contains(outcome.function.substr(PREFIX.size()))) << outcome.function;
    }
};

TEST_F(Sends, raise_the_status_of_every_failing_base_call)
{
    for (const SendCase& c : SendCases())
    {
        SCOPED_TRACE(c.name);
        Prepare(c);
        std::set<std::string> met;
        for (std::size_t n = 1;; ++n)
        {
            Outcome outcome;
            Run([&] {
                const ArmedFault fault(n, INJECTED);
                try
                {
                    c.send(tool);
                }
                catch (const Ta::Exception& exception)
                {
                    outcome = {true, exception.Status(), exception.Function(), exception.File(), exception.Message()};
                }
            });
            host.deliveries.clear();
            const std::string operation = ArmedFault::Failed();
            if (operation.empty())
            {
                EXPECT_FALSE(outcome.raised);
                break;
            }
            SCOPED_TRACE(operation);
            met.insert(operation);
            EXPECT_EQ(alloc.LiveBlocks(), 0U) << "left behind";
            const bool isStamp = operation.ends_with("SetStampAt") || operation.ends_with("SetStamp");
            if (outcome.raised)
            {
                ExpectRaised(c, outcome, INJECTED);
                EXPECT_FALSE(isStamp && c.mayIgnoreStamp) << "raised the status of a stamp";
            }
            else
            {
                EXPECT_TRUE(IsIgnored(IGNORED, operation)) << "dropped a status";
                EXPECT_TRUE(!isStamp || c.mayIgnoreStamp) << "dropped the status of a stamp";
            }
            EXPECT_FALSE(Send(c).raised) << "the tool is not usable after the failure";
        }
        for (const std::string& operation : c.mustFail)
        {
            EXPECT_TRUE(met.contains(operation)) << operation << " was never made to fail";
        }
    }
}

TEST_F(Sends, raise_what_a_failing_allocator_gives)
{
    for (const SendCase& c : SendCases())
    {
        SCOPED_TRACE(c.name);
        Prepare(c);
        std::size_t failures = 0;
        for (std::size_t n = 1;; ++n)
        {
            const std::size_t before = alloc.Requests();
            alloc.FailAt(n);
            const Outcome outcome = Send(c);
            alloc.FailAt(0);
            EXPECT_EQ(alloc.LiveBlocks(), 0U) << "left behind when request " << n << " failed";
            if (!outcome.raised)
            {
                EXPECT_LT(alloc.Requests() - before, n) << "request " << n << " failed without a word";
                break;
            }
            ++failures;
            ExpectRaised(c, outcome, -998);
        }
        EXPECT_GE(failures, 1U);
    }
}

TEST_F(Sends, of_null_outputs_raise_the_status_of_every_failing_base_call)
{
    tool.inputBoundingBox = {1, 2, 3, 4, 5, 6};
    tool.execute = [](TaPipe::InputSet&) { throw 1; };
    std::set<std::string> met;
    for (std::size_t n = 1;; ++n)
    {
        const ArmedFault fault(n, INJECTED);
        Outcome outcome;
        try
        {
            tool.ProcessInputSet(nullptr, 0);
        }
        catch (const Ta::Exception& exception)
        {
            outcome = {true, exception.Status(), exception.Function(), exception.File(), exception.Message()};
        }
        zFault_Disarm();
        host.deliveries.clear();
        const std::string operation = ArmedFault::Failed();
        if (operation.empty())
        {
            break;
        }
        SCOPED_TRACE(operation);
        met.insert(operation);
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        EXPECT_EQ(outcome.raised, !IsIgnored(IGNORED, operation));
        if (outcome.raised)
        {
            EXPECT_EQ(outcome.status, INJECTED);
            // The recording host shares the message that it is handed; everything else is the tool's.
            EXPECT_EQ(outcome.function, operation == "xzObject_ShareImpl"
                                            ? "Ta::Object<void *>::Object"
                                            : "Mu::Tools::CommonTool::SendAllNullOutputs");
        }
    }
    EXPECT_TRUE(met.contains("TvNullMsg_Construct"));
    EXPECT_TRUE(met.contains("TvDataMsg_SetBoundingBox"));
}

// Whatever fails, the receiver's own share of a message included, the output gets exactly one delivery.
TEST_F(Sends, that_fail_inside_Execute_end_in_a_null_message)
{
    for (const SendCase& c : SendCases())
    {
        SCOPED_TRACE(c.name);
        Prepare(c);
        bool fired = true;
        for (std::size_t n = 1; fired; ++n)
        {
            bool raised = true;
            tool.execute = [&](TaPipe::InputSet&) {
                const ArmedFault fault(n, INJECTED);
                c.send(tool);
                raised = false;
            };
            ASSERT_TRUE(tool.ProcessInputSet(nullptr, 0));
            fired = !ArmedFault::Failed().empty();
            ASSERT_EQ(host.deliveries.size(), 1U) << ArmedFault::Failed();
            EXPECT_TRUE(!raised || host.deliveries[0].IsNullMessage()) << ArmedFault::Failed();
            EXPECT_FALSE(raised && host.deliveries[0].isArray) << ArmedFault::Failed();
            host.deliveries.clear();
        }
    }
}
} // namespace
