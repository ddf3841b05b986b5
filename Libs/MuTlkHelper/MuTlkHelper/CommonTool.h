#pragma once

#include <MuTlkHelper/AnchorInput.h>
#include <MuTlkHelper/Export.h>

#include <MuVision/Anchor.h>
#include <TaApi/Params.h>
#include <TaPipe/CommonTool.h>
#include <TaVision/TvPixelFormat.h>
#include <zRelay/zStamp.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Mu::TlkHelper
{
class AnchoredRegionInterface;
class FlexibleRegion;
} // namespace Mu::TlkHelper

/// Called by the host once after it has loaded the library: the version text of the host. Returns `zOK`.
extern "C" MU_TLK_EXPORT zStatus TaPlugin_SetHostInfo(const std::string& hostVersion);

namespace Mu::Tools
{
class PersistenceTool;
class TestRecorder;

/// The base class of every measurement tool. A concrete tool declares inputs, outputs and parameters, calls `Init`, and
/// implements `Execute`; this class does everything around that call. Its central promise: whatever `Execute` throws,
/// every output that has had no message yet gets a null message, and the host sees no failure.
///
/// The order of the added virtual operations, and of the members, is part of the interface. Nothing here is guarded:
/// the host never overlaps calls on one tool.
class MU_TLK_EXPORT CommonTool : public TaPipe::Tools::CommonTool
{
public:
    /// Who an output is meant for. `Priority() / outputVisibilityStride` of an output.
    enum class OutputVisibility : std::size_t
    {
        Standard = 0,  ///< a result
        Rendering = 1, ///< graphics to look at
        Advanced = 2,  ///< shown on request
    };

    CommonTool();
    ~CommonTool() override;

    bool UpdateDynamicParams() override;
    void Start() override;
    void Stop() override;
    void OnAllInputsReady(InputSet& set) override;
    void OnParamsChanged() override;
    void OnInputRouted(ToolInputInfo& input, InputRoutedInfo info) override;

    /// The measurement itself: reads the messages of `set` and sends on the outputs. What it throws is discarded.
    virtual void Execute(InputSet& set);

    /// The parameters have changed.
    virtual void UpdateConfig();

    /// Places the tool's regions by the reference message; called in the stage of life that takes defaults, at each
    /// execution whose set holds a data message. If it is not overridden, each region becomes a square of half the
    /// data's shorter side, in the middle of the data.
    virtual void InitializeRegions();

protected:
    /// The transform by which an anchor moves the tool's regions.
    virtual Mu::Vision::RefFrame CreateTransformMatrix(const Mu::Vision::Anchor& anchor,
                                                       Mu::Vision::RotationOrder order);

public:
    /// Logs a text for the user, each text once per level between two starts. The text may have 511 characters.
    /// @param level  0x8000000100000000 information, ...1 warning, ...2 error
    /// @throws Ta::Exception -996 for another level, or the status of a failing call
    void LogUserMessage(int line, const char* file, std::size_t level, const char* source, const char* format, ...)
        __attribute__((format(printf, 6, 7)));

    /// Adds an output before `index`, or at the end if `index` is past it (-1). An id that is added twice is found
    /// under its later output.
    ToolOutputInfo& AddOutput(const char* id, std::size_t index);

    /// The same for measurements; `isArray` says whether they come in arrays.
    ToolOutputInfo& AddMeasurementOutput(const char* id, bool isArray, std::size_t index);

    /// Removes the output at `index`; past the end it does nothing.
    void RemoveOutput(std::size_t index);

    /// The output with this id, null when there is none.
    ToolOutputInfo* FindOutputById(const char* id);

    /// Sets who the output is meant for and keeps its order among its like.
    /// @throws Ta::Exception -999 if `output` is null, -997 if `outputVisibilityStride` is 0
    void SetOutputVisiblity(ToolOutputInfo* output, OutputVisibility visibility);

    /// Delivers a message to the host. A null handle stands for an empty array.
    void Send(ToolOutputInfo& output, Ta::Object<void*> message, int sendKind);

    /// Sends a measurement with its decision against the output's limits, both inclusive; without limits it passes.
    /// A null value goes out as a null message, without stamp. A disabled output sends nothing.
    /// @param arrayed  adds it to the array begun on the output
    /// @param stamp    may be null
    /// @throws Ta::Exception -984 if the output is not for measurements, -999 if it is null, or a failing call's status
    void SendMeasurement(ToolOutputInfo* output, double value, bool arrayed, const zStamp* stamp);

    /// Sends a measurement with the place of its label, in mm. It carries no decision.
    /// @throws Ta::Exception as `SendMeasurement`
    void SendMeasurementInPosition(ToolOutputInfo* output, double value, zPoint3d64f& position, bool arrayed,
                                   const zStamp* stamp);

    /// Sends measurements as one array; an empty one as a null handle.
    /// @throws Ta::Exception as `SendMeasurement`
    void SendArrayedMeasurements(ToolOutputInfo* output, const std::vector<double>& values);

    // Features: points, lines, planes and circles, in mm. One that is not valid goes out as a null message, without
    // stamp; a point or direction is valid if no component is null, a NaN is not null. A disabled output sends nothing.
    // `arrayed` adds it to the array begun on the output; `stamp` may be null.
    // They throw Ta::Exception -984 if the output is not for such features, -999 if it is null, or a failing call's
    // status.

    void SendFeaturePoint(ToolOutputInfo* output, const zPoint3d64f& position, bool arrayed, const zStamp* stamp);

    /// A line through `position`.
    void SendFeatureLine(ToolOutputInfo* output, const zPoint3d64f& position, const zPoint3d64f& direction,
                         bool arrayed, const zStamp* stamp);

    /// The plane of the points p with normal . p = `originDistance`, which must not be null.
    void SendFeaturePlane(ToolOutputInfo* output, const zPoint3d64f& normal, double originDistance, bool arrayed,
                          const zStamp* stamp);

    /// A circle around `position` in the plane with `normal`; its radius must be above 0.
    void SendFeatureCircle(ToolOutputInfo* output, const zPoint3d64f& position, const zPoint3d64f& normal,
                           double radius, bool arrayed, const zStamp* stamp);

    /// Sends a graphic (`TpGraphic`), of which the caller keeps its reference; a null one goes out as a null message. A
    /// disabled output sends nothing.
    /// @param spaceType  the space of its coordinates, passed on to the host
    /// @param arrayed    adds it to the array begun on the output
    /// @throws Ta::Exception -984 if the output is not for graphics, -999 if it is null, or a failing call's status
    void RenderGraphics(ToolOutputInfo* output, void* graphic, z8u spaceType, bool arrayed);

    /// Sends graphics as one array, null handles in it as null messages; an empty array as a null handle.
    /// @throws Ta::Exception as `RenderGraphics`
    void RenderArrayedGraphics(ToolOutputInfo* output, const std::vector<Ta::Object<void*>>& graphics, z8u spaceType);

protected:
    /// Extra pixels around a region, for concrete tools.
    static constexpr int REGION_EXTRA_BORDER_PXL = 4;

    /// Binds the tool to its host and its parameters; both outlive the tool or are part of it. Called once by the
    /// concrete tool when its parameters are built; it ends in `UpdateConfig`.
    void Init(IToolHost& host, Ta::Params::Group& params);
    using TaPipe::Tools::CommonTool::Init;

    /// Sets the help address of a tool type, made from the host's version.
    static void Describe(ToolInfo& info);

    /// The full-scale value of a pixel format.
    int UpdateThresholdMax(TvPixelFormat format);

    /// The default threshold of a pixel format: the middle of its range.
    int UpdateThresholdDefault(TvPixelFormat format);

    /// The first message on the input with this id, null if there is none. It is not owned; it lives as long as `set`.
    void* GetDataMessageInput(InputSet& set, const char* inputId);

    /// Makes the inputs from `firstDynamicIndex` on match the lists. Inputs that are in them stay, and with them their
    /// routes; others go; missing ones are added at the end, optional.
    /// @throws Ta::Exception 0 if the lists differ in length or `firstDynamicIndex` is 0
    void HandleDynamicInput(const std::vector<const char*>& ids, const std::vector<const char*>& displayNames,
                            const std::vector<PipeDataType>& types, std::size_t firstDynamicIndex);

    /// Adds an optional measurement input for each axis of the anchor. Called once, before `Init` or in it: a second
    /// call adds inputs again, and only those are read.
    void AddAnchorInputs(Mu::TlkHelper::AnchorType type, bool withAngles);

    /// True when nothing is routed to any anchor input.
    bool AllAnchorsInactive();

    /// The anchor that the set's measurements tell; axes to which nothing is routed are null.
    /// @throws Ta::Exception -997 if a routed anchor input has no data
    Mu::Vision::Anchor ExtractAnchorInputs(InputSet& set);

    /// Has a region follow the anchor; null is ignored. The region is not owned and outlives the tool's runs. One that
    /// is registered twice gets each call twice.
    void RegisterAnchoredRegion(Mu::TlkHelper::AnchoredRegionInterface* region);

    /// @throws Ta::Exception -999 if there is no such output
    bool IsOutputEnabled(const char* id);

    /// Makes the message of a measurement, a null message for a null value; without decision. The bool is not read.
    /// @throws Ta::Exception -984 if the output is not for measurements, -999 for an unknown id, -997 for an index past
    /// the end, or a failing call's status
    Ta::Object<void*> CreateMeasurementMessage(const ToolOutputInfo& output, double value, bool arrayed);
    Ta::Object<void*> CreateMeasurementMessage(const char* id, double value, bool arrayed);
    Ta::Object<void*> CreateMeasurementMessage(std::size_t index, double value, bool arrayed);

    /// By id. @throws Ta::Exception -999 if there is no such output, else as by pointer
    void SendMeasurement(const char* id, double value, bool arrayed, const zStamp* stamp);
    void SendMeasurementInPosition(const char* id, double value, zPoint3d64f& position, bool arrayed,
                                   const zStamp* stamp);
    void SendArrayedMeasurements(const char* id, const std::vector<double>& values);

    /// Sends measurements with the places of their labels as one array.
    /// @throws Ta::Exception -997 if the lists differ in length, -999 if there is no such output, -984 if it is not for
    /// measurements, or a failing call's status
    void SendArrayedMeasurementsInPosition(const char* id, const std::vector<double>& values,
                                           std::vector<zPoint3d64f>& positions);

    // Features by id, and by index without stamp. They throw -999 if there is no output of that id, -997 for an index
    // past the end, else as by pointer.

    void SendFeaturePoint(const char* id, const zPoint3d64f& position, bool arrayed, const zStamp* stamp);
    void SendFeatureLine(const char* id, const zPoint3d64f& position, const zPoint3d64f& direction, bool arrayed,
                         const zStamp* stamp);
    void SendFeatureLine(std::size_t index, const zPoint3d64f& position, const zPoint3d64f& direction, bool arrayed);
    void SendFeaturePlane(const char* id, const zPoint3d64f& normal, double originDistance, bool arrayed,
                          const zStamp* stamp);
    void SendFeaturePlane(const char* id, const zPlane3d64f& plane, bool arrayed, const zStamp* stamp);
    void SendFeaturePlane(std::size_t index, const zPlane3d64f& plane, bool arrayed);
    void SendFeatureCircle(const char* id, const zPoint3d64f& position, const zPoint3d64f& normal, double radius,
                           bool arrayed, const zStamp* stamp);
    void SendFeatureCircle(std::size_t index, const zPoint3d64f& position, const zPoint3d64f& normal, double radius,
                           bool arrayed);

    // Features as one array; an empty one as a null handle. One that is not valid is a null message in the array. They
    // throw Ta::Exception -999 if there is no such output, else as for single features; planes and circles -997 if the
    // lists differ in length.

    void SendArrayedFeaturePoints(ToolOutputInfo* output, const std::vector<zPoint3d64f>& positions);
    void SendArrayedFeaturePoints(const char* id, const std::vector<zPoint3d64f>& positions);

    /// As many lines as there are positions; one that lacks its direction is not valid.
    void SendArrayedFeatureLines(const char* id, const std::vector<zPoint3d64f>& positions,
                                 const std::vector<zPoint3d64f>& directions);

    void SendArrayedFeaturePlanes(ToolOutputInfo* output, const std::vector<zPoint3d64f>& normals,
                                  std::vector<double> distances);
    void SendArrayedFeaturePlanes(const char* id, const std::vector<zPlane3d64f>& planes);
    void SendArrayedFeatureCircles(ToolOutputInfo* output, const std::vector<zPoint3d64f>& positions,
                                   const std::vector<zPoint3d64f>& normals, std::vector<double> radii);
    void SendArrayedFeatureCircles(std::size_t index, const std::vector<zPoint3d64f>& positions,
                                   const std::vector<zPoint3d64f>& normals, std::vector<double> radii);

    /// Sends one value on every enabled measurement output, without decision.
    void SendMeasurementAll(double value);

    /// Sends a null message, also on a disabled output.
    void SendNull(ToolOutputInfo* output);
    void SendNull(const char* id);

    /// Sends a null message, with the input's bounding box if it is known, on every output that has had nothing yet.
    void SendAllNullOutputs();

    /// Sends a text with its terminator as a generic message.
    void SendString(std::size_t index, char* text);

    /// Adds an output for graphics at the end; `isArray` says whether they come in arrays.
    ToolOutputInfo& AddRenderingOutput(const char* id, bool isArray);

    /// By id. @throws Ta::Exception -999 if there is no such output, else as by pointer
    void RenderGraphics(const char* id, void* graphic, z8u spaceType, bool arrayed);
    void RenderArrayedGraphics(const char* id, const std::vector<Ta::Object<void*>>& graphics, z8u spaceType);

private:
    friend struct CommonToolTestAccess;

    struct TextHash
    {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const
        {
            return std::hash<std::string_view>{}(text);
        }
    };

    // The calls that go to all regions, in one walk.
    template <typename... Parameters, typename... Arguments>
    void CallRegions(void (Mu::TlkHelper::AnchoredRegionInterface::*operation)(Parameters...),
                     const Arguments&... arguments);
    void SynchronizeRegion();
    void RefreshRelativeRegion();
    void CalculateRelativeRegion();
    void CalculateAbsoluteRegion();
    void CalculateTransformMatrix();
    void RefreshConfigRegion();
    void ResetTransformMatrix();
    void SetTransformMatrixAsInvalid();
    bool IsTransformMatrixIdentity();

    void RunExecution(InputSet& set);
    void FollowAnchor(InputSet& set);
    void CheckRequiredInputs(InputSet& set);
    void FindReferenceMessage(InputSet& set);
    std::vector<std::string>& UserLog(const Ta::Place& place, std::size_t level);
    void CheckOutputFormat(const ToolOutputInfo* output, PipeDataFormat format, bool ignoreType);
    Ta::Object<void*> MeasurementOf(const Ta::Place& place, double value);
    void Deliver(ToolOutputInfo& output, Ta::Object<void*> message, bool arrayed);

    /// Sends a feature as `request` asks: made by `construct` and `setters`, in order, or a null message if it is not
    /// valid.
    struct FeatureRequest;
    template <typename... Setters>
    void SendFeature(const FeatureRequest& request, const Setters&... setters);

    /// Sends `count` messages as one array, each by `sendItem(index)`, which adds it to the array.
    template <typename SendItem>
    void SendAsArray(ToolOutputInfo& output, std::size_t count, const SendItem& sendItem);

protected:
    void* toolAlloc = nullptr;   ///< the allocator of all messages
    void* outputAlloc = nullptr; ///< a second allocator; stays null here

private:
    std::vector<AnchorInput> anchorInputs;
    std::vector<std::string> infoLog;
    std::vector<std::string> warningLog;
    std::vector<std::string> errorLog;

protected:
    void* referenceMsg = nullptr; ///< the data message that regions are placed by; not owned, lives as long as its set
    Mu::Vision::Anchor anchor;    ///< the last anchor values

private:
    bool anchorsActive = false;
    bool anchorRoutingChanged = false;
    bool relativeRegionChanged = false;
    bool transformChanged = false;

protected:
    bool acceptNullInputs = false; ///< for concrete tools: required inputs may carry no data

private:
    std::vector<Mu::TlkHelper::AnchoredRegionInterface*> anchoredRegions;
    std::vector<Mu::TlkHelper::FlexibleRegion*> flexibleRegions;
    std::vector<PersistenceTool*> persistenceTools;

protected:
    /// The bounding box of the input data, kept from one execution to the next.
    zRect3d64f inputBoundingBox{zNULL_64F, zNULL_64F, zNULL_64F, zNULL_64F, zNULL_64F, zNULL_64F};
    bool profileInput = true; ///< the reference message is a profile

private:
    bool dynamicParamsChanged = false;

protected:
    bool skipFlexibleRegionUpdate = false;     ///< for concrete tools: mask-source inputs are left alone
    std::size_t outputVisibilityStride = 1000; ///< for concrete tools: what separates visibility from order
    std::string toolName = "MuToolTemplate";   ///< for concrete tools: their name in errors about formats

private:
    std::unordered_map<std::string, ToolOutputInfo*, TextHash, std::equal_to<>> outputsById;
    TestRecorder* testRecorder = nullptr;
};
} // namespace Mu::Tools
