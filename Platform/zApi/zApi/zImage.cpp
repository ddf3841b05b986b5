#include <zApi/zDat6.h>
#include <zApi/zImage.h>
#include <zApi/zItems.h>

#include <cstring>

namespace
{
/// Where the pixels are and how they lie.
struct Layout
{
    zType itemType;
    std::size_t width;
    std::size_t height;
    std::size_t stride;

    [[nodiscard]] std::size_t RowBytes() const
    {
        return width * itemType->size;
    }

    [[nodiscard]] bool IsEmpty() const
    {
        return width == 0 || height == 0;
    }
};

struct Image : zObjectClass
{
    Layout layout;
    unsigned char* pixels;
    bool isForeign;
};

Image* As(zObject image)
{
    return zObjectType_Cast<Image>(image, zTypeOf(zImage));
}

zStatus CheckType(zType itemType)
{
    if (itemType == nullptr)
    {
        return zERROR_MISSING;
    }
    return itemType->isObject ? zERROR_FORMAT : zOK;
}

void FreePixels(Image& image) noexcept
{
    if (!image.isForeign)
    {
        static_cast<void>(zAlloc_Free(image.alloc, image.pixels));
    }
}

zStatus Construct(zObject* out, zType itemType, std::size_t width, std::size_t height, zAlloc alloc)
{
    std::size_t rowBytes = 0;
    std::size_t bytes = 0;
    zTRY(zItems_Bytes(itemType, width, &rowBytes));
    if (__builtin_mul_overflow(rowBytes, height, &bytes))
    {
        return zERROR_PARAMETER;
    }
    Image* image = nullptr;
    zTRY(zObjectType_New(zTypeOf(zImage), alloc, &image));
    image->layout = {itemType, width, height, rowBytes};
    void* memory = nullptr;
    const zStatus status = bytes == 0 ? zOK : zAlloc_Get(alloc, bytes, &memory);
    image->pixels = static_cast<unsigned char*>(memory);
    return zObjectType_Finish(image, status, out);
}

void Release(zObject object) noexcept
{
    FreePixels(*static_cast<Image*>(object));
}

void CopyRows(const Image& source, Image& target)
{
    if (target.pixels == nullptr)
    {
        return;
    }
    const std::size_t rowBytes = source.layout.RowBytes();
    for (std::size_t row = 0; row < source.layout.height; ++row)
    {
        std::memcpy(target.pixels + row * target.layout.stride, source.pixels + row * source.layout.stride, rowBytes);
    }
}

/// The clone owns its pixels and has no gaps between rows.
zStatus Clone(zObject object, zAlloc alloc, zObject* clone)
{
    const auto* const source = static_cast<const Image*>(object);
    const Layout& layout = source->layout;
    zTRY(Construct(clone, layout.itemType, layout.width, layout.height, alloc));
    CopyRows(*source, *static_cast<Image*>(*clone));
    return zOK;
}

/// Writes the pixels without the gaps between rows.
zStatus SavePixels(const Layout& layout, const unsigned char* pixels, zDat6Writer* writer)
{
    if (layout.IsEmpty())
    {
        return zOK;
    }
    if (layout.stride == layout.RowBytes())
    {
        return zDat6_Write(writer, pixels, layout.stride * layout.height);
    }
    for (std::size_t row = 0; row < layout.height; ++row)
    {
        zTRY(zDat6_Write(writer, pixels + row * layout.stride, layout.RowBytes()));
    }
    return zOK;
}

zStatus Save(zObject object, zDat6Writer* writer)
{
    const auto* const image = static_cast<const Image*>(object);
    zTRY(zDat6_WriteType(writer, image->layout.itemType));
    zTRY(zDat6_WriteNumber(writer, image->layout.height));
    zTRY(zDat6_WriteNumber(writer, image->layout.width));
    return SavePixels(image->layout, image->pixels, writer);
}

zStatus Load(zDat6Reader* reader, zType /*type*/, zAlloc alloc, zObject* object)
{
    zType itemType = nullptr;
    z64u height = 0;
    z64u width = 0;
    zTRY(zDat6_ReadType(reader, &itemType));
    zTRY(zDat6_ReadNumber(reader, zDAT6_ANY, &height));
    zTRY(zDat6_ReadNumber(reader, zDAT6_ANY, &width));
    std::size_t rowBytes = 0;
    std::size_t bytes = 0;
    if (itemType->isObject || zItems_Bytes(itemType, width, &rowBytes) != zOK ||
        __builtin_mul_overflow(rowBytes, height, &bytes))
    {
        return zERROR_FORMAT;
    }
    zTRY(zDat6_CheckCount(reader, bytes, 1));
    zObject made = nullptr;
    zTRY(Construct(&made, itemType, width, height, alloc));
    auto* const image = static_cast<Image*>(made);
    return zObjectType_Finish(image, zDat6_Read(reader, image->pixels, bytes), object);
}

constexpr zObjectOps imageOps = {Release, Clone, Save, Load};
} // namespace

zDEFINE_OBJECT_TYPE(zImage, zObject, &imageOps);

zStatus zImage_Construct(zImage* image, zType itemType, std::size_t width, std::size_t height, zAlloc alloc)
{
    zFAULT_GATE();
    if (image == nullptr)
    {
        return zERROR_MISSING;
    }
    zTRY(CheckType(itemType));
    return Construct(image, itemType, width, height, alloc);
}

zStatus zImage_Attach(zImage image, void* pixels, zType itemType, std::size_t width, std::size_t height,
                      std::size_t stride)
{
    zFAULT_GATE();
    Image* const object = As(image);
    if (object == nullptr)
    {
        return zERROR_PARAMETER;
    }
    zTRY(CheckType(itemType));
    const Layout layout{itemType, width, height, stride};
    std::size_t rowBytes = 0;
    std::size_t bytes = 0;
    zTRY(zItems_Bytes(itemType, width, &rowBytes));
    if (stride < rowBytes || __builtin_mul_overflow(stride, height, &bytes))
    {
        return zERROR_PARAMETER;
    }
    if (pixels == nullptr && !layout.IsEmpty())
    {
        return zERROR_MISSING;
    }
    FreePixels(*object);
    object->layout = layout;
    object->pixels = static_cast<unsigned char*>(pixels);
    object->isForeign = true;
    return zOK;
}

std::size_t zImage_Width(zImage image)
{
    const Image* const object = As(image);
    return object == nullptr ? 0 : object->layout.width;
}

std::size_t zImage_Height(zImage image)
{
    const Image* const object = As(image);
    return object == nullptr ? 0 : object->layout.height;
}

std::size_t zImage_Stride(zImage image)
{
    const Image* const object = As(image);
    return object == nullptr ? 0 : object->layout.stride;
}

zType zImage_ItemType(zImage image)
{
    const Image* const object = As(image);
    return object == nullptr ? nullptr : object->layout.itemType;
}

void* zImage_Pixels(zImage image)
{
    return zImage_Row(image, 0);
}

void* zImage_Row(zImage image, std::size_t row)
{
    const Image* const object = As(image);
    if (object == nullptr || object->layout.IsEmpty() || row >= object->layout.height)
    {
        return nullptr;
    }
    return object->pixels + row * object->layout.stride;
}
