#pragma once

#include <zApi/zFault.h>
#include <zApi/zObject.h>

#include <cstring>

zDECLARE_TYPE(zArrayList);

// A growing array. Its layout is public so that appending costs no call: a run of items is appended in one go by
// `zArrayList_Reserve`, writing behind the last item, and `zArrayList_CountUp`.

struct zArrayListClass : zObjectClass
{
    zType itemType;
    std::size_t itemSize;
    std::size_t count;
    std::size_t capacity;
    unsigned char* items;
};

extern "C"
{
    /// Makes an empty list with room for `capacity` items.
    /// -999 if `list` or `itemType` is null, -997 if the size in bytes overflows, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zArrayList_Construct(zArrayList* list, zType itemType, std::size_t capacity,
                                                    zAlloc alloc);

    /// Makes room for `capacity` items in all; never shrinks. A failing call leaves the list as it was.
    /// -997 for another handle or if the size in bytes overflows, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zArrayList_Reserve(zArrayList list, std::size_t capacity);

    /// Takes item `index` out of the list and moves the later ones up. It is copied to `*item`, reference included, or,
    /// if `item` is null, released. -997 past the end or for another handle.
    MU_PLATFORM_EXPORT zStatus zArrayList_Remove(zArrayList list, std::size_t index, void* item);

    /// Empties the list and releases items that are objects; the room stays. -997 for another handle.
    MU_PLATFORM_EXPORT zStatus zArrayList_Purge(zArrayList list);

    /// The way of `zArrayList_Add` when the list is full, holds objects, or the handle is bad.
    MU_PLATFORM_EXPORT zStatus xzArrayList_AddSlow(zArrayList list, const void* item);

    /// The number of items; 0 if `list` is no `zArrayList`.
    MU_PLATFORM_EXPORT std::size_t zArrayList_Count(zArrayList list);

    /// The item type; null if `list` is no `zArrayList`.
    MU_PLATFORM_EXPORT zType zArrayList_ItemType(zArrayList list);

    /// The first item, valid until the list grows; null if `list` is no `zArrayList` or has no room.
    MU_PLATFORM_EXPORT void* zArrayList_Items(zArrayList list);

    /// Item `index`, null past the end.
    MU_PLATFORM_EXPORT void* zArrayList_At(zArrayList list, std::size_t index);
}

/// Appends `*item`; an object item is shared. A failing call leaves the list as it was.
/// -997 for another handle, -999 if `item` is null, -998 if there is no memory.
inline zStatus zArrayList_Add(zArrayList list, const void* item)
{
    zFAULT_GATE();
    auto* const object = static_cast<zArrayListClass*>(list);
    if (object == nullptr || item == nullptr || object->type != zTypeOf(zArrayList) || object->itemType->isObject ||
        object->count == object->capacity) [[unlikely]]
    {
        return xzArrayList_AddSlow(list, item);
    }
    std::memcpy(object->items + object->count * object->itemSize, item, object->itemSize);
    ++object->count;
    return zOK;
}

/// Counts `added` items that were written behind the last one as part of the list.
/// -997 for another handle or if there is no room for that many.
inline zStatus zArrayList_CountUp(zArrayList list, std::size_t added)
{
    zFAULT_GATE();
    auto* const object = static_cast<zArrayListClass*>(list);
    if (object == nullptr || object->type != zTypeOf(zArrayList) || added > object->capacity - object->count)
    {
        return zERROR_PARAMETER;
    }
    object->count += added;
    return zOK;
}
