#pragma once

#include <zApi/zTypes.h>

// Plain byte operations. A size of 0 succeeds with any pointers.

extern "C"
{
    /// Copies `size` bytes; the places must not overlap. -999 if a pointer is null.
    MU_PLATFORM_EXPORT zStatus zMemCopy(void* to, const void* from, std::size_t size);

    /// Reverses the order of `size` bytes in place. -999 if the pointer is null.
    MU_PLATFORM_EXPORT zStatus zMemReverse(void* bytes, std::size_t size);

    /// Copies `size` bytes in reversed order; the places must not overlap. -999 if a pointer is null.
    MU_PLATFORM_EXPORT zStatus zMemReverseCopy(void* to, const void* from, std::size_t size);
}
