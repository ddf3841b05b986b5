#pragma once

#include <TaApi/Exception.h>

#include <ostream>
#include <string>

namespace Support
{
/// What a piece of code raised; status 1 and empty texts if nothing.
struct Raised
{
    int status = zOK;
    std::string function;
    std::string file;
    std::string message;

    bool operator==(const Raised&) const = default;
};

inline void PrintTo(const Raised& raised, std::ostream* out)
{
    *out << raised.status << " in " << raised.function << " of " << raised.file << ": '" << raised.message << "'";
}

template <typename Body>
Raised RaisedBy(const Body& body)
{
    try
    {
        body();
    }
    catch (const Ta::Exception& exception)
    {
        return {exception.Status(), exception.Function(), exception.File(), exception.Message()};
    }
    return {};
}

/// A failure of the library's unit `InputUtils`, without text.
inline Raised InputFailure(int status, const std::string& function)
{
    return {status, "Mu::TlkHelper::" + function, "Libs/MuTlkHelper/MuTlkHelper/InputUtils", ""};
}
} // namespace Support
