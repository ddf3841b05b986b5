#include <zApi/zDat6.h>
#include <zApi/zFault.h>
#include <zApi/zSave6.h>
#include <zApi/zTypeTable.h>

#include <xxhash.h>
#if defined(__x86_64__)
#include <xxh_x86dispatch.h> // XXH3_64bits_update then takes the widest vectors that the processor has
#endif

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <string_view>

namespace
{
/// The checksum of the bytes so far. The state lies where its own library puts it, which alone knows its size.
class Checksum
{
public:
    [[nodiscard]] zStatus Init()
    {
        state.reset(XXH3_createState());
        return state != nullptr && XXH3_64bits_reset(state.get()) == XXH_OK ? zOK : zERROR_MEMORY;
    }

    void Add(const void* bytes, std::size_t size)
    {
        XXH3_64bits_update(state.get(), bytes, size);
    }

    [[nodiscard]] z64u Value() const
    {
        return XXH3_64bits_digest(state.get());
    }

private:
    struct Free
    {
        void operator()(XXH3_state_t* freed) const
        {
            XXH3_freeState(freed);
        }
    };

    std::unique_ptr<XXH3_state_t, Free> state;
};
} // namespace

// Items stand in the file as they stand in memory.
static_assert(std::endian::native == std::endian::little && sizeof(zObject) == sizeof(z64u));

struct zDat6Writer
{
    zStream stream;
    Checksum checksum;
    std::size_t depth;
};

struct zDat6Reader
{
    zStream stream;
    Checksum checksum;
    std::size_t depth;
    z64u left; ///< bytes before the checksum
};

namespace
{
constexpr std::array<unsigned char, 8> MAGIC = {'z', 'D', 'a', 't', '6', '\r', '\n', 0x1A};
constexpr z64u VERSION = 1;
constexpr std::size_t CHECKSUM_SIZE = sizeof(z64u);
/// Bytes that are handed on, and hashed after that, while they are in the cache. Hashed first, they make saving take a
/// third longer: the hash waits for them.
constexpr std::size_t CHUNK = std::size_t{128} << 10U;
constexpr std::size_t MAX_TYPE_NAME = 64;

constexpr std::array<zType, 16> valueTypes = {
    zTypeOf(z8u),       zTypeOf(z16u),      zTypeOf(z16s),        zTypeOf(z32s),
    zTypeOf(z32u),      zTypeOf(z64s),      zTypeOf(z32f),        zTypeOf(z64f),
    zTypeOf(zPoint16s), zTypeOf(zPoint32f), zTypeOf(zPoint3d16s), zTypeOf(zPoint3d32f),
    zTypeOf(zPoint64f), zTypeOf(zRgb),      zTypeOf(zPoint3d64f), zTypeOf(zRgb24)};
constexpr std::string_view RAW_RECORD = "zBytes";

/// Calls `step(place, size)`, which returns a status, for one piece of a block after the other.
template <typename Byte, typename Step>
zStatus ForEachChunk(Byte* bytes, std::size_t size, const Step& step)
{
    for (std::size_t done = 0; done < size; done += CHUNK)
    {
        zTRY(step(bytes + done, std::min(CHUNK, size - done)));
    }
    return zOK;
}

/// The value type of that name and size, null if there is none.
zType FindValueType(std::string_view name, z64u size)
{
    if (name == RAW_RECORD)
    {
        return size <= zDAT6_MAX_RECORD ? zBytes_GetType(size) : nullptr;
    }
    const auto* const found =
        std::ranges::find_if(valueTypes, [=](zType type) { return name == type->name && size == type->size; });
    return found == valueTypes.end() ? nullptr : *found;
}

zType FindItemType(std::string_view name, z64u size)
{
    const zType value = FindValueType(name, size);
    return value == nullptr && size == sizeof(zObject) ? zTypeTable_Find(name) : value;
}

/// A type's name, read to a buffer of its own.
class TypeName
{
public:
    [[nodiscard]] zStatus Read(zDat6Reader* reader)
    {
        z64u stored = 0;
        zTRY(zDat6_ReadNumber(reader, MAX_TYPE_NAME, &stored));
        length = stored;
        return zDat6_Read(reader, chars.data(), length);
    }

    [[nodiscard]] std::string_view View() const
    {
        return {chars.data(), length};
    }

private:
    std::array<char, MAX_TYPE_NAME> chars{};
    std::size_t length = 0;
};

zStatus WriteName(zDat6Writer* writer, zType type)
{
    return zDat6_WriteText(writer, type->name, std::strlen(type->name));
}

bool IsNameSaved(zType type)
{
    return std::strlen(type->name) <= MAX_TYPE_NAME;
}

bool IsOf(zObject object, zType type)
{
    return object == nullptr || xzCastClass_ObjectIs(object, type);
}

bool IsDerived(zType type, zType base)
{
    for (; type != nullptr && type != base; type = type->base)
    {
    }
    return type != nullptr;
}

/// Checks that what is left can be a container, and reads its head.
zStatus Open(zDat6Reader& reader)
{
    z64u length = 0;
    zTRY(zStream_Length(reader.stream, &length));
    const z64u size = length - zStream_Tell(reader.stream);
    if (size < CHECKSUM_SIZE)
    {
        return zERROR_END;
    }
    reader.left = size - CHECKSUM_SIZE;
    std::array<unsigned char, MAGIC.size()> magic{};
    zTRY(zDat6_Read(&reader, magic.data(), magic.size()));
    if (magic != MAGIC)
    {
        return zERROR_FORMAT;
    }
    z64u version = 0;
    zTRY(zDat6_ReadNumber(&reader, zDAT6_ANY, &version));
    return version == VERSION ? zOK : zERROR_VERSION;
}

/// Checks that the content ends where it should, and its checksum.
zStatus Close(zDat6Reader& reader)
{
    if (reader.left != 0)
    {
        return zERROR_FORMAT;
    }
    z64u stored = 0;
    zTRY(zStream_Read(reader.stream, &stored, sizeof(stored)));
    return stored == reader.checksum.Value() ? zOK : zERROR_FORMAT;
}
} // namespace

zStatus zDat6_Write(zDat6Writer* writer, const void* bytes, std::size_t size)
{
    zFAULT_GATE();
    return ForEachChunk(static_cast<const unsigned char*>(bytes), size, [=](const void* place, std::size_t count) {
        zTRY(zStream_Write(writer->stream, place, count));
        writer->checksum.Add(place, count);
        return zOK;
    });
}

zStatus zDat6_WriteNumber(zDat6Writer* writer, z64u number)
{
    return zDat6_Write(writer, &number, sizeof(number));
}

zStatus zDat6_WriteText(zDat6Writer* writer, const char* text, std::size_t length)
{
    zTRY(zDat6_WriteNumber(writer, length));
    return zDat6_Write(writer, text, length);
}

zStatus zDat6_WriteType(zDat6Writer* writer, zType itemType)
{
    const bool isSaved =
        itemType->isObject ? IsNameSaved(itemType) : FindValueType(itemType->name, itemType->size) == itemType;
    if (!isSaved)
    {
        return zERROR_INTERFACE;
    }
    zTRY(WriteName(writer, itemType));
    return zDat6_WriteNumber(writer, itemType->size);
}

zStatus zDat6_WriteObject(zDat6Writer* writer, zObject object)
{
    zFAULT_GATE();
    if (object == nullptr)
    {
        return zDat6_WriteNumber(writer, 0);
    }
    const zType type = xzObject_Type(object);
    if (type->ops == nullptr || type->ops->save == nullptr || !IsNameSaved(type))
    {
        return zERROR_INTERFACE;
    }
    if (writer->depth == zSAVE6_MAX_DEPTH)
    {
        return zERROR_PARAMETER;
    }
    zTRY(WriteName(writer, type));
    ++writer->depth;
    const zStatus saved = type->ops->save(object, writer);
    --writer->depth;
    return saved;
}

zStatus zDat6_WriteItems(zDat6Writer* writer, zType itemType, const void* items, std::size_t count)
{
    if (!itemType->isObject)
    {
        return zDat6_Write(writer, items, count * itemType->size);
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        zObject const item = static_cast<const zObject*>(items)[i];
        if (!IsOf(item, itemType))
        {
            return zERROR_FORMAT;
        }
        zTRY(zDat6_WriteObject(writer, item));
    }
    return zOK;
}

zStatus zDat6_Read(zDat6Reader* reader, void* bytes, std::size_t size)
{
    zFAULT_GATE();
    if (size > reader->left)
    {
        return zERROR_END;
    }
    return ForEachChunk(static_cast<unsigned char*>(bytes), size, [=](void* place, std::size_t count) {
        zTRY(zStream_Read(reader->stream, place, count));
        reader->checksum.Add(place, count);
        reader->left -= count;
        return zOK;
    });
}

zStatus zDat6_ReadNumber(zDat6Reader* reader, z64u highest, z64u* number)
{
    zTRY(zDat6_Read(reader, number, sizeof(*number)));
    return *number <= highest ? zOK : zERROR_FORMAT;
}

zStatus zDat6_CheckCount(zDat6Reader* reader, z64u count, std::size_t itemSize)
{
    zFAULT_GATE();
    return count <= reader->left / itemSize ? zOK : zERROR_END;
}

zStatus zDat6_ReadCount(zDat6Reader* reader, std::size_t itemSize, std::size_t* count)
{
    z64u stored = 0;
    zTRY(zDat6_ReadNumber(reader, zDAT6_ANY, &stored));
    zTRY(zDat6_CheckCount(reader, stored, itemSize));
    *count = stored;
    return zOK;
}

zStatus zDat6_ReadType(zDat6Reader* reader, zType* itemType)
{
    TypeName name;
    z64u size = 0;
    zTRY(name.Read(reader));
    zTRY(zDat6_ReadNumber(reader, zDAT6_ANY, &size));
    *itemType = FindItemType(name.View(), size);
    return *itemType == nullptr ? zERROR_INTERFACE : zOK;
}

zStatus zDat6_ReadObject(zDat6Reader* reader, zType type, zAlloc alloc, zObject* object)
{
    zFAULT_GATE();
    TypeName name;
    zTRY(name.Read(reader));
    if (name.View().empty())
    {
        *object = nullptr;
        return zOK;
    }
    const zType stored = zTypeTable_Find(name.View());
    if (stored == nullptr || stored->ops == nullptr || stored->ops->load == nullptr)
    {
        return zERROR_INTERFACE;
    }
    if (!IsDerived(stored, type) || reader->depth == zSAVE6_MAX_DEPTH)
    {
        return zERROR_FORMAT;
    }
    ++reader->depth;
    const zStatus loaded = stored->ops->load(reader, stored, alloc, object);
    --reader->depth;
    return loaded;
}

zStatus zDat6_ReadItems(zDat6Reader* reader, zType itemType, void* items, std::size_t count, zAlloc alloc)
{
    if (!itemType->isObject)
    {
        return zDat6_Read(reader, items, count * itemType->size);
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        zTRY(zDat6_ReadObject(reader, itemType, alloc, static_cast<zObject*>(items) + i));
    }
    return zOK;
}

zStatus zSave6_ToStream(zObject object, zStream stream)
{
    zFAULT_GATE();
    zDat6Writer writer = {stream, {}, 0};
    zTRY(writer.checksum.Init());
    zTRY(zDat6_Write(&writer, MAGIC.data(), MAGIC.size()));
    zTRY(zDat6_WriteNumber(&writer, VERSION));
    zTRY(zDat6_WriteObject(&writer, object));
    const z64u checksum = writer.checksum.Value();
    zTRY(zStream_Write(stream, &checksum, sizeof(checksum)));
    return zStream_Flush(stream);
}

zStatus zLoad6_FromStream(zObject* object, zStream stream, zAlloc alloc)
{
    zFAULT_GATE();
    if (object == nullptr)
    {
        return zERROR_MISSING;
    }
    zDat6Reader reader = {stream, {}, 0, 0};
    zTRY(reader.checksum.Init());
    zTRY(Open(reader));
    zObject loaded = nullptr;
    zTRY(zDat6_ReadObject(&reader, zTypeOf(zObject), alloc, &loaded));
    const zStatus closed = Close(reader);
    if (closed != zOK)
    {
        static_cast<void>(xzObject_DestroyImpl(loaded));
        return closed;
    }
    *object = loaded;
    return zOK;
}
