// What one execution of a tool costs: one input, one measurement, no recorder, measured from ProcessInputSet.
//
// The rows to compare within one run: Execution with its MessageConstruction, and the failing executions with
// BareThrow, the price of one throw and catch.

#include <MuTlkHelper/CommonTool.h>

#include <TaVision/TaVision.h>

#include <benchmark/benchmark.h>

#include <limits>
#include <stdexcept>

namespace
{
constexpr std::size_t AT_END = static_cast<std::size_t>(-1);
constexpr double HEIGHT = 1.25;

/// Counts what arrives and looks at nothing else.
class CountingHost final : public TaPipe::IToolHost, public TaPipe::IOutputReceiver
{
public:
    virtual ~CountingHost() = default;

    TaPipe::IOutputReceiver& OutputReceiver() override
    {
        return *this;
    }

    void OnMessage(TaPipe::ITool& /*tool*/, const TaPipe::ToolOutputInfo& /*output*/, const Ta::Object<void*>& message,
                   int /*sendKind*/) override
    {
        xzCastClass_ObjectIs(message.Get(), zTypeOf(TvMeasureMsg)) ? ++measurements : ++nulls;
    }

    void OnArray(TaPipe::ITool& /*tool*/, const TaPipe::ToolOutputInfo& /*output*/,
                 const std::vector<Ta::Object<void*>>& /*messages*/) override
    {
    }

    std::size_t measurements = 0;
    std::size_t nulls = 0;
};

class OneMeasurement final : public Mu::Tools::CommonTool
{
public:
    explicit OneMeasurement(const char* sentTo)
        : sentOutput(sentTo)
    {
    }

    void Init(TaPipe::IToolHost& host) override
    {
        AddInput("Data", AT_END);
        AddMeasurementOutput("Height", false, AT_END);
        CommonTool::Init(host, group);
    }

    void Execute(InputSet& /*set*/) override
    {
        SendMeasurement(sentOutput, HEIGHT, false, nullptr);
    }

private:
    Ta::Params::Group group{"Parameters"};
    const char* sentOutput;
};

enum class Expected
{
    Measurement,
    Null
};

/// Runs executions of a tool that sends on `sentTo` with `message` as its input.
void Executions(benchmark::State& state, const char* sentTo, void* message, Expected expected)
{
    CountingHost host;
    OneMeasurement tool(sentTo);
    static_cast<TaPipe::ITool&>(tool).Init(host);
    tool.Start();
    const TaPipe::MessageInput input{0, std::span<void* const>(&message, 1)};
    for (auto iteration : state)
    {
        benchmark::DoNotOptimize(tool.ProcessInputSet(&input, 1));
    }
    tool.Stop();
    const std::size_t right = expected == Expected::Measurement ? host.measurements : host.nulls;
    const std::size_t wrong = expected == Expected::Measurement ? host.nulls : host.measurements;
    if (right != static_cast<std::size_t>(state.iterations()) || wrong != 0)
    {
        state.SkipWithError("an execution did not send what it should");
    }
}

Ta::Object<void*> BoxedSurface()
{
    Ta::Object<void*> surface;
    MU_CHECK(TvSurfaceMsg_ConstructSimple(surface.Out(), 4, 4, nullptr));
    constexpr zRect3d64f box{0, 0, 0, 1, 1, 1};
    MU_CHECK(TvDataMsg_SetBoundingBox(surface.Get(), &box));
    return surface;
}

void Execution(benchmark::State& state)
{
    const Ta::Object<void*> surface = BoxedSurface();
    Executions(state, "Height", surface.Get(), Expected::Measurement);
}

// The part of an execution that is the making and ending of its message.
void MessageConstruction(benchmark::State& state)
{
    for (auto iteration : state)
    {
        Ta::Object<void*> message;
        MU_CHECK(TvMeasureMsg_Construct(message.Out(), 1, 0, nullptr));
        MU_CHECK(TvMeasureMsg_SetValue(message.Get(), HEIGHT));
        MU_CHECK(TvMeasureMsg_SetStatus(message.Get(), true));
        benchmark::DoNotOptimize(message.Get());
    }
}

void ExecutionOnNullInput(benchmark::State& state)
{
    Executions(state, "Height", nullptr, Expected::Null);
}

void ExecutionWithFailingSend(benchmark::State& state)
{
    const Ta::Object<void*> surface = BoxedSurface();
    Executions(state, "Unknown", surface.Get(), Expected::Null);
}

void BareThrow(benchmark::State& state)
{
    for (auto iteration : state)
    {
        try
        {
            throw std::runtime_error("bare");
        }
        catch (const std::exception& exception)
        {
            benchmark::DoNotOptimize(exception.what());
        }
    }
}

BENCHMARK(BareThrow);
BENCHMARK(MessageConstruction);
BENCHMARK(Execution);
BENCHMARK(ExecutionOnNullInput);
BENCHMARK(ExecutionWithFailingSend);
} // namespace
