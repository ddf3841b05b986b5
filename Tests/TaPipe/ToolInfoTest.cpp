#include <TaPipe/ToolInfo.h>

#include <gtest/gtest.h>

namespace
{
TEST(ToolInfo, is_shown_under_its_type_name_until_it_has_another)
{
    TaPipe::ToolInfo info("SurfaceProbe");
    EXPECT_EQ(info.Type(), "SurfaceProbe");
    EXPECT_EQ(info.DisplayName(), "SurfaceProbe");
    info.SetDisplayName("Surface Probe").SetDescription("Probes.").SetHelpUrl("https://manuals.example.com/x");
    EXPECT_EQ(info.Type(), "SurfaceProbe");
    EXPECT_EQ(info.DisplayName(), "Surface Probe");
    EXPECT_EQ(info.Description(), "Probes.");
    EXPECT_EQ(info.HelpUrl(), "https://manuals.example.com/x");
}

TEST(ToolInfo, holds_one_host_version_for_the_process)
{
    const std::string former = TaPipe::ToolInfo::HostAppVersion();
    TaPipe::ToolInfo::SetHostAppVersion("6.1");
    EXPECT_EQ(TaPipe::ToolInfo::HostAppVersion(), "6.1");
    TaPipe::ToolInfo::SetHostAppVersion(former);
}
} // namespace
