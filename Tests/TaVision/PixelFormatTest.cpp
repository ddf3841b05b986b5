#include <Support/MessageChecks.h>

#include <gtest/gtest.h>
#include <limits>
#include <ostream>

using namespace Support;

namespace
{
struct Format
{
    const char* name;
    TvPixelFormat code;
    std::size_t channels;
    std::size_t bytesPerChannel;
};

void PrintTo(const Format& format, std::ostream* out)
{
    *out << format.name;
}

class Known_format : public testing::TestWithParam<Format>
{
protected:
    static std::size_t PixelSize()
    {
        return GetParam().channels * GetParam().bytesPerChannel;
    }
};

constexpr std::size_t HUGE_COUNT = std::numeric_limits<std::size_t>::max();
} // namespace

TEST_P(Known_format, Is_native_if_it_is_one_of_the_first_six_codes)
{
    EXPECT_EQ(TvPixelFormat_IsNative(GetParam().code), GetParam().code <= 6);
}

TEST_P(Known_format, Takes_its_channels_times_their_bytes)
{
    EXPECT_EQ(TvPixelFormat_BufferSize(GetParam().code, 1, 1, 1), PixelSize());
    EXPECT_EQ(TvPixelFormat_BufferSize(GetParam().code, 5, 7, 1), 35 * PixelSize());
}

TEST_P(Known_format, Rows_are_filled_up_to_the_alignment)
{
    const std::size_t row = 3 * PixelSize();
    for (const std::size_t alignment : {std::size_t{2}, std::size_t{4}, std::size_t{16}, std::size_t{7}})
    {
        std::size_t filled = row;
        while (filled % alignment != 0)
        {
            ++filled;
        }
        EXPECT_EQ(TvPixelFormat_BufferSize(GetParam().code, 3, 2, alignment), 2 * filled) << alignment;
    }
}

TEST_P(Known_format, Sizes_that_do_not_fit_give_nothing)
{
    const TvPixelFormat code = GetParam().code;
    EXPECT_EQ(TvPixelFormat_BufferSize(code, 3, 2, 0), 0U);
    EXPECT_EQ(TvPixelFormat_BufferSize(code, HUGE_COUNT, 2, 1), 0U);
    EXPECT_EQ(TvPixelFormat_BufferSize(code, 2, HUGE_COUNT, 1), 0U);
    EXPECT_EQ(TvPixelFormat_BufferSize(code, HUGE_COUNT / PixelSize(), 1, HUGE_COUNT - 1),
              PixelSize() == 1 || HUGE_COUNT % PixelSize() == 0 ? 0U : HUGE_COUNT - 1);
    EXPECT_EQ(TvPixelFormat_BufferSize(code, 0, 5, 4), 0U);
    EXPECT_EQ(TvPixelFormat_BufferSize(code, 5, 0, 4), 0U);
}

INSTANTIATE_TEST_SUITE_P(, Known_format,
                         testing::Values(Format{"grey8", 1, 1, 1}, Format{"mosaic8", 2, 1, 1}, Format{"bgrx8", 3, 4, 1},
                                         Format{"mask8", 4, 1, 1}, Format{"grey16", 5, 1, 2},
                                         Format{"bgr8_packed", 6, 3, 1}, Format{"mono8", 0x1080001, 1, 1},
                                         Format{"rgb8", 0x2180014, 3, 1}, Format{"bgr8", 0x2180015, 3, 1},
                                         Format{"rgba8", 0x2200016, 4, 1}, Format{"bgra8", 0x2200017, 4, 1},
                                         Format{"mono10", 0x1100003, 1, 2}, Format{"mono12", 0x1100005, 1, 2},
                                         Format{"mono16", 0x1100007, 1, 2}, Format{"mono14", 0x1100025, 1, 2},
                                         Format{"rgb10", 0x2300018, 3, 2}, Format{"bgr10", 0x2300019, 3, 2},
                                         Format{"rgb12", 0x230001A, 3, 2}, Format{"bgr12", 0x230001B, 3, 2},
                                         Format{"rgb16", 0x2300033, 3, 2}, Format{"bgr14", 0x230004A, 3, 2},
                                         Format{"bgr16", 0x230004B, 3, 2}, Format{"rgb14", 0x230005E, 3, 2},
                                         Format{"bgra10", 0x240004C, 4, 2}, Format{"bgra12", 0x240004E, 4, 2},
                                         Format{"bgra14", 0x2400050, 4, 2}, Format{"bgra16", 0x2400051, 4, 2},
                                         Format{"rgba10", 0x240005F, 4, 2}, Format{"rgba12", 0x2400061, 4, 2},
                                         Format{"rgba14", 0x2400063, 4, 2}, Format{"rgba16", 0x2400064, 4, 2}),
                         CaseName());

TEST(PixelFormat, Other_codes_are_neither_native_nor_of_a_known_size)
{
    for (const TvPixelFormat code : {0, 7, -1, 0x1080002, 0x10C0006, 0x2280060, std::numeric_limits<z32s>::max()})
    {
        EXPECT_FALSE(TvPixelFormat_IsNative(code)) << code;
        EXPECT_EQ(TvPixelFormat_BufferSize(code, 2, 2, 1), 0U) << code;
    }
}
