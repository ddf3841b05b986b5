#pragma once

#include <zApi/zStream.h>

zDECLARE_TYPE(zFile);

// A file as a stream, buffered. Paths are UTF-8; offsets have 64 bits. An operation of a stream on a file fails,
// besides what `zStream.h` says, with 0 if the file is closed or not open for that, and with -982 if the system
// refuses. What a buffered write fails with may show as late as in a read, write, flush or close behind it.

/// The bits of a mode. Reading alone opens a file that is there; writing makes a new file over an old one; writing and
/// keeping opens a file with its content, or makes it: so 1, 2, 3, 6 and 7.
inline constexpr z32u zFILE_READ = 1;
inline constexpr z32u zFILE_WRITE = 2;
inline constexpr z32u zFILE_KEEP = 4;

extern "C"
{
    /// Opens a file, with the position at its beginning. The end of the object writes what is buffered and closes.
    /// -999 if `file` or `path` is null, or if the file, or the folder of a new one, is not there, -996 for another
    /// mode, -982 if the system refuses or `path` is a folder, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zFile_Construct(zFile* file, const char* path, z32u mode, zAlloc alloc);

    /// Writes what is buffered and closes the file, also if it fails; the object stays. Closing again succeeds.
    /// -997 if `file` is no `zFile`, -982 if the system refuses the last bytes.
    MU_PLATFORM_EXPORT zStatus zFile_Close(zFile file);

    /// True if there is a file of that name; a folder is none.
    MU_PLATFORM_EXPORT bool zFile_Exists(const char* path);

    /// Deletes a file. -999 if `path` is null or there is no file of that name, -982 if the system refuses.
    MU_PLATFORM_EXPORT zStatus zFile_Delete(const char* path);

    /// Writes a whole file over an old one. What could be written in part only is deleted.
    /// -999 if `path` is null, or `bytes` while `length` is not 0, or if the folder is not there, -982 if the system
    /// refuses or `path` is a folder.
    MU_PLATFORM_EXPORT zStatus zFile_Save(const char* path, const void* bytes, std::size_t length);
}
