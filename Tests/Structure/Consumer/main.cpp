#include "CountTool.h"

#include <cstdio>

namespace
{
/// Prints the measurements that leave a tool.
class PrintingHost final : public TaPipe::IToolHost, public TaPipe::IOutputReceiver
{
public:
    virtual ~PrintingHost() = default;

    TaPipe::IOutputReceiver& OutputReceiver() override
    {
        return *this;
    }

    void OnMessage(TaPipe::ITool&, const TaPipe::ToolOutputInfo& output, const Ta::Object<void*>& message, int) override
    {
        const bool isMeasurement = xzCastClass_ObjectIs(message.Get(), zTypeOf(TvMeasureMsg));
        std::printf("%s: %g\n", output.Id(), isMeasurement ? TvMeasureMsg_Value(message.Get()) : -1);
    }

    void OnArray(TaPipe::ITool&, const TaPipe::ToolOutputInfo&, const std::vector<Ta::Object<void*>>&) override {}
};
} // namespace

int main()
{
    Ta::Object<void*> surface;
    if (TvSurfaceMsg_ConstructSimple(surface.Out(), 7, 3, nullptr) != zOK)
    {
        return 1;
    }
    void* const message = surface.Get();
    const TaPipe::MessageInput input{0, {&message, 1}};

    PrintingHost host;
    CountTool tool;
    static_cast<TaPipe::ITool&>(tool).Init(host);
    tool.Start();
    const bool executed = tool.ProcessInputSet(&input, 1);
    tool.Stop();
    return executed ? 0 : 1;
}
