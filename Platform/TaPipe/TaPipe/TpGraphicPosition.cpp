#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicPosition.h>

namespace
{
struct Position
{
    TaPipe::TpGraphicPositionType type = TaPipe::TpGraphicPositionType::Result;
    zPoint3d64f position = {0, 0, 0};

    static constexpr std::tuple FIELDS{&Position::type, &Position::position};
    static constexpr TpContent CONTENT = TpContent::None;
};
} // namespace

zDEFINE_OBJECT_TYPE(TpGraphicPosition, TpGraphicElement, &TpElement_Ops<Position>);

zStatus TpGraphicPosition_Construct(TpGraphicPosition* element, zAlloc alloc)
{
    zFAULT_GATE();
    return TpElement_MakeDefault<Position>(zTypeOf(TpGraphicPosition), alloc, element);
}

TaPipe::TpGraphicPositionType TpGraphicPosition_Type(TpGraphicPosition element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicPosition), &Position::type);
}

zStatus TpGraphicPosition_SetType(TpGraphicPosition element, TaPipe::TpGraphicPositionType type)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicPosition), &Position::type, type);
}

zPoint3d64f TpGraphicPosition_Position(TpGraphicPosition element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicPosition), &Position::position);
}

zStatus TpGraphicPosition_SetPosition(TpGraphicPosition element, zPoint3d64f position)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicPosition), &Position::position, position);
}
