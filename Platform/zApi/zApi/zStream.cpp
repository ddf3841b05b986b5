#include <zApi/zObjectType.h>
#include <zApi/zStreamClass.h>

#include <limits>

namespace
{
constexpr z64u MAX_LENGTH = static_cast<z64u>(std::numeric_limits<z64s>::max());

zStreamClass* As(zObject stream)
{
    return zObjectType_Cast<zStreamClass>(stream, zTypeOf(zStream));
}

zStatus Read(zStreamClass* stream, void* bytes, std::size_t least, std::size_t most, std::size_t* got)
{
    if (stream == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (got == nullptr || (bytes == nullptr && most > 0))
    {
        return zERROR_MISSING;
    }
    std::size_t size = 0;
    zTRY(stream->stream->read(stream, bytes, least, most, &size));
    stream->position += size;
    *got = size;
    return zOK;
}

/// Stores the place that `origin` stands for in `*place`.
zStatus Origin(zStreamClass& stream, z32s origin, z64u length, z64u* place)
{
    switch (origin)
    {
    case zSTREAM_BEGIN:
        *place = 0;
        return zOK;
    case zSTREAM_CURRENT:
        *place = stream.position;
        return zOK;
    case zSTREAM_END:
        *place = length;
        return zOK;
    default:
        return zERROR_ENUM;
    }
}
} // namespace

zDEFINE_OBJECT_TYPE(zStream, zObject, nullptr);

zStatus zStream_Read(zStream stream, void* bytes, std::size_t size)
{
    zFAULT_GATE();
    std::size_t got = 0;
    return Read(As(stream), bytes, size, size, &got);
}

zStatus zStream_ReadUpTo(zStream stream, void* bytes, std::size_t size, std::size_t* got)
{
    zFAULT_GATE();
    return Read(As(stream), bytes, 0, size, got);
}

zStatus zStream_Write(zStream stream, const void* bytes, std::size_t size)
{
    zFAULT_GATE();
    zStreamClass* const object = As(stream);
    if (object == nullptr || size > MAX_LENGTH - object->position)
    {
        return zERROR_PARAMETER;
    }
    if (bytes == nullptr && size > 0)
    {
        return zERROR_MISSING;
    }
    zTRY(object->stream->write(object, bytes, size));
    object->position += size;
    return zOK;
}

zStatus zStream_Seek(zStream stream, z64s offset, z32s origin)
{
    zFAULT_GATE();
    zStreamClass* const object = As(stream);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    z64u length = 0;
    z64u from = 0;
    zTRY(object->stream->length(object, &length));
    zTRY(Origin(*object, origin, length, &from));
    const z64u distance = offset < 0 ? z64u{0} - static_cast<z64u>(offset) : static_cast<z64u>(offset);
    if (offset < 0 && distance > from)
    {
        return zERROR_PARAMETER;
    }
    // Neither sum can overflow: a length is at most 2^63 - 1.
    const z64u place = offset < 0 ? from - distance : from + distance;
    if (place > length)
    {
        return zERROR_END;
    }
    object->position = place;
    return zOK;
}

zStatus zStream_Flush(zStream stream)
{
    zFAULT_GATE();
    zStreamClass* const object = As(stream);
    return object == nullptr ? zERROR_PARAMETER : object->stream->flush(object);
}

zStatus zStream_Length(zStream stream, z64u* length)
{
    zFAULT_GATE();
    zStreamClass* const object = As(stream);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    return length == nullptr ? zERROR_MISSING : object->stream->length(object, length);
}

z64u zStream_Tell(zStream stream)
{
    const zStreamClass* const object = As(stream);
    return object == nullptr ? 0 : object->position;
}
