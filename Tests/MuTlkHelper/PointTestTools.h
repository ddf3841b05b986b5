#pragma once

#include <Support/FaultWalk.h>
#include <Support/Random.h>

#include <TaApi/Object.h>
#include <zApi/zArrayList.h>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

// What the tests of points, features and lists of them share.

namespace Support
{
inline constexpr double NULL_VALUE = -1.7976931348623157e308;
inline constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
inline constexpr double INFINITE = std::numeric_limits<double>::infinity();
inline constexpr zPoint3d64f NULL_POINT{NULL_VALUE, NULL_VALUE, NULL_VALUE};

// --- bits: equal numbers have equal bits, 0 and -0 differ, and every NaN is the same --------------------------------

inline std::uint64_t Bits(double value)
{
    return std::bit_cast<std::uint64_t>(std::isnan(value) ? NOT_A_NUMBER : value);
}

inline std::uint64_t Bits(float value)
{
    return std::bit_cast<std::uint32_t>(std::isnan(value) ? std::numeric_limits<float>::quiet_NaN() : value);
}

template <typename... Numbers>
std::vector<std::uint64_t> BitsOf(Numbers... numbers)
{
    return {Bits(numbers)...};
}

inline std::vector<std::uint64_t> Bits(const zPoint64f& p)
{
    return BitsOf(p.x, p.y);
}

inline std::vector<std::uint64_t> Bits(const zPoint3d64f& p)
{
    return BitsOf(p.x, p.y, p.z);
}

inline std::vector<std::uint64_t> Bits(const zPoint3d32f& p)
{
    return BitsOf(p.x, p.y, p.z);
}

inline std::vector<std::uint64_t> Bits(const zLine3d64f& l)
{
    return BitsOf(l.point.x, l.point.y, l.point.z, l.direction.x, l.direction.y, l.direction.z);
}

inline std::vector<std::uint64_t> Bits(const zPlane3d64f& p)
{
    return BitsOf(p.point.x, p.point.y, p.point.z, p.normal.x, p.normal.y, p.normal.z);
}

template <typename Point>
std::vector<std::uint64_t> Bits(const std::vector<Point>& points)
{
    std::vector<std::uint64_t> all;
    for (const Point& point : points)
    {
        const std::vector<std::uint64_t> bits = Bits(point);
        all.insert(all.end(), bits.begin(), bits.end());
    }
    return all;
}

// --- lists ----------------------------------------------------------------------------------------------------------

/// A list of `itemType` with these items.
template <typename Item>
Ta::Object<void*> List(zType itemType, const std::vector<Item>& items, zAlloc alloc = nullptr)
{
    Ta::Object<void*> list;
    MU_CHECK(zArrayList_Construct(list.Out(), itemType, items.size(), alloc));
    for (const Item& item : items)
    {
        MU_CHECK(zArrayList_Add(list.Get(), &item));
    }
    return list;
}

inline Ta::Object<void*> PointList(const std::vector<zPoint3d64f>& points)
{
    return List(zTypeOf(zPoint3d64f), points);
}

/// The items of a list, which must be of this type.
template <typename Item>
std::vector<Item> Items(void* list, zType itemType)
{
    EXPECT_EQ(zArrayList_ItemType(list), itemType);
    if (zArrayList_ItemType(list) != itemType)
    {
        return {};
    }
    const auto* const items = static_cast<const Item*>(zArrayList_Items(list));
    return std::vector<Item>(items, items + zArrayList_Count(list));
}

inline std::size_t Capacity(void* list)
{
    return static_cast<zArrayListClass*>(list)->capacity;
}

// --- failures -------------------------------------------------------------------------------------------------------

/// What a call raised.
struct Failure
{
    int status = zOK;
    std::string function;
    std::string unit;
    std::string message;
    int line = 0;
};

/// What `call` raised, null if nothing.
template <typename Call>
std::optional<Failure> FailureOf(const Call& call)
{
    try
    {
        call();
    }
    catch (const Ta::Exception& raised)
    {
        return Failure{raised.Status(), raised.Function(), raised.File(), raised.Message(), raised.Line()};
    }
    return std::nullopt;
}

/// Checks that `failure` is one without text of `function`, in a source unit.
inline void ExpectFailure(const std::optional<Failure>& failure, int status, const std::string& function,
                          const std::string& unit)
{
    ASSERT_TRUE(failure.has_value()) << "nothing was raised";
    EXPECT_EQ(failure->status, status);
    EXPECT_EQ(failure->function, function);
    EXPECT_EQ(failure->unit, unit);
    EXPECT_EQ(failure->message, "");
    EXPECT_GT(failure->line, 0);
}

/// Walks through every failing call of `call`: each comes through as a failure of `function`, but for releases.
/// Returns the number of calls that were made to fail.
template <typename Call>
std::size_t WalkRaisedFaults(const std::string& function, const std::string& unit, const Call& call)
{
    constexpr zStatus INJECTED = -4242;
    const std::size_t calls = WalkFaults(
        INJECTED, [&call] { return FailureOf(call); },
        [&](const std::string& operation, const std::optional<Failure>& failure) {
            if (!IsRelease(operation))
            {
                ExpectFailure(failure, INJECTED, function, unit);
            }
        });
    EXPECT_FALSE(FailureOf(call).has_value()) << "not usable after the failures";
    return calls;
}

// --- random input ---------------------------------------------------------------------------------------------------

/// Random numbers, and now and then one out of the ordinary.
class OddRandom : public Random
{
public:
    using Random::Random;

    /// A length, or once in `rarity` times a number out of the ordinary.
    double Number(std::size_t rarity = 10)
    {
        static constexpr std::array<double, 12> ODD = {NULL_VALUE, NULL_VALUE, 0.0,      -0.0,   NOT_A_NUMBER, INFINITE,
                                                       -INFINITE,  1e-300,     -1.1e308, 1.5e38, 1e-8,         4e38};
        return Below(rarity) == 0 ? ODD.at(Below(ODD.size())) : Between(-200.0, 200.0);
    }

    zPoint3d64f Point(std::size_t rarity = 10)
    {
        const double x = Number(rarity);
        const double y = Number(rarity);
        return {x, y, Number(rarity)};
    }
};

/// What to look for when a random case fails.
inline std::string CaseText(int number, unsigned seed)
{
    return "case " + std::to_string(number) + ", seed " + std::to_string(seed);
}

inline bool IsNull(const zPoint3d64f& p)
{
    return p.x == NULL_VALUE || p.y == NULL_VALUE || p.z == NULL_VALUE;
}
} // namespace Support
