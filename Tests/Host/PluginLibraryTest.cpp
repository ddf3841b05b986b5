#include <Host/PluginLibrary.h>

#include "HostTestFiles.h"

#include <dlfcn.h>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

std::string LoadError(const std::filesystem::path& file)
{
    return ErrorOf([&] { return PluginLibrary::Load(file); });
}

struct Case
{
    const char* plugin;
    std::vector<std::string> says;
};

class Broken_plugin : public testing::TestWithParam<Case>
{
};

TEST_P(Broken_plugin, is_refused_with_what_is_wrong_and_what_to_do)
{
    const auto file = PluginFile(GetParam().plugin);
    const std::string message = LoadError(file);
    EXPECT_EQ(message.find(file.string() + ": "), 0U) << message;
    for (const std::string& part : GetParam().says)
    {
        EXPECT_TRUE(Contains(message, part));
    }
}

INSTANTIATE_TEST_SUITE_P(
    , Broken_plugin,
    testing::Values(Case{"Missing", {"there is no such plug-in. Check the name"}},
                    Case{"NoEntry", {"the library has no entry TaPlugin_GetTools", "TA_EXPORT_TOOLS"}},
                    Case{"ThrowingEntry", {"the entry failed: no licence for this machine."}},
                    Case{"NullTable", {"the entry returned no table."}},
                    Case{"OtherTableVersion", {"table version: the plug-in has 77, this program takes 1. Build"}},
                    Case{"OtherAbiTag",
                         {"ABI tag: the plug-in has \"tool interface 0, json 2.0.0\", this program takes \"",
                          TaPLUGIN_ABI_TAG, "Build the plug-in again"}},
                    Case{"EmptyTable", {"table: it lists 0 tools. Export 1 to"}},
                    Case{"UnnamedTool", {"tool 1: it has no type name."}},
                    Case{"TwinTools", {"tool 2: the type name \"Twin\" stands there twice."}},
                    Case{"IncompleteTool", {"tool 0: the entry of \"Half\" is not complete."}}),
    [](const auto& test) { return std::string(test.param.plugin); });

TEST(PluginLibrary, refuses_a_file_that_is_no_library)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "text.so", "this is no library");
    const std::string message = LoadError(folder / "text.so");
    EXPECT_TRUE(Contains(message, (folder / "text.so").string() + ": this is no library, or only a part of one. Give"));
}

TEST(PluginLibrary, refuses_a_folder)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(Contains(LoadError(folder / ""), "there is no such plug-in"));
}

TEST(PluginLibrary, refuses_a_library_that_was_cut_off_anywhere)
{
    const TemporaryFolder folder;
    const std::string whole = ReadBytes(PluginFile("GoodTools"));
    for (const std::size_t size : {std::size_t{0}, std::size_t{4}, std::size_t{63}, std::size_t{64}, std::size_t{500},
                                   whole.size() / 2, whole.size() - 1})
    {
        WriteBytes(folder / "cut.so", whole.substr(0, size));
        EXPECT_TRUE(Contains(LoadError(folder / "cut.so"), "this is no library, or only a part of one")) << size;
    }
}

TEST(PluginLibrary, refuses_a_library_of_another_machine)
{
    const TemporaryFolder folder;
    std::string other = ReadBytes(PluginFile("GoodTools"));
    other[18] = 21; // the machine, in the header of the file
    WriteBytes(folder / "other.so", other);
    const std::string message = LoadError(folder / "other.so");
    EXPECT_TRUE(
        Contains(message, (folder / "other.so").string() + ": the plug-in was built for another kind of machine."));
    EXPECT_TRUE(Contains(message, "Build it on or for this kind of machine."));
}

TEST(PluginLibrary, lists_its_tools_in_their_order)
{
    const auto library = PluginLibrary::Load(PluginFile("GoodTools"));
    ASSERT_EQ(library->Tools().size(), 4U);
    EXPECT_STREQ(library->Tools()[0].type, "Dynamic");
    EXPECT_STREQ(library->Tools()[0].version, "1.2.3");
    EXPECT_STREQ(library->Tools()[3].type, "Doubler");
}

bool IsLoaded(const std::filesystem::path& file)
{
    void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr)
    {
        dlclose(handle);
    }
    return handle != nullptr;
}

TEST(PluginLibrary, is_unloaded_with_its_last_user)
{
    // A copy: the file itself may be in use by other tests of this process.
    const TemporaryFolder folder;
    std::filesystem::copy_file(PluginFile("GoodTools"), folder / "copy.so");
    auto library = PluginLibrary::Load(folder / "copy.so");
    const auto other = library;
    library.reset();
    EXPECT_TRUE(IsLoaded(folder / "copy.so"));
    EXPECT_EQ(other.use_count(), 1);
}

TEST(PluginLibrary, that_is_refused_does_not_stay_loaded)
{
    const TemporaryFolder folder;
    std::filesystem::copy_file(PluginFile("OtherAbiTag"), folder / "copy.so");
    EXPECT_NE(LoadError(folder / "copy.so"), "");
    EXPECT_FALSE(IsLoaded(folder / "copy.so"));
}

std::vector<std::string> NamesShownBy(const std::filesystem::path& plugin)
{
    const std::string command = "nm -D --defined-only " + plugin.string();
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
    {
        return {};
    }
    std::vector<std::string> names;
    char line[512];
    while (fgets(line, sizeof line, pipe) != nullptr)
    {
        names.emplace_back(line);
    }
    EXPECT_EQ(pclose(pipe), 0);
    return names;
}

TEST(Plugin_entry, is_the_only_name_that_a_plugin_shows)
{
    int plugins = 0;
    for (const auto& plugin : std::filesystem::directory_iterator(MU_TOOLS_DIR))
    {
        const auto names = NamesShownBy(plugin.path());
        ASSERT_EQ(names.size(), 1U) << plugin.path();
        EXPECT_TRUE(names[0].ends_with(" T TaPlugin_GetTools\n")) << plugin.path() << names[0];
        ++plugins;
    }
    EXPECT_EQ(plugins, 5);
}
} // namespace
