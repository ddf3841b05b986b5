#include <Host/ScanReader.h>

#include <Host/CsvReader.h>
#include <Host/Error.h>
#include <Host/GridOptions.h>
#include <Host/PcdReader.h>
#include <Host/PlyReader.h>
#include <Host/PngReader.h>
#include <Host/ScanFile.h>
#include <Host/TiffReader.h>
#include <Host/X3pReader.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <fstream>
#include <new>
#include <string>

namespace Mu::Host
{
namespace
{
using nlohmann::json;

/// Options and where the job gives them.
struct JobOptions
{
    const json& values;
    std::string_view place;
};

Scan ReadTiffScan(const std::filesystem::path& file, const JobOptions& job)
{
    return ReadTiff(file, ReadGridOptions({file, job.values, job.place}, "TIFF"));
}

Scan ReadX3pScan(const std::filesystem::path& file, const JobOptions& job)
{
    if (!job.values.is_null() && !job.values.empty())
    {
        throw Error(std::string(job.place), "options of " + file.string(), "an X3P file takes no options",
                    "Remove them: the file tells spacing, offset and invalid samples itself");
    }
    return ReadX3p(file);
}

Scan ReadPlyScan(const std::filesystem::path& file, const JobOptions& job)
{
    return ReadPly(file, ReadCloudOptions(file, job.values, job.place, "PLY"));
}

Scan ReadPcdScan(const std::filesystem::path& file, const JobOptions& job)
{
    return ReadPcd(file, ReadCloudOptions(file, job.values, job.place, "PCD"));
}

Scan ReadPngScan(const std::filesystem::path& file, const JobOptions& job)
{
    return ReadPng(file, FindGridOptions({file, job.values, job.place}, "PNG"));
}

Scan ReadCsvScan(const std::filesystem::path& file, const JobOptions& job)
{
    return ReadCsv(file, ReadCsvOptions({file, job.values, job.place}));
}

struct Format
{
    std::string_view start;
    Scan (*read)(const std::filesystem::path&, const JobOptions&);
    bool (*isStart)(std::string_view) = nullptr; ///< decides if the first bytes alone do not
};

using namespace std::string_view_literals;

// TIFF and BigTIFF in both byte orders; zip archives, of which X3P is one, with entries and without.
constexpr std::array formats{Format{"II*\0"sv, &ReadTiffScan},     Format{"MM\0*"sv, &ReadTiffScan},
                             Format{"II+\0"sv, &ReadTiffScan},     Format{"MM\0+"sv, &ReadTiffScan},
                             Format{"PK\x03\x04"sv, &ReadX3pScan}, Format{"PK\x05\x06"sv, &ReadX3pScan},
                             Format{"\x89PNG"sv, &ReadPngScan},    Format{"ply\n"sv, &ReadPlyScan},
                             Format{"ply\r"sv, &ReadPlyScan},      Format{""sv, &ReadPcdScan, &IsPcd}};

std::string FirstBytes(const std::filesystem::path& file)
{
    RequireReadableFile(file);
    std::string start(pcdStart, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(stream.gcount()));
    return start;
}

/// What reads the file: a text has no first bytes of its own, so it comes last.
auto ReaderOf(const std::filesystem::path& file)
{
    const std::string start = FirstBytes(file);
    const auto format = std::ranges::find_if(formats, [&start](const Format& each) {
        return start.starts_with(each.start) && (each.isStart == nullptr || each.isStart(start));
    });
    if (format != formats.end())
    {
        return format->read;
    }
    if (!LooksLikeCsv(file))
    {
        throw Error(file, "first bytes",
                    "the file begins neither as a TIFF, PNG, X3P, PLY or PCD file nor as a text with lines of numbers",
                    "Give a scan in one of these formats, and check that the file is not damaged");
    }
    return &ReadCsvScan;
}
} // namespace

Scan ReadScan(const std::filesystem::path& file, const json& options, std::string_view optionsPlace)
{
    try
    {
        return ReaderOf(file)(file, JobOptions{options, optionsPlace});
    }
    catch (const std::bad_alloc&)
    {
        throw Error(file, "", "there is not enough memory for a scan of this size",
                    "Close other programs, or export a smaller part of the scan");
    }
}

Scan ReadScan(const std::filesystem::path& file)
{
    return ReadScan(file, json(), "");
}
} // namespace Mu::Host
