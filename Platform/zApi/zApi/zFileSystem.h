#pragma once

#include <zApi/zTypes.h>

#include <filesystem>
#include <new>
#include <string>

// The border between the base library and the standard library's view of files.

/// The path of a UTF-8 text.
inline std::filesystem::path zFileSystem_Path(const char* text)
{
    const std::string_view view(text);
    return {std::u8string(view.begin(), view.end())};
}

/// The UTF-8 text of a path, with forward slashes.
inline std::string zFileSystem_Text(const std::filesystem::path& path)
{
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

/// Calls what returns a status; an exception becomes one: -998 if there is no memory, else -982.
template <typename Call>
[[nodiscard]] zStatus zFileSystem_Call(const Call& call) noexcept
{
    try
    {
        return call();
    }
    catch (const std::bad_alloc&)
    {
        return zERROR_MEMORY;
    }
    catch (...)
    {
        return zERROR_IO;
    }
}

/// Deletes what a failed save has left; a device is no file to be deleted.
[[nodiscard]] inline zStatus zFileSystem_DeletePart(const char* path) noexcept
{
    return zFileSystem_Call([path] {
        std::error_code error;
        const std::filesystem::path part = zFileSystem_Path(path);
        return std::filesystem::is_regular_file(part, error) && std::filesystem::remove(part, error) ? zOK : zERROR_IO;
    });
}
