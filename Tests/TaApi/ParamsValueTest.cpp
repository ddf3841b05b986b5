#include "LogCapture.h"
#include "Raised.h"

#include <TaApi/Params.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace
{
using namespace Ta::Params;

using Number = Value<double>;
using Texts = std::vector<std::string>;

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

TEST(ParamsValue, Reads_back_what_was_set)
{
    Number number(1.5);
    EXPECT_EQ(number.Get(), 1.5);
    number.Set(2.5);
    const double converted = number;
    EXPECT_EQ(converted, 2.5);
}

struct LimitCase
{
    const char* key;
    std::function<double(Number&)> get;
    std::function<void(Number&, double)> set;
    std::function<void(Number&, double)> enable;
    double outside;
    double onTheLimit;
    bool isInclusive;
    const char* violation;
};

// All with the limit 10.
const LimitCase LIMITS[] = {
    {"minimum", &Number::GetMinimum, &Number::SetMinimum, &Number::EnableMinimum, 9, 10, true,
     "Width was set to be less than its minimum."},
    {"maximum", &Number::GetMaximum, &Number::SetMaximum, &Number::EnableMaximum, 11, 10, true,
     "Width was set to be greater than its maximum."},
    {"exclusiveMinimum", &Number::GetExclusiveMinimum, &Number::SetExclusiveMinimum, &Number::EnableExclusiveMinimum, 9,
     10, false, "Width was set to be less than or equal to its exclusive minimum."},
    {"exclusiveMaximum", &Number::GetExclusiveMaximum, &Number::SetExclusiveMaximum, &Number::EnableExclusiveMaximum,
     11, 10, false, "Width was set to be greater than or equal to its exclusive maximum."},
};

TEST(ParamsValue, Limit_must_be_enabled_before_it_is_read_or_set)
{
    for (const LimitCase& limit : LIMITS)
    {
        Number number;
        const std::string key(limit.key);
        EXPECT_EQ(Failure([&] { limit.get(number); }), "-997 Must enable '" + key + "' before using it.");
        EXPECT_EQ(Failure([&] { limit.set(number, 1); }), "-997 Must enable '" + key + "' before setting the value.");
        EXPECT_EQ(number.FindSchema(key), nullptr);
        limit.enable(number, 3);
        EXPECT_EQ(limit.get(number), 3.0);
        limit.set(number, 4);
        EXPECT_EQ(limit.get(number), 4.0);
        EXPECT_NE(number.FindSchema(key), nullptr);
    }
}

TEST(ParamsValue, Value_outside_a_limit_is_logged_raised_and_not_stored)
{
    for (const LimitCase& limit : LIMITS)
    {
        LogCapture log;
        Group group;
        Number number(10.5);
        group.Register("Width", number);
        limit.enable(number, 10);
        const auto failure = RaisedBy([&] { number.Set(limit.outside); });
        ASSERT_TRUE(failure) << limit.key;
        EXPECT_EQ(failure->status, -997);
        EXPECT_EQ(failure->message, limit.violation);
        EXPECT_EQ(log.Texts(), Texts{std::string("2 Params validation: ") + limit.violation});
        EXPECT_EQ(number.Get(), 10.5);
    }
}

TEST(ParamsValue, Value_on_a_limit_is_inside_an_inclusive_one_only)
{
    for (const LimitCase& limit : LIMITS)
    {
        LogCapture log;
        Number number;
        limit.enable(number, 10);
        EXPECT_EQ(RaisedBy([&] { number.Set(limit.onTheLimit); }).has_value(), !limit.isInclusive) << limit.key;
    }
}

TEST(ParamsValue, Not_a_number_lies_within_no_limit)
{
    for (const LimitCase& limit : LIMITS)
    {
        LogCapture log;
        Group group;
        Number number;
        group.Register("Width", number);
        limit.enable(number, 10);
        EXPECT_EQ(Failure([&] { number.Set(NOT_A_NUMBER); }), std::string("-997 ") + limit.violation);
    }
    Number free;
    EXPECT_NO_THROW(free.Set(NOT_A_NUMBER));
}

TEST(ParamsValue, Unnamed_node_appears_as_unnamed)
{
    LogCapture log;
    Number number;
    number.EnableMinimum(0);
    EXPECT_EQ(Failure([&] { number.Set(-1); }), "-997 <unnamed> was set to be less than its minimum.");
    EXPECT_EQ(log.Texts(), Texts{"2 Params validation: <unnamed> was set to be less than its minimum."});
}

TEST(ParamsValue, Set_of_a_read_only_value_is_logged_and_stored)
{
    LogCapture log;
    Number number;
    number.EnableReadOnly();
    number.Set(3);
    EXPECT_EQ(number.Get(), 3.0);
    EXPECT_EQ(log.Texts(), Texts{"1 Params validation: <unnamed> is read-only."});
    number.SetReadOnly(false);
    number.Set(4);
    EXPECT_EQ(log.lines.size(), 1U);
}

TEST(ParamsValue, Owner_sets_a_read_only_value_without_a_word)
{
    LogCapture log;
    Number number;
    number.EnableReadOnly();
    number.EnableMaximum(1);
    number.SetUnchecked(3);
    EXPECT_EQ(number.Get(), 3.0);
    EXPECT_TRUE(log.lines.empty());
}

TEST(ParamsValue, Read_only_is_logged_before_a_limit_raises)
{
    LogCapture log;
    Number number;
    number.EnableMinimum(0);
    number.EnableReadOnly();
    EXPECT_EQ(Failure([&] { number.Set(-1); }), "-997 <unnamed> was set to be less than its minimum.");
    EXPECT_EQ(log.Texts(), (Texts{"1 Params validation: <unnamed> is read-only.",
                                  "2 Params validation: <unnamed> was set to be less than its minimum."}));
    EXPECT_EQ(number.Get(), 0.0);
}

TEST(ParamsValue, Limits_are_checked_in_their_order_and_the_first_one_raises)
{
    LogCapture log;
    Number number;
    number.EnableExclusiveMaximum(0);
    number.EnableExclusiveMinimum(20);
    EXPECT_EQ(Failure([&] { number.Set(5); }),
              "-997 <unnamed> was set to be less than or equal to its exclusive minimum.");
    number.EnableMaximum(1);
    EXPECT_EQ(Failure([&] { number.Set(5); }), "-997 <unnamed> was set to be greater than its maximum.");
    number.EnableMinimum(9);
    EXPECT_EQ(Failure([&] { number.Set(5); }), "-997 <unnamed> was set to be less than its minimum.");
    EXPECT_EQ(log.lines.size(), 3U);
}

TEST(ParamsValue, Limits_hold_for_whole_numbers_too)
{
    LogCapture log;
    Value<std::size_t> count(17);
    count.EnableMinimum(17);
    count.EnableMaximum(64);
    count.Set(64);
    EXPECT_EQ(Failure([&] { count.Set(65); }), "-997 <unnamed> was set to be greater than its maximum.");
    EXPECT_EQ(Failure([&] { count.Set(16); }), "-997 <unnamed> was set to be less than its minimum.");
    EXPECT_EQ(count.Get(), 64U);
}

TEST(ParamsValue, Failing_log_does_not_hide_the_validation)
{
    const auto refuse = [](const Ta::Logging::LogRecord&, void*) -> zStatus { return -984; };
    const auto before = Ta::Logging::SetLogHandler({refuse, nullptr});
    Number number;
    number.EnableReadOnly();
    EXPECT_NO_THROW(number.Set(2));
    number.EnableMinimum(0);
    EXPECT_EQ(Failure([&] { number.Set(-1); }), "-997 <unnamed> was set to be less than its minimum.");
    Ta::Logging::SetLogHandler(before);
}

TEST(ParamsValue, Display_data_must_be_enabled_before_it_is_read_or_set)
{
    Number number;
    EXPECT_EQ(Failure([&] { static_cast<void>(number.GetUnits()); }), "-997 Must enable 'units' before using it.");
    EXPECT_EQ(Failure([&] { static_cast<void>(number.GetScale()); }), "-997 Must enable 'scale' before using it.");
    EXPECT_EQ(Failure([&] { static_cast<void>(number.GetFormat()); }), "-997 Must enable 'format' before using it.");
    EXPECT_EQ(Failure([&] { static_cast<void>(number.GetActual()); }), "-997 Must enable 'actual' before using it.");
    EXPECT_EQ(Failure([&] { number.SetUnits("mm"); }), "-997 Must enable 'units' before setting the value.");
    EXPECT_EQ(Failure([&] { number.SetScale(1); }), "-997 Must enable 'scale' before setting the value.");
    EXPECT_EQ(Failure([&] { number.SetFormat("%g"); }), "-997 Must enable 'format' before setting the value.");
    EXPECT_EQ(Failure([&] { number.SetActual(1); }), "-997 Must enable 'actual' before setting the value.");
}

TEST(ParamsValue, Display_data_reads_back)
{
    Number number;
    number.EnableUnits("mm");
    number.EnableScale();
    number.EnableFormat("%.3f");
    number.EnableActual(4.5);
    EXPECT_EQ(number.GetUnits(), "mm");
    EXPECT_EQ(number.GetScale(), 1.0);
    EXPECT_EQ(number.GetFormat(), "%.3f");
    EXPECT_EQ(number.GetActual(), 4.5);
    number.SetUnits("deg");
    number.SetScale(0.5);
    number.SetFormat("%g");
    number.SetActual(5.5);
    EXPECT_EQ(number.GetUnits(), "deg");
    EXPECT_EQ(number.GetScale(), 0.5);
    EXPECT_EQ(number.GetFormat(), "%g");
    EXPECT_EQ(number.GetActual(), 5.5);
}

TEST(ParamsValue, Function_in_a_failure_is_the_accessor)
{
    const Number number;
    const auto failure = RaisedBy([&] { static_cast<void>(number.GetMinimum()); });
    ASSERT_TRUE(failure);
    EXPECT_TRUE(failure->function == "Ta::Params::Value<T>::GetMinimum" ||
                failure->function == "Ta::Params::Value<double>::GetMinimum")
        << failure->function;
    EXPECT_EQ(failure->file, "Platform/TaApi/TaApi/ParamsValue");
}

TEST(ParamsValue, Schema_registered_from_outside_is_in_force)
{
    LogCapture log;
    Number number;
    Ta::Properties::Value<double> minimum(2.0);
    number.RegisterSchema("minimum", minimum);
    EXPECT_EQ(number.GetMinimum(), 2.0);
    EXPECT_EQ(RaisedBy([&] { number.Set(1); })->status, -997);
}

TEST(ParamsValue, Copied_schema_brings_its_limits)
{
    LogCapture log;
    Number source;
    source.EnableMaximum(5);
    source.EnableUnits("mm");
    Number target;
    target.CopySchema(source);
    EXPECT_EQ(target.GetUnits(), "mm");
    EXPECT_EQ(RaisedBy([&] { target.Set(6); })->status, -997);
}

TEST(ParamsValue, Every_type_takes_values)
{
    Value<bool> boolean;
    boolean.Set(true);
    EXPECT_TRUE(boolean.Get());
    Value<std::string> text;
    text.Set("name");
    EXPECT_EQ(text.Get(), "name");
    Value<std::vector<double>> numbers;
    numbers.Set({1, 2, 3});
    EXPECT_EQ(numbers.Get(), (std::vector<double>{1, 2, 3}));
    numbers.Set({});
    EXPECT_TRUE(numbers.Get().empty());
    Value<int> whole;
    whole.Set(-5);
    EXPECT_EQ(whole.Get(), -5);
}
} // namespace
