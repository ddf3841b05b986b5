#pragma once

#include <zApi/zObject.h>

#include <limits>

// The content of a `.zDat6` container, for those who make object types that can be saved: the `save` of a type writes,
// and its `load` reads the same in the same order. Every number takes 8 bytes, so that no width is ever guessed. All
// operations fail with what the stream fails with; a reading one with -981 if fewer bytes are left than it needs, and
// with -984 if what it reads cannot be.

/// As the highest value of a number: there is none.
inline constexpr z64u zDAT6_ANY = std::numeric_limits<z64u>::max();
/// The largest raw record (`zBytes_GetType`) that is saved, in bytes: every size that a file names costs memory until
/// the process ends.
inline constexpr std::size_t zDAT6_MAX_RECORD = 4096;

extern "C"
{
    /// Writes bytes as they are.
    MU_PLATFORM_EXPORT zStatus zDat6_Write(zDat6Writer* writer, const void* bytes, std::size_t size);

    MU_PLATFORM_EXPORT zStatus zDat6_WriteNumber(zDat6Writer* writer, z64u number);

    /// Writes `length` and the characters.
    MU_PLATFORM_EXPORT zStatus zDat6_WriteText(zDat6Writer* writer, const char* text, std::size_t length);

    /// Writes the name and the size in bytes of an item type. -992 for a value type that a reader could not find by
    /// them.
    MU_PLATFORM_EXPORT zStatus zDat6_WriteType(zDat6Writer* writer, zType itemType);

    /// Writes an object with all that it holds, null included. -992 if its type is not saved, -997 if it lies deeper
    /// than `zSAVE6_MAX_DEPTH`.
    MU_PLATFORM_EXPORT zStatus zDat6_WriteObject(zDat6Writer* writer, zObject object);

    /// Writes items: values as they stand in memory, objects one by one. -984 if one is not of the type.
    MU_PLATFORM_EXPORT zStatus zDat6_WriteItems(zDat6Writer* writer, zType itemType, const void* items,
                                                std::size_t count);

    /// Reads bytes as they are.
    MU_PLATFORM_EXPORT zStatus zDat6_Read(zDat6Reader* reader, void* bytes, std::size_t size);

    /// Reads a number. -984 if it is more than `highest`.
    MU_PLATFORM_EXPORT zStatus zDat6_ReadNumber(zDat6Reader* reader, z64u highest, z64u* number);

    /// -981 if fewer bytes are left than `count` items of `itemSize` take. Comes before memory is asked for.
    MU_PLATFORM_EXPORT zStatus zDat6_CheckCount(zDat6Reader* reader, z64u count, std::size_t itemSize);

    /// Reads a number of items and checks it.
    MU_PLATFORM_EXPORT zStatus zDat6_ReadCount(zDat6Reader* reader, std::size_t itemSize, std::size_t* count);

    /// Reads an item type. -992 if it is not known.
    MU_PLATFORM_EXPORT zStatus zDat6_ReadType(zDat6Reader* reader, zType* itemType);

    /// Reads an object of `type` or of a type derived from it into `*object`, which may become null. -984 for another
    /// type or too deep a one, -992 if its type is not known or not loaded.
    MU_PLATFORM_EXPORT zStatus zDat6_ReadObject(zDat6Reader* reader, zType type, zAlloc alloc, zObject* object);

    /// Reads `count` items to a block; handles in it are null before. After a failure those not read still are.
    MU_PLATFORM_EXPORT zStatus zDat6_ReadItems(zDat6Reader* reader, zType itemType, void* items, std::size_t count,
                                               zAlloc alloc);
}

/// Writes a record that is made of nothing but doubles.
template <typename Record>
[[nodiscard]] zStatus zDat6_WriteReals(zDat6Writer* writer, const Record& record)
{
    static_assert(sizeof(Record) % sizeof(z64f) == 0 && alignof(Record) == alignof(z64f));
    return zDat6_Write(writer, &record, sizeof(Record));
}

/// Reads a record that is made of nothing but doubles.
template <typename Record>
[[nodiscard]] zStatus zDat6_ReadReals(zDat6Reader* reader, Record* record)
{
    static_assert(sizeof(Record) % sizeof(z64f) == 0 && alignof(Record) == alignof(z64f));
    return zDat6_Read(reader, record, sizeof(Record));
}

/// Writes what stands before the items of a list: their type and number. Fails as `zDat6_WriteType`.
[[nodiscard]] inline zStatus zDat6_WriteListHead(zDat6Writer* writer, zType itemType, std::size_t count)
{
    const zStatus status = zDat6_WriteType(writer, itemType);
    return status == zOK ? zDat6_WriteNumber(writer, count) : status;
}

/// Reads what stands before the items of a list. Fails as `zDat6_ReadType` and `zDat6_ReadCount`.
[[nodiscard]] inline zStatus zDat6_ReadListHead(zDat6Reader* reader, zType* itemType, std::size_t* count)
{
    const zStatus status = zDat6_ReadType(reader, itemType);
    return status == zOK ? zDat6_ReadCount(reader, (*itemType)->size, count) : status;
}

/// Writes a signed number in two's complement.
[[nodiscard]] inline zStatus zDat6_WriteSigned(zDat6Writer* writer, z64s number)
{
    return zDat6_WriteNumber(writer, static_cast<z64u>(number));
}

/// Reads a signed number of 32 bits. -984 if it has more.
[[nodiscard]] inline zStatus zDat6_ReadSigned(zDat6Reader* reader, z32s* number)
{
    z64u raw = 0;
    if (const zStatus status = zDat6_ReadNumber(reader, zDAT6_ANY, &raw); status != zOK)
    {
        return status;
    }
    *number = static_cast<z32s>(static_cast<z64s>(raw));
    return *number == static_cast<z64s>(raw) ? zOK : zERROR_FORMAT;
}
