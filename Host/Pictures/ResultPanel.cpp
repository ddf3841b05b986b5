#include <Host/Pictures/ResultPanel.h>

#include <Host/Pictures/PictureStyle.h>
#include <Host/ResultTable.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Mu::Host
{
namespace
{
constexpr Colour hairline{0.82, 0.84, 0.88, 1};
// Told apart by colour-blind people, too.
constexpr Colour passColour{0.00, 0.52, 0.40, 1};
constexpr Colour failColour{0.78, 0.22, 0.00, 1};
constexpr Colour nullColour{0.62, 0.42, 0.00, 1};
constexpr Colour failGround{1.00, 0.93, 0.90, 1};

constexpr double lineHeight = 27;
constexpr double aboveTool = 5;
constexpr double othersHeight = 3 * lineHeight + 12; ///< of head, remark on what is missing, decisions, rules
constexpr double baseline = 19;                      ///< below the top of a line
constexpr TextStyle headStyle{15, quietInk, Weight::Normal};
constexpr TextStyle toolStyle{17, ink, Weight::Bold};
constexpr TextStyle textStyle{16, ink, Weight::Normal};
constexpr TextStyle boldStyle{16, ink, Weight::Bold};
constexpr TextStyle quietStyle{15, quietInk, Weight::Normal};

/// Columns, as shares of the width: where a text begins, or ends if it is set from the right.
constexpr double valueEnd = 0.50;
constexpr double unitBegin = 0.515;
constexpr double limitsBegin = 0.60;
constexpr double signBegin = 0.85;

bool IsMeasurement(const Result& result)
{
    return result.dataType == TaPipe::PipeDataType::Measurement;
}

bool NeedsAttention(const Result& result)
{
    return result.decision == Decision::Fail || result.decision == Decision::Null;
}

void DrawSign(Canvas& canvas, const Place& middle, Decision decision)
{
    constexpr double radius = 8;
    const auto at = [&middle](double x, double y) -> Place { return {middle.x + x, middle.y + y}; };
    const Colour white{1, 1, 1, 1};
    if (decision == Decision::Pass)
    {
        canvas.Disc(middle, radius, passColour);
        canvas.Line(std::array{at(-3.5, 0.5), at(-1, 3), at(4, -3)}, {2, white});
    }
    else if (decision == Decision::Fail)
    {
        canvas.Fill({middle.x - radius, middle.y - radius, 2 * radius, 2 * radius}, failColour);
        canvas.Line(std::array{at(-4, -4), at(4, 4)}, {2.4, white});
        canvas.Line(std::array{at(-4, 4), at(4, -4)}, {2.4, white});
    }
    else
    {
        canvas.ClosedLine(std::array{at(0, -radius), at(radius, 0), at(0, radius), at(-radius, 0)}, {2, nullColour});
    }
}

Colour ColourOfDecision(Decision decision)
{
    return decision == Decision::Pass ? passColour : decision == Decision::Fail ? failColour : nullColour;
}

/// Puts lines below each other.
class Panel
{
public:
    Panel(Canvas& page, const Area& panelArea)
        : canvas(page)
        , area(panelArea)
        , top(panelArea.top)
    {
    }

    void Head()
    {
        Write("output", 0, headStyle, valueEnd);
        WriteEnd("value", headStyle);
        Write("limits", limitsBegin, headStyle, signBegin);
        Next();
        Rule();
    }

    void Tool(const Result& result)
    {
        const std::string type = result.tool == result.toolType ? "" : result.toolType;
        top += aboveTool;
        const std::string name = canvas.Fitted(result.tool, toolStyle, 0.6 * area.width);
        Write(name, 0, toolStyle, 1);
        const double used = (canvas.TextWidth(name, toolStyle) + 10) / area.width;
        Write(type, used, quietStyle, 1);
        Next();
    }

    void Row(const Result& result)
    {
        if (result.decision == Decision::Fail)
        {
            canvas.Fill({area.left - 8, top + 1, area.width + 16, lineHeight - 2}, failGround);
        }
        const TextStyle& style = NeedsAttention(result) ? boldStyle : textStyle;
        const std::string name = OutputText(result);
        const std::string value = ValueText(result);
        const double valueShare = (canvas.TextWidth(value, style) + 12) / area.width;
        Write(name, 0.02, style, std::max(0.1, valueEnd - valueShare));
        WriteEnd(value, result.state == ResultState::Value ? style : quietStyle);
        Write(result.state == ResultState::Value ? result.units : "", unitBegin, quietStyle, limitsBegin);
        Write(LimitsText(result), limitsBegin, quietStyle, signBegin);
        if (result.decision != Decision::None)
        {
            DrawSign(canvas, {area.left + signBegin * area.width + 10, top + lineHeight / 2}, result.decision);
            TextStyle word = boldStyle;
            word.colour = ColourOfDecision(result.decision);
            Write(NameOf(result.decision), signBegin + 26 / area.width, word, 1);
        }
        Next();
    }

    void Rule()
    {
        canvas.Line(std::array{Place{area.left, top + 1}, Place{area.Right(), top + 1}}, {1, hairline});
        top += 4;
    }

    void Remark(const std::string& text, const TextStyle& style)
    {
        Write(text, 0, style, 1);
        Next();
    }

private:
    void Write(const std::string& text, double begin, const TextStyle& style, double end)
    {
        if (!text.empty() && end > begin)
        {
            const std::string shown = canvas.Fitted(text, style, (end - begin) * area.width - 4);
            canvas.Text(shown, {area.left + begin * area.width, top + baseline}, style);
        }
    }

    void WriteEnd(const std::string& text, const TextStyle& style)
    {
        canvas.Text(text, {area.left + valueEnd * area.width, top + baseline}, style, TextFrom::Right);
    }

    void Next()
    {
        top += lineHeight;
    }

    Canvas& canvas;
    Area area;
    double top;
};

std::vector<const Result*> Measurements(const std::vector<Result>& results)
{
    std::vector<const Result*> rows;
    for (const Result& result : results)
    {
        if (IsMeasurement(result))
        {
            rows.push_back(&result);
        }
    }
    return rows;
}

/// The height of a table of these, without what stands above and below it.
double HeightOf(const std::vector<const Result*>& rows)
{
    double height = static_cast<double>(rows.size()) * lineHeight;
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        height += i == 0 || rows[i]->tool != rows[i - 1]->tool ? lineHeight + aboveTool : 0;
    }
    return height;
}

/// Takes rows out, from the end and those that passed first, until the rest fits.
std::vector<const Result*> Shown(std::vector<const Result*> rows, double room)
{
    while (!rows.empty() && HeightOf(rows) > room)
    {
        const double lines = std::max(1.0, (HeightOf(rows) - room) / (2 * lineHeight + aboveTool));
        const auto excess = static_cast<std::size_t>(lines);
        for (std::size_t i = 0; i < excess && !rows.empty(); ++i)
        {
            const auto quiet =
                std::find_if(rows.rbegin(), rows.rend(), [](auto* row) { return !NeedsAttention(*row); });
            rows.erase(quiet == rows.rend() ? rows.end() - 1 : quiet.base() - 1);
        }
    }
    return rows;
}

std::string DecisionsText(const std::vector<Result>& results)
{
    const auto count = [&results](Decision decision) {
        return std::ranges::count(results, decision, &Result::decision);
    };
    std::string text = fmt::format("{} passed, {} failed", count(Decision::Pass), count(Decision::Fail));
    return count(Decision::Null) == 0 ? text : text + fmt::format(", {} without a value", count(Decision::Null));
}
} // namespace

bool HasMeasurements(const std::vector<Result>& results)
{
    return std::ranges::any_of(results, IsMeasurement);
}

double ResultsHeight(const std::vector<Result>& results)
{
    const auto rows = Measurements(results);
    return rows.empty() ? 0 : othersHeight + HeightOf(rows);
}

void DrawResults(Canvas& canvas, const Area& area, const std::vector<Result>& results)
{
    const auto all = Measurements(results);
    const auto shown = Shown(all, area.height - othersHeight);
    Panel panel(canvas, area);
    panel.Head();
    for (std::size_t i = 0; i < shown.size(); ++i)
    {
        if (i == 0 || shown[i]->tool != shown[i - 1]->tool)
        {
            panel.Tool(*shown[i]);
        }
        panel.Row(*shown[i]);
    }
    panel.Rule();
    if (shown.size() < all.size())
    {
        const auto attention = [](const auto& rows) {
            return std::ranges::count_if(rows, [](auto* r) { return NeedsAttention(*r); });
        };
        const auto missing = attention(all) - attention(shown);
        panel.Remark(fmt::format("and {} more{}", all.size() - shown.size(),
                                 missing == 0 ? "" : fmt::format(", {} of which did not pass", missing)),
                     quietStyle);
    }
    const bool isDecided = std::ranges::any_of(all, [](auto* row) { return row->decision != Decision::None; });
    if (isDecided)
    {
        panel.Remark(DecisionsText(results), boldStyle);
    }
}
} // namespace Mu::Host
