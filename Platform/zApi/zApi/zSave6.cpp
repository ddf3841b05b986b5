#include <zApi/zDat6.h>
#include <zApi/zFault.h>
#include <zApi/zFile.h>
#include <zApi/zFileSystem.h>
#include <zApi/zObject.h>
#include <zApi/zSave6.h>

namespace
{
zStatus SaveAndClose(zObject object, zFile file)
{
    const zStatus saved = zSave6_ToStream(object, file);
    const zStatus closed = zFile_Close(file);
    return saved == zOK ? closed : saved;
}
} // namespace

zStatus zSave6(zObject object, const char* path)
{
    zFAULT_GATE();
    zFile file = nullptr;
    zTRY(zFile_Construct(&file, path, zFILE_WRITE, nullptr));
    const zStatus saved = SaveAndClose(object, file);
    static_cast<void>(xzObject_DestroyImpl(file));
    if (saved != zOK)
    {
        static_cast<void>(zFileSystem_DeletePart(path));
    }
    return saved;
}

zStatus zLoad6(zObject* object, const char* path, zAlloc alloc)
{
    zFAULT_GATE();
    if (object == nullptr)
    {
        return zERROR_MISSING;
    }
    zFile file = nullptr;
    zTRY(zFile_Construct(&file, path, zFILE_READ, nullptr));
    const zStatus loaded = zLoad6_FromStream(object, file, alloc);
    static_cast<void>(xzObject_DestroyImpl(file));
    return loaded;
}
