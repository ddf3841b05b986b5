#pragma once

#include <MuVision/Regions.h>
#include <TaApi/Object.h>
#include <TaVision/TaVision.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

// Made surfaces, profiles and regions: mostly such that a region holds a part of the data, now and then with the values
// that code stumbles over.

namespace Support
{
/// How the pixels of a message are spread.
struct Pixels
{
    double nulls; ///< share of null components
    int low;
    int high;
};

class RandomScans
{
public:
    explicit RandomScans(unsigned seed)
        : engine(seed)
    {
    }

    /// A whole number from `low` to `high`.
    int Whole(int low, int high)
    {
        return std::uniform_int_distribution<int>(low, high)(engine);
    }

    double Real(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(engine);
    }

    bool Chance(double share)
    {
        return Real(0, 1) < share;
    }

    template <typename Value, std::size_t COUNT>
    Value OneOf(const std::array<Value, COUNT>& values)
    {
        return values[static_cast<std::size_t>(Whole(0, static_cast<int>(COUNT) - 1))];
    }

    Ta::Object<void*> Surface(bool isResampled)
    {
        Ta::Object<void*> message;
        const auto construct = isResampled ? TvSurfaceMsg_ConstructSimple : TvSurfaceMsg_ConstructUnresampledSimple;
        // Now and then a row is longer than what is worked off at a time.
        const bool isWide = Chance(0.1);
        const auto width = static_cast<std::size_t>(isWide ? Whole(65, 600) : Whole(0, 64));
        const auto length = static_cast<std::size_t>(isWide ? Whole(0, 7) : Whole(0, 64));
        MU_CHECK(construct(message.Out(), width, length, nullptr));
        Fill(static_cast<z16s*>(TvSurfaceMsg_Points(message.Get())), width * length * (isResampled ? 1 : 3));
        MU_CHECK(TvSurfaceMsg_AllocateIntensity(message.Get(), zTypeOf(z8u)));
        FillBytes(static_cast<z8u*>(TvSurfaceMsg_Intensity(message.Get())), width * length);
        Place(message.Get(), TvSurfaceMsg_SetOffset, TvSurfaceMsg_SetScale);
        return message;
    }

    Ta::Object<void*> Profile(bool isResampled, std::size_t count)
    {
        Ta::Object<void*> message;
        const zType type = isResampled ? zTypeOf(z16s) : zTypeOf(zPoint16s);
        MU_CHECK(TvProfileMsg_Construct(message.Out(), type, 1, count, nullptr));
        Fill(static_cast<z16s*>(TvProfileMsg_Points(message.Get())), count * (isResampled ? 1 : 2));
        Place(message.Get(), TvProfileMsg_SetOffset, TvProfileMsg_SetScale);
        return message;
    }

    void AddIntensity(void* profile)
    {
        MU_CHECK(TvProfileMsg_AllocateIntensity(profile, zTypeOf(z8u)));
        FillBytes(static_cast<z8u*>(TvProfileMsg_Intensity(profile)), TvProfileMsg_PointCount(profile));
    }

    /// A region of a surface, or with `rows` at 0 of a profile, of which y and length do not count.
    Mu::Vision::Region3d<double> Region(void* message, int columns, int rows)
    {
        const zPoint3d64f offset = TvDataMsg_Offset(message);
        const zPoint3d64f scale = TvDataMsg_Scale(message);
        Mu::Vision::Region3d<double> region;
        Along(columns, offset.x, scale.x, region.x, region.width);
        Along(rows, offset.y, scale.y, region.y, region.length);
        Along(0, offset.z, scale.z, region.z, region.height);
        if (!std::isfinite(scale.x))
        {
            region.width = std::numeric_limits<double>::infinity();
            region.length = region.width;
        }
        if (Chance(0.1))
        {
            const std::array<double*, 6> fields = {&region.x,     &region.y,      &region.z,
                                                   &region.width, &region.length, &region.height};
            *OneOf(fields) = OneOf(ODD_VALUES);
        }
        return region;
    }

    Mu::Vision::RegionXZ<double> RegionXZ(void* profile, int columns)
    {
        const Mu::Vision::Region3d<double> region = Region(profile, columns, 0);
        return {region.x, region.z, region.width, region.height, Real(-90, 90)};
    }

    double Angle()
    {
        return Chance(0.1)   ? OneOf(ODD_VALUES)
               : Chance(0.3) ? OneOf(std::array{90.0, -90.0, 180.0, 45.0, 0.001, 1.1920928955078125e-07})
                             : Real(-200, 200);
    }

private:
    static constexpr double NONE = zNULL_64F;
    static constexpr double ENDLESS = std::numeric_limits<double>::infinity();
    static constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
    static constexpr std::array ODD_VALUES = {NONE, NOT_A_NUMBER, ENDLESS, -ENDLESS, 0.0, -1.0, 1e300, -1e300, 1e-300};

    void Fill(z16s* values, std::size_t count)
    {
        pixels.nulls = OneOf(std::array{0.0, 0.01, 0.1, 0.3, 0.7, 1.0});
        const int middle = Chance(0.1) ? OneOf(std::array{-32700, 32700}) : Whole(-500, 500);
        const int spread = OneOf(std::array{1, 20, 60, 300, 40000});
        pixels.low = std::max(middle - spread, -32767);
        pixels.high = std::min(middle + spread, 32767);
        // Runs of the same kind, so that whole blocks are kept, others in part.
        const double change = OneOf(std::array{1.0, 0.02});
        bool isNull = false;
        for (std::size_t i = 0; i < count; ++i)
        {
            isNull = Chance(change) ? Chance(pixels.nulls) : isNull;
            values[i] = isNull ? zNULL_16S : static_cast<z16s>(Whole(pixels.low, pixels.high));
        }
    }

    void FillBytes(z8u* bytes, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            bytes[i] = static_cast<z8u>(Whole(0, 255));
        }
    }

    double Scale()
    {
        const double size = OneOf(std::array{1.0, 0.1, 0.005, 3.0, 0.017, 1e-9});
        return Chance(0.2) ? -size : size;
    }

    template <typename Set>
    void Place(void* message, const Set& setOffset, const Set& setScale)
    {
        zPoint3d64f offset = {Real(-10, 10), Real(-10, 10), Real(-10, 10)};
        zPoint3d64f scale = {Scale(), Scale(), Scale()};
        const std::array<double*, 6> fields = {&offset.x, &offset.y, &offset.z, &scale.x, &scale.y, &scale.z};
        if (Chance(0.3))
        {
            offset = {0, 0, 0};
        }
        if (Chance(0.05))
        {
            *OneOf(fields) = OneOf(ODD_VALUES);
        }
        else if (Chance(0.15))
        {
            scale.x = ENDLESS;
        }
        MU_CHECK(setOffset(message, &offset));
        MU_CHECK(setScale(message, &scale));
    }

    // A range among the pixels 0 to `count` - 1, or with 0 among the values of the pixels.
    void Along(int count, double offset, double scale, double& centre, double& extent)
    {
        const int low = count == 0 ? pixels.low : 0;
        const int high = count == 0 ? pixels.high : count - 1;
        const int a = Whole(std::min(low, high), high);
        const int b = Whole(std::min(low, high), high);
        const double slack = Chance(0.5) ? 0.0 : Real(-0.7, 0.7); // bounds on pixels, or between them
        const double size = std::isfinite(scale) ? scale : 1.0;
        centre = (a + b) / 2.0 * size + offset;
        extent = std::abs((b - a) * size) + slack * std::abs(size);
        if (Chance(0.15)) // everything, nothing, next to nothing
        {
            extent = std::abs(size) * OneOf(std::array{1e6, 0.0, 1e-6});
        }
        if (Chance(0.05)) // beside it
        {
            centre += (high - low + 10) * size * 2;
        }
    }

    std::mt19937 engine;
    Pixels pixels{};
};
} // namespace Support
