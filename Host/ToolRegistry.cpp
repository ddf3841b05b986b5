#include <Host/ToolRegistry.h>

#include <Host/Error.h>
#include <Host/FailureText.h>

#include <MuTlkHelper/CommonTool.h>

#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace Mu::Host
{
ToolType::ToolType(std::shared_ptr<const PluginLibrary> plugin, const TaPluginTool& entry)
    : library(std::move(plugin))
    , tool(&entry)
    , info(entry.type)
    , version(entry.version)
{
    try
    {
        tool->describe(info);
    }
    catch (...)
    {
        throw Error(File(), Name(), fmt::format("the tool cannot describe itself: {}", CurrentFailureText()),
                    "Mend its Describe");
    }
}

ToolPointer ToolType::Create() const
{
    TaPipe::ITool* made = nullptr;
    try
    {
        made = tool->create();
    }
    catch (...)
    {
        throw Error(File(), Name(), fmt::format("the tool cannot be made: {}", CurrentFailureText()),
                    "Mend its constructor, or use another version of the plug-in");
    }
    if (made == nullptr)
    {
        throw Error(File(), Name(), "the plug-in gave no tool", "Export the tool with TaPipe::PluginTool");
    }
    return {made, ToolDeleter{library, tool->destroy}};
}

ToolRegistry::ToolRegistry(const std::string& hostVersion)
{
    TaPlugin_SetHostInfo(hostVersion);
}

void ToolRegistry::AddPlugin(const std::filesystem::path& file)
{
    const auto library = PluginLibrary::Load(file);
    std::vector<ToolType> added;
    for (const TaPluginTool& tool : library->Tools())
    {
        if (const ToolType* const present = Find(tool.type))
        {
            throw Error(file, tool.type, fmt::format("{} has a tool of that name already", present->File().string()),
                        "Take one of the two plug-ins away");
        }
        added.emplace_back(library, tool);
    }
    std::ranges::move(added, std::back_inserter(types));
    std::ranges::sort(types, {}, &ToolType::Name);
}

void ToolRegistry::AddFolder(const std::filesystem::path& folder)
{
    std::error_code failure;
    std::vector<std::filesystem::path> files;
    for (std::filesystem::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure))
    {
        if (entry->path().extension() == ".so")
        {
            files.push_back(entry->path());
        }
    }
    if (failure)
    {
        throw Error(folder, "", fmt::format("the folder of tools cannot be read ({})", failure.message()),
                    "Give a folder with plug-ins");
    }
    std::ranges::sort(files);
    for (const auto& file : files)
    {
        try
        {
            AddPlugin(file);
        }
        catch (const Error& error)
        {
            failures.emplace_back(error.what());
        }
    }
}

const ToolType* ToolRegistry::Find(std::string_view name) const
{
    const auto found = std::ranges::find(types, name, &ToolType::Name);
    return found == types.end() ? nullptr : &*found;
}

std::vector<std::string> ToolRegistry::Names() const
{
    std::vector<std::string> names;
    std::ranges::transform(types, std::back_inserter(names), &ToolType::Name);
    return names;
}

std::vector<std::filesystem::path> StandardToolFolders(const std::filesystem::path& programFolder)
{
    for (const char* const beside : {"../tools", "../lib/mutlk/tools"})
    {
        std::error_code ignored;
        const auto folder = (programFolder / beside).lexically_normal();
        if (std::filesystem::is_directory(folder, ignored))
        {
            return {folder};
        }
    }
    return {};
}
} // namespace Mu::Host
