#include <Host/ScanMessage.h>

#include "HostTestFiles.h"

#include <Support/CountingAlloc.h>
#include <TaVision/TaVision.h>
#include <zRelay/zStamp.h>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

constexpr std::int16_t null = HeightMap::nullHeight;

TEST(Scan_message, is_a_resampled_surface_with_the_grid_of_the_map)
{
    const auto message = MakeSurfaceMessage(SmallMap(3, {1, 2, 3, 4, 5, null}), 7, nullptr);
    void* const surface = message.Get();
    ASSERT_TRUE(TvSurfaceMsg_IsResampled(surface));
    EXPECT_EQ(TvSurfaceMsg_Width(surface), 3U);
    EXPECT_EQ(TvSurfaceMsg_Length(surface), 2U);
    EXPECT_EQ(TvSurfaceMsg_Offset(surface).x, 10);
    EXPECT_EQ(TvSurfaceMsg_Offset(surface).z, 1);
    EXPECT_EQ(TvSurfaceMsg_Scale(surface).y, 0.25);
    EXPECT_EQ(*static_cast<z16s*>(TvSurfaceMsg_PointsAt(surface, 1, 0)), 4);
    EXPECT_EQ(*static_cast<z16s*>(TvSurfaceMsg_PointsAt(surface, 1, 2)), zNULL_16S);
    EXPECT_FALSE(TvSurfaceMsg_HasIntensity(surface));
    EXPECT_EQ(TvDataMsg_Stamp(surface).sequence, 7U);
}

TEST(Scan_message, has_a_box_from_first_to_last_sample_and_lowest_to_highest_height)
{
    // Heights 1 + 0.01 * (-100 .. 300) mm.
    const auto message = MakeSurfaceMessage(SmallMap(3, {-100, 2, 300, null, null, null}), 0, nullptr);
    const zRect3d64f box = TvDataMsg_BoundingBox(message.Get());
    EXPECT_DOUBLE_EQ(box.x, 10.5);
    EXPECT_DOUBLE_EQ(box.width, 1);
    EXPECT_DOUBLE_EQ(box.y, 20.125);
    EXPECT_DOUBLE_EQ(box.length, 0.25);
    EXPECT_DOUBLE_EQ(box.z, 2);
    EXPECT_DOUBLE_EQ(box.height, 4);
}

TEST(Scan_message, without_a_valid_height_has_a_flat_box_at_zero)
{
    const auto message = MakeSurfaceMessage(SmallMap(2, {null, null}), 0, nullptr);
    const zRect3d64f box = TvDataMsg_BoundingBox(message.Get());
    EXPECT_DOUBLE_EQ(box.x, 10.25);
    EXPECT_EQ(box.z, 0);
    EXPECT_EQ(box.height, 0);
    EXPECT_EQ(box.length, 0);
}

TEST(Scan_message, carries_the_intensities_of_the_map)
{
    HeightMap map = SmallMap(2, {1, 2, 3, 4});
    map.intensity = {10, 20, 30, 255};
    const auto message = MakeSurfaceMessage(map, 0, nullptr);
    ASSERT_EQ(TvSurfaceMsg_IntensityType(message.Get()), zTypeOf(z8u));
    EXPECT_EQ(*static_cast<z8u*>(TvSurfaceMsg_IntensityAt(message.Get(), 1, 1)), 255);
    EXPECT_EQ(*static_cast<z8u*>(TvSurfaceMsg_IntensityAt(message.Get(), 0, 1)), 20);
}

PointMap SmallCloud()
{
    PointMap map;
    map.width = 2;
    map.length = 2;
    map.points = {{1, 2, 3}, {null, null, null}, {-7, 4, 9}, {5, 2, -1}};
    map.offsetMm = {10, 20, 1};
    map.scaleMm = {0.5, 0.25, 0.01};
    map.validCount = 3;
    return map;
}

ProfileScan SmallProfile(std::vector<std::int16_t> heights, std::vector<std::int16_t> positions)
{
    ProfileScan scan;
    scan.heights = std::move(heights);
    scan.positions = std::move(positions);
    scan.offsetMm = {10, 20, 1};
    scan.scaleMm = {0.5, 1, 0.01};
    return scan;
}

TEST(Scan_message, of_a_cloud_is_an_unresampled_surface_with_its_points)
{
    const auto data = MakeScanData(SmallCloud(), 3, nullptr);
    void* const surface = data.message.Get();
    EXPECT_EQ(data.type, TaPipe::PipeDataType::PointSurface);
    ASSERT_EQ(TvSurfaceMsg_PointType(surface), zTypeOf(zPoint3d16s));
    const auto* const points = static_cast<const zPoint3d16s*>(TvSurfaceMsg_Points(surface));
    EXPECT_EQ(points[1].x, zNULL_16S);
    EXPECT_EQ(points[1].z, zNULL_16S);
    EXPECT_EQ(points[2].x, -7);
    EXPECT_EQ(points[2].y, 4);
    EXPECT_EQ(points[2].z, 9);
    EXPECT_EQ(TvDataMsg_Stamp(surface).sequence, 3U);
}

TEST(Scan_message, of_a_cloud_has_a_box_around_its_valid_points)
{
    // x: 10 + 0.5 * (-7 .. 5), y: 20 + 0.25 * (2 .. 4), z: 1 + 0.01 * (-1 .. 9)
    const auto message = MakeSurfaceMessage(SmallCloud(), 0, nullptr);
    const zRect3d64f box = TvDataMsg_BoundingBox(message.Get());
    EXPECT_DOUBLE_EQ(box.x, 9.5);
    EXPECT_DOUBLE_EQ(box.width, 6);
    EXPECT_DOUBLE_EQ(box.y, 20.75);
    EXPECT_DOUBLE_EQ(box.length, 0.5);
    EXPECT_DOUBLE_EQ(box.z, 1.04);
    EXPECT_NEAR(box.height, 0.1, 1e-12);
}

TEST(Scan_message, of_an_even_profile_holds_heights_on_a_grid)
{
    const auto data = MakeScanData(SmallProfile({-100, null, 300}, {}), 0, nullptr);
    void* const profile = data.message.Get();
    EXPECT_EQ(data.type, TaPipe::PipeDataType::UniformProfile);
    ASSERT_EQ(TvProfileMsg_PointType(profile), zTypeOf(z16s));
    EXPECT_EQ(static_cast<const z16s*>(TvProfileMsg_Points(profile))[2], 300);
    const zRect3d64f box = TvDataMsg_BoundingBox(profile);
    EXPECT_DOUBLE_EQ(box.x, 10.5);
    EXPECT_DOUBLE_EQ(box.width, 1);
    EXPECT_DOUBLE_EQ(box.y, 20);
    EXPECT_EQ(box.length, 0);
    EXPECT_DOUBLE_EQ(box.z, 2);
    EXPECT_DOUBLE_EQ(box.height, 4);
}

TEST(Scan_message, of_a_profile_with_positions_holds_points)
{
    ProfileScan scan = SmallProfile({-100, null, 300}, {8, null, -4});
    scan.intensity = {1, 2, 3};
    const auto data = MakeScanData(scan, 0, nullptr);
    void* const profile = data.message.Get();
    EXPECT_EQ(data.type, TaPipe::PipeDataType::PointProfile);
    ASSERT_EQ(TvProfileMsg_PointType(profile), zTypeOf(zPoint16s));
    EXPECT_EQ(static_cast<const zPoint16s*>(TvProfileMsg_Points(profile))[2].x, -4);
    EXPECT_EQ(static_cast<const zPoint16s*>(TvProfileMsg_Points(profile))[2].y, 300);
    EXPECT_EQ(static_cast<const z8u*>(TvProfileMsg_Intensity(profile))[2], 3);
    EXPECT_DOUBLE_EQ(TvDataMsg_BoundingBox(profile).x, 11);
    EXPECT_DOUBLE_EQ(TvDataMsg_BoundingBox(profile).width, 6);
}

TEST(Scan_message, of_an_image_holds_its_pixels)
{
    const auto data = MakeScanData(ImageScan{2, 3, {1, 2, 3, 4, 5, 255}, {}}, 0, nullptr);
    EXPECT_EQ(data.type, TaPipe::PipeDataType::Image);
    EXPECT_EQ(TvImageMsg_Width(data.message.Get()), 2U);
    EXPECT_EQ(TvImageMsg_Height(data.message.Get()), 3U);
    EXPECT_EQ(TvImageMsg_PixelFormat(data.message.Get()), TvPIXEL_FORMAT_GREY8);
    EXPECT_EQ(static_cast<const z8u*>(TvImageMsg_Pixels(data.message.Get()))[5], 255);
}

class ScanMessageMemory : public testing::TestWithParam<Scan>
{
};

TEST_P(ScanMessageMemory, leaks_nothing_when_memory_runs_out_at_any_step)
{
    const Support::CountingAlloc alloc;
    bool made = false;
    for (std::size_t request = 1; !made; ++request)
    {
        ASSERT_LT(request, 100U);
        alloc.FailAt(request);
        try
        {
            made = static_cast<bool>(MakeScanData(GetParam(), 0, alloc.Get()).message);
        }
        catch (const Ta::Exception& failure)
        {
            EXPECT_EQ(failure.Status(), zERROR_MEMORY);
        }
        alloc.FailAt(0);
        EXPECT_EQ(alloc.LiveBlocks(), 0U) << request;
    }
}

Scan WithIntensity(auto scan)
{
    scan.intensity = {1, 2, 3, 4};
    return scan;
}

INSTANTIATE_TEST_SUITE_P(Of, ScanMessageMemory,
                         testing::Values(WithIntensity(SmallMap(2, {1, 2, 3, 4})), WithIntensity(SmallCloud()),
                                         WithIntensity(SmallProfile({1, 2, 3, 4}, {})),
                                         WithIntensity(SmallProfile({1, 2, 3, 4}, {1, 2, 3, 4})),
                                         Scan(ImageScan{1, 2, {1, 2}, {}})));
} // namespace
