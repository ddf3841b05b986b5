#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Mu::Host
{
/// Text from anywhere made fit for a terminal: control characters become '?', bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string TerminalText(std::string_view text);

/// The columns of a terminal that a text takes: two for a wide character, none for a combining one.
[[nodiscard]] std::size_t DisplayWidth(std::string_view text);

/// The text, cut to at most `width` columns; what is missing at its end is shown by an ellipsis.
[[nodiscard]] std::string Shortened(const std::string& text, std::size_t width);

enum class Align
{
    Left,
    Right
};

enum class Fit
{
    Fixed,    ///< always shown whole
    Shortened ///< gives way if the table gets too wide
};

struct Column
{
    std::string title;
    Align align = Align::Left;
    Fit fit = Fit::Fixed;
};

/// Lays rows out under their titles, if any has one, two blanks between columns. A column that is empty in every row is
/// left out. Columns that may be shortened give way, the widest first, until the table fits into `width`, or each of
/// them is at its least width of 8; so a table is wider only if what is always shown is.
[[nodiscard]] std::string LayOut(std::vector<Column> columns, std::vector<std::vector<std::string>> rows,
                                 std::size_t width);
} // namespace Mu::Host
