#pragma once

#include <Support/GraphicElements.h>
#include <Support/MessageChecks.h>

#include <zApi/zApi.h>
#include <zRelay/zRelay.h>

#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace Support
{
// What can be asked of an object by its public operations, as text: two objects are equal if this is.

std::string Shown(zObject object);

template <typename Value>
inline std::string Joined(const std::vector<Value>& values)
{
    std::ostringstream out;
    out.precision(17);
    for (const Value& value : values)
    {
        out << value << ' ';
    }
    return out.str();
}

inline std::string ItemsShown(zType type, const void* items, std::size_t count)
{
    std::string shown = std::string(type->name) + "/" + std::to_string(type->size) + "x" + std::to_string(count) + ":";
    const auto* const bytes = static_cast<const unsigned char*>(items);
    for (std::size_t i = 0; i < count; ++i)
    {
        const unsigned char* const item = bytes + i * type->size;
        shown += type->isObject ? Shown(*reinterpret_cast<const zObject*>(item))
                                : Joined(std::vector<int>(item, item + type->size));
    }
    return shown;
}

inline std::string TreeShown(zDataTree tree)
{
    std::string shown;
    const std::function<void(zDataTreeItem)> show = [&](zDataTreeItem item) {
        shown += std::string(zDataTree_Name(tree, item)) + "=" + Shown(zDataTree_Data(tree, item)) + "(";
        for (std::size_t i = 0; i < zDataTree_ChildCount(tree, item); ++i)
        {
            show(zDataTree_ChildAt(tree, item, i));
        }
        shown += ")";
    };
    if (zDataTree_Root(tree) != 0)
    {
        show(zDataTree_Root(tree));
    }
    return shown;
}

inline std::string StampsShown(zMsgSet msg)
{
    std::string shown;
    for (std::size_t i = 0; i < zMsgSet_Count(msg); ++i)
    {
        shown += Joined(Fields(*zMsgSet_StampAt(msg, i)));
    }
    return shown;
}

inline std::string SamplesShown(zObject msg)
{
    const bool isProfile = xzCastClass_ObjectIs(msg, zTypeOf(TvProfileMsg));
    return Joined(Fields(TvDataMsg_Offset(msg))) + Joined(Fields(TvDataMsg_Scale(msg))) +
           Joined(std::vector<std::size_t>{TvDataMsg_Width(msg), TvDataMsg_Length(msg)}) +
           Shown(TvDataMsg_RangeArray(msg, 0)) +
           Shown(isProfile ? TvProfileMsg_IntensityArray(msg, 0) : TvSurfaceMsg_IntensityArray(msg, 0)) +
           Joined(std::vector<int>{TvImageMsg_PixelFormat(msg), TvImageMsg_SourceId(msg)});
}

inline std::string OthersShown(zObject msg)
{
    return Joined(std::vector<double>{TvMeasureMsg_Value(msg), static_cast<double>(TvMeasureMsg_Status(msg)),
                                      static_cast<double>(TvMeasureMsg_SourceId(msg)), TvCircleFeatureMsg_Radius(msg),
                                      TvPlaneFeatureMsg_OriginDistance(msg)}) +
           Joined(Fields(TvMeasureMsg_LabelPosition(msg))) + Joined(Fields(TvPointFeatureMsg_Position(msg))) +
           Joined(Fields(TvLineFeatureMsg_Position(msg))) + Joined(Fields(TvLineFeatureMsg_Direction(msg))) +
           Joined(Fields(TvCircleFeatureMsg_Position(msg))) + Joined(Fields(TvCircleFeatureMsg_Normal(msg))) +
           Joined(Fields(TvPlaneFeatureMsg_Normal(msg))) + std::to_string(TvGenericMsg_Type(msg)) +
           ItemsShown(zTypeOf(z8u), TvGenericMsg_Buffer(msg), TvGenericMsg_Size(msg)) +
           Shown(TvRenderingMsg_Rendering(msg));
}

inline std::string MessageShown(zObject msg)
{
    return StampsShown(msg) + Joined(Fields(TvDataMsg_BoundingBox(msg))) + Joined(Fields(TvDataMsg_Transform(msg))) +
           std::to_string(TvDataMsg_SpaceType(msg)) + SamplesShown(msg) + OthersShown(msg);
}

inline std::string LinkedListShown(zList list)
{
    std::string shown;
    for (zListItem place = zList_First(list); place != nullptr; place = zList_Next(list, place))
    {
        shown += ItemsShown(zList_ItemType(list), zList_At(list, place), 1);
    }
    return zList_ItemType(list)->name + std::to_string(zList_Count(list)) + shown;
}

/// A queue shows its items only by giving them up: a copy does.
inline std::string QueueShown(zQueue queue)
{
    const zType itemType = zQueue_ItemType(queue);
    std::string shown = itemType->name + std::to_string(zQueue_Count(queue));
    const Ta::Object<void*> copy = CloneOf(queue);
    std::vector<std::uintptr_t> item(itemType->size / sizeof(std::uintptr_t) + 1);
    while (zQueue_Count(copy.Get()) > 0)
    {
        MU_CHECK(zQueue_Remove(copy.Get(), item.data()));
        shown += ItemsShown(itemType, item.data(), 1);
        const Ta::Object<void*> removed(itemType->isObject ? reinterpret_cast<zObject>(item[0]) : nullptr);
    }
    return shown;
}

inline std::string ImageShown(zImage image)
{
    const std::size_t width = zImage_Width(image);
    const std::size_t height = zImage_Height(image);
    std::string shown = std::to_string(height) + "x" + std::to_string(width) + zImage_ItemType(image)->name;
    for (std::size_t row = 0; width > 0 && row < height; ++row)
    {
        shown += ItemsShown(zImage_ItemType(image), zImage_Row(image, row), width);
    }
    return shown;
}

inline std::string GraphicShown(TpGraphic graphic)
{
    std::string shown;
    for (std::size_t i = 0; i < TpGraphic_Count(graphic); ++i)
    {
        shown += TextOf(TpGraphic_At(graphic, i)) + ";";
    }
    return shown;
}

inline std::string ArrayShown(zObject array)
{
    if (const zType itemType = zArray1_ItemType(array); itemType != nullptr)
    {
        return ItemsShown(itemType, zArray1_Items(array), zArray1_Length(array));
    }
    const std::size_t rows = zArray2_Length(array, 0);
    return std::to_string(rows) + "," +
           ItemsShown(zArray2_ItemType(array), zArray2_Items(array), rows * zArray2_Length(array, 1));
}

inline std::string ArrayListShown(zArrayList list)
{
    return ItemsShown(zArrayList_ItemType(list), zArrayList_Items(list), zArrayList_Count(list));
}

inline std::string TextShown(zString text)
{
    return zString_Chars(text);
}

inline std::string ContentShown(zObject object)
{
    const struct
    {
        zType type;
        std::string (*shown)(zObject object);
    } readers[] = {
        {zTypeOf(TvMsg), MessageShown},        {zTypeOf(TpGraphic), GraphicShown}, {zTypeOf(TpGraphicElement), TextOf},
        {zTypeOf(zDataTree), TreeShown},       {zTypeOf(zArray1), ArrayShown},     {zTypeOf(zArray2), ArrayShown},
        {zTypeOf(zArrayList), ArrayListShown}, {zTypeOf(zList), LinkedListShown},  {zTypeOf(zQueue), QueueShown},
        {zTypeOf(zImage), ImageShown},         {zTypeOf(zString), TextShown},
    };
    for (const auto& [type, reader] : readers)
    {
        if (xzCastClass_ObjectIs(object, type))
        {
            return reader(object);
        }
    }
    ADD_FAILURE() << xzObject_Type(object)->name << " has no reader";
    return {};
}

inline std::string Shown(zObject object)
{
    return object == nullptr ? "null;" : std::string(xzObject_Type(object)->name) + "{" + ContentShown(object) + "}";
}
} // namespace Support
