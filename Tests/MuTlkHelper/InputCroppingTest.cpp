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
using Mu::Vision::AnnularSector3d;
using Mu::Vision::Rect2d;
using Mu::Vision::RefFrame;
using Mu::Vision::Region3d;
using Points = std::vector<zPoint3d64f>;
using Bytes = std::vector<z8u>;
using Heights = std::vector<z16s>;

const Region3d<double> EVERYWHERE{0, 0, 0, 1e6, 1e6, 1e6, 0, 0, 0};

std::size_t CapacityOf(void* list)
{
    return static_cast<const zArrayListClass*>(list)->capacity;
}

Points PointsThrough(RefFrame* frame, void* surface, const Region3d<double>& region)
{
    Handle list;
    GetTransformedPointsFromRegion(surface, region, frame, list.Out());
    return ItemsOf<zPoint3d64f>(list.Get());
}

Bytes GreyThrough(RefFrame* frame, void* surface, const Region3d<double>& region)
{
    Handle list;
    GetTransformedIntensityFromRegion(surface, region, frame, list.Out());
    return ItemsOf<z8u>(list.Get());
}

// Frames that are no identity: turned, shifted, and none at all.
std::vector<std::function<RefFrame*()>> OtherFrames()
{
    static RefFrame turned;
    turned.SetIdentity().RotateXYZ(0, 0, 90);
    static RefFrame shifted({1, 0, 0, 2, 0, 1, 0, 0, 0, 0, 1, 0});
    return {[] { return &turned; }, [] { return &shifted; }, []() -> RefFrame* { return nullptr; }};
}

TEST(Points_through_a_frame, that_is_no_identity_are_those_of_the_region)
{
    const auto surface = Surface({{1, 2, 3}, {4, 5, 6}});
    const Region3d<double> turnedRegion{1, 0.5, 0, 0, 5, 100, 0, 0, 30};
    for (const auto& frame : OtherFrames())
    {
        // One row though the box is three heights high, since its length counts here.
        EXPECT_EQ(PointsThrough(frame(), surface.Get(), {1, 0, 3, 2, 0.5, 3, 0, 0, 0}), (Points{{1, 0, 2}, {2, 0, 3}}));
        Handle list;
        GetPointsFromRegion(surface.Get(), turnedRegion, list.Out());
        EXPECT_EQ(PointsThrough(frame(), surface.Get(), turnedRegion), ItemsOf<zPoint3d64f>(list.Get()));
    }
}

TEST(Points_through_a_frame, that_is_no_identity_follow_the_list_rule_of_the_region)
{
    const auto surface = Surface({{1, 2}}).Intensity({{10, 20}});
    for (const auto& frame : OtherFrames())
    {
        const CountingAlloc alloc;
        {
            Handle list(NewList(zTypeOf(z16s)));
            GetTransformedPointsFromRegion(surface.Get(), EVERYWHERE, frame(), list.Out(), alloc.Get());
            GetTransformedPointsFromRegion(surface.Get(), EVERYWHERE, frame(), list.Out(), alloc.Get());
            EXPECT_EQ(zArrayList_Count(list.Get()), 4U);
            EXPECT_EQ(CapacityOf(list.Get()), 1024U);
            EXPECT_EQ(alloc.LiveBlocks(), 2U);
            Handle grey;
            GetTransformedIntensityFromRegion(surface.Get(), EVERYWHERE, frame(), grey.Out(), alloc.Get());
            EXPECT_EQ(CapacityOf(grey.Get()), 1024U);
            EXPECT_EQ(ItemsOf<z8u>(grey.Get()), (Bytes{10, 20}));
        }
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
    }
}

TEST(Points_through_the_identity, take_as_many_rows_as_the_box_is_heights_high)
{
    RefFrame identity;
    const auto surface = Surface({{1, 2}, {3, NullPixel}, {1, 2}, {2, 3}})
                             .Offset(10, 20, 30)
                             .Scale(1, 2, 0.5)
                             .Intensity({{1, 2}, {3, 4}, {5, 6}, {7, 8}});
    // Rows from 1 on; heights 1 to 3 are a difference of two: two rows, though the box is one row long.
    const Region3d<double> region{10.5, 22, 31, 1, 1, 1, 0, 0, 0};
    EXPECT_EQ(PointsThrough(&identity, surface.Get(), region), (Points{{10, 22, 31.5}, {10, 24, 30.5}, {11, 24, 31}}));
    EXPECT_EQ(GreyThrough(&identity, surface.Get(), region), (Bytes{3, 5, 6}));
}

TEST(Points_through_the_identity, count_on_both_bounds_of_the_height)
{
    RefFrame identity;
    const auto surface = Surface({{1, 2, 3, 4, 5}}).Intensity({{1, 2, 3, 4, 5}});
    const Region3d<double> region{2, 0, 3, 10, 10, 2, 0, 0, 0};
    EXPECT_EQ(PointsThrough(&identity, surface.Get(), region), (Points{{1, 0, 2}, {2, 0, 3}, {3, 0, 4}}));
    EXPECT_EQ(GreyThrough(&identity, surface.Get(), region), (Bytes{2, 3, 4}));
}

// A pixel box takes in what lies half a millionth outside; the height is tested in world units.
TEST(Points_through_the_identity, are_tested_by_their_height_in_world_units)
{
    RefFrame identity;
    const auto surface = Surface({{1, 2, 3}});
    const Region3d<double> narrow{1, 0, 2, 10, 10, 2 - 1e-6, 0, 0, 0};
    EXPECT_EQ(PointsThrough(&identity, surface.Get(), narrow), (Points{{1, 0, 2}}));
    EXPECT_EQ(PointsThrough(nullptr, surface.Get(), narrow).size(), 3U);
}

TEST(Points_through_the_identity, end_with_the_rows_that_the_surface_has)
{
    RefFrame identity;
    const auto surface = Surface({{1}, {2}, {3}}).Intensity({{1}, {2}, {3}});
    const Region3d<double> region{0, 1, 0, 1, 1, 1000, 0, 0, 0}; // asks for 1,000 rows
    Handle list;
    GetTransformedPointsFromRegion(surface.Get(), region, &identity, list.Out());
    EXPECT_EQ(ItemsOf<zPoint3d64f>(list.Get()), (Points{{0, 1, 2}, {0, 2, 3}}));
    EXPECT_EQ(CapacityOf(list.Get()), 2U) << "room for the pixels that there are";
    EXPECT_EQ(GreyThrough(&identity, surface.Get(), region), (Bytes{2, 3}));
}

TEST(Points_through_the_identity, of_a_box_of_no_height_are_none_in_a_new_list)
{
    RefFrame identity;
    const auto surface = Surface({{1, 1}}).Intensity({{1, 2}});
    for (const Region3d<double>& region :
         {Region3d<double>{0, 0, 1, 10, 10, 0, 0, 0, 0}, Region3d<double>{},
          Region3d<double>{50, 0, 0, 1, 1, 9, 0, 0, 0}, Region3d<double>{std::nan(""), 0, 0, 1, 1, 9, 0, 0, 0}})
    {
        Handle list(NewList(zTypeOf(z8u), 5));
        GetTransformedPointsFromRegion(surface.Get(), region, &identity, list.Out());
        EXPECT_EQ(zArrayList_ItemType(list.Get()), zTypeOf(zPoint3d64f));
        EXPECT_EQ(zArrayList_Count(list.Get()), 0U);
        Handle grey(NewList(zTypeOf(zPoint3d64f), 5));
        GetTransformedIntensityFromRegion(surface.Get(), region, &identity, grey.Out());
        EXPECT_EQ(zArrayList_ItemType(grey.Get()), zTypeOf(z8u));
        EXPECT_EQ(zArrayList_Count(grey.Get()), 0U);
    }
}

TEST(Points_through_the_identity, are_added_to_a_list_of_points_and_replace_another_list)
{
    RefFrame identity;
    const auto surface = Surface({{1, 2}});
    Handle list(NewList(zTypeOf(zPoint3d64f)));
    void* const kept = list.Get();
    GetTransformedPointsFromRegion(surface.Get(), EVERYWHERE, &identity, list.Out());
    GetTransformedPointsFromRegion(surface.Get(), EVERYWHERE, &identity, list.Out());
    EXPECT_EQ(list.Get(), kept);
    EXPECT_EQ(zArrayList_Count(list.Get()), 4U);

    const Ta::Object<void*> other(NewList(zTypeOf(z8u)));
    MU_CHECK(xzObject_ShareImpl(other.Get()));
    Handle replaced(other.Get());
    GetTransformedPointsFromRegion(surface.Get(), EVERYWHERE, &identity, replaced.Out());
    EXPECT_EQ(xzObject_ReferenceCount(other.Get()), 1) << "the former list is released";
    EXPECT_EQ(ItemsOf<zPoint3d64f>(replaced.Get()), (Points{{0, 0, 1}, {1, 0, 2}}));
}

TEST(Points_through_the_identity, come_in_a_list_of_the_default_allocator_and_intensities_in_one_of_the_given)
{
    const CountingAlloc alloc;
    RefFrame identity;
    const auto surface = Surface({{1, 2}}).Intensity({{1, 2}});
    Handle list;
    GetTransformedPointsFromRegion(surface.Get(), EVERYWHERE, &identity, list.Out(), alloc.Get());
    EXPECT_EQ(alloc.Requests(), 0U);
    {
        Handle grey;
        GetTransformedIntensityFromRegion(surface.Get(), EVERYWHERE, &identity, grey.Out(), alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 2U);
        EXPECT_EQ(CapacityOf(grey.Get()), 2U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Points_through_the_identity, of_triples_read_their_numbers_one_by_one_as_heights)
{
    RefFrame identity;
    const auto surface = PointSurface({{{1, 2, 3}, {4, 5, 6}}, {{7, 8, 9}, {10, 11, 12}}}).Intensity({{1, 2}, {3, 4}});
    EXPECT_EQ(PointsThrough(&identity, surface.Get(), EVERYWHERE),
              (Points{{0, 0, 1}, {1, 0, 2}, {0, 1, 3}, {1, 1, 4}}));
    EXPECT_EQ(GreyThrough(&identity, surface.Get(), EVERYWHERE), (Bytes{1, 2, 3, 4}));
}

// At an offset of 1e9 the next world value is about 1.2e-7 away: of places 1e-7 apart the first two round to the offset
// and to the next value, the third to twice that, and so on; seen there are the pixels nearest to these values.
TEST(Points_through_the_identity, are_those_of_the_pixels_nearest_to_the_rounded_place)
{
    RefFrame identity;
    const auto surface = Surface({{10, 11, 12, 13}}).Offset(1e9, 0, 0).Scale(1e-7, 1, 1);
    constexpr double STEP = 1.0 / (1 << 23); // between doubles at 1e9
    ASSERT_EQ(std::nextafter(1e9, 2e9) - 1e9, STEP);
    // 0, 1e-7, 2e-7 and 3e-7 are 0, 0.84, 1.68 and 2.52 steps: 0, 1, 2 and 3, which are 0, 1.19, 2.38, 3.58 pixels.
    EXPECT_EQ(PointsThrough(&identity, surface.Get(), {1e9, 0, 0, 1, 1, 100, 0, 0, 0}),
              (Points{{1e9, 0, 10}, {1e9 + STEP, 0, 11}, {1e9 + 2 * STEP, 0, 12}}));
}

// The frame adds zeros to the place, which make -0.0 to 0.0.
TEST(Points_through_the_identity, have_no_negative_zero_in_their_place)
{
    RefFrame identity;
    const auto surface = Surface({{0}}).Offset(-0.0, -0.0, -0.0).Scale(-1, -1, -1);
    const Points points = PointsThrough(&identity, surface.Get(), {0, 0, 0, 2, 2, 2, 0, 0, 0});
    ASSERT_EQ(points.size(), 1U);
    EXPECT_FALSE(std::signbit(points[0].x));
    EXPECT_FALSE(std::signbit(points[0].y));
    EXPECT_TRUE(std::signbit(points[0].z)) << "the height does not pass through it";
}

TEST(Intensities_through_a_frame, of_a_surface_without_leave_the_list_as_it_was)
{
    RefFrame identity;
    for (RefFrame* const frame : {&identity, static_cast<RefFrame*>(nullptr)})
    {
        const auto surface = Surface({{1, 2}});
        Handle none;
        GetTransformedIntensityFromRegion(surface.Get(), EVERYWHERE, frame, none.Out());
        EXPECT_EQ(none.Get(), nullptr);
        Handle other(NewList(zTypeOf(z16s)));
        void* const kept = other.Get();
        GetTransformedIntensityFromRegion(surface.Get(), EVERYWHERE, frame, other.Out());
        EXPECT_EQ(other.Get(), kept);
        EXPECT_EQ(zArrayList_ItemType(other.Get()), zTypeOf(z16s));
    }
}

TEST(Intensities_through_a_frame, are_refused_unless_they_are_bytes)
{
    RefFrame identity;
    const auto surface = Surface({{1}}).Intensity16({{1}});
    Handle list;
    EXPECT_EQ(RaisedBy([&] { GetTransformedIntensityFromRegion(surface.Get(), EVERYWHERE, &identity, list.Out()); }),
              InputFailure(-997, "GetTransformedIntensityFromRegion"));
    EXPECT_EQ(RaisedBy([&] { GetTransformedIntensityFromRegion(surface.Get(), EVERYWHERE, nullptr, list.Out()); }),
              InputFailure(-997, "GetIntensitiesFromRegion"));
    EXPECT_EQ(list.Get(), nullptr);
}

// Sectors.

Points PointsInSector(void* surface, const AnnularSector3d<double>& sector)
{
    Handle list;
    GetPointsInAnnularSector(surface, sector, list.Out());
    return ItemsOf<zPoint3d64f>(list.Get());
}

TEST(Points_in_a_sector, come_row_by_row_bounds_included)
{
    const auto surface =
        Surface({{1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}, {11, 12, NullPixel, 14, 15}, {16, 17, 18, 19, 20}});
    // A ring around (2, 2), from 1 to 2; the corners of the square between lie at 1.41.
    EXPECT_EQ(PointsInSector(surface.Get(), {1, 2, 0, 360, {2, 2, 99}}), (Points{{2, 0, 3},
                                                                                 {1, 1, 7},
                                                                                 {2, 1, 8},
                                                                                 {3, 1, 9},
                                                                                 {0, 2, 11},
                                                                                 {1, 2, 12},
                                                                                 {3, 2, 14},
                                                                                 {4, 2, 15},
                                                                                 {1, 3, 17},
                                                                                 {2, 3, 18},
                                                                                 {3, 3, 19}}));
    // From +x towards +y, a quarter.
    EXPECT_EQ(PointsInSector(surface.Get(), {1, 2, 0, 90, {2, 2, 0}}),
              (Points{{3, 2, 14}, {4, 2, 15}, {2, 3, 18}, {3, 3, 19}}));
    EXPECT_EQ(PointsInSector(surface.Get(), {1, 2, 90, -90, {2, 2, 0}}).size(), 4U);
}

TEST(Points_in_a_sector, are_in_world_units)
{
    const auto surface = Surface({{1, 2, 3}}).Offset(10, 20, 30).Scale(2, 1, 0.5);
    EXPECT_EQ(PointsInSector(surface.Get(), {0, 2, 0, 360, {14, 20, 0}}), (Points{{12, 20, 31}, {14, 20, 31.5}}));
}

TEST(Points_in_a_sector, are_none_without_centre_or_radius)
{
    const auto surface = Surface({{1, 2}, {3, 4}});
    EXPECT_EQ(PointsInSector(surface.Get(), {}), Points());
    EXPECT_EQ(PointsInSector(surface.Get(), {0, -1, 0, 360, {0, 0, 0}}), Points());
    EXPECT_EQ(PointsInSector(surface.Get(), {0, std::nan(""), 0, 360, {0, 0, 0}}), Points());
    EXPECT_EQ(PointsInSector(surface.Get(), {0, 1e200, 0, 360, {0, 0, 0}}).size(), 4U);
}

TEST(Points_in_a_sector, of_triples_read_their_numbers_one_by_one_as_heights)
{
    const auto surface = PointSurface({{{1, 2, 3}, {4, 5, 6}}, {{7, 8, 9}, {10, 11, 12}}});
    EXPECT_EQ(PointsInSector(surface.Get(), {0, 10, 0, 360, {0, 0, 0}}),
              (Points{{0, 0, 1}, {1, 0, 2}, {0, 1, 3}, {1, 1, 4}}));
}

TEST(Points_in_a_sector, come_in_a_list_that_is_always_made_anew)
{
    const auto surface = Surface({{1}});
    const Ta::Object<void*> former(NewList(zTypeOf(zPoint3d64f)));
    MU_CHECK(xzObject_ShareImpl(former.Get()));
    Handle list(former.Get());
    GetPointsInAnnularSector(surface.Get(), {0, 1, 0, 360, {0, 0, 0}}, list.Out());
    EXPECT_NE(list.Get(), former.Get());
    EXPECT_EQ(xzObject_ReferenceCount(former.Get()), 1);
    EXPECT_EQ(ItemsOf<zPoint3d64f>(list.Get()), (Points{{0, 0, 1}}));
    EXPECT_EQ(CapacityOf(list.Get()), 1000U);
}

// What is cut out of a surface.

TEST(Extracted_region, has_as_many_rows_as_the_box_is_heights_high)
{
    const auto surface = Surface({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}}).Offset(10, 20, 30).Scale(1, 2, 0.5);
    Ta::Object<void*> heights(NewList(zTypeOf(z8u)));
    Ta::Object<void*> none;
    zPoint3d64f origin;
    // Columns 1 and 2, rows from 1 on; heights 6 to 8 are a difference of two.
    SurfaceExtractRegion(surface.Get(), {11.5, 22, 33.5, 1, 1, 1, 0, 0, 0}, heights, none, &origin);
    EXPECT_EQ(zArray2_ItemType(heights.Get()), zTypeOf(z16s));
    EXPECT_EQ(zArray2_Length(heights.Get(), 0), 2U);
    EXPECT_EQ(zArray2_Length(heights.Get(), 1), 2U);
    EXPECT_EQ(ItemsOfGrid<z16s>(heights.Get()), (Heights{-32768, 6, 8, -32768}));
    EXPECT_EQ(origin, (zPoint3d64f{11, 22, 30})) << "z is the offset";
    EXPECT_FALSE(none);
}

TEST(Extracted_region, has_intensities_where_it_has_heights_if_the_handle_asks_for_them)
{
    const auto surface = Surface({{1, 2, NullPixel, 4}, {5, 1, 2, 3}}).Intensity({{10, 20, 30, 40}, {50, 60, 70, 80}});
    const Region3d<double> region{1.5, 0, 2, 3, 1, 2, 0, 0, 0}; // heights 1 to 3
    Ta::Object<void*> heights;
    Ta::Object<void*> grey(NewList(zTypeOf(z8u)));
    SurfaceExtractRegion(surface.Get(), region, heights, grey, nullptr);
    EXPECT_EQ(ItemsOfGrid<z16s>(heights.Get()), (Heights{1, 2, -32768, -32768, -32768, 1, 2, 3}));
    EXPECT_EQ(zArray2_ItemType(grey.Get()), zTypeOf(z8u));
    EXPECT_EQ(zArray2_Length(grey.Get(), 0), 2U);
    EXPECT_EQ(zArray2_Length(grey.Get(), 1), 4U);
    EXPECT_EQ(ItemsOfGrid<z8u>(grey.Get()), (Bytes{10, 20, 255, 255, 255, 60, 70, 80}));
}

TEST(Extracted_region, has_heights_alone_if_the_handle_of_intensities_is_empty_or_the_surface_has_none)
{
    Ta::Object<void*> heights;
    Ta::Object<void*> empty;
    SurfaceExtractRegion(Surface({{1}, {3}}).Intensity({{9}, {9}}).Get(), {0, 0, 2, 1, 9, 2, 0, 0, 0}, heights, empty,
                         nullptr);
    EXPECT_FALSE(empty);
    EXPECT_EQ(ItemsOfGrid<z16s>(heights.Get()), (Heights{1, 3}));
    Ta::Object<void*> kept(NewList(zTypeOf(z8u)));
    void* const before = kept.Get();
    SurfaceExtractRegion(Surface({{1}, {3}}).Get(), {0, 0, 2, 1, 9, 2, 0, 0, 0}, heights, kept, nullptr);
    EXPECT_EQ(kept.Get(), before);
    EXPECT_EQ(ItemsOfGrid<z16s>(heights.Get()), (Heights{1, 3}));
}

TEST(Extracted_region, is_null_in_rows_that_the_surface_does_not_have)
{
    const auto surface = Surface({{1, 2}, {3, 4}}).Intensity({{10, 20}, {30, 40}});
    Ta::Object<void*> heights;
    Ta::Object<void*> grey(NewList(zTypeOf(z8u)));
    SurfaceExtractRegion(surface.Get(), {0.5, 1, 2, 1, 1, 4, 0, 0, 0}, heights, grey, nullptr); // four rows from 1 on
    EXPECT_EQ(ItemsOfGrid<z16s>(heights.Get()), (Heights{3, 4, -32768, -32768, -32768, -32768, -32768, -32768}));
    EXPECT_EQ(ItemsOfGrid<z8u>(grey.Get()), (Bytes{30, 40, 255, 255, 255, 255, 255, 255}));
}

TEST(Extracted_region, that_is_empty_gives_empty_arrays)
{
    const auto surface = Surface({{1, 2}}).Offset(10, 20, 30).Intensity({{1, 2}});
    Ta::Object<void*> heights;
    Ta::Object<void*> grey(NewList(zTypeOf(z8u)));
    zPoint3d64f origin;
    SurfaceExtractRegion(surface.Get(), {}, heights, grey, &origin);
    EXPECT_EQ(zArray2_ItemType(heights.Get()), zTypeOf(z16s));
    EXPECT_EQ(zArray2_Length(heights.Get(), 0), 0U);
    EXPECT_EQ(zArray2_Length(heights.Get(), 1), 0U);
    EXPECT_EQ(zArray2_ItemType(grey.Get()), zTypeOf(z8u));
    EXPECT_EQ(origin, (zPoint3d64f{10, 20, 30}));
    SurfaceExtractRegion(surface.Get(), {10.5, 20, 31, 1, 1, 0, 0, 0, 0}, heights, grey, &origin);
    EXPECT_EQ(zArray2_Length(heights.Get(), 0), 0U);
    EXPECT_EQ(zArray2_Length(heights.Get(), 1), 2U);
}

TEST(Extracted_region, may_replace_the_message_itself)
{
    Ta::Object<void*> heights = Surface({{1, 2}, {3, 4}, {5, 6}});
    Ta::Object<void*> none;
    SurfaceExtractRegion(heights.Get(), {0.5, 0, 3, 1, 9, 3, 0, 0, 0}, heights, none, nullptr); // heights 2 to 4
    EXPECT_EQ(ItemsOfGrid<z16s>(heights.Get()), (Heights{-32768, 2, 3, 4}));
}

TEST(Extracted_region, of_triples_reads_their_numbers_one_by_one_as_heights)
{
    const auto surface = PointSurface({{{1, 2, 3}, {4, 5, 6}}, {{7, 8, 9}, {10, 11, 12}}});
    Ta::Object<void*> heights;
    Ta::Object<void*> none;
    SurfaceExtractRegion(surface.Get(), {0.5, 0, 2, 1, 9, 2, 0, 0, 0}, heights, none, nullptr);
    EXPECT_EQ(ItemsOfGrid<z16s>(heights.Get()), (Heights{1, 2, 3, -32768}));
}

TEST(Extracted_region, needs_a_message_two_handles_and_bytes_if_intensities_are_wanted)
{
    const auto surface = Surface({{1}, {2}}).Intensity16({{1}, {2}});
    const Region3d<double> region{0, 0, 1.5, 1, 9, 1, 0, 0, 0};
    Ta::Object<void*> heights(NewList(zTypeOf(z8u)));
    Ta::Object<void*> other(NewList(zTypeOf(z8u)));
    const void* const before[] = {heights.Get(), other.Get()};
    const auto failure = InputFailure(-997, "SurfaceExtractRegion");
    EXPECT_EQ(RaisedBy([&] { SurfaceExtractRegion(nullptr, region, heights, other, nullptr); }), failure);
    EXPECT_EQ(RaisedBy([&] { SurfaceExtractRegion(surface.Get(), region, heights, heights, nullptr); }), failure);
    EXPECT_EQ(RaisedBy([&] { SurfaceExtractRegion(surface.Get(), region, heights, other, nullptr); }), failure);
    EXPECT_TRUE(heights.Get() == before[0] && other.Get() == before[1]) << "nothing is touched";
    Ta::Object<void*> none;
    SurfaceExtractRegion(surface.Get(), region, heights, none, nullptr);
    EXPECT_EQ(ItemsOfGrid<z16s>(heights.Get()), (Heights{1}));
}

// Crops.

const Bytes FULL(64, 1);

template <typename Item>
std::vector<Item> Cropped(const Ta::Object<void*>& array, const Rect2d<int>& rect, const Ta::Object<void*>& mask)
{
    return ItemsOfGrid<Item>(CropRoi<Item>(array.Get(), rect, mask.Get()).Get());
}

TEST(Crop, has_the_items_of_the_rectangle_where_the_mask_is_not_0)
{
    const auto array = NewGrid<z16s>(zTypeOf(z16s), 3, 4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    const auto mask = NewGrid<z8u>(zTypeOf(z8u), 2, 3, {1, 0, 255, 0, 2, 128});
    const auto crop = CropRoi<short>(array.Get(), {1, 1, 3, 2}, mask.Get());
    EXPECT_EQ(zArray2_ItemType(crop.Get()), zTypeOf(z16s));
    EXPECT_EQ(zArray2_Length(crop.Get(), 0), 2U);
    EXPECT_EQ(zArray2_Length(crop.Get(), 1), 3U);
    EXPECT_EQ(ItemsOfGrid<z16s>(crop.Get()), (Heights{6, -32768, 8, -32768, 11, 12}));
}

TEST(Crop, is_null_in_its_own_type_where_the_mask_is_0)
{
    const auto mask = NewGrid<z8u>(zTypeOf(z8u), 1, 2, {0, 1});
    EXPECT_EQ(Cropped<unsigned char>(NewGrid<z8u>(zTypeOf(z8u), 1, 2, {7, 8}), {0, 0, 2, 1}, mask), (Bytes{0, 8}));
    EXPECT_EQ(Cropped<short>(NewGrid<z16s>(zTypeOf(z16s), 1, 2, {7, 8}), {0, 0, 2, 1}, mask), (Heights{-32768, 8}));
    EXPECT_EQ(Cropped<int>(NewGrid<z32s>(zTypeOf(z32s), 1, 2, {7, 8}), {0, 0, 2, 1}, mask),
              (std::vector<z32s>{std::numeric_limits<z32s>::min(), 8}));
}

TEST(Crop, of_an_empty_rectangle_is_no_array_and_looks_at_none)
{
    for (const Rect2d<int>& rect : {Rect2d<int>{0, 0, 0, 2}, Rect2d<int>{0, 0, 2, 0}, Rect2d<int>{0, 0, -3, -3}, {}})
    {
        EXPECT_FALSE(CropRoi<short>(nullptr, rect, nullptr));
        EXPECT_FALSE(CropRoi<unsigned char>(nullptr, rect, nullptr));
        EXPECT_FALSE(CropRoi<int>(nullptr, rect, nullptr));
    }
}

TEST(Crop, is_null_where_source_or_mask_end)
{
    const auto array = NewGrid<z16s>(zTypeOf(z16s), 2, 2, {1, 2, 3, 4});
    const auto mask = NewGrid<z8u>(zTypeOf(z8u), 8, 8, FULL);
    constexpr z16s N = -32768;
    EXPECT_EQ(Cropped<short>(array, {-1, -1, 4, 4}, mask), (Heights{N, N, N, N, N, 1, 2, N, N, 3, 4, N, N, N, N, N}));
    EXPECT_EQ(Cropped<short>(array, {1, 1, 2, 2}, mask), (Heights{4, N, N, N}));
    const auto small = NewGrid<z8u>(zTypeOf(z8u), 1, 1, {1});
    EXPECT_EQ(Cropped<short>(array, {0, 0, 2, 2}, small), (Heights{1, N, N, N}));
    EXPECT_EQ(Cropped<short>(array, {-1, 0, 2, 2}, small), (Heights{N, N, N, N})) << "the mask begins with the crop";
    const auto none = NewGrid<z8u>(zTypeOf(z8u), 0, 0, {});
    EXPECT_EQ(Cropped<short>(array, {0, 0, 2, 1}, none), (Heights{N, N}));
    constexpr int FARTHEST = std::numeric_limits<int>::max();
    EXPECT_EQ(Cropped<short>(array, {FARTHEST, FARTHEST, 1, 2}, mask), (Heights{N, N}));
    EXPECT_EQ(Cropped<short>(array, {-FARTHEST - 1, 0, 2, 1}, mask), (Heights{N, N}));
}

TEST(Crop, that_is_too_large_for_memory_raises_what_its_construction_gives)
{
    const auto array = NewGrid<z32s>(zTypeOf(z32s), 1, 1, {1});
    const auto mask = NewGrid<z8u>(zTypeOf(z8u), 8, 8, FULL);
    constexpr int MOST = std::numeric_limits<int>::max();
    EXPECT_EQ(RaisedBy([&] {
                  static_cast<void>(CropRoi<int>(array.Get(), {0, 0, MOST, MOST}, mask.Get()));
              }),
              InputFailure(-998, "CropRoi"));
}

TEST(Crop, keeps_the_item_type_of_an_array_of_that_size)
{
    const auto array = NewGrid<z16u>(zTypeOf(z16u), 1, 2, {1, 65535});
    const auto crop = CropRoi<short>(array.Get(), {0, 0, 2, 1}, NewGrid<z8u>(zTypeOf(z8u), 8, 8, FULL).Get());
    EXPECT_EQ(zArray2_ItemType(crop.Get()), zTypeOf(z16u));
    EXPECT_EQ(ItemsOfGrid<z16u>(crop.Get()), (std::vector<z16u>{1, 65535}));
}

TEST(Crop, refuses_what_is_no_array_or_has_items_of_another_size)
{
    const auto array = NewGrid<z16s>(zTypeOf(z16s), 8, 8, Heights(64, 1));
    const auto mask = NewGrid<z8u>(zTypeOf(z8u), 8, 8, FULL);
    Ta::Object<void*> line;
    MU_CHECK(zArray1_Construct(line.Out(), zTypeOf(z16s), 8, nullptr));
    const auto crop = [](const auto& call) {
        return RaisedBy([&] { static_cast<void>(call(Rect2d<int>{0, 0, 4, 4})); });
    };
    const auto missing = InputFailure(-997, "CropRoi");
    const auto format = InputFailure(-984, "CropRoi");
    EXPECT_EQ(crop([&](const auto& rect) { return CropRoi<short>(nullptr, rect, mask.Get()); }), missing);
    EXPECT_EQ(crop([&](const auto& rect) { return CropRoi<short>(array.Get(), rect, nullptr); }), missing);
    EXPECT_EQ(crop([&](const auto& rect) { return CropRoi<short>(line.Get(), rect, mask.Get()); }), missing);
    EXPECT_EQ(crop([&](const auto& rect) { return CropRoi<unsigned char>(array.Get(), rect, mask.Get()); }), format);
    EXPECT_EQ(crop([&](const auto& rect) { return CropRoi<int>(array.Get(), rect, mask.Get()); }), format);
    EXPECT_EQ(crop([&](const auto& rect) { return CropRoi<short>(array.Get(), rect, array.Get()); }), format);
}

TEST(Crop, comes_from_the_allocator)
{
    const CountingAlloc alloc;
    {
        const auto array = NewGrid<z16s>(zTypeOf(z16s), 1, 1, {5});
        const auto mask = NewGrid<z8u>(zTypeOf(z8u), 1, 1, {1});
        const auto crop = CropRoi<short>(array.Get(), {0, 0, 1, 1}, mask.Get(), alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 2U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

// Large ones are written past the caches.
TEST(Crop, of_many_megabytes_is_that_of_its_parts)
{
    constexpr int WIDTH = 3001;
    constexpr int LENGTH = 1501;
    constexpr auto COUNT = static_cast<std::size_t>(WIDTH) * LENGTH;
    Heights items(COUNT);
    Bytes bytes(COUNT);
    for (std::size_t i = 0; i < COUNT; ++i)
    {
        items[i] = static_cast<z16s>(i * 7);
        bytes[i] = static_cast<z8u>(i % 5 == 0 ? 0 : i % 3);
    }
    const auto array = NewGrid<z16s>(zTypeOf(z16s), LENGTH, WIDTH, items);
    const auto mask = NewGrid<z8u>(zTypeOf(z8u), LENGTH, WIDTH, bytes);
    const Heights crop = Cropped<short>(array, {0, 0, WIDTH, LENGTH}, mask);
    ASSERT_EQ(crop.size(), COUNT);
    for (std::size_t i = 0; i < COUNT; ++i)
    {
        ASSERT_EQ(crop[i], bytes[i] != 0 ? items[i] : NullPixel) << i;
    }
}

// Surfaces that travel as points.

TEST(Surface_feature, stands_for_the_halves_of_a_handle)
{
    const auto handle = std::uintptr_t{0x00007F12'89ABCDEF};
    const zPoint3d64f point = SurfaceMsgToSurfaceFeature(reinterpret_cast<void*>(handle));
    EXPECT_EQ(point.x, 1.0 + 32530.0 / 1e12); // 0x7F12
    EXPECT_EQ(point.y, 1.0 + 2309737967.0 / 1e12);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(point.z), 0x3FF00000000000FFU);
}

TEST(Surface_feature, gives_the_surface_back_without_a_reference)
{
    const auto surface = Surface({{1}});
    const auto feature = PointFeature(SurfaceMsgToSurfaceFeature(surface.Get()));
    EXPECT_EQ(SurfaceFeatureToSurfaceMsg(feature.Get()), surface.Get());
    EXPECT_EQ(xzObject_ReferenceCount(surface.Get()), 1);
    EXPECT_EQ(RaisedBy([&] { ValidateSurfaceFeature(feature.Get()); }), Raised());
    for (const std::uintptr_t handle : {std::uintptr_t{0}, ~std::uintptr_t{0}, std::uintptr_t{0xFFFFFFFF}})
    {
        auto* const message = reinterpret_cast<void*>(handle);
        EXPECT_EQ(SurfaceFeatureToSurfaceMsg(PointFeature(SurfaceMsgToSurfaceFeature(message)).Get()), message);
    }
}

TEST(Surface_feature, needs_exactly_the_mark_in_z)
{
    zPoint3d64f point = SurfaceMsgToSurfaceFeature(Surface({{1}}).Get());
    const double mark = point.z;
    for (const double z : {0.0, 1.0, std::nextafter(mark, 2), std::nextafter(mark, 0), zNULL_64F, std::nan("")})
    {
        point.z = z;
        const auto feature = PointFeature(point);
        EXPECT_EQ(SurfaceFeatureToSurfaceMsg(feature.Get()), nullptr);
        EXPECT_EQ(RaisedBy([&] { ValidateSurfaceFeature(feature.Get()); }), InputFailure(0, "ValidateSurfaceFeature"));
    }
}

TEST(Surface_feature, needs_a_point_feature)
{
    const zPoint3d64f point = SurfaceMsgToSurfaceFeature(nullptr);
    const Ta::Object<void*> line = LineFeature(point, point);
    const Ta::Object<void*> surface = Surface({{1}});
    for (void* const other : {static_cast<void*>(nullptr), line.Get(), surface.Get()})
    {
        EXPECT_EQ(SurfaceFeatureToSurfaceMsg(other), nullptr);
        EXPECT_EQ(RaisedBy([&] { ValidateSurfaceFeature(other); }), InputFailure(0, "ValidateSurfaceFeature"));
    }
}

TEST(Surface_feature, with_coordinates_that_hold_no_half_has_some_value)
{
    const double mark = SurfaceMsgToSurfaceFeature(nullptr).z;
    EXPECT_EQ(SurfaceFeatureToSurfaceMsg(PointFeature({std::nan(""), 0.5, mark}).Get()), nullptr);
    EXPECT_EQ(SurfaceFeatureToSurfaceMsg(PointFeature({zNULL_64F, zNULL_64F, mark}).Get()), nullptr);
    EXPECT_EQ(SurfaceFeatureToSurfaceMsg(PointFeature({1.0, 1e300, mark}).Get()),
              reinterpret_cast<void*>(~std::uintptr_t{0}));
}

// Arrays that are kept.

TEST(Reallocated_line, of_equal_type_and_length_is_kept_with_its_content)
{
    Ta::Object<void*> object;
    ReallocateArray1(object, zTypeOf(z16s), 2);
    auto* const items = static_cast<z16s*>(zArray1_Items(object.Get()));
    items[0] = 7;
    items[1] = 8;
    void* const kept = object.Get();
    ReallocateArray1(object, zTypeOf(z16s), 2);
    EXPECT_EQ(object.Get(), kept);
    EXPECT_EQ(ItemsOfArray<z16s>(object.Get()), (Heights{7, 8}));
}

TEST(Reallocated_line, of_another_type_or_length_is_new)
{
    const CountingAlloc alloc;
    const auto grid = NewGrid<z16s>(zTypeOf(z16s), 1, 2, {1, 2});
    Ta::Object<void*> line;
    ReallocateArray1(line, zTypeOf(z16s), 3);
    Ta::Object<void*> other;
    ReallocateArray1(other, zTypeOf(z16u), 2);
    for (const Ta::Object<void*>& former : {grid, line, other, Ta::Object<void*>(NewList(zTypeOf(z16s)))})
    {
        Ta::Object<void*> object = former;
        ReallocateArray1(object, zTypeOf(z16s), 2, alloc.Get());
        EXPECT_NE(object.Get(), former.Get());
        EXPECT_EQ(zArray1_ItemType(object.Get()), zTypeOf(z16s));
        EXPECT_EQ(zArray1_Length(object.Get()), 2U);
        EXPECT_EQ(alloc.LiveBlocks(), 2U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Reallocated_grid, of_equal_type_rows_and_columns_is_kept_with_its_content)
{
    Ta::Object<void*> object = NewGrid<z16s>(zTypeOf(z16s), 2, 3, {1, 2, 3, 4, 5, 6});
    void* const kept = object.Get();
    ReallocateArray2(object, zTypeOf(z16s), 2, 3);
    EXPECT_EQ(object.Get(), kept);
    EXPECT_EQ(ItemsOfGrid<z16s>(object.Get()), (Heights{1, 2, 3, 4, 5, 6}));
}

TEST(Reallocated_grid, of_another_type_or_size_is_new)
{
    const CountingAlloc alloc;
    const Heights items{1, 2, 3, 4, 5, 6};
    Ta::Object<void*> line;
    ReallocateArray1(line, zTypeOf(z16s), 3);
    for (const Ta::Object<void*>& former : {NewGrid<z16s>(zTypeOf(z16s), 3, 2, items),
                                            NewGrid<z16s>(zTypeOf(z16s), 2, 2, {1, 2, 3, 4}),
                                            NewGrid<z16s>(zTypeOf(z16s), 1, 3, {1, 2, 3}),
                                            NewGrid<z16s>(zTypeOf(z16u), 2, 3, items),
                                            line,
                                            {}})
    {
        Ta::Object<void*> object = former;
        ReallocateArray2(object, zTypeOf(z16s), 2, 3, alloc.Get());
        EXPECT_NE(object.Get(), former.Get());
        EXPECT_EQ(zArray2_ItemType(object.Get()), zTypeOf(z16s));
        EXPECT_EQ(zArray2_Length(object.Get(), 0), 2U);
        EXPECT_EQ(zArray2_Length(object.Get(), 1), 3U);
        EXPECT_EQ(alloc.LiveBlocks(), 2U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Reallocated_arrays, need_an_item_type)
{
    Ta::Object<void*> object;
    EXPECT_EQ(RaisedBy([&] { ReallocateArray1(object, nullptr, 0); }), InputFailure(-999, "ReallocateArray1"));
    EXPECT_EQ(RaisedBy([&] { ReallocateArray2(object, nullptr, 0, 0); }), InputFailure(-999, "ReallocateArray2"));
}

// What is refused.

struct Refusal
{
    const char* name;
    std::function<void(void* message, void** list)> get;
};

TEST(Members_with_a_list, refuse_a_null_message_and_a_null_list)
{
    RefFrame identity;
    const AnnularSector3d<double> ring{0, 9, 0, 360, {0, 0, 0}};
    const auto points = [](RefFrame* frame) {
        return [frame](void* m, void** l) { GetTransformedPointsFromRegion(m, EVERYWHERE, frame, l); };
    };
    const auto grey = [](RefFrame* frame) {
        return [frame](void* m, void** l) { GetTransformedIntensityFromRegion(m, EVERYWHERE, frame, l); };
    };
    const std::vector<Refusal> members = {
        {"GetTransformedPointsFromRegion", points(&identity)},
        {"GetTransformedPointsFromRegion", points(nullptr)},
        {"GetTransformedIntensityFromRegion", grey(&identity)},
        {"GetTransformedIntensityFromRegion", grey(nullptr)},
        {"GetPointsInAnnularSector", [ring](void* m, void** l) { GetPointsInAnnularSector(m, ring, l); }}};
    const auto surface = Surface({{1}}).Intensity({{1}});
    for (const Refusal& member : members)
    {
        Handle list(NewList(zTypeOf(z16s)));
        void* const kept = list.Get();
        EXPECT_EQ(RaisedBy([&] { member.get(nullptr, list.Out()); }), InputFailure(-997, member.name));
        EXPECT_EQ(RaisedBy([&] { member.get(surface.Get(), nullptr); }), InputFailure(-997, member.name));
        EXPECT_EQ(list.Get(), kept);
    }
}

TEST(Members_with_a_list, find_nothing_in_a_message_that_is_no_surface)
{
    RefFrame identity;
    const auto profile = Profile({1, 2}).Intensity({1, 2});
    EXPECT_EQ(PointsThrough(&identity, profile.Get(), EVERYWHERE), Points());
    EXPECT_EQ(GreyThrough(&identity, profile.Get(), EVERYWHERE), Bytes());
    EXPECT_EQ(PointsInSector(profile.Get(), {0, 9, 0, 360, {0, 0, 0}}), Points());
    Ta::Object<void*> heights;
    Ta::Object<void*> none;
    SurfaceExtractRegion(profile.Get(), EVERYWHERE, heights, none, nullptr);
    EXPECT_EQ(zArray2_Length(heights.Get(), 1), 0U);
}
} // namespace
