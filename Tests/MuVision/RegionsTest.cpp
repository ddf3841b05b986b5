#include <MuVision/Regions.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>

namespace
{
using namespace Mu::Vision;

constexpr double NULL_64F = -1.7976931348623157e308;

TEST(Null, of_a_double_is_the_lowest_finite_one)
{
    std::uint64_t bits = 0;
    const double null = GetNull<double>();
    std::memcpy(&bits, &null, sizeof bits);
    EXPECT_EQ(bits, 0xFFEFFFFFFFFFFFFFU);
    EXPECT_EQ(null, NULL_64F);
    EXPECT_FALSE(std::nan("") == null);
}

TEST(Null, of_integers_is_their_lowest)
{
    EXPECT_EQ(GetNull<short>(), -32768);
    EXPECT_EQ(GetNull<int>(), static_cast<int>(0x80000000U));
    EXPECT_EQ(GetNull<unsigned char>(), 0);
}

TEST(Region, of_three_dimensions_starts_without_centre_and_extent)
{
    const Region3d<double> region;
    EXPECT_EQ(region.x, NULL_64F);
    EXPECT_EQ(region.y, NULL_64F);
    EXPECT_EQ(region.z, NULL_64F);
    for (const double value : {region.width, region.length, region.height, region.xAngle, region.yAngle, region.zAngle})
    {
        EXPECT_EQ(value, 0);
    }
}

TEST(Region, of_two_dimensions_starts_without_centre_and_extent)
{
    const Region2d<double> region;
    EXPECT_EQ(region.x, NULL_64F);
    EXPECT_EQ(region.y, NULL_64F);
    EXPECT_EQ(region.width, 0);
    EXPECT_EQ(region.length, 0);
    EXPECT_EQ(region.angle, 0);
    const RegionXZ<double> profile;
    EXPECT_EQ(profile.x, NULL_64F);
    EXPECT_EQ(profile.z, NULL_64F);
    EXPECT_EQ(profile.width, 0);
    EXPECT_EQ(profile.height, 0);
    EXPECT_EQ(profile.angle, 0);
}

TEST(Region, in_corner_style_stands_at_its_lowest_corner)
{
    const Region3d<double> corner = ConvertRegionToCornerStyle({10, 20, 30, 4, 6, 8, 15, 25, 35});
    EXPECT_EQ(corner.x, 8);
    EXPECT_EQ(corner.y, 17);
    EXPECT_EQ(corner.z, 26);
    EXPECT_EQ(corner.width, 4);
    EXPECT_EQ(corner.length, 6);
    EXPECT_EQ(corner.height, 8);
    EXPECT_EQ(corner.xAngle, 15);
    EXPECT_EQ(corner.yAngle, 25);
    EXPECT_EQ(corner.zAngle, 35);
}

TEST(Region, in_corner_style_keeps_a_null_coordinate)
{
    const Region3d<double> corner = ConvertRegionToCornerStyle({NULL_64F, 20, NULL_64F, 1e300, 6, -1e300, 0, 0, 0});
    EXPECT_EQ(corner.x, NULL_64F);
    EXPECT_EQ(corner.y, 17);
    EXPECT_EQ(corner.z, NULL_64F);
}

TEST(Point, is_the_same_in_the_base_library)
{
    const zPoint3d64f point = ConvertPoint3dTozPoint({1.5, -2.5, NULL_64F});
    EXPECT_EQ(point.x, 1.5);
    EXPECT_EQ(point.y, -2.5);
    EXPECT_EQ(point.z, NULL_64F);
}

TEST(Null, counts_as_zero_where_it_neither_moves_nor_turns)
{
    EXPECT_EQ(NullAsZero(NULL_64F), 0);
    EXPECT_EQ(NullAsZero(-1.5), -1.5);
    EXPECT_TRUE(std::isnan(NullAsZero(std::nan(""))));
}
} // namespace
