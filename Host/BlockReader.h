#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <vector>

namespace Mu::Host
{
/// Reads a file from its start to its end, as lines and as bytes. It keeps a block of the file in memory, or what is
/// asked for at once if that is more, and never more than the file has.
class BlockReader
{
public:
    /// @throws Error  if the file cannot be opened
    explicit BlockReader(const std::filesystem::path& path);

    [[nodiscard]] const std::filesystem::path& File() const
    {
        return file;
    }

    /// The byte that ends lines, '\n' at first. A '\r' before a '\n' is no part of the line.
    void EndLinesWith(char byte)
    {
        lineEnd = byte;
    }

    /// The next line without its end, which the last line of a file need not have; nothing at the end of the file.
    /// Valid until the next call.
    /// @throws Error  if the line has more than `longest` bytes, or the file cannot be read
    [[nodiscard]] std::optional<std::string_view> Line(std::size_t longest);

    /// Exactly so many bytes. Valid until the next call.
    /// @throws Error  if the file ends before, or cannot be read
    [[nodiscard]] std::string_view Bytes(std::size_t count);

    /// The next bytes, fewer than that at the end of the file, which stay to be read. Valid until the next call.
    /// @throws Error  if the file cannot be read
    [[nodiscard]] std::string_view Peek(std::size_t count);

    /// Passes over so many bytes.
    /// @throws Error  if the file ends before, or cannot be read
    void Skip(std::uint64_t count);

    /// How many bytes were given out or passed over.
    [[nodiscard]] std::uint64_t Position() const
    {
        return position;
    }

    /// How many bytes are left, by the size that the file had when it was opened.
    [[nodiscard]] std::uint64_t Remaining() const
    {
        return size > position ? size - position : 0;
    }

    /// The number of the last line, from 1.
    [[nodiscard]] std::uint64_t LineNumber() const
    {
        return lineNumber;
    }

private:
    [[nodiscard]] std::size_t Held() const
    {
        return last - first;
    }

    [[nodiscard]] std::optional<std::size_t> FindLineEnd(std::size_t longest);
    void Refill(std::size_t wanted);
    std::string_view Take(std::size_t count);

    std::filesystem::path file;
    std::ifstream stream;
    std::vector<char> block;
    std::size_t first = 0;
    std::size_t last = 0;
    std::uint64_t size = 0;
    std::uint64_t position = 0;
    std::uint64_t lineNumber = 0;
    char lineEnd = '\n';
};
} // namespace Mu::Host
