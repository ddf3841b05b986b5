#pragma once

#include <TaApi/Object.h>
#include <TaVision/TvSurfaceMsg.h>

#include <cmath>
#include <cstddef>
#include <random>

// The surface that the benchmarks of InputUtils read.

namespace Bench
{
inline constexpr std::size_t WIDTH = 4096;
inline constexpr std::size_t LENGTH = 2048;
inline constexpr zPoint3d64f SCALE = {0.01, 0.01, 0.001};

enum class Data
{
    Smooth,
    Noise
};

// Heights from -20000 to 20000, 4 of 100 null.
inline z16s HeightAt(std::size_t row, std::size_t column, Data data, std::mt19937& engine)
{
    if (engine() % 100 < 4)
    {
        return zNULL_16S;
    }
    if (data == Data::Noise)
    {
        return static_cast<z16s>(static_cast<int>(engine() % 40001) - 20000);
    }
    const double wave = std::sin(static_cast<double>(row) * 0.004) * std::cos(static_cast<double>(column) * 0.003);
    return static_cast<z16s>(20000.0 * wave);
}

inline const Ta::Object<void*>& Heights(Data data)
{
    const auto make = [](Data kind) {
        std::mt19937 engine(7);
        Ta::Object<void*> surface;
        MU_CHECK(TvSurfaceMsg_ConstructSimple(surface.Out(), WIDTH, LENGTH, nullptr));
        MU_CHECK(TvSurfaceMsg_SetScale(surface.Get(), &SCALE));
        auto* const pixels = static_cast<z16s*>(TvSurfaceMsg_Points(surface.Get()));
        for (std::size_t i = 0; i < WIDTH * LENGTH; ++i)
        {
            pixels[i] = HeightAt(i / WIDTH, i % WIDTH, kind, engine);
        }
        return surface;
    };
    static const Ta::Object<void*> smooth = make(Data::Smooth);
    static const Ta::Object<void*> noise = make(Data::Noise);
    return data == Data::Smooth ? smooth : noise;
}

inline constexpr double MIDDLE_X = static_cast<double>(WIDTH) * SCALE.x / 2;
inline constexpr double MIDDLE_Y = static_cast<double>(LENGTH) * SCALE.y / 2;
} // namespace Bench
