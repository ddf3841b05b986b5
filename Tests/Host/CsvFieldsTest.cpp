#include <Host/CsvFields.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace
{
using namespace Mu::Host;
using Texts = std::vector<std::string>;

Texts FieldsOf(std::string_view line, char separator)
{
    Texts texts;
    CsvFields fields(line, separator);
    for (std::string_view field; fields.Next(field);)
    {
        texts.emplace_back(field);
    }
    return texts;
}

TEST(CsvFieldsTest, Fields_stand_between_separators)
{
    EXPECT_EQ(FieldsOf("1;2;3", ';'), (Texts{"1", "2", "3"}));
    EXPECT_EQ(FieldsOf("1,,3", ','), (Texts{"1", "", "3"}));
    EXPECT_EQ(FieldsOf(",", ','), (Texts{"", ""}));
    EXPECT_EQ(FieldsOf("1\t\t", '\t'), (Texts{"1", "", ""}));
    EXPECT_EQ(FieldsOf("", ';'), (Texts{""}));
}

TEST(CsvFieldsTest, Blanks_and_quotes_around_fields_are_taken_off)
{
    EXPECT_EQ(FieldsOf("  1 ; \t2\t;\"3\";\" 4 \"", ';'), (Texts{"1", "2", "3", "4"}));
    EXPECT_EQ(FieldsOf("\";a b", ';'), (Texts{"\"", "a b"}));
}

TEST(CsvFieldsTest, Runs_of_blanks_are_one_separator)
{
    EXPECT_EQ(FieldsOf("1 2\t 3", ' '), (Texts{"1", "2", "3"}));
    EXPECT_EQ(FieldsOf("  1  2  ", ' '), (Texts{"1", "2"}));
    EXPECT_EQ(FieldsOf("  \t ", ' '), (Texts{}));
}

struct Case
{
    const char* name;
    const char* field;
    CsvKind kind;
    double number;
};

class Csv_field : public testing::TestWithParam<Case>
{
};

TEST_P(Csv_field, is_what_it_looks_like)
{
    DecimalMark mark = DecimalMark::Unknown;
    const CsvValue value = ReadCsvField(GetParam().field, mark);
    EXPECT_EQ(value.kind, GetParam().kind);
    EXPECT_EQ(value.number, GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(
    , Csv_field,
    testing::Values(Case{"whole", "12", CsvKind::Number, 12}, Case{"negative", "-0.5", CsvKind::Number, -0.5},
                    Case{"plus", "+7.25", CsvKind::Number, 7.25}, Case{"exponent", "1.5e-3", CsvKind::Number, 0.0015},
                    Case{"large_exponent", "2E+3", CsvKind::Number, 2000},
                    Case{"point_first", ".5", CsvKind::Number, 0.5}, Case{"point_last", "5.", CsvKind::Number, 5},
                    Case{"comma", "0,5", CsvKind::Number, 0.5}, Case{"comma_exponent", "-1,5e2", CsvKind::Number, -150},
                    Case{"too_small", "1e-999", CsvKind::Number, 0}, Case{"too_large", "1e999", CsvKind::TooLarge, 0},
                    Case{"too_large_comma", "1,5e999", CsvKind::TooLarge, 0}, Case{"empty", "", CsvKind::Empty, 0},
                    Case{"word", "abc", CsvKind::Text, 0}, Case{"number_and_word", "5mm", CsvKind::Text, 0},
                    Case{"date", "2023-04-25", CsvKind::Text, 0}, Case{"two_signs", "+-5", CsvKind::Text, 0},
                    Case{"sign", "-", CsvKind::Text, 0}, Case{"hexadecimal", "0x10", CsvKind::Text, 0},
                    Case{"comma_last", "5,", CsvKind::Mixed, 0}, Case{"thousands", "1,234.5", CsvKind::Mixed, 0},
                    Case{"two_commas", "1,2,3", CsvKind::Mixed, 0}, Case{"two_numbers", "1 2", CsvKind::Mixed, 0},
                    Case{"other_separator", "1;2", CsvKind::Mixed, 0}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(CsvFieldsTest, Numbers_that_are_not_finite_are_numbers)
{
    DecimalMark mark = DecimalMark::Unknown;
    for (const char* const field : {"nan", "NaN", "-nan", "inf", "-Infinity", "nan(ind)"})
    {
        const CsvValue value = ReadCsvField(field, mark);
        EXPECT_EQ(value.kind, CsvKind::Number) << field;
        EXPECT_FALSE(std::isfinite(value.number)) << field;
    }
}

TEST(CsvFieldsTest, First_decimal_mark_is_that_of_all)
{
    DecimalMark mark = DecimalMark::Unknown;
    EXPECT_EQ(ReadCsvField("12", mark).kind, CsvKind::Number);
    EXPECT_EQ(mark, DecimalMark::Unknown);
    EXPECT_EQ(ReadCsvField("1,5", mark).number, 1.5);
    EXPECT_EQ(mark, DecimalMark::Comma);
    EXPECT_EQ(ReadCsvField("1.5", mark).kind, CsvKind::Mixed);
    mark = DecimalMark::Point;
    EXPECT_EQ(ReadCsvField("1,5", mark).kind, CsvKind::Mixed);
}

TEST(CsvFieldsTest, Endless_numbers_are_none)
{
    DecimalMark mark = DecimalMark::Unknown;
    EXPECT_EQ(ReadCsvField(std::string(256, '1'), mark).kind, CsvKind::Number);
    EXPECT_EQ(ReadCsvField(std::string(257, '1'), mark).kind, CsvKind::Text);
    EXPECT_EQ(ReadCsvField("1," + std::string(255, '1'), mark).kind, CsvKind::Mixed);
}

TEST(CsvFieldsTest, Idle_lines_are_empty_blank_or_comments)
{
    for (const char* const line : {"", "  \t", "#", "  # 1 2 3"})
    {
        EXPECT_TRUE(IsIdleLine(line)) << line;
    }
    EXPECT_FALSE(IsIdleLine(" 1 # 2"));
}
} // namespace
