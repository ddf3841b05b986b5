#include "PointTestTools.h"

#include <MuTlkHelper/PointUtils.h>
#include <MuTlkHelper/TlkSurfaceGeneralized3dPoint.h>

#include <Support/Builders.h>

#include <functional>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using SurfacePoint = TlkSurfaceGeneralized3dPoint;
using SortedType = THL_POINT_SORTED_TYPE;

constexpr const char* UNIT = "Libs/MuTlkHelper/MuTlkHelper/PointUtils";
constexpr float INFINITE_32 = std::numeric_limits<float>::infinity();

std::vector<zPoint64f> Points2d(const Ta::Object<void*>& list)
{
    return Items<zPoint64f>(list.Get(), zTypeOf(zPoint64f));
}

std::vector<zPoint3d32f> Points32(const Ta::Object<void*>& list)
{
    return Items<zPoint3d32f>(list.Get(), zTypeOf(zPoint3d32f));
}

Ta::Object<void*> SurfacePointList(const std::vector<SurfacePoint>& points)
{
    return List(zBytes_GetType(40), points);
}

/// `count` points whose x counts from 0.
std::vector<zPoint3d64f> Counted(std::size_t count)
{
    std::vector<zPoint3d64f> points(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        points[i] = {static_cast<double>(i), 0.5, -1};
    }
    return points;
}

std::vector<SurfacePoint> CountedSurface(std::size_t count)
{
    std::vector<SurfacePoint> points(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        points[i] = {static_cast<double>(i), 0.5, -1, 7, 8, 9, 10};
    }
    return points;
}

// --- single points --------------------------------------------------------------------------------------------------

TEST(Profile_point, goes_to_the_plane_y_0)
{
    EXPECT_EQ(Bits(Convert2dPoint64to3dPoint64({1.5, 2.5})), Bits(zPoint3d64f{1.5, 0, 2.5}));
}

TEST(Profile_point, with_a_null_is_null_throughout)
{
    EXPECT_EQ(Bits(Convert2dPoint64to3dPoint64({1.0, NULL_VALUE})), Bits(NULL_POINT));
    EXPECT_EQ(Bits(Convert2dPoint64to3dPoint64({NULL_VALUE, 1.0})), Bits(NULL_POINT));
    EXPECT_EQ(Bits(Convert2dPoint64to3dPoint64({NOT_A_NUMBER, 1.0})), Bits(zPoint3d64f{NOT_A_NUMBER, 0, 1}));
}

TEST(Narrowed_point, is_rounded_and_has_no_care_for_nulls)
{
    EXPECT_EQ(Bits(Convert3dPoint64to3dPoint32({0.1, -16777217.0, 2})), Bits(zPoint3d32f{0.1F, -16777216.0F, 2}));
    EXPECT_EQ(Bits(Convert3dPoint64to3dPoint32({NULL_VALUE, 1e39, NOT_A_NUMBER})),
              Bits(zPoint3d32f{-INFINITE_32, INFINITE_32, std::numeric_limits<float>::quiet_NaN()}));
}

// --- lists to 2D ----------------------------------------------------------------------------------------------------

using ConvertList = Ta::Object<void*> (*)(void*);
constexpr std::array<ConvertList, 3> TO_2D = {Convert3dPoints64To2dPoints64, Convert3dPoints64To2dPoints64Flip,
                                              Convert3dPoints64To2dPoints64RemoveNull};

const std::vector<zPoint3d64f> SOME = {
    {1, 2, 3}, {NULL_VALUE, 4, 5}, {6, NULL_VALUE, 7}, {8, 9, NULL_VALUE}, {10, 11, 12}};

TEST(Points_in_2D, keep_their_nulls)
{
    const Ta::Object<void*> flat = Convert3dPoints64To2dPoints64(PointList(SOME).Get());
    EXPECT_EQ(Bits(Points2d(flat)),
              Bits(std::vector<zPoint64f>{{1, 2}, {NULL_VALUE, 4}, {6, NULL_VALUE}, {8, 9}, {10, 11}}));
    EXPECT_EQ(Capacity(flat.Get()), 5U);
}

TEST(Points_in_2D, flipped_keep_their_nulls)
{
    const Ta::Object<void*> flat = Convert3dPoints64To2dPoints64Flip(PointList(SOME).Get());
    EXPECT_EQ(Bits(Points2d(flat)),
              Bits(std::vector<zPoint64f>{{2, 1}, {4, NULL_VALUE}, {NULL_VALUE, 6}, {9, 8}, {11, 10}}));
    EXPECT_EQ(Capacity(flat.Get()), 5U);
}

TEST(Points_in_2D, without_nulls_lose_those_with_a_null_z_too)
{
    EXPECT_EQ(Bits(Points2d(Convert3dPoints64To2dPoints64RemoveNull(PointList(SOME).Get()))),
              Bits(std::vector<zPoint64f>{{1, 2}, {10, 11}}));
    EXPECT_EQ(Capacity(Convert3dPoints64To2dPoints64RemoveNull(PointList({NULL_POINT}).Get()).Get()), 0U);
}

TEST(Points_in_2D, of_a_null_list_are_an_empty_handle_and_of_an_empty_list_an_empty_list)
{
    for (const ConvertList convert : TO_2D)
    {
        EXPECT_EQ(convert(nullptr).Get(), nullptr);
        const Ta::Object<void*> flat = convert(PointList({}).Get());
        ASSERT_NE(flat.Get(), nullptr);
        EXPECT_EQ(Points2d(flat).size(), 0U);
    }
}

// --- thinning -------------------------------------------------------------------------------------------------------

struct ThinningCase
{
    std::size_t count;
    std::size_t stride;
    std::size_t results;
    std::size_t capacity;
};

TEST(Points_in_32_bits, are_thinned_beyond_10000)
{
    for (const ThinningCase& c : {ThinningCase{1, 1, 1, 1},
                                  {9999, 1, 9999, 9999},
                                  {10000, 1, 10000, 10000},
                                  {10001, 1, 10001, 10000},
                                  {15000, 1, 15000, 10000},
                                  {19999, 1, 19999, 10000},
                                  {20000, 2, 10000, 10000},
                                  {20001, 2, 10001, 10000},
                                  {29999, 2, 15000, 10000},
                                  {30000, 3, 10000, 10000},
                                  {100007, 10, 10001, 10000}})
    {
        const Ta::Object<void*> thin = ConvertPoints64ToPoints32(PointList(Counted(c.count)).Get());
        const std::vector<zPoint3d32f> points = Points32(thin);
        ASSERT_EQ(points.size(), c.results) << c.count;
        EXPECT_GE(Capacity(thin.Get()), c.capacity) << c.count;
        EXPECT_TRUE(c.results > c.capacity || Capacity(thin.Get()) == c.capacity) << c.count;
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            ASSERT_EQ(Bits(points[i]), Bits(zPoint3d32f{static_cast<float>(i * c.stride), 0.5F, -1})) << i;
        }
    }
}

TEST(Points_in_32_bits, lack_those_with_a_null)
{
    EXPECT_EQ(Bits(Points32(ConvertPoints64ToPoints32(PointList(SOME).Get()))),
              Bits(std::vector<zPoint3d32f>{{1, 2, 3}, {10, 11, 12}}));
    EXPECT_EQ(Points32(ConvertPoints64ToPoints32(PointList({NULL_POINT}).Get())).size(), 0U) << "a list without points";
}

TEST(Points_in_32_bits, of_a_null_or_empty_list_are_an_empty_handle)
{
    EXPECT_EQ(ConvertPoints64ToPoints32(nullptr).Get(), nullptr);
    EXPECT_EQ(ConvertPoints64ToPoints32(PointList({}).Get()).Get(), nullptr);
}

struct SurfaceThinningCase
{
    std::size_t count;
    unsigned maximum;
    std::size_t stride;
    std::size_t results;
    std::size_t capacity;
};

template <typename Point>
struct SurfaceConversion;

template <>
struct SurfaceConversion<zPoint3d32f>
{
    static constexpr auto CONVERT = ConvertSurfaceGeneralized3dPointsToPoints32f;
    static zType Type()
    {
        return zTypeOf(zPoint3d32f);
    }
};

template <>
struct SurfaceConversion<zPoint3d64f>
{
    static constexpr auto CONVERT = ConvertSurfaceGeneralized3dPointsToPoints64f;
    static zType Type()
    {
        return zTypeOf(zPoint3d64f);
    }
};

template <typename Point>
class Surface_points : public testing::Test
{
protected:
    static Ta::Object<void*> Converted(void* list, unsigned maximum)
    {
        void* out = nullptr;
        SurfaceConversion<Point>::CONVERT(list, maximum, &out);
        return Ta::Object<void*>(out);
    }

    static std::vector<Point> Points(const Ta::Object<void*>& list)
    {
        return Items<Point>(list.Get(), SurfaceConversion<Point>::Type());
    }
};

using PointForms = testing::Types<zPoint3d32f, zPoint3d64f>;
TYPED_TEST_SUITE(Surface_points, PointForms, );

TYPED_TEST(Surface_points, are_thinned_beyond_the_maximum)
{
    for (const SurfaceThinningCase& c : {SurfaceThinningCase{15, 10, 1, 15, 10},
                                         {10, 10, 1, 10, 10},
                                         {9, 10, 1, 9, 9},
                                         {20, 10, 2, 10, 10},
                                         {29, 10, 2, 15, 10},
                                         {5, 1, 5, 1, 1},
                                         {7, 4294967295U, 1, 7, 7},
                                         {0, 10, 1, 0, 0}})
    {
        const Ta::Object<void*> list = this->Converted(SurfacePointList(CountedSurface(c.count)).Get(), c.maximum);
        const std::vector<TypeParam> points = this->Points(list);
        ASSERT_EQ(points.size(), c.results) << c.count;
        EXPECT_TRUE(c.results > c.capacity || Capacity(list.Get()) == c.capacity) << c.count;
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            EXPECT_EQ(points[i].x, static_cast<decltype(points[i].x)>(i * c.stride));
            EXPECT_EQ(points[i].y, 0.5F);
            EXPECT_EQ(points[i].z, -1.0F);
        }
    }
}

TYPED_TEST(Surface_points, keep_their_nulls)
{
    const Ta::Object<void*> list = this->Converted(
        SurfacePointList({{1, 2, NULL_VALUE, 0, 0, -32768, 0}, {NULL_VALUE, 3, 4, 0, 0, 5, 6}}).Get(), 9);
    const std::vector<TypeParam> points = this->Points(list);
    ASSERT_EQ(points.size(), 2U);
    const auto null = static_cast<decltype(points[0].x)>(NULL_VALUE);
    EXPECT_EQ(Bits(points[0].z), Bits(null));
    EXPECT_EQ(Bits(points[1].x), Bits(null));
    EXPECT_EQ(points[1].z, 4.0F);
}

TYPED_TEST(Surface_points, of_a_null_list_leave_what_is_there_alone)
{
    int here = 0;
    void* out = &here;
    SurfaceConversion<TypeParam>::CONVERT(nullptr, 10, &out);
    EXPECT_EQ(out, &here);
    SurfaceConversion<TypeParam>::CONVERT(nullptr, 0, nullptr);
}

TYPED_TEST(Surface_points, give_the_only_reference_to_the_caller)
{
    const Ta::Object<void*> list = this->Converted(SurfacePointList(CountedSurface(3)).Get(), 10);
    EXPECT_EQ(xzObject_ReferenceCount(list.Get()), 1);
}

TEST(Surface_points_in_32_bits, have_nulls_at_minus_infinity)
{
    void* out = nullptr;
    ConvertSurfaceGeneralized3dPointsToPoints32f(SurfacePointList({{1, 2, NULL_VALUE, 0, 0, 0, 0}}).Get(), 1, &out);
    const Ta::Object<void*> list(out);
    EXPECT_EQ(Points32(list).at(0).z, -INFINITE_32);
}

TEST(Surface_points, that_are_to_be_none_are_refused_only_if_there_are_some)
{
    const Ta::Object<void*> some = SurfacePointList(CountedSurface(1));
    const Ta::Object<void*> none = SurfacePointList({});
    void* out = nullptr;
    ExpectFailure(FailureOf([&] { ConvertSurfaceGeneralized3dPointsToPoints32f(some.Get(), 0, &out); }), -997,
                  "Mu::TlkHelper::ConvertSurfaceGeneralized3dPointsToPoints32f", UNIT);
    ExpectFailure(FailureOf([&] { ConvertSurfaceGeneralized3dPointsToPoints64f(some.Get(), 0, &out); }), -997,
                  "Mu::TlkHelper::ConvertSurfaceGeneralized3dPointsToPoints64f", UNIT);
    EXPECT_EQ(out, nullptr);
    ConvertSurfaceGeneralized3dPointsToPoints32f(none.Get(), 0, &out);
    EXPECT_EQ(Points32(Ta::Object<void*>(out)).size(), 0U);
}

// --- mean -----------------------------------------------------------------------------------------------------------

zPoint3d64f MeanOf(void* list)
{
    zPoint3d64f mean{7, 7, 7};
    AveragePoint3d64f(list, &mean);
    return mean;
}

TEST(Mean_point, is_the_sum_divided_by_the_count)
{
    EXPECT_EQ(Bits(MeanOf(PointList({{1, 2, 3}, {2, 4, 6}, {6, 3, -3}}).Get())), Bits(zPoint3d64f{3, 3, 2}));
}

TEST(Mean_point, of_no_points_is_0)
{
    EXPECT_EQ(Bits(MeanOf(PointList({}).Get())), Bits(zPoint3d64f{0, 0, 0}));
    EXPECT_EQ(Bits(MeanOf(nullptr)), Bits(zPoint3d64f{0, 0, 0}));
}

TEST(Mean_point, counts_nulls_as_numbers)
{
    EXPECT_EQ(Bits(MeanOf(PointList({{NULL_VALUE, 2, 3}, {0, 4, NULL_VALUE}}).Get())),
              Bits(zPoint3d64f{NULL_VALUE / 2, 3, NULL_VALUE / 2}));
    EXPECT_EQ(MeanOf(PointList({NULL_POINT, NULL_POINT}).Get()).x, -INFINITE);
}

TEST(Mean_point, may_be_stored_in_the_list_itself)
{
    const Ta::Object<void*> list = PointList({{1, 2, 3}, {3, 4, 5}});
    auto* const first = static_cast<zPoint3d64f*>(zArrayList_At(list.Get(), 0));
    AveragePoint3d64f(list.Get(), first);
    EXPECT_EQ(Bits(*first), Bits(zPoint3d64f{2, 3, 4}));
}

// --- order ----------------------------------------------------------------------------------------------------------

constexpr z16s NULL_16 = -32768;

int Sorted(const std::vector<zPoint16s>& points, int order)
{
    return IsSortedPoints(points.data(), points.size(), static_cast<SortedType>(order));
}

struct SortCase
{
    const char* name;
    std::vector<zPoint16s> points;
    std::array<int, 4> sorted;
};

TEST(Pixel_line, is_sorted_by_one_component_in_one_direction)
{
    const std::vector<SortCase> cases = {
        {"empty", {}, {1, 1, 1, 1}},
        {"one", {{3, 4}}, {1, 1, 1, 1}},
        {"equal", {{3, 4}, {3, 4}}, {1, 1, 1, 1}},
        {"x rises, y falls", {{1, 4}, {2, 3}, {2, 3}, {5, 1}}, {1, 0, 0, 1}},
        {"x falls, y rises", {{5, 1}, {2, 3}, {1, 4}}, {0, 1, 1, 0}},
        {"neither", {{1, 1}, {3, 3}, {2, 2}}, {0, 0, 0, 0}},
        {"a null x between equal ones", {{1, 5}, {NULL_16, 0}, {1, 2}, {4, 1}}, {1, 0, 0, 1}},
        {"a null y between", {{1, 5}, {0, NULL_16}, {1, 2}, {4, 1}}, {1, 0, 0, 1}},
        {"nulls only", {{NULL_16, 1}, {2, NULL_16}, {NULL_16, NULL_16}}, {1, 1, 1, 1}},
        {"one beside nulls", {{NULL_16, 9}, {2, 3}, {1, NULL_16}}, {1, 1, 1, 1}},
        {"compared across a null", {{5, 5}, {NULL_16, 0}, {4, 6}}, {0, 1, 1, 0}},
        {"widest", {{-32767, 32767}, {32767, -32767}}, {1, 0, 0, 1}},
        {"broken at the last", {{1, 1}, {2, 2}, {3, 3}, {2, 4}}, {0, 0, 1, 0}}};
    for (const SortCase& c : cases)
    {
        for (int order = 0; order < 4; ++order)
        {
            EXPECT_EQ(Sorted(c.points, order), c.sorted.at(static_cast<std::size_t>(order))) << c.name << " " << order;
        }
    }
}

TEST(Pixel_line, is_sorted_in_orders_that_are_not_known)
{
    for (const int order : {-1, 4, 5, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    {
        EXPECT_EQ(Sorted({{1, 1}, {3, 3}, {2, 2}}, order), 1) << order;
    }
}

TEST(Pixel_line, that_is_not_there_is_sorted)
{
    EXPECT_EQ(IsSortedPoints(nullptr, 3, SortedType::XRising), 1);
    EXPECT_EQ(IsSortedPoints(nullptr, 0, SortedType::YFalling), 1);
}

// --- what is refused, and what fails --------------------------------------------------------------------------------

struct ListCase
{
    const char* function;
    zType itemType;
    std::function<void(void*)> call;
    std::size_t failing; ///< calls of it that may fail
};

std::vector<ListCase> ListCases()
{
    static zPoint3d64f mean{};
    const auto surface = [](auto convert) {
        return [convert](void* list) {
            void* out = nullptr;
            convert(list, 2U, &out);
            const Ta::Object<void*> owned(out);
        };
    };
    const auto plain = [](ConvertList convert) { return [convert](void* list) { static_cast<void>(convert(list)); }; };
    const zType points = zTypeOf(zPoint3d64f);
    const zType records = zBytes_GetType(40);
    // A list, its room if it is not empty, two items and the end of both; a list that grows asks for its room later.
    return {{"Convert3dPoints64To2dPoints64", points, plain(Convert3dPoints64To2dPoints64), 7},
            {"Convert3dPoints64To2dPoints64Flip", points, plain(Convert3dPoints64To2dPoints64Flip), 7},
            {"Convert3dPoints64To2dPoints64RemoveNull", points, plain(Convert3dPoints64To2dPoints64RemoveNull), 7},
            {"ConvertPoints64ToPoints32", points, plain(ConvertPoints64ToPoints32), 7},
            {"ConvertSurfaceGeneralized3dPointsToPoints32f", records,
             surface(ConvertSurfaceGeneralized3dPointsToPoints32f), 7},
            {"ConvertSurfaceGeneralized3dPointsToPoints64f", records,
             surface(ConvertSurfaceGeneralized3dPointsToPoints64f), 7},
            {"AveragePoint3d64f", points, [](void* list) { AveragePoint3d64f(list, &mean); }, 0}};
}

TEST(Point_lists, of_another_type_are_refused)
{
    const Ta::Object<void*> narrow = List(zTypeOf(zPoint3d32f), std::vector<zPoint3d32f>{{1, 2, 3}});
    const Ta::Object<void*> flat = List(zTypeOf(zPoint64f), std::vector<zPoint64f>{});
    const Ta::Object<void*> raw = List(zBytes_GetType(24), std::vector<zPoint3d64f>{{1, 2, 3}});
    const Ta::Object<void*> records = SurfacePointList(CountedSurface(2));
    const Ta::Object<void*> points = PointList(Counted(2));
    const Ta::Object<void*> message = PointFeature({1, 2, 3});
    for (const ListCase& c : ListCases())
    {
        SCOPED_TRACE(c.function);
        for (void* const list : {narrow.Get(), flat.Get(), raw.Get(), records.Get(), points.Get(), message.Get()})
        {
            const auto failure = FailureOf([&] { c.call(list); });
            if (zArrayList_ItemType(list) == c.itemType)
            {
                EXPECT_FALSE(failure.has_value());
                continue;
            }
            ExpectFailure(failure, -984, std::string("Mu::TlkHelper::") + c.function, UNIT);
        }
    }
}

TEST(Point_lists, without_a_place_for_the_result_are_refused)
{
    const Ta::Object<void*> records = SurfacePointList(CountedSurface(2));
    const Ta::Object<void*> points = PointList(Counted(2));
    ExpectFailure(FailureOf([&] { ConvertSurfaceGeneralized3dPointsToPoints32f(records.Get(), 1, nullptr); }), -999,
                  "Mu::TlkHelper::ConvertSurfaceGeneralized3dPointsToPoints32f", UNIT);
    ExpectFailure(FailureOf([&] { ConvertSurfaceGeneralized3dPointsToPoints64f(records.Get(), 1, nullptr); }), -999,
                  "Mu::TlkHelper::ConvertSurfaceGeneralized3dPointsToPoints64f", UNIT);
    ExpectFailure(FailureOf([&] { AveragePoint3d64f(points.Get(), nullptr); }), -999,
                  "Mu::TlkHelper::AveragePoint3d64f", UNIT);
}

TEST(Point_lists, raise_the_status_of_every_failing_call_and_stay_as_they_were)
{
    const CountingAlloc alloc;
    {
        const Ta::Object<void*> points = List(zTypeOf(zPoint3d64f), Counted(2), alloc.Get());
        const Ta::Object<void*> records = List(zBytes_GetType(40), CountedSurface(2), alloc.Get());
        const std::vector<std::uint64_t> before = Bits(Items<zPoint3d64f>(points.Get(), zTypeOf(zPoint3d64f)));
        const std::size_t requests = alloc.Requests();
        for (const ListCase& c : ListCases())
        {
            SCOPED_TRACE(c.function);
            void* const list = c.itemType == zTypeOf(zPoint3d64f) ? points.Get() : records.Get();
            const std::size_t failed =
                WalkRaisedFaults(std::string("Mu::TlkHelper::") + c.function, UNIT, [&] { c.call(list); });
            EXPECT_GE(failed, c.failing);
        }
        EXPECT_EQ(Bits(Items<zPoint3d64f>(points.Get(), zTypeOf(zPoint3d64f))), before);
        EXPECT_EQ(alloc.Requests(), requests) << "results are made in the default allocator";
        EXPECT_EQ(xzObject_ReferenceCount(points.Get()), 1);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Point_lists, that_fail_leave_the_place_for_the_result_alone)
{
    const Ta::Object<void*> records = SurfacePointList(CountedSurface(2));
    int here = 0;
    void* out = &here;
    const ArmedFault fault(3, -77);
    EXPECT_TRUE(FailureOf([&] { ConvertSurfaceGeneralized3dPointsToPoints64f(records.Get(), 9, &out); }).has_value());
    EXPECT_EQ(out, &here);
}
} // namespace
