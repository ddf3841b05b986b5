#include <MuVision/AlphanumSort.h>

#include <algorithm>
#include <string_view>

namespace Mu::Vision
{
namespace
{
bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Bytes as numbers from 0 to 255, ASCII capitals as small letters: no locale has a say.
int Rank(char c)
{
    const int byte = static_cast<unsigned char>(c);
    return c >= 'A' && c <= 'Z' ? byte - 'A' + 'a' : byte;
}

// Cuts the run of digits off the front of `text`; gives it without leading zeros, so that length tells size.
std::string_view TakeNumber(std::string_view& text)
{
    const std::size_t end = std::min(text.size(), text.find_first_not_of("0123456789"));
    std::string_view number = text.substr(0, end);
    text.remove_prefix(end);
    number.remove_prefix(std::min(number.size(), number.find_first_not_of('0')));
    return number;
}

// Below, at or above 0 as the first part of `a` stands before, with or after that of `b`; cuts both parts off.
int CompareParts(std::string_view& a, std::string_view& b)
{
    if (!IsDigit(a.front()) || !IsDigit(b.front()))
    {
        const int difference = Rank(a.front()) - Rank(b.front());
        a.remove_prefix(1);
        b.remove_prefix(1);
        return difference;
    }
    const std::string_view x = TakeNumber(a);
    const std::string_view y = TakeNumber(b);
    if (x.size() != y.size())
    {
        return x.size() < y.size() ? -1 : 1;
    }
    return x.compare(y);
}

bool StandsBefore(const std::string& first, const std::string& second)
{
    std::string_view a = first;
    std::string_view b = second;
    while (!a.empty() && !b.empty())
    {
        if (const int order = CompareParts(a, b); order != 0)
        {
            return order < 0;
        }
    }
    return a.empty() && b.empty() ? first < second : a.empty();
}
} // namespace

void SortStringByAlphanum(std::vector<std::string>& names)
{
    std::sort(names.begin(), names.end(), StandsBefore);
}
} // namespace Mu::Vision
