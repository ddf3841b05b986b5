#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicPlane.h>

namespace
{
struct Plane
{
    zPoint3d32f normal = {0, 0, 1};
    z32f distance = 0;

    static constexpr std::tuple FIELDS{&Plane::normal, &Plane::distance};
    static constexpr TpContent CONTENT = TpContent::None;
};
} // namespace

zDEFINE_OBJECT_TYPE(TpGraphicPlane, TpGraphicElement, &TpElement_Ops<Plane>);

zStatus TpGraphicPlane_Construct(TpGraphicPlane* element, zAlloc alloc)
{
    zFAULT_GATE();
    return TpElement_MakeDefault<Plane>(zTypeOf(TpGraphicPlane), alloc, element);
}

zPoint3d32f TpGraphicPlane_Normal(TpGraphicPlane element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicPlane), &Plane::normal);
}

zStatus TpGraphicPlane_SetNormal(TpGraphicPlane element, zPoint3d32f normal)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicPlane), &Plane::normal, normal);
}

z32f TpGraphicPlane_Distance(TpGraphicPlane element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicPlane), &Plane::distance);
}

zStatus TpGraphicPlane_SetDistance(TpGraphicPlane element, z32f distance)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicPlane), &Plane::distance, distance);
}
