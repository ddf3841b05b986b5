#pragma once

#include <TaApi/Raise.h>
#include <TaVision/TvSurfaceMsg.h>
#include <zApi/zArray2.h>
#include <zApi/zTypes.h>

#include <cstddef>

// What members demand of their arguments, raised at their place.

namespace Mu::TlkHelper
{
inline void RequireArguments(const Ta::Place& place, const void* message, const void* result)
{
    if (message == nullptr || result == nullptr)
    {
        Ta::Raise(place, zERROR_PARAMETER);
    }
}

/// What reads intensities takes bytes.
inline void RequireBytes(const Ta::Place& place, zType intensityType)
{
    if (intensityType != zTypeOf(z8u))
    {
        Ta::Raise(place, zERROR_PARAMETER);
    }
}

inline zType IntensityTypeOfSurface(void* message)
{
    return zArray2_ItemType(TvSurfaceMsg_IntensityArray(message, 0));
}

/// -997 unless `array` is a `zArray2`, -984 unless its items are values of `size` bytes.
inline void RequireValues(const Ta::Place& place, zArray2 array, std::size_t size)
{
    const zType itemType = zArray2_ItemType(array);
    if (itemType == nullptr)
    {
        Ta::Raise(place, zERROR_PARAMETER);
    }
    if (itemType->isObject || itemType->size != size)
    {
        Ta::Raise(place, zERROR_FORMAT);
    }
}
} // namespace Mu::TlkHelper
