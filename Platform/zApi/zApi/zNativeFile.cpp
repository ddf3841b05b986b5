#include <zApi/zFault.h>
#include <zApi/zFile.h>
#include <zApi/zNativeFile.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static_assert(sizeof(off_t) == 8, "file offsets need 64 bits");

namespace
{
int OpenFlags(z32u mode)
{
    if ((mode & zFILE_WRITE) == 0)
    {
        return O_RDONLY;
    }
    const int access = (mode & zFILE_READ) != 0 ? O_RDWR : O_WRONLY;
    return access | O_CREAT | ((mode & zFILE_KEEP) != 0 ? 0 : O_TRUNC);
}

/// Calls until the system was not interrupted.
template <typename Call>
auto Retry(const Call& call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
    {
        result = call();
    }
    return result;
}

bool IsFolder(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

/// Transfers up to `size` bytes piece by piece with `call(offset, index, size)`, which is pread or pwrite, until the
/// end; stores the number transferred.
template <typename Call>
zStatus Transfer(z64u offset, std::size_t size, std::size_t* transferred, const Call& call)
{
    *transferred = 0;
    while (*transferred < size)
    {
        const std::size_t done = *transferred;
        const ssize_t count = Retry([&] { return call(static_cast<off_t>(offset + done), done, size - done); });
        if (count < 0)
        {
            return zERROR_IO;
        }
        if (count == 0)
        {
            return zOK;
        }
        *transferred += static_cast<std::size_t>(count);
    }
    return zOK;
}
} // namespace

zStatus zNativeFile::Open(const char* path, z32u mode)
{
    constexpr mode_t EVERYBODY = 0666; // less the user's mask
    descriptor = Retry([&] { return ::open(path, OpenFlags(mode) | O_CLOEXEC, EVERYBODY); });
    if (descriptor < 0)
    {
        return errno == ENOENT || errno == ENOTDIR ? zERROR_MISSING : zERROR_IO;
    }
    if (IsFolder(descriptor))
    {
        static_cast<void>(Close());
        return zERROR_IO;
    }
    return zOK;
}

zStatus zNativeFile::Close()
{
    if (!IsOpen())
    {
        return zOK;
    }
    // Not retried: after an interruption the descriptor is gone all the same.
    const int result = ::close(descriptor);
    descriptor = -1;
    return result == 0 || errno == EINTR ? zOK : zERROR_IO;
}

zStatus zNativeFile::ReadAt(z64u offset, void* bytes, std::size_t size, std::size_t* got) const
{
    return Transfer(offset, size, got, [this, bytes](off_t place, std::size_t index, std::size_t count) {
        return ::pread(descriptor, static_cast<unsigned char*>(bytes) + index, count, place);
    });
}

zStatus zNativeFile::WriteAt(z64u offset, const void* bytes, std::size_t size) const
{
    std::size_t written = 0;
    zTRY(Transfer(offset, size, &written, [this, bytes](off_t place, std::size_t index, std::size_t count) {
        return ::pwrite(descriptor, static_cast<const unsigned char*>(bytes) + index, count, place);
    }));
    return written == size ? zOK : zERROR_IO;
}

zStatus zNativeFile::Length(z64u* length) const
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
    {
        return zERROR_IO;
    }
    *length = static_cast<z64u>(status.st_size);
    return zOK;
}
