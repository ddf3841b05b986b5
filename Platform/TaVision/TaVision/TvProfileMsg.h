#pragma once

#include <TaVision/TvDataMsg.h>

#include <zApi/zArray1.h>

/// A profile: a line of points, and a line of intensities if it has any. Points of type `z16s` are heights on a grid
/// along x (resampled), points of type `zPoint16s` have their own x, and their z in the second component.
///
/// A point without data has `zNULL_16S` in every coordinate. Arrays are `zArray1`. Pointers and array handles belong to
/// the message: they stay valid while it lives, those of intensities until they are allocated anew; share an array to
/// keep it longer. The operations give -997 (null, 0) if `msg` is no profile.
zDECLARE_TYPE(TvProfileMsg);

using TvProfileMsg = void*;

extern "C"
{
    /// Makes a message of one profile of `pointCount` points; all are null, there are no intensities. An array of
    /// profiles travels as an array of messages, so `profileCount` is 1. -999 if `msg` or `itemType` is null, -984 if
    /// `itemType` is neither `z16s` nor `zPoint16s`, -997 for another number of profiles or for more than
    /// `TvMSG_MAX_ITEMS` points, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvProfileMsg_Construct(TvProfileMsg* msg, zType itemType, std::size_t profileCount,
                                                      std::size_t pointCount, zAlloc alloc);

    /// The number of points.
    MU_PLATFORM_EXPORT std::size_t TvProfileMsg_PointCount(TvProfileMsg msg);

    /// World position of pixel 0 on each axis, in mm; 0 in a new profile. Its y is where the profile lies.
    MU_PLATFORM_EXPORT zPoint3d64f TvProfileMsg_Offset(TvProfileMsg msg);

    /// Sets the offset. -999 if `offset` is null.
    MU_PLATFORM_EXPORT zStatus TvProfileMsg_SetOffset(TvProfileMsg msg, const zPoint3d64f* offset);

    /// World size of one pixel step on each axis, in mm; 1 in a new profile.
    MU_PLATFORM_EXPORT zPoint3d64f TvProfileMsg_Scale(TvProfileMsg msg);

    /// Sets the scale. -999 if `scale` is null.
    MU_PLATFORM_EXPORT zStatus TvProfileMsg_SetScale(TvProfileMsg msg, const zPoint3d64f* scale);

    /// The bounding box of profile `index`, as `TvDataMsg_BoundingBox`; unknown if `index` is not 0.
    MU_PLATFORM_EXPORT zRect3d64f TvProfileMsg_BoundingBoxAt(TvProfileMsg msg, std::size_t index);

    /// As `TvDataMsg_SetBoundingBox`.
    MU_PLATFORM_EXPORT zStatus TvProfileMsg_SetBoundingBox(TvProfileMsg msg, const zRect3d64f* box);

    /// The item type of the points: `z16s` or `zPoint16s`.
    MU_PLATFORM_EXPORT zType TvProfileMsg_PointType(TvProfileMsg msg);

    /// The first point; null if there are none.
    MU_PLATFORM_EXPORT void* TvProfileMsg_Points(TvProfileMsg msg);

    /// The array of points; `index` is 0, any other gives null. Not shared for the caller.
    MU_PLATFORM_EXPORT zArray1 TvProfileMsg_PointsArray(TvProfileMsg msg, std::size_t index);

    /// Copies the content of `points`. -999 if it is null, -984 if it is no `zArray1` of the profile's point type, -997
    /// if its length differs.
    MU_PLATFORM_EXPORT zStatus TvProfileMsg_CopyPointsArray(TvProfileMsg msg, zArray1 points);

    /// True if there are intensities.
    MU_PLATFORM_EXPORT bool TvProfileMsg_HasIntensity(TvProfileMsg msg);

    /// The item type of the intensities, `z8u` or `z16u`; null if there are none.
    MU_PLATFORM_EXPORT zType TvProfileMsg_IntensityType(TvProfileMsg msg);

    /// Gives the profile new intensities, all 0, in place of those it has. -999 if `itemType` is null, -984 if it is
    /// neither `z8u` nor `z16u`, -998 if there is no memory; then the former ones stay.
    MU_PLATFORM_EXPORT zStatus TvProfileMsg_AllocateIntensity(TvProfileMsg msg, zType itemType);

    /// The first intensity; null if there are none.
    MU_PLATFORM_EXPORT void* TvProfileMsg_Intensity(TvProfileMsg msg);

    /// The array of intensities, null if there are none; `index` is 0, any other gives null. Not shared for the caller.
    MU_PLATFORM_EXPORT zArray1 TvProfileMsg_IntensityArray(TvProfileMsg msg, std::size_t index);

    /// Copies the content of `intensities`, which are allocated first if the profile has none. -999 if it is null, -984
    /// if it is no `zArray1` of `z8u` or `z16u` or not of the type that the profile has, -997 if its length differs
    /// from that of the profile, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvProfileMsg_CopyIntensityArray(TvProfileMsg msg, zArray1 intensities);
}
