#pragma once

#include <Host/CloudOptions.h>
#include <Host/Error.h>
#include <Host/Scan.h>

#include <Support/HeapPeak.h>
#include <Support/Require.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

/// What holds for each point cloud that a reader takes, whatever its file.
namespace CloudClaims
{
using Mu::Host::CloudOptions;
using Mu::Host::HeightMap;
using Mu::Host::PointMap;
using Mu::Host::Scan;
using Mu::Host::Vector3;

using Reader = Scan (*)(const std::filesystem::path&, const CloudOptions&);

/// A file in memory, which takes one content after the other.
class MemoryFile
{
public:
    MemoryFile()
        : descriptor(memfd_create("cloud", 0))
    {
        MU_REQUIRE(descriptor >= 0);
    }

    std::filesystem::path Holding(std::string_view bytes) const
    {
        MU_REQUIRE(ftruncate(descriptor, 0) == 0);
        MU_REQUIRE(pwrite(descriptor, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
        return "/proc/self/fd/" + std::to_string(descriptor);
    }

private:
    int descriptor;
};

inline bool IsFinite(const Vector3& vector)
{
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
}

template <typename Map>
void CheckFrame(const Map& map, std::size_t sampleCount)
{
    MU_REQUIRE(map.width > 0 && map.length > 0);
    MU_REQUIRE(sampleCount == map.width * map.length);
    MU_REQUIRE(map.intensity.empty() || map.intensity.size() == sampleCount);
    MU_REQUIRE(map.scaleMm.x > 0 && map.scaleMm.y > 0 && map.scaleMm.z > 0);
    MU_REQUIRE(IsFinite(map.offsetMm) && IsFinite(map.scaleMm));
    MU_REQUIRE(!map.notes.empty());
}

/// The counts of valid samples use the whole range of levels, or are 0 if all samples are the same. Steps may be so
/// small that they lose bits: then fewer levels do.
template <typename Points, typename Count>
void CheckLevels(const Points& points, double scale, const Count& countOf)
{
    std::int16_t lowest = std::numeric_limits<std::int16_t>::max();
    std::int16_t highest = std::numeric_limits<std::int16_t>::min();
    for (const auto& point : points)
    {
        const std::int16_t count = countOf(point);
        if (count != PointMap::nullCoordinate)
        {
            lowest = std::min(lowest, count);
            highest = std::max(highest, count);
        }
    }
    const bool isEmpty = lowest > highest;
    const bool isFlat = lowest == 0 && highest == 0;
    const bool isWhole = lowest <= -32766 && highest >= 32766;
    MU_REQUIRE(isEmpty || isFlat || isWhole || scale < 1e-300);
}

inline void Check(const PointMap& map)
{
    constexpr auto null = PointMap::nullCoordinate;
    CheckFrame(map, map.points.size());
    MU_REQUIRE(map.width > 1 && map.length > 1);
    std::size_t validCount = 0;
    for (const PointMap::Point& point : map.points)
    {
        const bool isNull = point.x == null;
        MU_REQUIRE((point.y == null) == isNull && (point.z == null) == isNull);
        validCount += isNull ? 0 : 1;
    }
    MU_REQUIRE(validCount == map.validCount);
    CheckLevels(map.points, map.scaleMm.x, [](const PointMap::Point& point) { return point.x; });
    CheckLevels(map.points, map.scaleMm.y, [](const PointMap::Point& point) { return point.y; });
    CheckLevels(map.points, map.scaleMm.z, [](const PointMap::Point& point) { return point.z; });
}

inline bool IsAnyValid(const HeightMap& map, std::size_t first, std::size_t step, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        if (map.heights[first + i * step] != HeightMap::nullHeight)
        {
            return true;
        }
    }
    return false;
}

/// A grid reaches as far as its points do.
inline void Check(const HeightMap& map)
{
    CheckFrame(map, map.heights.size());
    const auto isNull = [](std::int16_t height) { return height == HeightMap::nullHeight; };
    const auto nullCount = static_cast<std::size_t>(std::ranges::count_if(map.heights, isNull));
    MU_REQUIRE(nullCount + map.validCount == map.heights.size());
    CheckLevels(map.heights, map.scaleMm.z, [](std::int16_t height) { return height; });
    MU_REQUIRE(IsAnyValid(map, 0, 1, map.width));
    MU_REQUIRE(IsAnyValid(map, (map.length - 1) * map.width, 1, map.width));
    MU_REQUIRE(IsAnyValid(map, 0, map.width, map.length));
    MU_REQUIRE(IsAnyValid(map, map.width - 1, map.width, map.length));
}

/// The scan, or nothing if it is refused, with a message that names the file.
inline std::optional<Scan> ReadOrRefuse(Reader read, const std::filesystem::path& file, const CloudOptions& options)
{
    try
    {
        return read(file, options);
    }
    catch (const Mu::Host::Error& refusal)
    {
        MU_REQUIRE(std::string_view(refusal.what()).starts_with(file.string() + ": "));
        return std::nullopt;
    }
}

/// Reads a file as it is and onto a grid, in memory of a few MiB for the grid and so much for each byte of the file.
inline void CheckFile(Reader read, std::string_view bytes, std::size_t peakPerByte)
{
    constexpr std::size_t peakBase = std::size_t{13} << 20U;
    static const MemoryFile memory;
    const std::filesystem::path file = memory.Holding(bytes);
    CloudOptions options;
    const Support::HeapPeak peak;
    const auto plain = ReadOrRefuse(read, file, options);
    options.spacingMm = {1, 1};
    const auto onGrid = ReadOrRefuse(read, file, options);
    MU_REQUIRE(peak.Bytes() <= peakBase + peakPerByte * bytes.size());
    std::size_t validCount = std::numeric_limits<std::size_t>::max();
    if (plain)
    {
        Check(std::get<PointMap>(*plain));
        validCount = std::get<PointMap>(*plain).validCount;
    }
    if (onGrid)
    {
        Check(std::get<HeightMap>(*onGrid));
        MU_REQUIRE(std::get<HeightMap>(*onGrid).validCount <= validCount);
    }
}
} // namespace CloudClaims
