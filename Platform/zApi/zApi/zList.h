#pragma once

#include <zApi/zObject.h>

zDECLARE_TYPE(zList);

/// A place in a linked list, valid until it is removed or the list is purged or ends.
using zListItem = void*;

// A doubly linked list. Items never move, so their bytes may be kept while other items come and go. The room of removed
// items is used again and given back at the end of the list.

extern "C"
{
    /// Makes an empty list with room for `capacity` items; it grows as needed.
    /// -999 if `list` or `itemType` is null, -997 if the size in bytes overflows, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zList_Construct(zList* list, zType itemType, std::size_t capacity, zAlloc alloc);

    /// Appends `*item`; an object item is shared. A failing call leaves the list as it was.
    /// -997 for another handle, -999 if `item` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zList_Add(zList list, const void* item);

    /// Takes `place` out of the list. Its item is copied to `*item`, reference included, or, if `item` is null,
    /// released. -997 for another handle, -999 if `place` is null or no place of this list.
    MU_PLATFORM_EXPORT zStatus zList_Remove(zList list, zListItem place, void* item);

    /// Empties the list and releases items that are objects; the room stays. -997 for another handle.
    MU_PLATFORM_EXPORT zStatus zList_Purge(zList list);

    /// The number of items; 0 if `list` is no `zList`.
    MU_PLATFORM_EXPORT std::size_t zList_Count(zList list);

    /// The item type; null if `list` is no `zList`.
    MU_PLATFORM_EXPORT zType zList_ItemType(zList list);

    /// The first place; null if the list is empty or `list` is no `zList`.
    MU_PLATFORM_EXPORT zListItem zList_First(zList list);

    /// The place behind `place`; null behind the last one, or if `place` is no place of this list.
    MU_PLATFORM_EXPORT zListItem zList_Next(zList list, zListItem place);

    /// Place number `index`, found from the nearer end; null past the end or for another handle.
    MU_PLATFORM_EXPORT zListItem zList_AtIndex(zList list, std::size_t index);

    /// The item at `place`, aligned to 16 bytes; null if `place` is no place of this list.
    MU_PLATFORM_EXPORT void* zList_At(zList list, zListItem place);
}
