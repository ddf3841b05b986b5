#include <Host/GridOptions.h>

#include "ScanTestFiles.h"

#include <nlohmann/json.hpp>

#include <limits>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;

class GridOptionsTest : public testing::Test
{
protected:
    GridOptions Read(const json& fromJob = nullptr) const
    {
        return ReadGridOptions({scan, fromJob, "plate.job.json, scan 2"}, "TIFF");
    }

    void WriteSidecar(std::string_view text) const
    {
        WriteBytes(SidecarOf(scan), text);
    }

    TemporaryFolder folder;
    std::filesystem::path scan = folder / "plate.tif";
};

TEST_F(GridOptionsTest, Sidecar_has_the_name_of_the_scan_and_json)
{
    EXPECT_EQ(SidecarOf("a/plate.tif"), std::filesystem::path("a/plate.tif.json"));
}

TEST_F(GridOptionsTest, All_keys_are_read_from_the_sidecar)
{
    WriteSidecar(R"({"spacing": [0.1, 0.2, 0.5], "offset": [1, -2, 3.5], "invalid": 7, "xAxis": "rows"})");
    const auto options = Read();
    EXPECT_EQ(options.spacingMm, (Vector3{0.1, 0.2, 0.5}));
    EXPECT_EQ(options.offsetMm, (Vector3{1, -2, 3.5}));
    EXPECT_EQ(options.invalid, 7);
    EXPECT_EQ(options.alongX, ImageAxis::Rows);
}

TEST_F(GridOptionsTest, Only_the_spacing_is_needed)
{
    const auto options = Read({{"spacing", {1, 2, 3}}});
    EXPECT_EQ(options.spacingMm, (Vector3{1, 2, 3}));
    EXPECT_EQ(options.offsetMm, (Vector3{0, 0, 0}));
    EXPECT_EQ(options.invalid, std::nullopt);
    EXPECT_EQ(options.alongX, ImageAxis::Columns);
}

TEST_F(GridOptionsTest, Job_wins_key_by_key)
{
    WriteSidecar(R"({"spacing": [0.1, 0.2, 0.5], "offset": [1, 2, 3], "invalid": 7, "xAxis": "rows"})");
    const auto options = Read({{"offset", {4, 5, 6}}, {"invalid", nullptr}, {"xAxis", "columns"}});
    EXPECT_EQ(options.spacingMm, (Vector3{0.1, 0.2, 0.5}));
    EXPECT_EQ(options.offsetMm, (Vector3{4, 5, 6}));
    EXPECT_EQ(options.invalid, std::nullopt);
    EXPECT_EQ(options.alongX, ImageAxis::Columns);
}

TEST_F(GridOptionsTest, Without_spacing_the_error_shows_what_to_write)
{
    const auto message = ErrorOf([&] { return Read({{"invalid", 0}}); });
    EXPECT_TRUE(Contains(message, scan.string() + ": "));
    EXPECT_TRUE(Contains(message, SidecarOf(scan).string()));
    EXPECT_TRUE(Contains(message, R"({"spacing": [0.1, 0.1, 0.001], "invalid": 0})"));
}

struct WrongOption
{
    const char* key;
    const char* text;
};

TEST_F(GridOptionsTest, Wrong_values_are_refused_by_file_and_key)
{
    const WrongOption cases[] = {
        {"spacing", R"({"spacing": 0.1})"},
        {"spacing", R"({"spacing": [0.1, 0.1]})"},
        {"spacing", R"({"spacing": [0.1, 0.1, 0.1, 0.1]})"},
        {"spacing", R"({"spacing": [0.1, 0.1, "0.1"]})"},
        {"spacing", R"({"spacing": [0.1, 0, 0.1]})"},
        {"spacing", R"({"spacing": [-0.1, 0.1, 0.1]})"},
        {"spacing", R"({"spacing": null})"},
        {"offset", R"({"spacing": [1, 1, 1], "offset": {"x": 1}})"},
        {"offset", R"({"spacing": [1, 1, 1], "offset": [true, 0, 0]})"},
        {"invalid", R"({"spacing": [1, 1, 1], "invalid": "0"})"},
        {"invalid", R"({"spacing": [1, 1, 1], "invalid": [0]})"},
        {"xAxis", R"({"spacing": [1, 1, 1], "xAxis": "Rows"})"},
        {"xAxis", R"({"spacing": [1, 1, 1], "xAxis": 1})"},
        {"unit", R"({"spacing": [1, 1, 1], "unit": "mm"})"},
        {"spacingMm", R"({"spacingMm": [1, 1, 1]})"},
    };
    for (const auto& [key, text] : cases)
    {
        const std::string quotedKey = '"' + std::string(key) + "\": ";
        WriteSidecar(text);
        EXPECT_TRUE(Contains(ErrorOf([&] { return Read(); }), SidecarOf(scan).string() + ": " + quotedKey)) << text;
        std::filesystem::remove(SidecarOf(scan));
        EXPECT_TRUE(Contains(ErrorOf([&, options = text] { return Read(json::parse(options)); }),
                             "plate.job.json, scan 2: " + quotedKey))
            << text;
    }
}

TEST_F(GridOptionsTest, Numbers_that_are_not_finite_are_refused)
{
    for (const double number : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
    {
        EXPECT_TRUE(Contains(ErrorOf([&] { return Read({{"spacing", {1, number, 1}}}); }), "\"spacing\": "));
        EXPECT_TRUE(Contains(ErrorOf([&] { return Read({{"offset", {0, 0, number}}}); }), "\"offset\": "));
        EXPECT_TRUE(Contains(ErrorOf([&] { return Read({{"invalid", number}}); }), "\"invalid\": "));
    }
}

TEST_F(GridOptionsTest, Sidecar_that_is_no_JSON_object_is_refused_by_name)
{
    const json spacing = {{"spacing", {1, 1, 1}}};
    for (const char* text : {"", "{", "[1, 2]", "spacing = 1", R"({"spacing": [1e999, 1, 1]})", "null", "\xff\xfe{}"})
    {
        WriteSidecar(text);
        EXPECT_TRUE(Contains(ErrorOf([&] { return Read(spacing); }), SidecarOf(scan).string() + ": ")) << text;
    }
}

TEST_F(GridOptionsTest, Sidecar_beyond_64_KiB_is_refused)
{
    const std::string options = R"({"spacing": [1, 1, 1]})";
    WriteSidecar(options + std::string(65536 - options.size(), ' '));
    EXPECT_EQ(Read().spacingMm, (Vector3{1, 1, 1}));
    WriteSidecar(options + std::string(65537 - options.size(), ' '));
    EXPECT_TRUE(Contains(ErrorOf([&] { return Read(); }), "larger than 65536 bytes"));
}

TEST_F(GridOptionsTest, Deeply_nested_values_are_refused)
{
    WriteSidecar(R"({"spacing": )" + std::string(30000, '[') + std::string(30000, ']') + "}");
    EXPECT_TRUE(Contains(ErrorOf([&] { return Read(); }), "\"spacing\": an array of 1 is not a usable value"));
}

TEST_F(GridOptionsTest, Options_of_the_job_must_be_an_object)
{
    EXPECT_TRUE(Contains(ErrorOf([&] { return Read("rows"); }), "plate.job.json, scan 2: "));
    EXPECT_TRUE(Contains(ErrorOf([&] { return Read(json::array()); }), "plate.job.json, scan 2: "));
}
} // namespace
