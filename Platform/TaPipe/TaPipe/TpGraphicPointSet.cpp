#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicPointSet.h>

#include <zApi/zArray1.h>

namespace
{
struct PointSet
{
    z32f size = 0;
    int pointShape = 0;
    z32u color = 0;

    static constexpr std::tuple FIELDS{&PointSet::size, &PointSet::pointShape, &PointSet::color};
    static constexpr TpContent CONTENT = TpContent::Points;
};

zArray1 PointsOf(zObject element)
{
    return TpElement_Content<PointSet>(element, zTypeOf(TpGraphicPointSet));
}
} // namespace

zDEFINE_OBJECT_TYPE(TpGraphicPointSet, TpGraphicElement, &TpElement_Ops<PointSet>);

zStatus TpGraphicPointSet_Construct(TpGraphicPointSet* element, z32f size, int pointShape, z32u color,
                                    const zPoint3d32f* points, std::size_t count, zAlloc alloc)
{
    zFAULT_GATE();
    const PointSet values = {size, pointShape, color};
    return TpElement_MakeOfPoints(zTypeOf(TpGraphicPointSet), values, points, count, alloc, element);
}

z32f TpGraphicPointSet_Size(TpGraphicPointSet element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicPointSet), &PointSet::size);
}

int TpGraphicPointSet_PointShape(TpGraphicPointSet element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicPointSet), &PointSet::pointShape);
}

z32u TpGraphicPointSet_Color(TpGraphicPointSet element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicPointSet), &PointSet::color);
}

std::size_t TpGraphicPointSet_Count(TpGraphicPointSet element)
{
    return zArray1_Length(PointsOf(element));
}

const zPoint3d32f* TpGraphicPointSet_Points(TpGraphicPointSet element)
{
    return static_cast<const zPoint3d32f*>(zArray1_Items(PointsOf(element)));
}
