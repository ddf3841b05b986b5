#pragma once

#include <Host/HeightMap.h>

#include <TaApi/Object.h>
#include <zApi/zTypes.h>

namespace Mu::Host
{
/// A scan as the message that tools take: a resampled surface with the map's heights, offset and scale, and its
/// intensities if it has any.
///
/// The bounding box, in mm, reaches in x and y from the first sample to the last and in z from the lowest valid height
/// to the highest; it is kept as centre and full extents. A map without a valid height has a box of no height at z = 0.
/// @param sequence  the number of the scan in its run, from 0, for the stamp
/// @param alloc     where the message is made; null means the default allocator
/// @throws Ta::Exception  the status of a failing call, -998 when memory runs out
[[nodiscard]] Ta::Object<void*> MakeSurfaceMessage(const HeightMap& map, z64u sequence, void* alloc);
} // namespace Mu::Host
