#pragma once

#include <zApi/zTypes.h>

/// A version in 32 bits: major in the top byte, then minor, revision, build.
using zVersion = z32u;

/// Packs four parts, each from 0 to 255.
constexpr zVersion zVersion_Create(z32u major, z32u minor, z32u revision, z32u build)
{
    return (major << 24U) | (minor << 16U) | (revision << 8U) | build;
}

constexpr z32u zVersion_Major(zVersion version)
{
    return version >> 24U;
}

constexpr z32u zVersion_Minor(zVersion version)
{
    return (version >> 16U) & 0xFFU;
}

extern "C"
{
    /// Reads "major.minor.revision.build", one to four decimal numbers from 0 to 255; missing ones count as 0.
    /// -999 if a pointer is null, -984 for any other text; then `*version` stays as it was.
    MU_PLATFORM_EXPORT zStatus zVersion_Parse(zVersion* version, const char* text);
}
