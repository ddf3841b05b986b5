#include <Host/BlockReader.h>

#include <Host/Error.h>
#include <Host/ScanFile.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <system_error>

namespace Mu::Host
{
namespace
{
constexpr std::size_t blockSize = std::size_t{1} << 18;
}

BlockReader::BlockReader(const std::filesystem::path& path)
    : file(path)
{
    RequireReadableFile(file);
    stream.open(file, std::ios::binary);
    std::error_code failure;
    size = std::filesystem::file_size(file, failure);
    if (failure || !stream)
    {
        throw Error(file, "", "the file cannot be opened", "Check its access rights");
    }
}

std::optional<std::string_view> BlockReader::Line(std::size_t longest)
{
    const auto end = FindLineEnd(longest);
    if (!end && Held() == 0)
    {
        return std::nullopt;
    }
    ++lineNumber;
    std::string_view line = Take(end ? *end + 1 : Held());
    line.remove_suffix(end ? 1 : 0);
    if (lineEnd == '\n' && line.ends_with('\r'))
    {
        line.remove_suffix(1);
    }
    return line;
}

std::string_view BlockReader::Bytes(std::size_t count)
{
    if (count > Held())
    {
        // Asked before memory is: a number in a file may be anything.
        if (count <= Remaining())
        {
            Refill(count);
        }
        if (count > Held())
        {
            throw Error(file, fmt::format("byte {}", position),
                        fmt::format("{} bytes are missing here, the file has {} more", count, Remaining()),
                        "The file is truncated or damaged: copy or export it again");
        }
    }
    return Take(count);
}

std::string_view BlockReader::Peek(std::size_t count)
{
    if (count > Held())
    {
        Refill(count);
    }
    return {block.data() + first, std::min(count, Held())};
}

void BlockReader::Skip(std::uint64_t count)
{
    for (; count > blockSize; count -= blockSize)
    {
        static_cast<void>(Bytes(blockSize));
    }
    static_cast<void>(Bytes(static_cast<std::size_t>(count)));
}

/// The place of the next end of a line among the bytes held; nothing if the file has no further one.
std::optional<std::size_t> BlockReader::FindLineEnd(std::size_t longest)
{
    for (std::size_t searched = 0;;)
    {
        const char* const start = block.data() + first;
        const std::size_t held = Held();
        const void* const end = held == searched ? nullptr : std::memchr(start + searched, lineEnd, held - searched);
        const std::size_t length =
            end == nullptr ? held : static_cast<std::size_t>(static_cast<const char*>(end) - start);
        if (length > longest)
        {
            throw Error(file, fmt::format("line {}", lineNumber + 1),
                        fmt::format("the line has more than {} bytes", longest),
                        "Check that the file is a scan, and that it is not damaged");
        }
        if (end != nullptr)
        {
            return length;
        }
        Refill(held + 1);
        if (Held() == held)
        {
            return std::nullopt;
        }
        searched = held;
    }
}

/// Reads on until so many bytes are held, or the file ends.
void BlockReader::Refill(std::size_t wanted)
{
    std::copy(block.begin() + static_cast<std::ptrdiff_t>(first), block.begin() + static_cast<std::ptrdiff_t>(last),
              block.begin());
    last -= first;
    first = 0;
    if (wanted > block.size())
    {
        const auto whole = static_cast<std::size_t>(std::min<std::uint64_t>(last + Remaining() + 1, blockSize));
        block.resize(std::max({wanted, block.size() + block.size() / 2, whole}));
    }
    stream.read(block.data() + last, static_cast<std::streamsize>(block.size() - last));
    if (stream.bad())
    {
        throw Error(file, fmt::format("byte {}", position), "the file cannot be read", "Check the disk it is on");
    }
    last += static_cast<std::size_t>(stream.gcount());
}

std::string_view BlockReader::Take(std::size_t count)
{
    const std::string_view bytes(block.data() + first, count);
    first += count;
    position += count;
    return bytes;
}
} // namespace Mu::Host
