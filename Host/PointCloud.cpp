#include <Host/PointCloud.h>

#include <Host/Error.h>
#include <Host/SampleLevels.h>
#include <Host/ScanFile.h>
#include <Host/ScanOptions.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

namespace Mu::Host
{
namespace
{
constexpr double notMeasured = std::numeric_limits<double>::quiet_NaN();

bool IsFinite(const Vector3& point)
{
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

/// The point turned about x until `up` is z.
Vector3 Upright(const Vector3& point, UpAxis up)
{
    switch (up)
    {
    case UpAxis::Z:
        break;
    case UpAxis::MinusZ:
        return {point.x, -point.y, -point.z};
    case UpAxis::Y:
        return {point.x, -point.z, point.y};
    case UpAxis::MinusY:
        return {point.x, point.z, -point.y};
    }
    return point;
}

struct Extent
{
    double lowest = std::numeric_limits<double>::max();
    double highest = std::numeric_limits<double>::lowest();

    void Include(double value)
    {
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
    }
};

/// Points in mm, upright, and where the finite ones lie.
struct Placed
{
    PointCloud cloud;
    Extent x;
    Extent y;
    Extent z;
    std::size_t validCount = 0;
};

[[noreturn]] void RefusePositions(const std::filesystem::path& file, double mmPerUnit)
{
    throw Error(file, "positions in mm",
                fmt::format("some points, a unit being {} mm, lie beyond the range of numbers", mmPerUnit),
                "Correct the unit, or remove wrong points");
}

void RequireUsableExtents(const Placed& placed, double mmPerUnit)
{
    for (const Extent& extent : {placed.x, placed.y, placed.z})
    {
        if (placed.validCount > 0 && !std::isfinite(extent.highest - extent.lowest))
        {
            RefusePositions(placed.cloud.file, mmPerUnit);
        }
    }
}

Placed Place(PointCloud cloud, const CloudOptions& options)
{
    Placed placed{std::move(cloud), {}, {}, {}};
    for (Vector3& point : placed.cloud.points)
    {
        if (!IsFinite(point))
        {
            point = {notMeasured, notMeasured, notMeasured};
            continue;
        }
        const Vector3 upright = Upright(point, options.up);
        point = {upright.x * options.mmPerUnit, upright.y * options.mmPerUnit, upright.z * options.mmPerUnit};
        placed.x.Include(point.x);
        placed.y.Include(point.y);
        placed.z.Include(point.z);
        ++placed.validCount;
    }
    RequireUsableExtents(placed, options.mmPerUnit);
    return placed;
}

SampleLevels LevelsOf(const Extent& extent, std::size_t validCount)
{
    return validCount == 0 ? SampleLevels(0, 0, 1) : SampleLevels(extent.lowest, extent.highest, 1);
}

PointMap MakePointMap(Placed placed)
{
    const SampleLevels x = LevelsOf(placed.x, placed.validCount);
    const SampleLevels y = LevelsOf(placed.y, placed.validCount);
    const SampleLevels z = LevelsOf(placed.z, placed.validCount);
    PointMap map;
    map.width = placed.cloud.width;
    map.length = placed.cloud.height;
    map.offsetMm = {x.Offset(), y.Offset(), z.Offset()};
    map.scaleMm = {x.Scale(), y.Scale(), z.Scale()};
    map.validCount = placed.validCount;
    map.intensity = std::move(placed.cloud.intensity);
    map.notes = std::move(placed.cloud.notes);
    constexpr PointMap::Point null{PointMap::nullCoordinate, PointMap::nullCoordinate, PointMap::nullCoordinate};
    map.points.resize(placed.cloud.points.size(), null);
    for (std::size_t i = 0; i < map.points.size(); ++i)
    {
        const Vector3& point = placed.cloud.points[i];
        map.points[i] =
            IsFinite(point) ? PointMap::Point{x.CountOf(point.x), y.CountOf(point.y), z.CountOf(point.z)} : null;
    }
    map.notes.push_back(fmt::format("The cloud has {} columns and {} rows; x, y and z were rounded to steps of {}, {} "
                                    "and {} mm.",
                                    map.width, map.length, map.scaleMm.x, map.scaleMm.y, map.scaleMm.z));
    map.notes.push_back(
        fmt::format("{} of {} points are invalid.", map.points.size() - map.validCount, map.points.size()));
    return map;
}

/// The nodes along one axis of a grid: from `first` on, in units of the spacing.
class Nodes
{
public:
    Nodes(const Extent& extent, double nodeSpacing)
        : spacing(nodeSpacing)
        , first(NumberOf(extent.lowest))
        , count(NumberOf(extent.highest) - first + 1)
    {
    }

    /// How many there are, which may be more than any integer, or not finite.
    [[nodiscard]] double Count() const
    {
        return count;
    }

    [[nodiscard]] double FirstMm() const
    {
        return first * spacing;
    }

    /// The index of the node of a place within the extent.
    [[nodiscard]] std::size_t IndexOf(double place) const
    {
        return static_cast<std::size_t>(NumberOf(place) - first);
    }

private:
    [[nodiscard]] double NumberOf(double place) const
    {
        return std::floor(place / spacing + 0.5);
    }

    double spacing;
    double first;
    double count;
};

void RequireUsableGrid(const Placed& placed, const Nodes& columns, const Nodes& rows)
{
    // Two stray points must not claim the memory of a large scan.
    constexpr double mostPerPoint = 256;
    constexpr double alwaysUsable = std::uint64_t{1} << 20U;
    const double most = std::clamp(mostPerPoint * static_cast<double>(placed.validCount), alwaysUsable,
                                   static_cast<double>(maxSampleCount));
    const double sides[] = {columns.Count(), rows.Count()};
    // Not finite counts are no usable ones either.
    const bool isUsable =
        std::ranges::all_of(sides, [](double side) { return side <= maxSideLength; }) && sides[0] * sides[1] <= most;
    if (!isUsable)
    {
        throw Error(placed.cloud.file, R"("spacing")",
                    fmt::format("a grid of {} x {} samples is too large for {} points (at most {} in all, {} along a "
                                "side)",
                                sides[0], sides[1], placed.validCount, most, maxSideLength),
                    "Give a coarser spacing, check the unit, or remove points that lie far off");
    }
}

/// Heights of a grid, NaN where there is none, and intensities, if there are any.
struct Cells
{
    std::vector<double> heights;
    std::vector<std::uint8_t> intensity;
};

Cells FillCells(const PointCloud& cloud, const Nodes& columns, const Nodes& rows)
{
    const auto width = static_cast<std::size_t>(columns.Count());
    const std::size_t count = width * static_cast<std::size_t>(rows.Count());
    Cells cells;
    cells.heights.resize(count, notMeasured);
    cells.intensity.resize(cloud.intensity.empty() ? 0 : count);
    for (std::size_t i = 0; i < cloud.points.size(); ++i)
    {
        const Vector3& point = cloud.points[i];
        if (!IsFinite(point))
        {
            continue;
        }
        const std::size_t cell = rows.IndexOf(point.y) * width + columns.IndexOf(point.x);
        // True for the first point of a cell, too: nothing is as high as NaN.
        if (!(cells.heights[cell] >= point.z))
        {
            cells.heights[cell] = point.z;
            if (!cells.intensity.empty())
            {
                cells.intensity[cell] = cloud.intensity[i];
            }
        }
    }
    return cells;
}

HeightMap MakeHeightMap(Placed placed, const CloudOptions::Spacing& spacing)
{
    if (placed.validCount == 0)
    {
        throw Error(placed.cloud.file, "points", "no point has finite coordinates, so the extent of a grid is unknown",
                    "Check that something was measured");
    }
    const Nodes columns(placed.x, spacing.x);
    const Nodes rows(placed.y, spacing.y);
    RequireUsableGrid(placed, columns, rows);
    Cells cells = FillCells(placed.cloud, columns, rows);
    SampleGrid grid{.file = placed.cloud.file,
                    .columns = static_cast<std::size_t>(columns.Count()),
                    .rows = static_cast<std::size_t>(rows.Count()),
                    .alongX = ImageAxis::Columns,
                    .offsetMm = {columns.FirstMm(), rows.FirstMm(), 0},
                    .spacingMm = {spacing.x, spacing.y, 1},
                    .notes = std::move(placed.cloud.notes)};
    grid.notes.push_back(fmt::format("{} of {} points are invalid; the others were put onto a grid of {} x {} mm, the "
                                     "highest point of a cell counting.",
                                     placed.cloud.points.size() - placed.validCount, placed.cloud.points.size(),
                                     spacing.x, spacing.y));
    HeightMap map = BuildHeightMap(std::move(grid), std::span<const double>(cells.heights), {});
    map.intensity = std::move(cells.intensity);
    return map;
}
} // namespace

std::size_t CheckedPointCount(const std::filesystem::path& file, const std::string& place, std::uint64_t width,
                              std::uint64_t height)
{
    if (IsOrganised(width, height) || width == 0 || height == 0)
    {
        return CheckedSampleCount(file, place, width, height);
    }
    // A list has no sides, and one of the two is 1.
    const std::uint64_t count = width * height;
    if (count > maxSampleCount)
    {
        throw Error(file, place, fmt::format("{} points are too many (at most {})", count, maxSampleCount),
                    "Check that the file is not damaged, or export a smaller part of the scan");
    }
    return static_cast<std::size_t>(count);
}

void RequireSpacingForList(const std::filesystem::path& file, std::size_t width, std::size_t height,
                           const CloudOptions& options)
{
    if (!IsOrganised(width, height) && !options.spacingMm)
    {
        throw Error(
            file, R"("spacing")", "the points are not in rows and columns, so they need a grid to go onto",
            fmt::format("Write its spacing in mm, as in \"spacing\": [0.5, 0.5], into {}, or give the same with "
                        "the scan in the job",
                        SidecarOf(file).string()));
    }
}

Scan MakeScan(PointCloud cloud, const CloudOptions& options)
{
    RequireSpacingForList(cloud.file, cloud.width, cloud.height, options);
    Placed placed = Place(std::move(cloud), options);
    if (options.spacingMm)
    {
        return MakeHeightMap(std::move(placed), *options.spacingMm);
    }
    return MakePointMap(std::move(placed));
}
} // namespace Mu::Host
