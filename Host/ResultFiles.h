#pragma once

#include <Host/RunResult.h>

#include <nlohmann/json.hpp>

#include <string>

namespace Mu::Host
{
/// The results of a run as a JSON object: "version" (1), "passed", "scans", each with "name", "file", "width",
/// "length", "validCount", "notes" and "results". A result has "tool", "type", "output", "dataType", "state", and,
/// where there is one, "index", "value", "units", "limits" ("lower", "upper") and "decision". Numbers read back bit by
/// bit; those that are not finite are the texts "NaN", "Infinity" and "-Infinity".
[[nodiscard]] nlohmann::json ResultJson(const RunResult& run);

/// The same as comma-separated values (RFC 4180, but with plain line ends), a line for each result under a head line.
[[nodiscard]] std::string ResultCsv(const RunResult& run);

/// JSON for people and files: indented by 4 blanks; bytes that are no UTF-8 become U+FFFD; with a line end.
[[nodiscard]] std::string Dumped(const nlohmann::json& document);
} // namespace Mu::Host
