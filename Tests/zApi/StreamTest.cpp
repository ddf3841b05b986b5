#include <Support/FaultWalk.h>
#include <Support/TemporaryFolder.h>

#include <TaApi/Object.h>
#include <zApi/zFile.h>
#include <zApi/zMemory.h>
#include <zApi/zString.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

// What every stream does, run over every kind of stream.

using namespace Support;
using Handle = Ta::Object<void*>;

namespace
{
constexpr z64s LOWEST = std::numeric_limits<z64s>::min();
constexpr z64s HIGHEST = std::numeric_limits<z64s>::max();

/// A new stream for reading and writing, with `content` and the position at its beginning.
class FileStream
{
public:
    explicit FileStream(const std::string& content)
        : FileStream(content, nullptr)
    {
    }

    FileStream(const std::string& content, zAlloc alloc)
    {
        EXPECT_EQ(zFile_Save(Path().c_str(), content.data(), content.size()), zOK);
        EXPECT_EQ(zFile_Construct(handle.Out(), Path().c_str(), zFILE_READ | zFILE_WRITE | zFILE_KEEP, alloc), zOK);
    }

    [[nodiscard]] void* Get() const
    {
        return handle.Get();
    }

private:
    [[nodiscard]] std::string Path() const
    {
        return folder.Path("stream");
    }

    TemporaryFolder folder;
    Handle handle;
};

class MemoryStream
{
public:
    explicit MemoryStream(const std::string& content)
        : MemoryStream(content, nullptr)
    {
    }

    MemoryStream(const std::string& content, zAlloc alloc)
    {
        EXPECT_EQ(zMemory_Construct(handle.Out(), alloc), zOK);
        EXPECT_EQ(zStream_Write(Get(), content.data(), content.size()), zOK);
        EXPECT_EQ(zStream_Seek(Get(), 0, zSTREAM_BEGIN), zOK);
    }

    [[nodiscard]] void* Get() const
    {
        return handle.Get();
    }

private:
    Handle handle;
};

/// Attached to bytes with room to spare.
class AttachedStream
{
public:
    explicit AttachedStream(const std::string& content)
        : AttachedStream(content, nullptr)
    {
    }

    AttachedStream(const std::string& content, zAlloc alloc)
        : bytes(std::size_t{1} << 20U)
    {
        std::copy(content.begin(), content.end(), bytes.begin());
        EXPECT_EQ(zMemory_Construct(handle.Out(), alloc), zOK);
        EXPECT_EQ(zMemory_Attach(handle.Get(), bytes.data(), 0, content.size(), bytes.size()), zOK);
    }

    [[nodiscard]] void* Get() const
    {
        return handle.Get();
    }

private:
    std::vector<char> bytes;
    Handle handle;
};

template <typename Stream>
class Stream_contract : public testing::Test
{
};

using Streams = testing::Types<FileStream, MemoryStream, AttachedStream>;
TYPED_TEST_SUITE(Stream_contract, Streams);

std::string Read(void* stream, std::size_t size)
{
    std::string bytes(size, '?');
    EXPECT_EQ(zStream_Read(stream, bytes.data(), size), zOK);
    return bytes;
}

std::string ReadUpTo(void* stream, std::size_t size)
{
    std::string bytes(size, '?');
    std::size_t got = 99;
    EXPECT_EQ(zStream_ReadUpTo(stream, bytes.data(), size, &got), zOK);
    return bytes.substr(0, got);
}

z64u LengthOf(void* stream)
{
    z64u length = 99;
    EXPECT_EQ(zStream_Length(stream, &length), zOK);
    return length;
}

std::string Content(void* stream)
{
    EXPECT_EQ(zStream_Seek(stream, 0, zSTREAM_BEGIN), zOK);
    return Read(stream, LengthOf(stream));
}

zStatus Write(void* stream, const std::string& bytes)
{
    return zStream_Write(stream, bytes.data(), bytes.size());
}

/// A naive stream.
struct Model
{
    std::string bytes;
    std::size_t position = 0;

    void Write(const std::string& written)
    {
        bytes.resize(std::max(bytes.size(), position + written.size()));
        std::copy(written.begin(), written.end(), bytes.begin() + static_cast<std::ptrdiff_t>(position));
        position += written.size();
    }

    std::string ReadUpTo(std::size_t size)
    {
        std::string read = bytes.substr(position, size);
        position += read.size();
        return read;
    }
};

/// Mostly small, at times beyond every buffer.
std::size_t RandomSize(std::mt19937& random)
{
    const std::size_t limits[] = {4, 300, 5'000, 20'000, 70'000};
    return random() % limits[random() % std::size(limits)];
}

std::string RandomBytes(std::mt19937& random, std::size_t size)
{
    std::string bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random()); });
    return bytes;
}
} // namespace

TYPED_TEST(Stream_contract, Begins_at_its_beginning_with_its_content)
{
    const TypeParam stream("content");
    EXPECT_EQ(zStream_Tell(stream.Get()), 0U);
    EXPECT_EQ(LengthOf(stream.Get()), 7U);
    EXPECT_EQ(Read(stream.Get(), 7), "content");
    EXPECT_EQ(zStream_Tell(stream.Get()), 7U);
}

TYPED_TEST(Stream_contract, Read_past_the_end_fails_and_changes_nothing)
{
    const TypeParam stream("0123456789");
    ASSERT_EQ(Read(stream.Get(), 7), "0123456");
    std::string bytes(100'000, '?');
    for (const std::size_t size : {std::size_t{4}, std::size_t{100'000}})
    {
        EXPECT_EQ(zStream_Read(stream.Get(), bytes.data(), size), zERROR_END);
        EXPECT_EQ(bytes, std::string(100'000, '?'));
        EXPECT_EQ(zStream_Tell(stream.Get()), 7U);
    }
    EXPECT_EQ(Read(stream.Get(), 3), "789");
    EXPECT_EQ(zStream_Read(stream.Get(), bytes.data(), 1), zERROR_END);
    EXPECT_EQ(zStream_Read(stream.Get(), bytes.data(), 0), zOK);
}

TYPED_TEST(Stream_contract, ReadUpTo_gives_what_is_left_and_nothing_at_the_end)
{
    const TypeParam stream("0123456789");
    EXPECT_EQ(ReadUpTo(stream.Get(), 4), "0123");
    EXPECT_EQ(ReadUpTo(stream.Get(), 100), "456789");
    EXPECT_EQ(ReadUpTo(stream.Get(), 100), "");
    EXPECT_EQ(zStream_Tell(stream.Get()), 10U);
}

TYPED_TEST(Stream_contract, Seek_counts_from_its_origin)
{
    struct Case
    {
        z64s offset;
        z32s origin;
        zStatus status;
        z64u position; ///< from 4 on
    };
    const Case cases[] = {
        {0, zSTREAM_BEGIN, zOK, 0},
        {10, zSTREAM_BEGIN, zOK, 10},
        {11, zSTREAM_BEGIN, zERROR_END, 4},
        {-1, zSTREAM_BEGIN, zERROR_PARAMETER, 4},
        {0, zSTREAM_CURRENT, zOK, 4},
        {-4, zSTREAM_CURRENT, zOK, 0},
        {-5, zSTREAM_CURRENT, zERROR_PARAMETER, 4},
        {6, zSTREAM_CURRENT, zOK, 10},
        {7, zSTREAM_CURRENT, zERROR_END, 4},
        {0, zSTREAM_END, zOK, 10},
        {-10, zSTREAM_END, zOK, 0},
        {-11, zSTREAM_END, zERROR_PARAMETER, 4},
        {1, zSTREAM_END, zERROR_END, 4},
        {LOWEST, zSTREAM_END, zERROR_PARAMETER, 4},
        {HIGHEST, zSTREAM_END, zERROR_END, 4},
        {LOWEST, zSTREAM_BEGIN, zERROR_PARAMETER, 4},
        {HIGHEST, zSTREAM_CURRENT, zERROR_END, 4},
        {0, 3, zERROR_ENUM, 4},
        {0, -1, zERROR_ENUM, 4},
    };
    const TypeParam stream("0123456789");
    for (const Case& c : cases)
    {
        SCOPED_TRACE(testing::Message() << c.offset << " from " << c.origin);
        ASSERT_EQ(zStream_Seek(stream.Get(), 4, zSTREAM_BEGIN), zOK);
        EXPECT_EQ(zStream_Seek(stream.Get(), c.offset, c.origin), c.status);
        EXPECT_EQ(zStream_Tell(stream.Get()), c.position);
    }
}

TYPED_TEST(Stream_contract, Write_goes_over_what_is_there_and_beyond_the_end)
{
    const TypeParam stream("0123456789");
    ASSERT_EQ(zStream_Seek(stream.Get(), -2, zSTREAM_END), zOK);
    ASSERT_EQ(Write(stream.Get(), "abcd"), zOK);
    EXPECT_EQ(zStream_Tell(stream.Get()), 12U);
    EXPECT_EQ(LengthOf(stream.Get()), 12U);
    ASSERT_EQ(zStream_Seek(stream.Get(), 1, zSTREAM_BEGIN), zOK);
    ASSERT_EQ(Write(stream.Get(), "XY"), zOK);
    EXPECT_EQ(Read(stream.Get(), 2), "34");
    EXPECT_EQ(Content(stream.Get()), "0XY34567abcd");
}

TYPED_TEST(Stream_contract, Operations_need_their_pointers)
{
    const TypeParam stream("0123");
    std::size_t got = 5;
    char byte = '?';
    EXPECT_EQ(zStream_Read(stream.Get(), nullptr, 1), zERROR_MISSING);
    EXPECT_EQ(zStream_ReadUpTo(stream.Get(), nullptr, 1, &got), zERROR_MISSING);
    EXPECT_EQ(zStream_ReadUpTo(stream.Get(), &byte, 1, nullptr), zERROR_MISSING);
    EXPECT_EQ(zStream_Write(stream.Get(), nullptr, 1), zERROR_MISSING);
    EXPECT_EQ(zStream_Length(stream.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(zStream_Read(stream.Get(), nullptr, 0), zOK);
    EXPECT_EQ(zStream_ReadUpTo(stream.Get(), nullptr, 0, &got), zOK);
    EXPECT_EQ(zStream_Write(stream.Get(), nullptr, 0), zOK);
    EXPECT_EQ(got, 0U);
    EXPECT_EQ(zStream_Tell(stream.Get()), 0U);
}

TYPED_TEST(Stream_contract, Size_beyond_all_files_is_refused)
{
    const TypeParam stream("0123");
    ASSERT_EQ(zStream_Seek(stream.Get(), 1, zSTREAM_BEGIN), zOK);
    const char byte = 'x';
    EXPECT_EQ(zStream_Write(stream.Get(), &byte, std::size_t{1} << 63U), zERROR_PARAMETER);
    EXPECT_EQ(zStream_Write(stream.Get(), &byte, (std::size_t{1} << 63U) - 1), zERROR_PARAMETER);
    EXPECT_EQ(Content(stream.Get()), "0123");
}

TYPED_TEST(Stream_contract, Failing_calls_come_through_and_leave_content_and_position)
{
    const TypeParam stream("0123456789");
    char bytes[2] = {};
    std::size_t got = 0;
    z64u length = 0;
    const std::size_t calls = WalkFaults(-77, [&]() -> zStatus {
        zTRY(zStream_Seek(stream.Get(), 3, zSTREAM_BEGIN));
        zTRY(zStream_Read(stream.Get(), bytes, 2));
        zTRY(zStream_ReadUpTo(stream.Get(), bytes, 2, &got));
        zTRY(zStream_Length(stream.Get(), &length));
        zTRY(zStream_Seek(stream.Get(), 1, zSTREAM_BEGIN));
        zTRY(zStream_Write(stream.Get(), "1", 1));
        return zStream_Flush(stream.Get());
    });
    EXPECT_EQ(calls, 7U);
    EXPECT_EQ(Content(stream.Get()), "0123456789");
}

TYPED_TEST(Stream_contract, Does_as_a_naive_stream_does_on_random_operations)
{
    constexpr unsigned SEED = 13;
    SCOPED_TRACE("seed " + std::to_string(SEED));
    std::mt19937 random(SEED);
    constexpr std::size_t LONGEST = 300'000;
    Model model{RandomBytes(random, 1000)};
    const TypeParam stream(model.bytes);
    for (int step = 0; step < 4'000; ++step)
    {
        const std::size_t size = RandomSize(random);
        switch (random() % 5)
        {
        case 0:
            if (model.position + size <= LONGEST)
            {
                const std::string bytes = RandomBytes(random, size);
                ASSERT_EQ(Write(stream.Get(), bytes), zOK);
                model.Write(bytes);
            }
            break;
        case 1:
            ASSERT_EQ(ReadUpTo(stream.Get(), size), model.ReadUpTo(size));
            break;
        case 2:
            if (size <= model.bytes.size() - model.position)
            {
                ASSERT_EQ(Read(stream.Get(), size), model.ReadUpTo(size));
            }
            break;
        case 3:
            model.position = random() % (model.bytes.size() + 1);
            ASSERT_EQ(zStream_Seek(stream.Get(), static_cast<z64s>(model.position), zSTREAM_BEGIN), zOK);
            break;
        default:
            // A short way back, as one who reads lines goes.
            const std::size_t back = std::min(model.position, size % 100);
            model.position -= back;
            ASSERT_EQ(zStream_Seek(stream.Get(), -static_cast<z64s>(back), zSTREAM_CURRENT), zOK);
        }
        ASSERT_EQ(zStream_Tell(stream.Get()), model.position);
        ASSERT_EQ(LengthOf(stream.Get()), model.bytes.size());
    }
    EXPECT_EQ(Content(stream.Get()), model.bytes);
}

TEST(Stream, Operations_refuse_other_handles)
{
    zString string = nullptr;
    ASSERT_EQ(zString_Construct(&string, "no stream", nullptr), zOK);
    const Handle text(string);
    char byte = '?';
    std::size_t got = 5;
    z64u length = 5;
    for (zObject handle : {text.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(zStream_Read(handle, &byte, 1), zERROR_PARAMETER);
        EXPECT_EQ(zStream_ReadUpTo(handle, &byte, 1, &got), zERROR_PARAMETER);
        EXPECT_EQ(zStream_Write(handle, &byte, 1), zERROR_PARAMETER);
        EXPECT_EQ(zStream_Seek(handle, 0, zSTREAM_BEGIN), zERROR_PARAMETER);
        EXPECT_EQ(zStream_Flush(handle), zERROR_PARAMETER);
        EXPECT_EQ(zStream_Length(handle, &length), zERROR_PARAMETER);
        EXPECT_EQ(zStream_Tell(handle), 0U);
    }
    EXPECT_EQ(got, 5U);
    EXPECT_EQ(length, 5U);
}

TEST(Stream, File_and_memory_are_streams)
{
    const FileStream file("");
    const MemoryStream memory("");
    EXPECT_TRUE(xzCastClass_ObjectIs(file.Get(), zTypeOf(zStream)));
    EXPECT_TRUE(xzCastClass_ObjectIs(memory.Get(), zTypeOf(zStream)));
}
