#include <Host/ToolRunner.h>

#include <Host/AnchorInputs.h>
#include <Host/Error.h>
#include <Host/FailureText.h>
#include <Host/Names.h>
#include <Host/ParameterKeys.h>
#include <Host/ReadOnlyValues.h>

#include <TaApi/JsonSerializer.h>
#include <TaPipe/OutputMeasurementParams.h>
#include <TaVision/TaVision.h>

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace Mu::Host
{
namespace
{
using Ta::Properties::JsonSerializer;
using TaPipe::ToolLifeCycle;

/// More rounds than any tree is deep: a tool whose parameters keep coming and going does not hold up the host.
constexpr int mostRounds = 64;

constexpr double openBelow = std::numeric_limits<double>::lowest();
constexpr double openAbove = std::numeric_limits<double>::max();

Limits LimitsOf(const TaPipe::ToolOutputInfo& output)
{
    const auto* const params = dynamic_cast<const TaPipe::OutputMeasurementParams*>(&output.Params());
    if (params == nullptr)
    {
        return {};
    }
    const double lower = params->lowerLimit.Get();
    const double upper = params->upperLimit.Get();
    return {lower == openBelow ? std::nullopt : std::optional(lower),
            upper == openAbove ? std::nullopt : std::optional(upper)};
}

bool IsNull(const Ta::Object<void*>& message)
{
    return !message || xzCastClass_ObjectIs(message.Get(), zTypeOf(TvNullMsg));
}

bool IsDrawing(const Ta::Object<void*>& message)
{
    return message && xzCastClass_ObjectIs(message.Get(), zTypeOf(TvRenderingMsg));
}

void ReadMessage(const Ta::Object<void*>& message, Result& result)
{
    if (IsNull(message))
    {
        result.state = ResultState::Null;
    }
    else if (!xzCastClass_ObjectIs(message.Get(), zTypeOf(TvMeasureMsg)))
    {
        result.state = ResultState::Data;
    }
    else
    {
        result.state = ResultState::Value;
        result.value = TvMeasureMsg_Value(message.Get());
        const Decision good = result.limits.IsOpen() ? Decision::None : Decision::Pass;
        result.decision = TvMeasureMsg_Status(message.Get()) ? good : Decision::Fail;
    }
}

bool HasData(const Delivery& delivery)
{
    return std::ranges::none_of(delivery.messages, IsNull);
}

/// The message by which a tool places its regions: its first data message. Null if there is none.
void* ReferenceOf(const std::vector<Delivery>& deliveries)
{
    for (const Delivery& delivery : deliveries)
    {
        void* const message = delivery.messages.empty() ? nullptr : delivery.messages.front().Get();
        if (xzCastClass_ObjectIs(message, zTypeOf(TvDataMsg)))
        {
            return message;
        }
    }
    return nullptr;
}

bool IsImage(void* message)
{
    return xzCastClass_ObjectIs(message, zTypeOf(TvImageMsg));
}

/// Whether the data is of some size in each of its directions: regions are refused a place in others.
bool HasExtent(void* message)
{
    if (IsImage(message))
    {
        return TvImageMsg_Width(message) > 1 && TvImageMsg_Height(message) > 1;
    }
    const zRect3d64f box = TvDataMsg_BoundingBox(message);
    return box.width > 0 && box.height > 0 && (box.length > 0 || xzCastClass_ObjectIs(message, zTypeOf(TvProfileMsg)));
}

template <typename Count, typename At>
std::vector<std::string> NamesOf(Count count, At at)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count(); ++i)
    {
        names.emplace_back(at(i).Id());
    }
    return names;
}
} // namespace

template <typename Call>
decltype(auto) ToolRunner::Guarded(std::string_view doing, Call&& call) const
{
    try
    {
        return std::forward<Call>(call)();
    }
    catch (const Error&)
    {
        throw;
    }
    catch (...)
    {
        place.Fail(fmt::format("tool {} ({}) failed {}: {}", Quoted(id), typeName, doing, CurrentFailureText()),
                   "Correct the job if the text says how, else mend the tool");
    }
}

ToolRunner::ToolRunner(const ToolType& type, std::string toolId, JobPlace toolPlace, void* alloc)
    : typeName(type.Name())
    , id(std::move(toolId))
    , place(std::move(toolPlace))
    , tool(type.Create())
{
    Guarded("when it was set up", [this, alloc] {
        tool->SetToolAllocator(alloc);
        tool->Init(*this);
        tool->UpdateLifeCycle(ToolLifeCycle::Restoring);
    });
}

ToolRunner::~ToolRunner()
{
    if (!started)
    {
        return;
    }
    try
    {
        tool->Stop();
    }
    catch (...)
    {
        // Whoever drops a running tool has an error in hand already; that of the stop would only hide it.
        started = false;
    }
}

std::vector<std::string> ToolRunner::DeliverParameters(nlohmann::json parameters, ReadOnlySetting readOnlyValues)
{
    return Guarded("when it took its parameters over", [&] {
        std::optional<ReadOnlyValues> restored;
        if (readOnlyValues == ReadOnlySetting::Restored)
        {
            restored.emplace(tool->Params(), parameters, place.At("parameters"));
        }
        tool->BeginUpdateParams("restoring a job");
        Ta::Properties::DeliveryReport report;
        try
        {
            report = JsonSerializer::DeserializeKnown(tool->Params(), parameters);
        }
        catch (const Ta::Exception& failure)
        {
            throw Error(place.file.string() + ": " + place.where + ".parameters." + failure.Message());
        }
        if (restored)
        {
            restored->Store();
        }
        tool->EndUpdateParams();
        return report.unknownKeys;
    });
}

void ToolRunner::Restore(const nlohmann::json& parameters, ReadOnlySetting readOnlyValues)
{
    std::vector<std::string> missing;
    for (int round = 0; round < mostRounds; ++round)
    {
        const auto before = ParameterPaths(tool->Params());
        missing = DeliverParameters(parameters, readOnlyValues);
        if (missing.empty())
        {
            takesDefaults = !GivesRegionValues(tool->Params(), parameters);
            return;
        }
        Guarded("when it brought its parameters up to date", [this] { return tool->UpdateDynamicParams(); });
        if (std::ranges::includes(before, ParameterPaths(tool->Params())))
        {
            break;
        }
    }
    place.At("parameters")
        .At(missing.front())
        .Fail(fmt::format("tool {} has no such parameter", typeName), KnownKeys(tool->Params(), missing.front()));
}

std::vector<std::string> ToolRunner::InputNames() const
{
    return NamesOf([this] { return tool->InputCount(); }, [this](std::size_t i) -> auto& { return tool->InputAt(i); });
}

std::vector<std::string> ToolRunner::OutputNames() const
{
    return NamesOf(
        [this] { return tool->OutputCount(); }, [this](std::size_t i) -> auto& { return tool->OutputAt(i); });
}

TaPipe::ToolInputInfo& ToolRunner::Input(const std::string& name, const JobPlace& askedAt) const
{
    const auto names = InputNames();
    const auto found = std::ranges::find(names, name);
    if (found == names.end())
    {
        askedAt.Fail(fmt::format("tool {} ({}) has no input {}", Quoted(id), typeName, Quoted(name)),
                     KnownNames(name, names));
    }
    return tool->InputAt(static_cast<std::size_t>(found - names.begin()));
}

TaPipe::ToolOutputInfo& ToolRunner::Output(const std::string& name, const JobPlace& askedAt) const
{
    const auto names = OutputNames();
    const auto found = std::ranges::find(names, name);
    if (found == names.end())
    {
        askedAt.Fail(fmt::format("tool {} ({}) has no output {}", Quoted(id), typeName, Quoted(name)),
                     KnownNames(name, names));
    }
    return tool->OutputAt(static_cast<std::size_t>(found - names.begin()));
}

void ToolRunner::ConfigureOutput(const OutputSetup& setup)
{
    TaPipe::ToolOutputInfo& output = Output(setup.id, setup.place);
    if (setup.enabled)
    {
        output.Enable(*setup.enabled);
    }
    if (!setup.hasLimits)
    {
        return;
    }
    if (!output.IsEnabled())
    {
        setup.place.Fail("the output has limits and is switched off, so nothing would be decided",
                         "Take the limits out, or switch the output on");
    }
    if (dynamic_cast<TaPipe::OutputMeasurementParams*>(&output.Params()) == nullptr)
    {
        setup.place.Fail(
            fmt::format("the output gives {}, which has no limits", PipeDataTypeName(output.DataFormat().type)),
            "Take the limits out");
    }
    Guarded("when it took its limits over", [&] {
        JsonSerializer::Deserialize(output.Params(), {{"lowerLimit", setup.lowerLimit.value_or(openBelow)},
                                                      {"upperLimit", setup.upperLimit.value_or(openAbove)}});
        output.NotifyParamsChanged();
    });
}

void ToolRunner::Route(const std::string& input, const std::string& source, const JobPlace& routePlace)
{
    TaPipe::ToolInputInfo& target = Input(input, routePlace);
    Guarded("when an input was routed", [&] {
        if (takesDefaults)
        {
            EnterStage(ToolLifeCycle::TakeDefaults);
        }
        target.Route({0, source});
    });
    if (IsAnchorInput(input))
    {
        anchorSources[input] = source;
    }
}

void ToolRunner::EnterStage(ToolLifeCycle stage)
{
    if (tool->LifeCycle() != stage)
    {
        tool->UpdateLifeCycle(stage);
    }
}

void ToolRunner::Start()
{
    Guarded("when it started", [this] {
        EnterStage(takesDefaults ? ToolLifeCycle::TakeDefaults : ToolLifeCycle::Operational);
        tool->Start();
    });
    started = true;
}

/// An execution that placed no regions may have seen the anchors all the same, and taken them for those that the
/// regions are relative to. The next one has to see them as new again.
void ToolRunner::BeginAnew()
{
    beginsAnew = false;
    if (anchorSources.empty())
    {
        return;
    }
    Stop();
    for (const auto& [input, source] : anchorSources)
    {
        TaPipe::ToolInputInfo& target = Input(input, place);
        Guarded("when an input was routed", [&target, &routed = source] {
            target.Route({0, ""});
            target.Route({0, routed});
        });
    }
    Start();
}

bool ToolRunner::HasRequiredData(const std::vector<Delivery>& deliveries) const
{
    return std::ranges::all_of(deliveries, [this](const Delivery& delivery) {
        return Input(delivery.input, place).IsOptional() || HasData(delivery);
    });
}

/// What came out tells that the execution went well, and with it the placing of the regions. If nothing did, it may
/// have failed before it could place them: for want of required data, or because the data has no extent.
bool ToolRunner::ArePlaced(const std::vector<Delivery>& deliveries) const
{
    void* const reference = ReferenceOf(deliveries);
    if (reference == nullptr || !(IsImage(reference) || TvDataMsg_HasBoundingBox(reference)))
    {
        return false;
    }
    return !GaveOnlyNulls() || (HasExtent(reference) && HasRequiredData(deliveries));
}

bool ToolRunner::GaveOnlyNulls() const
{
    const auto isNull = [](const auto& entry) {
        return !entry.second.empty() && std::ranges::all_of(entry.second, IsNull);
    };
    const auto isDrawing = [](const auto& entry) {
        return !entry.second.empty() && std::ranges::all_of(entry.second, IsDrawing);
    };
    return std::ranges::any_of(sent, isNull) &&
           std::ranges::all_of(sent, [&](const auto& entry) { return isNull(entry) || isDrawing(entry); });
}

std::vector<Result> ToolRunner::Execute(const std::vector<Delivery>& deliveries)
{
    if (beginsAnew)
    {
        BeginAnew();
    }
    std::vector<std::vector<void*>> handles;
    std::vector<TaPipe::MessageInput> inputs;
    for (const Delivery& delivery : deliveries)
    {
        auto& raw = handles.emplace_back();
        std::ranges::transform(delivery.messages, std::back_inserter(raw), &Ta::Object<void*>::Get);
        // The vector's own storage stays where it is when the list of vectors grows.
        inputs.push_back({Input(delivery.input, place).Index(), raw});
    }
    sent.clear();
    return Guarded("when it was executed", [&] {
        if (!tool->ProcessInputSet(inputs.data(), inputs.size()))
        {
            place.Fail(fmt::format("tool {} did not take its inputs", Quoted(id)), "Mend the tool");
        }
        if (takesDefaults)
        {
            takesDefaults = !ArePlaced(deliveries);
            beginsAnew = takesDefaults;
        }
        if (!takesDefaults)
        {
            EnterStage(ToolLifeCycle::Operational);
        }
        std::vector<Result> results;
        for (std::size_t i = 0; i < tool->OutputCount(); ++i)
        {
            if (tool->OutputAt(i).IsEnabled())
            {
                AppendResults(tool->OutputAt(i), results);
            }
        }
        return results;
    });
}

void ToolRunner::AppendResults(const TaPipe::ToolOutputInfo& output, std::vector<Result>& results) const
{
    Result result{id,
                  typeName,
                  output.Id(),
                  {},
                  output.DataFormat().type,
                  ResultState::NotSent,
                  0,
                  output.Units(),
                  LimitsOf(output),
                  Decision::None};
    result.decision = result.limits.IsOpen() ? Decision::None : Decision::Null;
    const auto found = sent.find(output.Id());
    if (found == sent.end())
    {
        results.push_back(result);
        return;
    }
    if (found->second.empty())
    {
        result.state = ResultState::EmptyArray;
        results.push_back(result);
        return;
    }
    const bool isArray = output.DataFormat().isArray || found->second.size() > 1;
    for (std::size_t i = 0; i < found->second.size(); ++i)
    {
        Result& entry = results.emplace_back(result);
        ReadMessage(found->second[i], entry);
        if (isArray)
        {
            entry.index = i;
        }
    }
}

std::vector<Ta::Object<void*>> ToolRunner::SentOn(const std::string& output) const
{
    const auto found = sent.find(output);
    return found == sent.end() ? std::vector<Ta::Object<void*>>(1) : found->second;
}

void ToolRunner::Stop()
{
    started = false;
    Guarded("when it stopped", [this] { tool->Stop(); });
}

TaPipe::IOutputReceiver& ToolRunner::OutputReceiver()
{
    return *this;
}

void ToolRunner::OnMessage(TaPipe::ITool& /*sender*/, const TaPipe::ToolOutputInfo& output,
                           const Ta::Object<void*>& message, int /*sendKind*/)
{
    auto& messages = sent[output.Id()];
    if (message)
    {
        messages.push_back(message);
    }
}

void ToolRunner::OnArray(TaPipe::ITool& /*sender*/, const TaPipe::ToolOutputInfo& output,
                         const std::vector<Ta::Object<void*>>& messages)
{
    auto& present = sent[output.Id()];
    present.insert(present.end(), messages.begin(), messages.end());
}
} // namespace Mu::Host
