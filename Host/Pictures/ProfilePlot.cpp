#include <Host/Pictures/ProfilePlot.h>

#include <Host/Pictures/SeenPixels.h>

#include <TaVision/TvProfileMsg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace Mu::Host
{
namespace
{
constexpr Colour lineColour{0.10, 0.30, 0.62, 1};
constexpr Colour quietColour{0.70, 0.73, 0.78, 1};
constexpr double lineWidth = 2.5;
constexpr std::array dotShape{Place{-2, -2}, Place{2, -2}, Place{2, 2}, Place{-2, 2}};

/// The share of the points' extent that is left free on each side.
constexpr double room = 0.05;

constexpr Range nothing{std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};

void Widen(Range& range, double value)
{
    range.low = std::min(range.low, value);
    range.high = std::max(range.high, value);
}

/// With room around it; a range without extent gets `least` of it.
Range WithRoom(const Range& range, double least)
{
    const double margin = range.Extent() > 0 ? room * range.Extent() : least / 2;
    return {range.low - margin, range.high + margin};
}

/// A line on the page, thinned by columns.
class ThinnedLine
{
public:
    ThinnedLine(Canvas& page, const Area& frame, const Stroke& lineStroke)
        : canvas(page)
        , stroke(lineStroke)
        , seenDots(frame)
    {
    }

    void Add(const Place& place)
    {
        if (column.empty() || std::floor(place.x) != std::floor(column.front().x))
        {
            Flush();
            column = {place, place, place, place};
        }
        column[1] = place.y < column[1].y ? place : column[1];
        column[2] = place.y > column[2].y ? place : column[2];
        column[3] = place;
    }

    /// A line of one point is a dot.
    void Break()
    {
        Flush();
        if (places.size() == 1 && seenDots.IsNew(places.front()))
        {
            canvas.Disc(places.front(), stroke.width, stroke.colour);
        }
        else if (places.size() > 1)
        {
            canvas.Line(places, stroke);
        }
        places.clear();
    }

private:
    void Flush()
    {
        for (const Place& place : column)
        {
            if (places.empty() || place.x != places.back().x || place.y != places.back().y)
            {
                places.push_back(place);
            }
        }
        column.clear();
    }

    Canvas& canvas;
    Stroke stroke;
    SeenPixels seenDots;
    std::vector<Place> column; ///< first, highest on the page, lowest, last
    std::vector<Place> places;
};
} // namespace

ProfilePlot::ProfilePlot(void* message)
    : profile(message)
    , x(TvProfileMsg_Offset(message).x, TvProfileMsg_Scale(message).x)
    , z(TvProfileMsg_Offset(message).z, TvProfileMsg_Scale(message).z)
{
    Range places = nothing;
    Range heights = nothing;
    Range brightness = nothing;
    const auto look = [&](double atX, double atZ, double intensity) {
        Widen(places, atX);
        Widen(heights, atZ);
        Widen(brightness, intensity);
        ++validCount;
    };
    Walk(look, [] {});
    if (validCount > 0)
    {
        across = WithRoom(places, std::abs(x.Scale()));
        up = WithRoom(heights, std::max(std::abs(z.Scale()), 0.05 * across.Extent()));
        intensities = TvProfileMsg_HasIntensity(profile) ? std::optional(brightness) : std::nullopt;
    }
}

template <typename Use, typename Skip>
void ProfilePlot::Walk(const Use& use, const Skip& skip) const
{
    const bool isResampled = TvProfileMsg_PointType(profile) == zTypeOf(z16s);
    const void* const points = TvProfileMsg_Points(profile);
    const void* const brightness = TvProfileMsg_Intensity(profile);
    const bool isWide = TvProfileMsg_IntensityType(profile) == zTypeOf(z16u);
    const auto pointAt = [&](std::size_t i) -> zPoint16s {
        return isResampled ? zPoint16s{0, static_cast<const z16s*>(points)[i]}
                           : static_cast<const zPoint16s*>(points)[i];
    };
    const auto intensityAt = [&](std::size_t i) -> double {
        return brightness == nullptr ? 0
               : isWide              ? static_cast<const z16u*>(brightness)[i]
                                     : static_cast<const z8u*>(brightness)[i];
    };
    const std::size_t count = points == nullptr ? 0 : TvProfileMsg_PointCount(profile);
    for (std::size_t i = 0; i < count; ++i)
    {
        const zPoint16s point = pointAt(i);
        if (point.y == zNULL_16S)
        {
            skip();
            continue;
        }
        use(x.At(isResampled ? static_cast<double>(i) : point.x), z.At(point.y), intensityAt(i));
    }
}

void ProfilePlot::Draw(Canvas& canvas, const View& view) const
{
    if (TvProfileMsg_PointType(profile) == zTypeOf(z16s))
    {
        DrawLine(canvas, view);
    }
    if (intensities || TvProfileMsg_PointType(profile) != zTypeOf(z16s))
    {
        DrawDots(canvas, view);
    }
}

void ProfilePlot::DrawLine(Canvas& canvas, const View& view) const
{
    ThinnedLine line(canvas, view.Frame(), {lineWidth, intensities ? quietColour : lineColour});
    Walk([&](double atX, double atZ, double) { line.Add(view.OnPage(atX, atZ)); }, [&] { line.Break(); });
    line.Break();
}

void ProfilePlot::DrawDots(Canvas& canvas, const View& view) const
{
    constexpr std::size_t classes = 32;
    std::array<std::vector<Place>, classes> dots;
    SeenPixels pixels(view.Frame());
    const Range range = intensities.value_or(Range{0, 1});
    const auto add = [&](double atX, double atZ, double intensity) {
        const Place place = view.OnPage(atX, atZ);
        if (pixels.IsNew(place))
        {
            const double share = range.Extent() > 0 ? (intensity - range.low) / range.Extent() : 0;
            dots[static_cast<std::size_t>(share * (classes - 1) + 0.5)].push_back(place);
        }
    };
    Walk(add, [] {});
    for (std::size_t i = 0; i < classes; ++i)
    {
        const double share = static_cast<double>(i) / (classes - 1);
        canvas.Marks(dots[i], dotShape, intensities ? HeightColour(share) : lineColour);
    }
}
} // namespace Mu::Host
