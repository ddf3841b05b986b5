#pragma once

#include <zApi/zObject.h>

zDECLARE_TYPE(zThreadPool);

/// One piece of work of a parallel loop. Called from several threads at once, with a different `index` each.
using zParallelBody = zStatus (*)(void* context, std::size_t index);

/// More threads than any machine of use has: a larger number is taken for a mistake.
inline constexpr std::size_t zTHREADPOOL_MAX_THREADS = 1024;

extern "C"
{
    /// The process's pool, with a thread for each processor; made at the first call and never ended, so not to be
    /// released. May be called from any thread. Null if there is no memory; the next call tries again.
    MU_PLATFORM_EXPORT zThreadPool zThreadPool_Default();

    /// The number of threads that work on one loop, the calling one included; 0 if `pool` is no `zThreadPool`.
    MU_PLATFORM_EXPORT std::size_t zThreadPool_Count(zThreadPool pool);

    /// Makes a pool in which `threads` work on one loop: the caller, and `threads` - 1 of the pool's own.
    /// Its end waits for its threads; it must not come from a body that runs in it.
    /// -999 if `pool` is null, -997 unless 1 <= threads <= zTHREADPOOL_MAX_THREADS, -998 if there is no memory or the
    /// system gives no thread.
    MU_PLATFORM_EXPORT zStatus zThreadPool_Construct(zThreadPool* pool, std::size_t threads, zAlloc alloc);

    /// Calls `body(context, index)` for each index from 0 to `count` - 1, spread over the pool and the calling thread,
    /// and returns when all calls are done. May be called from several threads at once, and from a body. Indexes are
    /// begun in ascending order. After a failure no further index is begun, and of the failures the one of the lowest
    /// index is returned: the same whatever the number of threads. An exception that leaves a body counts as status 0.
    /// -997 if `pool` is no `zThreadPool`, -999 if `body` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zThreadPool_ParallelFor(zThreadPool pool, std::size_t count, zParallelBody body,
                                                       void* context);
}
