#include <zApi/zMem.h>
#include <zApi/zObjectType.h>
#include <zApi/zSerializer.h>
#include <zApi/zStreamClass.h>

#include <algorithm>
#include <bit>
#include <limits>

namespace
{
constexpr std::size_t BUFFER_SIZE = std::size_t{16} << 10U;
/// From here on bytes go straight between the stream and the caller.
constexpr std::size_t DIRECT_SIZE = BUFFER_SIZE / 4;

using Serializer = zSerializerClass;

Serializer* As(zObject serializer)
{
    return zObjectType_Cast<Serializer>(serializer, zTypeOf(zSerializer));
}

std::size_t Room(const Serializer& serializer)
{
    return static_cast<std::size_t>(serializer.writeEnd - serializer.writeNext);
}

std::size_t ReadAhead(const Serializer& serializer)
{
    return static_cast<std::size_t>(serializer.readEnd - serializer.readNext);
}

std::size_t Pending(const Serializer& serializer)
{
    return serializer.writeNext == nullptr ? 0 : static_cast<std::size_t>(serializer.writeNext - serializer.buffer);
}

/// Lets the stream stand where the reader does.
void EndReading(Serializer& serializer)
{
    // Not below 0, even if somebody moved the stream in the meantime.
    z64u& position = static_cast<zStreamClass*>(serializer.stream)->position;
    position -= std::min<z64u>(position, ReadAhead(serializer));
    serializer.readNext = nullptr;
    serializer.readEnd = nullptr;
}

zStatus WritePending(Serializer& serializer)
{
    if (const std::size_t pending = Pending(serializer); pending > 0)
    {
        zTRY(zStream_Write(serializer.stream, serializer.buffer, pending));
        serializer.writeNext = serializer.buffer;
    }
    return zOK;
}

zStatus EndWriting(Serializer& serializer)
{
    zTRY(WritePending(serializer));
    serializer.writeNext = nullptr;
    serializer.writeEnd = nullptr;
    return zOK;
}

void BeginWriting(Serializer& serializer)
{
    if (serializer.writeNext == nullptr)
    {
        EndReading(serializer);
        serializer.writeNext = serializer.buffer;
        serializer.writeEnd = serializer.buffer + BUFFER_SIZE;
    }
}

zStatus BeginReading(Serializer& serializer)
{
    if (serializer.readNext == nullptr)
    {
        zTRY(EndWriting(serializer));
        serializer.readNext = serializer.buffer;
        serializer.readEnd = serializer.buffer;
    }
    return zOK;
}

/// Checks the arguments of a run of primitives and stores its size in bytes.
zStatus CheckRun(const Serializer* serializer, const void* items, std::size_t itemSize, std::size_t count,
                 std::size_t* bytes)
{
    if (serializer == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (!xzSerializer_IsPrimitive(itemSize))
    {
        return zERROR_FORMAT;
    }
    if (__builtin_mul_overflow(itemSize, count, bytes))
    {
        return zERROR_PARAMETER;
    }
    return items == nullptr && count > 0 ? zERROR_MISSING : zOK;
}

zStatus WriteBytes(Serializer& serializer, const unsigned char* bytes, std::size_t size)
{
    if (size > Room(serializer))
    {
        zTRY(WritePending(serializer));
    }
    if (size >= DIRECT_SIZE && Pending(serializer) == 0)
    {
        return zStream_Write(serializer.stream, bytes, size);
    }
    std::memcpy(serializer.writeNext, bytes, size);
    serializer.writeNext += size;
    return zOK;
}

zStatus WriteReversed(Serializer& serializer, const unsigned char* items, std::size_t itemSize, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        if (itemSize > Room(serializer))
        {
            zTRY(WritePending(serializer));
        }
        zTRY(zMemReverseCopy(serializer.writeNext, items + i * itemSize, itemSize));
        serializer.writeNext += itemSize;
    }
    return zOK;
}

/// Reads ahead behind what is still to be read.
zStatus Fill(Serializer& serializer)
{
    const std::size_t kept = ReadAhead(serializer);
    std::memmove(serializer.buffer, serializer.readNext, kept);
    serializer.readNext = serializer.buffer;
    serializer.readEnd = serializer.buffer + kept;
    std::size_t got = 0;
    zTRY(zStream_ReadUpTo(serializer.stream, serializer.buffer + kept, BUFFER_SIZE - kept, &got));
    serializer.readEnd += got;
    return zOK;
}

zStatus ReadBytes(Serializer& serializer, unsigned char* bytes, std::size_t size)
{
    std::size_t buffered = ReadAhead(serializer);
    if (size > BUFFER_SIZE || size >= buffered + DIRECT_SIZE)
    {
        // The end first: if the stream has too little, nothing has changed.
        zTRY(zStream_Read(serializer.stream, bytes + buffered, size - buffered));
    }
    else if (size > buffered)
    {
        zTRY(Fill(serializer));
        buffered = std::min(ReadAhead(serializer), size);
        if (buffered < size)
        {
            return zERROR_END;
        }
    }
    const std::size_t copied = std::min(buffered, size);
    if (copied > 0)
    {
        std::memcpy(bytes, serializer.readNext, copied);
        serializer.readNext += copied;
    }
    return zOK;
}

zStatus Construct(zObject* out, zStream stream, const zSerializerFormat& format, zAlloc alloc)
{
    zTRY(xzObject_ShareImpl(stream));
    Serializer* serializer = nullptr;
    if (const zStatus status = zObjectType_New(zTypeOf(zSerializer), alloc, &serializer); status != zOK)
    {
        static_cast<void>(xzObject_DestroyImpl(stream));
        return status;
    }
    constexpr z32u NATIVE_ORDER = std::endian::native == std::endian::big ? zBYTE_ORDER_BIG : zBYTE_ORDER_LITTLE;
    serializer->stream = stream;
    serializer->sizeBytes = format.sizeBytes;
    serializer->isReversed = format.byteOrder != NATIVE_ORDER;
    void* buffer = nullptr;
    const zStatus status = zAlloc_Get(alloc, BUFFER_SIZE, &buffer);
    serializer->buffer = static_cast<unsigned char*>(buffer);
    return zObjectType_Finish(serializer, status, out);
}

bool IsFormat(const zSerializerFormat& format)
{
    return (format.sizeBytes == 4 || format.sizeBytes == 8) &&
           (format.byteOrder == zBYTE_ORDER_LITTLE || format.byteOrder == zBYTE_ORDER_BIG);
}

void Release(zObject object) noexcept
{
    auto* const serializer = static_cast<Serializer*>(object);
    EndReading(*serializer);
    if (const std::size_t pending = Pending(*serializer); pending > 0)
    {
        static_cast<void>(zStream_Write(serializer->stream, serializer->buffer, pending));
    }
    static_cast<void>(zAlloc_Free(serializer->alloc, serializer->buffer));
    static_cast<void>(xzObject_DestroyImpl(serializer->stream));
}

template <typename Field>
zStatus WriteField(zSerializer serializer, std::size_t size)
{
    if (size > std::numeric_limits<Field>::max())
    {
        return zERROR_PARAMETER;
    }
    const auto field = static_cast<Field>(size);
    return xzSerializer_WritePrimitives(serializer, &field, sizeof(field), 1);
}

template <typename Field>
zStatus ReadField(zSerializer serializer, std::size_t* size)
{
    Field field = 0;
    zTRY(xzSerializer_ReadPrimitives(serializer, &field, sizeof(field), 1));
    if (field > std::numeric_limits<std::size_t>::max())
    {
        static_cast<Serializer*>(serializer)->readNext -= sizeof(field);
        return zERROR_PARAMETER;
    }
    *size = static_cast<std::size_t>(field);
    return zOK;
}

constexpr zObjectOps serializerOps = {Release, nullptr};
} // namespace

zDEFINE_OBJECT_TYPE(zSerializer, zObject, &serializerOps);

zStatus zSerializer_Construct(zSerializer* serializer, zStream stream, const zSerializerFormat* format, zAlloc alloc)
{
    zFAULT_GATE();
    if (serializer == nullptr || stream == nullptr)
    {
        return zERROR_MISSING;
    }
    if (!xzCastClass_ObjectIs(stream, zTypeOf(zStream)))
    {
        return zERROR_PARAMETER;
    }
    const zSerializerFormat chosen = format == nullptr ? zSerializerFormat{} : *format;
    return IsFormat(chosen) ? Construct(serializer, stream, chosen, alloc) : zERROR_FORMAT;
}

zStatus xzSerializer_WriteSize(zSerializer serializer, std::size_t size)
{
    zFAULT_GATE();
    const Serializer* const object = As(serializer);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    return object->sizeBytes == 8 ? WriteField<z64u>(serializer, size) : WriteField<z32u>(serializer, size);
}

zStatus xzSerializer_ReadSize(zSerializer serializer, std::size_t* size)
{
    zFAULT_GATE();
    const Serializer* const object = As(serializer);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (size == nullptr)
    {
        return zERROR_MISSING;
    }
    return object->sizeBytes == 8 ? ReadField<z64u>(serializer, size) : ReadField<z32u>(serializer, size);
}

zStatus xzSerializer_FlushEx(zSerializer serializer, z32s flushStream)
{
    zFAULT_GATE();
    Serializer* const object = As(serializer);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    EndReading(*object);
    zTRY(EndWriting(*object));
    return flushStream == 0 ? zOK : zStream_Flush(object->stream);
}

zStatus xzSerializer_WriteSlow(zSerializer serializer, const void* items, std::size_t itemSize, std::size_t count)
{
    Serializer* const object = As(serializer);
    std::size_t bytes = 0;
    zTRY(CheckRun(object, items, itemSize, count, &bytes));
    if (bytes == 0)
    {
        return zOK;
    }
    BeginWriting(*object);
    const auto* const from = static_cast<const unsigned char*>(items);
    return object->isReversed && itemSize > 1 ? WriteReversed(*object, from, itemSize, count)
                                              : WriteBytes(*object, from, bytes);
}

zStatus xzSerializer_ReadSlow(zSerializer serializer, void* items, std::size_t itemSize, std::size_t count)
{
    Serializer* const object = As(serializer);
    std::size_t bytes = 0;
    zTRY(CheckRun(object, items, itemSize, count, &bytes));
    if (bytes == 0)
    {
        return zOK;
    }
    zTRY(BeginReading(*object));
    auto* const to = static_cast<unsigned char*>(items);
    zTRY(ReadBytes(*object, to, bytes));
    if (object->isReversed && itemSize > 1)
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            std::reverse(to + i * itemSize, to + (i + 1) * itemSize);
        }
    }
    return zOK;
}
