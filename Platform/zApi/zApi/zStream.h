#pragma once

#include <zApi/zObject.h>

zDECLARE_TYPE(zStream);

// A sequence of bytes with a position, which is never moved behind the end: the base of `zFile` and `zMemory`. Handles
// of these two, and of every other type derived from `zStream`, are taken. A stream is used by one thread at a time.
// Statuses of the stream's own kind come through as they are: see `zFile.h` and `zMemory.h`.

/// What `zStream_Seek` counts from.
inline constexpr z32s zSTREAM_BEGIN = 0;
inline constexpr z32s zSTREAM_CURRENT = 1;
inline constexpr z32s zSTREAM_END = 2;

extern "C"
{
    /// Reads the next `size` bytes. -981 if fewer are left: then nothing is read. Any failure leaves the position.
    /// -997 if `stream` is no `zStream`, -999 if `bytes` is null and `size` is not 0.
    MU_PLATFORM_EXPORT zStatus zStream_Read(zStream stream, void* bytes, std::size_t size);

    /// Reads the next `size` bytes, or all that are left if these are fewer, and stores their number in `*got`. It is 0
    /// at the end, which is no failure. Any failure leaves the position.
    /// -997 if `stream` is no `zStream`, -999 if `got` is null, or `bytes` while `size` is not 0.
    MU_PLATFORM_EXPORT zStatus zStream_ReadUpTo(zStream stream, void* bytes, std::size_t size, std::size_t* got);

    /// Writes `size` bytes at the position, over what is there and beyond the end. Any failure leaves the position.
    /// -997 if `stream` is no `zStream` or if the stream would get longer than 2^63 - 1 bytes, -999 if `bytes` is null
    /// and `size` is not 0.
    MU_PLATFORM_EXPORT zStatus zStream_Write(zStream stream, const void* bytes, std::size_t size);

    /// Moves the position by `offset` bytes from `origin`: 0 the beginning, 1 the present position, 2 the end. Any
    /// failure leaves the position.
    /// -997 if `stream` is no `zStream` or the place lies before the beginning, -981 if it lies behind the end, -996
    /// for another origin.
    MU_PLATFORM_EXPORT zStatus zStream_Seek(zStream stream, z64s offset, z32s origin);

    /// Hands what is buffered to where the stream keeps its bytes. -997 if `stream` is no `zStream`.
    MU_PLATFORM_EXPORT zStatus zStream_Flush(zStream stream);

    /// Stores the number of bytes in all, those still buffered included, in `*length`.
    /// -997 if `stream` is no `zStream`, -999 if `length` is null.
    MU_PLATFORM_EXPORT zStatus zStream_Length(zStream stream, z64u* length);

    /// The position, in bytes from the beginning; 0 if `stream` is no `zStream`.
    MU_PLATFORM_EXPORT z64u zStream_Tell(zStream stream);
}
