#include "CloudClaims.h"

#include <Host/PcdReader.h>
#include <Support/Entry.h>

// The reader of PCD files. An input is a file.

namespace
{
// The dearest points have coordinates of a byte each, 88 of which a packed byte can stand for.
constexpr std::size_t PEAK_PER_BYTE = 64 * 88;
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view file(reinterpret_cast<const char*>(bytes), size);
    static_cast<void>(Mu::Host::IsPcd(file));
    CloudClaims::CheckFile(&Mu::Host::ReadPcd, file, PEAK_PER_BYTE);
    return 0;
}
