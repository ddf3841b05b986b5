#pragma once

#include <zApi/zObjectType.h>

// A block of items of one type: what arrays and lists have in common.

/// Stores the bytes of `count` items in `*bytes`. -997 if they overflow.
[[nodiscard]] inline zStatus zItems_Bytes(zType itemType, std::size_t count, std::size_t* bytes)
{
    return __builtin_mul_overflow(itemType->size, count, bytes) ? zERROR_PARAMETER : zOK;
}

/// Gets a block for `count` items; handles in it are null.
[[nodiscard]] zStatus zItems_Get(zType itemType, std::size_t count, zAlloc alloc, void** items);

/// Releases the objects among `count` items; the block stays. Value items need nothing.
void zItems_Release(zType itemType, void* items, std::size_t count) noexcept;

/// Copies `count` items to a block whose handles are null; objects are shared.
[[nodiscard]] zStatus zItems_Share(zType itemType, void* to, const void* from, std::size_t count);

/// Copies `count` items to a block whose handles are null; objects are cloned in `alloc`.
[[nodiscard]] zStatus zItems_Clone(zType itemType, void* to, const void* from, std::size_t count, zAlloc alloc);
