#include <TaVision/TvDataMsgClass.h>
#include <TaVision/TvImageMsg.h>

#include <cstring>

namespace
{
zType PixelType(TvPixelFormat format, std::size_t pixelSize)
{
    switch (format)
    {
    case TvPIXEL_FORMAT_GREY8:
    case TvPIXEL_FORMAT_MOSAIC8:
    case TvPIXEL_FORMAT_MASK8:
        return zTypeOf(z8u);
    case TvPIXEL_FORMAT_BGRX8:
        return zTypeOf(zRgb);
    case TvPIXEL_FORMAT_GREY16:
        return zTypeOf(z16u);
    case TvPIXEL_FORMAT_BGR8_PACKED:
        return zTypeOf(zRgb24);
    default:
        return zBytes_GetType(pixelSize);
    }
}

// Who copies an image trusts the size of its pixels to be that of the format.
bool IsSizeOf(TvPixelFormat format, std::size_t pixelSize)
{
    const std::size_t known = TvPixelFormat_BufferSize(format, 1, 1, 1);
    return pixelSize > 0 && pixelSize <= TvIMAGE_MAX_PIXEL_SIZE && (known == 0 || known == pixelSize);
}

bool IsTooLarge(std::size_t width, std::size_t height, std::size_t pixelSize)
{
    return width > TvMSG_MAX_ITEMS || height > TvMSG_MAX_ITEMS || width * height > TvMSG_MAX_ITEMS / pixelSize;
}

struct Image : TvDataMsgClass
{
    TvPixelFormat format = 0;
    z32s sourceId = 0;

    [[nodiscard]] zStatus CopyFrom(const Image& source)
    {
        format = source.format;
        sourceId = source.sourceId;
        return TvDataMsgClass::CopyFrom(source);
    }

    [[nodiscard]] zStatus SaveTo(zDat6Writer* writer) const
    {
        zTRY(zDat6_WriteSigned(writer, format));
        zTRY(zDat6_WriteSigned(writer, sourceId));
        return TvDataMsgClass::SaveTo(writer);
    }

    [[nodiscard]] zStatus LoadFrom(zDat6Reader* reader)
    {
        zTRY(zDat6_ReadSigned(reader, &format));
        zTRY(zDat6_ReadSigned(reader, &sourceId));
        zTRY(LoadGrid(reader, TvGRID_ARRAYS, [](zType itemType) { return !itemType->isObject; }));
        const std::size_t pixelSize = points.itemType->size;
        const bool isOfFormat = IsSizeOf(format, pixelSize) && points.itemType == PixelType(format, pixelSize);
        const bool isImage = isOfFormat && intensity.array == nullptr && !IsTooLarge(width, length, pixelSize);
        return isImage ? zOK : zERROR_FORMAT;
    }
};

Image* As(zObject msg)
{
    return zObjectType_Cast<Image>(msg, zTypeOf(TvImageMsg));
}
} // namespace

zDEFINE_OBJECT_TYPE(TvImageMsg, TvDataMsg, &TvMsg_Ops<Image>);

zStatus TvImageMsg_Construct(TvImageMsg* msg, std::size_t width, std::size_t height, std::size_t pixelSize,
                             TvPixelFormat format, z32s sourceId, zAlloc alloc)
{
    zFAULT_GATE();
    if (msg == nullptr)
    {
        return zERROR_MISSING;
    }
    if (!IsSizeOf(format, pixelSize) || IsTooLarge(width, height, pixelSize))
    {
        return zERROR_PARAMETER;
    }
    const auto build = [=](Image& made) {
        made.format = format;
        made.sourceId = sourceId;
        zTRY(made.BuildGrid(TvGRID_ARRAYS, PixelType(format, pixelSize), height, width));
        if (made.points.items != nullptr)
        {
            std::memset(made.points.items, 0, width * height * pixelSize);
        }
        return zOK;
    };
    return TvMsg_Make<Image>(zTypeOf(TvImageMsg), 1, alloc, msg, build);
}

std::size_t TvImageMsg_Width(TvImageMsg msg)
{
    return TvDataMsg_Width(As(msg));
}

std::size_t TvImageMsg_Height(TvImageMsg msg)
{
    return TvDataMsg_Length(As(msg));
}

TvPixelFormat TvImageMsg_PixelFormat(TvImageMsg msg)
{
    return TvMsg_Member<Image>(msg, zTypeOf(TvImageMsg), &Image::format, TvPixelFormat{0});
}

std::size_t TvImageMsg_PixelSize(TvImageMsg msg)
{
    const zType pixelType = TvSamples_Type(As(msg), &TvDataMsgClass::points);
    return pixelType == nullptr ? 0 : pixelType->size;
}

z32s TvImageMsg_SourceId(TvImageMsg msg)
{
    return TvMsg_Member<Image>(msg, zTypeOf(TvImageMsg), &Image::sourceId, z32s{0});
}

void* TvImageMsg_Pixels(TvImageMsg msg)
{
    return TvSamples_Items(As(msg), &TvDataMsgClass::points);
}
