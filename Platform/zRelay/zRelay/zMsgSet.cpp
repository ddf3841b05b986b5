#include <zRelay/zMsgSetClass.h>

#include <zApi/zObjectType.h>

#include <algorithm>

zDEFINE_OBJECT_TYPE(zMsgSet, zObject, nullptr);

namespace
{
zMsgSetClass* As(zObject msg)
{
    return zObjectType_Cast<zMsgSetClass>(msg, zTypeOf(zMsgSet));
}

zStamp* StampAt(zMsgSetClass* msg, std::size_t index)
{
    if (msg == nullptr || index >= msg->count)
    {
        return nullptr;
    }
    return index == 0 ? &msg->first : msg->others + (index - 1);
}
} // namespace

zStatus xzMsgSet_Init(zMsgSetClass* msg, std::size_t count)
{
    zFAULT_GATE();
    msg->count = 1;
    if (count > zMSGSET_MAX_STAMPS)
    {
        return zERROR_PARAMETER;
    }
    if (count > 1)
    {
        void* others = nullptr;
        zTRY(zAlloc_Get(msg->alloc, (count - 1) * sizeof(zStamp), &others));
        msg->others = static_cast<zStamp*>(others);
        msg->count = count;
        std::fill_n(msg->others, count - 1, zStamp{});
    }
    return zOK;
}

zStatus xzMsgSet_CopyStamps(zMsgSetClass* msg, const zMsgSetClass* source)
{
    zFAULT_GATE();
    zTRY(xzMsgSet_Init(msg, source->count));
    msg->first = source->first;
    std::copy_n(source->others, source->count - 1, msg->others);
    return zOK;
}

zStatus xzMsgSet_SaveStamps(const zMsgSetClass* msg, zDat6Writer* writer)
{
    zTRY(zDat6_WriteNumber(writer, msg->count));
    zTRY(zDat6_Write(writer, &msg->first, sizeof(zStamp)));
    return zDat6_Write(writer, msg->others, (msg->count - 1) * sizeof(zStamp));
}

zStatus xzMsgSet_LoadStamps(zMsgSetClass* msg, zDat6Reader* reader)
{
    msg->count = 1;
    z64u count = 0;
    zTRY(zDat6_ReadNumber(reader, zMSGSET_MAX_STAMPS, &count));
    if (count == 0)
    {
        return zERROR_FORMAT;
    }
    zTRY(zDat6_CheckCount(reader, count, sizeof(zStamp)));
    zTRY(xzMsgSet_Init(msg, count));
    zTRY(zDat6_Read(reader, &msg->first, sizeof(zStamp)));
    return zDat6_Read(reader, msg->others, (count - 1) * sizeof(zStamp));
}

void xzMsgSet_Release(zMsgSetClass* msg) noexcept
{
    static_cast<void>(zAlloc_Free(msg->alloc, msg->others));
}

std::size_t zMsgSet_Count(zMsgSet msg)
{
    const zMsgSetClass* const object = As(msg);
    return object == nullptr ? 0 : object->count;
}

zStatus zMsgSet_SetStampAt(zMsgSet msg, std::size_t index, const zStamp* stamp)
{
    zFAULT_GATE();
    zStamp* const place = StampAt(As(msg), index);
    if (place == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (stamp == nullptr)
    {
        return zERROR_MISSING;
    }
    *place = *stamp;
    return zOK;
}

const zStamp* zMsgSet_StampAt(zMsgSet msg, std::size_t index)
{
    return StampAt(As(msg), index);
}
