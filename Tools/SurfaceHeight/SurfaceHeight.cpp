#include <MuTlkHelper/CommonTool.h>

#include <TaPipe/ToolPlugin.h>
#include <TaVision/TvSurfaceMsg.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
__extension__ using Wide = unsigned __int128;

constexpr std::size_t AT_END = static_cast<std::size_t>(-1);
constexpr const char* SURFACE = "Surface";

z16s HeightOf(z16s point)
{
    return point;
}

z16s HeightOf(const zPoint3d16s& point)
{
    return point.z;
}

/// What there is to know of the heights of a surface, in pixels. All of it is exact: a message has at most 2^30 points.
struct HeightSums
{
    z64s count = 0;
    z64s sum = 0;
    z64s sumOfSquares = 0;
    z16s lowest = std::numeric_limits<z16s>::max();
    z16s highest = std::numeric_limits<z16s>::min();
};

/// Rows follow each other without gaps, so one walk takes all of them.
template <typename Point>
HeightSums SumUp(const void* points, std::size_t count)
{
    HeightSums sums;
    const auto* const first = static_cast<const Point*>(points);
    for (const Point* point = first; point != first + count; ++point)
    {
        // Without a branch the compiler takes many points at a time. The null is the lowest height there is, so it
        // never raises the highest.
        const z16s height = HeightOf(*point);
        const bool valid = height != zNULL_16S;
        const z32s counted = valid ? height : 0;
        sums.count += valid ? 1 : 0;
        sums.sum += counted;
        sums.sumOfSquares += counted * counted;
        sums.lowest = std::min(sums.lowest, valid ? height : std::numeric_limits<z16s>::max());
        sums.highest = std::max(sums.highest, height);
    }
    return sums;
}

HeightSums SumUp(void* surface, std::size_t count)
{
    const void* const points = TvSurfaceMsg_Points(surface);
    if (TvSurfaceMsg_PointType(surface) == zTypeOf(z16s))
    {
        return SumUp<z16s>(points, points == nullptr ? 0 : count);
    }
    return SumUp<zPoint3d16s>(points, points == nullptr ? 0 : count);
}

/// Root mean square of the differences from the mean, in pixels: sqrt(n * sum(z^2) - sum(z)^2) / n. The difference
/// under the root is taken in whole numbers, where it loses nothing however far the heights are from 0.
double RmsAboutMean(const HeightSums& sums)
{
    const auto magnitude = static_cast<Wide>(std::abs(sums.sum));
    const Wide spread = static_cast<Wide>(sums.count) * static_cast<Wide>(sums.sumOfSquares) - magnitude * magnitude;
    return std::sqrt(static_cast<double>(spread)) / static_cast<double>(sums.count);
}

struct Heights
{
    double minimum = zNULL_64F;
    double maximum = zNULL_64F;
    double mean = zNULL_64F;
    double peakToValley = zNULL_64F;
    double rms = zNULL_64F;
};

Heights ToWorld(const HeightSums& sums, double offset, double scale)
{
    if (sums.count == 0)
    {
        return {};
    }
    const auto world = [offset, scale](double pixel) { return offset + scale * pixel; };
    const auto [minimum, maximum] = std::minmax({world(sums.lowest), world(sums.highest)});
    return {minimum, maximum, world(static_cast<double>(sums.sum) / static_cast<double>(sums.count)),
            std::abs(scale) * (static_cast<double>(sums.highest) - sums.lowest), std::abs(scale) * RmsAboutMean(sums)};
}

/// Heights over a whole surface: lowest, highest, mean, their span, the root mean square about the mean, and the share
/// of points that have a height. Without any the heights are null and the share is 0.
class SurfaceHeight final : public Mu::Tools::CommonTool
{
public:
    SurfaceHeight()
    {
        toolName = "SurfaceHeight";
    }

    static void Describe(ToolInfo& info)
    {
        CommonTool::Describe(info);
        info.SetDisplayName("Surface Height");
        info.SetDescription("Heights of a surface: extremes, mean and roughness");
    }

    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        AddInput(SURFACE, AT_END)
            .AddAcceptedDataFormat(PipeDataType::UniformSurface, false)
            .AddAcceptedDataFormat(PipeDataType::PointSurface, false);
        AddMeasurement("Minimum", "Minimum", "mm");
        AddMeasurement("Maximum", "Maximum", "mm");
        AddMeasurement("Mean", "Mean", "mm");
        AddMeasurement("PeakToValley", "Peak to Valley", "mm");
        AddMeasurement("Rms", "RMS about the Mean", "mm");
        AddMeasurement("ValidShare", "Share of Valid Points", "%");
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        void* const surface = GetDataMessageInput(set, SURFACE);
        const std::size_t count = TvSurfaceMsg_Width(surface) * TvSurfaceMsg_Length(surface);
        const HeightSums sums = SumUp(surface, count);
        const Heights heights = ToWorld(sums, TvSurfaceMsg_Offset(surface).z, TvSurfaceMsg_Scale(surface).z);
        const zStamp stamp = TvDataMsg_Stamp(surface);
        SendMeasurement("Minimum", heights.minimum, false, &stamp);
        SendMeasurement("Maximum", heights.maximum, false, &stamp);
        SendMeasurement("Mean", heights.mean, false, &stamp);
        SendMeasurement("PeakToValley", heights.peakToValley, false, &stamp);
        SendMeasurement("Rms", heights.rms, false, &stamp);
        SendMeasurement("ValidShare",
                        count == 0 ? 0 : 100 * static_cast<double>(sums.count) / static_cast<double>(count), false,
                        &stamp);
    }

private:
    void AddMeasurement(const char* id, const char* displayName, const char* units)
    {
        AddMeasurementOutput(id, false, AT_END).SetDisplayName(displayName).SetUnits(units);
    }

    Ta::Params::Group params;
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<SurfaceHeight>("SurfaceHeight", "1.0.0"))
