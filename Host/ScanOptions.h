#pragma once

#include <Host/HeightMap.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace Mu::Host
{
/// What a file does not say of its scan: a JSON object in a small file beside it, the sidecar, or with the scan in the
/// job.

/// The sidecar of `scan`: its name followed by ".json".
[[nodiscard]] std::filesystem::path SidecarOf(const std::filesystem::path& scan);

/// Where a value stands, for messages: the sidecar or a place in the job, and the key.
struct OptionPlace
{
    std::string source;
    std::string key;

    /// @throws Error "source: key: ... is not a usable value. remedy."
    [[noreturn]] void Refuse(const nlohmann::json& value, std::string_view remedy) const;
};

[[nodiscard]] bool IsFiniteNumber(const nlohmann::json& value);

/// @throws Error if the value is not a finite number greater than 0
[[nodiscard]] double ReadPositive(const nlohmann::json& value, const OptionPlace& place, std::string_view remedy);

/// @throws Error if the value is not an array of three finite numbers
[[nodiscard]] Vector3 ReadTriple(const nlohmann::json& value, const OptionPlace& place, std::string_view remedy);

/// A key that a format knows, and what takes its value over into the format's options.
template <typename Options>
struct ScanOption
{
    std::string_view key;
    void (*set)(Options& options, const nlohmann::json& value, const OptionPlace& place);
};

/// The words for messages about the options of a format.
struct OptionWords
{
    std::string_view format;  ///< as in "a TIFF scan has no such option": "TIFF"
    std::string_view example; ///< an object that would do, as JSON
};

/// Where the options of a scan come from.
struct OptionSources
{
    const std::filesystem::path& scan; ///< its sidecar need not be there
    const nlohmann::json& fromJob;     ///< an object, or null if the job gives none
    std::string_view jobPlace;         ///< where the job gives them, as in "plate.job.json, scan 2"
};

namespace Detail
{
void ReadOptions(const OptionSources& sources, const OptionWords& words, std::span<const std::string_view> keys,
                 const std::function<void(std::size_t, const nlohmann::json&, const OptionPlace&)>& set);
}

/// Sets the options that the sidecar gives and over them, key by key, those of the job.
/// @throws Error  if a key is unknown, or its value not usable; if the sidecar is no JSON object or larger than 64 KiB
template <typename Options, std::size_t N>
void ReadScanOptions(Options& options, const OptionSources& sources, const OptionWords& words,
                     const ScanOption<Options> (&known)[N])
{
    std::string_view keys[N];
    for (std::size_t i = 0; i < N; ++i)
    {
        keys[i] = known[i].key;
    }
    Detail::ReadOptions(sources, words, keys, [&](std::size_t index, const auto& value, const OptionPlace& place) {
        known[index].set(options, value, place);
    });
}
} // namespace Mu::Host
