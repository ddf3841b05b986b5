#include <TaPipe/ToolInputInfo.h>

#include <gtest/gtest.h>

#include <vector>

namespace
{
using TaPipe::PipeDataType;
using TaPipe::ToolInputInfo;

struct Route
{
    bool active;
    int kind;
    std::string sourceId;
    bool sourceChanged;

    bool operator==(const Route&) const = default;
};

struct Owner final : TaPipe::IInputOwner
{
    void OnRouted(ToolInputInfo& input, const TaPipe::InputRoutedInfo& info, bool sourceChanged) override
    {
        routes.push_back({input.IsActive(), info.routeKind, info.sourceId, sourceChanged});
    }

    std::vector<Route> routes;
};

TEST(ToolInputInfo, starts_required_and_not_routed)
{
    Owner owner;
    const ToolInputInfo input(owner, "Data", 3);
    EXPECT_STREQ(input.Id(), "Data");
    EXPECT_STREQ(input.DisplayName(), "Data");
    EXPECT_EQ(input.Index(), 3U);
    EXPECT_FALSE(input.IsActive());
    EXPECT_FALSE(input.IsOptional());
    EXPECT_TRUE(input.AcceptedDataFormats().empty());
}

TEST(ToolInputInfo, is_described_in_one_chain)
{
    Owner owner;
    ToolInputInfo input(owner, "Data", 0);
    ToolInputInfo& same = input.SetDisplayName("The Data")
                              .SetOptional(true)
                              .AddAcceptedDataFormat(PipeDataType::UniformSurface, false)
                              .AddAcceptedDataFormat(PipeDataType::Measurement, true);
    EXPECT_EQ(&same, &input);
    EXPECT_STREQ(input.DisplayName(), "The Data");
    EXPECT_TRUE(input.IsOptional());
    EXPECT_EQ(input.AcceptedDataFormats(), (std::vector<TaPipe::PipeDataFormat>{{PipeDataType::UniformSurface, false},
                                                                                {PipeDataType::Measurement, true}}));
}

TEST(ToolInputInfo, tells_its_owner_of_every_route)
{
    Owner owner;
    ToolInputInfo input(owner, "Data", 0);
    input.Route({7, "scan"});
    input.Route({8, "scan"});
    input.Route({0, "other"});
    input.Route({0, ""});
    EXPECT_EQ(owner.routes,
              (std::vector<Route>{
                  {true, 7, "scan", true}, {true, 8, "scan", false}, {true, 0, "other", true}, {false, 0, "", true}}));
}
} // namespace
