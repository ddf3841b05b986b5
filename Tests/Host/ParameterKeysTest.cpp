#include <Host/ParameterKeys.h>

#include <TaApi/Params.h>

#include <gtest/gtest.h>

namespace
{
using namespace Mu::Host;
using nlohmann::json;

/// { Number, Part: { Inner: { x, width } }, Place: { x } }
class ParameterTree : public testing::Test
{
protected:
    ParameterTree()
    {
        root.Register("Number", number);
        root.Register("Part", part);
        root.Register("Place", place);
        part.Register("Inner", inner);
        inner.Register("x", x);
        inner.Register("width", width);
        inner.Register("transformMatrix", transform);
        place.Register("x", placeX);
    }

    Ta::Params::Group root;
    Ta::Params::Group part;
    Ta::Params::Group inner;
    Ta::Params::Group place;
    Ta::Params::Value<double> number;
    Ta::Params::Value<double> x;
    Ta::Params::Value<double> width;
    Ta::Params::Transform3d transform;
    Ta::Params::Value<double> placeX;
};

TEST_F(ParameterTree, has_the_paths_of_groups_and_values_sorted)
{
    EXPECT_EQ(ParameterPaths(root),
              (std::vector<std::string>{"Number", "Part", "Part/Inner", "Part/Inner/transformMatrix",
                                        "Part/Inner/width", "Part/Inner/x", "Place", "Place/x"}));
}

TEST_F(ParameterTree, tells_the_keys_where_a_path_leaves_it)
{
    EXPECT_EQ(KnownKeys(root, "Numbre"), "Did you mean \"Number\"? Known here: Number, Part, Place");
    EXPECT_EQ(KnownKeys(root, "Part/Inner/widht"), "Did you mean \"width\"? Known here: x, width, transformMatrix");
    EXPECT_EQ(KnownKeys(root, "Part/Outer/width"), "Known here: Inner");
    EXPECT_EQ(KnownKeys(root, "Part/Inner/width"),
              "Write groups as objects: {\"Part\": {\"Inner\": {\"width\": ...}}}");
}

TEST_F(ParameterTree, has_a_region_where_a_group_has_a_place_and_an_extent)
{
    EXPECT_TRUE(IsRegion(inner));
    EXPECT_FALSE(IsRegion(place));
    EXPECT_FALSE(IsRegion(root));
}

struct Case
{
    const char* values;
    bool given;
};

TEST_F(ParameterTree, has_region_values_given_only_if_they_stand_in_a_region)
{
    for (const Case& c : {Case{R"({})", false}, Case{R"({"Number": 1})", false}, Case{R"({"Place": {"x": 1}})", false},
                          Case{R"({"Part": {}})", false}, Case{R"({"Part": {"Inner": {}}})", false},
                          Case{R"({"Part": {"Inner": {"transformMatrix": []}}})", false},
                          Case{R"({"Part": {"Inner": {"width": 3}}})", true},
                          Case{R"({"Number": 1, "Part": {"Inner": {"x": 3, "width": 2}}})", true}})
    {
        EXPECT_EQ(GivesRegionValues(root, json::parse(c.values)), c.given) << c.values;
    }
}
} // namespace
