#pragma once

#include <MuTlkHelper/AnchoredRegion.h>

#include <MuVision/Regions.h>
#include <TaApi/ParamsRegions.h>

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <span>
#include <vector>

// Regions as their nine values, in field order: what the tests of all regions compare.

namespace Support
{
using RegionFields = std::array<double, 9>;

inline constexpr std::array<const char*, 9> REGION_KEYS = {"x",      "y",      "z",      "width", "length",
                                                           "height", "xAngle", "yAngle", "zAngle"};

inline constexpr std::array<Ta::Params::Value<double> Ta::Params::BaseBoxRegion::*, 9> REGION_PARAMETERS = {
    &Ta::Params::BaseBoxRegion::x,      &Ta::Params::BaseBoxRegion::y,      &Ta::Params::BaseBoxRegion::z,
    &Ta::Params::BaseBoxRegion::width,  &Ta::Params::BaseBoxRegion::length, &Ta::Params::BaseBoxRegion::height,
    &Ta::Params::BaseBoxRegion::xAngle, &Ta::Params::BaseBoxRegion::yAngle, &Ta::Params::BaseBoxRegion::zAngle,
};

/// What a new anchored region has.
inline constexpr RegionFields NEW_REGION = {0, 0, 0, 5, 5, 5, 0, 0, 0};

inline RegionFields Fields(const Mu::Vision::Region3d<double>& r)
{
    return {r.x, r.y, r.z, r.width, r.length, r.height, r.xAngle, r.yAngle, r.zAngle};
}

inline std::array<double, 5> Fields(const Mu::Vision::RegionXZ<double>& r)
{
    return {r.x, r.z, r.width, r.height, r.angle};
}

inline std::array<double, 5> Fields(const Mu::Vision::Region2d<double>& r)
{
    return {r.x, r.y, r.width, r.length, r.angle};
}

/// The values of a region's parameters, whether registered or not.
inline RegionFields Parameters(const Ta::Params::BaseBoxRegion& region)
{
    RegionFields fields{};
    for (std::size_t i = 0; i < fields.size(); ++i)
    {
        fields[i] = (region.*REGION_PARAMETERS[i]).Get();
    }
    return fields;
}

inline void SetParameters(Ta::Params::BaseBoxRegion& region, const RegionFields& fields)
{
    for (std::size_t i = 0; i < fields.size(); ++i)
    {
        (region.*REGION_PARAMETERS[i]).Set(fields[i]);
    }
}

inline Mu::Vision::Region3d<double> RegionOf(const RegionFields& f)
{
    return {f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8]};
}

inline void ExpectNear(std::span<const double> actual, std::span<const double> expected, double bound = 1e-12)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i)
    {
        EXPECT_NEAR(actual[i], expected[i], bound) << "value " << i;
    }
}

/// A transform as it is published: three rows of four, then 0, 0, 0, 1.
inline std::vector<double> Published(std::vector<double> rows)
{
    rows.insert(rows.end(), {0, 0, 0, 1});
    return rows;
}

inline std::vector<double> PublishedIdentity()
{
    return Published({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0});
}
} // namespace Support
