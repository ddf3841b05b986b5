#pragma once

#include <Host/Scan.h>

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <string_view>

namespace Mu::Host
{
/// Reads a scan of any format, which is known by its first bytes, whatever the name of the file:
///
/// | format | read by  | options, in the sidecar or from the job                             |
/// |--------|----------|---------------------------------------------------------------------|
/// | TIFF   | ReadTiff | needed: those of GridOptions                                        |
/// | X3P    | ReadX3p  | none: the file tells everything                                     |
/// | PNG    | ReadPng  | those of GridOptions make it a height map; grey of 16 bits needs them |
/// | text   | ReadCsv  | needed: those of CsvOptions; any text with lines of numbers         |
/// | PLY    | ReadPly  | needed: those of CloudOptions                                       |
/// | PCD    | ReadPcd  | needed: those of CloudOptions                                       |
///
/// @param options       the scan's options as the job gives them: an object, or null if it gives none
/// @param optionsPlace  where the job gives them, for messages, as in "plate.job.json, scan 2"
/// @throws Error  whatever the reader throws; if the file is of no known format; if X3P is given options;
///                if memory runs out
[[nodiscard]] Scan ReadScan(const std::filesystem::path& file, const nlohmann::json& options,
                            std::string_view optionsPlace);

/// The same without options from a job.
[[nodiscard]] Scan ReadScan(const std::filesystem::path& file);
} // namespace Mu::Host
