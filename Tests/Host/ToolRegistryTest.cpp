#include <Host/ToolRegistry.h>

#include "HostTestFiles.h"

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
namespace fs = std::filesystem;

void CopyPlugin(std::string_view name, const fs::path& target)
{
    fs::copy_file(PluginFile(name), target);
}

TEST(ToolRegistry, has_the_tools_of_its_plugins_sorted_by_name)
{
    const ToolRegistry registry = RegistryOf({"GoodTools"});
    EXPECT_EQ(registry.Names(),
              (std::vector<std::string>{"Diary", "Doubler", "Dynamic", "FeatureDistance", "ProfilePosition", "Sender",
                                        "SurfaceHeight", "SurfacePlane", "SurfacePosition"}));
    EXPECT_EQ(registry.Find("Dynamic")->Version(), "1.2.3");
    EXPECT_EQ(registry.Find("Dynamic")->File(), PluginFile("GoodTools"));
    EXPECT_EQ(registry.Find("dynamic"), nullptr);
}

TEST(ToolRegistry, tells_the_tools_the_version_of_the_host)
{
    const ToolRegistry registry = RegistryOf({});
    EXPECT_EQ(TaPipe::ToolInfo::HostAppVersion(), "7.8.9");
    EXPECT_TRUE(Contains(registry.Find("SurfaceHeight")->Info().HelpUrl(), "-7.8/"));
}

TEST(ToolRegistry, reports_a_broken_plugin_of_a_folder_and_loads_the_others)
{
    const TemporaryFolder folder;
    CopyPlugin("NoEntry", folder / "a.so");
    CopyPlugin("GoodTools", folder / "b.so");
    WriteBytes(folder / "notes.txt", "not a plug-in by its name");
    ToolRegistry registry("1.0");
    registry.AddFolder(folder / "");
    EXPECT_EQ(registry.Types().size(), 4U);
    ASSERT_EQ(registry.Failures().size(), 1U);
    EXPECT_TRUE(Contains(registry.Failures()[0], (folder / "a.so").string() + ": the library has no entry"));
}

TEST(ToolRegistry, refuses_a_second_tool_of_a_name_and_names_both_files)
{
    const TemporaryFolder folder;
    CopyPlugin("GoodTools", folder / "copy.so");
    ToolRegistry registry = RegistryOf({"GoodTools"});
    const std::string message = ErrorOf([&] {
        registry.AddPlugin(folder / "copy.so");
        return 0;
    });
    EXPECT_TRUE(Contains(message, (folder / "copy.so").string() + ": Dynamic: "));
    EXPECT_TRUE(Contains(message, PluginFile("GoodTools").string() + " has a tool of that name already"));
    EXPECT_EQ(registry.Types().size(), 9U);
}

TEST(ToolRegistry, refuses_a_folder_that_is_not_there)
{
    ToolRegistry registry("1.0");
    const std::string message = ErrorOf([&] {
        registry.AddFolder("no/such/folder");
        return 0;
    });
    EXPECT_TRUE(Contains(message, "no/such/folder: the folder of tools cannot be read (No such file or directory)"));
}

struct ConstructionCase
{
    const char* type;
    const char* says;
};

class Tool_that_cannot_be_made : public testing::TestWithParam<ConstructionCase>
{
};

TEST_P(Tool_that_cannot_be_made, is_an_error_that_names_file_and_tool)
{
    const ToolRegistry registry = RegistryOf({"FailingTools"});
    const std::string message = ErrorOf([&] { return registry.Find(GetParam().type)->Create(); });
    EXPECT_EQ(message.find(PluginFile("FailingTools").string() + ": " + GetParam().type + ": "), 0U) << message;
    EXPECT_TRUE(Contains(message, GetParam().says));
}

INSTANTIATE_TEST_SUITE_P(
    , Tool_that_cannot_be_made,
    testing::Values(ConstructionCase{"ThrowsException", "the tool cannot be made: the camera is not calibrated. Mend"},
                    ConstructionCase{"ThrowsInt", "the tool cannot be made: an exception that is no std::exception. "},
                    ConstructionCase{"GivesNothing", "the plug-in gave no tool. "}),
    [](const auto& test) { return std::string(test.param.type); });

TEST(Tool, keeps_its_plugin_loaded_when_the_registry_is_gone)
{
    const TemporaryFolder folder;
    CopyPlugin("GoodTools", folder / "copy.so");
    ToolPointer tool;
    {
        ToolRegistry registry("1.0");
        registry.AddPlugin(folder / "copy.so");
        tool = registry.Find("Dynamic")->Create();
    }
    EXPECT_EQ(tool->InterfaceVersion(), 1U);
    tool.reset();
}

TEST(Standard_tool_folders, are_beside_the_program_in_a_build_or_below_lib_when_installed)
{
    const TemporaryFolder folder;
    fs::create_directories(folder / "bin");
    EXPECT_TRUE(StandardToolFolders(folder / "bin").empty());
    fs::create_directories(folder / "lib/mutlk/tools");
    EXPECT_EQ(StandardToolFolders(folder / "bin"), std::vector{folder / "lib/mutlk/tools"});
    fs::create_directories(folder / "tools");
    EXPECT_EQ(StandardToolFolders(folder / "bin"), std::vector{folder / "tools"});
}
} // namespace
