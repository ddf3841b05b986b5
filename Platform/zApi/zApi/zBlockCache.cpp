#include <zApi/zBlockCache.h>

#include <algorithm>
#include <cstddef>

zBlockCache::Block zBlockCache::Take(std::size_t size)
{
    const std::lock_guard lock(mutex);
    std::size_t best = count;
    for (std::size_t i = 0; i < count; ++i)
    {
        const bool fits = blocks[i].size >= size && blocks[i].size - size <= size / 3;
        if (fits && (best == count || blocks[i].size < blocks[best].size))
        {
            best = i;
        }
    }
    return best == count ? Block{} : RemoveAt(best);
}

void zBlockCache::Keep(Block block, void (*evict)(void* start))
{
    if (block.size > zALLOC_RECYCLE_MAX_BYTES)
    {
        evict(block.start);
        return;
    }
    const std::lock_guard lock(mutex);
    while (count == blocks.size() || bytes + block.size > zALLOC_RECYCLE_MAX_BYTES)
    {
        evict(RemoveAt(0).start);
    }
    blocks[count++] = block;
    bytes += block.size;
}

void zBlockCache::Clear(void (*evict)(void* start))
{
    const std::lock_guard lock(mutex);
    while (count > 0)
    {
        evict(RemoveAt(count - 1).start);
    }
}

std::size_t zBlockCache::Bytes()
{
    const std::lock_guard lock(mutex);
    return bytes;
}

zBlockCache::Block zBlockCache::RemoveAt(std::size_t index)
{
    const Block block = blocks[index];
    const auto place = blocks.begin() + static_cast<std::ptrdiff_t>(index);
    std::move(place + 1, blocks.begin() + static_cast<std::ptrdiff_t>(count), place);
    --count;
    bytes -= block.size;
    return block;
}
