#pragma once

#include <zApi/zObject.h>

zDECLARE_TYPE(zArray1);

// A one-dimensional array of fixed length. Items of object types hold a reference each.

extern "C"
{
    /// Makes an array of `length` items; 0 is legal. Object items are null; value items hold no defined value until
    /// written.
    /// -999 if `array` or `itemType` is null, -997 if the size in bytes overflows, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zArray1_Construct(zArray1* array, zType itemType, std::size_t length, zAlloc alloc);

    /// Sets every byte to 0; object items are released. -997 if `array` is no `zArray1`.
    MU_PLATFORM_EXPORT zStatus zArray1_Zero(zArray1 array);

    /// The number of items; 0 if `array` is no `zArray1`.
    MU_PLATFORM_EXPORT std::size_t zArray1_Length(zArray1 array);

    /// The item type; null if `array` is no `zArray1`.
    MU_PLATFORM_EXPORT zType zArray1_ItemType(zArray1 array);

    /// The first item, valid while the array lives; null if `array` is no `zArray1` or empty.
    MU_PLATFORM_EXPORT void* zArray1_Items(zArray1 array);

    /// Item `index`, null past the end.
    MU_PLATFORM_EXPORT void* zArray1_At(zArray1 array, std::size_t index);
}
