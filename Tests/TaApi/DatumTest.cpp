#include <TaApi/Datum.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
using namespace Ta::Properties;

enum class Mode : std::uint8_t
{
    First = 0,
    Last = 200
};

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

TEST(Datum, Kind_numbers_the_alternatives)
{
    EXPECT_EQ(KindOf(Datum(true)), DatumKind::Boolean);
    EXPECT_EQ(KindOf(ToDatum(-5)), DatumKind::Integer);
    EXPECT_EQ(KindOf(ToDatum(Mode::Last)), DatumKind::Integer);
    EXPECT_EQ(KindOf(ToDatum(std::size_t{5})), DatumKind::Unsigned);
    EXPECT_EQ(KindOf(ToDatum(1.5)), DatumKind::Number);
    EXPECT_EQ(KindOf(ToDatum(std::string("a"))), DatumKind::Text);
    EXPECT_EQ(KindOf(ToDatum(std::vector<std::int64_t>{1})), DatumKind::Integers);
    EXPECT_EQ(KindOf(ToDatum(std::vector<double>{1})), DatumKind::Numbers);
    EXPECT_EQ(KindOf(ToDatum(std::vector<std::string>{"a"})), DatumKind::Texts);
}

TEST(Datum, Values_come_back)
{
    EXPECT_EQ(FromDatum<int>(ToDatum(std::numeric_limits<int>::min())), std::numeric_limits<int>::min());
    EXPECT_EQ(FromDatum<std::size_t>(ToDatum(std::numeric_limits<std::size_t>::max())),
              std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(FromDatum<Mode>(ToDatum(Mode::Last)), Mode::Last);
    EXPECT_EQ(FromDatum<bool>(Datum(true)), true);
    EXPECT_EQ(FromDatum<std::string>(ToDatum(std::string("text"))), "text");
}

TEST(Datum, Number_beyond_the_type_gives_nothing)
{
    EXPECT_FALSE(FromDatum<int>(Datum(std::int64_t{1} << 31)));
    EXPECT_FALSE(FromDatum<std::uint32_t>(Datum(std::uint64_t{1} << 32U)));
    EXPECT_FALSE(FromDatum<Mode>(Datum(std::int64_t{256})));
    EXPECT_FALSE(FromDatum<Mode>(Datum(std::int64_t{-1})));
}

TEST(Datum, Another_kind_gives_nothing)
{
    EXPECT_FALSE(FromDatum<int>(Datum(1.0)));
    EXPECT_FALSE(FromDatum<double>(Datum(std::int64_t{1})));
    EXPECT_FALSE(FromDatum<bool>(Datum(std::int64_t{1})));
    EXPECT_FALSE(FromDatum<std::string>(Datum(true)));
}

TEST(Datum, Identical_compares_bits)
{
    EXPECT_TRUE(Identical(Datum(NOT_A_NUMBER), Datum(NOT_A_NUMBER)));
    EXPECT_FALSE(Identical(Datum(0.0), Datum(-0.0)));
    EXPECT_TRUE(Identical(Datum(std::vector<double>{1, NOT_A_NUMBER}), Datum(std::vector<double>{1, NOT_A_NUMBER})));
    EXPECT_FALSE(Identical(Datum(std::vector<double>{0.0}), Datum(std::vector<double>{-0.0})));
    EXPECT_FALSE(Identical(Datum(std::vector<double>{1}), Datum(std::vector<double>{1, 1})));
    EXPECT_TRUE(Identical(Datum(std::string("a")), Datum(std::string("a"))));
    EXPECT_FALSE(Identical(Datum(std::string("a")), Datum(std::string("b"))));
    EXPECT_FALSE(Identical(Datum(std::int64_t{1}), Datum(std::uint64_t{1})));
}
} // namespace
