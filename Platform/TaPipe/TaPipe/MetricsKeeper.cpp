#include <TaPipe/MetricsKeeper.h>

namespace TaPipe
{
MetricsKeeperBase::MetricsKeeperBase()
    : metrics("Metrics")
{
    metrics.RegisterAt("Executions", "executions", shownExecutions, 0);
    metrics.RegisterAt("Messages", "messages", shownMessages, 1);
}

MetricsKeeperBase::~MetricsKeeperBase() = default;

Ta::Properties::Structure& MetricsKeeperBase::UpdateMetrics()
{
    shownExecutions.SetUnchecked(executionCount);
    shownMessages.SetUnchecked(messageCount);
    return metrics;
}

void MetricsKeeperBase::ResetMetrics()
{
    executionCount = 0;
    messageCount = 0;
    UpdateMetrics();
}
} // namespace TaPipe
