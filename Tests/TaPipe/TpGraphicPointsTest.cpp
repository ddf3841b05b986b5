#include <Support/GraphicElements.h>
#include <Support/MessageChecks.h>

#include <gtest/gtest.h>
#include <limits>
#include <ostream>

using namespace Support;

namespace
{
/// What point sets and line sets have in common.
struct Set
{
    const char* name;
    zStatus (*construct)(zObject* element, const zPoint3d32f* points, std::size_t count, zAlloc alloc);
    std::size_t (*count)(zObject element);
    const zPoint3d32f* (*points)(zObject element);
};

void PrintTo(const Set& set, std::ostream* out)
{
    *out << set.name;
}

const Set POINT_SET = {"point_set",
                       [](zObject* e, const zPoint3d32f* points, std::size_t count, zAlloc alloc) {
                           return TpGraphicPointSet_Construct(e, 1, TpPOINT_SHAPE_DOT, 0, points, count, alloc);
                       },
                       TpGraphicPointSet_Count, TpGraphicPointSet_Points};
const Set LINE_SET = {"line_set",
                      [](zObject* e, const zPoint3d32f* points, std::size_t count, zAlloc alloc) {
                          return TpGraphicLineSet_Construct(e, 1, 0, TpLINE_MODE_LAST_END, TpLINE_ENDING_PLAIN, points,
                                                            count, alloc);
                      },
                      TpGraphicLineSet_Count, TpGraphicLineSet_Points};

class Set_of_points : public testing::TestWithParam<Set>
{
};
} // namespace

TEST_P(Set_of_points, Keeps_a_copy)
{
    std::vector<zPoint3d32f> points = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    zObject element = nullptr;
    ASSERT_EQ(GetParam().construct(&element, points.data(), points.size(), nullptr), zOK);
    const Ta::Object<void*> owner(element);
    points[2].y = 0;
    ASSERT_EQ(GetParam().count(element), 3U);
    EXPECT_EQ(GetParam().points(element)[0].x, 1);
    EXPECT_EQ(GetParam().points(element)[2].y, 8);
}

TEST_P(Set_of_points, May_be_empty)
{
    zObject element = nullptr;
    ASSERT_EQ(GetParam().construct(&element, nullptr, 0, nullptr), zOK);
    const Ta::Object<void*> owner(element);
    EXPECT_EQ(GetParam().count(element), 0U);
    EXPECT_EQ(GetParam().points(element), nullptr);
    EXPECT_EQ(GetParam().count(CloneOf(element).Get()), 0U);
}

TEST_P(Set_of_points, Refuses_points_that_are_not_there)
{
    const CountingAlloc alloc;
    zObject element = nullptr;
    EXPECT_EQ(GetParam().construct(&element, nullptr, 1, alloc.Get()), zERROR_MISSING);
    for (const std::size_t count : {TpGRAPHIC_MAX_POINTS + 1, std::numeric_limits<std::size_t>::max()})
    {
        EXPECT_EQ(GetParam().construct(&element, TWO_POINTS.data(), count, alloc.Get()), zERROR_PARAMETER);
    }
    EXPECT_EQ(element, nullptr);
    EXPECT_EQ(alloc.Requests(), 0U);
}

INSTANTIATE_TEST_SUITE_P(, Set_of_points, testing::Values(POINT_SET, LINE_SET), CaseName());
