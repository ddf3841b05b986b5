#include <Host/CsvReader.h>

#include "ScanTestFiles.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <locale>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;

constexpr std::int16_t nullHeight = HeightMap::nullHeight;
using Heights = std::vector<std::int16_t>;
using Numbers = std::vector<double>;

double XOf(const ProfileScan& profile, std::size_t i)
{
    const double count = profile.positions.empty() ? static_cast<double>(i) : profile.positions.at(i);
    return profile.offsetMm.x + profile.scaleMm.x * count;
}

double ZOf(const ProfileScan& profile, std::size_t i)
{
    return profile.offsetMm.z + profile.scaleMm.z * profile.heights.at(i);
}

/// A linear equation: what the three unknowns are multiplied by, and the right side.
using Equation = std::array<double, 4>;

/// The unknowns that fit the equations best, by Gauss on the normal equations.
std::array<double, 3> LeastSquares(const std::vector<Equation>& equations)
{
    double normal[3][4] = {};
    for (const Equation& equation : equations)
    {
        for (std::size_t row = 0; row < 3; ++row)
        {
            for (std::size_t column = 0; column < 4; ++column)
            {
                normal[row][column] += equation[row] * equation[column];
            }
        }
    }
    for (std::size_t pivot = 0; pivot < 3; ++pivot)
    {
        for (std::size_t row = 0; row < 3; ++row)
        {
            const double factor = row == pivot ? 0 : normal[row][pivot] / normal[pivot][pivot];
            for (std::size_t column = 0; column < 4; ++column)
            {
                normal[row][column] -= factor * normal[pivot][column];
            }
        }
    }
    return {normal[0][3] / normal[0][0], normal[1][3] / normal[1][1], normal[2][3] / normal[2][2]};
}

class CsvReaderTest : public testing::Test
{
protected:
    Scan Read(const std::string& text, const char* options)
    {
        WriteBytes(file, text);
        return ReadScan(file, json::parse(options), "job.json, scan 1");
    }

    ProfileScan Profile(const std::string& text, const char* options = R"({"unit": "mm"})")
    {
        return std::get<ProfileScan>(Read(text, options));
    }

    HeightMap Map(const std::string& text, const char* options = R"({"unit": "mm"})")
    {
        return std::get<HeightMap>(Read(text, options));
    }

    std::string Refusal(const std::string& text, const char* options = R"({"unit": "mm"})")
    {
        const std::string message = ErrorOf([&] { return Read(text, options); });
        EXPECT_TRUE(message.starts_with(file.string() + ": ")) << message;
        return message.substr(std::min(message.size(), file.string().size() + 2));
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "scan.csv";
};

// Real scans and what their publishers say of them.

TEST_F(CsvReaderTest, Real_profile_with_uneven_steps_keeps_positions_of_its_own)
{
    const auto profile = std::get<ProfileScan>(ReadScan(ExampleScan("D906-5.txt")));
    ASSERT_EQ(profile.heights.size(), 4012u);
    ASSERT_EQ(profile.positions.size(), 4012u);
    EXPECT_EQ(profile.validCount, 4012u);
    EXPECT_EQ(std::ranges::min(profile.positions), -32767);
    EXPECT_EQ(std::ranges::max(profile.positions), 32767);
    EXPECT_NEAR(profile.offsetMm.x - 32767 * profile.scaleMm.x, 0.000108, 1e-12);
    EXPECT_NEAR(profile.offsetMm.x + 32767 * profile.scaleMm.x, 1.090071, 1e-12);
    EXPECT_NEAR(profile.offsetMm.z - 32767 * profile.scaleMm.z, 1.563948, 1e-12);
    EXPECT_NEAR(profile.offsetMm.z + 32767 * profile.scaleMm.z, 2.592746, 1e-12);
    EXPECT_TRUE(HasNote(profile, "x goes back 246 times"));
}

TEST_F(CsvReaderTest, Nose_of_the_real_tool_tip_has_the_known_radius)
{
    const auto profile = std::get<ProfileScan>(ReadScan(ExampleScan("D906-5.txt")));
    std::vector<Equation> equations;
    for (std::size_t i = 0; i < profile.heights.size(); ++i)
    {
        const double x = XOf(profile, i) - 0.5;
        const double z = ZOf(profile, i) - 2.5;
        if (ZOf(profile, i) > 2.592746 - 0.09)
        {
            equations.push_back({2 * x, 2 * z, 1, x * x + z * z});
        }
    }
    EXPECT_EQ(equations.size(), 669u);
    const auto [x, z, rest] = LeastSquares(equations);
    EXPECT_NEAR(std::sqrt(rest + x * x + z * z), 0.1961, 0.00005);
}

TEST_F(CsvReaderTest, Real_profile_with_even_steps_and_empty_fields_is_on_a_grid)
{
    const auto profile = std::get<ProfileScan>(ReadScan(ExampleScan("1021-WLI-2D.csv")));
    ASSERT_EQ(profile.heights.size(), 1143u);
    EXPECT_TRUE(profile.positions.empty());
    EXPECT_NEAR(profile.scaleMm.x, 0.8711816e-3, 0.5e-10);
    EXPECT_NEAR(profile.offsetMm.x, 0.871181614525112e-3, 1e-15);
    EXPECT_EQ(profile.validCount, 1143u - 144u);
    for (std::size_t i = 0; i < 1143; ++i)
    {
        ASSERT_EQ(profile.heights[i] == nullHeight, i < 77 || i >= 1143 - 67) << i;
    }
    EXPECT_NEAR(profile.offsetMm.z - 32767 * profile.scaleMm.z, -0.478397e-3, 0.5e-9);
    EXPECT_NEAR(profile.offsetMm.z + 32767 * profile.scaleMm.z, 0.780498e-3, 0.5e-9);
    EXPECT_TRUE(HasNote(profile, "Lines before the data were skipped: 1, the last one \"X "));
}

TEST_F(CsvReaderTest, Real_points_of_an_even_grid_are_a_height_map)
{
    const auto map = ReadHeightMap(ExampleScan("nanovea-test2.txt"));
    ASSERT_EQ(map.width, 101u);
    ASSERT_EQ(map.length, 101u);
    EXPECT_EQ(map.validCount, 10201u);
    EXPECT_DOUBLE_EQ(map.scaleMm.x, 0.005);
    EXPECT_DOUBLE_EQ(map.scaleMm.y, 0.005);
    EXPECT_EQ(map.offsetMm.x, 0);
    EXPECT_EQ(map.offsetMm.y, 0);
    EXPECT_NEAR(map.offsetMm.z - 32767 * map.scaleMm.z, 0.1976443, 1e-12);
    EXPECT_NEAR(map.offsetMm.z + 32767 * map.scaleMm.z, 0.3044507, 1e-12);
    // The first line, and line 104, which is the first of the second row.
    EXPECT_NEAR(HeightMm(map, 0, 0), 0.2184546, map.scaleMm.z / 2 + 1e-12);
    EXPECT_NEAR(HeightMm(map, 0, 1), 0.2191168, map.scaleMm.z / 2 + 1e-12);
}

TEST_F(CsvReaderTest, Plane_of_the_real_grid_is_the_known_one)
{
    const auto map = ReadHeightMap(ExampleScan("nanovea-test2.txt"));
    std::vector<Equation> equations;
    for (std::size_t i = 0; i < map.heights.size(); ++i)
    {
        const double x = map.offsetMm.x + map.scaleMm.x * static_cast<double>(i % map.width);
        const double y = map.offsetMm.y + map.scaleMm.y * static_cast<double>(i / map.width);
        equations.push_back({x, y, 1, HeightMm(map, i % map.width, i / map.width) * 1000});
    }
    const auto [a, b, c] = LeastSquares(equations);
    EXPECT_NEAR(a, 17.62289, 0.0002);
    EXPECT_NEAR(b, 112.53037, 0.0002);
    EXPECT_NEAR(c, 214.83110, 0.0002);
    double squares = 0;
    for (const auto& [x, y, one, z] : equations)
    {
        squares += std::pow(z - a * x - b * y - c, 2);
    }
    EXPECT_NEAR(std::sqrt(squares / 10201), 11.6325, 0.0001);
}

// Profiles.

TEST_F(CsvReaderTest, Even_profile_is_on_a_grid)
{
    const auto profile =
        Profile("x;z\n1,0;5\n1,5;7\n2,0;6\n", R"({"unit": ["mm", "mm", "um"], "offset": [10, 20, 30]})");
    EXPECT_TRUE(profile.positions.empty());
    EXPECT_EQ(profile.heights.size(), 3u);
    EXPECT_DOUBLE_EQ(profile.scaleMm.x, 0.5);
    EXPECT_DOUBLE_EQ(profile.offsetMm.x, 11);
    EXPECT_DOUBLE_EQ(profile.offsetMm.y, 20);
    EXPECT_NEAR(ZOf(profile, 0), 30.005, 1e-12);
    EXPECT_NEAR(ZOf(profile, 1), 30.007, 1e-12);
    EXPECT_NEAR(ZOf(profile, 2), 30.006, 2e-8);
    EXPECT_TRUE(profile.intensity.empty());
}

TEST_F(CsvReaderTest, Falling_and_uneven_x_keep_their_order)
{
    for (const char* const text : {"3 1\n2 2\n1 3\n", "1 1\n3 2\n2 3\n", "1 1\n1 2\n1 3\n"})
    {
        const auto profile = Profile(text);
        ASSERT_EQ(profile.positions.size(), 3u) << text;
        EXPECT_EQ(profile.heights, (Heights{-32767, 0, 32767})) << text;
        for (std::size_t i = 0; i < 3; ++i)
        {
            EXPECT_NEAR(XOf(profile, i), text[4 * i] - '0', 2e-5) << text;
        }
    }
}

TEST_F(CsvReaderTest, Sample_without_x_or_z_is_invalid)
{
    const auto even = Profile("0;1\n1;\n;5\n3;nan\n4;2\nnan;7\n6;inf\n");
    EXPECT_TRUE(even.positions.empty());
    EXPECT_DOUBLE_EQ(even.scaleMm.x, 1);
    EXPECT_EQ(even.heights, (Heights{-32767, nullHeight, nullHeight, nullHeight, 32767, nullHeight, nullHeight}));
    EXPECT_EQ(even.validCount, 2u);

    const auto uneven = Profile("0;1\n1;\n;5\n9;2\n");
    EXPECT_EQ(uneven.heights, (Heights{-32767, nullHeight, nullHeight, 32767}));
    EXPECT_EQ(uneven.positions, (Heights{-32767, nullHeight, nullHeight, 32767}));
    EXPECT_EQ(uneven.validCount, 2u);
}

TEST_F(CsvReaderTest, First_samples_may_be_without_x)
{
    const auto profile = Profile("nan;1\n;2\n4;3\n6;4\n");
    EXPECT_TRUE(profile.positions.empty());
    EXPECT_DOUBLE_EQ(XOf(profile, 0), 0);
    EXPECT_DOUBLE_EQ(XOf(profile, 3), 6);
    EXPECT_EQ(profile.validCount, 2u);
}

TEST_F(CsvReaderTest, Profile_of_one_sample_has_a_position)
{
    const auto profile = Profile("7;3\n");
    ASSERT_EQ(profile.positions.size(), 1u);
    EXPECT_EQ(XOf(profile, 0), 7);
    EXPECT_EQ(ZOf(profile, 0), 3);
}

TEST_F(CsvReaderTest, Profile_without_valid_sample_is_no_error)
{
    const auto profile = Profile("0;nan\n5;nan\n6;nan\n");
    EXPECT_EQ(profile.validCount, 0u);
    EXPECT_EQ(profile.heights, Heights(3, nullHeight));
    EXPECT_EQ(profile.positions, Heights(3, nullHeight));
    EXPECT_TRUE(HasNote(profile, "no valid sample"));
}

TEST_F(CsvReaderTest, Heights_of_the_invalid_value_are_null)
{
    const auto profile = Profile("0;-99,5\n1;2\n2;3\n", R"({"unit": "mm", "invalid": -99.5})");
    EXPECT_EQ(profile.heights, (Heights{nullHeight, -32767, 32767}));
}

TEST_F(CsvReaderTest, Profile_of_heights_alone_takes_its_spacing_from_the_options)
{
    const auto profile =
        Profile("5\n\n6\n7\n", R"({"layout": "profile", "spacing": [0.25, 1, 0.001], "offset": [3, 0, 0]})");
    EXPECT_TRUE(profile.positions.empty());
    EXPECT_DOUBLE_EQ(profile.scaleMm.x, 0.25);
    EXPECT_DOUBLE_EQ(profile.offsetMm.x, 3);
    EXPECT_NEAR(ZOf(profile, 2), 0.007, 1e-12);
}

TEST_F(CsvReaderTest, Columns_are_named_by_number_or_by_the_head_line)
{
    const std::string text = "no,height,grey,x\n1,5,10,0\n2,6,,1\n3,7,254.6,2\n";
    for (const char* const columns :
         {R"({"x": 4, "z": 2, "intensity": 3})", R"({"x": "x", "z": "height", "intensity": "grey"})"})
    {
        const auto profile = Profile(text, (std::string(R"({"unit": "mm", "columns": )") + columns + "}").c_str());
        EXPECT_EQ(profile.heights, (Heights{-32767, 0, 32767}));
        EXPECT_DOUBLE_EQ(profile.scaleMm.x, 1);
        EXPECT_EQ(profile.intensity, (std::vector<std::uint8_t>{10, 0, 255}));
    }
}

// Points on a grid.

struct GridCase
{
    const char* name;
    const char* text;
};

/// The lines, each with its height, of one digit, once more.
std::string WithIntensity(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const bool lineEnds = text[i] == '\n' && i > 0 && text[i - 1] != '\n';
        result += lineEnds ? std::string{' ', text[i - 1], '\n'} : std::string{text[i]};
    }
    return result;
}

class Points_of_a_grid : public CsvReaderTest, public testing::WithParamInterface<GridCase>
{
};

TEST_P(Points_of_a_grid, are_one_map_in_any_order)
{
    const auto map =
        Map(WithIntensity(GetParam().text), R"({"unit": "mm", "columns": {"x": 1, "y": 2, "z": 3, "intensity": 4}})");
    ASSERT_EQ(map.width, 3u);
    ASSERT_EQ(map.length, 2u);
    EXPECT_DOUBLE_EQ(map.offsetMm.x, 10);
    EXPECT_DOUBLE_EQ(map.offsetMm.y, -1);
    EXPECT_DOUBLE_EQ(map.scaleMm.x, 2);
    EXPECT_DOUBLE_EQ(map.scaleMm.y, 0.5);
    EXPECT_EQ(map.intensity, (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6}));
    for (std::size_t i = 0; i < 6; ++i)
    {
        EXPECT_NEAR(HeightMm(map, i % 3, i / 3), static_cast<double>(i + 1), 1e-4);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , Points_of_a_grid,
    testing::Values(GridCase{"x_fastest", "10 -1 1\n12 -1 2\n14 -1 3\n\n10 -0.5 4\n12 -0.5 5\n14 -0.5 6\n"},
                    GridCase{"x_falling", "14 -1 3\n12 -1 2\n10 -1 1\n14 -0.5 6\n12 -0.5 5\n10 -0.5 4\n"},
                    GridCase{"y_falling", "10 -0.5 4\n12 -0.5 5\n14 -0.5 6\n10 -1 1\n12 -1 2\n14 -1 3\n"},
                    GridCase{"both_falling", "14 -0.5 6\n12 -0.5 5\n10 -0.5 4\n14 -1 3\n12 -1 2\n10 -1 1\n"},
                    GridCase{"y_fastest", "10 -1 1\n10 -0.5 4\n12 -1 2\n12 -0.5 5\n14 -1 3\n14 -0.5 6\n"},
                    GridCase{"y_fastest_and_falling", "10 -0.5 4\n10 -1 1\n12 -0.5 5\n12 -1 2\n14 -0.5 6\n14 -1 3\n"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(CsvReaderTest, Point_of_the_grid_without_height_is_null)
{
    const auto map = Map("0,0,1\n1,0,\n0,1,-1\n1,1,2\n", R"({"unit": "mm", "invalid": -1})");
    EXPECT_EQ(map.heights, (Heights{-32767, nullHeight, nullHeight, 32767}));
    EXPECT_EQ(map.validCount, 2u);
}

struct Refused
{
    const char* name;
    const char* text;
    const char* options;
    const char* says;
};

class Csv_text : public CsvReaderTest, public testing::WithParamInterface<Refused>
{
};

TEST_P(Csv_text, is_refused_with_place_and_reason)
{
    EXPECT_TRUE(Contains(Refusal(GetParam().text, GetParam().options), GetParam().says));
}

constexpr const char* mm = R"({"unit": "mm"})";
constexpr const char* spaced = R"({"spacing": [1, 1, 1]})";

INSTANTIATE_TEST_SUITE_P(
    Grid, Csv_text,
    testing::Values(
        Refused{"point_missing", "0 0 1\n1 0 2\n2 0 3\n0 1 4\n2 1 6\n0 2 7\n1 2 8\n2 2 9\n", mm,
                "line 5: the points make no even grid from here on: x is 2, where a grid of 3 x 2 points has 1"},
        Refused{"point_moved", "0 0 1\n1 0 2\n2 0 3\n\n# row\n0 1 4\n1.2 1 5\n2 1 6\n", mm,
                "line 7: the points make no even grid from here on: x is 1.2, where a grid of 3 x 2 points has 1"},
        Refused{"row_moved", "0 0 1\n1 0 2\n0 1 3\n1 1 4\n0 2.5 5\n1 2.5 6\n0 3 7\n1 3 8\n", mm,
                "line 5: the points make no even grid from here on: y is 2.5, where a grid of 2 x 4 points has 2"},
        Refused{"end_missing", "0 0 1\n1 0 2\n2 0 3\n0 1 4\n1 1 5\n2 1 6\n0 2 7\n", mm,
                "line 7: the last row ends after 1 of 3 points"},
        Refused{"there_and_back", "0 0 1\n1 0 2\n2 0 3\n2 1 4\n1 1 5\n0 1 6\n", mm, "line 4: "},
        Refused{"one_row", "0 0 1\n1 0 2\n2 0 3\n", mm, "line 3: 3 points and one row along x make no grid"},
        Refused{"one_point", "0 0 1\n", mm, "line 1: 1 point along "},
        Refused{"same_point", "0 0 1\n0 0 1\n0 0 1\n", mm, "line 2: 1 point along x make no grid"},
        Refused{"same_rows", "0 0 1\n1 0 1\n0 0 1\n1 0 1\n", mm, "line 3: y is the same in all rows"},
        Refused{"no_x", "0;0;1\n;0;2\n0;1;3\n1;1;4\n", mm, "line 2: a point of the grid has no x or no y"},
        Refused{"beyond_numbers", "-1e308 0 1\n1e308 0 1\n-1e308 1 1\n1e308 1 1\n", mm, "x: x from -1e+308 to 1e+308"}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Fields, Csv_text,
    testing::Values(
        Refused{"too_few", "1 2\n3 4\n5\n", mm, "line 3: 1 field, where line 1 has 2"},
        Refused{"too_many", "x z\n1 2\n3 4 5\n3 4\n", mm, "line 3: 3 fields, where line 2 has 2"},
        Refused{"foot", "1;2\n3;4\nend of data\n", mm, "line 3: 1 field, where line 1 has 2"},
        Refused{"word", "1;2\n3;bad\n5;6\n", mm, "line 2, column 2: \"bad\" is not a number"},
        Refused{"too_large", "1;2\n3;1e999\n5;6\n", mm, "line 2, column 2: \"1e999\" is beyond the range of numbers"},
        Refused{"other_mark", "1,5;2\n3.5;4\n5,5;6\n", mm, "line 2, column 1: \"3.5\" is not a number"},
        Refused{"intensity", "0 1 256\n1 1 0\n", R"({"unit": "mm", "columns": {"x": 1, "z": 2, "intensity": 3}})",
                "line 1, column 3: \"256\" is no intensity"},
        Refused{"steers_the_terminal", "1;2\n1;2\n3;\x1b[31m\n", mm, "first bytes: "}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Options, Csv_text,
    testing::Values(
        Refused{"no_unit", "1 2\n", "{}", "\"unit\": the file does not tell the unit"},
        Refused{"nothing_known", "1 2 3 4\n", "{}", "\"layout\": 4 columns of numbers do not tell what they are"},
        Refused{"one_column", "1\n2\n", mm, "\"layout\": 1 columns of numbers"},
        Refused{"no_spacing", "1 2\n", R"({"layout": "grid"})", "\"spacing\": the file does not tell the distance"},
        Refused{"grid_with_unit", "1 2\n", R"({"unit": "mm", "spacing": [1, 1, 1]})",
                "\"unit\": a grid of heights takes"},
        Refused{"grid_with_columns", "1 2\n", R"({"layout": "grid", "columns": {"z": 1}, "spacing": [1, 1, 1]})",
                "\"columns\": a grid of heights takes"},
        Refused{"profile_with_spacing", "1 2\n", R"({"layout": "profile", "unit": "mm", "spacing": [1, 1, 1]})",
                "\"spacing\": a profile with x takes"},
        Refused{"heights_with_unit", "1\n", R"({"layout": "profile", "unit": "mm", "spacing": [1, 1, 1]})",
                "\"unit\": a profile without x takes"},
        Refused{"profile_with_axis", "1 2\n", R"({"unit": "mm", "xAxis": "rows"})", "\"xAxis\": a profile takes"},
        Refused{"profile_of_three", "1 2 3\n", R"({"unit": "mm", "layout": "profile"})",
                "\"columns\": 3 columns of numbers do not tell which are those of a profile"},
        Refused{"profile_with_y", "1 2 3\n",
                R"({"unit": "mm", "layout": "profile", "columns": {"x": 1, "y": 2, "z": 3}})",
                "\"columns\": a profile has no y"},
        Refused{"points_of_two", "1 2\n", R"({"unit": "mm", "layout": "points"})",
                "\"columns\": 2 columns of numbers do not tell which are those of points"},
        Refused{"points_without_y", "1 2\n", R"({"unit": "mm", "layout": "points", "columns": {"x": 1, "z": 2}})",
                "\"columns\": points have x, y and z"},
        Refused{"points_with_spacing", "1 2 3\n", R"({"unit": "mm", "layout": "points", "spacing": [1, 1, 1]})",
                "\"spacing\": a scan of points takes"},
        Refused{"column_number", "1 2\n", R"({"unit": "mm", "columns": {"x": 1, "z": 3}})",
                "\"columns\": there is no column 3. Line 1 has 2 columns"},
        Refused{"column_name", "x z\n1 2\n", R"({"unit": "mm", "columns": {"x": "x", "z": "height"}})",
                "\"columns\": there is no column of the name \"height\". The head line has: x, z"},
        Refused{"column_name_without_head", "1 2\n", R"({"unit": "mm", "columns": {"x": "x", "z": 2}})",
                "The file has no head line"},
        Refused{"column_twice", "1 2\n", R"({"unit": "mm", "columns": {"x": 2, "z": 2}})",
                "\"columns\": column 2 is named twice"}),
    [](const auto& test) { return std::string(test.param.name); });

// Matrices of heights.

TEST_F(CsvReaderTest, Matrix_is_a_height_map)
{
    const auto map = Map("Heights\n1,2,\n4,nan,6\n", R"({"spacing": [0.1, 0.2, 0.5], "offset": [1, 2, 3]})");
    ASSERT_EQ(map.width, 3u);
    ASSERT_EQ(map.length, 2u);
    EXPECT_EQ(map.scaleMm.x, 0.1);
    EXPECT_EQ(map.scaleMm.y, 0.2);
    EXPECT_EQ(map.offsetMm.x, 1);
    EXPECT_EQ(map.validCount, 4u);
    EXPECT_EQ(map.heights[2], nullHeight);
    EXPECT_EQ(map.heights[4], nullHeight);
    EXPECT_NEAR(HeightMm(map, 0, 0), 3.5, 1e-12);
    EXPECT_NEAR(HeightMm(map, 0, 1), 5, 1e-4);
    EXPECT_NEAR(HeightMm(map, 2, 1), 6, 1e-12);
}

TEST_F(CsvReaderTest, Rows_of_a_matrix_can_be_x)
{
    const auto map = Map("1 2 3\n4 5 6\n", R"({"spacing": [0.1, 0.2, 1], "xAxis": "rows"})");
    EXPECT_EQ(map.width, 2u);
    EXPECT_EQ(map.length, 3u);
    EXPECT_NEAR(HeightMm(map, 1, 0), 4, 1e-4);
    EXPECT_EQ(map.scaleMm.x, 0.1);
}

TEST_F(CsvReaderTest, Separator_at_the_end_of_all_lines_gives_no_column)
{
    const auto map = Map("1;2;\n3;4;\n5;6; \n", spaced);
    EXPECT_EQ(map.width, 2u);
    EXPECT_EQ(map.length, 3u);
    EXPECT_EQ(map.validCount, 6u);
    EXPECT_NEAR(HeightMm(map, 1, 2), 6, 1e-4);
    EXPECT_NEAR(HeightMm(map, 0, 1), 3, 1e-4);
    EXPECT_EQ(Map("1;2;\n3;4;7\n", spaced).width, 3u);
}

TEST_F(CsvReaderTest, Matrix_may_have_one_column)
{
    const auto map = Map("1\n2\n3\n", spaced);
    EXPECT_EQ(map.width, 1u);
    EXPECT_EQ(map.length, 3u);
}

TEST_F(CsvReaderTest, Sides_beyond_the_bounds_are_refused)
{
    std::string row;
    for (int i = 0; i < 1048578; ++i)
    {
        row += "1;";
    }
    EXPECT_TRUE(Contains(Refusal(row + "1\n", spaced), "too many samples"));
    std::string column;
    for (int i = 0; i < 1048577; ++i)
    {
        column += "1\n";
    }
    EXPECT_TRUE(Contains(Refusal(column, spaced), "line 1048577: there are too many samples"));
    EXPECT_TRUE(Contains(Refusal(column, R"({"layout": "profile", "spacing": [1, 1, 1]})"), "too many"));
}

TEST_F(CsvReaderTest, File_without_line_ends_is_refused)
{
    WriteBytes(file, "1 2");
    std::filesystem::resize_file(file, std::size_t{66} << 20);
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadScan(file); }), "line 1: it is longer than"));
}

TEST_F(CsvReaderTest, Numbers_beyond_the_range_of_heights_are_refused)
{
    EXPECT_TRUE(Contains(Refusal("0 -1e308\n1 1e308\n"), "heights: "));
    EXPECT_TRUE(Contains(Refusal("-1e308 1\n1e308 2\n0 3\n"), "x: x from -1e+308 to 1e+308 leads beyond"));
    EXPECT_TRUE(Contains(Refusal("1e308 1\n0 2\n1 4\n", R"({"unit": "m"})"), "x: "));
}

class CommaPoint : public std::numpunct<char>
{
    char do_decimal_point() const override
    {
        return ',';
    }
};

TEST_F(CsvReaderTest, Locale_of_the_process_does_not_matter)
{
    const std::locale before = std::locale::global(std::locale(std::locale(), new CommaPoint));
    const auto profile = Profile("0.5 1.25\n1.5 2.5\n");
    std::locale::global(before);
    EXPECT_EQ(XOf(profile, 1), 1.5);
    EXPECT_EQ(ZOf(profile, 1), 2.5);
}

// All ways to write the same numbers.

struct Style
{
    std::string separator;
    char mark;
    std::string end;
    std::string start;
};

std::string NumberText(double number, char mark)
{
    char text[32];
    std::snprintf(text, sizeof(text), "%.5f", number);
    std::ranges::replace(text, '.', mark);
    return text;
}

TEST_F(CsvReaderTest, Numbers_are_the_same_in_all_styles)
{
    std::mt19937 random(77);
    std::uniform_real_distribution<double> anywhere(-50, 50);
    const Style styles[] = {{",", '.', "\n", ""},
                            {" , ", '.', "\r\n", "Scan of a part\n\nx,z\n"},
                            {";", ',', "\n", "\xef\xbb\xbf"},
                            {";", '.', "\n\n", "# 1;2;3\n"},
                            {"\t", ',', "\n", "x\tz\n"},
                            {"\t", '.', "\t\t\r\n", ""},
                            {"   ", '.', "  \n", "Points 200 in all\n"},
                            {" \t", ',', "\n", ""}};
    for (int round = 0; round < 50; ++round)
    {
        Numbers numbers(2 * (2 + random() % 200));
        std::ranges::generate(numbers, [&] { return std::round(anywhere(random) * 1e5) / 1e5; });
        const double xSpan = 100, zSpan = 100;
        for (const Style& style : styles)
        {
            std::string text = style.start;
            for (std::size_t i = 0; i < numbers.size(); i += 2)
            {
                text += NumberText(numbers[i], style.mark) + style.separator + NumberText(numbers[i + 1], style.mark) +
                        style.end;
            }
            const auto profile = Profile(text);
            ASSERT_EQ(profile.heights.size(), numbers.size() / 2);
            for (std::size_t i = 0; i < profile.heights.size(); ++i)
            {
                ASSERT_NEAR(XOf(profile, i), numbers[2 * i], xSpan / 65534 / 2 + 1e-9);
                ASSERT_NEAR(ZOf(profile, i), numbers[2 * i + 1], zSpan / 65534 / 2 + 1e-9);
            }
        }
    }
}
} // namespace
