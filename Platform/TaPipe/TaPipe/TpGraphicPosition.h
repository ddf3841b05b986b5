#pragma once

#include <TaPipe/TpGraphicElement.h>

namespace TaPipe
{
/// What a marked place stands for. The number is kept as it comes; a host draws one that it does not know as a result.
enum class TpGraphicPositionType : z32s
{
    Result = 0,    ///< what a tool found
    Reference = 1, ///< what a result is measured against
    Anchor = 2,    ///< what a region moves with
};
} // namespace TaPipe

/// A place that is marked.
zDECLARE_TYPE(TpGraphicPosition);

using TpGraphicPosition = void*;

extern "C"
{
    /// Makes a result at the origin. -999 if `element` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TpGraphicPosition_Construct(TpGraphicPosition* element, zAlloc alloc);

    /// What the place stands for.
    MU_PLATFORM_EXPORT TaPipe::TpGraphicPositionType TpGraphicPosition_Type(TpGraphicPosition element);

    /// Sets what the place stands for.
    MU_PLATFORM_EXPORT zStatus TpGraphicPosition_SetType(TpGraphicPosition element, TaPipe::TpGraphicPositionType type);

    /// The place, in mm.
    MU_PLATFORM_EXPORT zPoint3d64f TpGraphicPosition_Position(TpGraphicPosition element);

    /// Sets the place.
    MU_PLATFORM_EXPORT zStatus TpGraphicPosition_SetPosition(TpGraphicPosition element, zPoint3d64f position);
}
