#include "ToolRun.h"

#include <Support/Builders.h>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Support::NullPixel;

// Five by four samples at 10 + column, 20 + 2 * row mm, heights in halves of a mm.
Ta::Object<void*> Hills()
{
    return Support::Surface({{0, 1, 2, 3, 4}, {5, NullPixel, 7, 9, 9}, {-8, 11, -8, 13, 14}, {20, 16, 17, 18, 19}})
        .Offset(10, 20, 0)
        .Scale(1, 2, 0.5);
}

/// The tool with its region as a job gives it: centre (12.5, 23), 4 by 2 in columns 11 to 14 and rows 1 and 2 of the
/// hills.
class SurfacePosition : public testing::Test
{
protected:
    static nlohmann::json InRegion(nlohmann::json values)
    {
        nlohmann::json box = {{"x", 12.5}, {"y", 23}, {"z", 0}, {"width", 4}, {"length", 2}, {"height", 100}};
        box.update(values.value("Region", nlohmann::json::object()));
        values["Region"] = box;
        return values;
    }

    std::vector<Result> Measure(const nlohmann::json& values, const Ta::Object<void*>& message)
    {
        return MeasureSurface(registry, "SurfacePosition", InRegion(values), message);
    }

    ToolRun Run(const nlohmann::json& values, const std::vector<OutputSetup>& outputs = {})
    {
        return {registry, "SurfacePosition", InRegion(values), {{"Surface", Hills()}}, outputs};
    }

    ToolRegistry registry = RegistryOf({});
};

void ExpectPlace(const std::vector<Result>& results, double x, double y, double z)
{
    for (const auto& [output, expected] : {std::pair{"X", x}, std::pair{"Y", y}, std::pair{"Z", z}})
    {
        const Result result = ResultOf(results, output);
        EXPECT_EQ(result.state, ResultState::Value) << output;
        EXPECT_NEAR(result.value, expected, 1e-12) << output;
        EXPECT_EQ(result.units, "mm") << output;
    }
}

TEST_F(SurfacePosition, of_the_highest_point_looks_inside_the_region_only)
{
    // Outside there are 16 to 20.
    ExpectPlace(Measure(nlohmann::json::object(), Hills()), 14, 24, 7);
}

TEST_F(SurfacePosition, of_the_lowest_point_is_the_first_of_several)
{
    const auto results = Measure({{"Point", "Lowest"}, {"Region", {{"x", 12}, {"width", 4}}}}, Hills());
    ExpectPlace(results, 10, 24, -4);
}

TEST_F(SurfacePosition, of_the_centroid_leaves_invalid_samples_out)
{
    // Columns 11 to 14 of rows 1 and 2: invalid, 7, 9, 9 and 11, -8, 13, 14, that is seven points.
    const double x = (12.0 + 13 + 14 + 11 + 12 + 13 + 14) / 7;
    const double y = (3 * 22.0 + 4 * 24.0) / 7;
    const double z = 0.5 * (7 + 9 + 9 + 11 - 8 + 13 + 14) / 7;
    ExpectPlace(Measure({{"Point", "Centroid"}}, Hills()), x, y, z);
}

TEST_F(SurfacePosition, keeps_to_the_heights_of_its_region)
{
    // 2 to 5 mm are 4 to 10 counts.
    const auto results = Measure({{"Region", {{"z", 3.5}, {"height", 3}}}}, Hills());
    ExpectPlace(results, 13, 22, 4.5);
}

TEST_F(SurfacePosition, of_a_turned_region_looks_along_its_axes)
{
    // A strip of 0.2 mm through (12, 22) along the diagonal that climbs a sample in x and one in y: of the whole
    // samples only (10, 20), (12, 22) and (14, 24) lie on it.
    const auto results = Measure(
        {{"Point", "Centroid"}, {"Region", {{"x", 12}, {"y", 22}, {"width", 8}, {"length", 0.2}, {"zAngle", 45}}}},
        Hills());
    ExpectPlace(results, 12, 22, 0.5 * (0 + 7 + 14) / 3);
}

TEST_F(SurfacePosition, without_a_point_is_null)
{
    const auto results = Measure({{"Region", {{"x", 500}}}}, Hills());
    for (const char* const output : {"X", "Y", "Z"})
    {
        EXPECT_EQ(ResultOf(results, output).state, ResultState::Null) << output;
    }
}

TEST_F(SurfacePosition, gives_the_place_as_a_point_too)
{
    const zPoint3d64f position = TvPointFeatureMsg_Position(Run(nlohmann::json::object()).Message("Position").Get());
    EXPECT_NEAR(position.x, 14, 1e-12);
    EXPECT_NEAR(position.y, 24, 1e-12);
    EXPECT_NEAR(position.z, 7, 1e-12);
    EXPECT_EQ(Run({{"Region", {{"x", 500}}}}).Nulls(), (std::vector<std::string>{"X", "Y", "Z", "Position"}));
}

TEST_F(SurfacePosition, draws_its_region_and_the_place_with_lines_across)
{
    const auto ray = [](const zPoint3d32f& direction, float width, z32u colour) {
        return RayFrom({14, 24, 7}, direction, width, colour);
    };
    constexpr z32u yellow = 0xFFFFFF00;
    EXPECT_EQ(Run(nlohmann::json::object()).Drawn(),
              (std::vector<std::string>{"region3d (12.5, 23, 0) (4, 2, 100) 0", ray({0, 1, 0}, 2, ToolColours::CASING),
                                        ray({-0.0F, -1, -0.0F}, 2, ToolColours::CASING),
                                        ray({1, 0, 0}, 2, ToolColours::CASING),
                                        ray({-1, -0.0F, -0.0F}, 2, ToolColours::CASING), ray({0, 1, 0}, 1, yellow),
                                        ray({-0.0F, -1, -0.0F}, 1, yellow), ray({1, 0, 0}, 1, yellow),
                                        ray({-1, -0.0F, -0.0F}, 1, yellow), DotAt({14, 24, 7})}));
}

TEST_F(SurfacePosition, without_a_point_draws_its_region_alone)
{
    EXPECT_EQ(Run({{"Region", {{"x", 500}, {"zAngle", 90}}}}).Drawn(),
              (std::vector<std::string>{"region3d (500, 23, 0) (4, 2, 100) 1.5708"}));
}

TEST_F(SurfacePosition, with_its_graphic_switched_off_sends_none)
{
    const ToolRun run = Run(nlohmann::json::object(), {Disabled("Graphic")});
    EXPECT_EQ(run.Value("X"), 14);
    EXPECT_FALSE(run.Message("Graphic"));
}

TEST_F(SurfacePosition, of_a_point_surface_takes_the_places_of_its_points)
{
    const auto surface = Support::PointSurface({{{0, 0, 9}, {4, 3, 2}, {NullPixel, NullPixel, NullPixel}}})
                             .Offset(10, 20, 0)
                             .Scale(1, 1, 0.5);
    ExpectPlace(Measure(nlohmann::json::object(), surface), 14, 23, 1);
}

TEST_F(SurfacePosition, without_a_region_in_the_job_looks_at_the_middle_half)
{
    // Twenty by twenty samples a mm apart with a peak outside of the middle ten and a lower one inside.
    std::vector<std::vector<z16s>> rows(20, std::vector<z16s>(20, 0));
    rows[1][1] = 900;
    rows[9][12] = 400;
    const auto surface = Support::Surface(rows).Scale(1, 1, 0.01).BoundingBox({9.5, 9.5, 4.5, 19, 19, 9});
    ExpectPlace(MeasureSurface(registry, "SurfacePosition", nlohmann::json::object(), surface), 12, 9, 4);
}
} // namespace
