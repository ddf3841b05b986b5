#pragma once

#include <zApi/zStream.h>

// For those who make stream types: the class of a stream begins with `zStreamClass`, and its constructor sets `stream`.

struct zStreamClass;

/// What a stream type brings along. Handle, pointers and sizes are checked before; the position is moved after.
struct zStreamOps
{
    /// Reads at the position at least `least` and at most `most` bytes, as many as there are, and stores their number
    /// in
    /// `*got`. -981 if fewer than `least` are there: then nothing is read.
    zStatus (*read)(zStreamClass* stream, void* bytes, std::size_t least, std::size_t most, std::size_t* got);
    /// Writes all of `size` bytes at the position.
    zStatus (*write)(zStreamClass* stream, const void* bytes, std::size_t size);
    /// Hands on what is buffered.
    zStatus (*flush)(zStreamClass* stream);
    /// Stores the number of bytes in all.
    zStatus (*length)(zStreamClass* stream, z64u* length);
};

struct zStreamClass : zObjectClass
{
    const zStreamOps* stream;
    z64u position;
};
