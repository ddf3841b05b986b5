#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <vector>

// How members are compared with their naive twins, bit for bit.

namespace Support
{
inline constexpr int CASES = 20'000;
inline constexpr int PROPER_CASES = 500;

/// Counts, by path, the cases that select neither nothing nor everything.
class Tally
{
public:
    void Count(const std::string& path, std::size_t kept, std::size_t all)
    {
        proper[path] += kept != 0 && kept < all ? 1 : 0;
    }

    void ExpectEnough(std::size_t paths) const
    {
        EXPECT_EQ(proper.size(), paths);
        for (const auto& [path, cases] : proper)
        {
            EXPECT_GE(cases, PROPER_CASES) << path;
        }
    }

private:
    std::map<std::string, int> proper;
};

template <typename Item>
testing::AssertionResult SameBits(const std::vector<Item>& actual, const std::vector<Item>& expected)
{
    if (actual.size() != expected.size())
    {
        return testing::AssertionFailure() << actual.size() << " items, expected " << expected.size();
    }
    for (std::size_t i = 0; i < actual.size(); ++i)
    {
        if (std::memcmp(&actual[i], &expected[i], sizeof(Item)) != 0)
        {
            return testing::AssertionFailure() << "item " << i << " differs";
        }
    }
    return testing::AssertionSuccess();
}

template <typename Item>
auto AddTo(std::vector<Item>& items)
{
    return [&items](const Item& item) { items.push_back(item); };
}
} // namespace Support
