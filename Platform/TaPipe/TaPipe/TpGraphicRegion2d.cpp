#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicRegion2d.h>

namespace
{
struct Region2d
{
    zPoint64f center = {0, 0};
    zPoint64f dimensions = {0, 0};
    z64f yAngle = 0;

    static constexpr std::tuple FIELDS{&Region2d::center, &Region2d::dimensions, &Region2d::yAngle};
    static constexpr TpContent CONTENT = TpContent::None;
};
} // namespace

zDEFINE_OBJECT_TYPE(TpGraphicRegion2d, TpGraphicRegion, &TpElement_Ops<Region2d>);

zStatus TpGraphicRegion2d_Construct(TpGraphicRegion2d* element, zAlloc alloc)
{
    zFAULT_GATE();
    return TpElement_MakeDefault<Region2d>(zTypeOf(TpGraphicRegion2d), alloc, element);
}

zPoint64f TpGraphicRegion2d_Center(TpGraphicRegion2d element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRegion2d), &Region2d::center);
}

zStatus TpGraphicRegion2d_SetCenter(TpGraphicRegion2d element, z64f x, z64f z)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRegion2d), &Region2d::center, zPoint64f{x, z});
}

zPoint64f TpGraphicRegion2d_Dimensions(TpGraphicRegion2d element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRegion2d), &Region2d::dimensions);
}

zStatus TpGraphicRegion2d_SetDimensions(TpGraphicRegion2d element, z64f width, z64f height)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRegion2d), &Region2d::dimensions, zPoint64f{width, height});
}

z64f TpGraphicRegion2d_YAngle(TpGraphicRegion2d element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRegion2d), &Region2d::yAngle);
}

zStatus TpGraphicRegion2d_SetYAngle(TpGraphicRegion2d element, z64f yAngle)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRegion2d), &Region2d::yAngle, yAngle);
}
