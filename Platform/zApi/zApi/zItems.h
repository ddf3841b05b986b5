#pragma once

#include <zApi/zDat6.h>
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

/// Loads a list of class `List`, which `construct` makes with room for its items in one block.
template <typename List>
[[nodiscard]] zStatus zItems_LoadList(zDat6Reader* reader, zStatus (*construct)(zObject*, zType, std::size_t, zAlloc),
                                      zAlloc alloc, zObject* object)
{
    zType itemType = nullptr;
    std::size_t count = 0;
    zTRY(zDat6_ReadListHead(reader, &itemType, &count));
    zObject made = nullptr;
    zTRY(construct(&made, itemType, count, alloc));
    auto* const list = static_cast<List*>(made);
    list->count = count; // handles not yet read are null, so a failure on the way releases what is there
    return zObjectType_Finish(list, zDat6_ReadItems(reader, itemType, list->items, count, alloc), object);
}
