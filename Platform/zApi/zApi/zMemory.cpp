#include <zApi/zMemory.h>
#include <zApi/zObjectType.h>
#include <zApi/zStreamClass.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace
{
constexpr std::size_t FIRST_CAPACITY = 256;
constexpr std::size_t MAX_CAPACITY = std::numeric_limits<std::size_t>::max() / 2;

struct Memory : zStreamClass
{
    unsigned char* bytes;
    std::size_t length;
    std::size_t capacity;
    bool isForeign;

    /// The position as an index: it is never behind the length.
    [[nodiscard]] std::size_t Here() const
    {
        return static_cast<std::size_t>(position);
    }
};

Memory* As(zObject memory)
{
    return zObjectType_Cast<Memory>(memory, zTypeOf(zMemory));
}

Memory& Self(zStreamClass* stream)
{
    return *static_cast<Memory*>(stream);
}

void FreeBytes(Memory& memory) noexcept
{
    if (!memory.isForeign)
    {
        static_cast<void>(zAlloc_Free(memory.alloc, memory.bytes));
    }
}

/// Moves to a block for `capacity` bytes, in which `append` writes before the former block is freed: what it copies may
/// lie there.
template <typename Append>
zStatus Move(Memory& memory, std::size_t capacity, const Append& append)
{
    if (memory.isForeign)
    {
        return zERROR_PARAMETER;
    }
    void* block = nullptr;
    zTRY(zAlloc_Get(memory.alloc, capacity, &block));
    if (memory.length > 0)
    {
        std::memcpy(block, memory.bytes, memory.length);
    }
    append(static_cast<unsigned char*>(block));
    FreeBytes(memory);
    memory.bytes = static_cast<unsigned char*>(block);
    memory.capacity = capacity;
    return zOK;
}

zStatus Read(zStreamClass* stream, void* bytes, std::size_t least, std::size_t most, std::size_t* got)
{
    const Memory& memory = Self(stream);
    const std::size_t left = memory.length - memory.Here();
    if (left < least)
    {
        return zERROR_END;
    }
    *got = std::min(left, most);
    if (*got > 0)
    {
        std::memmove(bytes, memory.bytes + memory.Here(), *got);
    }
    return zOK;
}

zStatus Write(zStreamClass* stream, const void* bytes, std::size_t size)
{
    if (size == 0)
    {
        return zOK;
    }
    Memory& memory = Self(stream);
    const std::size_t here = memory.Here();
    const std::size_t end = here + size; // no overflow: the caller keeps it below 2^63
    if (end <= memory.capacity)
    {
        std::memmove(memory.bytes + here, bytes, size);
    }
    else
    {
        const std::size_t doubled = std::min(memory.capacity, MAX_CAPACITY / 2) * 2;
        zTRY(Move(memory, std::max({FIRST_CAPACITY, doubled, end}),
                  [&](unsigned char* block) { std::memcpy(block + here, bytes, size); }));
    }
    memory.length = std::max(memory.length, end);
    return zOK;
}

zStatus Flush(zStreamClass* /*stream*/)
{
    return zOK;
}

zStatus Length(zStreamClass* stream, z64u* length)
{
    *length = Self(stream).length;
    return zOK;
}

constexpr zStreamOps streamOps = {Read, Write, Flush, Length};

zStatus Construct(zObject* out, zAlloc alloc)
{
    Memory* memory = nullptr;
    zTRY(zObjectType_New(zTypeOf(zMemory), alloc, &memory));
    memory->stream = &streamOps;
    *out = memory;
    return zOK;
}

void Release(zObject object) noexcept
{
    FreeBytes(*static_cast<Memory*>(object));
}

/// The clone owns its bytes and stands at the same position.
zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    const auto* const source = static_cast<const Memory*>(object);
    zObject made = nullptr;
    zTRY(Construct(&made, alloc));
    auto* const target = static_cast<Memory*>(made);
    const zStatus status = source->length == 0 ? zOK : Write(target, source->bytes, source->length);
    target->position = source->position;
    return zObjectType_Finish(target, status, clone);
}

constexpr zObjectOps memoryOps = {Release, Clone};
} // namespace

zDEFINE_OBJECT_TYPE(zMemory, zStream, &memoryOps);

zStatus zMemory_Construct(zMemory* memory, zAlloc alloc)
{
    zFAULT_GATE();
    return memory == nullptr ? zERROR_MISSING : Construct(memory, alloc);
}

zStatus zMemory_Attach(zMemory memory, void* bytes, std::size_t position, std::size_t length, std::size_t capacity)
{
    zFAULT_GATE();
    Memory* const object = As(memory);
    if (object == nullptr || position > length || length > capacity || capacity > MAX_CAPACITY)
    {
        return zERROR_PARAMETER;
    }
    if (bytes == nullptr && capacity > 0)
    {
        return zERROR_MISSING;
    }
    FreeBytes(*object);
    object->bytes = static_cast<unsigned char*>(bytes);
    object->position = position;
    object->length = length;
    object->capacity = capacity;
    object->isForeign = true;
    return zOK;
}

zStatus zMemory_Reserve(zMemory memory, std::size_t capacity)
{
    zFAULT_GATE();
    Memory* const object = As(memory);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    return capacity <= object->capacity ? zOK : Move(*object, capacity, [](unsigned char* /*block*/) {});
}

zStatus zMemory_Purge(zMemory memory)
{
    zFAULT_GATE();
    Memory* const object = As(memory);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    object->length = 0;
    object->position = 0;
    return zOK;
}

std::size_t zMemory_Length(zMemory memory)
{
    const Memory* const object = As(memory);
    return object == nullptr ? 0 : object->length;
}

void* zMemory_At(zMemory memory, std::size_t offset)
{
    const Memory* const object = As(memory);
    return object == nullptr || offset >= object->length ? nullptr : object->bytes + offset;
}
