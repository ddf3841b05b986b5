#include <Support/MessageChecks.h>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>

using namespace Support;

namespace
{
using Construct = zStatus (*)(zObject* msg, std::size_t count, zAlloc alloc);
using SetPoint = zStatus (*)(zObject msg, const zPoint3d64f* point);
using SetSize = zStatus (*)(zObject msg, z64f size);

/// The operations of a family; null where it has none of that kind.
struct Family
{
    const char* name;
    zType type;
    Construct construct;
    std::vector<std::pair<SetPoint, zPoint3d64f (*)(zObject msg)>> points;
    SetSize setSize;
    z64f (*size)(zObject msg);
};

const Family POINT = {"point",
                      zTypeOf(TvPointFeatureMsg),
                      TvPointFeatureMsg_Construct,
                      {{TvPointFeatureMsg_SetPosition, TvPointFeatureMsg_Position}},
                      nullptr,
                      nullptr};
const Family LINE = {"line",
                     zTypeOf(TvLineFeatureMsg),
                     TvLineFeatureMsg_Construct,
                     {{TvLineFeatureMsg_SetPosition, TvLineFeatureMsg_Position},
                      {TvLineFeatureMsg_SetDirection, TvLineFeatureMsg_Direction}},
                     nullptr,
                     nullptr};
const Family CIRCLE = {"circle",
                       zTypeOf(TvCircleFeatureMsg),
                       TvCircleFeatureMsg_Construct,
                       {{TvCircleFeatureMsg_SetPosition, TvCircleFeatureMsg_Position},
                        {TvCircleFeatureMsg_SetNormal, TvCircleFeatureMsg_Normal}},
                       TvCircleFeatureMsg_SetRadius,
                       TvCircleFeatureMsg_Radius};
const Family PLANE = {"plane",
                      zTypeOf(TvPlaneFeatureMsg),
                      TvPlaneFeatureMsg_Construct,
                      {{TvPlaneFeatureMsg_SetNormal, TvPlaneFeatureMsg_Normal}},
                      TvPlaneFeatureMsg_SetOriginDistance,
                      TvPlaneFeatureMsg_OriginDistance};

void PrintTo(const Family& family, std::ostream* out)
{
    *out << family.name;
}

const std::vector<double> NO_POINT(3, zNULL_64F);

/// A point of its own for each property.
zPoint3d64f PointFor(std::size_t property)
{
    const auto first = static_cast<double>(10 * property);
    return {first + 1.5, first + 2.5, first - 3.5};
}

class Feature_message : public testing::TestWithParam<Family>
{
protected:
    static Ta::Object<void*> Make(std::size_t count = 1, zAlloc alloc = nullptr)
    {
        zObject msg = nullptr;
        EXPECT_EQ(GetParam().construct(&msg, count, alloc), zOK);
        return Ta::Object<void*>(msg);
    }

    static zStatus SetAll(zObject msg)
    {
        const Family& family = GetParam();
        for (std::size_t i = 0; i < family.points.size(); ++i)
        {
            const zPoint3d64f point = PointFor(i);
            zTRY(family.points[i].first(msg, &point));
        }
        return family.setSize == nullptr ? zOK : family.setSize(msg, 4.25);
    }

    static void ExpectAll(zObject msg)
    {
        const Family& family = GetParam();
        for (std::size_t i = 0; i < family.points.size(); ++i)
        {
            EXPECT_EQ(Fields(family.points[i].second(msg)), Fields(PointFor(i))) << i;
        }
        if (family.size != nullptr)
        {
            EXPECT_EQ(family.size(msg), 4.25);
        }
    }

    static void ExpectNothing(zObject msg)
    {
        const Family& family = GetParam();
        for (const auto& [set, get] : family.points)
        {
            EXPECT_EQ(Fields(get(msg)), NO_POINT);
        }
        if (family.size != nullptr)
        {
            EXPECT_EQ(family.size(msg), zNULL_64F);
        }
    }
};
} // namespace

TEST_P(Feature_message, New_one_has_nothing_set)
{
    const auto msg = Make();
    EXPECT_EQ(xzObject_Type(msg.Get()), GetParam().type);
    ExpectNothing(msg.Get());
}

TEST_P(Feature_message, Keeps_each_property_apart)
{
    const auto msg = Make();
    ASSERT_EQ(SetAll(msg.Get()), zOK);
    ExpectAll(msg.Get());
}

TEST_P(Feature_message, Costs_one_request_with_all_that_can_be_set)
{
    const CountingAlloc alloc;
    {
        const auto msg = Make(1, alloc.Get());
        ASSERT_EQ(SetAll(msg.Get()), zOK);
        EXPECT_EQ(alloc.Requests(), 1U);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST_P(Feature_message, Has_a_stamp_for_each_frame)
{
    EXPECT_EQ(zMsgSet_Count(Make(0).Get()), 1U);
    EXPECT_EQ(zMsgSet_Count(Make(3).Get()), 3U);
}

TEST_P(Feature_message, Construct_refuses_what_it_cannot_make)
{
    zObject msg = nullptr;
    EXPECT_EQ(GetParam().construct(nullptr, 1, nullptr), zERROR_MISSING);
    EXPECT_EQ(GetParam().construct(&msg, zMSGSET_MAX_STAMPS + 1, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(msg, nullptr);
}

TEST_P(Feature_message, Null_pointers_are_refused_and_change_nothing)
{
    const auto msg = Make();
    ASSERT_EQ(SetAll(msg.Get()), zOK);
    for (const auto& [set, get] : GetParam().points)
    {
        EXPECT_EQ(set(msg.Get(), nullptr), zERROR_MISSING);
    }
    ExpectAll(msg.Get());
}

TEST_P(Feature_message, Other_handles_are_refused)
{
    const zPoint3d64f point = {1, 2, 3};
    const auto line = LineFeature(point, point);
    const auto other =
        GetParam().type == zTypeOf(TvLineFeatureMsg) ? Ta::Object<void*>(PointFeature(point)) : Ta::Object<void*>(line);
    for (void* const handle : {other.Get(), static_cast<void*>(nullptr)})
    {
        for (const auto& [set, get] : GetParam().points)
        {
            EXPECT_EQ(set(handle, &point), zERROR_PARAMETER);
        }
        if (GetParam().setSize != nullptr)
        {
            EXPECT_EQ(GetParam().setSize(handle, 1), zERROR_PARAMETER);
        }
        ExpectNothing(handle);
    }
}

TEST_P(Feature_message, Clone_is_independent)
{
    const auto msg = Make();
    ASSERT_EQ(SetAll(msg.Get()), zOK);
    const auto clone = CloneOf(msg.Get());
    const zPoint3d64f other = {9, 9, 9};
    for (const auto& [set, get] : GetParam().points)
    {
        ASSERT_EQ(set(msg.Get(), &other), zOK);
    }
    if (GetParam().setSize != nullptr)
    {
        ASSERT_EQ(GetParam().setSize(msg.Get(), 9), zOK);
    }
    ExpectAll(clone.Get());
}

TEST_P(Feature_message, Failures_leave_nothing_behind)
{
    // The message and the stamps beside it, and as many in the clone.
    EXPECT_EQ(ExpectCleanFailures([](zObject* msg, zAlloc alloc) {
                  zTRY(GetParam().construct(msg, 2, alloc));
                  return SetAll(*msg);
              }),
              4U);
}

INSTANTIATE_TEST_SUITE_P(, Feature_message, testing::Values(POINT, LINE, CIRCLE, PLANE), CaseName());

TEST(FeatureMsg, Nan_is_a_radius)
{
    const auto circle = CircleFeature({1, 2, 3}, {0, 0, 1}, std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(std::isnan(TvCircleFeatureMsg_Radius(circle.Get())));
}

TEST(FeatureMsg, Plane_keeps_the_length_of_its_normal)
{
    const auto plane = PlaneFeature({0, 0, 2}, 6);
    EXPECT_EQ(Fields(TvPlaneFeatureMsg_Normal(plane.Get())), (std::vector<double>{0, 0, 2}));
    EXPECT_EQ(TvPlaneFeatureMsg_OriginDistance(plane.Get()), 6);
}
