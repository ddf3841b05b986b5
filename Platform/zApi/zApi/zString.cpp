#include <zApi/zDat6.h>
#include <zApi/zObjectType.h>
#include <zApi/zString.h>

#include <cstdio>
#include <cstring>

namespace
{
struct String : zObjectClass
{
    char* chars;
    std::size_t length;
};

String* As(zObject string)
{
    return zObjectType_Cast<String>(string, zTypeOf(zString));
}

// Makes a string of `length` characters, terminated; `fill(chars)`, which returns a status, writes them.
template <typename Fill>
zStatus Make(zObject* out, std::size_t length, zAlloc alloc, const Fill& fill)
{
    String* string = nullptr;
    zTRY(zObjectType_New(zTypeOf(zString), alloc, &string));
    void* memory = nullptr;
    zStatus status = zAlloc_Get(alloc, length + 1, &memory);
    if (status == zOK)
    {
        string->chars = static_cast<char*>(memory);
        string->length = length;
        string->chars[length] = '\0';
        status = fill(string->chars);
    }
    return zObjectType_Finish(string, status, out);
}

zStatus Construct(zObject* out, const char* text, std::size_t length, zAlloc alloc)
{
    return Make(out, length, alloc, [=](char* chars) { return std::memcpy(chars, text, length), zOK; });
}

void Release(zObject object) noexcept
{
    static_cast<void>(zAlloc_Free(static_cast<String*>(object)->alloc, static_cast<String*>(object)->chars));
}

zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    const auto* const source = static_cast<const String*>(object);
    return Construct(clone, source->chars, source->length, alloc);
}

// Copies what fits behind `used` characters of `out`.
zStatus Append(char* out, std::size_t capacity, std::size_t used, const char* text)
{
    const std::size_t length = std::strlen(text);
    const std::size_t room = capacity - used - 1;
    const std::size_t copied = length < room ? length : room;
    std::memmove(out + used, text, copied);
    out[used + copied] = '\0';
    return length <= room ? zOK : zERROR_PARAMETER;
}

zStatus Save(zObject object, zDat6Writer* writer)
{
    const auto* const string = static_cast<const String*>(object);
    return zDat6_WriteText(writer, string->chars, string->length);
}

zStatus Load(zDat6Reader* reader, zType /*type*/, zAlloc alloc, zObject* object)
{
    std::size_t length = 0;
    zTRY(zDat6_ReadCount(reader, 1, &length));
    return Make(object, length, alloc, [=](char* chars) {
        zTRY(zDat6_Read(reader, chars, length));
        // A text ends at its first null character.
        return std::memchr(chars, '\0', length) == nullptr ? zOK : zERROR_FORMAT;
    });
}

constexpr zObjectOps stringOps = {Release, Clone, Save, Load};
} // namespace

zDEFINE_OBJECT_TYPE(zString, zObject, &stringOps);

zStatus zStrPrintf(char* out, std::size_t capacity, const char* format, ...)
{
    zFAULT_GATE();
    va_list arguments;
    va_start(arguments, format);
    const zStatus status = zStrPrintvf(out, capacity, format, arguments);
    va_end(arguments);
    return status;
}

zStatus zStrPrintvf(char* out, std::size_t capacity, const char* format, va_list arguments)
{
    zFAULT_GATE();
    if (out == nullptr || format == nullptr)
    {
        return zERROR_MISSING;
    }
    const int length = std::vsnprintf(out, capacity, format, arguments);
    return length >= 0 && static_cast<std::size_t>(length) < capacity ? zOK : zERROR_PARAMETER;
}

zStatus zStrCopy(char* out, std::size_t capacity, const char* text)
{
    zFAULT_GATE();
    if (out == nullptr || text == nullptr)
    {
        return zERROR_MISSING;
    }
    return capacity == 0 ? zERROR_PARAMETER : Append(out, capacity, 0, text);
}

zStatus zStrCat(char* out, std::size_t capacity, const char* text)
{
    zFAULT_GATE();
    if (out == nullptr || text == nullptr)
    {
        return zERROR_MISSING;
    }
    const void* const end = std::memchr(out, '\0', capacity);
    if (end == nullptr)
    {
        return zERROR_PARAMETER;
    }
    return Append(out, capacity, static_cast<std::size_t>(static_cast<const char*>(end) - out), text);
}

std::size_t zStrLength(const char* text)
{
    return text == nullptr ? 0 : std::strlen(text);
}

z32s zStrCompare(const char* first, const char* second)
{
    if (first == nullptr || second == nullptr)
    {
        return static_cast<z32s>(first != nullptr) - static_cast<z32s>(second != nullptr);
    }
    const int difference = std::strcmp(first, second);
    return static_cast<z32s>(difference > 0) - static_cast<z32s>(difference < 0);
}

z32s zStrEquals(const char* first, const char* second)
{
    return static_cast<z32s>(zStrCompare(first, second) == 0);
}

const char* zStrFindFirst(const char* text, const char* part)
{
    return text == nullptr || part == nullptr ? nullptr : std::strstr(text, part);
}

zStatus zString_Construct(zString* string, const char* text, zAlloc alloc)
{
    zFAULT_GATE();
    return string == nullptr ? zERROR_MISSING : Construct(string, text == nullptr ? "" : text, zStrLength(text), alloc);
}

z32s zString_Compare(zString first, zString second)
{
    return zStrCompare(zString_Chars(first), zString_Chars(second));
}

const char* zString_Chars(zString string)
{
    const String* const object = As(string);
    return object == nullptr ? nullptr : object->chars;
}

std::size_t zString_Length(zString string)
{
    const String* const object = As(string);
    return object == nullptr ? 0 : object->length;
}
