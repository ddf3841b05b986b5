#include <zApi/zType.h>

#include <array>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

zDEFINE_VALUE_TYPE(z8u);
zDEFINE_VALUE_TYPE(z16u);
zDEFINE_VALUE_TYPE(z16s);
zDEFINE_VALUE_TYPE(z32s);
zDEFINE_VALUE_TYPE(z32u);
zDEFINE_VALUE_TYPE(z64s);
zDEFINE_VALUE_TYPE(z32f);
zDEFINE_VALUE_TYPE(z64f);
zDEFINE_VALUE_TYPE(zPoint16s);
zDEFINE_VALUE_TYPE(zPoint3d16s);
zDEFINE_VALUE_TYPE(zPoint32f);
zDEFINE_VALUE_TYPE(zPoint3d32f);
zDEFINE_VALUE_TYPE(zPoint64f);
zDEFINE_VALUE_TYPE(zPoint3d64f);
zDEFINE_VALUE_TYPE(zRgb);
zDEFINE_VALUE_TYPE(zRgb24);

constinit const zTypeInfo zObject_TypeInfo = {"zObject", nullptr, sizeof(zObject), nullptr, true};

namespace
{
constexpr const char* RAW_BYTES_NAME = "zBytes";
constexpr std::size_t COMMON_SIZES = 256;

template <std::size_t... Index>
constexpr std::array<zTypeInfo, sizeof...(Index)> MakeByteTypes(std::index_sequence<Index...>)
{
    return {zTypeInfo{RAW_BYTES_NAME, nullptr, Index + 1, nullptr, false}...};
}

constinit const std::array<zTypeInfo, COMMON_SIZES> commonByteTypes =
    MakeByteTypes(std::make_index_sequence<COMMON_SIZES>{});

struct RareByteType
{
    zTypeInfo type;
    RareByteType* next;
};

// Types live as long as the process, so entries are never freed.
constinit std::mutex rareByteTypesMutex;
constinit RareByteType* rareByteTypes = nullptr;
} // namespace

zType zBytes_GetType(std::size_t size)
{
    if (size == 0)
    {
        return nullptr;
    }
    if (size <= COMMON_SIZES)
    {
        return &commonByteTypes[size - 1];
    }
    const std::lock_guard lock(rareByteTypesMutex);
    for (const RareByteType* entry = rareByteTypes; entry != nullptr; entry = entry->next)
    {
        if (entry->type.size == size)
        {
            return &entry->type;
        }
    }
    auto* const added = new (std::nothrow) RareByteType{{RAW_BYTES_NAME, nullptr, size, nullptr, false}, rareByteTypes};
    if (added == nullptr)
    {
        return nullptr;
    }
    rareByteTypes = added;
    return &added->type;
}
