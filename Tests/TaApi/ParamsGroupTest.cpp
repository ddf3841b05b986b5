#include "Raised.h"

#include <TaApi/Params.h>

#include <gtest/gtest.h>

namespace
{
using namespace Ta::Params;

TEST(ParamsGroup, Has_the_name_it_was_constructed_with)
{
    EXPECT_EQ(Group("Region").Name(), "Region");
    EXPECT_EQ(Group().Name(), "");
}

TEST(ParamsGroup, Registered_children_have_title_key_and_rising_sort_order)
{
    Group group;
    Value<bool> enable;
    Value<int> count;
    group.Register("Enable", "EnableMask", enable);
    group.Register("Number of Regions", "NumberOfRegions", count);
    EXPECT_EQ(enable.GetTitle(), "Enable");
    EXPECT_EQ(enable.Name(), "EnableMask");
    EXPECT_EQ(group.GetSortOrder(enable), 100U);
    EXPECT_EQ(group.GetSortOrder(count), 200U);
    EXPECT_EQ(group.Find("NumberOfRegions"), &count);
}

TEST(ParamsGroup, Empty_title_takes_the_key)
{
    Group group;
    Value<bool> first;
    Value<bool> second;
    group.Register("", "EnableMask", first);
    group.Register("Other", second);
    EXPECT_EQ(first.GetTitle(), "EnableMask");
    EXPECT_EQ(second.GetTitle(), "Other");
}

TEST(ParamsGroup, Sort_order_follows_the_highest_one_with_the_step_given)
{
    Group group;
    Value<int> first;
    Value<int> second;
    Value<int> third;
    group.RegisterAt("A", "a", first, 250);
    group.RegisterAt("B", "b", second, 7);
    group.Register("C", "c", third, 10);
    EXPECT_EQ(group.GetSortOrder(third), 260U);
}

TEST(ParamsGroup, Relative_registration_counts_from_the_one_before)
{
    Group group;
    Group first;
    Group second;
    Group third;
    group.Register("Region 1", first);
    group.RegisterRelative("Region 2", "Region 2", second, first, 1);
    group.RegisterRelative("Region 3", "Region 3", third, second);
    EXPECT_EQ(group.GetSortOrder(first), 100U);
    EXPECT_EQ(group.GetSortOrder(second), 101U);
    EXPECT_EQ(group.GetSortOrder(third), 102U);
}

TEST(ParamsGroup, Relative_registration_at_a_taken_sort_order_is_refused)
{
    Group group;
    Value<int> first;
    Value<int> second;
    Value<int> third;
    group.Register("first", first);
    group.RegisterRelative("", "second", second, first, 1);
    const auto failure = RaisedBy([&] { group.RegisterRelative("Third", "third", third, first, 1); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->status, -987);
    EXPECT_EQ(failure->message, "SortOrder 101 already registered for second. Failed to register third.");
    EXPECT_EQ(failure->function, "Ta::Params::Group::RegisterRelative");
    EXPECT_EQ(group.Count(), 2U);
    EXPECT_EQ(third.Parent(), nullptr);
}

TEST(ParamsGroup, Relative_registration_needs_one_before_in_the_same_group)
{
    Group group;
    Group other;
    Value<int> elsewhere;
    Value<int> child;
    other.Register("elsewhere", elsewhere);
    EXPECT_EQ(Failure([&] { group.RegisterRelative("", "child", child, elsewhere); }),
              "-997 elsewhere is not registered with a sort order in <unnamed>.");
}

TEST(ParamsGroup, Free_sort_order_of_a_deregistered_child_can_be_taken_again)
{
    Group group;
    Value<int> first;
    Value<int> second;
    Value<int> third;
    group.Register("first", first);
    group.RegisterRelative("", "second", second, first);
    group.Deregister("second");
    EXPECT_NO_THROW(group.RegisterRelative("", "third", third, first));
    EXPECT_EQ(group.GetSortOrder(third), 101U);
}

TEST(ParamsGroup, Chosen_sort_orders_may_meet_and_may_be_moved)
{
    Group group;
    Value<double> x;
    Value<int> maskType;
    group.RegisterAt("X", "x", x, 0);
    group.RegisterAt("Region Type", "MaskType", maskType, 0);
    EXPECT_EQ(group.GetSortOrder(maskType), 0U);
    group.SetSortOrder(x, 9);
    EXPECT_EQ(group.GetSortOrder(x), 9U);
    Value<int> stranger;
    EXPECT_EQ(RaisedBy([&] { group.SetSortOrder(stranger, 1); })->status, -997);
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(group.GetSortOrder(stranger)); })->status, -997);
}

TEST(ParamsGroup, Failed_registration_leaves_the_child_alone)
{
    Group group;
    Value<int> first;
    Value<int> second;
    group.Register("key", first);
    EXPECT_EQ(RaisedBy([&] { group.Register("Title", "key", second); })->status, -987);
    EXPECT_EQ(second.GetTitle(), "");
    EXPECT_EQ(second.Name(), "");
}

TEST(ParamsGroup, Is_found_among_children_by_dynamic_cast)
{
    Group root;
    Group region;
    root.Register("Region 1", region);
    EXPECT_EQ(dynamic_cast<Group*>(&root.At(0)), &region);
    EXPECT_EQ(dynamic_cast<Value<double>*>(&root.At(0)), nullptr);
}

TEST(ParamsGroup, Values_are_copied_by_key)
{
    Group source;
    Value<double> sourceWidth(7);
    source.Register("Width", sourceWidth);
    Group target;
    Value<double> targetWidth(5);
    target.Register("Width", targetWidth);
    target.CopyValues(source);
    EXPECT_EQ(targetWidth.Get(), 7.0);
}
} // namespace
