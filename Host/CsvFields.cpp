#include <Host/CsvFields.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace Mu::Host
{
namespace
{
/// No number of a real file is longer; without an exponent, shorter ones are in the range of doubles.
constexpr std::size_t longestNumber = 256;

/// @param text  without a decimal comma
CsvValue ReadNumber(std::string_view text)
{
    // A plus sign is common and not known to from_chars; two signs are not.
    const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    const char* const begin = text.data() + (plus ? 1 : 0);
    const char* const end = text.data() + text.size();
    CsvValue value{CsvKind::Number, 0};
    const auto [last, failure] = std::from_chars(begin, end, value.number);
    if (last != end || failure == std::errc::invalid_argument)
    {
        return {CsvKind::Text, 0};
    }
    if (failure == std::errc::result_out_of_range)
    {
        const std::size_t exponent = text.find_first_of("eE");
        const bool small = exponent != text.npos && text.substr(exponent + 1).starts_with('-');
        return {small ? CsvKind::Number : CsvKind::TooLarge, 0};
    }
    return value;
}

/// Something of digits and signs only that has what separates numbers inside.
CsvKind KindOfNoNumber(std::string_view field)
{
    const bool separates = field.find_first_of(",; \t") != field.npos;
    const bool digitsOnly = field.find_first_not_of("0123456789+-.,;eE \t\"") == field.npos;
    return separates && digitsOnly ? CsvKind::Mixed : CsvKind::Text;
}

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Reads a number with one comma, which a digit follows, as its decimal mark.
CsvValue ReadWithComma(std::string_view field, std::size_t comma)
{
    if (field.size() > longestNumber || comma + 1 == field.size() || !IsDigit(field[comma + 1]))
    {
        return {KindOfNoNumber(field), 0};
    }
    std::array<char, longestNumber> withPoint;
    std::ranges::copy(field, withPoint.begin());
    withPoint[comma] = '.';
    const CsvValue value = ReadNumber({withPoint.data(), field.size()});
    return value.kind == CsvKind::Text ? CsvValue{KindOfNoNumber(field), 0} : value;
}
} // namespace

CsvValue ReadCsvField(std::string_view field, DecimalMark& mark)
{
    if (field.empty())
    {
        return {CsvKind::Empty, 0};
    }
    if (field.size() > longestNumber)
    {
        return {KindOfNoNumber(field), 0};
    }
    CsvValue value = ReadNumber(field);
    DecimalMark found = DecimalMark::Unknown;
    if (value.kind == CsvKind::Text)
    {
        const std::size_t comma = field.find(',');
        if (comma == field.npos || field.find('.') != field.npos)
        {
            return {KindOfNoNumber(field), 0};
        }
        value = ReadWithComma(field, comma);
        found = DecimalMark::Comma;
    }
    else if (mark != DecimalMark::Point && field.find('.') != field.npos)
    {
        found = DecimalMark::Point;
    }
    if (found != DecimalMark::Unknown && (value.kind == CsvKind::Number || value.kind == CsvKind::TooLarge))
    {
        if (mark != DecimalMark::Unknown && mark != found)
        {
            return {CsvKind::Mixed, 0};
        }
        mark = found;
    }
    return value;
}

bool IsIdleLine(std::string_view line)
{
    const std::size_t first = line.find_first_not_of(" \t");
    return first == line.npos || line[first] == '#';
}
} // namespace Mu::Host
