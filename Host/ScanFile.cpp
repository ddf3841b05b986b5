#include <Host/ScanFile.h>

#include <Host/Error.h>

#include <fmt/format.h>

#include <fstream>
#include <system_error>

namespace Mu::Host
{
void RequireReadableFile(const std::filesystem::path& file)
{
    std::error_code failure;
    const auto kind = std::filesystem::status(file, failure).type();
    if (kind == std::filesystem::file_type::not_found)
    {
        throw Error(file, "", "there is no such file", "Check the name and the folder it is looked for in");
    }
    if (kind != std::filesystem::file_type::regular)
    {
        throw Error(file, "", "this is not a file that can be read", "Give the name of a file");
    }
    if (!std::ifstream(file, std::ios::binary))
    {
        throw Error(file, "", "the file cannot be opened", "Check its access rights");
    }
}

std::size_t CheckedSampleCount(const std::filesystem::path& file, const std::string& place, std::uint64_t columns,
                               std::uint64_t rows)
{
    if (columns == 0 || rows == 0)
    {
        throw Error(file, place, fmt::format("a scan of {} x {} samples is empty", columns, rows),
                    "Export a scan with at least one sample");
    }
    // The sides first: their product cannot overflow then.
    if (columns > maxSideLength || rows > maxSideLength || columns * rows > maxSampleCount)
    {
        throw Error(file, place,
                    fmt::format("{} x {} samples are too many (at most {} in all, {} along a side)", columns, rows,
                                maxSampleCount, maxSideLength),
                    "Check that the file is not damaged, or export a smaller part of the scan");
    }
    return static_cast<std::size_t>(columns * rows);
}

std::string ReadSmallTextFile(const std::filesystem::path& file, std::size_t largestSize)
{
    RequireReadableFile(file);
    std::ifstream stream(file, std::ios::binary);
    std::string text(largestSize + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (stream.bad())
    {
        throw Error(file, "", "the file cannot be read", "Check the disk it is on");
    }
    const auto size = static_cast<std::size_t>(stream.gcount());
    if (size > largestSize)
    {
        throw Error(file, "", fmt::format("the file is larger than {} bytes", largestSize),
                    "Check that it is the file it should be");
    }
    text.resize(size);
    return text;
}
} // namespace Mu::Host
