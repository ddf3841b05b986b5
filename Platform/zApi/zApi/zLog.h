#pragma once

#include <zApi/zTypes.h>

#include <cstdarg>

// The low-level line log.

/// Takes one line: a printf format and its arguments.
using zLogfHandler = zStatus (*)(const char* format, va_list arguments);

extern "C"
{
    /// Hands a line to the present handler and returns its status. -999 if `format` is null.
    MU_PLATFORM_EXPORT zStatus zLogf(const char* format, ...) __attribute__((format(printf, 1, 2)));

    /// Installs a handler; null brings back the first one, which writes lines to standard error.
    MU_PLATFORM_EXPORT zStatus zApiLib_SetLogfHandler(zLogfHandler handler);

    /// The present handler, never null.
    MU_PLATFORM_EXPORT zLogfHandler zApiLib_LogfHandler();
}
