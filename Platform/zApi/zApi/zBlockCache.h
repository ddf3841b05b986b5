#pragma once

#include <zApi/zAlloc.h>

#include <array>
#include <mutex>

/// Large blocks that were freed and wait, warm, for the next request. Constant-initialised; never destroyed.
class zBlockCache
{
public:
    /// A block as the system gave it, by its start and its full size; `start` null means none.
    struct Block
    {
        void* start = nullptr;
        std::size_t size = 0;
    };

    /// The smallest kept block of at least `size` and at most a third more bytes, or none.
    Block Take(std::size_t size);

    /// Keeps `block` and hands the blocks that no longer fit, oldest first, to `evict`.
    void Keep(Block block, void (*evict)(void* start));

    /// Hands all blocks to `evict`.
    void Clear(void (*evict)(void* start));

    [[nodiscard]] std::size_t Bytes();

private:
    Block RemoveAt(std::size_t index);

    std::mutex mutex;
    std::array<Block, zALLOC_RECYCLE_MAX_BLOCKS> blocks{}; ///< oldest first
    std::size_t count = 0;
    std::size_t bytes = 0;
};
