// An executable of its own, because it replaces the global operator new to count what C++ code allocates.

#include <MuTlkHelper/AnchoredRegion.h>
#include <MuTlkHelper/CommonTool.h>

#include <Support/Builders.h>
#include <Support/CountingAlloc.h>
#include <Support/SilentHost.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

namespace
{
std::atomic<std::size_t> newCalls{0};
std::atomic<std::ptrdiff_t> liveNews{0};
std::atomic<std::size_t> failingNew{0}; // the number of the call that fails, counted down; 0 fails none

bool IsToFail()
{
    return failingNew != 0 && --failingNew == 0;
}
} // namespace

[[gnu::noinline]] void* operator new(std::size_t size)
{
    ++newCalls;
    if (IsToFail())
    {
        throw std::bad_alloc();
    }
    if (void* const memory = std::malloc(size == 0 ? 1 : size); memory != nullptr)
    {
        ++liveNews;
        return memory;
    }
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    liveNews -= memory == nullptr ? 0 : 1;
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    operator delete(memory);
}

namespace
{
using namespace Support;

constexpr std::size_t AT_END = static_cast<std::size_t>(-1);
constexpr std::size_t EXECUTIONS = 100;

class TwoMeasurements final : public Mu::Tools::CommonTool
{
public:
    void Init(TaPipe::IToolHost& host) override
    {
        AddInput("Data", AT_END);
        AddMeasurementOutput("A measurement with a name that fits no small buffer", false, AT_END);
        AddMeasurementOutput("Second", false, AT_END);
        CommonTool::Init(host, group);
    }

    void Execute(InputSet& set) override
    {
        const zStamp stamp = TvDataMsg_Stamp(GetDataMessageInput(set, "Data"));
        SendMeasurement("A measurement with a name that fits no small buffer", 1.0, false, &stamp);
        SendMeasurement("Second", 2.0, false, &stamp);
    }

private:
    Ta::Params::Group group{"Parameters"};
};

TEST(CommonTool_execution, allocates_its_messages_and_nothing_else)
{
    const CountingAlloc alloc;
    SilentHost host;
    TwoMeasurements tool;
    tool.SetToolAllocator(alloc.Get());
    static_cast<TaPipe::ITool&>(tool).Init(host);
    const Ta::Object<void*> surface = Surface({{1, 2}}).BoundingBox({0, 0, 0, 1, 1, 1});
    void* const handle = surface.Get();
    const TaPipe::MessageInput input{0, std::span<void* const>(&handle, 1)};
    tool.Start();
    tool.ProcessInputSet(&input, 1); // the first one makes the room that the others use again

    const std::size_t newsBefore = newCalls;
    const std::size_t requestsBefore = alloc.Requests();
    for (std::size_t i = 0; i < EXECUTIONS; ++i)
    {
        tool.ProcessInputSet(&input, 1);
    }
    EXPECT_EQ(newCalls - newsBefore, 0U);
    EXPECT_EQ(alloc.Requests() - requestsBefore, 2 * EXECUTIONS);
    EXPECT_EQ(host.messages, 2 * (EXECUTIONS + 1));
}

/// A tool whose regions, of each kind, follow an anchor of all six axes.
class AnchoredTool final : public Mu::Tools::CommonTool
{
public:
    static constexpr std::size_t AXES = 6;

    void Init(TaPipe::IToolHost& host) override
    {
        AddAnchorInputs(Mu::TlkHelper::AnchorType::Box, true);
        AddInput("Data", AT_END);
        AddMeasurementOutput("Width", false, AT_END);
        group.Register("Profile", profile);
        group.Register("Surface", surface);
        group.Register("Image", image);
        for (Mu::TlkHelper::AnchoredRegionInterface* const region :
             {static_cast<Mu::TlkHelper::AnchoredRegionInterface*>(&profile),
              static_cast<Mu::TlkHelper::AnchoredRegionInterface*>(&surface),
              static_cast<Mu::TlkHelper::AnchoredRegionInterface*>(&image)})
        {
            RegisterAnchoredRegion(region);
        }
        CommonTool::Init(host, group);
    }

    void Execute(InputSet& /*set*/) override
    {
        SendMeasurement("Width", surface.AbsoluteRegion().width, false, nullptr);
    }

    Mu::TlkHelper::AnchoredSurfaceRegion surface{true};

private:
    Mu::TlkHelper::AnchoredProfileRegion profile{true};
    Mu::TlkHelper::AnchoredImageRegion image{true};
    Ta::Params::Group group{"Parameters"};
};

TEST(CommonTool_anchored_execution, allocates_its_messages_and_nothing_else)
{
    const CountingAlloc alloc;
    {
        SilentHost host;
        AnchoredTool tool;
        tool.SetToolAllocator(alloc.Get());
        static_cast<TaPipe::ITool&>(tool).Init(host);
        std::vector<Ta::Object<void*>> messages;
        for (std::size_t axis = 0; axis < AnchoredTool::AXES; ++axis)
        {
            tool.InputAt(axis).Route({0, "a source with a name that fits no small buffer"});
            messages.push_back(Measure(10.0 * static_cast<double>(axis + 1)));
        }
        messages.push_back(Surface({{1, 2}}).BoundingBox({0, 0, 0, 1, 1, 1}));
        std::vector<void*> handles;
        for (const Ta::Object<void*>& message : messages)
        {
            handles.push_back(message.Get());
        }
        std::vector<TaPipe::MessageInput> inputs;
        for (std::size_t i = 0; i < handles.size(); ++i)
        {
            inputs.push_back({i, std::span<void* const>(&handles[i], 1)});
        }
        tool.Start();
        tool.ProcessInputSet(inputs.data(), inputs.size()); // the relative regions, and room for what follows
        const std::size_t newsBefore = newCalls;
        const std::size_t requestsBefore = alloc.Requests();
        for (std::size_t i = 0; i < EXECUTIONS; ++i)
        {
            tool.ProcessInputSet(inputs.data(), inputs.size());
        }
        EXPECT_EQ(newCalls - newsBefore, 0U);
        EXPECT_EQ(alloc.Requests() - requestsBefore, EXECUTIONS);
        EXPECT_EQ(host.messages, EXECUTIONS + 1);
        EXPECT_NEAR(tool.surface.AbsoluteRegion().x, 0.0, 1e-9) << "the anchor does not move, nor does the region";
        tool.Stop();
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

// Every failing allocation of construction, of AddAnchorInputs and Init, and of a route, start and stop.
TEST(CommonTool_anchored_life, leaves_nothing_behind_when_memory_runs_out)
{
    SilentHost host;
    const auto live = [&host] {
        AnchoredTool tool;
        static_cast<TaPipe::ITool&>(tool).Init(host);
        for (std::size_t axis = 0; axis < AnchoredTool::AXES; ++axis)
        {
            tool.InputAt(axis).Route({0, "a source with a name that fits no small buffer"});
        }
        tool.Start();
        tool.Stop();
    };
    live();
    std::size_t failures = 0;
    for (bool isComplete = false; !isComplete;)
    {
        const std::ptrdiff_t before = liveNews;
        failingNew = failures + 1;
        try
        {
            live();
            isComplete = true;
        }
        catch (const std::bad_alloc&)
        {
            ++failures;
        }
        failingNew = 0;
        ASSERT_EQ(liveNews, before) << "left behind when allocation " << failures << " failed";
    }
    EXPECT_GT(failures, 100U);
}
} // namespace
