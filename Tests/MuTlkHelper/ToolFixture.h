#pragma once

#include <MuTlkHelper/CommonTool.h>

#include <Support/Builders.h>
#include <Support/CountingAlloc.h>
#include <Support/RecordingHost.h>

#include <gtest/gtest.h>

#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace Mu::Tools
{
/// The tests' way to what CommonTool keeps to itself.
struct CommonToolTestAccess
{
    static std::vector<AnchorInput>& AnchorInputs(CommonTool& tool)
    {
        return tool.anchorInputs;
    }

    static bool& AnchorRoutingChanged(CommonTool& tool)
    {
        return tool.anchorRoutingChanged;
    }

    static bool& AnchorsActive(CommonTool& tool)
    {
        return tool.anchorsActive;
    }

    static bool& RelativeRegionChanged(CommonTool& tool)
    {
        return tool.relativeRegionChanged;
    }

    static bool& TransformChanged(CommonTool& tool)
    {
        return tool.transformChanged;
    }

    static bool& DynamicParamsChanged(CommonTool& tool)
    {
        return tool.dynamicParamsChanged;
    }

    static const std::vector<Mu::TlkHelper::AnchoredRegionInterface*>& AnchoredRegions(CommonTool& tool)
    {
        return tool.anchoredRegions;
    }

    // The calls that go to all regions.

    static void SynchronizeRegion(CommonTool& tool)
    {
        tool.SynchronizeRegion();
    }

    static void RefreshRelativeRegion(CommonTool& tool)
    {
        tool.RefreshRelativeRegion();
    }

    static void CalculateRelativeRegion(CommonTool& tool)
    {
        tool.CalculateRelativeRegion();
    }

    static void CalculateAbsoluteRegion(CommonTool& tool)
    {
        tool.CalculateAbsoluteRegion();
    }

    static void CalculateTransformMatrix(CommonTool& tool)
    {
        tool.CalculateTransformMatrix();
    }

    static void RefreshConfigRegion(CommonTool& tool)
    {
        tool.RefreshConfigRegion();
    }

    static void ResetTransformMatrix(CommonTool& tool)
    {
        tool.ResetTransformMatrix();
    }

    static void SetTransformMatrixAsInvalid(CommonTool& tool)
    {
        tool.SetTransformMatrixAsInvalid();
    }

    static bool IsTransformMatrixIdentity(CommonTool& tool)
    {
        return tool.IsTransformMatrixIdentity();
    }

    static void CheckOutputFormat(CommonTool& tool, const TaPipe::ToolOutputInfo* output, TaPipe::PipeDataFormat format,
                                  bool ignoreType)
    {
        tool.CheckOutputFormat(output, format, ignoreType);
    }

    /// The address of every member, in the order in which they are declared, with its name.
    static std::vector<std::pair<const char*, const void*>> Members(const CommonTool& tool)
    {
        return {{"toolAlloc", &tool.toolAlloc},
                {"outputAlloc", &tool.outputAlloc},
                {"anchorInputs", &tool.anchorInputs},
                {"infoLog", &tool.infoLog},
                {"warningLog", &tool.warningLog},
                {"errorLog", &tool.errorLog},
                {"referenceMsg", &tool.referenceMsg},
                {"anchor", &tool.anchor},
                {"anchorsActive", &tool.anchorsActive},
                {"anchorRoutingChanged", &tool.anchorRoutingChanged},
                {"relativeRegionChanged", &tool.relativeRegionChanged},
                {"transformChanged", &tool.transformChanged},
                {"acceptNullInputs", &tool.acceptNullInputs},
                {"anchoredRegions", &tool.anchoredRegions},
                {"flexibleRegions", &tool.flexibleRegions},
                {"persistenceTools", &tool.persistenceTools},
                {"inputBoundingBox", &tool.inputBoundingBox},
                {"profileInput", &tool.profileInput},
                {"dynamicParamsChanged", &tool.dynamicParamsChanged},
                {"skipFlexibleRegionUpdate", &tool.skipFlexibleRegionUpdate},
                {"outputVisibilityStride", &tool.outputVisibilityStride},
                {"toolName", &tool.toolName},
                {"outputsById", &tool.outputsById},
                {"testRecorder", &tool.testRecorder}};
    }

    static bool HasEmptyLists(const CommonTool& tool)
    {
        return tool.anchorInputs.empty() && tool.infoLog.empty() && tool.warningLog.empty() && tool.errorLog.empty() &&
               tool.anchoredRegions.empty() && tool.flexibleRegions.empty() && tool.persistenceTools.empty() &&
               tool.outputsById.empty() && tool.testRecorder == nullptr;
    }
};
} // namespace Mu::Tools

namespace Support
{
inline constexpr std::size_t AT_END = static_cast<std::size_t>(-1);
inline constexpr std::size_t INFORMATION = 0x8000000100000000U;
inline constexpr std::size_t WARNING = 0x8000000100000001U;
inline constexpr std::size_t ERROR = 0x8000000100000002U;

using Access = Mu::Tools::CommonToolTestAccess;

/// A concrete tool whose hooks are functions of the test, with everything that a tool author reaches made public.
class ProbeTool : public Mu::Tools::CommonTool
{
public:
    using Base = Mu::Tools::CommonTool;
    using Base::acceptNullInputs;
    using Base::anchor;
    using Base::inputBoundingBox;
    using Base::outputAlloc;
    using Base::outputVisibilityStride;
    using Base::profileInput;
    using Base::referenceMsg;
    using Base::REGION_EXTRA_BORDER_PXL;
    using Base::skipFlexibleRegionUpdate;
    using Base::toolAlloc;
    using Base::toolName;

    using Base::AddAnchorInputs;
    using Base::AddInput;
    using Base::AddRenderingOutput;
    using Base::AllAnchorsInactive;
    using Base::BeginSendArray;
    using Base::CreateMeasurementMessage;
    using Base::CreateTransformMatrix;
    using Base::Describe;
    using Base::EndSendArray;
    using Base::ExtractAnchorInputs;
    using Base::GetDataMessageInput;
    using Base::HandleDynamicInput;
    using Base::Init;
    using Base::IsOutputEnabled;
    using Base::OutputAlreadySent;
    using Base::RegisterAction;
    using Base::RegisterAnchoredRegion;
    using Base::RemoveInput;
    using Base::RenderArrayedGraphics;
    using Base::RenderGraphics;
    using Base::SendAllNullOutputs;
    using Base::SendArrayedFeatureCircles;
    using Base::SendArrayedFeatureLines;
    using Base::SendArrayedFeaturePlanes;
    using Base::SendArrayedFeaturePoints;
    using Base::SendArrayedMeasurements;
    using Base::SendArrayedMeasurementsInPosition;
    using Base::SendFeatureCircle;
    using Base::SendFeatureLine;
    using Base::SendFeaturePlane;
    using Base::SendFeaturePoint;
    using Base::SendMeasurement;
    using Base::SendMeasurementAll;
    using Base::SendMeasurementInPosition;
    using Base::SendNull;
    using Base::SendString;
    using Base::UpdateThresholdDefault;
    using Base::UpdateThresholdMax;
    using Base::WriteToArray;

    ~ProbeTool() override = default;

    void Init(TaPipe::IToolHost& host) override
    {
        Base::Init(host, group);
    }

    void Execute(InputSet& set) override
    {
        ++executions;
        if (execute)
        {
            execute(set);
        }
    }

    void UpdateConfig() override
    {
        ++updates;
        if (updateConfig)
        {
            updateConfig();
        }
    }

    void InitializeRegions() override
    {
        ++placements;
        Base::InitializeRegions();
        if (initializeRegions)
        {
            initializeRegions();
        }
    }

    Ta::Params::Group group{"Parameters"};
    std::function<void(InputSet&)> execute;
    std::function<void()> updateConfig;
    std::function<void()> initializeRegions;
    int executions = 0;
    int updates = 0;
    int placements = 0;
};

/// A tool in the hands of a recording host.
class ToolFixture : public testing::Test
{
protected:
    void SetUp() override
    {
        tool.SetToolAllocator(alloc.Get());
        static_cast<TaPipe::ITool&>(tool).Init(host);
    }

    /// Delivers one message on each input, in order, as one execution.
    void Deliver(const std::vector<Ta::Object<void*>>& messages)
    {
        std::vector<void*> handles;
        for (const Ta::Object<void*>& message : messages)
        {
            handles.push_back(message.Get());
        }
        std::vector<TaPipe::MessageInput> inputs;
        for (std::size_t i = 0; i < handles.size(); ++i)
        {
            inputs.push_back({i, std::span<void* const>(&handles[i], 1)});
        }
        ASSERT_TRUE(tool.ProcessInputSet(inputs.data(), inputs.size()));
    }

    /// Delivers several messages on input 0.
    void DeliverSeveral(const std::vector<Ta::Object<void*>>& messages)
    {
        std::vector<void*> handles;
        for (const Ta::Object<void*>& message : messages)
        {
            handles.push_back(message.Get());
        }
        const TaPipe::MessageInput input{0, handles};
        ASSERT_TRUE(tool.ProcessInputSet(&input, 1));
    }

    /// Runs `body` as the tool's Execute once.
    void Run(const std::function<void()>& body)
    {
        tool.execute = [&body](TaPipe::InputSet&) { body(); };
        ASSERT_TRUE(tool.ProcessInputSet(nullptr, 0));
        tool.execute = nullptr;
    }

    /// Runs `body` as the tool's Execute once and returns what it raised; the execution goes on as it would for a host.
    std::vector<Ta::Exception> RaisedBy(const std::function<void()>& body)
    {
        std::vector<Ta::Exception> raised;
        Run([&] {
            try
            {
                body();
            }
            catch (const Ta::Exception& exception)
            {
                raised.push_back(exception);
                throw;
            }
        });
        return raised;
    }

    CountingAlloc alloc; // outlives the tool and what the host keeps
    RecordingHost host;
    ProbeTool tool;
};
} // namespace Support
