#include <Host/CloudTestFiles.h>
#include <Host/Lzf.h>

#include <Support/Entry.h>
#include <Support/Require.h>

#include <vector>

// Unpacking of LZF. An input is taken for packed bytes, and for bytes to pack.

namespace
{
using Mu::Host::UnpackLzf;

bool Unpacks(std::string_view packed, std::size_t size)
{
    std::vector<char> unpacked(size);
    const auto fault = UnpackLzf(packed, unpacked);
    MU_REQUIRE(!fault || (fault->place <= packed.size() && !fault->problem.empty()));
    return !fault;
}

/// Packed bytes stand for one number of bytes at most, which the best rate bounds.
void CheckPacked(std::string_view packed)
{
    constexpr std::size_t most = 300;
    std::size_t count = 0;
    const std::size_t bound = std::min(most, packed.size() * Mu::Host::bestLzf + 1);
    for (std::size_t size = 0; size <= bound; ++size)
    {
        count += Unpacks(packed, size) ? 1U : 0U;
    }
    MU_REQUIRE(count <= 1);
    MU_REQUIRE(!Unpacks(packed, packed.size() * Mu::Host::bestLzf + 1));
}

void CheckUnpacked(std::string_view bytes)
{
    const std::string packed = Mu::Host::Testing::PackedWithLzf(bytes);
    std::string unpacked(bytes.size(), '\0');
    MU_REQUIRE(!UnpackLzf(packed, unpacked));
    MU_REQUIRE(unpacked == bytes);
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    // Both checks try all of something.
    constexpr std::size_t longest = 512;
    const std::string_view input(reinterpret_cast<const char*>(bytes), std::min(size, longest));
    CheckPacked(input);
    CheckUnpacked(input);
    return 0;
}
