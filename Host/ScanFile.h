#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace Mu::Host
{
/// What every scan reader checks before it trusts a file.

/// Largest number of samples a scan may have (2^28); with more a reader refuses the file before it allocates.
inline constexpr std::uint64_t maxSampleCount = std::uint64_t{1} << 28;

/// Largest number of samples along one side of a scan (2^20).
inline constexpr std::uint64_t maxSideLength = std::uint64_t{1} << 20;

/// @throws Error  if there is no regular file of that name, or it cannot be opened for reading
void RequireReadableFile(const std::filesystem::path& file);

/// The number of samples of a grid of `columns` x `rows`.
/// @param place  where the file states the size, for the message
/// @throws Error  if a side is 0 or beyond `maxSideLength`, or the grid has more than `maxSampleCount` samples
[[nodiscard]] std::size_t CheckedSampleCount(const std::filesystem::path& file, const std::string& place,
                                             std::uint64_t columns, std::uint64_t rows);

/// The whole text of a small file.
/// @throws Error  if the file cannot be read or is larger than `largestSize` bytes
[[nodiscard]] std::string ReadSmallTextFile(const std::filesystem::path& file, std::size_t largestSize);
} // namespace Mu::Host
