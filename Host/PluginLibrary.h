#pragma once

#include <TaPipe/ToolPlugin.h>

#include <filesystem>
#include <memory>
#include <span>

namespace Mu::Host
{
/// A plug-in that is loaded and whose table was checked. It stays loaded as long as somebody shares it: whatever comes
/// from it shares it too.
class PluginLibrary
{
public:
    /// Loads a plug-in: every symbol is bound now, and none of them is shown to others.
    /// @throws Error  if the file is missing or no plug-in for this host; the message names the file and what differs
    [[nodiscard]] static std::shared_ptr<const PluginLibrary> Load(const std::filesystem::path& file);

    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;
    ~PluginLibrary();

    [[nodiscard]] const std::filesystem::path& File() const
    {
        return file;
    }

    /// Its tools; at least one, all names known and different, all functions there.
    [[nodiscard]] std::span<const TaPluginTool> Tools() const
    {
        return tools;
    }

private:
    explicit PluginLibrary(const std::filesystem::path& pluginFile);

    std::filesystem::path file;
    void* handle;
    std::span<const TaPluginTool> tools;
};
} // namespace Mu::Host
