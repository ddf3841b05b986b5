#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace Mu::Host
{
struct Vector3
{
    double x = 0;
    double y = 0;
    double z = 0;

    friend bool operator==(const Vector3&, const Vector3&) = default;
};

/// A scan as tools take it: heights of 16 bits on an even grid.
///
/// Sample (i, j) lies at x = offsetMm.x + scaleMm.x * i, y = offsetMm.y + scaleMm.y * j and, if it is valid, at
/// z = offsetMm.z + scaleMm.z * heights[j * width + i], all in mm.
struct HeightMap
{
    /// Stands in `heights` where nothing was measured.
    static constexpr std::int16_t nullHeight = -32768;

    std::size_t width = 0;               ///< samples along x
    std::size_t length = 0;              ///< samples along y
    std::vector<std::int16_t> heights;   ///< width * length, x fastest
    std::vector<std::uint8_t> intensity; ///< empty, or one for each height
    Vector3 offsetMm;                    ///< finite
    Vector3 scaleMm{1, 1, 1};            ///< finite and greater than 0
    std::size_t validCount = 0;          ///< heights that are not null
    std::vector<std::string> notes;      ///< what the reader did and what it ignored, a plain sentence each
};

/// The axis of an image or matrix along which x grows.
enum class ImageAxis
{
    Columns, ///< a column is an x: the map has the shape of the image
    Rows     ///< a row is an x: the map is the image transposed
};

/// What is known of samples besides their values.
struct SampleGrid
{
    std::filesystem::path file; ///< for messages
    std::size_t columns = 0;    ///< samples in a row, as they stand in the file
    std::size_t rows = 0;
    ImageAxis alongX = ImageAxis::Columns;
    Vector3 offsetMm;               ///< finite; of the map, so x is the axis named by `alongX`
    Vector3 spacingMm{1, 1, 1};     ///< finite and greater than 0; z is mm per unit of a sample
    std::vector<std::string> notes; ///< taken over by the map, before those on heights
};

/// Makes a height map of samples of any number type (16-bit and 32-bit integers, 32-bit and 64-bit floats).
///
/// Integers whose valid values span at most 65,534 counts are kept exactly: as they stand if they fit -32767..32767
/// (scale and offset of z are then those of the grid), else less a whole number of counts that goes into the offset
/// (32,768 if that does).
/// All others are rounded to 65,534 even steps from the lowest to the highest height: a height is off by half a
/// 65,534th of their span, as long as that span is more than a hundred-millionth of the heights themselves (below that
/// the precision of doubles adds to it). Samples that are all the same height are kept exactly.
/// A sample is invalid if `valid` says so or, for floats, if it is not finite. Invalid samples become null heights;
/// a map without any valid sample is no error.
///
/// @param samples  columns * rows of them, row by row; sample * spacing + offset is the height in mm
/// @param valid    empty if all are valid, else one byte each, 0 for an invalid one
/// @throws Error   if the sizes disagree, a spacing is not positive, or positions or heights in mm are beyond
///                 the range of doubles
template <typename Sample>
[[nodiscard]] HeightMap BuildHeightMap(SampleGrid grid, std::span<const Sample> samples,
                                       std::span<const std::uint8_t> valid);

extern template HeightMap BuildHeightMap(SampleGrid, std::span<const std::int16_t>, std::span<const std::uint8_t>);
extern template HeightMap BuildHeightMap(SampleGrid, std::span<const std::uint16_t>, std::span<const std::uint8_t>);
extern template HeightMap BuildHeightMap(SampleGrid, std::span<const std::int32_t>, std::span<const std::uint8_t>);
extern template HeightMap BuildHeightMap(SampleGrid, std::span<const std::uint32_t>, std::span<const std::uint8_t>);
extern template HeightMap BuildHeightMap(SampleGrid, std::span<const float>, std::span<const std::uint8_t>);
extern template HeightMap BuildHeightMap(SampleGrid, std::span<const double>, std::span<const std::uint8_t>);
} // namespace Mu::Host
