#include <Host/Pictures/View.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Mu::Host
{
namespace
{
/// The least share of the room's side that a frame takes.
constexpr double leastShare = 0.2;

/// The share of a line, from 0 to `end`, that lies between the two edges of an area on one axis (Liang and Barsky).
struct Share
{
    double begin = 0;
    double end = 1;

    void Cut(double from, double step, double low, double high)
    {
        if (step == 0)
        {
            end = from < low || from > high ? -1 : end;
            return;
        }
        const auto [enter, leave] = std::minmax({(low - from) / step, (high - from) / step});
        begin = std::max(begin, enter);
        end = std::min(end, leave);
    }
};

std::optional<Segment> CutShare(const Segment& line, const Area& area, double mostShare)
{
    const Place step{line.last.x - line.first.x, line.last.y - line.first.y};
    Share share{0, mostShare};
    share.Cut(line.first.x, step.x, area.left, area.Right());
    share.Cut(line.first.y, step.y, area.top, area.Bottom());
    if (!std::isfinite(step.x) || !std::isfinite(step.y) || !(share.begin <= share.end) || !std::isfinite(share.end))
    {
        return std::nullopt;
    }
    const auto at = [&](double part) -> Place {
        return {std::clamp(line.first.x + part * step.x, area.left, area.Right()),
                std::clamp(line.first.y + part * step.y, area.top, area.Bottom())};
    };
    return Segment{at(share.begin), at(share.end)};
}

Range Around(double middle, double extent)
{
    return {middle - extent / 2, middle + extent / 2};
}

/// The extent of `shown` that a frame of `length` units shows, running the same way.
Range Shown(const Range& shown, double length, double unitsPerWorld)
{
    return Around(shown.Middle(), std::copysign(length / unitsPerWorld, shown.Extent()));
}

Area AtTopOf(const Area& room, double width, double height)
{
    return {std::floor(room.left + (room.width - width) / 2), std::ceil(room.top), width, height};
}
} // namespace

bool Area::Holds(const Place& place) const
{
    return place.x >= left && place.x <= Right() && place.y >= top && place.y <= Bottom();
}

Area Area::Grown(double margin) const
{
    return {left - margin, top - margin, width + 2 * margin, height + 2 * margin};
}

std::optional<Segment> Clipped(const Segment& segment, const Area& area)
{
    return CutShare(segment, area, 1);
}

std::optional<Segment> ClippedRay(const Segment& ray, const Area& area)
{
    return CutShare(ray, area, std::numeric_limits<double>::infinity());
}

View::View(Plane shownPlane, const Area& shownFrame, const Range& across, const Range& up)
    : plane(shownPlane)
    , frame(shownFrame)
    , horizontal(across)
    , vertical(up)
{
}

View View::Fitted(Plane plane, const Area& room, const Range& across, const Range& up, Scales scales)
{
    if (scales == Scales::Free)
    {
        const Area frame = AtTopOf(room, std::floor(room.width), std::floor(room.height));
        return {plane, frame, across, up};
    }
    const double width = std::abs(across.Extent());
    const double height = std::abs(up.Extent());
    const double unitsPerWorld = std::min(room.width / width, room.height / height);
    const auto side = [unitsPerWorld](double extent, double most) {
        return std::floor(std::clamp(std::ceil(extent * unitsPerWorld), leastShare * most, most));
    };
    const Area frame = AtTopOf(room, side(width, room.width), side(height, room.height));
    return {plane, frame, Shown(across, frame.width, unitsPerWorld), Shown(up, frame.height, unitsPerWorld)};
}

Place View::OnPage(double across, double up) const
{
    return {frame.left + (across - horizontal.low) / horizontal.Extent() * frame.width,
            frame.Bottom() - (up - vertical.low) / vertical.Extent() * frame.height};
}

Place View::OnPage(const zPoint3d64f& point) const
{
    return OnPage(point.x, plane == Plane::XZ ? point.z : point.y);
}

Place View::DirectionOnPage(const zPoint3d64f& direction) const
{
    const double up = plane == Plane::XZ ? direction.z : direction.y;
    return {direction.x / horizontal.Extent() * frame.width, -up / vertical.Extent() * frame.height};
}

double View::AcrossAt(double x) const
{
    return horizontal.low + (x - frame.left) / frame.width * horizontal.Extent();
}

double View::UpAt(double y) const
{
    return vertical.low + (frame.Bottom() - y) / frame.height * vertical.Extent();
}
} // namespace Mu::Host
