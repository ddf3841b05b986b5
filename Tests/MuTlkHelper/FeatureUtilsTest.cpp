#include "PointTestTools.h"
#include "ToolFixture.h"

#include <MuTlkHelper/FeatureUtils.h>

#include <string>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using Mu::Vision::Circle3d;
using Mu::Vision::PlaneParams;
using TaPipe::PipeDataType;

constexpr double THRESHOLD = 1.1920928955078125e-07;
constexpr const char* UNIT = "Libs/MuTlkHelper/MuTlkHelper/FeatureUtils";
constexpr const char* VECTOR_UNIT = "Platform/MuVision/MuVision/ValidVector";

std::vector<std::uint64_t> Bits(const PlaneParams<double>& p)
{
    return BitsOf(p.a, p.b, p.c, p.d);
}

std::vector<std::uint64_t> Bits(const Circle3d<double>& c)
{
    return BitsOf(c.center.x, c.center.y, c.center.z, c.normal.x, c.normal.y, c.normal.z, c.radius);
}

using Support::Bits;

const zLine3d64f NULL_LINE{NULL_POINT, NULL_POINT};
const zPlane3d64f NULL_PLANE{NULL_POINT, NULL_POINT};

// --- validity -------------------------------------------------------------------------------------------------------

TEST(Point_validity, is_lost_by_any_null_component)
{
    EXPECT_EQ(IsValidPoint(zPoint64f{1.0, 2.0}), 1);
    EXPECT_EQ(IsValidPoint(zPoint64f{0.0, NULL_VALUE}), 0);
    EXPECT_EQ(IsValidPoint(zPoint64f{NULL_VALUE, 0.0}), 0);
    EXPECT_EQ(IsValidPoint(zPoint3d64f{1.0, 2.0, 3.0}), 1);
    EXPECT_EQ(IsValidPoint(zPoint3d64f{NULL_VALUE, 0.0, 0.0}), 0);
    EXPECT_EQ(IsValidPoint(zPoint3d64f{0.0, NULL_VALUE, 0.0}), 0);
    EXPECT_EQ(IsValidPoint(zPoint3d64f{0.0, 0.0, NULL_VALUE}), 0);
}

TEST(Point_validity, is_not_lost_by_what_is_only_nearly_null_or_no_number)
{
    EXPECT_EQ(IsValidPoint(zPoint64f{NOT_A_NUMBER, NOT_A_NUMBER}), 1);
    EXPECT_EQ(IsValidPoint(zPoint3d64f{NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER}), 1);
    EXPECT_EQ(IsValidPoint(zPoint3d64f{INFINITE, -INFINITE, std::nextafter(NULL_VALUE, 0.0)}), 1);
    EXPECT_EQ(IsValidPoint(zPoint64f{-NULL_VALUE, 0.0}), 1);
}

TEST(Line_and_plane_validity, is_that_of_both_halves)
{
    const zPoint3d64f good{1, 2, 3};
    const zPoint3d64f bad{1, 2, NULL_VALUE};
    EXPECT_EQ(IsValidLine({good, good}), 1);
    EXPECT_EQ(IsValidLine({bad, good}), 0);
    EXPECT_EQ(IsValidLine({good, bad}), 0);
    EXPECT_EQ(IsValidPlane({good, good}), 1);
    EXPECT_EQ(IsValidPlane({bad, good}), 0);
    EXPECT_EQ(IsValidPlane({good, bad}), 0);
}

// --- feature messages -----------------------------------------------------------------------------------------------

TEST(Feature_messages, give_what_was_set)
{
    EXPECT_EQ(Bits(GetLineFromFeatureMessage(LineFeature({1, 2, 3}, {4, 5, 6}).Get())),
              Bits(zLine3d64f{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_EQ(Bits(GetCircleFromFeatureMessage(CircleFeature({1, 2, 3}, {0, 0, 9}, 7).Get())),
              Bits(Circle3d<double>{{1, 2, 3}, {0, 0, 9}, 7}));
    EXPECT_EQ(Bits(GetPlaneFromFeatureMessage(PlaneFeature({0, 3, 4}, 10).Get())),
              Bits(PlaneParams<double>{0, 0.6, 0.8, -10}))
        << "the normal is brought to length 1, the distance is not";
}

TEST(Feature_messages, of_another_kind_and_null_give_records_of_nulls)
{
    const Ta::Object<void*> point = PointFeature({1, 2, 3});
    const Ta::Object<void*> line = LineFeature({1, 2, 3}, {1, 0, 0});
    const Ta::Object<void*> circle = CircleFeature({1, 2, 3}, {0, 0, 1}, 4);
    const Ta::Object<void*> plane = PlaneFeature({0, 0, 1}, 4);
    const Ta::Object<void*> null = NullMessage();
    const Circle3d<double> noCircle{NULL_POINT, NULL_POINT, 0.0};
    const PlaneParams<double> noPlane{NULL_VALUE, NULL_VALUE, NULL_VALUE, NULL_VALUE};
    for (void* const other : {point.Get(), circle.Get(), plane.Get(), null.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(Bits(GetLineFromFeatureMessage(other)), Bits(NULL_LINE));
    }
    for (void* const other : {point.Get(), line.Get(), plane.Get(), null.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(Bits(GetCircleFromFeatureMessage(other)), Bits(noCircle));
    }
    for (void* const other : {point.Get(), line.Get(), circle.Get(), null.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(Bits(GetPlaneFromFeatureMessage(other)), Bits(noPlane));
    }
    EXPECT_EQ(IsValidLine(GetLineFromFeatureMessage(nullptr)), 0);
}

TEST(Feature_messages, of_which_nothing_was_set_are_read_as_they_stand)
{
    Ta::Object<void*> line;
    Ta::Object<void*> circle;
    Ta::Object<void*> plane;
    MU_CHECK(TvLineFeatureMsg_Construct(line.Out(), 1, nullptr));
    MU_CHECK(TvCircleFeatureMsg_Construct(circle.Out(), 1, nullptr));
    MU_CHECK(TvPlaneFeatureMsg_Construct(plane.Out(), 1, nullptr));
    EXPECT_EQ(IsValidLine(GetLineFromFeatureMessage(line.Get())), 0);
    EXPECT_EQ(GetCircleFromFeatureMessage(circle.Get()).radius, NULL_VALUE);
    const PlaneParams<double> read = GetPlaneFromFeatureMessage(plane.Get());
    EXPECT_NEAR(read.a, -1 / std::sqrt(3.0), 1e-15) << "three nulls have a direction";
    EXPECT_EQ(read.d, -NULL_VALUE);
}

TEST(Feature_messages, of_planes_without_a_length_or_a_finite_normal)
{
    EXPECT_EQ(Bits(GetPlaneFromFeatureMessage(PlaneFeature({0, 0, 0}, 2).Get())),
              Bits(PlaneParams<double>{0, 0, 0, -2}));
    const Ta::Object<void*> endless = PlaneFeature({INFINITE, 0, 0}, 2);
    ExpectFailure(FailureOf([&] { static_cast<void>(GetPlaneFromFeatureMessage(endless.Get())); }), -997,
                  "Mu::TlkHelper::GetPlaneFromFeatureMessage", UNIT);
}

// A tool that measures with features: it reads them from its inputs and passes them on.
class Feature_tool : public ToolFixture
{
protected:
    void SetUp() override
    {
        ToolFixture::SetUp();
        for (const auto& [id, type] : {std::pair{"Line", PipeDataType::LineFeature},
                                       {"Circle", PipeDataType::CircleFeature},
                                       {"Plane", PipeDataType::PlaneFeature}})
        {
            tool.AddInput(id, AT_END).AddAcceptedDataFormat(type, false).SetOptional(true);
            tool.AddOutput(id, AT_END).SetDataFormat(type, false);
        }
        tool.execute = [this](TaPipe::InputSet& set) {
            const zLine3d64f line = GetLineFromFeatureMessage(tool.GetDataMessageInput(set, "Line"));
            const Circle3d<double> circle = GetCircleFromFeatureMessage(tool.GetDataMessageInput(set, "Circle"));
            const PlaneParams<double> params = GetPlaneFromFeatureMessage(tool.GetDataMessageInput(set, "Plane"));
            tool.SendFeatureLine("Line", LineSolveForX(line, 10.0), line.direction, false, nullptr);
            tool.SendFeatureCircle("Circle", circle.center, circle.normal, circle.radius, false, nullptr);
            tool.SendFeaturePlane("Plane", GetPlaneFromParams(params), false, nullptr);
        };
    }
};

TEST_F(Feature_tool, gets_lines_circles_and_planes_from_its_inputs)
{
    Deliver({LineFeature({0, 1, 2}, {2, 4, 6}), CircleFeature({1, 2, 3}, {0, 0, 1}, 4), PlaneFeature({0, 0, 2}, 5)});
    ASSERT_EQ(host.deliveries.size(), 3U);
    EXPECT_EQ(Bits(GetLineFromFeatureMessage(host.deliveries[0].Message())), Bits(zLine3d64f{{10, 21, 32}, {2, 4, 6}}));
    EXPECT_EQ(Bits(GetCircleFromFeatureMessage(host.deliveries[1].Message())),
              Bits(Circle3d<double>{{1, 2, 3}, {0, 0, 1}, 4}));
    EXPECT_EQ(Bits(GetPlaneFromFeatureMessage(host.deliveries[2].Message())), Bits(PlaneParams<double>{0, 0, 1, -5}));
}

TEST_F(Feature_tool, sends_nulls_where_its_inputs_have_no_feature)
{
    Deliver({NullMessage(), PointFeature({1, 2, 3}), LineFeature({0, 0, 0}, {1, 0, 0})});
    ASSERT_EQ(host.deliveries.size(), 3U);
    EXPECT_EQ(host.NullOutputs(), (std::vector<std::string>{"Circle", "Line", "Plane"}));
}

// --- lines ----------------------------------------------------------------------------------------------------------

TEST(Line_solved_for_x, is_its_point_there)
{
    EXPECT_EQ(Bits(LineSolveForX({{1, 2, 3}, {2, 4, -6}}, 2.0)), Bits(zPoint3d64f{2, 4, 0}));
}

TEST(Line_solved_for_y, is_its_point_there)
{
    EXPECT_EQ(Bits(LineSolveForY({{1, 2, 3}, {2, 4, -6}}, 4.0)), Bits(zPoint3d64f{2, 4, 0}));
}

TEST(Line_along_y, is_null_solved_for_x_and_for_y)
{
    EXPECT_EQ(Bits(LineSolveForX({{1, 2, 3}, {0, 1, 0}}, 5.0)), Bits(NULL_POINT));
    EXPECT_EQ(Bits(LineSolveForY({{1, 2, 3}, {0, 1, 0}}, 5.0)), Bits(NULL_POINT)) << "the guard looks at x";
}

TEST(Line_along_x, is_divided_by_its_y_direction_of_0)
{
    EXPECT_EQ(Bits(LineSolveForY({{1, 2, 3}, {2, 0, 4}}, 5.0)), Bits(zPoint3d64f{INFINITE, 5, INFINITE}));
    EXPECT_EQ(Bits(LineSolveForY({{1, 2, 3}, {-2, 0, 4}}, 5.0)), Bits(zPoint3d64f{-INFINITE, 5, INFINITE}));
    EXPECT_EQ(Bits(LineSolveForY({{1, 2, 3}, {2, 0, 4}}, 2.0)), Bits(zPoint3d64f{NOT_A_NUMBER, 2, NOT_A_NUMBER}));
    EXPECT_EQ(Bits(LineSolveForY({{1, 2, 3}, {2, 0, 0}}, 5.0)), Bits(zPoint3d64f{INFINITE, 5, NOT_A_NUMBER}));
}

TEST(Line_guard, asks_for_more_than_the_threshold_of_direction_x)
{
    for (const auto solve : {LineSolveForX, LineSolveForY})
    {
        for (const double sign : {1.0, -1.0})
        {
            EXPECT_EQ(IsValidPoint(solve({{0, 0, 0}, {sign * THRESHOLD, 1, 1}}, 0.0)), 0);
            EXPECT_EQ(IsValidPoint(solve({{0, 0, 0}, {sign * std::nextafter(THRESHOLD, 1.0), 1, 1}}, 0.0)), 1);
        }
        EXPECT_EQ(Bits(solve({{0, 0, 0}, {NOT_A_NUMBER, 1, 1}}, 0.0)), Bits(NULL_POINT));
    }
}

TEST(Line_of_nulls, passes_the_guard)
{
    // t = (5 - null) / null = -1; null + -1 * null = 0
    EXPECT_EQ(Bits(LineSolveForX(NULL_LINE, 5.0)), Bits(zPoint3d64f{5, 0, 0}));
    EXPECT_EQ(Bits(LineSolveForY(NULL_LINE, 5.0)), Bits(zPoint3d64f{0, 5, 0}));
}

// --- planes ---------------------------------------------------------------------------------------------------------

struct ParamsCase
{
    const char* name;
    PlaneParams<double> params;
    zPoint3d64f point;
};

TEST(Plane_from_params, crosses_an_axis_and_keeps_its_normal)
{
    for (const ParamsCase& c : {ParamsCase{"level", {0, 0, 2, -4}, {0, 0, 2}},
                                {"z comes first", {1, 2, 4, 8}, {0, 0, -2}},
                                {"then y", {1, 2, 0, 8}, {0, -4, 0}},
                                {"then x", {1, 0, 0, 8}, {-8, 0, 0}},
                                {"through the origin", {0, 0, 1, 0}, {0, 0, -0.0}},
                                {"without a distance that is a number", {0, 0, 1, NOT_A_NUMBER}, {0, 0, NOT_A_NUMBER}},
                                {"far", {0, 0, 1e-300, 1e300}, {0, 0, -INFINITE}},
                                {"short normal", {0, 0, 1e-300, -2e-300}, {0, 0, 2}}})
    {
        EXPECT_EQ(Bits(GetPlaneFromParams(c.params)), Bits(zPlane3d64f{c.point, {c.params.a, c.params.b, c.params.c}}))
            << c.name;
    }
}

TEST(Plane_from_params, is_null_if_a_param_is_or_the_normal_has_no_length)
{
    for (const PlaneParams<double>& params :
         {PlaneParams<double>{}, PlaneParams<double>{NULL_VALUE, 0, 1, 0}, PlaneParams<double>{0, NULL_VALUE, 1, 0},
          PlaneParams<double>{0, 1, NULL_VALUE, 0}, PlaneParams<double>{0, 0, 1, NULL_VALUE},
          PlaneParams<double>{0, 0, 0, 1}, PlaneParams<double>{0, -0.0, 0, 0},
          PlaneParams<double>{NOT_A_NUMBER, 0, 0, NULL_VALUE}})
    {
        EXPECT_EQ(Bits(GetPlaneFromParams(params)), Bits(NULL_PLANE));
    }
}

TEST(Plane_from_params, with_a_normal_that_is_not_finite_fails_under_the_name_of_the_vector_test)
{
    for (const double odd : {NOT_A_NUMBER, INFINITE, -INFINITE})
    {
        ExpectFailure(FailureOf([odd] {
                          static_cast<void>(GetPlaneFromParams({1, odd, 1, 1}));
                      }),
                      -997, "Mu::Vision::IsValidVector", VECTOR_UNIT);
    }
}

struct ThroughCase
{
    const char* name;
    zPoint3d64f normal;
    zPoint3d64f point;
    zPlane3d64f plane;
};

TEST(Plane_through_a_point, crosses_an_axis_and_has_a_normal_of_length_1)
{
    for (const ThroughCase& c : {ThroughCase{"level", {0, 0, 2}, {5, 5, 3}, {{0, 0, 3}, {0, 0, 1}}},
                                 {"z comes first", {0, 3, 4}, {7, 5, 10}, {{0, 0, 13.75}, {0, 0.6, 0.8}}},
                                 {"then y", {0, -2, 0}, {5, 4, 3}, {{0, 4, 0}, {0, -1, 0}}},
                                 {"then x", {0.5, 0, 0}, {5, 4, 3}, {{5, 0, 0}, {1, 0, 0}}},
                                 {"no direction", {0, 0, 0}, {5, 4, 3}, {NULL_POINT, {0, 0, 0}}}})
    {
        const zPlane3d64f plane = GetPlaneFromNormalAndPoint(c.normal, c.point);
        EXPECT_EQ(Bits(plane.normal), Bits(c.plane.normal)) << c.name;
        EXPECT_EQ(plane.point.x, c.plane.point.x) << c.name;
        EXPECT_EQ(plane.point.y, c.plane.point.y) << c.name;
        EXPECT_NEAR(plane.point.z, c.plane.point.z, 1e-14) << c.name;
    }
}

TEST(Plane_through_a_point, is_null_if_normal_or_point_is)
{
    const zPoint3d64f good{1, 2, 3};
    EXPECT_EQ(Bits(GetPlaneFromNormalAndPoint({1, NULL_VALUE, 3}, good)), Bits(NULL_PLANE));
    EXPECT_EQ(Bits(GetPlaneFromNormalAndPoint(good, {1, 2, NULL_VALUE})), Bits(NULL_PLANE));
    EXPECT_EQ(Bits(GetPlaneFromNormalAndPoint({INFINITE, 0, 0}, NULL_POINT)), Bits(NULL_PLANE)) << "and raises nothing";
}

TEST(Plane_through_a_point, fails_with_a_normal_that_is_not_finite)
{
    ExpectFailure(FailureOf([] {
                      static_cast<void>(GetPlaneFromNormalAndPoint({0, 0, NOT_A_NUMBER}, {1, 2, 3}));
                  }),
                  -997, "Mu::TlkHelper::GetPlaneFromNormalAndPoint", UNIT);
}

// --- failing calls --------------------------------------------------------------------------------------------------

TEST(Feature_utilities, raise_the_status_of_every_failing_call)
{
    const Ta::Object<void*> line = LineFeature({1, 2, 3}, {1, 0, 0});
    const Ta::Object<void*> circle = CircleFeature({1, 2, 3}, {0, 0, 1}, 4);
    const Ta::Object<void*> plane = PlaneFeature({0, 0, 1}, 4);
    EXPECT_EQ(WalkRaisedFaults("Mu::TlkHelper::GetPlaneFromFeatureMessage", UNIT,
                               [&] { static_cast<void>(GetPlaneFromFeatureMessage(plane.Get())); }),
              1U);
    EXPECT_EQ(WalkRaisedFaults("Mu::Vision::IsValidVector", VECTOR_UNIT,
                               [] {
                                   static_cast<void>(GetPlaneFromParams({0, 0, 1, 2}));
                               }),
              1U);
    EXPECT_EQ(WalkRaisedFaults("Mu::TlkHelper::GetPlaneFromNormalAndPoint", UNIT,
                               [] {
                                   static_cast<void>(GetPlaneFromNormalAndPoint({0, 0, 1}, {1, 2, 3}));
                               }),
              1U);
    const auto others = [&] {
        static_cast<void>(GetLineFromFeatureMessage(line.Get()));
        static_cast<void>(GetCircleFromFeatureMessage(circle.Get()));
        static_cast<void>(LineSolveForX(NULL_LINE, 1));
        static_cast<void>(LineSolveForY(NULL_LINE, 1));
        static_cast<void>(GetPlaneFromParams({}));
        static_cast<void>(GetPlaneFromNormalAndPoint(NULL_POINT, NULL_POINT));
    };
    EXPECT_EQ(WalkRaisedFaults("nothing that may fail", UNIT, others), 0U);
}

TEST(Feature_utilities, leave_the_messages_as_they_were)
{
    const CountingAlloc alloc;
    {
        const Ta::Object<void*> plane = PlaneFeature({0, 0, 2}, 4, alloc.Get());
        const std::size_t requests = alloc.Requests();
        static_cast<void>(GetPlaneFromFeatureMessage(plane.Get()));
        EXPECT_EQ(xzObject_ReferenceCount(plane.Get()), 1);
        EXPECT_EQ(TvPlaneFeatureMsg_Normal(plane.Get()).z, 2.0);
        EXPECT_EQ(alloc.Requests(), requests);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}
} // namespace
