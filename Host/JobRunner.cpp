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
namespace
{
template <typename Map>
void Describe(const Map& map, ScanResult& result)
{
    result.width = map.width;
    result.length = map.length;
    result.validCount = map.validCount;
    result.notes = map.notes;
}

void Describe(const ProfileScan& scan, ScanResult& result)
{
    result.width = scan.heights.size();
    result.length = 1;
    result.validCount = scan.validCount;
    result.notes = scan.notes;
}

void Describe(const ImageScan& image, ScanResult& result)
{
    result.width = image.width;
    result.length = image.height;
    result.validCount = image.pixels.size();
    result.notes = image.notes;
}
} // namespace

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

ScanData ReadScanData(const ScanSetup& setup, std::size_t sequence, ScanResult& result)
{
    const std::string optionsPlace = setup.place.file.string() + ": " + setup.place.where + ".options";
    const Scan scan = ReadScan(setup.file, setup.options, optionsPlace);
    result.name = setup.file.filename().string();
    result.file = setup.file.string();
    std::visit([&result](const auto& anyKind) { Describe(anyKind, result); }, scan);
    try
    {
        ScanData data = MakeScanData(scan, sequence, nullptr);
        result.dataType = data.type;
        return data;
    }
    catch (const Ta::Exception&)
    {
        throw Error(setup.file, "", fmt::format("the scan cannot be handed to tools: {}", CurrentFailureText()),
                    "Close other programs, or export a smaller part of the scan");
    }
}

RunResult RunJob(const Job& job, const ToolRegistry& registry, const ScanObserver& observe)
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
        const ScanData scan = ReadScanData(job.scans[i], i, result);
        result.results = line.Execute(scan);
        if (observe)
        {
            observe({scan.message, line, result});
        }
    }
    line.Stop();
    return run;
}
} // namespace Mu::Host
