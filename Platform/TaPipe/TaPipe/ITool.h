#pragma once

#include <TaApi/Event.h>
#include <TaApi/Properties.h>
#include <TaCommon/IMetricsKeeper.h>
#include <TaPipe/IToolHost.h>
#include <TaPipe/InputSet.h>
#include <TaPipe/ToolActionInfo.h>
#include <TaPipe/ToolInfo.h>
#include <TaPipe/ToolInputInfo.h>
#include <TaPipe/ToolOutputInfo.h>

#include <cstddef>

namespace TaPipe
{
/// The stage of life that a tool is in; the host sets it.
enum class ToolLifeCycle : z32s
{
    Operational = 0,  ///< configured and at work
    TakeDefaults = 1, ///< regions take their defaults from the first data that arrives
    Restoring = 2,    ///< parameters and routes are being restored: nothing of it is a change by the user
};

/// A node of the host's pipeline. The host never overlaps calls on one tool.
/// The order of the virtual operations is part of the interface.
class MU_PLATFORM_EXPORT ITool
{
public:
    enum class ParamsChangeType : z32s
    {
        Values = 0,
        Structure = 1,
    };

    virtual ToolLifeCycle LifeCycle() = 0;
    virtual void UpdateLifeCycle(ToolLifeCycle lifeCycle) = 0;

    /// The version of this interface, 1.
    virtual z32u InterfaceVersion() = 0;

    /// Binds the tool to the host, which outlives it. Called once, before everything that follows.
    virtual void Init(IToolHost& host) = 0;

    /// Begins a change of parameters; `reason` is for logs. Changes may nest.
    virtual void BeginUpdateParams(const char* reason) = 0;

    /// Ends a change of parameters; the outermost end has the tool take the values over.
    virtual void EndUpdateParams() = 0;

    /// Lets the tool follow its parameters once more; true if parameters came or went with it.
    virtual bool UpdateDynamicParams() = 0;

    /// The tool's parameters. @throws Ta::Exception -999 before `Init`
    virtual Ta::Properties::Node& Params() const = 0;

    /// Raised when the tool has changed its own parameters.
    virtual Ta::Event<ParamsChangeType>& ParamsChangedEvent() = 0;

    /// The parameters of output `index`. @throws Ta::Exception -997 past the end
    virtual Ta::Properties::Node& OutputParams(std::size_t index) = 0;

    /// The version of the parameters' schema.
    virtual const char* ParamsVersion() = 0;

    virtual std::size_t InputCount() = 0;
    /// @throws Ta::Exception -997 past the end
    virtual ToolInputInfo& InputAt(std::size_t index) = 0;
    virtual std::size_t OutputCount() = 0;
    /// @throws Ta::Exception -997 past the end
    virtual ToolOutputInfo& OutputAt(std::size_t index) = 0;

    /// True if results may come after the call that delivered the inputs.
    virtual bool AsyncModeEnabled() const = 0;
    virtual void SetBatched(bool batched) = 0;
    virtual bool IsBatched() const = 0;

    virtual std::size_t ActionCount() const = 0;
    /// @throws Ta::Exception -997 past the end
    virtual ToolActionInfo& ActionAt(std::size_t index) const = 0;
    /// Runs an action. @throws Ta::Exception -999 if there is none of that name
    virtual void Invoke(const char* action) = 0;

    virtual void Start() = 0;
    virtual void Stop() = 0;

    /// Delivers an input set: one execution. False, and no execution, if an input index is past the end or comes twice.
    virtual bool ProcessInputSet(const MessageInput* inputs, std::size_t count) = 0;

    /// Delivers one input; the execution comes with the last of the inputs that something is routed to. False until
    /// then, for an input index past the end, and for an input that is pending already, of which the former stays.
    virtual bool Process(const MessageInput& input) = 0;

    virtual TaCommon::IMetricsKeeper* MetricsKeeper() = 0;

    /// The allocator of everything the tool makes; null means the default one. Called before `Init`. It is not owned.
    virtual void SetToolAllocator(void* alloc) = 0;
    virtual void* ToolAlloc() = 0;

    virtual ~ITool() = default;
};
} // namespace TaPipe
