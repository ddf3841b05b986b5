#pragma once

#include <zApi/zTypes.h>

#include <limits>

namespace Mu::Vision
{
/// The value of `T` that means "no value". A NaN is not null.
template <typename T>
constexpr T GetNull();

template <>
constexpr unsigned char GetNull<unsigned char>()
{
    return 0;
}

template <>
constexpr short GetNull<short>()
{
    return zNULL_16S;
}

template <>
constexpr int GetNull<int>()
{
    return std::numeric_limits<int>::min();
}

template <>
constexpr double GetNull<double>()
{
    return zNULL_64F;
}

/// `value`, or 0 if it is null: what is not given neither moves nor turns.
template <typename T>
constexpr T NullAsZero(T value)
{
    return value == GetNull<T>() ? T{} : value;
}
} // namespace Mu::Vision
