#pragma once

#include <TaPipe/TpGraphicElement.h>

/// A display list: the elements that a tool draws, in their order. A tool makes elements and adds them; the host reads
/// them by their number. Nothing guards a graphic that is changed against being used by another thread.
///
/// Every `Add` takes over the caller's reference on the element if it succeeds; else the reference stays the caller's
/// and the graphic as it was. They give -997 if `graphic` is no graphic or `element` is of another type, -999 if
/// `element` is null, -998 if there is no memory.
zDECLARE_TYPE(TpGraphic);

using TpGraphic = void*;

extern "C"
{
    /// Makes a graphic without elements. -999 if `graphic` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TpGraphic_Construct(TpGraphic* graphic, zAlloc alloc);

    /// Adds a `TpGraphicPointSet`.
    MU_PLATFORM_EXPORT zStatus TpGraphic_AddPointSet(TpGraphic graphic, TpGraphicElement element);

    /// Adds a `TpGraphicLineSet`.
    MU_PLATFORM_EXPORT zStatus TpGraphic_AddLineSet(TpGraphic graphic, TpGraphicElement element);

    /// Adds a `TpGraphicRay`.
    MU_PLATFORM_EXPORT zStatus TpGraphic_AddRay(TpGraphic graphic, TpGraphicElement element);

    /// Adds a `TpGraphicLabel`.
    MU_PLATFORM_EXPORT zStatus TpGraphic_AddLabel(TpGraphic graphic, TpGraphicElement element);

    /// Adds a `TpGraphicPlane`.
    MU_PLATFORM_EXPORT zStatus TpGraphic_AddPlane(TpGraphic graphic, TpGraphicElement element);

    /// Adds a `TpGraphicRegion2d` or `TpGraphicRegion3d`.
    MU_PLATFORM_EXPORT zStatus TpGraphic_AddRegion(TpGraphic graphic, TpGraphicElement element);

    /// Adds a `TpGraphicPosition`.
    MU_PLATFORM_EXPORT zStatus TpGraphic_AddPosition(TpGraphic graphic, TpGraphicElement element);

    /// The number of elements; 0 if `graphic` is no graphic.
    MU_PLATFORM_EXPORT std::size_t TpGraphic_Count(TpGraphic graphic);

    /// Element `index` in the order of adding, not shared for the caller; null past the end. `TpGraphicElement_Kind`
    /// says what it is.
    MU_PLATFORM_EXPORT TpGraphicElement TpGraphic_At(TpGraphic graphic, std::size_t index);
}
