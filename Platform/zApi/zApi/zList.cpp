#include <zApi/zDat6.h>
#include <zApi/zItems.h>
#include <zApi/zList.h>

#include <algorithm>

namespace
{
constexpr std::size_t FIRST_CAPACITY = 16;
constexpr std::size_t NODE_ALIGNMENT = 16;

/// The item stands behind its node.
struct alignas(NODE_ALIGNMENT) Node
{
    Node* next;
    Node* previous;
    const void* owner; ///< the list that it is a place of, null while it is free
};

/// A block of nodes; the nodes stand behind it.
struct alignas(NODE_ALIGNMENT) Chunk
{
    Chunk* next;
};

struct List : zObjectClass
{
    zType itemType;
    std::size_t nodeSize;
    std::size_t count;
    std::size_t capacity;
    Node* first;
    Node* last;
    Node* free; ///< linked by `next`
    Chunk* chunks;
};

List* As(zObject list)
{
    return zObjectType_Cast<List>(list, zTypeOf(zList));
}

Node* NodeAt(const List* list, zListItem place)
{
    auto* const node = static_cast<Node*>(place);
    return list != nullptr && node != nullptr && node->owner == list ? node : nullptr;
}

void* ItemOf(Node* node)
{
    return node + 1;
}

void PutFree(List& list, Node* node)
{
    node->owner = nullptr;
    node->next = list.free;
    list.free = node;
}

zStatus Grow(List& list, std::size_t added)
{
    std::size_t bytes = 0;
    if (__builtin_mul_overflow(list.nodeSize, added, &bytes) || __builtin_add_overflow(bytes, sizeof(Chunk), &bytes))
    {
        return zERROR_PARAMETER;
    }
    void* memory = nullptr;
    zTRY(zAlloc_Get(list.alloc, bytes, &memory));
    auto* const chunk = ::new (memory) Chunk{list.chunks};
    list.chunks = chunk;
    list.capacity += added;
    auto* const nodes = static_cast<unsigned char*>(memory) + sizeof(Chunk);
    // Last to first, so that nodes are taken in the order of their addresses.
    for (std::size_t i = added; i > 0; --i)
    {
        PutFree(list, ::new (nodes + (i - 1) * list.nodeSize) Node{});
    }
    return zOK;
}

/// Links a node in behind the last one, once `fill` has written its item.
template <typename Fill>
zStatus Append(List& list, const Fill& fill)
{
    if (list.free == nullptr)
    {
        zTRY(Grow(list, std::max(FIRST_CAPACITY, list.capacity)));
    }
    Node* const node = list.free;
    zTRY(fill(ItemOf(node)));
    list.free = node->next;
    node->owner = &list;
    node->next = nullptr;
    node->previous = list.last;
    (list.last == nullptr ? list.first : list.last->next) = node;
    list.last = node;
    ++list.count;
    return zOK;
}

void Unlink(List& list, Node* node)
{
    (node->previous == nullptr ? list.first : node->previous->next) = node->next;
    (node->next == nullptr ? list.last : node->next->previous) = node->previous;
    --list.count;
    PutFree(list, node);
}

void Purge(List& list) noexcept
{
    while (list.first != nullptr)
    {
        zItems_Release(list.itemType, ItemOf(list.first), 1);
        Unlink(list, list.first);
    }
}

zStatus Construct(zObject* out, zType itemType, std::size_t capacity, zAlloc alloc)
{
    std::size_t nodeSize = 0;
    if (__builtin_add_overflow(itemType->size, sizeof(Node) + NODE_ALIGNMENT - 1, &nodeSize))
    {
        return zERROR_PARAMETER;
    }
    List* list = nullptr;
    zTRY(zObjectType_New(zTypeOf(zList), alloc, &list));
    list->itemType = itemType;
    list->nodeSize = nodeSize / NODE_ALIGNMENT * NODE_ALIGNMENT;
    return zObjectType_Finish(list, capacity == 0 ? zOK : Grow(*list, capacity), out);
}

void Release(zObject object) noexcept
{
    auto* const list = static_cast<List*>(object);
    Purge(*list);
    while (list->chunks != nullptr)
    {
        Chunk* const chunk = list->chunks;
        list->chunks = chunk->next;
        static_cast<void>(zAlloc_Free(list->alloc, chunk));
    }
}

zStatus CloneItems(const List& source, List& target)
{
    for (Node* node = source.first; node != nullptr; node = node->next)
    {
        zTRY(Append(target,
                    [&](void* item) { return zItems_Clone(source.itemType, item, ItemOf(node), 1, target.alloc); }));
    }
    return zOK;
}

zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    const auto* const source = static_cast<const List*>(object);
    zObject made = nullptr;
    zTRY(Construct(&made, source->itemType, source->count, alloc));
    auto* const target = static_cast<List*>(made);
    return zObjectType_Finish(target, CloneItems(*source, *target), clone);
}

zStatus Save(zObject object, zDat6Writer* writer)
{
    const auto* const list = static_cast<const List*>(object);
    zTRY(zDat6_WriteListHead(writer, list->itemType, list->count));
    for (Node* node = list->first; node != nullptr; node = node->next)
    {
        zTRY(zDat6_WriteItems(writer, list->itemType, ItemOf(node), 1));
    }
    return zOK;
}

// A place takes more bytes than its item does in the file: the list grows as items come, and never beyond them.
zStatus LoadItems(zDat6Reader* reader, std::size_t count, List& list)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        if (list.free == nullptr)
        {
            zTRY(Grow(list, std::min(count - i, std::max(FIRST_CAPACITY, list.capacity))));
        }
        zTRY(Append(list, [&](void* item) { return zDat6_ReadItems(reader, list.itemType, item, 1, list.alloc); }));
    }
    return zOK;
}

zStatus Load(zDat6Reader* reader, zType /*type*/, zAlloc alloc, zObject* object)
{
    zType itemType = nullptr;
    std::size_t count = 0;
    zTRY(zDat6_ReadListHead(reader, &itemType, &count));
    zObject made = nullptr;
    zTRY(Construct(&made, itemType, 0, alloc));
    auto* const list = static_cast<List*>(made);
    return zObjectType_Finish(list, LoadItems(reader, count, *list), object);
}

constexpr zObjectOps listOps = {Release, Clone, Save, Load};
} // namespace

zDEFINE_OBJECT_TYPE(zList, zObject, &listOps);

zStatus zList_Construct(zList* list, zType itemType, std::size_t capacity, zAlloc alloc)
{
    zFAULT_GATE();
    return list == nullptr || itemType == nullptr ? zERROR_MISSING : Construct(list, itemType, capacity, alloc);
}

zStatus zList_Add(zList list, const void* item)
{
    zFAULT_GATE();
    List* const object = As(list);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (item == nullptr)
    {
        return zERROR_MISSING;
    }
    return Append(*object, [&](void* place) { return zItems_Share(object->itemType, place, item, 1); });
}

zStatus zList_Remove(zList list, zListItem place, void* item)
{
    zFAULT_GATE();
    List* const object = As(list);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    Node* const node = NodeAt(object, place);
    if (node == nullptr)
    {
        return zERROR_MISSING;
    }
    if (item != nullptr)
    {
        std::copy_n(static_cast<unsigned char*>(ItemOf(node)), object->itemType->size,
                    static_cast<unsigned char*>(item));
    }
    else
    {
        zItems_Release(object->itemType, ItemOf(node), 1);
    }
    Unlink(*object, node);
    return zOK;
}

zStatus zList_Purge(zList list)
{
    zFAULT_GATE();
    List* const object = As(list);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    Purge(*object);
    return zOK;
}

std::size_t zList_Count(zList list)
{
    const List* const object = As(list);
    return object == nullptr ? 0 : object->count;
}

zType zList_ItemType(zList list)
{
    const List* const object = As(list);
    return object == nullptr ? nullptr : object->itemType;
}

zListItem zList_First(zList list)
{
    const List* const object = As(list);
    return object == nullptr ? nullptr : object->first;
}

zListItem zList_Next(zList list, zListItem place)
{
    const Node* const node = NodeAt(As(list), place);
    return node == nullptr ? nullptr : node->next;
}

zListItem zList_AtIndex(zList list, std::size_t index)
{
    const List* const object = As(list);
    if (object == nullptr || index >= object->count)
    {
        return nullptr;
    }
    const std::size_t fromEnd = object->count - 1 - index;
    const bool isNearFirst = index <= fromEnd;
    Node* node = isNearFirst ? object->first : object->last;
    for (std::size_t steps = std::min(index, fromEnd); steps > 0; --steps)
    {
        node = isNearFirst ? node->next : node->previous;
    }
    return node;
}

void* zList_At(zList list, zListItem place)
{
    Node* const node = NodeAt(As(list), place);
    return node == nullptr ? nullptr : ItemOf(node);
}
