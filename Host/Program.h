#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Mu::Host
{
/// How the program ends.
enum class ExitCode
{
    Passed = 0,  ///< all done, and every decision passed
    Failed = 1,  ///< all done, but a measurement is outside its limits, or has limits and no value
    BadInput = 2 ///< nothing done: bad use, or a bad job, scan, parameter or plug-in
};

/// The program `tlk`.
/// @param arguments  as `main` has them, the name of the program first
/// @param out        results
/// @param err        what went wrong, one message; what tools log
[[nodiscard]] ExitCode RunProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
} // namespace Mu::Host
