#pragma once

#include <Host/Job.h>

#include <string>
#include <vector>

namespace Mu::Host
{
/// A job given in words of the command line.
struct CommandLineJob
{
    std::string tool;
    std::vector<std::string> scans;
    std::vector<std::string> parameters; ///< "Key=Value"; keys of groups are joined by slashes
    std::vector<std::string> limits;     ///< "Output=low:high"; a side may be empty
};

/// The job that these words mean. A value is read as JSON if it is JSON, else it is a text.
/// @throws Error  for a word that is none of these
[[nodiscard]] Job MakeJob(const CommandLineJob& words);
} // namespace Mu::Host
