#include <zApi/zFault.h>
#include <zApi/zMem.h>

#include <algorithm>
#include <cstring>

zStatus zMemCopy(void* to, const void* from, std::size_t size)
{
    zFAULT_GATE();
    if (size == 0)
    {
        return zOK;
    }
    if (to == nullptr || from == nullptr)
    {
        return zERROR_MISSING;
    }
    std::memcpy(to, from, size);
    return zOK;
}

zStatus zMemReverse(void* bytes, std::size_t size)
{
    zFAULT_GATE();
    if (size == 0)
    {
        return zOK;
    }
    if (bytes == nullptr)
    {
        return zERROR_MISSING;
    }
    auto* const first = static_cast<unsigned char*>(bytes);
    std::reverse(first, first + size);
    return zOK;
}

zStatus zMemReverseCopy(void* to, const void* from, std::size_t size)
{
    zFAULT_GATE();
    if (size == 0)
    {
        return zOK;
    }
    if (to == nullptr || from == nullptr)
    {
        return zERROR_MISSING;
    }
    const auto* const first = static_cast<const unsigned char*>(from);
    std::reverse_copy(first, first + size, static_cast<unsigned char*>(to));
    return zOK;
}
