#pragma once

#include <MuTlkHelper/Export.h>
#include <MuTlkHelper/InputData.h>
#include <MuTlkHelper/TlkSurfaceGeneralized3dPoint.h>

#include <MuVision/Pixels.h>
#include <MuVision/RefFrame.h>
#include <MuVision/Regions.h>
#include <MuVision/Sectors.h>
#include <TaApi/Object.h>
#include <TaApi/ParamsRegions.h>
#include <zApi/zTypes.h>
#include <zVision/zM3dTransform3d.h>

#include <cstddef>
#include <cstdint>

namespace Mu::TlkHelper
{
/// The smallest region, without angle, that holds the extents of both; their angles do not count.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::RegionXZ<double> ExpandProfileRegion(const Mu::Vision::RegionXZ<double>& a,
                                                                             const Mu::Vision::RegionXZ<double>& b);

// Regions that hold all the data of a message. Where its bounding box is not known or flat, they are as large as the
// message could be: its grid of samples, or where samples carry their own place, all that 16 bits can tell of it.

/// The whole of a profile, without angle.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::RegionXZ<double> GetFullProfileRegion(void* message);

/// The whole of a surface, without angles.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region3d<double> GetFullSurfaceRegion(void* message);

/// The whole of an image, in pixels.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region2d<double> GetFullImageRegion(void* message);

/// The whole of a profile, a surface or an image, with 0 on the axes that it does not have; the region of any other
/// message, or of null, is not valid.
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region3d<double> GetFullBoxRegion(void* message);

// Regions of parameters: those of their values that the kind of region has.

[[nodiscard]] MU_TLK_EXPORT Mu::Vision::RegionXZ<double> GetProfileRegion(const Ta::Params::ProfileRegion& region);
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region2d<double> GetSurfaceRegion(const Ta::Params::SurfaceRegion2d& region);
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region3d<double> GetSurfaceRegion(const Ta::Params::SurfaceRegion3d& region);
[[nodiscard]] MU_TLK_EXPORT Mu::Vision::Region3d<double> GetBoxRegion(const Ta::Params::BoxRegion& region);

// One pixel of a surface. A position is a column `x` and a row `y` (a point's `column` and `row`); heights are in mm, a
// null pixel has the height NULL64F.

/// A point of a surface.
struct TlkSurfaceGeneralizedPoint
{
    double x;
    double y;
    std::int32_t column;
    std::int32_t row;
};

/// Shares `message`, a surface, in `*data` and copies its facts; the former message is released.
/// @throws Ta::Exception -997 if `data` is null, or the status of a failing share or release
MU_TLK_EXPORT void SetInputData(void* message, InputData* data);

[[nodiscard]] MU_TLK_EXPORT bool IsPixelPositionInvalid(const InputData& data, int x, int y);

/// The height pixel, of an unresampled surface the z of its triple.
/// @throws Ta::Exception -999 outside the surface, -984 for points of another type
[[nodiscard]] MU_TLK_EXPORT short GetSurfaceHeightPixel(const InputData& data, int x, int y);

/// The height in mm.
/// @throws Ta::Exception as `GetSurfaceHeightPixel`
[[nodiscard]] MU_TLK_EXPORT double GetSurfaceHeight(const InputData& data, int x, int y);

/// The first intensity of a row, null if there are none. It belongs to the message.
/// @throws Ta::Exception -999 outside the surface, -997 if the intensities are no bytes
[[nodiscard]] MU_TLK_EXPORT unsigned char* GetSurfaceIntensityBasePtr(const InputData& data, int y);

/// The intensity of a pixel, null if there is none. It belongs to the message.
/// @throws Ta::Exception -999 outside the surface, -997 if the intensities are no bytes
[[nodiscard]] MU_TLK_EXPORT unsigned char* GetSurfaceIntensityPtr(const InputData& data, int x, int y);

/// The intensity of a pixel, 0 if there is none.
/// @throws Ta::Exception -999 outside the surface, -997 if the intensities are no bytes
[[nodiscard]] MU_TLK_EXPORT unsigned char GetSurfaceIntensity(const InputData& data, int x, int y);

/// Looks at the pixel onto which `transform` takes the place of (`column`, `row`) at height 0. `*point` gets the x and
/// y of that place and the height of the pixel there, `*heightPixel` and `*intensity` what stands in it; each may be
/// null. A transform with a null among its entries counts as none.
///
/// A place outside the surface raises status 0 after the outputs are written: -32768, 0, and the place, with the z that
/// the transform gave (null without one), or three nulls if `nullOutside` is not 0. Note that `row` comes before
/// `column`.
/// @throws Ta::Exception 0 outside the surface, else as `GetSurfaceHeightPixel` or the status of a failing transform
MU_TLK_EXPORT void GetTransformedPointFromPixel(const InputData& data, const zM3dTransform3d& transform, int row,
                                                int column, zPoint3d64f* point, short* heightPixel,
                                                unsigned char* intensity, int nullOutside);

/// Makes `*out` of the pixel of `in` in a surface of height pixels, corrected as by `RefCorrectPoint` unless it is
/// null.
/// @throws Ta::Exception -984 if the points are not 16-bit heights, -999 outside the surface
MU_TLK_EXPORT void RefRegionCorrectPoint(const InputData& data, const zPlane3d64f& plane,
                                         const TlkSurfaceGeneralizedPoint& in, TlkSurfaceGeneralized3dPoint* out);

/// Sets `z` to the distance of the point from `plane` along its normal, in units of the normal's length, and `height`
/// to the pixel of that height.
MU_TLK_EXPORT void RefCorrectPoint(const InputData& data, const zPlane3d64f& plane,
                                   TlkSurfaceGeneralized3dPoint* point);

/// The sizes of a filter, in mm, as odd numbers of pixels, rounded and then down: at least 1.
MU_TLK_EXPORT void ConvertKernelSizeMmToPixel(double width, double length, const zPoint3d64f& scale, int* outWidth,
                                              int* outLength);

// The points of a message, whole or within a region, as lists and arrays.
//
// Points are `zPoint3d64f` of a surface and `zPoint64f` (x, z) of a profile, in mm, row by row. Null elements give no
// point, nothing found is no error. Intensities are `z8u`, in step with the points. A list that is kept is appended to.
// A region's bounds count as inside unless said otherwise.
//
// All raise Ta::Exception: -997 for a null message or a null pointer to a result, and for a message whose points (or
// 16-bit intensities) they do not take; -984 for a list of another type where it is not made anew; else the status of a
// failing call. What was added until then stays.

/// Every pixel of a resampled surface. A list is made if there is none; one of another type raises -984.
MU_TLK_EXPORT void GetAllPoints(void* message, void** list);

/// A `zArray1` of `zPoint3d32f` for every element of a surface; null elements get three NaN. `out` is to be empty: what
/// it holds is not released.
MU_TLK_EXPORT void GetAllPointsPcd(void* message, Ta::Object<void*>& out, void* alloc = nullptr);

/// Every point of a profile. A list is made if there is none; one of another type raises -984.
MU_TLK_EXPORT void GetAllProfilePoints(void* message, void** list, void* alloc = nullptr);

/// The same with intensities: both lists are made anew. Without intensities it is `GetAllProfilePoints`, and
/// `*intensity` becomes null without being released.
MU_TLK_EXPORT void GetAllProfilePointsAndIntensity(void* message, void** list, void** intensity, void* alloc = nullptr);

/// Stores a copy of a profile's points in `*array` in which those outside `region` are null; its angle plays no part.
/// What `*array` held is not released. A message that has no point array gives null.
MU_TLK_EXPORT void GetPointArrayFromRegionXZ(void* message, const Mu::Vision::RegionXZ<double>& region, void** array,
                                             void* alloc = nullptr);

/// The same with a copy of the intensities, 0 where a point became null. Without intensities it is
/// `GetPointArrayFromRegionXZ`, and `*intensity` becomes null without being released.
MU_TLK_EXPORT void GetPointAndIntensityArrayFromRegionXZ(void* message, const Mu::Vision::RegionXZ<double>& region,
                                                         void** array, void** intensity, void* alloc = nullptr);

/// The points of a profile in `region`, whose angle plays no part. A list of another type is made anew. The upper
/// bound in z of a resampled profile does not count as inside.
MU_TLK_EXPORT void GetPointsFromRegionXZ(void* message, const Mu::Vision::RegionXZ<double>& region, void** list,
                                         void* alloc = nullptr);

/// The points of a profile in `region` with their intensities: both lists are made anew, and the upper bound in z
/// counts as inside. Without intensities it is `GetPointsFromRegionXZ`, and `*intensity` becomes null without being
/// released.
MU_TLK_EXPORT void GetPointsAndIntensitiesFromRegionXZ(void* message, const Mu::Vision::RegionXZ<double>& region,
                                                       void** list, void** intensity, void* alloc = nullptr);

/// The points of a surface in `region`, turned by its `zAngle`; the other angles play no part. A list of another type
/// is made anew.
MU_TLK_EXPORT void GetPointsFromRegion(void* message, const Mu::Vision::Region3d<double>& region, void** list,
                                       void* alloc = nullptr);

/// The intensities of a surface in `region`, whose angles play no part. A list of another type is made anew. A surface
/// without intensities leaves the list as it is. The rows of a resampled one are those of
/// `GetIntensitiesFromRegionResampled`.
MU_TLK_EXPORT void GetIntensitiesFromRegion(void* message, const Mu::Vision::Region3d<double>& region, void** list,
                                            void* alloc = nullptr);

/// Adds to a `z8u` list that is there already; another type raises -984. From the first row of `region` on as many rows
/// are read as it is height pixels high, as far as the surface has them; its length plays no part.
MU_TLK_EXPORT void GetIntensitiesFromRegionResampled(void* message, const Mu::Vision::Region3d<double>& region,
                                                     void** list);

/// The points of a profile in any of `count` regions, once each; angles play no part, and no upper bound counts as
/// inside. A list is made if there is none, with room for every point, else its type is not looked at; items of another
/// size raise -984 as soon as there is a point to add.
MU_TLK_EXPORT void GetProfilePointsFromRegions(void* message, const Mu::Vision::RegionXZ<double>* regions,
                                               std::size_t count, void** list, void* alloc = nullptr);

/// The points of a profile in any of `count` regions, once each, the i-th turned by `angles[i]` degrees. Lists as in
/// `GetProfilePointsFromRegions`, but made without room. The points of a resampled profile are numbered in 16 bits:
/// behind 32767 comes -32768.
MU_TLK_EXPORT void GetProfilePointsFromRegionsWithAngle(void* message, Mu::Vision::RegionXZ<double>* regions,
                                                        double* angles, std::size_t count, void** list,
                                                        void* alloc = nullptr);

// A surface seen through a frame, in a sector, and what is cut out of it. What is said above of lists, points and
// failures holds here too. Points are read as 16-bit heights, the element of a place being row times width plus column,
// whatever they are.

/// The points of a surface in the pixel box of `region`, seen through `frame`: a place of the grid at height 0 is moved
/// by it, and the point has the moved x and y and the height of the pixel there, if that lies in the region's range.
/// As many rows are seen as the box is height pixels high, as far as the surface has them. A list of another type is
/// made anew in the default allocator, with room for every pixel of the box.
///
/// Only the identity is seen through: with any other frame, or null, it is `GetPointsFromRegion`.
MU_TLK_EXPORT void GetTransformedPointsFromRegion(void* message, const Mu::Vision::Region3d<double>& region,
                                                  Mu::Vision::RefFrame* frame, void** list, void* alloc = nullptr);

/// The intensities of those points. A list of another type is made anew in `alloc`. A surface without intensities
/// leaves the list as it is. With a frame that is not the identity, or null, it is `GetIntensitiesFromRegion`.
MU_TLK_EXPORT void GetTransformedIntensityFromRegion(void* message, const Mu::Vision::Region3d<double>& region,
                                                     Mu::Vision::RefFrame* frame, void** list, void* alloc = nullptr);

/// The points of a surface in `sector`, bounds included, in a list that is always made anew, in the default allocator.
MU_TLK_EXPORT void GetPointsInAnnularSector(void* message, const Mu::Vision::AnnularSector3d<double>& sector,
                                            void** list);

/// Cuts the pixel box of `region` out of a surface. `heights` becomes a `zArray2` of `z16s` in the default allocator,
/// as wide as the box and with as many rows as the box is height pixels high. Pixels in the box's range of heights are
/// copied, bounds included; others, and those of rows that the surface does not have, are -32768.
///
/// If the surface has intensities and `intensities` holds anything, that becomes a `zArray2` of `z8u` of the same size,
/// with 255 where there is no height; otherwise it stays as it is. `*origin`, unless it is null, gets the place of the
/// first column and row of the box, with the surface's offset as z.
/// @throws Ta::Exception -997 if `message` is null, `heights` and `intensities` are the same handle, or intensities
/// that are wanted are no bytes; else the status of a failing call
MU_TLK_EXPORT void SurfaceExtractRegion(void* message, const Mu::Vision::Region3d<double>& region,
                                        Ta::Object<void*>& heights, Ta::Object<void*>& intensities,
                                        zPoint3d64f* origin);

/// Cuts `rect` out of `array`, a `zArray2`, into one of the same item type that the caller owns. `mask` is a `zArray2`
/// of bytes that begins where `rect` does; where it is 0, and what either array does not have, becomes
/// `Mu::Vision::GetNull<T>()`. An empty `rect` gives an empty handle, and neither array is looked at. For `unsigned
/// char`, `short` and `int`.
/// @throws Ta::Exception -997 if an array is null or no `zArray2`, -984 if the items of `array` are no values of the
/// size of `T` or those of `mask` no bytes; else the status of a failing call
template <typename T>
Ta::Object<void*> CropRoi(void* array, const Mu::Vision::Rect2d<int>& rect, void* mask, void* alloc = nullptr) = delete;

template <>
[[nodiscard]] MU_TLK_EXPORT Ta::Object<void*> CropRoi<unsigned char>(void* array, const Mu::Vision::Rect2d<int>& rect,
                                                                     void* mask, void* alloc);
template <>
[[nodiscard]] MU_TLK_EXPORT Ta::Object<void*> CropRoi<short>(void* array, const Mu::Vision::Rect2d<int>& rect,
                                                             void* mask, void* alloc);
template <>
[[nodiscard]] MU_TLK_EXPORT Ta::Object<void*> CropRoi<int>(void* array, const Mu::Vision::Rect2d<int>& rect, void* mask,
                                                           void* alloc);

// A surface message that travels through a point feature: the position holds its handle, and a mark in z. Nothing
// counts a reference for it: the surface lives as long as whoever made the feature keeps it.

/// @throws Ta::Exception 0 unless `feature` is a point feature with the mark in z
MU_TLK_EXPORT void ValidateSurfaceFeature(void* feature);

/// The handle in the position of `feature`, without a reference of its own; null if it is null, no point feature, or
/// without the mark. A marked position is trusted: what it holds is not looked at.
[[nodiscard]] MU_TLK_EXPORT void* SurfaceFeatureToSurfaceMsg(void* feature);

/// The position of a point feature that stands for `message`.
[[nodiscard]] MU_TLK_EXPORT zPoint3d64f SurfaceMsgToSurfaceFeature(void* message);

// Arrays that are kept from one execution to the next, with what they hold, as long as item type and size fit.

/// Makes a new `zArray1` in `object` unless it holds one of this item type and length.
/// @throws Ta::Exception the status of a failing construction or release; `object` is empty then
MU_TLK_EXPORT void ReallocateArray1(Ta::Object<void*>& object, zType itemType, std::size_t length,
                                    void* alloc = nullptr);

/// Makes a new `zArray2` in `object` unless it holds one of this item type and size.
/// @throws Ta::Exception as `ReallocateArray1`
MU_TLK_EXPORT void ReallocateArray2(Ta::Object<void*>& object, zType itemType, std::size_t rows, std::size_t columns,
                                    void* alloc = nullptr);
} // namespace Mu::TlkHelper
