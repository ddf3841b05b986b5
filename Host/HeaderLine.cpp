#include <Host/HeaderLine.h>

#include <Host/Error.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace Mu::Host
{
namespace
{
constexpr std::string_view blanks = " \t\r";

std::vector<std::string> WordsOf(std::string_view line)
{
    std::vector<std::string> words;
    for (std::size_t start = line.find_first_not_of(blanks); start != line.npos;)
    {
        const std::size_t end = std::min(line.find_first_of(blanks, start), line.size());
        words.emplace_back(line.substr(start, end - start));
        start = line.find_first_not_of(blanks, end);
    }
    return words;
}
} // namespace

HeaderLine::HeaderLine(BlockReader& reader, std::string_view format)
    : file(reader.File())
{
    const auto line = reader.Line(largestHeader);
    number = reader.LineNumber();
    if (!line)
    {
        throw Error(file, fmt::format("line {}", number + 1), fmt::format("the {} header has no end", format),
                    "The file is truncated or damaged: copy or export it again");
    }
    if (reader.Position() > largestHeader)
    {
        Refuse(fmt::format("the {} header goes on beyond {} bytes", format, largestHeader),
               "Check that the file is not damaged");
    }
    words = WordsOf(*line);
}

std::uint64_t HeaderLine::Count(std::size_t index) const
{
    constexpr std::string_view remedy = "Correct the header, or export the file again";
    if (index >= words.size())
    {
        Refuse(fmt::format("{} lacks a number", Quoted(Key())), remedy);
    }
    const std::string& word = words[index];
    std::uint64_t count = 0;
    const auto [stop, failure] = std::from_chars(word.data(), word.data() + word.size(), count);
    if (failure != std::errc() || stop != word.data() + word.size())
    {
        RefuseWord(index, "Write a whole number that is not negative, or export the file again");
    }
    return count;
}

void HeaderLine::RequireWords(std::size_t count) const
{
    if (words.size() != count)
    {
        Refuse(fmt::format("{} has {} values in place of {}", Quoted(Key()), words.size() - 1, count - 1),
               "Correct the header, or export the file again");
    }
}

void HeaderLine::Refuse(std::string_view problem, std::string_view remedy) const
{
    throw Error(file, fmt::format("line {}", number), problem, remedy);
}

void HeaderLine::RefuseWord(std::size_t index, std::string_view remedy) const
{
    Refuse(fmt::format("{}: {} is not a usable value", Quoted(Key()), Quoted(words[index])), remedy);
}
} // namespace Mu::Host
