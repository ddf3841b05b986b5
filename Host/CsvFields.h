#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Mu::Host
{
/// The fields of a line of text, without blanks and double quotes around them.
///
/// Fields stand between separators, so that there is one more of them, and they may be empty; if the separator is a
/// blank, any run of blanks and tabs is one separator, and those at the ends of the line are none.
class CsvFields
{
public:
    /// The separator for runs of blanks.
    static constexpr char blanks = ' ';

    CsvFields(std::string_view text, char separatorToUse)
        : rest(separatorToUse == blanks ? WithoutBlanks(text) : text)
        , separator(separatorToUse)
        , atEnd(separatorToUse == blanks && rest.empty())
    {
    }

    /// Gives the next field; false behind the last one.
    bool Next(std::string_view& field)
    {
        if (atEnd)
        {
            return false;
        }
        std::size_t size = 0;
        while (size < rest.size() && !Separates(rest[size]))
        {
            ++size;
        }
        field = WithoutQuotes(WithoutBlanks(rest.substr(0, size)));
        atEnd = size == rest.size();
        rest.remove_prefix(atEnd ? size : size + 1);
        if (separator == blanks)
        {
            rest = WithoutBlanks(rest);
        }
        return true;
    }

private:
    static bool IsBlank(char character)
    {
        return character == ' ' || character == '\t';
    }

    static std::string_view WithoutBlanks(std::string_view text)
    {
        while (!text.empty() && IsBlank(text.front()))
        {
            text.remove_prefix(1);
        }
        while (!text.empty() && IsBlank(text.back()))
        {
            text.remove_suffix(1);
        }
        return text;
    }

    static std::string_view WithoutQuotes(std::string_view text)
    {
        const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
        return quoted ? WithoutBlanks(text.substr(1, text.size() - 2)) : text;
    }

    bool Separates(char character) const
    {
        return separator == blanks ? IsBlank(character) : character == separator;
    }

    std::string_view rest;
    char separator;
    bool atEnd;
};

/// What the numbers of a text have between their whole part and the rest.
enum class DecimalMark : std::uint8_t
{
    Unknown, ///< whole numbers only so far
    Point,
    Comma
};

/// What a field is.
enum class CsvKind : std::uint8_t
{
    Number,   ///< also one that is not finite: "nan", "inf"
    Empty,    ///< nothing was measured
    Text,     ///< something else
    Mixed,    ///< several numbers, or one with a mark that it cannot have: the wrong separator, or damage
    TooLarge, ///< a number beyond the range of doubles
};

struct CsvValue
{
    CsvKind kind = CsvKind::Empty;
    double number = 0; ///< of kind Number; a number too small for doubles is 0
};

/// Reads a field, whatever the locale of the process.
/// @param mark  in/out: once a number has shown it, numbers with the other one are mixed
[[nodiscard]] CsvValue ReadCsvField(std::string_view field, DecimalMark& mark);

/// Whether a line says nothing: it is empty, has blanks only, or is a comment, which begins with "#".
[[nodiscard]] bool IsIdleLine(std::string_view line);
} // namespace Mu::Host
