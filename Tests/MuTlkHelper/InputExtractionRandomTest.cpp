#include <MuTlkHelper/InputUtils.h>
#include <MuTlkHelper/MaskPixels.h>

#include <Support/Lists.h>
#include <Support/NaiveComparison.h>
#include <Support/NaiveExtraction.h>
#include <Support/RandomScans.h>

#include <gtest/gtest.h>

#include <string>

// Every member against its naive twin, bit for bit, on made messages and regions.

namespace
{
using namespace Mu::TlkHelper;
using namespace Support;
using Mu::Vision::Region3d;
using Mu::Vision::RegionXZ;

class Surface_members : public testing::Test
{
protected:
    void Compare(int number)
    {
        const bool isResampled = number % 2 == 0;
        const Ta::Object<void*> surface = scans.Surface(isResampled);
        message = surface.Get();
        const auto width = static_cast<int>(TvSurfaceMsg_Width(message));
        const auto length = static_cast<int>(TvSurfaceMsg_Length(message));
        pixels = TvSurfaceMsg_Width(message) * TvSurfaceMsg_Length(message);
        type = isResampled ? " of heights" : " of triples";
        region = scans.Region(message, isResampled ? width : 0, isResampled ? length : 0);
        // Triples are told by their samples only where rounding keeps their order.
        const bool isByTest = !isResampled && !std::isfinite(TvSurfaceMsg_Scale(message).x);
        const std::string path = isByTest ? " in a box, scale not finite" : " in a box";
        ComparePoints(path);
        CompareIntensities(path);
        region.zAngle = scans.Angle();
        ComparePoints(" in a turned box");
        CompareWhole(isResampled);
    }

    // A grid so far out that turned places overflow: an endless box holds them all the same.
    void CompareFarOut()
    {
        const Ta::Object<void*> surface = scans.Surface(true);
        message = surface.Get();
        pixels = TvSurfaceMsg_Width(message) * TvSurfaceMsg_Length(message);
        const zPoint3d64f offset = {1.5e308, 1.5e308, 0};
        const zPoint3d64f scale = {1e300, 1e300, 1};
        MU_CHECK(TvSurfaceMsg_SetOffset(message, &offset));
        MU_CHECK(TvSurfaceMsg_SetScale(message, &scale));
        region = scans.Region(message, 0, 0);
        region.width = std::numeric_limits<double>::infinity();
        region.length = region.width;
        region.x = scans.Real(-1, 1);
        region.y = scans.Real(-1, 1);
        region.zAngle = scans.Real(30, 60);
        ComparePoints(" far out");
    }

    void ComparePoints(const std::string& path)
    {
        std::vector<zPoint3d64f> expected;
        Naive::PointsFromRegion(message, region, AddTo(expected));
        Handle list;
        GetPointsFromRegion(message, region, list.Out());
        EXPECT_TRUE(SameBits(ItemsOf<zPoint3d64f>(list.Get()), expected)) << path << type;
        tally.Count("points" + path + type, expected.size(), pixels);
    }

    void CompareIntensities(const std::string& path)
    {
        std::vector<z8u> expected;
        Naive::IntensitiesFromRegion(message, region, AddTo(expected));
        Handle list;
        GetIntensitiesFromRegion(message, region, list.Out());
        EXPECT_TRUE(SameBits(ItemsOf<z8u>(list.Get()), expected)) << path << type;
        tally.Count("intensities" + path + type, expected.size(), pixels);
    }

    void CompareWhole(bool isResampled)
    {
        std::vector<zPoint3d32f> cloud;
        Naive::Cloud(message, AddTo(cloud));
        Ta::Object<void*> array;
        GetAllPointsPcd(message, array, nullptr);
        EXPECT_TRUE(SameBits(ItemsOfArray<zPoint3d32f>(array.Get()), cloud)) << type;
        std::size_t nans = 0;
        for (const zPoint3d32f& point : cloud)
        {
            nans += std::isnan(point.y) ? 1U : 0U;
        }
        tally.Count("cloud" + type, cloud.size() - nans, cloud.size());
        if (isResampled)
        {
            std::vector<zPoint3d64f> expected;
            Naive::AllPoints(message, AddTo(expected));
            Handle list;
            GetAllPoints(message, list.Out());
            EXPECT_TRUE(SameBits(ItemsOf<zPoint3d64f>(list.Get()), expected));
            tally.Count("all points" + type, expected.size(), pixels);
        }
    }

    RandomScans scans{20'240'611};
    Tally tally;
    void* message = nullptr;
    std::size_t pixels = 0;
    std::string type;
    Region3d<double> region;
};

TEST_F(Surface_members, give_what_their_naive_twins_give)
{
    for (int number = 0; number < CASES; ++number)
    {
        Compare(number);
        ASSERT_FALSE(HasFailure()) << "in case " << number;
    }
    tally.ExpectEnough(11);
}

TEST_F(Surface_members, give_what_their_naive_twins_give_where_turned_places_overflow)
{
    for (int number = 0; number < CASES / 10; ++number)
    {
        CompareFarOut();
        ASSERT_FALSE(HasFailure()) << "in case " << number;
    }
    tally.ExpectEnough(1);
}

class Profile_members : public testing::Test
{
protected:
    void Compare(int number, std::size_t count)
    {
        isResampled = number % 2 == 0;
        const Ta::Object<void*> profile = scans.Profile(isResampled, count);
        message = profile.Get();
        points = count;
        type = isResampled ? " of heights" : " of pairs";
        // Pairs are told by their samples only where rounding keeps their order.
        const bool isByTest = !isResampled && !std::isfinite(TvProfileMsg_Scale(message).x);
        inRegion = isByTest ? ", scale not finite" : "";
        region = AnyRegion();
        CompareWhole();
        ComparePoints();
        CompareMask();
        ComparePortableMask();
        scans.AddIntensity(message);
        CompareWholeWithGrey();
        ComparePointsWithGrey();
        CompareMaskWithGrey();
        CompareRegions();
        CompareTurnedRegions();
    }

    [[nodiscard]] RegionXZ<double> AnyRegion()
    {
        return scans.RegionXZ(message, isResampled ? static_cast<int>(points) : 0);
    }

    // A walk over a profile that takes points by their number.
    template <typename Walk>
    void Expect(const std::string& path, void* list, void* grey, const Walk& walk)
    {
        const Naive::ProfileData data(message);
        std::vector<zPoint64f> expected;
        std::vector<z8u> bytes;
        walk(data, [&](std::size_t i) {
            expected.push_back(data.Point(i));
            bytes.push_back(grey == nullptr ? z8u{0} : data.grey[i]);
        });
        EXPECT_TRUE(SameBits(ItemsOf<zPoint64f>(list), expected)) << path << type;
        if (grey != nullptr)
        {
            EXPECT_TRUE(SameBits(ItemsOf<z8u>(grey), bytes)) << path << type;
        }
        tally.Count(path + type, expected.size(), points);
    }

    void CompareWhole()
    {
        Handle list;
        GetAllProfilePoints(message, list.Out());
        Expect("all", list.Get(), nullptr,
               [](const auto& data, const auto& take) { Naive::AllProfilePoints(data, take); });
    }

    void CompareWholeWithGrey()
    {
        Handle list;
        Handle grey;
        GetAllProfilePointsAndIntensity(message, list.Out(), grey.Out());
        Expect("all and intensity", list.Get(), grey.Get(),
               [](const auto& data, const auto& take) { Naive::AllProfilePoints(data, take); });
    }

    void ComparePoints()
    {
        Handle list;
        GetPointsFromRegionXZ(message, region, list.Out());
        Expect("region" + inRegion, list.Get(), nullptr,
               [this](const auto& data, const auto& take) { Naive::ProfileRegion(data, region, 0, take); });
    }

    void ComparePointsWithGrey()
    {
        Handle list;
        Handle grey;
        GetPointsAndIntensitiesFromRegionXZ(message, region, list.Out(), grey.Out());
        Expect("region and intensity" + inRegion, list.Get(), grey.Get(),
               [this](const auto& data, const auto& take) { Naive::ProfileRegion(data, region, 1, take); });
    }

    void CompareRegions()
    {
        const std::vector<RegionXZ<double>> one = {region};
        std::vector<RegionXZ<double>> several;
        for (int i = scans.Whole(0, 5); i > 0; --i)
        {
            several.push_back(AnyRegion());
        }
        for (const auto& [path, regions] : {std::pair("one of regions", one), std::pair("regions", several)})
        {
            Handle list;
            GetProfilePointsFromRegions(message, regions.data(), regions.size(), list.Out());
            Expect(path, list.Get(), nullptr, [&regions = regions](const auto& data, const auto& take) {
                Naive::ProfileRegions(data, regions, take);
            });
        }
    }

    void CompareTurnedRegions()
    {
        std::vector<RegionXZ<double>> regions;
        std::vector<double> angles;
        for (int i = scans.Whole(0, 3); i > 0; --i)
        {
            regions.push_back(AnyRegion());
            angles.push_back(scans.Angle());
        }
        std::vector<zPoint64f> expected;
        Naive::TurnedProfileRegions(Naive::ProfileData(message), regions, angles, AddTo(expected));
        Handle list;
        GetProfilePointsFromRegionsWithAngle(message, regions.data(), angles.data(), regions.size(), list.Out());
        EXPECT_TRUE(SameBits(ItemsOf<zPoint64f>(list.Get()), expected)) << type;
        tally.Count("turned regions" + type, expected.size(), points);
    }

    template <typename Element>
    void ExpectMasked(const std::string& path, void* array, void* grey)
    {
        const Naive::ProfileData data(message);
        const std::vector<int> kept = Naive::KeptByMask(data, region);
        const auto* const source = static_cast<const Element*>(TvProfileMsg_Points(message));
        std::vector<Element> expected(source, source + points);
        std::vector<z8u> bytes;
        std::size_t left = 0;
        for (std::size_t i = 0; i < points; ++i)
        {
            if (kept[i] == 0)
            {
                std::fill_n(reinterpret_cast<z16s*>(&expected[i]), sizeof(Element) / sizeof(z16s), zNULL_16S);
            }
            left += kept[i] != 0 && !data.HasNull(i) ? 1U : 0U;
            bytes.push_back(grey == nullptr || kept[i] == 0 ? z8u{0} : data.grey[i]);
        }
        EXPECT_TRUE(SameBits(ItemsOfArray<Element>(array), expected)) << path << type;
        if (grey != nullptr)
        {
            EXPECT_TRUE(SameBits(ItemsOfArray<z8u>(grey), bytes)) << path << type;
        }
        tally.Count(path + type, left, points);
    }

    void CompareMask()
    {
        Handle array;
        GetPointArrayFromRegionXZ(message, region, array.Out());
        isResampled ? ExpectMasked<z16s>("mask" + inRegion, array.Get(), nullptr)
                    : ExpectMasked<zPoint16s>("mask" + inRegion, array.Get(), nullptr);
    }

    // The code of every machine, whichever this one runs.
    void ComparePortableMask()
    {
        const Naive::ProfileData data(message);
        const Mu::Vision::Rect2d<int> box = data.PixelBox(region, 1);
        if (isResampled && box.width >= 1 && box.height >= 1)
        {
            Ta::Object<void*> array;
            MU_CHECK(xzObject_CloneImpl(array.Out(), TvProfileMsg_PointsArray(message, 0), nullptr));
            MaskPixels(static_cast<z16s*>(zArray1_Items(array.Get())), points,
                       SpanIn(box.x, std::int64_t{box.width} + 1, points),
                       HeightWindow(box.y, std::int64_t{box.y} + box.height), VectorCode::Portable);
            ExpectMasked<z16s>("portable mask", array.Get(), nullptr);
        }
    }

    void CompareMaskWithGrey()
    {
        Handle array;
        Handle grey;
        GetPointAndIntensityArrayFromRegionXZ(message, region, array.Out(), grey.Out());
        isResampled ? ExpectMasked<z16s>("mask and intensity" + inRegion, array.Get(), grey.Get())
                    : ExpectMasked<zPoint16s>("mask and intensity" + inRegion, array.Get(), grey.Get());
    }

    RandomScans scans{20'240'612};
    Tally tally;
    void* message = nullptr;
    std::size_t points = 0;
    bool isResampled = true;
    std::string type;
    std::string inRegion;
    RegionXZ<double> region;
};

TEST_F(Profile_members, give_what_their_naive_twins_give)
{
    for (int number = 0; number < CASES; ++number)
    {
        Compare(number, static_cast<std::size_t>(scans.Chance(0.2) ? scans.Whole(65, 700) : scans.Whole(0, 64)));
        ASSERT_FALSE(HasFailure()) << "in case " << number;
    }
    tally.ExpectEnough(23);
}

TEST_F(Profile_members, give_the_same_beyond_what_16_bits_number)
{
    for (int number = 0; number < 20; ++number)
    {
        Compare(number, static_cast<std::size_t>(scans.Whole(32'769, 70'000)));
        ASSERT_FALSE(HasFailure()) << "in case " << number;
    }
}
} // namespace
