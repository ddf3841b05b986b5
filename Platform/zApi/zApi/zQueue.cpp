#include <zApi/zItems.h>
#include <zApi/zQueue.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace
{
constexpr std::size_t FIRST_CAPACITY = 16;

struct Queue : zObjectClass
{
    zType itemType;
    std::size_t itemSize;
    std::size_t capacity;
    std::size_t head; ///< place of the oldest item
    std::size_t count;
    unsigned char* items;

    [[nodiscard]] unsigned char* Place(std::size_t index) const
    {
        const std::size_t untilWrap = capacity - head;
        return items + (index < untilWrap ? head + index : index - untilWrap) * itemSize;
    }

    /// The items before the ring wraps.
    [[nodiscard]] std::size_t FrontRun() const
    {
        return std::min(count, capacity - head);
    }
};

Queue* As(zObject queue)
{
    return zObjectType_Cast<Queue>(queue, zTypeOf(zQueue));
}

/// Moves to a block for `capacity` items, the oldest one first.
zStatus Grow(Queue& queue, std::size_t capacity)
{
    void* block = nullptr;
    zTRY(zItems_Get(queue.itemType, capacity, queue.alloc, &block));
    if (queue.items != nullptr)
    {
        const std::size_t front = queue.FrontRun() * queue.itemSize;
        std::memcpy(block, queue.Place(0), front);
        std::memcpy(static_cast<unsigned char*>(block) + front, queue.items, queue.count * queue.itemSize - front);
        static_cast<void>(zAlloc_Free(queue.alloc, queue.items));
    }
    queue.items = static_cast<unsigned char*>(block);
    queue.capacity = capacity;
    queue.head = 0;
    return zOK;
}

void Purge(Queue& queue) noexcept
{
    if (queue.items != nullptr)
    {
        const std::size_t front = queue.FrontRun();
        zItems_Release(queue.itemType, queue.Place(0), front);
        zItems_Release(queue.itemType, queue.items, queue.count - front);
    }
    queue.head = 0;
    queue.count = 0;
}

zStatus Construct(zObject* out, zType itemType, std::size_t capacity, zAlloc alloc)
{
    Queue* queue = nullptr;
    zTRY(zObjectType_New(zTypeOf(zQueue), alloc, &queue));
    queue->itemType = itemType;
    queue->itemSize = itemType->size;
    return zObjectType_Finish(queue, capacity == 0 ? zOK : Grow(*queue, capacity), out);
}

void Release(zObject object) noexcept
{
    auto* const queue = static_cast<Queue*>(object);
    Purge(*queue);
    static_cast<void>(zAlloc_Free(queue->alloc, queue->items));
}

zStatus CloneItems(const Queue& source, Queue& target)
{
    if (source.count == 0)
    {
        return zOK;
    }
    const std::size_t front = source.FrontRun();
    target.count = source.count; // handles not yet cloned are null, so a failure on the way releases what is there
    zTRY(zItems_Clone(source.itemType, target.Place(0), source.Place(0), front, target.alloc));
    // Nothing is left when the ring does not wrap, and then the place behind the items may not exist.
    return source.count == front
               ? zOK
               : zItems_Clone(source.itemType, target.Place(front), source.items, source.count - front, target.alloc);
}

zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    const auto* const source = static_cast<const Queue*>(object);
    zObject made = nullptr;
    zTRY(Construct(&made, source->itemType, source->count, alloc));
    auto* const target = static_cast<Queue*>(made);
    return zObjectType_Finish(target, CloneItems(*source, *target), clone);
}

zStatus Save(zObject object, zDat6Writer* writer)
{
    const auto* const queue = static_cast<const Queue*>(object);
    zTRY(zDat6_WriteListHead(writer, queue->itemType, queue->count));
    if (queue->count == 0)
    {
        return zOK;
    }
    const std::size_t front = queue->FrontRun();
    zTRY(zDat6_WriteItems(writer, queue->itemType, queue->Place(0), front));
    return zDat6_WriteItems(writer, queue->itemType, queue->items, queue->count - front);
}

zStatus Load(zDat6Reader* reader, zType /*type*/, zAlloc alloc, zObject* object)
{
    return zItems_LoadList<Queue>(reader, Construct, alloc, object);
}

constexpr zObjectOps queueOps = {Release, Clone, Save, Load};
} // namespace

zDEFINE_OBJECT_TYPE(zQueue, zObject, &queueOps);

zStatus zQueue_Construct(zQueue* queue, zType itemType, std::size_t capacity, zAlloc alloc)
{
    zFAULT_GATE();
    return queue == nullptr || itemType == nullptr ? zERROR_MISSING : Construct(queue, itemType, capacity, alloc);
}

zStatus zQueue_Add(zQueue queue, const void* item)
{
    zFAULT_GATE();
    Queue* const object = As(queue);
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
            return zERROR_MEMORY;
        }
        zTRY(Grow(*object, std::max(FIRST_CAPACITY, object->capacity * 2)));
    }
    zTRY(zItems_Share(object->itemType, object->Place(object->count), item, 1));
    ++object->count;
    return zOK;
}

zStatus zQueue_Remove(zQueue queue, void* item)
{
    zFAULT_GATE();
    Queue* const object = As(queue);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (object->count == 0)
    {
        return zERROR_MISSING;
    }
    unsigned char* const oldest = object->Place(0);
    if (item != nullptr)
    {
        std::memcpy(item, oldest, object->itemSize);
    }
    else
    {
        zItems_Release(object->itemType, oldest, 1);
    }
    object->head = object->head + 1 == object->capacity ? 0 : object->head + 1;
    --object->count;
    return zOK;
}

zStatus zQueue_Purge(zQueue queue)
{
    zFAULT_GATE();
    Queue* const object = As(queue);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    Purge(*object);
    return zOK;
}

std::size_t zQueue_Count(zQueue queue)
{
    const Queue* const object = As(queue);
    return object == nullptr ? 0 : object->count;
}

zType zQueue_ItemType(zQueue queue)
{
    const Queue* const object = As(queue);
    return object == nullptr ? nullptr : object->itemType;
}
