#pragma once

#include <Host/ToolRegistry.h>

#include <nlohmann/json.hpp>

#include <string>

namespace Mu::Host
{
/// The tools at hand, for people: a table of name, version and what they do.
[[nodiscard]] std::string ToolListText(const ToolRegistry& registry);

/// The same as a list of objects with "type", "version", "displayName", "description", "helpUrl" and "plugin".
[[nodiscard]] nlohmann::json ToolListJson(const ToolRegistry& registry);

/// What a tool is when it was just made: the keys of `ToolListJson`, "inputs", "outputs", "actions", "parameters" (the
/// schema) and "values" (those of the parameters). @throws Error if the tool cannot be made or set up
[[nodiscard]] nlohmann::json ToolJson(const ToolType& type);

/// The same for people.
[[nodiscard]] std::string ToolText(const ToolType& type);
} // namespace Mu::Host
