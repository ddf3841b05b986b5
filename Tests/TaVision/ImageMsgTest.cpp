#include <Support/MessageChecks.h>

#include <gtest/gtest.h>
#include <limits>
#include <ostream>

using namespace Support;

namespace
{
Ta::Object<void*> NewImage(std::size_t width, std::size_t height, std::size_t pixelSize, TvPixelFormat format)
{
    TvImageMsg msg = nullptr;
    EXPECT_EQ(TvImageMsg_Construct(&msg, width, height, pixelSize, format, 0, nullptr), zOK);
    return Ta::Object<void*>(msg);
}

std::vector<z8u> BytesOf(void* msg, std::size_t count)
{
    const auto* const bytes = static_cast<const z8u*>(TvImageMsg_Pixels(msg));
    return {bytes, bytes + count};
}

struct Case
{
    const char* name;
    TvPixelFormat format;
    std::size_t pixelSize;
    zType itemType;
};

void PrintTo(const Case& testCase, std::ostream* out)
{
    *out << testCase.name;
}

class Image_message : public testing::TestWithParam<Case>
{
};

constexpr std::size_t HUGE_COUNT = std::numeric_limits<std::size_t>::max();
} // namespace

TEST_P(Image_message, Has_height_rows_by_width_columns_of_the_format)
{
    const Case& c = GetParam();
    const auto msg = NewImage(3, 2, c.pixelSize, c.format);
    EXPECT_EQ(TvImageMsg_Width(msg.Get()), 3U);
    EXPECT_EQ(TvImageMsg_Height(msg.Get()), 2U);
    EXPECT_EQ(TvDataMsg_Width(msg.Get()), 3U);
    EXPECT_EQ(TvDataMsg_Length(msg.Get()), 2U);
    EXPECT_EQ(TvImageMsg_PixelFormat(msg.Get()), c.format);
    EXPECT_EQ(TvImageMsg_PixelSize(msg.Get()), c.pixelSize);
    zArray2 const pixels = TvDataMsg_RangeArray(msg.Get(), 0);
    EXPECT_EQ(zArray2_ItemType(pixels), c.itemType);
    EXPECT_EQ(zArray2_Length(pixels, 0), 2U);
    EXPECT_EQ(zArray2_Length(pixels, 1), 3U);
}

TEST_P(Image_message, New_bytes_are_zero_and_rows_follow_without_gaps)
{
    const Case& c = GetParam();
    const auto msg = NewImage(3, 2, c.pixelSize, c.format);
    EXPECT_EQ(BytesOf(msg.Get(), 6 * c.pixelSize), std::vector<z8u>(6 * c.pixelSize, 0));
    EXPECT_EQ(TvDataMsg_Ranges(msg.Get(), 0, 0), TvImageMsg_Pixels(msg.Get()));
    EXPECT_EQ(static_cast<z8u*>(TvDataMsg_Ranges(msg.Get(), 1, 0)) - static_cast<z8u*>(TvImageMsg_Pixels(msg.Get())),
              static_cast<std::ptrdiff_t>(3 * c.pixelSize));
}

INSTANTIATE_TEST_SUITE_P(, Image_message,
                         testing::Values(Case{"grey8", 1, 1, zTypeOf(z8u)}, Case{"mosaic8", 2, 1, zTypeOf(z8u)},
                                         Case{"bgrx8", 3, 4, zTypeOf(zRgb)}, Case{"mask8", 4, 1, zTypeOf(z8u)},
                                         Case{"grey16", 5, 2, zTypeOf(z16u)}, Case{"bgr8", 6, 3, zTypeOf(zRgb24)},
                                         Case{"mono12", TvPIXEL_FORMAT_PFNC_MONO12, 2, zBytes_GetType(2)},
                                         Case{"rgba16", TvPIXEL_FORMAT_PFNC_RGBA16, 8, zBytes_GetType(8)},
                                         Case{"not_known", 7, 5, zBytes_GetType(5)}),
                         CaseName());

TEST(ImageMsg, Pixel_stands_at_its_row_and_column)
{
    const auto grey = Image({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(BytesOf(grey.Get(), 6), (std::vector<z8u>{1, 2, 3, 4, 5, 6}));
    const auto colour = Image<zRgb24>({{{1, 2, 3}, {4, 5, 6}}}, TvPIXEL_FORMAT_BGR8_PACKED);
    EXPECT_EQ(static_cast<zRgb24*>(TvDataMsg_Ranges(colour.Get(), 0, 1))->g, 5);
    const auto words = Image<z16u>({{1, 1000}}, TvPIXEL_FORMAT_PFNC_MONO16);
    EXPECT_EQ(*static_cast<z16u*>(TvDataMsg_Ranges(words.Get(), 0, 1)), 1000);
}

TEST(ImageMsg, Keeps_the_camera_that_it_was_made_with)
{
    TvImageMsg msg = nullptr;
    ASSERT_EQ(TvImageMsg_Construct(&msg, 1, 1, 1, TvPIXEL_FORMAT_GREY8, -7, nullptr), zOK);
    const Ta::Object<void*> owner(msg);
    EXPECT_EQ(TvImageMsg_SourceId(msg), -7);
    EXPECT_EQ(TvImageMsg_SourceId(CloneOf(msg).Get()), -7);
}

TEST(ImageMsg, Without_rows_or_columns_has_no_pixels)
{
    for (const auto& [width, height] : {std::pair<std::size_t, std::size_t>{0, 0}, {0, 5}, {5, 0}})
    {
        const auto msg = NewImage(width, height, 1, TvPIXEL_FORMAT_GREY8);
        EXPECT_EQ(TvImageMsg_Width(msg.Get()), width);
        EXPECT_EQ(TvImageMsg_Height(msg.Get()), height);
        EXPECT_EQ(TvImageMsg_Pixels(msg.Get()), nullptr);
        EXPECT_EQ(TvDataMsg_Ranges(msg.Get(), 0, 0), nullptr);
        EXPECT_NE(TvDataMsg_RangeArray(msg.Get(), 0), nullptr);
    }
}

TEST(ImageMsg, Pixels_of_another_size_than_the_format_has_are_refused)
{
    TvImageMsg msg = nullptr;
    const auto construct = [&msg](std::size_t pixelSize, TvPixelFormat format) {
        return TvImageMsg_Construct(&msg, 2, 2, pixelSize, format, 0, nullptr);
    };
    EXPECT_EQ(construct(2, TvPIXEL_FORMAT_GREY8), zERROR_PARAMETER);
    EXPECT_EQ(construct(1, TvPIXEL_FORMAT_PFNC_MONO16), zERROR_PARAMETER);
    EXPECT_EQ(construct(0, TvPIXEL_FORMAT_GREY8), zERROR_PARAMETER);
    EXPECT_EQ(construct(0, 7), zERROR_PARAMETER);
    EXPECT_EQ(construct(TvIMAGE_MAX_PIXEL_SIZE + 1, 7), zERROR_PARAMETER);
    EXPECT_EQ(msg, nullptr);
}

TEST(ImageMsg, Absurd_sizes_are_refused)
{
    const CountingAlloc alloc;
    TvImageMsg msg = nullptr;
    for (const auto& [width, height] : {std::pair<std::size_t, std::size_t>{HUGE_COUNT, HUGE_COUNT},
                                        {HUGE_COUNT, 0},
                                        {0, HUGE_COUNT},
                                        {std::size_t{1} << 32U, std::size_t{1} << 32U},
                                        {TvMSG_MAX_ITEMS / 2 + 1, 1},
                                        {2, TvMSG_MAX_ITEMS / 2}})
    {
        EXPECT_EQ(TvImageMsg_Construct(&msg, width, height, 2, TvPIXEL_FORMAT_GREY16, 0, alloc.Get()), zERROR_PARAMETER)
            << width << " x " << height;
    }
    EXPECT_EQ(TvImageMsg_Construct(nullptr, 1, 1, 1, TvPIXEL_FORMAT_GREY8, 0, alloc.Get()), zERROR_MISSING);
    EXPECT_EQ(msg, nullptr);
    EXPECT_EQ(alloc.Requests(), 0U);
}

TEST(ImageMsg, Array_outlives_its_message_when_shared)
{
    Ta::Object<void*> pixels;
    {
        const auto msg = Image({{1, 2}});
        pixels.Reset(TvDataMsg_RangeArray(msg.Get(), 0), true);
    }
    EXPECT_EQ(xzObject_ReferenceCount(pixels.Get()), 1);
    EXPECT_EQ(*static_cast<z8u*>(zArray2_At(pixels.Get(), 0, 1)), 2);
}

TEST(ImageMsg, Clone_is_independent)
{
    const auto msg = Image({{1, 2}, {3, 4}});
    const auto clone = CloneOf(msg.Get());
    *static_cast<z8u*>(TvImageMsg_Pixels(msg.Get())) = 99;
    EXPECT_EQ(BytesOf(clone.Get(), 4), (std::vector<z8u>{1, 2, 3, 4}));
    EXPECT_EQ(TvImageMsg_PixelFormat(clone.Get()), TvPIXEL_FORMAT_GREY8);
    EXPECT_EQ(TvImageMsg_PixelSize(clone.Get()), 1U);
    EXPECT_EQ(TvImageMsg_Width(clone.Get()), 2U);
    EXPECT_EQ(TvImageMsg_Height(clone.Get()), 2U);
}

TEST(ImageMsg, Other_handles_have_no_pixels)
{
    const auto surface = Surface({{1, 2}});
    for (void* const handle : {surface.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(TvImageMsg_Width(handle), 0U);
        EXPECT_EQ(TvImageMsg_Height(handle), 0U);
        EXPECT_EQ(TvImageMsg_PixelFormat(handle), 0);
        EXPECT_EQ(TvImageMsg_PixelSize(handle), 0U);
        EXPECT_EQ(TvImageMsg_SourceId(handle), 0);
        EXPECT_EQ(TvImageMsg_Pixels(handle), nullptr);
    }
}

TEST(ImageMsg, Failures_leave_nothing_behind)
{
    // The message and an array of two blocks, and as many in the clone.
    EXPECT_EQ(ExpectCleanFailures([](zObject* msg, zAlloc alloc) {
                  return TvImageMsg_Construct(msg, 3, 2, 1, TvPIXEL_FORMAT_GREY8, 0, alloc);
              }),
              6U);
}
