#pragma once

#include <TaApi/Object.h>
#include <TaPipe/ToolOutputInfo.h>

#include <vector>

namespace TaPipe
{
class ITool;

/// Takes what leaves a tool. It is called from within the calls on the tool, in the order of sending.
class MU_PLATFORM_EXPORT IOutputReceiver
{
public:
    /// A message on an output. A null handle stands for an empty array. `sendKind` is what the tool passed to `Send`.
    virtual void OnMessage(ITool& tool, const ToolOutputInfo& output, const Ta::Object<void*>& message,
                           int sendKind) = 0;

    /// A finished array of messages on an output.
    virtual void OnArray(ITool& tool, const ToolOutputInfo& output, const std::vector<Ta::Object<void*>>& messages) = 0;

protected:
    ~IOutputReceiver() = default;
};

/// The host as a tool sees it. It outlives the tool.
class MU_PLATFORM_EXPORT IToolHost
{
public:
    /// Where messages go.
    virtual IOutputReceiver& OutputReceiver() = 0;

protected:
    ~IToolHost() = default;
};
} // namespace TaPipe
