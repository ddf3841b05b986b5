#pragma once

#include <Host/Job.h>
#include <Host/RunResult.h>
#include <Host/ToolRegistry.h>

#include <TaApi/Object.h>
#include <TaPipe/ITool.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Mu::Host
{
/// Messages for one input of a tool. A null handle, and a null message, stand for "no data".
struct Delivery
{
    std::string input;
    std::vector<Ta::Object<void*>> messages;
};

/// The host of one tool: makes it, restores its parameters and routes, and runs it, in this order:
///
/// 1. the constructor makes the tool and binds it, in the stage of life that restores;
/// 2. `Restore`, `ConfigureOutput`, `Route`, in this order, each as often as need be;
/// 3. `Start`, then one `Execute` for each scan, then `Stop`.
///
/// A job that gives no region values has the tool's regions take their defaults from the first data. Its routes are
/// told in that stage of life, so that the regions stay where they are placed and follow the anchors from there on;
/// else they are restored, and the region values are relative to the anchors. `Route` after a run is a change by the
/// user, and the regions stay where they are.
/// What a tool throws comes out as an Error that names the place of the tool in its job.
class ToolRunner final : public TaPipe::IToolHost, public TaPipe::IOutputReceiver
{
public:
    /// @param alloc  the tool's allocator, which outlives the runner; null means the default one
    ToolRunner(const ToolType& type, std::string toolId, JobPlace toolPlace, void* alloc = nullptr);
    ToolRunner(const ToolRunner&) = delete;
    ToolRunner& operator=(const ToolRunner&) = delete;

    /// Stops the tool if it was started and not stopped.
    ~ToolRunner();

    [[nodiscard]] const std::string& Id() const
    {
        return id;
    }

    [[nodiscard]] TaPipe::ITool& Tool() const
    {
        return *tool;
    }

    /// Delivers parameter values. Keys that come into being with other values are delivered once they are there.
    /// @throws Error  for a key that never comes, a wrong type, or a value that a parameter does not take
    void Restore(const nlohmann::json& parameters, ReadOnlySetting readOnlyValues = ReadOnlySetting::Restored);

    /// Enables or disables an output and sets its limits.
    /// @throws Error  if there is no such output, or limits are given for one that is no measurement
    void ConfigureOutput(const OutputSetup& setup);

    /// Tells an input what it comes from: "scan" or "tool/output". @throws Error if there is no such input
    void Route(const std::string& input, const std::string& source, const JobPlace& routePlace);

    /// The input of that name. @throws Error at `askedAt` if there is none
    [[nodiscard]] TaPipe::ToolInputInfo& Input(const std::string& name, const JobPlace& askedAt) const;

    /// The output of that name. @throws Error at `askedAt` if there is none
    [[nodiscard]] TaPipe::ToolOutputInfo& Output(const std::string& name, const JobPlace& askedAt) const;

    void Start();

    /// One execution; returns what its enabled outputs gave, in their order.
    [[nodiscard]] std::vector<Result> Execute(const std::vector<Delivery>& deliveries);

    /// The messages that an output sent in the last execution. One without data: a null handle.
    [[nodiscard]] std::vector<Ta::Object<void*>> SentOn(const std::string& output) const;

    void Stop();

    /// Whether the tool still waits for data by which its regions are placed.
    [[nodiscard]] bool TakesDefaults() const
    {
        return takesDefaults;
    }

    /// Whether the last execution sent null messages and nothing else but graphics: it failed, or there was nothing to
    /// find. A tool draws where it looked even then.
    [[nodiscard]] bool GaveOnlyNulls() const;

    TaPipe::IOutputReceiver& OutputReceiver() override;
    void OnMessage(TaPipe::ITool& sender, const TaPipe::ToolOutputInfo& output, const Ta::Object<void*>& message,
                   int sendKind) override;
    void OnArray(TaPipe::ITool& sender, const TaPipe::ToolOutputInfo& output,
                 const std::vector<Ta::Object<void*>>& messages) override;

private:
    /// Calls into the tool. @throws Error "the tool failed <doing>: <what it threw>"
    template <typename Call>
    decltype(auto) Guarded(std::string_view doing, Call&& call) const;

    void EnterStage(TaPipe::ToolLifeCycle stage);
    void BeginAnew();
    [[nodiscard]] bool ArePlaced(const std::vector<Delivery>& deliveries) const;
    [[nodiscard]] bool HasRequiredData(const std::vector<Delivery>& deliveries) const;
    [[nodiscard]] std::vector<std::string> DeliverParameters(nlohmann::json parameters, ReadOnlySetting readOnlyValues);
    [[nodiscard]] std::vector<std::string> InputNames() const;
    [[nodiscard]] std::vector<std::string> OutputNames() const;
    void AppendResults(const TaPipe::ToolOutputInfo& output, std::vector<Result>& results) const;

    std::string typeName;
    std::string id;
    JobPlace place;
    std::map<std::string, std::vector<Ta::Object<void*>>> sent;
    ToolPointer tool;                                 ///< ends before what it calls back
    std::map<std::string, std::string> anchorSources; ///< by the input
    bool takesDefaults = true;
    bool beginsAnew = false; ///< the run has had no data yet by which regions are placed
    bool started = false;
};
} // namespace Mu::Host
