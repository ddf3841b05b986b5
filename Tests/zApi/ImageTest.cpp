#include <Support/FaultWalk.h>

#include <TaApi/Object.h>
#include <zApi/zImage.h>
#include <zApi/zString.h>

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <limits>

using namespace Support;
using Handle = Ta::Object<void*>;

namespace
{
constexpr std::size_t HUGE_COUNT = std::numeric_limits<std::size_t>::max();

Handle Image(zType itemType, std::size_t width, std::size_t height, zAlloc alloc = nullptr)
{
    zImage image = nullptr;
    EXPECT_EQ(zImage_Construct(&image, itemType, width, height, alloc), zOK);
    return Handle(image);
}

z16s& PixelAt(const Handle& image, std::size_t row, std::size_t column)
{
    return static_cast<z16s*>(zImage_Row(image.Get(), row))[column];
}

/// Two rows of two pixels; the last one of each row of the buffer is no part of the image.
struct Foreign
{
    std::array<z16s, 6> pixels = {1, 2, -1, 3, 4, -1};

    [[nodiscard]] zStatus AttachTo(const Handle& image)
    {
        return zImage_Attach(image.Get(), pixels.data(), zTypeOf(z16s), 2, 2, 3 * sizeof(z16s));
    }
};

zStatus BuildAttachAndClone(zAlloc alloc)
{
    zImage image = nullptr;
    zImage clone = nullptr;
    std::array<z8u, 4> pixels{};
    zStatus status = zImage_Construct(&image, zTypeOf(z8u), 3, 3, alloc);
    status = status == zOK ? zImage_Attach(image, pixels.data(), zTypeOf(z8u), 2, 2, 2) : status;
    status = status == zOK ? xzObject_CloneImpl(&clone, image, alloc) : status;
    for (zObject object : {clone, image})
    {
        static_cast<void>(xzObject_DestroyImpl(object));
    }
    return status;
}
} // namespace

TEST(Image, Has_its_size_and_rows_without_gaps)
{
    const Handle image = Image(zTypeOf(zRgb), 5, 3);
    EXPECT_EQ(zImage_Width(image.Get()), 5U);
    EXPECT_EQ(zImage_Height(image.Get()), 3U);
    EXPECT_EQ(zImage_Stride(image.Get()), 20U);
    EXPECT_EQ(zImage_ItemType(image.Get()), zTypeOf(zRgb));
    const auto* const first = static_cast<unsigned char*>(zImage_Pixels(image.Get()));
    EXPECT_EQ(zImage_Row(image.Get(), 0), first);
    EXPECT_EQ(zImage_Row(image.Get(), 2), first + 40);
    EXPECT_EQ(zImage_Row(image.Get(), 3), nullptr);
}

TEST(Image, Without_pixels_it_has_no_rows)
{
    for (const auto& [width, height] : {std::pair{0U, 0U}, std::pair{0U, 3U}, std::pair{3U, 0U}})
    {
        const Handle image = Image(zTypeOf(z8u), width, height);
        EXPECT_EQ(zImage_Width(image.Get()), width);
        EXPECT_EQ(zImage_Height(image.Get()), height);
        EXPECT_EQ(zImage_Pixels(image.Get()), nullptr);
        EXPECT_EQ(zImage_Row(image.Get(), 0), nullptr);
    }
}

TEST(Image, Construct_refuses_what_it_cannot_make)
{
    zImage image = nullptr;
    EXPECT_EQ(zImage_Construct(nullptr, zTypeOf(z8u), 1, 1, nullptr), zERROR_MISSING);
    EXPECT_EQ(zImage_Construct(&image, nullptr, 1, 1, nullptr), zERROR_MISSING);
    EXPECT_EQ(zImage_Construct(&image, zTypeOf(zString), 1, 1, nullptr), zERROR_FORMAT);
    EXPECT_EQ(zImage_Construct(&image, zTypeOf(z16s), HUGE_COUNT, 1, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zImage_Construct(&image, zTypeOf(z8u), HUGE_COUNT / 2, 3, nullptr), zERROR_PARAMETER);
    EXPECT_EQ(zImage_Construct(&image, zTypeOf(z8u), HUGE_COUNT, 1, nullptr), zERROR_MEMORY);
    EXPECT_EQ(image, nullptr);
}

TEST(Image, Attached_pixels_are_seen_and_written_in_place)
{
    Foreign foreign;
    const Handle image = Image(zTypeOf(z8u), 0, 0);
    ASSERT_EQ(foreign.AttachTo(image), zOK);
    EXPECT_EQ(zImage_Width(image.Get()), 2U);
    EXPECT_EQ(zImage_Height(image.Get()), 2U);
    EXPECT_EQ(zImage_Stride(image.Get()), 6U);
    EXPECT_EQ(zImage_ItemType(image.Get()), zTypeOf(z16s));
    EXPECT_EQ(PixelAt(image, 1, 0), 3);
    PixelAt(image, 1, 1) = 9;
    EXPECT_EQ(foreign.pixels[4], 9);
}

TEST(Image, Attaching_frees_the_pixels_of_its_own)
{
    const CountingAlloc alloc;
    Foreign foreign;
    {
        const Handle image = Image(zTypeOf(z16s), 10, 10, alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 2U);
        ASSERT_EQ(foreign.AttachTo(image), zOK);
        EXPECT_EQ(alloc.LiveBlocks(), 1U);
        ASSERT_EQ(foreign.AttachTo(image), zOK);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
    EXPECT_EQ(foreign.pixels[0], 1);
}

TEST(Image, Attach_refuses_what_cannot_be_and_leaves_the_image_as_it_was)
{
    const Handle image = Image(zTypeOf(z16s), 1, 1);
    PixelAt(image, 0, 0) = 5;
    std::array<z16s, 4> pixels{};
    EXPECT_EQ(zImage_Attach(image.Get(), pixels.data(), nullptr, 2, 2, 4), zERROR_MISSING);
    EXPECT_EQ(zImage_Attach(image.Get(), nullptr, zTypeOf(z16s), 2, 2, 4), zERROR_MISSING);
    EXPECT_EQ(zImage_Attach(image.Get(), pixels.data(), zTypeOf(zString), 1, 1, 8), zERROR_FORMAT);
    EXPECT_EQ(zImage_Attach(image.Get(), pixels.data(), zTypeOf(z16s), 2, 2, 3), zERROR_PARAMETER);
    EXPECT_EQ(zImage_Attach(image.Get(), pixels.data(), zTypeOf(z16s), 2, HUGE_COUNT, 4), zERROR_PARAMETER);
    EXPECT_EQ(zImage_Attach(image.Get(), pixels.data(), zTypeOf(z16s), HUGE_COUNT, 1, 4), zERROR_PARAMETER);
    EXPECT_EQ(zImage_Width(image.Get()), 1U);
    EXPECT_EQ(PixelAt(image, 0, 0), 5);
}

TEST(Image, Nothing_can_be_attached)
{
    const Handle image = Image(zTypeOf(z16s), 2, 2);
    EXPECT_EQ(zImage_Attach(image.Get(), nullptr, zTypeOf(z8u), 0, 0, 0), zOK);
    EXPECT_EQ(zImage_Pixels(image.Get()), nullptr);
}

TEST(Image, Operations_refuse_other_handles)
{
    zString string = nullptr;
    ASSERT_EQ(zString_Construct(&string, "no image", nullptr), zOK);
    const Handle text(string);
    z8u pixel = 0;
    for (zObject handle : {text.Get(), zObject{nullptr}})
    {
        EXPECT_EQ(zImage_Attach(handle, &pixel, zTypeOf(z8u), 1, 1, 1), zERROR_PARAMETER);
        EXPECT_EQ(zImage_Width(handle), 0U);
        EXPECT_EQ(zImage_Height(handle), 0U);
        EXPECT_EQ(zImage_Stride(handle), 0U);
        EXPECT_EQ(zImage_ItemType(handle), nullptr);
        EXPECT_EQ(zImage_Pixels(handle), nullptr);
        EXPECT_EQ(zImage_Row(handle, 0), nullptr);
    }
}

TEST(Image, Clone_of_an_attached_image_owns_its_pixels_without_gaps)
{
    Foreign foreign;
    const Handle image = Image(zTypeOf(z8u), 0, 0);
    ASSERT_EQ(foreign.AttachTo(image), zOK);
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, image.Get(), nullptr), zOK);
    const Handle clone(cloned);
    foreign.pixels.fill(0);
    EXPECT_EQ(zImage_Stride(clone.Get()), 4U);
    const auto* const pixels = static_cast<z16s*>(zImage_Pixels(clone.Get()));
    const std::array<z16s, 4> expected = {1, 2, 3, 4};
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), pixels));
}

TEST(Image, Clone_of_an_empty_image_is_empty)
{
    const Handle image = Image(zTypeOf(z16s), 0, 7);
    zObject cloned = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&cloned, image.Get(), nullptr), zOK);
    const Handle clone(cloned);
    EXPECT_EQ(zImage_Height(clone.Get()), 7U);
    EXPECT_EQ(zImage_Pixels(clone.Get()), nullptr);
}

TEST(Image, Failing_requests_leave_nothing_behind)
{
    // Object and pixels, twice.
    EXPECT_EQ(WalkAllocations(BuildAttachAndClone), 4U);
}

TEST(Image, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    const std::size_t calls = WalkFaults(-77, [&alloc] {
        const zStatus status = BuildAttachAndClone(alloc.Get());
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        return status;
    });
    EXPECT_GE(calls, 7U);
}
