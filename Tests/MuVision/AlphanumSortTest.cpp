#include <MuVision/AlphanumSort.h>

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace
{
using Names = std::vector<std::string>;

Names Sorted(Names names)
{
    Mu::Vision::SortStringByAlphanum(names);
    return names;
}

TEST(Alphanumeric_sort, stands_names_as_people_count)
{
    const std::string manyNines(400, '9');
    const Names tables[] = {
        {"scan1.dat", "scan2.dat", "scan10.dat", "scan100.dat"},
        {"", "1", "2", "10", "a", "b"},
        {"part1-2", "part1-10", "part2-1", "part10-1"},
        {"a", "a1", "a2", "a2b", "a2c", "a10"},
        {"scan.dat", "scan1.dat"},
        {"Alpha", "beta", "Gamma", "gamma2", "Gamma10"},
        {"a1a", "a01b", "a001c"},                 // leading zeros do not count ...
        {"a001", "a01", "a1"},                    // ... but where nothing else does
        {"x0", "x00000000000000000000001", "x2"}, // zero is a number
        {"x18446744073709551615", "x18446744073709551616", "x1" + manyNines, "x2" + manyNines}, // of any length
        {"x" + manyNines, "x1" + std::string(400, '0')},
        {"1.2.10", "1.10.2"},
        {"README", "Readme", "readme", "readme1"}, // same but for case: bytewise
        {"a\x7F", "a\xC3\xA4"},                    // other bytes as they are, none negative
        {std::string("a\0b", 3), std::string("a\0c", 3), "a1"},
        {"a-1", "a1", "a_1", "aA"},
    };
    for (const Names& expected : tables)
    {
        SCOPED_TRACE(expected.back().substr(0, 30));
        Names names = expected;
        std::mt19937 random(17);
        for (int i = 0; i < 20; ++i)
        {
            std::shuffle(names.begin(), names.end(), random);
            EXPECT_EQ(Sorted(names), expected);
        }
    }
}

TEST(Alphanumeric_sort, takes_no_names_and_one)
{
    EXPECT_EQ(Sorted({}), Names());
    EXPECT_EQ(Sorted({"one"}), Names({"one"}));
}

TEST(Alphanumeric_sort, keeps_equal_names)
{
    EXPECT_EQ(Sorted({"b", "a", "b", "a"}), Names({"a", "a", "b", "b"}));
}

// A key that bytewise order sorts the same way: small letters, and each number, without leading zeros, led by its
// length. Digits of the length keep numbers among the digits.
std::string KeyOf(const std::string& name)
{
    std::string key;
    for (std::size_t i = 0; i < name.size();)
    {
        if (std::isdigit(static_cast<unsigned char>(name[i])) == 0)
        {
            key += static_cast<char>(std::tolower(static_cast<unsigned char>(name[i++])));
            continue;
        }
        std::string number;
        for (; i < name.size() && std::isdigit(static_cast<unsigned char>(name[i])) != 0; ++i)
        {
            number += name[i];
        }
        number.erase(0, std::min(number.find_first_not_of('0'), number.size()));
        const std::string length = std::to_string(number.size());
        key += std::string(3 - length.size(), '0') + length + number;
    }
    return key + '\0' + name;
}

TEST(Alphanumeric_sort, agrees_with_sorting_by_a_key)
{
    constexpr unsigned seed = 101;
    std::mt19937 random(seed);
    constexpr std::string_view letters = "00123aAbB._";
    std::uniform_int_distribution<std::size_t> letter(0, letters.size() - 1);
    std::uniform_int_distribution<std::size_t> length(0, 7);
    for (int i = 0; i < 500; ++i)
    {
        Names names(60);
        for (std::string& name : names)
        {
            name.resize(length(random));
            std::generate(name.begin(), name.end(), [&] { return letters[letter(random)]; });
        }
        Names expected = names;
        std::sort(expected.begin(), expected.end(),
                  [](const std::string& a, const std::string& b) { return KeyOf(a) < KeyOf(b); });
        ASSERT_EQ(Sorted(names), expected) << "case " << i << ", seed " << seed;
    }
}
} // namespace
