#include <zApi/zFault.h>
#include <zApi/zPath.h>

#include <cstring>
#include <string_view>

namespace
{
constexpr std::string_view SEPARATORS = "/\\";

bool IsSeparator(char character)
{
    return SEPARATORS.find(character) != std::string_view::npos;
}

/// Where the file name of a path begins.
std::size_t NameStart(std::string_view path)
{
    const std::size_t separator = path.find_last_of(SEPARATORS);
    return separator == std::string_view::npos ? 0 : separator + 1;
}

std::string_view FileName(std::string_view path)
{
    return path.substr(NameStart(path));
}

std::string_view Extension(std::string_view path)
{
    const std::string_view name = FileName(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? name.substr(name.size()) : name.substr(dot + 1);
}

std::string_view Directory(std::string_view path)
{
    const std::size_t start = NameStart(path);
    return path.substr(0, start > 1 ? start - 1 : start);
}

/// Stores a part of a path, which may stand in `out`.
zStatus Store(std::string_view part, char* out, std::size_t capacity)
{
    if (part.size() >= capacity)
    {
        return zERROR_PARAMETER;
    }
    std::memmove(out, part.data(), part.size());
    out[part.size()] = '\0';
    return zOK;
}

template <typename Part>
zStatus StorePart(const char* path, char* out, std::size_t capacity, const Part& part)
{
    return path == nullptr || out == nullptr ? zERROR_MISSING : Store(part(path), out, capacity);
}

zStatus Join(std::string_view front, std::string_view back, char* out, std::size_t capacity)
{
    const std::size_t length = front.size() + 1 + back.size();
    if (length >= capacity)
    {
        return zERROR_PARAMETER;
    }
    // The back first: it may stand where the front goes.
    std::memmove(out + front.size() + 1, back.data(), back.size());
    std::memmove(out, front.data(), front.size());
    out[front.size()] = '/';
    out[length] = '\0';
    return zOK;
}
} // namespace

zStatus zPath_Combine(const char* a, const char* b, char* out, std::size_t capacity)
{
    zFAULT_GATE();
    if (a == nullptr || b == nullptr || out == nullptr)
    {
        return zERROR_MISSING;
    }
    std::string_view front(a);
    std::string_view back(b);
    if (front.empty() || back.empty())
    {
        return Store(front.empty() ? back : front, out, capacity);
    }
    if (IsSeparator(front.back()))
    {
        front.remove_suffix(1);
    }
    if (IsSeparator(back.front()))
    {
        back.remove_prefix(1);
    }
    return Join(front, back, out, capacity);
}

zStatus zPath_Extension(const char* path, char* out, std::size_t capacity)
{
    zFAULT_GATE();
    return StorePart(path, out, capacity, Extension);
}

zStatus zPath_FileName(const char* path, char* out, std::size_t capacity)
{
    zFAULT_GATE();
    return StorePart(path, out, capacity, FileName);
}

zStatus zPath_Directory(const char* path, char* out, std::size_t capacity)
{
    zFAULT_GATE();
    return StorePart(path, out, capacity, Directory);
}
