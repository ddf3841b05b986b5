#include <Host/Names.h>

#include <Host/Error.h>

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <numeric>

namespace Mu::Host
{
namespace
{
constexpr std::size_t longestCompared = 64;
constexpr std::size_t longestList = 20;

char Lower(char letter)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

/// Letters to change, insert or remove to come from one name to the other, whatever their case.
std::size_t EditDistance(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i)
    {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < to.size(); ++j)
        {
            const std::size_t changed = diagonal + (Lower(from[i]) == Lower(to[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

/// The nearest name if it is near enough to have been meant, else null.
const std::string* Meant(std::string_view unknown, const std::vector<std::string>& known)
{
    const std::string* nearest = nullptr;
    // Half the letters may be wrong, but never all of them.
    std::size_t least = std::min(unknown.size(), std::max<std::size_t>(1, unknown.size() / 2) + 1);
    for (const std::string& name : known)
    {
        if (unknown.size() > longestCompared || name.size() > longestCompared)
        {
            continue;
        }
        if (const std::size_t distance = EditDistance(unknown, name); distance < least)
        {
            least = distance;
            nearest = &name;
        }
    }
    return nearest;
}
} // namespace

std::string KnownNames(std::string_view unknown, const std::vector<std::string>& known)
{
    if (known.empty())
    {
        return "Take it out: there are none here";
    }
    std::string text;
    if (const std::string* meant = Meant(unknown, known))
    {
        text = fmt::format("Did you mean {}? ", Quoted(*meant));
    }
    text += "Known here: ";
    for (std::size_t i = 0; i < std::min(known.size(), longestList); ++i)
    {
        text.append(i == 0 ? "" : ", ").append(Printable(known[i]));
    }
    return known.size() > longestList ? text + fmt::format(", ... ({} in all)", known.size()) : text;
}
} // namespace Mu::Host
