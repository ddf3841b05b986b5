#include <TaPipe/CommonTool.h>

#include <zApi/zString.h>

#include <algorithm>
#include <utility>

namespace TaPipe::Tools
{
namespace
{
constexpr z32u INTERFACE_VERSION = 1;

// The parameters of an output that has none of its own.
class NoParams final : public Ta::Params::Group
{
public:
    NoParams()
        : Group("OutputParams")
    {
    }
};

template <typename Info>
Info& At(const Ta::Place& place, const std::vector<std::unique_ptr<Info>>& infos, std::size_t index)
{
    if (index >= infos.size())
    {
        Ta::Raise(place, zERROR_PARAMETER);
    }
    return *infos[index];
}

template <typename Info>
void Renumber(const std::vector<std::unique_ptr<Info>>& infos)
{
    for (std::size_t i = 0; i < infos.size(); ++i)
    {
        infos[i]->SetIndex(i);
    }
}

template <typename Info>
Info& Insert(std::vector<std::unique_ptr<Info>>& infos, std::unique_ptr<Info> info, std::size_t index)
{
    const std::size_t place = std::min(index, infos.size());
    Info& inserted = **infos.insert(infos.begin() + static_cast<std::ptrdiff_t>(place), std::move(info));
    Renumber(infos);
    return inserted;
}

template <typename Info>
std::unique_ptr<Info> Remove(const Ta::Place& place, std::vector<std::unique_ptr<Info>>& infos, std::size_t index)
{
    At(place, infos, index);
    const auto found = infos.begin() + static_cast<std::ptrdiff_t>(index);
    std::unique_ptr<Info> removed = std::move(*found);
    infos.erase(found);
    Renumber(infos);
    return removed;
}
} // namespace

CommonTool::Owner::Owner(CommonTool& owned)
    : tool(owned)
{
}

void CommonTool::Owner::OnRouted(ToolInputInfo& input, const InputRoutedInfo& info, bool sourceChanged)
{
    if (sourceChanged)
    {
        tool.OnInputSourceChanged(input);
    }
    tool.OnInputRouted(input, info);
}

void CommonTool::Owner::OnOutputParams(ToolOutputInfo& output)
{
    tool.OnOutputParamsChanged(output);
}

CommonTool::Execution::Execution(CommonTool& executed, InputSet& executedSet)
    : tool(executed)
    , set(executedSet)
{
    tool.executing = true;
}

CommonTool::Execution::~Execution()
{
    set.Clear();
    tool.executing = false;
    tool.ForgetRemovedInputs();
    for (const auto& output : tool.outputs)
    {
        if (output->State().arrayOpen)
        {
            output->State() = {output->State().sent, false, {}};
        }
    }
}

CommonTool::CommonTool(bool isAsync)
    : owner(*this)
    , asyncMode(isAsync)
{
}

CommonTool::~CommonTool() = default;

ToolLifeCycle CommonTool::LifeCycle()
{
    return lifeCycle;
}

void CommonTool::UpdateLifeCycle(ToolLifeCycle newLifeCycle)
{
    lifeCycle = newLifeCycle;
    OnLifeCycleUpdated();
}

z32u CommonTool::InterfaceVersion()
{
    return INTERFACE_VERSION;
}

void CommonTool::Init(IToolHost& host)
{
    receiver = &host.OutputReceiver();
}

void CommonTool::Init(IToolHost& host, Ta::Properties::Node& params)
{
    receiver = &host.OutputReceiver();
    rootParams = &params;
}

void CommonTool::BeginUpdateParams(const char* /*reason*/)
{
    ++openUpdates;
}

void CommonTool::EndUpdateParams()
{
    if (openUpdates == 0)
    {
        MU_FAIL(zERROR_PRECONDITION, "EndUpdateParams was called without BeginUpdateParams.");
    }
    if (--openUpdates == 0)
    {
        OnParamsChanged();
    }
}

bool CommonTool::UpdateDynamicParams()
{
    return false;
}

Ta::Properties::Node& CommonTool::Params() const
{
    if (rootParams == nullptr)
    {
        MU_FAIL(zERROR_MISSING, "The tool has no parameters before Init.");
    }
    return *rootParams;
}

Ta::Event<ITool::ParamsChangeType>& CommonTool::ParamsChangedEvent()
{
    return paramsChanged;
}

Ta::Properties::Node& CommonTool::OutputParams(std::size_t index)
{
    return At(MU_HERE, outputs, index).Params();
}

const char* CommonTool::ParamsVersion()
{
    return "1";
}

std::size_t CommonTool::InputCount()
{
    return inputs.size();
}

ToolInputInfo& CommonTool::InputAt(std::size_t index)
{
    return At(MU_HERE, inputs, index);
}

std::size_t CommonTool::OutputCount()
{
    return outputs.size();
}

ToolOutputInfo& CommonTool::OutputAt(std::size_t index)
{
    return At(MU_HERE, outputs, index);
}

bool CommonTool::AsyncModeEnabled() const
{
    return asyncMode;
}

void CommonTool::SetBatched(bool isBatched)
{
    batched = isBatched;
}

bool CommonTool::IsBatched() const
{
    return batched;
}

std::size_t CommonTool::ActionCount() const
{
    return actions.size();
}

ToolActionInfo& CommonTool::ActionAt(std::size_t index) const
{
    return At(MU_HERE, actions, index);
}

void CommonTool::Invoke(const char* action)
{
    const auto found =
        std::ranges::find_if(actions, [action](const auto& entry) { return zStrEquals(entry->Name(), action) != 0; });
    if (found == actions.end())
    {
        MU_FAIL(zERROR_MISSING, "The tool has no action \"%s\".", action == nullptr ? "" : action);
    }
    // A copy, because the action may register itself anew.
    const ToolActionInfo running = **found;
    running.Run();
}

void CommonTool::Start()
{
    pendingSet.Clear();
}

void CommonTool::Stop()
{
    pendingSet.Clear();
}

bool CommonTool::AddTo(InputSet& set, const MessageInput& arrived) const
{
    if (arrived.inputIndex >= inputs.size() || set.FindByIndex(arrived.inputIndex) != nullptr)
    {
        return false;
    }
    set.Add(*inputs[arrived.inputIndex], arrived.messages);
    return true;
}

bool CommonTool::ProcessInputSet(const MessageInput* arrived, std::size_t count)
{
    const Execution execution(*this, presentSet);
    for (std::size_t i = 0; i < count; ++i)
    {
        if (!AddTo(presentSet, arrived[i]))
        {
            return false;
        }
    }
    CountExecution();
    OnAllInputsReady(presentSet);
    return true;
}

bool CommonTool::Process(const MessageInput& input)
{
    if (!AddTo(pendingSet, input) || !AreAllRoutedInputsPending())
    {
        return false;
    }
    const Execution execution(*this, pendingSet);
    CountExecution();
    OnAllInputsReady(pendingSet);
    return true;
}

bool CommonTool::AreAllRoutedInputsPending() const
{
    return std::ranges::all_of(inputs, [this](const auto& input) {
        return !input->IsActive() || pendingSet.FindByIndex(input->Index()) != nullptr;
    });
}

TaCommon::IMetricsKeeper* CommonTool::MetricsKeeper()
{
    return this;
}

void CommonTool::SetToolAllocator(void* alloc)
{
    toolAllocator = alloc;
}

void* CommonTool::ToolAlloc()
{
    return toolAllocator;
}

void CommonTool::OnAllInputsReady(InputSet& /*set*/)
{
    for (const auto& output : outputs)
    {
        ToolOutputInfo::Sending& sending = output->State();
        sending.sent = false;
        sending.arrayOpen = false;
        sending.array.clear();
    }
}

void CommonTool::OnParamsChanged() {}

void CommonTool::OnInputSourceChanged(ToolInputInfo& /*input*/) {}

void CommonTool::OnInputRouted(ToolInputInfo& /*input*/, InputRoutedInfo /*info*/) {}

void CommonTool::OnOutputParamsChanged(ToolOutputInfo& /*output*/) {}

void CommonTool::OnLifeCycleUpdated() {}

ToolInputInfo& CommonTool::AddInput(const char* id, std::size_t index)
{
    if (id == nullptr)
    {
        MU_FAIL(zERROR_MISSING, "An input needs an id.");
    }
    return Insert(inputs, std::make_unique<ToolInputInfo>(owner, id, index), index);
}

void CommonTool::RemoveInput(std::size_t index)
{
    // Items of a set that is being executed name their inputs, so a removed one lives until the execution ends.
    removedInputs.push_back(Remove(MU_HERE, inputs, index));
    if (!executing)
    {
        ForgetRemovedInputs();
    }
}

void CommonTool::ForgetRemovedInputs()
{
    if (!removedInputs.empty())
    {
        pendingSet.Clear();
        removedInputs.clear();
    }
}

ToolOutputInfo& CommonTool::InsertOutput(const Ta::Place& place, const char* id, std::size_t index,
                                         std::unique_ptr<Ta::Properties::Structure> params)
{
    if (id == nullptr)
    {
        MU_FAIL_AT(place, zERROR_MISSING, "An output needs an id.");
    }
    return Insert(outputs, std::make_unique<ToolOutputInfo>(owner, id, index, std::move(params)), index);
}

ToolOutputInfo& CommonTool::AddOutput(const char* id, std::size_t index)
{
    return InsertOutput(MU_HERE, id, index, std::make_unique<NoParams>());
}

ToolOutputInfo& CommonTool::AddMeasurementOutput(const char* id, bool isArray, std::size_t index)
{
    return InsertOutput(MU_HERE, id, index, std::make_unique<OutputMeasurementParams>())
        .SetDataFormat(PipeDataType::Measurement, isArray);
}

void CommonTool::RemoveOutput(std::size_t index)
{
    Remove(MU_HERE, outputs, index);
}

ToolOutputInfo* CommonTool::FindOutputById(const char* id)
{
    const auto found =
        std::ranges::find_if(outputs, [id](const auto& output) { return zStrEquals(output->Id(), id) != 0; });
    return found == outputs.end() ? nullptr : found->get();
}

IOutputReceiver& CommonTool::Receiver(const Ta::Place& place) const
{
    if (receiver == nullptr)
    {
        MU_FAIL_AT(place, zERROR_MISSING, "The tool cannot send before Init.");
    }
    return *receiver;
}

void CommonTool::Send(ToolOutputInfo& output, Ta::Object<void*> message, int sendKind)
{
    IOutputReceiver& host = Receiver(MU_HERE);
    output.State() = {output.State().sent, false, {}};
    host.OnMessage(*this, output, message, sendKind);
    // Only what the host has taken counts as sent: otherwise the output would go without its null message.
    output.State().sent = true;
    CountMessages(1);
}

void CommonTool::BeginSendArray(ToolOutputInfo& output)
{
    output.State().array.clear();
    output.State().arrayOpen = true;
}

void CommonTool::WriteToArray(ToolOutputInfo& output, Ta::Object<void*> message, int /*sendKind*/)
{
    if (!output.State().arrayOpen)
    {
        MU_FAIL(zERROR_PRECONDITION, "No array was begun on output \"%s\".", output.Id());
    }
    output.State().array.push_back(std::move(message));
}

void CommonTool::EndSendArray(ToolOutputInfo& output)
{
    ToolOutputInfo::Sending& sending = output.State();
    if (!sending.arrayOpen)
    {
        MU_FAIL(zERROR_PRECONDITION, "No array was begun on output \"%s\".", output.Id());
    }
    IOutputReceiver& host = Receiver(MU_HERE);
    const std::vector<Ta::Object<void*>> messages = std::move(sending.array);
    sending = {sending.sent, false, {}};
    host.OnArray(*this, output, messages);
    sending.sent = true;
    CountMessages(messages.size());
}

bool CommonTool::OutputAlreadySent(const ToolOutputInfo* output)
{
    return output != nullptr && output->State().sent;
}

void CommonTool::NotifyParamsChanged(bool structureChanged)
{
    paramsChanged.Raise(structureChanged ? ParamsChangeType::Structure : ParamsChangeType::Values);
}

ToolActionInfo& CommonTool::RegisterAction(const char* name, std::function<void()> run)
{
    if (name == nullptr)
    {
        MU_FAIL(zERROR_MISSING, "An action needs a name.");
    }
    const auto found =
        std::ranges::find_if(actions, [name](const auto& entry) { return zStrEquals(entry->Name(), name) != 0; });
    auto action = std::make_unique<ToolActionInfo>(name, std::move(run));
    if (found != actions.end())
    {
        *found = std::move(action);
        return **found;
    }
    actions.push_back(std::move(action));
    return *actions.back();
}
} // namespace TaPipe::Tools
