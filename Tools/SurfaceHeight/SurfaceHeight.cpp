#include <Tools/SurfaceTool.h>

#include <MuVision/RegionPixel.h>
#include <TaPipe/ToolPlugin.h>
#include <TaVision/TvSurfaceMsg.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
__extension__ using Wide = unsigned __int128;

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

/// The same of points in mm. The sums are of differences from the first height, so that they keep their digits.
Heights HeightsOf(std::span<const zPoint3d64f> points)
{
    if (points.empty())
    {
        return {};
    }
    const auto [lowest, highest] = std::ranges::minmax(points, {}, &zPoint3d64f::z);
    const auto count = static_cast<double>(points.size());
    double sum = 0;
    for (const zPoint3d64f& point : points)
    {
        sum += point.z - points.front().z;
    }
    const double mean = points.front().z + sum / count;
    double sumOfSquares = 0;
    for (const zPoint3d64f& point : points)
    {
        sumOfSquares += (point.z - mean) * (point.z - mean);
    }
    return {lowest.z, highest.z, mean, highest.z - lowest.z, std::sqrt(sumOfSquares / count)};
}

/// The samples of a grid in the box of a region seen from above.
Mu::Vision::Rect2d<int> PixelsOf(void* surface, const Mu::Vision::Region2d<double>& region)
{
    const zPoint3d64f offset = TvSurfaceMsg_Offset(surface);
    const zPoint3d64f scale = TvSurfaceMsg_Scale(surface);
    Mu::Vision::Rect2d<int> pixels;
    Mu::Vision::GetRegionPixel(TvSurfaceMsg_Width(surface), TvSurfaceMsg_Length(surface), {offset.x, offset.y},
                               {scale.x, scale.y}, &region, &pixels, nullptr, 1, 1);
    return pixels;
}

/// How many samples of a grid lie in the region as seen from above. Those of a turned region lie within its diagonal,
/// and each is turned back to be looked at.
double PlacesIn(void* surface, const Mu::Vision::Region3d<double>& region)
{
    if (region.zAngle == 0)
    {
        const auto pixels = PixelsOf(surface, {region.x, region.y, region.width, region.length, 0});
        return static_cast<double>(pixels.width) * pixels.height;
    }
    const double diagonal = std::hypot(region.width, region.length);
    const auto pixels = PixelsOf(surface, {region.x, region.y, diagonal, diagonal, 0});
    const zPoint3d64f offset = TvSurfaceMsg_Offset(surface);
    const zPoint3d64f scale = TvSurfaceMsg_Scale(surface);
    Mu::Vision::RefFrame frame;
    frame.Rotate(region, true);
    double count = 0;
    for (int row = pixels.y; row < pixels.y + pixels.height; ++row)
    {
        for (int column = pixels.x; column < pixels.x + pixels.width; ++column)
        {
            const zPoint3d64f place =
                frame.Apply(zPoint3d64f{column * scale.x + offset.x, row * scale.y + offset.y, 0});
            const bool inside =
                std::abs(place.x - region.x) <= region.width / 2 && std::abs(place.y - region.y) <= region.length / 2;
            count += inside ? 1 : 0;
        }
    }
    return count;
}

/// The place in mm of the first sample that has this height. There is one.
zPoint3d64f PlaceOf(void* surface, z16s height)
{
    const zPoint3d64f offset = TvSurfaceMsg_Offset(surface);
    const zPoint3d64f scale = TvSurfaceMsg_Scale(surface);
    const auto world = [&](double x, double y) {
        return zPoint3d64f{offset.x + scale.x * x, offset.y + scale.y * y, offset.z + scale.z * height};
    };
    const std::size_t width = TvSurfaceMsg_Width(surface);
    const std::size_t count = width * TvSurfaceMsg_Length(surface);
    if (TvSurfaceMsg_PointType(surface) == zTypeOf(z16s))
    {
        const auto* const first = static_cast<const z16s*>(TvSurfaceMsg_Points(surface));
        const auto index = static_cast<std::size_t>(std::find(first, first + count, height) - first);
        return world(static_cast<double>(index % width), static_cast<double>(index / width));
    }
    const auto* const first = static_cast<const zPoint3d16s*>(TvSurfaceMsg_Points(surface));
    const zPoint3d16s& point =
        *std::find_if(first, first + count, [height](const zPoint3d16s& other) { return other.z == height; });
    return world(point.x, point.y);
}

/// Where the lowest and the highest point lie, and above one of them by how much they differ.
void DrawExtremes(ToolGraphic& graphic, const zPoint3d64f& lowest, const zPoint3d64f& highest)
{
    if (lowest.z != highest.z)
    {
        graphic.AddDistance(lowest, {lowest.x, lowest.y, highest.z});
    }
    graphic.AddPoint(lowest);
    graphic.AddPoint(highest);
}

double Share(double part, double whole)
{
    return whole > 0 ? 100 * part / whole : 0;
}

/// Heights of a surface, or of a region of it: lowest, highest, mean, their span, the root mean square about the mean,
/// and the share of the samples that have a height there. Without any height the heights are null and the share is 0.
/// In a region of points that carry their own place there is no telling how many are missing: the share is null.
class SurfaceHeight final : public SurfaceTool
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
        info.SetDescription("Heights of a surface or region: extremes, mean, RMS");
    }

    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        AddInputs();
        AddMeasurement("Minimum", "Minimum", "mm");
        AddMeasurement("Maximum", "Maximum", "mm");
        AddMeasurement("Mean", "Mean", "mm");
        AddMeasurement("PeakToValley", "Peak to Valley", "mm");
        AddMeasurement("Rms", "RMS about the Mean", "mm");
        AddMeasurement("ValidShare", "Share of Valid Points", "%");
        AddGraphic();
        AddOptionalRegion();
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& set) override
    {
        void* const surface = GetDataMessageInput(set, SURFACE);
        const zStamp stamp = TvDataMsg_Stamp(surface);
        if (UsesRegion())
        {
            MeasureRegion(surface, stamp);
        }
        else
        {
            MeasureWhole(surface, stamp);
        }
    }

private:
    void MeasureWhole(void* surface, const zStamp& stamp)
    {
        const std::size_t count = TvSurfaceMsg_Width(surface) * TvSurfaceMsg_Length(surface);
        const HeightSums sums = SumUp(surface, count);
        SendHeights(ToWorld(sums, TvSurfaceMsg_Offset(surface).z, TvSurfaceMsg_Scale(surface).z),
                    Share(static_cast<double>(sums.count), static_cast<double>(count)), stamp);
        SendGraphic([&](ToolGraphic& graphic) {
            if (sums.count > 0)
            {
                DrawExtremes(graphic, PlaceOf(surface, sums.lowest), PlaceOf(surface, sums.highest));
            }
        });
    }

    void MeasureRegion(void* surface, const zStamp& stamp)
    {
        const auto points = PointsInRegion(surface);
        const double share = TvSurfaceMsg_IsResampled(surface)
                                 ? Share(static_cast<double>(points.size()), PlacesIn(surface, AbsoluteRegion()))
                                 : zNULL_64F;
        SendHeights(HeightsOf(points), share, stamp);
        SendGraphic([&](ToolGraphic& graphic) {
            DrawRegion(graphic);
            if (!points.empty())
            {
                DrawExtremes(graphic, *std::ranges::min_element(points, {}, &zPoint3d64f::z),
                             *std::ranges::max_element(points, {}, &zPoint3d64f::z));
            }
        });
    }

    void SendHeights(const Heights& heights, double validShare, const zStamp& stamp)
    {
        SendMeasurement("Minimum", heights.minimum, false, &stamp);
        SendMeasurement("Maximum", heights.maximum, false, &stamp);
        SendMeasurement("Mean", heights.mean, false, &stamp);
        SendMeasurement("PeakToValley", heights.peakToValley, false, &stamp);
        SendMeasurement("Rms", heights.rms, false, &stamp);
        SendMeasurement("ValidShare", validShare, false, &stamp);
    }
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<SurfaceHeight>("SurfaceHeight", "1.0.0"))
