#pragma once

#include <zApi/zObject.h>

zDECLARE_TYPE(zArray2);

// A two-dimensional array of fixed size, stored row after row without gaps. Dimension 0 is its rows.

extern "C"
{
    /// Makes an array of `rows` by `columns` items; 0 is legal for both. Object items are null; value items hold no
    /// defined value until written.
    /// -999 if `array` or `itemType` is null, -997 if the size in bytes overflows, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zArray2_Construct(zArray2* array, zType itemType, std::size_t rows, std::size_t columns,
                                                 zAlloc alloc);

    /// Sets every byte to 0; object items are released. -997 if `array` is no `zArray2`.
    MU_PLATFORM_EXPORT zStatus zArray2_Zero(zArray2 array);

    /// Copies `*item` to a place; an object item is shared. -997 outside the array or for another handle.
    MU_PLATFORM_EXPORT zStatus zArray2_SetItem(zArray2 array, std::size_t row, std::size_t column, const void* item);

    /// The length of dimension 0 (rows) or 1 (columns); 0 for another dimension or handle.
    MU_PLATFORM_EXPORT std::size_t zArray2_Length(zArray2 array, std::size_t dimension);

    /// The item type; null if `array` is no `zArray2`.
    MU_PLATFORM_EXPORT zType zArray2_ItemType(zArray2 array);

    /// The first item, valid while the array lives; null if `array` is no `zArray2` or empty.
    MU_PLATFORM_EXPORT void* zArray2_Items(zArray2 array);

    /// The item at a place, null outside the array.
    MU_PLATFORM_EXPORT void* zArray2_At(zArray2 array, std::size_t row, std::size_t column);
}
