#include <Host/Pictures/AxesPainter.h>

#include <Host/Pictures/PictureStyle.h>
#include <Host/Pictures/SurfaceImage.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Mu::Host
{
namespace
{
constexpr TextStyle tickStyle{16, ink, Weight::Normal};
constexpr TextStyle nameStyle{17, ink, Weight::Normal};
constexpr Stroke thin{1.2, ink};
constexpr double tickLength = 7;

/// Room for a text along an axis, so that neighbours do not touch.
constexpr double roomAcross = 110;
constexpr double roomUp = 50;

std::size_t MostTicks(double length, double each)
{
    return static_cast<std::size_t>(std::max(2.0, std::floor(length / each) + 1));
}

/// As many ticks as their texts leave room for.
Ticks TicksAcross(const Canvas& canvas, const Range& range, double length)
{
    for (std::size_t most = MostTicks(length, roomAcross / 1.5); most > 2; --most)
    {
        Ticks ticks = RoundTicks(range, most);
        double widest = 0;
        for (const std::string& text : ticks.texts)
        {
            widest = std::max(widest, canvas.TextWidth(text, tickStyle));
        }
        if (widest * 1.3 * static_cast<double>(ticks.texts.size()) <= length)
        {
            return ticks;
        }
    }
    return RoundTicks(range, 2);
}

void DrawTicksAcross(Canvas& canvas, const View& view)
{
    const Area& frame = view.Frame();
    const Ticks ticks = TicksAcross(canvas, view.Across(), frame.width);
    for (std::size_t i = 0; i < ticks.places.size(); ++i)
    {
        const double x = view.OnPage(ticks.places[i], view.Up().low).x;
        const std::array mark{Place{x, frame.Bottom()}, Place{x, frame.Bottom() + tickLength}};
        canvas.Line(mark, thin);
        const double half = canvas.TextWidth(ticks.texts[i], tickStyle) / 2;
        const double middle = std::clamp(x, half + 2, std::max(half + 2, canvas.Page().Right() - half - 2));
        canvas.Text(ticks.texts[i], {middle, frame.Bottom() + tickLength + 18}, tickStyle, TextFrom::Middle);
    }
}

/// Gives the left end of its texts.
double DrawTicksUp(Canvas& canvas, const View& view)
{
    constexpr double nameRoom = 30;
    double left = view.Frame().left - tickLength;
    const Area& frame = view.Frame();
    const Ticks ticks = RoundTicks(view.Up(), MostTicks(frame.height, roomUp));
    for (std::size_t i = 0; i < ticks.places.size(); ++i)
    {
        const double y = view.OnPage(view.Across().low, ticks.places[i]).y;
        const std::array mark{Place{frame.left - tickLength, y}, Place{frame.left, y}};
        canvas.Line(mark, thin);
        const std::string text = canvas.Fitted(ticks.texts[i], tickStyle, axisRoomLeft - tickLength - nameRoom);
        canvas.Text(text, {frame.left - tickLength - 5, y + 6}, tickStyle, TextFrom::Right);
        left = std::min(left, canvas.Texts().back().extents.left);
    }
    return left;
}
} // namespace

void DrawAxes(Canvas& canvas, const View& view, const std::string& acrossName, const std::string& upName)
{
    const Area& frame = view.Frame();
    canvas.Outline({frame.left - 0.5, frame.top - 0.5, frame.width + 1, frame.height + 1}, thin);
    DrawTicksAcross(canvas, view);
    const double left = DrawTicksUp(canvas, view);
    canvas.Text(acrossName, {frame.Centre().x, frame.Bottom() + 54}, nameStyle, TextFrom::Middle);
    canvas.Text(upName, {left - 12, frame.Centre().y}, nameStyle, TextFrom::Middle, TextTurn::Upwards);
}

Area ColourBarArea(const Area& frame)
{
    constexpr double gap = 26;
    constexpr double width = 24;
    constexpr double tallest = 520;
    const double height = std::floor(std::min(frame.height, tallest));
    return {frame.Right() + gap, frame.top, width, height};
}

void DrawColourBar(Canvas& canvas, const Area& frame, const Range& values, const std::string& name)
{
    const Area bar = ColourBarArea(frame);
    PixelImage colours{static_cast<std::size_t>(bar.width), static_cast<std::size_t>(bar.height), {}};
    for (std::size_t i = 0; i < colours.width * colours.height; ++i)
    {
        const double row = static_cast<double>(i / colours.width) + 0.5;
        colours.pixels.push_back(NumberOf(HeightColour(1 - row / bar.height)));
    }
    canvas.Image(colours, {bar.left, bar.top});
    canvas.Outline({bar.left - 0.5, bar.top - 0.5, bar.width + 1, bar.height + 1}, thin);
    const Ticks ticks = RoundTicks(values, MostTicks(bar.height, roomUp));
    double right = bar.Right() + tickLength;
    for (std::size_t i = 0; i < ticks.places.size(); ++i)
    {
        const double share = values.Extent() > 0 ? (ticks.places[i] - values.low) / values.Extent() : 0;
        const double y = bar.Bottom() - share * bar.height;
        const std::array mark{Place{bar.Right(), y}, Place{bar.Right() + tickLength, y}};
        canvas.Line(mark, thin);
        const std::string text = canvas.Fitted(ticks.texts[i], tickStyle, barRoom - 26 - bar.width - tickLength - 36);
        canvas.Text(text, {bar.Right() + tickLength + 5, y + 6}, tickStyle);
        right = std::max(right, canvas.Texts().back().extents.Right());
    }
    canvas.Text(name, {right + 24, bar.Centre().y}, nameStyle, TextFrom::Middle, TextTurn::Upwards);
}

void DrawInvalidKey(Canvas& canvas, const Area& frame)
{
    constexpr std::size_t side = 24;
    PixelImage key{side, side, {}};
    for (std::size_t i = 0; i < side * side; ++i)
    {
        key.pixels.push_back(InvalidPixel(i % side, i / side));
    }
    const Place corner{ColourBarArea(frame).left, std::max(frame.Bottom(), ColourBarArea(frame).Bottom()) + 14};
    canvas.Image(key, corner);
    canvas.Outline({corner.x - 0.5, corner.y - 0.5, side + 1, side + 1}, thin);
    canvas.Text("no height", {corner.x + side + 8, corner.y + 18}, tickStyle);
}
} // namespace Mu::Host
