#pragma once

#include <MuTlkHelper/PixelBlocks.h>
#include <MuTlkHelper/PixelWorld.h>

#include <MuVision/RefFrame.h>
#include <MuVision/Regions.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

namespace Mu::TlkHelper
{
/// The box of a region, without its angles.
struct Box
{
    Bounds x;
    Bounds y;
    Bounds z;

    explicit Box(const Mu::Vision::Region3d<double>& region)
        : x(BoundsOf(region.x, region.width))
        , y(BoundsOf(region.y, region.length))
        , z(BoundsOf(region.z, region.height))
    {
    }

    [[nodiscard]] bool Hold(const zPoint3d64f& point) const
    {
        const int inPlane = static_cast<int>(x.Hold(point.x)) & static_cast<int>(y.Hold(point.y));
        return (inPlane & static_cast<int>(z.Hold(point.z))) != 0;
    }
};

/// A region that is turned about z: it holds the points that a frame turns into its box.
class TurnedBox
{
public:
    TurnedBox(const Mu::Vision::Region3d<double>& region, const Frame& newFrame)
        : box(region)
        , frame(newFrame)
    {
        toBox.Rotate(region, true);
        // A frame that leaves z alone adds nothing but zeros to it, and takes nothing from it but zeros.
        const zM3dTransform3d t = toBox.TozTransform();
        const bool keepsHeights =
            t.xz == 0.0 && t.yz == 0.0 && t.zx == 0.0 && t.zy == 0.0 && t.zz == 1.0 && t.zt == 0.0;
        if (keepsHeights && frame.z.IsFinite())
        {
            heights = SamplesIn(box.z, frame.z);
        }
    }

    [[nodiscard]] bool Hold(const zPoint3d64f& point) const
    {
        return box.Hold(toBox.Apply(point));
    }

    /// The same for a finite point whose height is among `Heights`.
    [[nodiscard]] bool HoldInPlane(const zPoint3d64f& point) const
    {
        // The frame adds zeros for z, which change no comparison.
        const zPoint3d64f turned = toBox.Apply(zPoint3d64f{point.x, point.y, 0.0});
        return (static_cast<int>(box.x.Hold(turned.x)) & static_cast<int>(box.y.Hold(turned.y))) != 0;
    }

    /// A window for each axis in the plane that holds all samples that lie in the box, and more. A cheap test to begin
    /// with.
    [[nodiscard]] std::array<Window, 2> Around() const
    {
        constexpr double ENDLESS = std::numeric_limits<double>::infinity();
        const zM3dTransform3d t = toBox.TozTransform();
        Bounds x{ENDLESS, -ENDLESS};
        Bounds y{ENDLESS, -ENDLESS};
        for (const double cornerX : {box.x.low, box.x.high})
        {
            for (const double cornerY : {box.y.low, box.y.high})
            {
                // The inverse of a turn is its transpose.
                x.Widen(t.xx * (cornerX - t.xt) + t.yx * (cornerY - t.yt));
                y.Widen(t.xy * (cornerX - t.xt) + t.yy * (cornerY - t.yt));
            }
        }
        // Rounding moves a turned place by some 1e-15 of the values in it.
        const double reach = frame.x.Reach() + frame.y.Reach() + std::abs(t.xt) + std::abs(t.yt);
        const double margin = 1e-9 * (reach + x.Reach() + y.Reach());
        const bool isTurn = t.xx == t.yy && t.xy == -t.yx && std::abs(t.xx * t.xx + t.yx * t.yx - 1.0) < 1e-12;
        if (!isTurn || !std::isfinite(margin))
        {
            return {NOT_NULL, NOT_NULL};
        }
        return {WindowIn({x.low - margin, x.high + margin}, frame.x),
                WindowIn({y.low - margin, y.high + margin}, frame.y)};
    }

    /// The heights that lie in the box, if that does not depend on their place.
    [[nodiscard]] const std::optional<Window>& Heights() const
    {
        return heights;
    }

    /// The columns of a row of the grid that lie in the box whatever their height. Along a row the turned place rises
    /// or falls, and rounding keeps the order: so they are one span, found by a search with the very test of each
    /// point. Null if a value is not finite, or if heights have a say.
    [[nodiscard]] std::optional<Span> Columns(std::size_t row, std::size_t width) const
    {
        if (!heights || width == 0)
        {
            return std::nullopt;
        }
        const double y = frame.y.World(static_cast<double>(row));
        const auto turned = [this, y](std::size_t column) {
            return toBox.Apply(zPoint3d64f{frame.x.World(static_cast<double>(column)), y, 0.0});
        };
        const auto alongX = PlacesIn(width, box.x, [&turned](std::size_t column) { return turned(column).x; });
        const auto alongY = PlacesIn(width, box.y, [&turned](std::size_t column) { return turned(column).y; });
        if (!alongX || !alongY)
        {
            return std::nullopt;
        }
        const std::size_t first = std::max(alongX->first, alongY->first);
        return Span{first, std::max(first, std::min(alongX->end, alongY->end))};
    }

private:
    // The samples in `bounds` that are not null.
    static Window WindowIn(const Bounds& bounds, const Axis& axis)
    {
        const std::optional<Window> samples = SamplesIn(bounds, axis);
        return samples ? HeightWindow(samples->low, samples->high) : NOT_NULL;
    }

    Box box;
    Frame frame;
    Mu::Vision::RefFrame toBox;
    std::optional<Window> heights;
};
} // namespace Mu::TlkHelper
