#include <zApi/zArray1.h>
#include <zApi/zArray2.h>
#include <zApi/zArrayList.h>
#include <zApi/zFault.h>
#include <zApi/zImage.h>
#include <zApi/zList.h>
#include <zApi/zQueue.h>
#include <zApi/zString.h>
#include <zApi/zTypeTable.h>

#include <algorithm>
#include <array>
#include <mutex>

namespace
{
constexpr std::array<zType, 8> baseTypes = {zTypeOf(zObject), zTypeOf(zArray1), zTypeOf(zArray2), zTypeOf(zArrayList),
                                            zTypeOf(zImage),  zTypeOf(zList),   zTypeOf(zQueue),  zTypeOf(zString)};
constinit zTypeTable baseTable = {baseTypes};

constinit std::mutex tablesMutex;

/// The last link of the chain of tables, or the one that leads to `table`.
zTypeTable** LinkTo(const zTypeTable* table)
{
    static constinit zTypeTable* first = &baseTable;
    zTypeTable** link = &first;
    while (*link != nullptr && *link != table)
    {
        link = &(*link)->next;
    }
    return link;
}
} // namespace

zStatus zTypeTable_Register(zTypeTable* table)
{
    zFAULT_GATE();
    if (table == nullptr)
    {
        return zERROR_MISSING;
    }
    const std::lock_guard lock(tablesMutex);
    *LinkTo(table) = table;
    return zOK;
}

zType zTypeTable_Find(std::string_view name)
{
    const std::lock_guard lock(tablesMutex);
    for (const zTypeTable* table = *LinkTo(&baseTable); table != nullptr; table = table->next)
    {
        const auto found =
            std::ranges::find(table->types, name, [](zType type) { return std::string_view(type->name); });
        if (found != table->types.end())
        {
            return *found;
        }
    }
    return nullptr;
}
