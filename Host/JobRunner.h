#pragma once

#include <Host/Job.h>
#include <Host/RunResult.h>
#include <Host/ScanMessage.h>
#include <Host/ToolRegistry.h>

#include <cstddef>
#include <functional>

namespace Mu::Host
{
class JobLine;

/// A scan that all tools of a job are done with, as long as the call lasts that is told of it.
struct ExecutedScan
{
    const Ta::Object<void*>& message;
    const JobLine& line;
    const ScanResult& result;
};

using ScanObserver = std::function<void(const ExecutedScan&)>;

/// Runs a job: hands its tools, set up as a `JobLine`, each scan in turn, and collects what they give. Scans are read
/// one at a time.
/// @param observe  is called after each scan; what it throws ends the run
/// @throws Error  whatever is wrong with the job, its tools or its scans; tools, and whether there are the scans, are
///                checked before the first scan is read; nothing is returned then
[[nodiscard]] RunResult RunJob(const Job& job, const ToolRegistry& registry, const ScanObserver& observe = {});

/// Checks that the file of a scan is there and can be opened. @throws Error that names its place in the job
void RequireScan(const ScanSetup& setup);

/// Reads a scan of a job as a message for its tools; `result` gets what there is to say of the scan.
/// @param sequence  the number in the message's stamp
/// @throws Error  if the scan cannot be read, or handed to tools
[[nodiscard]] ScanData ReadScanData(const ScanSetup& setup, std::size_t sequence, ScanResult& result);
} // namespace Mu::Host
