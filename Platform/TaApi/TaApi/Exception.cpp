#include <TaApi/Exception.h>

#include <cstdio>
#include <mutex>
#include <string>

namespace Ta
{
struct Exception::Details
{
    int status = 0;
    int line = 0;
    std::string file;
    std::string function;
    std::string message;
    // Made on demand: most exceptions are handled without anybody reading them.
    mutable std::once_flag summarised;
    mutable std::string summary;
};

namespace
{
[[gnu::format(printf, 1, 0)]] std::string Format(const char* format, va_list arguments)
{
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length <= 0)
    {
        return {};
    }
    std::string text(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    return text;
}

std::string Or(const char* text)
{
    return text == nullptr ? std::string() : std::string(text);
}

std::string Summary(const std::string& message, const std::string& function, const std::string& file, int line,
                    int status)
{
    std::string text = message.empty() ? std::string("status ") : message + " (status ";
    text += std::to_string(status);
    if (!function.empty())
    {
        text.append(" in ").append(function);
    }
    if (!file.empty())
    {
        text.append(", ").append(file).append(":").append(std::to_string(line));
    }
    return message.empty() ? text : text + ")";
}
} // namespace

Exception::Exception(int status)
    : Exception(0, nullptr, status, nullptr, nullptr)
{
}

Exception::Exception(int line, const char* file, int status, const char* function, const char* format, ...)
{
    auto made = std::make_shared<Details>();
    made->status = status;
    made->line = line;
    made->file = Or(file);
    made->function = Or(function);
    if (format != nullptr)
    {
        va_list arguments;
        va_start(arguments, format);
        made->message = Format(format, arguments);
        va_end(arguments);
    }
    details = std::move(made);
}

Exception::Exception(const Exception&) noexcept = default;
Exception& Exception::operator=(const Exception&) noexcept = default;
Exception::~Exception() = default;

int Exception::Status() const noexcept
{
    return details->status;
}

int Exception::Line() const noexcept
{
    return details->line;
}

const char* Exception::File() const noexcept
{
    return details->file.c_str();
}

const char* Exception::Function() const noexcept
{
    return details->function.c_str();
}

const char* Exception::Message() const noexcept
{
    return details->message.c_str();
}

const char* Exception::what() const noexcept
{
    try
    {
        const Details& d = *details;
        std::call_once(d.summarised, [&d] { d.summary = Summary(d.message, d.function, d.file, d.line, d.status); });
        return d.summary.c_str();
    }
    catch (...)
    {
        return details->message.c_str();
    }
}
} // namespace Ta
