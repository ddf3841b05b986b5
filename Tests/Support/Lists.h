#pragma once

#include <TaApi/Object.h>
#include <zApi/zArray1.h>
#include <zApi/zArray2.h>
#include <zApi/zArrayList.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Support
{
/// An output of the library that a test owns: the `void**` that members take, released at the end.
class Handle
{
public:
    Handle() = default;

    explicit Handle(void* newObject)
        : object(newObject)
    {
    }

    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    ~Handle()
    {
        static_cast<void>(xzObject_DestroyImpl(object));
    }

    [[nodiscard]] void** Out()
    {
        return &object;
    }

    [[nodiscard]] void* Get() const
    {
        return object;
    }

private:
    void* object = nullptr;
};

/// A new list, which the caller owns.
inline void* NewList(zType itemType, std::size_t capacity = 0, zAlloc alloc = nullptr)
{
    void* list = nullptr;
    MU_CHECK(zArrayList_Construct(&list, itemType, capacity, alloc));
    return list;
}

/// The items of a list of `Item`.
template <typename Item>
std::vector<Item> ItemsOf(void* list)
{
    const auto* const items = static_cast<const Item*>(zArrayList_Items(list));
    return {items, items + zArrayList_Count(list)};
}

/// The items of a `zArray1` of `Item`.
template <typename Item>
std::vector<Item> ItemsOfArray(void* array)
{
    const auto* const items = static_cast<const Item*>(zArray1_Items(array));
    return {items, items + zArray1_Length(array)};
}

/// The items of a `zArray2` of `Item`, row by row.
template <typename Item>
std::vector<Item> ItemsOfGrid(void* array)
{
    const auto* const items = static_cast<const Item*>(zArray2_Items(array));
    return {items, items + zArray2_Length(array, 0) * zArray2_Length(array, 1)};
}

/// A new `zArray2` of the items, row by row.
template <typename Item>
Ta::Object<void*> NewGrid(zType itemType, std::size_t rows, std::size_t columns, const std::vector<Item>& items)
{
    Ta::Object<void*> array;
    MU_CHECK(zArray2_Construct(array.Out(), itemType, rows, columns, nullptr));
    std::copy(items.begin(), items.end(), static_cast<Item*>(zArray2_Items(array.Get())));
    return array;
}
} // namespace Support
