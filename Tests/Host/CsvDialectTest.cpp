#include <Host/CsvDialect.h>

#include "ScanTestFiles.h"

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Columns = std::vector<std::size_t>;

std::optional<CsvDialect> DialectOf(const std::string& text)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "text.txt", text);
    return FindCsvDialect(folder / "text.txt");
}

struct Case
{
    const char* name;
    const char* text;
    char separator;
    std::size_t fields;
    Columns numbers;
    std::uint64_t firstLine;
};

class Csv_dialect : public testing::TestWithParam<Case>
{
};

TEST_P(Csv_dialect, is_found_by_the_lines)
{
    const auto dialect = DialectOf(GetParam().text);
    ASSERT_TRUE(dialect.has_value());
    EXPECT_EQ(dialect->separator, GetParam().separator);
    EXPECT_EQ(dialect->fieldCount, GetParam().fields);
    EXPECT_EQ(dialect->numberColumns, GetParam().numbers);
    EXPECT_EQ(dialect->firstLine, GetParam().firstLine);
}

INSTANTIATE_TEST_SUITE_P(
    , Csv_dialect,
    testing::Values(
        Case{"commas", "1,2\n3,4\n", ',', 2, {0, 1}, 1}, Case{"commas_and_blanks", "1, 2, 3\n", ',', 3, {0, 1, 2}, 1},
        Case{"semicolons", "1.5;2\n3;4\n", ';', 2, {0, 1}, 1},
        Case{"decimal_commas", "1,5;2,5\n3;4\n", ';', 2, {0, 1}, 1},
        Case{"tabs_with_decimal_commas", "1,5\t2,5\n", '\t', 2, {0, 1}, 1},
        Case{"tabs_with_empty_field", "1\t\t3\n1\t2\t3\n", '\t', 3, {0, 1, 2}, 1},
        Case{"tabs_and_blanks", "1 2\t3\n", ' ', 3, {0, 1, 2}, 1}, Case{"blanks", "  1   2\n3 4 \n", ' ', 2, {0, 1}, 1},
        Case{"blanks_with_decimal_commas", "0,5 1,5\n2,5 3,5\n", ' ', 2, {0, 1}, 1},
        Case{"padded_commas", "0.87 ,      ,Slice 2\n1.74,     ,Slice 2\n2.6  ,0.5  ,Slice 2\n", ',', 3, {0, 1}, 1},
        Case{"quoted", "\"x\",\"z\"\n\"1\",\"2\"\n", ',', 2, {0, 1}, 2},
        Case{"text_first", "P1;1,5;2\nP2;1;3\n", ';', 3, {1, 2}, 1},
        Case{"dates", "2023-04-25,10:20:30,1.5,2\n2023-04-26,10:20:31,1,3\n", ',', 4, {2, 3}, 1},
        Case{"head_with_numbers", "Points: 3\n3 1\n\nx y z\n1 2 3\n4 5 6\n7 8 9\n", ' ', 3, {0, 1, 2}, 5},
        Case{"comments", "# 1,2,3\n1;2\n# 4,5,6\n3;4\n", ';', 2, {0, 1}, 2},
        Case{"byte_order_mark",
             "\xef\xbb\xbf"
             "1;2\r\n",
             ';',
             2,
             {0, 1},
             1},
        Case{"no_end_of_line", "1;2", ';', 2, {0, 1}, 1}, Case{"not_a_number", "nan;1\n", ';', 2, {0, 1}, 1},
        Case{"one_number", "1", ';', 1, {0}, 1}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(CsvDialectTest, What_is_no_text_of_numbers_has_none)
{
    for (const std::string text :
         {"", "\n\n", "# 1 2 3\n", "solid part\nendsolid part\n", "a,b,c\nd,e,f\n", ",,\n,,\n", "1,2.5;3\n"})
    {
        EXPECT_FALSE(DialectOf(text).has_value()) << text;
    }
    EXPECT_FALSE(DialectOf(std::string("1 2\n\0", 5)).has_value());
    EXPECT_FALSE(DialectOf("\x1b[31m1 2\n").has_value());
    EXPECT_FALSE(DialectOf("\x7f\n1 2\n").has_value());
}

TEST(CsvDialectTest, Head_is_kept_with_the_names_of_columns)
{
    const auto dialect = DialectOf("Instrument 7\n\n x ; \"z in um\"\n1;2\n3;4\n");
    ASSERT_TRUE(dialect.has_value());
    EXPECT_EQ(dialect->headLines, (std::vector<std::string>{"Instrument 7", " x ; \"z in um\""}));
    EXPECT_EQ(dialect->headFields, (std::vector<std::string>{"x", "z in um"}));
    EXPECT_EQ(dialect->firstLine, 4u);
}

TEST(CsvDialectTest, Damaged_lines_before_the_data_are_no_headings)
{
    for (const char* const text :
         {"0;\xE2\x88\x92"
          "1\n1;2\n2;3\n",
          "0;-----\n1;2\n2;3\n", "0.0;1O.0\n1;2\n2;3\n", "1\xC2\xA0;5\n1;2\n2;3\n", "--- --- ---\n1 2 3\n4 5 6\n"})
    {
        EXPECT_TRUE(Contains(ErrorOf([&] { return DialectOf(text); }), "text.txt: line 1: ")) << text;
    }
    for (const char* const text : {"x;z\n1;2\n2;3\n", "points;4012\n1;2\n2;3\n", ";;\n1;2;3\n2;3;4\n"})
    {
        EXPECT_EQ(DialectOf(text)->firstLine, 2U) << text;
    }
}

TEST(CsvDialectTest, Decimal_mark_is_known_once_it_is_seen)
{
    EXPECT_EQ(DialectOf("1;2\n")->mark, DecimalMark::Unknown);
    EXPECT_EQ(DialectOf("1;2\n1,5;2\n")->mark, DecimalMark::Comma);
    EXPECT_EQ(DialectOf("1;2\n1.5;2\n")->mark, DecimalMark::Point);
    EXPECT_EQ(DialectOf("1,2\n")->mark, DecimalMark::Point);
}
} // namespace
