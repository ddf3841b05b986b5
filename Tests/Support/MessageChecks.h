#pragma once

#include <Support/Builders.h>
#include <Support/FaultWalk.h>

#include <gtest/gtest.h>
#include <string>
#include <vector>

// What the tests of all families of messages ask.

namespace Support
{
inline std::vector<double> Fields(const zRect3d64f& box)
{
    return {box.x, box.y, box.z, box.width, box.length, box.height};
}

inline std::vector<double> Fields(const zPoint3d64f& point)
{
    return {point.x, point.y, point.z};
}

inline std::vector<double> Fields(const TvFoRTransform& t)
{
    return {t.xx, t.xy, t.xz, t.xt, t.yx, t.yy, t.yz, t.yt, t.zx, t.zy, t.zz, t.zt};
}

inline std::vector<z64s> Fields(const zStamp& stamp)
{
    return {static_cast<z64s>(stamp.source), static_cast<z64s>(stamp.sequence), static_cast<z64s>(stamp.time),
            stamp.encoder};
}

inline const std::vector<double> UNKNOWN_BOX(6, zNULL_64F);

/// Names the cases of a table by their member `name`.
struct CaseName
{
    template <typename Case>
    std::string operator()(const testing::TestParamInfo<Case>& testCase) const
    {
        return testCase.param.name;
    }
};

/// A deep copy in the default allocator.
inline Ta::Object<void*> CloneOf(void* msg)
{
    zObject clone = nullptr;
    EXPECT_EQ(xzObject_CloneImpl(&clone, msg, nullptr), zOK);
    return Ta::Object<void*>(clone);
}

/// Walks through every failing request and every failing call of `make(&msg, alloc)` and of cloning what it made: each
/// status comes through and nothing is left behind. Returns the number of requests.
template <typename Make>
std::size_t ExpectCleanFailures(const Make& make)
{
    const auto makeAndClone = [&make](zAlloc alloc) {
        zObject msg = nullptr;
        zObject clone = nullptr;
        zStatus status = make(&msg, alloc);
        status = status == zOK ? xzObject_CloneImpl(&clone, msg, alloc) : status;
        static_cast<void>(xzObject_DestroyImpl(clone));
        static_cast<void>(xzObject_DestroyImpl(msg));
        return status;
    };
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&] {
        const zStatus status = makeAndClone(alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GT(calls, 0U);
    return WalkAllocations(makeAndClone);
}
} // namespace Support
