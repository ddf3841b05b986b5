#include <zApi/zArrayList.h>
#include <zApi/zItems.h>

#include <algorithm>
#include <limits>

namespace
{
constexpr std::size_t FIRST_CAPACITY = 16;

zArrayListClass* As(zObject list)
{
    return zObjectType_Cast<zArrayListClass>(list, zTypeOf(zArrayList));
}

unsigned char* ItemAt(const zArrayListClass& list, std::size_t index)
{
    return list.items + index * list.itemSize;
}

zStatus Grow(zArrayListClass& list, std::size_t capacity)
{
    if (capacity <= list.capacity)
    {
        return zOK;
    }
    void* block = nullptr;
    zTRY(zItems_Get(list.itemType, capacity, list.alloc, &block));
    if (list.items != nullptr)
    {
        std::memcpy(block, list.items, list.count * list.itemSize);
        static_cast<void>(zAlloc_Free(list.alloc, list.items));
    }
    list.items = static_cast<unsigned char*>(block);
    list.capacity = capacity;
    return zOK;
}

zStatus Construct(zObject* out, zType itemType, std::size_t capacity, zAlloc alloc)
{
    zArrayListClass* list = nullptr;
    zTRY(zObjectType_New(zTypeOf(zArrayList), alloc, &list));
    list->itemType = itemType;
    list->itemSize = itemType->size;
    return zObjectType_Finish(list, Grow(*list, capacity), out);
}

void Release(zObject object) noexcept
{
    auto* const list = static_cast<zArrayListClass*>(object);
    if (list->items != nullptr)
    {
        zItems_Release(list->itemType, list->items, list->count);
        static_cast<void>(zAlloc_Free(list->alloc, list->items));
    }
}

zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    const auto* const source = static_cast<const zArrayListClass*>(object);
    zObject made = nullptr;
    zTRY(Construct(&made, source->itemType, source->count, alloc));
    auto* const target = static_cast<zArrayListClass*>(made);
    target->count = source->count; // handles not yet cloned are null, so a failure on the way releases what is there
    return zObjectType_Finish(
        target, zItems_Clone(source->itemType, target->items, source->items, source->count, alloc), clone);
}

zStatus Save(zObject object, zDat6Writer* writer)
{
    const auto* const list = static_cast<const zArrayListClass*>(object);
    zTRY(zDat6_WriteListHead(writer, list->itemType, list->count));
    return zDat6_WriteItems(writer, list->itemType, list->items, list->count);
}

zStatus Load(zDat6Reader* reader, zType /*type*/, zAlloc alloc, zObject* object)
{
    return zItems_LoadList<zArrayListClass>(reader, Construct, alloc, object);
}

constexpr zObjectOps listOps = {Release, Clone, Save, Load};
} // namespace

zDEFINE_OBJECT_TYPE(zArrayList, zObject, &listOps);

zStatus zArrayList_Construct(zArrayList* list, zType itemType, std::size_t capacity, zAlloc alloc)
{
    zFAULT_GATE();
    return list == nullptr || itemType == nullptr ? zERROR_MISSING : Construct(list, itemType, capacity, alloc);
}

zStatus zArrayList_Reserve(zArrayList list, std::size_t capacity)
{
    zFAULT_GATE();
    zArrayListClass* const object = As(list);
    return object == nullptr ? zERROR_PARAMETER : Grow(*object, capacity);
}

zStatus zArrayList_Remove(zArrayList list, std::size_t index, void* item)
{
    zFAULT_GATE();
    zArrayListClass* const object = As(list);
    if (object == nullptr || index >= object->count)
    {
        return zERROR_PARAMETER;
    }
    unsigned char* const place = ItemAt(*object, index);
    if (item != nullptr)
    {
        std::memcpy(item, place, object->itemSize);
    }
    else
    {
        zItems_Release(object->itemType, place, 1);
    }
    std::memmove(place, place + object->itemSize, (object->count - index - 1) * object->itemSize);
    --object->count;
    return zOK;
}

zStatus zArrayList_Purge(zArrayList list)
{
    zFAULT_GATE();
    zArrayListClass* const object = As(list);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    zItems_Release(object->itemType, object->items, object->count);
    object->count = 0;
    return zOK;
}

zStatus xzArrayList_AddSlow(zArrayList list, const void* item)
{
    zArrayListClass* const object = As(list);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (item == nullptr)
    {
        return zERROR_MISSING;
    }
    if (object->count == object->capacity)
    {
        if (object->capacity > std::numeric_limits<std::size_t>::max() / 2)
        {
            return zERROR_PARAMETER;
        }
        // `item` may stand in the list itself: growing must not free it before it is copied.
        std::size_t index = object->count;
        const auto* const bytes = static_cast<const unsigned char*>(item);
        const bool isOwn = object->items != nullptr && bytes >= object->items && bytes < ItemAt(*object, object->count);
        if (isOwn)
        {
            index = static_cast<std::size_t>(bytes - object->items);
        }
        zTRY(Grow(*object, std::max(FIRST_CAPACITY, object->capacity * 2)));
        item = isOwn ? object->items + index : item;
    }
    zTRY(zItems_Share(object->itemType, ItemAt(*object, object->count), item, 1));
    ++object->count;
    return zOK;
}

std::size_t zArrayList_Count(zArrayList list)
{
    const zArrayListClass* const object = As(list);
    return object == nullptr ? 0 : object->count;
}

zType zArrayList_ItemType(zArrayList list)
{
    const zArrayListClass* const object = As(list);
    return object == nullptr ? nullptr : object->itemType;
}

void* zArrayList_Items(zArrayList list)
{
    const zArrayListClass* const object = As(list);
    return object == nullptr ? nullptr : object->items;
}

void* zArrayList_At(zArrayList list, std::size_t index)
{
    const zArrayListClass* const object = As(list);
    return object == nullptr || index >= object->count ? nullptr : ItemAt(*object, index);
}
