#include "LogCapture.h"

#include <TaApi/Params.h>
#include <TaApi/Properties.h>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace
{
using nlohmann::json;
using namespace Ta::Params;
using Ta::Properties::JsonSerializer;

using Keys = std::vector<std::string>;

constexpr std::size_t AXES = 6; // X, Y, Z, X angle, Y angle, Z angle
constexpr unsigned ALL_AXES = (1U << AXES) - 1U;

struct RegionValue
{
    std::size_t axis;
    const char* title;
    const char* key;
    std::uint32_t sortOrder;
    const char* units;
    Value<double> BaseBoxRegion::*member;
};

// In the order in which they are declared and registered.
constexpr std::array<RegionValue, 9> VALUES = {{
    {0, "X", "x", 0, "mm", &BaseBoxRegion::x},
    {1, "Y", "y", 1, "mm", &BaseBoxRegion::y},
    {2, "Z", "z", 2, "mm", &BaseBoxRegion::z},
    {0, "Width (X)", "width", 3, "mm", &BaseBoxRegion::width},
    {1, "Length (Y)", "length", 4, "mm", &BaseBoxRegion::length},
    {2, "Height (Z)", "height", 5, "mm", &BaseBoxRegion::height},
    {3, "X Angle", "xAngle", 6, "deg", &BaseBoxRegion::xAngle},
    {4, "Y Angle", "yAngle", 7, "deg", &BaseBoxRegion::yAngle},
    {5, "Z Angle", "zAngle", 8, "deg", &BaseBoxRegion::zAngle},
}};

/// A region whose axes and units are those of the bits set, bit 0 being X.
class BitRegion : public BoxRegion
{
public:
    BitRegion(unsigned axes, unsigned units)
        : BoxRegion(Has(axes, 0), Has(axes, 1), Has(axes, 2), Has(axes, 3), Has(axes, 4), Has(axes, 5), Has(units, 0),
                    Has(units, 1), Has(units, 2), Has(units, 3), Has(units, 4), Has(units, 5), "Region")
    {
    }

    static bool Has(unsigned bits, std::size_t axis)
    {
        return (bits >> axis & 1U) != 0;
    }
};

Keys RegisteredKeys(const Group& group)
{
    Keys keys;
    for (std::size_t i = 0; i < group.Count(); ++i)
    {
        keys.push_back(group.At(i).Name());
    }
    return keys;
}

Keys KeysOf(unsigned axes)
{
    Keys keys;
    for (const RegionValue& c : VALUES)
    {
        if (BitRegion::Has(axes, c.axis))
        {
            keys.emplace_back(c.key);
        }
    }
    return keys;
}

/// The units of a value, empty if it carries none.
std::string UnitsOf(const Value<double>& value)
{
    return value.FindSchema("units") == nullptr ? std::string() : value.GetUnits();
}

std::vector<double> Identity()
{
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

TEST(BaseBoxRegion, Has_nine_values_in_order_and_registers_none)
{
    const BaseBoxRegion region("Base");
    EXPECT_EQ(region.Name(), "Base");
    EXPECT_EQ(region.Count(), 0U);
    const std::array<const Value<double>*, 9> members = {&region.x,      &region.y,      &region.z,
                                                         &region.width,  &region.length, &region.height,
                                                         &region.xAngle, &region.yAngle, &region.zAngle};
    for (std::size_t i = 0; i < members.size(); ++i)
    {
        EXPECT_EQ(members[i]->Get(), 0.0);
        EXPECT_TRUE(i == 0 || members[i - 1] < members[i]) << i;
    }
}

TEST(BoxRegion, Values_of_its_axes_have_title_key_and_sort_order)
{
    const BitRegion region(ALL_AXES, ALL_AXES);
    EXPECT_EQ(region.Name(), "Region");
    ASSERT_EQ(RegisteredKeys(region), KeysOf(ALL_AXES));
    for (const RegionValue& c : VALUES)
    {
        const Value<double>& value = region.*c.member;
        EXPECT_EQ(region.Find(c.key), &value) << c.key;
        EXPECT_EQ(value.GetTitle(), c.title);
        EXPECT_EQ(region.GetSortOrder(value), c.sortOrder) << c.key;
        EXPECT_EQ(UnitsOf(value), c.units) << c.key;
    }
}

TEST(BoxRegion, Schema_is_enough_to_draw_a_form_from)
{
    EXPECT_EQ(JsonSerializer::SerializeSchema(BitRegion(0b010101U, 0b010001U)), json::parse(R"json({
        "type": "object",
        "order": ["x", "z", "width", "height", "yAngle"],
        "properties": {
            "x": {"type": "number", "title": "X", "sortOrder": 0, "units": "mm"},
            "z": {"type": "number", "title": "Z", "sortOrder": 2},
            "width": {"type": "number", "title": "Width (X)", "sortOrder": 3, "units": "mm"},
            "height": {"type": "number", "title": "Height (Z)", "sortOrder": 5},
            "yAngle": {"type": "number", "title": "Y Angle", "sortOrder": 7, "units": "deg"}}})json"));
}

// All combinations of the twelve switches, and so each of them on its own.
TEST(BoxRegion, Each_axis_is_there_only_if_it_exists_and_has_units_only_if_asked_for)
{
    for (unsigned axes = 0; axes <= ALL_AXES; ++axes)
    {
        for (unsigned units = 0; units <= ALL_AXES; ++units)
        {
            SCOPED_TRACE("axes " + std::to_string(axes) + ", units " + std::to_string(units));
            const BitRegion region(axes, units);
            ASSERT_EQ(RegisteredKeys(region), KeysOf(axes));
            for (const RegionValue& c : VALUES)
            {
                const Value<double>& value = region.*c.member;
                const bool exists = BitRegion::Has(axes, c.axis);
                ASSERT_EQ(value.GetUsed(), exists) << c.key;
                ASSERT_EQ(value.FindSchema("used") != nullptr, !exists) << c.key;
                ASSERT_EQ(value.Parent(), exists ? &region : nullptr) << c.key;
                if (exists)
                {
                    ASSERT_EQ(UnitsOf(value), BitRegion::Has(units, c.axis) ? c.units : "") << c.key;
                }
            }
        }
    }
}

TEST(BoxRegion, Values_of_an_axis_that_does_not_exist_can_be_read_and_set)
{
    BitRegion region(0, 0);
    for (const RegionValue& c : VALUES)
    {
        (region.*c.member).Set(7.5);
        EXPECT_EQ((region.*c.member).Get(), 7.5) << c.key;
    }
}

TEST(BoxRegion, Only_values_of_its_axes_travel_as_JSON)
{
    BitRegion region(0b100011U, ALL_AXES);
    region.x.Set(1);
    region.y.Set(2);
    region.width.Set(3);
    region.length.Set(4);
    region.zAngle.Set(5);
    region.z.Set(6);
    EXPECT_EQ(JsonSerializer::Serialize(region),
              json::parse(R"json({"x": 1.0, "y": 2.0, "width": 3.0, "length": 4.0, "zAngle": 5.0})json"));
    JsonSerializer::Deserialize(region, json::parse(R"json({"length": 40, "x": -1.5})json"));
    EXPECT_EQ(region.length.Get(), 40.0);
    EXPECT_EQ(region.x.Get(), -1.5);
    EXPECT_EQ(region.y.Get(), 2.0);
    EXPECT_THROW(JsonSerializer::Deserialize(region, json::parse(R"json({"z": 1})json")), Ta::Exception);
}

struct FixedRegion
{
    const char* name;
    const BoxRegion& region;
    unsigned axes;
};

TEST(BoxRegion, Regions_of_a_plane_have_the_axes_of_the_plane)
{
    const ProfileRegion profile;
    const SurfaceRegion2d surface;
    const SurfaceRegion3d box;
    for (const FixedRegion& c :
         {FixedRegion{"profile", profile, 0b010101U}, FixedRegion{"surface 2d", surface, 0b100011U},
          FixedRegion{"surface 3d", box, 0b100111U}})
    {
        EXPECT_EQ(RegisteredKeys(c.region), KeysOf(c.axes)) << c.name;
        for (const RegionValue& value : VALUES)
        {
            EXPECT_EQ((c.region.*value.member).GetUsed(), BitRegion::Has(c.axes, value.axis))
                << c.name << " " << value.key;
        }
    }
}

TEST(Transform3d, Is_read_only_and_begins_as_the_identity)
{
    const Transform3d transform;
    EXPECT_EQ(transform.Get(), Identity());
    ASSERT_NE(transform.FindSchema("readOnly"), nullptr);
    EXPECT_TRUE(transform.GetReadOnly());
    EXPECT_EQ(transform.GetExtendedType(), "Transform3d");
}

TEST(Transform3d, May_be_empty)
{
    LogCapture log;
    Transform3d transform;
    transform.SetUnchecked({});
    EXPECT_TRUE(transform.Get().empty());
    EXPECT_EQ(JsonSerializer::Serialize(transform), json::array());
    EXPECT_TRUE(log.lines.empty());
}

TEST(Transform3d, Set_by_anyone_but_its_owner_is_logged)
{
    LogCapture log;
    Transform3d transform;
    transform.Set({});
    EXPECT_EQ(log.lines.size(), 1U);
}

TEST(TransformedBoxRegion, Adds_the_transform_behind_the_values)
{
    const TransformedBoxRegion region(true, false, false, false, false, true, true, true, true, true, true, true);
    EXPECT_EQ(region.Name(), "TransformedBoxRegion");
    EXPECT_EQ(RegisteredKeys(region), (Keys{"x", "width", "zAngle", "transformMatrix"}));
    EXPECT_EQ(region.transformMatrix.GetTitle(), "Transform Matrix");
    EXPECT_EQ(region.GetSortOrder(region.transformMatrix), 9U);
    EXPECT_EQ(region.transformMatrix.Get(), Identity());
}

TEST(TransformedBoxRegion, Each_switch_reaches_its_axis)
{
    for (std::size_t axis = 0; axis < AXES; ++axis)
    {
        const auto is = [axis](std::size_t other) { return other == axis; };
        const TransformedBoxRegion only(is(0), is(1), is(2), is(3), is(4), is(5), false, false, false, false, false,
                                        false);
        const TransformedBoxRegion measured(true, true, true, true, true, true, is(0), is(1), is(2), is(3), is(4),
                                            is(5));
        Keys expected = KeysOf(1U << axis);
        expected.emplace_back("transformMatrix");
        EXPECT_EQ(RegisteredKeys(only), expected);
        for (const RegionValue& c : VALUES)
        {
            EXPECT_EQ(UnitsOf(measured.*c.member), is(c.axis) ? c.units : "") << c.key;
        }
    }
}

TEST(TransformedBoxRegion, Is_drawn_and_saved_with_its_transform)
{
    TransformedBoxRegion region(true, false, false, false, false, false, false, true, true, true, true, true);
    region.x.Set(1);
    region.width.Set(2);
    EXPECT_EQ(JsonSerializer::Serialize(region), json::parse(R"json({"x": 1.0, "width": 2.0, "transformMatrix":
        [1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0]})json"));
    EXPECT_EQ(JsonSerializer::SerializeSchema(region), json::parse(R"json({
        "type": "object",
        "order": ["x", "width", "transformMatrix"],
        "properties": {
            "x": {"type": "number", "title": "X", "sortOrder": 0},
            "width": {"type": "number", "title": "Width (X)", "sortOrder": 3},
            "transformMatrix": {"type": "array", "items": {"type": "number"}, "title": "Transform Matrix",
                                "sortOrder": 9, "readOnly": true, "extendedType": "Transform3d"}}})json"));
    region.transformMatrix.SetUnchecked({});
    EXPECT_EQ(JsonSerializer::Serialize(region)["transformMatrix"], json::array());
}
} // namespace
