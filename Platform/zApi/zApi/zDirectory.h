#pragma once

#include <zApi/zExport.h>
#include <zApi/zTypes.h>

// Folders. Paths are UTF-8.

extern "C"
{
    /// True if there is a folder of that name.
    MU_PLATFORM_EXPORT bool zDirectory_Exists(const char* path);

    /// Makes a folder and those above it that are missing. One that is there already is no failure.
    /// -999 if `path` is null or empty, -987 if a file has that name, -982 if the system refuses.
    MU_PLATFORM_EXPORT zStatus zDirectory_Create(const char* path);

    /// Appends the names of the files in a folder, without the folder, in bytewise order, to a `zArrayList` of
    /// `zString`. Folders in it are left out. The strings are made in the list's allocator. A failing call leaves the
    /// list as it was.
    /// -999 if `path` is null or there is no folder of that name, -997 if `list` is no `zArrayList`, -980 if its items
    /// are no strings, -982 if the system refuses, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zDirectory_ListFiles(const char* path, zArrayList list);

    /// Stores the folder of the running program, with forward slashes and none at its end.
    /// -999 if `out` is null, -997 if the path does not fit; then `out` is left as it was. -982 if the system refuses.
    MU_PLATFORM_EXPORT zStatus zDirectory_Application(char* out, std::size_t capacity);
}
