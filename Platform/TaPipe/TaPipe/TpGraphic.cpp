#include <TaPipe/TpGraphic.h>
#include <TaPipe/TpGraphicLabel.h>
#include <TaPipe/TpGraphicLineSet.h>
#include <TaPipe/TpGraphicPlane.h>
#include <TaPipe/TpGraphicPointSet.h>
#include <TaPipe/TpGraphicPosition.h>
#include <TaPipe/TpGraphicRay.h>
#include <TaPipe/TpGraphicRegion.h>

#include <zApi/zArrayList.h>
#include <zApi/zDat6.h>
#include <zApi/zObjectType.h>

#include <algorithm>
#include <array>

namespace
{
constexpr std::size_t FIRST_CAPACITY = 16;

struct Graphic : zObjectClass
{
    zArrayList elements; ///< holds a reference
};

Graphic* As(zObject graphic)
{
    return zObjectType_Cast<Graphic>(graphic, zTypeOf(TpGraphic));
}

void Release(zObject object) noexcept
{
    zObjectType_Put(&static_cast<Graphic*>(object)->elements, nullptr);
}

zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    Graphic* made = nullptr;
    zTRY(zObjectType_New(zTypeOf(TpGraphic), alloc, &made));
    return zObjectType_Finish(made, xzObject_CloneImpl(&made->elements, static_cast<Graphic*>(object)->elements, alloc),
                              clone);
}

// The list would share an item that it is given by zArrayList_Add; written in place, the caller's reference moves.
zStatus MoveIn(zArrayListClass& list, zObject element)
{
    if (list.count == list.capacity)
    {
        zTRY(zArrayList_Reserve(&list, std::max(FIRST_CAPACITY, 2 * list.capacity)));
    }
    std::memcpy(list.items + list.count * list.itemSize, &element, sizeof(element));
    return zArrayList_CountUp(&list, 1);
}

zStatus Add(zObject graphic, zObject element, zType type)
{
    const Graphic* const object = As(graphic);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (element == nullptr)
    {
        return zERROR_MISSING;
    }
    if (!xzCastClass_ObjectIs(element, type))
    {
        return zERROR_PARAMETER;
    }
    return MoveIn(*static_cast<zArrayListClass*>(object->elements), element);
}

zStatus Save(zObject object, zDat6Writer* writer)
{
    zArrayList const elements = static_cast<const Graphic*>(object)->elements;
    const std::size_t count = zArrayList_Count(elements);
    zTRY(zDat6_WriteNumber(writer, count));
    return zDat6_WriteItems(writer, zTypeOf(TpGraphicElement), zArrayList_Items(elements), count);
}

/// True for the elements that one of the operations below adds.
bool IsTaken(zObject element)
{
    constexpr std::array<zType, 7> types = {
        zTypeOf(TpGraphicPointSet), zTypeOf(TpGraphicLineSet), zTypeOf(TpGraphicRay),     zTypeOf(TpGraphicLabel),
        zTypeOf(TpGraphicPlane),    zTypeOf(TpGraphicRegion),  zTypeOf(TpGraphicPosition)};
    return std::ranges::any_of(types, [element](zType type) { return xzCastClass_ObjectIs(element, type); });
}

zStatus LoadElement(zDat6Reader* reader, const Graphic& graphic)
{
    zObject element = nullptr;
    zTRY(zDat6_ReadObject(reader, zTypeOf(TpGraphicElement), graphic.alloc, &element));
    const zStatus status =
        IsTaken(element) ? MoveIn(*static_cast<zArrayListClass*>(graphic.elements), element) : zERROR_FORMAT;
    if (status != zOK)
    {
        static_cast<void>(xzObject_DestroyImpl(element));
    }
    return status;
}

// The list grows as elements come.
zStatus LoadElements(zDat6Reader* reader, std::size_t count, const Graphic& graphic)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        zTRY(LoadElement(reader, graphic));
    }
    return zOK;
}

zStatus Make(zAlloc alloc, zObject* out)
{
    Graphic* made = nullptr;
    zTRY(zObjectType_New(zTypeOf(TpGraphic), alloc, &made));
    return zObjectType_Finish(made, zArrayList_Construct(&made->elements, zTypeOf(TpGraphicElement), 0, alloc), out);
}

zStatus Load(zDat6Reader* reader, zType /*type*/, zAlloc alloc, zObject* object)
{
    // An element takes the 8 bytes of its name's length at least.
    std::size_t count = 0;
    zTRY(zDat6_ReadCount(reader, sizeof(z64u), &count));
    zObject made = nullptr;
    zTRY(Make(alloc, &made));
    auto* const graphic = static_cast<Graphic*>(made);
    return zObjectType_Finish(graphic, LoadElements(reader, count, *graphic), object);
}

constexpr zObjectOps graphicOps = {Release, Clone, Save, Load};
} // namespace

zDEFINE_OBJECT_TYPE(TpGraphic, zObject, &graphicOps);

zStatus TpGraphic_Construct(TpGraphic* graphic, zAlloc alloc)
{
    zFAULT_GATE();
    return graphic == nullptr ? zERROR_MISSING : Make(alloc, graphic);
}

zStatus TpGraphic_AddPointSet(TpGraphic graphic, TpGraphicElement element)
{
    zFAULT_GATE();
    return Add(graphic, element, zTypeOf(TpGraphicPointSet));
}

zStatus TpGraphic_AddLineSet(TpGraphic graphic, TpGraphicElement element)
{
    zFAULT_GATE();
    return Add(graphic, element, zTypeOf(TpGraphicLineSet));
}

zStatus TpGraphic_AddRay(TpGraphic graphic, TpGraphicElement element)
{
    zFAULT_GATE();
    return Add(graphic, element, zTypeOf(TpGraphicRay));
}

zStatus TpGraphic_AddLabel(TpGraphic graphic, TpGraphicElement element)
{
    zFAULT_GATE();
    return Add(graphic, element, zTypeOf(TpGraphicLabel));
}

zStatus TpGraphic_AddPlane(TpGraphic graphic, TpGraphicElement element)
{
    zFAULT_GATE();
    return Add(graphic, element, zTypeOf(TpGraphicPlane));
}

zStatus TpGraphic_AddRegion(TpGraphic graphic, TpGraphicElement element)
{
    zFAULT_GATE();
    return Add(graphic, element, zTypeOf(TpGraphicRegion));
}

zStatus TpGraphic_AddPosition(TpGraphic graphic, TpGraphicElement element)
{
    zFAULT_GATE();
    return Add(graphic, element, zTypeOf(TpGraphicPosition));
}

std::size_t TpGraphic_Count(TpGraphic graphic)
{
    const Graphic* const object = As(graphic);
    return object == nullptr ? 0 : zArrayList_Count(object->elements);
}

TpGraphicElement TpGraphic_At(TpGraphic graphic, std::size_t index)
{
    const Graphic* const object = As(graphic);
    void* const place = object == nullptr ? nullptr : zArrayList_At(object->elements, index);
    return place == nullptr ? nullptr : *static_cast<zObject*>(place);
}
