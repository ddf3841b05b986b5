#pragma once

#include <zApi/zStream.h>

zDECLARE_TYPE(zMemory);

// A stream in memory. It owns its bytes and grows as needed, or is attached to bytes of somebody else.

extern "C"
{
    /// Makes an empty stream that grows in `alloc`; a write that finds no memory there fails with -998 and writes
    /// nothing. -999 if `memory` is null, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zMemory_Construct(zMemory* memory, zAlloc alloc);

    /// Lets the stream read and write foreign bytes in place; they stay their owner's and must outlive their use, and
    /// bytes of its own are freed. `length` of them count as content, `capacity` may be written. An attached stream
    /// does not grow: a write beyond `capacity` fails with -997 and writes nothing. `bytes` must be writable only if
    /// the stream is written to. A failing call leaves the stream as it was.
    /// -997 if `memory` is no `zMemory` or unless position <= length <= capacity < 2^63, -999 if `bytes` is null and
    /// `capacity` is not 0.
    MU_PLATFORM_EXPORT zStatus zMemory_Attach(zMemory memory, void* bytes, std::size_t position, std::size_t length,
                                              std::size_t capacity);

    /// Makes room for `capacity` bytes in all; never shrinks.
    /// -997 for another handle or if the stream is attached and `capacity` is more than it has, -998 if there is no
    /// memory.
    MU_PLATFORM_EXPORT zStatus zMemory_Reserve(zMemory memory, std::size_t capacity);

    /// Sets length and position to 0; the room stays, so that the next content is written to warm memory.
    /// -997 for another handle.
    MU_PLATFORM_EXPORT zStatus zMemory_Purge(zMemory memory);

    /// The number of bytes; 0 if `memory` is no `zMemory`.
    MU_PLATFORM_EXPORT std::size_t zMemory_Length(zMemory memory);

    /// The byte at `offset` and those behind it, valid until the stream grows; null past the end.
    MU_PLATFORM_EXPORT void* zMemory_At(zMemory memory, std::size_t offset);
}
