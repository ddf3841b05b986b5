#include <MuTlkHelper/InputUtils.h>

#include <MuTlkHelper/ArgumentChecks.h>
#include <MuTlkHelper/MaskPixels.h>
#include <MuTlkHelper/ProfileWalk.h>
#include <MuTlkHelper/SurfaceWalk.h>

#include <MuVision/ArrayFill.h>
#include <TaVision/TvImageMsg.h>
#include <TaVision/TvProfileMsg.h>
#include <TaVision/TvSurfaceMsg.h>
#include <zVision/zM3dTransform2d.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace Mu::TlkHelper
{
namespace
{
using Mu::Vision::Region2d;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;

constexpr double SAMPLE_SPAN = 65535.0; // the steps that 16 bits can tell

struct Range
{
    double centre;
    double extent;
};

Range Expanded(const Range& a, const Range& b)
{
    const double low = std::min(a.centre - a.extent / 2, b.centre - b.extent / 2);
    const double high = std::max(a.centre + a.extent / 2, b.centre + b.extent / 2);
    const double extent = high - low;
    return {low + extent / 2, extent};
}

// For samples that carry their own place: all that they can tell.
zRect3d64f SpanBox(void* message)
{
    const zPoint3d64f offset = TvDataMsg_Offset(message);
    const zPoint3d64f scale = TvDataMsg_Scale(message);
    return {offset.x, offset.y, offset.z, SAMPLE_SPAN * scale.x, SAMPLE_SPAN * scale.y, SAMPLE_SPAN * scale.z};
}

// For heights on a grid.
zRect3d64f GridBox(void* message)
{
    const zPoint3d64f offset = TvDataMsg_Offset(message);
    const zPoint3d64f scale = TvDataMsg_Scale(message);
    const double width = static_cast<double>(TvDataMsg_Width(message)) * scale.x;
    const double length = static_cast<double>(TvDataMsg_Length(message)) * scale.y;
    // Required: the height is centred on the offset, not begun at it.
    return {offset.x + width / 2, offset.y + length / 2, offset.z, width, length, SAMPLE_SPAN * scale.z};
}

zRect3d64f BoxOfProfile(void* message)
{
    // Required: the bounding box of points that carry their own place is not looked at.
    if (TvProfileMsg_PointType(message) != zTypeOf(z16s))
    {
        return SpanBox(message);
    }
    const zRect3d64f box = TvProfileMsg_BoundingBoxAt(message, 0);
    return box.width > 0.0 && box.height > 0.0 ? box : GridBox(message);
}

zRect3d64f BoxOfSurface(void* message)
{
    const zRect3d64f box = TvSurfaceMsg_BoundingBox(message);
    if (box.width > 0.0 && box.length > 0.0 && box.height > 0.0)
    {
        return box;
    }
    return TvSurfaceMsg_PointType(message) == zTypeOf(z16s) ? GridBox(message) : SpanBox(message);
}
} // namespace

RegionXZ<double> ExpandProfileRegion(const RegionXZ<double>& a, const RegionXZ<double>& b)
{
    const Range alongX = Expanded({a.x, a.width}, {b.x, b.width});
    const Range alongZ = Expanded({a.z, a.height}, {b.z, b.height});
    return {alongX.centre, alongZ.centre, alongX.extent, alongZ.extent, 0.0};
}

RegionXZ<double> GetFullProfileRegion(void* message)
{
    const zRect3d64f box = BoxOfProfile(message);
    return {box.x, box.z, box.width, box.height, 0.0};
}

Region3d<double> GetFullSurfaceRegion(void* message)
{
    const zRect3d64f box = BoxOfSurface(message);
    return {box.x, box.y, box.z, box.width, box.length, box.height, 0.0, 0.0, 0.0};
}

Region2d<double> GetFullImageRegion(void* message)
{
    const auto width = static_cast<double>(TvImageMsg_Width(message));
    const auto length = static_cast<double>(TvImageMsg_Height(message));
    return {width / 2.0, length / 2.0, width, length, 0.0};
}

Region3d<double> GetFullBoxRegion(void* message)
{
    if (xzCastClass_ObjectIs(message, zTypeOf(TvProfileMsg)))
    {
        const RegionXZ<double> region = GetFullProfileRegion(message);
        return {region.x, 0.0, region.z, region.width, 0.0, region.height, 0.0, 0.0, 0.0};
    }
    if (xzCastClass_ObjectIs(message, zTypeOf(TvSurfaceMsg)))
    {
        return GetFullSurfaceRegion(message);
    }
    if (xzCastClass_ObjectIs(message, zTypeOf(TvImageMsg)))
    {
        const Region2d<double> region = GetFullImageRegion(message);
        return {region.x, region.y, 0.0, region.width, region.length, 0.0, 0.0, 0.0, 0.0};
    }
    return {};
}

RegionXZ<double> GetProfileRegion(const Ta::Params::ProfileRegion& region)
{
    return {region.x, region.z, region.width, region.height, region.yAngle};
}

Region2d<double> GetSurfaceRegion(const Ta::Params::SurfaceRegion2d& region)
{
    return {region.x, region.y, region.width, region.length, region.zAngle};
}

Region3d<double> GetSurfaceRegion(const Ta::Params::SurfaceRegion3d& region)
{
    return {region.x, region.y, region.z, region.width, region.length, region.height, 0.0, 0.0, region.zAngle};
}

Region3d<double> GetBoxRegion(const Ta::Params::BoxRegion& region)
{
    return {region.x,      region.y,      region.z,      region.width, region.length,
            region.height, region.xAngle, region.yAngle, region.zAngle};
}

// One pixel.

namespace
{
bool HasNull(const zM3dTransform3d& t)
{
    const std::array entries = {t.xx, t.xy, t.xz, t.xt, t.yx, t.yy, t.yz, t.yt, t.zx, t.zy, t.zz, t.zt};
    return std::ranges::find(entries, zNULL_64F) != entries.end();
}

template <typename Value>
void Put(Value* output, const Value& value)
{
    if (output != nullptr)
    {
        *output = value;
    }
}

z8u IntensityAt(const z8u* intensity)
{
    return intensity == nullptr ? z8u{0} : *intensity;
}

int OddPixels(double size, double scale)
{
    const z64s pixels = Rounded<z32s>(size / scale);
    const z64s odd = pixels % 2 == 0 ? pixels - 1 : pixels;
    return odd < 2 ? 1 : static_cast<int>(odd);
}

// A surface without intensities has none to be of another type.
void RequireBytesIfAny(const Ta::Place& place, const InputData& data)
{
    if (TvSurfaceMsg_HasIntensity(data.surface.Get()))
    {
        RequireBytes(place, IntensityTypeOfSurface(data.surface.Get()));
    }
}
} // namespace

void SetInputData(void* message, InputData* data)
{
    if (data == nullptr)
    {
        MU_FAIL(zERROR_PARAMETER, nullptr);
    }
    data->surface.Reset(message, true);
    data->length = static_cast<std::int32_t>(TvSurfaceMsg_Length(message));
    data->width = static_cast<std::int32_t>(TvSurfaceMsg_Width(message));
    data->offset = TvSurfaceMsg_Offset(message);
    data->scale = TvSurfaceMsg_Scale(message);
    data->hasIntensity = TvSurfaceMsg_HasIntensity(message) ? 1 : 0;
}

bool IsPixelPositionInvalid(const InputData& data, int x, int y)
{
    return x >= data.width || y >= data.length || x < 0 || y < 0;
}

short GetSurfaceHeightPixel(const InputData& data, int x, int y)
{
    if (IsPixelPositionInvalid(data, x, y))
    {
        MU_FAIL(zERROR_MISSING, nullptr);
    }
    void* const points = TvSurfaceMsg_PointsArray(data.surface.Get(), 0);
    const zType type = zArray2_ItemType(points);
    if (type != zTypeOf(z16s) && type != zTypeOf(zPoint3d16s))
    {
        MU_FAIL(zERROR_FORMAT, nullptr);
    }
    const void* const element = zArray2_At(points, static_cast<std::size_t>(y), static_cast<std::size_t>(x));
    if (element == nullptr)
    {
        MU_FAIL(zERROR_MISSING, nullptr); // the record tells of a larger surface than it holds
    }
    return type == zTypeOf(z16s) ? *static_cast<const z16s*>(element) : static_cast<const zPoint3d16s*>(element)->z;
}

double GetSurfaceHeight(const InputData& data, int x, int y)
{
    if (IsPixelPositionInvalid(data, x, y))
    {
        MU_FAIL(zERROR_MISSING, nullptr);
    }
    const z16s pixel = GetSurfaceHeightPixel(data, x, y);
    return pixel == zNULL_16S ? zNULL_64F : PixelToWorld(pixel, data.offset.z, data.scale.z);
}

unsigned char* GetSurfaceIntensityBasePtr(const InputData& data, int y)
{
    if (y < 0 || y >= data.length)
    {
        MU_FAIL(zERROR_MISSING, nullptr);
    }
    RequireBytesIfAny(MU_HERE, data);
    return static_cast<unsigned char*>(TvSurfaceMsg_IntensityAt(data.surface.Get(), static_cast<std::size_t>(y), 0));
}

unsigned char* GetSurfaceIntensityPtr(const InputData& data, int x, int y)
{
    if (IsPixelPositionInvalid(data, x, y))
    {
        MU_FAIL(zERROR_MISSING, nullptr);
    }
    RequireBytesIfAny(MU_HERE, data);
    return static_cast<unsigned char*>(
        TvSurfaceMsg_IntensityAt(data.surface.Get(), static_cast<std::size_t>(y), static_cast<std::size_t>(x)));
}

unsigned char GetSurfaceIntensity(const InputData& data, int x, int y)
{
    return IntensityAt(GetSurfaceIntensityPtr(data, x, y));
}

void GetTransformedPointFromPixel(const InputData& data, const zM3dTransform3d& transform, int row, int column,
                                  zPoint3d64f* point, short* heightPixel, unsigned char* intensity, int nullOutside)
{
    zPoint3d64f place = {PixelToWorld(column, data.offset.x, data.scale.x),
                         PixelToWorld(row, data.offset.y, data.scale.y), 0.0};
    int x = column;
    int y = row;
    if (HasNull(transform))
    {
        place.z = zNULL_64F;
    }
    else
    {
        MU_CHECK(zM3dTransform3d_Apply(&transform, &place, &place));
        x = WorldToPixel(place.x, data.offset.x, data.scale.x);
        y = WorldToPixel(place.y, data.offset.y, data.scale.y);
    }
    if (!IsPixelPositionInvalid(data, x, y))
    {
        const z8u* const greys = intensity == nullptr ? nullptr : GetSurfaceIntensityBasePtr(data, y);
        place.z = GetSurfaceHeight(data, x, y);
        Put(heightPixel, GetSurfaceHeightPixel(data, x, y));
        Put(intensity, greys == nullptr ? z8u{0} : greys[x]);
        Put(point, place);
        return;
    }
    if (nullOutside != 0)
    {
        place = {zNULL_64F, zNULL_64F, zNULL_64F};
    }
    Put(heightPixel, zNULL_16S);
    Put(intensity, z8u{0});
    Put(point, place);
    MU_FAIL(zERROR_PRECONDITION, nullptr); // required: the outputs are there, and still this raises
}

void RefRegionCorrectPoint(const InputData& data, const zPlane3d64f& plane, const TlkSurfaceGeneralizedPoint& in,
                           TlkSurfaceGeneralized3dPoint* out)
{
    void* const points = TvSurfaceMsg_PointsArray(data.surface.Get(), 0);
    if (zArray2_ItemType(points) != zTypeOf(z16s))
    {
        MU_FAIL(zERROR_FORMAT, nullptr);
    }
    const z8u* const intensityRow = GetSurfaceIntensityBasePtr(data, in.row);
    const auto column = static_cast<std::size_t>(in.column);
    const auto* const pixel = static_cast<const z16s*>(zArray2_At(points, static_cast<std::size_t>(in.row), column));
    if (in.column < 0 || pixel == nullptr)
    {
        MU_FAIL(zERROR_MISSING, nullptr);
    }
    *out = {in.x, in.y, zNULL_64F, in.column, in.row, zNULL_16S, 0};
    if (*pixel != zNULL_16S)
    {
        out->height = *pixel;
        out->z = PixelToWorld(*pixel, data.offset.z, data.scale.z);
        out->intensity = intensityRow == nullptr ? z8u{0} : intensityRow[column];
        RefCorrectPoint(data, plane, out);
    }
}

void RefCorrectPoint(const InputData& data, const zPlane3d64f& plane, TlkSurfaceGeneralized3dPoint* point)
{
    const auto& [a, b, c] = plane.normal;
    const double d = -(a * plane.point.x + b * plane.point.y + c * plane.point.z);
    point->z = a * point->x + b * point->y + c * point->z + d;
    point->height = WorldToHeightPixel(point->z, data.offset.z, data.scale.z);
}

void ConvertKernelSizeMmToPixel(double width, double length, const zPoint3d64f& scale, int* outWidth, int* outLength)
{
    *outWidth = OddPixels(width, scale.x);
    *outLength = OddPixels(length, scale.y);
}

// Points of surfaces.

namespace
{
constexpr std::size_t REGION_CAPACITY = 1024;
constexpr std::size_t ALL_POINTS_CAPACITY = 2000;

zType IntensityTypeOfProfile(void* message)
{
    return zArray1_ItemType(TvProfileMsg_IntensityArray(message, 0));
}

Window HeightsOf(const Mu::Vision::Rect3d<int>& box)
{
    return HeightWindow(box.z, z64s{box.z} + box.height);
}

bool IsTurned(double angle)
{
    constexpr double NOT_TURNED = 1.1920928955078125e-07;
    return !(std::abs(angle) < NOT_TURNED); // so that NaN counts as turned
}

zPoint3d32f Narrowed(const zPoint3d64f& point)
{
    return {static_cast<float>(point.x), static_cast<float>(point.y), static_cast<float>(point.z)};
}

// Writes every element of a row, those without data as NaN.
template <typename Points, typename IsMissing>
void WriteCloudRow(zPoint3d32f* out, std::size_t width, const Points& points, const IsMissing& isMissing)
{
    // Required: NaN here, where everything else has a null value.
    constexpr float NONE = std::numeric_limits<float>::quiet_NaN();
    for (std::size_t i = 0; i < width; ++i)
    {
        out[i] = isMissing(i) ? zPoint3d32f{NONE, NONE, NONE} : Narrowed(points(i));
    }
}

void WriteCloudRow(const SurfaceView& surface, std::size_t row, zPoint3d32f* out)
{
    if (surface.PointType() == zTypeOf(z16s))
    {
        const auto* const pixels = surface.Row<z16s>(row);
        WriteCloudRow(out, surface.width, GridPointsOf(surface.frame)(row, pixels),
                      [pixels](std::size_t i) { return pixels[i] == zNULL_16S; });
        return;
    }
    const auto* const triples = surface.Row<zPoint3d16s>(row);
    WriteCloudRow(out, surface.width, TriplePoints(surface.frame, triples), [triples](std::size_t i) {
        return triples[i].x == zNULL_16S || triples[i].y == zNULL_16S || triples[i].z == zNULL_16S;
    });
}
} // namespace

// The members that no tool calls stand in the namespace all the same: failures tell their qualified names.
// NOLINTBEGIN(misc-use-anonymous-namespace): it would become part of those names
static void GetPointsFromRegionResampled(void* message, const Region3d<double>& region, zArrayList handle)
{
    const SurfaceView surface(message);
    const Mu::Vision::Rect3d<int> box = surface.PixelBox(region);
    if (box.width < 1 || box.length < 1)
    {
        return;
    }
    ListRun<zPoint3d64f> list(MU_HERE, handle);
    const Span columns = SpanIn(box.x, box.width, surface.width);
    const Span rows = SpanIn(box.y, box.length, surface.length);
    WalkGrid(surface, {columns, rows, HeightsOf(box)}, list, GridPointsOf(surface.frame));
}

static void GetPointsFromRegionUnresampled(void* message, const Region3d<double>& region, zArrayList handle)
{
    const SurfaceView surface(message);
    ListRun<zPoint3d64f> list(MU_HERE, handle);
    WalkTriples(surface, region, list, [&surface](std::size_t /*row*/, const zPoint3d16s* triples) {
        return TriplePoints(surface.frame, triples);
    });
}

static void GetPointsFromRegionWithAngle(void* message, const Region3d<double>& region, zArrayList handle)
{
    const SurfaceView surface(message);
    const TurnedBox box(region, surface.frame);
    ListRun<zPoint3d64f> list(MU_HERE, handle);
    if (surface.PointType() == zTypeOf(z16s))
    {
        WalkTurnedGrid(surface, box, list);
    }
    else
    {
        WalkTurnedTriples(surface, box, list);
    }
}

static void GetIntensitiesFromRegionUnresampled(void* message, const Region3d<double>& region, zArrayList handle)
{
    const SurfaceView surface(message);
    ListRun<z8u> list(MU_HERE, handle);
    WalkTriples(surface, region, list, IntensitiesOf(surface));
}

// NOLINTEND(misc-use-anonymous-namespace)

void GetAllPoints(void* message, void** list)
{
    RequireArguments(MU_HERE, message, list);
    RequireList(MU_HERE, list, zTypeOf(zPoint3d64f), ALL_POINTS_CAPACITY, nullptr);
    const SurfaceView surface(message);
    ListRun<zPoint3d64f> points(MU_HERE, *list);
    // Required: rows are read as heights, whatever the points are.
    WalkGrid(surface, {{0, surface.width}, {0, surface.length}, NOT_NULL}, points, GridPointsOf(surface.frame));
}

void GetAllPointsPcd(void* message, Ta::Object<void*>& out, void* alloc)
{
    RequireArguments(MU_HERE, message, &out);
    const SurfaceView surface(message);
    if (surface.PointType() != zTypeOf(z16s) && surface.PointType() != zTypeOf(zPoint3d16s))
    {
        MU_FAIL(zERROR_PARAMETER, nullptr);
    }
    Ta::Object<void*> cloud;
    MU_CHECK(zArray1_Construct(cloud.Out(), zTypeOf(zPoint3d32f), surface.width * surface.length, alloc));
    auto* const items = static_cast<zPoint3d32f*>(zArray1_Items(cloud.Get()));
    for (std::size_t row = 0; row < surface.length; ++row)
    {
        WriteCloudRow(surface, row, items + row * surface.width);
    }
    // Required: stored over what the handle holds, which is not released.
    static_cast<void>(out.Detach());
    out = std::move(cloud);
}

void GetPointsFromRegion(void* message, const Region3d<double>& region, void** list, void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    KeepOrRebuildList(MU_HERE, list, zTypeOf(zPoint3d64f), REGION_CAPACITY, alloc);
    if (IsTurned(region.zAngle))
    {
        GetPointsFromRegionWithAngle(message, region, *list);
    }
    else if (TvSurfaceMsg_IsResampled(message))
    {
        GetPointsFromRegionResampled(message, region, *list);
    }
    else
    {
        GetPointsFromRegionUnresampled(message, region, *list);
    }
}

void GetIntensitiesFromRegion(void* message, const Region3d<double>& region, void** list, void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    if (!TvSurfaceMsg_HasIntensity(message))
    {
        return;
    }
    RequireBytes(MU_HERE, IntensityTypeOfSurface(message));
    KeepOrRebuildList(MU_HERE, list, zTypeOf(z8u), REGION_CAPACITY, alloc);
    // Required: no branch on the angle, where points have one.
    if (TvSurfaceMsg_IsResampled(message))
    {
        GetIntensitiesFromRegionResampled(message, region, list);
    }
    else
    {
        GetIntensitiesFromRegionUnresampled(message, region, *list);
    }
}

void GetIntensitiesFromRegionResampled(void* message, const Region3d<double>& region, void** list)
{
    RequireArguments(MU_HERE, message, list);
    if (*list != nullptr && zArrayList_ItemType(*list) != zTypeOf(z8u))
    {
        MU_FAIL(zERROR_FORMAT, nullptr);
    }
    if (!TvSurfaceMsg_IsResampled(message))
    {
        MU_FAIL(zERROR_PARAMETER, nullptr);
    }
    if (!TvSurfaceMsg_HasIntensity(message))
    {
        return;
    }
    RequireBytes(MU_HERE, IntensityTypeOfSurface(message));
    const SurfaceView surface(message);
    const Mu::Vision::Rect3d<int> box = surface.PixelBox(region);
    if (box.width < 1 || box.height < 1)
    {
        return;
    }
    ListRun<z8u> bytes(MU_HERE, *list);
    const Span columns = SpanIn(box.x, box.width, surface.width);
    // Required: as many rows as the box is heights high; its length plays no part.
    const Span rows = SpanIn(box.y, box.height, surface.length);
    WalkGrid(surface, {columns, rows, HeightsOf(box)}, bytes, IntensitiesOf(surface));
}

// Points of profiles.

namespace
{
enum class UpperBound
{
    Open,
    Closed
};

bool IsResampled(void* profile)
{
    return TvProfileMsg_PointType(profile) == zTypeOf(z16s);
}

void WalkPixelBox(const Ta::Place& place, void* message, const RegionXZ<double>& region, UpperBound bound,
                  const ProfileLists& lists)
{
    const ProfileView profile(message);
    const Mu::Vision::Rect2d<int> box = profile.PixelBox(region, 1);
    if (box.width < 1 || box.height < 1)
    {
        return;
    }
    const z64s top = z64s{box.y} + box.height - (bound == UpperBound::Open ? 1 : 0);
    WalkPixels(place, profile, SpanIn(box.x, box.width, profile.count), HeightWindow(box.y, top), lists);
}

// Points and, if `lists` takes them, intensities of a whole profile.
void WalkWholeProfile(const Ta::Place& place, const ProfileView& profile, const ProfileLists& lists)
{
    if (profile.type == zTypeOf(z16s))
    {
        WalkPixels(place, profile, {0, profile.count}, NOT_NULL, lists);
    }
    else
    {
        WalkWholePairs(place, profile, lists);
    }
}

void RequireProfilePoints(const Ta::Place& place, zType type)
{
    if (type != zTypeOf(z16s) && type != zTypeOf(zPoint16s))
    {
        Ta::Raise(place, zERROR_PARAMETER);
    }
}

void RequireRegions(const Ta::Place& place, const void* regions, std::size_t count)
{
    if (regions == nullptr && count != 0)
    {
        Ta::Raise(place, zERROR_PARAMETER);
    }
}

// Both lists anew.
ProfileLists RebuildLists(const Ta::Place& place, void** points, void** intensities, std::size_t capacity, zAlloc alloc)
{
    DropList(place, points);
    DropList(place, intensities);
    RebuildList(place, points, zTypeOf(zPoint64f), capacity, alloc);
    RebuildList(place, intensities, zTypeOf(z8u), capacity, alloc);
    return {*points, *intensities};
}

// Required: the handle becomes null, and what it held is not released.
void TellNoIntensities(void** intensities)
{
    *intensities = nullptr;
}

// A copy of a message's array, and the items of it. Required: it is stored over what the handle holds.
template <typename Item>
Item* ClonedItems(const Ta::Place& place, zArray1 source, void** array, zAlloc alloc)
{
    Ta::Check(place, xzObject_CloneImpl(array, source, alloc));
    return static_cast<Item*>(zArray1_Items(*array));
}

// The masked elements of a copy of a profile's points; `intensities` is null or in step with them.
void MaskPairs(const ProfileView& profile, const RegionXZ<double>& region, zPoint16s* pairs, z8u* intensities)
{
    SelectPairs({profile.frame, pairs}, region,
                [&](const auto& selection) { MaskElements(pairs, intensities, profile.count, selection); });
}

// What a mask keeps of a profile. Required: both far bounds are one past the box's own cells.
struct ClosedBox
{
    Span span;
    Window heights;

    ClosedBox(const Mu::Vision::Rect2d<int>& box, std::size_t count)
        : span(SpanIn(box.x, z64s{box.width} + 1, count))
        , heights(HeightWindow(box.y, z64s{box.y} + box.height))
    {
    }
};

// The boxes of several regions. Required: all their upper bounds are open.
ElementBox<1> OpenPixelBox(const Mu::Vision::Rect2d<int>& box, std::size_t count)
{
    return {SpanIn(box.x, box.width, count), Windows<1>({HeightWindow(box.y, z64s{box.y} + box.height - 1)})};
}

ElementBox<2> OpenPairBox(const Mu::Vision::Rect2d<int>& box, std::size_t count)
{
    const Window x = HeightWindow(box.x, z64s{box.x} + box.width - 1);
    return {{0, count}, Windows<2>({x, HeightWindow(box.y, z64s{box.y} + box.height - 1)})};
}

template <std::size_t COMPONENTS, typename BoxOf>
std::vector<ElementBox<COMPONENTS>> BoxesOf(const ProfileView& profile, const RegionXZ<double>* regions,
                                            std::size_t count, const BoxOf& boxOf)
{
    // Required: of pairs the stored value is the first axis, not the column.
    const int isPixelGrid = COMPONENTS == 1 ? 1 : 0;
    std::vector<ElementBox<COMPONENTS>> boxes;
    boxes.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        boxes.push_back(boxOf(profile.PixelBox(regions[i], isPixelGrid), profile.count));
    }
    return boxes;
}

// A region in a plane of its own, in which it is not turned.
struct TurnedRegion
{
    zM3dTransform2d toRegion;
    double halfWidth;
    double halfHeight;

    [[nodiscard]] bool Hold(const Ta::Place& place, const zPoint64f& point) const
    {
        zPoint64f turned;
        Ta::Check(place, zM3dTransform2d_Apply(&toRegion, &point, &turned));
        return Bounds{-halfWidth, halfWidth}.Hold(turned.x) && Bounds{-halfHeight, halfHeight}.Hold(turned.y);
    }
};

TurnedRegion TurnedRegionOf(const Ta::Place& place, const RegionXZ<double>& region, double angle)
{
    TurnedRegion turned{{}, region.width / 2, region.height / 2};
    Ta::Check(place, zM3dTransform2d_Identity(&turned.toRegion));
    Ta::Check(place, zM3dTransform2d_Translate(&turned.toRegion, -region.x, -region.z));
    Ta::Check(place, zM3dTransform2d_Rotate(&turned.toRegion, -angle));
    return turned;
}

zPoint16s PairAt(const ProfileView& profile, std::size_t element)
{
    // Required: the number is narrowed, so that it wraps behind 32767.
    return profile.type == zTypeOf(z16s) ? zPoint16s{static_cast<z16s>(element), profile.Pixels()[element]}
                                         : profile.Pairs()[element];
}
} // namespace

// NOLINTBEGIN(misc-use-anonymous-namespace): as with surfaces
static void GetPointsFromRegionXZResampled(void* message, const RegionXZ<double>& region, zArrayList list)
{
    WalkPixelBox(MU_HERE, message, region, UpperBound::Open, {list});
}

static void GetPointsFromRegionXZUnresampled(void* message, const RegionXZ<double>& region, zArrayList list)
{
    WalkPairs(MU_HERE, ProfileView(message), region, {list});
}

// Required: closed here, open without intensities.
static void GetPointsAndIntensitiesFromRegionXZResampled(void* message, const RegionXZ<double>& region,
                                                         const ProfileLists& lists)
{
    WalkPixelBox(MU_HERE, message, region, UpperBound::Closed, lists);
}

static void GetPointsAndIntensitiesFromRegionXZUnresampled(void* message, const RegionXZ<double>& region,
                                                           const ProfileLists& lists)
{
    WalkPairs(MU_HERE, ProfileView(message), region, lists);
}

// NOLINTEND(misc-use-anonymous-namespace)

void GetAllProfilePoints(void* message, void** list, void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    const ProfileView profile(message);
    RequireProfilePoints(MU_HERE, profile.type);
    RequireList(MU_HERE, list, zTypeOf(zPoint64f), profile.count, alloc);
    WalkWholeProfile(MU_HERE, profile, {*list});
}

void GetAllProfilePointsAndIntensity(void* message, void** list, void** intensity, void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    RequireArguments(MU_HERE, message, intensity);
    const ProfileView profile(message);
    RequireProfilePoints(MU_HERE, profile.type);
    if (!TvProfileMsg_HasIntensity(message))
    {
        GetAllProfilePoints(message, list, alloc);
        TellNoIntensities(intensity);
        return;
    }
    RequireBytes(MU_HERE, IntensityTypeOfProfile(message));
    WalkWholeProfile(MU_HERE, profile, RebuildLists(MU_HERE, list, intensity, 0, alloc));
}

void GetPointArrayFromRegionXZ(void* message, const RegionXZ<double>& region, void** array, void* alloc)
{
    RequireArguments(MU_HERE, message, array);
    const ProfileView profile(message);
    auto* const items = ClonedItems<void>(MU_HERE, TvProfileMsg_PointsArray(message, 0), array, alloc);
    if (items == nullptr)
    {
        return;
    }
    if (profile.type != zTypeOf(z16s))
    {
        MaskPairs(profile, region, static_cast<zPoint16s*>(items), nullptr);
        return;
    }
    const Mu::Vision::Rect2d<int> box = profile.PixelBox(region, 1);
    if (box.width < 1 || box.height < 1)
    {
        MU_CHECK(Mu::Vision::Array1FillMin(*array));
        return;
    }
    const ClosedBox kept(box, profile.count);
    MaskPixels(static_cast<z16s*>(items), profile.count, kept.span, kept.heights, BestVectorCode());
}

void GetPointAndIntensityArrayFromRegionXZ(void* message, const RegionXZ<double>& region, void** array,
                                           void** intensity, void* alloc)
{
    RequireArguments(MU_HERE, message, array);
    RequireArguments(MU_HERE, message, intensity);
    if (!TvProfileMsg_HasIntensity(message))
    {
        GetPointArrayFromRegionXZ(message, region, array, alloc);
        TellNoIntensities(intensity);
        return;
    }
    RequireBytes(MU_HERE, IntensityTypeOfProfile(message));
    const ProfileView profile(message);
    auto* const items = ClonedItems<void>(MU_HERE, TvProfileMsg_PointsArray(message, 0), array, alloc);
    auto* const bytes = ClonedItems<z8u>(MU_HERE, TvProfileMsg_IntensityArray(message, 0), intensity, alloc);
    if (items == nullptr || bytes == nullptr)
    {
        return;
    }
    if (profile.type != zTypeOf(z16s))
    {
        MaskPairs(profile, region, static_cast<zPoint16s*>(items), bytes);
        return;
    }
    const Mu::Vision::Rect2d<int> box = profile.PixelBox(region, 1);
    if (box.width < 1 || box.height < 1)
    {
        // Required: here intensities of points that were null go too, elsewhere they stay.
        MU_CHECK(Mu::Vision::Array1FillMin(*array));
        MU_CHECK(Mu::Vision::Array1FillMin(*intensity));
        return;
    }
    auto* const pixels = static_cast<z16s*>(items);
    const ClosedBox kept(box, profile.count);
    const std::vector<ElementBox<1>> boxes = {{kept.span, Windows<1>({kept.heights})}};
    MaskElements(pixels, bytes, profile.count, AnyBoxSelection<1>(pixels, boxes));
}

void GetPointsFromRegionXZ(void* message, const RegionXZ<double>& region, void** list, void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    KeepOrRebuildList(MU_HERE, list, zTypeOf(zPoint64f), REGION_CAPACITY, alloc);
    if (IsResampled(message))
    {
        GetPointsFromRegionXZResampled(message, region, *list);
    }
    else
    {
        GetPointsFromRegionXZUnresampled(message, region, *list);
    }
}

void GetPointsAndIntensitiesFromRegionXZ(void* message, const RegionXZ<double>& region, void** list, void** intensity,
                                         void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    RequireArguments(MU_HERE, message, intensity);
    if (!TvProfileMsg_HasIntensity(message))
    {
        GetPointsFromRegionXZ(message, region, list, alloc);
        TellNoIntensities(intensity);
        return;
    }
    RequireBytes(MU_HERE, IntensityTypeOfProfile(message));
    const ProfileLists lists = RebuildLists(MU_HERE, list, intensity, REGION_CAPACITY, alloc);
    if (IsResampled(message))
    {
        GetPointsAndIntensitiesFromRegionXZResampled(message, region, lists);
    }
    else
    {
        GetPointsAndIntensitiesFromRegionXZUnresampled(message, region, lists);
    }
}

void GetProfilePointsFromRegions(void* message, const RegionXZ<double>* regions, std::size_t count, void** list,
                                 void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    RequireRegions(MU_HERE, regions, count);
    const ProfileView profile(message);
    if (*list == nullptr)
    {
        MU_CHECK(zArrayList_Construct(list, zTypeOf(zPoint64f), profile.count, alloc));
    }
    const Span all{0, profile.count};
    if (profile.type == zTypeOf(z16s))
    {
        const auto boxes = BoxesOf<1>(profile, regions, count, OpenPixelBox);
        WalkProfile(MU_HERE, profile, boxes.size() == 1 ? boxes[0].span : all,
                    AnyBoxSelection<1>(profile.Pixels(), boxes), LinePoints{profile.frame, profile.Pixels()}, {*list});
    }
    else
    {
        const auto boxes = BoxesOf<2>(profile, regions, count, OpenPairBox);
        WalkProfile(MU_HERE, profile, all, AnyBoxSelection<2>(ComponentsOf(profile.Pairs()), boxes),
                    PairPoints{profile.frame, profile.Pairs()}, {*list});
    }
}

void GetProfilePointsFromRegionsWithAngle(void* message, RegionXZ<double>* regions, double* angles, std::size_t count,
                                          void** list, void* alloc)
{
    RequireArguments(MU_HERE, message, list);
    RequireRegions(MU_HERE, regions, count);
    RequireRegions(MU_HERE, angles, count);
    const ProfileView profile(message);
    RequireProfilePoints(MU_HERE, profile.type);
    std::vector<TurnedRegion> turned;
    turned.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        turned.push_back(TurnedRegionOf(MU_HERE, regions[i], angles[i]));
    }
    if (*list == nullptr)
    {
        MU_CHECK(zArrayList_Construct(list, zTypeOf(zPoint64f), 0, alloc));
    }
    ListRun<zPoint64f> points(MU_HERE, *list);
    for (std::size_t i = 0; i < profile.count; ++i)
    {
        const zPoint16s pair = PairAt(profile, i);
        // Required: a null z is not left out, it lies outside by its size.
        const zPoint64f point = {profile.frame.x.World(pair.x),
                                 pair.y == zNULL_16S ? zNULL_64F : profile.frame.z.World(pair.y)};
        const auto holds = [&point](const TurnedRegion& region) { return region.Hold(MU_HERE, point); };
        if (std::ranges::any_of(turned, holds))
        {
            *points.Room(1) = point;
            points.Added(1);
        }
    }
    points.Finish();
}
} // namespace Mu::TlkHelper
