#include "Table.h"

#include <MuTlkHelper/CommonTool.h>

#include <cstdlib>
#include <stdexcept>

// Tools that fail at one step of their life each.
namespace
{
class ThrowsException final : public Mu::Tools::CommonTool
{
public:
    ThrowsException()
    {
        throw Ta::Exception(__LINE__, "Tool", -997, "ThrowsException", "the camera is not calibrated");
    }
};

class ThrowsInt final : public Mu::Tools::CommonTool
{
public:
    ThrowsInt()
    {
        throw 42;
    }
};

enum class Step
{
    Init,
    Config,
    Routed,
    Start,
    Execute,
    Stop
};

template <Step FailingStep>
class FailsIn final : public Mu::Tools::CommonTool
{
public:
    using CommonTool::Init;

    void Init(IToolHost& host) override
    {
        FailAt(Step::Init);
        AddInput("Surface", static_cast<std::size_t>(-1));
        AddMeasurementOutput("Value", false, static_cast<std::size_t>(-1));
        params.Register("Number", number);
        CommonTool::Init(host, params);
    }

    void UpdateConfig() override
    {
        if (number.Get() != 0)
        {
            FailAt(Step::Config);
        }
    }

    void OnInputRouted(ToolInputInfo& input, InputRoutedInfo info) override
    {
        CommonTool::OnInputRouted(input, info);
        FailAt(Step::Routed);
    }

    void Start() override
    {
        CommonTool::Start();
        FailAt(Step::Start);
    }

    void Execute(InputSet& /*set*/) override
    {
        FailAt(Step::Execute);
    }

    void Stop() override
    {
        CommonTool::Stop();
        FailAt(Step::Stop);
    }

private:
    static void FailAt(Step step)
    {
        if (step == FailingStep)
        {
            throw std::runtime_error("this step failed");
        }
    }

    Ta::Params::Group params;
    Ta::Params::Value<int> number;
};
} // namespace

namespace
{
/// Takes the whole program down with it, as if all were well.
class EndsTheProgram final : public Mu::Tools::CommonTool
{
    void Init(IToolHost& host) override
    {
        AddInput("Surface", static_cast<std::size_t>(-1));
        CommonTool::Init(host, params);
    }

    void Execute(InputSet& /*set*/) override
    {
        std::exit(0);
    }

    Ta::Params::Group params;
};
} // namespace

TA_EXPORT_TOOLS(TaPipe::PluginTool<ThrowsException>("ThrowsException", "1.0"),
                TaPipe::PluginTool<ThrowsInt>("ThrowsInt", "1.0"), CompleteTool("GivesNothing"),
                TaPipe::PluginTool<FailsIn<Step::Init>>("FailsInInit", "1.0"),
                TaPipe::PluginTool<FailsIn<Step::Config>>("FailsInConfig", "1.0"),
                TaPipe::PluginTool<FailsIn<Step::Routed>>("FailsWhenRouted", "1.0"),
                TaPipe::PluginTool<FailsIn<Step::Start>>("FailsInStart", "1.0"),
                TaPipe::PluginTool<FailsIn<Step::Execute>>("FailsInExecute", "1.0"),
                TaPipe::PluginTool<FailsIn<Step::Stop>>("FailsInStop", "1.0"),
                TaPipe::PluginTool<EndsTheProgram>("EndsTheProgram", "1.0"))
