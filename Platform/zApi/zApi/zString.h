#pragma once

#include <zApi/zObject.h>

#include <cstdarg>

zDECLARE_TYPE(zString);

// Bounded text in caller's buffers (`zStr...`), and text as an object (`zString`). Capacities count the terminator, so
// a text of n - 1 characters fits a buffer of n. A text that does not fit is cut to the buffer and gives -997.

extern "C"
{
    /// Formats as printf does. -999 if a pointer is null, -997 if the text does not fit or cannot be formatted.
    MU_PLATFORM_EXPORT zStatus zStrPrintf(char* out, std::size_t capacity, const char* format, ...)
        __attribute__((format(printf, 3, 4)));

    /// The same with the arguments as a list.
    MU_PLATFORM_EXPORT zStatus zStrPrintvf(char* out, std::size_t capacity, const char* format, va_list arguments)
        __attribute__((format(printf, 3, 0)));

    /// Copies `text`. -999 if a pointer is null, -997 if it does not fit.
    MU_PLATFORM_EXPORT zStatus zStrCopy(char* out, std::size_t capacity, const char* text);

    /// Appends `text` to the text in `out`. -999 if a pointer is null, -997 if it does not fit.
    MU_PLATFORM_EXPORT zStatus zStrCat(char* out, std::size_t capacity, const char* text);

    /// Characters before the terminator; 0 for null.
    MU_PLATFORM_EXPORT std::size_t zStrLength(const char* text);

    /// 0 for equal texts, else the sign of the first difference, bytes unsigned. Null comes before every text.
    MU_PLATFORM_EXPORT z32s zStrCompare(const char* first, const char* second);

    /// Non-zero for equal texts. Two nulls are equal.
    MU_PLATFORM_EXPORT z32s zStrEquals(const char* first, const char* second);

    /// The first place of `part` in `text`, null when there is none or a pointer is null. An empty part is at the
    /// front.
    MU_PLATFORM_EXPORT const char* zStrFindFirst(const char* text, const char* part);

    /// Makes a string of a copy of `text`; null counts as empty. -999 if `string` is null, -998 without memory.
    MU_PLATFORM_EXPORT zStatus zString_Construct(zString* string, const char* text, zAlloc alloc);

    /// Compares as `zStrCompare`; a handle that is no string counts as null.
    MU_PLATFORM_EXPORT z32s zString_Compare(zString first, zString second);

    /// The characters, terminated, valid while the string lives; null if `string` is no string.
    MU_PLATFORM_EXPORT const char* zString_Chars(zString string);

    /// Characters before the terminator; 0 if `string` is no string.
    MU_PLATFORM_EXPORT std::size_t zString_Length(zString string);
}
