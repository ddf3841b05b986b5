#include <Host/Pictures/PictureFiles.h>

#include "../HostTestFiles.h"

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

const JobPlace place{"command line", "--picture"};

std::vector<ScanSetup> Scans(const std::vector<std::string>& files)
{
    std::vector<ScanSetup> scans;
    for (const std::string& file : files)
    {
        scans.push_back({file, {}, {}});
    }
    return scans;
}

TEST(Picture_format, is_that_of_the_ending)
{
    EXPECT_EQ(PictureFormatOf("a/b.png", place), PictureFormat::Png);
    EXPECT_EQ(PictureFormatOf("b.c.SVG", place), PictureFormat::Svg);
    EXPECT_EQ(PictureFormatOf("x.Pdf", place), PictureFormat::Pdf);
}

TEST(Picture_format, of_other_endings_is_an_error_that_names_the_three)
{
    for (const char* const file : {"out.jpg", "out", ".png", "out.png.gz", "png"})
    {
        const std::string error = ErrorOf([&] { return PictureFormatOf(file, place); });
        EXPECT_TRUE(Contains(error, "command line: --picture: ")) << file;
        EXPECT_TRUE(Contains(error, "ends in .png, .svg or .pdf")) << file;
    }
}

TEST(Picture_format, of_the_terminal_is_an_error)
{
    EXPECT_TRUE(Contains(ErrorOf([] { return PictureFormatOf("-", place); }), "a picture cannot go to the terminal"));
}

TEST(Picture_files, of_one_scan_are_the_file_itself)
{
    EXPECT_EQ(PictureFiles("out/a.png", Scans({"x/plate.tif"}), place),
              std::vector<std::filesystem::path>{"out/a.png"});
}

TEST(Picture_files, of_several_scans_have_number_and_name)
{
    EXPECT_EQ(
        PictureFiles("out/a.b.png", Scans({"x/plate.tif", "plate.tif", "<ä b>.x3p"}), place),
        (std::vector<std::filesystem::path>{"out/a.b-1-plate.png", "out/a.b-2-plate.png", "out/a.b-3-____b_.png"}));
}

TEST(Picture_files, are_numbered_so_that_they_sort)
{
    const auto files = PictureFiles("a.svg", Scans(std::vector<std::string>(12, "s.tif")), place);
    EXPECT_EQ(files.front(), "a-01-s.svg");
    EXPECT_EQ(files.back(), "a-12-s.svg");
}

TEST(Picture_files, have_names_of_bounded_length)
{
    const auto files = PictureFiles("a.svg", Scans({std::string(300, 'x'), "b"}), place);
    EXPECT_EQ(files[0], "a-1-" + std::string(60, 'x') + ".svg");
}

TEST(Picture_files, are_refused_where_there_are_too_many)
{
    EXPECT_EQ(PictureFiles("a.svg", Scans(std::vector<std::string>(1'000, "s")), place).size(), 1'000U);
    EXPECT_TRUE(
        Contains(ErrorOf([] { return PictureFiles("a.svg", Scans(std::vector<std::string>(1'001, "s")), place); }),
                 "there are 1001 scans, and a run draws at most 1000 pictures"));
}
} // namespace
