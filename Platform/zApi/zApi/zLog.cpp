#include <zApi/zFault.h>
#include <zApi/zLog.h>

#include <atomic>
#include <cstdio>

namespace
{
zStatus WriteToStandardError(const char* format, va_list arguments)
{
    const bool written = std::vfprintf(stderr, format, arguments) >= 0 && std::fputc('\n', stderr) != EOF;
    return written ? zOK : zERROR_PRECONDITION;
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
