#pragma once

#include <Host/HeightMap.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace Mu::Host
{
/// An organised cloud: samples in rows and columns as the sensor took them, each with its own x, y and z.
///
/// A valid sample lies at offsetMm + scaleMm * (x, y, z), in mm.
struct PointMap
{
    struct Point
    {
        std::int16_t x;
        std::int16_t y;
        std::int16_t z;

        friend bool operator==(const Point&, const Point&) = default;
    };

    /// Stands in every coordinate of a sample where nothing was measured.
    static constexpr std::int16_t nullCoordinate = HeightMap::nullHeight;

    std::size_t width = 0;               ///< samples in a row
    std::size_t length = 0;              ///< rows
    std::vector<Point> points;           ///< width * length, row by row
    std::vector<std::uint8_t> intensity; ///< empty, or one for each point
    Vector3 offsetMm;                    ///< finite
    Vector3 scaleMm{1, 1, 1};            ///< finite and greater than 0
    std::size_t validCount = 0;          ///< points that are not null
    std::vector<std::string> notes;      ///< what the reader did and what it ignored, a plain sentence each
};

/// A line of samples in the plane of x and z.
///
/// A valid sample i lies at x = offsetMm.x + scaleMm.x * i, or positions[i] for i if there are positions, y =
/// offsetMm.y and z = offsetMm.z + scaleMm.z * heights[i], all in mm.
struct ProfileScan
{
    std::vector<std::int16_t> heights;   ///< HeightMap::nullHeight where nothing was measured
    std::vector<std::int16_t> positions; ///< empty: samples on an even grid; else one for each, null with its height
    std::vector<std::uint8_t> intensity; ///< empty, or one for each height
    Vector3 offsetMm;                    ///< finite
    Vector3 scaleMm{1, 1, 1};            ///< finite and greater than 0
    std::size_t validCount = 0;          ///< heights that are not null
    std::vector<std::string> notes;      ///< what the reader did and what it ignored, a plain sentence each
};

/// A grey image of 8 bits.
struct ImageScan
{
    std::size_t width = 0;            ///< pixels in a row
    std::size_t height = 0;           ///< rows
    std::vector<std::uint8_t> pixels; ///< width * height, row by row
    std::vector<std::string> notes;   ///< what the reader did and what it ignored, a plain sentence each
};

/// What a reader makes of a file.
using Scan = std::variant<HeightMap, PointMap, ProfileScan, ImageScan>;
} // namespace Mu::Host
