#include <Host/Pictures/ImagePixels.h>

#include <Host/Pictures/GridAxis.h>

#include <TaVision/TvImageMsg.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <span>

namespace Mu::Host
{
/// Of pixels, each part from 0 to 255.
struct ImagePixels::Sum
{
    double red = 0;
    double green = 0;
    double blue = 0;
    double count = 0;

    void Add(const Sum& other)
    {
        red += other.red;
        green += other.green;
        blue += other.blue;
        count += other.count;
    }

    [[nodiscard]] std::uint32_t Mean() const
    {
        const auto part = [this](double sum) { return static_cast<std::uint32_t>(std::lround(sum / count)); };
        return 0xFF000000U | part(red) << 16U | part(green) << 8U | part(blue);
    }
};

ImagePixels::ImagePixels(void* message)
    : image(message)
    , width(TvImageMsg_Width(message))
    , height(TvImageMsg_Height(message))
{
    const auto* const pixels = static_cast<const z16u*>(TvImageMsg_Pixels(message));
    if (TvImageMsg_PixelFormat(message) == TvPIXEL_FORMAT_GREY16 && HasExtent())
    {
        brightest = std::max<double>(1, *std::ranges::max_element(std::span(pixels, width * height)));
    }
}

bool ImagePixels::IsDrawn() const
{
    return TvPixelFormat_IsNative(TvImageMsg_PixelFormat(image));
}

Range ImagePixels::Across() const
{
    return GridAxis::OfPixels().Extent(width);
}

Range ImagePixels::Up() const
{
    const Range rows = GridAxis::OfPixels().Extent(height);
    return {rows.high, rows.low};
}

ImagePixels::Sum ImagePixels::SumOf(const void* row, std::size_t column) const
{
    const auto grey = [](double value) -> Sum { return {value, value, value, 1}; };
    switch (TvImageMsg_PixelFormat(image))
    {
    case TvPIXEL_FORMAT_GREY8:
    case TvPIXEL_FORMAT_MOSAIC8:
        return grey(static_cast<const z8u*>(row)[column]);
    case TvPIXEL_FORMAT_MASK8:
        return grey(static_cast<const z8u*>(row)[column] == 0 ? 0 : 255);
    case TvPIXEL_FORMAT_GREY16:
        return grey(255 * static_cast<const z16u*>(row)[column] / brightest);
    case TvPIXEL_FORMAT_BGRX8: {
        const zRgb& pixel = static_cast<const zRgb*>(row)[column];
        return {static_cast<double>(pixel.r), static_cast<double>(pixel.g), static_cast<double>(pixel.b), 1};
    }
    default: {
        const zRgb24& pixel = static_cast<const zRgb24*>(row)[column];
        return {static_cast<double>(pixel.r), static_cast<double>(pixel.g), static_cast<double>(pixel.b), 1};
    }
    }
}

PixelImage ImagePixels::Draw(const View& view) const
{
    PixelImage drawn{static_cast<std::size_t>(view.Frame().width), static_cast<std::size_t>(view.Frame().height), {}};
    drawn.pixels.resize(drawn.width * drawn.height);
    if (!IsDrawn() || !HasExtent())
    {
        return drawn;
    }
    const GridAxis axis = GridAxis::OfPixels();
    const auto columns = SamplesOfParts(axis, width, view.Across(), drawn.width);
    const auto rows = SamplesOfParts(axis, height, {view.Up().high, view.Up().low}, drawn.height);
    for (std::size_t i = 0; i < drawn.pixels.size(); ++i)
    {
        Sum sum;
        const GridAxis::Samples& inColumn = columns[i % drawn.width];
        const GridAxis::Samples& inRow = rows[i / drawn.width];
        for (std::size_t row = inRow.first; row < inRow.end; ++row)
        {
            const void* const pixels = TvDataMsg_Ranges(image, row, 0);
            for (std::size_t column = inColumn.first; column < inColumn.end; ++column)
            {
                sum.Add(SumOf(pixels, column));
            }
        }
        drawn.pixels[i] = sum.count > 0 ? sum.Mean() : 0;
    }
    return drawn;
}

std::string ImagePixels::Note() const
{
    const TvPixelFormat format = TvImageMsg_PixelFormat(image);
    switch (format)
    {
    case TvPIXEL_FORMAT_GREY16:
        return fmt::format("16-bit pixels, white is {:.0f}, the brightest", brightest);
    case TvPIXEL_FORMAT_MOSAIC8:
        return "raw samples behind a colour filter, drawn as grey";
    default:
        return IsDrawn() ? "" : fmt::format("pixels of format 0x{:X} are not drawn", static_cast<z32u>(format));
    }
}
} // namespace Mu::Host
