#include <Host/TextTable.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>

namespace Mu::Host
{
namespace
{
constexpr std::size_t columnGap = 2;
constexpr std::size_t leastWidth = 8;
constexpr const char* replacement = "\xEF\xBF\xBD";
constexpr const char* ellipsis = "\xE2\x80\xA6";

struct Character
{
    char32_t code;
    std::size_t size; ///< in bytes; 0 if the bytes are no UTF-8
};

struct Lead
{
    unsigned char mask;
    unsigned char mark;
    std::size_t size;
    char32_t least; ///< smaller codes are written in fewer bytes
};

constexpr std::array leads{Lead{0x80, 0x00, 1, 0}, Lead{0xE0, 0xC0, 2, 0x80}, Lead{0xF0, 0xE0, 3, 0x800},
                           Lead{0xF8, 0xF0, 4, 0x10000}};

Character Decode(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    const auto* const lead = std::ranges::find_if(
        leads, [first](const Lead& candidate) { return (first & candidate.mask) == candidate.mark; });
    if (lead == leads.end() || lead->size > text.size())
    {
        return {0, 0};
    }
    auto code = static_cast<char32_t>(first & static_cast<unsigned char>(~lead->mask));
    for (std::size_t i = 1; i < lead->size; ++i)
    {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80U)
        {
            return {0, 0};
        }
        code = (code << 6U) | (next & 0x3FU);
    }
    const bool isCharacter = code >= lead->least && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    return {code, isCharacter ? lead->size : 0};
}

struct Range
{
    char32_t first;
    char32_t last;
};

bool IsIn(const auto& ranges, char32_t code)
{
    return std::ranges::any_of(ranges,
                               [code](const Range& range) { return code >= range.first && code <= range.last; });
}

constexpr std::array controls{Range{0x00, 0x1F},     Range{0x7F, 0x9F},     Range{0x200B, 0x200F},
                              Range{0x2028, 0x202E}, Range{0x2066, 0x2069}, Range{0xFEFF, 0xFEFF}};
constexpr std::array combining{Range{0x300, 0x36F}, Range{0x1AB0, 0x1AFF}, Range{0x20D0, 0x20FF},
                               Range{0xFE00, 0xFE0F}};
constexpr std::array wide{Range{0x1100, 0x115F},  Range{0x2E80, 0xA4CF},   Range{0xAC00, 0xD7A3},
                          Range{0xF900, 0xFAFF},  Range{0xFE30, 0xFE6F},   Range{0xFF00, 0xFF60},
                          Range{0xFFE0, 0xFFE6},  Range{0x1F300, 0x1F64F}, Range{0x1F900, 0x1F9FF},
                          Range{0x20000, 0x3FFFD}};

std::size_t WidthOf(char32_t code)
{
    return IsIn(combining, code) ? 0 : IsIn(wide, code) ? 2 : 1;
}

std::string Padded(const std::string& text, std::size_t width, Align align)
{
    const std::string blanks(width - std::min(width, DisplayWidth(text)), ' ');
    return align == Align::Left ? text + blanks : blanks + text;
}

using Rows = std::vector<std::vector<std::string>>;

void DropEmptyColumns(std::vector<Column>& columns, Rows& rows)
{
    for (std::size_t i = columns.size(); i-- > 0;)
    {
        if (std::ranges::all_of(rows, [i](const auto& row) { return row[i].empty(); }))
        {
            const auto place = static_cast<std::ptrdiff_t>(i);
            columns.erase(columns.begin() + place);
            std::ranges::for_each(rows, [place](auto& row) { row.erase(row.begin() + place); });
        }
    }
}

std::vector<std::size_t> ColumnWidths(const std::vector<Column>& columns, const Rows& rows)
{
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < columns.size(); ++i)
    {
        std::size_t widest = DisplayWidth(columns[i].title);
        for (const auto& row : rows)
        {
            widest = std::max(widest, DisplayWidth(row[i]));
        }
        widths.push_back(widest);
    }
    return widths;
}

void ShrinkTo(std::size_t width, const std::vector<Column>& columns, std::vector<std::size_t>& widths)
{
    std::size_t total = std::accumulate(widths.begin(), widths.end(), (columns.size() - 1) * columnGap);
    while (total > width)
    {
        std::size_t* widest = nullptr;
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            const bool gives = columns[i].fit == Fit::Shortened && widths[i] > leastWidth;
            if (gives && (widest == nullptr || widths[i] > *widest))
            {
                widest = &widths[i];
            }
        }
        if (widest == nullptr)
        {
            return;
        }
        --*widest;
        --total;
    }
}
} // namespace

std::string TerminalText(std::string_view text)
{
    std::string result;
    while (!text.empty())
    {
        const Character character = Decode(text);
        if (character.size == 0)
        {
            result += replacement;
        }
        else if (IsIn(controls, character.code))
        {
            result += '?';
        }
        else
        {
            result += text.substr(0, character.size);
        }
        text.remove_prefix(std::max<std::size_t>(1, character.size));
    }
    return result;
}

std::size_t DisplayWidth(std::string_view text)
{
    std::size_t width = 0;
    while (!text.empty())
    {
        const Character character = Decode(text);
        width += character.size == 0 ? 1 : WidthOf(character.code);
        text.remove_prefix(std::max<std::size_t>(1, character.size));
    }
    return width;
}

std::string Shortened(const std::string& text, std::size_t width)
{
    if (DisplayWidth(text) <= width || width == 0)
    {
        return width == 0 ? std::string() : text;
    }
    std::size_t used = 0;
    std::size_t bytes = 0;
    for (std::string_view rest = text; !rest.empty();)
    {
        const Character character = Decode(rest);
        const std::size_t next = character.size == 0 ? 1 : WidthOf(character.code);
        if (used + next > width - 1)
        {
            break;
        }
        used += next;
        bytes += std::max<std::size_t>(1, character.size);
        rest = std::string_view(text).substr(bytes);
    }
    return text.substr(0, bytes) + ellipsis;
}

std::string LayOut(std::vector<Column> columns, Rows rows, std::size_t width)
{
    DropEmptyColumns(columns, rows);
    if (columns.empty())
    {
        return {};
    }
    std::vector<std::size_t> widths = ColumnWidths(columns, rows);
    ShrinkTo(width, columns, widths);
    if (!std::ranges::all_of(columns, &std::string::empty, &Column::title))
    {
        std::vector<std::string> titles;
        std::ranges::transform(columns, std::back_inserter(titles), &Column::title);
        rows.insert(rows.begin(), std::move(titles));
    }
    std::string text;
    for (const auto& row : rows)
    {
        std::string line;
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            line.append(i == 0 ? 0 : columnGap, ' ');
            line += Padded(Shortened(row[i], widths[i]), widths[i], columns[i].align);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}
} // namespace Mu::Host
