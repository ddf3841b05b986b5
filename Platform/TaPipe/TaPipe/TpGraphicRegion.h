#pragma once

#include <TaPipe/TpGraphicElement.h>

/// The base of the regions, `TpGraphicRegion2d` and `TpGraphicRegion3d`; abstract. `TpGraphic_AddRegion` takes both.
zDECLARE_TYPE(TpGraphicRegion);

using TpGraphicRegion = void*;
