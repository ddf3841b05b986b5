#pragma once

#include <Host/Pictures/Ticks.h>

#include <cstddef>
#include <vector>

namespace Mu::Host
{
/// Where the samples of a grid lie on one axis.
///
/// Offset and scale come from anywhere. If they are of no use (not finite, a scale of 0, steps that are lost in the
/// offset, or numbers beyond 1e30), the axis counts samples instead, and says that it is not in mm.
class GridAxis
{
public:
    GridAxis(double offsetMm, double scaleMm);

    /// Samples as they are counted.
    [[nodiscard]] static GridAxis OfPixels()
    {
        return {0, 1};
    }

    [[nodiscard]] bool IsInMm() const
    {
        return isInMm;
    }

    [[nodiscard]] double Scale() const
    {
        return scale;
    }

    [[nodiscard]] double At(double index) const
    {
        return offset + scale * index;
    }

    /// What `count` samples take, each half a step on both sides, rising.
    [[nodiscard]] Range Extent(std::size_t count) const;

    /// The same of the values from index `first` to `last`, without anything around them.
    [[nodiscard]] Range Between(double first, double last) const;

    /// The samples, of `count`, that stand for a piece of the axis: those within it, its low end included; if there are
    /// none, the one in whose step its middle lies. Empty outside the grid.
    struct Samples
    {
        std::size_t first = 0;
        std::size_t end = 0;

        [[nodiscard]] bool IsEmpty() const
        {
            return first >= end;
        }
    };

    [[nodiscard]] Samples SamplesIn(const Range& piece, std::size_t count) const;

private:
    double offset;
    double scale;
    bool isInMm = true;
};

/// The samples for each of `pieces` even parts of a range.
[[nodiscard]] std::vector<GridAxis::Samples> SamplesOfParts(const GridAxis& axis, std::size_t count, const Range& range,
                                                            std::size_t pieces);
} // namespace Mu::Host
