#include "PointTestTools.h"

#include <MuTlkHelper/PointUtils.h>

#include <Support/Builders.h>
#include <Support/CountingAlloc.h>

#include <MuVision/RegionPixel.h>

#include <numbers>

namespace
{
using namespace Support;
using namespace Mu::TlkHelper;

constexpr const char* FUNCTION = "Mu::TlkHelper::RLEGiven4Points";
constexpr const char* UNIT = "Libs/MuTlkHelper/MuTlkHelper/PointUtils";
constexpr int LARGEST = std::numeric_limits<int>::max();

using Corners = std::array<zPoint64f, 4>;

struct RowRun
{
    int row;
    int start;
    int length;

    bool operator==(const RowRun&) const = default;
};

void PrintTo(const RowRun& run, std::ostream* out)
{
    *out << "{" << run.row << ", " << run.start << ", " << run.length << "}";
}

struct Grid
{
    int width = 20;
    int length = 20;
    zPoint64f offset{0, 0};
    zPoint64f scale{1, 1};
};

InputData DataOf(const Grid& grid)
{
    InputData data;
    data.width = grid.width;
    data.length = grid.length;
    data.offset = {grid.offset.x, grid.offset.y, 0};
    data.scale = {grid.scale.x, grid.scale.y, 1};
    data.hasIntensity = 0;
    return data;
}

std::vector<RowRun> RunsIn(void* list)
{
    std::vector<RowRun> runs;
    for (const RleRow& row : Items<RleRow>(list, zBytes_GetType(12)))
    {
        runs.push_back({row.row, row.run.start, row.run.length});
    }
    return runs;
}

std::vector<RowRun> RunsOf(const Corners& corners, const Grid& grid = {})
{
    const InputData data = DataOf(grid);
    void* list = nullptr;
    RLEGiven4Points(&data, corners.data(), &list, nullptr);
    const Ta::Object<void*> owned(list);
    EXPECT_NE(list, nullptr);
    return RunsIn(list);
}

Corners Turned(const Corners& corners, std::size_t by)
{
    return {corners.at(by % 4), corners.at((by + 1) % 4), corners.at((by + 2) % 4), corners.at((by + 3) % 4)};
}

Corners OtherWayRound(const Corners& corners)
{
    return {corners[0], corners[3], corners[2], corners[1]};
}

// A square on its corner: from (5, 0) to (5, 10).
const Corners DIAMOND = {{{5, 0}, {10, 5}, {5, 10}, {0, 5}}};
const std::vector<RowRun> DIAMOND_RUNS = {{0, 5, 1}, {1, 4, 3}, {2, 3, 5}, {3, 2, 7}, {4, 1, 9}, {5, 0, 11},
                                          {6, 1, 9}, {7, 2, 7}, {8, 3, 5}, {9, 4, 3}, {10, 5, 1}};

// --- rectangles by hand ---------------------------------------------------------------------------------------------

TEST(Rectangle_in_runs, that_is_not_turned_is_its_box)
{
    const std::vector<RowRun> expected = {{3, 2, 6}, {4, 2, 6}, {5, 2, 6}};
    const Corners corners = {{{1.5, 2.5}, {7.5, 2.5}, {7.5, 5.5}, {1.5, 5.5}}};
    for (std::size_t by = 0; by < 4; ++by)
    {
        EXPECT_EQ(RunsOf(Turned(corners, by)), expected) << by;
        EXPECT_EQ(RunsOf(OtherWayRound(Turned(corners, by))), expected) << by;
    }
}

TEST(Rectangle_in_runs, that_is_hardly_turned_counts_as_not_turned)
{
    // The first side ends 1e-7 of a row higher: less than the smallest that counts.
    const Corners corners = {{{1.5, 2.5}, {7.5, 2.5 + 1e-7}, {7.5, 5.5}, {1.5, 5.5}}};
    EXPECT_EQ(RunsOf(corners), (std::vector<RowRun>{{3, 2, 6}, {4, 2, 6}, {5, 2, 6}}));
    // Row 2 lies below both rectangles, and only the tolerance takes it in: to one that counts as turned it shows.
    const auto lowestRow = [](double rise) {
        return RunsOf({{{1.5, 2.0003}, {7.5, 2.0003 + rise}, {7.5, 5.5}, {1.5, 5.5}}}).front();
    };
    EXPECT_EQ(lowestRow(1e-7), (RowRun{2, 2, 6}));
    EXPECT_EQ(lowestRow(2e-7), (RowRun{2, 2, 0}));
}

TEST(Rectangle_in_runs, on_its_corner_grows_to_the_middle_and_shrinks_again)
{
    for (std::size_t by = 0; by < 4; ++by)
    {
        EXPECT_EQ(RunsOf(Turned(DIAMOND, by)), DIAMOND_RUNS) << by;
    }
}

TEST(Rectangle_in_runs, with_its_lowest_corner_between_pixels_begins_with_an_empty_run)
{
    const std::vector<RowRun> runs = RunsOf({{{5.5, 0}, {8.5, 3}, {5.5, 6}, {2.5, 3}}});
    EXPECT_EQ(runs, (std::vector<RowRun>{{0, 6, 0}, {1, 5, 2}, {2, 4, 4}, {3, 3, 6}, {4, 4, 4}, {5, 5, 2}, {6, 6, 0}}));
}

TEST(Rectangle_in_runs, holds_the_pixels_whose_centres_lie_inside)
{
    // Sides along (3, 1) and (-1, 3): at row y left is 6 - y / 3 up to the left corner, then 5 + 3 (y - 3) and so on.
    const std::vector<RowRun> runs = RunsOf({{{6, 0}, {12, 2}, {11, 5}, {5, 3}}});
    EXPECT_EQ(runs, (std::vector<RowRun>{{0, 6, 1}, {1, 6, 4}, {2, 6, 7}, {3, 5, 7}, {4, 8, 4}, {5, 11, 1}}));
}

TEST(Rectangle_in_runs, is_taken_through_offset_and_scale)
{
    Grid grid;
    grid.offset = {100, -50};
    grid.scale = {0.5, 0.25};
    Corners world{};
    for (std::size_t i = 0; i < 4; ++i)
    {
        world.at(i) = {100 + 0.5 * DIAMOND.at(i).x, -50 + 0.25 * DIAMOND.at(i).y};
    }
    EXPECT_EQ(RunsOf(world, grid), DIAMOND_RUNS);
}

TEST(Rectangle_in_runs, is_clipped_to_the_grid)
{
    Grid grid;
    grid.width = 4;
    grid.length = 3;
    const Corners shifted = {{{2, -2}, {7, 3}, {2, 8}, {-3, 3}}}; // the diamond, 3 to the left and 2 down
    EXPECT_EQ(RunsOf(shifted, grid), (std::vector<RowRun>{{0, 0, 4}, {1, 0, 4}, {2, 0, 4}}));
    grid.width = 20;
    EXPECT_EQ(RunsOf(shifted, grid), (std::vector<RowRun>{{0, 0, 5}, {1, 0, 6}, {2, 0, 7}}));
}

TEST(Rectangle_in_runs, outside_the_grid_has_no_rows)
{
    for (const zPoint64f& shift : {zPoint64f{30, 0}, zPoint64f{-30, 0}, zPoint64f{0, 30}, zPoint64f{0, -30}})
    {
        Corners corners = DIAMOND;
        for (zPoint64f& corner : corners)
        {
            corner = {corner.x + shift.x, corner.y + shift.y};
        }
        EXPECT_EQ(RunsOf(corners), std::vector<RowRun>{});
    }
}

TEST(Rectangle_in_runs, the_other_way_round_has_runs_only_where_its_edges_meet)
{
    EXPECT_EQ(RunsOf(OtherWayRound(DIAMOND)), (std::vector<RowRun>{{0, 5, 1},
                                                                   {1, 6, 0},
                                                                   {2, 7, 0},
                                                                   {3, 8, 0},
                                                                   {4, 9, 0},
                                                                   {5, 10, 0},
                                                                   {6, 9, 0},
                                                                   {7, 8, 0},
                                                                   {8, 7, 0},
                                                                   {9, 6, 0},
                                                                   {10, 5, 1}}));
}

TEST(Rectangle_in_runs, does_not_reach_rows_that_only_the_tolerance_takes_in)
{
    // The corners lie 0.0004 of a row inside rows 0 and 10, and all columns 0.25 to the right.
    const Corners corners = {{{5.25, 0.0004}, {10.25, 5}, {5.25, 9.9996}, {0.25, 5}}};
    const std::vector<RowRun> runs = RunsOf(corners);
    ASSERT_EQ(runs.size(), 11U);
    EXPECT_EQ(runs.front(), (RowRun{0, 1, 0})) << "begins where the box does";
    EXPECT_EQ(runs.back(), (RowRun{10, 1, 0}));
    EXPECT_EQ(runs[1], (RowRun{1, 5, 2}));
}

TEST(Rectangle_in_runs, begins_at_the_first_of_two_lowest_corners)
{
    const Corners bow = {{{10, 0}, {12, 4}, {4, 0}, {2, 4}}};
    EXPECT_EQ(RunsOf(bow).front(), (RowRun{0, 10, 1}));
    EXPECT_EQ(RunsOf(Turned(bow, 1)).front(), (RowRun{0, 4, 1}));
}

TEST(Rectangle_in_runs, with_a_slope_of_null_has_the_corner_in_its_place)
{
    // From p[0] to p[3] the slope is -max / 1: null.
    const Corners corners = {{{-NULL_VALUE, 0}, {5, 2}, {3, 3}, {0, 1}}};
    const std::vector<RowRun> runs = RunsOf(corners);
    ASSERT_EQ(runs.size(), 4U);
    EXPECT_EQ(runs[1], (RowRun{1, LARGEST, 0})) << "the left edge stands at p[0], far right";
    EXPECT_EQ(runs[2], (RowRun{2, 2, 4})) << "the right edge stands at p[1]";
}

TEST(Rectangle_in_runs, with_the_other_slope_null_has_its_lowest_corners_in_their_place)
{
    // From p[2] to p[3] the slope is max / -1: null.
    const Corners corners = {{{4, 0}, {9, 1}, {0, 3}, {-NULL_VALUE, 2}}};
    EXPECT_EQ(RunsOf(corners), (std::vector<RowRun>{{0, 4, 6}, {1, LARGEST, 0}, {2, LARGEST, 0}, {3, 4, 16}}));
}

// --- odd grids and corners ------------------------------------------------------------------------------------------

TEST(Rectangle_in_runs, on_a_grid_without_pixels_has_no_rows)
{
    for (const Grid& grid :
         {Grid{0, 20, {0, 0}, {1, 1}}, Grid{20, 0, {0, 0}, {1, 1}}, Grid{-1, 20, {0, 0}, {1, 1}},
          Grid{20, std::numeric_limits<int>::min(), {0, 0}, {1, 1}}, Grid{20, 20, {0, 0}, {0, 1}},
          Grid{20, 20, {0, 0}, {1, 0}}, Grid{20, 20, {NOT_A_NUMBER, 0}, {1, 1}}, Grid{20, 20, {0, 0}, {INFINITE, 1}}})
    {
        EXPECT_EQ(RunsOf(DIAMOND, grid), std::vector<RowRun>{});
    }
}

TEST(Rectangle_in_runs, with_a_first_corner_that_is_nowhere_has_no_rows)
{
    for (const double odd : {NOT_A_NUMBER, NULL_VALUE})
    {
        Corners corners = DIAMOND;
        corners[0] = {odd, odd};
        EXPECT_EQ(RunsOf(corners), std::vector<RowRun>{}) << odd;
    }
}

TEST(Rectangle_in_runs, with_a_corner_that_is_no_number_begins_at_the_box_and_ends_before_it)
{
    Corners corners = DIAMOND;
    corners[3] = {NOT_A_NUMBER, 5}; // the left one
    const std::vector<RowRun> runs = RunsOf(corners);
    ASSERT_EQ(runs.size(), 11U);
    EXPECT_EQ(runs[2], (RowRun{2, 5, 0})) << "both edges have the lowest number";
}

// --- lists ----------------------------------------------------------------------------------------------------------

TEST(List_of_runs, that_is_not_asked_for_is_not_made)
{
    const CountingAlloc alloc;
    RLEGiven4Points(nullptr, nullptr, nullptr, alloc.Get());
    EXPECT_EQ(alloc.Requests(), 0U);
}

TEST(List_of_runs, is_made_in_the_allocator_with_room_for_its_rows)
{
    const CountingAlloc alloc;
    const InputData data = DataOf({});
    void* list = nullptr;
    RLEGiven4Points(&data, DIAMOND.data(), &list, alloc.Get());
    EXPECT_EQ(RunsIn(list), DIAMOND_RUNS);
    EXPECT_EQ(Capacity(list), DIAMOND_RUNS.size());
    EXPECT_EQ(alloc.Requests(), 2U);
    EXPECT_EQ(xzObject_ReferenceCount(list), 1);
    EXPECT_EQ(xzObject_DestroyImpl(list), zOK);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(List_of_runs, that_exists_is_emptied_and_used_again)
{
    const Ta::Object<void*> list = List(zBytes_GetType(12), std::vector<RleRow>(50, RleRow{7, {8, 9}}));
    const InputData data = DataOf({});
    void* handle = list.Get();
    RLEGiven4Points(&data, DIAMOND.data(), &handle, nullptr);
    EXPECT_EQ(handle, list.Get());
    EXPECT_EQ(RunsIn(handle), DIAMOND_RUNS);
    EXPECT_EQ(Capacity(handle), 50U);
    const Corners outside = {{{50, 50}, {55, 55}, {50, 60}, {45, 55}}};
    RLEGiven4Points(&data, outside.data(), &handle, nullptr);
    EXPECT_EQ(RunsIn(handle), std::vector<RowRun>{});
}

TEST(List_of_runs, of_another_item_type_is_refused_and_stays)
{
    const InputData data = DataOf({});
    const Ta::Object<void*> narrow = List(zTypeOf(zPoint3d32f), std::vector<zPoint3d32f>{{1, 2, 3}}); // 12 bytes too
    const Ta::Object<void*> wide = List(zBytes_GetType(16), std::vector<zPoint64f>{{1, 2}});
    const Ta::Object<void*> message = PointFeature({1, 2, 3});
    for (void* const other : {narrow.Get(), wide.Get(), message.Get()})
    {
        void* handle = other;
        const std::size_t count = zArrayList_Count(other);
        ExpectFailure(FailureOf([&] { RLEGiven4Points(&data, DIAMOND.data(), &handle, nullptr); }), -980, FUNCTION,
                      UNIT);
        ExpectFailure(FailureOf([&] { RLEGiven4Points(nullptr, nullptr, &handle, nullptr); }), -980, FUNCTION, UNIT);
        EXPECT_EQ(handle, other);
        EXPECT_EQ(zArrayList_Count(other), count);
    }
}

TEST(List_of_runs, without_a_grid_or_corners_is_refused_and_stays)
{
    const InputData data = DataOf({});
    const Ta::Object<void*> list = List(zBytes_GetType(12), std::vector<RleRow>(2, RleRow{7, {8, 9}}));
    for (void* handle : {list.Get(), static_cast<void*>(nullptr)})
    {
        void* const before = handle;
        ExpectFailure(FailureOf([&] { RLEGiven4Points(nullptr, DIAMOND.data(), &handle, nullptr); }), -999, FUNCTION,
                      UNIT);
        ExpectFailure(FailureOf([&] { RLEGiven4Points(&data, nullptr, &handle, nullptr); }), -999, FUNCTION, UNIT);
        EXPECT_EQ(handle, before);
    }
    EXPECT_EQ(zArrayList_Count(list.Get()), 2U);
}

TEST(List_of_runs, raises_the_status_of_every_failing_call)
{
    const CountingAlloc alloc;
    const InputData data = DataOf({});
    const std::size_t forNew = WalkRaisedFaults(FUNCTION, UNIT, [&] {
        void* list = nullptr;
        try
        {
            RLEGiven4Points(&data, DIAMOND.data(), &list, alloc.Get());
        }
        catch (const Ta::Exception&)
        {
            EXPECT_EQ(list, nullptr);
            EXPECT_EQ(alloc.LiveBlocks(), 0U);
            throw;
        }
        static_cast<void>(xzObject_DestroyImpl(list));
    });
    EXPECT_GE(forNew, 1 + DIAMOND_RUNS.size()) << "the list and its rows";
    EXPECT_EQ(alloc.LiveBlocks(), 0U);

    Ta::Object<void*> reused = List(zBytes_GetType(12), std::vector<RleRow>(50), alloc.Get());
    void* handle = reused.Get();
    const std::size_t forOld =
        WalkRaisedFaults(FUNCTION, UNIT, [&] { RLEGiven4Points(&data, DIAMOND.data(), &handle, alloc.Get()); });
    EXPECT_EQ(forOld, 1 + DIAMOND_RUNS.size()) << "to empty it, and its rows";
    EXPECT_EQ(handle, reused.Get());
    EXPECT_EQ(RunsIn(handle), DIAMOND_RUNS);
    reused.Reset();
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(List_of_runs, raises_what_a_failing_allocator_gives)
{
    const InputData data = DataOf({});
    const std::size_t requests = WalkAllocations(
        [&data](zAlloc alloc) {
            void* list = nullptr;
            const auto failure = FailureOf([&] { RLEGiven4Points(&data, DIAMOND.data(), &list, alloc); });
            static_cast<void>(xzObject_DestroyImpl(list));
            return failure;
        },
        [](const std::optional<Failure>& failure) { ExpectFailure(failure, -998, FUNCTION, UNIT); });
    EXPECT_EQ(requests, 2U);
}

// --- beside a plain reading of the rules ----------------------------------------------------------------------------

int NaiveInt(double value)
{
    if (std::isnan(value) || value <= -2147483648.0)
    {
        return -2147483647 - 1;
    }
    return value >= 2147483647.0 ? 2147483647 : static_cast<int>(value);
}

struct NaiveRectangle
{
    Corners p{};
    bool aligned = false;
    double slopeA = NULL_VALUE;
    double slopeB = NULL_VALUE;
    Mu::Vision::Rect2d<int> rect;
};

NaiveRectangle NaiveOf(const Corners& corners, const Grid& grid)
{
    NaiveRectangle r;
    double lowX = corners[0].x;
    double highX = corners[0].x;
    double lowY = corners[0].y;
    double highY = corners[0].y;
    std::size_t lowest = 0;
    for (std::size_t i = 0; i < 4; ++i)
    {
        const zPoint64f c = corners.at(i);
        if (c.x < lowX)
        {
            lowX = c.x;
        }
        if (c.x > highX)
        {
            highX = c.x;
        }
        if (c.y < lowY)
        {
            lowY = c.y;
            lowest = i;
        }
        if (c.y > highY)
        {
            highY = c.y;
        }
    }
    const Mu::Vision::Region2d<double> bounds{lowX, lowY, highX - lowX, highY - lowY, 0};
    for (std::size_t i = 0; i < 4; ++i)
    {
        const zPoint64f c = corners.at((i + lowest) % 4);
        r.p.at(i) = {(c.x - grid.offset.x) / grid.scale.x, (c.y - grid.offset.y) / grid.scale.y};
    }
    const auto& p = r.p;
    r.aligned = std::fabs(p[0].x - p[1].x) < 0x1p-23 || std::fabs(p[0].y - p[1].y) < 0x1p-23;
    if (!r.aligned)
    {
        r.slopeA = (p[0].x - p[3].x) / (p[0].y - p[3].y);
        r.slopeB = (p[3].x - p[2].x) / (p[3].y - p[2].y);
    }
    const zPoint64f tolerance{0.0005, 0.0005};
    Mu::Vision::GetRegionPixel(static_cast<std::size_t>(grid.width), static_cast<std::size_t>(grid.length), grid.offset,
                               grid.scale, &bounds, &r.rect, &tolerance, 1, 0);
    return r;
}

// The eight rules of a row, one after the other.
RowRun NaiveRun(const NaiveRectangle& r, int row)
{
    const auto& [p, aligned, slopeA, slopeB, rect] = r;
    const double y = row;
    if (row < rect.y || row >= rect.y + rect.height)
    {
        return {row, rect.x, 0};
    }
    if (aligned)
    {
        return {row, rect.x, rect.width};
    }
    if (y < p[0].y || y > p[2].y)
    {
        return {row, rect.x, 0};
    }
    double x = 0;
    if (y <= p[3].y)
    {
        x = slopeA == NULL_VALUE ? p[0].x : p[0].x + (y - p[0].y) * slopeA;
    }
    else
    {
        x = slopeB == NULL_VALUE ? p[0].x : p[3].x + (y - p[3].y) * slopeB;
    }
    const long long first = std::max(NaiveInt(std::ceil(x)), rect.x);
    if (y >= p[1].y)
    {
        x = slopeA == NULL_VALUE ? p[1].x : p[1].x + (y - p[1].y) * slopeA;
    }
    else
    {
        x = slopeB == NULL_VALUE ? p[1].x : p[0].x + (y - p[0].y) * slopeB;
    }
    long long last = NaiveInt(std::floor(x));
    const long long end = static_cast<long long>(rect.x) + rect.width;
    if (last >= end)
    {
        last = end - 1;
    }
    return {row, static_cast<int>(first), last >= first ? static_cast<int>(last - first + 1) : 0};
}

std::vector<RowRun> NaiveRuns(const Corners& corners, const Grid& grid)
{
    const NaiveRectangle r = NaiveOf(corners, grid);
    std::vector<RowRun> runs;
    for (int row = r.rect.y; row < r.rect.y + r.rect.height; ++row)
    {
        runs.push_back(NaiveRun(r, row));
    }
    return runs;
}

/// A rectangle in the world, turned, its corners counter-clockwise.
Corners RandomRectangle(OddRandom& random, double degrees)
{
    const double angle = degrees * (std::numbers::pi / 180.0);
    const zPoint64f centre{random.Between(-5, 15), random.Between(-5, 15)};
    const double halfWidth = random.Between(0.5, 6);
    const double halfLength = random.Between(0.5, 6);
    Corners corners{};
    for (std::size_t i = 0; i < 4; ++i)
    {
        const double u = i == 0 || i == 3 ? -halfWidth : halfWidth;
        const double v = i < 2 ? -halfLength : halfLength;
        corners.at(i) = {centre.x + u * std::cos(angle) - v * std::sin(angle),
                         centre.y + u * std::sin(angle) + v * std::cos(angle)};
    }
    return Turned(corners, random.Below(4));
}

Grid RandomGrid(OddRandom& random)
{
    Grid grid;
    grid.width = static_cast<int>(random.Below(40));
    grid.length = static_cast<int>(random.Below(40));
    grid.offset = {random.Between(-3, 3), random.Between(-3, 3)};
    grid.scale = {random.Between(0.2, 1), random.Between(0.2, 1)};
    if (random.Chance(0.1))
    {
        grid.scale.x = -grid.scale.x;
        grid.offset.x += 10;
    }
    return grid;
}

struct RunCounts
{
    int aligned = 0;
    int withRuns = 0;
    int withEmptyRuns = 0;
    int withoutRows = 0;
    int clipped = 0;

    void Count(const NaiveRectangle& r, const std::vector<RowRun>& runs, const Grid& grid)
    {
        const auto isEmpty = [](const RowRun& run) { return run.length == 0; };
        aligned += r.aligned && !runs.empty() ? 1 : 0;
        withRuns += !r.aligned && !std::all_of(runs.begin(), runs.end(), isEmpty) ? 1 : 0;
        withEmptyRuns += std::any_of(runs.begin(), runs.end(), isEmpty) ? 1 : 0;
        withoutRows += runs.empty() ? 1 : 0;
        clipped += !runs.empty() && (r.p[0].y < 0 || r.p[2].y > grid.length - 1) ? 1 : 0;
    }
};

TEST(Runs_of_rectangles, agree_with_their_rules)
{
    constexpr unsigned SEED = 271;
    constexpr int CASES = 30000;
    OddRandom random(SEED);
    RunCounts counts;
    for (int i = 0; i < CASES; ++i)
    {
        const Grid grid = RandomGrid(random);
        const bool turned = random.Chance(0.85);
        Corners corners = RandomRectangle(random, turned ? random.Between(-180, 180) : 0.0);
        if (random.Chance(0.1))
        {
            corners = OtherWayRound(corners);
        }
        const std::vector<RowRun> runs = RunsOf(corners, grid);
        ASSERT_EQ(runs, NaiveRuns(corners, grid)) << CaseText(i, SEED);
        counts.Count(NaiveOf(corners, grid), runs, grid);
    }
    EXPECT_GT(counts.aligned, CASES / 20);
    EXPECT_GT(counts.withRuns, CASES / 3);
    EXPECT_GT(counts.withEmptyRuns, CASES / 10);
    EXPECT_GT(counts.withoutRows, CASES / 20);
    EXPECT_GT(counts.clipped, CASES / 10);
}

// Corners in any order and place, whole numbers among them, and numbers out of the ordinary.
TEST(Runs_of_any_four_corners, agree_with_their_rules)
{
    constexpr unsigned SEED = 272;
    constexpr int CASES = 30000;
    OddRandom random(SEED);
    RunCounts counts;
    int odd = 0;
    for (int i = 0; i < CASES; ++i)
    {
        const Grid grid{30, 30, {0, 0}, {1, random.Chance(0.1) ? -1.0 : 1.0}};
        const bool isOdd = random.Chance(0.3);
        Corners corners{};
        for (zPoint64f& corner : corners)
        {
            corner = {std::round(random.Between(-10, 40)), std::round(random.Between(-10, 40))};
            if (isOdd && random.Chance(0.3))
            {
                (random.Chance(0.5) ? corner.x : corner.y) = random.Number(2);
            }
        }
        const std::vector<RowRun> runs = RunsOf(corners, grid);
        ASSERT_EQ(runs, NaiveRuns(corners, grid)) << CaseText(i, SEED);
        counts.Count(NaiveOf(corners, grid), runs, grid);
        odd += isOdd && !runs.empty() ? 1 : 0;
    }
    EXPECT_GT(counts.withRuns, CASES / 10);
    EXPECT_GT(counts.withEmptyRuns, CASES / 2);
    EXPECT_GT(odd, CASES / 20);
}

double Side(const zPoint64f& from, const zPoint64f& to, double x, double y)
{
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    return ((to.x - from.x) * (y - from.y) - (to.y - from.y) * (x - from.x)) / length;
}

// What the runs are for: pixel centres inside the rectangle, and no others.
TEST(Runs_of_rectangles, hold_the_pixels_inside_and_no_others)
{
    constexpr unsigned SEED = 273;
    constexpr int CASES = 20000;
    constexpr double MARGIN = 1e-9;
    OddRandom random(SEED);
    long long inside = 0;
    for (int i = 0; i < CASES; ++i)
    {
        Grid grid = RandomGrid(random);
        grid.scale.x = std::fabs(grid.scale.x);
        const Corners corners = RandomRectangle(random, random.Between(0.5, 89.5) + 90.0 * static_cast<double>(i % 4));
        std::vector<int> covered(static_cast<std::size_t>(grid.width) * static_cast<std::size_t>(grid.length));
        const auto at = [&](int column, int row) {
            return static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.width) +
                   static_cast<std::size_t>(column);
        };
        for (const RowRun& run : RunsOf(corners, grid))
        {
            for (int k = 0; k < run.length; ++k)
            {
                covered.at(at(run.start + k, run.row)) = 1;
            }
        }
        for (int row = 0; row < grid.length; ++row)
        {
            for (int column = 0; column < grid.width; ++column)
            {
                double nearest = INFINITE;
                for (std::size_t k = 0; k < 4; ++k)
                {
                    nearest = std::min(nearest,
                                       Side(corners.at(k), corners.at((k + 1) % 4),
                                            grid.offset.x + grid.scale.x * column, grid.offset.y + grid.scale.y * row));
                }
                if (std::fabs(nearest) > MARGIN)
                {
                    ASSERT_EQ(covered[at(column, row)], nearest > 0 ? 1 : 0)
                        << CaseText(i, SEED) << ", column " << column << ", row " << row;
                    inside += nearest > 0 ? 1 : 0;
                }
            }
        }
    }
    EXPECT_GT(inside, 10LL * CASES);
}
} // namespace
