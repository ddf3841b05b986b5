#pragma once

#include <TaPipe/IToolHost.h>

#include <cstddef>
#include <vector>

namespace Support
{
/// A host that takes what a tool sends, counts the messages, and allocates nothing.
class SilentHost final : public TaPipe::IToolHost, public TaPipe::IOutputReceiver
{
public:
    virtual ~SilentHost() = default;

    TaPipe::IOutputReceiver& OutputReceiver() override
    {
        return *this;
    }

    void OnMessage(TaPipe::ITool& /*tool*/, const TaPipe::ToolOutputInfo& /*output*/,
                   const Ta::Object<void*>& /*message*/, int /*sendKind*/) override
    {
        ++messages;
    }

    void OnArray(TaPipe::ITool& /*tool*/, const TaPipe::ToolOutputInfo& /*output*/,
                 const std::vector<Ta::Object<void*>>& /*sent*/) override
    {
    }

    std::size_t messages = 0;
};
} // namespace Support
