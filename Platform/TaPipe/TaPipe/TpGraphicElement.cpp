#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicLabel.h>
#include <TaPipe/TpGraphicLineSet.h>
#include <TaPipe/TpGraphicPlane.h>
#include <TaPipe/TpGraphicPointSet.h>
#include <TaPipe/TpGraphicPosition.h>
#include <TaPipe/TpGraphicRay.h>
#include <TaPipe/TpGraphicRegion2d.h>
#include <TaPipe/TpGraphicRegion3d.h>

#include <zApi/zArray1.h>
#include <zApi/zString.h>

#include <algorithm>
#include <array>

zDEFINE_OBJECT_TYPE(TpGraphicElement, zObject, nullptr);

namespace
{
using TaPipe::TpGraphicKind;

struct KindOfType
{
    zType type;
    TpGraphicKind kind;
};

constinit const std::array<KindOfType, 8> kinds = {{
    {zTypeOf(TpGraphicPointSet), TpGraphicKind::PointSet},
    {zTypeOf(TpGraphicLineSet), TpGraphicKind::LineSet},
    {zTypeOf(TpGraphicRay), TpGraphicKind::Ray},
    {zTypeOf(TpGraphicLabel), TpGraphicKind::Label},
    {zTypeOf(TpGraphicPlane), TpGraphicKind::Plane},
    {zTypeOf(TpGraphicRegion2d), TpGraphicKind::Region2d},
    {zTypeOf(TpGraphicRegion3d), TpGraphicKind::Region3d},
    {zTypeOf(TpGraphicPosition), TpGraphicKind::Position},
}};

zStatus LoadPoints(zDat6Reader* reader, zAlloc alloc, zObject* array)
{
    zTRY(zDat6_ReadObject(reader, zTypeOf(zArray1), alloc, array));
    const bool isTaken =
        zArray1_ItemType(*array) == zTypeOf(zPoint3d32f) && zArray1_Length(*array) <= TpGRAPHIC_MAX_POINTS;
    return isTaken ? zOK : zERROR_FORMAT;
}
} // namespace

zStatus TpElement_CopyPoints(const zPoint3d32f* points, std::size_t count, zAlloc alloc, zObject* array)
{
    if (points == nullptr && count > 0)
    {
        return zERROR_MISSING;
    }
    if (count > TpGRAPHIC_MAX_POINTS)
    {
        return zERROR_PARAMETER;
    }
    zTRY(zArray1_Construct(array, zTypeOf(zPoint3d32f), count, alloc));
    std::copy_n(points, count, static_cast<zPoint3d32f*>(zArray1_Items(*array)));
    return zOK;
}

zStatus TpElement_LoadContent(zDat6Reader* reader, TpContent content, zAlloc alloc, zObject* object)
{
    switch (content)
    {
    case TpContent::Points:
        return LoadPoints(reader, alloc, object);
    case TpContent::Text:
        return zDat6_ReadObject(reader, zTypeOf(zString), alloc, object);
    case TpContent::None:
        break;
    }
    return zOK;
}

TaPipe::TpGraphicKind TpGraphicElement_Kind(TpGraphicElement element)
{
    const zType type = xzObject_Type(element);
    const auto* const found = std::ranges::find(kinds, type, &KindOfType::type);
    return found == kinds.end() ? TpGraphicKind::None : found->kind;
}
