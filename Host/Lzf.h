#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace Mu::Host
{
/// The most bytes that a byte of LZF can stand for: three bytes refer to 264 at most.
inline constexpr std::size_t bestLzf = 88;

/// Why bytes cannot be unpacked.
struct LzfFault
{
    std::size_t place;        ///< the byte at which the instruction begins, from 0
    std::string_view problem; ///< without a full stop
};

/// Unpacks LZF: instructions that begin with a byte c. Below 32, c + 1 bytes follow as they are. Else (c >> 5) + 2
/// bytes are to be taken again from what came out, or if c >> 5 is 7, so many more as the next byte says; how far back
/// stands in the low 5 bits of c and the next byte, less 1.
/// @param unpacked  takes what comes out, which must fill it
/// @return nothing if all went well; else the contents of `unpacked` are of no use
[[nodiscard]] std::optional<LzfFault> UnpackLzf(std::span<const char> packed, std::span<char> unpacked);
} // namespace Mu::Host
