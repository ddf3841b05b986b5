#pragma once

#include <zApi/zExport.h>

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace Ta::Properties
{
/// The value of a leaf without its C++ type: what readers and writers of files and forms work on. Integers and
/// enumerations travel as 64 bits.
using Datum = std::variant<bool, std::int64_t, std::uint64_t, double, std::string, std::vector<std::int64_t>,
                           std::vector<double>, std::vector<std::string>>;

/// Which alternative of `Datum` a leaf takes and gives; the numbers are the places in the variant.
enum class DatumKind : std::uint8_t
{
    Boolean,
    Integer,
    Unsigned,
    Number,
    Text,
    Integers,
    Numbers,
    Texts
};

[[nodiscard]] inline DatumKind KindOf(const Datum& datum) noexcept
{
    return static_cast<DatumKind>(datum.index());
}

/// True if both hold the same kind and the same bits: a NaN is identical to itself, 0.0 is not identical to -0.0.
[[nodiscard]] MU_PLATFORM_EXPORT bool Identical(const Datum& a, const Datum& b);

/// The alternative of `Datum` in which a value of type T travels.
template <typename T>
struct DatumTypeOf
{
    using Type = T;
};

template <typename T>
requires(std::is_enum_v<T> || (std::signed_integral<T> && !std::same_as<T, bool>)) struct DatumTypeOf<T>
{
    using Type = std::int64_t;
};

template <typename T>
requires(std::unsigned_integral<T> && !std::same_as<T, bool>) struct DatumTypeOf<T>
{
    using Type = std::uint64_t;
};

template <typename T>
using DatumType = typename DatumTypeOf<T>::Type;

template <typename T>
[[nodiscard]] Datum ToDatum(const T& value)
{
    return Datum(std::in_place_type<DatumType<T>>, static_cast<DatumType<T>>(value));
}

/// Null if the datum is of another kind or its number does not fit into T.
template <typename T>
[[nodiscard]] std::optional<T> FromDatum(const Datum& datum)
{
    const auto* held = std::get_if<DatumType<T>>(&datum);
    if (held == nullptr)
    {
        return std::nullopt;
    }
    if constexpr (std::is_enum_v<T>)
    {
        using Underlying = std::underlying_type_t<T>;
        return std::in_range<Underlying>(*held) ? std::optional<T>(static_cast<T>(*held)) : std::nullopt;
    }
    else if constexpr (std::integral<T> && !std::same_as<T, bool>)
    {
        return std::in_range<T>(*held) ? std::optional<T>(static_cast<T>(*held)) : std::nullopt;
    }
    else
    {
        return *held;
    }
}
} // namespace Ta::Properties
