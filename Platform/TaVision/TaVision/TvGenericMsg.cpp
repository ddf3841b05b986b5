#include <TaVision/TvGenericMsg.h>
#include <TaVision/TvMsgClass.h>

#include <cstring>
#include <limits>

namespace
{
struct Generic : TvMsgClass
{
    z32u dataType = 0;
    std::size_t size = 0;
    void* buffer = nullptr; ///< null if it has no bytes

    [[nodiscard]] zStatus Allocate(z32u newType, std::size_t newSize)
    {
        dataType = newType;
        if (newSize > TvMSG_MAX_ITEMS)
        {
            return zERROR_PARAMETER;
        }
        if (newSize > 0)
        {
            zTRY(zAlloc_Get(alloc, newSize, &buffer));
            size = newSize;
        }
        return zOK;
    }

    void Fill(const void* bytes)
    {
        if (size > 0)
        {
            std::memcpy(buffer, bytes, size);
        }
    }

    void ReleaseParts() noexcept
    {
        static_cast<void>(zAlloc_Free(alloc, buffer));
    }

    [[nodiscard]] zStatus CopyFrom(const Generic& source)
    {
        zTRY(TvMsgClass::CopyFrom(source));
        zTRY(Allocate(source.dataType, source.size));
        Fill(source.buffer);
        return zOK;
    }

    [[nodiscard]] zStatus SaveTo(zDat6Writer* writer) const
    {
        zTRY(TvMsgClass::SaveTo(writer));
        zTRY(zDat6_WriteNumber(writer, dataType));
        zTRY(zDat6_WriteNumber(writer, size));
        return zDat6_Write(writer, buffer, size);
    }

    [[nodiscard]] zStatus LoadFrom(zDat6Reader* reader)
    {
        z64u storedType = 0;
        z64u storedSize = 0;
        zTRY(TvMsgClass::LoadFrom(reader));
        zTRY(zDat6_ReadNumber(reader, std::numeric_limits<z32u>::max(), &storedType));
        zTRY(zDat6_ReadNumber(reader, TvMSG_MAX_ITEMS, &storedSize));
        zTRY(zDat6_CheckCount(reader, storedSize, 1));
        zTRY(Allocate(static_cast<z32u>(storedType), storedSize));
        return zDat6_Read(reader, buffer, size);
    }
};

template <typename Value>
Value Get(zObject msg, Value Generic::*member, const Value& otherwise)
{
    return TvMsg_Member<Generic>(msg, zTypeOf(TvGenericMsg), member, otherwise);
}
} // namespace

zDEFINE_OBJECT_TYPE(TvGenericMsg, TvMsg, &TvMsg_Ops<Generic>);

zStatus TvGenericMsg_Construct(TvGenericMsg* msg, z32u dataType, std::size_t size, zAlloc alloc)
{
    zFAULT_GATE();
    return TvMsg_Make<Generic>(zTypeOf(TvGenericMsg), 1, alloc, msg, [dataType, size](Generic& made) {
        zTRY(made.Allocate(dataType, size));
        if (size > 0)
        {
            std::memset(made.buffer, 0, size);
        }
        return zOK;
    });
}

z32u TvGenericMsg_Type(TvGenericMsg msg)
{
    return Get(msg, &Generic::dataType, z32u{0});
}

std::size_t TvGenericMsg_Size(TvGenericMsg msg)
{
    return Get(msg, &Generic::size, std::size_t{0});
}

void* TvGenericMsg_Buffer(TvGenericMsg msg)
{
    void* const none = nullptr;
    return Get(msg, &Generic::buffer, none);
}

zStatus TvGenericMsg_SetBuffer(TvGenericMsg msg, const void* bytes)
{
    zFAULT_GATE();
    Generic* const generic = zObjectType_Cast<Generic>(msg, zTypeOf(TvGenericMsg));
    if (generic == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (bytes == nullptr && generic->size > 0)
    {
        return zERROR_MISSING;
    }
    generic->Fill(bytes);
    return zOK;
}
