#pragma once

#include <MuVision/Pixels.h>
#include <MuVision/Regions.h>

#include <zApi/zTypes.h>

#include <cstddef>

// World regions as pixel boxes. Pixel i of an axis lies at offset + i scale. A box covers the pixels that lie within
// the region's centre plus and minus half its extent, bounds included; the bounds are always widened by a millionth of
// a pixel, since a box that is turned into centre and extent and back loses a border value in a third of all cases, and
// by `tolerance`, which is in pixels (null is 0, a negative one narrows). Angles are not looked at.
//
// A box is clipped to the grid: columns and rows to the pixels there are, heights to -32767..32767. With `isPixelGrid`
// at 0 the first axis is the stored 16-bit value instead of the column and is clipped as heights are.
//
// A region that misses the grid on any axis, height included, gives a box of which every field is 0. So does a region
// that is null, has a null centre or a negative extent, a scale of 0 or not finite, and a NaN in any value of an axis.
// A negative scale is taken: such an axis runs backwards. A null `result` is left alone.

namespace Mu::Vision
{
/// The pixels of a `width` by `length` grid in `region`. `x`, `y` and `width`, `length` are first pixels and counts;
/// `z` is the first height and `height` is last minus first height, as its users test with both ends included.
MU_PLATFORM_EXPORT void GetRegionPixel(std::size_t width, std::size_t length, const zPoint3d64f& offset,
                                       const zPoint3d64f& scale, const Region3d<double>* region, Rect3d<int>* result,
                                       const zPoint3d64f* tolerance, int isPixelGrid);

/// The same in the plane. With `isCentred` at 0 the position of `region` is its low corner, else its centre.
MU_PLATFORM_EXPORT void GetRegionPixel(std::size_t width, std::size_t length, const zPoint64f& offset,
                                       const zPoint64f& scale, const Region2d<double>* region, Rect2d<int>* result,
                                       const zPoint64f* tolerance, int isPixelGrid, int isCentred);

/// The same in a profile of `pointCount` points, with the z of `offset`, `scale` and `tolerance` in their y: `x` and
/// `width` are points, `y` and `height` the first height and the count of heights.
MU_PLATFORM_EXPORT void GetRegionXZPixel(std::size_t pointCount, const zPoint64f& offset, const zPoint64f& scale,
                                         const RegionXZ<double>* region, Rect2d<int>* result,
                                         const zPoint64f* tolerance, int isPixelGrid);
} // namespace Mu::Vision
