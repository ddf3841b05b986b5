#pragma once

#include <zApi/zTypes.h>

#include <cstdarg>
#include <exception>
#include <memory>

namespace Ta
{
/// The one exception type: a status, the place that raised it, and an optional text. Copies share what they hold, so
/// copying never throws.
class MU_PLATFORM_EXPORT Exception : public std::exception
{
public:
    /// A failure without place and text.
    explicit Exception(int status);

    /// A failure at a place. `file` is the source unit, `function` the qualified name; null counts as empty.
    /// `format` is a printf format with its arguments, or null for no text. All texts are copied.
    Exception(int line, const char* file, int status, const char* function, const char* format, ...)
        __attribute__((format(printf, 6, 7)));

    Exception(const Exception&) noexcept;
    Exception& operator=(const Exception&) noexcept;
    ~Exception() override;

    [[nodiscard]] int Status() const noexcept;
    [[nodiscard]] int Line() const noexcept;
    [[nodiscard]] const char* File() const noexcept;
    [[nodiscard]] const char* Function() const noexcept;

    /// The text, empty if there is none.
    [[nodiscard]] const char* Message() const noexcept;

    /// Text, function, place and status in one line.
    [[nodiscard]] const char* what() const noexcept override;

private:
    struct Details;
    std::shared_ptr<const Details> details;
};
} // namespace Ta
