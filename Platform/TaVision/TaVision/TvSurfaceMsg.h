#pragma once

#include <TaVision/TvDataMsg.h>

#include <zApi/zArray2.h>

/// A surface: a grid of points, row by row, and a grid of intensities if it has any.
///
/// | made by | points | pixel (column, row) stands at |
/// |---|---|---|
/// | `ConstructSimple` | `z16s`, resampled | its column, its row and its height, each times scale plus offset |
/// | `ConstructUnresampledSimple` | `zPoint3d16s` | its own x, y and z, each times scale plus offset |
///
/// A point without data has `zNULL_16S` in every coordinate. Arrays are `zArray2`, rows first. Pointers and array
/// handles belong to the message: they stay valid while it lives, those of intensities until they are allocated anew;
/// share an array to keep it longer. The operations give -997 (null, 0) if `msg` is no surface.
zDECLARE_TYPE(TvSurfaceMsg);

using TvSurfaceMsg = void*;

extern "C"
{
    /// Makes a resampled surface of `length` rows by `width` columns; all points are null, there are no intensities.
    /// -999 if `msg` is null, -997 if there are more than `TvMSG_MAX_ITEMS` points, rows or columns, -998 if there is
    /// no memory.
    MU_PLATFORM_EXPORT zStatus TvSurfaceMsg_ConstructSimple(TvSurfaceMsg* msg, std::size_t width, std::size_t length,
                                                            zAlloc alloc);

    /// The same for an unresampled surface.
    MU_PLATFORM_EXPORT zStatus TvSurfaceMsg_ConstructUnresampledSimple(TvSurfaceMsg* msg, std::size_t width,
                                                                       std::size_t length, zAlloc alloc);

    /// Columns.
    MU_PLATFORM_EXPORT std::size_t TvSurfaceMsg_Width(TvSurfaceMsg msg);

    /// Rows.
    MU_PLATFORM_EXPORT std::size_t TvSurfaceMsg_Length(TvSurfaceMsg msg);

    /// World position of pixel 0 on each axis, in mm; 0 in a new surface.
    MU_PLATFORM_EXPORT zPoint3d64f TvSurfaceMsg_Offset(TvSurfaceMsg msg);

    /// Sets the offset. -999 if `offset` is null.
    MU_PLATFORM_EXPORT zStatus TvSurfaceMsg_SetOffset(TvSurfaceMsg msg, const zPoint3d64f* offset);

    /// World size of one pixel step on each axis, in mm; 1 in a new surface.
    MU_PLATFORM_EXPORT zPoint3d64f TvSurfaceMsg_Scale(TvSurfaceMsg msg);

    /// Sets the scale. -999 if `scale` is null.
    MU_PLATFORM_EXPORT zStatus TvSurfaceMsg_SetScale(TvSurfaceMsg msg, const zPoint3d64f* scale);

    /// As `TvDataMsg_BoundingBox`.
    MU_PLATFORM_EXPORT zRect3d64f TvSurfaceMsg_BoundingBox(TvSurfaceMsg msg);

    /// True if the points are `z16s` on the grid.
    MU_PLATFORM_EXPORT bool TvSurfaceMsg_IsResampled(TvSurfaceMsg msg);

    /// Confirms whether the surface is resampled. The type of its points settles that: -997 if `resampled` differs, as
    /// whoever reads the surface trusts it to tell how to walk the points.
    MU_PLATFORM_EXPORT zStatus TvSurfaceMsg_SetIsResampled(TvSurfaceMsg msg, bool resampled);

    /// The item type of the points: `z16s` or `zPoint3d16s`.
    MU_PLATFORM_EXPORT zType TvSurfaceMsg_PointType(TvSurfaceMsg msg);

    /// The first point, rows following each other without gaps; null if there are none.
    MU_PLATFORM_EXPORT void* TvSurfaceMsg_Points(TvSurfaceMsg msg);

    /// The point at a place, where the rest of its row follows; null outside.
    MU_PLATFORM_EXPORT void* TvSurfaceMsg_PointsAt(TvSurfaceMsg msg, std::size_t row, std::size_t column);

    /// The array of points; `index` is 0, any other gives null. Not shared for the caller.
    MU_PLATFORM_EXPORT zArray2 TvSurfaceMsg_PointsArray(TvSurfaceMsg msg, std::size_t index);

    /// Copies the content of `points`. -999 if it is null, -984 if it is no `zArray2` of the surface's point type, -997
    /// if its rows or columns differ.
    MU_PLATFORM_EXPORT zStatus TvSurfaceMsg_CopyPointsArray(TvSurfaceMsg msg, zArray2 points);

    /// True if there are intensities.
    MU_PLATFORM_EXPORT bool TvSurfaceMsg_HasIntensity(TvSurfaceMsg msg);

    /// The item type of the intensities, `z8u` or `z16u`; null if there are none.
    MU_PLATFORM_EXPORT zType TvSurfaceMsg_IntensityType(TvSurfaceMsg msg);

    /// Gives the surface new intensities, all 0, in place of those it has. -999 if `itemType` is null, -984 if it is
    /// neither `z8u` nor `z16u`, -998 if there is no memory; then the former ones stay.
    MU_PLATFORM_EXPORT zStatus TvSurfaceMsg_AllocateIntensity(TvSurfaceMsg msg, zType itemType);

    /// The first intensity, rows following each other without gaps; null if there are none.
    MU_PLATFORM_EXPORT void* TvSurfaceMsg_Intensity(TvSurfaceMsg msg);

    /// The intensity at a place, where the rest of its row follows; null outside or if there are none.
    MU_PLATFORM_EXPORT void* TvSurfaceMsg_IntensityAt(TvSurfaceMsg msg, std::size_t row, std::size_t column);

    /// The array of intensities, null if there are none; `index` is 0, any other gives null. Not shared for the caller.
    MU_PLATFORM_EXPORT zArray2 TvSurfaceMsg_IntensityArray(TvSurfaceMsg msg, std::size_t index);

    /// Copies the content of `intensities`, which are allocated first if the surface has none. -999 if it is null, -984
    /// if it is no `zArray2` of `z8u` or `z16u` or not of the type that the surface has, -997 if its rows or columns
    /// differ from those of the surface, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvSurfaceMsg_CopyIntensityArray(TvSurfaceMsg msg, zArray2 intensities);
}
