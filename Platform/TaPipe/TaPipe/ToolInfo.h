#pragma once

#include <zApi/zExport.h>

#include <string>

namespace TaPipe
{
/// What a tool type says about itself.
class MU_PLATFORM_EXPORT ToolInfo
{
public:
    explicit ToolInfo(std::string typeName);

    /// The type name, by which a job names the tool.
    [[nodiscard]] const std::string& Type() const;

    ToolInfo& SetDisplayName(const char* name);
    [[nodiscard]] const std::string& DisplayName() const;

    ToolInfo& SetDescription(const char* text);
    [[nodiscard]] const std::string& Description() const;

    ToolInfo& SetHelpUrl(const char* url);
    [[nodiscard]] const std::string& HelpUrl() const;

    /// The version text of the host, one for the whole process; empty until the host sets it. Not guarded: the host
    /// sets it before it makes tools.
    static const std::string& HostAppVersion();
    static void SetHostAppVersion(std::string version);

private:
    std::string type;
    std::string displayName;
    std::string description;
    std::string helpUrl;
};
} // namespace TaPipe
