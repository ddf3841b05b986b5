#include "Raised.h"

#include <TaApi/Properties.h>

#include <gtest/gtest.h>

#include <memory>

namespace
{
using namespace Ta::Properties;

TEST(Node, New_node_has_no_name_no_parent_and_no_schema)
{
    const Value<double> node;
    EXPECT_EQ(node.Name(), "");
    EXPECT_STREQ(node.DisplayName(), "<unnamed>");
    EXPECT_EQ(node.Parent(), nullptr);
    EXPECT_EQ(node.SchemaCount(), 0U);
    EXPECT_EQ(node.FindSchema("units"), nullptr);
    EXPECT_EQ(node.Path(), "");
    EXPECT_FALSE(node.IsWriteOnly());
}

TEST(Node, Path_names_the_keys_below_the_root)
{
    Structure root("Tool");
    Structure region;
    Value<double> width;
    root.Register("Region", region);
    region.Register("Width", width);
    EXPECT_EQ(width.Path(), "Region/Width");
    EXPECT_EQ(region.Path(), "Region");
    EXPECT_EQ(root.Path(), "");
}

TEST(Node, Schema_entries_are_found_by_name_and_place)
{
    Value<double> node;
    Value<std::string> units(std::string("mm"));
    Value<double> scale(2.0);
    node.RegisterSchema("units", units);
    node.RegisterSchema("scale", scale);
    ASSERT_EQ(node.SchemaCount(), 2U);
    EXPECT_EQ(&node.SchemaAt(0), &units);
    EXPECT_EQ(&node.SchemaAt(1), &scale);
    EXPECT_EQ(node.FindSchema("scale"), &scale);
    EXPECT_EQ(units.Name(), "units");
    EXPECT_EQ(Failure([&node] { static_cast<void>(node.SchemaAt(2)); }),
              "-997 <unnamed> has no schema entry 2: it has 2.");
}

TEST(Node, Name_of_a_schema_entry_is_taken_once)
{
    Value<double> node;
    Value<std::string> units;
    Value<std::string> other(std::string("m"));
    node.RegisterSchema("units", units);
    EXPECT_EQ(RaisedBy([&] { node.RegisterSchema("units", other); })->status, -987);
    EXPECT_EQ(RaisedBy([&] { node.RegisterSchema("units", other, false); })->status, -987);
    EXPECT_EQ(RaisedBy([&] { node.RegisterSchema("second", units); })->status, -987);
    EXPECT_EQ(RaisedBy([&] { node.AdoptSchema("units", std::make_unique<Value<double>>()); })->status, -987);
    EXPECT_EQ(RaisedBy([&] { node.AdoptSchema("empty", nullptr); })->status, -999);
    EXPECT_EQ(node.FindSchema("units"), &units);
}

TEST(Node, Registering_with_replace_makes_room)
{
    Value<double> node;
    Value<std::string> units;
    Value<std::string> other;
    node.RegisterSchema("units", units);
    node.RegisterSchema("units", other, true);
    EXPECT_EQ(node.FindSchema("units"), &other);
    EXPECT_EQ(node.SchemaCount(), 1U);
    EXPECT_NO_THROW(node.RegisterSchema("elsewhere", units));
}

TEST(Node, Refused_replacement_leaves_the_entry_in_place)
{
    Value<double> node;
    Value<std::string> units;
    Value<std::string> taken;
    node.RegisterSchema("units", units);
    node.RegisterSchema("format", taken);
    EXPECT_EQ(RaisedBy([&] { node.RegisterSchema("units", taken, true); })->status, -987);
    EXPECT_EQ(node.FindSchema("units"), &units);
}

TEST(Node, Deregistered_entry_is_gone_and_free_again)
{
    Value<double> node;
    Value<std::string> units;
    node.RegisterSchema("units", units);
    node.DeregisterSchema("units");
    EXPECT_EQ(node.FindSchema("units"), nullptr);
    node.RegisterSchema("units", units);
    EXPECT_EQ(node.FindSchema("units"), &units);
    EXPECT_EQ(Failure([&] { node.DeregisterSchema("scale"); }), "-999 <unnamed> has no schema entry 'scale'.");
}

TEST(Node, Entry_and_node_may_end_in_either_order)
{
    Value<double> node;
    {
        Value<std::string> units;
        node.RegisterSchema("units", units);
    }
    EXPECT_EQ(node.SchemaCount(), 0U);

    Value<std::string> units;
    {
        Value<double> shortLived;
        shortLived.RegisterSchema("units", units);
    }
    node.RegisterSchema("units", units);
    EXPECT_EQ(node.SchemaCount(), 1U);
}

TEST(Node, Adopted_entry_ends_with_its_node_or_when_taken_out)
{
    Value<double> node;
    node.AdoptSchema("units", std::make_unique<Value<std::string>>(std::string("mm")));
    node.AdoptSchema("scale", std::make_unique<Value<double>>(1.0));
    node.DeregisterSchema("units");
    EXPECT_EQ(node.SchemaCount(), 1U);
}

TEST(Node, Copied_schema_updates_what_both_have_and_adds_copies_of_the_rest)
{
    Value<double> source;
    Value<std::string> units(std::string("mm"));
    Value<double> scale(2.0);
    source.RegisterSchema("units", units);
    source.RegisterSchema("scale", scale);

    Value<double> target;
    Value<std::string> ownUnits(std::string("m"));
    Value<std::string> format(std::string("%g"));
    target.RegisterSchema("units", ownUnits);
    target.RegisterSchema("format", format);
    target.CopySchema(source);

    EXPECT_EQ(ownUnits.Get(), "mm");
    EXPECT_EQ(format.Get(), "%g");
    const auto* copy = dynamic_cast<const Value<double>*>(target.FindSchema("scale"));
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, &scale);
    EXPECT_EQ(copy->Get(), 2.0);
}

TEST(Node, Schema_entry_that_is_no_value_cannot_be_copied)
{
    Value<double> source;
    Structure items;
    source.RegisterSchema("items", items);
    Value<double> target;
    EXPECT_EQ(Failure([&] { target.CopySchema(source); }),
              "-997 Schema entry 'items' of <unnamed> is no value and cannot be copied to <unnamed>.");
}

TEST(Node, Write_only_is_switched_on_and_off)
{
    Structure node;
    node.SetWriteOnly(true);
    EXPECT_TRUE(node.IsWriteOnly());
    node.SetWriteOnly(false);
    EXPECT_FALSE(node.IsWriteOnly());
}
} // namespace
