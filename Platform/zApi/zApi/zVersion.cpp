#include <zApi/zFault.h>
#include <zApi/zVersion.h>

#include <array>
#include <charconv>
#include <cstring>

zStatus zVersion_Parse(zVersion* version, const char* text)
{
    zFAULT_GATE();
    if (version == nullptr || text == nullptr)
    {
        return zERROR_MISSING;
    }
    std::array<z32u, 4> parts{};
    const char* const end = text + std::strlen(text);
    for (std::size_t i = 0; i < parts.size(); ++i)
    {
        const auto [next, error] = std::from_chars(text, end, parts[i]);
        if (error != std::errc{} || parts[i] > 0xFFU)
        {
            return zERROR_FORMAT;
        }
        if (next == end)
        {
            *version = zVersion_Create(parts[0], parts[1], parts[2], parts[3]);
            return zOK;
        }
        if (*next != '.')
        {
            return zERROR_FORMAT;
        }
        text = next + 1;
    }
    return zERROR_FORMAT;
}
