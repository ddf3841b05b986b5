#include <MuVision/RegionPixel.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <ostream>
#include <random>
#include <string>

namespace Mu::Vision
{
bool operator==(const Rect2d<int>& a, const Rect2d<int>& b)
{
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

bool operator==(const Rect3d<int>& a, const Rect3d<int>& b)
{
    return a.x == b.x && a.y == b.y && a.width == b.width && a.length == b.length && a.z == b.z && a.height == b.height;
}

void PrintTo(const Rect2d<int>& r, std::ostream* out)
{
    *out << "x " << r.x << ", y " << r.y << ", width " << r.width << ", height " << r.height;
}

void PrintTo(const Rect3d<int>& r, std::ostream* out)
{
    *out << "x " << r.x << ", y " << r.y << ", width " << r.width << ", length " << r.length << ", z " << r.z
         << ", height " << r.height;
}
} // namespace Mu::Vision

namespace
{
using namespace Mu::Vision;

constexpr double NONE = -1.7976931348623157e308;
constexpr double INFINITE = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::nan("");

const Rect2d<int> NOTHING_2D{0, 0, 0, 0};
const Rect3d<int> NOTHING_3D{0, 0, 0, 0, 0, 0};

// One axis of a profile's points, with heights that are always met.
struct Axis
{
    std::size_t count = 10;
    double offset = 0;
    double scale = 1;
    double centre = 0;
    double extent = 0;
    double tolerance = 0;
    int isPixelGrid = 1;
};

Rect2d<int> BoxAlong(const Axis& axis)
{
    Rect2d<int> box;
    const zPoint64f tolerance{axis.tolerance, 0};
    const RegionXZ<double> region{axis.centre, 0, axis.extent, 0, 0};
    GetRegionXZPixel(axis.count, {axis.offset, 0}, {axis.scale, 1}, &region, &box, &tolerance, axis.isPixelGrid);
    return box;
}

struct Case
{
    const char* name;
    Axis axis;
    int first;
    int count;
};

void PrintTo(const Case& c, std::ostream* out)
{
    *out << c.name;
}

class Pixels_along_an_axis : public testing::TestWithParam<Case>
{
};

TEST_P(Pixels_along_an_axis, are_as_by_hand)
{
    const Case& c = GetParam();
    EXPECT_EQ(BoxAlong(c.axis), (c.count == 0 ? NOTHING_2D : Rect2d<int>{c.first, 0, c.count, 1})) << c.name;
}

INSTANTIATE_TEST_SUITE_P(
    Table, Pixels_along_an_axis,
    testing::Values(
        Case{"centres on both bounds", {.centre = 4, .extent = 4}, 2, 5},
        Case{"bounds between centres", {.centre = 4.5, .extent = 4}, 3, 4},
        Case{"bounds just past centres", {.centre = 4, .extent = 4.2}, 2, 5},
        Case{"bounds just short of centres", {.centre = 4, .extent = 3.8}, 3, 3},
        Case{"half a millionth short still counts", {.centre = 4, .extent = 4 - 1e-6}, 2, 5},
        Case{"two millionths short do not", {.centre = 4, .extent = 4 - 4e-6}, 3, 3},
        Case{"no extent on a centre", {.centre = 4, .extent = 0}, 4, 1},
        Case{"no extent between centres", {.centre = 4.5, .extent = 0}, 0, 0},
        Case{"no extent, within the tolerance", {.centre = 4.5, .extent = 0, .tolerance = 0.5}, 4, 2},
        Case{"a tolerance is in pixels", {.scale = 0.1, .centre = 0.4, .extent = 0.2, .tolerance = 1}, 2, 5},
        Case{"a tolerance short of the next pixel", {.centre = 4, .extent = 2, .tolerance = 0.999}, 3, 3},
        Case{"a negative tolerance narrows", {.centre = 4, .extent = 4, .tolerance = -0.5}, 3, 3},
        Case{"a negative tolerance leaves nothing", {.centre = 4, .extent = 0.2, .tolerance = -0.5}, 0, 0},
        Case{"an endless tolerance takes the grid", {.centre = 4, .extent = 0, .tolerance = INFINITE}, 0, 10},
        Case{"an endless negative tolerance takes nothing", {.centre = 4, .extent = 9, .tolerance = -INFINITE}, 0, 0},
        Case{"clipped at the low end", {.centre = 0, .extent = 6}, 0, 4},
        Case{"clipped at the high end", {.centre = 9, .extent = 6}, 6, 4},
        Case{"the whole grid", {.centre = 0, .extent = 1e300}, 0, 10},
        Case{"an endless extent", {.centre = 0, .extent = INFINITE}, 0, 10},
        Case{"touching the first pixel", {.centre = -2, .extent = 4}, 0, 1},
        Case{"touching the last pixel", {.centre = 11, .extent = 4}, 9, 1},
        Case{"below the grid", {.centre = -2.1, .extent = 4}, 0, 0},
        Case{"above the grid", {.centre = 11.1, .extent = 4}, 0, 0},
        Case{"far below the grid", {.centre = -1e300, .extent = 4}, 0, 0},
        Case{"far above the grid", {.centre = 1e300, .extent = 4}, 0, 0},
        Case{"offset and scale", {.offset = 10, .scale = 0.5, .centre = 12, .extent = 2}, 2, 5},
        Case{"a border that rounding loses", {.scale = 0.1, .centre = 0.2, .extent = 0.2}, 1, 3},
        Case{"another one", {.offset = 0.7, .scale = 0.1, .centre = 1.1, .extent = 0.4}, 2, 5},
        Case{"a scale that runs backwards", {.offset = 9, .scale = -1, .centre = 7, .extent = 2}, 1, 3},
        Case{"no scale", {.scale = 0, .centre = 0, .extent = 9}, 0, 0},
        Case{"an endless scale", {.scale = INFINITE, .centre = 0, .extent = 9}, 0, 0},
        Case{"a tiny scale", {.scale = 1e-300, .centre = 1, .extent = 4}, 0, 10},
        Case{"a tiny scale, beside the grid", {.scale = 1e-300, .centre = 4, .extent = 4}, 0, 0},
        Case{"an endless offset", {.offset = INFINITE, .centre = 4, .extent = 4}, 0, 0},
        Case{"an endless centre", {.centre = INFINITE, .extent = 4}, 0, 0},
        Case{"a null centre", {.centre = NONE, .extent = INFINITE}, 0, 0},
        Case{"a negative extent", {.centre = 4, .extent = -1e-9}, 0, 0},
        Case{"a negative extent on a backward axis", {.offset = 9, .scale = -1, .centre = 4, .extent = -4}, 0, 0},
        Case{"NaN centre", {.centre = NOT_A_NUMBER, .extent = 4}, 0, 0},
        Case{"NaN extent", {.centre = 4, .extent = NOT_A_NUMBER}, 0, 0},
        Case{"NaN offset", {.offset = NOT_A_NUMBER, .centre = 4, .extent = 4}, 0, 0},
        Case{"NaN scale", {.scale = NOT_A_NUMBER, .centre = 4, .extent = 4}, 0, 0},
        Case{"NaN tolerance", {.centre = 4, .extent = 4, .tolerance = NOT_A_NUMBER}, 0, 0},
        Case{"no grid", {.count = 0, .centre = 0, .extent = 1e300}, 0, 0},
        Case{"one pixel", {.count = 1, .centre = 0, .extent = 1e300}, 0, 1},
        Case{"more pixels than an int counts", {.count = SIZE_MAX, .centre = 0, .extent = 1e300}, 0, 2147483647},
        Case{"stored values, below zero too", {.centre = -5, .extent = 4, .isPixelGrid = 0}, -7, 5},
        Case{"stored values beyond the points", {.count = 2, .centre = 500, .extent = 4, .isPixelGrid = 0}, 498, 5},
        Case{"stored values without a point", {.count = 0, .centre = 500, .extent = 4, .isPixelGrid = 0}, 498, 5},
        Case{"stored values, all", {.centre = 0, .extent = 1e300, .isPixelGrid = 0}, -32767, 65535},
        Case{"stored values up to null only", {.centre = -32768, .extent = 0, .isPixelGrid = 0}, 0, 0},
        Case{"the lowest stored value", {.centre = -32767, .extent = 0, .isPixelGrid = 0}, -32767, 1},
        Case{"the highest stored value", {.centre = 32767, .extent = 0, .isPixelGrid = 0}, 32767, 1},
        Case{"beyond the stored values", {.centre = 32768, .extent = 0, .isPixelGrid = 0}, 0, 0}));

struct Grid3d
{
    std::size_t width = 10, length = 20;
    zPoint3d64f offset{0, 0, 0}, scale{1, 1, 1};
};

Rect3d<int> BoxIn(const Grid3d& grid, const Region3d<double>& region, int isPixelGrid = 1,
                  const zPoint3d64f* tolerance = nullptr)
{
    Rect3d<int> box;
    GetRegionPixel(grid.width, grid.length, grid.offset, grid.scale, &region, &box, tolerance, isPixelGrid);
    return box;
}

TEST(Pixel_box_of_a_surface, counts_columns_and_rows_and_tells_heights_by_their_difference)
{
    EXPECT_EQ(BoxIn({}, {4, 10, 100, 4, 6, 8, 0, 0, 0}), (Rect3d<int>{2, 7, 5, 7, 96, 8}));
    EXPECT_EQ(BoxIn({}, {4, 10, 100, 0, 0, 0, 0, 0, 0}), (Rect3d<int>{4, 10, 1, 1, 100, 0}));
}

TEST(Pixel_box_of_a_surface, takes_each_axis_with_its_own_offset_scale_and_tolerance)
{
    const Grid3d grid{100, 200, {1, 2, 3}, {0.5, 0.25, 0.125}};
    EXPECT_EQ(BoxIn(grid, {6, 7, 8, 2, 2, 2, 0, 0, 0}), (Rect3d<int>{8, 16, 5, 9, 32, 16}));
    const zPoint3d64f tolerance{1, 2, 3};
    EXPECT_EQ(BoxIn(grid, {6, 7, 8, 2, 2, 2, 0, 0, 0}, 1, &tolerance), (Rect3d<int>{7, 14, 7, 13, 29, 22}));
}

TEST(Pixel_box_of_a_surface, does_not_look_at_angles)
{
    EXPECT_EQ(BoxIn({}, {4, 10, 0, 4, 6, 8, 10, 20, 30}), BoxIn({}, {4, 10, 0, 4, 6, 8, 0, 0, 0}));
}

TEST(Pixel_box_of_a_surface, clips_heights_short_of_null)
{
    EXPECT_EQ(BoxIn({}, {4, 10, 0, 4, 6, 1e9, 0, 0, 0}), (Rect3d<int>{2, 7, 5, 7, -32767, 65534}));
}

TEST(Pixel_box_of_a_surface, is_nothing_if_any_axis_is_missed)
{
    EXPECT_EQ(BoxIn({}, {-10, 10, 0, 4, 6, 8, 0, 0, 0}), NOTHING_3D);
    EXPECT_EQ(BoxIn({}, {4, -10, 0, 4, 6, 8, 0, 0, 0}), NOTHING_3D);
    EXPECT_EQ(BoxIn({}, {4, 10, 40000, 4, 6, 8, 0, 0, 0}), NOTHING_3D);
    EXPECT_EQ(BoxIn({}, {4, 10, 0.5, 4, 6, 0.5, 0, 0, 0}), NOTHING_3D);
    EXPECT_EQ(BoxIn({}, {NONE, 10, 0, 4, 6, 8, 0, 0, 0}), NOTHING_3D);
    EXPECT_EQ(BoxIn({}, {4, NONE, 0, 4, 6, 8, 0, 0, 0}), NOTHING_3D);
    EXPECT_EQ(BoxIn({}, {4, 10, NONE, 4, 6, 8, 0, 0, 0}), NOTHING_3D);
    EXPECT_EQ(BoxIn({.width = 0}, {4, 10, 0, 4, 6, 8, 0, 0, 0}), NOTHING_3D);
    EXPECT_EQ(BoxIn({.length = 0}, {4, 10, 0, 4, 6, 8, 0, 0, 0}), NOTHING_3D);
    EXPECT_EQ(BoxIn({}, Region3d<double>()), NOTHING_3D);
}

TEST(Pixel_box_of_a_surface, takes_the_first_axis_alone_as_stored_values)
{
    EXPECT_EQ(BoxIn({}, {-100, 0, 0, 4, 6, 8, 0, 0, 0}, 0), (Rect3d<int>{-102, 0, 5, 4, -4, 8}));
}

TEST(Pixel_box, of_no_region_is_nothing_and_no_result_is_no_harm)
{
    Rect3d<int> box;
    GetRegionPixel(5, 5, {0, 0, 0}, {1, 1, 1}, nullptr, &box, nullptr, 1);
    EXPECT_EQ(box, NOTHING_3D);
    Rect2d<int> rect;
    GetRegionPixel(5, 5, {0, 0}, {1, 1}, nullptr, &rect, nullptr, 1, 1);
    EXPECT_EQ(rect, NOTHING_2D);
    rect = Rect2d<int>();
    GetRegionXZPixel(5, {0, 0}, {1, 1}, nullptr, &rect, nullptr, 1);
    EXPECT_EQ(rect, NOTHING_2D);

    const Region3d<double> region{0, 0, 0, 1, 1, 1, 0, 0, 0};
    const Region2d<double> flat{0, 0, 1, 1, 0};
    const RegionXZ<double> profile{0, 0, 1, 1, 0};
    EXPECT_NO_FATAL_FAILURE(GetRegionPixel(5, 5, {0, 0, 0}, {1, 1, 1}, &region, nullptr, nullptr, 1));
    EXPECT_NO_FATAL_FAILURE(GetRegionPixel(5, 5, {0, 0}, {1, 1}, &flat, nullptr, nullptr, 1, 1));
    EXPECT_NO_FATAL_FAILURE(GetRegionXZPixel(5, {0, 0}, {1, 1}, &profile, nullptr, nullptr, 1));
}

Rect2d<int> FlatBox(const Region2d<double>& region, int isPixelGrid, int isCentred,
                    const zPoint64f* tolerance = nullptr)
{
    Rect2d<int> box;
    GetRegionPixel(10, 20, {1, 2}, {0.5, 0.25}, &region, &box, tolerance, isPixelGrid, isCentred);
    return box;
}

TEST(Pixel_box_in_the_plane, takes_the_position_as_centre_or_low_corner)
{
    EXPECT_EQ(FlatBox({3, 4, 2, 1, 30}, 1, 1), (Rect2d<int>{2, 6, 5, 5}));
    EXPECT_EQ(FlatBox({2, 3.5, 2, 1, 30}, 1, 0), (Rect2d<int>{2, 6, 5, 5}));
}

TEST(Pixel_box_in_the_plane, takes_corners_that_rounding_moved_within_the_tolerance)
{
    const zPoint64f tolerance{0.0005, 0.0005};
    // 0.0004 of a pixel of 0.5 and of 0.25 short on each side
    const Region2d<double> shrunk{2.0002, 3.5001, 1.9996, 0.9998, 0};
    EXPECT_EQ(FlatBox(shrunk, 1, 0, &tolerance), (Rect2d<int>{2, 6, 5, 5}));
    EXPECT_EQ(FlatBox(shrunk, 1, 0), (Rect2d<int>{3, 7, 3, 3}));
}

TEST(Pixel_box_in_the_plane, is_nothing_if_any_axis_is_missed)
{
    EXPECT_EQ(FlatBox({30, 4, 2, 1, 0}, 1, 1), NOTHING_2D);
    EXPECT_EQ(FlatBox({3, 40, 2, 1, 0}, 1, 1), NOTHING_2D);
    EXPECT_EQ(FlatBox({NONE, 4, 2, 1, 0}, 1, 0), NOTHING_2D);
    EXPECT_EQ(FlatBox({3, NONE, 2, 1, 0}, 1, 0), NOTHING_2D);
    EXPECT_EQ(FlatBox({3, 4, -2, 1, 0}, 1, 0), NOTHING_2D);
}

TEST(Pixel_box_in_the_plane, takes_the_first_axis_alone_as_stored_values)
{
    EXPECT_EQ(FlatBox({-3, 2, 2, 1, 0}, 0, 1), (Rect2d<int>{-10, 0, 5, 3}));
}

TEST(Pixel_box_of_a_profile, counts_heights)
{
    Rect2d<int> box;
    const RegionXZ<double> region{4, 100, 4, 8, 30};
    GetRegionXZPixel(10, {0, 0}, {1, 1}, &region, &box, nullptr, 1);
    EXPECT_EQ(box, (Rect2d<int>{2, 96, 5, 9}));
    GetRegionXZPixel(10, {1, 50}, {0.5, 0.25}, &region, &box, nullptr, 1);
    EXPECT_EQ(box, (Rect2d<int>{2, 184, 8, 33}));
}

TEST(Pixel_box_of_a_profile, is_nothing_if_the_heights_are_missed)
{
    Rect2d<int> box;
    for (const double z : {33000.0, -32768.0, 0.5, NONE, NOT_A_NUMBER})
    {
        const RegionXZ<double> region{4, z, 4, 0.25, 0};
        GetRegionXZPixel(10, {0, 0}, {1, 1}, &region, &box, nullptr, 1);
        EXPECT_EQ(box, NOTHING_2D) << z;
    }
}

// Looks at every pixel of an axis: those whose centre lies between the bounds, widened by part of a pixel.
struct Found
{
    int first = 0;
    int last = -1;
    bool isTold = true; // false if a pixel is too close to a widened bound to tell
};

Found Reference(const Axis& axis, int lowest, int highest)
{
    using Exact = long double;
    const Exact scale = axis.scale;
    const Exact more = (1e-6L + static_cast<Exact>(axis.tolerance)) * std::fabs(scale);
    const Exact low = static_cast<Exact>(axis.centre) - static_cast<Exact>(axis.extent) / 2 - more;
    const Exact high = static_cast<Exact>(axis.centre) + static_cast<Exact>(axis.extent) / 2 + more;
    const Exact close = 1e-8L * std::fabs(scale);
    Found found;
    for (int i = lowest; i <= highest; ++i)
    {
        const Exact at = static_cast<Exact>(axis.offset) + static_cast<Exact>(i) * scale;
        found.isTold = found.isTold && std::fabs(at - low) > close && std::fabs(at - high) > close;
        if (at >= low && at <= high)
        {
            found.first = found.last < found.first ? i : found.first;
            found.last = i;
        }
    }
    return found;
}

class RandomAxis
{
public:
    explicit RandomAxis(unsigned seed)
        : engine(seed)
    {
    }

    // Half of the bounds lie on pixels, computed as users compute them.
    Axis Next()
    {
        Axis axis;
        axis.count = static_cast<std::size_t>(Whole(0, 40));
        axis.offset = Real(-50, 50);
        axis.scale = Real(0.01, 2) * (Whole(0, 3) == 0 ? -1 : 1);
        axis.tolerance = Whole(0, 1) == 0 ? 0.0 : Real(-0.5, 1.5);
        const bool onPixels = Whole(0, 1) == 0;
        const double a = axis.offset + (onPixels ? Whole(-20, 60) : Real(-20, 60)) * axis.scale;
        const double b = axis.offset + (onPixels ? Whole(-20, 60) : Real(-20, 60)) * axis.scale;
        axis.extent = std::abs(b - a);
        axis.centre = std::min(a, b) + axis.extent / 2;
        axis.isPixelGrid = Whole(0, 1);
        return axis;
    }

private:
    double Real(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(engine);
    }

    int Whole(int low, int high)
    {
        return std::uniform_int_distribution<int>(low, high)(engine);
    }

    std::mt19937_64 engine;
};

TEST(Pixels_along_an_axis, agree_with_looking_at_every_pixel)
{
    constexpr unsigned seed = 121;
    RandomAxis random(seed);
    constexpr int cases = 20000;
    int told = 0;
    int hits = 0;
    for (int i = 0; i < cases; ++i)
    {
        const Axis axis = random.Next();
        // The bounds never reach beyond 62 pixels.
        const bool stored = axis.isPixelGrid == 0;
        const Found found = Reference(axis, stored ? -100 : 0, stored ? 100 : static_cast<int>(axis.count) - 1);
        if (!found.isTold)
        {
            continue;
        }
        ++told;
        const int count = found.last - found.first + 1;
        hits += count > 0 ? 1 : 0;
        ASSERT_EQ(BoxAlong(axis), (count > 0 ? Rect2d<int>{found.first, 0, count, 1} : NOTHING_2D))
            << "case " << i << ", seed " << seed;
    }
    EXPECT_GT(told, cases * 99 / 100);
    EXPECT_GT(hits, cases / 3);
}

// Every form against the reference of each of its axes.
TEST(Pixel_boxes, agree_with_their_axes)
{
    constexpr unsigned seed = 122;
    RandomAxis random(seed);
    for (int i = 0; i < 5000; ++i)
    {
        Axis x = random.Next();
        Axis y = random.Next();
        Axis z = random.Next();
        y.isPixelGrid = 1;
        z.isPixelGrid = 0;
        const Rect2d<int> alongX = BoxAlong(x);
        const Rect2d<int> alongY = BoxAlong(y);
        const Rect2d<int> alongZ = BoxAlong(z);
        const bool meetsPlane = alongX.width > 0 && alongY.width > 0;
        SCOPED_TRACE("case " + std::to_string(i) + ", seed " + std::to_string(seed));

        Rect3d<int> box;
        const Region3d<double> region{x.centre, y.centre, z.centre, x.extent, y.extent, z.extent, 0, 0, 0};
        const zPoint3d64f tolerance{x.tolerance, y.tolerance, z.tolerance};
        GetRegionPixel(x.count, y.count, {x.offset, y.offset, z.offset}, {x.scale, y.scale, z.scale}, &region, &box,
                       &tolerance, x.isPixelGrid);
        ASSERT_EQ(box, (meetsPlane && alongZ.width > 0
                            ? Rect3d<int>{alongX.x, alongY.x, alongX.width, alongY.width, alongZ.x, alongZ.width - 1}
                            : NOTHING_3D));

        Rect2d<int> rect;
        const Region2d<double> flat{x.centre, y.centre, x.extent, y.extent, 0};
        const zPoint64f flatTolerance{x.tolerance, y.tolerance};
        GetRegionPixel(x.count, y.count, {x.offset, y.offset}, {x.scale, y.scale}, &flat, &rect, &flatTolerance,
                       x.isPixelGrid, 1);
        ASSERT_EQ(rect, (meetsPlane ? Rect2d<int>{alongX.x, alongY.x, alongX.width, alongY.width} : NOTHING_2D));

        const RegionXZ<double> profile{x.centre, z.centre, x.extent, z.extent, 0};
        const zPoint64f profileTolerance{x.tolerance, z.tolerance};
        GetRegionXZPixel(x.count, {x.offset, z.offset}, {x.scale, z.scale}, &profile, &rect, &profileTolerance,
                         x.isPixelGrid);
        ASSERT_EQ(rect,
                  (alongX.width > 0 && alongZ.width > 0 ? Rect2d<int>{alongX.x, alongZ.x, alongX.width, alongZ.width}
                                                        : NOTHING_2D));
    }
}

TEST(Pixel_boxes, keep_every_border_that_was_turned_into_centre_and_extent)
{
    constexpr unsigned seed = 123;
    std::mt19937_64 random(seed);
    std::uniform_int_distribution<int> pixel(0, 4095);
    std::uniform_real_distribution<double> step(0.001, 0.2);
    std::uniform_real_distribution<double> start(-500, 500);
    for (int i = 0; i < 20000; ++i)
    {
        const double scale = step(random);
        const double offset = start(random);
        const int a = pixel(random);
        const int b = pixel(random);
        const int first = std::min(a, b);
        const int last = std::max(a, b);
        const double low = first * scale + offset;
        const double high = last * scale + offset;
        const Axis axis{4096, offset, scale, low + (high - low) / 2, high - low, 0, 1};
        ASSERT_EQ(BoxAlong(axis), (Rect2d<int>{first, 0, last - first + 1, 1})) << "case " << i << ", seed " << seed;
    }
}
} // namespace
