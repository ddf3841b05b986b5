#pragma once

#include <Support/Builders.h>
#include <Support/GraphicElements.h>

#include <TaPipe/TpTypes.h>
#include <zApi/zApi.h>
#include <zRelay/zRelay.h>

#include <array>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

// Objects of every type to be saved.

namespace Support
{
using Object = Ta::Object<void*>;

template <typename Item>
Object Array1(zType type, const std::vector<Item>& items)
{
    Object array;
    MU_CHECK(zArray1_Construct(array.Out(), type, items.size(), nullptr));
    std::memcpy(zArray1_Items(array.Get()), items.data(), items.size() * sizeof(Item));
    return array;
}

inline Object Array2(zType type, std::size_t rows, std::size_t columns)
{
    Object array;
    MU_CHECK(zArray2_Construct(array.Out(), type, rows, columns, nullptr));
    MU_CHECK(zArray2_Zero(array.Get()));
    return array;
}

inline Object Text(const char* chars)
{
    Object text;
    MU_CHECK(zString_Construct(text.Out(), chars, nullptr));
    return text;
}

/// A list of the kind that `construct` makes, with shared items.
inline Object ListOf(zStatus (*construct)(zObject*, zType, std::size_t, zAlloc), zStatus (*add)(zObject, const void*),
                     zType type, const std::vector<Object>& items)
{
    Object list;
    MU_CHECK(construct(list.Out(), type, 0, nullptr));
    for (const Object& item : items)
    {
        void* const handle = item.Get();
        MU_CHECK(add(list.Get(), &handle));
    }
    return list;
}

inline Object List(zType type, const std::vector<Object>& items)
{
    return ListOf(zArrayList_Construct, zArrayList_Add, type, items);
}

inline Object Linked(zType type, const std::vector<Object>& items)
{
    return ListOf(zList_Construct, zList_Add, type, items);
}

inline Object Queue(zType type, const std::vector<Object>& items)
{
    return ListOf(zQueue_Construct, zQueue_Add, type, items);
}

inline Object Nested(std::size_t depth)
{
    Object object = Text("innermost");
    for (std::size_t i = 1; i < depth; ++i)
    {
        object = List(zTypeOf(zObject), {object});
    }
    return object;
}

inline Object StampedMeasure()
{
    Object msg;
    MU_CHECK(TvMeasureMsg_Construct(msg.Out(), 3, 7, nullptr));
    const zStamp stamp = {1, 2, 3, -4};
    MU_CHECK(TvMeasureMsg_SetStampAt(msg.Get(), 2, &stamp));
    MU_CHECK(TvDataMsg_SetSpaceType(msg.Get(), -5));
    MU_CHECK(TvMeasureMsg_SetValue(msg.Get(), 1.5));
    MU_CHECK(TvMeasureMsg_SetStatus(msg.Get(), false));
    MU_CHECK(TvMeasureMsg_SetLabelPosition(msg.Get(), 1, 2, 3));
    return msg;
}

inline Object Recording()
{
    Object tree;
    zDataTreeItem root = 0;
    MU_CHECK(zDataTree_Construct(tree.Out(), nullptr));
    MU_CHECK(zDataTree_Add(tree.Get(), 0, "Inputs", &root));
    const Object surface = Surface({{1, -2}, {3, NullPixel}}).Intensity({{9, 8}, {7, 6}}).Offset(0, 1, 5);
    const Object messages = List(zTypeOf(zMsgSet), {surface, Object(), StampedMeasure()});
    MU_CHECK(zDataTree_PutChildData(tree.Get(), root, "0", messages.Get()));
    MU_CHECK(zDataTree_Add(tree.Get(), root, "1", nullptr));
    return tree;
}

inline Object Feature(zStatus (*construct)(zObject*, std::size_t, zAlloc),
                      const std::vector<zStatus (*)(zObject, const zPoint3d64f*)>& setters)
{
    Object msg;
    MU_CHECK(construct(msg.Out(), 2, nullptr));
    zPoint3d64f point = {1, 2, 3};
    for (const auto set : setters)
    {
        MU_CHECK(set(msg.Get(), &point));
        point.x += 10;
    }
    return msg;
}

inline Object Circle()
{
    const Object msg =
        Feature(TvCircleFeatureMsg_Construct, {TvCircleFeatureMsg_SetPosition, TvCircleFeatureMsg_SetNormal});
    MU_CHECK(TvCircleFeatureMsg_SetRadius(msg.Get(), 4.5));
    return msg;
}

inline Object Plane()
{
    const Object msg = Feature(TvPlaneFeatureMsg_Construct, {TvPlaneFeatureMsg_SetNormal});
    MU_CHECK(TvPlaneFeatureMsg_SetOriginDistance(msg.Get(), -8));
    return msg;
}

inline Object ImageOf(TvPixelFormat format, std::size_t pixelSize)
{
    Object msg;
    MU_CHECK(TvImageMsg_Construct(msg.Out(), 3, 2, pixelSize, format, -6, nullptr));
    std::memset(TvImageMsg_Pixels(msg.Get()), 77, 6 * pixelSize);
    return msg;
}

inline Object StampedNull()
{
    Object msg;
    MU_CHECK(TvNullMsg_Construct(msg.Out(), 2, nullptr));
    return msg;
}

inline Object GenericOf(const std::string& bytes)
{
    Object msg;
    MU_CHECK(TvGenericMsg_Construct(msg.Out(), 0xFFFFFFFFU, bytes.size(), nullptr));
    MU_CHECK(TvGenericMsg_SetBuffer(msg.Get(), bytes.data()));
    return msg;
}

inline Object EmptyRendering()
{
    Object msg;
    MU_CHECK(TvRenderingMsg_Construct(msg.Out(), nullptr));
    return msg;
}

/// A list whose places do not follow each other in memory.
inline Object LinkedHeights()
{
    Object list;
    MU_CHECK(zList_Construct(list.Out(), zTypeOf(z16s), 2, nullptr));
    for (const z16s height : {z16s{1}, z16s{-2}, z16s{3}})
    {
        MU_CHECK(zList_Add(list.Get(), &height));
    }
    MU_CHECK(zList_Remove(list.Get(), zList_First(list.Get()), nullptr));
    const z16s last = 4;
    MU_CHECK(zList_Add(list.Get(), &last));
    return list;
}

/// A queue of -2, 3 and 4 whose ring wraps.
inline Object WrappedQueue()
{
    Object queue;
    MU_CHECK(zQueue_Construct(queue.Out(), zTypeOf(z32s), 3, nullptr));
    for (const z32s item : {1, -2, 3})
    {
        MU_CHECK(zQueue_Add(queue.Get(), &item));
    }
    MU_CHECK(zQueue_Remove(queue.Get(), nullptr));
    const z32s last = 4;
    MU_CHECK(zQueue_Add(queue.Get(), &last));
    return queue;
}

inline Object Picture(zType type, std::size_t width, std::size_t height)
{
    Object image;
    MU_CHECK(zImage_Construct(image.Out(), type, width, height, nullptr));
    for (std::size_t row = 0; width > 0 && row < height; ++row)
    {
        std::memset(zImage_Row(image.Get(), row), static_cast<int>(row) + 5, width * type->size);
    }
    return image;
}

/// Two rows of three pixels: 0 1 2 and 4 5 6.
inline Object PictureWithGaps()
{
    static std::array<z8u, 8> pixels = {0, 1, 2, 3, 4, 5, 6, 7};
    const Object image = Picture(zTypeOf(z8u), 0, 0);
    MU_CHECK(zImage_Attach(image.Get(), pixels.data(), zTypeOf(z8u), 3, 2, 4));
    return image;
}

inline Object EmptyGraphic()
{
    Object graphic;
    MU_CHECK(TpGraphic_Construct(graphic.Out(), nullptr));
    return graphic;
}

template <std::size_t INDEX>
Object Element()
{
    Object element;
    MU_CHECK(GRAPHIC_ELEMENTS[INDEX].make(element.Out(), nullptr));
    return element;
}

/// One element of every kind.
inline Object Drawing()
{
    const Object graphic = EmptyGraphic();
    for (const GraphicElement& kind : GRAPHIC_ELEMENTS)
    {
        Object element;
        MU_CHECK(kind.make(element.Out(), nullptr));
        MU_CHECK(kind.add(graphic.Get(), element.Get()));
        static_cast<void>(element.Detach());
    }
    return graphic;
}

inline Object NoPoints()
{
    Object set;
    MU_CHECK(
        TpGraphicPointSet_Construct(set.Out(), std::numeric_limits<z32f>::max(), -1, 0xFFFFFFFFU, nullptr, 0, nullptr));
    return set;
}

inline Object SilentLabel()
{
    Object label;
    MU_CHECK(TpGraphicLabel_Construct(label.Out(), nullptr));
    return label;
}

/// A ray of values that are no numbers, or none that a drawing can use.
inline Object OddRay()
{
    constexpr z32f NOT_A_NUMBER = std::numeric_limits<z32f>::quiet_NaN();
    constexpr z32f INFINITE = std::numeric_limits<z32f>::infinity();
    Object ray;
    MU_CHECK(TpGraphicRay_Construct(ray.Out(), nullptr));
    MU_CHECK(TpGraphicRay_SetPosition(ray.Get(), {NOT_A_NUMBER, INFINITE, -INFINITE}));
    MU_CHECK(TpGraphicRay_SetDirection(ray.Get(), {std::numeric_limits<z32f>::denorm_min(), -0.0F, 0.1F}));
    return ray;
}

inline Object RenderingOf(Object graphic)
{
    const Object msg = EmptyRendering();
    MU_CHECK(TvRenderingMsg_SetRendering(msg.Get(), graphic.Detach()));
    return msg;
}

struct Case
{
    const char* name;
    Object (*make)();
};

/// An object of every type that is saved, and those with an odd content.
inline const std::array CASES = {
    Case{"null", [] { return Object(); }},
    Case{"text", [] { return Text("text"); }},
    Case{"empty_text", [] { return Text(""); }},
    Case{"array1_of_heights",
         [] {
             return Array1<z16s>(zTypeOf(z16s), {1, -2, 3});
         }},
    Case{"array1_of_points",
         [] {
             return Array1<zPoint3d64f>(zTypeOf(zPoint3d64f), {{1, 2, 3}, {4, 5, zNULL_64F}});
         }},
    Case{"array1_of_records",
         [] {
             return Array1<z8u>(zBytes_GetType(1), {5, 6});
         }},
    Case{"array1_of_nulls",
         [] {
             return Array1<zObject>(zTypeOf(zString), {nullptr, nullptr});
         }},
    Case{"array2", [] { return Array2(zTypeOf(zRgb24), 2, 3); }},
    Case{"array2_without_columns", [] { return Array2(zTypeOf(z8u), 5, 0); }},
    Case{"array2_of_large_records", [] { return Array2(zBytes_GetType(zDAT6_MAX_RECORD), 1, 1); }},
    Case{"array_over_a_chunk", [] { return Array2(zTypeOf(z64f), 300, 301); }},
    Case{"list_of_objects",
         [] {
             return List(zTypeOf(zString), {Text("a"), Object(), Text("b")});
         }},
    Case{"empty_list", [] { return List(zTypeOf(zMsgSet), {}); }},
    Case{"linked_numbers", LinkedHeights},
    Case{"linked_objects",
         [] {
             return Linked(zTypeOf(zObject), {Text("a"), Object(), LinkedHeights()});
         }},
    Case{"empty_linked_list", [] { return Linked(zTypeOf(zMsgSet), {}); }},
    Case{"wrapped_queue", WrappedQueue},
    Case{"queue_of_objects",
         [] {
             return Queue(zTypeOf(zString), {Text("a"), Object()});
         }},
    Case{"empty_queue", [] { return Queue(zTypeOf(zString), {}); }},
    Case{"picture", [] { return Picture(zTypeOf(zRgb24), 3, 2); }},
    Case{"picture_with_gaps", PictureWithGaps},
    Case{"picture_without_rows", [] { return Picture(zTypeOf(z16u), 3, 0); }},
    Case{"picture_without_columns", [] { return Picture(zTypeOf(z16u), 0, 1'000'000); }},
    Case{"deepest", [] { return Nested(zSAVE6_MAX_DEPTH); }},
    Case{"recording", Recording},
    Case{"null_message", StampedNull},
    Case{"measure", StampedMeasure},
    Case{"generic", [] { return GenericOf("bytes"); }},
    Case{"empty_generic", [] { return GenericOf(""); }},
    Case{"surface",
         [] {
             return Object(Surface({{1, 2, 3}, {4, 5, NullPixel}}).Scale(0.1, 0.2, 0.3));
         }},
    Case{"point_surface",
         [] {
             return Object(PointSurface({{{1, 2, 3}, {4, 5, 6}}}).Intensity16({{8, 900}}));
         }},
    Case{"profile",
         [] {
             return Object(Profile({1, NullPixel, 3}).Intensity({7, 8, 9}));
         }},
    Case{"point_profile",
         [] {
             return Object(PointProfile({{1, 2}, {3, 4}}));
         }},
    Case{"grey_image", [] { return ImageOf(TvPIXEL_FORMAT_GREY8, 1); }},
    Case{"colour_image", [] { return ImageOf(TvPIXEL_FORMAT_BGRX8, 4); }},
    Case{"image_of_a_format_of_its_own", [] { return ImageOf(1000, 5); }},
    Case{"point", [] { return Feature(TvPointFeatureMsg_Construct, {TvPointFeatureMsg_SetPosition}); }},
    Case{"line",
         [] {
             return Feature(TvLineFeatureMsg_Construct, {TvLineFeatureMsg_SetPosition, TvLineFeatureMsg_SetDirection});
         }},
    Case{"circle", Circle},
    Case{"plane", Plane},
    Case{"empty_rendering", EmptyRendering},
    Case{"rendering", [] { return RenderingOf(Drawing()); }},
    Case{"empty_graphic", EmptyGraphic},
    Case{"graphic", Drawing},
    Case{"point_set", Element<0>},
    Case{"line_set", Element<1>},
    Case{"ray", Element<2>},
    Case{"label", Element<3>},
    Case{"plane_element", Element<4>},
    Case{"region_2d", Element<5>},
    Case{"region_3d", Element<6>},
    Case{"position", Element<7>},
    Case{"point_set_without_points", NoPoints},
    Case{"label_without_text", SilentLabel},
    Case{"odd_ray", OddRay},
};
} // namespace Support
