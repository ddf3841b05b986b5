#pragma once

#include <zApi/zTypes.h>

/// A file of the system without a buffer: the one place that knows the system's calls. A plain value; its owner closes.
class zNativeFile
{
public:
    /// Opens `path`, UTF-8, in a checked mode of `zFile.h`. -999 if it, or the folder of a new file, is not there, -982
    /// if the system refuses or `path` is a folder.
    [[nodiscard]] zStatus Open(const char* path, z32u mode);

    /// -982 if the system reports late that a write failed. Closed afterwards in any case.
    [[nodiscard]] zStatus Close();

    [[nodiscard]] bool IsOpen() const
    {
        return descriptor >= 0;
    }

    /// Reads at `offset` up to `size` bytes and stores their number in `*got`; fewer only at the end. -982.
    [[nodiscard]] zStatus ReadAt(z64u offset, void* bytes, std::size_t size, std::size_t* got) const;

    /// Writes all of `size` bytes at `offset`. -982; then some of them may be written.
    [[nodiscard]] zStatus WriteAt(z64u offset, const void* bytes, std::size_t size) const;

    /// Stores the file's length. -982.
    [[nodiscard]] zStatus Length(z64u* length) const;

private:
    int descriptor = -1;
};
