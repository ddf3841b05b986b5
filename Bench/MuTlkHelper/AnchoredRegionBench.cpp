// What it costs to carry an anchor to 64 regions in every execution, measured from ProcessInputSet.
//
// The rows to compare within one run: an execution with 64 regions with its twin that has the same anchor inputs and no
// regions; the difference is the price of the regions. It should stay below 5 microseconds where the anchor turns about
// one axis at most, and below 25 where it turns about three.

#include <MuTlkHelper/AnchoredRegion.h>
#include <MuTlkHelper/CommonTool.h>

#include <Support/SilentHost.h>

#include <MuVision/Anchor.h>
#include <TaVision/TaVision.h>

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace
{
using Mu::TlkHelper::AnchoredBoxRegion;
using Mu::TlkHelper::AnchorType;
using Mu::Vision::Anchor;
using Mu::Vision::Region3d;

constexpr std::size_t REGIONS = 64;

/// A box with all axes.
class Box final : public AnchoredBoxRegion
{
public:
    Box()
        : AnchoredBoxRegion(true, true, true, true, true, true, true, true, true, true, true, true)
    {
    }
};

class FollowingTool final : public Mu::Tools::CommonTool
{
public:
    FollowingTool(AnchorType type, std::size_t regionCount)
        : anchorType(type)
    {
        for (std::size_t i = 0; i < regionCount; ++i)
        {
            const double place = static_cast<double>(i);
            Box& region = *regions.emplace_back(std::make_unique<Box>());
            region.x.Set(place);
            region.y.Set(2 * place - 50);
            region.z.Set(10 - place);
            region.zAngle.Set(place);
        }
    }

    void Init(TaPipe::IToolHost& host) override
    {
        AddAnchorInputs(anchorType, true);
        AddMeasurementOutput("A", false, static_cast<std::size_t>(-1)); // a null message tells of a failed execution
        for (const auto& region : regions)
        {
            RegisterAnchoredRegion(region.get());
        }
        CommonTool::Init(host, group);
    }

    [[nodiscard]] const std::vector<std::unique_ptr<Box>>& Regions() const
    {
        return regions;
    }

private:
    AnchorType anchorType;
    std::vector<std::unique_ptr<Box>> regions;
    Ta::Params::Group group{"Parameters"};
};

bool IsSame(const Region3d<double>& a, const Region3d<double>& b)
{
    const std::array<double, 9> differences = {a.x - b.x,           a.y - b.y,           a.z - b.z,
                                               a.width - b.width,   a.length - b.length, a.height - b.height,
                                               a.xAngle - b.xAngle, a.yAngle - b.yAngle, a.zAngle - b.zAngle};
    for (const double difference : differences)
    {
        if (!(std::abs(difference) < 1e-9))
        {
            return false;
        }
    }
    return true;
}

/// True if every region stands where the anchor puts its relative region.
bool HaveFollowed(const FollowingTool& tool, const Anchor& anchor)
{
    for (const auto& region : tool.Regions())
    {
        Region3d<double> expected;
        Mu::Vision::AnchorRegion(anchor, Mu::Vision::RotationOrder::XYZ, region->relativeRegion, &expected);
        if (!IsSame(region->absoluteRegion, expected))
        {
            return false;
        }
    }
    return true;
}

/// Executions of a tool whose anchor has the fields of `used`, the last of which moves on in each execution.
void Follow(benchmark::State& state, AnchorType type, std::span<double Anchor::*const> used, std::size_t regionCount)
{
    Support::SilentHost host;
    FollowingTool tool(type, regionCount);
    static_cast<TaPipe::ITool&>(tool).Init(host);
    std::array<Ta::Object<void*>, 6> messages;
    std::array<void*, 6> handles{};
    std::array<TaPipe::MessageInput, 6> inputs;
    Anchor anchor;
    for (std::size_t i = 0; i < used.size(); ++i)
    {
        tool.InputAt(i).Route({0, "finder"});
        MU_CHECK(TvMeasureMsg_Construct(messages[i].Out(), 1, 0, nullptr));
        anchor.*used[i] = 10.0 + 7.0 * static_cast<double>(i);
        MU_CHECK(TvMeasureMsg_SetValue(messages[i].Get(), anchor.*used[i]));
        handles[i] = messages[i].Get();
        inputs[i] = {i, std::span<void* const>(&handles[i], 1)};
    }
    tool.Start();
    tool.ProcessInputSet(inputs.data(), used.size());
    double& last = anchor.*used.back();
    for (auto iteration : state)
    {
        last = last > 60 ? 10 : last + 0.25;
        static_cast<void>(TvMeasureMsg_SetValue(messages[used.size() - 1].Get(), last));
        benchmark::DoNotOptimize(tool.ProcessInputSet(inputs.data(), used.size()));
    }
    if (host.messages != 0 || !HaveFollowed(tool, anchor))
    {
        state.SkipWithError("the regions did not follow the anchor");
    }
    tool.Stop();
}

constexpr std::array<double Anchor::*, 3> SHIFT = {&Anchor::x, &Anchor::y, &Anchor::z};
constexpr std::array<double Anchor::*, 4> ONE_TURN = {&Anchor::x, &Anchor::y, &Anchor::z, &Anchor::zAngle};
constexpr std::array<double Anchor::*, 6> THREE_TURNS = {&Anchor::x,      &Anchor::y,      &Anchor::z,
                                                         &Anchor::xAngle, &Anchor::yAngle, &Anchor::zAngle};

void ShiftOf(benchmark::State& state)
{
    Follow(state, AnchorType::Surface, SHIFT, static_cast<std::size_t>(state.range(0)));
}

void OneTurnOf(benchmark::State& state)
{
    Follow(state, AnchorType::Surface, ONE_TURN, static_cast<std::size_t>(state.range(0)));
}

void ThreeTurnsOf(benchmark::State& state)
{
    Follow(state, AnchorType::Box, THREE_TURNS, static_cast<std::size_t>(state.range(0)));
}

BENCHMARK(ShiftOf)->Arg(0)->Arg(REGIONS);
BENCHMARK(OneTurnOf)->Arg(0)->Arg(REGIONS);
BENCHMARK(ThreeTurnsOf)->Arg(0)->Arg(REGIONS);
} // namespace
