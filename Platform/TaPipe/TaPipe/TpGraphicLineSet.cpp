#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicLineSet.h>

#include <zApi/zArray1.h>

namespace
{
struct LineSet
{
    z32f width = 0;
    z32u color = 0;
    int lineMode = 0;
    int lineEnding = 0;

    static constexpr std::tuple FIELDS{&LineSet::width, &LineSet::color, &LineSet::lineMode, &LineSet::lineEnding};
    static constexpr TpContent CONTENT = TpContent::Points;
};

zArray1 PointsOf(zObject element)
{
    return TpElement_Content<LineSet>(element, zTypeOf(TpGraphicLineSet));
}
} // namespace

zDEFINE_OBJECT_TYPE(TpGraphicLineSet, TpGraphicElement, &TpElement_Ops<LineSet>);

zStatus TpGraphicLineSet_Construct(TpGraphicLineSet* element, z32f width, z32u color, int lineMode, int lineEnding,
                                   const zPoint3d32f* points, std::size_t count, zAlloc alloc)
{
    zFAULT_GATE();
    const LineSet values = {width, color, lineMode, lineEnding};
    return TpElement_MakeOfPoints(zTypeOf(TpGraphicLineSet), values, points, count, alloc, element);
}

z32f TpGraphicLineSet_Width(TpGraphicLineSet element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicLineSet), &LineSet::width);
}

z32u TpGraphicLineSet_Color(TpGraphicLineSet element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicLineSet), &LineSet::color);
}

int TpGraphicLineSet_LineMode(TpGraphicLineSet element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicLineSet), &LineSet::lineMode);
}

int TpGraphicLineSet_LineEnding(TpGraphicLineSet element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicLineSet), &LineSet::lineEnding);
}

std::size_t TpGraphicLineSet_Count(TpGraphicLineSet element)
{
    return zArray1_Length(PointsOf(element));
}

const zPoint3d32f* TpGraphicLineSet_Points(TpGraphicLineSet element)
{
    return static_cast<const zPoint3d32f*>(zArray1_Items(PointsOf(element)));
}
