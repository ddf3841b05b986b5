#include "Table.h"

namespace
{
constexpr TaPluginTool WithoutDestroy()
{
    TaPluginTool tool = CompleteTool("Half");
    tool.destroy = nullptr;
    return tool;
}
} // namespace

TA_EXPORT_TOOLS(WithoutDestroy())
