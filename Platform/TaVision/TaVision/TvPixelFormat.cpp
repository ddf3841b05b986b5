#include <TaVision/TvPixelFormat.h>

#include <algorithm>
#include <array>

namespace
{
struct FormatSize
{
    TvPixelFormat format;
    std::size_t bytes; ///< of one pixel
};

constexpr std::array<FormatSize, 31> FORMAT_SIZES = {{
    {TvPIXEL_FORMAT_GREY8, 1},       {TvPIXEL_FORMAT_MOSAIC8, 1},     {TvPIXEL_FORMAT_BGRX8, 4},
    {TvPIXEL_FORMAT_MASK8, 1},       {TvPIXEL_FORMAT_GREY16, 2},      {TvPIXEL_FORMAT_BGR8_PACKED, 3},
    {TvPIXEL_FORMAT_PFNC_MONO8, 1},  {TvPIXEL_FORMAT_PFNC_MONO10, 2}, {TvPIXEL_FORMAT_PFNC_MONO12, 2},
    {TvPIXEL_FORMAT_PFNC_MONO14, 2}, {TvPIXEL_FORMAT_PFNC_MONO16, 2}, {TvPIXEL_FORMAT_PFNC_RGB8, 3},
    {TvPIXEL_FORMAT_PFNC_BGR8, 3},   {TvPIXEL_FORMAT_PFNC_RGBA8, 4},  {TvPIXEL_FORMAT_PFNC_BGRA8, 4},
    {TvPIXEL_FORMAT_PFNC_RGB10, 6},  {TvPIXEL_FORMAT_PFNC_BGR10, 6},  {TvPIXEL_FORMAT_PFNC_RGB12, 6},
    {TvPIXEL_FORMAT_PFNC_BGR12, 6},  {TvPIXEL_FORMAT_PFNC_RGB14, 6},  {TvPIXEL_FORMAT_PFNC_BGR14, 6},
    {TvPIXEL_FORMAT_PFNC_RGB16, 6},  {TvPIXEL_FORMAT_PFNC_BGR16, 6},  {TvPIXEL_FORMAT_PFNC_RGBA10, 8},
    {TvPIXEL_FORMAT_PFNC_BGRA10, 8}, {TvPIXEL_FORMAT_PFNC_RGBA12, 8}, {TvPIXEL_FORMAT_PFNC_BGRA12, 8},
    {TvPIXEL_FORMAT_PFNC_RGBA14, 8}, {TvPIXEL_FORMAT_PFNC_BGRA14, 8}, {TvPIXEL_FORMAT_PFNC_RGBA16, 8},
    {TvPIXEL_FORMAT_PFNC_BGRA16, 8},
}};

constexpr bool IsNative(TvPixelFormat format)
{
    return format >= TvPIXEL_FORMAT_GREY8 && format <= TvPIXEL_FORMAT_BGR8_PACKED;
}

// A PFNC code tells the bits of a pixel in its third byte.
static_assert(std::ranges::all_of(FORMAT_SIZES, [](const FormatSize& entry) {
    const auto code = static_cast<std::size_t>(entry.format);
    return IsNative(entry.format) || entry.bytes * 8 == ((code >> 16U) & 0xFFU);
}));

std::size_t PixelSize(TvPixelFormat format)
{
    const auto* const found = std::ranges::find(FORMAT_SIZES, format, &FormatSize::format);
    return found == FORMAT_SIZES.end() ? 0 : found->bytes;
}
} // namespace

bool TvPixelFormat_IsNative(TvPixelFormat format)
{
    return IsNative(format);
}

std::size_t TvPixelFormat_BufferSize(TvPixelFormat format, std::size_t width, std::size_t height,
                                     std::size_t rowAlignment)
{
    std::size_t row = 0;
    if (rowAlignment == 0 || __builtin_mul_overflow(PixelSize(format), width, &row))
    {
        return 0;
    }
    const std::size_t beyond = row % rowAlignment;
    const std::size_t filling = beyond == 0 ? 0 : rowAlignment - beyond;
    std::size_t bytes = 0;
    const bool tooLarge = __builtin_add_overflow(row, filling, &row) || __builtin_mul_overflow(row, height, &bytes);
    return tooLarge ? 0 : bytes;
}
