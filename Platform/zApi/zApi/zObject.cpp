#include <zApi/zAlloc.h>
#include <zApi/zFault.h>
#include <zApi/zLog.h>
#include <zApi/zObject.h>

namespace
{
zObjectClass* Header(zObject object)
{
    return static_cast<zObjectClass*>(object);
}

void End(zObjectClass* object) noexcept
{
    if (object->type->ops != nullptr && object->type->ops->release != nullptr)
    {
        object->type->ops->release(object);
    }
    object->signature = 0;
    static_cast<void>(zAlloc_Free(object->alloc, object));
}
} // namespace

zStatus xzObject_ShareImpl(zObject object)
{
    zFAULT_GATE();
    if (object == nullptr)
    {
        return zERROR_MISSING;
    }
    Header(object)->references.fetch_add(1, std::memory_order_relaxed);
    return zOK;
}

zStatus xzObject_DestroyImpl(zObject object)
{
    // An injected failure still releases, so that a caller who drops the status leaks nothing.
    const zStatus status = zFAULT_STATUS();
    if (object != nullptr && Header(object)->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
    {
        End(Header(object));
    }
    return status;
}

zStatus xzObject_CloneImpl(zObject* clone, zObject source, zAlloc alloc)
{
    zFAULT_GATE();
    if (clone == nullptr)
    {
        return zERROR_MISSING;
    }
    if (source == nullptr)
    {
        *clone = nullptr;
        return zOK;
    }
    const zObjectOps* const ops = Header(source)->type->ops;
    if (ops == nullptr || ops->clone == nullptr)
    {
        return zERROR_INTERFACE;
    }
    return ops->clone(source, alloc, clone);
}

bool xzCastClass_ObjectIs(zObject object, zType type)
{
    if (object == nullptr)
    {
        return false;
    }
    for (zType present = Header(object)->type; present != nullptr; present = present->base)
    {
        if (present == type)
        {
            return true;
        }
    }
    return false;
}

bool xzCastClass_ObjectIsValid(zObject object)
{
    return object != nullptr && Header(object)->signature == zOBJECT_SIGNATURE;
}

zStatus xzApiLib_CastFailHandler(const char* file, int line)
{
    return zLogf("%s:%d: cast to a type that the object does not have", file == nullptr ? "?" : file, line);
}

z32s xzObject_ReferenceCount(zObject object)
{
    return object == nullptr ? 0 : Header(object)->references.load(std::memory_order_acquire);
}

zType xzObject_Type(zObject object)
{
    return object == nullptr ? nullptr : Header(object)->type;
}
