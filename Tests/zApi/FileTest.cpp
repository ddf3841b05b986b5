#include <Support/FaultWalk.h>
#include <Support/ResourceLimit.h>
#include <Support/TemporaryFolder.h>

#include <TaApi/Object.h>
#include <zApi/zFile.h>
#include <zApi/zString.h>

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

using namespace Support;
using Handle = Ta::Object<void*>;

namespace
{
constexpr z32u NEW_FILE = zFILE_WRITE;
constexpr z32u UPDATE = zFILE_WRITE | zFILE_KEEP;

Handle Open(const std::string& path, z32u mode, zAlloc alloc = nullptr)
{
    zFile file = nullptr;
    EXPECT_EQ(zFile_Construct(&file, path.c_str(), mode, alloc), zOK);
    return Handle(file);
}

void Save(const std::string& path, const std::string& content)
{
    ASSERT_EQ(zFile_Save(path.c_str(), content.data(), content.size()), zOK);
}

zStatus Write(const Handle& file, const std::string& bytes)
{
    return zStream_Write(file.Get(), bytes.data(), bytes.size());
}

zStatus OpenStatus(const std::string& path, z32u mode)
{
    zFile file = nullptr;
    const zStatus status = zFile_Construct(&file, path.c_str(), mode, nullptr);
    EXPECT_EQ(file != nullptr, status == zOK);
    static_cast<void>(xzObject_DestroyImpl(file));
    return status;
}

struct ModeCase
{
    z32u mode;
    bool isReadable;
    bool isWritable;
    bool keepsContent;
    zStatus openOfMissing;
};

constexpr ModeCase modeCases[] = {
    {1, true, false, true, zERROR_MISSING},
    {2, false, true, false, zOK},
    {3, true, true, false, zOK},
    {6, false, true, true, zOK},
    {7, true, true, true, zOK},
};

/// Writes beyond this many bytes of a file fail, for the time of a scope.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : former(std::signal(SIGXFSZ, SIG_IGN))
        , limit(RLIMIT_FSIZE, bytes)
    {
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    ~FileSizeLimit()
    {
        std::signal(SIGXFSZ, former);
    }

private:
    void (*former)(int);
    ResourceLimit limit;
};
} // namespace

TEST(File, Mode_says_what_may_be_done_and_what_becomes_of_the_content)
{
    for (const ModeCase& c : modeCases)
    {
        SCOPED_TRACE(c.mode);
        const TemporaryFolder folder;
        const std::string path = folder.Path("file");
        EXPECT_EQ(OpenStatus(path, c.mode), c.openOfMissing);
        EXPECT_EQ(zFile_Exists(path.c_str()), c.openOfMissing == zOK);
        Save(path, "old");
        {
            const Handle file = Open(path, c.mode);
            char byte = '?';
            std::size_t got = 0;
            EXPECT_EQ(zStream_ReadUpTo(file.Get(), &byte, 1, &got), c.isReadable ? zOK : zERROR_PRECONDITION);
            EXPECT_EQ(byte, c.isReadable && c.keepsContent ? 'o' : '?');
            ASSERT_EQ(zStream_Seek(file.Get(), 0, zSTREAM_BEGIN), zOK);
            EXPECT_EQ(Write(file, "X"), c.isWritable ? zOK : zERROR_PRECONDITION);
        }
        const std::string written = c.keepsContent ? "Xld" : "X";
        EXPECT_EQ(FileContent(path), c.isWritable ? written : "old");
    }
}

TEST(File, Other_modes_are_refused)
{
    const TemporaryFolder folder;
    Save(folder.Path("file"), "old");
    for (const z32u mode : {0U, 4U, 5U, 8U, 10U, 0xFFFFFFFFU})
    {
        EXPECT_EQ(OpenStatus(folder.Path("file"), mode), zERROR_ENUM) << mode;
    }
    EXPECT_EQ(FileContent(folder.Path("file")), "old");
}

TEST(File, Construct_refuses_what_it_cannot_open)
{
    const TemporaryFolder folder;
    zFile file = nullptr;
    EXPECT_EQ(zFile_Construct(nullptr, "x", NEW_FILE, nullptr), zERROR_MISSING);
    EXPECT_EQ(zFile_Construct(&file, nullptr, NEW_FILE, nullptr), zERROR_MISSING);
    EXPECT_EQ(OpenStatus("", NEW_FILE), zERROR_MISSING);
    EXPECT_EQ(OpenStatus(folder.Path("none/file"), NEW_FILE), zERROR_MISSING);
    EXPECT_EQ(OpenStatus(folder.Path(), zFILE_READ), zERROR_IO);
    EXPECT_EQ(OpenStatus(folder.Path(), NEW_FILE), zERROR_IO);
    const ResourceLimit noFurtherFile(RLIMIT_NOFILE, 0);
    EXPECT_EQ(OpenStatus(folder.Path("file"), NEW_FILE), zERROR_IO);
}

TEST(File, Name_beyond_ASCII_is_kept)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("gr\xC3\xBC\xC3\x9F \xE6\xB7\xB1.txt");
    Save(path, "x");
    EXPECT_TRUE(zFile_Exists(path.c_str()));
    EXPECT_EQ(FileContent(path), "x");
    EXPECT_EQ(OpenStatus(path, zFILE_READ), zOK);
}

TEST(File, Appending_is_opening_for_update_and_going_to_the_end)
{
    const TemporaryFolder folder;
    for (const char* line : {"one\n", "two\n"})
    {
        const Handle file = Open(folder.Path("log"), UPDATE);
        ASSERT_EQ(zStream_Seek(file.Get(), 0, zSTREAM_END), zOK);
        ASSERT_EQ(Write(file, line), zOK);
    }
    EXPECT_EQ(FileContent(folder.Path("log")), "one\ntwo\n");
}

TEST(File, Flush_hands_what_is_buffered_to_the_system)
{
    const TemporaryFolder folder;
    const Handle file = Open(folder.Path("file"), NEW_FILE);
    ASSERT_EQ(Write(file, "buffered"), zOK);
    EXPECT_EQ(FileContent(folder.Path("file")), "");
    ASSERT_EQ(zStream_Flush(file.Get()), zOK);
    EXPECT_EQ(FileContent(folder.Path("file")), "buffered");
}

TEST(File, Closed_file_has_its_content_and_takes_no_more)
{
    const TemporaryFolder folder;
    const Handle file = Open(folder.Path("file"), zFILE_READ | zFILE_WRITE);
    ASSERT_EQ(Write(file, "content"), zOK);
    ASSERT_EQ(zFile_Close(file.Get()), zOK);
    EXPECT_EQ(FileContent(folder.Path("file")), "content");
    char byte = '?';
    z64u length = 0;
    EXPECT_EQ(Write(file, "x"), zERROR_PRECONDITION);
    EXPECT_EQ(zStream_Read(file.Get(), &byte, 1), zERROR_PRECONDITION);
    EXPECT_EQ(zStream_Seek(file.Get(), 0, zSTREAM_BEGIN), zERROR_PRECONDITION);
    EXPECT_EQ(zStream_Flush(file.Get()), zERROR_PRECONDITION);
    EXPECT_EQ(zStream_Length(file.Get(), &length), zERROR_PRECONDITION);
    EXPECT_EQ(zFile_Close(file.Get()), zOK);
}

TEST(File, Close_refuses_other_handles)
{
    zString string = nullptr;
    ASSERT_EQ(zString_Construct(&string, "no file", nullptr), zOK);
    const Handle text(string);
    EXPECT_EQ(zFile_Close(text.Get()), zERROR_PARAMETER);
    EXPECT_EQ(zFile_Close(nullptr), zERROR_PARAMETER);
}

TEST(File, Cannot_be_cloned)
{
    const TemporaryFolder folder;
    const Handle file = Open(folder.Path("file"), NEW_FILE);
    zObject clone = nullptr;
    EXPECT_EQ(xzObject_CloneImpl(&clone, file.Get(), nullptr), zERROR_INTERFACE);
    EXPECT_EQ(clone, nullptr);
}

TEST(File, Offsets_have_64_bits)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("large");
    Save(path, "");
    constexpr std::uintmax_t FIVE_GIGABYTES = std::uintmax_t{5} << 30U;
    std::filesystem::resize_file(path, FIVE_GIGABYTES); // a hole: it takes no room on the disk
    const Handle file = Open(path, zFILE_READ | UPDATE);
    ASSERT_EQ(zStream_Seek(file.Get(), -1, zSTREAM_END), zOK);
    EXPECT_EQ(zStream_Tell(file.Get()), FIVE_GIGABYTES - 1);
    ASSERT_EQ(Write(file, "xy"), zOK);
    ASSERT_EQ(zStream_Seek(file.Get(), -2, zSTREAM_CURRENT), zOK);
    char bytes[2] = {};
    ASSERT_EQ(zStream_Read(file.Get(), bytes, 2), zOK);
    EXPECT_EQ(std::string(bytes, 2), "xy");
    ASSERT_EQ(zStream_Flush(file.Get()), zOK);
    EXPECT_EQ(std::filesystem::file_size(path), FIVE_GIGABYTES + 1);
}

TEST(File, What_another_one_appends_is_found_at_the_end)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("file");
    Save(path, "one");
    const Handle file = Open(path, zFILE_READ | UPDATE);
    ASSERT_EQ(zStream_Seek(file.Get(), 0, zSTREAM_END), zOK);
    Save(path, "one, two");
    ASSERT_EQ(zStream_Seek(file.Get(), 0, zSTREAM_END), zOK);
    EXPECT_EQ(zStream_Tell(file.Get()), 8U);
}

TEST(File, File_cut_by_another_one_ends_the_read)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("file");
    Save(path, std::string(100'000, 'x'));
    const Handle file = Open(path, zFILE_READ);
    ASSERT_EQ(zStream_Seek(file.Get(), 90'000, zSTREAM_BEGIN), zOK);
    Save(path, "short");
    char byte = '?';
    EXPECT_EQ(zStream_Read(file.Get(), &byte, 1), zERROR_END);
    std::size_t got = 5;
    EXPECT_EQ(zStream_ReadUpTo(file.Get(), &byte, 1, &got), zOK);
    EXPECT_EQ(got, 0U);
}

TEST(File, Full_disk_shows_in_write_flush_or_close)
{
    const Handle large = Open("/dev/full", NEW_FILE);
    EXPECT_EQ(Write(large, std::string(1'000'000, 'x')), zERROR_IO);
    EXPECT_EQ(zStream_Tell(large.Get()), 0U);
    const Handle flushed = Open("/dev/full", NEW_FILE);
    ASSERT_EQ(Write(flushed, "x"), zOK);
    EXPECT_EQ(zStream_Flush(flushed.Get()), zERROR_IO);
    EXPECT_EQ(zFile_Close(flushed.Get()), zERROR_IO);
    EXPECT_EQ(zFile_Close(flushed.Get()), zOK);
    const Handle read = Open("/dev/full", zFILE_READ | NEW_FILE);
    ASSERT_EQ(Write(read, "x"), zOK);
    ASSERT_EQ(zStream_Seek(read.Get(), 0, zSTREAM_BEGIN), zOK);
    ASSERT_EQ(Write(read, std::string(10, 'y')), zOK);
    EXPECT_EQ(Write(read, std::string(40'000, 'z')), zERROR_IO);
}

TEST(File, End_of_the_object_writes_what_is_buffered_and_closes)
{
    const TemporaryFolder folder;
    const CountingAlloc alloc;
    {
        const Handle file = Open(folder.Path("file"), NEW_FILE, alloc.Get());
        ASSERT_EQ(Write(file, "content"), zOK);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
    EXPECT_EQ(FileContent(folder.Path("file")), "content");
}

TEST(File, Exists_says_yes_to_files_only)
{
    const TemporaryFolder folder;
    Save(folder.Path("file"), "");
    EXPECT_TRUE(zFile_Exists(folder.Path("file").c_str()));
    EXPECT_FALSE(zFile_Exists(folder.Path("none").c_str()));
    EXPECT_FALSE(zFile_Exists(folder.Path().c_str()));
    EXPECT_FALSE(zFile_Exists(""));
    EXPECT_FALSE(zFile_Exists(nullptr));
}

TEST(File, Delete_takes_files_only)
{
    const TemporaryFolder folder;
    Save(folder.Path("file"), "x");
    EXPECT_EQ(zFile_Delete(folder.Path("file").c_str()), zOK);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("file")));
    EXPECT_EQ(zFile_Delete(folder.Path("file").c_str()), zERROR_MISSING);
    EXPECT_EQ(zFile_Delete(folder.Path().c_str()), zERROR_MISSING);
    EXPECT_EQ(zFile_Delete(nullptr), zERROR_MISSING);
    EXPECT_TRUE(std::filesystem::exists(folder.Path()));
    EXPECT_EQ(zFile_Delete("/proc/self/status"), zERROR_IO);
}

TEST(File, Save_writes_the_whole_file_over_an_old_one)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("file");
    Save(path, "a longer old content");
    Save(path, "new");
    EXPECT_EQ(FileContent(path), "new");
    EXPECT_EQ(zFile_Save(path.c_str(), nullptr, 0), zOK);
    EXPECT_EQ(std::filesystem::file_size(path), 0U);
}

TEST(File, Save_refuses_what_it_cannot_do)
{
    const TemporaryFolder folder;
    EXPECT_EQ(zFile_Save(nullptr, "x", 1), zERROR_MISSING);
    EXPECT_EQ(zFile_Save(folder.Path("file").c_str(), nullptr, 1), zERROR_MISSING);
    EXPECT_EQ(zFile_Save(folder.Path("none/file").c_str(), "x", 1), zERROR_MISSING);
    EXPECT_EQ(zFile_Save(folder.Path().c_str(), "x", 1), zERROR_IO);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(File, Save_that_fails_on_the_way_leaves_no_part_of_a_file)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("file");
    const std::string content(1000, 'x');
    {
        const FileSizeLimit limit(100);
        EXPECT_EQ(zFile_Save(path.c_str(), content.data(), content.size()), zERROR_IO);
    }
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(zFile_Save("/dev/full", "x", 1), zERROR_IO);
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
}

TEST(File, Failing_requests_leave_nothing_behind)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("file");
    const std::size_t requests = WalkAllocations([&path](zAlloc alloc) {
        zFile file = nullptr;
        zStatus status = zFile_Construct(&file, path.c_str(), UPDATE, alloc);
        status = status == zOK ? zStream_Write(file, "x", 1) : status;
        static_cast<void>(xzObject_DestroyImpl(file));
        return status;
    });
    EXPECT_EQ(requests, 2U);
}

TEST(File, Failing_calls_come_through_and_leave_nothing_behind)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("file");
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&] {
        zFile file = nullptr;
        zStatus status = zFile_Save(path.c_str(), "x", 1);
        status = status == zOK ? zFile_Construct(&file, path.c_str(), UPDATE, alloc.Get()) : status;
        status = status == zOK ? zFile_Close(file) : status;
        status = status == zOK ? zFile_Delete(path.c_str()) : status;
        static_cast<void>(xzObject_DestroyImpl(file));
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GE(calls, 7U);
}

TEST(File, Failing_close_still_closes)
{
    const TemporaryFolder folder;
    const Handle file = Open(folder.Path("file"), NEW_FILE);
    ASSERT_EQ(Write(file, "content"), zOK);
    {
        const ArmedFault fault(1, -8);
        EXPECT_EQ(zFile_Close(file.Get()), -8);
    }
    EXPECT_EQ(FileContent(folder.Path("file")), "content");
    EXPECT_EQ(Write(file, "x"), zERROR_PRECONDITION);
}
