#include <zApi/zFault.h>
#include <zApi/zLog.h>

#include <atomic>
#include <cstdio>
#include <string>

namespace
{
[[gnu::format(printf, 1, 0)]] zStatus WriteToStandardError(const char* format, va_list arguments)
{
    // Text and line end are one piece, so that the lines of several threads do not mix.
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0)
    {
        return zERROR_PRECONDITION;
    }
    std::string line(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(line.data(), line.size() + 1, format, arguments);
    line += '\n';
    return std::fwrite(line.data(), 1, line.size(), stderr) == line.size() ? zOK : zERROR_PRECONDITION;
}

constinit std::atomic<zLogfHandler> presentHandler{WriteToStandardError};
} // namespace

zStatus zLogf(const char* format, ...)
{
    zFAULT_GATE();
    if (format == nullptr)
    {
        return zERROR_MISSING;
    }
    va_list arguments;
    va_start(arguments, format);
    const zStatus status = presentHandler.load(std::memory_order_acquire)(format, arguments);
    va_end(arguments);
    return status;
}

zStatus zApiLib_SetLogfHandler(zLogfHandler handler)
{
    zFAULT_GATE();
    presentHandler.store(handler == nullptr ? WriteToStandardError : handler, std::memory_order_release);
    return zOK;
}

zLogfHandler zApiLib_LogfHandler()
{
    return presentHandler.load(std::memory_order_acquire);
}
