#pragma once

#include <zApi/zTypes.h>

#include <cstddef>

// The log for the user. Lines of code go to the low-level log of the base library instead.

namespace Ta::Logging
{
inline constexpr std::size_t LEVEL_INFORMATION = 0x8000000100000000U; ///< level 0
inline constexpr std::size_t LEVEL_WARNING = 0x8000000100000001U;     ///< level 1
inline constexpr std::size_t LEVEL_ERROR = 0x8000000100000002U;       ///< level 2

/// One log line. The texts live as long as the call of the handler and are never null.
struct LogRecord
{
    std::size_t level;
    const char* source; ///< who speaks, "Params validation"
    const char* text;   ///< the formatted line, without line end
    const char* file;
    int line;
};

/// Where log lines go: a function that is called on the thread that logs, several at a time if several threads do.
struct LogHandler
{
    zStatus (*function)(const LogRecord& record, void* context) = nullptr;
    void* context = nullptr; ///< the host's, handed through
};

/// Installs a handler and returns the one before. A null function brings back the first one, which writes one line
/// through `zLogf`. A call that is under way on another thread may still reach the old handler.
MU_PLATFORM_EXPORT LogHandler SetLogHandler(LogHandler handler);

/// Writes one log line for the user: a printf format with its arguments. Null for `file` or `source` counts as empty.
/// Returns the handler's status; -999 if `format` is null, 0 if it cannot be formatted, -998 without memory.
MU_PLATFORM_EXPORT zStatus Ta_Debug_Log(int line, const char* file, std::size_t level, const char* source,
                                        const char* format, ...) __attribute__((format(printf, 5, 6)));
} // namespace Ta::Logging
