#pragma once

#include <Host/Pictures/View.h>

#include <cstddef>
#include <vector>

namespace Mu::Host
{
/// Which pixels of an area of the page have been marked already: of millions of marks only those are drawn that show.
class SeenPixels
{
public:
    explicit SeenPixels(const Area& shown)
        : area(shown)
        , columns(static_cast<std::size_t>(shown.width) + 1)
        , seen(columns * (static_cast<std::size_t>(shown.height) + 1))
    {
    }

    /// Whether a place is in the area, and the first one in its pixel.
    [[nodiscard]] bool IsNew(const Place& place)
    {
        if (!area.Holds(place))
        {
            return false;
        }
        const auto column = static_cast<std::size_t>(place.x - area.left);
        const std::size_t pixel = static_cast<std::size_t>(place.y - area.top) * columns + column;
        const bool isNew = !seen[pixel];
        seen[pixel] = true;
        return isNew;
    }

private:
    Area area;
    std::size_t columns;
    std::vector<bool> seen;
};
} // namespace Mu::Host
