#pragma once

#include <Host/HeightMap.h>

#include <filesystem>

namespace Mu::Host
{
/// Reads the surface of an X3P file (ISO 25178-72): a zip archive with `main.xml` and a matrix of samples.
///
/// Read are surfaces (feature type SUR) on an even grid whose heights stand in a binary file of little-endian samples,
/// x fastest: data types I (16-bit integer), L (32-bit integer), F (32-bit float) and D (64-bit float). SizeX becomes
/// the width of the map, SizeY its length, metres become mm. Increment and offset of CZ apply to every data type; for
/// F and D a missing increment is 1, for I and L it must be given.
///
/// `main.xml` may lie in a subfolder, to which links are then relative; its root may have a name space or none.
/// Invalid samples are those that are not finite and those whose bit in the file of valid points is 0: one bit a
/// sample in the order of the matrix, lowest bit of a byte first, the last byte filled up.
///
/// Bounds: `main.xml` 4 MiB, the archive 65,535 entries, the grid as CheckedSampleCount says. Entries are stored or
/// deflated. Never more bytes are unpacked than the grid calls for; the archive's own checksums are verified, the MD5
/// sums are not.
/// @throws Error  if the file is missing, damaged or truncated, contradicts itself or holds something else
[[nodiscard]] HeightMap ReadX3p(const std::filesystem::path& file);
} // namespace Mu::Host
