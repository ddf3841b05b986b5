#include "RegionFields.h"

#include <MuTlkHelper/InputUtils.h>

#include <Support/Builders.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;

using PlaneRegion = Mu::Vision::RegionXZ<double>;
using PlaneFields = std::array<double, 5>;

constexpr double NULL_VALUE = -1.7976931348623157e308;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr zRect3d64f BOX{1, 2, 3, 10, 20, 30};
constexpr RegionFields BOX_FIELDS = {1, 2, 3, 10, 20, 30, 0, 0, 0};

// --- ExpandProfileRegion --------------------------------------------------------------------------------------------

struct ExpandCase
{
    const char* name;
    PlaneRegion a;
    PlaneRegion b;
    PlaneFields expected;
};

TEST(ExpandProfileRegion, Holds_the_extents_of_both)
{
    const std::vector<ExpandCase> cases = {
        {"itself", {3, 4, 5, 6, 0}, {3, 4, 5, 6, 0}, {3, 4, 5, 6, 0}},
        {"itself without its angle", {3, 4, 5, 6, 30}, {3, 4, 5, 6, 30}, {3, 4, 5, 6, 0}},
        // x from -1 to 12, z from 0 to 3
        {"beside", {0, 1, 2, 2, 0}, {11, 2, 2, 2, 45}, {5.5, 1.5, 13, 3, 0}},
        {"one in the other", {0, 0, 20, 20, 0}, {1, -2, 3, 4, 0}, {0, 0, 20, 20, 0}},
        // x from -5 to 5, z from -10 to 10
        {"across", {0, 0, 10, 2, 0}, {0, 0, 2, 20, 90}, {0, 0, 10, 20, 0}},
        {"a point", {0, 0, 2, 2, 0}, {9, -9, 0, 0, 0}, {4, -4, 10, 10, 0}},
    };
    for (const ExpandCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        ExpectNear(Fields(ExpandProfileRegion(c.a, c.b)), c.expected);
        ExpectNear(Fields(ExpandProfileRegion(c.b, c.a)), c.expected);
    }
}

TEST(ExpandProfileRegion, Has_borders_that_are_borders_of_one_of_both)
{
    constexpr unsigned seed = 20261121;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-100, 100);
    std::uniform_real_distribution<double> extent(0, 50);
    for (int i = 0; i < 1000; ++i)
    {
        const PlaneRegion a{place(random), place(random), extent(random), extent(random), place(random)};
        const PlaneRegion b{place(random), place(random), extent(random), extent(random), place(random)};
        const PlaneRegion both = ExpandProfileRegion(a, b);
        EXPECT_NEAR(both.x - both.width / 2, std::min(a.x - a.width / 2, b.x - b.width / 2), 1e-9);
        EXPECT_NEAR(both.x + both.width / 2, std::max(a.x + a.width / 2, b.x + b.width / 2), 1e-9);
        EXPECT_NEAR(both.z - both.height / 2, std::min(a.z - a.height / 2, b.z - b.height / 2), 1e-9);
        EXPECT_NEAR(both.z + both.height / 2, std::max(a.z + a.height / 2, b.z + b.height / 2), 1e-9);
        EXPECT_EQ(both.angle, 0.0);
    }
}

// --- whole data -----------------------------------------------------------------------------------------------------

// Offset 100, 200, 300; scale 0.5, 2, 0.001: the height range is 65.535 mm.
template <typename Builder>
Builder Placed(Builder builder)
{
    return builder.Offset(100, 200, 300).Scale(0.5, 2, 0.001);
}

constexpr PlaneFields PROFILE_GRID = {101, 300, 2, 65.535, 0}; // four points
constexpr PlaneFields PROFILE_SPAN = {100, 300, 32767.5, 65.535, 0};
constexpr RegionFields SURFACE_GRID = {100.75, 202, 300, 1.5, 4, 65.535, 0, 0, 0}; // three by two points
constexpr RegionFields SURFACE_SPAN = {100, 200, 300, 32767.5, 131070, 65.535, 0, 0, 0};

ProfileBuilder FourHeights()
{
    return Placed(Profile({1, 2, 3, 4}));
}

ProfileBuilder FourPoints()
{
    return Placed(PointProfile({{1, 2}, {3, 4}, {5, 6}, {7, 8}}));
}

SurfaceBuilder SixHeights()
{
    return Placed(Surface({{1, 2, 3}, {4, 5, 6}}));
}

SurfaceBuilder SixPoints()
{
    return Placed(PointSurface({{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}}));
}

TEST(GetFullProfileRegion, Is_the_bounding_box_of_heights)
{
    EXPECT_EQ(Fields(GetFullProfileRegion(FourHeights().BoundingBox(BOX).Get())), (PlaneFields{1, 3, 10, 30, 0}));
}

TEST(GetFullProfileRegion, Is_the_grid_box_where_the_bounding_box_is_flat_or_not_known)
{
    ExpectNear(Fields(GetFullProfileRegion(FourHeights().Get())), PROFILE_GRID);
    for (const double flat : {0.0, -1.0, NULL_VALUE, NOT_A_NUMBER})
    {
        const zRect3d64f noWidth{1, 2, 3, flat, 20, 30};
        const zRect3d64f noHeight{1, 2, 3, 10, 20, flat};
        ExpectNear(Fields(GetFullProfileRegion(FourHeights().BoundingBox(noWidth).Get())), PROFILE_GRID);
        ExpectNear(Fields(GetFullProfileRegion(FourHeights().BoundingBox(noHeight).Get())), PROFILE_GRID);
    }
    EXPECT_EQ(Fields(GetFullProfileRegion(FourHeights().BoundingBox({1, 2, 3, 10, 0, 30}).Get())),
              (PlaneFields{1, 3, 10, 30, 0}))
        << "a profile has no length";
}

TEST(GetFullProfileRegion, Is_the_span_box_of_points_whatever_their_bounding_box)
{
    ExpectNear(Fields(GetFullProfileRegion(FourPoints().Get())), PROFILE_SPAN);
    ExpectNear(Fields(GetFullProfileRegion(FourPoints().BoundingBox(BOX).Get())), PROFILE_SPAN);
}

TEST(GetFullSurfaceRegion, Is_the_bounding_box)
{
    EXPECT_EQ(Fields(GetFullSurfaceRegion(SixHeights().BoundingBox(BOX).Get())), BOX_FIELDS);
    EXPECT_EQ(Fields(GetFullSurfaceRegion(SixPoints().BoundingBox(BOX).Get())), BOX_FIELDS);
}

TEST(GetFullSurfaceRegion, Is_the_grid_box_of_heights_and_the_span_box_of_points_where_the_box_is_flat_or_not_known)
{
    ExpectNear(Fields(GetFullSurfaceRegion(SixHeights().Get())), SURFACE_GRID);
    ExpectNear(Fields(GetFullSurfaceRegion(SixPoints().Get())), SURFACE_SPAN);
    for (const double flat : {0.0, -1.0, NULL_VALUE, NOT_A_NUMBER})
    {
        for (const zRect3d64f& box :
             {zRect3d64f{1, 2, 3, flat, 20, 30}, zRect3d64f{1, 2, 3, 10, flat, 30}, zRect3d64f{1, 2, 3, 10, 20, flat}})
        {
            ExpectNear(Fields(GetFullSurfaceRegion(SixHeights().BoundingBox(box).Get())), SURFACE_GRID);
            ExpectNear(Fields(GetFullSurfaceRegion(SixPoints().BoundingBox(box).Get())), SURFACE_SPAN);
        }
    }
}

TEST(GetFullImageRegion, Is_the_size_in_pixels)
{
    EXPECT_EQ(Fields(GetFullImageRegion(Image({{1, 2, 3}}).Get())), (PlaneFields{1.5, 0.5, 3, 1, 0}));
}

TEST(GetFullBoxRegion, Follows_the_kind_of_message)
{
    EXPECT_EQ(Fields(GetFullBoxRegion(FourHeights().BoundingBox(BOX).Get())),
              (RegionFields{1, 0, 3, 10, 0, 30, 0, 0, 0}));
    ExpectNear(Fields(GetFullBoxRegion(FourPoints().Get())), RegionFields{100, 0, 300, 32767.5, 0, 65.535, 0, 0, 0});
    EXPECT_EQ(Fields(GetFullBoxRegion(SixHeights().BoundingBox(BOX).Get())), BOX_FIELDS);
    ExpectNear(Fields(GetFullBoxRegion(SixPoints().Get())), SURFACE_SPAN);
    EXPECT_EQ(Fields(GetFullBoxRegion(Image({{1, 2, 3}}).BoundingBox(BOX).Get())),
              (RegionFields{1.5, 0.5, 0, 3, 1, 0, 0, 0, 0}));
}

TEST(GetFullBoxRegion, Of_any_other_message_is_a_default_region)
{
    constexpr RegionFields nothing = {NULL_VALUE, NULL_VALUE, NULL_VALUE, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(Fields(GetFullBoxRegion(nullptr)), nothing);
    EXPECT_EQ(Fields(GetFullBoxRegion(Measure(1).BoundingBox(BOX).Get())), nothing);
    EXPECT_EQ(Fields(GetFullBoxRegion(NullMessage().BoundingBox(BOX).Get())), nothing);
}

// --- regions of parameters ------------------------------------------------------------------------------------------

TEST(Regions_of_parameters, read_the_values_of_their_kind)
{
    constexpr RegionFields values = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    Ta::Params::ProfileRegion profile;
    SetParameters(profile, values);
    EXPECT_EQ(Fields(GetProfileRegion(profile)), (PlaneFields{1, 3, 4, 6, 8}));

    Ta::Params::SurfaceRegion2d surface2d;
    SetParameters(surface2d, values);
    EXPECT_EQ(Fields(GetSurfaceRegion(surface2d)), (PlaneFields{1, 2, 4, 5, 9}));

    Ta::Params::SurfaceRegion3d surface3d;
    SetParameters(surface3d, values);
    EXPECT_EQ(Fields(GetSurfaceRegion(surface3d)), (RegionFields{1, 2, 3, 4, 5, 6, 0, 0, 9}));

    Ta::Params::BoxRegion box(true, false, true, false, true, false, true, true, true, true, true, true, "Box");
    SetParameters(box, values);
    EXPECT_EQ(Fields(GetBoxRegion(box)), values);
}
} // namespace
