#include <Support/FaultWalk.h>
#include <Support/TemporaryFolder.h>

#include <TaApi/Object.h>
#include <zApi/zFile.h>
#include <zApi/zSave6.h>
#include <zApi/zString.h>

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

using namespace Support;

namespace
{
Ta::Object<void*> Text(const char* characters)
{
    zString text = nullptr;
    EXPECT_EQ(zString_Construct(&text, characters, nullptr), zOK);
    return Ta::Object<void*>(text);
}

std::string BytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The bytes of a saved text.
std::string SavedText(const TemporaryFolder& folder)
{
    const std::string path = folder.Path("saved.zDat6");
    EXPECT_EQ(zSave6(Text("text").Get(), path.c_str()), zOK);
    return BytesOf(path);
}

std::string With(std::string bytes, std::size_t place, const std::string& others)
{
    return bytes.replace(place, others.size(), others);
}
} // namespace

TEST(Load6File, Each_kind_of_bad_file_has_its_status)
{
    const TemporaryFolder folder;
    const std::string good = SavedText(folder);
    constexpr std::size_t versionPlace = 8;
    const std::size_t typePlace = good.find("zString");
    ASSERT_NE(typePlace, std::string::npos);
    const struct
    {
        const char* name;
        std::string bytes;
        zStatus status;
    } cases[] = {
        {"no bytes", "", zERROR_END},
        {"cut off", good.substr(0, good.size() - 1), zERROR_END},
        {"another kind of file", With(good, 0, "P"), zERROR_FORMAT},
        {"another character", With(good, good.find("text"), "n"), zERROR_FORMAT},
        {"another version", With(good, versionPlace, "\2"), zERROR_VERSION},
        {"an unknown type", With(good, typePlace, "zStrung"), zERROR_INTERFACE},
    };
    for (const auto& [name, bytes, status] : cases)
    {
        SCOPED_TRACE(name);
        const std::string path = folder.Path("bad.zDat6");
        ASSERT_EQ(zFile_Save(path.c_str(), bytes.data(), bytes.size()), zOK);
        const CountingAlloc alloc;
        zObject object = nullptr;
        EXPECT_EQ(zLoad6(&object, path.c_str(), alloc.Get()), status);
        EXPECT_EQ(object, nullptr);
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
    }
}

TEST(Load6File, Folder_is_refused_by_the_system)
{
    const TemporaryFolder folder;
    zObject object = nullptr;
    EXPECT_EQ(zLoad6(&object, folder.Path().c_str(), nullptr), zERROR_IO);
    EXPECT_EQ(object, nullptr);
}

TEST(Load6File, Failing_requests_leave_nothing_behind)
{
    const TemporaryFolder folder;
    SavedText(folder);
    // The string and its characters.
    EXPECT_EQ(WalkAllocations([path = folder.Path("saved.zDat6")](zAlloc alloc) {
                  zObject object = nullptr;
                  const zStatus status = zLoad6(&object, path.c_str(), alloc);
                  EXPECT_EQ(object != nullptr, status == zOK);
                  static_cast<void>(xzObject_DestroyImpl(object));
                  return status;
              }),
              2U);
}

TEST(Save6File, Without_memory_fails_and_leaves_no_part_of_a_file)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("saved.zDat6");
    const Ta::Object<void*> text = Text("text");
    std::size_t requests = 0;
    WalkFaults(
        zERROR_MEMORY, [&] { return zSave6(text.Get(), path.c_str()); },
        [&](const std::string& operation, zStatus status) {
            if (operation == "zAlloc_Get")
            {
                ++requests;
                EXPECT_EQ(status, zERROR_MEMORY);
                EXPECT_FALSE(zFile_Exists(path.c_str()));
            }
        });
    EXPECT_GE(requests, 1U);
}
