#include <zApi/zFile.h>
#include <zApi/zFileSystem.h>
#include <zApi/zNativeFile.h>
#include <zApi/zObjectType.h>
#include <zApi/zStreamClass.h>

#include <algorithm>
#include <cstring>

namespace
{
constexpr std::size_t BUFFER_SIZE = std::size_t{32} << 10U;
/// From here on bytes go straight between the file and the caller.
constexpr std::size_t DIRECT_SIZE = BUFFER_SIZE / 2;

/// The buffer holds `count` bytes of the file from `start` on; those from `firstDirty` to `lastDirty` are not yet
/// written.
struct Window
{
    unsigned char* bytes;
    z64u start;
    std::size_t count;
    std::size_t firstDirty;
    std::size_t lastDirty;

    [[nodiscard]] bool IsDirty() const
    {
        return lastDirty > firstDirty;
    }

    [[nodiscard]] bool Holds(z64u place, std::size_t size) const
    {
        return place >= start && place - start <= count && size <= count - (place - start);
    }

    /// True if `size` bytes at `place` can be written so that the window stays without a gap.
    [[nodiscard]] bool HasRoom(z64u place, std::size_t size) const
    {
        return place >= start && place - start <= count && size <= BUFFER_SIZE - (place - start);
    }

    [[nodiscard]] unsigned char* At(z64u place) const
    {
        return bytes + (place - start);
    }

    void MoveTo(z64u place, std::size_t held)
    {
        start = place;
        count = held;
    }
};

struct File : zStreamClass
{
    zNativeFile native;
    z32u mode;
    Window window;
};

File* As(zObject file)
{
    return zObjectType_Cast<File>(file, zTypeOf(zFile));
}

File& Self(zStreamClass* stream)
{
    return *static_cast<File*>(stream);
}

zStatus CheckOpenFor(const File& file, z32u modeBit)
{
    return file.native.IsOpen() && (file.mode & modeBit) != 0 ? zOK : zERROR_PRECONDITION;
}

zStatus WriteBack(File& file)
{
    Window& window = file.window;
    if (window.IsDirty())
    {
        zTRY(file.native.WriteAt(window.start + window.firstDirty, window.bytes + window.firstDirty,
                                 window.lastDirty - window.firstDirty));
    }
    window.firstDirty = 0;
    window.lastDirty = 0;
    return zOK;
}

zStatus Length(zStreamClass* stream, z64u* length)
{
    const File& file = Self(stream);
    if (!file.native.IsOpen())
    {
        return zERROR_PRECONDITION;
    }
    zTRY(file.native.Length(length));
    const z64u buffered = file.window.IsDirty() ? file.window.start + file.window.lastDirty : 0;
    *length = std::max(*length, buffered);
    return zOK;
}

/// Reads `size` bytes that the file has. -981 if it was cut in the meantime.
zStatus ReadPresent(File& file, void* bytes, std::size_t size)
{
    zTRY(WriteBack(file));
    Window& window = file.window;
    std::size_t got = 0;
    if (size >= DIRECT_SIZE)
    {
        zTRY(file.native.ReadAt(file.position, bytes, size, &got));
        return got == size ? zOK : zERROR_END;
    }
    window.MoveTo(file.position, 0);
    zTRY(file.native.ReadAt(file.position, window.bytes, BUFFER_SIZE, &got));
    window.MoveTo(file.position, got);
    if (got < size)
    {
        return zERROR_END;
    }
    std::memcpy(bytes, window.bytes, size);
    return zOK;
}

zStatus Read(zStreamClass* stream, void* bytes, std::size_t least, std::size_t most, std::size_t* got)
{
    File& file = Self(stream);
    zTRY(CheckOpenFor(file, zFILE_READ));
    *got = most;
    if (file.window.Holds(file.position, most))
    {
        if (most > 0)
        {
            std::memcpy(bytes, file.window.At(file.position), most);
        }
        return zOK;
    }
    z64u length = 0;
    zTRY(Length(stream, &length));
    const z64u left = length - std::min(length, file.position);
    if (left < least)
    {
        return zERROR_END;
    }
    *got = static_cast<std::size_t>(std::min<z64u>(left, most));
    return *got == 0 ? zOK : ReadPresent(file, bytes, *got);
}

zStatus Write(zStreamClass* stream, const void* bytes, std::size_t size)
{
    File& file = Self(stream);
    zTRY(CheckOpenFor(file, zFILE_WRITE));
    if (size == 0)
    {
        return zOK;
    }
    Window& window = file.window;
    if (size >= DIRECT_SIZE)
    {
        zTRY(WriteBack(file));
        window.MoveTo(0, 0); // what it holds may be overwritten
        return file.native.WriteAt(file.position, bytes, size);
    }
    if (!window.HasRoom(file.position, size))
    {
        zTRY(WriteBack(file));
        window.MoveTo(file.position, 0);
    }
    std::memcpy(window.At(file.position), bytes, size);
    const auto first = static_cast<std::size_t>(file.position - window.start);
    const std::size_t last = first + size;
    window.firstDirty = window.IsDirty() ? std::min(window.firstDirty, first) : first;
    window.lastDirty = std::max(window.lastDirty, last);
    window.count = std::max(window.count, last);
    return zOK;
}

zStatus Flush(zStreamClass* stream)
{
    File& file = Self(stream);
    return file.native.IsOpen() ? WriteBack(file) : zERROR_PRECONDITION;
}

constexpr zStreamOps streamOps = {Read, Write, Flush, Length};

zStatus Open(File& file, const char* path)
{
    void* buffer = nullptr;
    zTRY(zAlloc_Get(file.alloc, BUFFER_SIZE, &buffer));
    file.window.bytes = static_cast<unsigned char*>(buffer);
    return file.native.Open(path, file.mode);
}

zStatus Close(File& file) noexcept
{
    const zStatus written = WriteBack(file);
    file.window = {file.window.bytes, 0, 0, 0, 0};
    const zStatus closed = file.native.Close();
    return written == zOK ? closed : written;
}

void Release(zObject object) noexcept
{
    auto* const file = static_cast<File*>(object);
    static_cast<void>(Close(*file));
    static_cast<void>(zAlloc_Free(file->alloc, file->window.bytes));
}

bool IsMode(z32u mode)
{
    return mode == zFILE_READ || ((mode & zFILE_WRITE) != 0 && mode <= (zFILE_READ | zFILE_WRITE | zFILE_KEEP));
}

bool IsFile(const char* path)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(zFileSystem_Path(path), error);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

zStatus Delete(const char* path)
{
    std::error_code error;
    if (!IsFile(path))
    {
        return zERROR_MISSING;
    }
    return std::filesystem::remove(zFileSystem_Path(path), error) ? zOK : zERROR_IO;
}

constexpr zObjectOps fileOps = {Release, nullptr};
} // namespace

zDEFINE_OBJECT_TYPE(zFile, zStream, &fileOps);

zStatus zFile_Construct(zFile* file, const char* path, z32u mode, zAlloc alloc)
{
    zFAULT_GATE();
    if (file == nullptr || path == nullptr)
    {
        return zERROR_MISSING;
    }
    if (!IsMode(mode))
    {
        return zERROR_ENUM;
    }
    File* made = nullptr;
    zTRY(zObjectType_New(zTypeOf(zFile), alloc, &made));
    made->stream = &streamOps;
    made->mode = mode;
    return zObjectType_Finish(made, Open(*made, path), file);
}

zStatus zFile_Close(zFile file)
{
    // An injected failure still closes, so that a caller who drops the status leaks nothing.
    const zStatus status = zFAULT_STATUS();
    File* const object = As(file);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    const zStatus closed = Close(*object);
    return status == zOK ? closed : status;
}

bool zFile_Exists(const char* path)
{
    bool isThere = false;
    static_cast<void>(zFileSystem_Call([&] { return isThere = path != nullptr && IsFile(path), zOK; }));
    return isThere;
}

zStatus zFile_Delete(const char* path)
{
    zFAULT_GATE();
    return path == nullptr ? zERROR_MISSING : zFileSystem_Call([path] { return Delete(path); });
}

zStatus zFile_Save(const char* path, const void* bytes, std::size_t length)
{
    zFAULT_GATE();
    if (path == nullptr || (bytes == nullptr && length > 0))
    {
        return zERROR_MISSING;
    }
    zNativeFile native;
    zTRY(native.Open(path, zFILE_WRITE));
    const zStatus written = native.WriteAt(0, bytes, length);
    const zStatus closed = native.Close();
    if (written == zOK && closed == zOK)
    {
        return zOK;
    }
    static_cast<void>(zFileSystem_DeletePart(path));
    return written == zOK ? closed : written;
}
