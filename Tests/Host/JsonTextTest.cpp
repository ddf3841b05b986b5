#include <Host/JsonText.h>

#include "HostTestFiles.h"

#include <bit>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::ordered_json;

TEST(Laid_out_json, of_the_example_jobs_is_their_text)
{
    for (const char* const name :
         {"plate.json", "land.json", "cylinder.json", "plane.json", "table.json", "tooltip.json"})
    {
        const std::string text = ReadBytes(std::filesystem::path(MU_EXAMPLES_DIR) / "Jobs" / name);
        EXPECT_EQ(LaidOut(ordered_json::parse(text)), text) << name;
    }
}

struct LayoutCase
{
    const char* name;
    const char* document;
    const char* text;
};

class Layout_of : public testing::TestWithParam<LayoutCase>
{
};

TEST_P(Layout_of, a_document_is_for_people)
{
    EXPECT_EQ(LaidOut(ordered_json::parse(GetParam().document)), GetParam().text);
}

#define THIRTY_DIGITS "111111111111111111111111111111"

INSTANTIATE_TEST_SUITE_P(
    , Layout_of,
    testing::Values(LayoutCase{"empty_object", "{}", "{}\n"},
                    LayoutCase{"outermost", R"({"b":1,"a":[]})", "{\n    \"b\": 1,\n    \"a\": []\n}\n"},
                    LayoutCase{
                        "short_object", R"({"r":{"x":1.5,"on":true,"n":null,"t":"é\"","e":{}}})",
                        "{\n    \"r\": { \"x\": 1.5, \"on\": true, \"n\": null, \"t\": \"é\\\"\", \"e\": {} }\n}\n"},
                    LayoutCase{"object_in_an_object", R"({"r":{"s":{"x":1}}})",
                               "{\n    \"r\": {\n        \"s\": { \"x\": 1 }\n    }\n}\n"},
                    LayoutCase{"list_of_objects", R"({"l":[{"x":1},[[2]]]})",
                               "{\n    \"l\": [\n        { \"x\": 1 },\n        [[2]]\n    ]\n}\n"},
                    LayoutCase{"long_list_of_texts",
                               R"({"l":[")" THIRTY_DIGITS R"(",")" THIRTY_DIGITS R"(",")" THIRTY_DIGITS "\"]}",
                               "{\n    \"l\": [\n        \"" THIRTY_DIGITS "\",\n        \"" THIRTY_DIGITS
                               "\",\n        \"" THIRTY_DIGITS "\"\n    ]\n}\n"},
                    LayoutCase{"long_list_of_numbers",
                               R"({"l":[1.2345678901234567,1.2345678901234567,1.2345678901234567,)"
                               R"(1.2345678901234567,1.2345678901234567,1.2345678901234567]})",
                               "{\n    \"l\": [1.2345678901234567, 1.2345678901234567, 1.2345678901234567, "
                               "1.2345678901234567, 1.2345678901234567, 1.2345678901234567]\n}\n"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Laid_out_json, keeps_every_finite_number_bit_by_bit)
{
    std::mt19937_64 random(20);
    for (int i = 0; i < 10'000; ++i)
    {
        const auto number = std::bit_cast<double>(random());
        if (std::isfinite(number))
        {
            const ordered_json back = ordered_json::parse(LaidOut({{"n", {number}}}));
            EXPECT_EQ(std::bit_cast<std::uint64_t>(back["n"][0].get<double>()), std::bit_cast<std::uint64_t>(number));
        }
    }
}

struct RepeatedCase
{
    const char* document;
    const char* where; ///< null: no key is repeated
};

TEST(Repeated_keys, are_an_error_that_names_the_place_of_the_second_one)
{
    for (const RepeatedCase& c :
         {RepeatedCase{R"({"a": 1, "b": {"a": 1}, "c": [{"a": 1}, {"a": 1}]})", nullptr},
          RepeatedCase{R"({"a": 1, "a": 1})", "a"}, RepeatedCase{R"({"a": {}, "b": [], "a": null})", "a"},
          RepeatedCase{R"({"a": [1, [], {}, {"b": {"c": 1, "d": [2], "c": 1}}]})", "a[3].b.c"},
          RepeatedCase{R"([[0, {"x": 1, "\u0078": 2}]])", "[0][1].x"}})
    {
        if (c.where == nullptr)
        {
            EXPECT_NO_THROW(RefuseRepeatedKeys("f.json", c.document));
            continue;
        }
        const std::string message = ErrorOf([&] {
            RefuseRepeatedKeys("f.json", c.document);
            return 0;
        });
        EXPECT_EQ(message,
                  std::string("f.json: ") + c.where + ": the key stands twice in one object. Keep one of the two.");
    }
}
} // namespace
