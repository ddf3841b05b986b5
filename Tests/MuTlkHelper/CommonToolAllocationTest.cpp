// An executable of its own, because it replaces the global operator new to count what C++ code allocates.

#include <MuTlkHelper/CommonTool.h>

#include <Support/Builders.h>
#include <Support/CountingAlloc.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace
{
std::atomic<std::size_t> newCalls{0};
} // namespace

[[gnu::noinline]] void* operator new(std::size_t size)
{
    ++newCalls;
    if (void* const memory = std::malloc(size == 0 ? 1 : size); memory != nullptr)
    {
        return memory;
    }
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

namespace
{
using namespace Support;

constexpr std::size_t AT_END = static_cast<std::size_t>(-1);
constexpr std::size_t EXECUTIONS = 100;

class DeafHost final : public TaPipe::IToolHost, public TaPipe::IOutputReceiver
{
public:
    virtual ~DeafHost() = default;

    TaPipe::IOutputReceiver& OutputReceiver() override
    {
        return *this;
    }

    void OnMessage(TaPipe::ITool& /*tool*/, const TaPipe::ToolOutputInfo& /*output*/,
                   const Ta::Object<void*>& /*message*/, int /*sendKind*/) override
    {
        ++messages;
    }

    void OnArray(TaPipe::ITool& /*tool*/, const TaPipe::ToolOutputInfo& /*output*/,
                 const std::vector<Ta::Object<void*>>& /*sent*/) override
    {
    }

    std::size_t messages = 0;
};

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
    DeafHost host;
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
} // namespace
