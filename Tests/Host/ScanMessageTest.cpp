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

TEST(Scan_message, leaks_nothing_when_memory_runs_out_at_any_step)
{
    HeightMap map = SmallMap(2, {1, 2, 3, 4});
    map.intensity = {1, 2, 3, 4};
    const Support::CountingAlloc alloc;
    bool made = false;
    for (std::size_t request = 1; !made; ++request)
    {
        ASSERT_LT(request, 100U);
        alloc.FailAt(request);
        try
        {
            made = static_cast<bool>(MakeSurfaceMessage(map, 0, alloc.Get()));
        }
        catch (const Ta::Exception& failure)
        {
            EXPECT_EQ(failure.Status(), zERROR_MEMORY);
        }
        alloc.FailAt(0);
        EXPECT_EQ(alloc.LiveBlocks(), 0U) << request;
    }
}
} // namespace
