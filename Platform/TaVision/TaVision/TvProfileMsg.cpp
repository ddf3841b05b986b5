#include <TaVision/TvDataMsgClass.h>
#include <TaVision/TvProfileMsg.h>

namespace
{
zStatus ConstructRow(zObject* array, zType itemType, std::size_t /*length*/, std::size_t width, zAlloc alloc)
{
    return zArray1_Construct(array, itemType, width, alloc);
}

std::size_t OneRow(zObject /*array*/)
{
    return 1;
}

constinit const TvArrayKind profileArrays = {zTypeOf(zArray1), ConstructRow,     OneRow,
                                             zArray1_Length,   zArray1_ItemType, zArray1_Items};

TvDataMsgClass* As(zObject msg)
{
    return zObjectType_Cast<TvDataMsgClass>(msg, zTypeOf(TvProfileMsg));
}

bool IsPointType(zType itemType)
{
    return itemType == zTypeOf(z16s) || itemType == zTypeOf(zPoint16s);
}

struct Profile : TvDataMsgClass
{
    [[nodiscard]] zStatus LoadFrom(zDat6Reader* reader)
    {
        return LoadGrid(reader, profileArrays, IsPointType);
    }
};
} // namespace

zDEFINE_OBJECT_TYPE(TvProfileMsg, TvDataMsg, &TvMsg_Ops<Profile>);

zStatus TvProfileMsg_Construct(TvProfileMsg* msg, zType itemType, std::size_t profileCount, std::size_t pointCount,
                               zAlloc alloc)
{
    zFAULT_GATE();
    if (msg == nullptr || itemType == nullptr)
    {
        return zERROR_MISSING;
    }
    if (!IsPointType(itemType))
    {
        return zERROR_FORMAT;
    }
    if (profileCount != 1)
    {
        return zERROR_PARAMETER;
    }
    return TvMsg_Make<Profile>(zTypeOf(TvProfileMsg), 1, alloc, msg, [itemType, pointCount](Profile& made) {
        return made.Build(profileArrays, itemType, 1, pointCount);
    });
}

std::size_t TvProfileMsg_PointCount(TvProfileMsg msg)
{
    return TvDataMsg_Width(As(msg));
}

zPoint3d64f TvProfileMsg_Offset(TvProfileMsg msg)
{
    return TvDataMsg_Offset(As(msg));
}

zStatus TvProfileMsg_SetOffset(TvProfileMsg msg, const zPoint3d64f* offset)
{
    zFAULT_GATE();
    return TvMsg_SetMember<TvDataMsgClass>(msg, zTypeOf(TvProfileMsg), &TvDataMsgClass::offset, offset);
}

zPoint3d64f TvProfileMsg_Scale(TvProfileMsg msg)
{
    return TvDataMsg_Scale(As(msg));
}

zStatus TvProfileMsg_SetScale(TvProfileMsg msg, const zPoint3d64f* scale)
{
    zFAULT_GATE();
    return TvMsg_SetMember<TvDataMsgClass>(msg, zTypeOf(TvProfileMsg), &TvDataMsgClass::scale, scale);
}

zRect3d64f TvProfileMsg_BoundingBoxAt(TvProfileMsg msg, std::size_t index)
{
    return index == 0 ? TvDataMsg_BoundingBox(As(msg)) : TvUNKNOWN_BOX;
}

zStatus TvProfileMsg_SetBoundingBox(TvProfileMsg msg, const zRect3d64f* box)
{
    zFAULT_GATE();
    return TvDataMsg_SetBoundingBox(As(msg), box);
}

zType TvProfileMsg_PointType(TvProfileMsg msg)
{
    return TvSamples_Type(As(msg), &TvDataMsgClass::points);
}

void* TvProfileMsg_Points(TvProfileMsg msg)
{
    return TvSamples_Items(As(msg), &TvDataMsgClass::points);
}

zArray1 TvProfileMsg_PointsArray(TvProfileMsg msg, std::size_t index)
{
    return TvSamples_Array(As(msg), &TvDataMsgClass::points, index);
}

zStatus TvProfileMsg_CopyPointsArray(TvProfileMsg msg, zArray1 points)
{
    zFAULT_GATE();
    return TvSamples_CopyPoints(As(msg), points);
}

bool TvProfileMsg_HasIntensity(TvProfileMsg msg)
{
    return TvProfileMsg_IntensityType(msg) != nullptr;
}

zType TvProfileMsg_IntensityType(TvProfileMsg msg)
{
    return TvSamples_Type(As(msg), &TvDataMsgClass::intensity);
}

zStatus TvProfileMsg_AllocateIntensity(TvProfileMsg msg, zType itemType)
{
    zFAULT_GATE();
    return TvSamples_AllocateIntensity(As(msg), itemType);
}

void* TvProfileMsg_Intensity(TvProfileMsg msg)
{
    return TvSamples_Items(As(msg), &TvDataMsgClass::intensity);
}

zArray1 TvProfileMsg_IntensityArray(TvProfileMsg msg, std::size_t index)
{
    return TvSamples_Array(As(msg), &TvDataMsgClass::intensity, index);
}

zStatus TvProfileMsg_CopyIntensityArray(TvProfileMsg msg, zArray1 intensities)
{
    zFAULT_GATE();
    return TvSamples_CopyIntensity(As(msg), intensities);
}
