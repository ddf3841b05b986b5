#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicLabel.h>

#include <zApi/zString.h>

namespace
{
struct Label
{
    zPoint3d64f position = {0, 0, 0};

    static constexpr std::tuple FIELDS{&Label::position};
    static constexpr TpContent CONTENT = TpContent::Text;
};
} // namespace

zDEFINE_OBJECT_TYPE(TpGraphicLabel, TpGraphicElement, &TpElement_Ops<Label>);

zStatus TpGraphicLabel_Construct(TpGraphicLabel* element, zAlloc alloc)
{
    zFAULT_GATE();
    return TpElement_MakeDefault<Label>(zTypeOf(TpGraphicLabel), alloc, element);
}

const char* TpGraphicLabel_Text(TpGraphicLabel element)
{
    if (!xzCastClass_ObjectIs(element, zTypeOf(TpGraphicLabel)))
    {
        return nullptr;
    }
    const char* const text = zString_Chars(TpElement_Content<Label>(element, zTypeOf(TpGraphicLabel)));
    return text == nullptr ? "" : text;
}

zStatus TpGraphicLabel_SetText(TpGraphicLabel element, const char* text)
{
    zFAULT_GATE();
    auto* const label = zObjectType_Cast<TpElementClass<Label>>(element, zTypeOf(TpGraphicLabel));
    if (label == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (text == nullptr)
    {
        return zERROR_MISSING;
    }
    zString copy = nullptr;
    zTRY(zString_Construct(&copy, text, label->alloc));
    zObjectType_Put(&label->content, copy);
    return zOK;
}

zPoint3d64f TpGraphicLabel_Position(TpGraphicLabel element)
{
    return TpElement_Get(element, zTypeOf(TpGraphicLabel), &Label::position);
}

zStatus TpGraphicLabel_SetPosition(TpGraphicLabel element, zPoint3d64f position)
{
    zFAULT_GATE();
    return TpElement_Set(element, zTypeOf(TpGraphicLabel), &Label::position, position);
}
