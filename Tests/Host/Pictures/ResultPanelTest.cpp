#include <Host/Pictures/ResultPanel.h>

#include "PictureTools.h"

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

TEST(Results_beside_a_picture, have_value_unit_limits_and_a_word_for_the_decision)
{
    const auto surface = FlatSurface();
    const Picture picture = Drawn(surface.Get(), {},
                                  ScanOf({Measured("Width", 1.25, Decision::Pass, {1, 2}),
                                          Measured("Depth", 9, Decision::Fail, {std::nullopt, 8}),
                                          Measured("Angle", 3, Decision::Null, {1, std::nullopt})}));
    for (const char* const text : {"tool", "Type", "Width", "1.25", "mm", "1 to 2", "pass", "Depth", "up to 8", "FAIL",
                                   "from 1", "null", "1 passed, 1 failed, 1 without a value"})
    {
        EXPECT_TRUE(HasText(picture, text)) << text;
    }
}

TEST(Results_beside_a_picture, that_are_too_many_show_those_that_did_not_pass_and_count_the_others)
{
    std::vector<Result> results;
    for (int i = 0; i < 300; ++i)
    {
        results.push_back(
            Measured("Output" + std::to_string(i), i, i == 250 ? Decision::Fail : Decision::Pass, {0, 1}));
    }
    const auto surface = FlatSurface();
    const Picture picture = Drawn(surface.Get(), {}, ScanOf(results));
    EXPECT_TRUE(HasText(picture, "Output0"));
    EXPECT_TRUE(HasText(picture, "Output250"));
    EXPECT_FALSE(HasText(picture, "Output299"));
    const auto shown = std::ranges::count_if(picture.Page().Texts(),
                                             [](const auto& placed) { return placed.text.starts_with("Output"); });
    EXPECT_GT(shown, 20);
    EXPECT_TRUE(HasText(picture, "and " + std::to_string(300 - shown) + " more"));
    EXPECT_TRUE(TextsAreOnThePage(picture));
}

TEST(Results_beside_a_picture, that_fail_by_the_hundreds_stay_on_the_page)
{
    std::vector<Result> results;
    for (int i = 0; i < 300; ++i)
    {
        results.push_back(Measured("Output" + std::to_string(i), i, Decision::Fail, {0, 1}));
        results.back().tool += std::to_string(i);
    }
    const auto surface = FlatSurface();
    const Picture picture = Drawn(surface.Get(), {}, ScanOf(results));
    EXPECT_TRUE(HasText(picture, " of which did not pass"));
    EXPECT_TRUE(TextsAreOnThePage(picture));
}

TEST(Results_beside_a_picture, are_cut_where_names_are_long)
{
    Result result = Measured(std::string(500, 'W'), -1.23456e-100, Decision::Fail, {-1.23456e-100, 1.23456e100});
    result.tool = std::string(500, 'M') + "\xFF\n";
    result.units = std::string(100, 'u');
    ScanResult scan = ScanOf({result});
    scan.name = std::string(1000, 'X');
    const auto surface = FlatSurface();
    EXPECT_TRUE(TextsAreOnThePage(Drawn(surface.Get(), {}, scan)));
}

TEST(Results_beside_a_picture, are_no_other_data_than_measurements)
{
    Result surface = Measured("Cut", 1, Decision::None);
    surface.dataType = TaPipe::PipeDataType::UniformSurface;
    EXPECT_FALSE(HasMeasurements({surface}));
    EXPECT_EQ(ResultsHeight({surface}), 0);
    const auto message = FlatSurface();
    EXPECT_FALSE(HasText(Drawn(message.Get(), {}, ScanOf({surface, Measured("Width", 1, Decision::None)})), "Cut"));
}
} // namespace
