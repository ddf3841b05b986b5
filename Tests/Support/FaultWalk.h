#pragma once

#include <Support/CountingAlloc.h>

#include <zApi/zFault.h>

#include <cstddef>
#include <gtest/gtest.h>
#include <string>

// Walks through every failure that a piece of code can meet: n goes up from 1, the n-th call (or request) fails, until
// nothing fails any more.

namespace Support
{
/// More steps than any single operation takes: a walk that gets here does not end.
inline constexpr std::size_t MOST_STEPS = 100'000;

/// Arms a fault for the time of a scope.
class ArmedFault
{
public:
    ArmedFault(std::size_t callNumber, zStatus status)
    {
        zFault_Arm(callNumber, status);
    }

    ArmedFault(const ArmedFault&) = delete;
    ArmedFault& operator=(const ArmedFault&) = delete;

    ~ArmedFault()
    {
        zFault_Disarm();
    }

    /// The operation that failed, empty if none did.
    [[nodiscard]] static std::string Failed()
    {
        const char* const operation = zFault_Operation();
        return operation == nullptr ? std::string() : std::string(operation);
    }
};

/// True for the operations whose status may be dropped: they release all the same.
inline bool IsRelease(const std::string& operation)
{
    return operation == "xzObject_DestroyImpl" || operation == "zAlloc_Free";
}

/// Lets the n-th gated call of `run()` fail with `status`; `check(operation, result)` then sees which call failed and
/// what `run` returned. Returns the number of calls that were made to fail.
template <typename Run, typename Check>
std::size_t WalkFaults(zStatus status, const Run& run, const Check& check)
{
    for (std::size_t n = 1; n <= MOST_STEPS; ++n)
    {
        const ArmedFault fault(n, status);
        const auto result = run();
        zFault_Disarm();
        const std::string operation = ArmedFault::Failed();
        if (operation.empty())
        {
            return n - 1;
        }
        SCOPED_TRACE("call " + std::to_string(n) + " failed: " + operation);
        check(operation, result);
    }
    ADD_FAILURE() << "the walk over failing calls does not end";
    return 0;
}

/// The same for a `run` that returns a status and cleans up after itself: the status comes through as it is, unless it
/// was that of a release.
template <typename Run>
std::size_t WalkFaults(zStatus status, const Run& run)
{
    return WalkFaults(status, run, [status](const std::string& operation, zStatus result) {
        EXPECT_TRUE(result == status || (result == zOK && IsRelease(operation))) << result;
    });
}

/// Lets the n-th request of `run(alloc)` fail; `check(result)` then sees what `run` returned. After every step nothing
/// may be left in `alloc`. Returns the number of requests that were made to fail.
template <typename Run, typename Check>
std::size_t WalkAllocations(const Run& run, const Check& check)
{
    const CountingAlloc alloc;
    for (std::size_t n = 1; n <= MOST_STEPS; ++n)
    {
        const std::size_t before = alloc.Requests();
        alloc.FailAt(n);
        const auto result = run(alloc.Get());
        alloc.FailAt(0);
        EXPECT_EQ(alloc.LiveBlocks(), 0U) << "left behind when request " << n << " failed";
        if (alloc.Requests() - before < n)
        {
            return n - 1;
        }
        SCOPED_TRACE("request " + std::to_string(n) + " failed");
        check(result);
    }
    ADD_FAILURE() << "the walk over failing requests does not end";
    return 0;
}

/// The same for a `run` that returns a status and cleans up after itself: -998 comes through.
template <typename Run>
std::size_t WalkAllocations(const Run& run)
{
    return WalkAllocations(run, [](zStatus result) { EXPECT_EQ(result, zERROR_MEMORY); });
}
} // namespace Support
