#include "../TaApi/LogCapture.h"
#include "RegionFields.h"

#include <MuTlkHelper/StatsUtils.h>

#include <Support/Builders.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;

constexpr double NULL_VALUE = -1.7976931348623157e308;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr int MOST = std::numeric_limits<int>::max();
constexpr int LEAST = std::numeric_limits<int>::min();
constexpr RegionFields BEFORE = {71, 72, 73, 74, 75, 76, 77, 78, 79};

struct Layout
{
    int columns = 0;
    int rows = 0;
    int column = 0;
    int row = 0;
};

/// What a layout gives in the plane of the data: the centre and the side of the square.
struct Square
{
    double first;
    double second;
    double side;
};

/// A box in the plane of the data.
struct PlaneBox
{
    double first;
    double second;
    double width;
    double extent;
};

struct LayoutCase
{
    const char* name;
    PlaneBox box;
    Layout layout;
    Square expected;
};

// Worked out by hand; the same for profiles (x, z) and surfaces (x, y).
const std::vector<LayoutCase> LAYOUTS = {
    {"no layout: half of the shorter extent", {100, 50, 40, 30}, {0, 0, 0, 0}, {100, 50, 15}},
    {"no layout: the other extent is shorter", {100, 50, 12, 30}, {0, 0, 0, 0}, {100, 50, 6}},
    {"no columns", {100, 50, 40, 30}, {0, 2, 1, 1}, {100, 50, 15}},
    {"no rows", {100, 50, 40, 30}, {2, 0, 1, 1}, {100, 50, 15}},
    {"negative columns", {100, 50, 40, 30}, {-1, 1, 0, 0}, {100, 50, 15}},
    {"negative rows", {100, 50, 40, 30}, {1, -7, 0, 0}, {100, 50, 15}},
    {"fewest columns", {100, 50, 40, 30}, {LEAST, 1, 0, 0}, {100, 50, 15}},
    {"fewest rows", {100, 50, 40, 30}, {1, LEAST, 0, 0}, {100, 50, 15}},
    {"one region", {1, 2, 40, 30}, {1, 1, 0, 0}, {1, 2, 15}},
    {"first of four columns", {0, 0, 130, 40}, {4, 1, 0, 0}, {-45, 0, 20}},
    {"last of four columns", {0, 0, 130, 40}, {4, 1, 3, 0}, {45, 0, 20}},
    {"column 4 of four wraps to 0", {0, 0, 130, 40}, {4, 1, 4, 0}, {-45, 0, 20}},
    {"column 9 of four wraps to 1", {0, 0, 130, 40}, {4, 1, 9, 0}, {-15, 0, 20}},
    {"the highest column wraps to 3", {0, 0, 130, 40}, {4, 1, MOST, 0}, {45, 0, 20}},
    {"margin in the first direction", {10, 20, 100, 40}, {2, 1, 1, 0}, {25, 20, 20}},
    {"margin in the second direction", {10, 20, 40, 100}, {1, 2, 0, 1}, {10, 35, 20}},
    {"row 2 of two wraps to 0", {10, 20, 40, 100}, {1, 2, 0, 2}, {10, 5, 20}},
    {"row of the highest number wraps to 1", {10, 20, 40, 100}, {1, 2, 0, MOST}, {10, 35, 20}},
    {"column and row", {0, 0, 10, 10}, {3, 2, 2, 1}, {3, 1.5, 2}},
    {"negative column", {7, 8, 130, 40}, {4, 1, -1, 0}, {7, 8, 20}},
    {"negative row", {7, 8, 130, 40}, {4, 1, 2, -1}, {7, 8, 20}},
    {"lowest column", {7, 8, 130, 40}, {4, 1, LEAST, 0}, {7, 8, 20}},
    {"lowest row", {7, 8, 130, 40}, {4, 1, 0, LEAST}, {7, 8, 20}},
};

enum class Plane
{
    Profile,
    Surface
};

zRect3d64f BoxOf(Plane plane, const PlaneBox& box)
{
    return plane == Plane::Profile ? zRect3d64f{box.first, 1000, box.second, box.width, 2000, box.extent}
                                   : zRect3d64f{box.first, box.second, 1000, box.width, box.extent, 2000};
}

/// What the nine parameters are then; those that are not set are as before.
RegionFields Expected(Plane plane, const Square& square)
{
    RegionFields fields = BEFORE;
    fields[0] = square.first;
    fields[3] = square.side;
    if (plane == Plane::Profile)
    {
        fields[2] = square.second;
        fields[5] = square.side;
        return fields;
    }
    fields[1] = square.second;
    fields[4] = square.side;
    fields[2] = 1000;
    fields[5] = 2000;
    return fields;
}

/// A region of each kind of data, with known values.
class Region_defaults : public testing::Test
{
protected:
    void SetUp() override
    {
        for (AnchoredBoxRegion* const region : Regions())
        {
            SetParameters(*region, BEFORE);
        }
    }

    std::vector<AnchoredBoxRegion*> Regions()
    {
        return {&profile, &surface, &image};
    }

    void ExpectUntouched()
    {
        for (AnchoredBoxRegion* const region : Regions())
        {
            EXPECT_EQ(Parameters(*region), BEFORE);
        }
    }

    AnchoredProfileRegion profile{true};
    AnchoredSurfaceRegion surface{true};
    AnchoredImageRegion image{true};
};

void Place(Plane plane, const zRect3d64f& box, AnchoredProfileRegion& profile, AnchoredSurfaceRegion& surface,
           const Layout& l)
{
    plane == Plane::Profile ? DefaultProfileRegionInit(box, &profile, l.columns, l.rows, l.column, l.row)
                            : DefaultSurfaceRegionInit(box, &surface, l.columns, l.rows, l.column, l.row);
}

TEST_F(Region_defaults, follow_the_layout)
{
    for (const Plane plane : {Plane::Profile, Plane::Surface})
    {
        AnchoredBoxRegion& region = plane == Plane::Profile ? static_cast<AnchoredBoxRegion&>(profile) : surface;
        for (const LayoutCase& c : LAYOUTS)
        {
            SCOPED_TRACE(std::string(plane == Plane::Profile ? "profile, " : "surface, ") + c.name);
            SetParameters(region, BEFORE);
            Place(plane, BoxOf(plane, c.box), profile, surface, c.layout);
            ExpectNear(Parameters(region), Expected(plane, c.expected));
            EXPECT_EQ(Fields(region.relativeRegion), NEW_REGION) << "only the parameters are set";
            EXPECT_EQ(Fields(region.absoluteRegion), NEW_REGION) << "only the parameters are set";
        }
    }
}

TEST_F(Region_defaults, take_the_most_columns_and_rows)
{
    constexpr double units = 6442450942.0; // three times the most columns, and one
    const double unit = 100.0 / units;
    for (const Plane plane : {Plane::Profile, Plane::Surface})
    {
        AnchoredBoxRegion& region = plane == Plane::Profile ? static_cast<AnchoredBoxRegion&>(profile) : surface;
        const zRect3d64f box = BoxOf(plane, {0, 0, 100, 100});
        Place(plane, box, profile, surface, {MOST, 1, 0, 0});
        EXPECT_DOUBLE_EQ(region.width.Get(), 2 * unit);
        EXPECT_NEAR(region.x.Get(), -50 + 2 * unit, 1e-9);
        Place(plane, box, profile, surface, {MOST, 1, MOST - 1, 0});
        EXPECT_NEAR(region.x.Get(), 50 - 2 * unit, 1e-9);
        Place(plane, box, profile, surface, {MOST, 1, MOST, 0});
        EXPECT_NEAR(region.x.Get(), -50 + 2 * unit, 1e-9);
        Place(plane, box, profile, surface, {1, MOST, 0, MOST - 1});
        const auto& second = plane == Plane::Profile ? region.z : region.y;
        EXPECT_NEAR(second.Get(), 50 - 2 * unit, 1e-9);
        EXPECT_DOUBLE_EQ(region.width.Get(), 2 * unit);
    }
}

// The grid is symmetric, so mirrored columns stand at mirrored places, and neighbours stand three units apart.
TEST_F(Region_defaults, make_a_grid_that_is_centred_and_lies_within_the_box)
{
    const zRect3d64f box{5, 0, -3, 61, 0, 47};
    for (int columns = 1; columns <= 9; ++columns)
    {
        for (int rows = 1; rows <= 9; ++rows)
        {
            for (int column = 0; column < columns; ++column)
            {
                DefaultProfileRegionInit(box, &profile, columns, rows, column, 0);
                const RegionFields here = Parameters(profile);
                DefaultProfileRegionInit(box, &profile, columns, rows, columns - 1 - column, rows - 1);
                const RegionFields mirrored = Parameters(profile);
                EXPECT_NEAR(here[0] + mirrored[0], 2 * box.x, 1e-9);
                EXPECT_NEAR(here[2] + mirrored[2], 2 * box.z, 1e-9);
                EXPECT_GE(here[0] - here[3], box.x - box.width / 2 - 1e-9) << "half a side of space beside it";
                EXPECT_GE(here[2] - here[5], box.z - box.height / 2 - 1e-9);
                DefaultProfileRegionInit(box, &profile, columns, rows, column + 1, 0);
                if (column + 1 < columns)
                {
                    EXPECT_NEAR(Parameters(profile)[0] - here[0], 1.5 * here[3], 1e-9);
                }
            }
        }
    }
}

// --- images ---------------------------------------------------------------------------------------------------------

struct ImageCase
{
    const char* name;
    zRect32s box;
    Layout layout;
    Square expected;
};

TEST_F(Region_defaults, of_an_image_are_whole_pixels)
{
    const std::vector<ImageCase> cases = {
        {"no layout: half of 5 is 2", {3, 3, 7, 5}, {0, 0, 0, 0}, {3, 3, 2}},
        {"no layout: half of 1 is 0", {3, 3, 1, 5}, {0, 0, 0, 0}, {3, 3, 0}},
        {"one region", {50, 40, 101, 83}, {1, 1, 0, 0}, {50, 40, 40}},
        {"second of two columns", {50, 40, 101, 83}, {2, 1, 1, 0}, {71, 40, 28}},
        {"first of two columns", {50, 40, 101, 83}, {2, 1, 0, 0}, {29, 40, 28}},
        {"column 3 of two wraps to 1", {50, 40, 101, 83}, {2, 1, 3, 0}, {71, 40, 28}},
        // 83 / 7 = 11 units; margins (101 - 44) / 2 = 28 and (83 - 77) / 2 = 3
        {"second of two rows", {50, 40, 101, 83}, {1, 2, 0, 1}, {50, 57, 22}},
        {"negative column", {50, 40, 101, 83}, {2, 1, -1, 0}, {50, 40, 28}},
        {"negative row", {50, 40, 101, 83}, {2, 1, 0, LEAST}, {50, 40, 28}},
        // no unit is left: 20 / 31 = 0, and the margins are half of the image
        {"more columns than fit", {10, 10, 20, 20}, {10, 1, 4, 0}, {10, 10, 0}},
        {"most columns", {50, 50, 100, 100}, {MOST, 1, MOST - 1, 0}, {50, 50, 0}},
        {"most columns and rows", {50, 50, 100, 100}, {MOST, MOST, 7, 7}, {50, 50, 0}},
        {"fewest columns", {50, 40, 101, 83}, {LEAST, 1, 0, 0}, {50, 40, 41}},
        // a unit is 536870911, the margin 1
        {"largest box", {MOST, MOST, MOST, MOST}, {1, 1, 0, 0}, {2147483647.0, 2147483647.0, 1073741822.0}},
        // 2147483647 - 1073741823 + 0 + 5 * 306783378, beyond 32 bits; the rows' margin is (2147483647 - 1227133512) /
        // 2
        {"largest box, second column",
         {MOST, MOST, MOST, MOST},
         {2, 1, 1, 0},
         {2607658714.0, 2147483647.0, 613566756.0}},
    };
    for (const ImageCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        SetParameters(image, BEFORE);
        DefaultImageRegionInit(c.box, &image, c.layout.columns, c.layout.rows, c.layout.column, c.layout.row);
        RegionFields expected = BEFORE;
        expected[0] = c.expected.first;
        expected[1] = c.expected.second;
        expected[3] = c.expected.side;
        expected[4] = c.expected.side;
        EXPECT_EQ(Parameters(image), expected);
    }
}

// --- what is refused ------------------------------------------------------------------------------------------------

struct RefusedCall
{
    const char* name;
    std::function<void()> call;
    int status;
    const char* function;
};

void ExpectRefused(const RefusedCall& c)
{
    SCOPED_TRACE(c.name);
    try
    {
        c.call();
        ADD_FAILURE() << "nothing was raised";
    }
    catch (const Ta::Exception& exception)
    {
        EXPECT_EQ(exception.Status(), c.status);
        EXPECT_STREQ(exception.Message(), "");
        EXPECT_EQ(exception.Function(), std::string("Mu::TlkHelper::") + c.function);
        EXPECT_STREQ(exception.File(), "Libs/MuTlkHelper/MuTlkHelper/StatsUtils");
    }
}

TEST_F(Region_defaults, refuse_a_box_without_place_or_extent_and_leave_the_region)
{
    constexpr zRect3d64f good{1, 2, 3, 10, 20, 30};
    double zRect3d64f::*const fields[] = {&zRect3d64f::x,     &zRect3d64f::y,      &zRect3d64f::z,
                                          &zRect3d64f::width, &zRect3d64f::length, &zRect3d64f::height};
    for (std::size_t i = 0; i < std::size(fields); ++i)
    {
        const bool isCentre = i < 3;
        const bool countsForProfile = i != 1 && i != 4;
        for (const double bad :
             isCentre ? std::vector<double>{NULL_VALUE} : std::vector<double>{0, -0.0, -1, NULL_VALUE, NOT_A_NUMBER})
        {
            SCOPED_TRACE("field " + std::to_string(i) + " is " + std::to_string(bad));
            zRect3d64f box = good;
            box.*fields[i] = bad;
            for (const Layout& l : {Layout{0, 0, 0, 0}, Layout{2, 2, 1, 1}})
            {
                const auto onSurface = [&] {
                    DefaultSurfaceRegionInit(box, &surface, l.columns, l.rows, l.column, l.row);
                };
                const auto onProfile = [&] {
                    DefaultProfileRegionInit(box, &profile, l.columns, l.rows, l.column, l.row);
                };
                ExpectRefused({"surface", onSurface, 0, "DefaultSurfaceRegionInit"});
                if (countsForProfile)
                {
                    ExpectRefused({"profile", onProfile, 0, "DefaultProfileRegionInit"});
                }
                ExpectUntouched();
            }
        }
    }
}

TEST_F(Region_defaults, of_a_profile_do_not_look_at_y_and_length_of_the_box)
{
    DefaultProfileRegionInit({100, NULL_VALUE, 50, 40, NOT_A_NUMBER, 30}, &profile, 0, 0, 0, 0);
    EXPECT_EQ(Parameters(profile), Expected(Plane::Profile, {100, 50, 15}));
}

TEST_F(Region_defaults, of_an_image_refuse_a_box_with_a_field_below_1)
{
    z32s zRect32s::*const fields[] = {&zRect32s::x, &zRect32s::y, &zRect32s::width, &zRect32s::height};
    for (z32s zRect32s::*const field : fields)
    {
        for (const int bad : {0, -1, LEAST})
        {
            zRect32s box{5, 6, 7, 8};
            box.*field = bad;
            ExpectRefused(
                {"image", [&] { DefaultImageRegionInit(box, &image, 1, 1, 0, 0); }, 0, "DefaultImageRegionInit"});
            ExpectUntouched();
        }
    }
    DefaultImageRegionInit({1, 1, 1, 1}, &image, 0, 0, 0, 0);
    EXPECT_EQ(image.width.Get(), 0.0);
}

TEST_F(Region_defaults, refuse_a_null_region)
{
    constexpr zRect3d64f box{1, 2, 3, 10, 20, 30};
    for (const RefusedCall& c : {
             RefusedCall{"profile", [&] { DefaultProfileRegionInit(box, nullptr, 0, 0, 0, 0); }, -999,
                         "DefaultProfileRegionInit"},
             RefusedCall{"surface", [&] { DefaultSurfaceRegionInit(box, nullptr, 0, 0, 0, 0); }, -999,
                         "DefaultSurfaceRegionInit"},
             RefusedCall{"image",
                         [] {
                             DefaultImageRegionInit({5, 5, 5, 5}, nullptr, 0, 0, 0, 0);
                         },
                         -999, "DefaultImageRegionInit"},
         })
    {
        ExpectRefused(c);
    }
}

TEST_F(Region_defaults, raise_at_a_limit_of_a_parameter)
{
    const LogCapture log; // the refusal is logged, too
    profile.width.EnableMaximum(100);
    try
    {
        DefaultProfileRegionInit({0, 0, 0, 300, 0, 300}, &profile, 0, 0, 0, 0);
        ADD_FAILURE() << "the limit was passed";
    }
    catch (const Ta::Exception& exception)
    {
        EXPECT_EQ(exception.Status(), -997);
    }
    EXPECT_EQ(profile.width.Get(), BEFORE[3]);
}

// --- by the kind of message -----------------------------------------------------------------------------------------

constexpr zRect3d64f DATA_BOX{100, 60, 50, 40, 24, 30};

TEST_F(Region_defaults, from_a_box_follow_what_it_is_said_to_be_of)
{
    DefaultRegionInit(DATA_BOX, &profile, 0, 0, 0, 0, true);
    EXPECT_EQ(Parameters(profile), (RegionFields{100, 72, 50, 15, 75, 15, 77, 78, 79}));
    DefaultRegionInit(DATA_BOX, &surface, 0, 0, 0, 0, false);
    EXPECT_EQ(Parameters(surface), (RegionFields{100, 60, 50, 12, 12, 30, 77, 78, 79}));
    DefaultRegionInit({0, 0, 0, 130, 1, 40}, &profile, 4, 1, 1, 0, true);
    EXPECT_EQ(Parameters(profile), (RegionFields{-15, 72, 0, 20, 75, 20, 77, 78, 79}));
}

TEST_F(Region_defaults, from_a_message_follow_its_kind)
{
    DefaultRegionInit(Profile({1, 2}).BoundingBox(DATA_BOX).Get(), &profile, 0, 0, 0, 0);
    EXPECT_EQ(Parameters(profile), (RegionFields{100, 72, 50, 15, 75, 15, 77, 78, 79}));
    DefaultRegionInit(PointProfile({{1, 2}}).BoundingBox({0, 0, 0, 130, 0, 40}).Get(), &profile, 4, 1, 5, 0);
    EXPECT_EQ(Parameters(profile), (RegionFields{-15, 72, 0, 20, 75, 20, 77, 78, 79}));
    DefaultRegionInit(Surface({{1, 2}}).BoundingBox(DATA_BOX).Get(), &surface, 0, 0, 0, 0);
    EXPECT_EQ(Parameters(surface), (RegionFields{100, 60, 50, 12, 12, 30, 77, 78, 79}));
    DefaultRegionInit(PointSurface({{{1, 2, 3}}}).BoundingBox(DATA_BOX).Get(), &surface, 0, 0, 0, 0);
    EXPECT_EQ(Parameters(surface), (RegionFields{100, 60, 50, 12, 12, 30, 77, 78, 79}));
}

TEST_F(Region_defaults, of_an_image_message_are_placed_by_its_size)
{
    const auto imageOf = [](std::size_t width, std::size_t height) {
        return Image(Rows<z8u>(height, std::vector<z8u>(width, 0)));
    };
    // 7 by 5 pixels: the centre is at 3, 2
    DefaultRegionInit(imageOf(7, 5).Get(), &image, 0, 0, 0, 0);
    EXPECT_EQ(Parameters(image), (RegionFields{3, 2, 73, 2, 2, 76, 77, 78, 79}));
    // 101 by 83: the centre is at 50, 41, a unit is 14, the margins are 1 and 13
    DefaultRegionInit(imageOf(101, 83).Get(), &image, 2, 1, 1, 0);
    EXPECT_EQ(Parameters(image), (RegionFields{71, 41, 73, 28, 28, 76, 77, 78, 79}));
    // the size counts for an image, its bounding box does not
    DefaultRegionInit(imageOf(7, 5).BoundingBox(DATA_BOX).Get(), &image, 0, 0, 0, 0);
    EXPECT_EQ(Parameters(image), (RegionFields{3, 2, 73, 2, 2, 76, 77, 78, 79}));
}

TEST_F(Region_defaults, leave_the_region_where_the_message_tells_nothing)
{
    const std::vector<Ta::Object<void*>> messages = {
        Ta::Object<void*>(),
        Profile({1, 2}),
        Surface({{1, 2}}),
        Measure(1),
        NullMessage().BoundingBox(DATA_BOX),
        PointFeature({1, 2, 3}).BoundingBox(DATA_BOX),
    };
    for (const Ta::Object<void*>& message : messages)
    {
        for (AnchoredBoxRegion* const region : Regions())
        {
            DefaultRegionInit(message.Get(), region, 0, 0, 0, 0);
        }
        DefaultRegionInit(message.Get(), nullptr, 0, 0, 0, 0);
    }
    ExpectUntouched();
}

TEST_F(Region_defaults, from_a_message_refuse_a_region_of_another_kind_of_data)
{
    const Ta::Object<void*> profileMessage = Profile({1}).BoundingBox(DATA_BOX);
    const Ta::Object<void*> surfaceMessage = Surface({{1}}).BoundingBox(DATA_BOX);
    const Ta::Object<void*> imageMessage = Image({{1, 2}, {3, 4}});
    AnchoredBoxRegion plain(true, true, true, true, true, true, true, true, true, true, true, true);
    const auto from = [](const Ta::Object<void*>& message, AnchoredRegionInterface* region) {
        return [&message, region] { DefaultRegionInit(message.Get(), region, 0, 0, 0, 0); };
    };
    const char* const onProfile = "DefaultProfileRegionInit";
    const char* const onSurface = "DefaultSurfaceRegionInit";
    const char* const onImage = "DefaultImageRegionInit";
    for (const RefusedCall& c : {
             RefusedCall{"surface region", from(profileMessage, &surface), -999, onProfile},
             RefusedCall{"plain region on a profile", from(profileMessage, &plain), -999, onProfile},
             RefusedCall{"no region on a profile", from(profileMessage, nullptr), -999, onProfile},
             RefusedCall{"profile region", from(surfaceMessage, &profile), -999, onSurface},
             RefusedCall{"image region on a surface", from(surfaceMessage, &image), -999, onSurface},
             RefusedCall{"surface region on an image", from(imageMessage, &surface), -999, onImage},
             RefusedCall{"no region on an image", from(imageMessage, nullptr), -999, onImage},
             RefusedCall{"box", [&] { DefaultRegionInit(DATA_BOX, &surface, 0, 0, 0, 0, true); }, -999, onProfile},
         })
    {
        ExpectRefused(c);
    }
    ExpectUntouched();
    EXPECT_EQ(Parameters(plain), NEW_REGION);
}

TEST_F(Region_defaults, from_a_message_refuse_a_flat_box_as_the_typed_ones_do)
{
    const Ta::Object<void*> flat = Surface({{1}}).BoundingBox({1, 2, 3, 10, 20, 0});
    const Ta::Object<void*> flatProfile = Profile({1}).BoundingBox({1, 2, 3, 10, 20, 0});
    const Ta::Object<void*> narrow = Image({{1}, {2}, {3}}); // its centre is at 0
    for (const RefusedCall& c : {
             RefusedCall{"surface", [&] { DefaultRegionInit(flat.Get(), &surface, 0, 0, 0, 0); }, 0,
                         "DefaultSurfaceRegionInit"},
             RefusedCall{"profile", [&] { DefaultRegionInit(flatProfile.Get(), &profile, 0, 0, 0, 0); }, 0,
                         "DefaultProfileRegionInit"},
             RefusedCall{"image", [&] { DefaultRegionInit(narrow.Get(), &image, 0, 0, 0, 0); }, 0,
                         "DefaultImageRegionInit"},
         })
    {
        ExpectRefused(c);
    }
    ExpectUntouched();
}

// --- parameter groups -----------------------------------------------------------------------------------------------

TEST(Region_group_defaults, are_fixed_values)
{
    Ta::Params::ProfileRegion profile;
    SetParameters(profile, BEFORE);
    DefaultProfileRegionInit(profile);
    EXPECT_EQ(Parameters(profile), (RegionFields{0, 72, 0, 100, 75, 100, 77, 0, 79}));

    Ta::Params::BoxRegion box(true, true, true, true, true, true, true, true, true, true, true, true, "Box");
    SetParameters(box, BEFORE);
    DefaultBoxRegionInit(box);
    EXPECT_EQ(Parameters(box), (RegionFields{0, 0, 0, 100, 100, 100, 77, 78, 79}));

    // 1 by 1, where the others are 100 by 100
    Ta::Params::SurfaceRegion2d surface;
    SetParameters(surface, BEFORE);
    DefaultSurfaceRegionInit(surface);
    EXPECT_EQ(Parameters(surface), (RegionFields{0, 0, 73, 1, 1, 76, 77, 78, 0}));
}
} // namespace
