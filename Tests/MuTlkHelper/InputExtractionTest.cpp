#include <MuTlkHelper/InputUtils.h>

#include <Support/Builders.h>
#include <Support/CountingAlloc.h>
#include <Support/Lists.h>
#include <Support/PointEquality.h>
#include <Support/Raised.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace
{
using namespace Mu::TlkHelper;
using namespace Support;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;
using Points = std::vector<zPoint3d64f>;
using Line = std::vector<zPoint64f>;
using Bytes = std::vector<z8u>;

const double NOT_A_NUMBER = std::nan("");
const double ENDLESS = std::numeric_limits<double>::infinity();
const Region3d<double> EVERYWHERE{0, 0, 0, 1e6, 1e6, 1e6, 0, 0, 0};
const RegionXZ<double> ALONG_EVERYTHING{0, 0, 1e6, 1e6, 0};

Region3d<double> Turned(Region3d<double> region, double angle)
{
    region.zAngle = angle;
    return region;
}

Points PointsIn(void* surface, const Region3d<double>& region)
{
    Handle list;
    GetPointsFromRegion(surface, region, list.Out());
    return ItemsOf<zPoint3d64f>(list.Get());
}

Bytes GreyIn(void* surface, const Region3d<double>& region)
{
    Handle list;
    GetIntensitiesFromRegion(surface, region, list.Out());
    return ItemsOf<z8u>(list.Get());
}

Line LineIn(void* profile, const RegionXZ<double>& region)
{
    Handle list;
    GetPointsFromRegionXZ(profile, region, list.Out());
    return ItemsOf<zPoint64f>(list.Get());
}

struct LineAndGrey
{
    Line points;
    Bytes grey;
};

LineAndGrey LineAndGreyIn(void* profile, const RegionXZ<double>& region)
{
    Handle list;
    Handle grey;
    GetPointsAndIntensitiesFromRegionXZ(profile, region, list.Out(), grey.Out());
    return {ItemsOf<zPoint64f>(list.Get()), ItemsOf<z8u>(grey.Get())};
}

// Surfaces.

TEST(Points_in_a_box, come_row_by_row_in_world_units)
{
    const auto surface = Surface({{1, 2, 3}, {4, NullPixel, 6}, {7, 8, 9}}).Offset(10, 20, 30).Scale(1, 2, 0.5);
    EXPECT_EQ(PointsIn(surface.Get(), {11.5, 22, 32, 1, 4, 100, 0, 0, 0}),
              (Points{{11, 20, 31}, {12, 20, 31.5}, {12, 22, 33}, {11, 24, 34}, {12, 24, 34.5}}));
}

TEST(Points_in_a_box, count_on_both_bounds_of_the_height)
{
    const auto surface = Surface({{1, 2, 3, 4, 5}});
    EXPECT_EQ(PointsIn(surface.Get(), {2, 0, 3, 10, 10, 2, 0, 0, 0}), (Points{{1, 0, 2}, {2, 0, 3}, {3, 0, 4}}));
}

TEST(Points_in_a_box, at_the_limits_of_16_bits_leave_out_null_only)
{
    const auto surface = Surface({{NullPixel, -32767, 32767}});
    EXPECT_EQ(PointsIn(surface.Get(), EVERYWHERE), (Points{{1, 0, -32767}, {2, 0, 32767}}));
}

TEST(Points_in_a_box, are_none_in_an_empty_region)
{
    const auto surface = Surface({{1, 2}, {3, 4}});
    for (const Region3d<double>& region :
         {Region3d<double>{}, Region3d<double>{50, 0, 0, 1, 1, 100, 0, 0, 0},
          Region3d<double>{0, 0, 50, 100, 100, 1, 0, 0, 0}, Region3d<double>{0.5, 0, 0, 0.5, 10, 100, 0, 0, 0},
          Region3d<double>{NOT_A_NUMBER, 0, 0, 100, 100, 100, 0, 0, 0}})
    {
        EXPECT_EQ(PointsIn(surface.Get(), region), Points());
    }
}

TEST(Points_in_a_box, of_triples_have_their_own_place_and_need_a_z_only)
{
    const auto surface =
        PointSurface({{{1, 2, 3}, {NullPixel, 5, 6}, {7, 8, NullPixel}, {50, 0, 0}}}).Offset(10, 20, 30);
    Region3d<double> region{-16340, 22.5, 34.5, 32752, 5, 9, 0, 0, 0}; // x from -32716 to 36
    EXPECT_EQ(PointsIn(surface.Get(), region), (Points{{11, 22, 33}}));
    region.width = 40000;
    EXPECT_EQ(PointsIn(surface.Get(), region), (Points{{11, 22, 33}, {-32758, 25, 36}, {60, 20, 30}}));
}

TEST(Points_in_a_turned_box, of_triples_need_all_three_components)
{
    const auto surface = PointSurface({{{1, 2, 3}, {NullPixel, 5, 6}, {7, NullPixel, 9}, {7, 8, NullPixel}}});
    EXPECT_EQ(PointsIn(surface.Get(), Turned(EVERYWHERE, 1)), (Points{{1, 2, 3}}));
}

TEST(Points_in_a_turned_box, stay_where_they_are)
{
    const auto surface = Surface({{1, 2, 3}, {4, 5, 6}, {7, NullPixel, 9}});
    // Three wide and none long, turned onto the middle column.
    EXPECT_EQ(PointsIn(surface.Get(), Turned({1, 1, 0, 2, 0, 100, 0, 0, 0}, 90)), (Points{{1, 0, 2}, {1, 1, 5}}));
}

TEST(Points_in_a_turned_box, look_at_the_angle_about_z_only)
{
    const auto surface = Surface({{1, 2, 3}, {4, 5, 6}});
    const Region3d<double> middle{1, 0.5, 0, 0, 5, 100, 45, 45, 0};
    EXPECT_EQ(PointsIn(surface.Get(), middle), (Points{{1, 0, 2}, {1, 1, 5}}));
}

// The two ways tell a pixel that lies half a millionth of a step outside apart: a pixel box takes it in.
TEST(Points_in_a_turned_box, begin_at_an_angle_of_exactly_the_single_precision_epsilon)
{
    const auto surface = Surface({{1, 2, 3}});
    constexpr double EPSILON = 1.1920928955078125e-07;
    const Region3d<double> narrow{1, 0, 0, 2 - 1e-6, 1, 100, 0, 0, 0};
    EXPECT_EQ(PointsIn(surface.Get(), Turned(narrow, std::nextafter(EPSILON, 0))).size(), 3U);
    EXPECT_EQ(PointsIn(surface.Get(), Turned(narrow, -std::nextafter(EPSILON, 0))).size(), 3U);
    EXPECT_EQ(PointsIn(surface.Get(), Turned(narrow, EPSILON)).size(), 1U);
    EXPECT_EQ(PointsIn(surface.Get(), Turned(narrow, -EPSILON)).size(), 1U);
}

TEST(Points_in_a_turned_box, are_none_at_an_angle_that_is_no_number)
{
    const auto surface = Surface({{1, 2, 3}});
    EXPECT_EQ(PointsIn(surface.Get(), Turned(EVERYWHERE, NOT_A_NUMBER)), Points());
}

/// A member that keeps a list of its items and replaces any other, on a message in which it finds two items.
struct KeepingMember
{
    const char* name;
    zType itemType;
    std::function<void(void** list, void* alloc)> get;
};

class Kept_lists : public testing::TestWithParam<KeepingMember>
{
};

TEST_P(Kept_lists, are_added_to_and_others_are_replaced)
{
    const auto& [name, itemType, get] = GetParam();
    Handle list(NewList(itemType));
    void* const kept = list.Get();
    get(list.Out(), nullptr);
    get(list.Out(), nullptr);
    EXPECT_EQ(list.Get(), kept);
    EXPECT_EQ(zArrayList_Count(list.Get()), 4U);

    const Ta::Object<void*> other(NewList(zTypeOf(z16s)));
    MU_CHECK(xzObject_ShareImpl(other.Get()));
    Handle replaced(other.Get());
    get(replaced.Out(), nullptr);
    EXPECT_EQ(xzObject_ReferenceCount(other.Get()), 1) << "the former list is released";
    EXPECT_EQ(zArrayList_ItemType(replaced.Get()), itemType);
    EXPECT_EQ(zArrayList_Count(replaced.Get()), 2U);
}

TEST_P(Kept_lists, are_made_by_the_allocator_with_room_for_1024)
{
    const CountingAlloc alloc;
    {
        Handle list;
        GetParam().get(list.Out(), alloc.Get());
        EXPECT_EQ(static_cast<const zArrayListClass*>(list.Get())->capacity, 1024U);
        EXPECT_EQ(alloc.LiveBlocks(), 2U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Kept_lists,
    testing::Values(KeepingMember{"GetPointsFromRegion", zTypeOf(zPoint3d64f),
                                  [](void** list, void* alloc) {
                                      GetPointsFromRegion(Surface({{1, 2}}).Get(), EVERYWHERE, list, alloc);
                                  }},
                    KeepingMember{"GetIntensitiesFromRegion", zTypeOf(z8u),
                                  [](void** list, void* alloc) {
                                      const auto surface = Surface({{1, 2}}).Intensity({{10, 20}});
                                      GetIntensitiesFromRegion(surface.Get(), EVERYWHERE, list, alloc);
                                  }},
                    KeepingMember{"GetPointsFromRegionXZ", zTypeOf(zPoint64f),
                                  [](void** list, void* alloc) {
                                      GetPointsFromRegionXZ(Profile({1, 2}).Get(), ALONG_EVERYTHING, list, alloc);
                                  }}),
    [](const auto& member) { return std::string(member.param.name); });

TEST(Points_in_a_box, follow_those_that_a_list_holds)
{
    const auto surface = Surface({{1, 2}});
    Handle list;
    GetPointsFromRegion(surface.Get(), EVERYWHERE, list.Out());
    GetPointsFromRegion(surface.Get(), EVERYWHERE, list.Out());
    EXPECT_EQ(ItemsOf<zPoint3d64f>(list.Get()), (Points{{0, 0, 1}, {1, 0, 2}, {0, 0, 1}, {1, 0, 2}}));
}

TEST(Intensities_in_a_box, are_those_of_the_points_there)
{
    const auto surface = Surface({{1, NullPixel, 3}, {4, 50, 6}}).Intensity({{10, 20, 30}, {40, 50, 60}});
    EXPECT_EQ(GreyIn(surface.Get(), {0, 0, 5, 2, 10, 10, 0, 0, 0}), (Bytes{10, 40}));
}

TEST(Intensities_in_a_box, take_as_many_rows_as_the_box_is_heights_high)
{
    const auto surface = Surface({{1}, {2}, {1}, {2}, {1}}).Intensity({{10}, {20}, {30}, {40}, {50}});
    // Heights 1 to 3: two rows, from row 1 on, though the box is one row long.
    EXPECT_EQ(GreyIn(surface.Get(), {0, 1, 2, 1, 0.5, 2, 0, 0, 0}), (Bytes{20, 30}));
}

TEST(Intensities_in_a_box, of_no_height_are_none)
{
    const auto surface = Surface({{1, 1}}).Intensity({{10, 20}});
    EXPECT_EQ(GreyIn(surface.Get(), {0, 0, 1, 10, 10, 0, 0, 0, 0}), Bytes());
}

TEST(Intensities_in_a_box, end_with_the_rows_that_the_surface_has)
{
    const auto surface = Surface({{1}, {2}, {3}}).Scale(1, 1, 0.005).Intensity({{10}, {20}, {30}});
    EXPECT_EQ(GreyIn(surface.Get(), {0, 1, 0, 1, 1, 10, 0, 0, 0}), (Bytes{20, 30})); // asks for 2,000 rows
}

TEST(Intensities_in_a_box, do_not_turn_with_it)
{
    const auto surface = Surface({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}).Intensity({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    EXPECT_EQ(GreyIn(surface.Get(), Turned({1, 0, 0, 2, 0, 100, 0, 0, 0}, 90)).size(), 9U);
    const auto triples = PointSurface({{{1, 0, 0}, {0, 1, 0}}}).Intensity({{10, 20}});
    EXPECT_EQ(GreyIn(triples.Get(), Turned({0, 0, 0, 4, 1, 4, 0, 0, 0}, 90)), (Bytes{10}));
}

TEST(Intensities_in_a_box, of_a_surface_without_leave_the_list_as_it_was)
{
    const auto surface = Surface({{1, 2}});
    Handle none;
    GetIntensitiesFromRegion(surface.Get(), EVERYWHERE, none.Out());
    EXPECT_EQ(none.Get(), nullptr);
    Handle other(NewList(zTypeOf(z16s)));
    void* const kept = other.Get();
    GetIntensitiesFromRegion(surface.Get(), EVERYWHERE, other.Out());
    EXPECT_EQ(other.Get(), kept);
    EXPECT_EQ(zArrayList_ItemType(other.Get()), zTypeOf(z16s));
}

TEST(Intensities_of_a_resampled_surface, need_a_list_of_bytes)
{
    const auto surface = Surface({{1, 2}}).Intensity({{10, 20}});
    const auto add = [&surface](Handle& list) {
        return RaisedBy([&] { GetIntensitiesFromRegionResampled(surface.Get(), EVERYWHERE, list.Out()); });
    };
    Handle bytes(NewList(zTypeOf(z8u)));
    EXPECT_EQ(add(bytes), Raised());
    EXPECT_EQ(ItemsOf<z8u>(bytes.Get()), (Bytes{10, 20}));
    Handle other(NewList(zTypeOf(z16s)));
    EXPECT_EQ(add(other), InputFailure(-984, "GetIntensitiesFromRegionResampled"));
    Handle none;
    EXPECT_EQ(add(none), InputFailure(-997, "GetIntensitiesFromRegionResampled"));
}

TEST(Intensities_of_a_resampled_surface, are_none_without_intensities_and_refused_of_triples)
{
    Handle list(NewList(zTypeOf(z8u)));
    const auto add = [&list](void* surface) {
        return RaisedBy([&] { GetIntensitiesFromRegionResampled(surface, EVERYWHERE, list.Out()); });
    };
    EXPECT_EQ(add(Surface({{1, 2}}).Get()), Raised());
    EXPECT_EQ(add(PointSurface({{{1, 2, 3}}}).Intensity({{1}}).Get()),
              InputFailure(-997, "GetIntensitiesFromRegionResampled"));
    EXPECT_EQ(ItemsOf<z8u>(list.Get()), Bytes());
}

TEST(All_points, are_those_that_are_not_null)
{
    const auto surface = Surface({{1, NullPixel}, {3, 4}}).Offset(10, 20, 30);
    Handle list;
    GetAllPoints(surface.Get(), list.Out());
    EXPECT_EQ(ItemsOf<zPoint3d64f>(list.Get()), (Points{{10, 20, 31}, {10, 21, 33}, {11, 21, 34}}));
    EXPECT_EQ(static_cast<const zArrayListClass*>(list.Get())->capacity, 2000U);
}

TEST(All_points, of_triples_read_the_first_numbers_of_each_row_as_heights)
{
    const auto surface = PointSurface({{{1, 2, 3}, {4, 5, 6}}, {{NullPixel, 8, 9}, {10, 11, 12}}});
    Handle list;
    GetAllPoints(surface.Get(), list.Out());
    EXPECT_EQ(ItemsOf<zPoint3d64f>(list.Get()), (Points{{0, 0, 1}, {1, 0, 2}, {1, 1, 8}}));
}

TEST(All_points, are_not_added_to_a_list_of_another_type)
{
    const auto surface = Surface({{1}});
    Handle list(NewList(zTypeOf(zPoint64f)));
    EXPECT_EQ(RaisedBy([&] { GetAllPoints(surface.Get(), list.Out()); }), InputFailure(-984, "GetAllPoints"));
    EXPECT_EQ(zArrayList_Count(list.Get()), 0U);
}

TEST(Cloud, keeps_the_grid_with_NaN_for_null)
{
    const auto surface = Surface({{1, NullPixel}, {3, 4}}).Offset(10, 20, 30).Scale(0.1, 1, 1);
    Ta::Object<void*> array;
    GetAllPointsPcd(surface.Get(), array, nullptr);
    const auto points = ItemsOfArray<zPoint3d32f>(array.Get());
    ASSERT_EQ(points.size(), 4U);
    EXPECT_EQ(points[3].x, static_cast<float>(0.1 + 10));
    EXPECT_EQ(points[3].z, 34.0F);
    for (const float component : {points[1].x, points[1].y, points[1].z})
    {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(component), 0x7FC00000U);
    }
}

TEST(Cloud, of_triples_has_NaN_where_any_component_is_null)
{
    const auto surface = PointSurface({{{1, 2, 3}, {NullPixel, 2, 3}, {1, NullPixel, 3}, {1, 2, NullPixel}}});
    Ta::Object<void*> array;
    GetAllPointsPcd(surface.Get(), array, nullptr);
    const auto points = ItemsOfArray<zPoint3d32f>(array.Get());
    ASSERT_EQ(points.size(), 4U);
    EXPECT_EQ(points[0].y, 2.0F);
    EXPECT_TRUE(std::isnan(points[1].y) && std::isnan(points[2].x) && std::isnan(points[3].x));
}

TEST(Cloud, is_stored_over_what_the_handle_holds)
{
    const auto surface = Surface({{1}});
    const Ta::Object<void*> former(NewList(zTypeOf(z8u)));
    Ta::Object<void*> array(former.Get()); // borrowed, as the handle does not release it
    GetAllPointsPcd(surface.Get(), array, nullptr);
    EXPECT_NE(array.Get(), former.Get());
    EXPECT_EQ(xzObject_ReferenceCount(former.Get()), 1);
}

TEST(Cloud, of_a_message_that_is_no_surface_raises)
{
    Ta::Object<void*> array;
    EXPECT_EQ(RaisedBy([&] { GetAllPointsPcd(Profile({1}).Get(), array, nullptr); }),
              InputFailure(-997, "GetAllPointsPcd"));
    EXPECT_EQ(array.Get(), nullptr);
}

// Profiles.

TEST(Profile_points, have_an_open_upper_bound_and_with_intensity_a_closed_one)
{
    // A region around heights 2 to 4 is a box of three heights from 2 on: 5 is on its far bound.
    const auto profile = Profile({1, 2, 3, 4, 5, 6, NullPixel}).Intensity({10, 20, 30, 40, 50, 60, 70});
    const RegionXZ<double> region{0, 3, 100, 2, 0};
    EXPECT_EQ(LineIn(profile.Get(), region), (Line{{1, 2}, {2, 3}, {3, 4}}));
    const LineAndGrey both = LineAndGreyIn(profile.Get(), region);
    EXPECT_EQ(both.points, (Line{{1, 2}, {2, 3}, {3, 4}, {4, 5}}));
    EXPECT_EQ(both.grey, (Bytes{20, 30, 40, 50}));
}

TEST(Profile_points, are_in_world_units_and_in_the_range_of_the_region)
{
    const auto profile = Profile({1, 2, 3, 4}).Offset(10, 99, 30).Scale(2, 99, 0.5);
    EXPECT_EQ(LineIn(profile.Get(), {13, 30, 3, 100, 45}), (Line{{12, 31}, {14, 31.5}}));
}

TEST(Profile_points, of_pairs_have_their_own_place_and_need_a_z_only)
{
    const auto profile = PointProfile({{1, 2}, {NullPixel, 3}, {5, NullPixel}, {6, 500}, {7, 8}});
    EXPECT_EQ(LineIn(profile.Get(), {0, 0, 1e6, 100, 0}), (Line{{1, 2}, {-32768, 3}, {7, 8}}));
    EXPECT_EQ(LineIn(profile.Get(), {4, 5, 6, 6, 0}), (Line{{1, 2}, {7, 8}})) << "points on the bounds count";
}

TEST(Profile_points, are_none_in_an_empty_region)
{
    for (const RegionXZ<double>& region : {RegionXZ<double>{}, RegionXZ<double>{50, 0, 1, 100, 0},
                                           RegionXZ<double>{0, 50, 100, 1, 0}, RegionXZ<double>{0, 0, -1, 100, 0}})
    {
        EXPECT_EQ(LineIn(Profile({1, 2}).Get(), region), Line());
        EXPECT_EQ(LineIn(PointProfile({{1, 2}}).Get(), region), Line());
    }
}

TEST(Profile_points_with_intensity, of_a_profile_without_are_the_points_and_null)
{
    const auto profile = Profile({1, 2, 3, 4, 5});
    const Ta::Object<void*> former(NewList(zTypeOf(z8u)));
    void* grey = former.Get();
    Handle list;
    GetPointsAndIntensitiesFromRegionXZ(profile.Get(), {0, 3, 100, 2, 0}, list.Out(), &grey);
    EXPECT_EQ(grey, nullptr);
    EXPECT_EQ(xzObject_ReferenceCount(former.Get()), 1) << "nothing is released";
    EXPECT_EQ(ItemsOf<zPoint64f>(list.Get()), LineIn(profile.Get(), {0, 3, 100, 2, 0}));

    grey = former.Get();
    Handle all;
    GetAllProfilePointsAndIntensity(profile.Get(), all.Out(), &grey);
    EXPECT_EQ(grey, nullptr);
    EXPECT_EQ(ItemsOf<zPoint64f>(all.Get()).size(), 5U);

    grey = former.Get();
    Handle array;
    GetPointAndIntensityArrayFromRegionXZ(profile.Get(), ALONG_EVERYTHING, array.Out(), &grey);
    EXPECT_EQ(grey, nullptr);
    EXPECT_EQ(ItemsOfArray<z16s>(array.Get()).size(), 5U);
}

TEST(Profile_points_with_intensity, come_in_two_lists_that_are_made_anew)
{
    const auto profile = PointProfile({{1, 2}, {3, 4}}).Intensity({10, 20});
    const Ta::Object<void*> formerPoints(NewList(zTypeOf(zPoint64f)));
    const Ta::Object<void*> formerGrey(NewList(zTypeOf(z8u)));
    for (const auto get :
         {+[](void*message, void**list, void**grey) {
              GetPointsAndIntensitiesFromRegionXZ(message, ALONG_EVERYTHING, list, grey);
          },
          +[](void*message, void**list, void**grey) { GetAllProfilePointsAndIntensity(message, list, grey); }})
    {
        MU_CHECK(xzObject_ShareImpl(formerPoints.Get()));
        MU_CHECK(xzObject_ShareImpl(formerGrey.Get()));
        Handle list(formerPoints.Get());
        Handle grey(formerGrey.Get());
        get(profile.Get(), list.Out(), grey.Out());
        EXPECT_EQ(xzObject_ReferenceCount(formerPoints.Get()), 1);
        EXPECT_EQ(xzObject_ReferenceCount(formerGrey.Get()), 1);
        EXPECT_EQ(ItemsOf<zPoint64f>(list.Get()), (Line{{1, 2}, {3, 4}}));
        EXPECT_EQ(ItemsOf<z8u>(grey.Get()), (Bytes{10, 20}));
    }
}

TEST(Profile_points_with_intensity, come_in_lists_of_the_allocator_with_room_for_1024)
{
    const CountingAlloc alloc;
    Handle list;
    Handle grey;
    GetPointsAndIntensitiesFromRegionXZ(Profile({1}).Intensity({10}).Get(), ALONG_EVERYTHING, list.Out(), grey.Out(),
                                        alloc.Get());
    EXPECT_EQ(static_cast<const zArrayListClass*>(list.Get())->capacity, 1024U);
    EXPECT_EQ(static_cast<const zArrayListClass*>(grey.Get())->capacity, 1024U);
    EXPECT_EQ(alloc.LiveBlocks(), 4U);
}

TEST(All_profile_points, of_pairs_need_both_components)
{
    const auto profile = PointProfile({{1, 2}, {NullPixel, 3}, {5, NullPixel}, {7, 8}}).Intensity({10, 20, 30, 40});
    Handle list;
    GetAllProfilePoints(profile.Get(), list.Out());
    EXPECT_EQ(ItemsOf<zPoint64f>(list.Get()), (Line{{1, 2}, {7, 8}}));
    EXPECT_EQ(static_cast<const zArrayListClass*>(list.Get())->capacity, 4U);
    Handle grey;
    GetAllProfilePointsAndIntensity(profile.Get(), list.Out(), grey.Out());
    EXPECT_EQ(ItemsOf<z8u>(grey.Get()), (Bytes{10, 40}));
}

TEST(All_profile_points, are_not_added_to_a_list_of_another_type)
{
    Handle list(NewList(zTypeOf(zPoint3d64f)));
    EXPECT_EQ(RaisedBy([&] { GetAllProfilePoints(Profile({1}).Get(), list.Out()); }),
              InputFailure(-984, "GetAllProfilePoints"));
}

TEST(Masked_points, stay_in_their_place_up_to_one_past_the_box)
{
    // Columns 1 and 2, heights 2 to 4, and one more of each.
    const auto profile = Profile({3, 2, 5, 4, 3, NullPixel}).Intensity({1, 2, 3, 4, 5, 6});
    Handle array;
    GetPointArrayFromRegionXZ(profile.Get(), {1.5, 3, 1, 2, 0}, array.Out());
    EXPECT_EQ(ItemsOfArray<z16s>(array.Get()), (std::vector<z16s>{NullPixel, 2, 5, 4, NullPixel, NullPixel}));

    Handle again;
    Handle grey;
    GetPointAndIntensityArrayFromRegionXZ(profile.Get(), {1.5, 3, 1, 2, 0}, again.Out(), grey.Out());
    EXPECT_EQ(ItemsOfArray<z16s>(again.Get()), ItemsOfArray<z16s>(array.Get()));
    EXPECT_EQ(ItemsOfArray<z8u>(grey.Get()), (Bytes{0, 2, 3, 4, 0, 6})) << "of a null point it stays";
}

TEST(Masked_points, of_pairs_lose_both_components_unless_their_z_was_null)
{
    const auto profile = PointProfile({{1, 2}, {50, 2}, {50, NullPixel}, {NullPixel, 2}}).Intensity({1, 2, 3, 4});
    Handle array;
    Handle grey;
    GetPointAndIntensityArrayFromRegionXZ(profile.Get(), {0, 0, 10, 10, 0}, array.Out(), grey.Out());
    EXPECT_EQ(ItemsOfArray<zPoint16s>(array.Get()),
              (std::vector<zPoint16s>{{1, 2}, {NullPixel, NullPixel}, {50, NullPixel}, {NullPixel, NullPixel}}));
    EXPECT_EQ(ItemsOfArray<z8u>(grey.Get()), (Bytes{1, 0, 3, 0}));
}

TEST(Masked_points, of_an_empty_region_are_all_null)
{
    const auto profile = Profile({1, NullPixel, 3}).Intensity({1, 2, 3});
    Handle array;
    Handle grey;
    GetPointAndIntensityArrayFromRegionXZ(profile.Get(), {}, array.Out(), grey.Out());
    EXPECT_EQ(ItemsOfArray<z16s>(array.Get()), (std::vector<z16s>{NullPixel, NullPixel, NullPixel}));
    EXPECT_EQ(ItemsOfArray<z8u>(grey.Get()), (Bytes{0, 0, 0})) << "of a null point too";
    Handle alone;
    GetPointArrayFromRegionXZ(profile.Get(), {}, alone.Out());
    EXPECT_EQ(ItemsOfArray<z16s>(alone.Get()), ItemsOfArray<z16s>(array.Get()));
}

TEST(Masked_points, are_copies_made_by_the_allocator)
{
    const CountingAlloc alloc;
    const auto profile = Profile({1, 2, 3});
    {
        Handle array;
        GetPointArrayFromRegionXZ(profile.Get(), {}, array.Out(), alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 2U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
    EXPECT_EQ(*static_cast<const z16s*>(TvProfileMsg_Points(profile.Get())), 1) << "the message is read only";
}

TEST(Masked_points, of_a_message_without_points_are_null)
{
    const auto surface = Surface({{1}});
    Handle array;
    GetPointArrayFromRegionXZ(surface.Get(), ALONG_EVERYTHING, array.Out());
    EXPECT_EQ(array.Get(), nullptr);
}

Line InRegions(void* profile, const std::vector<RegionXZ<double>>& regions)
{
    Handle list;
    GetProfilePointsFromRegions(profile, regions.data(), regions.size(), list.Out());
    return ItemsOf<zPoint64f>(list.Get());
}

Line InTurnedRegions(void* profile, std::vector<RegionXZ<double>> regions, std::vector<double> angles)
{
    Handle list;
    GetProfilePointsFromRegionsWithAngle(profile, regions.data(), angles.data(), regions.size(), list.Out());
    return ItemsOf<zPoint64f>(list.Get());
}

TEST(Points_in_regions, come_once_though_several_hold_them)
{
    const RegionXZ<double> left{1, 0, 2, 100, 0};  // 0 to 2
    const RegionXZ<double> right{3, 0, 2, 100, 0}; // 2 to 4
    const auto profile = Profile({10, 11, 12, 13, 14, 15});
    const Line expected{{0, 10}, {1, 11}, {2, 12}, {3, 13}, {4, 14}};
    EXPECT_EQ(InRegions(profile.Get(), {right, left}), expected);
    EXPECT_EQ(InTurnedRegions(profile.Get(), {right, left}, {0, 180}), expected);
    const auto pairs = PointProfile({{0, 10}, {1, 11}, {2, 12}, {3, 13}, {4, 14}, {5, 15}});
    EXPECT_EQ(InRegions(pairs.Get(), {right, left}), expected);
    EXPECT_EQ(InTurnedRegions(pairs.Get(), {right, left}, {0, 180}), expected);
}

TEST(Points_in_regions, of_none_are_none_in_a_new_list)
{
    const auto profile = Profile({1, 2, 3});
    Handle list;
    GetProfilePointsFromRegions(profile.Get(), nullptr, 0, list.Out());
    EXPECT_EQ(zArrayList_ItemType(list.Get()), zTypeOf(zPoint64f));
    EXPECT_EQ(zArrayList_Count(list.Get()), 0U);
    EXPECT_EQ(static_cast<const zArrayListClass*>(list.Get())->capacity, 3U);
    Handle turned;
    GetProfilePointsFromRegionsWithAngle(profile.Get(), nullptr, nullptr, 0, turned.Out());
    EXPECT_EQ(zArrayList_ItemType(turned.Get()), zTypeOf(zPoint64f));
    EXPECT_EQ(static_cast<const zArrayListClass*>(turned.Get())->capacity, 0U);
}

TEST(Points_in_regions, need_the_regions_and_angles_that_are_counted)
{
    const auto profile = Profile({1, 2, 3});
    RegionXZ<double> region = ALONG_EVERYTHING;
    double angle = 0;
    Handle list;
    const auto turned = [&](RegionXZ<double>* regions, double* angles) {
        return RaisedBy([&] { GetProfilePointsFromRegionsWithAngle(profile.Get(), regions, angles, 1, list.Out()); });
    };
    EXPECT_EQ(RaisedBy([&] { GetProfilePointsFromRegions(profile.Get(), nullptr, 1, list.Out()); }),
              InputFailure(-997, "GetProfilePointsFromRegions"));
    EXPECT_EQ(turned(nullptr, &angle), InputFailure(-997, "GetProfilePointsFromRegionsWithAngle"));
    EXPECT_EQ(turned(&region, nullptr), InputFailure(-997, "GetProfilePointsFromRegionsWithAngle"));
    EXPECT_EQ(list.Get(), nullptr);
}

TEST(Points_in_regions, have_open_upper_bounds)
{
    const auto profile = Profile({1, 2, 3, 4, 5});
    const RegionXZ<double> region{2, 3, 2, 2, 0}; // columns 1 to 3, heights 2 to 4
    EXPECT_EQ(InRegions(profile.Get(), {region}), (Line{{1, 2}, {2, 3}, {3, 4}}));
    EXPECT_EQ(InRegions(profile.Get(), {region, {}}), (Line{{1, 2}, {2, 3}, {3, 4}}));
}

TEST(Points_in_regions, of_pairs_go_by_their_stored_place_and_need_both_components)
{
    const auto profile = PointProfile({{-20, 5}, {NullPixel, 5}, {-20, NullPixel}, {300, 5}});
    EXPECT_EQ(InRegions(profile.Get(), {{-20, 5, 10, 10, 0}, {300, 5, 0, 10, 0}}), (Line{{-20, 5}, {300, 5}}));
}

TEST(Points_in_regions, are_added_to_a_list_whose_type_is_not_looked_at)
{
    const auto profile = Profile({1, 2});
    const RegionXZ<double> regions[] = {ALONG_EVERYTHING};
    Handle list(NewList(zTypeOf(zPoint64f)));
    void* const kept = list.Get();
    GetProfilePointsFromRegions(profile.Get(), regions, 1, list.Out());
    GetProfilePointsFromRegions(profile.Get(), regions, 1, list.Out());
    EXPECT_EQ(list.Get(), kept);
    EXPECT_EQ(zArrayList_Count(list.Get()), 4U);

    Handle raw(NewList(zBytes_GetType(sizeof(zPoint64f))));
    GetProfilePointsFromRegions(profile.Get(), regions, 1, raw.Out());
    EXPECT_EQ(ItemsOf<zPoint64f>(raw.Get()), (Line{{0, 1}, {1, 2}}));
}

TEST(Points_in_regions, do_not_write_past_items_of_another_size)
{
    const auto profile = Profile({1, 2});
    RegionXZ<double> regions[] = {ALONG_EVERYTHING};
    double angles[] = {0};
    for (const zType type : {zTypeOf(z8u), zTypeOf(zPoint3d64f), zTypeOf(zArrayList)})
    {
        Handle list(NewList(type, 8));
        EXPECT_EQ(RaisedBy([&] { GetProfilePointsFromRegions(profile.Get(), regions, 1, list.Out()); }),
                  InputFailure(-984, "GetProfilePointsFromRegions"));
        EXPECT_EQ(
            RaisedBy([&] { GetProfilePointsFromRegionsWithAngle(profile.Get(), regions, angles, 1, list.Out()); }),
            InputFailure(-984, "GetProfilePointsFromRegionsWithAngle"));
        EXPECT_EQ(RaisedBy([&] { GetProfilePointsFromRegions(profile.Get(), regions, 0, list.Out()); }), Raised());
        EXPECT_EQ(zArrayList_Count(list.Get()), 0U);
    }
}

TEST(Points_in_turned_regions, count_on_the_bounds_of_the_turned_region)
{
    const auto profile = PointProfile({{0, 0}, {0, 3}, {0, 4}, {3, 0}, {1, -3}});
    // Six wide and two high, upright.
    EXPECT_EQ(InTurnedRegions(profile.Get(), {{0, 0, 6, 2, 0}}, {90}), (Line{{0, 0}, {0, 3}, {1, -3}}));
}

TEST(Points_in_turned_regions, without_z_lie_outside_by_their_size_only)
{
    const auto profile = PointProfile({{1, NullPixel}, {NullPixel, 2}});
    EXPECT_EQ(InTurnedRegions(profile.Get(), {{0, 0, 1e300, 1e300, 0}}, {0}), (Line{{-32768, 2}}));
    EXPECT_EQ(InTurnedRegions(profile.Get(), {{0, 0, ENDLESS, ENDLESS, 0}}, {0}), (Line{{1, zNULL_64F}, {-32768, 2}}));
}

TEST(Points_in_turned_regions, are_numbered_in_16_bits)
{
    std::vector<z16s> heights(32'770, NullPixel);
    heights[32'767] = 1;
    heights[32'768] = 2;
    const auto profile = Profile(heights);
    EXPECT_EQ(InTurnedRegions(profile.Get(), {ALONG_EVERYTHING}, {0}), (Line{{32767, 1}, {-32768, 2}}));
}

// What every member refuses.

struct Refusal
{
    const char* name;
    std::function<void(void* message, void** result)> get;
};

std::vector<Refusal> SurfaceMembers()
{
    return {{"GetAllPoints", [](void* m, void** r) { GetAllPoints(m, r); }},
            {"GetPointsFromRegion", [](void* m, void** r) { GetPointsFromRegion(m, EVERYWHERE, r); }},
            {"GetIntensitiesFromRegion", [](void* m, void** r) { GetIntensitiesFromRegion(m, EVERYWHERE, r); }},
            {"GetIntensitiesFromRegionResampled",
             [](void* m, void** r) { GetIntensitiesFromRegionResampled(m, EVERYWHERE, r); }}};
}

std::vector<Refusal> ProfileMembers()
{
    static RegionXZ<double> regions[] = {ALONG_EVERYTHING};
    static double angles[] = {0};
    return {{"GetAllProfilePoints", [](void* m, void** r) { GetAllProfilePoints(m, r); }},
            {"GetAllProfilePointsAndIntensity",
             [](void* m, void** r) {
                 Handle spare;
                 GetAllProfilePointsAndIntensity(m, r, spare.Out());
             }},
            {"GetAllProfilePointsAndIntensity",
             [](void* m, void** r) {
                 Handle spare;
                 GetAllProfilePointsAndIntensity(m, spare.Out(), r);
             }},
            {"GetPointArrayFromRegionXZ", [](void* m, void** r) { GetPointArrayFromRegionXZ(m, regions[0], r); }},
            {"GetPointAndIntensityArrayFromRegionXZ",
             [](void* m, void** r) {
                 Handle spare;
                 GetPointAndIntensityArrayFromRegionXZ(m, regions[0], r, spare.Out());
             }},
            {"GetPointAndIntensityArrayFromRegionXZ",
             [](void* m, void** r) {
                 Handle spare;
                 GetPointAndIntensityArrayFromRegionXZ(m, regions[0], spare.Out(), r);
             }},
            {"GetPointsFromRegionXZ", [](void* m, void** r) { GetPointsFromRegionXZ(m, regions[0], r); }},
            {"GetPointsAndIntensitiesFromRegionXZ",
             [](void* m, void** r) {
                 Handle spare;
                 GetPointsAndIntensitiesFromRegionXZ(m, regions[0], r, spare.Out());
             }},
            {"GetPointsAndIntensitiesFromRegionXZ",
             [](void* m, void** r) {
                 Handle spare;
                 GetPointsAndIntensitiesFromRegionXZ(m, regions[0], spare.Out(), r);
             }},
            {"GetProfilePointsFromRegions", [](void* m, void** r) { GetProfilePointsFromRegions(m, regions, 1, r); }},
            {"GetProfilePointsFromRegionsWithAngle",
             [](void* m, void** r) { GetProfilePointsFromRegionsWithAngle(m, regions, angles, 1, r); }}};
}

TEST(Every_member, refuses_a_null_message_and_a_null_result)
{
    const auto surface = Surface({{1}}).Intensity({{1}});
    const auto profile = Profile({1}).Intensity({1});
    for (const auto& [members, message] :
         {std::pair(SurfaceMembers(), surface.Get()), std::pair(ProfileMembers(), profile.Get())})
    {
        for (const Refusal& member : members)
        {
            Handle result;
            EXPECT_EQ(RaisedBy([&] { member.get(nullptr, result.Out()); }), InputFailure(-997, member.name));
            EXPECT_EQ(RaisedBy([&, m = message] { member.get(m, nullptr); }), InputFailure(-997, member.name));
            EXPECT_EQ(result.Get(), nullptr);
        }
    }
    Ta::Object<void*> array;
    EXPECT_EQ(RaisedBy([&] { GetAllPointsPcd(nullptr, array, nullptr); }), InputFailure(-997, "GetAllPointsPcd"));
}

TEST(Every_member, that_needs_points_of_a_profile_refuses_other_messages)
{
    const auto surface = Surface({{1}});
    for (const Refusal& member : ProfileMembers())
    {
        const std::string name = member.name;
        if (name == "GetAllProfilePoints" || name == "GetAllProfilePointsAndIntensity" || name.ends_with("WithAngle"))
        {
            Handle result;
            EXPECT_EQ(RaisedBy([&] { member.get(surface.Get(), result.Out()); }), InputFailure(-997, name));
        }
    }
}

TEST(Every_member, that_reads_intensities_refuses_16_bit_ones_before_it_touches_a_list)
{
    const auto surface = Surface({{1}}).Intensity16({{1}});
    const auto profile = Profile({1}).Intensity16({1});
    int refused = 0;
    for (const auto& [members, message] :
         {std::pair(SurfaceMembers(), surface.Get()), std::pair(ProfileMembers(), profile.Get())})
    {
        for (const Refusal& member : members)
        {
            if (std::string(member.name).find("Intensit") != std::string::npos)
            {
                Handle result;
                EXPECT_EQ(RaisedBy([&, m = message] { member.get(m, result.Out()); }), InputFailure(-997, member.name));
                EXPECT_EQ(result.Get(), nullptr);
                ++refused;
            }
        }
    }
    EXPECT_EQ(refused, 8);
}

TEST(Every_member, takes_an_empty_message)
{
    const auto surface = Surface({});
    const auto profile = Profile({});
    for (const auto& [members, message] :
         {std::pair(SurfaceMembers(), surface.Get()), std::pair(ProfileMembers(), profile.Get())})
    {
        for (const Refusal& member : members)
        {
            Handle result;
            EXPECT_EQ(RaisedBy([&, m = message] { member.get(m, result.Out()); }), Raised()) << member.name;
        }
    }
    Ta::Object<void*> array;
    GetAllPointsPcd(surface.Get(), array, nullptr);
    EXPECT_EQ(zArray1_Length(array.Get()), 0U);
}
} // namespace
