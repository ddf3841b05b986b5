#pragma once

#include <TaPipe/ToolPlugin.h>

// Makes an entry by hand, for plug-ins that TA_EXPORT_TOOLS would not make.
#define TEST_ENTRY(...)                                                                                                \
    extern "C" MU_PLATFORM_EXPORT const TaPluginTable* TaPlugin_GetTools();                                            \
    extern "C" const TaPluginTable* TaPlugin_GetTools()                                                                \
    {                                                                                                                  \
        __VA_ARGS__                                                                                                    \
    }

/// An entry that is complete but for what a test takes away. Nothing is ever made of it.
constexpr TaPluginTool CompleteTool(const char* type)
{
    return {type, "1.0", []() -> TaPipe::ITool* { return nullptr; }, [](TaPipe::ITool*) {}, [](TaPipe::ToolInfo&) {}};
}
