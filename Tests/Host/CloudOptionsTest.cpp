#include <Host/CloudOptions.h>

#include <Host/ScanOptions.h>

#include "ScanTestFiles.h"

#include <nlohmann/json.hpp>

#include <limits>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;
using Spacing = CloudOptions::Spacing;

class CloudOptionsTest : public testing::Test
{
protected:
    CloudOptions Read(const json& fromJob = nullptr) const
    {
        return ReadCloudOptions(scan, fromJob, "plate.job.json, scan 2", "PLY");
    }

    TemporaryFolder folder;
    std::filesystem::path scan = folder / "plate.ply";
};

TEST_F(CloudOptionsTest, All_keys_are_read_from_the_sidecar)
{
    WriteBytes(SidecarOf(scan), R"({"unit": "m", "spacing": [0.1, 0.2], "up": "-y"})");
    const auto options = Read();
    EXPECT_EQ(options.mmPerUnit, 1000);
    EXPECT_EQ(options.spacingMm, (Spacing{0.1, 0.2}));
    EXPECT_EQ(options.up, UpAxis::MinusY);
}

TEST_F(CloudOptionsTest, Only_the_unit_is_needed)
{
    const auto options = Read({{"unit", "mm"}});
    EXPECT_EQ(options.mmPerUnit, 1);
    EXPECT_EQ(options.spacingMm, std::nullopt);
    EXPECT_EQ(options.up, UpAxis::Z);
}

TEST_F(CloudOptionsTest, Job_wins_key_by_key)
{
    WriteBytes(SidecarOf(scan), R"({"unit": "m", "spacing": [1, 1], "up": "y"})");
    const auto options = Read({{"unit", "in"}, {"spacing", {2, 3}}});
    EXPECT_EQ(options.mmPerUnit, 25.4);
    EXPECT_EQ(options.spacingMm, (Spacing{2, 3}));
    EXPECT_EQ(options.up, UpAxis::Y);
}

TEST_F(CloudOptionsTest, Units_have_names_or_are_so_many_mm)
{
    const std::pair<json, double> units[] = {{"m", 1000},  {"cm", 10},         {"mm", 1}, {"um", 0.001},
                                             {"in", 25.4}, {"\u00b5m", 0.001}, {2.5, 2.5}};
    for (const auto& [unit, mm] : units)
    {
        EXPECT_EQ(Read({{"unit", unit}}).mmPerUnit, mm) << unit;
    }
}

TEST_F(CloudOptionsTest, Without_unit_the_error_shows_what_to_write)
{
    const auto message = ErrorOf([&] { return Read({{"spacing", {1, 1}}}); });
    EXPECT_TRUE(Contains(message, scan.string() + ": \"unit\": a PLY file does not tell the unit"));
    EXPECT_TRUE(Contains(message, SidecarOf(scan).string()));
    EXPECT_TRUE(Contains(message, R"({"unit": "m", "spacing": [0.5, 0.5]})"));
}

TEST_F(CloudOptionsTest, Wrong_values_are_refused_by_key)
{
    const std::pair<const char*, json> cases[] = {{"unit", "M"},
                                                  {"unit", 0},
                                                  {"unit", -1},
                                                  {"unit", nullptr},
                                                  {"unit", std::numeric_limits<double>::infinity()},
                                                  {"spacing", 0.5},
                                                  {"spacing", json::array({1})},
                                                  {"spacing", {1, 1, 1}},
                                                  {"spacing", {1, 0}},
                                                  {"spacing", {"1", 1}},
                                                  {"up", "Z"},
                                                  {"up", "x"},
                                                  {"up", 1},
                                                  {"offset", {0, 0, 0}}};
    for (const auto& [key, value] : cases)
    {
        json options{{"unit", "m"}};
        options[key] = value;
        EXPECT_TRUE(
            Contains(ErrorOf([&] { return Read(options); }), "plate.job.json, scan 2: \"" + std::string(key) + "\": "))
            << options;
    }
}
} // namespace
