#include "CloudClaims.h"

#include <Host/PlyReader.h>
#include <Support/Entry.h>

// The reader of PLY files. An input is a file.

namespace
{
// The dearest points have coordinates of a byte each.
constexpr std::size_t PEAK_PER_BYTE = 64;
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view file(reinterpret_cast<const char*>(bytes), size);
    CloudClaims::CheckFile(&Mu::Host::ReadPly, file, PEAK_PER_BYTE);
    return 0;
}
