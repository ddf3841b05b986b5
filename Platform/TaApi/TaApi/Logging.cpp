#include <TaApi/Logging.h>

#include <zApi/zFault.h>
#include <zApi/zLog.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <new>
#include <string>

namespace Ta::Logging
{
namespace
{
const char* LevelName(std::size_t level)
{
    switch (level)
    {
    case LEVEL_INFORMATION:
        return "information";
    case LEVEL_WARNING:
        return "warning";
    case LEVEL_ERROR:
        return "error";
    default:
        return "log";
    }
}

zStatus WriteLine(const LogRecord& record, void* /*context*/)
{
    return zLogf("%s: %s: %s", LevelName(record.level), record.source, record.text);
}

constexpr LogHandler FIRST_HANDLER{WriteLine, nullptr};

constinit std::mutex handlerGuard;
constinit LogHandler presentHandler = FIRST_HANDLER;

LogHandler PresentHandler()
{
    const std::lock_guard lock(handlerGuard);
    return presentHandler;
}

const char* Or(const char* text)
{
    return text == nullptr ? "" : text;
}

[[gnu::format(printf, 2, 0)]] zStatus Format(std::string& text, const char* format, va_list arguments)
{
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0)
    {
        return zERROR_PRECONDITION;
    }
    try
    {
        text.resize(static_cast<std::size_t>(length));
    }
    catch (const std::bad_alloc&)
    {
        return zERROR_MEMORY;
    }
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    return zOK;
}
} // namespace

LogHandler SetLogHandler(LogHandler handler)
{
    const std::lock_guard lock(handlerGuard);
    const LogHandler before = presentHandler;
    presentHandler = handler.function == nullptr ? FIRST_HANDLER : handler;
    return before;
}

zStatus Ta_Debug_Log(int line, const char* file, std::size_t level, const char* source, const char* format, ...)
{
    zFAULT_GATE();
    if (format == nullptr)
    {
        return zERROR_MISSING;
    }
    std::string text;
    va_list arguments;
    va_start(arguments, format);
    const zStatus formatted = Format(text, format, arguments);
    va_end(arguments);
    zTRY(formatted);
    const LogHandler handler = PresentHandler();
    return handler.function({level, Or(source), text.c_str(), Or(file), line}, handler.context);
}
} // namespace Ta::Logging
