#pragma once

#include <zApi/zType.h>

#include <span>
#include <string_view>

// Object types by name, for what is made from a file. A library lists its types in one constant-initialised table and
// offers an operation that registers it; a host calls that at its start. Nothing is registered behind the user's back:
// no code runs when a library is loaded.

/// The object types of a library. It stays where it is until the process ends.
struct zTypeTable
{
    std::span<const zType> types;
    zTypeTable* next = nullptr; ///< of the registered tables; used by the registry only
};

extern "C"
{
    /// Makes the types of `table` known by their names, after those that are known. Registering again changes nothing.
    /// From any thread. -999 if `table` is null.
    MU_PLATFORM_EXPORT zStatus zTypeTable_Register(zTypeTable* table);
}

/// The first known object type of that name, those of the base library included; null if there is none.
[[nodiscard]] MU_PLATFORM_EXPORT zType zTypeTable_Find(std::string_view name);
