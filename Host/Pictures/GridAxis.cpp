#include <Host/Pictures/GridAxis.h>

#include <algorithm>
#include <cmath>

namespace Mu::Host
{
namespace
{
bool IsOfUse(double offset, double scale)
{
    constexpr double largest = 1e30;
    constexpr double leastShare = 1e-12;
    const double step = std::abs(scale);
    return std::isfinite(offset) && std::isfinite(scale) && step > 1 / largest && step < largest &&
           std::abs(offset) < largest && step > leastShare * std::abs(offset);
}

Range Rising(double a, double b)
{
    return {std::min(a, b), std::max(a, b)};
}

std::size_t Index(double place, std::size_t count)
{
    return static_cast<std::size_t>(std::clamp(place, 0.0, static_cast<double>(count)));
}
} // namespace

GridAxis::GridAxis(double offsetMm, double scaleMm)
    : offset(offsetMm)
    , scale(scaleMm)
{
    if (!IsOfUse(offset, scale))
    {
        offset = 0;
        scale = 1;
        isInMm = false;
    }
}

Range GridAxis::Extent(std::size_t count) const
{
    return Rising(At(-0.5), At(static_cast<double>(count) - 0.5));
}

Range GridAxis::Between(double first, double last) const
{
    return Rising(At(first), At(last));
}

GridAxis::Samples GridAxis::SamplesIn(const Range& piece, std::size_t count) const
{
    const Range indices = Rising((piece.low - offset) / scale, (piece.high - offset) / scale);
    const Samples within{Index(std::ceil(indices.low), count), Index(std::ceil(indices.high), count)};
    if (!within.IsEmpty())
    {
        return within;
    }
    const double nearest = std::round(indices.Middle());
    if (!(nearest >= 0 && nearest < static_cast<double>(count)))
    {
        return {};
    }
    return {Index(nearest, count), Index(nearest, count) + 1};
}

std::vector<GridAxis::Samples> SamplesOfParts(const GridAxis& axis, std::size_t count, const Range& range,
                                              std::size_t pieces)
{
    std::vector<GridAxis::Samples> samples;
    const double step = range.Extent() / static_cast<double>(pieces);
    for (std::size_t i = 0; i < pieces; ++i)
    {
        const double begin = range.low + step * static_cast<double>(i);
        samples.push_back(axis.SamplesIn({begin, begin + step}, count));
    }
    return samples;
}
} // namespace Mu::Host
