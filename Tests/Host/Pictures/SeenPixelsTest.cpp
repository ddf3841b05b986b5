#include <Host/Pictures/SeenPixels.h>

#include <gtest/gtest.h>

namespace
{
using namespace Mu::Host;

TEST(Seen_pixels, are_new_once)
{
    SeenPixels pixels({10, 20, 5, 3});
    EXPECT_TRUE(pixels.IsNew({12.1, 21.9}));
    EXPECT_FALSE(pixels.IsNew({12.9, 21.1}));
    EXPECT_TRUE(pixels.IsNew({13, 21}));
    EXPECT_TRUE(pixels.IsNew({12, 22}));
}

TEST(Seen_pixels, lie_in_the_area_with_its_edges)
{
    SeenPixels pixels({10, 20, 5, 3});
    EXPECT_TRUE(pixels.IsNew({15, 23}));
    EXPECT_TRUE(pixels.IsNew({10, 20}));
    EXPECT_FALSE(pixels.IsNew({9.9, 21}));
    EXPECT_FALSE(pixels.IsNew({12, 23.1}));
}
} // namespace
