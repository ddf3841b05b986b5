#include <Host/CsvReader.h>
#include <Host/Error.h>

#include <Support/Entry.h>
#include <Support/HeapPeak.h>
#include <Support/Require.h>

#include "CsvOptionCases.h"

#include <nlohmann/json.hpp>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <variant>
#include <vector>

// The reader of texts of numbers. The first byte of an input chooses the options, the rest is the text.

namespace
{
using namespace Mu::Host;

/// Reading asks for no more than this and `PEAK_PER_BYTE` for each byte of the text: blocks of two readings of the
/// file, messages, and for each byte, which may be a whole sample, a few numbers in vectors that double.
constexpr std::size_t PEAK_BASE = 768 * 1024;
constexpr std::size_t PEAK_PER_BYTE = 200;

/// A file in memory, of one name for the life of the process.
class MemoryFile
{
public:
    MemoryFile()
        : descriptor(memfd_create("scan.csv", 0))
    {
        MU_REQUIRE(descriptor >= 0);
    }

    [[nodiscard]] std::string Write(const std::uint8_t* bytes, std::size_t size) const
    {
        MU_REQUIRE(ftruncate(descriptor, 0) == 0);
        MU_REQUIRE(pwrite(descriptor, bytes, size, 0) == static_cast<ssize_t>(size));
        return "/proc/self/fd/" + std::to_string(descriptor);
    }

private:
    int descriptor;
};

bool IsFinite(const Vector3& vector)
{
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
}

/// What holds for every scan with heights.
template <typename Kind>
void CheckHeights(const Kind& scan)
{
    const auto nulls = static_cast<std::size_t>(std::ranges::count(scan.heights, HeightMap::nullHeight));
    MU_REQUIRE(!scan.heights.empty());
    MU_REQUIRE(scan.validCount == scan.heights.size() - nulls);
    MU_REQUIRE(scan.intensity.empty() || scan.intensity.size() == scan.heights.size());
    MU_REQUIRE(IsFinite(scan.offsetMm) && IsFinite(scan.scaleMm));
    MU_REQUIRE(scan.scaleMm.x > 0 && scan.scaleMm.y > 0 && scan.scaleMm.z > 0);
    MU_REQUIRE(std::isfinite(scan.offsetMm.z + 32767 * scan.scaleMm.z));
    MU_REQUIRE(std::isfinite(scan.offsetMm.z - 32767 * scan.scaleMm.z));
    MU_REQUIRE(!scan.notes.empty());
}

struct CheckScan
{
    void operator()(const HeightMap& map) const
    {
        CheckHeights(map);
        MU_REQUIRE(map.heights.size() == map.width * map.length);
        MU_REQUIRE(std::isfinite(map.offsetMm.x + map.scaleMm.x * static_cast<double>(map.width - 1)));
        MU_REQUIRE(std::isfinite(map.offsetMm.y + map.scaleMm.y * static_cast<double>(map.length - 1)));
    }

    void operator()(const ProfileScan& profile) const
    {
        CheckHeights(profile);
        const std::size_t lastPlace = profile.positions.empty() ? profile.heights.size() - 1 : 32767;
        MU_REQUIRE(std::isfinite(profile.offsetMm.x + profile.scaleMm.x * static_cast<double>(lastPlace)));
        if (!profile.positions.empty())
        {
            MU_REQUIRE(profile.positions.size() == profile.heights.size());
            for (std::size_t i = 0; i < profile.heights.size(); ++i)
            {
                const bool isNull = profile.heights[i] == HeightMap::nullHeight;
                MU_REQUIRE(isNull == (profile.positions[i] == HeightMap::nullHeight));
            }
        }
    }

    template <typename OtherKind>
    void operator()(const OtherKind&) const
    {
        Support::FailClaim("a text is a height map or a profile", __FILE__, __LINE__);
    }
};

std::vector<CsvOptions> AllOptions()
{
    std::vector<CsvOptions> all;
    for (const char* const text : csvOptionCases)
    {
        const nlohmann::json options = nlohmann::json::parse(text);
        all.push_back(ReadCsvOptions({"/proc/self/fd/none", options, "job"}));
    }
    return all;
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const MemoryFile memory;
    static const std::vector<CsvOptions> options = AllOptions();
    if (size == 0)
    {
        return 0;
    }
    const std::string file = memory.Write(bytes + 1, size - 1);
    const Support::HeapPeak peak;
    bool isText = false;
    try
    {
        isText = LooksLikeCsv(file);
        std::visit(CheckScan{}, ReadCsv(file, options[bytes[0] % options.size()]));
        MU_REQUIRE(isText);
    }
    catch (const Error& error)
    {
        const std::string message = error.what();
        MU_REQUIRE(message.starts_with(file + ": "));
        MU_REQUIRE(std::ranges::all_of(message, [](char character) { return character >= ' ' && character <= '~'; }));
    }
    MU_REQUIRE(peak.Bytes() <= PEAK_BASE + PEAK_PER_BYTE * size);
    return 0;
}
