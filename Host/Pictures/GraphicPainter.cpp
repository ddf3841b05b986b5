#include <Host/Pictures/GraphicPainter.h>

#include <Host/Pictures/PictureStyle.h>
#include <Host/Pictures/SeenPixels.h>

#include <TaPipe/TpGraphic.h>
#include <TaPipe/TpGraphicLabel.h>
#include <TaPipe/TpGraphicLineSet.h>
#include <TaPipe/TpGraphicPlane.h>
#include <TaPipe/TpGraphicPointSet.h>
#include <TaPipe/TpGraphicPosition.h>
#include <TaPipe/TpGraphicRay.h>
#include <TaPipe/TpGraphicRegion2d.h>
#include <TaPipe/TpGraphicRegion3d.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <numbers>
#include <optional>
#include <span>

namespace Mu::Host
{
namespace
{
using TaPipe::TpGraphicKind;

/// More than these nobody sees, and a picture would take minutes.
constexpr std::size_t mostElements = 100'000;
constexpr std::size_t mostOnTop = 2'000;
constexpr std::size_t mostMarks = 400'000;
constexpr std::size_t mostVertices = 400'000;
constexpr std::size_t mostPlaneNotes = 4;

constexpr double widest = 64; ///< of a line or mark, in screen pixels
constexpr Colour rimColour{0.05, 0.06, 0.10, 0.75};
constexpr double rim = 1.5;

/// Squared length below which a direction counts as none, of one with length 1.
constexpr double alongView = 1e-12;

bool IsNumber(double value)
{
    return std::isfinite(value) && value != zNULL_64F;
}

bool IsNumber(const zPoint3d64f& point)
{
    return IsNumber(point.x) && IsNumber(point.y) && IsNumber(point.z);
}

/// Widened; what is null or no number as a float is so as a double.
zPoint3d64f Wide(const zPoint3d32f& point)
{
    constexpr auto null32f = std::bit_cast<z32f>(0xFF7FFFFFU);
    const auto widened = [](z32f value) { return value == null32f ? zNULL_64F : static_cast<double>(value); };
    return {widened(point.x), widened(point.y), widened(point.z)};
}

double OnPage(z32f screenPixels)
{
    return screenPixel * (std::isfinite(screenPixels) ? std::clamp<double>(screenPixels, 0, widest) : 1);
}

Stroke StrokeOf(z32f width, z32u colour)
{
    return {std::max(OnPage(width), 1.0), ColourOf(colour)};
}

Stroke RimOf(const Stroke& stroke)
{
    return {stroke.width + 2 * rim,
            {rimColour.red, rimColour.green, rimColour.blue, rimColour.alpha * stroke.colour.alpha}};
}

std::vector<Place> Cross(double size)
{
    const double arm = std::max(size / 2, 3.0);
    const double half = std::max(size / 8, 0.8);
    return {{-half, -arm}, {half, -arm}, {half, -half}, {arm, -half}, {arm, half},   {half, half},
            {half, arm},   {-half, arm}, {-half, half}, {-arm, half}, {-arm, -half}, {-half, -half}};
}

std::vector<Place> Square(double size)
{
    const double half = std::max(size / 2, 1.0);
    return {{-half, -half}, {half, -half}, {half, half}, {-half, half}};
}

std::vector<Place> Dot(double size)
{
    constexpr std::size_t corners = 12;
    const double radius = std::max(size / 2, 1.2);
    std::vector<Place> places;
    for (std::size_t i = 0; i < corners; ++i)
    {
        const double angle = 2 * std::numbers::pi * static_cast<double>(i) / corners;
        places.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    return places;
}

std::vector<Place> MarkOf(int shape, double size)
{
    switch (shape)
    {
    case TpPOINT_SHAPE_CROSS:
        return Cross(size);
    case TpPOINT_SHAPE_SQUARE:
        return Square(size);
    default:
        return Dot(size);
    }
}

std::vector<Place> Grown(std::span<const Place> shape, double margin)
{
    std::vector<Place> grown;
    for (const Place& place : shape)
    {
        grown.push_back({place.x + std::copysign(margin, place.x), place.y + std::copysign(margin, place.y)});
    }
    return grown;
}

double Distance(const Place& a, const Place& b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

/// Of the heads of a line; no more than the line itself, which may run nearly along the view.
double HeadLength(const Stroke& stroke, const std::vector<Place>& line)
{
    double length = 0;
    for (std::size_t i = 1; i < line.size(); ++i)
    {
        length += Distance(line[i - 1], line[i]);
    }
    return std::min(8 * screenPixel + 2 * stroke.width, length);
}

/// The place on the way from one to another, at most half the way.
Place Towards(const Place& from, const Place& to, double distance)
{
    const double share = std::min(0.5, distance / Distance(from, to));
    return {from.x + share * (to.x - from.x), from.y + share * (to.y - from.y)};
}

/// A line on the page, without the places that nobody could tell from the one before.
class ThinnedPlaces
{
public:
    void Add(const Place& place)
    {
        constexpr double visible = 0.2;
        if (places.empty() || Distance(place, places.back()) >= visible)
        {
            places.push_back(place);
        }
        last = place;
        ++count;
    }

    /// The end is kept where it is.
    [[nodiscard]] std::vector<Place> Line() const
    {
        std::vector<Place> line = places;
        if (line.size() > 1)
        {
            line.back() = last;
        }
        return line;
    }

    /// The places that are left.
    [[nodiscard]] std::size_t Count() const
    {
        return places.size();
    }

    /// Whether there are places, and all of them look like one.
    [[nodiscard]] bool IsDot() const
    {
        return places.size() == 1 && count > 1;
    }

    [[nodiscard]] bool IsClosed() const
    {
        return places.size() > 2 && places.front().x == last.x && places.front().y == last.y;
    }

private:
    std::vector<Place> places;
    Place last;
    std::size_t count = 0;
};

/// A vector of some length, made 1 long; nothing if it has none.
std::optional<zPoint3d64f> Unit(const zPoint3d64f& vector)
{
    const double largest = std::max({std::abs(vector.x), std::abs(vector.y), std::abs(vector.z)});
    if (largest == 0)
    {
        return std::nullopt;
    }
    const zPoint3d64f scaled{vector.x / largest, vector.y / largest, vector.z / largest};
    const double length = std::hypot(scaled.x, scaled.y, scaled.z);
    return zPoint3d64f{scaled.x / length, scaled.y / length, scaled.z / length};
}
} // namespace

GraphicPainter::GraphicPainter(Canvas& page, const View& shownView, double depth)
    : canvas(page)
    , view(shownView)
    , pictureDepth(depth)
{
}

bool GraphicPainter::Put(const zPoint3d64f& point, Place& place) const
{
    place = view.OnPage(point);
    return IsNumber(point) && std::isfinite(place.x) && std::isfinite(place.y);
}

void GraphicPainter::Draw(void* graphic)
{
    canvas.Clip(view.Frame());
    for (std::size_t i = 0; i < TpGraphic_Count(graphic); ++i)
    {
        if (elements >= mostElements)
        {
            missing.tooMany += TpGraphic_Count(graphic) - i;
            break;
        }
        ++elements;
        DrawElement(TpGraphic_At(graphic, i));
    }
    canvas.EndClip();
}

void GraphicPainter::DrawElement(void* element)
{
    switch (TpGraphicElement_Kind(element))
    {
    case TpGraphicKind::PointSet:
        return DrawPoints(element);
    case TpGraphicKind::LineSet:
        return DrawLines(element);
    case TpGraphicKind::Ray:
        return DrawRay(element);
    case TpGraphicKind::Plane:
        return DrawPlane(element);
    case TpGraphicKind::Region2d:
        return DrawRegion2d(element);
    case TpGraphicKind::Region3d:
        return DrawRegion3d(element);
    case TpGraphicKind::Label:
    case TpGraphicKind::Position:
        return onTop.size() < mostOnTop ? onTop.push_back(element) : static_cast<void>(++missing.tooMany);
    default:
        return;
    }
}

void GraphicPainter::Finish()
{
    canvas.Clip(view.Frame());
    for (void* const element : onTop)
    {
        TpGraphicElement_Kind(element) == TpGraphicKind::Label ? DrawLabel(element) : DrawPosition(element);
    }
    onTop.clear();
    canvas.EndClip();
}

void GraphicPainter::DrawPoints(void* element)
{
    constexpr std::size_t few = 1'000;
    const double size = OnPage(TpGraphicPointSet_Size(element));
    const std::span points(TpGraphicPointSet_Points(element), TpGraphicPointSet_Count(element));
    const Area seen = view.Frame().Grown(size);
    std::optional<SeenPixels> pixels;
    if (points.size() > few)
    {
        pixels.emplace(seen);
    }
    std::vector<Place> places;
    for (const zPoint3d32f& point : points)
    {
        Place place;
        if (!Put(Wide(point), place))
        {
            ++missing.notANumber;
        }
        else if (pixels ? pixels->IsNew(place) : seen.Holds(place))
        {
            places.push_back(place);
        }
    }
    DrawMarks(places, MarkOf(TpGraphicPointSet_PointShape(element), size), ColourOf(TpGraphicPointSet_Color(element)));
}

void GraphicPainter::DrawMarks(std::vector<Place>& places, std::span<const Place> shape, const Colour& colour)
{
    const std::size_t room = mostMarks - marks;
    if (places.size() > room)
    {
        missing.tooMany += places.size() - room;
        places.resize(room);
    }
    marks += places.size();
    canvas.Marks(places, Grown(shape, rim), RimOf({0, colour}).colour);
    canvas.Marks(places, shape, colour);
}

void GraphicPainter::DrawLines(void* element)
{
    const Stroke stroke = StrokeOf(TpGraphicLineSet_Width(element), TpGraphicLineSet_Color(element));
    ThinnedPlaces places;
    for (const zPoint3d32f& point : std::span(TpGraphicLineSet_Points(element), TpGraphicLineSet_Count(element)))
    {
        Place place;
        if (!Put(Wide(point), place))
        {
            ++missing.notANumber;
            return;
        }
        places.Add(place);
        if (places.Count() > mostVertices - vertices)
        {
            ++missing.tooMany;
            return;
        }
    }
    vertices += places.Count();
    const std::vector<Place> line = places.Line();
    if (places.IsDot())
    {
        return DrawDot(line.front(), stroke);
    }
    const bool hasHeads =
        TpGraphicLineSet_LineEnding(element) == TpLINE_ENDING_ARROW && !places.IsClosed() && line.size() > 1;
    const bool hasBoth = hasHeads && TpGraphicLineSet_LineMode(element) == TpLINE_MODE_BOTH_ENDS;
    const double head = hasHeads ? HeadLength(stroke, line) : 0;
    // The line ends inside its heads, so that it does not stand out at their tips.
    std::vector<Place> shaft = line;
    if (hasHeads)
    {
        shaft.back() = Towards(line.back(), line[line.size() - 2], head / 2);
    }
    if (hasBoth)
    {
        shaft.front() = Towards(line.front(), line[1], head / 2);
    }
    DrawPolyline(shaft, stroke);
    if (hasHeads)
    {
        DrawHead(line.back(), line[line.size() - 2], head, stroke);
    }
    if (hasBoth)
    {
        DrawHead(line.front(), line[1], head, stroke);
    }
}

void GraphicPainter::DrawPolyline(const std::vector<Place>& places, const Stroke& stroke)
{
    // A path takes more than proportional time.
    constexpr std::size_t longestRun = 512;
    const Area seen = view.Frame().Grown(4 * widest);
    std::vector<std::vector<Place>> runs;
    for (std::size_t i = 1; i < places.size(); ++i)
    {
        const auto part = Clipped({places[i - 1], places[i]}, seen);
        if (!part)
        {
            continue;
        }
        if (runs.empty() || runs.back().size() >= longestRun || Distance(runs.back().back(), part->first) > 0)
        {
            runs.push_back({part->first});
        }
        runs.back().push_back(part->last);
    }
    for (const Stroke& layer : {RimOf(stroke), stroke})
    {
        std::ranges::for_each(runs, [&](const auto& run) { canvas.Line(run, layer); });
    }
}

void GraphicPainter::DrawHead(const Place& tip, const Place& from, double length, const Stroke& stroke)
{
    const double distance = Distance(tip, from);
    if (!view.Frame().Grown(widest).Holds(tip) || !(distance > 0) || !std::isfinite(distance))
    {
        return;
    }
    const Place back{(from.x - tip.x) / distance * length, (from.y - tip.y) / distance * length};
    const std::array head{tip, Place{tip.x + back.x - 0.4 * back.y, tip.y + back.y + 0.4 * back.x},
                          Place{tip.x + back.x + 0.4 * back.y, tip.y + back.y - 0.4 * back.x}};
    canvas.ClosedLine(head, {2 * rim, RimOf(stroke).colour});
    canvas.Fill(head, stroke.colour);
}

void GraphicPainter::DrawDot(const Place& place, const Stroke& stroke)
{
    const double radius = 1.5 * screenPixel + stroke.width;
    if (view.Frame().Grown(radius).Holds(place))
    {
        canvas.Disc(place, radius + rim, RimOf(stroke).colour);
        canvas.Disc(place, radius, stroke.colour);
    }
}

void GraphicPainter::DrawSegment(const Segment& segment, const Stroke& stroke)
{
    // The rim begins a little later than the line: of two rays of one line it does not cut the other.
    const double length = Distance(segment.first, segment.last);
    const double share = length > 0 ? std::min(1.0, RimOf(stroke).width / 2 / length) : 0;
    const Place begin{segment.first.x + share * (segment.last.x - segment.first.x),
                      segment.first.y + share * (segment.last.y - segment.first.y)};
    canvas.Line(std::array{begin, segment.last}, RimOf(stroke));
    canvas.Line(std::array{segment.first, segment.last}, stroke);
}

void GraphicPainter::DrawRay(void* element)
{
    const zPoint3d64f direction = Wide(TpGraphicRay_Direction(element));
    const Stroke stroke = StrokeOf(TpGraphicRay_Width(element), TpGraphicRay_Color(element));
    Place start;
    if (!Put(Wide(TpGraphicRay_Position(element)), start) || !IsNumber(direction))
    {
        ++missing.notANumber;
        return;
    }
    const auto unit = Unit(direction);
    if (!unit)
    {
        return;
    }
    const double up = view.ShownPlane() == Plane::XZ ? unit->z : unit->y;
    if (unit->x * unit->x + up * up < alongView)
    {
        return DrawDot(start, stroke);
    }
    const Place step = view.DirectionOnPage(*unit);
    const double length = std::hypot(step.x, step.y);
    const Place along{start.x + step.x / length, start.y + step.y / length};
    if (const auto part = ClippedRay({start, along}, view.Frame().Grown(stroke.width)))
    {
        DrawSegment(*part, stroke);
    }
}

void GraphicPainter::DrawPlane(void* element)
{
    const zPoint3d64f normal = Wide(TpGraphicPlane_Normal(element));
    const auto distance = static_cast<double>(TpGraphicPlane_Distance(element));
    const auto unit = IsNumber(normal) && std::isfinite(distance) ? Unit(normal) : std::nullopt;
    if (!unit)
    {
        ++missing.notANumber;
        return;
    }
    ++planeCount;
    const bool isProfile = view.ShownPlane() == Plane::XZ;
    const double fromOrigin = distance / (normal.x * unit->x + normal.y * unit->y + normal.z * unit->z);
    const double up = isProfile ? unit->z : unit->y;
    const double inDepth = isProfile ? unit->y : unit->z;
    const double squared = unit->x * unit->x + up * up;
    std::string_view place = "parallel to";
    if (squared >= alongView)
    {
        // The place of the trace that is nearest to the origin, and the direction along it.
        const double foot = (fromOrigin - inDepth * pictureDepth) / squared;
        const bool isSeen =
            DrawTrace(view.OnPage(unit->x * foot, up * foot), view.DirectionOnPage({up, -unit->x, -unit->x}));
        place = isSeen ? "drawn where it meets" : "outside the picture where it meets";
    }
    if (planeCount <= mostPlaneNotes)
    {
        planeNotes.push_back(
            fmt::format("plane {}: normal ({:.4g}, {:.4g}, {:.4g}), {:.6g} mm from the origin; {} {} = {:.6g} mm",
                        planeCount, unit->x, unit->y, unit->z, fromOrigin, place, isProfile ? "y" : "z", pictureDepth));
    }
}

bool GraphicPainter::DrawTrace(const Place& start, const Place& step)
{
    const double length = std::hypot(step.x, step.y);
    const Place along{start.x + step.x / length, start.y + step.y / length};
    const Place against{start.x - step.x / length, start.y - step.y / length};
    std::optional<Place> end;
    for (const Place& next : {along, against})
    {
        if (const auto part = ClippedRay({start, next}, view.Frame()))
        {
            DrawSegment(*part, {1.5 * screenPixel, planeColour});
            end = part->last;
        }
    }
    if (end)
    {
        DrawPlate(*end, fmt::format("plane {}", planeCount));
    }
    return end.has_value();
}

void GraphicPainter::DrawRegion2d(void* element)
{
    const zPoint64f centre = TpGraphicRegion2d_Center(element);
    const zPoint64f extent = TpGraphicRegion2d_Dimensions(element);
    const double angle = TpGraphicRegion2d_YAngle(element);
    std::vector<zPoint3d64f> corners;
    for (const auto& [x, z] : {std::pair(-0.5, -0.5), {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}})
    {
        const double across = x * extent.x;
        const double up = z * extent.y;
        const double atX = centre.x + across * std::cos(angle) - up * std::sin(angle);
        const double atZ = centre.y + across * std::sin(angle) + up * std::cos(angle);
        corners.push_back(view.ShownPlane() == Plane::Image ? zPoint3d64f{atX, atZ, 0} : zPoint3d64f{atX, 0, atZ});
    }
    const bool isNumber = IsNumber(centre.x) && IsNumber(centre.y) && IsNumber(extent.x) && IsNumber(extent.y);
    isNumber ? DrawOutline(std::move(corners)) : static_cast<void>(++missing.notANumber);
}

void GraphicPainter::DrawRegion3d(void* element)
{
    const zPoint3d64f centre = TpGraphicRegion3d_Center(element);
    const zPoint3d64f extent = TpGraphicRegion3d_Dimensions(element);
    const double angle = TpGraphicRegion3d_ZAngle(element);
    if (!IsNumber(centre) || !IsNumber(extent))
    {
        ++missing.notANumber;
        return;
    }
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    std::vector<zPoint3d64f> corners;
    if (view.ShownPlane() == Plane::XZ)
    {
        // Seen from the side, a box turned about z is as wide as its shadow.
        const double half = (std::abs(extent.x * cosine) + std::abs(extent.y * sine)) / 2;
        corners = {{centre.x - half, 0, centre.z - extent.z / 2},
                   {centre.x + half, 0, centre.z - extent.z / 2},
                   {centre.x + half, 0, centre.z + extent.z / 2},
                   {centre.x - half, 0, centre.z + extent.z / 2}};
        return DrawOutline(std::move(corners));
    }
    for (const auto& [x, y] : {std::pair(-0.5, -0.5), {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}})
    {
        const double across = x * extent.x;
        const double up = y * extent.y;
        corners.push_back({centre.x + across * cosine - up * sine, centre.y + across * sine + up * cosine, centre.z});
    }
    DrawOutline(std::move(corners));
}

void GraphicPainter::DrawOutline(std::vector<zPoint3d64f> corners)
{
    corners.push_back(corners.front());
    ThinnedPlaces places;
    for (const zPoint3d64f& corner : corners)
    {
        Place place;
        if (!Put(corner, place))
        {
            ++missing.notANumber;
            return;
        }
        places.Add(place);
    }
    const Stroke stroke{1.5 * screenPixel, regionColour};
    places.IsDot() ? DrawDot(places.Line().front(), stroke) : DrawPolyline(places.Line(), stroke);
}

void GraphicPainter::DrawLabel(void* element)
{
    Place place;
    if (!Put(TpGraphicLabel_Position(element), place))
    {
        ++missing.notANumber;
        return;
    }
    if (!view.Frame().Holds(place))
    {
        return;
    }
    const char* const bytes = TpGraphicLabel_Text(element);
    std::string text(bytes == nullptr ? "" : bytes, bytes == nullptr ? 0 : strnlen(bytes, 1000));
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    DrawDot(place, {0.5, {1, 1, 1, 1}});
    DrawPlate(place, text);
}

/// A text beside a place in the frame, where it stands on a plate of its own.
void GraphicPainter::DrawPlate(const Place& place, const std::string& line)
{
    constexpr double height = 24;
    constexpr double padding = 7;
    constexpr double gap = 8;
    const Area inside = view.Frame().Grown(-2);
    const TextStyle style{16, ink, Weight::Normal};
    const std::string text = canvas.Fitted(line, style, inside.width - 2 * padding);
    const double width = canvas.TextWidth(text, style) + 2 * padding;
    const auto moved = [](double wanted, double low, double high) {
        return std::clamp(wanted, low, std::max(low, high));
    };
    const Area plate{moved(place.x + gap, inside.left, inside.Right() - width),
                     moved(place.y - gap - height, inside.top, inside.Bottom() - height), width, height};
    canvas.Fill(plate, {1, 1, 1, 0.88});
    canvas.Outline(plate, {1, {0.25, 0.27, 0.32, 1}});
    canvas.Text(text, {plate.left + padding, plate.Bottom() - 7}, style);
}

void GraphicPainter::DrawPosition(void* element)
{
    Place at;
    if (!Put(TpGraphicPosition_Position(element), at))
    {
        ++missing.notANumber;
        return;
    }
    constexpr double radius = 9;
    if (!view.Frame().Grown(2 * radius).Holds(at))
    {
        return;
    }
    std::vector<Segment> lines;
    std::vector<Place> outline;
    switch (TpGraphicPosition_Type(element))
    {
    case TaPipe::TpGraphicPositionType::Reference:
        outline = {{at.x, at.y - radius}, {at.x + radius, at.y}, {at.x, at.y + radius}, {at.x - radius, at.y}};
        break;
    case TaPipe::TpGraphicPositionType::Anchor:
        outline = {at, {at.x - radius, at.y - 2 * radius}, {at.x + radius, at.y - 2 * radius}};
        break;
    default:
        lines = {{{at.x - 1.6 * radius, at.y}, {at.x + 1.6 * radius, at.y}},
                 {{at.x, at.y - 1.6 * radius}, {at.x, at.y + 1.6 * radius}}};
    }
    const Stroke stroke{2.5, positionColour};
    for (const Stroke& layer : {RimOf(stroke), stroke})
    {
        for (const Segment& line : lines)
        {
            const std::array ends{line.first, line.last};
            canvas.Line(ends, layer);
        }
        outline.empty() ? canvas.Ring(at, radius, layer) : canvas.ClosedLine(outline, layer);
    }
}
} // namespace Mu::Host
