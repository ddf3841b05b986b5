#include <Host/PluginLibrary.h>

#include <Host/Error.h>
#include <Host/FailureText.h>

#include <fmt/format.h>

#include <dlfcn.h>
#include <link.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <set>
#include <string_view>

namespace Mu::Host
{
namespace
{
constexpr const char* rebuild = "Build the plug-in again with the headers and the compiler of this program";
constexpr std::size_t mostTools = 1000;

/// Whether a run of `count` records of `size` bytes from `begin` on lies within a file.
bool LiesWithin(std::uint64_t fileSize, std::uint64_t begin, std::uint64_t size, std::uint64_t count)
{
    std::uint64_t bytes = 0;
    return !__builtin_mul_overflow(size, count, &bytes) && begin <= fileSize && bytes <= fileSize - begin;
}

/// The loader of the system maps what the headers of a library speak of, and the process dies where the file does not
/// reach that far. So what they speak of is looked up first.
bool IsWholeLibrary(const std::filesystem::path& file)
{
    std::error_code failure;
    const std::uint64_t fileSize = std::filesystem::file_size(file, failure);
    std::ifstream stream(file, std::ios::binary);
    ElfW(Ehdr) head{};
    stream.read(reinterpret_cast<char*>(&head), sizeof head);
    if (failure || !stream || std::memcmp(head.e_ident, ELFMAG, SELFMAG) != 0 ||
        head.e_phentsize != sizeof(ElfW(Phdr)) || !LiesWithin(fileSize, head.e_phoff, head.e_phentsize, head.e_phnum) ||
        !LiesWithin(fileSize, head.e_shoff, head.e_shentsize, head.e_shnum))
    {
        return false;
    }
    stream.seekg(static_cast<std::streamoff>(head.e_phoff));
    for (unsigned i = 0; i < head.e_phnum; ++i)
    {
        ElfW(Phdr) segment{};
        stream.read(reinterpret_cast<char*>(&segment), sizeof segment);
        if (!stream || !LiesWithin(fileSize, segment.p_offset, 1, segment.p_filesz))
        {
            return false;
        }
    }
    return true;
}

/// Whether a library was built for the kind of machine that this program was built for.
bool IsForThisMachine(const std::filesystem::path& file)
{
    const auto headOf = [](const std::filesystem::path& name) {
        ElfW(Ehdr) head{};
        std::ifstream(name, std::ios::binary).read(reinterpret_cast<char*>(&head), sizeof head);
        return head;
    };
    const ElfW(Ehdr) library = headOf(file);
    const ElfW(Ehdr) program = headOf("/proc/self/exe");
    return library.e_machine == program.e_machine && library.e_ident[EI_CLASS] == program.e_ident[EI_CLASS];
}

void* Open(const std::filesystem::path& file)
{
    std::error_code failure;
    if (!std::filesystem::is_regular_file(file, failure))
    {
        throw Error(file, "", "there is no such plug-in", "Check the name and the folder it is looked for in");
    }
    if (!IsWholeLibrary(file))
    {
        throw Error(file, "", "this is no library, or only a part of one",
                    "Give a plug-in, and copy it again if it was cut off");
    }
    if (!IsForThisMachine(file))
    {
        throw Error(file, "", "the plug-in was built for another kind of machine",
                    "Build it on or for this kind of machine");
    }
    void* const handle = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
    {
        throw Error(file, "", fmt::format("the plug-in cannot be loaded ({})", dlerror()),
                    "Give a plug-in that was built for this machine and this program");
    }
    return handle;
}

TaPluginEntry FindEntry(const std::filesystem::path& file, void* handle)
{
    void* const found = dlsym(handle, TaPLUGIN_ENTRY_NAME);
    if (found == nullptr)
    {
        throw Error(file, "", fmt::format("the library has no entry {}, so it is no plug-in", TaPLUGIN_ENTRY_NAME),
                    "Export its tools with TA_EXPORT_TOOLS, or take the file out of the folder");
    }
    TaPluginEntry entry = nullptr;
    static_assert(sizeof entry == sizeof found);
    std::memcpy(&entry, &found, sizeof entry);
    return entry;
}

const TaPluginTable& CallEntry(const std::filesystem::path& file, TaPluginEntry entry)
{
    const TaPluginTable* table = nullptr;
    try
    {
        table = entry();
    }
    catch (...)
    {
        throw Error(file, TaPLUGIN_ENTRY_NAME, fmt::format("the entry failed: {}", CurrentFailureText()),
                    "Export the tools with TA_EXPORT_TOOLS, whose entry cannot fail");
    }
    if (table == nullptr)
    {
        throw Error(file, TaPLUGIN_ENTRY_NAME, "the entry returned no table", "Export the tools with TA_EXPORT_TOOLS");
    }
    return *table;
}

void CheckMakes(const std::filesystem::path& file, const TaPluginTable& table)
{
    if (table.tableVersion != TaPLUGIN_TABLE_VERSION)
    {
        throw Error(
            file, "table version",
            fmt::format("the plug-in has {}, this program takes {}", table.tableVersion, TaPLUGIN_TABLE_VERSION),
            rebuild);
    }
    const std::string_view tag = table.abiTag == nullptr ? "none" : table.abiTag;
    if (tag != TaPLUGIN_ABI_TAG)
    {
        throw Error(file, "ABI tag",
                    fmt::format("the plug-in has {}, this program takes \"{}\"", Quoted(tag), TaPLUGIN_ABI_TAG),
                    rebuild);
    }
    if (table.tools == nullptr || table.toolCount == 0 || table.toolCount > mostTools)
    {
        throw Error(file, "table", fmt::format("it lists {} tools", table.tools == nullptr ? 0 : table.toolCount),
                    fmt::format("Export 1 to {} tools with TA_EXPORT_TOOLS", mostTools));
    }
}

void CheckTools(const std::filesystem::path& file, std::span<const TaPluginTool> tools)
{
    std::set<std::string_view> types;
    for (std::size_t i = 0; i < tools.size(); ++i)
    {
        const TaPluginTool& tool = tools[i];
        const std::string place = fmt::format("tool {}", i);
        if (tool.type == nullptr || *tool.type == '\0')
        {
            throw Error(file, place, "it has no type name", "Give each exported tool a name");
        }
        if (!types.insert(tool.type).second)
        {
            throw Error(file, place, fmt::format("the type name {} stands there twice", Quoted(tool.type)),
                        "Give each exported tool a name of its own");
        }
        if (tool.version == nullptr || tool.create == nullptr || tool.destroy == nullptr || tool.describe == nullptr)
        {
            throw Error(file, place, fmt::format("the entry of {} is not complete", Quoted(tool.type)),
                        "Make it with TaPipe::PluginTool");
        }
    }
}
} // namespace

PluginLibrary::PluginLibrary(const std::filesystem::path& pluginFile)
    : file(pluginFile)
    , handle(Open(pluginFile))
{
}

PluginLibrary::~PluginLibrary()
{
    dlclose(handle);
}

std::shared_ptr<const PluginLibrary> PluginLibrary::Load(const std::filesystem::path& file)
{
    const std::shared_ptr<PluginLibrary> library(new PluginLibrary(file));
    const TaPluginTable& table = CallEntry(file, FindEntry(file, library->handle));
    CheckMakes(file, table);
    library->tools = {table.tools, table.toolCount};
    CheckTools(file, library->tools);
    return library;
}
} // namespace Mu::Host
