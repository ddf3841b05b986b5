#pragma once

#include <zApi/zAlloc.h>
#include <zApi/zObject.h>

#include <cstddef>
#include <new>

namespace Support
{
/// An allocator that counts and can be told to fail, for the time of a scope. What was made in it must be gone before.
class CountingAlloc
{
public:
    CountingAlloc()
    {
        if (zCountingAlloc_Construct(&alloc) != zOK)
        {
            throw std::bad_alloc();
        }
    }

    CountingAlloc(const CountingAlloc&) = delete;
    CountingAlloc& operator=(const CountingAlloc&) = delete;

    ~CountingAlloc()
    {
        static_cast<void>(xzObject_DestroyImpl(alloc));
    }

    [[nodiscard]] zAlloc Get() const
    {
        return alloc;
    }

    /// The `request`-th request from now on fails; 0 ends it.
    void FailAt(std::size_t request) const
    {
        static_cast<void>(zCountingAlloc_FailAt(alloc, request));
    }

    [[nodiscard]] std::size_t Requests() const
    {
        return zCountingAlloc_Counts(alloc).requests;
    }

    [[nodiscard]] std::size_t LiveBlocks() const
    {
        return zCountingAlloc_Counts(alloc).liveBlocks;
    }

    [[nodiscard]] std::size_t LiveBytes() const
    {
        return zCountingAlloc_Counts(alloc).liveBytes;
    }

    [[nodiscard]] std::size_t PeakBytes() const
    {
        return zCountingAlloc_Counts(alloc).peakBytes;
    }

private:
    zAlloc alloc = nullptr;
};
} // namespace Support
