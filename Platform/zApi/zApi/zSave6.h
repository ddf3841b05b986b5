#pragma once

#include <zApi/zStream.h>

// Objects in a file: the container `.zDat6`, described byte by byte in Docs/Dat6.md. An object is saved with all that
// it holds; one that is held twice is saved twice. Objects lie at most `zSAVE6_MAX_DEPTH` deep in each other.

inline constexpr std::size_t zSAVE6_MAX_DEPTH = 64;

extern "C"
{
    /// Writes `object` to a file over an old one; a null handle is saved as that. What could be written in part only is
    /// deleted.
    /// -999 if `path` is null or the folder is not there, -992 if the type of an object or of an item cannot be saved,
    /// -984 if an item is not of its list's type, -997 if objects lie too deep in each other, -982 if the system
    /// refuses, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zSave6(zObject object, const char* path);

    /// Makes the object that `zSave6` wrote, with one reference, in `alloc`. Types of other libraries must be
    /// registered (`zTypeTable.h`). The file is not trusted: memory is asked for only as the bytes that are left
    /// justify it, and every failure leaves `*object` as it was and nothing behind.
    /// -999 if a pointer is null or the file is not there, -984 if it is no such file, is damaged or holds what cannot
    /// be, -981 if it ends too early, -989 for another version of the container, -992 for a type that is not known or
    /// not to be loaded, -982 if the system refuses, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zLoad6(zObject* object, const char* path, zAlloc alloc);

    /// Writes the same bytes to a stream, from its position on. -997 if `stream` is no `zStream`; else as `zSave6`, and
    /// what the stream fails with.
    MU_PLATFORM_EXPORT zStatus zSave6_ToStream(zObject object, zStream stream);

    /// The same from a stream: from its position to its end. -997 if `stream` is no `zStream`; else as `zLoad6`, and
    /// what the stream fails with.
    MU_PLATFORM_EXPORT zStatus zLoad6_FromStream(zObject* object, zStream stream, zAlloc alloc);
}
