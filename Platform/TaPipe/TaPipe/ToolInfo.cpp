#include <TaPipe/ToolInfo.h>

#include <utility>

namespace TaPipe
{
namespace
{
std::string& HostVersionText()
{
    static std::string text;
    return text;
}
} // namespace

ToolInfo::ToolInfo(std::string typeName)
    : type(std::move(typeName))
    , displayName(type)
{
}

const std::string& ToolInfo::Type() const
{
    return type;
}

ToolInfo& ToolInfo::SetDisplayName(const char* name)
{
    displayName = name == nullptr ? "" : name;
    return *this;
}

const std::string& ToolInfo::DisplayName() const
{
    return displayName;
}

ToolInfo& ToolInfo::SetDescription(const char* text)
{
    description = text == nullptr ? "" : text;
    return *this;
}

const std::string& ToolInfo::Description() const
{
    return description;
}

ToolInfo& ToolInfo::SetHelpUrl(const char* url)
{
    helpUrl = url == nullptr ? "" : url;
    return *this;
}

const std::string& ToolInfo::HelpUrl() const
{
    return helpUrl;
}

const std::string& ToolInfo::HostAppVersion()
{
    return HostVersionText();
}

void ToolInfo::SetHostAppVersion(std::string version)
{
    HostVersionText() = std::move(version);
}
} // namespace TaPipe
