#pragma once

#include <Host/Scan.h>

#include <TaApi/Object.h>
#include <TaPipe/PipeDataType.h>
#include <zApi/zTypes.h>

namespace Mu::Host
{
/// Scans as the messages that tools take.
///
/// The bounding box of surfaces and profiles, in mm, reaches on a grid from the first sample to the last, where samples
/// have positions of their own from the lowest to the highest of valid ones, and in z from the lowest valid height to
/// the highest; it is kept as centre and full extents. Without a valid sample its place is 0 and its extent none,
/// except along a grid. Images have no box.
///
/// @param sequence  the number of the scan in its run, from 0, for the stamp
/// @param alloc     where the message is made; null means the default allocator
/// @throws Ta::Exception  the status of a failing call, -998 when memory runs out

/// A resampled surface with the map's heights, offset and scale, and its intensities if it has any.
[[nodiscard]] Ta::Object<void*> MakeSurfaceMessage(const HeightMap& map, z64u sequence, void* alloc);

/// An unresampled surface with the map's points, offset and scale, and its intensities if it has any.
[[nodiscard]] Ta::Object<void*> MakeSurfaceMessage(const PointMap& map, z64u sequence, void* alloc);

/// A profile: of heights on a grid, or of points if the scan has positions.
[[nodiscard]] Ta::Object<void*> MakeProfileMessage(const ProfileScan& scan, z64u sequence, void* alloc);

/// A grey image of 8 bits from camera 0.
[[nodiscard]] Ta::Object<void*> MakeImageMessage(const ImageScan& image, z64u sequence, void* alloc);

/// A scan as tools get it.
struct ScanData
{
    Ta::Object<void*> message;
    TaPipe::PipeDataType type = TaPipe::PipeDataType::None; ///< of the message
};

/// The message for a scan of any kind.
[[nodiscard]] ScanData MakeScanData(const Scan& scan, z64u sequence, void* alloc);
} // namespace Mu::Host
