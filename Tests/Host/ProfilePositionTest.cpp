#include "ToolRun.h"

#include <Support/Builders.h>

#include <cmath>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;
using Support::NullPixel;

// Half a mm apart from x = 10 on, z = 1 + height / 4: a low at 10.5 and 12.5, a high at 11.5 and 13.
Ta::Object<void*> Hills()
{
    return Support::Profile({4, -4, NullPixel, 12, 0, -4, 12, 8})
        .Offset(10, 77, 1)
        .Scale(0.5, 1, 0.25)
        .BoundingBox({11.75, 0, 2, 3.5, 0, 4});
}

json InRegion(json box)
{
    return {{"UseRegion", true}, {"Region", std::move(box)}};
}

class ProfilePosition : public testing::Test
{
protected:
    ToolRun Measure(const char* point, const Ta::Object<void*>& message, json parameters = json::object())
    {
        parameters["Point"] = point;
        return {registry, "ProfilePosition", parameters, {{"Profile", message}}};
    }

    ToolRegistry registry = RegistryOf({});
};

void ExpectPlace(const ToolRun& run, double x, double z)
{
    EXPECT_NEAR(run.Value("X"), x, 1e-12);
    EXPECT_NEAR(run.Value("Z"), z, 1e-12);
    EXPECT_EQ(run.Units("X"), "mm");
    EXPECT_EQ(run.Units("Z"), "mm");
    const zPoint3d64f position = TvPointFeatureMsg_Position(run.Message("Position").Get());
    EXPECT_NEAR(position.x, x, 1e-12);
    EXPECT_EQ(position.y, 0);
    EXPECT_NEAR(position.z, z, 1e-12);
}

struct PlaceCase
{
    const char* point;
    double x;
    double z;
};

class Point_of_a_profile : public ProfilePosition, public testing::WithParamInterface<PlaceCase>
{
};

TEST_P(Point_of_a_profile, is_the_first_of_several)
{
    ExpectPlace(Measure(GetParam().point, Hills()), GetParam().x, GetParam().z);
}

INSTANTIATE_TEST_SUITE_P(, Point_of_a_profile,
                         testing::Values(PlaceCase{"Top", 11.5, 4}, PlaceCase{"Bottom", 10.5, 0},
                                         PlaceCase{"Left", 10, 2}, PlaceCase{"Right", 13.5, 3},
                                         // Without the third: 10, 10.5, 11.5 to 13.5; 4 - 4 + 12 + 0 - 4 + 12 + 8 = 28.
                                         PlaceCase{"Average", (10 + 10.5 + 11.5 + 12 + 12.5 + 13 + 13.5) / 7, 2}),
                         [](const auto& test) { return std::string(test.param.point); });

class Point_of_pairs : public ProfilePosition, public testing::WithParamInterface<PlaceCase>
{
};

TEST_P(Point_of_pairs, is_the_first_of_several_in_the_order_of_the_profile)
{
    // At x = 2 + pair / 2 and z = pair / 10, out of order and with two of the same x.
    const auto profile = Support::PointProfile({{6, 50}, {-2, 30}, {NullPixel, NullPixel}, {-2, 10}, {6, -10}})
                             .Offset(2, 0, 0)
                             .Scale(0.5, 1, 0.1);
    ExpectPlace(Measure(GetParam().point, profile), GetParam().x, GetParam().z);
}

INSTANTIATE_TEST_SUITE_P(, Point_of_pairs,
                         testing::Values(PlaceCase{"Top", 5, 5}, PlaceCase{"Bottom", 5, -1}, PlaceCase{"Left", 1, 3},
                                         PlaceCase{"Right", 5, 5}, PlaceCase{"Average", 3, 2}),
                         [](const auto& test) { return std::string(test.param.point); });

TEST_F(ProfilePosition, in_a_region_leaves_out_what_lies_outside)
{
    // From 10.25 to 12.25 there are -4, 12 and 0, at 0, 4 and 1 mm; below 3 mm only the first and the last.
    const json box = {{"x", 11.25}, {"z", 0}, {"width", 2}, {"height", 100}};
    ExpectPlace(Measure("Top", Hills(), InRegion(box)), 11.5, 4);
    ExpectPlace(Measure("Left", Hills(), InRegion(box)), 10.5, 0);
    ExpectPlace(Measure("Right", Hills(), InRegion(box)), 12, 1);
    const json low = {{"x", 11.25}, {"z", 1}, {"width", 2}, {"height", 4}};
    ExpectPlace(Measure("Top", Hills(), InRegion(low)), 12, 1);
}

TEST_F(ProfilePosition, in_a_region_of_pairs_looks_at_their_own_places)
{
    const auto profile = Support::PointProfile({{6, 50}, {-2, 30}, {3, 20}});
    const json box = {{"x", 4}, {"z", 0}, {"width", 6}, {"height", 1000}};
    ExpectPlace(Measure("Left", profile, InRegion(box)), 3, 20);
}

TEST_F(ProfilePosition, in_a_turned_region_looks_along_its_axes)
{
    // A strip of 0.2 mm along the diagonal from x to z through (12, 1): of the profile, 1 mm a count, only (11, 0),
    // (12, 1) and (14, 3) lie on it.
    const auto profile = Support::Profile({0, 0, 1, 0, 3, 9}).Offset(10, 0, 0);
    const json strip = {{"x", 12}, {"z", 1}, {"width", 8}, {"height", 0.2}, {"yAngle", 45}};
    const ToolRun run = Measure("Average", profile, InRegion(strip));
    ExpectPlace(run, (11.0 + 12 + 14) / 3, (0.0 + 1 + 3) / 3);
}

TEST_F(ProfilePosition, without_a_point_is_null_and_draws_its_region_alone)
{
    const std::vector<std::string> nulls = {"X", "Z", "Position"};
    const ToolRun outside = Measure("Top", Hills(), InRegion({{"x", 500}, {"z", 1}, {"width", 2}, {"height", 3}}));
    EXPECT_EQ(outside.Nulls(), nulls);
    EXPECT_EQ(outside.Drawn(), std::vector<std::string>{"region2d (500, 1) (2, 3) 0"});
    const ToolRun empty = Measure("Average", Support::Profile({NullPixel, NullPixel}));
    EXPECT_EQ(empty.Nulls(), nulls);
    EXPECT_TRUE(empty.Drawn().empty());
    EXPECT_EQ(Measure("Left", Support::PointProfile({})).Nulls(), nulls);
}

TEST_F(ProfilePosition, of_a_null_profile_is_null_and_so_is_the_graphic)
{
    EXPECT_EQ(Measure("Top", Support::NullMessage()).Nulls(),
              (std::vector<std::string>{"X", "Z", "Position", "Graphic"}));
}

TEST_F(ProfilePosition, without_region_values_looks_at_the_middle_half)
{
    // The box of the hills is 3.5 by 4 mm, so that the region is 1.75 mm wide and high, around (11.75, 2). No height of
    // 4, 1 and 0 mm, at 11.5, 12 and 12.5, is within 1.125 to 2.875.
    const ToolRun run = Measure("Top", Hills(), {{"UseRegion", true}});
    EXPECT_EQ(run.Drawn(), std::vector<std::string>{"region2d (11.75, 2) (1.75, 1.75) 0"});
    EXPECT_EQ(run.State("Z"), ResultState::Null);
}

TEST_F(ProfilePosition, follows_its_anchor)
{
    const json box = {{"x", 0}, {"z", 0}, {"width", 1.2}, {"height", 100}};
    json parameters = InRegion(box);
    parameters["Point"] = "Right";
    const auto at = [&](double x) {
        return ToolRun(registry, "ProfilePosition", parameters,
                       {{"Profile", Hills()}, {"AnchorX", Support::Measure(x)}});
    };
    ExpectPlace(at(10), 10.5, 0);
    ExpectPlace(at(12), 12.5, 0);
    EXPECT_EQ(at(12).Drawn().at(0), "region2d (12, 0) (1.2, 100) 0");
}

TEST_F(ProfilePosition, turns_its_region_with_an_anchor)
{
    json parameters = InRegion({{"x", 0}, {"z", 0}, {"width", 8}, {"height", 0.2}});
    parameters["Point"] = "Top";
    const auto profile = Support::Profile({0, 0, 1, 0, 3, 9}).Offset(10, 0, 0);
    const ToolRun run(registry, "ProfilePosition", parameters,
                      {{"Profile", profile},
                       {"AnchorX", Support::Measure(12)},
                       {"AnchorZ", Support::Measure(1)},
                       {"AnchorYAngle", Support::Measure(45)}});
    ExpectPlace(run, 14, 3);
}

TEST_F(ProfilePosition, agrees_with_a_naive_reference_on_random_profiles)
{
    const unsigned seed = 20250310;
    std::mt19937 random(seed);
    for (int round = 0; round < 300; ++round)
    {
        std::vector<zPoint16s> pairs(1 + random() % 50);
        long double x = 0, z = 0;
        zPoint64f top{0, -1e9}, left{1e9, 0};
        for (zPoint16s& pair : pairs)
        {
            pair = {static_cast<z16s>(random() % 20000), static_cast<z16s>(random() % 2000)};
            const zPoint64f point{-300 + 0.01 * pair.x, 5 + 0.001 * pair.y};
            top = point.y > top.y ? point : top;
            left = point.x < left.x ? point : left;
            x += point.x;
            z += point.y;
        }
        const auto profile = Support::PointProfile(pairs).Offset(-300, 0, 5).Scale(0.01, 1, 0.001);
        const auto count = static_cast<long double>(pairs.size());
        ExpectPlace(Measure("Top", profile), top.x, top.y);
        ExpectPlace(Measure("Left", profile), left.x, left.y);
        ExpectPlace(Measure("Average", profile), static_cast<double>(x / count), static_cast<double>(z / count));
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ", round " << round;
    }
}

TEST_F(ProfilePosition, draws_region_and_place_with_lines_across_the_data)
{
    const json box = {{"x", 11.25}, {"z", 0}, {"width", 2}, {"height", 100}};
    const auto line = [](const zPoint3d32f& a, const zPoint3d32f& b) {
        return TextOf("lines 1 ", 0xFFFFFF00U, " 0 0 ", a, ' ', b);
    };
    // The lines reach three times the box beyond its middle, which is 3.5 by 4 mm around (11.75, 2).
    EXPECT_EQ(Measure("Top", Hills(), InRegion(box)).Drawn(),
              (std::vector<std::string>{
                  "region2d (11.25, 0) (2, 100) 0", RayFrom({11.5, 0, 4}, {0, 0, 1}, 2, ToolColours::CASING),
                  RayFrom({11.5, 0, 4}, {-0.0F, -0.0F, -1}, 2, ToolColours::CASING),
                  RayFrom({11.5, 0, 4}, {1, 0, 0}, 2, ToolColours::CASING),
                  RayFrom({11.5, 0, 4}, {-1, -0.0F, -0.0F}, 2, ToolColours::CASING),
                  line({11.5, 0, -10}, {11.5, 0, 14}), line({1.25, 0, 4}, {22.25, 0, 4}), DotAt({11.5, 0, 4})}));
}

TEST_F(ProfilePosition, of_data_without_a_known_box_draws_the_dot_only)
{
    EXPECT_EQ(Measure("Top", Support::Profile({1, 7})).Drawn(), std::vector{DotAt({1, 0, 7})});
}

TEST_F(ProfilePosition, with_its_graphic_switched_off_sends_none)
{
    const ToolRun run(registry, "ProfilePosition", json::object(), {{"Profile", Hills()}}, {Disabled("Graphic")});
    EXPECT_EQ(run.Value("Z"), 4);
    EXPECT_FALSE(run.Message("Graphic"));
}
} // namespace
