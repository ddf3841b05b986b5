#include "Raised.h"

#include <TaApi/Params.h>

#include <gtest/gtest.h>

namespace
{
using namespace Ta::Params;

TEST(ParamsBase, Parameter_is_in_use_as_long_as_used_was_not_enabled)
{
    const Value<double> value;
    EXPECT_TRUE(value.GetUsed());
    EXPECT_FALSE(value.IsUsedEnabled());
    EXPECT_EQ(value.FindSchema("used"), nullptr);
}

TEST(ParamsBase, Used_starts_true_and_enabling_again_keeps_it)
{
    Value<double> value;
    value.EnableUsed();
    EXPECT_TRUE(value.GetUsed());
    ASSERT_NE(value.FindSchema("used"), nullptr);
    value.SetUsed(false);
    value.EnableUsed();
    EXPECT_FALSE(value.GetUsed());
}

TEST(ParamsBase, Setting_used_enables_it)
{
    Group group;
    group.SetUsed(false);
    EXPECT_TRUE(group.IsUsedEnabled());
    EXPECT_FALSE(group.GetUsed());
}

TEST(ParamsBase, Used_and_visibility_exclude_each_other)
{
    Group group;
    group.EnableVisibility();
    for (const auto& failure : {RaisedBy([&] { group.EnableUsed(); }), RaisedBy([&] { group.SetUsed(true); })})
    {
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->status, -997);
        EXPECT_EQ(failure->message, "Visibility is already enabled, cannot enable used.");
        EXPECT_EQ(failure->function, "Ta::Params::ParamsBase::EnableUsed");
        EXPECT_EQ(failure->file, "Platform/TaApi/TaApi/ParamsBase");
    }

    Group used;
    used.EnableUsed();
    const auto failure = RaisedBy([&] { used.EnableVisibility(); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->status, -997);
    EXPECT_EQ(failure->message, "Used is already enabled, cannot enable visibility.");
    EXPECT_EQ(failure->function, "Ta::Params::StructBase::EnableVisibility");
}

TEST(ParamsBase, Visibility_of_a_value_excludes_used_too)
{
    Value<double> value;
    value.EnableVisibility();
    EXPECT_EQ(Failure([&] { value.EnableUsed(); }), "-997 Visibility is already enabled, cannot enable used.");
    Value<double> used;
    used.EnableUsed();
    EXPECT_EQ(Failure([&] { used.EnableVisibility(); }), "-997 Used is already enabled, cannot enable visibility.");
}

TEST(ParamsBase, Visibility_holds_its_types_until_they_are_cleared)
{
    Group group;
    EXPECT_FALSE(group.IsVisibilityEnabled());
    group.EnableVisibility();
    group.SetVisibility({"Basic", "Advanced"});
    group.EnableVisibility();
    EXPECT_EQ(group.GetVisibility(), (std::vector<std::string>{"Basic", "Advanced"}));
    group.ClearVisibility();
    EXPECT_TRUE(group.IsVisibilityEnabled());
    EXPECT_TRUE(group.GetVisibility().empty());
}

TEST(ParamsBase, Visibility_that_was_not_enabled_cannot_be_read_set_or_cleared)
{
    Group group;
    const auto failure = RaisedBy([&] { group.ClearVisibility(); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->status, -997);
    EXPECT_EQ(failure->message, "Visibility not enabled, cannot clear visibility types");
    EXPECT_EQ(failure->function, "Ta::Params::ParamsBase::ClearVisibility");
    EXPECT_EQ(Failure([&] { static_cast<void>(group.GetVisibility()); }),
              "-997 Must enable 'visibility' before using it.");
    EXPECT_EQ(Failure([&] { group.SetVisibility({}); }), "-997 Must enable 'visibility' before setting the value.");
}

TEST(ParamsBase, Read_only_is_false_until_enabled)
{
    Value<double> value;
    EXPECT_FALSE(value.GetReadOnly());
    EXPECT_EQ(Failure([&] { value.SetReadOnly(true); }), "-997 Must enable 'readOnly' before setting the value.");
    value.EnableReadOnly();
    EXPECT_TRUE(value.GetReadOnly());
    value.SetReadOnly(false);
    EXPECT_FALSE(value.GetReadOnly());
}

TEST(ParamsBase, Description_and_extended_type_must_be_enabled_first)
{
    Value<double> value;
    EXPECT_EQ(Failure([&] { static_cast<void>(value.GetDescription()); }),
              "-997 Must enable 'description' before using it.");
    EXPECT_EQ(Failure([&] { value.SetDescription("x"); }), "-997 Must enable 'description' before setting the value.");
    EXPECT_EQ(Failure([&] { static_cast<void>(value.GetExtendedType()); }),
              "-997 Must enable 'extendedType' before using it.");
    EXPECT_EQ(Failure([&] { value.SetExtendedType("x"); }),
              "-997 Must enable 'extendedType' before setting the value.");
    value.EnableDescription("first");
    value.EnableExtendedType("Transform3d");
    EXPECT_EQ(value.GetDescription(), "first");
    EXPECT_EQ(value.GetExtendedType(), "Transform3d");
    value.SetDescription("second");
    EXPECT_EQ(value.GetDescription(), "second");
}

TEST(ParamsBase, Title_is_empty_until_set)
{
    Value<double> value;
    EXPECT_EQ(value.GetTitle(), "");
    value.SetTitle("Width (X)");
    EXPECT_EQ(value.GetTitle(), "Width (X)");
}
} // namespace
