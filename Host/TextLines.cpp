#include <Host/TextLines.h>

#include <Host/Error.h>
#include <Host/ScanFile.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace Mu::Host
{
namespace
{
constexpr std::size_t blockSize = std::size_t{256} << 10;
constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
} // namespace

TextLines::TextLines(const std::filesystem::path& file)
    : path(file)
{
    RequireReadableFile(file);
    stream.open(file, std::ios::binary);
    buffer.resize(blockSize);
}

std::optional<std::string_view> TextLines::Next()
{
    std::size_t searched = 0;
    for (;;)
    {
        const void* const lineEnd = std::memchr(buffer.data() + begin + searched, '\n', end - begin - searched);
        if (lineEnd != nullptr)
        {
            return Take(static_cast<std::size_t>(static_cast<const char*>(lineEnd) - (buffer.data() + begin)), 1);
        }
        searched = end - begin;
        if (!ReadMore())
        {
            break;
        }
    }
    return begin == end ? std::nullopt : std::optional(Take(end - begin, 0));
}

std::string_view TextLines::Take(std::size_t size, std::size_t endSize)
{
    std::string_view line(buffer.data() + begin, size);
    begin += size + endSize;
    if (++number == 1 && line.starts_with(byteOrderMark))
    {
        line.remove_prefix(byteOrderMark.size());
    }
    if (line.ends_with('\r'))
    {
        line.remove_suffix(1);
    }
    return line;
}

/// Reads on behind what is not taken yet, which moves to the front of the buffer.
bool TextLines::ReadMore()
{
    std::copy(buffer.data() + begin, buffer.data() + end, buffer.data());
    end -= begin;
    begin = 0;
    if (end > longestLine)
    {
        throw Error(path, fmt::format("line {}", number + 1), fmt::format("it is longer than {} bytes", longestLine),
                    "Check that this is a text with a line for each point or each row of the scan");
    }
    if (end == buffer.size())
    {
        buffer.resize(2 * buffer.size());
    }
    stream.read(buffer.data() + end, static_cast<std::streamsize>(buffer.size() - end));
    if (stream.bad())
    {
        throw Error(path, "", "the file cannot be read", "Check the disk it is on");
    }
    const auto count = static_cast<std::size_t>(stream.gcount());
    end += count;
    return count > 0;
}
} // namespace Mu::Host
