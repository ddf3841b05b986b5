#pragma once

#include <TaApi/Params.h>
#include <TaCommon/IMetricsKeeper.h>

namespace TaPipe
{
/// The figures of a tool: how often it was executed, and how many messages it sent.
/// A class of its own between the interface and the tool base: overridden in the tool base itself, its operations would
/// stand among those of `ITool`.
class MU_PLATFORM_EXPORT MetricsKeeperBase : public TaCommon::IMetricsKeeper
{
public:
    MetricsKeeperBase();
    ~MetricsKeeperBase() override;

    Ta::Properties::Structure& UpdateMetrics() override;
    void ResetMetrics() override;

    void CountExecution()
    {
        ++executionCount;
    }

    void CountMessages(std::size_t count)
    {
        messageCount += count;
    }

private:
    std::size_t executionCount = 0;
    std::size_t messageCount = 0;
    Ta::Params::Group metrics;
    Ta::Params::Value<std::size_t> shownExecutions;
    Ta::Params::Value<std::size_t> shownMessages;
};
} // namespace TaPipe
