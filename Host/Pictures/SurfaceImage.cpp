#include <Host/Pictures/SurfaceImage.h>

#include <TaVision/TvSurfaceMsg.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>

namespace Mu::Host
{
namespace
{
constexpr float invalid = std::numeric_limits<float>::quiet_NaN();
constexpr float outside = std::numeric_limits<float>::infinity();

constexpr std::size_t colourSteps = 256;
constexpr std::size_t lightSteps = 33;
constexpr double mostLight = 0.13;

/// Colours by height and light, made once for a picture: a pixel is then a look-up.
class ColourTable
{
public:
    ColourTable()
    {
        for (std::size_t i = 0; i < table.size(); ++i)
        {
            const double share = static_cast<double>(i / lightSteps) / (colourSteps - 1);
            const double light = static_cast<double>(i % lightSteps) / (lightSteps - 1) * 2 - 1;
            table[i] = NumberOf(HeightColour(share, mostLight * light));
        }
    }

    /// @param share  from 0 to 1
    /// @param light  from -1 to 1
    [[nodiscard]] std::uint32_t At(double share, double light) const
    {
        const auto height = static_cast<std::size_t>(share * (colourSteps - 1) + 0.5);
        const auto lit = static_cast<std::size_t>((light + 1) / 2 * (lightSteps - 1) + 0.5);
        return table[height * lightSteps + lit];
    }

private:
    std::array<std::uint32_t, colourSteps * lightSteps> table;
};

/// Adds up the valid samples of a row by the pixels that they belong to.
struct RowSums
{
    explicit RowSums(std::size_t pixels)
        : sums(pixels)
        , counts(pixels)
    {
    }

    void Add(const z16s* row, std::span<const GridAxis::Samples> columns)
    {
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            for (std::size_t j = columns[i].first; j < columns[i].end; ++j)
            {
                const bool isValid = row[j] != zNULL_16S;
                sums[i] += isValid ? row[j] : 0;
                counts[i] += isValid ? 1 : 0;
            }
        }
    }

    void StoreMeans(std::span<const GridAxis::Samples> columns, float* means)
    {
        for (std::size_t i = 0; i < columns.size(); ++i)
        {
            means[i] = columns[i].IsEmpty() ? outside
                       : counts[i] == 0     ? invalid
                                            : static_cast<float>(static_cast<double>(sums[i]) / counts[i]);
        }
    }

    std::vector<std::int64_t> sums;
    std::vector<std::int32_t> counts;
};

std::size_t Pixels(double length)
{
    return static_cast<std::size_t>(std::max(1.0, std::round(length)));
}

/// Pixels of the picture per sample, at least one.
std::size_t PixelsPerSample(double extent, const GridAxis& axis, std::size_t pixels)
{
    const double perSample = std::abs(axis.Scale() / extent) * static_cast<double>(pixels);
    return Pixels(std::min(perSample, static_cast<double>(pixels)));
}
} // namespace

/// Heights in counts, a pixel each, the upper row first.
struct SurfaceImage::Field
{
    Field(const View& view, const SurfaceImage& image, float value)
        : columns(Pixels(view.Frame().width))
        , rows(Pixels(view.Frame().height))
        , stepX(PixelsPerSample(view.Across().Extent(), image.x, columns))
        , stepY(PixelsPerSample(view.Up().Extent(), image.y, rows))
        , values(columns * rows, value)
    {
    }

    [[nodiscard]] float At(std::size_t column, std::size_t row) const
    {
        return values[row * columns + column];
    }

    /// How much a place is turned towards the upper left, in counts; 0 where a neighbour is missing.
    [[nodiscard]] float Slope(std::size_t column, std::size_t row) const
    {
        const float here = At(column, row);
        const float left = At(column < stepX ? column : column - stepX, row);
        const float above = At(column, row < stepY ? row : row - stepY);
        const float slope = 2 * here - left - above;
        return std::isfinite(slope) ? slope : 0;
    }

    [[nodiscard]] double MeanSlope() const
    {
        double sum = 0;
        std::size_t count = 0;
        for (std::size_t row = 0; row < rows; ++row)
        {
            for (std::size_t column = 0; column < columns; ++column)
            {
                const double slope = std::abs(Slope(column, row));
                sum += slope;
                count += slope > 0 ? 1 : 0;
            }
        }
        return count == 0 ? 1 : sum / static_cast<double>(count);
    }

    std::size_t columns;
    std::size_t rows;
    std::size_t stepX;
    std::size_t stepY;
    std::vector<float> values;
};

std::uint32_t InvalidPixel(std::size_t column, std::size_t row)
{
    constexpr std::size_t stripe = 5;
    return (column + row) / stripe % 2 == 0 ? 0xFFF4F4F6U : 0xFFC3C6CEU;
}

SurfaceImage::SurfaceImage(void* message)
    : surface(message)
    , width(TvSurfaceMsg_Width(message))
    , length(TvSurfaceMsg_Length(message))
    , x(TvSurfaceMsg_Offset(message).x, TvSurfaceMsg_Scale(message).x)
    , y(TvSurfaceMsg_Offset(message).y, TvSurfaceMsg_Scale(message).y)
    , z(TvSurfaceMsg_Offset(message).z, TvSurfaceMsg_Scale(message).z)
{
    counts = {std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};
    if (TvSurfaceMsg_IsResampled(surface))
    {
        LookAtGrid();
    }
    else
    {
        LookAtPoints();
    }
    if (validCount > 0)
    {
        heights = z.Between(counts.low, counts.high);
    }
}

void SurfaceImage::LookAtGrid()
{
    hasExtent = width > 0 && length > 0;
    across = x.Extent(width);
    up = y.Extent(length);
    const auto* const points = static_cast<const z16s*>(TvSurfaceMsg_Points(surface));
    // The null height is the lowest number, so that it is never the highest and one compare finds the lowest.
    z16s lowest = std::numeric_limits<z16s>::max();
    z16s highest = zNULL_16S;
    for (const z16s height : std::span(points, hasExtent ? width * length : 0))
    {
        const bool isValid = height != zNULL_16S;
        validCount += isValid ? 1U : 0U;
        highest = std::max(highest, height);
        lowest = isValid ? std::min(lowest, height) : lowest;
    }
    counts = {static_cast<double>(lowest), static_cast<double>(highest)};
}

void SurfaceImage::LookAtPoints()
{
    const auto* const points = static_cast<const zPoint3d16s*>(TvSurfaceMsg_Points(surface));
    Range columns = counts;
    Range rows = counts;
    const auto widen = [](Range& range, z16s value) {
        range.low = std::min<double>(range.low, value);
        range.high = std::max<double>(range.high, value);
    };
    for (const zPoint3d16s& point : std::span(points, points == nullptr ? 0 : width * length))
    {
        if (point.z != zNULL_16S)
        {
            widen(columns, point.x);
            widen(rows, point.y);
            widen(counts, point.z);
            ++validCount;
        }
    }
    hasExtent = validCount > 0;
    if (hasExtent)
    {
        across = x.Between(columns.low - 0.5, columns.high + 0.5);
        up = y.Between(rows.low - 0.5, rows.high + 0.5);
    }
}

SurfaceImage::Field SurfaceImage::GridField(const View& view) const
{
    Field field(view, *this, outside);
    const auto columns = SamplesOfParts(x, width, view.Across(), field.columns);
    const auto rows = SamplesOfParts(y, length, {view.Up().high, view.Up().low}, field.rows);
    for (std::size_t row = 0; row < field.rows; ++row)
    {
        RowSums sums(field.columns);
        for (std::size_t j = rows[row].first; j < rows[row].end; ++j)
        {
            sums.Add(static_cast<const z16s*>(TvSurfaceMsg_PointsAt(surface, j, 0)), columns);
        }
        if (!rows[row].IsEmpty())
        {
            sums.StoreMeans(columns, field.values.data() + row * field.columns);
        }
    }
    return field;
}

SurfaceImage::Field SurfaceImage::PointField(const View& view) const
{
    Field field(view, *this, invalid);
    const double inExtent = std::abs(across.Extent() * up.Extent() / (view.Across().Extent() * view.Up().Extent()));
    const double perPoint = inExtent * static_cast<double>(field.values.size()) / static_cast<double>(validCount);
    constexpr double largest = 64;
    const auto side = static_cast<std::size_t>(std::clamp(std::round(std::sqrt(perPoint)), 1.0, largest));
    field.stepX = side;
    field.stepY = side;
    const double signZ = z.Scale() < 0 ? -1 : 1;
    const auto* const points = static_cast<const zPoint3d16s*>(TvSurfaceMsg_Points(surface));
    const auto edge = [side](double place, double begin, std::size_t most) {
        return static_cast<std::size_t>(std::clamp(std::floor(place - begin) - static_cast<double>((side - 1) / 2), 0.0,
                                                   static_cast<double>(most)));
    };
    for (const zPoint3d16s& point : std::span(points, width * length))
    {
        if (point.z == zNULL_16S)
        {
            continue;
        }
        const Place place = view.OnPage(x.At(point.x), y.At(point.y));
        const std::size_t left = edge(place.x, view.Frame().left, field.columns);
        const std::size_t top = edge(place.y, view.Frame().top, field.rows);
        for (std::size_t row = top; row < std::min(top + side, field.rows); ++row)
        {
            for (std::size_t column = left; column < std::min(left + side, field.columns); ++column)
            {
                float& seen = field.values[row * field.columns + column];
                seen = std::isnan(seen) || signZ * point.z > signZ * seen ? static_cast<float>(point.z) : seen;
            }
        }
    }
    return field;
}

PixelImage SurfaceImage::Draw(const View& view) const
{
    const Field field = TvSurfaceMsg_IsResampled(surface) ? GridField(view) : PointField(view);
    const ColourTable colours;
    PixelImage image{field.columns, field.rows, std::vector<std::uint32_t>(field.values.size())};
    const double meanSlope = field.MeanSlope();
    const double signZ = z.Scale() < 0 ? -1 : 1;
    const double extent = counts.Extent() > 0 ? counts.Extent() : 1;
    for (std::size_t i = 0; i < field.values.size(); ++i)
    {
        const std::size_t column = i % field.columns;
        const std::size_t row = i / field.columns;
        if (std::isnan(field.values[i]))
        {
            image.pixels[i] = InvalidPixel(column, row);
        }
        else if (field.values[i] != outside)
        {
            const double share = std::clamp((static_cast<double>(field.values[i]) - counts.low) / extent, 0.0, 1.0);
            const double slope = signZ * field.Slope(column, row) / (2 * meanSlope);
            image.pixels[i] = colours.At(signZ < 0 ? 1 - share : share, slope / std::hypot(1, slope));
        }
    }
    return image;
}

std::string SurfaceImage::Sampling(const View& view) const
{
    if (!TvSurfaceMsg_IsResampled(surface))
    {
        return fmt::format("{} points put onto the grid of the picture, the highest on top", validCount);
    }
    const auto perPixel = [](double extent, const GridAxis& axis, double pixels) {
        return std::abs(extent / axis.Scale()) / pixels;
    };
    const double perColumn = perPixel(view.Across().Extent(), x, view.Frame().width);
    const double perRow = perPixel(view.Up().Extent(), y, view.Frame().height);
    return perColumn <= 1 && perRow <= 1
               ? std::string("each pixel shows the sample in whose cell it lies")
               : fmt::format("each pixel shows the mean of the valid samples in it, of {:.1f} x {:.1f}",
                             std::max(1.0, perColumn), std::max(1.0, perRow));
}
} // namespace Mu::Host
