#pragma once

#include <Host/Pictures/Canvas.h>
#include <Host/Pictures/View.h>

#include <optional>
#include <string>

namespace Mu::Host
{
/// An image as it is drawn: row 0 on top, pixel (column, row) centred on x = column, y = row, which is where graphics
/// of these coordinates come to lie. A pixel of the picture shows the mean of the image's pixels in it, or the one in
/// whose square it lies.
class ImagePixels
{
public:
    /// @param message  a TvImageMsg, which outlives this
    explicit ImagePixels(void* message);

    [[nodiscard]] bool HasExtent() const
    {
        return width > 0 && height > 0;
    }

    /// Whether pixels of this format are drawn: those of the platform's own. A mosaic is drawn as grey.
    [[nodiscard]] bool IsDrawn() const;

    [[nodiscard]] Range Across() const;

    /// From the lower edge to the upper one, so downwards.
    [[nodiscard]] Range Up() const;

    /// The pixels of the frame of a view. 16-bit pixels are drawn from black for 0 to white for the brightest.
    [[nodiscard]] PixelImage Draw(const View& view) const;

    /// What there is to say on the format, a sentence for people; empty if there is nothing.
    [[nodiscard]] std::string Note() const;

private:
    struct Sum;

    [[nodiscard]] Sum SumOf(const void* row, std::size_t column) const;

    void* image;
    std::size_t width;
    std::size_t height;
    double brightest = 255; ///< of 16-bit pixels
};
} // namespace Mu::Host
