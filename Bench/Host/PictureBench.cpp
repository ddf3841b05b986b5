// What a picture of a scan costs, from message to file. One of 4096 x 4096 samples is to take at most 2 seconds.

#include <Host/Pictures/Picture.h>

#include <Support/Builders.h>
#include <Support/Random.h>

#include <benchmark/benchmark.h>

#include <cmath>

namespace
{
using namespace Mu::Host;

/// A rough, tilted surface with a share of nulls.
Ta::Object<void*> RoughSurface(std::size_t side)
{
    Ta::Object<void*> message;
    MU_CHECK(TvSurfaceMsg_ConstructSimple(message.Out(), side, side, nullptr));
    auto* const heights = static_cast<z16s*>(TvSurfaceMsg_Points(message.Get()));
    Support::Random random(7);
    for (std::size_t i = 0; i < side * side; ++i)
    {
        const int height = static_cast<int>(10'000 * (i % side) / side + 5'000 * (i / side) / side);
        heights[i] = random.Chance(0.04) ? zNULL_16S : static_cast<z16s>(height + random.Between(-50, 50));
    }
    return message;
}

/// Whether the colours rise along the tilt, at both ends of the frame's diagonal.
bool IsRight(void* message, const ScanResult& result)
{
    const Picture picture({message, {}, &result}, PictureFormat::Png);
    const View& view = *picture.DataView();
    const auto lightness = [&](double share) {
        const Place place =
            view.OnPage(view.Across().low + share * view.Across().Extent(), view.Up().low + share * view.Up().Extent());
        return LabOf(picture.Page().PixelAt(static_cast<std::size_t>(place.x), static_cast<std::size_t>(place.y)))
            .lightness;
    };
    return lightness(0.1) < lightness(0.5) && lightness(0.5) < lightness(0.9);
}

void DrawScan(benchmark::State& state, PictureFormat format)
{
    const auto side = static_cast<std::size_t>(state.range(0));
    const Ta::Object<void*> message = RoughSurface(side);
    ScanResult result;
    result.name = "rough";
    result.width = side;
    result.length = side;
    if (!IsRight(message.Get(), result))
    {
        return state.SkipWithError("wrong colours");
    }
    for (auto iteration : state)
    {
        benchmark::DoNotOptimize(DrawPicture({message.Get(), {}, &result}, format));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * state.range(0));
}

BENCHMARK_CAPTURE(DrawScan, png, PictureFormat::Png)->Arg(512)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(DrawScan, svg, PictureFormat::Svg)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(DrawScan, pdf, PictureFormat::Pdf)->Arg(4096)->Unit(benchmark::kMillisecond);
} // namespace
