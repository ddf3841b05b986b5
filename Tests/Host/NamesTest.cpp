#include <Host/Names.h>

#include <gtest/gtest.h>

namespace
{
using Mu::Host::KnownNames;

struct Case
{
    const char* name;
    std::string unknown;
    std::string meant; ///< empty: none is near enough
};

class Known_names : public testing::TestWithParam<Case>
{
};

TEST_P(Known_names, name_the_one_that_was_meant)
{
    const std::string list = "Known here: Minimum, Maximum, Mean";
    const std::string& meant = GetParam().meant;
    EXPECT_EQ(KnownNames(GetParam().unknown, {"Minimum", "Maximum", "Mean"}),
              meant.empty() ? list : "Did you mean \"" + meant + "\"? " + list);
}

INSTANTIATE_TEST_SUITE_P(, Known_names,
                         testing::Values(Case{"one_letter_off", "Maximun", "Maximum"},
                                         Case{"other_case", "MEAN", "Mean"},
                                         Case{"two_letters_swapped", "Minimmu", "Minimum"},
                                         Case{"letter_missing", "Man", "Mean"}, Case{"another_word", "Width", ""},
                                         Case{"nothing", "", ""}, Case{"very_long", std::string(100000, 'M'), ""}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(KnownNames, says_so_when_there_are_none)
{
    EXPECT_EQ(KnownNames("Width", {}), "Take it out: there are none here");
}

TEST(KnownNames, cuts_a_long_list_and_tells_its_length)
{
    const std::vector<std::string> names(21, "Tool");
    const std::string text = KnownNames("Width", names);
    EXPECT_TRUE(text.ends_with("Tool, ... (21 in all)")) << text;
    EXPECT_EQ(static_cast<int>(std::count(text.begin(), text.end(), ',')), 20);
}

TEST(KnownNames, shows_no_control_characters)
{
    EXPECT_EQ(KnownNames("x", {"a\x1B[2Jb"}), "Known here: a?[2Jb");
}
} // namespace
