#pragma once

#include <MuTlkHelper/Export.h>
#include <MuTlkHelper/InputData.h>

#include <MuVision/Pixels.h>
#include <TaApi/Object.h>
#include <zApi/zTypes.h>

#include <cstddef>

// Conversions of points and lists of points, in mm. A point with a null component (`zNULL_64F`) has no place; a NaN is
// not null. A list is a `zArrayList`; one of another item type, or another object, raises -984.

namespace Mu::TlkHelper
{
/// The pixels of one row.
struct RleRow
{
    z32s row;
    Mu::Vision::RunLength<int> run; ///< `start` is the first column, `length` the number of columns
};

static_assert(sizeof(RleRow) == 12);

/// Which component of a line of pixels is looked at, and which way it must not go.
enum class THL_POINT_SORTED_TYPE : z32s
{
    XRising = 0,  ///< x does not fall
    XFalling = 1, ///< x does not rise
    YRising = 2,  ///< y does not fall
    YFalling = 3, ///< y does not rise
};

/// The point of a profile in the plane y = 0: its second coordinate becomes z. Null if either coordinate is.
[[nodiscard]] MU_TLK_EXPORT zPoint3d64f Convert2dPoint64to3dPoint64(const zPoint64f& point);

/// The same point in 32 bits; null and what is too large become infinite.
[[nodiscard]] MU_TLK_EXPORT zPoint3d32f Convert3dPoint64to3dPoint32(const zPoint3d64f& point);

// A new list of `zPoint64f`, in the default allocator, from a list of `zPoint3d64f`, point by point. A null list gives
// an empty handle.
// They throw Ta::Exception -984 for a list of another item type, or the status of a failing call.

/// The x and y of every point.
[[nodiscard]] MU_TLK_EXPORT Ta::Object<void*> Convert3dPoints64To2dPoints64(void* list);

/// Every y as x, and x as y.
[[nodiscard]] MU_TLK_EXPORT Ta::Object<void*> Convert3dPoints64To2dPoints64Flip(void* list);

/// The x and y of every point that has no null component.
[[nodiscard]] MU_TLK_EXPORT Ta::Object<void*> Convert3dPoints64To2dPoints64RemoveNull(void* list);

// A long list is thinned to about a maximum by taking every n-th point, where n is count / maximum, rounded down: less
// than twice the maximum comes out.

/// A new list of `zPoint3d32f`, in the default allocator, from a list of `zPoint3d64f`, thinned to 10000 points,
/// without points that have a null component. A null list and one without points give an empty handle.
/// @throws Ta::Exception -984 for a list of another item type, or the status of a failing call
[[nodiscard]] MU_TLK_EXPORT Ta::Object<void*> ConvertPoints64ToPoints32(void* list);

/// Stores a new list of `zPoint3d32f`, in the default allocator, in `*out`: the places of a list of
/// `TlkSurfaceGeneralized3dPoint`, thinned to `maximum`. Nulls stay, as minus infinity. The list is the caller's; what
/// `*out` held is not released. A null list leaves `*out` alone, and so does a failure.
/// @throws Ta::Exception -984 for a list of another item type, -997 if `maximum` is 0 and there are points, -999 if
/// `out` is null, or the status of a failing call
MU_TLK_EXPORT void ConvertSurfaceGeneralized3dPointsToPoints32f(void* list, unsigned int maximum, void** out);

/// The same in 64 bits, as `zPoint3d64f`: nulls stay null.
MU_TLK_EXPORT void ConvertSurfaceGeneralized3dPointsToPoints64f(void* list, unsigned int maximum, void** out);

/// Stores the mean of a list of `zPoint3d64f` in `*out`; nulls count as the numbers that they are. A null list and one
/// without points give 0.
/// @throws Ta::Exception -984 for a list of another item type, -999 if `out` is null
MU_TLK_EXPORT void AveragePoint3d64f(void* list, zPoint3d64f* out);

/// 1 if a line of pixels runs in one direction, else 0. Pixels with a null component (`zNULL_16S`) are passed over, and
/// equal neighbours are in order. Less than two pixels, and an order that is not known, give 1.
[[nodiscard]] MU_TLK_EXPORT int IsSortedPoints(const zPoint16s* points, std::size_t count, THL_POINT_SORTED_TYPE order);

/// Codes a rectangle as a run of pixels for each row of its bounding box, from the lowest row up. A run holds the
/// pixels whose centres lie inside; one without pixels has the length 0, and its start means nothing.
/// @param data     `width`, `length`, `offset` and `scale` of the surface; the message is not looked at
/// @param corners  four corners in world x and y, in mm, in order around the rectangle, counter-clockwise with x to the
///                 right and y up: the other way round there are no runs
/// @param list     in/out: a list of `RleRow` (raw records of its size), which is emptied first, or null, which becomes
///                 a new list, the caller's. If `list` itself is null, nothing is done
/// @param alloc    allocator of a new list
/// A rectangle outside the grid gives a list without rows.
/// @throws Ta::Exception -980 if `*list` has another item type, -999 if `data` or `corners` is null, or the status of a
/// failing call
MU_TLK_EXPORT void RLEGiven4Points(const InputData* data, const zPoint64f* corners, void** list, void* alloc);
} // namespace Mu::TlkHelper
