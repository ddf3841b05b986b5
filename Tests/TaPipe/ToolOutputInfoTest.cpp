#include <TaPipe/OutputMeasurementParams.h>
#include <TaPipe/ToolOutputInfo.h>

#include <gtest/gtest.h>

namespace
{
using TaPipe::PipeDataType;
using TaPipe::ToolOutputInfo;

struct Owner final : TaPipe::IOutputOwner
{
    void OnOutputParams(ToolOutputInfo& output) override
    {
        changed.emplace_back(output.Id());
    }

    std::vector<std::string> changed;
};

TEST(ToolOutputInfo, starts_enabled_at_priority_0_without_format)
{
    Owner owner;
    const ToolOutputInfo output(owner, "Height", 2, std::make_unique<TaPipe::OutputMeasurementParams>());
    EXPECT_STREQ(output.Id(), "Height");
    EXPECT_STREQ(output.DisplayName(), "Height");
    EXPECT_STREQ(output.Units(), "");
    EXPECT_EQ(output.Index(), 2U);
    EXPECT_TRUE(output.IsEnabled());
    EXPECT_EQ(output.Priority(), 0U);
    EXPECT_EQ(output.DataFormat(), (TaPipe::PipeDataFormat{PipeDataType::None, false}));
    EXPECT_NE(dynamic_cast<TaPipe::OutputMeasurementParams*>(&output.Params()), nullptr);
}

TEST(ToolOutputInfo, is_described_in_one_chain)
{
    Owner owner;
    ToolOutputInfo output(owner, "Height", 0, std::make_unique<TaPipe::OutputMeasurementParams>());
    ToolOutputInfo& same = output.SetDisplayName("The Height")
                               .Enable(false)
                               .SetDataFormat(PipeDataType::Rendering, true)
                               .SetPriority(1005)
                               .AssociateOutput("*")
                               .AssociateOutput("Other")
                               .SetUnits("mm");
    EXPECT_EQ(&same, &output);
    EXPECT_STREQ(output.DisplayName(), "The Height");
    EXPECT_FALSE(output.IsEnabled());
    EXPECT_EQ(output.DataFormat(), (TaPipe::PipeDataFormat{PipeDataType::Rendering, true}));
    EXPECT_EQ(output.Priority(), 1005U);
    EXPECT_EQ(output.AssociatedOutputs(), (std::vector<std::string>{"*", "Other"}));
    EXPECT_STREQ(output.Units(), "mm");
}

TEST(ToolOutputInfo, tells_its_owner_of_changed_parameters)
{
    Owner owner;
    ToolOutputInfo output(owner, "Height", 0, std::make_unique<TaPipe::OutputMeasurementParams>());
    output.NotifyParamsChanged();
    EXPECT_EQ(owner.changed, std::vector<std::string>{"Height"});
}
} // namespace
