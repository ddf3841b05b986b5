#pragma once

#include <Host/Pictures/Canvas.h>
#include <Host/Pictures/GridAxis.h>
#include <Host/Pictures/View.h>

#include <zApi/zTypes.h>

#include <optional>
#include <string>

namespace Mu::Host
{
/// A surface as it is drawn: heights as colours, light from the upper left.
///
/// A pixel of the picture shows the mean of the valid samples that lie in it, or the sample in whose cell it lies; it
/// is invalid if none of them is valid. Points of a surface that is not resampled stand for squares about as large as
/// the distance of points; where several lie in a pixel, the highest is seen. The light does not depend on the scale of
/// heights: the mean slope is lit moderately.
class SurfaceImage
{
public:
    /// @param message  a TvSurfaceMsg, which outlives this
    explicit SurfaceImage(void* message);

    /// Whether there is anything to show a place of: samples on a grid, or valid points.
    [[nodiscard]] bool HasExtent() const
    {
        return hasExtent;
    }

    /// Whether x and y are in mm; else they count samples.
    [[nodiscard]] bool IsInMm() const
    {
        return x.IsInMm() && y.IsInMm();
    }

    /// What its samples take.
    [[nodiscard]] const Range& Across() const
    {
        return across;
    }

    [[nodiscard]] const Range& Up() const
    {
        return up;
    }

    /// The axis of heights, and the lowest and the highest valid one; none without valid samples.
    [[nodiscard]] const GridAxis& HeightAxis() const
    {
        return z;
    }

    [[nodiscard]] const std::optional<Range>& Heights() const
    {
        return heights;
    }

    /// The pixels of the frame of a view.
    [[nodiscard]] PixelImage Draw(const View& view) const;

    /// How samples became pixels, a sentence for people.
    [[nodiscard]] std::string Sampling(const View& view) const;

private:
    struct Field;

    void LookAtGrid();
    void LookAtPoints();
    [[nodiscard]] Field GridField(const View& view) const;
    [[nodiscard]] Field PointField(const View& view) const;

    void* surface;
    std::size_t width;
    std::size_t length;
    GridAxis x;
    GridAxis y;
    GridAxis z;
    bool hasExtent = false;
    Range across;
    Range up;
    Range counts; ///< of valid heights
    std::size_t validCount = 0;
    std::optional<Range> heights;
};

/// The pattern of what was not measured, at a pixel: stripes, which no height has.
[[nodiscard]] std::uint32_t InvalidPixel(std::size_t column, std::size_t row);
} // namespace Mu::Host
