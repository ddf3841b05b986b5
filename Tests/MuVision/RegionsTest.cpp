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
    for (const double value :
         {region.width, region.length, region.height, region.xAngle, region.yAngle, region.zAngle})
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
} // namespace
