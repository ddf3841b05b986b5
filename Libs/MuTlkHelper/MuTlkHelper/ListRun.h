#pragma once

#include <TaApi/Raise.h>
#include <zApi/zArrayList.h>

#include <algorithm>
#include <cstddef>
#include <utility>

// Lists of a caller: found, made anew, and appended to a run of items at a time.

namespace Mu::TlkHelper
{
/// Ends what stands behind `*list`, if anything; it is null then.
inline void DropList(const Ta::Place& place, void** list)
{
    if (void* const former = std::exchange(*list, nullptr); former != nullptr)
    {
        Ta::Check(place, xzObject_DestroyImpl(former));
    }
}

/// Ends what stands behind `*list` and makes an empty list.
inline void RebuildList(const Ta::Place& place, void** list, zType itemType, std::size_t capacity, zAlloc alloc)
{
    DropList(place, list);
    Ta::Check(place, zArrayList_Construct(list, itemType, capacity, alloc));
}

/// Keeps a list of `itemType`; anything else is ended and made anew.
inline void KeepOrRebuildList(const Ta::Place& place, void** list, zType itemType, std::size_t capacity, zAlloc alloc)
{
    if (*list == nullptr || zArrayList_ItemType(*list) != itemType)
    {
        RebuildList(place, list, itemType, capacity, alloc);
    }
}

/// Makes a list where there is none. One of another type raises -984.
inline void RequireList(const Ta::Place& place, void** list, zType itemType, std::size_t capacity, zAlloc alloc)
{
    if (*list == nullptr)
    {
        Ta::Check(place, zArrayList_Construct(list, itemType, capacity, alloc));
    }
    else if (zArrayList_ItemType(*list) != itemType)
    {
        Ta::Raise(place, zERROR_FORMAT);
    }
}

/// Appends runs of items in place. Nothing is asked of the list before there is something to append; then -997 is
/// raised if it is no list, and -984 if its items are not of the size of `Item`. What was written belongs to the list
/// after `Finish`, once room had to be made for more, and also if something else fails.
template <typename Item>
class ListRun
{
public:
    ListRun(const Ta::Place& callersPlace, zArrayList list)
        : place(callersPlace)
        , handle(list)
    {
        Look();
    }

    ListRun(const ListRun&) = delete;
    ListRun& operator=(const ListRun&) = delete;

    ~ListRun()
    {
        if (next != written)
        {
            static_cast<void>(zArrayList_CountUp(handle, static_cast<std::size_t>(next - written)));
        }
    }

    [[nodiscard]] bool HasRoom(std::size_t count) const
    {
        return count <= static_cast<std::size_t>(end - next);
    }

    /// Room for `count` items, which must be written before the next call, and `Added`.
    [[nodiscard]] Item* Room(std::size_t count)
    {
        if (!HasRoom(count)) [[unlikely]]
        {
            Reserve(count);
        }
        return next;
    }

    void Added(std::size_t count)
    {
        next += count;
    }

    /// Makes room for `count` items more. A list that holds items already at least doubles, so that many small runs do
    /// not copy them each time.
    [[gnu::noinline]] void Reserve(std::size_t count)
    {
        if (HasRoom(count))
        {
            return;
        }
        Finish();
        if (!TakesItems())
        {
            Ta::Raise(place, zArrayList_ItemType(handle) == nullptr ? zERROR_PARAMETER : zERROR_FORMAT);
        }
        const zArrayListClass& list = *static_cast<zArrayListClass*>(handle);
        const std::size_t needed = list.count + count;
        Ta::Check(place, zArrayList_Reserve(handle, list.count == 0 ? needed : std::max(needed, list.capacity * 2)));
        Look();
    }

    void Finish()
    {
        if (next != written)
        {
            const auto added = static_cast<std::size_t>(next - std::exchange(written, next));
            Ta::Check(place, zArrayList_CountUp(handle, added));
        }
    }

private:
    [[nodiscard]] bool TakesItems() const
    {
        const zType itemType = zArrayList_ItemType(handle);
        return itemType != nullptr && !itemType->isObject && itemType->size == sizeof(Item);
    }

    void Look()
    {
        if (handle != nullptr && TakesItems())
        {
            const zArrayListClass& list = *static_cast<zArrayListClass*>(handle);
            auto* const items = reinterpret_cast<Item*>(list.items);
            written = items + list.count;
            next = written;
            end = items + list.capacity;
        }
    }

    Ta::Place place;
    zArrayList handle;
    Item* written = nullptr; // behind what the list counts
    Item* next = nullptr;
    Item* end = nullptr;
};
} // namespace Mu::TlkHelper
