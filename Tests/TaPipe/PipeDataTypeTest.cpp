#include <TaPipe/PipeDataType.h>

#include <gtest/gtest.h>

namespace
{
using TaPipe::PipeDataType;

struct TypeCase
{
    PipeDataType type;
    int number;
    const char* name;
};

TEST(PipeDataType, has_its_number_and_a_name)
{
    using enum PipeDataType;
    for (const TypeCase& c : {TypeCase{UniformProfile, 12, "uniform profile"},
                              {PointProfile, 13, "point profile"},
                              {UniformSurface, 14, "uniform surface"},
                              {PointSurface, 15, "point surface"},
                              {Image, 16, "image"},
                              {Measurement, 19, "measurement"},
                              {Rendering, 70, "rendering"},
                              {PointFeature, 71, "point feature"},
                              {LineFeature, 72, "line feature"},
                              {PlaneFeature, 73, "plane feature"},
                              {CircleFeature, 74, "circle feature"}})
    {
        EXPECT_EQ(static_cast<int>(c.type), c.number);
        EXPECT_STREQ(TaPipe::PipeDataTypeName(c.type), c.name);
    }
    EXPECT_STREQ(TaPipe::PipeDataTypeName(static_cast<PipeDataType>(9999)), "unknown");
}

TEST(PipeDataType, takes_16_bits)
{
    EXPECT_EQ(sizeof(PipeDataType), 2U);
}
} // namespace
