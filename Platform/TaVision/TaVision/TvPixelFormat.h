#pragma once

#include <zApi/zTypes.h>

/// The code of a pixel format: one of the platform's own, 1 to 6, or a GenICam PFNC value. The set is open.
using TvPixelFormat = z32s;

inline constexpr TvPixelFormat TvPIXEL_FORMAT_GREY8 = 1;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_BGRX8 = 3;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_GREY16 = 5;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_BGR8_PACKED = 6;

inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO8 = 0x1080001;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO10 = 0x1100003;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO12 = 0x1100005;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO14 = 0x1100025;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_MONO16 = 0x1100007;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGB8 = 0x2180014;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGR8 = 0x2180015;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_RGBA8 = 0x2200016;
inline constexpr TvPixelFormat TvPIXEL_FORMAT_PFNC_BGRA8 = 0x2200017;
