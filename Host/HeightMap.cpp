#include <Host/HeightMap.h>

#include <Host/Error.h>
#include <Host/SampleLevels.h>
#include <Host/Transposed.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Mu::Host
{
namespace
{
constexpr std::int32_t highestCount = SampleLevels::highestCount;
constexpr std::int32_t lowestCount = SampleLevels::lowestCount;
constexpr std::int64_t countSpan = std::int64_t{highestCount} - lowestCount;

// The two answers to "is sample i valid": types of their own, so that a map without invalid samples pays no look-up.
struct AllValid
{
    bool operator()(std::size_t) const
    {
        return true;
    }
};

struct ByMask
{
    const std::uint8_t* mask;

    bool operator()(std::size_t index) const
    {
        return mask[index] != 0;
    }
};

template <typename Sample>
bool IsNumber(Sample sample)
{
    if constexpr (std::is_floating_point_v<Sample>)
    {
        return std::isfinite(sample);
    }
    return true;
}

template <typename Sample>
struct SampleRange
{
    Sample lowest = std::numeric_limits<Sample>::max();
    Sample highest = std::numeric_limits<Sample>::lowest();
    std::size_t count = 0;
};

template <typename Sample, typename Validity>
SampleRange<Sample> FindRange(std::span<const Sample> samples, Validity isValid)
{
    SampleRange<Sample> range;
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const bool usable = isValid(i) && IsNumber(samples[i]);
        range.lowest = usable ? std::min(range.lowest, samples[i]) : range.lowest;
        range.highest = usable ? std::max(range.highest, samples[i]) : range.highest;
        range.count += usable ? 1 : 0;
    }
    return range;
}

void RequireUsableGrid(const SampleGrid& grid, std::size_t sampleCount, std::size_t maskCount)
{
    const bool whole =
        grid.rows == 0 ? sampleCount == 0 : sampleCount / grid.rows == grid.columns && sampleCount % grid.rows == 0;
    if (!whole || (maskCount != 0 && maskCount != sampleCount))
    {
        throw Error(grid.file, "size",
                    fmt::format("{} samples and {} marks of validity do not make {} columns x {} rows", sampleCount,
                                maskCount, grid.columns, grid.rows),
                    "Give columns * rows samples, and as many marks or none");
    }
    for (const double spacing : {grid.spacingMm.x, grid.spacingMm.y, grid.spacingMm.z})
    {
        if (!std::isfinite(spacing) || spacing <= 0)
        {
            throw Error(grid.file, "spacing", fmt::format("{} mm is no spacing", spacing),
                        "Give a number greater than 0");
        }
    }
}

void RequireFinitePositions(const std::filesystem::path& file, const HeightMap& map)
{
    const auto end = [](std::size_t count) { return static_cast<double>(std::max<std::size_t>(count, 1) - 1); };
    const double ends[] = {map.offsetMm.x,
                           map.offsetMm.x + map.scaleMm.x * end(map.width),
                           map.offsetMm.y,
                           map.offsetMm.y + map.scaleMm.y * end(map.length),
                           map.offsetMm.z + map.scaleMm.z * lowestCount,
                           map.offsetMm.z + map.scaleMm.z * highestCount};
    if (!std::ranges::all_of(ends, [](double position) { return std::isfinite(position); }))
    {
        throw Error(file, "positions in mm",
                    fmt::format("offset {}, {}, {} and spacing {}, {}, {} lead beyond the range of numbers",
                                map.offsetMm.x, map.offsetMm.y, map.offsetMm.z, map.scaleMm.x, map.scaleMm.y,
                                map.scaleMm.z),
                    "Correct the spacing, the offset or the heights");
    }
}

/// The whole number to take off counts so that they fit 16 bits.
std::int64_t ExactShift(std::int64_t lowest, std::int64_t highest)
{
    // The first two suit signed and unsigned 16-bit scans whatever their heights, so that all scans of a sensor share
    // one offset; only what fits neither gets a shift of its own.
    for (const std::int64_t shift : {std::int64_t{0}, std::int64_t{highestCount} + 1})
    {
        if (lowest - shift >= lowestCount && highest - shift <= highestCount)
        {
            return shift;
        }
    }
    return lowest - lowestCount;
}

template <typename Sample, typename Validity>
void KeepCounts(HeightMap& map, const SampleRange<Sample>& range, std::span<const Sample> samples, Validity isValid)
{
    const std::int64_t lowest = range.lowest;
    const std::int64_t highest = range.highest;
    const std::int64_t shift = ExactShift(lowest, highest);
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const std::int64_t count = isValid(i) ? samples[i] - shift : HeightMap::nullHeight;
        map.heights[i] = static_cast<std::int16_t>(count);
    }
    map.offsetMm.z += map.scaleMm.z * static_cast<double>(shift);
    const std::string change = shift == 0 ? "unchanged" : fmt::format("exactly, less {} each", shift);
    map.notes.push_back(fmt::format("Heights are the file's counts from {} to {}, {}; a count is {} mm.", lowest,
                                    highest, change, map.scaleMm.z));
}

/// Lowest and highest height in mm, before the offset.
struct HeightRange
{
    double lowest;
    double highest;
};

template <typename Sample, typename Validity>
void RoundHeights(HeightMap& map, const SampleRange<Sample>& range, std::span<const Sample> samples, Validity isValid)
{
    const double spacing = map.scaleMm.z;
    const HeightRange inMm{static_cast<double>(range.lowest) * spacing, static_cast<double>(range.highest) * spacing};
    const SampleLevels levels(inMm.lowest, inMm.highest, spacing);
    map.scaleMm.z = levels.Scale();
    map.offsetMm.z += levels.Offset();
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const bool usable = isValid(i) && IsNumber(samples[i]);
        const std::int16_t count = levels.CountOf(usable ? static_cast<double>(samples[i]) * spacing : levels.Offset());
        map.heights[i] = usable ? count : HeightMap::nullHeight;
    }
    map.notes.push_back(fmt::format("Heights from {} to {} mm (before the offset) were rounded to steps of {} mm.",
                                    inMm.lowest, inMm.highest, map.scaleMm.z));
}

template <typename Sample, typename Validity>
void FillHeights(const SampleGrid& grid, HeightMap& map, std::span<const Sample> samples, Validity isValid)
{
    const auto range = FindRange(samples, isValid);
    map.validCount = range.count;
    if (range.count == 0)
    {
        std::ranges::fill(map.heights, HeightMap::nullHeight);
        map.notes.push_back("The scan has no valid sample at all.");
        return;
    }
    if constexpr (std::is_integral_v<Sample>)
    {
        if (std::int64_t{range.highest} - std::int64_t{range.lowest} <= countSpan)
        {
            return KeepCounts(map, range, samples, isValid);
        }
    }
    const double lowestMm = static_cast<double>(range.lowest) * grid.spacingMm.z;
    const double highestMm = static_cast<double>(range.highest) * grid.spacingMm.z;
    if (!std::isfinite(highestMm - lowestMm))
    {
        throw Error(grid.file, "heights",
                    fmt::format("heights from {} to {}, a unit being {} mm, span more than numbers can hold",
                                range.lowest, range.highest, grid.spacingMm.z),
                    "Mark wrong heights as invalid, or correct the spacing of z");
    }
    RoundHeights(map, range, samples, isValid);
}

} // namespace

template <typename Sample>
HeightMap BuildHeightMap(SampleGrid grid, std::span<const Sample> samples, std::span<const std::uint8_t> valid)
{
    RequireUsableGrid(grid, samples.size(), valid.size());
    HeightMap map;
    map.offsetMm = grid.offsetMm;
    map.scaleMm = grid.spacingMm;
    map.notes = std::move(grid.notes);
    map.heights.resize(samples.size());
    if (valid.empty())
    {
        FillHeights(grid, map, samples, AllValid{});
    }
    else
    {
        FillHeights(grid, map, samples, ByMask{valid.data()});
    }
    map.width = grid.columns;
    map.length = grid.rows;
    if (grid.alongX == ImageAxis::Rows)
    {
        map.heights = Transposed(map.heights, grid.columns, grid.rows);
        std::swap(map.width, map.length);
    }
    map.notes.push_back(fmt::format("{} of {} samples are invalid.", samples.size() - map.validCount, samples.size()));
    RequireFinitePositions(grid.file, map);
    return map;
}

template HeightMap BuildHeightMap(SampleGrid, std::span<const std::int16_t>, std::span<const std::uint8_t>);
template HeightMap BuildHeightMap(SampleGrid, std::span<const std::uint16_t>, std::span<const std::uint8_t>);
template HeightMap BuildHeightMap(SampleGrid, std::span<const std::int32_t>, std::span<const std::uint8_t>);
template HeightMap BuildHeightMap(SampleGrid, std::span<const std::uint32_t>, std::span<const std::uint8_t>);
template HeightMap BuildHeightMap(SampleGrid, std::span<const float>, std::span<const std::uint8_t>);
template HeightMap BuildHeightMap(SampleGrid, std::span<const double>, std::span<const std::uint8_t>);
} // namespace Mu::Host
