#include <zApi/zArrayList.h>
#include <zApi/zDirectory.h>
#include <zApi/zFileSystem.h>
#include <zApi/zItems.h>
#include <zApi/zPath.h>
#include <zApi/zString.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

bool IsFolder(const char* path)
{
    std::error_code error;
    return fs::is_directory(zFileSystem_Path(path), error);
}

zStatus Create(const char* path)
{
    std::error_code error;
    const fs::path folder = zFileSystem_Path(path);
    fs::create_directories(folder, error);
    if (fs::is_directory(folder, error))
    {
        return zOK;
    }
    return fs::exists(folder, error) ? zERROR_ALREADY_TAKEN : zERROR_IO;
}

/// The names of the files in a folder, in bytewise order.
zStatus FileNames(const char* path, std::vector<std::string>* names)
{
    std::error_code error;
    fs::directory_iterator entry(zFileSystem_Path(path), error);
    while (!error && entry != fs::directory_iterator())
    {
        // An entry that went away since, or that nobody may look at, is no file; the listing goes on.
        std::error_code ignored;
        if (!entry->is_directory(ignored))
        {
            names->push_back(zFileSystem_Text(entry->path().filename()));
        }
        entry.increment(error);
    }
    std::ranges::sort(*names);
    return error ? zERROR_IO : zOK;
}

zStatus AddText(zArrayListClass& list, const std::string& text)
{
    zString string = nullptr;
    zTRY(zString_Construct(&string, text.c_str(), list.alloc));
    const zStatus status = zArrayList_Add(&list, &string);
    static_cast<void>(xzObject_DestroyImpl(string));
    return status;
}

/// Takes the items from `count` on away again, without asking whether a call may fail.
void CutBack(zArrayListClass& list, std::size_t count)
{
    while (list.count > count)
    {
        --list.count;
        zItems_Release(list.itemType, list.items + list.count * list.itemSize, 1);
    }
}

zStatus ListFiles(const char* path, zArrayListClass& list)
{
    if (!IsFolder(path))
    {
        return zERROR_MISSING;
    }
    std::vector<std::string> names;
    zTRY(FileNames(path, &names));
    const std::size_t before = list.count;
    for (const std::string& name : names)
    {
        if (const zStatus status = AddText(list, name); status != zOK)
        {
            CutBack(list, before);
            return status;
        }
    }
    return zOK;
}

zStatus Application(char* out, std::size_t capacity)
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? zERROR_IO : zPath_Directory(zFileSystem_Text(program).c_str(), out, capacity);
}
} // namespace

bool zDirectory_Exists(const char* path)
{
    bool isThere = false;
    static_cast<void>(zFileSystem_Call([&] { return isThere = path != nullptr && IsFolder(path), zOK; }));
    return isThere;
}

zStatus zDirectory_Create(const char* path)
{
    zFAULT_GATE();
    return path == nullptr || *path == '\0' ? zERROR_MISSING : zFileSystem_Call([path] { return Create(path); });
}

zStatus zDirectory_ListFiles(const char* path, zArrayList list)
{
    zFAULT_GATE();
    auto* const object = zObjectType_Cast<zArrayListClass>(list, zTypeOf(zArrayList));
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (object->itemType != zTypeOf(zString))
    {
        return zERROR_LIST_TYPE;
    }
    return path == nullptr ? zERROR_MISSING : zFileSystem_Call([&] { return ListFiles(path, *object); });
}

zStatus zDirectory_Application(char* out, std::size_t capacity)
{
    zFAULT_GATE();
    return out == nullptr ? zERROR_MISSING : zFileSystem_Call([=] { return Application(out, capacity); });
}
