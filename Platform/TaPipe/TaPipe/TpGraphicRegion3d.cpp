#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicRegion3d.h>

namespace
{
struct Region3d
{
    zPoint3d64f center = {0, 0, 0};
    zPoint3d64f dimensions = {0, 0, 0};
    z64f zAngle = 0;

    static constexpr std::tuple FIELDS{&Region3d::center, &Region3d::dimensions, &Region3d::zAngle};
    static constexpr TpContent CONTENT = TpContent::None;
};
} // namespace

zDEFINE_OBJECT_TYPE(TpGraphicRegion3d, TpGraphicRegion, &TpElement_Ops<Region3d>);

zStatus TpGraphicRegion3d_Construct(TpGraphicRegion3d* element, zAlloc alloc)
{
    zFAULT_GATE();
    return TpElement_MakeDefault<Region3d>(zTypeOf(TpGraphicRegion3d), alloc, element);
}

zPoint3d64f TpGraphicRegion3d_Center(TpGraphicRegion3d element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRegion3d), &Region3d::center);
}

zStatus TpGraphicRegion3d_SetCenter(TpGraphicRegion3d element, z64f x, z64f y, z64f z)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRegion3d), &Region3d::center, zPoint3d64f{x, y, z});
}

zPoint3d64f TpGraphicRegion3d_Dimensions(TpGraphicRegion3d element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRegion3d), &Region3d::dimensions);
}

zStatus TpGraphicRegion3d_SetDimensions(TpGraphicRegion3d element, z64f width, z64f length, z64f height)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRegion3d), &Region3d::dimensions,
                         zPoint3d64f{width, length, height});
}

z64f TpGraphicRegion3d_ZAngle(TpGraphicRegion3d element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRegion3d), &Region3d::zAngle);
}

zStatus TpGraphicRegion3d_SetZAngle(TpGraphicRegion3d element, z64f zAngle)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRegion3d), &Region3d::zAngle, zAngle);
}
