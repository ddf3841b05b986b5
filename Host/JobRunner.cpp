#include <Host/JobRunner.h>

#include <Host/Error.h>
#include <Host/FailureText.h>
#include <Host/JobLine.h>
#include <Host/ScanFile.h>
#include <Host/ScanMessage.h>
#include <Host/ScanReader.h>

#include <fmt/format.h>

namespace Mu::Host
{
void RequireScan(const ScanSetup& setup)
{
    try
    {
        RequireReadableFile(setup.file);
    }
    catch (const Error& failure)
    {
        throw Error(fmt::format("{}: {}: {}", setup.place.file.string(), setup.place.where, failure.what()));
    }
}

Ta::Object<void*> ReadAsMessage(const ScanSetup& setup, std::size_t sequence, ScanResult& result)
{
    const std::string optionsPlace = setup.place.file.string() + ": " + setup.place.where + ".options";
    const HeightMap map = ReadScan(setup.file, setup.options, optionsPlace);
    result.name = setup.file.filename().string();
    result.file = setup.file.string();
    result.width = map.width;
    result.length = map.length;
    result.validCount = map.validCount;
    result.notes = map.notes;
    try
    {
        return MakeSurfaceMessage(map, sequence, nullptr);
    }
    catch (const Ta::Exception&)
    {
        throw Error(setup.file, "", fmt::format("the scan cannot be handed to tools: {}", CurrentFailureText()),
                    "Close other programs, or export a smaller part of the scan");
    }
}

RunResult RunJob(const Job& job, const ToolRegistry& registry)
{
    JobLine line(job, registry);
    for (const ScanSetup& scan : job.scans)
    {
        RequireScan(scan);
    }
    line.Start();
    RunResult run;
    for (std::size_t i = 0; i < job.scans.size(); ++i)
    {
        ScanResult& result = run.scans.emplace_back();
        result.results = line.Execute(ReadAsMessage(job.scans[i], i, result));
    }
    line.Stop();
    return run;
}
} // namespace Mu::Host
