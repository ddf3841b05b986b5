#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace Mu::Host
{
/// The lines of a text file of any size, one at a time: memory holds a block of the file, or its longest line.
class TextLines
{
public:
    /// A line may have 64 MiB: more than any row of a scan, and still a bound for a file without line ends.
    static constexpr std::size_t longestLine = std::size_t{64} << 20;

    /// @throws Error  if the file cannot be opened
    explicit TextLines(const std::filesystem::path& file);

    /// The next line without its end ("\n" or "\r\n"), and the first without a UTF-8 byte order mark; nothing at the
    /// end. The text is valid until the next call.
    /// @throws Error  if the line is longer than `longestLine`, or the file cannot be read
    [[nodiscard]] std::optional<std::string_view> Next();

    /// The number of the line that was read last, from 1.
    [[nodiscard]] std::uint64_t Number() const
    {
        return number;
    }

private:
    bool ReadMore();
    [[nodiscard]] std::string_view Take(std::size_t size, std::size_t endSize);

    std::filesystem::path path;
    std::ifstream stream;
    std::string buffer;
    std::size_t begin = 0; ///< of what is not taken yet
    std::size_t end = 0;   ///< of what was read
    std::uint64_t number = 0;
};
} // namespace Mu::Host
