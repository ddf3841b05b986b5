#include <Host/TextLines.h>

#include "ScanTestFiles.h"

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Texts = std::vector<std::string>;

class TextLinesTest : public testing::Test
{
protected:
    Texts LinesOf(const std::string& bytes)
    {
        WriteBytes(file, bytes);
        TextLines lines(file);
        Texts texts;
        while (const auto line = lines.Next())
        {
            texts.emplace_back(*line);
            EXPECT_EQ(lines.Number(), texts.size());
        }
        EXPECT_EQ(lines.Next(), std::nullopt);
        return texts;
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "text.txt";
};

TEST_F(TextLinesTest, Lines_come_without_their_ends)
{
    EXPECT_EQ(LinesOf("a\nb\r\n\n\rc\r"), (Texts{"a", "b", "", "\rc"}));
    EXPECT_EQ(LinesOf("\n"), (Texts{""}));
    EXPECT_EQ(LinesOf(""), (Texts{}));
}

TEST_F(TextLinesTest, Byte_order_mark_is_taken_off_the_first_line_only)
{
    EXPECT_EQ(LinesOf("\xef\xbb\xbf"
                      "a\n\xef\xbb\xbf"
                      "b"),
              (Texts{"a", "\xef\xbb\xbf"
                          "b"}));
}

TEST_F(TextLinesTest, Lines_over_the_borders_of_blocks_are_whole)
{
    // Lines of 0 to 2000 characters make 2 MB; one of 700,000 needs a larger block.
    Texts expected;
    std::string bytes;
    for (std::size_t length = 0; length <= 2000; ++length)
    {
        expected.emplace_back(length, static_cast<char>('a' + length % 26));
        bytes += expected.back() + "\n";
    }
    expected.emplace_back(700000, 'z');
    bytes += expected.back();
    EXPECT_EQ(LinesOf(bytes), expected);
}

TEST_F(TextLinesTest, File_without_line_ends_is_refused_by_line)
{
    WriteBytes(file, "1\n2");
    std::filesystem::resize_file(file, TextLines::longestLine + 1000000);
    TextLines lines(file);
    EXPECT_EQ(lines.Next(), "1");
    EXPECT_TRUE(Contains(ErrorOf([&] { return lines.Next(); }), "text.txt: line 2: it is longer than 67108864 bytes"));
}

TEST_F(TextLinesTest, Missing_file_is_refused_by_name)
{
    EXPECT_TRUE(Contains(ErrorOf([&] { return TextLines(folder / "none.txt").Number(); }), "there is no such file"));
}
} // namespace
