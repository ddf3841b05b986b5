#include <TaPipe/OutputMeasurementParams.h>

#include <limits>

namespace TaPipe
{
OutputMeasurementParams::OutputMeasurementParams()
    : Group("OutputMeasurementParams")
{
    RegisterAt("Lower Limit", "lowerLimit", lowerLimit, 0);
    RegisterAt("Upper Limit", "upperLimit", upperLimit, 1);
    lowerLimit.Set(std::numeric_limits<double>::lowest());
    upperLimit.Set(std::numeric_limits<double>::max());
}

OutputMeasurementParams::~OutputMeasurementParams() = default;
} // namespace TaPipe
