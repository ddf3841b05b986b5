#pragma once

#include <Host/Job.h>
#include <Host/RunResult.h>
#include <Host/ToolRegistry.h>

namespace Mu::Host
{
/// Runs a job: makes its tools, hands them each scan in turn, in an order in which tools come after those that feed
/// them, and collects what they give. Scans are read one at a time.
///
/// A scan goes to the input that the tool's setup names, else to the first one that takes surfaces and has no route.
/// An output that sent nothing, or is disabled, gives "no data" to the inputs routed to it.
/// @throws Error  whatever is wrong with the job, its tools or its scans, all tools being checked before the first scan
///                is read; nothing is returned then
[[nodiscard]] RunResult RunJob(const Job& job, const ToolRegistry& registry);

/// The type of a tool. @throws Error at `askedAt`, with the types at hand, if there is none of that name
[[nodiscard]] const ToolType& FindType(const ToolRegistry& registry, const std::string& name, const JobPlace& askedAt);
} // namespace Mu::Host
