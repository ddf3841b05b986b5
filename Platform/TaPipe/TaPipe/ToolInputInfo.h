#pragma once

#include <TaPipe/PipeDataType.h>

#include <cstddef>
#include <string>
#include <vector>

namespace TaPipe
{
class ToolInputInfo;

/// What an input is now routed to. An empty `sourceId` means to nothing.
struct InputRoutedInfo
{
    z32s routeKind = 0; ///< the host's own; 0 unless it says otherwise
    std::string sourceId;
};

/// Whoever owns inputs hears here that one was routed.
class MU_PLATFORM_EXPORT IInputOwner
{
public:
    /// The input has its new state already. `sourceChanged` says whether it comes from elsewhere than before.
    virtual void OnRouted(ToolInputInfo& input, const InputRoutedInfo& info, bool sourceChanged) = 0;

protected:
    ~IInputOwner() = default;
};

/// One input of a tool. It belongs to the tool and lives until the tool removes it.
class MU_PLATFORM_EXPORT ToolInputInfo
{
public:
    ToolInputInfo(IInputOwner& inputOwner, std::string inputId, std::size_t place);

    [[nodiscard]] const char* Id() const;
    [[nodiscard]] const char* DisplayName() const;

    /// The place among the tool's inputs; it changes when an input before it is added or removed.
    [[nodiscard]] std::size_t Index() const;

    /// True when something is routed to the input.
    [[nodiscard]] bool IsActive() const;

    /// True when the tool can do without data here. Inputs are required unless told otherwise.
    [[nodiscard]] bool IsOptional() const;

    /// What it takes; empty means anything.
    [[nodiscard]] const std::vector<PipeDataFormat>& AcceptedDataFormats() const;

    ToolInputInfo& SetDisplayName(const char* name);
    ToolInputInfo& SetOptional(bool optional);
    ToolInputInfo& AddAcceptedDataFormat(PipeDataType type, bool isArray);

    /// Called by the host: what is routed here now. An empty `sourceId` takes the route away. The tool hears of every
    /// call, also of one that changes nothing.
    void Route(const InputRoutedInfo& info);

    /// Called by the owner when inputs before it come and go.
    void SetIndex(std::size_t newIndex);

private:
    IInputOwner& owner;
    std::string id;
    std::string displayName;
    std::string sourceId;
    std::vector<PipeDataFormat> acceptedFormats;
    std::size_t index;
    bool optional = false;
};
} // namespace TaPipe
