#include <TaVision/TvDataMsgClass.h>
#include <TaVision/TvSurfaceMsg.h>

namespace
{
bool IsPointType(zType itemType)
{
    return itemType == zTypeOf(z16s) || itemType == zTypeOf(zPoint3d16s);
}

struct Surface : TvDataMsgClass
{
    [[nodiscard]] zStatus LoadFrom(zDat6Reader* reader)
    {
        return LoadGrid(reader, TvGRID_ARRAYS, IsPointType);
    }
};

TvDataMsgClass* As(zObject msg)
{
    return zObjectType_Cast<TvDataMsgClass>(msg, zTypeOf(TvSurfaceMsg));
}

zStatus Construct(zObject* msg, zType pointType, std::size_t width, std::size_t length, zAlloc alloc)
{
    return TvMsg_Make<Surface>(zTypeOf(TvSurfaceMsg), 1, alloc, msg, [pointType, width, length](Surface& made) {
        return made.Build(TvGRID_ARRAYS, pointType, length, width);
    });
}
} // namespace

zDEFINE_OBJECT_TYPE(TvSurfaceMsg, TvDataMsg, &TvMsg_Ops<Surface>);

zStatus TvSurfaceMsg_ConstructSimple(TvSurfaceMsg* msg, std::size_t width, std::size_t length, zAlloc alloc)
{
    zFAULT_GATE();
    return Construct(msg, zTypeOf(z16s), width, length, alloc);
}

zStatus TvSurfaceMsg_ConstructUnresampledSimple(TvSurfaceMsg* msg, std::size_t width, std::size_t length, zAlloc alloc)
{
    zFAULT_GATE();
    return Construct(msg, zTypeOf(zPoint3d16s), width, length, alloc);
}

std::size_t TvSurfaceMsg_Width(TvSurfaceMsg msg)
{
    return TvDataMsg_Width(As(msg));
}

std::size_t TvSurfaceMsg_Length(TvSurfaceMsg msg)
{
    return TvDataMsg_Length(As(msg));
}

zPoint3d64f TvSurfaceMsg_Offset(TvSurfaceMsg msg)
{
    return TvDataMsg_Offset(As(msg));
}

zStatus TvSurfaceMsg_SetOffset(TvSurfaceMsg msg, const zPoint3d64f* offset)
{
    zFAULT_GATE();
    return TvMsg_SetMember<TvDataMsgClass>(msg, zTypeOf(TvSurfaceMsg), &TvDataMsgClass::offset, offset);
}

zPoint3d64f TvSurfaceMsg_Scale(TvSurfaceMsg msg)
{
    return TvDataMsg_Scale(As(msg));
}

zStatus TvSurfaceMsg_SetScale(TvSurfaceMsg msg, const zPoint3d64f* scale)
{
    zFAULT_GATE();
    return TvMsg_SetMember<TvDataMsgClass>(msg, zTypeOf(TvSurfaceMsg), &TvDataMsgClass::scale, scale);
}

zRect3d64f TvSurfaceMsg_BoundingBox(TvSurfaceMsg msg)
{
    return TvDataMsg_BoundingBox(As(msg));
}

bool TvSurfaceMsg_IsResampled(TvSurfaceMsg msg)
{
    return TvSurfaceMsg_PointType(msg) == zTypeOf(z16s);
}

zStatus TvSurfaceMsg_SetIsResampled(TvSurfaceMsg msg, bool resampled)
{
    zFAULT_GATE();
    return As(msg) != nullptr && resampled == TvSurfaceMsg_IsResampled(msg) ? zOK : zERROR_PARAMETER;
}

zType TvSurfaceMsg_PointType(TvSurfaceMsg msg)
{
    return TvSamples_Type(As(msg), &TvDataMsgClass::points);
}

void* TvSurfaceMsg_Points(TvSurfaceMsg msg)
{
    return TvSamples_Items(As(msg), &TvDataMsgClass::points);
}

void* TvSurfaceMsg_PointsAt(TvSurfaceMsg msg, std::size_t row, std::size_t column)
{
    return TvSamples_At(As(msg), &TvDataMsgClass::points, row, column);
}

zArray2 TvSurfaceMsg_PointsArray(TvSurfaceMsg msg, std::size_t index)
{
    return TvSamples_Array(As(msg), &TvDataMsgClass::points, index);
}

zStatus TvSurfaceMsg_CopyPointsArray(TvSurfaceMsg msg, zArray2 points)
{
    zFAULT_GATE();
    return TvSamples_CopyPoints(As(msg), points);
}

bool TvSurfaceMsg_HasIntensity(TvSurfaceMsg msg)
{
    return TvSurfaceMsg_IntensityType(msg) != nullptr;
}

zType TvSurfaceMsg_IntensityType(TvSurfaceMsg msg)
{
    return TvSamples_Type(As(msg), &TvDataMsgClass::intensity);
}

zStatus TvSurfaceMsg_AllocateIntensity(TvSurfaceMsg msg, zType itemType)
{
    zFAULT_GATE();
    return TvSamples_AllocateIntensity(As(msg), itemType);
}

void* TvSurfaceMsg_Intensity(TvSurfaceMsg msg)
{
    return TvSamples_Items(As(msg), &TvDataMsgClass::intensity);
}

void* TvSurfaceMsg_IntensityAt(TvSurfaceMsg msg, std::size_t row, std::size_t column)
{
    return TvSamples_At(As(msg), &TvDataMsgClass::intensity, row, column);
}

zArray2 TvSurfaceMsg_IntensityArray(TvSurfaceMsg msg, std::size_t index)
{
    return TvSamples_Array(As(msg), &TvDataMsgClass::intensity, index);
}

zStatus TvSurfaceMsg_CopyIntensityArray(TvSurfaceMsg msg, zArray2 intensities)
{
    zFAULT_GATE();
    return TvSamples_CopyIntensity(As(msg), intensities);
}
