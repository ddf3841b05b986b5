#pragma once

#include <zApi/zObject.h>

zDECLARE_TYPE(zQueue);

// A first-in first-out queue in a ring that grows as needed and never shrinks.

extern "C"
{
    /// Makes an empty queue with room for `capacity` items.
    /// -999 if `queue` or `itemType` is null, -997 if the size in bytes overflows, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zQueue_Construct(zQueue* queue, zType itemType, std::size_t capacity, zAlloc alloc);

    /// Appends `*item`; an object item is shared. A failing call leaves the queue as it was.
    /// -997 for another handle, -999 if `item` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zQueue_Add(zQueue queue, const void* item);

    /// Takes the oldest item out. It is copied to `*item`, reference included, or, if `item` is null, released.
    /// -997 for another handle, -999 if the queue is empty.
    MU_PLATFORM_EXPORT zStatus zQueue_Remove(zQueue queue, void* item);

    /// Empties the queue and releases items that are objects; the room stays. -997 for another handle.
    MU_PLATFORM_EXPORT zStatus zQueue_Purge(zQueue queue);

    /// The number of items; 0 if `queue` is no `zQueue`.
    MU_PLATFORM_EXPORT std::size_t zQueue_Count(zQueue queue);

    /// The item type; null if `queue` is no `zQueue`.
    MU_PLATFORM_EXPORT zType zQueue_ItemType(zQueue queue);
}
