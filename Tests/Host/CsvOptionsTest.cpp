#include <Host/CsvOptions.h>

#include "ScanTestFiles.h"

#include <nlohmann/json.hpp>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;

class CsvOptionsTest : public testing::Test
{
protected:
    CsvOptions Read(const json& fromJob) const
    {
        return ReadCsvOptions({scan, fromJob, "job.json, scan 2"});
    }

    TemporaryFolder folder;
    std::filesystem::path scan = folder / "profile.csv";
};

TEST_F(CsvOptionsTest, All_keys_are_read)
{
    const auto options = Read(json::parse(R"({"unit": ["mm", "in", 0.5], "layout": "points", "invalid": -1,
        "columns": {"x": 1, "y": "Y in mm", "z": 3, "intensity": 4}, "spacing": [1, 2, 3], "offset": [4, 5, 6],
        "xAxis": "rows"
})"));
    EXPECT_EQ(options.unitMm, (Vector3{1, 25.4, 0.5}));
    EXPECT_EQ(options.layout, CsvLayout::Points);
    EXPECT_EQ(options.invalid, -1);
    ASSERT_TRUE(options.columns.has_value());
    EXPECT_EQ(options.columns->x, CsvColumn(std::size_t{1}));
    EXPECT_EQ(options.columns->y, CsvColumn("Y in mm"));
    EXPECT_EQ(options.columns->intensity, CsvColumn(std::size_t{4}));
    EXPECT_EQ(options.spacingMm, (Vector3{1, 2, 3}));
    EXPECT_EQ(options.offsetMm, (Vector3{4, 5, 6}));
    EXPECT_EQ(options.alongX, ImageAxis::Rows);
}

TEST_F(CsvOptionsTest, One_unit_is_that_of_all_axes)
{
    const std::pair<const char*, double> units[] = {{"\"m\"", 1000},   {"\"mm\"", 1},     {"\"um\"", 0.001},
                                                    {"\"µm\"", 0.001}, {"\"μm\"", 0.001}, {"\"nm\"", 1e-6},
                                                    {"\"in\"", 25.4},  {"0.01", 0.01}};
    for (const auto& [text, mm] : units)
    {
        EXPECT_EQ(Read({{"unit", json::parse(text)}}).unitMm, (Vector3{mm, mm, mm})) << text;
    }
}

TEST_F(CsvOptionsTest, Job_wins_over_the_sidecar_key_by_key)
{
    WriteBytes(SidecarOf(scan), R"({"unit": "um", "invalid": 3})");
    const auto options = Read({{"invalid", nullptr}});
    EXPECT_EQ(options.unitMm, (Vector3{0.001, 0.001, 0.001}));
    EXPECT_EQ(options.invalid, std::nullopt);
    EXPECT_EQ(options.layout, std::nullopt);
}

TEST_F(CsvOptionsTest, Wrong_values_are_refused_by_key)
{
    const std::pair<const char*, const char*> cases[] = {
        {"unit", R"("cm")"},
        {"unit", "0"},
        {"unit", "-1"},
        {"unit", R"(["mm", "mm"])"},
        {"unit", R"(["mm", "mm", "mile"])"},
        {"unit", "null"},
        {"layout", R"("Grid")"},
        {"layout", "1"},
        {"columns", R"(["x", "z"])"},
        {"columns", R"({"x": 1})"},
        {"columns", R"({"x": 0, "z": 1})"},
        {"columns", R"({"x": -1, "z": 1})"},
        {"columns", R"({"x": 1.5, "z": 1})"},
        {"columns", R"({"x": 1, "z": null})"},
        {"columns", R"({"x": 1, "height": 2, "z": 3})"},
        {"spacing", "[1, 2]"},
        {"offset", "1"},
        {"invalid", R"("none")"},
        {"xAxis", R"("x")"},
        {"separator", R"(";")"},
    };
    for (const auto& [key, value] : cases)
    {
        EXPECT_TRUE(Contains(ErrorOf([&, key = key, value = value] {
                                 return Read({{key, json::parse(value)}});
                             }),
                             "job.json, scan 2: \"" + std::string(key) + "\": "))
            << value;
    }
}
} // namespace
