#include <zApi/zArray1.h>
#include <zApi/zArray2.h>
#include <zApi/zDat6.h>
#include <zApi/zItems.h>

#include <cstring>

namespace
{
// Both kinds of array are a block of items; a zArray1 is one row of it.
struct Array : zObjectClass
{
    zType itemType;
    std::size_t rows;
    std::size_t columns;
    void* items;

    [[nodiscard]] std::size_t Count() const
    {
        return rows * columns;
    }
};

Array* As(zObject array, zType type)
{
    return zObjectType_Cast<Array>(array, type);
}

void Release(zObject object) noexcept
{
    auto* const array = static_cast<Array*>(object);
    if (array->items != nullptr)
    {
        zItems_Release(array->itemType, array->items, array->Count());
        static_cast<void>(zAlloc_Free(array->alloc, array->items));
    }
}

zStatus Construct(zType type, zObject* out, zType itemType, std::size_t rows, std::size_t columns, zAlloc alloc)
{
    std::size_t count = 0;
    if (out == nullptr || itemType == nullptr)
    {
        return zERROR_MISSING;
    }
    if (__builtin_mul_overflow(rows, columns, &count))
    {
        return zERROR_PARAMETER;
    }
    Array* array = nullptr;
    zTRY(zObjectType_New(type, alloc, &array));
    array->itemType = itemType;
    array->rows = rows;
    array->columns = columns;
    return zObjectType_Finish(array, zItems_Get(itemType, count, alloc, &array->items), out);
}

zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    const auto* const source = static_cast<const Array*>(object);
    zObject made = nullptr;
    zTRY(Construct(source->type, &made, source->itemType, source->rows, source->columns, alloc));
    auto* const target = static_cast<Array*>(made);
    return zObjectType_Finish(
        target, zItems_Clone(source->itemType, target->items, source->items, source->Count(), alloc), clone);
}

zStatus Zero(Array* array)
{
    if (array == nullptr)
    {
        return zERROR_PARAMETER;
    }
    zItems_Release(array->itemType, array->items, array->Count());
    std::memset(array->items, 0, array->itemType->size * array->Count());
    return zOK;
}

void* ItemAt(const Array* array, std::size_t row, std::size_t column)
{
    if (array == nullptr || row >= array->rows || column >= array->columns)
    {
        return nullptr;
    }
    return static_cast<unsigned char*>(array->items) + (row * array->columns + column) * array->itemType->size;
}

zStatus Save(zObject object, zDat6Writer* writer)
{
    const auto* const array = static_cast<const Array*>(object);
    zTRY(zDat6_WriteType(writer, array->itemType));
    if (array->type == zTypeOf(zArray2))
    {
        zTRY(zDat6_WriteNumber(writer, array->rows));
    }
    zTRY(zDat6_WriteNumber(writer, array->columns));
    return zDat6_WriteItems(writer, array->itemType, array->items, array->Count());
}

zStatus Load(zDat6Reader* reader, zType type, zAlloc alloc, zObject* object)
{
    zType itemType = nullptr;
    z64u rows = 1;
    z64u columns = 0;
    zTRY(zDat6_ReadType(reader, &itemType));
    if (type == zTypeOf(zArray2))
    {
        zTRY(zDat6_ReadNumber(reader, zDAT6_ANY, &rows));
    }
    zTRY(zDat6_ReadNumber(reader, zDAT6_ANY, &columns));
    z64u count = 0;
    if (__builtin_mul_overflow(rows, columns, &count))
    {
        return zERROR_FORMAT;
    }
    zTRY(zDat6_CheckCount(reader, count, itemType->size));
    zObject made = nullptr;
    zTRY(Construct(type, &made, itemType, rows, columns, alloc));
    auto* const array = static_cast<Array*>(made);
    return zObjectType_Finish(array, zDat6_ReadItems(reader, itemType, array->items, count, alloc), object);
}

constexpr zObjectOps arrayOps = {Release, Clone, Save, Load};
} // namespace

zDEFINE_OBJECT_TYPE(zArray1, zObject, &arrayOps);
zDEFINE_OBJECT_TYPE(zArray2, zObject, &arrayOps);

zStatus zArray1_Construct(zArray1* array, zType itemType, std::size_t length, zAlloc alloc)
{
    zFAULT_GATE();
    return Construct(zTypeOf(zArray1), array, itemType, 1, length, alloc);
}

zStatus zArray1_Zero(zArray1 array)
{
    zFAULT_GATE();
    return Zero(As(array, zTypeOf(zArray1)));
}

std::size_t zArray1_Length(zArray1 array)
{
    const Array* const object = As(array, zTypeOf(zArray1));
    return object == nullptr ? 0 : object->columns;
}

zType zArray1_ItemType(zArray1 array)
{
    const Array* const object = As(array, zTypeOf(zArray1));
    return object == nullptr ? nullptr : object->itemType;
}

void* zArray1_Items(zArray1 array)
{
    return zArray1_At(array, 0);
}

void* zArray1_At(zArray1 array, std::size_t index)
{
    return ItemAt(As(array, zTypeOf(zArray1)), 0, index);
}

zStatus zArray2_Construct(zArray2* array, zType itemType, std::size_t rows, std::size_t columns, zAlloc alloc)
{
    zFAULT_GATE();
    return Construct(zTypeOf(zArray2), array, itemType, rows, columns, alloc);
}

zStatus zArray2_Zero(zArray2 array)
{
    zFAULT_GATE();
    return Zero(As(array, zTypeOf(zArray2)));
}

zStatus zArray2_SetItem(zArray2 array, std::size_t row, std::size_t column, const void* item)
{
    zFAULT_GATE();
    const Array* const object = As(array, zTypeOf(zArray2));
    void* const place = ItemAt(object, row, column);
    if (place == nullptr || item == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (!object->itemType->isObject)
    {
        std::memcpy(place, item, object->itemType->size);
        return zOK;
    }
    zObject shared = nullptr;
    zTRY(zItems_Share(object->itemType, &shared, item, 1));
    zObjectType_Put(static_cast<zObject*>(place), shared);
    return zOK;
}

std::size_t zArray2_Length(zArray2 array, std::size_t dimension)
{
    const Array* const object = As(array, zTypeOf(zArray2));
    if (object == nullptr || dimension > 1)
    {
        return 0;
    }
    return dimension == 0 ? object->rows : object->columns;
}

zType zArray2_ItemType(zArray2 array)
{
    const Array* const object = As(array, zTypeOf(zArray2));
    return object == nullptr ? nullptr : object->itemType;
}

void* zArray2_Items(zArray2 array)
{
    return zArray2_At(array, 0, 0);
}

void* zArray2_At(zArray2 array, std::size_t row, std::size_t column)
{
    return ItemAt(As(array, zTypeOf(zArray2)), row, column);
}
