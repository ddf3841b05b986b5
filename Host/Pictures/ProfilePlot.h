#pragma once

#include <Host/Pictures/Canvas.h>
#include <Host/Pictures/GridAxis.h>
#include <Host/Pictures/View.h>

#include <optional>

namespace Mu::Host
{
/// A profile as it is drawn: a line through the points of one that is resampled, broken where a point is invalid; dots
/// for one that is not. With intensities the points have their colours.
///
/// Of the many points of a line that lie in one column of the page, the first, the lowest, the highest and the last are
/// drawn; dots that fall onto one another are drawn once.
class ProfilePlot
{
public:
    /// @param message  a TvProfileMsg, which outlives this
    explicit ProfilePlot(void* message);

    [[nodiscard]] bool HasPoints() const
    {
        return validCount > 0;
    }

    [[nodiscard]] bool IsInMm() const
    {
        return x.IsInMm() && z.IsInMm();
    }

    /// What the valid points take, with some room around them.
    [[nodiscard]] const Range& Across() const
    {
        return across;
    }

    [[nodiscard]] const Range& Up() const
    {
        return up;
    }

    /// The lowest and the highest intensity of valid points; none without intensities.
    [[nodiscard]] const std::optional<Range>& Intensities() const
    {
        return intensities;
    }

    void Draw(Canvas& canvas, const View& view) const;

private:
    /// Calls `use(x, z, intensity)` with valid points, and `skip()` in place of others.
    template <typename Use, typename Skip>
    void Walk(const Use& use, const Skip& skip) const;
    void DrawLine(Canvas& canvas, const View& view) const;
    void DrawDots(Canvas& canvas, const View& view) const;

    void* profile;
    GridAxis x;
    GridAxis z;
    std::size_t validCount = 0;
    Range across;
    Range up;
    std::optional<Range> intensities;
};
} // namespace Mu::Host
