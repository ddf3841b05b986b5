#pragma once

#include <zApi/zFault.h>
#include <zApi/zStream.h>

#include <cstring>

zDECLARE_TYPE(zSerializer);

// Writes and reads primitives on a stream through a buffer of its own, the same bytes on every machine. A primitive is
// an integer or a floating-point number of 1, 2, 4 or 8 bytes; a run of them goes in one call at memory speed. The
// layout is public so that a single one costs no call.
//
// While it is at work the position of its stream is its own affair: after `xzSerializer_FlushEx`, and at its end, the
// stream stands behind what was written or read. A serializer is used by one thread at a time.

/// Byte orders of a format.
inline constexpr z32u zBYTE_ORDER_LITTLE = 0;
inline constexpr z32u zBYTE_ORDER_BIG = 1;

/// How values are written; the default is what a null format stands for.
struct zSerializerFormat
{
    z32u sizeBytes = 4; ///< width of a size field: 4 or 8
    z32u byteOrder = zBYTE_ORDER_LITTLE;
};

struct zSerializerClass : zObjectClass
{
    zStream stream;
    unsigned char* buffer;
    unsigned char* writeNext; ///< both null unless something was written last
    unsigned char* writeEnd;
    const unsigned char* readNext; ///< both null unless something was read last
    const unsigned char* readEnd;
    z32u sizeBytes;
    bool isReversed; ///< the format has another byte order than the machine
};

extern "C"
{
    /// Makes a serializer on `stream`, which it shares. A null `format` is the default one.
    /// Its end writes what is buffered and drops a failure of that: flush before.
    /// -999 if `serializer` or `stream` is null, -997 if `stream` is no `zStream`, -984 for another width of sizes or
    /// byte order, -998 if there is no memory.
    MU_PLATFORM_EXPORT zStatus zSerializer_Construct(zSerializer* serializer, zStream stream,
                                                     const zSerializerFormat* format, zAlloc alloc);

    /// Writes a size field. -997 for another handle or a size that does not fit the field, or a failing write's status.
    MU_PLATFORM_EXPORT zStatus xzSerializer_WriteSize(zSerializer serializer, std::size_t size);

    /// Reads a size field to `*size`. -999 if `size` is null, -981 if the stream ends before it, -997 for another
    /// handle or a size that this machine cannot hold. A failing call changes nothing.
    MU_PLATFORM_EXPORT zStatus xzSerializer_ReadSize(zSerializer serializer, std::size_t* size);

    /// Writes what is buffered to the stream, or gives back what was read ahead, and, unless `flushStream` is 0,
    /// flushes the stream. -997 for another handle, or a failing write's or flush's status.
    MU_PLATFORM_EXPORT zStatus xzSerializer_FlushEx(zSerializer serializer, z32s flushStream);

    /// The way of `xzSerializer_WritePrimitives` when the buffer is full, bytes are to be reversed, there are none, or
    /// an argument is bad.
    MU_PLATFORM_EXPORT zStatus xzSerializer_WriteSlow(zSerializer serializer, const void* items, std::size_t itemSize,
                                                      std::size_t count);

    /// The way of `xzSerializer_ReadPrimitives` when the buffer holds too little, bytes are to be reversed, none are
    /// asked for, or an argument is bad.
    MU_PLATFORM_EXPORT zStatus xzSerializer_ReadSlow(zSerializer serializer, void* items, std::size_t itemSize,
                                                     std::size_t count);
}

/// True for the sizes of a primitive.
constexpr bool xzSerializer_IsPrimitive(std::size_t itemSize)
{
    return itemSize == 1 || itemSize == 2 || itemSize == 4 || itemSize == 8;
}

/// Writes `count` primitives of `itemSize` bytes that stand one after the other at `items`.
/// -997 for another handle or if the size in bytes overflows, -999 if `items` is null while there are any, -984 if
/// `itemSize` is not 1, 2, 4 or 8, or the status of a failing write to the stream. What a failing call has given to the
/// stream stays there.
inline zStatus xzSerializer_WritePrimitives(zSerializer serializer, const void* items, std::size_t itemSize,
                                            std::size_t count)
{
    zFAULT_GATE();
    auto* const object = static_cast<zSerializerClass*>(serializer);
    std::size_t bytes = 0;
    if (object == nullptr || object->type != zTypeOf(zSerializer) || items == nullptr ||
        !xzSerializer_IsPrimitive(itemSize) || (object->isReversed && itemSize > 1) || count == 0 ||
        __builtin_mul_overflow(itemSize, count, &bytes) ||
        bytes > static_cast<std::size_t>(object->writeEnd - object->writeNext)) [[unlikely]]
    {
        return xzSerializer_WriteSlow(serializer, items, itemSize, count);
    }
    std::memcpy(object->writeNext, items, bytes);
    object->writeNext += bytes;
    return zOK;
}

/// Reads `count` primitives of `itemSize` bytes to `items`.
/// -981 if the stream ends before the last of them: then nothing is read, and `items` keeps its content. -997 for
/// another handle or if the size in bytes overflows, -999 if `items` is null while any are asked for, -984 if
/// `itemSize` is not 1, 2, 4 or 8, or the status of a failing read of the stream.
inline zStatus xzSerializer_ReadPrimitives(zSerializer serializer, void* items, std::size_t itemSize, std::size_t count)
{
    zFAULT_GATE();
    auto* const object = static_cast<zSerializerClass*>(serializer);
    std::size_t bytes = 0;
    if (object == nullptr || object->type != zTypeOf(zSerializer) || items == nullptr ||
        !xzSerializer_IsPrimitive(itemSize) || (object->isReversed && itemSize > 1) || count == 0 ||
        __builtin_mul_overflow(itemSize, count, &bytes) ||
        bytes > static_cast<std::size_t>(object->readEnd - object->readNext)) [[unlikely]]
    {
        return xzSerializer_ReadSlow(serializer, items, itemSize, count);
    }
    std::memcpy(items, object->readNext, bytes);
    object->readNext += bytes;
    return zOK;
}
