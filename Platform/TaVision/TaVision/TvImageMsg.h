#pragma once

#include <TaVision/TvDataMsg.h>
#include <TaVision/TvPixelFormat.h>

#include <zApi/zArray2.h>

/// An image: a grid of pixels, row by row without gaps, in a `zArray2` of `height` rows by `width` columns. Its items
/// are the records that the format stands for (`z8u`, `z16u`, `zRgb`, `zRgb24`), or raw records of the pixel's size.
///
/// As of every message with samples, `TvDataMsg_Ranges` gives the pixel at a place, where the rest of its row follows,
/// and `TvDataMsg_RangeArray` the array. The operations give -997 (null, 0) if `msg` is no image.
zDECLARE_TYPE(TvImageMsg);

using TvImageMsg = void*;

/// The most bytes that one pixel may take.
inline constexpr std::size_t TvIMAGE_MAX_PIXEL_SIZE = 64;

extern "C"
{
    /// Makes an image of `width` by `height` pixels of `pixelSize` bytes, all bytes 0. `sourceId` tells which camera
    /// took it. A format that is not known is taken, with any size of pixel: whoever reads the image decides on it.
    /// -999 if `msg` is null; -997 if `pixelSize` is 0, above `TvIMAGE_MAX_PIXEL_SIZE`, or not that of a known
    /// `format`, or if there are more than `TvMSG_MAX_ITEMS` bytes, rows or columns; -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus TvImageMsg_Construct(TvImageMsg* msg, std::size_t width, std::size_t height,
                                                    std::size_t pixelSize, TvPixelFormat format, z32s sourceId,
                                                    zAlloc alloc);

    /// Pixels along x.
    MU_PLATFORM_EXPORT std::size_t TvImageMsg_Width(TvImageMsg msg);

    /// Pixels along y.
    MU_PLATFORM_EXPORT std::size_t TvImageMsg_Height(TvImageMsg msg);

    /// The format of the pixels; 0 if `msg` is no image.
    MU_PLATFORM_EXPORT TvPixelFormat TvImageMsg_PixelFormat(TvImageMsg msg);

    /// The bytes of one pixel.
    MU_PLATFORM_EXPORT std::size_t TvImageMsg_PixelSize(TvImageMsg msg);

    /// The id that the image was made with.
    MU_PLATFORM_EXPORT z32s TvImageMsg_SourceId(TvImageMsg msg);

    /// The first pixel, valid while the message lives; null if there are none.
    MU_PLATFORM_EXPORT void* TvImageMsg_Pixels(TvImageMsg msg);
}
