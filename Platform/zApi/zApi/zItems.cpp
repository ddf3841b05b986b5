#include <zApi/zItems.h>

#include <cstring>
#include <span>

namespace
{
std::span<zObject> Handles(void* items, std::size_t count)
{
    return {static_cast<zObject*>(items), count};
}
} // namespace

zStatus zItems_Get(zType itemType, std::size_t count, zAlloc alloc, void** items)
{
    std::size_t bytes = 0;
    zTRY(zItems_Bytes(itemType, count, &bytes));
    zTRY(zAlloc_Get(alloc, bytes, items));
    if (itemType->isObject)
    {
        std::memset(*items, 0, bytes);
    }
    return zOK;
}

void zItems_Release(zType itemType, void* items, std::size_t count) noexcept
{
    if (!itemType->isObject)
    {
        return;
    }
    for (zObject& handle : Handles(items, count))
    {
        zObjectType_Put(&handle, nullptr);
    }
}

zStatus zItems_Share(zType itemType, void* to, const void* from, std::size_t count)
{
    if (!itemType->isObject)
    {
        if (count > 0)
        {
            std::memcpy(to, from, itemType->size * count);
        }
        return zOK;
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        zObject const handle = static_cast<const zObject*>(from)[i];
        if (handle != nullptr)
        {
            zTRY(xzObject_ShareImpl(handle));
        }
        // A failure further on leaves the handles shared so far in the block, whose owner releases them.
        static_cast<zObject*>(to)[i] = handle;
    }
    return zOK;
}

zStatus zItems_Clone(zType itemType, void* to, const void* from, std::size_t count, zAlloc alloc)
{
    if (!itemType->isObject)
    {
        return zItems_Share(itemType, to, from, count);
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        zTRY(xzObject_CloneImpl(static_cast<zObject*>(to) + i, static_cast<const zObject*>(from)[i], alloc));
    }
    return zOK;
}
