#include <Host/HeightMap.h>

#include "ScanTestFiles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

constexpr std::int16_t nullHeight = HeightMap::nullHeight;
using Heights = std::vector<std::int16_t>;

/// A map of one row with 0.5 mm per unit of z and an offset of 10 mm.
template <typename Sample>
HeightMap Row(const std::vector<Sample>& samples, const std::vector<std::uint8_t>& valid = {},
              const Vector3& spacing = {1, 1, 0.5}, const Vector3& offset = {0, 0, 10})
{
    SampleGrid grid;
    grid.file = "made.scan";
    grid.columns = samples.size();
    grid.rows = 1;
    grid.spacingMm = spacing;
    grid.offsetMm = offset;
    return BuildHeightMap(grid, std::span<const Sample>(samples), std::span<const std::uint8_t>(valid));
}

/// The largest distance between a height of the map and the sample it was made of, in mm.
template <typename Sample>
double LargestError(const HeightMap& map, const std::vector<Sample>& samples, double spacing, double offset)
{
    double largest = 0;
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const double exact = static_cast<double>(samples[i]) * spacing + offset;
        largest = std::max(largest, std::abs(HeightMm(map, i, 0) - exact));
    }
    return largest;
}

TEST(HeightMap, Signed_counts_are_kept_unchanged)
{
    const auto map = Row<std::int16_t>({-32767, -1, 0, 1, 32767});
    EXPECT_EQ(map.heights, (Heights{-32767, -1, 0, 1, 32767}));
    EXPECT_EQ(map.scaleMm, (Vector3{1, 1, 0.5}));
    EXPECT_EQ(map.offsetMm, (Vector3{0, 0, 10}));
    EXPECT_EQ(map.validCount, 5u);
    EXPECT_TRUE(map.intensity.empty());
}

TEST(HeightMap, Unsigned_counts_beyond_the_signed_range_move_by_32768_into_the_offset)
{
    const auto map = Row<std::uint16_t>({1, 32768, 65535});
    EXPECT_EQ(map.heights, (Heights{-32767, 0, 32767}));
    EXPECT_EQ(map.scaleMm.z, 0.5);
    EXPECT_EQ(map.offsetMm.z, 10 + 0.5 * 32768);
}

TEST(HeightMap, Counts_that_fit_no_usual_shift_get_one_of_their_own)
{
    const auto zeroBased = Row<std::uint16_t>({0, 65534});
    EXPECT_EQ(zeroBased.heights, (Heights{-32767, 32767}));
    EXPECT_EQ(zeroBased.offsetMm.z, 10 + 0.5 * 32767);

    const auto justTooHigh = Row<std::uint16_t>({0, 32768});
    EXPECT_EQ(justTooHigh.heights, (Heights{-32767, 1}));
    EXPECT_EQ(justTooHigh.offsetMm.z, 10 + 0.5 * 32767);

    const auto beyondUnsigned = Row<std::uint32_t>({2, 65536});
    EXPECT_EQ(beyondUnsigned.heights, (Heights{-32767, 32767}));
    EXPECT_EQ(beyondUnsigned.offsetMm.z, 10 + 0.5 * 32769);

    const auto lowest = Row<std::int16_t>({-32768, 0});
    EXPECT_EQ(lowest.heights, (Heights{-32767, 1}));
    EXPECT_EQ(lowest.offsetMm.z, 10 - 0.5);

    const auto far = Row<std::int32_t>({2147483647, 2147483647 - 65534});
    EXPECT_EQ(far.heights, (Heights{32767, -32767}));
    EXPECT_EQ(HeightMm(far, 0, 0), 10 + 0.5 * 2147483647);

    const auto highest = Row<std::uint32_t>({4294967295u, 4294967290u});
    EXPECT_EQ(highest.heights, (Heights{-32762, -32767}));
    EXPECT_EQ(HeightMm(highest, 1, 0), 10 + 0.5 * 4294967290.0);
}

TEST(HeightMap, Integers_that_span_more_than_65534_counts_are_rounded)
{
    const std::vector<std::uint16_t> samples{0, 1, 30000, 65535};
    const auto map = Row(samples);
    EXPECT_EQ(map.heights.front(), -32767);
    EXPECT_EQ(map.heights.back(), 32767);
    EXPECT_LE(LargestError(map, samples, 0.5, 10), 0.5 * 65535 / 65000 / 2);

    const std::vector<std::int32_t> wide{-2147483647 - 1, 0, 2147483647};
    EXPECT_LE(LargestError(Row(wide), wide, 0.5, 10), 0.5 * 4294967295.0 / 65000 / 2);
}

TEST(HeightMap, Any_span_of_up_to_65534_counts_is_exact)
{
    std::mt19937 random(11);
    for (int round = 0; round < 500; ++round)
    {
        const auto lowest = std::uniform_int_distribution<std::int32_t>(-2000000000, 2000000000)(random);
        const auto span = std::uniform_int_distribution<std::int32_t>(0, 65534)(random);
        std::vector<std::int32_t> samples{lowest, lowest + span};
        for (int i = 0; i < 20; ++i)
        {
            samples.push_back(std::uniform_int_distribution<std::int32_t>(lowest, lowest + span)(random));
        }
        ASSERT_EQ(LargestError(Row(samples), samples, 0.5, 10), 0) << "lowest " << lowest << " span " << span;
    }
}

TEST(HeightMap, Masked_samples_are_null_and_do_not_widen_the_range)
{
    const auto map = Row<std::int32_t>({2000000000, 5, 6, -2000000000}, {0, 1, 1, 0});
    EXPECT_EQ(map.heights, (Heights{nullHeight, 5, 6, nullHeight}));
    EXPECT_EQ(map.validCount, 2u);
    EXPECT_TRUE(HasNote(map, "2 of 4 samples are invalid"));
}

TEST(HeightMap, Floats_that_are_not_finite_are_null)
{
    using Limits = std::numeric_limits<float>;
    const auto map =
        Row<float>({Limits::quiet_NaN(), 1, Limits::infinity(), 3, -Limits::infinity(), 2}, {1, 1, 1, 1, 1, 0});
    EXPECT_EQ(map.heights, (Heights{nullHeight, -32767, nullHeight, 32767, nullHeight, nullHeight}));
    EXPECT_EQ(map.validCount, 2u);
}

TEST(HeightMap, Without_a_valid_sample_all_heights_are_null)
{
    const auto map = Row<std::uint16_t>({7, 8}, {0, 0});
    EXPECT_EQ(map.heights, (Heights{nullHeight, nullHeight}));
    EXPECT_EQ(map.validCount, 0u);
    EXPECT_EQ(map.scaleMm.z, 0.5);
    EXPECT_EQ(Row<double>({std::nan("")}).heights, (Heights{nullHeight}));
}

TEST(HeightMap, Flat_floats_are_exact)
{
    const double smallest = std::numeric_limits<double>::denorm_min();
    for (const double height : {0.0, 0.1, -123.456, smallest, 1e300})
    {
        const auto map = Row<double>({height, height}, {}, {1, 1, 1}, {});
        EXPECT_GT(map.scaleMm.z, 0) << height;
        EXPECT_EQ(HeightMm(map, 0, 0), height);
        EXPECT_EQ(HeightMm(map, 1, 0), height);
    }
}

template <typename Float>
void ExpectRoundingWithinBound(unsigned seed)
{
    std::mt19937 random(seed);
    for (int round = 0; round < 400; ++round)
    {
        const double size = std::pow(10, std::uniform_real_distribution<double>(-12, 12)(random));
        const double centre = std::uniform_real_distribution<double>(-1000, 1000)(random) * size;
        const double spacing = std::pow(10, std::uniform_real_distribution<double>(-6, 3)(random));
        std::vector<Float> samples(50);
        std::uniform_real_distribution<double> heights(centre - size, centre + size);
        std::ranges::generate(samples, [&] { return static_cast<Float>(heights(random)); });
        const auto [lowest, highest] = std::ranges::minmax(samples);
        const double span = (static_cast<double>(highest) - static_cast<double>(lowest)) * spacing;
        const auto map = Row(samples, {}, {1, 1, spacing}, {});
        ASSERT_LE(LargestError(map, samples, spacing, 0), span / 65000 / 2) << "seed " << seed << " round " << round;
        ASSERT_EQ(map.validCount, samples.size());
    }
}

TEST(HeightMap, Rounding_is_at_most_half_of_a_65000th_of_the_span)
{
    ExpectRoundingWithinBound<float>(1);
    ExpectRoundingWithinBound<double>(2);
}

TEST(HeightMap, Span_below_the_smallest_step_still_reads)
{
    const double smallest = std::numeric_limits<double>::denorm_min();
    const std::vector<double> samples{0, smallest, 100 * smallest};
    const auto map = Row(samples, {}, {1, 1, 1}, {});
    EXPECT_EQ(map.validCount, 3u);
    EXPECT_GE(map.scaleMm.z, std::numeric_limits<double>::min());
    EXPECT_LE(LargestError(map, samples, 1, 0), std::numeric_limits<double>::min());
}

TEST(HeightMap, Heights_beyond_the_range_of_numbers_are_refused)
{
    const double largest = std::numeric_limits<double>::max();
    EXPECT_TRUE(Contains(ErrorOf([&] {
                             return Row<double>({-largest, largest}, {}, {1, 1, 1});
                         }),
                         "made.scan: heights: "));
    EXPECT_TRUE(Contains(ErrorOf([&] { return Row<double>({0, 1e300}, {}, {1, 1, 1e300}); }), "span more than"));
    EXPECT_TRUE(Contains(ErrorOf([&] { return Row<std::int16_t>({0, 1}, {}, {1, 1, 1e305}); }), "positions in mm"));
    EXPECT_TRUE(Contains(ErrorOf([&] { return Row<std::int16_t>({0, 1, 2}, {}, {1e308, 1, 1}); }), "positions in mm"));
}

TEST(HeightMap, Huge_heights_within_the_range_of_numbers_are_read)
{
    const std::vector<double> samples{-1e307, 0, 1e307};
    EXPECT_LE(LargestError(Row(samples, {}, {1, 1, 1}, {}), samples, 1, 0), 2e307 / 65000 / 2);
}

TEST(HeightMap, Rows_along_x_transpose_the_samples)
{
    // Sizes around the side of the squares in which samples are moved.
    for (const auto& [columns, rows] : {std::pair<std::size_t, std::size_t>{3, 2}, {1, 70}, {64, 65}, {130, 63}})
    {
        std::vector<std::int16_t> samples(columns * rows);
        for (std::size_t i = 0; i < samples.size(); ++i)
        {
            samples[i] = static_cast<std::int16_t>(i);
        }
        const SampleGrid grid{"made.scan", columns, rows, ImageAxis::Rows, {1, 2, 3}, {4, 5, 6}, {}};
        const auto map = BuildHeightMap(grid, std::span<const std::int16_t>(samples), {});
        ASSERT_EQ(map.width, rows);
        ASSERT_EQ(map.length, columns);
        EXPECT_EQ(map.offsetMm, (Vector3{1, 2, 3}));
        EXPECT_EQ(map.scaleMm, (Vector3{4, 5, 6}));
        for (std::size_t row = 0; row < rows; ++row)
        {
            for (std::size_t column = 0; column < columns; ++column)
            {
                ASSERT_EQ(map.heights[column * rows + row], samples[row * columns + column]);
            }
        }
    }
}

TEST(HeightMap, Notes_of_the_grid_come_first)
{
    const std::vector<std::int16_t> samples{1};
    const SampleGrid grid{"made.scan", 1, 1, ImageAxis::Columns, {}, {1, 1, 1}, {"First."}};
    const auto map = BuildHeightMap(grid, std::span<const std::int16_t>(samples), {});
    ASSERT_GE(map.notes.size(), 2u);
    EXPECT_EQ(map.notes.front(), "First.");
}

TEST(HeightMap, Sizes_that_disagree_are_refused)
{
    const std::vector<std::int16_t> samples(6);
    const std::vector<std::uint8_t> mask(5, 1);
    const auto build = [&](std::size_t columns, std::size_t rows, std::span<const std::uint8_t> valid) {
        const SampleGrid grid{"made.scan", columns, rows, ImageAxis::Columns, {}, {1, 1, 1}, {}};
        return ErrorOf([&] { return BuildHeightMap(grid, std::span<const std::int16_t>(samples), valid); });
    };
    EXPECT_TRUE(Contains(build(3, 3, {}), "made.scan: size: "));
    EXPECT_TRUE(Contains(build(3, 0, {}), "made.scan: size: "));
    EXPECT_TRUE(Contains(build(4, 1, {}), "made.scan: size: "));
    EXPECT_TRUE(Contains(build(3, 2, mask), "made.scan: size: "));
}

TEST(HeightMap, Spacing_that_is_not_positive_is_refused)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (const Vector3& spacing : {Vector3{0, 1, 1}, {1, -1, 1}, {1, 1, std::nan("")}, {infinity, 1, 1}})
    {
        EXPECT_TRUE(Contains(ErrorOf([&] { return Row<std::int16_t>({1}, {}, spacing); }), "made.scan: spacing: "));
    }
}
} // namespace
