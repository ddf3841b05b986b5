#pragma once

#include <zApi/zObject.h>

zDECLARE_TYPE(zImage);

// An image: rows of pixels of one value type, each `stride` bytes behind the one before. It owns its pixels, or is
// attached to those of somebody else.

extern "C"
{
    /// Makes an image of `width` by `height` pixels of its own, row after row without gaps; they hold no defined value
    /// until written. An image without pixels is legal.
    /// -999 if `image` or `itemType` is null, -984 if `itemType` is an object type, -997 if the size in bytes
    /// overflows, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zImage_Construct(zImage* image, zType itemType, std::size_t width, std::size_t height,
                                                zAlloc alloc);

    /// Lets the image show pixels that stay their owner's and must outlive its use; pixels of its own are freed.
    /// `stride` is in bytes. A failing call leaves the image as it was.
    /// -997 if `image` is no `zImage`, if `stride` is less than a row of pixels or if the size in bytes overflows,
    /// -999 if `itemType` is null, or `pixels` where there are any, -984 if `itemType` is an object type.
    MU_PLATFORM_EXPORT zStatus zImage_Attach(zImage image, void* pixels, zType itemType, std::size_t width,
                                             std::size_t height, std::size_t stride);

    /// The pixels in a row; 0 if `image` is no `zImage`.
    MU_PLATFORM_EXPORT std::size_t zImage_Width(zImage image);

    /// The number of rows; 0 if `image` is no `zImage`.
    MU_PLATFORM_EXPORT std::size_t zImage_Height(zImage image);

    /// The bytes from one row to the next; 0 if `image` is no `zImage`.
    MU_PLATFORM_EXPORT std::size_t zImage_Stride(zImage image);

    /// The pixel type; null if `image` is no `zImage`.
    MU_PLATFORM_EXPORT zType zImage_ItemType(zImage image);

    /// The first pixel; null if the image has none or `image` is no `zImage`.
    MU_PLATFORM_EXPORT void* zImage_Pixels(zImage image);

    /// The first pixel of row `row`; null outside the image.
    MU_PLATFORM_EXPORT void* zImage_Row(zImage image, std::size_t row);
}
