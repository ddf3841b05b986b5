#include "../TaApi/LogCapture.h"
#include "RegionFields.h"

#include <MuTlkHelper/AnchoredRegion.h>

#include <MuVision/Anchor.h>
#include <zApi/zTypes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using Mu::Vision::Anchor;
using Mu::Vision::MaskType;
using Mu::Vision::RotationOrder;

using Keys = std::vector<std::string>;

constexpr double NULL_VALUE = -1.7976931348623157e308;
constexpr double EPSILON = 2.220446049250313e-16;
constexpr RegionFields SOME = {10, 20, 30, 4, 6, 8, 1, 2, 3};
constexpr RegionFields OTHER = {11, 21, 31, 5, 7, 9, 4, 5, 6};

/// A region with all axes.
class FullRegion : public AnchoredBoxRegion
{
public:
    FullRegion()
        : AnchoredBoxRegion(true, true, true, true, true, true, true, true, true, true, true, true)
    {
    }
};

Keys RegisteredKeys(const Ta::Params::Group& group)
{
    Keys keys;
    for (std::size_t i = 0; i < group.Count(); ++i)
    {
        keys.push_back(group.At(i).Name());
    }
    return keys;
}

// --- construction ---------------------------------------------------------------------------------------------------

TEST(AnchoredBoxRegion, Is_a_cube_of_5_at_the_origin_when_it_is_new)
{
    const FullRegion region;
    EXPECT_EQ(region.Name(), "TransformedBoxRegion");
    EXPECT_EQ(Parameters(region), NEW_REGION);
    EXPECT_EQ(Fields(region.relativeRegion), NEW_REGION);
    EXPECT_EQ(Fields(region.absoluteRegion), NEW_REGION);
    EXPECT_TRUE(region.anchorFrame.IsIdentity());
    EXPECT_EQ(region.transformMatrix.Get(), PublishedIdentity());
    EXPECT_EQ(static_cast<int>(region.regionType), 3);
    EXPECT_EQ(sizeof(region.regionType), 4U);
}

TEST(AnchoredBoxRegion, Without_axes_has_all_values_all_the_same)
{
    const AnchoredBoxRegion region(false, false, false, false, false, false, false, false, false, false, false, false);
    EXPECT_EQ(RegisteredKeys(region), Keys{"transformMatrix"});
    EXPECT_EQ(Parameters(region), NEW_REGION);
    EXPECT_EQ(Fields(region.absoluteRegion), NEW_REGION);
}

TEST(AnchoredBoxRegion, Has_the_axes_and_units_that_its_constructor_is_told)
{
    const AnchoredBoxRegion region(false, true, false, false, false, true, false, true, false, false, false, false);
    EXPECT_EQ(RegisteredKeys(region), (Keys{"y", "length", "zAngle", "transformMatrix"}));
    EXPECT_EQ(region.y.GetUnits(), "mm");
    EXPECT_EQ(region.zAngle.FindSchema("units"), nullptr);
}

TEST(AnchoredBoxRegion, Is_reached_and_ended_through_the_interface)
{
    const std::unique_ptr<AnchoredRegionInterface> region = std::make_unique<FullRegion>();
    EXPECT_NE(dynamic_cast<AnchoredBoxRegion*>(region.get()), nullptr);
    EXPECT_EQ(dynamic_cast<AnchoredProfileRegion*>(region.get()), nullptr);
    EXPECT_EQ(static_cast<int>(region->GetRegionType()), 3);
    dynamic_cast<AnchoredBoxRegion&>(*region).regionType = MaskType::Circle;
    EXPECT_EQ(region->GetRegionType(), MaskType::Circle);
}

struct AxesCase
{
    const char* name;
    std::unique_ptr<AnchoredBoxRegion> region;
    Keys keys; ///< without the transform
};

std::vector<AxesCase> AxesCases()
{
    std::vector<AxesCase> cases;
    const auto add = [&cases](const char* name, std::unique_ptr<AnchoredBoxRegion> region, Keys keys) {
        cases.push_back({name, std::move(region), std::move(keys)});
    };
    add("profile", std::make_unique<AnchoredProfileRegion>(false), {"x", "z", "width", "height"});
    add("turned profile", std::make_unique<AnchoredProfileRegion>(true), {"x", "z", "width", "height", "yAngle"});
    add("surface", std::make_unique<AnchoredSurfaceRegion>(false), {"x", "y", "z", "width", "length", "height"});
    add("turned surface", std::make_unique<AnchoredSurfaceRegion>(true),
        {"x", "y", "z", "width", "length", "height", "zAngle"});
    add("image", std::make_unique<AnchoredImageRegion>(false), {"x", "y", "width", "length"});
    return cases;
}

TEST(AnchoredRegions, Have_the_axes_of_their_kind_of_data)
{
    for (const AxesCase& c : AxesCases())
    {
        SCOPED_TRACE(c.name);
        Keys expected = c.keys;
        expected.emplace_back("transformMatrix");
        EXPECT_EQ(RegisteredKeys(*c.region), expected);
        for (std::size_t i = 0; i < REGION_KEYS.size(); ++i)
        {
            const bool isRegistered = std::find(c.keys.begin(), c.keys.end(), REGION_KEYS[i]) != c.keys.end();
            EXPECT_EQ(((*c.region).*REGION_PARAMETERS[i]).GetUsed(), isRegistered) << REGION_KEYS[i];
        }
        EXPECT_EQ(Parameters(*c.region), NEW_REGION);
        EXPECT_EQ(Fields(c.region->relativeRegion), NEW_REGION);
        EXPECT_EQ(Fields(c.region->absoluteRegion), NEW_REGION);
        EXPECT_EQ(c.region->GetRegionType(), MaskType::Rectangle);
        EXPECT_EQ(c.region->Name(), "TransformedBoxRegion");
    }
}

TEST(AnchoredRegions, Of_profiles_and_surfaces_carry_all_units)
{
    const AnchoredProfileRegion profile(true);
    const AnchoredSurfaceRegion surface(true);
    for (const auto* value : {&profile.x, &profile.z, &profile.width, &profile.height, &surface.x, &surface.y,
                              &surface.z, &surface.width, &surface.length, &surface.height})
    {
        EXPECT_EQ(value->GetUnits(), "mm") << value->Name();
    }
    EXPECT_EQ(profile.yAngle.GetUnits(), "deg");
    EXPECT_EQ(surface.zAngle.GetUnits(), "deg");
}

TEST(AnchoredImageRegion, Is_not_measured_in_mm)
{
    const AnchoredImageRegion region(false);
    for (const auto* value : {&region.x, &region.y, &region.width, &region.length})
    {
        EXPECT_TRUE(value->FindSchema("units") == nullptr || value->GetUnits() != "mm") << value->Name();
    }
}

TEST(AnchoredRegions, Give_their_absolute_region)
{
    AnchoredProfileRegion profile(true);
    AnchoredSurfaceRegion surface(true);
    AnchoredImageRegion image(true);
    for (AnchoredBoxRegion* const region :
         {static_cast<AnchoredBoxRegion*>(&profile), static_cast<AnchoredBoxRegion*>(&surface),
          static_cast<AnchoredBoxRegion*>(&image)})
    {
        region->absoluteRegion = RegionOf(SOME);
    }
    EXPECT_EQ(Fields(profile.AbsoluteRegion()), (std::array<double, 5>{10, 30, 4, 8, 2}));
    EXPECT_EQ(Fields(surface.AbsoluteRegion()), SOME);
    EXPECT_EQ(Fields(image.AbsoluteRegion()), (std::array<double, 5>{10, 20, 4, 6, 3}));
}

// --- parameters and regions -----------------------------------------------------------------------------------------

TEST(AnchoredBoxRegion, Synchronize_takes_all_nine_parameters_over_as_both_regions)
{
    for (const AxesCase& c : AxesCases())
    {
        SetParameters(*c.region, SOME);
        EXPECT_EQ(Fields(c.region->relativeRegion), NEW_REGION) << "a cache does not follow by itself";
        c.region->SynchronizeRegion();
        EXPECT_EQ(Fields(c.region->relativeRegion), SOME) << c.name;
        EXPECT_EQ(Fields(c.region->absoluteRegion), SOME) << c.name;
    }
}

TEST(AnchoredBoxRegion, Refresh_takes_all_nine_parameters_over_as_relative_region_only)
{
    for (const AxesCase& c : AxesCases())
    {
        c.region->absoluteRegion = RegionOf(OTHER);
        SetParameters(*c.region, SOME);
        c.region->RefreshRelativeRegion();
        EXPECT_EQ(Fields(c.region->relativeRegion), SOME) << c.name;
        EXPECT_EQ(Fields(c.region->absoluteRegion), OTHER) << c.name;
    }
}

TEST(AnchoredBoxRegion, RefreshConfig_writes_the_relative_region_into_the_parameters_that_exist)
{
    for (const AxesCase& c : AxesCases())
    {
        SCOPED_TRACE(c.name);
        SetParameters(*c.region, SOME);
        c.region->SynchronizeRegion();
        c.region->relativeRegion = RegionOf(OTHER);
        c.region->RefreshConfigRegion();
        RegionFields expected = SOME;
        for (std::size_t i = 0; i < REGION_KEYS.size(); ++i)
        {
            if (std::find(c.keys.begin(), c.keys.end(), REGION_KEYS[i]) != c.keys.end())
            {
                expected[i] = OTHER[i];
            }
        }
        EXPECT_EQ(Parameters(*c.region), expected);
        EXPECT_EQ(Fields(c.region->relativeRegion), OTHER);
        EXPECT_EQ(Fields(c.region->absoluteRegion), SOME);
    }
}

TEST(AnchoredProfileRegion, Keeps_in_its_relative_region_what_was_read_of_values_not_in_use)
{
    AnchoredProfileRegion region(false);
    SetParameters(region, SOME);
    region.SynchronizeRegion();
    region.RefreshConfigRegion();
    EXPECT_EQ(Parameters(region), SOME);
    EXPECT_EQ(Fields(region.relativeRegion), SOME);
}

TEST(AnchoredBoxRegion, RefreshConfig_counts_a_value_without_a_mark_as_used_and_leaves_alone_one_marked_unused)
{
    for (std::size_t unused = 0; unused < REGION_PARAMETERS.size(); ++unused)
    {
        FullRegion region;
        auto& parameter = region.*REGION_PARAMETERS[unused];
        ASSERT_EQ(parameter.FindSchema("used"), nullptr);
        parameter.SetUsed(false);
        region.relativeRegion = RegionOf(SOME);
        region.RefreshConfigRegion();
        RegionFields expected = SOME;
        expected[unused] = NEW_REGION[unused];
        EXPECT_EQ(Parameters(region), expected) << REGION_KEYS[unused];
        parameter.SetUsed(true);
        region.RefreshConfigRegion();
        EXPECT_EQ(Parameters(region), SOME) << REGION_KEYS[unused];
    }
}

TEST(AnchoredBoxRegion, RefreshConfig_raises_at_a_limit_and_has_written_the_values_before)
{
    for (std::size_t limited = 0; limited < REGION_PARAMETERS.size(); ++limited)
    {
        const LogCapture log; // the refusal is logged, too
        FullRegion region;
        (region.*REGION_PARAMETERS[limited]).EnableMaximum(SOME[limited] - 0.5);
        region.relativeRegion = RegionOf(SOME);
        try
        {
            region.RefreshConfigRegion();
            ADD_FAILURE() << REGION_KEYS[limited] << " took a value outside its limit";
        }
        catch (const Ta::Exception& exception)
        {
            EXPECT_EQ(exception.Status(), -997);
        }
        RegionFields expected = NEW_REGION;
        std::copy_n(SOME.begin(), limited, expected.begin());
        EXPECT_EQ(Parameters(region), expected) << REGION_KEYS[limited];
        EXPECT_EQ(log.lines.size(), 1U);
    }
}

TEST(AnchoredBoxRegion, Is_used_as_its_group_is)
{
    FullRegion region;
    AnchoredRegionInterface& driven = region;
    EXPECT_TRUE(driven.IsRegionUsed());
    driven.SetRegionUsed(false);
    EXPECT_FALSE(driven.IsRegionUsed());
    EXPECT_FALSE(region.GetUsed());
    EXPECT_NE(region.FindSchema("used"), nullptr);
    region.SetUsed(true);
    EXPECT_TRUE(driven.IsRegionUsed());
    driven.SetRegionUsed(false);
    EXPECT_TRUE(region.x.GetUsed()) << "the values keep marks of their own";
}

// --- anchors --------------------------------------------------------------------------------------------------------

struct MoveCase
{
    const char* name;
    Anchor anchor;
    RegionFields relative;
    RegionFields absolute;
    std::vector<double> rows; ///< of the anchor's frame
};

std::vector<MoveCase> MoveCases()
{
    constexpr double none = NULL_VALUE;
    return {
        {"null anchor",
         {},
         {1, 2, 3, 4, 5, 6, 7, 8, 9},
         {1, 2, 3, 4, 5, 6, 7, 8, 9},
         {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0}},
        {"move",
         {10, 20, 30, 0, 0, 0},
         {1, 2, 3, 4, 5, 6, 7, 8, 9},
         {11, 22, 33, 4, 5, 6, 7, 8, 9},
         {1, 0, 0, 10, 0, 1, 0, 20, 0, 0, 1, 30}},
        {"one axis",
         {none, 20, none, none, none, none},
         {1, 2, 3, 4, 5, 6, 0, 0, 0},
         {1, 22, 3, 4, 5, 6, 0, 0, 0},
         {1, 0, 0, 0, 0, 1, 0, 20, 0, 0, 1, 0}},
        {"turn about x takes y to z",
         {10, 20, 30, 90, 0, 0},
         {1, 2, 3, 4, 5, 6, 30, 0, 0},
         {11, 17, 32, 4, 5, 6, 120, 0, 0},
         {1, 0, 0, 10, 0, 0, -1, 20, 0, 1, 0, 30}},
        {"turn about y takes x to z",
         {10, none, 30, none, 90, none},
         {1, 2, 3, 4, 5, 6, 0, 30, 0},
         {7, 2, 31, 4, 5, 6, 0, 120, 0},
         {0, 0, -1, 10, 0, 1, 0, 0, 1, 0, 0, 30}},
        {"turn about z takes x to y",
         {10, 20, 30, 0, 0, 90},
         {1, 2, 3, 4, 5, 6, 0, 0, 100},
         {8, 21, 33, 4, 5, 6, 0, 0, -170},
         {0, -1, 0, 10, 1, 0, 0, 20, 0, 0, 1, 30}},
    };
}

TEST(AnchoredBoxRegion, Moves_with_the_anchor_and_back)
{
    for (const MoveCase& c : MoveCases())
    {
        SCOPED_TRACE(c.name);
        FullRegion region;
        region.relativeRegion = RegionOf(c.relative);
        region.CalculateAbsoluteRegion(c.anchor);
        ExpectNear(Fields(region.absoluteRegion), c.absolute);
        EXPECT_EQ(Fields(region.relativeRegion), c.relative);

        region.relativeRegion = RegionOf(OTHER);
        region.absoluteRegion = RegionOf(c.absolute);
        region.CalculateRelativeRegion(c.anchor);
        ExpectNear(Fields(region.relativeRegion), c.relative);
        EXPECT_EQ(Fields(region.absoluteRegion), c.absolute);

        EXPECT_EQ(Parameters(region), NEW_REGION);
        EXPECT_TRUE(region.anchorFrame.IsIdentity());
        EXPECT_EQ(region.transformMatrix.Get(), PublishedIdentity());
    }
}

TEST(AnchoredBoxRegion, Publishes_the_frame_of_the_anchor_in_two_steps)
{
    for (const MoveCase& c : MoveCases())
    {
        SCOPED_TRACE(c.name);
        FullRegion region;
        region.SetTransformMatrixAsInvalid();
        region.CalculateTransformMatrix(c.anchor);
        EXPECT_TRUE(region.transformMatrix.Get().empty()) << "not yet";
        region.RefreshConfigTransformMatrix();
        ExpectNear(region.transformMatrix.Get(), Published(c.rows));
        EXPECT_EQ(Fields(region.absoluteRegion), NEW_REGION);
    }
}

TEST(AnchoredBoxRegion, Moves_as_the_vision_library_says_for_any_anchor)
{
    const Anchor anchor{-3.5, 7, 0.25, 33, -48, 111};
    FullRegion region;
    region.relativeRegion = RegionOf(SOME);
    region.CalculateAbsoluteRegion(anchor);
    Mu::Vision::Region3d<double> expected;
    Mu::Vision::AnchorRegion(anchor, RotationOrder::XYZ, RegionOf(SOME), &expected);
    EXPECT_EQ(Fields(region.absoluteRegion), Fields(expected));

    Mu::Vision::AnchorRegionInv(anchor, RotationOrder::XYZ, RegionOf(OTHER), &expected);
    region.absoluteRegion = RegionOf(OTHER);
    region.CalculateRelativeRegion(anchor);
    EXPECT_EQ(Fields(region.relativeRegion), Fields(expected));

    region.CalculateTransformMatrix(anchor);
    region.RefreshConfigTransformMatrix();
    const zM3dTransform3d t = Mu::Vision::CreateAnchorTransform(anchor, RotationOrder::XYZ).TozTransform();
    EXPECT_EQ(region.transformMatrix.Get(),
              Published({t.xx, t.xy, t.xz, t.xt, t.yx, t.yy, t.yz, t.yt, t.zx, t.zy, t.zz, t.zt}));
}

TEST(AnchoredBoxRegion, Reset_makes_the_published_transform_and_the_frame_the_identity)
{
    FullRegion region;
    region.CalculateTransformMatrix({1, 2, 3, 4, 5, 6});
    region.RefreshConfigTransformMatrix();
    ASSERT_FALSE(region.IsTransformMatrixIdentity());
    region.ResetTransformMatrix();
    EXPECT_EQ(region.transformMatrix.Get(), PublishedIdentity());
    EXPECT_TRUE(region.anchorFrame.IsIdentity());
    EXPECT_TRUE(region.IsTransformMatrixIdentity());
}

TEST(AnchoredBoxRegion, An_invalid_transform_is_empty_and_leaves_the_frame)
{
    FullRegion region;
    region.CalculateTransformMatrix({1, 2, 3, 0, 0, 0});
    region.SetTransformMatrixAsInvalid();
    EXPECT_TRUE(region.transformMatrix.Get().empty());
    EXPECT_TRUE(region.IsTransformMatrixIdentity());
    region.RefreshConfigTransformMatrix();
    EXPECT_EQ(region.transformMatrix.Get(), Published({1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3}));
}

TEST(AnchoredBoxRegion, Writes_its_read_only_transform_without_a_word)
{
    const LogCapture log;
    FullRegion region;
    region.SetTransformMatrixAsInvalid();
    region.CalculateTransformMatrix({1, 2, 3, 4, 5, 6});
    region.RefreshConfigTransformMatrix();
    region.ResetTransformMatrix();
    EXPECT_EQ(log.lines.size(), 0U);
}

struct IdentityCase
{
    const char* name;
    double difference; ///< from the identity, in one entry
    bool isIdentity;
};

TEST(AnchoredBoxRegion, Transform_is_the_identity_to_less_than_DBL_EPSILON_in_each_of_its_twelve_entries)
{
    const double below = std::nextafter(EPSILON, 0.0);
    const std::vector<IdentityCase> cases = {
        {"nothing", 0, true},
        {"1e-17", 1e-17, true},
        {"1e-15", 1e-15, false},
        {"half of epsilon", -EPSILON / 2, true},
        {"epsilon", EPSILON, false},
        {"minus epsilon", -EPSILON, false},
        {"a tenth", -0.1, false},
        {"two", 2, false},
        {"minus two", -2, false},
        {"infinity", std::numeric_limits<double>::infinity(), false},
        {"not a number", std::numeric_limits<double>::quiet_NaN(), false},
        {"null", NULL_VALUE, false},
    };
    for (std::size_t entry = 0; entry < 12; ++entry)
    {
        FullRegion region;
        std::vector<double> matrix = PublishedIdentity();
        for (const IdentityCase& c : cases)
        {
            matrix[entry] = PublishedIdentity()[entry] + c.difference;
            region.transformMatrix.SetUnchecked(matrix);
            EXPECT_EQ(region.IsTransformMatrixIdentity(), c.isIdentity) << c.name << " in entry " << entry;
        }
        if (PublishedIdentity()[entry] == 0)
        {
            matrix[entry] = -below;
            region.transformMatrix.SetUnchecked(matrix);
            EXPECT_TRUE(region.IsTransformMatrixIdentity()) << "just below epsilon in entry " << entry;
        }
    }
}

TEST(AnchoredBoxRegion, The_last_four_entries_of_a_transform_do_not_count)
{
    FullRegion region;
    std::vector<double> matrix = PublishedIdentity();
    std::fill(matrix.begin() + 12, matrix.end(), 9.0);
    region.transformMatrix.SetUnchecked(matrix);
    EXPECT_TRUE(region.IsTransformMatrixIdentity());
    matrix.resize(12);
    region.transformMatrix.SetUnchecked(matrix);
    EXPECT_TRUE(region.IsTransformMatrixIdentity());
}

TEST(AnchoredBoxRegion, A_transform_with_too_few_entries_is_not_the_identity)
{
    FullRegion region;
    for (std::size_t count = 1; count < 12; ++count)
    {
        std::vector<double> matrix = PublishedIdentity();
        matrix.resize(count);
        matrix.shrink_to_fit(); // a read past the end is one past the memory
        region.transformMatrix.SetUnchecked(matrix);
        EXPECT_FALSE(region.IsTransformMatrixIdentity()) << count;
    }
}
} // namespace
