#include <MuTlkHelper/CropRow.h>
#include <MuTlkHelper/InputUtils.h>

#include <Support/Lists.h>
#include <Support/NaiveComparison.h>
#include <Support/NaiveCropping.h>
#include <Support/RandomScans.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

// Framed views, sectors and crops against their naive twins, bit for bit, on made messages, regions and masks.

namespace
{
using namespace Mu::TlkHelper;
using namespace Support;
using Mu::Vision::AnnularSector3d;
using Mu::Vision::Rect2d;
using Mu::Vision::RefFrame;
using Mu::Vision::Region3d;

class Cropping_of_surfaces : public testing::Test
{
protected:
    void Make(bool isResampled)
    {
        surface = scans.Surface(isResampled);
        message = surface.Get();
        width = TvSurfaceMsg_Width(message);
        length = TvSurfaceMsg_Length(message);
    }

    void PlaceRegion()
    {
        region = scans.Region(message, static_cast<int>(width), static_cast<int>(length));
    }

    void Move(const zPoint3d64f& offset, const zPoint3d64f& scale)
    {
        MU_CHECK(TvSurfaceMsg_SetOffset(message, &offset));
        MU_CHECK(TvSurfaceMsg_SetScale(message, &scale));
    }

    // Places that become the same world value, so that other pixels than their own are seen there.
    void MakeSoFarOutThatPixelsMerge()
    {
        Make(true);
        const std::array offsets = {1e8, -3e8, 5e7};
        const std::array scales = {1e-9, -2e-9, 5e-9};
        Move({scans.OneOf(offsets), scans.OneOf(offsets), 0}, {scans.OneOf(scales), scans.OneOf(scales), 1});
        PlaceRegion();
    }

    // Columns and rows at the far end have no finite place.
    void MakeThatReachesTheEndOfNumbers()
    {
        Make(true);
        const std::array scales = {1e307, -8e306, 1.0};
        Move({0, 0, 0}, {1e307, scans.OneOf(scales), 1});
        PlaceRegion();
        region.x = 0;
        region.y = 0;
        region.width = std::numeric_limits<double>::infinity();
        region.length = region.width;
    }

    // The identity is told by its values, and zeros have two signs.
    RefFrame AnyIdentity()
    {
        const double zero = scans.Chance(0.2) ? -0.0 : 0.0;
        const double other = scans.Chance(0.2) ? -0.0 : 0.0;
        return RefFrame({1, zero, zero, other, other, 1, zero, zero, other, zero, 1, other});
    }

    void CompareFramed(const std::string& path)
    {
        RefFrame frame = AnyIdentity();
        ASSERT_TRUE(frame.IsIdentity());
        const Naive::SurfaceData data(message);
        std::vector<zPoint3d64f> points;
        std::vector<z8u> bytes;
        Naive::FramedPixels(data, region, frame, [&](const zPoint3d64f& point, std::size_t element) {
            points.push_back(point);
            bytes.push_back(data.grey[element]);
        });
        Handle list;
        GetTransformedPointsFromRegion(message, region, &frame, list.Out());
        EXPECT_TRUE(SameBits(ItemsOf<zPoint3d64f>(list.Get()), points)) << "points" << path;
        Handle grey;
        GetTransformedIntensityFromRegion(message, region, &frame, grey.Out());
        EXPECT_TRUE(SameBits(ItemsOf<z8u>(grey.Get()), bytes)) << "intensities" << path;
        tally.Count("points" + path, points.size(), width * length);
        tally.Count("intensities" + path, bytes.size(), width * length);
    }

    // A frame that is none or moves something changes nothing.
    void CompareHandedOver()
    {
        RefFrame turned;
        turned.RotateXYZ(scans.Real(-90, 90), 0, scans.Real(1, 90));
        RefFrame* const frame = scans.Chance(0.5) ? &turned : nullptr;
        region.zAngle = scans.Chance(0.5) ? scans.Angle() : 0.0;
        std::vector<zPoint3d64f> points;
        Naive::PointsFromRegion(message, region, AddTo(points));
        Handle list;
        GetTransformedPointsFromRegion(message, region, frame, list.Out());
        EXPECT_TRUE(SameBits(ItemsOf<zPoint3d64f>(list.Get()), points));
        std::vector<z8u> bytes;
        Naive::IntensitiesFromRegion(message, region, AddTo(bytes));
        Handle grey;
        GetTransformedIntensityFromRegion(message, region, frame, grey.Out());
        EXPECT_TRUE(SameBits(ItemsOf<z8u>(grey.Get()), bytes));
        tally.Count("points handed over", points.size(), width * length);
        tally.Count("intensities handed over", bytes.size(), width * length);
    }

    AnnularSector3d<double> Sector()
    {
        const zPoint3d64f scale = TvSurfaceMsg_Scale(message);
        const zPoint3d64f offset = TvSurfaceMsg_Offset(message);
        const double unit = std::isfinite(scale.x) ? std::abs(scale.x) : 1.0;
        const double columns = static_cast<double>(width);
        AnnularSector3d<double> sector;
        sector.outerRadius = scans.Chance(0.2) ? scans.Whole(0, 40) * unit : scans.Real(0, columns) * unit;
        sector.innerRadius = scans.Chance(0.3) ? 0.0 : scans.Real(-0.2, 1) * sector.outerRadius;
        sector.startAngle = scans.Angle();
        sector.angleRange = scans.Chance(0.3) ? 360.0 : scans.Real(-400, 400);
        sector.center = {offset.x + scans.Whole(-10, 70) * scale.x, offset.y + scans.Whole(-10, 70) * scale.y, 0};
        const std::array<double*, 6> fields = {&sector.innerRadius, &sector.outerRadius, &sector.startAngle,
                                               &sector.angleRange,  &sector.center.x,    &sector.center.y};
        const std::array odd = {zNULL_64F, std::nan(""), std::numeric_limits<double>::infinity(), 0.0, -1.0, 1e300};
        if (scans.Chance(0.1))
        {
            *scans.OneOf(fields) = scans.OneOf(odd);
        }
        return sector;
    }

    void CompareSector()
    {
        const AnnularSector3d<double> sector = Sector();
        std::vector<zPoint3d64f> points;
        Naive::PointsInSector(message, sector, AddTo(points));
        Handle list;
        GetPointsInAnnularSector(message, sector, list.Out());
        EXPECT_TRUE(SameBits(ItemsOf<zPoint3d64f>(list.Get()), points));
        tally.Count("sector", points.size(), width * length);
        tally.Count(std::abs(sector.angleRange) >= 360.0 ? "full ring" : "part of a ring", points.size(),
                    width * length);
    }

    // Rows by the ten thousand now and then only.
    void LimitRows()
    {
        constexpr int MANY = 200;
        const Naive::SurfaceData data(message);
        if (data.PixelBox(region).height > MANY && !scans.Chance(0.01))
        {
            region.height = scans.Whole(0, MANY) * std::abs(data.scale.z);
        }
    }

    void CompareExtract()
    {
        LimitRows();
        const Naive::CutOut expected = Naive::ExtractRegion(message, region);
        Ta::Object<void*> heights;
        Ta::Object<void*> grey;
        if (scans.Chance(0.5))
        {
            MU_CHECK(zArray1_Construct(grey.Out(), zTypeOf(z8u), 0, nullptr)); // anything asks for intensities
        }
        const bool withGrey = static_cast<bool>(grey);
        zPoint3d64f origin;
        SurfaceExtractRegion(message, region, heights, grey, &origin);
        EXPECT_EQ(zArray2_Length(heights.Get(), 0), expected.heights.rows);
        EXPECT_EQ(zArray2_Length(heights.Get(), 1), expected.heights.columns);
        EXPECT_EQ(zArray2_ItemType(heights.Get()), zTypeOf(z16s));
        EXPECT_TRUE(SameBits(ItemsOfGrid<z16s>(heights.Get()), expected.heights.items));
        EXPECT_EQ(std::memcmp(&origin, &expected.origin, sizeof(origin)), 0);
        EXPECT_EQ(static_cast<bool>(grey), withGrey);
        if (withGrey)
        {
            EXPECT_EQ(zArray2_Length(grey.Get(), 0), expected.heights.rows);
            EXPECT_TRUE(SameBits(ItemsOfGrid<z8u>(grey.Get()), expected.grey.items));
        }
        tally.Count(withGrey ? "extract with intensities" : "extract", expected.kept, expected.heights.items.size());
    }

    RandomScans scans{20'240'701};
    Tally tally;
    Ta::Object<void*> surface;
    void* message = nullptr;
    std::size_t width = 0;
    std::size_t length = 0;
    Region3d<double> region;
};

TEST_F(Cropping_of_surfaces, gives_what_its_naive_twins_give)
{
    for (int number = 0; number < CASES; ++number)
    {
        Make(number % 8 != 0);
        if (scans.Chance(0.05))
        {
            Move({-0.0, -0.0, -0.0}, TvSurfaceMsg_Scale(message));
        }
        PlaceRegion();
        CompareFramed(number % 8 != 0 ? "" : " of triples");
        CompareSector();
        CompareHandedOver();
        region.zAngle = 0;
        CompareExtract();
        ASSERT_FALSE(HasFailure()) << "in case " << number;
    }
    tally.ExpectEnough(11);
}

TEST_F(Cropping_of_surfaces, gives_what_its_naive_twins_give_where_pixels_merge_or_have_no_place)
{
    for (int number = 0; number < CASES / 4; ++number)
    {
        MakeSoFarOutThatPixelsMerge();
        CompareFramed(" that merge");
        CompareSector();
        MakeThatReachesTheEndOfNumbers();
        CompareFramed(" at the end of numbers");
        CompareSector();
        ASSERT_FALSE(HasFailure()) << "in case " << number;
    }
    tally.ExpectEnough(7);
}

TEST(Surface_features, give_every_handle_back)
{
    RandomScans scans(20'240'702);
    for (int number = 0; number < CASES; ++number)
    {
        const auto high =
            static_cast<z32u>(scans.Whole(std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
        const auto low =
            static_cast<z32u>(scans.Whole(std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
        const auto handle = z64u{high} << 32 | low;
        const zPoint3d64f point = SurfaceMsgToSurfaceFeature(reinterpret_cast<void*>(handle));
        ASSERT_EQ(point.x, 1.0 + static_cast<double>(high) / 1e12);
        ASSERT_EQ(point.y, 1.0 + static_cast<double>(low) / 1e12);
        Ta::Object<void*> feature;
        MU_CHECK(TvPointFeatureMsg_Construct(feature.Out(), 1, nullptr));
        MU_CHECK(TvPointFeatureMsg_SetPosition(feature.Get(), &point));
        ASSERT_EQ(SurfaceFeatureToSurfaceMsg(feature.Get()), reinterpret_cast<void*>(handle));
    }
}

struct Mask
{
    std::string kind;
    Naive::Grid<z8u> grid;
};

const std::string EMPTY = "empty";

template <typename Item>
class Crops : public testing::Test
{
protected:
    void Compare()
    {
        const Naive::Grid<Item> source = Source();
        const Rect2d<int> rect = Rect(source);
        const Mask mask = AnyMask(rect);
        const Naive::Cropped<Item> expected = Naive::Crop(source, rect, mask.grid);
        const Ta::Object<void*> array = NewGrid(ItemType(), source.rows, source.columns, source.items);
        const Ta::Object<void*> bytes = NewGrid(zTypeOf(z8u), mask.grid.rows, mask.grid.columns, mask.grid.items);
        const Ta::Object<void*> crop = CropRoi<Item>(array.Get(), rect, bytes.Get());
        EXPECT_EQ(zArray2_Length(crop.Get(), 0), static_cast<std::size_t>(rect.height));
        EXPECT_EQ(zArray2_Length(crop.Get(), 1), static_cast<std::size_t>(rect.width));
        EXPECT_EQ(zArray2_ItemType(crop.Get()), ItemType());
        EXPECT_TRUE(SameBits(ItemsOfGrid<Item>(crop.Get()), expected.crop.items)) << mask.kind;
        emptyMasks += mask.kind == EMPTY ? 1 : 0;
        if (mask.kind != EMPTY)
        {
            tally.Count(mask.kind, expected.kept, expected.crop.items.size());
        }
        CompareStores();
    }

    // A row as large results are written and as small ones are.
    void CompareStores()
    {
        constexpr int MOST = 300;
        const auto count = static_cast<std::size_t>(scans.Whole(0, MOST));
        const auto place = static_cast<std::size_t>(scans.Whole(0, 31)); // the vectors need not be aligned
        std::vector<Item> source(count + place);
        std::vector<z8u> mask(count + place);
        std::vector<z16s> pixels(count + place);
        for (std::size_t i = 0; i < source.size(); ++i)
        {
            source[i] = static_cast<Item>(scans.Whole(-40'000, 40'000));
            mask[i] = static_cast<z8u>(scans.Chance(0.5) ? scans.Whole(1, 255) : 0);
            pixels[i] = static_cast<z16s>(scans.Whole(-32768, 32767));
        }
        const Window window{static_cast<z16s>(scans.Whole(-32768, 0)), static_cast<z16s>(scans.Whole(0, 32767))};
        for (const Stores stores : {Stores::Cached, Stores::Streaming})
        {
            // One item before and behind, which must stay; and places that are not aligned.
            const auto before = static_cast<std::size_t>(scans.Whole(1, 40));
            const Item fill{7};
            const Item outside{9};
            std::vector<Item> byMask(before + count + 1, outside);
            std::vector<Item> byWindow = byMask;
            SelectItems(byMask.data() + before, source.data() + place, count, fill, MaskTest{mask.data() + place},
                        stores);
            SelectItems(byWindow.data() + before, source.data() + place, count, fill,
                        WindowTest{pixels.data() + place, window}, stores);
            FinishStreaming();
            for (const std::vector<Item>& row : {byMask, byWindow})
            {
                ASSERT_TRUE(row[before - 1] == outside && row.back() == outside);
            }
            for (std::size_t i = 0; i < count; ++i)
            {
                const z16s pixel = pixels[i + place];
                ASSERT_EQ(byMask[before + i], mask[i + place] != 0 ? source[i + place] : fill);
                ASSERT_EQ(byWindow[before + i], pixel >= window.low && pixel <= window.high ? source[i + place] : fill);
            }
        }
    }

    static zType ItemType()
    {
        return sizeof(Item) == sizeof(z8u)    ? zTypeOf(z8u)
               : sizeof(Item) == sizeof(z16s) ? zTypeOf(z16s)
                                              : zTypeOf(z32s);
    }

    Naive::Grid<Item> Source()
    {
        Naive::Grid<Item> source{Size(), Size(), {}};
        for (std::size_t i = 0; i < source.rows * source.columns; ++i)
        {
            source.items.push_back(scans.Chance(0.1) ? Mu::Vision::GetNull<Item>()
                                                     : static_cast<Item>(scans.Whole(-100'000, 100'000)));
        }
        return source;
    }

    std::size_t Size()
    {
        return static_cast<std::size_t>(scans.Whole(0, 64));
    }

    // Mostly one that lies in the source, or over its border; now and then far from it.
    Rect2d<int> Rect(const Naive::Grid<Item>& source)
    {
        constexpr int FARTHEST = std::numeric_limits<int>::max();
        Rect2d<int> rect{scans.Whole(-10, static_cast<int>(source.columns)),
                         scans.Whole(-10, static_cast<int>(source.rows)), scans.Whole(1, 64), scans.Whole(1, 64)};
        if (scans.Chance(0.05))
        {
            rect.x = scans.OneOf(std::array{FARTHEST, -FARTHEST - 1, -64, 64});
        }
        if (scans.Chance(0.05))
        {
            rect.y = scans.OneOf(std::array{FARTHEST, -FARTHEST - 1, -64, 64});
        }
        return rect;
    }

    Mask AnyMask(const Rect2d<int>& rect)
    {
        const bool fits = scans.Chance(0.7);
        Naive::Grid<z8u> grid{fits ? static_cast<std::size_t>(rect.height) : Size(),
                              fits ? static_cast<std::size_t>(rect.width) : Size(),
                              {}};
        const std::array<std::string, 4> kinds = {EMPTY, "full", "random", "runs"};
        const int kind = scans.Whole(0, 3);
        const double share = kind == 0 ? 0.0 : kind == 1 ? 1.0 : scans.Real(0, 1);
        const double change = kind == 3 ? 0.05 : 1.0;
        bool isKept = scans.Chance(share);
        for (std::size_t i = 0; i < grid.rows * grid.columns; ++i)
        {
            isKept = scans.Chance(change) ? scans.Chance(share) : isKept;
            grid.items.push_back(static_cast<z8u>(isKept ? scans.Whole(1, 255) : 0));
        }
        return {fits || kind == 0 ? kinds[static_cast<std::size_t>(kind)] : "of another size", grid};
    }

    RandomScans scans{20'240'703};
    Tally tally;
    int emptyMasks = 0;
};

using Elements = testing::Types<unsigned char, short, int>;
TYPED_TEST_SUITE(Crops, Elements);

TYPED_TEST(Crops, give_what_their_naive_twin_gives)
{
    for (int number = 0; number < CASES; ++number)
    {
        this->Compare();
        ASSERT_FALSE(this->HasFailure()) << "in case " << number;
    }
    this->tally.ExpectEnough(4);
    EXPECT_GE(this->emptyMasks, PROPER_CASES);
}
} // namespace
