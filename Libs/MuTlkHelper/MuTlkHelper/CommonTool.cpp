#include <MuTlkHelper/CommonTool.h>

#include <MuTlkHelper/AnchoredRegion.h>
#include <MuTlkHelper/StatsUtils.h>

#include <TaApi/Logging.h>
#include <TaVision/TaVision.h>
#include <zApi/zString.h>
#include <zApi/zVersion.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <utility>

namespace Mu::Tools
{
using Mu::TlkHelper::AnchoredRegionInterface;

namespace
{
constexpr std::size_t AT_END = static_cast<std::size_t>(-1);
constexpr std::size_t USER_TEXT_CAPACITY = 512;
constexpr std::size_t HELP_URL_CAPACITY = 1024;
constexpr zVersion UNKNOWN_HOST_VERSION = zVersion_Create(1, 0, 0, 0);

struct Thresholds
{
    int max;
    int initial;
};

constexpr Thresholds FULL_SCALE_8{255, 128};
constexpr Thresholds FULL_SCALE_16{65535, 32768};

struct FormatThresholds
{
    TvPixelFormat format;
    Thresholds thresholds;
};

constexpr std::array<FormatThresholds, 11> FORMAT_THRESHOLDS = {{
    {TvPIXEL_FORMAT_GREY8, FULL_SCALE_8},
    {TvPIXEL_FORMAT_BGRX8, FULL_SCALE_8},
    {TvPIXEL_FORMAT_BGR8_PACKED, FULL_SCALE_8},
    {TvPIXEL_FORMAT_PFNC_MONO8, FULL_SCALE_8},
    {TvPIXEL_FORMAT_PFNC_RGB8, FULL_SCALE_8},
    {TvPIXEL_FORMAT_PFNC_BGR8, FULL_SCALE_8},
    {TvPIXEL_FORMAT_PFNC_RGBA8, FULL_SCALE_8},
    {TvPIXEL_FORMAT_PFNC_BGRA8, FULL_SCALE_8},
    {TvPIXEL_FORMAT_PFNC_MONO10, {1023, 512}},
    {TvPIXEL_FORMAT_PFNC_MONO12, {4095, 2048}},
    {TvPIXEL_FORMAT_PFNC_MONO14, {16383, 8192}},
}};

// Required: everything else, 16-bit formats among it, counts as 16 bits.
Thresholds ThresholdsOf(TvPixelFormat format)
{
    const auto* const found =
        std::ranges::find_if(FORMAT_THRESHOLDS, [format](const auto& entry) { return entry.format == format; });
    return found == FORMAT_THRESHOLDS.end() ? FULL_SCALE_16 : found->thresholds;
}

struct AxisInput
{
    const char* id;
    const char* displayName;
    double Mu::Vision::Anchor::*value;
};

// In the order of AnchorAxis.
constexpr std::array<AxisInput, 6> AXIS_INPUTS = {{
    {"AnchorX", "Anchor X", &Mu::Vision::Anchor::x},
    {"AnchorY", "Anchor Y", &Mu::Vision::Anchor::y},
    {"AnchorZ", "Anchor Z", &Mu::Vision::Anchor::z},
    {"AnchorXAngle", "Anchor X Angle", &Mu::Vision::Anchor::xAngle},
    {"AnchorYAngle", "Anchor Y Angle", &Mu::Vision::Anchor::yAngle},
    {"AnchorZAngle", "Anchor Z Angle", &Mu::Vision::Anchor::zAngle},
}};

const AxisInput& InputOf(const Ta::Place& place, AnchorAxis axis)
{
    const auto index = static_cast<std::size_t>(axis);
    if (index >= AXIS_INPUTS.size())
    {
        MU_FAIL_AT(place, zERROR_ENUM, "Unknown anchor axis");
    }
    return AXIS_INPUTS.at(index);
}

std::vector<AnchorAxis> AxesOf(Mu::TlkHelper::AnchorType type, bool withAngles)
{
    using enum AnchorAxis;
    using Mu::TlkHelper::AnchorType;
    switch (type)
    {
    case AnchorType::Profile:
        return withAngles ? std::vector{X, Z, YAngle} : std::vector{X, Z};
    case AnchorType::Surface:
        return withAngles ? std::vector{X, Y, Z, ZAngle} : std::vector{X, Y, Z};
    case AnchorType::Box:
        return withAngles ? std::vector{X, Y, Z, XAngle, YAngle, ZAngle} : std::vector{X, Y, Z};
    case AnchorType::Image:
        return withAngles ? std::vector{X, Y, ZAngle} : std::vector{X, Y};
    }
    return {};
}
} // namespace

CommonTool::CommonTool()
    : TaPipe::Tools::CommonTool(false)
{
}

CommonTool::~CommonTool() = default;

void CommonTool::Init(IToolHost& host, Ta::Params::Group& params)
{
    TaPipe::Tools::CommonTool::Init(host, params);
    toolAlloc = ToolAlloc();
    outputAlloc = nullptr;
    persistenceTools.clear();
    OnParamsChanged();
}

void CommonTool::OnParamsChanged()
{
    TaPipe::Tools::CommonTool::OnParamsChanged();
    UpdateConfig();
}

bool CommonTool::UpdateDynamicParams()
{
    OnParamsChanged();
    return dynamicParamsChanged;
}

void CommonTool::OnInputRouted(ToolInputInfo& input, InputRoutedInfo info)
{
    TaPipe::Tools::CommonTool::OnInputRouted(input, info);
    const auto found =
        std::ranges::find_if(anchorInputs, [&input](const AnchorInput& a) { return a.inputIndex == input.Index(); });
    if (found == anchorInputs.end())
    {
        return;
    }
    if (found->active != input.IsActive())
    {
        found->active = input.IsActive();
        anchorRoutingChanged = true;
    }
    if (found->sourceId != info.sourceId)
    {
        found->sourceId = std::move(info.sourceId);
        anchorRoutingChanged = true;
    }
    if (LifeCycle() == ToolLifeCycle::Restoring)
    {
        anchorRoutingChanged = false;
    }
}

void CommonTool::AddAnchorInputs(Mu::TlkHelper::AnchorType type, bool withAngles)
{
    anchorInputs.clear();
    for (const AnchorAxis axis : AxesOf(type, withAngles))
    {
        const AxisInput& input = InputOf(MU_HERE, axis);
        AddInput(input.id, AT_END)
            .AddAcceptedDataFormat(PipeDataType::Measurement, false)
            .SetDisplayName(input.displayName)
            .SetOptional(true);
        anchorInputs.push_back({axis, input.id, input.displayName, InputCount() - 1, false, {}});
    }
}

Mu::Vision::Anchor CommonTool::ExtractAnchorInputs(InputSet& set)
{
    Mu::Vision::Anchor extracted;
    for (const AnchorInput& input : anchorInputs)
    {
        if (!input.active)
        {
            continue;
        }
        const InputItem* const item = set.FindByIndex(input.inputIndex);
        // A host that leaves a routed input out of the set has no data for it either.
        const Ta::Object<void*> message = item == nullptr ? Ta::Object<void*>() : item->Message(true);
        if (!message)
        {
            MU_FAIL(zERROR_PARAMETER, "Invalid anchor input.");
        }
        extracted.*InputOf(MU_HERE, input.axis).value = TvMeasureMsg_Value(message.Get());
    }
    return extracted;
}

void CommonTool::RegisterAnchoredRegion(Mu::TlkHelper::AnchoredRegionInterface* region)
{
    if (region != nullptr)
    {
        anchoredRegions.push_back(region);
    }
}

template <typename... Parameters, typename... Arguments>
void CommonTool::CallRegions(void (AnchoredRegionInterface::*operation)(Parameters...), const Arguments&... arguments)
{
    for (AnchoredRegionInterface* const region : anchoredRegions)
    {
        (region->*operation)(arguments...);
    }
}

void CommonTool::SynchronizeRegion()
{
    CallRegions(&AnchoredRegionInterface::SynchronizeRegion);
}

void CommonTool::RefreshRelativeRegion()
{
    CallRegions(&AnchoredRegionInterface::RefreshRelativeRegion);
}

void CommonTool::CalculateRelativeRegion()
{
    CallRegions(&AnchoredRegionInterface::CalculateRelativeRegion, anchor);
}

void CommonTool::CalculateAbsoluteRegion()
{
    CallRegions(&AnchoredRegionInterface::CalculateAbsoluteRegion, anchor);
}

void CommonTool::CalculateTransformMatrix()
{
    CallRegions(&AnchoredRegionInterface::CalculateTransformMatrix, anchor);
}

void CommonTool::ResetTransformMatrix()
{
    CallRegions(&AnchoredRegionInterface::ResetTransformMatrix);
}

void CommonTool::SetTransformMatrixAsInvalid()
{
    CallRegions(&AnchoredRegionInterface::SetTransformMatrixAsInvalid);
}

void CommonTool::RefreshConfigRegion()
{
    if (transformChanged)
    {
        CalculateTransformMatrix();
        CallRegions(&AnchoredRegionInterface::RefreshConfigTransformMatrix);
    }
    if (relativeRegionChanged)
    {
        CallRegions(&AnchoredRegionInterface::RefreshConfigRegion);
    }
}

bool CommonTool::IsTransformMatrixIdentity()
{
    // Every region is asked, also behind one that says no.
    bool identity = true;
    for (AnchoredRegionInterface* const region : anchoredRegions)
    {
        identity = region->IsTransformMatrixIdentity() && identity;
    }
    return identity;
}

bool CommonTool::AllAnchorsInactive()
{
    return std::ranges::none_of(anchorInputs, [](const AnchorInput& a) { return a.active; });
}

void CommonTool::Start()
{
    TaPipe::Tools::CommonTool::Start();
    anchorsActive = !AllAnchorsInactive();
    if (anchorsActive)
    {
        SetTransformMatrixAsInvalid();
        transformChanged = true;
        NotifyParamsChanged(false);
        RefreshRelativeRegion();
    }
    else if (anchorRoutingChanged)
    {
        // The last anchor has been taken away: the regions stay where they are on the data.
        anchor = Mu::Vision::Anchor();
        CalculateRelativeRegion();
        relativeRegionChanged = true;
        ResetTransformMatrix();
        transformChanged = true;
    }
    else
    {
        SynchronizeRegion();
    }
    infoLog.clear();
    warningLog.clear();
    errorLog.clear();
}

void CommonTool::Stop()
{
    if (relativeRegionChanged || transformChanged)
    {
        if (LifeCycle() != ToolLifeCycle::TakeDefaults)
        {
            RefreshConfigRegion();
        }
        NotifyParamsChanged(false);
        relativeRegionChanged = false;
        transformChanged = false;
    }
    TaPipe::Tools::CommonTool::Stop();
}

void CommonTool::OnAllInputsReady(InputSet& set)
{
    try
    {
        RunExecution(set);
    }
    catch (...)
    {
        // A failed execution is no failure for the host: what comes behind this tool sees that there is no data.
        SendAllNullOutputs();
    }
}

void CommonTool::RunExecution(InputSet& set)
{
    TaPipe::Tools::CommonTool::OnAllInputsReady(set);
    if (!acceptNullInputs)
    {
        CheckRequiredInputs(set);
    }
    if (LifeCycle() == ToolLifeCycle::TakeDefaults || inputBoundingBox.x == zNULL_64F)
    {
        FindReferenceMessage(set);
    }
    if (anchorsActive)
    {
        FollowAnchor(set);
    }
    Execute(set);
    anchorRoutingChanged = false;
}

void CommonTool::FollowAnchor(InputSet& set)
{
    anchor = ExtractAnchorInputs(set);
    if (anchorRoutingChanged)
    {
        // The first execution after a change: the regions stay where they are, seen from the new anchor.
        CalculateRelativeRegion();
        relativeRegionChanged = true;
    }
    else
    {
        CalculateAbsoluteRegion();
    }
}

void CommonTool::CheckRequiredInputs(InputSet& set)
{
    for (std::size_t i = 0; i < set.Count(); ++i)
    {
        const InputItem& item = set.At(i);
        if (item.Input().IsOptional())
        {
            continue;
        }
        // Required: an item without messages passes.
        for (std::size_t k = 0; k < item.MessageCount(); ++k)
        {
            if (!item.MessageAt(k, true))
            {
                MU_FAIL(zERROR_MISSING, nullptr);
            }
        }
    }
}

void CommonTool::FindReferenceMessage(InputSet& set)
{
    referenceMsg = nullptr;
    for (std::size_t i = 0; i < set.Count() && referenceMsg == nullptr; ++i)
    {
        // The set keeps the message alive.
        void* const message = set.At(i).Message(true).Get();
        if (xzCastClass_ObjectIs(message, zTypeOf(TvDataMsg)))
        {
            referenceMsg = message;
        }
    }
    if (referenceMsg == nullptr)
    {
        return;
    }
    if (TvDataMsg_HasBoundingBox(referenceMsg))
    {
        inputBoundingBox = TvDataMsg_BoundingBox(referenceMsg);
    }
    if (LifeCycle() == ToolLifeCycle::TakeDefaults)
    {
        profileInput = xzCastClass_ObjectIs(referenceMsg, zTypeOf(TvProfileMsg));
        InitializeRegions();
        SynchronizeRegion();
        relativeRegionChanged = true;
    }
}

void CommonTool::Execute(InputSet& /*set*/) {}

void CommonTool::UpdateConfig() {}

void CommonTool::InitializeRegions()
{
    for (AnchoredRegionInterface* const region : anchoredRegions)
    {
        Mu::TlkHelper::DefaultRegionInit(referenceMsg, region, 0, 0, 0, 0);
    }
}

Mu::Vision::RefFrame CommonTool::CreateTransformMatrix(const Mu::Vision::Anchor& newAnchor,
                                                       Mu::Vision::RotationOrder order)
{
    return Mu::Vision::CreateAnchorTransform(newAnchor, order);
}

std::vector<std::string>& CommonTool::UserLog(const Ta::Place& place, std::size_t level)
{
    switch (level)
    {
    case Ta::Logging::LEVEL_INFORMATION:
        return infoLog;
    case Ta::Logging::LEVEL_WARNING:
        return warningLog;
    case Ta::Logging::LEVEL_ERROR:
        return errorLog;
    default:
        Ta::Raise(place, zERROR_ENUM);
    }
}

void CommonTool::LogUserMessage(int line, const char* file, std::size_t level, const char* source, const char* format,
                                ...)
{
    std::vector<std::string>& logged = UserLog(MU_HERE, level);
    std::array<char, USER_TEXT_CAPACITY> text{};
    va_list arguments;
    va_start(arguments, format);
    const zStatus formatted = zStrPrintvf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    MU_CHECK(formatted);
    const auto isEqual = [&text](const std::string& former) { return zStrCompare(former.c_str(), text.data()) == 0; };
    if (std::ranges::any_of(logged, isEqual))
    {
        return;
    }
    MU_CHECK(Ta::Logging::Ta_Debug_Log(line, file, level, source, "%s", text.data()));
    logged.emplace_back(text.data());
}

void CommonTool::Describe(ToolInfo& info)
{
    zVersion version = UNKNOWN_HOST_VERSION;
    if (zVersion_Parse(&version, ToolInfo::HostAppVersion().c_str()) != zOK)
    {
        version = UNKNOWN_HOST_VERSION;
    }
    std::array<char, HELP_URL_CAPACITY> url{};
    MU_CHECK(zStrPrintf(url.data(), url.size(),
                        MU_MANUAL_SERVER "/manuals/tavro/tavro-%u.%u/OrvaneLaserLineProfiler/Content/Inline/%s.htm",
                        zVersion_Major(version), zVersion_Minor(version), info.Type().c_str()));
    info.SetHelpUrl(url.data());
}

int CommonTool::UpdateThresholdMax(TvPixelFormat format)
{
    return ThresholdsOf(format).max;
}

int CommonTool::UpdateThresholdDefault(TvPixelFormat format)
{
    return ThresholdsOf(format).initial;
}

void* CommonTool::GetDataMessageInput(InputSet& set, const char* inputId)
{
    const InputItem* const item = set.FindByName(inputId);
    // The set keeps the message alive.
    return item == nullptr ? nullptr : item->Message(true).Get();
}

void CommonTool::HandleDynamicInput(const std::vector<const char*>& ids, const std::vector<const char*>& displayNames,
                                    const std::vector<PipeDataType>& types, std::size_t firstDynamicIndex)
{
    if (ids.size() != displayNames.size() || ids.size() != types.size() || firstDynamicIndex == 0)
    {
        MU_FAIL(zERROR_PRECONDITION, nullptr);
    }
    std::vector<bool> present(ids.size(), false);
    for (std::size_t i = InputCount(); i > firstDynamicIndex; --i)
    {
        const char* const id = InputAt(i - 1).Id();
        const auto found = std::ranges::find_if(ids, [id](const char* wanted) { return zStrEquals(wanted, id) != 0; });
        if (found == ids.end())
        {
            RemoveInput(i - 1);
        }
        else
        {
            present[static_cast<std::size_t>(found - ids.begin())] = true;
        }
    }
    for (std::size_t j = 0; j < ids.size(); ++j)
    {
        if (!present[j])
        {
            AddInput(ids[j], AT_END)
                .AddAcceptedDataFormat(types[j], false)
                .SetDisplayName(displayNames[j])
                .SetOptional(true);
        }
    }
}
} // namespace Mu::Tools

zStatus TaPlugin_SetHostInfo(const std::string& hostVersion)
{
    TaPipe::ToolInfo::SetHostAppVersion(hostVersion);
    return zOK;
}
