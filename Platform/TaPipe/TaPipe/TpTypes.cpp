#include <TaPipe/TpGraphic.h>
#include <TaPipe/TpGraphicLabel.h>
#include <TaPipe/TpGraphicLineSet.h>
#include <TaPipe/TpGraphicPlane.h>
#include <TaPipe/TpGraphicPointSet.h>
#include <TaPipe/TpGraphicPosition.h>
#include <TaPipe/TpGraphicRay.h>
#include <TaPipe/TpGraphicRegion2d.h>
#include <TaPipe/TpGraphicRegion3d.h>
#include <TaPipe/TpTypes.h>

#include <TaVision/TvTypes.h>
#include <zApi/zFault.h>
#include <zApi/zTypeTable.h>

#include <array>

namespace
{
constexpr std::array<zType, 11> types = {
    zTypeOf(TpGraphic),         zTypeOf(TpGraphicElement),  zTypeOf(TpGraphicPointSet), zTypeOf(TpGraphicLineSet),
    zTypeOf(TpGraphicRay),      zTypeOf(TpGraphicLabel),    zTypeOf(TpGraphicPlane),    zTypeOf(TpGraphicRegion),
    zTypeOf(TpGraphicRegion2d), zTypeOf(TpGraphicRegion3d), zTypeOf(TpGraphicPosition)};
constinit zTypeTable table = {types};
} // namespace

zStatus TaPipe_RegisterTypes()
{
    zTRY(TaVision_RegisterTypes());
    return zTypeTable_Register(&table);
}
