#pragma once

#include <cstddef>
#include <cstdint>

/// What an engine, or the driver that replays a corpus, calls once for each input. Ends the process on a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);
