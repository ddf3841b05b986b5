#pragma once

#include <zApi/zTypes.h>

/// The code of a pixel format: one of the platform's own, 1 to 6, or a GenICam PFNC value. The set is open.
using TvPixelFormat = z32s;

// The platform's own formats. Channels are named in the order of their bytes.

inline constexpr TvPixelFormat TvPIXEL_FORMAT_GREY8 = 1;       ///< `z8u`, brightness
inline constexpr TvPixelFormat TvPIXEL_FORMAT_MOSAIC8 = 2;     ///< `z8u`, raw samples behind a colour filter
inline constexpr TvPixelFormat TvPIXEL_FORMAT_BGRX8 = 3;       ///< `zRgb`
inline constexpr TvPixelFormat TvPIXEL_FORMAT_MASK8 = 4;       ///< `z8u`, 0 or not
inline constexpr TvPixelFormat TvPIXEL_FORMAT_GREY16 = 5;      ///< `z16u`, brightness
inline constexpr TvPixelFormat TvPIXEL_FORMAT_BGR8_PACKED = 6; ///< `zRgb24`

// PFNC formats, unpacked: a channel takes one byte or two, low byte first.

inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO8 = 0x1080001;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO10 = 0x1100003;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO12 = 0x1100005;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO14 = 0x1100025;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO16 = 0x1100007;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGB8 = 0x2180014;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGR8 = 0x2180015;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGBA8 = 0x2200016;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGRA8 = 0x2200017;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGB10 = 0x2300018;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGR10 = 0x2300019;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGB12 = 0x230001A;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGR12 = 0x230001B;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGB14 = 0x230005E;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGR14 = 0x230004A;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGB16 = 0x2300033;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGR16 = 0x230004B;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGBA10 = 0x240005F;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGRA10 = 0x240004C;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGBA12 = 0x2400061;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGRA12 = 0x240004E;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGBA14 = 0x2400063;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGRA14 = 0x2400050;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGBA16 = 0x2400064;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGRA16 = 0x2400051;

extern "C"
{
    /// True for the platform's own formats, 1 to 6.
    MU_PLATFORM_EXPORT bool TvPixelFormat_IsNative(TvPixelFormat format);

    /// The bytes of an image of `width` by `height` pixels, each row filled up to a multiple of `rowAlignment` bytes.
    /// 0 for a format that is not named above, an alignment of 0, or a size that does not fit.
    MU_PLATFORM_EXPORT std::size_t TvPixelFormat_BufferSize(TvPixelFormat format, std::size_t width, std::size_t height,
                                                            std::size_t rowAlignment);
}
