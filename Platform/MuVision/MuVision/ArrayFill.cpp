#include <MuVision/ArrayFill.h>

#include <zApi/zArray1.h>
#include <zApi/zFault.h>

#include <algorithm>
#include <limits>

namespace Mu::Vision
{
namespace
{
template <typename Component>
void Fill(void* items, std::size_t bytes)
{
    std::fill_n(static_cast<Component*>(items), bytes / sizeof(Component), std::numeric_limits<Component>::lowest());
}

// Items are runs of components of one type.
struct Filler
{
    zType itemType;
    void (*fill)(void* items, std::size_t bytes);
};

constexpr Filler FILLERS[] = {
    {zTypeOf(z8u), Fill<z8u>},          {zTypeOf(z16u), Fill<z16u>},        {zTypeOf(z16s), Fill<z16s>},
    {zTypeOf(z32s), Fill<z32s>},        {zTypeOf(z32u), Fill<z32u>},        {zTypeOf(z64s), Fill<z64s>},
    {zTypeOf(z32f), Fill<z32f>},        {zTypeOf(z64f), Fill<z64f>},        {zTypeOf(zPoint16s), Fill<z16s>},
    {zTypeOf(zPoint3d16s), Fill<z16s>}, {zTypeOf(zPoint32f), Fill<z32f>},   {zTypeOf(zPoint3d32f), Fill<z32f>},
    {zTypeOf(zPoint64f), Fill<z64f>},   {zTypeOf(zPoint3d64f), Fill<z64f>}, {zTypeOf(zRgb), Fill<z8u>},
    {zTypeOf(zRgb24), Fill<z8u>},
};
} // namespace

zStatus Array1FillMin(void* array)
{
    zFAULT_GATE();
    const zType itemType = zArray1_ItemType(array);
    if (itemType == nullptr)
    {
        return zERROR_PARAMETER;
    }
    const auto* const filler = std::find_if(std::begin(FILLERS), std::end(FILLERS),
                                            [itemType](const Filler& entry) { return entry.itemType == itemType; });
    if (filler == std::end(FILLERS))
    {
        return zERROR_FORMAT;
    }
    filler->fill(zArray1_Items(array), zArray1_Length(array) * itemType->size);
    return zOK;
}
} // namespace Mu::Vision
