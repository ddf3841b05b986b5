#include "ToolRun.h"

#include <Host/JobRunner.h>

#include <Support/Builders.h>

#include <cmath>
#include <limits>
#include <optional>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Support::CircleFeature;
using Support::LineFeature;
using Support::PlaneFeature;
using Support::PointFeature;

using Message = Ta::Object<void*>;

const ToolRegistry& Registry()
{
    static const ToolRegistry registry = RegistryOf({});
    return registry;
}

ToolRun Measure(const Message& first, const Message& second, const std::vector<OutputSetup>& outputs = {})
{
    return {Registry(), "FeatureDistance", nlohmann::json::object(), {{"First", first}, {"Second", second}}, outputs};
}

struct WayCase
{
    const char* name;
    Message first;
    Message second;
    double distance;
    zPoint3d64f way;
};

class Distance : public testing::TestWithParam<WayCase>
{
};

void ExpectWay(const ToolRun& run, double distance, const zPoint3d64f& way)
{
    EXPECT_NEAR(run.Value("Distance"), distance, 1e-12);
    EXPECT_NEAR(run.Value("X"), way.x, 1e-12);
    EXPECT_NEAR(run.Value("Y"), way.y, 1e-12);
    EXPECT_NEAR(run.Value("Z"), way.z, 1e-12);
    EXPECT_EQ(run.Nulls(), std::vector<std::string>{"Angle"});
    EXPECT_EQ(run.Units("Distance"), "mm");
}

TEST_P(Distance, is_the_shortest_way_from_the_first_to_the_second)
{
    ExpectWay(Measure(GetParam().first, GetParam().second), GetParam().distance, GetParam().way);
}

TEST_P(Distance, is_the_same_the_other_way_round)
{
    const zPoint3d64f& way = GetParam().way;
    ExpectWay(Measure(GetParam().second, GetParam().first), GetParam().distance, {-way.x, -way.y, -way.z});
}

INSTANTIATE_TEST_SUITE_P(
    , Distance,
    testing::Values(
        WayCase{"points", PointFeature({1, 2, 3}), PointFeature({4, 6, 3}), 5, {3, 4, 0}},
        WayCase{"same_points", PointFeature({1, 2, 3}), PointFeature({1, 2, 3}), 0, {0, 0, 0}},
        WayCase{"point_and_line", PointFeature({0, 0, 5}), LineFeature({10, 0, 0}, {2, 0, 0}), 5, {0, 0, -5}},
        // The foot is half way between (0, 0, 0) and (2, 2, 0).
        WayCase{"point_and_slanted_line",
                PointFeature({2, 0, 0}),
                LineFeature({9, 9, 0}, {-3, -3, 0}),
                std::sqrt(2.0),
                {-1, 1, 0}},
        WayCase{"point_above_a_plane", PointFeature({1, 1, 7}), PlaneFeature({0, 0, 1}, 2), 5, {0, 0, -5}},
        WayCase{"point_below_a_plane", PointFeature({1, 1, -1}), PlaneFeature({0, 0, 1}, 2), 3, {0, 0, 3}},
        WayCase{"plane_with_a_long_normal", PointFeature({1, 1, 7}), PlaneFeature({0, 0, 2}, 4), 5, {0, 0, -5}},
        WayCase{"slanted_plane", PointFeature({0, 0, 0}), PlaneFeature({0.6, 0, 0.8}, 5), 5, {3, 0, 4}},
        WayCase{"upright_plane", PointFeature({1, 1, 1}), PlaneFeature({0, -1, 0}, 3), 4, {0, -4, 0}},
        WayCase{"circle_and_point", CircleFeature({3, 4, 0}, {0, 0, 1}, 2), PointFeature({0, 0, 0}), 5, {-3, -4, 0}},
        WayCase{
            "circles", CircleFeature({3, 4, 0}, {0, 0, 1}, 2), CircleFeature({3, 4, 7}, {1, 0, 0}, 1), 7, {0, 0, 7}},
        WayCase{"circle_and_plane", CircleFeature({3, 4, 9}, {1, 0, 0}, 2), PlaneFeature({0, 0, 1}, 2), 7, {0, 0, -7}}),
    [](const auto& test) { return std::string(test.param.name); });

struct AngleCase
{
    const char* name;
    Message first;
    Message second;
    double angle;
};

class Angle : public testing::TestWithParam<AngleCase>
{
};

void ExpectAngle(const ToolRun& run, double angle)
{
    EXPECT_NEAR(run.Value("Angle"), angle, 1e-12);
    EXPECT_EQ(run.Nulls(), (std::vector<std::string>{"Distance", "X", "Y", "Z"}));
    EXPECT_EQ(run.Units("Angle"), "deg");
}

TEST_P(Angle, is_from_0_to_90_degrees_either_way_round)
{
    ExpectAngle(Measure(GetParam().first, GetParam().second), GetParam().angle);
    ExpectAngle(Measure(GetParam().second, GetParam().first), GetParam().angle);
}

INSTANTIATE_TEST_SUITE_P(
    , Angle,
    testing::Values(
        AngleCase{"lines", LineFeature({0, 0, 0}, {1, 0, 0}), LineFeature({5, 6, 7}, {3, 3, 0}), 45},
        AngleCase{"lines_that_point_apart", LineFeature({0, 0, 0}, {1, 0, 0}), LineFeature({5, 6, 7}, {-3, 3, 0}), 45},
        AngleCase{"parallel_lines", LineFeature({0, 0, 0}, {1, 0, 0}), LineFeature({0, 1, 0}, {-2, 0, 0}), 0},
        AngleCase{"nearly_parallel_lines", LineFeature({0, 0, 0}, {1, 0, 0}), LineFeature({0, 1, 0}, {1, 1e-9, 0}),
                  1e-9 * 180 / std::numbers::pi},
        AngleCase{"crossed_lines", LineFeature({0, 0, 0}, {1, 0, 0}), LineFeature({0, 1, 0}, {0, 0, 4}), 90},
        AngleCase{"line_and_plane", LineFeature({0, 0, 0}, {2, 0, 2}), PlaneFeature({0, 0, 1}, 3), 45},
        AngleCase{"line_in_a_plane", LineFeature({0, 0, 0}, {2, 5, 0}), PlaneFeature({0, 0, 1}, 3), 0},
        AngleCase{"line_across_a_plane", LineFeature({0, 0, 0}, {0, 0, -2}), PlaneFeature({0, 0, 3}, 3), 90},
        AngleCase{"planes", PlaneFeature({0, 0, 1}, 0), PlaneFeature({0, 3, 3}, 9), 45},
        AngleCase{"planes_that_face_each_other", PlaneFeature({0, 0, 1}, 0), PlaneFeature({0, 0, -1}, 9), 0},
        AngleCase{"crossed_planes", PlaneFeature({0, 0, 1}, 0), PlaneFeature({1, -1, 0}, 9), 90}),
    [](const auto& test) { return std::string(test.param.name); });

constexpr double nothing = zNULL_64F;
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
const std::vector<std::string> ALL_MEASUREMENTS = {"Distance", "X", "Y", "Z", "Angle"};

struct MissingCase
{
    const char* name;
    Message feature;
};

class Feature_without_place_or_direction : public testing::TestWithParam<MissingCase>
{
};

TEST_P(Feature_without_place_or_direction, gives_nulls_and_is_not_drawn)
{
    const Message point = PointFeature({1, 2, 3});
    const Message line = LineFeature({1, 2, 3}, {0, 1, 0});
    for (const ToolRun& run : {Measure(GetParam().feature, point), Measure(point, GetParam().feature)})
    {
        EXPECT_EQ(run.Nulls(), ALL_MEASUREMENTS);
        EXPECT_EQ(run.Drawn(), std::vector{DotAt({1, 2, 3})});
    }
    EXPECT_EQ(Measure(GetParam().feature, line).Nulls(), ALL_MEASUREMENTS);
    EXPECT_EQ(Measure(line, GetParam().feature).Nulls(), ALL_MEASUREMENTS);
}

INSTANTIATE_TEST_SUITE_P(, Feature_without_place_or_direction,
                         testing::Values(MissingCase{"null_point", PointFeature({1, 2, nothing})},
                                         MissingCase{"point_that_is_no_number", PointFeature({1, notANumber, 2})},
                                         MissingCase{"null_centre", CircleFeature({nothing, 1, 2}, {0, 0, 1}, 3)},
                                         MissingCase{"null_line", LineFeature({1, 2, 3}, {nothing, nothing, nothing})},
                                         MissingCase{"line_without_direction", LineFeature({1, 2, 3}, {0, 0, 0})},
                                         MissingCase{"line_that_is_nowhere",
                                                     LineFeature({notANumber, 2, 3}, {1, 0, 0})},
                                         MissingCase{"plane_without_normal", PlaneFeature({0, 0, 0}, 3)},
                                         MissingCase{"plane_without_distance", PlaneFeature({0, 0, 1}, nothing)},
                                         MissingCase{"plane_at_no_number", PlaneFeature({0, 0, 1}, notANumber)}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(FeatureDistance, of_what_another_tool_did_not_find_is_null_and_so_is_the_graphic)
{
    std::vector<std::string> everything = ALL_MEASUREMENTS;
    everything.emplace_back("Graphic");
    EXPECT_EQ(Measure(PointFeature({1, 2, 3}), Support::NullMessage()).Nulls(), everything);
    EXPECT_EQ(Measure(Support::NullMessage(), PointFeature({1, 2, 3})).Nulls(), everything);
    // A direction without end is a failure of the library.
    EXPECT_EQ(Measure(PointFeature({1, 2, 3}), LineFeature({0, 0, 0}, {notANumber, 0, 0})).Nulls(), everything);
}

using Real = long double;

struct Vector
{
    Real x, y, z;

    friend Real Dot(const Vector& a, const Vector& b)
    {
        return a.x * b.x + a.y * b.y + a.z * b.z;
    }

    friend Vector Cross(const Vector& a, const Vector& b)
    {
        return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    }
};

Real Length(const Vector& a)
{
    return std::sqrt(Dot(a, a));
}

TEST(FeatureDistance, agrees_with_the_formulas_in_long_doubles_on_random_features)
{
    const unsigned seed = 20250309;
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> number(-100, 100);
    for (int round = 0; round < 300; ++round)
    {
        const zPoint3d64f p{number(random), number(random), number(random)};
        const zPoint3d64f a{number(random), number(random), number(random)};
        const zPoint3d64f d{number(random), number(random), number(random)};
        const double distance = number(random);
        const Vector direction{d.x, d.y, d.z};
        const Vector between{Real(p.x) - a.x, Real(p.y) - a.y, Real(p.z) - a.z};
        const Real toLine = Length(Cross(between, direction)) / Length(direction);
        const Real toPlane = std::abs(Dot({p.x, p.y, p.z}, direction) - distance) / Length(direction);
        const Real angle = std::asin(std::abs(Dot(between, direction)) / Length(between) / Length(direction));
        EXPECT_NEAR(Measure(PointFeature(p), LineFeature(a, d)).Value("Distance"), static_cast<double>(toLine), 1e-11);
        EXPECT_NEAR(Measure(PointFeature(p), PlaneFeature(d, distance)).Value("Distance"), static_cast<double>(toPlane),
                    1e-11);
        const zPoint3d64f along{static_cast<double>(between.x), static_cast<double>(between.y),
                                static_cast<double>(between.z)};
        EXPECT_NEAR(Measure(LineFeature(a, along), PlaneFeature(d, distance)).Value("Angle"),
                    static_cast<double>(angle * 180 / std::numbers::pi_v<Real>), 1e-10);
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", round " << round;
    }
}

TEST(FeatureDistance, draws_both_features_and_the_dimension_between_them)
{
    const auto toPlane = Measure(PointFeature({1, 1, 7}), PlaneFeature({0, 0, 1}, 2)).Drawn();
    EXPECT_EQ(toPlane, (std::vector<std::string>{DotAt({1, 1, 7}), "plane (0, 0, 1) 2", CasingOf({1, 1, 7}, {1, 1, 2}),
                                                 DimensionOf({1, 1, 7}, {1, 1, 2})}));
    const auto toLine = Measure(LineFeature({5, 0, 0}, {2, 0, 0}), CircleFeature({1, 3, 0}, {0, 0, 1}, 2)).Drawn();
    EXPECT_EQ(toLine,
              (std::vector<std::string>{RayFrom({5, 0, 0}, {1, 0, 0}, 2, ToolColours::FOUND),
                                        RayFrom({5, 0, 0}, {-1, -0.0F, -0.0F}, 2, ToolColours::FOUND), DotAt({1, 3, 0}),
                                        CasingOf({1, 0, 0}, {1, 3, 0}), DimensionOf({1, 0, 0}, {1, 3, 0})}));
}

TEST(FeatureDistance, draws_the_angle_at_the_place_of_the_first_feature)
{
    const auto drawn = Measure(LineFeature({5, 0, 1}, {2, 0, 0}), LineFeature({9, 9, 9}, {0, 0, -7})).Drawn();
    ASSERT_EQ(drawn.size(), 10U);
    EXPECT_EQ(drawn[4], CasingOf({5, 0, 1}, {11.25, 0, 1}));
    EXPECT_EQ(drawn[5], CasingOf({5, 0, 1}, {5, 0, -5.25}));
    EXPECT_EQ(drawn[6].find(TextOf("lines 2 ", ToolColours::CASING, " 1 1 ", zPoint3d32f{10, 0, 1})), 0U) << drawn[6];
    EXPECT_EQ(drawn[9].find(TextOf("lines 1 ", 0xFFFFFF00U, " 1 1 ", zPoint3d32f{10, 0, 1})), 0U) << drawn[9];
}

TEST(FeatureDistance, with_its_graphic_switched_off_sends_none)
{
    const ToolRun run = Measure(PointFeature({1, 1, 7}), PlaneFeature({0, 0, 1}, 2), {Disabled("Graphic")});
    EXPECT_EQ(run.Value("Distance"), 5);
    EXPECT_FALSE(run.Message("Graphic"));
}
} // namespace
