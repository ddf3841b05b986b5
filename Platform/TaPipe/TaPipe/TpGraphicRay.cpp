#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicRay.h>

namespace
{
struct Ray
{
    zPoint3d32f position = {0, 0, 0};
    zPoint3d32f direction = {0, 0, 1};
    z32f width = 1;
    z32u color = 0xFFFFFFFFU;

    static constexpr std::tuple FIELDS{&Ray::position, &Ray::direction, &Ray::width, &Ray::color};
    static constexpr TpContent CONTENT = TpContent::None;
};
} // namespace

zDEFINE_OBJECT_TYPE(TpGraphicRay, TpGraphicElement, &TpElement_Ops<Ray>);

zStatus TpGraphicRay_Construct(TpGraphicRay* element, zAlloc alloc)
{
    zFAULT_GATE();
    return TpElement_MakeDefault<Ray>(zTypeOf(TpGraphicRay), alloc, element);
}

zPoint3d32f TpGraphicRay_Position(TpGraphicRay element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRay), &Ray::position);
}

zStatus TpGraphicRay_SetPosition(TpGraphicRay element, zPoint3d32f position)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRay), &Ray::position, position);
}

zPoint3d32f TpGraphicRay_Direction(TpGraphicRay element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRay), &Ray::direction);
}

zStatus TpGraphicRay_SetDirection(TpGraphicRay element, zPoint3d32f direction)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRay), &Ray::direction, direction);
}

z32f TpGraphicRay_Width(TpGraphicRay element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRay), &Ray::width);
}

zStatus TpGraphicRay_SetWidth(TpGraphicRay element, z32f width)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRay), &Ray::width, width);
}

z32u TpGraphicRay_Color(TpGraphicRay element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicRay), &Ray::color);
}

zStatus TpGraphicRay_SetColor(TpGraphicRay element, z32u color)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicRay), &Ray::color, color);
}
