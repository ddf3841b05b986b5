#include <Host/CsvDialect.h>

#include <Host/Error.h>
#include <Host/TextLines.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>

namespace Mu::Host
{
namespace
{
constexpr std::size_t mostLines = 1000;
constexpr std::size_t mostBytes = std::size_t{256} << 10;
constexpr std::array separators{';', '\t', ',', CsvFields::blanks};

struct Line
{
    std::uint64_t number;
    std::string text;
};

bool IsText(std::string_view text)
{
    return std::ranges::none_of(text, [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return (byte < ' ' && byte != '\t' && byte != '\r' && byte != '\f') || byte == 0x7f;
    });
}

/// The first lines that say something; none if the file is no text.
std::vector<Line> FirstLines(const std::filesystem::path& file)
{
    TextLines lines(file);
    std::vector<Line> first;
    std::size_t bytes = 0;
    while (first.size() < mostLines && bytes < mostBytes)
    {
        const auto text = lines.Next();
        if (!text)
        {
            break;
        }
        if (!IsText(*text))
        {
            return {};
        }
        // Idle lines count, too: a file of nothing else has an end somewhere.
        bytes += text->size() + 1;
        if (!IsIdleLine(*text))
        {
            first.push_back({lines.Number(), std::string(*text)});
        }
    }
    return first;
}

/// The kinds of the fields of a line.
struct Pattern
{
    std::string texts; ///< 't' for a text, 'n' for a number or nothing
    std::vector<std::size_t> numbers;
    bool isData = false;
};

Pattern PatternOf(std::string_view line, char separator, DecimalMark& mark)
{
    Pattern pattern;
    CsvFields fields(line, separator);
    std::size_t textCount = 0;
    bool mixed = false;
    for (std::string_view field; fields.Next(field);)
    {
        const CsvKind kind = ReadCsvField(field, mark).kind;
        if (kind == CsvKind::Number || kind == CsvKind::TooLarge)
        {
            pattern.numbers.push_back(pattern.texts.size());
        }
        textCount += kind == CsvKind::Text ? 1 : 0;
        mixed = mixed || kind == CsvKind::Mixed;
        pattern.texts += kind == CsvKind::Text ? 't' : 'n';
    }
    pattern.isData = !mixed && !pattern.numbers.empty() && 2 * textCount <= pattern.texts.size();
    return pattern;
}

/// Lines of one pattern.
struct Tally
{
    std::uint64_t firstLine = 0;
    std::size_t numberCount = 0;
    DecimalMark mark = DecimalMark::Unknown;
    std::vector<std::uint8_t> hasNumber;
};

void Count(Tally& tally, const Line& line, const Pattern& pattern)
{
    if (tally.hasNumber.empty())
    {
        tally.firstLine = line.number;
        tally.hasNumber.resize(pattern.texts.size());
    }
    tally.numberCount += pattern.numbers.size();
    for (const std::size_t column : pattern.numbers)
    {
        tally.hasNumber[column] = 1;
    }
}

/// The pattern in which most numbers stand if this is the separator.
Tally BestTally(const std::vector<Line>& lines, char separator)
{
    std::map<std::string, Tally> tallies;
    for (const Line& line : lines)
    {
        // With commas between fields none can be inside, and a number shows no mark to another line.
        DecimalMark mark = separator == ',' ? DecimalMark::Point : DecimalMark::Unknown;
        const Pattern pattern = PatternOf(line.text, separator, mark);
        if (pattern.isData)
        {
            Tally& tally = tallies[pattern.texts];
            Count(tally, line, pattern);
            tally.mark = tally.mark == DecimalMark::Unknown ? mark : tally.mark;
        }
    }
    Tally best;
    for (auto& [texts, tally] : tallies)
    {
        if (tally.numberCount > best.numberCount)
        {
            best = std::move(tally);
        }
    }
    return best;
}

std::vector<std::string> FieldsOf(std::string_view line, char separator)
{
    std::vector<std::string> texts;
    CsvFields fields(line, separator);
    for (std::string_view field; fields.Next(field);)
    {
        texts.emplace_back(field);
    }
    return texts;
}

/// Whether a field might be meant as a number: it begins like one, also with a typographic minus.
bool BeginsLikeNumber(std::string_view field)
{
    constexpr std::string_view minus = "\xE2\x88\x92";
    return field.starts_with(minus) || std::string_view("0123456789+-.").find(field.front()) != std::string_view::npos;
}

/// Refuses a line before the data that is more likely a damaged line of them than a heading.
void RequireHeading(const std::filesystem::path& file, const Line& line, const std::vector<std::string>& fields)
{
    const auto isNoWord = [](const std::string& field) { return field.empty() || BeginsLikeNumber(field); };
    const bool isAny = std::ranges::any_of(fields, [](const std::string& field) { return !field.empty(); });
    if (isAny && std::ranges::all_of(fields, isNoWord))
    {
        throw Error(file, fmt::format("line {}", line.number),
                    fmt::format("{} stands before the data and looks like them, but not all of it is numbers",
                                Quoted(line.text)),
                    "Correct the line, or leave a sample that was not measured empty; if it is a heading, remove it");
    }
}

void TakeHead(const std::filesystem::path& file, CsvDialect& dialect, std::vector<Line> lines)
{
    for (Line& line : lines)
    {
        if (line.number >= dialect.firstLine)
        {
            return;
        }
        auto fields = FieldsOf(line.text, dialect.separator);
        if (fields.size() == dialect.fieldCount)
        {
            RequireHeading(file, line, fields);
            dialect.headFields = std::move(fields);
        }
        dialect.headLines.push_back(std::move(line.text));
    }
}
} // namespace

std::optional<CsvDialect> FindCsvDialect(const std::filesystem::path& file)
{
    std::vector<Line> lines = FirstLines(file);
    CsvDialect dialect;
    Tally best;
    for (const char separator : separators)
    {
        Tally tally = BestTally(lines, separator);
        if (tally.numberCount > best.numberCount)
        {
            best = std::move(tally);
            dialect.separator = separator;
        }
    }
    if (best.numberCount == 0)
    {
        return std::nullopt;
    }
    dialect.mark = best.mark;
    dialect.firstLine = best.firstLine;
    dialect.fieldCount = best.hasNumber.size();
    for (std::size_t column = 0; column < best.hasNumber.size(); ++column)
    {
        if (best.hasNumber[column] != 0)
        {
            dialect.numberColumns.push_back(column);
        }
    }
    TakeHead(file, dialect, std::move(lines));
    return dialect;
}
} // namespace Mu::Host
