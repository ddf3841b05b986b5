#pragma once

#include <zApi/zType.h>

// Allocators are objects; a null handle means the default allocator. An allocator outlives what was made in it.

zDECLARE_TYPE(zAlloc);
zDECLARE_TYPE(zCountingAlloc);

/// What a counting allocator has seen.
struct zAllocCounts
{
    std::size_t requests;   ///< requests since construction, failed ones included
    std::size_t liveBlocks; ///< blocks given out and not yet freed
    std::size_t liveBytes;  ///< their bytes, as requested
    std::size_t peakBytes;  ///< the most of these at any one time since construction
};

/// Bounds of what the default allocator keeps warm.
inline constexpr std::size_t zALLOC_RECYCLE_MIN_BLOCK = std::size_t{128} << 10U;
inline constexpr std::size_t zALLOC_RECYCLE_MAX_BYTES = std::size_t{512} << 20U;
inline constexpr std::size_t zALLOC_RECYCLE_MAX_BLOCKS = 32;

extern "C"
{
    /// Stores a block of `size` bytes, aligned for any type and to 64 bytes from `zALLOC_RECYCLE_MIN_BLOCK` on, in
    /// `*memory`. A size of 0 gives a block of its own. -999 if `memory` is null, -998 if there is no memory.
    ///
    /// The default allocator keeps freed blocks of `zALLOC_RECYCLE_MIN_BLOCK` and more, up to
    /// `zALLOC_RECYCLE_MAX_BLOCKS` of together at most `zALLOC_RECYCLE_MAX_BYTES`, and hands one out again for a
    /// request of at least three quarters of its size: what a tool makes anew in every execution comes back warm.
    MU_PLATFORM_EXPORT zStatus zAlloc_Get(zAlloc alloc, std::size_t size, void** memory);

    /// Frees a block of the same allocator. A null block succeeds.
    MU_PLATFORM_EXPORT zStatus zAlloc_Free(zAlloc alloc, void* memory);

    /// Gives the blocks that the default allocator keeps warm back to the system.
    MU_PLATFORM_EXPORT void zAlloc_Trim();

    /// The bytes that the default allocator keeps warm at this moment.
    MU_PLATFORM_EXPORT std::size_t zAlloc_KeptBytes();

    /// Makes an allocator that counts, on top of the default one. It may be used from several threads.
    /// -999 if `alloc` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zCountingAlloc_Construct(zAlloc* alloc);

    /// Lets the `request`-th request from now on (1 is the next one) fail for want of memory; 0 ends it. -997 for
    /// another type.
    MU_PLATFORM_EXPORT zStatus zCountingAlloc_FailAt(zAlloc alloc, std::size_t request);

    /// The counts so far; all 0 for a handle that is no counting allocator.
    MU_PLATFORM_EXPORT zAllocCounts zCountingAlloc_Counts(zAlloc alloc);
}
