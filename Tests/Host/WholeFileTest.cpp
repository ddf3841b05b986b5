#include <Host/WholeFile.h>

#include "ScanTestFiles.h"

#include <sys/stat.h>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
namespace fs = std::filesystem;

class WholeFile : public testing::Test
{
protected:
    std::size_t FileCount() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder / ""), fs::directory_iterator()));
    }

    TemporaryFolder folder;
};

TEST_F(WholeFile, is_written_and_nothing_else_is_left)
{
    WriteWholeFile(folder / "a.csv", "first");
    EXPECT_EQ(ReadBytes(folder / "a.csv"), "first");
    EXPECT_EQ(FileCount(), 1U);
}

TEST_F(WholeFile, replaces_what_stood_there)
{
    WriteBytes(folder / "a.csv", "something longer");
    WriteWholeFile(folder / "a.csv", "new");
    EXPECT_EQ(ReadBytes(folder / "a.csv"), "new");
}

TEST_F(WholeFile, has_the_rights_of_any_new_file)
{
    WriteBytes(folder / "plain", "");
    WriteWholeFile(folder / "a.csv", "first");
    EXPECT_EQ(fs::status(folder / "a.csv").permissions(), fs::status(folder / "plain").permissions());
}

TEST_F(WholeFile, goes_where_a_link_points)
{
    WriteBytes(folder / "target", "old");
    fs::create_symlink(folder / "target", folder / "link");
    WriteWholeFile(folder / "link", "new");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(ReadBytes(folder / "target"), "new");
}

TEST_F(WholeFile, is_refused_where_there_is_no_folder)
{
    const auto file = folder / "none" / "a.csv";
    const std::string message = ErrorOf([&] {
        WriteWholeFile(file, "first");
        return 0;
    });
    EXPECT_TRUE(Contains(message, file.string() + ": no file can be made beside it (No such file or directory)"));
    EXPECT_TRUE(Contains(message, "Check the folder"));
}

TEST_F(WholeFile, keeps_the_rights_of_the_file_whose_place_it_takes)
{
    const auto rights = [this] {
        struct stat found
        {
        };
        EXPECT_EQ(stat((folder / "a.csv").c_str(), &found), 0);
        return found.st_mode & 0777U;
    };
    WriteBytes(folder / "a.csv", "old");
    ASSERT_EQ(chmod((folder / "a.csv").c_str(), 0600), 0);
    WriteWholeFile(folder / "a.csv", "new");
    EXPECT_EQ(rights(), 0600U);
}

TEST_F(WholeFile, does_not_take_the_place_of_a_folder_or_device)
{
    fs::create_directory(folder / "sub");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const char* const name : {"sub", "pipe"})
    {
        const std::string message = ErrorOf([&] {
            WriteWholeFile(folder / name, "first");
            return 0;
        });
        EXPECT_TRUE(Contains(message, "this is something other than a file")) << name;
    }
    EXPECT_EQ(FileCount(), 2U);
}
} // namespace
