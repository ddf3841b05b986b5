// Whole lives of anchored tools, by the host's own calls: what the regions, their parameters and the published
// transform are after each step.

#include "AnchorFixture.h"

#include <cmath>
#include <memory>
#include <random>
#include <stdexcept>

namespace
{
using namespace Support;
using Mu::TlkHelper::AnchoredBoxRegion;
using Mu::TlkHelper::AnchoredProfileRegion;
using Mu::TlkHelper::AnchoredSurfaceRegion;
using Mu::TlkHelper::AnchorType;
using Mu::Vision::RotationOrder;
using TaPipe::ToolLifeCycle;

constexpr double NONE = -1.7976931348623157e308;

// The anchors of the sequences, and what they do: the first turns (x, y) to (1 - y, 2 + x), and moves z by 3.
constexpr Anchor FIRST{1, 2, 3, NONE, NONE, 90};
constexpr Anchor MOVED{2, 2, 3, NONE, NONE, 90};
constexpr Anchor TURNED{1, 2, 3, NONE, NONE, 180};
const std::vector<AnchorAxis> AXES = {AnchorAxis::X, AnchorAxis::Y, AnchorAxis::Z, AnchorAxis::ZAngle};

constexpr RegionFields PLACE = {10, 20, 30, 4, 6, 8, 0, 0, 0};
constexpr RegionFields RELATIVE = {18, -9, 27, 4, 6, 8, 0, 0, -90};   // PLACE, seen from FIRST
constexpr RegionFields AFTER_MOVE = {11, 20, 30, 4, 6, 8, 0, 0, 0};   // RELATIVE, moved by MOVED
constexpr RegionFields AFTER_TURN = {-17, 11, 30, 4, 6, 8, 0, 0, 90}; // RELATIVE, moved by TURNED

const std::vector<double> IDENTITY = PublishedIdentity();
const std::vector<double> UNKNOWN;
const std::vector<double> FRAME_OF_FIRST = Published({0, -1, 0, 1, 1, 0, 0, 2, 0, 0, 1, 3});
const std::vector<double> FRAME_OF_MOVED = Published({0, -1, 0, 2, 1, 0, 0, 2, 0, 0, 1, 3});
const std::vector<double> FRAME_OF_TURNED = Published({-1, 0, 0, 1, 0, -1, 0, 2, 0, 0, 1, 3});

class Anchor_sequence : public ToolFixture
{
protected:
    void SetUp() override
    {
        ToolFixture::SetUp();
        tool.AddInput("Data", AT_END);
        tool.AddMeasurementOutput("A", false, AT_END);
        tool.AddAnchorInputs(AnchorType::Surface, true);
        tool.group.Register("Region", region);
        tool.RegisterAnchoredRegion(&region);
        tool.ParamsChangedEvent().Add([this](TaPipe::ITool::ParamsChangeType) { ++notifications; });
        SetParameters(region, PLACE);
    }

    void Route(const std::vector<AnchorAxis>& axes, const std::string& source)
    {
        RouteAnchors(tool, axes, source);
    }

    /// Runs without an anchor, which takes the parameters over, then routes and starts the run with the anchor.
    void StartAnchored(const std::vector<AnchorAxis>& axes)
    {
        tool.Start();
        Scan();
        tool.Stop();
        Route(axes, "finder");
        tool.Start();
    }

    void Scan(const Anchor& anchor = {})
    {
        host.deliveries.clear();
        // Half of its shorter side is 15.
        ScanOf(tool, Surface({{1, 2}, {3, 4}}).BoundingBox({0, 0, 5, 40, 30, 10}), anchor);
    }

    void FailingScan(const Anchor& anchor)
    {
        tool.execute = [](TaPipe::InputSet&) { throw std::runtime_error("no measurement"); };
        Scan(anchor);
        tool.execute = nullptr;
        EXPECT_EQ(host.NullOutputs(), std::vector<std::string>{"A"});
    }

    void Expect(const char* step, const RegionFields& relative, const RegionFields& absolute,
                const std::vector<double>& transform, const RegionFields& parameters)
    {
        SCOPED_TRACE(step);
        {
            SCOPED_TRACE("relative region");
            ExpectNear(Fields(region.relativeRegion), relative);
        }
        {
            SCOPED_TRACE("absolute region");
            ExpectNear(Fields(region.absoluteRegion), absolute);
        }
        {
            SCOPED_TRACE("transformMatrix");
            ExpectNear(region.transformMatrix.Get(), transform);
        }
        SCOPED_TRACE("parameters");
        ExpectNear(Parameters(region), parameters);
    }

    /// Runs without an anchor, then with one, starts again with it, and runs without.
    void RunThroughRoutes()
    {
        tool.Start();
        Expect("start", PLACE, PLACE, IDENTITY, PLACE);
        Scan();
        Expect("scan", PLACE, PLACE, IDENTITY, PLACE);
        tool.Stop();
        Expect("stop", PLACE, PLACE, IDENTITY, PLACE);

        Route(AXES, "finder");
        Expect("route", PLACE, PLACE, IDENTITY, PLACE);
        tool.Start();
        Expect("anchored start", PLACE, PLACE, UNKNOWN, PLACE);
        Scan(FIRST);
        Expect("first anchored scan", RELATIVE, PLACE, UNKNOWN, PLACE);
        Scan(MOVED);
        Expect("second anchored scan", RELATIVE, AFTER_MOVE, UNKNOWN, PLACE);
        Scan(TURNED);
        Expect("third anchored scan", RELATIVE, AFTER_TURN, UNKNOWN, PLACE);
        tool.Stop();
        Expect("anchored stop", RELATIVE, AFTER_TURN, FRAME_OF_TURNED, RELATIVE);

        tool.Start();
        Expect("second anchored start", RELATIVE, AFTER_TURN, UNKNOWN, RELATIVE);
        Scan(FIRST);
        Expect("scan of the second run", RELATIVE, PLACE, UNKNOWN, RELATIVE);
        tool.Stop();
        Expect("stop of the second run", RELATIVE, PLACE, FRAME_OF_FIRST, RELATIVE);

        Route(AXES, "");
        tool.Start();
        Expect("start without anchor", PLACE, PLACE, IDENTITY, RELATIVE);
        Scan();
        Expect("scan without anchor", PLACE, PLACE, IDENTITY, RELATIVE);
        tool.Stop();
        Expect("stop without anchor", PLACE, PLACE, IDENTITY, PLACE);
        tool.Start();
        Expect("last start", PLACE, PLACE, IDENTITY, PLACE);
    }

    AnchoredSurfaceRegion region{true};
    int notifications = 0;
};

TEST_F(Anchor_sequence, keeps_the_region_where_it_is_on_the_data_when_routes_come_and_go)
{
    RunThroughRoutes();
    // the anchored starts and stops, and the stop after the anchor went
    EXPECT_EQ(notifications, 5);
}

TEST_F(Anchor_sequence, is_the_same_with_a_region_that_is_registered_twice)
{
    tool.RegisterAnchoredRegion(&region);
    RunThroughRoutes();
}

TEST_F(Anchor_sequence, with_the_anchor_taken_away_after_a_start_without_a_scan_keeps_the_last_place)
{
    StartAnchored(AXES);
    Scan(FIRST);
    Scan(TURNED);
    tool.Stop();
    tool.Start();
    Route(AXES, "");
    tool.Start();
    Expect("start", AFTER_TURN, AFTER_TURN, IDENTITY, RELATIVE);
    tool.Stop();
    Expect("stop", AFTER_TURN, AFTER_TURN, IDENTITY, AFTER_TURN);
}

TEST_F(Anchor_sequence, with_the_anchor_taken_away_in_a_run_keeps_the_region_in_place)
{
    StartAnchored(AXES);
    Scan(FIRST);
    Scan(MOVED);
    Route(AXES, "");
    Scan();
    Expect("scan without anchor", AFTER_MOVE, AFTER_MOVE, UNKNOWN, PLACE);
    Scan();
    Expect("next scan", AFTER_MOVE, AFTER_MOVE, UNKNOWN, PLACE);
    tool.Stop();
    Expect("stop", AFTER_MOVE, AFTER_MOVE, IDENTITY, AFTER_MOVE);
    tool.Start();
    Expect("start", AFTER_MOVE, AFTER_MOVE, IDENTITY, AFTER_MOVE);
}

TEST_F(Anchor_sequence, with_one_axis_moves_along_it_only)
{
    const auto at = [](double x) { return RegionFields{x, 20, 30, 4, 6, 8, 0, 0, 0}; };
    const auto frame = [](double x) { return Published({1, 0, 0, x, 0, 1, 0, 0, 0, 0, 1, 0}); };
    const auto anchor = [](double x) { return Anchor{x, 100, 100, 100, 100, 100}; }; // the others are not routed
    StartAnchored({AnchorAxis::X});
    Expect("start", PLACE, PLACE, UNKNOWN, PLACE);
    Scan(anchor(5));
    Expect("first scan", at(5), PLACE, UNKNOWN, PLACE);
    EXPECT_EQ(Fields(tool.anchor), (std::array<double, 6>{5, NONE, NONE, NONE, NONE, NONE}));
    Scan(anchor(7));
    Expect("second scan", at(5), at(12), UNKNOWN, PLACE);
    Scan(anchor(4));
    Expect("third scan", at(5), at(9), UNKNOWN, PLACE);
    tool.Stop();
    Expect("stop", at(5), at(9), frame(4), at(5));
    tool.Start();
    Expect("second start", at(5), at(9), UNKNOWN, at(5));
    Scan(anchor(6));
    Expect("scan of the second run", at(5), at(11), UNKNOWN, at(5));
    tool.Stop();
    Expect("stop of the second run", at(5), at(11), frame(6), at(5));
    Route({AnchorAxis::X}, "");
    tool.Start();
    Expect("start without anchor", at(11), at(11), IDENTITY, at(5));
    tool.Stop();
    Expect("stop without anchor", at(11), at(11), IDENTITY, at(11));
}

TEST_F(Anchor_sequence, with_another_axis_added_keeps_the_region_in_place)
{
    StartAnchored({AnchorAxis::X});
    Scan({5, NONE, NONE, NONE, NONE, NONE});
    tool.Stop();
    Route({AnchorAxis::Y}, "finder");
    tool.Start();
    Scan({5, 7, NONE, NONE, NONE, NONE});
    Expect("first scan", {5, 13, 30, 4, 6, 8, 0, 0, 0}, PLACE, UNKNOWN, {5, 20, 30, 4, 6, 8, 0, 0, 0});
    Scan({6, 9, NONE, NONE, NONE, NONE});
    Expect("second scan", {5, 13, 30, 4, 6, 8, 0, 0, 0}, {11, 22, 30, 4, 6, 8, 0, 0, 0}, UNKNOWN,
           {5, 20, 30, 4, 6, 8, 0, 0, 0});
}

TEST_F(Anchor_sequence, leaves_the_regions_as_they_were_where_an_anchor_has_no_data)
{
    StartAnchored(AXES);
    Scan({1, 2, NONE, NONE, NONE, 90});
    EXPECT_EQ(host.NullOutputs(), std::vector<std::string>{"A"});
    Expect("no data at first", PLACE, PLACE, UNKNOWN, PLACE);
    EXPECT_TRUE(Access::AnchorRoutingChanged(tool));
    Scan(FIRST);
    EXPECT_TRUE(host.deliveries.empty());
    Expect("first good scan", RELATIVE, PLACE, UNKNOWN, PLACE);
    Scan(MOVED);
    Expect("second good scan", RELATIVE, AFTER_MOVE, UNKNOWN, PLACE);
    Scan({NONE, 2, 3, NONE, NONE, 180});
    EXPECT_EQ(host.NullOutputs(), std::vector<std::string>{"A"});
    Expect("no data in the middle", RELATIVE, AFTER_MOVE, UNKNOWN, PLACE);
    Scan(TURNED);
    Expect("good again", RELATIVE, AFTER_TURN, UNKNOWN, PLACE);
    Scan({NONE, NONE, NONE, NONE, NONE, NONE});
    Expect("no data at last", RELATIVE, AFTER_TURN, UNKNOWN, PLACE);
    tool.Stop();
    Expect("stop", RELATIVE, AFTER_TURN, FRAME_OF_TURNED, RELATIVE);
}

TEST_F(Anchor_sequence, without_a_scan_publishes_the_identity_and_moves_nothing)
{
    StartAnchored(AXES);
    tool.Stop();
    Expect("stop", PLACE, PLACE, IDENTITY, PLACE);
    tool.Start();
    Scan(FIRST);
    Expect("the route still counts as new", RELATIVE, PLACE, UNKNOWN, PLACE);
}

TEST_F(Anchor_sequence, whose_execution_throws_works_the_relative_region_out_again)
{
    StartAnchored(AXES);
    FailingScan(FIRST);
    Expect("failing scan", RELATIVE, PLACE, UNKNOWN, PLACE);
    EXPECT_TRUE(Access::AnchorRoutingChanged(tool));
    // (10, 20) less (2, 2), turned back: (18, -8)
    constexpr RegionFields again = {18, -8, 27, 4, 6, 8, 0, 0, -90};
    Scan(MOVED);
    Expect("good scan", again, PLACE, UNKNOWN, PLACE);
    EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
    Scan(FIRST);
    Expect("next scan", again, {9, 20, 30, 4, 6, 8, 0, 0, 0}, UNKNOWN, PLACE);
    FailingScan(MOVED);
    Expect("scan that fails later", again, PLACE, UNKNOWN, PLACE);
    EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
    tool.Stop();
    Expect("stop", again, PLACE, FRAME_OF_MOVED, again);
}

TEST_F(Anchor_sequence, with_another_source_keeps_the_region_in_place)
{
    constexpr Anchor other{5, 0, 0, NONE, NONE, 0};
    constexpr RegionFields fromOther = {6, 20, 30, 4, 6, 8, 0, 0, 0}; // AFTER_MOVE, seen from the other anchor
    for (const bool inTheRun : {false, true})
    {
        SCOPED_TRACE(inTheRun ? "in the run" : "between runs");
        SetParameters(region, PLACE);
        Route(AXES, "");
        tool.Start();
        Scan();
        tool.Stop();
        SetParameters(region, PLACE);
        tool.Start();
        tool.Stop();
        Route(AXES, "finder");
        tool.Start();
        Scan(FIRST);
        Scan(MOVED);
        RegionFields parameters = PLACE;
        if (!inTheRun)
        {
            tool.Stop();
            parameters = RELATIVE;
        }
        Route(AXES, "other");
        if (!inTheRun)
        {
            tool.Start();
        }
        Expect("before the first scan", RELATIVE, AFTER_MOVE, UNKNOWN, parameters);
        Scan(other);
        Expect("first scan", fromOther, AFTER_MOVE, UNKNOWN, parameters);
        Scan({6, 0, 1, NONE, NONE, 0});
        Expect("second scan", fromOther, {12, 20, 31, 4, 6, 8, 0, 0, 0}, UNKNOWN, parameters);
        tool.Stop();
        Expect("stop", fromOther, {12, 20, 31, 4, 6, 8, 0, 0, 0}, Published({1, 0, 0, 6, 0, 1, 0, 0, 0, 0, 1, 1}),
               fromOther);
    }
}

TEST_F(Anchor_sequence, with_the_same_source_routed_again_changes_nothing)
{
    StartAnchored(AXES);
    Scan(FIRST);
    Route(AXES, "finder");
    Scan(MOVED);
    Expect("scan", RELATIVE, AFTER_MOVE, UNKNOWN, PLACE);
}

TEST_F(Anchor_sequence, of_a_region_without_angle_keeps_its_angle_in_the_parameters)
{
    AnchoredSurfaceRegion upright(false);
    SetParameters(upright, PLACE);
    tool.RegisterAnchoredRegion(&upright);
    StartAnchored(AXES);
    Scan(FIRST);
    ExpectNear(Fields(upright.relativeRegion), RELATIVE);
    tool.Stop();
    ExpectNear(Parameters(upright), RegionFields{18, -9, 27, 4, 6, 8, 0, 0, 0});
    tool.Start();
    ExpectNear(Fields(upright.relativeRegion), RegionFields{18, -9, 27, 4, 6, 8, 0, 0, 0});
}

// --- stages of life -------------------------------------------------------------------------------------------------

constexpr RegionFields DEFAULT = {0, 0, 5, 15, 15, 10, 0, 0, 0};
constexpr RegionFields DEFAULT_RELATIVE = {-2, 1, 2, 15, 15, 10, 0, 0, -90}; // DEFAULT, seen from FIRST

TEST_F(Anchor_sequence, restored_with_its_routes_moves_from_the_first_scan_on)
{
    for (const bool staysInStage : {false, true})
    {
        SCOPED_TRACE(staysInStage ? "run while restoring" : "run afterwards");
        tool.UpdateLifeCycle(ToolLifeCycle::Restoring);
        SetParameters(region, RELATIVE);
        Route(AXES, staysInStage ? "other" : "finder");
        EXPECT_FALSE(Access::AnchorRoutingChanged(tool));
        if (!staysInStage)
        {
            tool.UpdateLifeCycle(ToolLifeCycle::Operational);
        }
        tool.Start();
        ExpectNear(Fields(region.relativeRegion), RELATIVE);
        Scan(FIRST);
        Expect("first scan", RELATIVE, PLACE, UNKNOWN, RELATIVE);
        Scan(MOVED);
        Expect("second scan", RELATIVE, AFTER_MOVE, UNKNOWN, RELATIVE);
        tool.Stop();
        Expect("stop", RELATIVE, AFTER_MOVE, FRAME_OF_MOVED, RELATIVE);
    }
}

TEST_F(Anchor_sequence, placed_by_the_first_data_stays_there_and_follows_from_there)
{
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    Route(AXES, "finder");
    tool.Start();
    Scan(FIRST);
    Expect("first data", DEFAULT_RELATIVE, DEFAULT, UNKNOWN, DEFAULT);
    tool.UpdateLifeCycle(ToolLifeCycle::Operational);
    Scan(MOVED);
    Expect("second scan", DEFAULT_RELATIVE, {1, 0, 5, 15, 15, 10, 0, 0, 0}, UNKNOWN, DEFAULT);
    tool.Stop();
    Expect("stop", DEFAULT_RELATIVE, {1, 0, 5, 15, 15, 10, 0, 0, 0}, FRAME_OF_MOVED, DEFAULT_RELATIVE);
}

TEST_F(Anchor_sequence, stopped_in_the_stage_that_takes_defaults_writes_nothing_back)
{
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    Route(AXES, "finder");
    tool.Start();
    Scan(FIRST);
    EXPECT_EQ(notifications, 1);
    tool.Stop();
    Expect("stop", DEFAULT_RELATIVE, DEFAULT, UNKNOWN, DEFAULT);
    EXPECT_EQ(notifications, 2) << "the host hears of the place all the same";
    EXPECT_FALSE(Access::RelativeRegionChanged(tool));
    EXPECT_FALSE(Access::TransformChanged(tool));
}

TEST_F(Anchor_sequence, placed_by_the_first_data_without_anchor_has_its_place_in_the_parameters)
{
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    tool.Start();
    Expect("start", PLACE, PLACE, IDENTITY, PLACE);
    Scan();
    Expect("first data", DEFAULT, DEFAULT, IDENTITY, DEFAULT);
    tool.UpdateLifeCycle(ToolLifeCycle::Operational);
    SetParameters(region, PLACE);
    Scan();
    Expect("later data", DEFAULT, DEFAULT, IDENTITY, PLACE);
    tool.Stop();
    Expect("stop", DEFAULT, DEFAULT, IDENTITY, DEFAULT);
}

TEST_F(Anchor_sequence, placed_by_the_first_data_with_a_restored_route_is_moved_from_there)
{
    tool.UpdateLifeCycle(ToolLifeCycle::Restoring);
    Route(AXES, "finder");
    tool.UpdateLifeCycle(ToolLifeCycle::TakeDefaults);
    tool.Start();
    Scan(FIRST);
    Expect("first data", DEFAULT, {1, 2, 8, 15, 15, 10, 0, 0, 90}, UNKNOWN, DEFAULT);
}

// --- any region, any anchor -----------------------------------------------------------------------------------------

double Wrapped(double degrees)
{
    return std::remainder(degrees, 360.0);
}

/// Where a region is: angles count round the circle. All have that about y within 90, so their angles are the only
/// ones.
void ExpectSamePlace(const char* step, const Mu::Vision::Region3d<double>& actual, const RegionFields& expected)
{
    SCOPED_TRACE(step);
    const RegionFields fields = Fields(actual);
    for (std::size_t i = 0; i < fields.size(); ++i)
    {
        const double difference = fields[i] - expected[i];
        EXPECT_LE(std::abs(i < 6 ? difference : Wrapped(difference)), 1e-9) << REGION_KEYS[i] << " " << fields[i];
    }
}

/// One tool with one region, through a run without anchor, runs with two anchors, and one without.
class PlaceKeeper
{
public:
    PlaceKeeper(AnchoredBoxRegion& followed, AnchorType type)
        : region(followed)
    {
        static_cast<TaPipe::ITool&>(tool).Init(host);
        tool.AddAnchorInputs(type, true);
        tool.RegisterAnchoredRegion(&region);
    }

    void Check(const std::vector<AnchorAxis>& axes, const Anchor& first, const Anchor& second)
    {
        tool.Start();
        ScanOf(tool, {}, {});
        tool.Stop();
        const RegionFields before = Fields(region.absoluteRegion);
        EXPECT_EQ(before, Parameters(region));
        CheckRun("first", axes, first, before);
        CheckRun("second", axes, second, before);
        RouteAnchors(tool, axes, "");
        tool.Start();
        ScanOf(tool, {}, {});
        ExpectSamePlace("without anchor", region.absoluteRegion, before);
        tool.Stop();
        tool.Start();
        ExpectSamePlace("without anchor, through the parameters", region.absoluteRegion, before);
        tool.Stop();
    }

private:
    void CheckRun(const char* source, const std::vector<AnchorAxis>& axes, const Anchor& anchor,
                  const RegionFields& before)
    {
        SCOPED_TRACE(std::string(source) + " anchor");
        RouteAnchors(tool, axes, source);
        tool.Start();
        ScanOf(tool, {}, anchor);
        ExpectSamePlace("after routing", region.absoluteRegion, before);
        ScanOf(tool, {}, anchor);
        ExpectSamePlace("next scan", region.absoluteRegion, before);
        tool.Stop();
        tool.Start();
        ScanOf(tool, {}, anchor);
        ExpectSamePlace("next run, through the parameters", region.absoluteRegion, before);
        tool.Stop();
    }

    RecordingHost host;
    AnchoredBoxRegion& region;
    ProbeTool tool;
};

class RandomPlaces
{
public:
    explicit RandomPlaces(unsigned seed)
        : random(seed)
    {
    }

    double Length()
    {
        return std::uniform_real_distribution<double>(-100, 100)(random);
    }

    double Extent()
    {
        return std::uniform_real_distribution<double>(0.1, 50)(random);
    }

    double Angle(double bound)
    {
        return std::uniform_real_distribution<double>(-bound, bound)(random);
    }

    Anchor AnyAnchor()
    {
        return {Length(), Length(), Length(), Angle(180), Angle(89), Angle(180)};
    }

    /// At least one of `all`.
    std::vector<AnchorAxis> SomeAxes(const std::vector<AnchorAxis>& all)
    {
        std::vector<AnchorAxis> axes;
        std::sample(all.begin(), all.end(), std::back_inserter(axes),
                    std::uniform_int_distribution<std::size_t>(1, all.size())(random), random);
        return axes;
    }

private:
    std::mt19937 random;
};

constexpr int CASES = 10'000;

TEST(Anchored_regions, with_all_six_axes_stay_where_they_are_whatever_is_routed)
{
    constexpr unsigned seed = 2311;
    RandomPlaces random(seed);
    for (int i = 0; i < CASES && !testing::Test::HasFailure(); ++i)
    {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", case " + std::to_string(i));
        AnchoredBoxRegion region(true, true, true, true, true, true, true, true, true, true, true, true);
        SetParameters(region, {random.Length(), random.Length(), random.Length(), random.Extent(), random.Extent(),
                               random.Extent(), random.Angle(180), random.Angle(89), random.Angle(180)});
        PlaceKeeper keeper(region, AnchorType::Box);
        const Anchor first = random.AnyAnchor();
        keeper.Check(i % 2 == 0 ? ALL_ANCHOR_AXES : random.SomeAxes(ALL_ANCHOR_AXES), first, random.AnyAnchor());
    }
}

TEST(Anchored_regions, of_a_profile_stay_where_they_are_whatever_is_routed)
{
    constexpr unsigned seed = 2312;
    RandomPlaces random(seed);
    const std::vector<AnchorAxis> all = {AnchorAxis::X, AnchorAxis::Z, AnchorAxis::YAngle};
    for (int i = 0; i < CASES && !testing::Test::HasFailure(); ++i)
    {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", case " + std::to_string(i));
        AnchoredProfileRegion region(true);
        SetParameters(region, {random.Length(), 0, random.Length(), random.Extent(), 5, random.Extent(), 0,
                               random.Angle(180), 0});
        PlaceKeeper keeper(region, AnchorType::Profile);
        const Anchor first = random.AnyAnchor();
        keeper.Check(i % 2 == 0 ? all : random.SomeAxes(all), first, random.AnyAnchor());
        EXPECT_EQ(region.absoluteRegion.xAngle, 0.0) << "it stays in its plane";
        EXPECT_EQ(region.absoluteRegion.zAngle, 0.0) << "it stays in its plane";
    }
}

TEST(Anchored_regions, move_between_scans_as_their_frame_moves_points)
{
    constexpr unsigned seed = 2313;
    RandomPlaces random(seed);
    for (int i = 0; i < 1000 && !testing::Test::HasFailure(); ++i)
    {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", case " + std::to_string(i));
        RecordingHost host;
        ProbeTool tool;
        AnchoredBoxRegion region(true, true, true, true, true, true, true, true, true, true, true, true);
        static_cast<TaPipe::ITool&>(tool).Init(host);
        tool.AddAnchorInputs(AnchorType::Box, true);
        tool.RegisterAnchoredRegion(&region);
        SetParameters(region, {random.Length(), random.Length(), random.Length(), 1, 2, 3, 10, 20, 30});
        tool.Start();
        tool.Stop();
        RouteAnchors(tool, ALL_ANCHOR_AXES, "finder");
        tool.Start();
        ScanOf(tool, {}, random.AnyAnchor());
        const Anchor anchor = random.AnyAnchor();
        ScanOf(tool, {}, anchor);
        const Mu::Vision::RefFrame frame = Mu::Vision::CreateAnchorTransform(anchor, RotationOrder::XYZ);
        const auto& relative = region.relativeRegion;
        const zPoint3d64f centre = frame.Apply(zPoint3d64f{relative.x, relative.y, relative.z});
        EXPECT_NEAR(region.absoluteRegion.x, centre.x, 1e-9);
        EXPECT_NEAR(region.absoluteRegion.y, centre.y, 1e-9);
        EXPECT_NEAR(region.absoluteRegion.z, centre.z, 1e-9);
        Mu::Vision::Region3d<double> expected;
        Mu::Vision::AnchorRegion(anchor, RotationOrder::XYZ, relative, &expected);
        EXPECT_EQ(Fields(region.absoluteRegion), Fields(expected));
        tool.Stop();
        const zM3dTransform3d t = frame.TozTransform();
        EXPECT_EQ(region.transformMatrix.Get(),
                  Published({t.xx, t.xy, t.xz, t.xt, t.yx, t.yy, t.yz, t.yt, t.zx, t.zy, t.zz, t.zt}));
        EXPECT_EQ(Parameters(region), Fields(relative));
    }
}
} // namespace
