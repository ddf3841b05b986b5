#pragma once

#include <TaApi/Object.h>
#include <TaApi/Properties.h>
#include <TaPipe/PipeDataType.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace TaPipe
{
class ToolOutputInfo;

/// Whoever owns outputs hears here that the parameters of one changed.
class MU_PLATFORM_EXPORT IOutputOwner
{
public:
    virtual void OnOutputParams(ToolOutputInfo& output) = 0;

protected:
    ~IOutputOwner() = default;
};

/// One output of a tool. It belongs to the tool and lives until the tool removes it.
class MU_PLATFORM_EXPORT ToolOutputInfo
{
public:
    /// `parameters` are the output's own.
    ToolOutputInfo(IOutputOwner& outputOwner, std::string outputId, std::size_t place,
                   std::unique_ptr<Ta::Properties::Structure> parameters);
    ~ToolOutputInfo();
    ToolOutputInfo(const ToolOutputInfo&) = delete;
    ToolOutputInfo& operator=(const ToolOutputInfo&) = delete;

    [[nodiscard]] const char* Id() const;
    [[nodiscard]] const char* DisplayName() const;

    /// The place among the tool's outputs; it changes when an output before it is added or removed.
    [[nodiscard]] std::size_t Index() const;

    /// Outputs start enabled.
    [[nodiscard]] bool IsEnabled() const;
    [[nodiscard]] PipeDataFormat DataFormat() const;

    /// Visibility and order in one number; 0 at the start.
    [[nodiscard]] std::size_t Priority() const;

    /// The output's parameters; for a measurement output they are `OutputMeasurementParams`.
    [[nodiscard]] Ta::Properties::Node& Params() const;

    /// Ids of the outputs that this one goes with; "*" is every output.
    [[nodiscard]] const std::vector<std::string>& AssociatedOutputs() const;

    /// The unit of a measurement as people read it, such as "mm"; empty at the start.
    [[nodiscard]] const char* Units() const;

    ToolOutputInfo& SetDisplayName(const char* name);
    ToolOutputInfo& Enable(bool enable);
    ToolOutputInfo& SetDataFormat(PipeDataType type, bool isArray);
    ToolOutputInfo& SetPriority(std::size_t newPriority);
    ToolOutputInfo& AssociateOutput(const char* outputId);
    ToolOutputInfo& SetUnits(const char* text);

    /// Called by the host once it has written the output's parameters.
    void NotifyParamsChanged();

    /// Called by the owner when outputs before it come and go.
    void SetIndex(std::size_t newIndex);

    /// What has left in the present execution. The tool base keeps it.
    struct Sending
    {
        bool sent = false;
        bool arrayOpen = false;
        std::vector<Ta::Object<void*>> array;
    };
    Sending& State();
    [[nodiscard]] const Sending& State() const;

private:
    IOutputOwner& owner;
    std::string id;
    std::string displayName;
    std::string units;
    std::vector<std::string> associated;
    std::unique_ptr<Ta::Properties::Structure> params;
    std::size_t index;
    std::size_t priority = 0;
    PipeDataFormat format;
    bool enabled = true;
    Sending sending;
};
} // namespace TaPipe
