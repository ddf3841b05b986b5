#pragma once

#include <MuTlkHelper/AnchoredRegion.h>

#include <TaApi/ParamsRegions.h>
#include <zApi/zTypes.h>

// Places and sizes for regions that suit the data. A layout of regions is a grid: `gridColumns` by `gridRows` of them,
// of which this one stands at `gridColumn`, `gridRow`, both counted from 0 and wrapped round. The box of the data is
// cut into equal square units; each region is a square of two of them with one unit of space around it, and the grid is
// centred in the box. A layout with less than one column or row has one square of half the shorter extent, in the
// centre; a negative column or row puts the region of the layout's size there.
//
// They set the region's parameters only; the caller has the region take them over.

namespace Mu::TlkHelper
{
/// Places `region` by the data of a message: a profile's or a surface's bounding box, or the size of an image. A null
/// message, one of another kind, and one without bounding box leave the region as it is.
/// @throws Ta::Exception 0 if the box is flat or its place not known, -999 if the region is not of the message's kind,
/// -997 if a parameter does not take its value
MU_TLK_EXPORT void DefaultRegionInit(void* message, AnchoredRegionInterface* region, int gridColumns, int gridRows,
                                     int gridColumn, int gridRow);

/// Places `region` in a box, as a profile's or as a surface's region.
/// @throws Ta::Exception as with a message
MU_TLK_EXPORT void DefaultRegionInit(const zRect3d64f& box, AnchoredRegionInterface* region, int gridColumns,
                                     int gridRows, int gridColumn, int gridRow, bool isProfile);

/// Sets x, z, `width`, `height`, in the plane of a profile. The box's y does not count.
/// @throws Ta::Exception 0 if x or z of the box is null or one of the extents not above 0, -999 if `region` is null,
/// -997 if a parameter does not take its value
MU_TLK_EXPORT void DefaultProfileRegionInit(const zRect3d64f& box, AnchoredProfileRegion* region, int gridColumns,
                                            int gridRows, int gridColumn, int gridRow);

/// Sets x, y, `width`, `length` by the layout; z and `height` are always those of the box.
/// @throws Ta::Exception 0 if the centre of the box has a null or one of the three extents is not above 0, else as for
/// a profile
MU_TLK_EXPORT void DefaultSurfaceRegionInit(const zRect3d64f& box, AnchoredSurfaceRegion* region, int gridColumns,
                                            int gridRows, int gridColumn, int gridRow);

/// Sets x, y, `width`, `length` in whole pixels, every division rounding towards 0.
/// @throws Ta::Exception 0 if a field of the box is below 1, else as for a profile
MU_TLK_EXPORT void DefaultImageRegionInit(const zRect32s& box, AnchoredImageRegion* region, int gridColumns,
                                          int gridRows, int gridColumn, int gridRow);

/// Sets x and z to 0, `width` and `height` to 100, `yAngle` to 0.
MU_TLK_EXPORT void DefaultProfileRegionInit(Ta::Params::ProfileRegion& region);

/// Sets the centre to 0 and the extents to 100.
MU_TLK_EXPORT void DefaultBoxRegionInit(Ta::Params::BoxRegion& region);

/// Sets x and y to 0, `width` and `length` to 1, `zAngle` to 0.
MU_TLK_EXPORT void DefaultSurfaceRegionInit(Ta::Params::SurfaceRegion2d& region);
} // namespace Mu::TlkHelper
