#pragma once

#include <Host/Job.h>
#include <Host/RunResult.h>
#include <Host/ScanMessage.h>
#include <Host/ToolRegistry.h>
#include <Host/ToolRunner.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Mu::Host
{
/// Whether the routes to anchor inputs are made when a line is set up, or later, by `RouteAnchors`.
enum class AnchorRoutes
{
    Made,
    Later
};

/// The tools of a job, restored and routed, in an order in which tools come after those that feed them. Used in this
/// order: the constructor, `Start`, one `Execute` for each scan, `Stop`; all but the first may repeat.
///
/// A scan goes to the input that the tool's setup names, else to the first one that takes scans of any kind and has no
/// route.
/// The scan is the first item of a tool's input set, other data come next and measurements last.
class JobLine
{
public:
    /// @param job  outlives the line
    /// @throws Error  whatever is wrong with the job's tools and routes; routes that are made later are checked, too
    JobLine(const Job& job, const ToolRegistry& registry, AnchorRoutes anchorRoutes = AnchorRoutes::Made);
    JobLine(const JobLine&) = delete;
    JobLine& operator=(const JobLine&) = delete;
    ~JobLine();

    void Start();

    /// The results of all tools, in the order of the job. An output that sent nothing, or is disabled, gives "no data"
    /// to the inputs routed to it. @throws Error  if a tool does not take scans of that kind
    [[nodiscard]] std::vector<Result> Execute(const ScanData& scan);

    /// The messages that the tools sent in the last execution on outputs of graphics, in the order of the job, of their
    /// outputs and of sending. No null messages.
    [[nodiscard]] std::vector<Ta::Object<void*>> Renderings() const;

    void Stop();

    /// Makes the routes to anchor inputs that were put off. Between two runs, this is a change by the user.
    void RouteAnchors();

    /// The tool at that place in the job, and the tool of that id, which the job has.
    [[nodiscard]] const ToolRunner& RunnerAt(std::size_t index) const;
    [[nodiscard]] const ToolRunner& RunnerOf(const std::string& tool) const;

private:
    struct Station;

    void Connect(const RouteSetup& route, AnchorRoutes anchorRoutes);
    [[nodiscard]] Station& Find(const std::string& tool) const;

    std::vector<std::unique_ptr<Station>> stations;
    std::vector<Station*> order;
};

/// The type of a tool. @throws Error at `askedAt`, with the types at hand, if there is none of that name
[[nodiscard]] const ToolType& FindType(const ToolRegistry& registry, const std::string& name, const JobPlace& askedAt);
} // namespace Mu::Host
