#include <zApi/zObjectType.h>
#include <zApi/zThreadPool.h>

#include <asio/post.hpp>
#include <asio/thread_pool.hpp>

#include <algorithm>
#include <limits>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace
{
/// A pool's own threads. They attach themselves: asio's own start of several threads waits for ever for those that it
/// has if the system does not give them all.
class Workers
{
public:
    Workers() = default;
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// What still waits in the queue is dropped.
    ~Workers()
    {
        queue.stop();
        for (std::thread& thread : threads)
        {
            thread.join();
        }
    }

    /// @throws std::exception if the system gives no thread; those that it gave end with the object
    void Start(std::size_t count)
    {
        threads.reserve(count);
        for (std::size_t i = 0; i < count; ++i)
        {
            threads.emplace_back([this] { queue.attach(); });
        }
    }

    [[nodiscard]] asio::thread_pool& Queue() noexcept
    {
        return queue;
    }

private:
    asio::thread_pool queue{0};
    std::vector<std::thread> threads;
};

struct Pool : zObjectClass
{
    std::size_t threads;
    std::optional<Workers> workers; ///< none in a pool of one
};

constinit std::mutex defaultPoolMutex;
constinit std::atomic<zThreadPool> defaultPool{nullptr};

Pool* As(zObject pool)
{
    return zObjectType_Cast<Pool>(pool, zTypeOf(zThreadPool));
}

/// One parallel loop. Helpers that come late, when all indexes are taken, still look at it: so it lives as long as the
/// last one who knows it, and nobody ever waits for a helper to come.
class Loop
{
public:
    Loop(std::size_t indexCount, zParallelBody loopBody, void* bodyContext, zAlloc loopAlloc)
        : count(indexCount)
        , body(loopBody)
        , context(bodyContext)
        , alloc(loopAlloc)
    {
    }

    /// Runs indexes until none is left.
    void Work() noexcept
    {
        for (std::size_t index = Take(); index < count; index = Take())
        {
            if (const zStatus status = Call(index); status != zOK)
            {
                Fail(index, status);
            }
            Done(1);
        }
    }

    /// Waits until every index is done or given up, and returns the status of the loop.
    [[nodiscard]] zStatus Wait()
    {
        for (std::size_t present = done.load(std::memory_order_acquire); present < count;
             present = done.load(std::memory_order_acquire))
        {
            done.wait(present, std::memory_order_acquire);
        }
        const std::lock_guard lock(failureMutex);
        return failure;
    }

    void Share() noexcept
    {
        owners.fetch_add(1, std::memory_order_relaxed);
    }

    void Drop() noexcept
    {
        if (owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
        {
            zAlloc home = alloc;
            this->~Loop();
            static_cast<void>(zAlloc_Free(home, this));
        }
    }

private:
    /// The next index, or `count` or more if none is left. It never counts beyond `count` by more than its callers.
    std::size_t Take() noexcept
    {
        std::size_t index = next.load(std::memory_order_relaxed);
        while (index < count && !next.compare_exchange_weak(index, index + 1, std::memory_order_relaxed))
        {
        }
        return index;
    }

    zStatus Call(std::size_t index) noexcept
    {
        try
        {
            return body(context, index);
        }
        catch (...)
        {
            return zERROR_PRECONDITION;
        }
    }

    void Fail(std::size_t index, zStatus status) noexcept
    {
        // The indexes that nobody has begun are done with.
        Done(count - std::min(count, next.exchange(count, std::memory_order_relaxed)));
        const std::lock_guard lock(failureMutex);
        if (index < failedIndex)
        {
            failedIndex = index;
            failure = status;
        }
    }

    void Done(std::size_t indexes) noexcept
    {
        if (indexes > 0 && done.fetch_add(indexes, std::memory_order_acq_rel) + indexes == count)
        {
            done.notify_all();
        }
    }

    const std::size_t count;
    const zParallelBody body;
    void* const context;
    zAlloc alloc;
    std::atomic<std::size_t> owners{1};
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> done{0};
    std::mutex failureMutex;
    std::size_t failedIndex = std::numeric_limits<std::size_t>::max();
    zStatus failure = zOK;
};

/// Owns a part in a loop.
class LoopHandle
{
public:
    /// Takes over the maker's part.
    explicit LoopHandle(Loop* made) noexcept
        : loop(made)
    {
    }

    LoopHandle(const LoopHandle& other) noexcept
        : loop(other.loop)
    {
        if (loop != nullptr)
        {
            loop->Share();
        }
    }

    LoopHandle(LoopHandle&& other) noexcept
        : loop(std::exchange(other.loop, nullptr))
    {
    }

    LoopHandle& operator=(const LoopHandle&) = delete;
    LoopHandle& operator=(LoopHandle&&) = delete;

    ~LoopHandle()
    {
        if (loop != nullptr)
        {
            loop->Drop();
        }
    }

    Loop* operator->() const noexcept
    {
        return loop;
    }

private:
    Loop* loop;
};

/// Asks the pool's threads for help. Without memory for that, those that are asked already and the caller do it all.
void CallHelpers(asio::thread_pool& workers, std::size_t helpers, const LoopHandle& loop) noexcept
{
    try
    {
        for (std::size_t i = 0; i < helpers; ++i)
        {
            asio::post(workers, [loop] { loop->Work(); });
        }
    }
    catch (...) // NOLINT(bugprone-empty-catch): fewer helpers are no failure
    {
    }
}

zStatus Run(Pool& pool, std::size_t count, zParallelBody body, void* context)
{
    void* memory = nullptr;
    zTRY(zAlloc_Get(pool.alloc, sizeof(Loop), &memory));
    const LoopHandle loop(::new (memory) Loop(count, body, context, pool.alloc));
    if (pool.workers)
    {
        CallHelpers(pool.workers->Queue(), std::min(pool.threads, count) - 1, loop);
    }
    loop->Work();
    return loop->Wait();
}

zStatus StartWorkers(Pool& pool) noexcept
{
    if (pool.threads == 1)
    {
        return zOK;
    }
    try
    {
        pool.workers.emplace().Start(pool.threads - 1);
        return zOK;
    }
    catch (...)
    {
        return zERROR_MEMORY;
    }
}

zStatus Construct(zObject* out, std::size_t threads, zAlloc alloc)
{
    Pool* pool = nullptr;
    zTRY(zObjectType_New(zTypeOf(zThreadPool), alloc, &pool));
    pool->threads = threads;
    return zObjectType_Finish(pool, StartWorkers(*pool), out);
}

void Release(zObject object) noexcept
{
    // What still waits are helpers of loops that are done.
    static_cast<Pool*>(object)->workers.reset();
}

std::size_t ProcessorCount()
{
    const std::size_t processors = std::thread::hardware_concurrency();
    return std::clamp<std::size_t>(processors, 1, zTHREADPOOL_MAX_THREADS);
}

constexpr zObjectOps poolOps = {Release, nullptr};
} // namespace

zDEFINE_OBJECT_TYPE(zThreadPool, zObject, &poolOps);

zThreadPool zThreadPool_Default()
{
    if (zThreadPool present = defaultPool.load(std::memory_order_acquire); present != nullptr)
    {
        return present;
    }
    const std::lock_guard lock(defaultPoolMutex);
    zThreadPool made = defaultPool.load(std::memory_order_relaxed);
    // On a system that gives no further thread, the callers still work.
    if (made == nullptr && Construct(&made, ProcessorCount(), nullptr) != zOK && Construct(&made, 1, nullptr) != zOK)
    {
        return nullptr;
    }
    defaultPool.store(made, std::memory_order_release);
    return made;
}

std::size_t zThreadPool_Count(zThreadPool pool)
{
    const Pool* const object = As(pool);
    return object == nullptr ? 0 : object->threads;
}

zStatus zThreadPool_Construct(zThreadPool* pool, std::size_t threads, zAlloc alloc)
{
    zFAULT_GATE();
    if (pool == nullptr)
    {
        return zERROR_MISSING;
    }
    return threads == 0 || threads > zTHREADPOOL_MAX_THREADS ? zERROR_PARAMETER : Construct(pool, threads, alloc);
}

zStatus zThreadPool_ParallelFor(zThreadPool pool, std::size_t count, zParallelBody body, void* context)
{
    zFAULT_GATE();
    Pool* const object = As(pool);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (body == nullptr)
    {
        return zERROR_MISSING;
    }
    return count == 0 ? zOK : Run(*object, count, body, context);
}
