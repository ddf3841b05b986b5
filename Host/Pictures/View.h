#pragma once

#include <Host/Pictures/Ticks.h>

#include <zApi/zTypes.h>

#include <optional>

namespace Mu::Host
{
/// A place on a page: in units of the page from its upper left corner, y downwards.
struct Place
{
    double x = 0;
    double y = 0;
};

/// A rectangle on a page.
struct Area
{
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double Right() const
    {
        return left + width;
    }

    [[nodiscard]] double Bottom() const
    {
        return top + height;
    }

    [[nodiscard]] Place Centre() const
    {
        return {left + width / 2, top + height / 2};
    }

    /// Edges included.
    [[nodiscard]] bool Holds(const Place& place) const;

    /// Larger by `margin` on each side.
    [[nodiscard]] Area Grown(double margin) const;
};

/// The part of the segment from `first` to `last`, both finite, that lies in an area; nothing if none does. A ray: the
/// part of the half-line from `first` through `last`.
struct Segment
{
    Place first;
    Place last;
};

[[nodiscard]] std::optional<Segment> Clipped(const Segment& segment, const Area& area);
[[nodiscard]] std::optional<Segment> ClippedRay(const Segment& ray, const Area& area);

/// What is seen of the world, and which way.
enum class Plane
{
    XY,    ///< along z, y up: surfaces
    XZ,    ///< along y, z up: profiles
    Image, ///< x and y of pixels, row 0 on top
};

enum class Scales
{
    Equal, ///< a mm is as long on both axes
    Free,
};

/// Brings places of the world onto a frame on a page.
class View
{
public:
    /// @param across  what the frame shows from its left edge to its right
    /// @param up      from its lower edge to its upper
    View(Plane shownPlane, const Area& shownFrame, const Range& across, const Range& up);

    /// The view of two ranges, none of them empty, in the room that there is on the page: a frame at its top with edges
    /// at whole units. With equal scales a range that would be narrow on the page is shown with what lies around
    /// it.
    [[nodiscard]] static View Fitted(Plane plane, const Area& room, const Range& across, const Range& up,
                                     Scales scales);

    [[nodiscard]] Place OnPage(double across, double up) const;
    [[nodiscard]] Place OnPage(const zPoint3d64f& point) const;

    /// The direction on the page of a direction in the world, with the lengths of the page.
    [[nodiscard]] Place DirectionOnPage(const zPoint3d64f& direction) const;

    /// The place in the world of a column or row of the page.
    [[nodiscard]] double AcrossAt(double x) const;
    [[nodiscard]] double UpAt(double y) const;

    [[nodiscard]] Plane ShownPlane() const
    {
        return plane;
    }

    [[nodiscard]] const Area& Frame() const
    {
        return frame;
    }

    [[nodiscard]] const Range& Across() const
    {
        return horizontal;
    }

    [[nodiscard]] const Range& Up() const
    {
        return vertical;
    }

private:
    Plane plane;
    Area frame;
    Range horizontal;
    Range vertical;
};
} // namespace Mu::Host
