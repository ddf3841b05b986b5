#pragma once

#include <Host/Error.h>

#include <TaApi/Exception.h>

#include <exception>
#include <string>

namespace Mu::Host
{
/// What the exception that is being handled says. Called inside a `catch (...)` around code of a plug-in, which may
/// throw anything; the text is a copy, so it outlives the plug-in.
[[nodiscard]] inline std::string CurrentFailureText()
{
    try
    {
        throw;
    }
    catch (const Ta::Exception& failure)
    {
        const std::string text = failure.Message();
        return text.empty() ? std::string(failure.what()) : text;
    }
    catch (const std::exception& failure)
    {
        return failure.what();
    }
    catch (...)
    {
        return "an exception that is no std::exception";
    }
}
} // namespace Mu::Host
