#pragma once

#include <Host/Scan.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

/// Words for tests of the readers of point clouds: numbers as bytes, packed bytes, places of points.
namespace Mu::Host::Testing
{
/// The numbers as bytes, one after the other.
template <std::endian order = std::endian::little, typename... Numbers>
std::string NumberBytes(Numbers... numbers)
{
    std::string bytes;
    const auto append = [&bytes](auto number) {
        std::array<char, sizeof(number)> own;
        std::memcpy(own.data(), &number, own.size());
        if (order != std::endian::native)
        {
            std::ranges::reverse(own);
        }
        bytes.append(own.data(), own.size());
    };
    (append(numbers), ...);
    return bytes;
}

/// What is packed with LZF: as bytes that stand as they are, or, where four or more came before, where these lie. Takes
/// the nearest of the longest, by trying all.
inline std::string PackedWithLzf(std::string_view bytes)
{
    constexpr std::size_t farthest = 8192;
    constexpr std::size_t longest = 264;
    std::string packed;
    std::string literals;
    const auto flush = [&] {
        for (std::size_t at = 0; at < literals.size(); at += 32)
        {
            const std::string part = literals.substr(at, 32);
            packed.push_back(static_cast<char>(part.size() - 1));
            packed.append(part);
        }
        literals.clear();
    };
    for (std::size_t at = 0; at < bytes.size();)
    {
        std::size_t best = 0;
        std::size_t back = 0;
        for (std::size_t distance = 1; distance <= std::min(at, farthest); ++distance)
        {
            std::size_t length = 0;
            while (length < longest && at + length < bytes.size() &&
                   bytes[at + length] == bytes[at + length - distance])
            {
                ++length;
            }
            back = length > best ? distance : back;
            best = std::max(best, length);
        }
        if (best < 4)
        {
            literals += bytes[at++];
            continue;
        }
        flush();
        const std::size_t stated = best - 2;
        packed.push_back(static_cast<char>((std::min<std::size_t>(stated, 7) << 5) + ((back - 1) >> 8)));
        if (stated >= 7)
        {
            packed.push_back(static_cast<char>(stated - 7));
        }
        packed.push_back(static_cast<char>((back - 1) & 255));
        at += best;
    }
    flush();
    return packed;
}

/// The place of point (column, row) of the map in mm; it must be valid.
inline Vector3 PlaceMm(const PointMap& map, std::size_t column, std::size_t row)
{
    const PointMap::Point& point = map.points.at(row * map.width + column);
    return {map.offsetMm.x + map.scaleMm.x * point.x, map.offsetMm.y + map.scaleMm.y * point.y,
            map.offsetMm.z + map.scaleMm.z * point.z};
}

/// Nothing was measured at that point.
inline bool IsNull(const PointMap& map, std::size_t column, std::size_t row)
{
    constexpr auto null = PointMap::nullCoordinate;
    return map.points.at(row * map.width + column) == PointMap::Point{null, null, null};
}
} // namespace Mu::Host::Testing
