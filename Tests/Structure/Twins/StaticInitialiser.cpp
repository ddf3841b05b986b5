#include <string>

namespace Twin
{
// Made when the library is loaded: what the check must report.
extern const std::string text;
const std::string text = "a text that is too long to be kept within the object itself";
} // namespace Twin
