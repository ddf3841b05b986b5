#pragma once

#include <zApi/zExport.h>
#include <zApi/zTypes.h>

// Paths are UTF-8 text. '/' and '\\' separate on every system; '/' is written. Capacities count the terminator. A
// result that does not fit leaves `out` as it was, as part of a path would name something else.

extern "C"
{
    /// Stores `a` and `b` with exactly one separator between them, or the other one if one is empty: the result lies
    /// below `a` also if `b` begins with a separator. `out` may be `a` or `b`.
    /// -999 if a pointer is null, -997 if the result does not fit.
    MU_PLATFORM_EXPORT zStatus zPath_Combine(const char* a, const char* b, char* out, std::size_t capacity);

    /// Stores what follows the last dot of the file name; nothing if there is none, or only one in front of a name.
    /// `out` may be `path`. -999 if a pointer is null, -997 if the result does not fit.
    MU_PLATFORM_EXPORT zStatus zPath_Extension(const char* path, char* out, std::size_t capacity);

    /// Stores what follows the last separator; the whole path if there is none, nothing if it is the last character.
    /// `out` may be `path`. -999 if a pointer is null, -997 if the result does not fit.
    MU_PLATFORM_EXPORT zStatus zPath_FileName(const char* path, char* out, std::size_t capacity);

    /// Stores what stands before the last separator; nothing if there is none, "/" for a file in the root. `out` may be
    /// `path`. -999 if a pointer is null, -997 if the result does not fit.
    MU_PLATFORM_EXPORT zStatus zPath_Directory(const char* path, char* out, std::size_t capacity);
}
