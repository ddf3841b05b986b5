#pragma once

#include <TaApi/Properties.h>

namespace TaCommon
{
/// Keeps figures about the work of a tool, which the host shows.
class MU_PLATFORM_EXPORT IMetricsKeeper
{
public:
    virtual ~IMetricsKeeper() = default;

    /// Brings the figures up to date and returns them. The structure stays the keeper's.
    virtual Ta::Properties::Structure& UpdateMetrics() = 0;

    /// Sets all figures back to 0.
    virtual void ResetMetrics() = 0;
};
} // namespace TaCommon
