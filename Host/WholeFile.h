#pragma once

#include <filesystem>
#include <string_view>

namespace Mu::Host
{
/// Writes a file whole or not at all: the bytes go into a temporary file beside it, which then takes its place. What
/// stood there before stays until then, and stays for good if anything fails. A link is followed.
/// @throws Error  if the file cannot be written, or something other than a file has its name
void WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);
} // namespace Mu::Host
