#include <Host/TextTable.h>

#include <gtest/gtest.h>

namespace
{
using namespace Mu::Host;

const Column left{"name", Align::Left, Fit::Fixed};
const Column right{"value", Align::Right, Fit::Fixed};

TEST(LayOut, aligns_columns_under_their_titles)
{
    EXPECT_EQ(LayOut({left, right}, {{"a", "1.25"}, {"abcdef", "10"}}, 80), "name    value\n"
                                                                            "a        1.25\n"
                                                                            "abcdef     10\n");
}

TEST(LayOut, leaves_out_columns_that_are_empty_in_every_row)
{
    EXPECT_EQ(LayOut({left, {"units", Align::Left, Fit::Fixed}, right}, {{"a", "", "1"}}, 80), "name  value\n"
                                                                                               "a         1\n");
}

TEST(LayOut, has_no_title_line_without_titles)
{
    EXPECT_EQ(LayOut({Column{}, Column{}}, {{"a", "b"}}, 80), "a  b\n");
}

TEST(LayOut, gives_nothing_without_rows)
{
    EXPECT_EQ(LayOut({left, right}, {}, 80), "");
}

TEST(LayOut, shortens_the_widest_column_that_may_be_until_the_table_fits)
{
    const Column shortened{"long", Align::Left, Fit::Shortened};
    const std::string text = LayOut({shortened, left, right}, {{std::string(30, 'a'), std::string(12, 'b'), "1"}}, 40);
    EXPECT_EQ(text, "long                 name          value\n"
                    "aaaaaaaaaaaaaaaaaa\xE2\x80\xA6  bbbbbbbbbbbb      1\n");
}

TEST(LayOut, stays_wider_rather_than_hide_what_is_always_shown)
{
    const std::string text =
        LayOut({{"x", Align::Left, Fit::Shortened}, left}, {{std::string(30, 'a'), std::string(30, 'b')}}, 20);
    EXPECT_EQ(text, "x         name\naaaaaaa\xE2\x80\xA6  bbbbbbbbbbbbbbbbbbbbbbbbbbbbbb\n");
}

struct WidthCase
{
    const char* name;
    const char* text;
    std::size_t width;
};

class Display_width : public testing::TestWithParam<WidthCase>
{
};

TEST_P(Display_width, counts_columns_of_the_terminal)
{
    EXPECT_EQ(DisplayWidth(GetParam().text), GetParam().width);
}

INSTANTIATE_TEST_SUITE_P(, Display_width,
                         testing::Values(WidthCase{"ascii", "abc", 3}, WidthCase{"two_bytes", "\xC2\xB5m", 2},
                                         WidthCase{"combining", "e\xCC\x81", 1},
                                         WidthCase{"wide", "\xE8\xA1\xA8\xE9\x9D\xA2", 4},
                                         WidthCase{"four_bytes", "\xF0\x9F\x98\x80", 2}, WidthCase{"empty", "", 0},
                                         WidthCase{"no_utf_8", "\xFF\xC3", 2}),
                         [](const auto& test) { return std::string(test.param.name); });

struct TerminalCase
{
    const char* name;
    const char* text;
    const char* shown;
};

class Terminal_text : public testing::TestWithParam<TerminalCase>
{
};

TEST_P(Terminal_text, holds_nothing_that_steers_a_terminal)
{
    EXPECT_EQ(TerminalText(GetParam().text), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    , Terminal_text,
    testing::Values(TerminalCase{"plain", "a \xC2\xB5m", "a \xC2\xB5m"}, TerminalCase{"escape", "\x1B[2J", "?[2J"},
                    TerminalCase{"line_end", "a\nb", "a?b"}, TerminalCase{"c1_control", "\xC2\x9B", "?"},
                    TerminalCase{"right_to_left_override", "\xE2\x80\xAE", "?"},
                    TerminalCase{"bad_byte", "a\xFFz", "a\xEF\xBF\xBDz"},
                    TerminalCase{"cut_character", "a\xE2\x82", "a\xEF\xBF\xBD\xEF\xBF\xBD"},
                    TerminalCase{"too_long_form", "\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
                    TerminalCase{"surrogate", "\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Shortened, cuts_whole_characters_and_counts_their_columns)
{
    EXPECT_EQ(Shortened("abc", 3), "abc");
    EXPECT_EQ(Shortened("abcd", 3), "ab\xE2\x80\xA6");
    EXPECT_EQ(Shortened("\xE8\xA1\xA8\xE9\x9D\xA2", 3), "\xE8\xA1\xA8\xE2\x80\xA6");
    EXPECT_EQ(Shortened("abc", 0), "");
}
} // namespace
