#pragma once

#include <TaApi/Params.h>

namespace TaPipe
{
/// The parameters of a measurement output: its decision limits, both inclusive. Fresh limits pass every finite value.
class MU_PLATFORM_EXPORT OutputMeasurementParams : public Ta::Params::Group
{
public:
    OutputMeasurementParams();
    ~OutputMeasurementParams() override;

    Ta::Params::Value<double> lowerLimit;
    Ta::Params::Value<double> upperLimit;
};
} // namespace TaPipe
