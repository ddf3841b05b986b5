#include "Raised.h"

#include <TaApi/Properties.h>

#include <gtest/gtest.h>

namespace
{
using namespace Ta::Properties;

enum class Mode : std::uint8_t
{
    First,
    Second
};

TEST(PropertiesValue, New_value_is_the_zero_of_its_type_or_the_first_one_given)
{
    EXPECT_EQ(Value<double>().Get(), 0.0);
    EXPECT_EQ(Value<bool>().Get(), false);
    EXPECT_EQ(Value<std::string>().Get(), "");
    EXPECT_EQ(Value<int>(7).Get(), 7);
    EXPECT_EQ(Value<Mode>(Mode::Second).Get(), Mode::Second);
}

TEST(PropertiesValue, Plain_value_takes_everything)
{
    Value<double> value;
    value.Set(3.5);
    EXPECT_EQ(value.Get(), 3.5);
    value.SetUnchecked(4.5);
    EXPECT_EQ(value.Get(), 4.5);
}

TEST(PropertiesValue, Is_read_and_written_without_its_type)
{
    Value<Mode> value;
    Leaf& leaf = value;
    EXPECT_EQ(leaf.Kind(), DatumKind::Integer);
    leaf.Check(Datum(std::int64_t{1}));
    EXPECT_EQ(value.Get(), Mode::First);
    leaf.Write(Datum(std::int64_t{1}));
    EXPECT_EQ(value.Get(), Mode::Second);
    EXPECT_TRUE(Identical(leaf.Read(), Datum(std::int64_t{1})));
}

TEST(PropertiesValue, Wrong_kind_and_number_beyond_the_type_are_refused)
{
    Value<int> value(5);
    EXPECT_EQ(Failure([&] { value.Write(Datum(1.5)); }), "-997 <unnamed> takes an integer, not a number.");
    EXPECT_EQ(Failure([&] { value.Check(Datum(std::string("5"))); }), "-997 <unnamed> takes an integer, not a text.");
    EXPECT_EQ(Failure([&] { value.Write(Datum(std::int64_t{1} << 40)); }),
              "-997 <unnamed> was set to a value outside the range of its type.");
    EXPECT_EQ(value.Get(), 5);
}

TEST(PropertiesValue, Clone_is_a_plain_value_of_its_own)
{
    Value<std::string> value(std::string("mm"));
    const auto clone = value.Clone();
    value.Set("m");
    EXPECT_TRUE(Identical(clone->Read(), Datum(std::string("mm"))));
    EXPECT_EQ(clone->Parent(), nullptr);
}

TEST(PropertiesValue, Values_are_copied_between_equal_types_only)
{
    Value<double> target(1.0);
    target.CopyValues(Value<double>(2.0));
    EXPECT_EQ(target.Get(), 2.0);
    EXPECT_EQ(RaisedBy([&] { target.CopyValues(Value<int>(3)); })->status, -997);
    EXPECT_EQ(RaisedBy([&] { target.CopyValues(Structure()); })->status, -997);
    EXPECT_EQ(target.Get(), 2.0);
}
} // namespace
