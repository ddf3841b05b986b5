#pragma once

#include <TaPipe/ITool.h>
#include <TaPipe/MetricsKeeper.h>
#include <TaPipe/OutputMeasurementParams.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace TaPipe::Tools
{
/// The host's base class of every tool: inputs, outputs, parameters, actions, and the delivery of messages.
/// The order of the virtual operations is part of the interface.
class MU_PLATFORM_EXPORT CommonTool : public ITool, public MetricsKeeperBase
{
public:
    // Tool authors write these names without their namespace.
    using InputItem = TaPipe::InputItem;
    using InputRoutedInfo = TaPipe::InputRoutedInfo;
    using InputSet = TaPipe::InputSet;
    using IToolHost = TaPipe::IToolHost;
    using OutputMeasurementParams = TaPipe::OutputMeasurementParams;
    using PipeDataFormat = TaPipe::PipeDataFormat;
    using PipeDataType = TaPipe::PipeDataType;
    using ToolInfo = TaPipe::ToolInfo;
    using ToolInputInfo = TaPipe::ToolInputInfo;
    using ToolLifeCycle = TaPipe::ToolLifeCycle;
    using ToolOutputInfo = TaPipe::ToolOutputInfo;

    /// @param isAsync  what `AsyncModeEnabled` answers
    explicit CommonTool(bool isAsync);
    CommonTool(const CommonTool&) = delete;
    CommonTool& operator=(const CommonTool&) = delete;

    ToolLifeCycle LifeCycle() override;
    void UpdateLifeCycle(ToolLifeCycle lifeCycle) override;
    z32u InterfaceVersion() override;
    void Init(IToolHost& host) override;
    void BeginUpdateParams(const char* reason) override;
    void EndUpdateParams() override;
    bool UpdateDynamicParams() override;
    Ta::Properties::Node& Params() const override;
    Ta::Event<ParamsChangeType>& ParamsChangedEvent() override;
    Ta::Properties::Node& OutputParams(std::size_t index) override;
    const char* ParamsVersion() override;
    std::size_t InputCount() override;
    ToolInputInfo& InputAt(std::size_t index) override;
    std::size_t OutputCount() override;
    ToolOutputInfo& OutputAt(std::size_t index) override;
    bool AsyncModeEnabled() const override;
    void SetBatched(bool batched) override;
    bool IsBatched() const override;
    std::size_t ActionCount() const override;
    ToolActionInfo& ActionAt(std::size_t index) const override;
    void Invoke(const char* action) override;
    void Start() override;
    void Stop() override;
    bool ProcessInputSet(const MessageInput* arrived, std::size_t count) override;
    bool Process(const MessageInput& input) override;
    TaCommon::IMetricsKeeper* MetricsKeeper() override;
    void SetToolAllocator(void* alloc) override;
    void* ToolAlloc() override;
    ~CommonTool() override;

    /// One execution. The base forgets what the former execution sent.
    virtual void OnAllInputsReady(InputSet& set);
    virtual void OnParamsChanged();
    /// An input comes from elsewhere than before; called before `OnInputRouted`.
    virtual void OnInputSourceChanged(ToolInputInfo& input);
    virtual void OnInputRouted(ToolInputInfo& input, InputRoutedInfo info);
    virtual void OnOutputParamsChanged(ToolOutputInfo& output);
    virtual void OnLifeCycleUpdated();

protected:
    /// Binds the tool to the host and its root parameters; both outlive the tool or are part of it.
    void Init(IToolHost& host, Ta::Properties::Node& params);

    /// Adds an input before `index`, or at the end if `index` is past it. @throws Ta::Exception -999 without an id
    ToolInputInfo& AddInput(const char* id, std::size_t index);
    /// May be called within an execution: the set's items keep their input until its end.
    /// @throws Ta::Exception -997 past the end
    void RemoveInput(std::size_t index);

    /// Adds an output before `index`, or at the end if `index` is past it. @throws Ta::Exception -999 without an id
    ToolOutputInfo& AddOutput(const char* id, std::size_t index);
    /// The same for measurements, with `OutputMeasurementParams`; `isArray` says whether they come in arrays.
    ToolOutputInfo& AddMeasurementOutput(const char* id, bool isArray, std::size_t index);
    /// @throws Ta::Exception -997 past the end
    void RemoveOutput(std::size_t index);

    /// The first output with this id, null when there is none.
    ToolOutputInfo* FindOutputById(const char* id);

    /// Delivers a message to the host. A null handle stands for an empty array. `sendKind` is passed on to the host.
    /// @throws Ta::Exception -999 before `Init`
    void Send(ToolOutputInfo& output, Ta::Object<void*> message, int sendKind);

    /// Begins an array on an output; one that was begun and not ended is dropped.
    void BeginSendArray(ToolOutputInfo& output);
    /// @throws Ta::Exception 0 if no array was begun
    void WriteToArray(ToolOutputInfo& output, Ta::Object<void*> message, int sendKind);
    /// Delivers the array as one unit. @throws Ta::Exception 0 if no array was begun, -999 before `Init`
    void EndSendArray(ToolOutputInfo& output);

    /// True when the output has had a message, an array or a null message in the present execution; false for null.
    bool OutputAlreadySent(const ToolOutputInfo* output);

    /// Tells the host that the tool changed its own parameters; `structureChanged`: parameters came or went.
    void NotifyParamsChanged(bool structureChanged);

    /// Adds an action, or gives an existing one of that name another body. @throws Ta::Exception -999 without a name
    ToolActionInfo& RegisterAction(const char* name, std::function<void()> run);

private:
    // The owner's side of inputs and outputs, kept apart so that no slot is added to the tool's own table.
    class Owner final : public IInputOwner, public IOutputOwner
    {
    public:
        explicit Owner(CommonTool& owned);
        void OnRouted(ToolInputInfo& input, const InputRoutedInfo& info, bool sourceChanged) override;
        void OnOutputParams(ToolOutputInfo& output) override;

    private:
        CommonTool& tool;
    };

    // The time of an execution. On every way out of it no message outlives it, neither in its set nor in an array that
    // was not ended.
    class Execution
    {
    public:
        Execution(CommonTool& executed, InputSet& executedSet);
        Execution(const Execution&) = delete;
        Execution& operator=(const Execution&) = delete;
        ~Execution();

    private:
        CommonTool& tool;
        InputSet& set;
    };

    bool AddTo(InputSet& set, const MessageInput& arrived) const;
    void ForgetRemovedInputs();
    IOutputReceiver& Receiver(const Ta::Place& place) const;
    ToolOutputInfo& InsertOutput(const Ta::Place& place, const char* id, std::size_t index,
                                 std::unique_ptr<Ta::Properties::Structure> params);
    bool AreAllRoutedInputsPending() const;

    Owner owner;
    IOutputReceiver* receiver = nullptr;
    Ta::Properties::Node* rootParams = nullptr;
    void* toolAllocator = nullptr;
    ToolLifeCycle lifeCycle = ToolLifeCycle::Operational;
    std::size_t openUpdates = 0;
    bool asyncMode;
    bool batched = false;
    bool executing = false;
    std::vector<std::unique_ptr<ToolInputInfo>> inputs;
    std::vector<std::unique_ptr<ToolInputInfo>> removedInputs;
    std::vector<std::unique_ptr<ToolOutputInfo>> outputs;
    std::vector<std::unique_ptr<ToolActionInfo>> actions;
    Ta::Event<ParamsChangeType> paramsChanged;
    InputSet presentSet;
    InputSet pendingSet;
};
} // namespace TaPipe::Tools
