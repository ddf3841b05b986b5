#include <zApi/zAlloc.h>
#include <zApi/zBlockCache.h>
#include <zApi/zFault.h>
#include <zApi/zObjectType.h>

#include <cstdlib>
#include <limits>

// One compiler says by a macro of its own that it watches addresses, the other only when asked.
#if defined(__SANITIZE_ADDRESS__)
#define MU_WATCHES_ADDRESSES
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MU_WATCHES_ADDRESSES
#endif
#endif

#if defined(MU_WATCHES_ADDRESSES)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) static_cast<void>(address)
#define ASAN_UNPOISON_MEMORY_REGION(address, size) static_cast<void>(address)
#endif

namespace
{
// The bytes before every block say how large it is, so that freeing needs no size.
struct BlockHeader
{
    std::size_t requested;
    std::size_t room; ///< full size of a large block as the system gave it, 0 for a small one
};

constexpr std::size_t SMALL_HEAD = 16;
constexpr std::size_t LARGE_HEAD = 64;
static_assert(sizeof(BlockHeader) <= SMALL_HEAD && SMALL_HEAD % alignof(std::max_align_t) == 0);

constinit zBlockCache blockCache;

BlockHeader* HeaderOf(void* memory)
{
    return static_cast<BlockHeader*>(memory) - 1;
}

void* Finish(void* start, std::size_t head, BlockHeader header)
{
    void* const memory = static_cast<unsigned char*>(start) + head;
    *HeaderOf(memory) = header;
    return memory;
}

void* GetLarge(std::size_t size)
{
    const std::size_t room = (size + LARGE_HEAD + 63) / 64 * 64;
    const zBlockCache::Block kept = blockCache.Take(room);
    if (kept.start != nullptr)
    {
        ASAN_UNPOISON_MEMORY_REGION(kept.start, size + LARGE_HEAD);
        return Finish(kept.start, LARGE_HEAD, {size, kept.size});
    }
    void* const start = std::aligned_alloc(64, room);
    return start == nullptr ? nullptr : Finish(start, LARGE_HEAD, {size, room});
}

void* GetBlock(std::size_t size)
{
    if (size > std::numeric_limits<std::size_t>::max() / 2)
    {
        return nullptr;
    }
    if (size >= zALLOC_RECYCLE_MIN_BLOCK)
    {
        return GetLarge(size);
    }
    void* const start = std::malloc(size + SMALL_HEAD);
    return start == nullptr ? nullptr : Finish(start, SMALL_HEAD, {size, 0});
}

void Evict(void* start)
{
    ASAN_UNPOISON_MEMORY_REGION(start, 1);
    std::free(start);
}

void FreeBlock(void* memory)
{
    const BlockHeader header = *HeaderOf(memory);
    if (header.room == 0)
    {
        std::free(static_cast<unsigned char*>(memory) - SMALL_HEAD);
        return;
    }
    void* const start = static_cast<unsigned char*>(memory) - LARGE_HEAD;
    ASAN_POISON_MEMORY_REGION(start, header.room);
    blockCache.Keep({start, header.room}, Evict);
}

struct CountingAlloc : zObjectClass
{
    std::atomic<std::size_t> requests;
    std::atomic<std::size_t> liveBlocks;
    std::atomic<std::size_t> liveBytes;
    std::atomic<std::size_t> peakBytes;
    std::atomic<std::size_t> requestsToFailure; ///< 0: none fails
};

CountingAlloc* AsCounting(zAlloc alloc)
{
    return zObjectType_Cast<CountingAlloc>(alloc, zTypeOf(zCountingAlloc));
}

bool TakesFailure(CountingAlloc& counting)
{
    std::size_t remaining = counting.requestsToFailure.load(std::memory_order_acquire);
    while (remaining != 0 && !counting.requestsToFailure.compare_exchange_weak(remaining, remaining - 1))
    {
    }
    return remaining == 1;
}

void RaisePeak(CountingAlloc& counting, std::size_t liveBytes)
{
    std::size_t peak = counting.peakBytes.load(std::memory_order_relaxed);
    while (peak < liveBytes && !counting.peakBytes.compare_exchange_weak(peak, liveBytes))
    {
    }
}

void* GetCounted(CountingAlloc& counting, std::size_t size)
{
    counting.requests.fetch_add(1, std::memory_order_relaxed);
    void* const memory = TakesFailure(counting) ? nullptr : GetBlock(size);
    if (memory != nullptr)
    {
        counting.liveBlocks.fetch_add(1, std::memory_order_relaxed);
        RaisePeak(counting, counting.liveBytes.fetch_add(size, std::memory_order_relaxed) + size);
    }
    return memory;
}

constexpr zObjectOps countingAllocOps = {nullptr, nullptr};
} // namespace

zDEFINE_OBJECT_TYPE(zAlloc, zObject, nullptr);
zDEFINE_OBJECT_TYPE(zCountingAlloc, zAlloc, &countingAllocOps);

zStatus zAlloc_Get(zAlloc alloc, std::size_t size, void** memory)
{
    zFAULT_GATE();
    if (memory == nullptr)
    {
        return zERROR_MISSING;
    }
    CountingAlloc* const counting = AsCounting(alloc);
    *memory = counting == nullptr ? GetBlock(size) : GetCounted(*counting, size);
    return *memory == nullptr ? zERROR_MEMORY : zOK;
}

zStatus zAlloc_Free(zAlloc alloc, void* memory)
{
    const zStatus status = zFAULT_STATUS();
    if (memory == nullptr)
    {
        return status;
    }
    if (CountingAlloc* const counting = AsCounting(alloc); counting != nullptr)
    {
        counting->liveBlocks.fetch_sub(1, std::memory_order_relaxed);
        counting->liveBytes.fetch_sub(HeaderOf(memory)->requested, std::memory_order_relaxed);
    }
    FreeBlock(memory);
    return status;
}

void zAlloc_Trim()
{
    blockCache.Clear(Evict);
}

std::size_t zAlloc_KeptBytes()
{
    return blockCache.Bytes();
}

zStatus zCountingAlloc_Construct(zAlloc* alloc)
{
    zFAULT_GATE();
    if (alloc == nullptr)
    {
        return zERROR_MISSING;
    }
    CountingAlloc* made = nullptr;
    zTRY(zObjectType_New(zTypeOf(zCountingAlloc), nullptr, &made));
    *alloc = made;
    return zOK;
}

zStatus zCountingAlloc_FailAt(zAlloc alloc, std::size_t request)
{
    zFAULT_GATE();
    CountingAlloc* const counting = AsCounting(alloc);
    if (counting == nullptr)
    {
        return zERROR_PARAMETER;
    }
    counting->requestsToFailure.store(request, std::memory_order_release);
    return zOK;
}

zAllocCounts zCountingAlloc_Counts(zAlloc alloc)
{
    CountingAlloc* const counting = AsCounting(alloc);
    return counting == nullptr ? zAllocCounts{}
                               : zAllocCounts{counting->requests.load(), counting->liveBlocks.load(),
                                              counting->liveBytes.load(), counting->peakBytes.load()};
}
