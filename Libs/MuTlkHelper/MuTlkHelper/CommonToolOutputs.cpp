// The outputs of CommonTool: their registry, and everything that is sent. What is raised here names CommonTool as its
// source unit; the build sees to it.

#include <MuTlkHelper/CommonTool.h>

#include <MuTlkHelper/FeatureUtils.h>

#include <TaVision/TaVision.h>
#include <zApi/zString.h>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace Mu::Tools
{
using Mu::TlkHelper::IsValidLine;
using Mu::TlkHelper::IsValidPoint;

namespace
{
// What every send passes to the host: the message is complete.
constexpr int SEND_KIND = 1;
constexpr std::size_t AT_END = static_cast<std::size_t>(-1);
constexpr TaPipe::PipeDataFormat MEASUREMENT_FORMAT{TaPipe::PipeDataType::Measurement, false};
constexpr TaPipe::PipeDataFormat RENDERING_FORMAT{TaPipe::PipeDataType::Rendering, false};
constexpr zPoint3d64f NULL_POINT{zNULL_64F, zNULL_64F, zNULL_64F};

template <typename Output>
Output& Required(const Ta::Place& place, Output* output)
{
    if (output == nullptr)
    {
        Ta::Raise(place, zERROR_MISSING);
    }
    return *output;
}

TaPipe::ToolOutputInfo& RequiredRendering(const Ta::Place& place, TaPipe::ToolOutputInfo* output, const char* id)
{
    if (output == nullptr)
    {
        MU_FAIL_AT(place, zERROR_MISSING, "Missing graphic id: %s", id == nullptr ? "(null)" : id);
    }
    return *output;
}

// Both limits are inclusive, and a NaN is within no limits. An output without limits passes everything.
bool IsWithinLimits(const TaPipe::ToolOutputInfo& output, double value)
{
    const auto* const limits = dynamic_cast<const TaPipe::OutputMeasurementParams*>(&output.Params());
    return limits == nullptr || (value >= limits->lowerLimit.Get() && value <= limits->upperLimit.Get());
}

void CheckLengths(const Ta::Place& place, std::size_t length, std::initializer_list<std::size_t> others)
{
    if (std::ranges::any_of(others, [length](std::size_t other) { return other != length; }))
    {
        Ta::Raise(place, zERROR_PARAMETER);
    }
}

double OriginDistance(const zPlane3d64f& plane)
{
    return plane.point.x * plane.normal.x + plane.point.y * plane.normal.y + plane.point.z * plane.normal.z;
}

// A setter of a feature message with what it sets.
template <typename Value>
struct Setter
{
    zStatus (*set)(void*, Value);
    Value value;
};

template <typename Value>
Setter(zStatus (*)(void*, Value), Value) -> Setter<Value>;
} // namespace

TaPipe::ToolOutputInfo& CommonTool::AddOutput(const char* id, std::size_t index)
{
    ToolOutputInfo& output = TaPipe::Tools::CommonTool::AddOutput(id, index);
    outputsById[id] = &output;
    return output;
}

TaPipe::ToolOutputInfo& CommonTool::AddMeasurementOutput(const char* id, bool isArray, std::size_t index)
{
    ToolOutputInfo& output = TaPipe::Tools::CommonTool::AddMeasurementOutput(id, isArray, index);
    outputsById[id] = &output;
    return output;
}

void CommonTool::RemoveOutput(std::size_t index)
{
    if (index >= OutputCount())
    {
        return;
    }
    outputsById.erase(OutputAt(index).Id());
    TaPipe::Tools::CommonTool::RemoveOutput(index);
}

TaPipe::ToolOutputInfo* CommonTool::FindOutputById(const char* id)
{
    if (id != nullptr)
    {
        if (const auto found = outputsById.find(std::string_view(id)); found != outputsById.end())
        {
            return found->second;
        }
    }
    return TaPipe::Tools::CommonTool::FindOutputById(id);
}

void CommonTool::SetOutputVisiblity(ToolOutputInfo* output, OutputVisibility visibility)
{
    ToolOutputInfo& known = Required(MU_HERE, output);
    if (outputVisibilityStride == 0)
    {
        MU_FAIL(zERROR_PARAMETER, "outputVisibilityStride must be above 0.");
    }
    known.SetPriority(static_cast<std::size_t>(visibility) * outputVisibilityStride +
                      known.Priority() % outputVisibilityStride);
}

bool CommonTool::IsOutputEnabled(const char* id)
{
    return Required(MU_HERE, FindOutputById(id)).IsEnabled();
}

void CommonTool::Send(ToolOutputInfo& output, Ta::Object<void*> message, int sendKind)
{
    TaPipe::Tools::CommonTool::Send(output, std::move(message), sendKind);
}

void CommonTool::Deliver(ToolOutputInfo& output, Ta::Object<void*> message, bool arrayed)
{
    if (arrayed)
    {
        TaPipe::Tools::CommonTool::WriteToArray(output, std::move(message), SEND_KIND);
    }
    else
    {
        Send(output, std::move(message), SEND_KIND);
    }
}

void CommonTool::CheckOutputFormat(const ToolOutputInfo* output, PipeDataFormat format, bool ignoreType)
{
    const PipeDataFormat declared = output->DataFormat();
    if (!declared.isArray && format.isArray)
    {
        MU_FAIL(zERROR_FORMAT, "Tool output format is not arrayed (tool: %s[%s]).", toolName.c_str(),
                output->DisplayName());
    }
    if (!ignoreType && declared.type != format.type)
    {
        // Required: the text lacks the word.
        MU_FAIL(zERROR_FORMAT, "Tool output format is not (tool: %s[%s]).", toolName.c_str(), output->DisplayName());
    }
}

Ta::Object<void*> CommonTool::MeasurementOf(const Ta::Place& place, double value)
{
    Ta::Object<void*> message;
    if (value == zNULL_64F)
    {
        Ta::Check(place, TvNullMsg_Construct(message.Out(), 0, toolAlloc));
    }
    else
    {
        Ta::Check(place, TvMeasureMsg_Construct(message.Out(), 1, 0, toolAlloc));
        Ta::Check(place, TvMeasureMsg_SetValue(message.Get(), value));
    }
    return message;
}

Ta::Object<void*> CommonTool::CreateMeasurementMessage(const ToolOutputInfo& output, double value, bool /*arrayed*/)
{
    CheckOutputFormat(&output, MEASUREMENT_FORMAT, false);
    return MeasurementOf(MU_HERE, value);
}

Ta::Object<void*> CommonTool::CreateMeasurementMessage(const char* id, double value, bool arrayed)
{
    return CreateMeasurementMessage(Required(MU_HERE, FindOutputById(id)), value, arrayed);
}

Ta::Object<void*> CommonTool::CreateMeasurementMessage(std::size_t index, double value, bool arrayed)
{
    return CreateMeasurementMessage(OutputAt(index), value, arrayed);
}

void CommonTool::SendMeasurement(ToolOutputInfo* output, double value, bool arrayed, const zStamp* stamp)
{
    ToolOutputInfo& known = Required(MU_HERE, output);
    // Required: the format is checked before the output is found disabled.
    CheckOutputFormat(&known, MEASUREMENT_FORMAT, false);
    if (!known.IsEnabled())
    {
        return;
    }
    Ta::Object<void*> message = MeasurementOf(MU_HERE, value);
    if (value != zNULL_64F)
    {
        if (stamp != nullptr)
        {
            // Required: a stamp that cannot be set is no reason to lose the measurement.
            static_cast<void>(TvMeasureMsg_SetStampAt(message.Get(), 0, stamp));
        }
        MU_CHECK(TvMeasureMsg_SetStatus(message.Get(), IsWithinLimits(known, value)));
    }
    Deliver(known, std::move(message), arrayed);
}

void CommonTool::SendMeasurement(const char* id, double value, bool arrayed, const zStamp* stamp)
{
    SendMeasurement(&Required(MU_HERE, FindOutputById(id)), value, arrayed, stamp);
}

void CommonTool::SendMeasurementInPosition(ToolOutputInfo* output, double value, zPoint3d64f& position, bool arrayed,
                                           const zStamp* stamp)
{
    ToolOutputInfo& known = Required(MU_HERE, output);
    if (!known.IsEnabled())
    {
        return;
    }
    Ta::Object<void*> message = CreateMeasurementMessage(known, value, arrayed);
    MU_CHECK(TvMeasureMsg_SetLabelPosition(message.Get(), position.x, position.y, position.z));
    if (stamp != nullptr)
    {
        MU_CHECK(TvMeasureMsg_SetStampAt(message.Get(), 0, stamp));
    }
    // Required: no decision against the limits here.
    Deliver(known, std::move(message), arrayed);
}

void CommonTool::SendMeasurementInPosition(const char* id, double value, zPoint3d64f& position, bool arrayed,
                                           const zStamp* stamp)
{
    SendMeasurementInPosition(&Required(MU_HERE, FindOutputById(id)), value, position, arrayed, stamp);
}

void CommonTool::SendMeasurementAll(double value)
{
    for (std::size_t index = 0; index < OutputCount(); ++index)
    {
        ToolOutputInfo& output = OutputAt(index);
        if (output.IsEnabled() && output.DataFormat().type == PipeDataType::Measurement)
        {
            Send(output, CreateMeasurementMessage(index, value, false), SEND_KIND);
        }
    }
}

template <typename SendItem>
void CommonTool::SendAsArray(ToolOutputInfo& output, std::size_t count, const SendItem& sendItem)
{
    if (!output.IsEnabled())
    {
        return;
    }
    if (count == 0)
    {
        Send(output, Ta::Object<void*>(), SEND_KIND);
        return;
    }
    BeginSendArray(output);
    for (std::size_t i = 0; i < count; ++i)
    {
        sendItem(i);
    }
    EndSendArray(output);
}

void CommonTool::SendArrayedMeasurements(ToolOutputInfo* output, const std::vector<double>& values)
{
    ToolOutputInfo& known = Required(MU_HERE, output);
    SendAsArray(known, values.size(), [&](std::size_t i) { SendMeasurement(&known, values[i], true, nullptr); });
}

void CommonTool::SendArrayedMeasurements(const char* id, const std::vector<double>& values)
{
    SendArrayedMeasurements(&Required(MU_HERE, FindOutputById(id)), values);
}

void CommonTool::SendArrayedMeasurementsInPosition(const char* id, const std::vector<double>& values,
                                                   std::vector<zPoint3d64f>& positions)
{
    CheckLengths(MU_HERE, values.size(), {positions.size()});
    ToolOutputInfo& known = Required(MU_HERE, FindOutputById(id));
    SendAsArray(known, values.size(),
                [&](std::size_t i) { SendMeasurementInPosition(&known, values[i], positions[i], true, nullptr); });
}

struct CommonTool::FeatureRequest
{
    Ta::Place place; ///< of the caller
    PipeDataType type;
    zStatus (*construct)(void**, std::size_t, void*);
    ToolOutputInfo* output;
    bool arrayed;
    const zStamp* stamp; ///< or null
    bool isValid;
};

template <typename... Setters>
void CommonTool::SendFeature(const FeatureRequest& request, const Setters&... setters)
{
    ToolOutputInfo& known = Required(request.place, request.output);
    // Required: the format is checked before the output is found disabled.
    CheckOutputFormat(&known, {request.type, false}, false);
    if (!known.IsEnabled())
    {
        return;
    }
    Ta::Object<void*> message;
    if (request.isValid)
    {
        Ta::Check(request.place, request.construct(message.Out(), 1, toolAlloc));
        (Ta::Check(request.place, setters.set(message.Get(), setters.value)), ...);
        if (request.stamp != nullptr)
        {
            // Required: a stamp that cannot be set is no reason to lose the feature.
            static_cast<void>(TvDataMsg_SetStamp(message.Get(), request.stamp));
        }
    }
    else
    {
        Ta::Check(request.place, TvNullMsg_Construct(message.Out(), 0, toolAlloc));
    }
    Deliver(known, std::move(message), request.arrayed);
}

void CommonTool::SendFeaturePoint(ToolOutputInfo* output, const zPoint3d64f& position, bool arrayed,
                                  const zStamp* stamp)
{
    SendFeature({MU_HERE, PipeDataType::PointFeature, TvPointFeatureMsg_Construct, output, arrayed, stamp,
                 IsValidPoint(position) != 0},
                Setter{TvPointFeatureMsg_SetPosition, &position});
}

void CommonTool::SendFeatureLine(ToolOutputInfo* output, const zPoint3d64f& position, const zPoint3d64f& direction,
                                 bool arrayed, const zStamp* stamp)
{
    SendFeature({MU_HERE, PipeDataType::LineFeature, TvLineFeatureMsg_Construct, output, arrayed, stamp,
                 IsValidLine({position, direction}) != 0},
                Setter{TvLineFeatureMsg_SetPosition, &position}, Setter{TvLineFeatureMsg_SetDirection, &direction});
}

void CommonTool::SendFeaturePlane(ToolOutputInfo* output, const zPoint3d64f& normal, double originDistance,
                                  bool arrayed, const zStamp* stamp)
{
    SendFeature({MU_HERE, PipeDataType::PlaneFeature, TvPlaneFeatureMsg_Construct, output, arrayed, stamp,
                 IsValidPoint(normal) != 0 && originDistance != zNULL_64F},
                Setter{TvPlaneFeatureMsg_SetOriginDistance, originDistance},
                Setter{TvPlaneFeatureMsg_SetNormal, &normal});
}

void CommonTool::SendFeatureCircle(ToolOutputInfo* output, const zPoint3d64f& position, const zPoint3d64f& normal,
                                   double radius, bool arrayed, const zStamp* stamp)
{
    SendFeature({MU_HERE, PipeDataType::CircleFeature, TvCircleFeatureMsg_Construct, output, arrayed, stamp,
                 IsValidPoint(position) != 0 && IsValidPoint(normal) != 0 && radius > 0.0},
                Setter{TvCircleFeatureMsg_SetPosition, &position}, Setter{TvCircleFeatureMsg_SetNormal, &normal},
                Setter{TvCircleFeatureMsg_SetRadius, radius});
}

void CommonTool::SendFeaturePoint(const char* id, const zPoint3d64f& position, bool arrayed, const zStamp* stamp)
{
    SendFeaturePoint(&Required(MU_HERE, FindOutputById(id)), position, arrayed, stamp);
}

void CommonTool::SendFeatureLine(const char* id, const zPoint3d64f& position, const zPoint3d64f& direction,
                                 bool arrayed, const zStamp* stamp)
{
    SendFeatureLine(&Required(MU_HERE, FindOutputById(id)), position, direction, arrayed, stamp);
}

void CommonTool::SendFeatureLine(std::size_t index, const zPoint3d64f& position, const zPoint3d64f& direction,
                                 bool arrayed)
{
    SendFeatureLine(&OutputAt(index), position, direction, arrayed, nullptr);
}

void CommonTool::SendFeaturePlane(const char* id, const zPoint3d64f& normal, double originDistance, bool arrayed,
                                  const zStamp* stamp)
{
    SendFeaturePlane(&Required(MU_HERE, FindOutputById(id)), normal, originDistance, arrayed, stamp);
}

void CommonTool::SendFeaturePlane(const char* id, const zPlane3d64f& plane, bool arrayed, const zStamp* stamp)
{
    SendFeaturePlane(&Required(MU_HERE, FindOutputById(id)), plane.normal, OriginDistance(plane), arrayed, stamp);
}

void CommonTool::SendFeaturePlane(std::size_t index, const zPlane3d64f& plane, bool arrayed)
{
    SendFeaturePlane(&OutputAt(index), plane.normal, OriginDistance(plane), arrayed, nullptr);
}

void CommonTool::SendFeatureCircle(const char* id, const zPoint3d64f& position, const zPoint3d64f& normal,
                                   double radius, bool arrayed, const zStamp* stamp)
{
    SendFeatureCircle(&Required(MU_HERE, FindOutputById(id)), position, normal, radius, arrayed, stamp);
}

void CommonTool::SendFeatureCircle(std::size_t index, const zPoint3d64f& position, const zPoint3d64f& normal,
                                   double radius, bool arrayed)
{
    SendFeatureCircle(&OutputAt(index), position, normal, radius, arrayed, nullptr);
}

void CommonTool::SendArrayedFeaturePoints(ToolOutputInfo* output, const std::vector<zPoint3d64f>& positions)
{
    ToolOutputInfo& known = Required(MU_HERE, output);
    SendAsArray(known, positions.size(), [&](std::size_t i) { SendFeaturePoint(&known, positions[i], true, nullptr); });
}

void CommonTool::SendArrayedFeaturePoints(const char* id, const std::vector<zPoint3d64f>& positions)
{
    SendArrayedFeaturePoints(&Required(MU_HERE, FindOutputById(id)), positions);
}

void CommonTool::SendArrayedFeatureLines(const char* id, const std::vector<zPoint3d64f>& positions,
                                         const std::vector<zPoint3d64f>& directions)
{
    ToolOutputInfo& known = Required(MU_HERE, FindOutputById(id));
    // Required: the lengths are not compared, and the positions count.
    SendAsArray(known, positions.size(), [&](std::size_t i) {
        SendFeatureLine(&known, positions[i], i < directions.size() ? directions[i] : NULL_POINT, true, nullptr);
    });
}

void CommonTool::SendArrayedFeaturePlanes(ToolOutputInfo* output, const std::vector<zPoint3d64f>& normals,
                                          std::vector<double> distances)
{
    CheckLengths(MU_HERE, normals.size(), {distances.size()});
    ToolOutputInfo& known = Required(MU_HERE, output);
    SendAsArray(known, normals.size(),
                [&](std::size_t i) { SendFeaturePlane(&known, normals[i], distances[i], true, nullptr); });
}

void CommonTool::SendArrayedFeaturePlanes(const char* id, const std::vector<zPlane3d64f>& planes)
{
    ToolOutputInfo& known = Required(MU_HERE, FindOutputById(id));
    SendAsArray(known, planes.size(), [&](std::size_t i) {
        SendFeaturePlane(&known, planes[i].normal, OriginDistance(planes[i]), true, nullptr);
    });
}

void CommonTool::SendArrayedFeatureCircles(ToolOutputInfo* output, const std::vector<zPoint3d64f>& positions,
                                           const std::vector<zPoint3d64f>& normals, std::vector<double> radii)
{
    CheckLengths(MU_HERE, positions.size(), {normals.size(), radii.size()});
    ToolOutputInfo& known = Required(MU_HERE, output);
    SendAsArray(known, positions.size(),
                [&](std::size_t i) { SendFeatureCircle(&known, positions[i], normals[i], radii[i], true, nullptr); });
}

void CommonTool::SendArrayedFeatureCircles(std::size_t index, const std::vector<zPoint3d64f>& positions,
                                           const std::vector<zPoint3d64f>& normals, std::vector<double> radii)
{
    SendArrayedFeatureCircles(&OutputAt(index), positions, normals, std::move(radii));
}

void CommonTool::SendNull(ToolOutputInfo* output)
{
    ToolOutputInfo& known = Required(MU_HERE, output);
    Ta::Object<void*> message;
    MU_CHECK(TvNullMsg_Construct(message.Out(), 0, toolAlloc));
    Send(known, std::move(message), SEND_KIND);
}

void CommonTool::SendNull(const char* id)
{
    SendNull(&Required(MU_HERE, FindOutputById(id)));
}

void CommonTool::SendAllNullOutputs()
{
    for (std::size_t index = 0; index < OutputCount(); ++index)
    {
        ToolOutputInfo& output = OutputAt(index);
        if (OutputAlreadySent(&output))
        {
            continue;
        }
        Ta::Object<void*> message;
        MU_CHECK(TvNullMsg_Construct(message.Out(), 0, toolAlloc));
        if (inputBoundingBox.x != zNULL_64F)
        {
            MU_CHECK(TvDataMsg_SetBoundingBox(message.Get(), &inputBoundingBox));
        }
        Send(output, std::move(message), SEND_KIND);
    }
}

void CommonTool::SendString(std::size_t index, char* text)
{
    ToolOutputInfo& output = OutputAt(index);
    if (!output.IsEnabled())
    {
        return;
    }
    Ta::Object<void*> message;
    MU_CHECK(TvGenericMsg_Construct(message.Out(), 0, zStrLength(text) + 1, toolAlloc));
    MU_CHECK(TvGenericMsg_SetBuffer(message.Get(), text));
    Send(output, std::move(message), SEND_KIND);
}

TaPipe::ToolOutputInfo& CommonTool::AddRenderingOutput(const char* id, bool isArray)
{
    ToolOutputInfo& output = AddOutput(id, AT_END);
    output.SetDataFormat(PipeDataType::Rendering, isArray);
    SetOutputVisiblity(&output, OutputVisibility::Rendering);
    outputsById[id] = &output;
    return output;
}

void CommonTool::RenderGraphics(ToolOutputInfo* output, void* graphic, z8u spaceType, bool arrayed)
{
    ToolOutputInfo& known = Required(MU_HERE, output);
    // Required: the format is checked before the output is found disabled.
    CheckOutputFormat(&known, RENDERING_FORMAT, false);
    if (!known.IsEnabled())
    {
        return;
    }
    Ta::Object<void*> message;
    if (graphic == nullptr)
    {
        MU_CHECK(TvNullMsg_Construct(message.Out(), 0, toolAlloc));
    }
    else
    {
        MU_CHECK(TvRenderingMsg_Construct(message.Out(), toolAlloc));
        Ta::Object<void*> shared;
        shared.Reset(graphic, true);
        MU_CHECK(TvRenderingMsg_SetRendering(message.Get(), shared.Get()));
        static_cast<void>(shared.Detach()); // the message holds this reference now
        MU_CHECK(TvDataMsg_SetSpaceType(message.Get(), spaceType));
    }
    Deliver(known, std::move(message), arrayed);
}

void CommonTool::RenderGraphics(const char* id, void* graphic, z8u spaceType, bool arrayed)
{
    RenderGraphics(&RequiredRendering(MU_HERE, FindOutputById(id), id), graphic, spaceType, arrayed);
}

void CommonTool::RenderArrayedGraphics(ToolOutputInfo* output, const std::vector<Ta::Object<void*>>& graphics,
                                       z8u spaceType)
{
    ToolOutputInfo& known = RequiredRendering(MU_HERE, output, nullptr);
    SendAsArray(known, graphics.size(),
                [&](std::size_t i) { RenderGraphics(&known, graphics[i].Get(), spaceType, true); });
}

void CommonTool::RenderArrayedGraphics(const char* id, const std::vector<Ta::Object<void*>>& graphics, z8u spaceType)
{
    RenderArrayedGraphics(&RequiredRendering(MU_HERE, FindOutputById(id), id), graphics, spaceType);
}
} // namespace Mu::Tools
