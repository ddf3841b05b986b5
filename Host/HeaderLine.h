#pragma once

#include <Host/BlockReader.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Mu::Host
{
/// A line of a text header, as words that blanks stand between.
class HeaderLine
{
public:
    /// The most bytes of a header.
    static constexpr std::size_t largestHeader = std::size_t{64} << 10U;

    /// The next line of the file.
    /// @param format  for messages, as in "PLY"
    /// @throws Error  if the file ends or the header goes on beyond `largestHeader`
    HeaderLine(BlockReader& reader, std::string_view format);

    [[nodiscard]] const std::vector<std::string>& Words() const
    {
        return words;
    }

    /// The first word, empty if there is none.
    [[nodiscard]] std::string_view Key() const
    {
        return words.empty() ? std::string_view() : std::string_view(words.front());
    }

    /// A word as a whole number not below 0.
    /// @throws Error  if it is none, or there is no such word
    [[nodiscard]] std::uint64_t Count(std::size_t index) const;

    /// @throws Error  if there are not exactly so many words
    void RequireWords(std::size_t count) const;

    /// @throws Error  that names file, line, problem and remedy
    [[noreturn]] void Refuse(std::string_view problem, std::string_view remedy) const;

    /// The same for a word that is of no use.
    [[noreturn]] void RefuseWord(std::size_t index, std::string_view remedy) const;

private:
    std::filesystem::path file;
    std::uint64_t number = 0;
    std::vector<std::string> words;
};
} // namespace Mu::Host
