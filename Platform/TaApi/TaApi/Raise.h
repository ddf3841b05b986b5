#pragma once

#include <TaApi/Exception.h>
#include <TaApi/FunctionName.h>

// The one way in which failures are raised: `MU_CHECK` turns a failing status into a Ta::Exception at the call,
// `MU_FAIL` raises a failure of one's own. Line, source unit and qualified function name come from the compiler.

namespace Ta
{
/// A place in the source: what an exception says about who raised it. The texts have static storage.
struct Place
{
    int line;
    const char* unit;
    const char* function;
};

/// Raises `status` at `place`, without text.
[[noreturn]] MU_PLATFORM_EXPORT void Raise(const Place& place, zStatus status);

/// Raises `status` at `place` unless it is `zOK`. For walks that are handed their caller's place.
inline void Check(const Place& place, zStatus status)
{
    if (status != zOK) [[unlikely]]
    {
        Raise(place, status);
    }
}
} // namespace Ta

/// The place where this stands. A walk that serves several functions is handed it by its caller.
#define MU_HERE                                                                                                        \
    (__extension__({                                                                                                   \
        static constexpr auto muUnit = ::Ta::Detail::Terminated<sizeof(__FILE__)>(::Ta::Detail::SourceUnit(__FILE__)); \
        static constexpr auto muFunction =                                                                             \
            ::Ta::Detail::Terminated<sizeof(__PRETTY_FUNCTION__)>(::Ta::Detail::FunctionName(__PRETTY_FUNCTION__));    \
        ::Ta::Place{__LINE__, muUnit.data(), muFunction.data()};                                                       \
    }))

/// Raises the status of `call`, unless it is `zOK`, without text.
#define MU_CHECK(call)                                                                                                 \
    do                                                                                                                 \
    {                                                                                                                  \
        if (const zStatus muStatus = (call); muStatus != zOK) [[unlikely]]                                             \
        {                                                                                                              \
            ::Ta::Raise(MU_HERE, muStatus);                                                                            \
        }                                                                                                              \
    } while (false)

/// Raises a failure of one's own at a place that a caller handed down.
#define MU_FAIL_AT(place, status, ...)                                                                                 \
    throw ::Ta::Exception((place).line, (place).unit, status, (place).function, __VA_ARGS__)

/// Raises a failure of one's own: a status, then null or a printf format with its arguments.
#define MU_FAIL(status, ...)                                                                                           \
    do                                                                                                                 \
    {                                                                                                                  \
        const ::Ta::Place muPlace = MU_HERE;                                                                           \
        MU_FAIL_AT(muPlace, status, __VA_ARGS__);                                                                      \
    } while (false)
