#include "LogCapture.h"
#include "Raised.h"

#include <TaApi/Params.h>
#include <TaApi/Properties.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace
{
using nlohmann::json;
using namespace Ta::Params;
using Ta::Properties::JsonSerializer;

enum class Mode : std::int32_t
{
    Include = 0,
    Exclude = 1
};

/// A tool with a parameter of each type, and a region in a group of its own.
class JsonSerializerTree : public testing::Test
{
protected:
    JsonSerializerTree()
    {
        mode.AddOption(Mode::Include, "Include Data in Region");
        mode.AddOption(Mode::Exclude, "Exclude Data in Region");
        width.EnableMinimum(0);
        width.EnableMaximum(100);
        width.EnableUnits("mm");
        root.Register("Enable", enable);
        root.Register("Mode", mode);
        root.Register("Threshold", threshold);
        root.Register("Count", count);
        root.Register("Name", name);
        root.Register("Matrix", matrix);
        root.Register("Limit", limit);
        root.Register("Region", region);
        region.RegisterAt("Width (X)", "Width", width, 3);
        region.RegisterAt("X", "x", x, 0);
    }

    void Deliver(const char* text)
    {
        JsonSerializer::Deserialize(root, json::parse(text));
    }

    LogCapture log;
    Group root{"Tool"};
    Value<bool> enable{false};
    Enum<Mode> mode{Mode::Include};
    Value<int> threshold{-5};
    Value<std::size_t> count{17};
    Value<std::string> name{std::string("first")};
    Value<std::vector<double>> matrix{std::vector<double>{1, 0.5}};
    Value<double> limit{2.5};
    Group region;
    Value<double> width{5};
    Value<double> x{0};
};

TEST_F(JsonSerializerTree, Values_become_an_object_of_plain_values)
{
    const json expected = json::parse(R"({
        "Enable": false, "Mode": 0, "Threshold": -5, "Count": 17, "Name": "first", "Matrix": [1.0, 0.5], "Limit": 2.5,
        "Region": {"Width": 5.0, "x": 0.0}})");
    EXPECT_EQ(JsonSerializer::Serialize(root), expected);
    EXPECT_EQ(JsonSerializer::Serialize(width), json(5.0));
}

TEST_F(JsonSerializerTree, Delivered_values_reach_their_nodes)
{
    Deliver(R"({"Enable": true, "Mode": 1, "Threshold": 7, "Count": 18446744073709551615, "Name": "second",
                "Matrix": [], "Limit": -1, "Region": {"Width": 100, "x": 1e-3}})");
    EXPECT_TRUE(enable.Get());
    EXPECT_EQ(mode.Get(), Mode::Exclude);
    EXPECT_EQ(threshold.Get(), 7);
    EXPECT_EQ(count.Get(), std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(name.Get(), "second");
    EXPECT_TRUE(matrix.Get().empty());
    EXPECT_EQ(limit.Get(), -1.0);
    EXPECT_EQ(width.Get(), 100.0);
    EXPECT_EQ(x.Get(), 1e-3);
}

TEST_F(JsonSerializerTree, Keys_that_are_not_mentioned_keep_their_value)
{
    Deliver(R"({"Region": {"x": 4}})");
    EXPECT_EQ(x.Get(), 4.0);
    EXPECT_EQ(width.Get(), 5.0);
    EXPECT_EQ(name.Get(), "first");
    EXPECT_NO_THROW(Deliver("{}"));
}

TEST_F(JsonSerializerTree, Write_only_nodes_are_left_out_but_can_be_delivered)
{
    name.SetWriteOnly(true);
    region.SetWriteOnly(true);
    const json values = JsonSerializer::Serialize(root);
    EXPECT_FALSE(values.contains("Name"));
    EXPECT_FALSE(values.contains("Region"));
    EXPECT_TRUE(values.contains("Limit"));
    EXPECT_TRUE(JsonSerializer::Serialize(name).is_null());
    Deliver(R"({"Name": "given"})");
    EXPECT_EQ(name.Get(), "given");
}

TEST_F(JsonSerializerTree, Whole_tree_survives_text)
{
    Deliver(R"({"Enable": true, "Threshold": -2147483648, "Name": "m\u00fc \"x\" \u0000 end", "Region": {"x": 0.1}})");
    const std::string text = JsonSerializer::Serialize(root).dump(4);
    const std::string nameBefore = name.Get();
    enable.Set(false);
    threshold.Set(0);
    name.Set("");
    x.Set(0);
    JsonSerializer::Deserialize(root, JsonSerializer::Parse(text));
    EXPECT_TRUE(enable.Get());
    EXPECT_EQ(threshold.Get(), std::numeric_limits<int>::min());
    EXPECT_EQ(name.Get(), nameBefore);
    EXPECT_EQ(x.Get(), 0.1);
}

double Travelled(double number)
{
    Value<double> source(number);
    Value<double> target(7.25);
    const std::string text = JsonSerializer::Serialize(source).dump();
    JsonSerializer::Deserialize(target, JsonSerializer::Parse(text));
    return target.Get();
}

void ExpectSameBits(double number)
{
    EXPECT_EQ(std::bit_cast<std::uint64_t>(Travelled(number)), std::bit_cast<std::uint64_t>(number)) << number;
}

TEST(JsonSerializer, Numbers_come_back_bit_by_bit)
{
    using Limits = std::numeric_limits<double>;
    for (const double number :
         {0.0, -0.0, 0.1, 1.0 / 3.0, 1e308, Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(),
          Limits::epsilon(), 9007199254740993.0, 1e22, 123456789012345680.0})
    {
        ExpectSameBits(number);
        ExpectSameBits(-number);
    }
    std::mt19937_64 random(7);
    for (int i = 0; i < 2000; ++i)
    {
        const auto number = std::bit_cast<double>(random());
        if (std::isfinite(number))
        {
            ExpectSameBits(number);
        }
    }
}

TEST(JsonSerializer, Null_value_64F_stays_a_number)
{
    Value<double> value(zNULL_64F);
    EXPECT_TRUE(JsonSerializer::Serialize(value).is_number_float());
    EXPECT_EQ(Travelled(zNULL_64F), zNULL_64F);
}

TEST(JsonSerializer, Numbers_that_are_not_finite_travel_as_texts)
{
    constexpr double INFINITE = std::numeric_limits<double>::infinity();
    Value<std::vector<double>> source({INFINITE, -INFINITE, std::numeric_limits<double>::quiet_NaN(), 1.0});
    const json values = JsonSerializer::Serialize(source);
    EXPECT_EQ(values, json::parse(R"(["Infinity", "-Infinity", "NaN", 1.0])"));
    Value<std::vector<double>> target;
    JsonSerializer::Deserialize(target, values);
    ASSERT_EQ(target.Get().size(), 4U);
    EXPECT_EQ(target.Get()[0], INFINITE);
    EXPECT_EQ(target.Get()[1], -INFINITE);
    EXPECT_TRUE(std::isnan(target.Get()[2]));
    EXPECT_EQ(target.Get()[3], 1.0);
    EXPECT_EQ(Travelled(INFINITE), INFINITE);
    EXPECT_TRUE(std::isnan(Travelled(std::numeric_limits<double>::quiet_NaN())));
}

TEST(JsonSerializer, Text_that_is_no_UTF_8_can_still_be_dumped)
{
    Value<std::string> value(std::string("a\xff"
                                         "b"));
    const json written = JsonSerializer::Serialize(value);
    EXPECT_NO_THROW(static_cast<void>(written.dump()));
    EXPECT_EQ(written.get<std::string>(), "a\xef\xbf\xbd"
                                          "b");
}

TEST_F(JsonSerializerTree, Wrong_types_are_refused_with_path_value_and_remedy)
{
    struct Case
    {
        const char* text;
        const char* message;
    };
    const Case cases[] = {
        {R"({"Enable": 1})", "Enable: takes true or false, but was given 1. Give it true or false."},
        {R"({"Enable": "true"})", "Enable: takes true or false, but was given \"true\". Give it true or false."},
        {R"({"Threshold": 1.5})", "Threshold: takes a whole number, but was given 1.5. Give it a whole number."},
        {R"({"Threshold": "7"})", "Threshold: takes a whole number, but was given \"7\". Give it a whole number."},
        {R"({"Threshold": 1e300})", "Threshold: takes a whole number, but was given 1e+300. Give it a whole number."},
        {R"({"Count": -1})",
         "Count: takes a whole number from 0 on, but was given -1. Give it a whole number from 0 on."},
        {R"({"Mode": "Include"})", "Mode: takes a whole number, but was given \"Include\". Give it a whole number."},
        {R"({"Name": 5})", "Name: takes a text, but was given 5. Give it a text."},
        {R"({"Name": null})", "Name: takes a text, but was given null. Give it a text."},
        {R"({"Limit": "2"})", "Limit: takes a number, but was given \"2\". Give it a number."},
        {R"({"Limit": true})", "Limit: takes a number, but was given true. Give it a number."},
        {R"({"Limit": [1]})", "Limit: takes a number, but was given a list of 1 entries. Give it a number."},
        {R"({"Matrix": 1})", "Matrix: takes a list of numbers, but was given 1. Give it a list of numbers."},
        {R"({"Matrix": [1, "x"]})",
         "Matrix: takes a list of numbers, but was given a list of 2 entries. Give it a list of numbers."},
        {R"({"Region": 1})", "Region: takes an object, but was given 1. Give it an object."},
        {R"({"Region": {"Width": {}}})",
         "Region/Width: takes a number, but was given an object of 0 entries. Give it a number."},
        {R"([])", "(root): takes an object, but was given a list of 0 entries. Give it an object."},
    };
    for (const Case& row : cases)
    {
        EXPECT_EQ(Failure([&] { Deliver(row.text); }), std::string("-997 ") + row.message) << row.text;
    }
}

TEST_F(JsonSerializerTree, Values_that_a_node_does_not_take_are_refused_with_path_and_limits)
{
    EXPECT_EQ(Failure([&] { Deliver(R"({"Region": {"Width": -1}})"); }),
              "-997 Region/Width: Width was set to be less than its minimum. It was given -1; allowed: minimum 0.0, "
              "maximum 100.0.");
    EXPECT_EQ(Failure([&] { Deliver(R"({"Region": {"Width": "NaN"}})"); }),
              "-997 Region/Width: Width was set to be less than its minimum. It was given \"NaN\"; allowed: minimum "
              "0.0, maximum 100.0.");
    EXPECT_EQ(Failure([&] { Deliver(R"({"Mode": 2})"); }),
              "-997 Mode: Mode was set to a value outside of the enum. It was given 2; allowed: enum [0,1].");
    EXPECT_EQ(Failure([&] { Deliver(R"({"Threshold": 2147483648})"); }),
              "-997 Threshold: Threshold was set to a value outside the range of its type. It was given 2147483648; "
              "allowed: a value that its type can hold.");
    EXPECT_EQ(log.lines.size(), 3U);
}

TEST_F(JsonSerializerTree, Whole_number_may_be_written_with_a_fraction_of_zero)
{
    Deliver(R"({"Threshold": 3.0, "Count": 1e3})");
    EXPECT_EQ(threshold.Get(), 3);
    EXPECT_EQ(count.Get(), 1000U);
    EXPECT_EQ(RaisedBy([&] { Deliver(R"({"Count": 18446744073709551616})"); })->status, -997);
    EXPECT_EQ(RaisedBy([&] { Deliver(R"({"Count": -0.5})"); })->status, -997);
}

TEST_F(JsonSerializerTree, Nothing_is_stored_if_anything_is_wrong)
{
    EXPECT_TRUE(RaisedBy([&] { Deliver(R"({"Enable": true, "Limit": 9, "Region": {"Width": 101}})"); }));
    EXPECT_FALSE(enable.Get());
    EXPECT_EQ(limit.Get(), 2.5);
    EXPECT_TRUE(RaisedBy([&] { Deliver(R"({"Enable": true, "Unknown": 1})"); }));
    EXPECT_FALSE(enable.Get());
}

TEST_F(JsonSerializerTree, Unknown_key_is_refused_with_path_and_the_known_ones)
{
    EXPECT_EQ(Failure([&] { Deliver(R"({"Region": {"Widht": 1}})"); }),
              "-999 Region/Widht: no such key here. Take it out, or use one of: x, Width.");
}

TEST_F(JsonSerializerTree, Unknown_keys_are_reported_and_the_others_delivered)
{
    const json values = json::parse(R"({"Limit": 9, "Region": {"x": 1, "y": 2}, "Region 3": {"x": 5}})");
    const auto report = JsonSerializer::DeserializeKnown(root, values);
    EXPECT_EQ(report.unknownKeys, (std::vector<std::string>{"Region/y", "Region 3"}));
    EXPECT_EQ(report.delivered, 2U);
    EXPECT_EQ(limit.Get(), 9.0);
    EXPECT_EQ(x.Get(), 1.0);

    Group third;
    Value<double> thirdX;
    Value<double> y;
    third.Register("x", thirdX);
    root.Register("Region 3", third);
    region.Register("y", y);
    const auto second = JsonSerializer::DeserializeKnown(root, values);
    EXPECT_TRUE(second.unknownKeys.empty());
    EXPECT_EQ(second.delivered, 4U);
    EXPECT_EQ(thirdX.Get(), 5.0);
    EXPECT_EQ(y.Get(), 2.0);
}

TEST_F(JsonSerializerTree, Reporting_unknown_keys_does_not_let_bad_values_through)
{
    const json values = json::parse(R"({"Unknown": 1, "Region": {"Width": -1}})");
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(JsonSerializer::DeserializeKnown(root, values)); })->status, -997);
}

TEST_F(JsonSerializerTree, Delivered_read_only_value_is_logged_and_stored_unless_it_is_the_one_held)
{
    limit.EnableReadOnly();
    Deliver(R"({"Limit": 2.5})");
    EXPECT_TRUE(log.lines.empty());
    Deliver(R"({"Limit": 3})");
    EXPECT_EQ(limit.Get(), 3.0);
    EXPECT_EQ(log.Texts(), std::vector<std::string>{"1 Params validation: Limit is read-only."});
}

TEST_F(JsonSerializerTree, Value_that_is_no_option_yet_can_be_delivered_again)
{
    Enum<std::string> file;
    root.Register("File", file);
    file.SetUnchecked("Model-0001.bin");
    EXPECT_NO_THROW(JsonSerializer::Deserialize(root, JsonSerializer::Serialize(root)));
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(JsonSerializerTree, Deep_document_below_a_known_key_is_refused_without_going_down)
{
    constexpr std::size_t DEPTH = 200000;
    const std::string text = R"({"Limit": )" + std::string(DEPTH, '[') + std::string(DEPTH, ']') + "}";
    const json values = json::parse(text);
    EXPECT_EQ(Failure([&] { JsonSerializer::Deserialize(root, values); }),
              "-997 Limit: takes a number, but was given a list of 1 entries. Give it a number.");
    EXPECT_EQ(RaisedBy([&] { static_cast<void>(JsonSerializer::Parse(text)); })->status, -997);
}

TEST_F(JsonSerializerTree, Long_keys_and_values_are_cut_in_messages)
{
    const json longKey = {{std::string(1000000, 'k'), 1}};
    EXPECT_LT(RaisedBy([&] { JsonSerializer::Deserialize(root, longKey); })->message.size(), 500U);
    const json longText = {{"Limit", std::string(1000000, 'v')}};
    EXPECT_LT(RaisedBy([&] { JsonSerializer::Deserialize(root, longText); })->message.size(), 500U);
}

TEST(JsonSerializer, Documents_that_are_no_JSON_are_refused)
{
    for (const char* text : {"", "{", "{\"a\": }", "nonsense", "[1,]", "\"\xff\"", "1e999", "{\"a\": NaN}"})
    {
        const auto failure = RaisedBy([&] { static_cast<void>(JsonSerializer::Parse(text)); });
        ASSERT_TRUE(failure) << text;
        EXPECT_EQ(failure->status, -997) << text;
        EXPECT_TRUE(failure->message.starts_with("The document is no JSON; correct it: ")) << failure->message;
    }
}

TEST(JsonSerializer, Documents_are_nested_64_deep_at_most)
{
    EXPECT_NO_THROW(static_cast<void>(JsonSerializer::Parse(std::string(64, '[') + std::string(64, ']'))));
    EXPECT_EQ(Failure([] { static_cast<void>(JsonSerializer::Parse(std::string(66, '[') + std::string(66, ']'))); }),
              "-997 The document is nested more than 64 deep; flatten it.");
}

TEST(JsonSerializer, Documents_beyond_64_MB_are_refused_unread)
{
    const std::string text((std::size_t{64} << 20U) + 1, ' ');
    EXPECT_EQ(Failure([&] { static_cast<void>(JsonSerializer::Parse(text)); }),
              "-997 The document has 67108865 bytes; give one of at most 67108864.");
}

TEST_F(JsonSerializerTree, Schema_names_the_type_of_each_node)
{
    const json schema = JsonSerializer::SerializeSchema(root);
    EXPECT_EQ(schema["type"], "object");
    const json& properties = schema["properties"];
    EXPECT_EQ(properties["Enable"]["type"], "boolean");
    EXPECT_EQ(properties["Mode"]["type"], "integer");
    EXPECT_EQ(properties["Threshold"]["type"], "integer");
    EXPECT_EQ(properties["Count"]["type"], "integer");
    EXPECT_EQ(properties["Name"]["type"], "string");
    EXPECT_EQ(properties["Limit"]["type"], "number");
    EXPECT_EQ(properties["Matrix"], json::parse(R"({"type": "array", "items": {"type": "number"}, "title": "Matrix",
                                                    "sortOrder": 600})"));
    EXPECT_EQ(properties["Region"]["type"], "object");
}

TEST_F(JsonSerializerTree, Schema_orders_children_by_sort_order_and_equal_ones_as_registered)
{
    Value<int> type;
    region.RegisterAt("Region Type", "MaskType", type, 0);
    Value<int> plain;
    region.Structure::Register("Plain", plain);
    const json schema = JsonSerializer::SerializeSchema(region);
    EXPECT_EQ(schema["order"], json::parse(R"(["x", "MaskType", "Width", "Plain"])"));
}

TEST_F(JsonSerializerTree, Schema_carries_every_entry_under_its_key)
{
    width.EnableExclusiveMinimum(-1);
    width.EnableExclusiveMaximum(101);
    width.EnableScale(0.5);
    width.EnableFormat("%.2f");
    width.EnableDescription("Full width");
    width.EnableExtendedType("Length");
    width.EnableActual(4.5);
    width.EnableReadOnly(false);
    width.EnableUsed();
    width.SetUsed(false);
    width.SetWriteOnly(true);
    EXPECT_EQ(JsonSerializer::SerializeSchema(width), json::parse(R"json({
        "type": "number", "title": "Width (X)", "sortOrder": 3, "minimum": 0.0, "maximum": 100.0,
        "exclusiveMinimum": -1.0, "exclusiveMaximum": 101.0, "units": "mm", "scale": 0.5, "format": "%.2f",
        "description": "Full width", "extendedType": "Length", "actual": 4.5, "readOnly": false, "used": false,
        "writeOnly": true})json"));
}

TEST_F(JsonSerializerTree, Schema_of_an_enumeration_has_values_and_texts)
{
    EXPECT_EQ(JsonSerializer::SerializeSchema(mode), json::parse(R"({
        "type": "integer", "title": "Mode", "sortOrder": 200, "enum": [0, 1],
        "enumText": ["Include Data in Region", "Exclude Data in Region"]})"));
    Enum<std::string> file;
    file.AddOption("a.bin", "A");
    EXPECT_EQ(JsonSerializer::SerializeSchema(file),
              json::parse(R"({"type": "string", "enum": ["a.bin"], "enumText": ["A"]})"));
}

TEST_F(JsonSerializerTree, Schema_of_a_group_carries_used_or_visibility)
{
    region.EnableVisibility();
    region.SetVisibility({"Advanced"});
    EXPECT_EQ(JsonSerializer::SerializeSchema(region)["visibility"], json::parse(R"(["Advanced"])"));
    Group used;
    used.EnableUsed();
    EXPECT_EQ(JsonSerializer::SerializeSchema(used), json::parse(R"({"type": "object", "properties": {}, "order": [],
                                                                     "used": true})"));
}

TEST(JsonSerializer, Empty_tree_is_an_empty_object)
{
    const Group group;
    EXPECT_EQ(JsonSerializer::Serialize(group).dump(), "{}");
}
} // namespace
