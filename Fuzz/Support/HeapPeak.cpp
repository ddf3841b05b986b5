#include <Support/HeapPeak.h>

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace
{
constinit std::atomic<std::size_t> liveBytes{0};
constinit std::atomic<std::size_t> peakBytes{0};

/// Null if there is no memory.
void* Get(std::size_t size) noexcept
{
    void* const block = std::malloc(size);
    if (block == nullptr)
    {
        return nullptr;
    }
    const std::size_t room = ::malloc_usable_size(block);
    const std::size_t live = liveBytes.fetch_add(room) + room;
    std::size_t peak = peakBytes.load();
    while (peak < live && !peakBytes.compare_exchange_weak(peak, live))
    {
    }
    return block;
}

void Free(void* block) noexcept
{
    if (block != nullptr)
    {
        liveBytes.fetch_sub(::malloc_usable_size(block));
        std::free(block);
    }
}
} // namespace

// The forms that containers use. Those for arrays and for wide alignment are others' own.

void* operator new(std::size_t size)
{
    void* const block = Get(size);
    return block == nullptr ? throw std::bad_alloc() : block;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return Get(size);
}

void operator delete(void* block) noexcept
{
    Free(block);
}

void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept
{
    Free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    Free(block);
}

namespace Support
{
HeapPeak::HeapPeak()
    : before(liveBytes.load())
{
    peakBytes.store(before);
}

std::size_t HeapPeak::Bytes() const
{
    return peakBytes.load() - before;
}
} // namespace Support
