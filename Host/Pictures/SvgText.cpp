#include <Host/Pictures/SvgText.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>

namespace Mu::Host
{
namespace
{
using namespace std::string_view_literals;

/// Where the name of a part stands.
constexpr std::array nameMarks{"id=\""sv, "\"#"sv, "url(#"sv};

std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (const char character : text)
    {
        switch (character)
        {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

std::string Element(const PlacedText& placed)
{
    const char* const turn = placed.turn == TextTurn::Upwards ? " rotate(-90)" : "";
    const double length = placed.turn == TextTurn::Upwards ? placed.extents.height : placed.extents.width;
    return fmt::format("<text transform=\"translate({:.3f},{:.3f}){}\" font-size=\"{:.3f}\" textLength=\"{:.3f}\">{}"
                       "</text>\n",
                       placed.start.x, placed.start.y, turn, placed.size, length, Escaped(placed.text));
}

/// The name at the beginning of `text`: letters and the number behind them.
struct Name
{
    std::string_view letters;
    std::string_view number;
};

Name NameAt(std::string_view text)
{
    const std::size_t letters = std::min(text.find_first_not_of("abcdefghijklmnopqrstuvwxyz"), text.size());
    const std::string_view rest = text.substr(letters);
    const std::size_t digits = std::min(rest.find_first_not_of("0123456789"), rest.size());
    return {text.substr(0, letters), rest.substr(0, digits)};
}

std::string Renumbered(std::string_view svg)
{
    std::map<std::string, std::size_t, std::less<>> numbers;
    std::map<std::string, std::size_t, std::less<>> counts;
    std::string result;
    while (!svg.empty())
    {
        const std::size_t begin = std::min(svg.find_first_of("i\"u"), svg.size());
        result += svg.substr(0, begin);
        svg.remove_prefix(begin);
        const auto* const mark =
            std::ranges::find_if(nameMarks, [svg](auto m) { return svg.substr(0, m.size()) == m; });
        const std::size_t size = mark == nameMarks.end() ? std::min<std::size_t>(1, svg.size()) : mark->size();
        result += svg.substr(0, size);
        svg.remove_prefix(size);
        const Name name = mark == nameMarks.end() ? Name{} : NameAt(svg);
        if (!name.letters.empty() && !name.number.empty())
        {
            const std::string whole(svg.substr(0, name.letters.size() + name.number.size()));
            const auto [entry, isNew] = numbers.try_emplace(whole, 0);
            entry->second = isNew ? counts[std::string(name.letters)]++ : entry->second;
            result += fmt::format("{}{}", name.letters, entry->second);
            svg.remove_prefix(whole.size());
        }
    }
    return result;
}
} // namespace

std::string XmlText(std::string_view text)
{
    std::string result(text);
    for (const std::string_view wrong : {"\xEF\xBF\xBE"sv, "\xEF\xBF\xBF"sv})
    {
        for (std::size_t at = 0; (at = result.find(wrong, at)) != std::string::npos;)
        {
            result.replace(at, wrong.size(), "\xEF\xBF\xBD");
        }
    }
    return result;
}

std::string WithText(std::string_view svg, std::span<const PlacedText> texts)
{
    constexpr auto end = "</svg>"sv;
    const std::size_t last = std::min(svg.rfind(end), svg.size());
    std::string result = Renumbered(svg.substr(0, last));
    result += "<g fill=\"none\" stroke=\"none\" font-family=\"DejaVu Sans\" xml:space=\"preserve\">\n";
    for (const PlacedText& text : texts)
    {
        result += Element(text);
    }
    return result + "</g>\n" + std::string(end) + "\n";
}
} // namespace Mu::Host
