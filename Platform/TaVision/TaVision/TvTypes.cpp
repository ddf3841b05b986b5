#include <TaVision/TaVision.h>

#include <zApi/zFault.h>
#include <zApi/zTypeTable.h>
#include <zRelay/zRelayTypes.h>

#include <array>

namespace
{
constexpr std::array<zType, 13> types = {zTypeOf(TvMsg),
                                         zTypeOf(TvDataMsg),
                                         zTypeOf(TvNullMsg),
                                         zTypeOf(TvMeasureMsg),
                                         zTypeOf(TvGenericMsg),
                                         zTypeOf(TvPointFeatureMsg),
                                         zTypeOf(TvLineFeatureMsg),
                                         zTypeOf(TvCircleFeatureMsg),
                                         zTypeOf(TvPlaneFeatureMsg),
                                         zTypeOf(TvProfileMsg),
                                         zTypeOf(TvSurfaceMsg),
                                         zTypeOf(TvImageMsg),
                                         zTypeOf(TvRenderingMsg)};
constinit zTypeTable table = {types};
} // namespace

zStatus TaVision_RegisterTypes()
{
    zTRY(zRelay_RegisterTypes());
    return zTypeTable_Register(&table);
}
