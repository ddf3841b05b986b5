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

TaPipe::TpGraphicKind TpGraphicElement_Kind(TpGraphicElement element)
{
    const zType type = xzObject_Type(element);
    const auto* const found = std::ranges::find(kinds, type, &KindOfType::type);
    return found == kinds.end() ? TpGraphicKind::None : found->kind;
}
