#include <TaVision/TvDataMsg.h>
#include <TaVision/TvDataMsgClass.h>

#include <zApi/zArray2.h>

#include <algorithm>
#include <cstring>

zDEFINE_OBJECT_TYPE(TvDataMsg, TvMsg, nullptr);

namespace
{
constexpr zPoint3d64f NO_OFFSET = {0, 0, 0};
constexpr zPoint3d64f NO_SCALE = {1, 1, 1};

std::size_t Rows(zObject array)
{
    return zArray2_Length(array, 0);
}

std::size_t Columns(zObject array)
{
    return zArray2_Length(array, 1);
}

/// Takes over the reference of `array`.
void Put(const TvArrayKind& kind, TvSamples& samples, zObject array)
{
    zObjectType_Put(&samples.array, array);
    samples.itemType = kind.itemType(array);
    samples.items = static_cast<unsigned char*>(kind.items(array));
}

std::size_t Bytes(const TvDataMsgClass& msg, const TvSamples& samples)
{
    return msg.length * msg.width * samples.itemType->size;
}

zStatus Clone(const TvArrayKind& kind, TvSamples& target, const TvSamples& source, zAlloc alloc)
{
    if (source.array == nullptr)
    {
        return zOK;
    }
    zObject copy = nullptr;
    zTRY(xzObject_CloneImpl(&copy, source.array, alloc));
    Put(kind, target, copy);
    return zOK;
}

/// The item type of `array` if it is of the message's kind, else null.
zType ItemTypeOf(const TvDataMsgClass& msg, zObject array)
{
    return xzCastClass_ObjectIs(array, msg.kind->type) ? msg.kind->itemType(array) : nullptr;
}

bool HasSizeOf(const TvDataMsgClass& msg, zObject array)
{
    return msg.kind->length(array) == msg.length && msg.kind->width(array) == msg.width;
}

/// Copies from an array of the right type and size.
void CopyItems(const TvDataMsgClass& msg, const TvSamples& samples, zObject from)
{
    if (from != samples.array && samples.items != nullptr)
    {
        std::memcpy(samples.items, msg.kind->items(from), Bytes(msg, samples));
    }
}

TvDataMsgClass* As(zObject msg)
{
    return zObjectType_Cast<TvDataMsgClass>(msg, zTypeOf(TvDataMsg));
}

bool IsIntensityType(zType itemType)
{
    return itemType == zTypeOf(z8u) || itemType == zTypeOf(z16u);
}

bool IsTaken(std::size_t length, std::size_t width)
{
    return length <= TvMSG_MAX_ITEMS && width <= TvMSG_MAX_ITEMS && length * width <= TvMSG_MAX_ITEMS;
}

zStatus LoadSamples(zDat6Reader* reader, const TvArrayKind& kind, TvSamples& samples, zAlloc alloc)
{
    zObject array = nullptr;
    zTRY(zDat6_ReadObject(reader, kind.type, alloc, &array));
    if (array != nullptr)
    {
        Put(kind, samples, array);
    }
    return zOK;
}
} // namespace

constinit const TvArrayKind TvGRID_ARRAYS = {zTypeOf(zArray2), zArray2_Construct, Rows,
                                             Columns,          zArray2_ItemType,  zArray2_Items};

void TvDataMsgClass::ReleaseParts() noexcept
{
    zObjectType_Put(&points.array, nullptr);
    zObjectType_Put(&intensity.array, nullptr);
}

zStatus TvDataMsgClass::CopyFrom(const TvDataMsgClass& source)
{
    zTRY(TvMsgClass::CopyFrom(source));
    width = source.width;
    length = source.length;
    offset = source.offset;
    scale = source.scale;
    kind = source.kind;
    zTRY(Clone(*kind, points, source.points, alloc));
    return Clone(*kind, intensity, source.intensity, alloc);
}

zStatus TvDataMsgClass::SaveTo(zDat6Writer* writer) const
{
    zTRY(TvMsgClass::SaveTo(writer));
    zTRY(zDat6_WriteReals(writer, offset));
    zTRY(zDat6_WriteReals(writer, scale));
    zTRY(zDat6_WriteObject(writer, points.array));
    return zDat6_WriteObject(writer, intensity.array);
}

zStatus TvDataMsgClass::LoadGrid(zDat6Reader* reader, const TvArrayKind& arrayKind, bool (*isPointType)(zType))
{
    kind = &arrayKind;
    zTRY(TvMsgClass::LoadFrom(reader));
    zTRY(zDat6_ReadReals(reader, &offset));
    zTRY(zDat6_ReadReals(reader, &scale));
    zTRY(LoadSamples(reader, *kind, points, alloc));
    zTRY(LoadSamples(reader, *kind, intensity, alloc));
    if (points.array == nullptr || !isPointType(points.itemType))
    {
        return zERROR_FORMAT;
    }
    length = kind->length(points.array);
    width = kind->width(points.array);
    const bool isInStep =
        intensity.array == nullptr || (IsIntensityType(intensity.itemType) && HasSizeOf(*this, intensity.array));
    return isInStep && IsTaken(length, width) ? zOK : zERROR_FORMAT;
}

zStatus TvDataMsgClass::BuildGrid(const TvArrayKind& arrayKind, zType itemType, std::size_t newLength,
                                  std::size_t newWidth)
{
    if (!IsTaken(newLength, newWidth))
    {
        return zERROR_PARAMETER;
    }
    zObject array = nullptr;
    zTRY(arrayKind.construct(&array, itemType, newLength, newWidth, alloc));
    kind = &arrayKind;
    length = newLength;
    width = newWidth;
    Put(arrayKind, points, array);
    return zOK;
}

zStatus TvDataMsgClass::Build(const TvArrayKind& arrayKind, zType pointType, std::size_t newLength,
                              std::size_t newWidth)
{
    zTRY(BuildGrid(arrayKind, pointType, newLength, newWidth));
    if (points.items != nullptr)
    {
        std::fill_n(reinterpret_cast<z16s*>(points.items), Bytes(*this, points) / sizeof(z16s), zNULL_16S);
    }
    return zOK;
}

void* TvSamples_At(const TvDataMsgClass* msg, TvWhichSamples which, std::size_t row, std::size_t column)
{
    if (msg == nullptr || (msg->*which).items == nullptr || row >= msg->length || column >= msg->width)
    {
        return nullptr;
    }
    const TvSamples& samples = msg->*which;
    return samples.items + (row * msg->width + column) * samples.itemType->size;
}

void* TvSamples_Items(const TvDataMsgClass* msg, TvWhichSamples which)
{
    return msg == nullptr ? nullptr : (msg->*which).items;
}

zObject TvSamples_Array(const TvDataMsgClass* msg, TvWhichSamples which, std::size_t index)
{
    return msg == nullptr || index != 0 ? nullptr : (msg->*which).array;
}

zType TvSamples_Type(const TvDataMsgClass* msg, TvWhichSamples which)
{
    return msg == nullptr ? nullptr : (msg->*which).itemType;
}

zStatus TvSamples_CopyPoints(TvDataMsgClass* msg, zObject from)
{
    if (msg == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (from == nullptr)
    {
        return zERROR_MISSING;
    }
    const zType itemType = ItemTypeOf(*msg, from);
    if (itemType == nullptr || itemType != msg->points.itemType)
    {
        return zERROR_FORMAT;
    }
    if (!HasSizeOf(*msg, from))
    {
        return zERROR_PARAMETER;
    }
    CopyItems(*msg, msg->points, from);
    return zOK;
}

zStatus TvSamples_CopyIntensity(TvDataMsgClass* msg, zObject from)
{
    if (msg == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (from == nullptr)
    {
        return zERROR_MISSING;
    }
    const zType itemType = ItemTypeOf(*msg, from);
    const bool isNew = msg->intensity.array == nullptr;
    if (isNew ? !IsIntensityType(itemType) : itemType != msg->intensity.itemType)
    {
        return zERROR_FORMAT;
    }
    if (!HasSizeOf(*msg, from))
    {
        return zERROR_PARAMETER;
    }
    if (isNew)
    {
        zTRY(TvSamples_AllocateIntensity(msg, itemType));
    }
    CopyItems(*msg, msg->intensity, from);
    return zOK;
}

zStatus TvSamples_AllocateIntensity(TvDataMsgClass* msg, zType itemType)
{
    if (msg == nullptr)
    {
        return zERROR_PARAMETER;
    }
    if (itemType == nullptr)
    {
        return zERROR_MISSING;
    }
    if (!IsIntensityType(itemType))
    {
        return zERROR_FORMAT;
    }
    zObject array = nullptr;
    zTRY(msg->kind->construct(&array, itemType, msg->length, msg->width, msg->alloc));
    Put(*msg->kind, msg->intensity, array);
    if (msg->intensity.items != nullptr)
    {
        std::memset(msg->intensity.items, 0, Bytes(*msg, msg->intensity));
    }
    return zOK;
}

bool TvDataMsg_HasBoundingBox(TvMsg msg)
{
    return TvDataMsg_BoundingBox(msg).x != zNULL_64F;
}

zRect3d64f TvDataMsg_BoundingBox(TvMsg msg)
{
    return TvMsg_Member<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::boundingBox, TvUNKNOWN_BOX);
}

zStatus TvDataMsg_SetBoundingBox(TvMsg msg, const zRect3d64f* box)
{
    zFAULT_GATE();
    const zRect3d64f* const known = box != nullptr && box->x == zNULL_64F ? &TvUNKNOWN_BOX : box;
    return TvMsg_SetMember<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::boundingBox, known);
}

TvFoRTransform TvDataMsg_Transform(TvMsg msg)
{
    return TvMsg_Member<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::transform, TvFOR_TRANSFORM_IDENTITY);
}

zStatus TvDataMsg_SetTransform(TvMsg msg, const TvFoRTransform* transform)
{
    zFAULT_GATE();
    return TvMsg_SetMember<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::transform, transform);
}

zStamp TvDataMsg_Stamp(TvMsg msg)
{
    return TvMsg_Member<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::first, zStamp{});
}

zStatus TvDataMsg_SetStamp(TvMsg msg, const zStamp* stamp)
{
    zFAULT_GATE();
    return TvMsg_SetMember<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::first, stamp);
}

z64u TvDataMsg_Time(TvMsg msg)
{
    return TvDataMsg_Stamp(msg).time;
}

zStatus TvDataMsg_SetTime(TvMsg msg, z64u time)
{
    zFAULT_GATE();
    zStamp stamp = TvDataMsg_Stamp(msg);
    stamp.time = time;
    return TvMsg_SetMember<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::first, &stamp);
}

z64s TvDataMsg_Encoder(TvMsg msg)
{
    return TvDataMsg_Stamp(msg).encoder;
}

zStatus TvDataMsg_SetEncoder(TvMsg msg, z64s encoder)
{
    zFAULT_GATE();
    zStamp stamp = TvDataMsg_Stamp(msg);
    stamp.encoder = encoder;
    return TvMsg_SetMember<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::first, &stamp);
}

TvSpaceType TvDataMsg_SpaceType(TvMsg msg)
{
    return TvMsg_Member<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::spaceType, TvSpaceType{0});
}

zStatus TvDataMsg_SetSpaceType(TvMsg msg, TvSpaceType spaceType)
{
    zFAULT_GATE();
    return TvMsg_SetMember<TvMsgClass>(msg, zTypeOf(TvMsg), &TvMsgClass::spaceType, &spaceType);
}

std::size_t TvDataMsg_Width(TvDataMsg msg)
{
    return TvMsg_Member<TvDataMsgClass>(msg, zTypeOf(TvDataMsg), &TvDataMsgClass::width, std::size_t{0});
}

std::size_t TvDataMsg_Length(TvDataMsg msg)
{
    return TvMsg_Member<TvDataMsgClass>(msg, zTypeOf(TvDataMsg), &TvDataMsgClass::length, std::size_t{0});
}

zPoint3d64f TvDataMsg_Offset(TvDataMsg msg)
{
    return TvMsg_Member<TvDataMsgClass>(msg, zTypeOf(TvDataMsg), &TvDataMsgClass::offset, NO_OFFSET);
}

zPoint3d64f TvDataMsg_Scale(TvDataMsg msg)
{
    return TvMsg_Member<TvDataMsgClass>(msg, zTypeOf(TvDataMsg), &TvDataMsgClass::scale, NO_SCALE);
}

void* TvDataMsg_Ranges(TvDataMsg msg, std::size_t row, std::size_t column)
{
    return TvSamples_At(As(msg), &TvDataMsgClass::points, row, column);
}

zObject TvDataMsg_RangeArray(TvDataMsg msg, std::size_t index)
{
    return TvSamples_Array(As(msg), &TvDataMsgClass::points, index);
}
