#pragma once

#include "HostTestFiles.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <vector>

/// Scans with a feature, which is moved with all that lies around it.
namespace Mu::Host::Testing
{
constexpr int featureColumns = 40;
constexpr int featureRows = 40;
constexpr double featureSpacing = 0.5;
constexpr double featureHeightStep = 0.1;

/// The count of a sample: its highest point lies at (17, 14), the second highest beside it, towards +x.
inline std::uint16_t FeatureCount(int column, int row)
{
    const bool isPeak = row == 14 && (column == 17 || column == 18);
    return static_cast<std::uint16_t>(isPeak ? 217 - column : 50 + ((column * 13 + row * 7) % 30 + 30) % 30);
}

/// A scan whose samples are `count(column, row)`, with all coordinates `offset` larger.
template <typename Count>
std::filesystem::path WriteCounts(const std::filesystem::path& file, const Count& count,
                                  std::array<double, 3> offset = {0, 0, 0})
{
    std::vector<std::uint16_t> counts;
    for (int row = 0; row < featureRows; ++row)
    {
        for (int column = 0; column < featureColumns; ++column)
        {
            counts.push_back(count(column, row));
        }
    }
    const nlohmann::json sidecar = {
        {"spacing", {featureSpacing, featureSpacing, featureHeightStep}}, {"offset", offset}, {"invalid", 0}};
    WriteBytes(file.string() + ".json", sidecar.dump());
    return WriteTiff(file, featureColumns, counts);
}

/// A scan with the feature `columns` and `rows` further on, and with all coordinates `offset` larger.
inline std::filesystem::path WriteFeatureScan(const std::filesystem::path& file, int columns = 0, int rows = 0,
                                              std::array<double, 3> offset = {0, 0, 0})
{
    return WriteCounts(
        file, [=](int column, int row) { return FeatureCount(column - columns, row - rows); }, offset);
}

/// A scan that is turned by 90 degrees, from +x towards +y, about the highest point.
inline std::filesystem::path WriteTurnedScan(const std::filesystem::path& file)
{
    return WriteCounts(file, [](int column, int row) { return FeatureCount(17 + (row - 14), 14 - (column - 17)); });
}

/// A scan of the same size without any height.
inline std::filesystem::path WriteEmptyScan(const std::filesystem::path& file)
{
    return WriteCounts(file, [](int /*column*/, int /*row*/) { return std::uint16_t{0}; });
}

/// The mean height of an upright box of a scan that is not moved, in mm.
inline double MeanInBox(double x, double y, double width, double length)
{
    double sum = 0;
    int count = 0;
    for (int row = 0; row < featureRows; ++row)
    {
        for (int column = 0; column < featureColumns; ++column)
        {
            if (std::abs(column * featureSpacing - x) <= width / 2 && std::abs(row * featureSpacing - y) <= length / 2)
            {
                sum += featureHeightStep * FeatureCount(column, row);
                ++count;
            }
        }
    }
    return sum / count;
}

/// The value of a tool's output. A failure of the test if there is none.
inline double ValueOf(const ScanResult& scan, std::string_view tool, std::string_view output)
{
    for (const Result& result : scan.results)
    {
        if (result.tool == tool && result.output == output && result.state == ResultState::Value)
        {
            return result.value;
        }
    }
    ADD_FAILURE() << tool << "/" << output << " has no value on " << scan.name;
    return 0;
}

inline ResultState StateOf(const ScanResult& scan, std::string_view tool, std::string_view output)
{
    const auto found = std::ranges::find_if(
        scan.results, [&](const Result& result) { return result.tool == tool && result.output == output; });
    return found == scan.results.end() ? ResultState::NotSent : found->state;
}
} // namespace Mu::Host::Testing
