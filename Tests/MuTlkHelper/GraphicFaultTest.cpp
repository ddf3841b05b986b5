#include "DrawnElements.h"

#include <Support/CountingAlloc.h>
#include <Support/FaultWalk.h>
#include <Support/IgnoredStatuses.h>

#include <array>
#include <set>

// Every call that a drawing function makes fails once: the right exception comes, the elements that were drawn before
// stay, the one in hand is gone, and the same call works afterwards.

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;
using Region = Mu::Vision::Region3d<double>;

constexpr zStatus INJECTED = -4242;
constexpr zPoint3d64f A{1, 2, 3};
constexpr zPoint3d64f B{4, 6, 8};
constexpr Region BOX{5, 5, 5, 10, 10, 10, 0, 0, 0};
constexpr zRect3d64f BOUNDS{1, 2, 3, 4, 5, 6};

constexpr std::array<Ignored, 4> IGNORED = {{
    {"xzObject_DestroyImpl", "a handle that ends releases all the same; its destructor must not throw"},
    {"zAlloc_Free", "the memory is freed all the same"},
    {"xzApiLib_CastFailHandler", "GraphicAddLines: a failed cast is reported and the run goes on"},
    {"zLogf", "GraphicAddLines, by way of xzApiLib_CastFailHandler"},
}};

struct FaultCase
{
    const char* name;
    std::function<void(void* graphic, void* alloc)> draw;
    std::set<std::string> raisedBy; ///< the functions that raise, without their namespace
    std::set<std::string> mustFail; ///< operations that the walk must have met
};

/// The lists of the cases; they live as long as the test.
struct Lists
{
    Ta::Object<void*> doubles = List64({A, B});
    Ta::Object<void*> noDoubles = List64({});
    Ta::Object<void*> floats = List32({{1, 2, 3}, {4, 5, 6}});
    Ta::Object<void*> records = Records({{1, 2, 3, 0, 0, 0, 0}, {4, 5, 6, 0, 0, 0, 0}});
};

const std::string ADD_LIST = "zArrayList_Add";
const std::string MAKE_LIST = "zArrayList_Construct";
const std::string COUNT_UP = "zArrayList_CountUp";
const std::string MAKE_LINE = "TpGraphicLineSet_Construct";
const std::string ADD_LINE = "TpGraphic_AddLineSet";
const std::string MAKE_RAY = "TpGraphicRay_Construct";
const std::string ADD_RAY = "TpGraphic_AddRay";
const std::string MAKE_POINTS = "TpGraphicPointSet_Construct";
const std::string ADD_POINTS = "TpGraphic_AddPointSet";

std::vector<FaultCase> PrimitiveCases(const Lists& lists)
{
    static zPoint3d32f labelAt{1, 2, 3};
    void* const doubles = lists.doubles.Get();
    void* const floats = lists.floats.Get();
    void* const records = lists.records.Get();
    void* const noDoubles = lists.noDoubles.Get();
    return {
        {"point",
         [](void* g, void* a) { GraphicAddPoint(g, A, 1, COLOR, a, 0); },
         {"GraphicAddPoint"},
         {MAKE_POINTS, ADD_POINTS}},
        {"points of doubles",
         [=](void* g, void* a) { GraphicAddPoints(g, doubles, 1, COLOR, a, 0); },
         {"GraphicAddPoints", "ConvertPoints64ToPoints32"},
         {MAKE_LIST, ADD_LIST, MAKE_POINTS, ADD_POINTS}},
        {"points of floats",
         [=](void* g, void* a) { GraphicAddFoundPoints(g, floats, a); },
         {"GraphicAddPoints", "Ta::Object<void *>::Reset"},
         {"xzObject_ShareImpl", MAKE_POINTS, ADD_POINTS}},
        {"points of records",
         [=](void* g, void* a) { GraphicAddPoints(g, records, 1, COLOR, a, 0); },
         {"GraphicAddPoints", "ConvertSurfaceGeneralized3dPointsToPoints64f"},
         {MAKE_LIST, ADD_LIST, MAKE_POINTS}},
        {"lines of doubles",
         [=](void* g, void* a) { GraphicAddContourLines(g, doubles, a); },
         {"GraphicAddLines", "ConvertPoints64ToPoints32"},
         {MAKE_LIST, ADD_LIST, MAKE_LINE, ADD_LINE}},
        {"lines of records",
         [=](void* g, void* a) { GraphicAddLines(g, records, 1, COLOR, a); },
         {"GraphicAddLines", "ConvertSurfaceGeneralized3dPointsToPoints32f"},
         {MAKE_LIST, ADD_LIST, MAKE_LINE}},
        {"lines of nothing",
         [=](void* g, void* a) { GraphicAddLines(g, noDoubles, 1, COLOR, a); },
         {"GraphicAddLines"},
         {MAKE_LINE, ADD_LINE}},
        {"ray",
         [](void* g, void* a) { GraphicAddRay(g, A, B, 1, COLOR, a); },
         {"GraphicAddRay"},
         {MAKE_RAY, "TpGraphicRay_SetDirection", "TpGraphicRay_SetPosition", "TpGraphicRay_SetWidth",
          "TpGraphicRay_SetColor", ADD_RAY}},
        {"label",
         [](void* g, void* a) { GraphicAddLabel(g, "text", &labelAt, a); },
         {"GraphicAddLabel"},
         {"TpGraphicLabel_Construct", "TpGraphicLabel_SetText", "TpGraphicLabel_SetPosition", "TpGraphic_AddLabel"}},
        {"position",
         [](void* g, void* a) { GraphicAddPosition(g, A, TaPipe::TpGraphicPositionType::Anchor, a); },
         {"GraphicAddPosition"},
         {"TpGraphicPosition_Construct", "TpGraphicPosition_SetType", "TpGraphicPosition_SetPosition",
          "TpGraphic_AddPosition"}},
        {"arrow", [](void* g, void* a) { GraphicAddArrow(g, A, B, a); }, {"GraphicAddArrow"}, {MAKE_LINE, ADD_LINE}},
        {"fitted line",
         [](void* g, void* a) { GraphicAddFittedLine(g, A, B, a); },
         {"GraphicAddInfiniteLine"},
         {MAKE_RAY, ADD_RAY}},
    };
}

std::vector<FaultCase> LineCases()
{
    return {
        {"line of the base library",
         [](void* g, void* a) {
             GraphicAddInfiniteLine(g, zLine3d64f{A, B}, COLOR, 1, a);
         },
         {"GraphicAddInfiniteLine", "Mu::Vision::IsValidVector"},
         {"zS3dMath_Normalize64f", MAKE_RAY, "TpGraphicRay_SetColor", "TpGraphicRay_SetDirection",
          "TpGraphicRay_SetPosition", "TpGraphicRay_SetWidth", ADD_RAY}},
        {"slope",
         [](void* g, void* a) { GraphicAddLineBySlopeIntercept(g, 1, 2, 3, 1, COLOR, a); },
         {"GraphicAddInfiniteLine"},
         {MAKE_RAY}},
        {"slope xz",
         [](void* g, void* a) { GraphicAddXZLineBySlopeIntercept(g, 1, 2, 1, COLOR, a); },
         {"GraphicAddInfiniteLine"},
         {MAKE_RAY}},
        {"point and angle",
         [](void* g, void* a) {
             GraphicAddXZLineByPointAngle(g, {1, 2}, 33, 1, COLOR, a);
         },
         {"GraphicAddInfiniteLine"},
         {MAKE_RAY}},
        {"segment",
         [](void* g, void* a) { GraphicAddLineSegment(g, A, B, 1, COLOR, a); },
         {"GraphicAddLineSegment"},
         {MAKE_LINE, ADD_LINE}},
        {"profile segment",
         [](void* g, void* a) {
             GraphicAddProfileLineSegment(g, {1, 2}, {3, 4}, 1, COLOR, a);
         },
         {"GraphicAddLineSegment"},
         {MAKE_LINE}},
        {"cut in xy",
         [](void* g, void* a) { GraphicAddBoundedLineXY(g, 1, COLOR, B, 33, BOX, a); },
         {"GraphicAddLineSegment"},
         {MAKE_LINE}},
        {"cut in xz",
         [](void* g, void* a) { GraphicAddBoundedLineXZ(g, 1, COLOR, B, 33, BOX, a); },
         {"GraphicAddLineSegment"},
         {MAKE_LINE}},
        {"cut in space",
         [](void* g, void* a) { GraphicAddBoundedLineXYZ(g, 1, COLOR, A, B, BOX, a); },
         {"GraphicAddLineSegment"},
         {MAKE_LINE}},
    };
}

std::vector<FaultCase> CurveCases()
{
    return {
        {"circle",
         [](void* g, void* a) { GraphicAddCircle(g, A, 2, 90, 1, COLOR, a, 6); },
         {"GraphicAddCircle", "GraphicAddLines", "Ta::Object<void *>::Reset"},
         {MAKE_LIST, COUNT_UP, MAKE_LINE, ADD_LINE}},
        {"tilted circle",
         [](void* g, void* a) {
             GraphicAddCircle(g, A, 2, {1, 2, 3}, 90, 1, COLOR, a);
         },
         {"GraphicAddCircle", "GraphicAddLines", "Ta::Object<void *>::Reset"},
         {MAKE_LIST, COUNT_UP, MAKE_LINE}},
        {"arc",
         [](void* g, void* a) { GraphicAddArc(g, A, 2, 0, 3, 6, COLOR, 1, a); },
         {"GraphicAddArc"},
         {MAKE_LIST, COUNT_UP, MAKE_LINE, ADD_LINE}},
        {"arc in space",
         [](void* g, void* a) {
             GraphicAddArcXYZ(g, 1, COLOR, A, {1, 0, 0}, {1, 0.1, 0}, 2, a);
         },
         {"GraphicAddArcXYZ"},
         {"zS3dMath_Normalize64f", "TvSurfaceTransform_NormalToTilt", "TvSurfaceTransform_TiltToNormal", MAKE_LIST,
          COUNT_UP, MAKE_LINE, ADD_LINE}},
        {"ellipse",
         [](void* g, void* a) {
             GraphicAddEllipse(g, A, {2, 3, 0}, 33, 90, 6, COLOR, 1, a);
         },
         {"GraphicAddEllipse"},
         {MAKE_LIST, COUNT_UP, MAKE_LINE, ADD_LINE}},
        {"sector",
         [](void* g, void* a) {
             GraphicAddAnnularSector(g, {1, 2, 0, 90, {0, 0, 0}}, 30, 1, COLOR, a);
         },
         {"GraphicAddAnnularSector"},
         {MAKE_LIST, COUNT_UP, MAKE_LINE, ADD_LINE}},
        {"arc of an ellipse",
         [](void* /*g*/, void* a) { static_cast<void>(CreateEllipseArc(A, 2, 3, 0, 90, 33, 30, a, 6)); },
         {"CreateEllipseArc"},
         {MAKE_LIST, COUNT_UP}},
        {"edge of a sector",
         [](void* /*g*/, void* a) { static_cast<void>(CreateEllipseSectorEdgeLine(A, 2, 3, 4, 5, 33, 90, a, 6)); },
         {"CreateEllipseSectorEdgeLine"},
         {MAKE_LIST, COUNT_UP}},
    };
}

std::vector<FaultCase> RegionCases()
{
    const std::string share = "Ta::Object<void *>::Reset";
    return {
        {"profile region",
         [](void* g, void* a) {
             GraphicAddProfileRegion(g, {1, 2, 3, 4, 5}, a);
         },
         {"GraphicAddProfileRegion"},
         {"TpGraphicRegion2d_Construct", "TpGraphicRegion2d_SetCenter", "TpGraphicRegion2d_SetDimensions",
          "TpGraphicRegion2d_SetYAngle", "TpGraphic_AddRegion"}},
        {"surface region",
         [](void* g, void* a) { GraphicAddSurfaceRegion(g, BOX, a); },
         {"GraphicAddSurfaceRegion"},
         {"TpGraphicRegion3d_Construct", "TpGraphicRegion3d_SetCenter", "TpGraphicRegion3d_SetDimensions",
          "TpGraphicRegion3d_SetZAngle", "TpGraphic_AddRegion"}},
        {"transformed region",
         [](void* g, void* a) {
             GraphicAddTransformedRegionXZ(g, {1, 2, 3, 4, 5}, {1, 0, 0, 0, 1, 0}, a);
         },
         {"GraphicAddTransformedRegionXZ", "GraphicAddLines", "ConvertPoints64ToPoints32"},
         {"zM3dTransform2d_Apply", MAKE_LIST, COUNT_UP, ADD_LIST, MAKE_LINE, ADD_LINE}},
        {"box",
         [](void* g, void* a) { GraphicAddBBox(g, COLOR, BOX, a); },
         {"GraphicAddBBox", "GraphicAddLines", share},
         {MAKE_LIST, COUNT_UP, MAKE_LINE, ADD_LINE}},
        {"xy rectangle",
         [](void* g, void* a) {
             GraphicAddXYBBox(g, COLOR, {1, 2, 3, 4, 5}, 6, a);
         },
         {"GraphicAddXYBBox", "GraphicAddLines", share},
         {MAKE_LIST, COUNT_UP, MAKE_LINE}},
        {"xz rectangle",
         [](void* g, void* a) {
             GraphicAddXZBBox(g, COLOR, {1, 2, 3, 4, 5}, a);
         },
         {"GraphicAddXZBBox", "GraphicAddLines", share},
         {MAKE_LIST, COUNT_UP, MAKE_LINE}},
        {"rectangle",
         [](void* g, void* a) {
             GraphicAddRect(g, {1, 2, 3, 4, 5}, {1, 2, 3}, {}, 1, COLOR, a);
         },
         {"GraphicAddRect", "GraphicAddLines", share},
         {MAKE_LIST, COUNT_UP, MAKE_LINE}},
    };
}

std::vector<FaultCase> PlaneCases()
{
    static const zM3dTransform3d identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
    return {
        {"plane",
         [](void* g, void* a) {
             GraphicAddPlane(g, zPlane3d64f{A, B}, a);
         },
         {"GraphicAddPlane"},
         {"TpGraphicPlane_Construct", "TpGraphicPlane_SetNormal", "TpGraphicPlane_SetDistance", "TpGraphic_AddPlane"}},
        {"plane of params",
         [](void* g, void* a) {
             GraphicAddPlane(g, Mu::Vision::PlaneParams<double>{1, 2, 3, 4}, a);
         },
         {"GraphicAddPlane", "Mu::Vision::IsValidVector"},
         {"zS3dMath_Normalize64f", "TpGraphicPlane_Construct"}},
        {"contour",
         [](void* /*g*/, void* /*a*/) {
             Ta::Object<void*> list;
             GetRegionContour(BOX, identity, list.Out());
         },
         {"GetRegionContour"},
         {"zM3dTransform3d_Apply", MAKE_LIST, COUNT_UP}},
    };
}

std::vector<FaultCase> DecorationCases()
{
    const std::string line = "GraphicAddInfiniteLine";
    const std::string segment = "GraphicAddLineSegment";
    return {
        {"measured x", [](void* g, void* a) { GraphicAddMeasurementLines(g, 1, A, 3, a); }, {line}, {MAKE_RAY}},
        {"measured z",
         [](void* g, void* a) { GraphicAddMeasurementLines(g, 3, A, 3, a); },
         {"GraphicAddMeasurementLines"},
         {MAKE_RAY, "TpGraphicRay_SetColor", "TpGraphicRay_SetDirection", "TpGraphicRay_SetPosition",
          "TpGraphicRay_SetWidth", ADD_RAY}},
        {"measured z angle",
         [](void* g, void* a) { GraphicAddMeasurementLines(g, 6, A, 3, a); },
         {line, "GraphicAddArc"},
         {MAKE_RAY, MAKE_LINE}},
        {"measured y angle",
         [](void* g, void* a) {
             GraphicAddProfileMeasurementLines(g, 5, {1, 2}, 3, BOUNDS, a);
         },
         {segment, line, "GraphicAddArc"},
         {MAKE_RAY, MAKE_LINE}},
        {"distance",
         [](void* g, void* a) { GraphicAddDistanceLines(g, 0, A, B, a); },
         {"GraphicAddDistanceLines"},
         {MAKE_LINE, ADD_LINE}},
        {"profile distance",
         [](void* g, void* a) {
             GraphicAddProfileDistanceLines(g, 0, {1, 2}, {3, 4}, a);
         },
         {"GraphicAddProfileDistanceLines"},
         {MAKE_LINE, ADD_LINE}},
        {"angle in space",
         [](void* g, void* a) {
             GraphicAddAngleMeasurementLines(g, B, {1, 0, 0}, {1, 0.1, 0}, BOX, a);
         },
         {segment, "GraphicAddPoint", "GraphicAddArcXYZ"},
         {MAKE_LINE, MAKE_POINTS, "TvSurfaceTransform_TiltToNormal"}},
        {"z angle",
         [](void* g, void* a) { GraphicAddProjectedAngleMeasurementLines(g, B, 0, 3, 1, BOX, a); },
         {segment, "GraphicAddPoint", "GraphicAddArc"},
         {MAKE_LINE, MAKE_POINTS, MAKE_LIST}},
        {"y angle",
         [](void* g, void* a) { GraphicAddProjectedAngleMeasurementLines(g, B, 0, 3, 0, BOX, a); },
         {segment, "GraphicAddPoint", "GraphicAddArc"},
         {MAKE_LINE, MAKE_POINTS, MAKE_LIST}},
    };
}

// A function of the library stands without its namespace.
std::string Qualified(const std::string& function)
{
    return function.find("::") == std::string::npos ? "Mu::TlkHelper::" + function : function;
}

void ExpectRaised(const FaultCase& c, const Raised& raised, int status)
{
    EXPECT_EQ(raised.status, status);
    EXPECT_EQ(raised.message, "");
    EXPECT_TRUE(std::ranges::any_of(c.raisedBy, [&](const auto& f) { return Qualified(f) == raised.function; }))
        << raised.function;
    if (raised.function.starts_with("Mu::TlkHelper::GraphicAdd") ||
        raised.function.starts_with("Mu::TlkHelper::Create"))
    {
        EXPECT_EQ(raised.unit, "Libs/MuTlkHelper/MuTlkHelper/GraphicUtils");
    }
}

/// True if `drawing` begins with `beginning`.
bool BeginsWith(const Drawing& drawing, const Drawing& beginning)
{
    return beginning.size() <= drawing.size() && std::equal(beginning.begin(), beginning.end(), drawing.begin());
}

/// One step of a walk: an arrow, then the case with its n-th call failing.
struct Step
{
    std::string operation; ///< that failed, empty if none did
    Raised raised;
    Drawing drawn; ///< behind the arrow
};

Step DrawWithFault(const FaultCase& c, std::size_t n)
{
    const CountingAlloc alloc;
    Ta::Object<void*> graphic = NewGraphic();
    GraphicAddArrow(graphic.Get(), A, B, alloc.Get());
    const std::size_t before = alloc.LiveBlocks();
    Step step;
    {
        const ArmedFault fault(n, INJECTED);
        step.raised = RaisedFrom([&] { c.draw(graphic.Get(), alloc.Get()); });
    }
    step.operation = ArmedFault::Failed();
    step.drawn = DrawingOf(graphic.Get());
    EXPECT_GE(step.drawn.size(), 1U);
    step.drawn.erase(step.drawn.begin());
    EXPECT_TRUE(!step.drawn.empty() || alloc.LiveBlocks() == before) << "an element that was not added lives on";
    graphic.Reset();
    EXPECT_EQ(alloc.LiveBlocks(), 0U) << "left behind";
    return step;
}

void WalkFailures(const FaultCase& c)
{
    const Drawing whole = DrawnBy([&](void* g) { c.draw(g, nullptr); });
    std::set<std::string> met;
    std::set<std::string> raisedBy;
    for (std::size_t n = 1;; ++n)
    {
        ASSERT_LT(n, MOST_STEPS) << "the walk over failing calls does not end";
        const Step step = DrawWithFault(c, n);
        SCOPED_TRACE("call " + std::to_string(n) + " failed: " + step.operation);
        if (step.operation.empty())
        {
            EXPECT_EQ(step.drawn, whole);
            EXPECT_EQ(step.raised, Raised());
            break;
        }
        met.insert(step.operation);
        EXPECT_TRUE(BeginsWith(whole, step.drawn));
        EXPECT_EQ(step.raised.status == zOK, IsIgnored(IGNORED, step.operation)) << "dropped or invented a status";
        if (step.raised.status != zOK)
        {
            EXPECT_TRUE(whole.empty() || step.drawn.size() < whole.size());
            ExpectRaised(c, step.raised, INJECTED);
            raisedBy.insert(step.raised.function);
        }
    }
    for (const std::string& operation : c.mustFail)
    {
        EXPECT_TRUE(met.contains(operation)) << operation << " was never made to fail";
    }
    EXPECT_EQ(raisedBy.size(), c.raisedBy.size()) << "a function never raised";
}

// The next request of the caller's allocator fails, one after the other.
void WalkRequests(const FaultCase& c)
{
    const CountingAlloc alloc;
    for (std::size_t n = 1; n < MOST_STEPS; ++n)
    {
        Ta::Object<void*> graphic = NewGraphic();
        const std::size_t before = alloc.Requests();
        alloc.FailAt(n);
        const Raised raised = RaisedFrom([&] { c.draw(graphic.Get(), alloc.Get()); });
        alloc.FailAt(0);
        graphic.Reset();
        EXPECT_EQ(alloc.LiveBlocks(), 0U) << "left behind when request " << n << " failed";
        if (alloc.Requests() - before < n)
        {
            EXPECT_EQ(raised, Raised());
            return;
        }
        ExpectRaised(c, raised, zERROR_MEMORY);
    }
    ADD_FAILURE() << "the walk over failing requests does not end";
}

void WalkAll(const std::vector<FaultCase>& cases)
{
    for (const FaultCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        WalkFailures(c);
        WalkRequests(c);
    }
}

TEST(Failing_call_of_the_host, is_raised_by_primitives)
{
    const Lists lists;
    const CountedLog log; // the failed cast of a list of nothing is reported at every step
    WalkAll(PrimitiveCases(lists));
}

TEST(Failing_call_of_the_host, is_raised_by_lines)
{
    WalkAll(LineCases());
}

TEST(Failing_call_of_the_host, is_raised_by_curves)
{
    WalkAll(CurveCases());
}

TEST(Failing_call_of_the_host, is_raised_by_regions)
{
    WalkAll(RegionCases());
}

TEST(Failing_call_of_the_host, is_raised_by_planes_and_contours)
{
    WalkAll(PlaneCases());
}

TEST(Failing_call_of_the_host, is_raised_by_decorations)
{
    WalkAll(DecorationCases());
}
// --- the order of calls ---------------------------------------------------------------------------------------------

/// The host's operations on elements that `draw` calls, in order: each is found by making it fail.
std::vector<std::string> CallsOf(const Draw& draw)
{
    std::vector<std::string> calls;
    for (std::size_t n = 1; n < MOST_STEPS; ++n)
    {
        const Ta::Object<void*> graphic = NewGraphic();
        const ArmedFault fault(n, INJECTED);
        static_cast<void>(RaisedFrom([&] { draw(graphic.Get()); }));
        const std::string operation = ArmedFault::Failed();
        if (operation.empty())
        {
            break;
        }
        if (operation.starts_with("TpGraphic"))
        {
            calls.push_back(operation);
        }
    }
    return calls;
}

struct OrderCase
{
    const char* name;
    Draw draw;
    std::vector<std::string> calls;
};

TEST(Elements, are_constructed_set_in_the_order_of_their_kind_and_added)
{
    static zPoint3d32f labelAt{1, 2, 3};
    const std::vector<std::string> coloredRay = {MAKE_RAY,
                                                 "TpGraphicRay_SetColor",
                                                 "TpGraphicRay_SetDirection",
                                                 "TpGraphicRay_SetPosition",
                                                 "TpGraphicRay_SetWidth",
                                                 ADD_RAY};
    std::vector<std::string> twoRays = coloredRay;
    twoRays.insert(twoRays.end(), coloredRay.begin(), coloredRay.end());
    const std::vector<OrderCase> cases = {
        {"ray",
         [](void* g) { GraphicAddRay(g, A, B, 1, COLOR, nullptr); },
         {MAKE_RAY, "TpGraphicRay_SetDirection", "TpGraphicRay_SetPosition", "TpGraphicRay_SetWidth",
          "TpGraphicRay_SetColor", ADD_RAY}},
        {"infinite line", [](void* g) { GraphicAddInfiniteLine(g, A, B, COLOR, 1, nullptr); }, twoRays},
        {"measured z", [](void* g) { GraphicAddMeasurementLines(g, 3, A, 0, nullptr); }, coloredRay},
        {"label",
         [](void* g) { GraphicAddLabel(g, "text", &labelAt, nullptr); },
         {"TpGraphicLabel_Construct", "TpGraphicLabel_SetText", "TpGraphicLabel_SetPosition", "TpGraphic_AddLabel"}},
        {"position",
         [](void* g) { GraphicAddPosition(g, A, TaPipe::TpGraphicPositionType::Anchor, nullptr); },
         {"TpGraphicPosition_Construct", "TpGraphicPosition_SetType", "TpGraphicPosition_SetPosition",
          "TpGraphic_AddPosition"}},
        {"profile region",
         [](void* g) {
             GraphicAddProfileRegion(g, {1, 2, 3, 4, 5}, nullptr);
         },
         {"TpGraphicRegion2d_Construct", "TpGraphicRegion2d_SetCenter", "TpGraphicRegion2d_SetDimensions",
          "TpGraphicRegion2d_SetYAngle", "TpGraphic_AddRegion"}},
        {"surface region",
         [](void* g) { GraphicAddSurfaceRegion(g, BOX, nullptr); },
         {"TpGraphicRegion3d_Construct", "TpGraphicRegion3d_SetCenter", "TpGraphicRegion3d_SetDimensions",
          "TpGraphicRegion3d_SetZAngle", "TpGraphic_AddRegion"}},
        {"plane",
         [](void* g) {
             GraphicAddPlane(g, zPlane3d64f{A, B}, nullptr);
         },
         {"TpGraphicPlane_Construct", "TpGraphicPlane_SetNormal", "TpGraphicPlane_SetDistance", "TpGraphic_AddPlane"}},
    };
    for (const OrderCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(CallsOf(c.draw), c.calls);
    }
}
} // namespace
