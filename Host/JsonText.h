#pragma once

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <string_view>

namespace Mu::Host
{
/// Refuses a document in which an object has a key twice: readers of JSON take one of them and drop the other silently.
/// @param text  valid JSON
/// @throws Error  naming the place of the second one in `file`
void RefuseRepeatedKeys(const std::filesystem::path& file, std::string_view text);

/// A document as text, laid out for people: objects and lists take a line each entry, by 4 blanks an inner level, but
/// those that hold plain values and lists of plain values stand on one line if it gets no longer than 100 columns, and
/// lists of numbers always do. The outermost object never stands on one line. Keys keep their order, numbers come back
/// bit by bit. Ends with a line end.
[[nodiscard]] std::string LaidOut(const nlohmann::ordered_json& document);
} // namespace Mu::Host
