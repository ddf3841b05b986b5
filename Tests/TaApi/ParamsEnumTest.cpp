#include "LogCapture.h"
#include "Raised.h"

#include <TaApi/Params.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace
{
using namespace Ta::Params;

using Texts = std::vector<std::string>;

enum class MaskType : std::int32_t
{
    Circle = 0,
    Ellipse = 1,
    Rectangle = 3
};

TEST(ParamsEnum, Options_stand_in_the_order_in_which_they_were_added)
{
    Enum<MaskType> mask(MaskType::Rectangle);
    mask.AddOption(MaskType::Rectangle, "Rectangle");
    mask.AddOption(MaskType::Circle, "Circle");
    ASSERT_EQ(mask.OptionCount(), 2U);
    EXPECT_EQ(mask.OptionValueAt(0), MaskType::Rectangle);
    EXPECT_EQ(mask.OptionTextAt(0), "Rectangle");
    EXPECT_EQ(mask.OptionValueAt(1), MaskType::Circle);
    EXPECT_EQ(mask.OptionTextAt(1), "Circle");
    EXPECT_TRUE(mask.IsOption(MaskType::Circle));
    EXPECT_FALSE(mask.IsOption(MaskType::Ellipse));
    EXPECT_EQ(Failure([&] { static_cast<void>(mask.OptionTextAt(2)); }), "-997 <unnamed> has no option 2: it has 2.");
    EXPECT_EQ(Failure([&] { static_cast<void>(mask.OptionValueAt(2)); }), "-997 <unnamed> has no option 2: it has 2.");
}

TEST(ParamsEnum, Option_is_taken_and_another_value_is_logged_and_raised)
{
    LogCapture log;
    Group group;
    Enum<MaskType> mask(MaskType::Rectangle);
    group.Register("Region Type", "MaskType", mask);
    mask.AddOption(MaskType::Circle, "Circle");
    mask.Set(MaskType::Circle);
    EXPECT_EQ(mask.Get(), MaskType::Circle);
    EXPECT_EQ(Failure([&] { mask.Set(MaskType::Ellipse); }), "-997 MaskType was set to a value outside of the enum.");
    EXPECT_EQ(log.Texts(), Texts{"2 Params validation: MaskType was set to a value outside of the enum."});
    EXPECT_EQ(mask.Get(), MaskType::Circle);
}

TEST(ParamsEnum, Clearing_the_options_keeps_the_value)
{
    LogCapture log;
    Enum<int> file(2);
    file.AddOption(2, "two");
    file.ClearOptions();
    EXPECT_EQ(file.OptionCount(), 0U);
    EXPECT_EQ(file.Get(), 2);
    EXPECT_EQ(RaisedBy([&] { file.Set(2); })->status, -997);
}

TEST(ParamsEnum, Owner_sets_a_value_that_is_no_option)
{
    LogCapture log;
    Enum<std::string> file;
    file.SetUnchecked("Model-0001.bin");
    EXPECT_EQ(file.Get(), "Model-0001.bin");
    EXPECT_TRUE(log.lines.empty());
}

TEST(ParamsEnum, Texts_are_options_too)
{
    LogCapture log;
    Enum<std::string> file;
    file.AddOption("a.bin", "a.bin");
    file.Set("a.bin");
    EXPECT_EQ(file.Get(), "a.bin");
    EXPECT_EQ(RaisedBy([&] { file.Set("b.bin"); })->status, -997);
}

TEST(ParamsEnum, Read_only_and_limits_come_before_membership)
{
    LogCapture log;
    Enum<int> choice(1);
    choice.AddOption(1, "one");
    choice.EnableReadOnly();
    EXPECT_EQ(Failure([&] { choice.Set(2); }), "-997 <unnamed> was set to a value outside of the enum.");
    EXPECT_EQ(log.Texts(), (Texts{"1 Params validation: <unnamed> is read-only.",
                                  "2 Params validation: <unnamed> was set to a value outside of the enum."}));
    choice.EnableMaximum(1);
    EXPECT_EQ(Failure([&] { choice.Set(2); }), "-997 <unnamed> was set to be greater than its maximum.");
}

TEST(ParamsEnum, Copied_schema_brings_its_options)
{
    Enum<MaskType> source;
    source.AddOption(MaskType::Ellipse, "Ellipse");
    Enum<MaskType> target;
    target.AddOption(MaskType::Circle, "Circle");
    target.CopySchema(source);
    ASSERT_EQ(target.OptionCount(), 1U);
    EXPECT_EQ(target.OptionValueAt(0), MaskType::Ellipse);
    EXPECT_EQ(target.OptionTextAt(0), "Ellipse");
}

TEST(ParamsEnum, Unsigned_options_beyond_the_signed_range_come_back)
{
    Enum<std::size_t> choice;
    constexpr auto LARGEST = std::numeric_limits<std::size_t>::max();
    choice.AddOption(LARGEST, "all");
    EXPECT_EQ(choice.OptionValueAt(0), LARGEST);
    EXPECT_NO_THROW(choice.Set(LARGEST));
}
} // namespace
