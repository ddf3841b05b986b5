#pragma once

#include <cstddef>
#include <random>

namespace Support
{
/// Random numbers that are the same in every run.
class Random
{
public:
    explicit Random(unsigned seed)
        : engine(seed)
    {
    }

    double Between(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(engine);
    }

    /// From 0 to `count` - 1.
    std::size_t Below(std::size_t count)
    {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(engine);
    }

    bool Chance(double share)
    {
        return Between(0.0, 1.0) < share;
    }

private:
    std::mt19937_64 engine;
};
} // namespace Support
