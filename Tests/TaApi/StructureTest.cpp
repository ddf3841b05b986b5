#include "Raised.h"

#include <TaApi/Properties.h>

#include <gtest/gtest.h>

#include <string>

namespace
{
using namespace Ta::Properties;

TEST(Structure, Children_stand_in_the_order_of_registration)
{
    Structure structure("Region");
    Value<double> width;
    Value<int> count;
    structure.Register("Width", width);
    structure.Register("Count", count);
    ASSERT_EQ(structure.Count(), 2U);
    EXPECT_EQ(&structure.At(0), &width);
    EXPECT_EQ(&structure.At(1), &count);
    EXPECT_EQ(structure.Find("Count"), &count);
    EXPECT_EQ(structure.Find("count"), nullptr);
    EXPECT_EQ(width.Parent(), &structure);
    EXPECT_EQ(width.Name(), "Width");
    EXPECT_EQ(structure.Name(), "Region");
    EXPECT_EQ(Failure([&] { static_cast<void>(structure.At(2)); }), "-997 Region has no child 2: it has 2.");
}

TEST(Structure, Key_and_child_are_taken_once)
{
    Structure structure;
    Structure other;
    Value<double> first;
    Value<double> second;
    structure.Register("Width", first);
    EXPECT_EQ(Failure([&] { structure.Register("Width", second); }),
              "-987 Key 'Width' is already registered in <unnamed>.");
    EXPECT_EQ(RaisedBy([&] { structure.Register("Again", first); })->status, -987);
    EXPECT_EQ(RaisedBy([&] { other.Register("Width", first); })->status, -987);
    EXPECT_EQ(RaisedBy([&] { other.Register("", second); })->status, -997);
    EXPECT_EQ(structure.Count(), 1U);
    EXPECT_EQ(other.Count(), 0U);
    EXPECT_EQ(first.Name(), "Width");
}

TEST(Structure, Tree_cannot_be_closed_to_a_circle)
{
    Structure root;
    Structure middle;
    Structure bottom;
    root.Register("Middle", middle);
    middle.Register("Bottom", bottom);
    EXPECT_EQ(RaisedBy([&] { bottom.Register("Root", root); })->status, -987);
    EXPECT_EQ(RaisedBy([&] { root.Register("Root", root); })->status, -987);
}

TEST(Structure, Deregistered_child_is_free_and_keeps_its_name)
{
    Structure structure;
    Value<double> width;
    structure.Register("Width", width);
    structure.Deregister("Width");
    EXPECT_EQ(structure.Count(), 0U);
    EXPECT_EQ(width.Parent(), nullptr);
    EXPECT_EQ(width.Name(), "Width");
    EXPECT_EQ(Failure([&] { structure.Deregister("Width"); }), "-999 <unnamed> has no child 'Width'.");
    EXPECT_NO_THROW(structure.Register("Width", width));
}

TEST(Structure, Child_and_structure_may_end_in_either_order)
{
    Structure structure;
    {
        Value<double> shortLived;
        structure.Register("Width", shortLived);
    }
    EXPECT_EQ(structure.Count(), 0U);

    Value<double> width;
    {
        Structure shortLived;
        shortLived.Register("Width", width);
    }
    EXPECT_EQ(width.Parent(), nullptr);
    EXPECT_NO_THROW(structure.Register("Width", width));
}

TEST(Structure, Copied_values_go_to_the_children_of_the_same_name)
{
    Structure source;
    Structure sourceRegion;
    Value<double> sourceWidth(7.0);
    Value<int> onlyThere(1);
    source.Register("Region", sourceRegion);
    source.Register("OnlyThere", onlyThere);
    sourceRegion.Register("Width", sourceWidth);

    Structure target;
    Structure targetRegion;
    Value<double> targetWidth(1.0);
    Value<int> onlyHere(2);
    target.Register("OnlyHere", onlyHere);
    target.Register("Region", targetRegion);
    targetRegion.Register("Width", targetWidth);

    target.CopyValues(source);
    EXPECT_EQ(targetWidth.Get(), 7.0);
    EXPECT_EQ(onlyHere.Get(), 2);
}

TEST(Structure, Values_of_another_type_are_not_copied)
{
    Structure source;
    Value<int> sourceWidth(7);
    source.Register("Width", sourceWidth);
    Structure target;
    Value<double> targetWidth(1.0);
    target.Register("Width", targetWidth);
    EXPECT_EQ(Failure([&] { target.CopyValues(source); }),
              "-997 The value of Width cannot be copied to Width: it is of another type.");
    EXPECT_EQ(RaisedBy([&] { target.CopyValues(sourceWidth); })->status, -997);
    EXPECT_EQ(targetWidth.Get(), 1.0);
}

class Doubler : public INodeVisitor
{
public:
    void Visit(Structure& structure) override
    {
        for (std::size_t i = 0; i < structure.Count(); ++i)
        {
            structure.At(i).Accept(*this);
        }
    }

    void Visit(Leaf& leaf) override
    {
        leaf.Write(Datum(2 * std::get<double>(leaf.Read())));
    }
};

class Lister : public INodeVisitorConst
{
public:
    void Visit(const Structure& structure) override
    {
        text += structure.Name() + "(";
        for (std::size_t i = 0; i < structure.Count(); ++i)
        {
            static_cast<const Node&>(structure.At(i)).Accept(*this);
        }
        text += ")";
    }

    void Visit(const Leaf& leaf) override
    {
        text += leaf.Name() + " ";
    }

    std::string text;
};

TEST(Structure, Visitors_meet_structures_and_leaves)
{
    Structure root("Tool");
    Structure region;
    Value<double> width(1.5);
    Value<double> height(2.5);
    root.Register("Region", region);
    region.Register("Width", width);
    root.Register("Height", height);

    Doubler doubler;
    root.Accept(doubler);
    EXPECT_EQ(width.Get(), 3.0);
    EXPECT_EQ(height.Get(), 5.0);

    Lister lister;
    static_cast<const Structure&>(root).Accept(lister);
    EXPECT_EQ(lister.text, "Tool(Region(Width )Height )");
}
} // namespace
