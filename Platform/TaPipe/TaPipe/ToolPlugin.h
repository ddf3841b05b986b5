#pragma once

#include <TaPipe/ITool.h>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <type_traits>

// How a plug-in shows its tools to a host: one exported C function that returns a table. A source file of the plug-in
// says, once and outside of every namespace,
//
//     TA_EXPORT_TOOLS(TaPipe::PluginTool<SurfaceHeight>("SurfaceHeight", "1.0.0"))
//
// with further tools after commas. The table is constant data: loading a plug-in runs no code of it.

/// One tool type of a plug-in. No entry may be null.
struct TaPluginTool
{
    const char* type;                     ///< the name by which jobs know it, unique within the plug-in
    const char* version;                  ///< of the tool, for people
    TaPipe::ITool* (*create)();           ///< what the constructor throws comes out of it
    void (*destroy)(TaPipe::ITool* tool); ///< takes what `create` gave
    void (*describe)(TaPipe::ToolInfo& info);
};

/// What the entry returns; it lives as long as the plug-in is loaded. The first two fields keep their place in every
/// version of the table, so that a host can say what does not fit before it reads on.
struct TaPluginTable
{
    z32u tableVersion;
    const char* abiTag;
    std::size_t toolCount;
    const TaPluginTool* tools;
};

/// The type of the entry, and its name in the plug-in.
using TaPluginEntry = const TaPluginTable* (*)();
inline constexpr const char* TaPLUGIN_ENTRY_NAME = "TaPlugin_GetTools";

/// The layout of the table.
inline constexpr z32u TaPLUGIN_TABLE_VERSION = 1;

#define TA_PLUGIN_TEXT_OF(value) #value
#define TA_PLUGIN_TEXT(value) TA_PLUGIN_TEXT_OF(value)

/// Raised whenever a public class of the platform changes its layout or its virtual operations.
#define TA_PLATFORM_ABI 1

#if defined(_GLIBCXX_USE_CXX11_ABI)
#define TA_PLUGIN_STRING_ABI _GLIBCXX_USE_CXX11_ABI
#else
#define TA_PLUGIN_STRING_ABI 0
#endif

/// What plug-in and host must have in common: interface, platform, JSON library, and the C++ of the compiler.
inline constexpr const char* TaPLUGIN_ABI_TAG =
    "tool interface 1, platform " TA_PLUGIN_TEXT(TA_PLATFORM_ABI) ", json " TA_PLUGIN_TEXT(NLOHMANN_JSON_VERSION_MAJOR) "." TA_PLUGIN_TEXT(
        NLOHMANN_JSON_VERSION_MINOR) "." TA_PLUGIN_TEXT(NLOHMANN_JSON_VERSION_PATCH) ", c++ abi " TA_PLUGIN_TEXT(__GXX_ABI_VERSION) ", string abi " TA_PLUGIN_TEXT(TA_PLUGIN_STRING_ABI);

namespace TaPipe
{
/// The table entry of a tool class. If it has a public static `Describe(ToolInfo&)`, that describes it.
template <typename Tool>
constexpr TaPluginTool PluginTool(const char* type, const char* version)
{
    static_assert(std::is_base_of_v<ITool, Tool>, "a tool derives from TaPipe::ITool");
    return {type, version, []() -> ITool* { return new Tool; }, [](ITool* tool) { delete tool; },
            [](ToolInfo& info) {
                if constexpr (requires { Tool::Describe(info); })
                {
                    Tool::Describe(info);
                }
                else
                {
                    static_cast<void>(info);
                }
            }};
}
} // namespace TaPipe

/// Defines the entry of a plug-in.
#define TA_EXPORT_TOOLS(...)                                                                                           \
    extern "C" MU_PLATFORM_EXPORT const TaPluginTable* TaPlugin_GetTools();                                            \
    extern "C" const TaPluginTable* TaPlugin_GetTools()                                                                \
    {                                                                                                                  \
        static constexpr TaPluginTool tools[] = {__VA_ARGS__};                                                         \
        static constexpr TaPluginTable table = {TaPLUGIN_TABLE_VERSION, TaPLUGIN_ABI_TAG,                              \
                                                sizeof(tools) / sizeof(tools[0]), tools};                              \
        return &table;                                                                                                 \
    }
