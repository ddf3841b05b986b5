#include <Host/EvenPlaces.h>

#include <gtest/gtest.h>

#include <charconv>
#include <iterator>
#include <string>
#include <vector>

namespace
{
using namespace Mu::Host;

PrintedDigits DigitsOf(const std::vector<std::string>& numbers)
{
    PrintedDigits digits;
    for (const std::string& number : numbers)
    {
        digits.Add(number);
    }
    return digits;
}

/// Whether all of these numbers, as printed, are even.
bool AreEven(const std::vector<std::string>& numbers)
{
    const EvenPlaces places({0, std::stod(numbers.front())}, {numbers.size() - 1, std::stod(numbers.back())},
                            DigitsOf(numbers));
    for (std::size_t i = 0; i < numbers.size(); ++i)
    {
        if (!places.IsAt(std::stod(numbers[i]), i))
        {
            return false;
        }
    }
    return true;
}

/// Even places that a program prints in this way.
std::vector<std::string> Printed(std::chars_format format, int digits, double first, double step, int count)
{
    std::vector<std::string> numbers;
    for (int i = 0; i < count; ++i)
    {
        char text[64];
        numbers.emplace_back(text, std::to_chars(text, std::end(text), first + step * i, format, digits).ptr);
    }
    return numbers;
}

TEST(PrintedDigitsTest, Last_unit_is_that_of_the_longest_number)
{
    EXPECT_DOUBLE_EQ(DigitsOf({"0.5", "0.25"}).LastUnit(0.5), 0.01);
    EXPECT_DOUBLE_EQ(DigitsOf({"7", "-12"}).LastUnit(7), 1);
    EXPECT_DOUBLE_EQ(DigitsOf({"+2.50e-3"}).LastUnit(0.0025), 1e-5);
    EXPECT_DOUBLE_EQ(DigitsOf({"3e2"}).LastUnit(300), 100);
    EXPECT_DOUBLE_EQ(DigitsOf({"0,125"}).LastUnit(0.125), 0.001);
}

TEST(PrintedDigitsTest, Numbers_of_as_many_digits_in_all_have_a_unit_each)
{
    const auto digits = DigitsOf({"0.871181614525112", "994.889403787671"});
    EXPECT_NEAR(digits.LastUnit(0.87), 1e-15, 1e-20);
    EXPECT_NEAR(digits.LastUnit(994.8), 1e-12, 1e-17);
}

TEST(PrintedDigitsTest, Without_numbers_there_is_no_unit)
{
    EXPECT_EQ(PrintedDigits().LastUnit(1), 0);
}

TEST(EvenPlacesTest, Step_and_places_come_from_first_and_last)
{
    const EvenPlaces places({1, 10}, {5, 12}, {});
    EXPECT_DOUBLE_EQ(places.Step(), 0.5);
    EXPECT_DOUBLE_EQ(places.At(0), 9.5);
    EXPECT_DOUBLE_EQ(places.At(7), 13);
}

TEST(EvenPlacesTest, Rounding_of_printed_places_is_explained)
{
    for (const double step : {0.1, 0.2 / 3, 0.0137, 1.0 / 7})
    {
        for (const double first : {0.0, -3.0, 12.3456})
        {
            EXPECT_TRUE(AreEven(Printed(std::chars_format::fixed, 4, first, step, 50))) << first << ' ' << step;
            EXPECT_TRUE(AreEven(Printed(std::chars_format::general, 6, first, step, 50))) << first << ' ' << step;
            EXPECT_TRUE(AreEven(Printed(std::chars_format::general, 15, first, step, 50))) << first << ' ' << step;
            EXPECT_TRUE(AreEven(Printed(std::chars_format::scientific, 9, first, -step, 50))) << first << ' ' << step;
        }
    }
}

TEST(EvenPlacesTest, More_than_rounding_is_not_explained)
{
    // 1.2345 between 1.00 and 1.50 of digits that end in 0.0001: the line has 1.25.
    EXPECT_TRUE(AreEven({"1.0000", "1.2500", "1.5000"}));
    EXPECT_TRUE(AreEven({"1.0000", "1.2501", "1.5000"}));
    EXPECT_FALSE(AreEven({"1.0000", "1.2502", "1.5000"}));
}

TEST(EvenPlacesTest, Place_left_out_is_seen_even_in_whole_numbers)
{
    EXPECT_TRUE(AreEven({"0", "1", "2", "3", "4"}));
    EXPECT_FALSE(AreEven({"0", "1", "2", "4", "5"}));
    EXPECT_FALSE(AreEven({"0", "1", "3"}));
    EXPECT_FALSE(AreEven({"0", "2", "3"}));
    for (std::size_t leftOut = 1; leftOut + 1 < 200; ++leftOut)
    {
        auto numbers = Printed(std::chars_format::fixed, 2, 0, 0.1, 200);
        numbers.erase(numbers.begin() + static_cast<std::ptrdiff_t>(leftOut));
        EXPECT_FALSE(AreEven(numbers)) << leftOut;
    }
}

TEST(EvenPlacesTest, Less_than_positions_of_16_bits_lose_is_explained)
{
    // 201 places over 20 mm: 16 bits round to 20 / 65534, so by 0.000153 at most.
    auto numbers = Printed(std::chars_format::fixed, 6, 0, 0.1, 201);
    numbers[100] = "10.000150";
    EXPECT_TRUE(AreEven(numbers));
    numbers[100] = "10.000156";
    EXPECT_FALSE(AreEven(numbers));
}

TEST(EvenPlacesTest, Steps_that_differ_are_not_even)
{
    EXPECT_FALSE(AreEven({"0.0", "0.1", "0.3", "0.6"}));
    EXPECT_FALSE(AreEven({"5", "4", "3", "1"}));
}
} // namespace
