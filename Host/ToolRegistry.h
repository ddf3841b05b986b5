#pragma once

#include <Host/PluginLibrary.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Mu::Host
{
/// Ends a tool in the plug-in that made it, and only then lets go of the plug-in.
struct ToolDeleter
{
    std::shared_ptr<const PluginLibrary> library;
    void (*destroy)(TaPipe::ITool* tool) = nullptr;

    void operator()(TaPipe::ITool* tool) const
    {
        destroy(tool);
    }
};

using ToolPointer = std::unique_ptr<TaPipe::ITool, ToolDeleter>;

/// A type of tool that can be made. It keeps its plug-in loaded.
class ToolType
{
public:
    /// Asks the tool type what it is. @throws Error if it fails to tell
    ToolType(std::shared_ptr<const PluginLibrary> plugin, const TaPluginTool& entry);

    [[nodiscard]] const std::string& Name() const
    {
        return info.Type();
    }

    [[nodiscard]] const std::string& Version() const
    {
        return version;
    }

    [[nodiscard]] const TaPipe::ToolInfo& Info() const
    {
        return info;
    }

    [[nodiscard]] const std::filesystem::path& File() const
    {
        return library->File();
    }

    /// A new tool, not yet bound to a host. @throws Error naming plug-in and tool if its constructor fails
    [[nodiscard]] ToolPointer Create() const;

private:
    std::shared_ptr<const PluginLibrary> library;
    const TaPluginTool* tool;
    TaPipe::ToolInfo info;
    std::string version;
};

/// The tool types that are at hand, by name.
class ToolRegistry
{
public:
    /// Tells the tool library the version of the host, which goes into the tools' help addresses.
    explicit ToolRegistry(const std::string& hostVersion);

    /// Adds the tools of one plug-in. @throws Error if it cannot be loaded, or has a tool of a name already there
    void AddPlugin(const std::filesystem::path& file);

    /// Adds every plug-in (*.so) of a folder, by name. A broken one goes into `Failures` and the others are added.
    /// @throws Error  if the folder cannot be read
    void AddFolder(const std::filesystem::path& folder);

    /// Sorted by name.
    [[nodiscard]] const std::vector<ToolType>& Types() const
    {
        return types;
    }

    /// What was wrong with the plug-ins of folders, a message each.
    [[nodiscard]] const std::vector<std::string>& Failures() const
    {
        return failures;
    }

    /// Null if there is none of that name.
    [[nodiscard]] const ToolType* Find(std::string_view name) const;

    [[nodiscard]] std::vector<std::string> Names() const;

private:
    std::vector<ToolType> types;
    std::vector<std::string> failures;
};

/// The folders of tools that belong to a program: the first of `../tools` and `../lib/mutlk/tools` beside its own that
/// is there, if any.
[[nodiscard]] std::vector<std::filesystem::path> StandardToolFolders(const std::filesystem::path& programFolder);
} // namespace Mu::Host
