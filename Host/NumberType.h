#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace Mu::Host
{
/// Types of numbers in files.
enum class NumberType : std::uint8_t
{
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Float32,
    Float64
};

/// Reads a number from its bytes, wherever they lie.
using NumberDecoder = double (*)(const char* bytes);

namespace Detail
{
template <typename Number, std::endian order>
double DecodeNumber(const char* bytes)
{
    std::array<char, sizeof(Number)> own;
    std::memcpy(own.data(), bytes, own.size());
    if constexpr (order != std::endian::native)
    {
        for (std::size_t i = 0; i < own.size() / 2; ++i)
        {
            std::swap(own[i], own[own.size() - 1 - i]);
        }
    }
    return static_cast<double>(std::bit_cast<Number>(own));
}

struct NumberKind
{
    std::size_t size;
    NumberDecoder little;
    NumberDecoder big;
};

template <typename Number>
constexpr NumberKind KindOf()
{
    return {sizeof(Number), &DecodeNumber<Number, std::endian::little>, &DecodeNumber<Number, std::endian::big>};
}

// In the order of NumberType.
inline constexpr std::array numberKinds{KindOf<std::int8_t>(),   KindOf<std::uint8_t>(),  KindOf<std::int16_t>(),
                                        KindOf<std::uint16_t>(), KindOf<std::int32_t>(),  KindOf<std::uint32_t>(),
                                        KindOf<std::int64_t>(),  KindOf<std::uint64_t>(), KindOf<float>(),
                                        KindOf<double>()};
} // namespace Detail

/// Bytes of a number of that type.
constexpr std::size_t SizeOf(NumberType type)
{
    return Detail::numberKinds[static_cast<std::size_t>(type)].size;
}

/// What reads numbers of that type. 64-bit integers are rounded to the nearest double.
constexpr NumberDecoder DecoderOf(NumberType type, std::endian order)
{
    const Detail::NumberKind& kind = Detail::numberKinds[static_cast<std::size_t>(type)];
    return order == std::endian::little ? kind.little : kind.big;
}
} // namespace Mu::Host
