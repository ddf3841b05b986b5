#include <TaPipe/OutputMeasurementParams.h>

#include <TaApi/JsonSerializer.h>

#include <gtest/gtest.h>

namespace
{
TEST(OutputMeasurementParams, pass_every_finite_value_at_first)
{
    const TaPipe::OutputMeasurementParams params;
    EXPECT_EQ(params.lowerLimit.Get(), -1.7976931348623157e308);
    EXPECT_EQ(params.upperLimit.Get(), 1.7976931348623157e308);
}

TEST(OutputMeasurementParams, are_delivered_by_their_keys)
{
    TaPipe::OutputMeasurementParams params;
    Ta::Properties::JsonSerializer::Deserialize(params, {{"lowerLimit", 1.5}, {"upperLimit", 2}});
    EXPECT_EQ(params.lowerLimit.Get(), 1.5);
    EXPECT_EQ(params.upperLimit.Get(), 2.0);
}
} // namespace
