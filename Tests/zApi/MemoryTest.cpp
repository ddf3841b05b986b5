#include <Support/FaultWalk.h>

#include <TaApi/Object.h>
#include <zApi/zMemory.h>
#include <zApi/zString.h>

#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <string>

using namespace Support;
using Handle = Ta::Object<void*>;

namespace
{
Handle Memory(zAlloc alloc = nullptr)
{
    zMemory memory = nullptr;
    EXPECT_EQ(zMemory_Construct(&memory, alloc), zOK);
    return Handle(memory);
}

zStatus Write(const Handle& memory, const std::string& bytes)
{
    return zStream_Write(memory.Get(), bytes.data(), bytes.size());
}

std::string Content(const Handle& memory)
{
    const std::size_t length = zMemory_Length(memory.Get());
    return length == 0 ? std::string() : std::string(static_cast<char*>(zMemory_At(memory.Get(), 0)), length);
}

/// Writes beyond the first room, clones, and cleans up.
zStatus BuildAndClone(zAlloc alloc)
{
    zMemory memory = nullptr;
    zMemory clone = nullptr;
    const std::string bytes(300, 'x');
    zStatus status = zMemory_Construct(&memory, alloc);
    status = status == zOK ? zStream_Write(memory, bytes.data(), 1) : status;
    status = status == zOK ? zStream_Write(memory, bytes.data(), bytes.size()) : status;
    status = status == zOK ? zMemory_Reserve(memory, 10'000) : status;
    status = status == zOK ? xzObject_CloneImpl(&clone, memory, alloc) : status;
    status = status == zOK ? zMemory_Purge(clone) : status;
    status = status == zOK ? zMemory_Attach(clone, nullptr, 0, 0, 0) : status;
    for (zObject object : {clone, memory})
    {
        static_cast<void>(xzObject_DestroyImpl(object));
    }
    return status;
}
} // namespace

TEST(Memory, New_one_is_empty)
{
    const Handle memory = Memory();
    EXPECT_EQ(zMemory_Length(memory.Get()), 0U);
    EXPECT_EQ(zMemory_At(memory.Get(), 0), nullptr);
    EXPECT_EQ(zMemory_Construct(nullptr, nullptr), zERROR_MISSING);
}

TEST(Memory, Shows_its_bytes)
{
    const Handle memory = Memory();
    ASSERT_EQ(Write(memory, "abc"), zOK);
    EXPECT_EQ(zMemory_Length(memory.Get()), 3U);
    EXPECT_EQ(*static_cast<char*>(zMemory_At(memory.Get(), 2)), 'c');
    EXPECT_EQ(zMemory_At(memory.Get(), 3), nullptr);
}

TEST(Memory, Reserved_room_is_kept_and_keeps_the_content)
{
    const CountingAlloc alloc;
    {
        const Handle memory = Memory(alloc.Get());
        ASSERT_EQ(Write(memory, "abc"), zOK);
        ASSERT_EQ(zMemory_Reserve(memory.Get(), 5000), zOK);
        const std::size_t requests = alloc.Requests();
        ASSERT_EQ(zMemory_Reserve(memory.Get(), 10), zOK);
        ASSERT_EQ(Write(memory, std::string(4997, 'x')), zOK);
        EXPECT_EQ(Content(memory), "abc" + std::string(4997, 'x'));
        ASSERT_EQ(zMemory_Purge(memory.Get()), zOK);
        EXPECT_EQ(zStream_Tell(memory.Get()), 0U);
        EXPECT_EQ(zMemory_Length(memory.Get()), 0U);
        ASSERT_EQ(Write(memory, std::string(5000, 'y')), zOK);
        EXPECT_EQ(alloc.Requests(), requests);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Memory, Bytes_of_its_own_can_be_written_when_it_grows)
{
    const Handle memory = Memory();
    ASSERT_EQ(Write(memory, std::string(200, 'a') + std::string(56, 'b')), zOK);
    ASSERT_EQ(zStream_Write(memory.Get(), zMemory_At(memory.Get(), 100), 156), zOK);
    EXPECT_EQ(Content(memory),
              std::string(200, 'a') + std::string(56, 'b') + std::string(100, 'a') + std::string(56, 'b'));
}

TEST(Memory, Write_that_cannot_grow_changes_nothing)
{
    const CountingAlloc alloc;
    {
        const Handle memory = Memory(alloc.Get());
        ASSERT_EQ(Write(memory, "abc"), zOK);
        ASSERT_EQ(zStream_Seek(memory.Get(), 1, zSTREAM_BEGIN), zOK);
        alloc.FailAt(1);
        EXPECT_EQ(Write(memory, std::string(300, 'x')), zERROR_MEMORY);
        EXPECT_EQ(Content(memory), "abc");
        EXPECT_EQ(zStream_Tell(memory.Get()), 1U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Memory, Attached_bytes_are_read_and_written_in_place)
{
    std::array<char, 8> bytes = {'0', '1', '2', '3', '4', '5', '6', '7'};
    const CountingAlloc alloc;
    {
        const Handle memory = Memory(alloc.Get());
        ASSERT_EQ(Write(memory, "own"), zOK);
        EXPECT_EQ(alloc.LiveBlocks(), 2U);
        ASSERT_EQ(zMemory_Attach(memory.Get(), bytes.data(), 2, 6, 8), zOK);
        EXPECT_EQ(alloc.LiveBlocks(), 1U);
        EXPECT_EQ(zStream_Tell(memory.Get()), 2U);
        EXPECT_EQ(Content(memory), "012345");
        char read = '?';
        ASSERT_EQ(zStream_Read(memory.Get(), &read, 1), zOK);
        EXPECT_EQ(read, '2');
        ASSERT_EQ(Write(memory, "abcd"), zOK);
        EXPECT_EQ(zMemory_Length(memory.Get()), 7U);
        EXPECT_EQ(zMemory_At(memory.Get(), 0), bytes.data());
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
    EXPECT_EQ(std::string(bytes.data(), 8), "012abcd7");
}

TEST(Memory, Attached_bytes_do_not_grow)
{
    std::array<char, 4> bytes = {'0', '1', '2', '3'};
    const Handle memory = Memory();
    ASSERT_EQ(zMemory_Attach(memory.Get(), bytes.data(), 2, 3, 4), zOK);
    EXPECT_EQ(Write(memory, "abc"), zERROR_PARAMETER);
    EXPECT_EQ(zMemory_Reserve(memory.Get(), 5), zERROR_PARAMETER);
    EXPECT_EQ(zMemory_Reserve(memory.Get(), 4), zOK);
    EXPECT_EQ(Content(memory), "012");
    EXPECT_EQ(zStream_Tell(memory.Get()), 2U);
    EXPECT_EQ(Write(memory, "ab"), zOK);
    EXPECT_EQ(Content(memory), "01ab");
}

TEST(Memory, Attach_refuses_what_cannot_be_and_leaves_the_stream_as_it_was)
{
    constexpr std::size_t HUGE_SIZE = std::numeric_limits<std::size_t>::max();
    const Handle memory = Memory();
    ASSERT_EQ(Write(memory, "own"), zOK);
    char byte = 'x';
    EXPECT_EQ(zMemory_Attach(memory.Get(), &byte, 2, 1, 1), zERROR_PARAMETER);
    EXPECT_EQ(zMemory_Attach(memory.Get(), &byte, 0, 2, 1), zERROR_PARAMETER);
    EXPECT_EQ(zMemory_Attach(memory.Get(), &byte, 0, 0, HUGE_SIZE), zERROR_PARAMETER);
    EXPECT_EQ(zMemory_Attach(memory.Get(), nullptr, 0, 0, 1), zERROR_MISSING);
    EXPECT_EQ(Content(memory), "own");
}

TEST(Memory, Attached_to_nothing_it_is_at_its_end)
{
    const Handle memory = Memory();
    ASSERT_EQ(zMemory_Attach(memory.Get(), nullptr, 0, 0, 0), zOK);
    char byte = 'x';
    EXPECT_EQ(zStream_Read(memory.Get(), &byte, 1), zERROR_END);
    EXPECT_EQ(Write(memory, "x"), zERROR_PARAMETER);
}

TEST(Memory, Operations_refuse_other_handles)
{
    zString string = nullptr;
    ASSERT_EQ(zString_Construct(&string, "no memory stream", nullptr), zOK);
    const Handle text(string);
    char byte = 'x';
    for (zObject handle : {text.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(zMemory_Attach(handle, &byte, 0, 1, 1), zERROR_PARAMETER);
        EXPECT_EQ(zMemory_Reserve(handle, 1), zERROR_PARAMETER);
        EXPECT_EQ(zMemory_Purge(handle), zERROR_PARAMETER);
        EXPECT_EQ(zMemory_Length(handle), 0U);
        EXPECT_EQ(zMemory_At(handle, 0), nullptr);
    }
}

TEST(Memory, Clone_of_attached_bytes_owns_a_copy_and_stands_at_the_same_place)
{
    std::array<char, 4> bytes = {'0', '1', '2', '3'};
    const Handle memory = Memory();
    ASSERT_EQ(zMemory_Attach(memory.Get(), bytes.data(), 1, 3, 4), zOK);
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, memory.Get(), nullptr), zOK);
    const Handle clone(cloned);
    bytes.fill('?');
    EXPECT_EQ(Content(clone), "012");
    EXPECT_EQ(zStream_Tell(clone.Get()), 1U);
    ASSERT_EQ(Write(clone, "abcdef"), zOK);
    EXPECT_EQ(Content(clone), "0abcdef");
}

TEST(Memory, Failing_requests_leave_nothing_behind)
{
    // The object, first room, growing, reserving; in the clone object and room.
    EXPECT_EQ(WalkAllocations(BuildAndClone), 6U);
}

TEST(Memory, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&alloc] {
        const zStatus status = BuildAndClone(alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GE(calls, 13U);
}
