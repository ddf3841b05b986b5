#pragma once

#include <TaPipe/TpGraphicElement.h>

/// A text at a place.
zDECLARE_TYPE(TpGraphicLabel);

using TpGraphicLabel = void*;

extern "C"
{
    /// Makes a label with an empty text at the origin. -999 if `element` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TpGraphicLabel_Construct(TpGraphicLabel* element, zAlloc alloc);

    /// The text, UTF-8, terminated; null if `element` is no label.
    MU_PLATFORM_EXPORT const char* TpGraphicLabel_Text(TpGraphicLabel element);

    /// Sets the text, of which the label keeps a copy. -999 if `text` is null, -998 if there is no memory; the former
    /// text stays then.
    MU_PLATFORM_EXPORT zStatus TpGraphicLabel_SetText(TpGraphicLabel element, const char* text);

    /// The place, in mm.
    MU_PLATFORM_EXPORT zPoint3d64f TpGraphicLabel_Position(TpGraphicLabel element);

    /// Sets the place.
    MU_PLATFORM_EXPORT zStatus TpGraphicLabel_SetPosition(TpGraphicLabel element, zPoint3d64f position);
}
