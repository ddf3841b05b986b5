#include <Support/FaultWalk.h>
#include <Support/RefusedCalls.h>
#include <Support/ResourceLimit.h>
#include <Support/TemporaryFolder.h>

#include <TaApi/Object.h>
#include <zApi/zArrayList.h>
#include <zApi/zDirectory.h>
#include <zApi/zFile.h>
#include <zApi/zString.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Support;
using Handle = Ta::Object<void*>;

namespace
{
Handle Texts(zAlloc alloc = nullptr)
{
    zArrayList list = nullptr;
    EXPECT_EQ(zArrayList_Construct(&list, zTypeOf(zString), 0, alloc), zOK);
    return Handle(list);
}

std::vector<std::string> TextsIn(const Handle& list)
{
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < zArrayList_Count(list.Get()); ++i)
    {
        texts.emplace_back(zString_Chars(*static_cast<zString*>(zArrayList_At(list.Get(), i))));
    }
    return texts;
}

void MakeFile(const std::string& path)
{
    ASSERT_EQ(zFile_Save(path.c_str(), "x", 1), zOK);
}
/// Ends the process with 0 if the operation fails as it should.
[[noreturn]] void AskForApplicationWithoutLinks()
{
    std::array<char, 4096> out{"as it was"};
    const bool isRefused = RefuseToReadLinks();
    const zStatus status = zDirectory_Application(out.data(), out.size());
    const bool isLeft = std::string(out.data()) == "as it was";
    std::_Exit(isRefused && status == zERROR_IO && isLeft ? 0 : 1);
}
} // namespace

TEST(Directory, Exists_says_yes_to_folders_only)
{
    const TemporaryFolder folder;
    MakeFile(folder.Path("file"));
    EXPECT_TRUE(zDirectory_Exists(folder.Path().c_str()));
    EXPECT_FALSE(zDirectory_Exists(folder.Path("file").c_str()));
    EXPECT_FALSE(zDirectory_Exists(folder.Path("none").c_str()));
    EXPECT_FALSE(zDirectory_Exists(""));
    EXPECT_FALSE(zDirectory_Exists(nullptr));
}

TEST(Directory, Create_makes_the_folder_and_those_above_it)
{
    const TemporaryFolder folder;
    const std::string deep = folder.Path("a/b \xC3\xA4/c");
    ASSERT_EQ(zDirectory_Create(deep.c_str()), zOK);
    EXPECT_TRUE(std::filesystem::is_directory(deep));
    EXPECT_EQ(zDirectory_Create(deep.c_str()), zOK);
    EXPECT_EQ(zDirectory_Create((folder.Path("d") + "/").c_str()), zOK);
    EXPECT_TRUE(std::filesystem::is_directory(folder.Path("d")));
}

TEST(Directory, Create_refuses_what_it_cannot_make)
{
    const TemporaryFolder folder;
    MakeFile(folder.Path("file"));
    EXPECT_EQ(zDirectory_Create(nullptr), zERROR_MISSING);
    EXPECT_EQ(zDirectory_Create(""), zERROR_MISSING);
    EXPECT_EQ(zDirectory_Create(folder.Path("file").c_str()), zERROR_ALREADY_TAKEN);
    EXPECT_EQ(zDirectory_Create(folder.Path("file/below").c_str()), zERROR_IO);
    EXPECT_EQ(FileContent(folder.Path("file")), "x");
}

TEST(Directory, Lists_names_of_files_in_bytewise_order)
{
    const TemporaryFolder folder;
    for (const char* name : {"b", "a10", "a2", "B", "\xC3\xA4.txt", ".hidden", "~", "a b"})
    {
        MakeFile(folder.Path(name));
    }
    ASSERT_EQ(zDirectory_Create(folder.Path("folder").c_str()), zOK);
    MakeFile(folder.Path("folder/below"));
    const Handle list = Texts();
    ASSERT_EQ(zDirectory_ListFiles(folder.Path().c_str(), list.Get()), zOK);
    EXPECT_EQ(TextsIn(list), (std::vector<std::string>{".hidden", "B", "a b", "a10", "a2", "b", "~", "\xC3\xA4.txt"}));
}

TEST(Directory, Listing_appends_to_what_is_there)
{
    const TemporaryFolder folder;
    MakeFile(folder.Path("a"));
    const Handle list = Texts();
    ASSERT_EQ(zDirectory_ListFiles(folder.Path().c_str(), list.Get()), zOK);
    ASSERT_EQ(zDirectory_ListFiles(folder.Path().c_str(), list.Get()), zOK);
    EXPECT_EQ(TextsIn(list), (std::vector<std::string>{"a", "a"}));
}

TEST(Directory, Listing_an_empty_folder_gives_nothing)
{
    const TemporaryFolder folder;
    const Handle list = Texts();
    EXPECT_EQ(zDirectory_ListFiles(folder.Path().c_str(), list.Get()), zOK);
    EXPECT_EQ(zArrayList_Count(list.Get()), 0U);
}

TEST(Directory, Listing_refuses_what_it_cannot_do)
{
    const TemporaryFolder folder;
    MakeFile(folder.Path("file"));
    const Handle list = Texts();
    EXPECT_EQ(zDirectory_ListFiles(nullptr, list.Get()), zERROR_MISSING);
    EXPECT_EQ(zDirectory_ListFiles(folder.Path("none").c_str(), list.Get()), zERROR_MISSING);
    EXPECT_EQ(zDirectory_ListFiles(folder.Path("file").c_str(), list.Get()), zERROR_MISSING);
    EXPECT_EQ(zDirectory_ListFiles(folder.Path().c_str(), nullptr), zERROR_PARAMETER);
    zString text = nullptr;
    ASSERT_EQ(zString_Construct(&text, "no list", nullptr), zOK);
    const Handle noList(text);
    EXPECT_EQ(zDirectory_ListFiles(folder.Path().c_str(), noList.Get()), zERROR_PARAMETER);
    zArrayList numbers = nullptr;
    ASSERT_EQ(zArrayList_Construct(&numbers, zTypeOf(z32s), 0, nullptr), zOK);
    const Handle otherItems(numbers);
    EXPECT_EQ(zDirectory_ListFiles(folder.Path().c_str(), otherItems.Get()), zERROR_LIST_TYPE);
    EXPECT_EQ(zArrayList_Count(list.Get()), 0U);
}

TEST(Directory, Failed_listing_leaves_the_list_as_it_was)
{
    const TemporaryFolder folder;
    MakeFile(folder.Path("a"));
    MakeFile(folder.Path("b"));
    const CountingAlloc alloc;
    {
        const Handle list = Texts(alloc.Get());
        ASSERT_EQ(zDirectory_ListFiles(folder.Path().c_str(), list.Get()), zOK);
        // Each of two strings takes two blocks; the list has room.
        for (std::size_t request = 1; request <= 4; ++request)
        {
            alloc.FailAt(request);
            EXPECT_EQ(zDirectory_ListFiles(folder.Path().c_str(), list.Get()), zERROR_MEMORY);
            EXPECT_EQ(TextsIn(list), (std::vector<std::string>{"a", "b"}));
        }
        const std::size_t calls = WalkFaults(-77, [&] {
            const zStatus status = zDirectory_ListFiles(folder.Path().c_str(), list.Get());
            zFault_Disarm(); // the cleaning up is not to fail
            while (zArrayList_Count(list.Get()) > 2)
            {
                static_cast<void>(zArrayList_Remove(list.Get(), 2, nullptr));
            }
            EXPECT_EQ(TextsIn(list), (std::vector<std::string>{"a", "b"}));
            return status;
        });
        EXPECT_GE(calls, 9U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Directory, Listing_that_the_system_refuses_fails)
{
    const TemporaryFolder folder;
    const Handle list = Texts();
    const ResourceLimit noFurtherFile(RLIMIT_NOFILE, 0);
    EXPECT_EQ(zDirectory_ListFiles(folder.Path().c_str(), list.Get()), zERROR_IO);
}

TEST(Directory, Application_is_the_folder_of_the_running_program)
{
    std::array<char, 4096> out{};
    ASSERT_EQ(zDirectory_Application(out.data(), out.size()), zOK);
    const std::filesystem::path program = std::filesystem::canonical("/proc/self/exe");
    EXPECT_EQ(std::string(out.data()), program.parent_path().string());
    EXPECT_EQ(zDirectory_Application(nullptr, 100), zERROR_MISSING);
    std::array<char, 3> small{"??"};
    EXPECT_EQ(zDirectory_Application(small.data(), small.size()), zERROR_PARAMETER);
    EXPECT_STREQ(small.data(), "??");
}

TEST(Directory, Application_that_the_system_does_not_tell_fails_and_leaves_the_text)
{
    EXPECT_EXIT(AskForApplicationWithoutLinks(), testing::ExitedWithCode(0), "");
}

TEST(Directory, Failing_calls_come_through)
{
    const TemporaryFolder folder;
    const std::size_t calls = WalkFaults(-77, [&folder]() -> zStatus {
        std::array<char, 4096> out{};
        zTRY(zDirectory_Create(folder.Path("a").c_str()));
        return zDirectory_Application(out.data(), out.size());
    });
    EXPECT_EQ(calls, 3U);
}
