#include <Support/MessageChecks.h>
#include <Support/TemporaryFolder.h>

#include <TaVision/TaVision.h>
#include <zApi/zApi.h>
#include <zRelay/zRelay.h>

#include <nlohmann/json.hpp>
#include <xxhash.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <sstream>

using namespace Support;

namespace
{
using Object = Ta::Object<void*>;

// What can be asked of an object by its public operations, as text: two objects are equal if this is.

std::string Shown(zObject object);

template <typename Value>
std::string Joined(const std::vector<Value>& values)
{
    std::ostringstream out;
    out.precision(17);
    for (const Value& value : values)
    {
        out << value << ' ';
    }
    return out.str();
}

std::string ItemsShown(zType type, const void* items, std::size_t count)
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

std::string TreeShown(zDataTree tree)
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

std::string StampsShown(zMsgSet msg)
{
    std::string shown;
    for (std::size_t i = 0; i < zMsgSet_Count(msg); ++i)
    {
        shown += Joined(Fields(*zMsgSet_StampAt(msg, i)));
    }
    return shown;
}

std::string SamplesShown(zObject msg)
{
    const bool isProfile = xzCastClass_ObjectIs(msg, zTypeOf(TvProfileMsg));
    return Joined(Fields(TvDataMsg_Offset(msg))) + Joined(Fields(TvDataMsg_Scale(msg))) +
           Joined(std::vector<std::size_t>{TvDataMsg_Width(msg), TvDataMsg_Length(msg)}) +
           Shown(TvDataMsg_RangeArray(msg, 0)) +
           Shown(isProfile ? TvProfileMsg_IntensityArray(msg, 0) : TvSurfaceMsg_IntensityArray(msg, 0)) +
           Joined(std::vector<int>{TvImageMsg_PixelFormat(msg), TvImageMsg_SourceId(msg)});
}

std::string OthersShown(zObject msg)
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

std::string MessageShown(zObject msg)
{
    return StampsShown(msg) + Joined(Fields(TvDataMsg_BoundingBox(msg))) + Joined(Fields(TvDataMsg_Transform(msg))) +
           std::to_string(TvDataMsg_SpaceType(msg)) + SamplesShown(msg) + OthersShown(msg);
}

std::string ContentShown(zObject object)
{
    if (xzCastClass_ObjectIs(object, zTypeOf(TvMsg)))
    {
        return MessageShown(object);
    }
    if (const zType itemType = zArrayList_ItemType(object); itemType != nullptr)
    {
        return ItemsShown(itemType, zArrayList_Items(object), zArrayList_Count(object));
    }
    if (const zType itemType = zArray1_ItemType(object); itemType != nullptr)
    {
        return ItemsShown(itemType, zArray1_Items(object), zArray1_Length(object));
    }
    if (const zType itemType = zArray2_ItemType(object); itemType != nullptr)
    {
        const std::size_t rows = zArray2_Length(object, 0);
        return std::to_string(rows) + "," +
               ItemsShown(itemType, zArray2_Items(object), rows * zArray2_Length(object, 1));
    }
    const char* const chars = zString_Chars(object);
    return chars != nullptr ? std::string(chars) : TreeShown(object);
}

std::string Shown(zObject object)
{
    return object == nullptr ? "null;" : std::string(xzObject_Type(object)->name) + "{" + ContentShown(object) + "}";
}

// Objects to be saved.

template <typename Item>
Object Array1(zType type, const std::vector<Item>& items)
{
    Object array;
    MU_CHECK(zArray1_Construct(array.Out(), type, items.size(), nullptr));
    std::memcpy(zArray1_Items(array.Get()), items.data(), items.size() * sizeof(Item));
    return array;
}

Object Array2(zType type, std::size_t rows, std::size_t columns)
{
    Object array;
    MU_CHECK(zArray2_Construct(array.Out(), type, rows, columns, nullptr));
    MU_CHECK(zArray2_Zero(array.Get()));
    return array;
}

Object Text(const char* chars)
{
    Object text;
    MU_CHECK(zString_Construct(text.Out(), chars, nullptr));
    return text;
}

Object List(zType type, const std::vector<Object>& items)
{
    Object list;
    MU_CHECK(zArrayList_Construct(list.Out(), type, 0, nullptr));
    for (const Object& item : items)
    {
        void* const handle = item.Get();
        MU_CHECK(zArrayList_Add(list.Get(), &handle));
    }
    return list;
}

Object Nested(std::size_t depth)
{
    Object object = Text("innermost");
    for (std::size_t i = 1; i < depth; ++i)
    {
        object = List(zTypeOf(zObject), {object});
    }
    return object;
}

Object StampedMeasure()
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

Object Recording()
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

Object Feature(zStatus (*construct)(zObject*, std::size_t, zAlloc),
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

Object Circle()
{
    const Object msg =
        Feature(TvCircleFeatureMsg_Construct, {TvCircleFeatureMsg_SetPosition, TvCircleFeatureMsg_SetNormal});
    MU_CHECK(TvCircleFeatureMsg_SetRadius(msg.Get(), 4.5));
    return msg;
}

Object Plane()
{
    const Object msg = Feature(TvPlaneFeatureMsg_Construct, {TvPlaneFeatureMsg_SetNormal});
    MU_CHECK(TvPlaneFeatureMsg_SetOriginDistance(msg.Get(), -8));
    return msg;
}

Object ImageOf(TvPixelFormat format, std::size_t pixelSize)
{
    Object msg;
    MU_CHECK(TvImageMsg_Construct(msg.Out(), 3, 2, pixelSize, format, -6, nullptr));
    std::memset(TvImageMsg_Pixels(msg.Get()), 77, 6 * pixelSize);
    return msg;
}

Object StampedNull()
{
    Object msg;
    MU_CHECK(TvNullMsg_Construct(msg.Out(), 2, nullptr));
    return msg;
}

Object GenericOf(const std::string& bytes)
{
    Object msg;
    MU_CHECK(TvGenericMsg_Construct(msg.Out(), 0xFFFFFFFFU, bytes.size(), nullptr));
    MU_CHECK(TvGenericMsg_SetBuffer(msg.Get(), bytes.data()));
    return msg;
}

Object EmptyRendering()
{
    Object msg;
    MU_CHECK(TvRenderingMsg_Construct(msg.Out(), nullptr));
    return msg;
}

struct Case
{
    const char* name;
    Object (*make)();
};

const std::array CASES = {
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
    Case{"rendering", EmptyRendering},
};

/// The bytes that saving writes.
std::string Saved(zObject object)
{
    Object stream;
    MU_CHECK(zMemory_Construct(stream.Out(), nullptr));
    MU_CHECK(zSave6_ToStream(object, stream.Get()));
    return {static_cast<const char*>(zMemory_At(stream.Get(), 0)), zMemory_Length(stream.Get())};
}

zStatus Load(zObject* object, std::string bytes, zAlloc alloc)
{
    MU_CHECK(TaVision_RegisterTypes());
    Object stream;
    MU_CHECK(zMemory_Construct(stream.Out(), nullptr));
    MU_CHECK(zMemory_Attach(stream.Get(), bytes.data(), 0, bytes.size(), bytes.size()));
    return zLoad6_FromStream(object, stream.Get(), alloc);
}

/// Bytes that are not to be loaded give a failing status and leave nothing behind.
void ExpectRefused(const std::string& bytes)
{
    const CountingAlloc alloc;
    zObject object = nullptr;
    EXPECT_NE(Load(&object, bytes, alloc.Get()), zOK);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

class Saved_object : public testing::TestWithParam<Case>
{
protected:
    static void SetUpTestSuite()
    {
        ASSERT_EQ(TaVision_RegisterTypes(), zOK);
    }
};

std::string Number(z64u number)
{
    return {reinterpret_cast<const char*>(&number), sizeof(number)};
}

std::string Name(const std::string& text)
{
    return Number(text.size()) + text;
}

std::string Container(const std::string& content, z64u version = 1)
{
    return std::string("zDat6\r\n\x1A", 8) + Number(version) + content + Number(0);
}
} // namespace

TEST_P(Saved_object, comes_back_from_a_file_as_it_was)
{
    const TemporaryFolder folder;
    const Object object = GetParam().make();
    Object loaded;
    ASSERT_EQ(zSave6(object.Get(), folder.Path("object.zDat6").c_str()), zOK);
    ASSERT_EQ(zLoad6(loaded.Out(), folder.Path("object.zDat6").c_str(), nullptr), zOK);
    EXPECT_EQ(Shown(loaded.Get()), Shown(object.Get()));
    EXPECT_EQ(FileContent(folder.Path("object.zDat6")), Saved(object.Get()));
}

TEST_P(Saved_object, comes_back_from_its_clone_as_it_was)
{
    const Object object = GetParam().make();
    Object loaded;
    ASSERT_EQ(Load(loaded.Out(), Saved(CloneOf(object.Get()).Get()), nullptr), zOK);
    EXPECT_EQ(Shown(CloneOf(loaded.Get()).Get()), Shown(object.Get()));
}

TEST_P(Saved_object, is_refused_when_cut_at_any_byte_or_followed_by_one)
{
    const std::string bytes = Saved(GetParam().make().Get());
    const std::size_t step = bytes.size() < 20'000 ? 1 : bytes.size() / 97;
    for (std::size_t length = 0; length < bytes.size(); length += step)
    {
        SCOPED_TRACE(length);
        ExpectRefused(bytes.substr(0, length));
    }
    ExpectRefused(bytes + '\0');
}

TEST_P(Saved_object, is_refused_when_any_bytes_are_changed)
{
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string bytes = Saved(GetParam().make().Get());
    for (int round = 0; round < 300; ++round)
    {
        std::string changed = bytes;
        const std::size_t place = random() % std::min<std::size_t>(changed.size(), 2000);
        changed[place] = static_cast<char>(changed[place] ^ static_cast<char>(1 + random() % 255));
        ExpectRefused(changed);
    }
}

TEST_P(Saved_object, with_changed_bytes_and_a_right_checksum_is_refused_or_usable)
{
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string bytes = Saved(GetParam().make().Get());
    const std::size_t contentSize = bytes.size() - sizeof(z64u);
    const int rounds = contentSize < 20'000 ? 300 : 3; // large objects take long to be shown
    for (int round = 0; round < rounds; ++round)
    {
        std::string changed = bytes.substr(0, contentSize);
        const std::size_t place = random() % std::min<std::size_t>(contentSize, 1000);
        changed[place] = static_cast<char>(changed[place] ^ static_cast<char>(1U << (random() % 8)));
        changed += Number(XXH64(changed.data(), changed.size(), 0));
        const CountingAlloc alloc;
        zObject object = nullptr;
        if (Load(&object, changed, alloc.Get()) == zOK)
        {
            EXPECT_EQ(Shown(CloneOf(object).Get()), Shown(object));
            EXPECT_EQ(Saved(object), changed);
        }
        static_cast<void>(xzObject_DestroyImpl(object));
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
    }
}

TEST_P(Saved_object, leaves_nothing_behind_when_a_request_or_call_of_loading_fails)
{
    const std::string bytes = Saved(GetParam().make().Get());
    Object stream;
    MU_CHECK(zMemory_Construct(stream.Out(), nullptr));
    MU_CHECK(zStream_Write(stream.Get(), bytes.data(), bytes.size()));
    const auto load = [&stream](zAlloc alloc) {
        zObject object = nullptr;
        zStatus status = zStream_Seek(stream.Get(), 0, zSTREAM_BEGIN);
        status = status == zOK ? zLoad6_FromStream(&object, stream.Get(), alloc) : status;
        static_cast<void>(xzObject_DestroyImpl(object));
        return status;
    };
    WalkAllocations(load);
    const CountingAlloc alloc;
    EXPECT_GT(WalkFaults(-77,
                         [&] {
                             const zStatus status = load(alloc.Get());
                             EXPECT_EQ(alloc.LiveBlocks(), 0U);
                             return status;
                         }),
              4U);
}

INSTANTIATE_TEST_SUITE_P(, Saved_object, testing::ValuesIn(CASES), CaseName());

TEST(Save6, Failing_calls_come_through_and_leave_no_part_of_a_file)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    const Object object = Recording();
    EXPECT_GT(WalkFaults(-77,
                         [&] {
                             const zStatus status = zSave6(object.Get(), path.c_str());
                             EXPECT_EQ(zFile_Exists(path.c_str()), status == zOK);
                             return status;
                         }),
              50U);
}

TEST(Save6, What_is_not_to_be_saved_is_refused_and_leaves_no_file)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    const CountingAlloc unsaved;
    EXPECT_EQ(zSave6(unsaved.Get(), path.c_str()), zERROR_INTERFACE);
    EXPECT_EQ(zSave6(Array2(zBytes_GetType(zDAT6_MAX_RECORD + 1), 1, 1).Get(), path.c_str()), zERROR_INTERFACE);
    EXPECT_EQ(zSave6(List(zTypeOf(zString), {StampedNull()}).Get(), path.c_str()), zERROR_FORMAT);
    EXPECT_EQ(zSave6(Nested(zSAVE6_MAX_DEPTH + 1).Get(), path.c_str()), zERROR_PARAMETER);
    EXPECT_FALSE(zFile_Exists(path.c_str()));
    EXPECT_EQ(zSave6(nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(zSave6(nullptr, folder.Path("missing/object.zDat6").c_str()), zERROR_MISSING);
    EXPECT_EQ(zSave6(nullptr, folder.Path().c_str()), zERROR_IO);
    EXPECT_EQ(zSave6_ToStream(nullptr, unsaved.Get()), zERROR_PARAMETER);
}

TEST(Save6, Items_of_a_type_that_is_not_registered_are_saved_but_not_loaded)
{
    zObject object = nullptr;
    EXPECT_EQ(Load(&object, Saved(List(zTypeOf(zStream), {}).Get()), nullptr), zERROR_INTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST(Save6, A_failing_write_does_not_delete_a_device)
{
    EXPECT_EQ(zSave6(Recording().Get(), "/dev/full"), zERROR_IO);
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
}

TEST(TypeTable, Knows_a_registered_table_once_and_refuses_null)
{
    EXPECT_EQ(TaVision_RegisterTypes(), zOK);
    EXPECT_EQ(TaVision_RegisterTypes(), zOK);
    EXPECT_EQ(zTypeTable_Register(nullptr), zERROR_MISSING);
    EXPECT_EQ(zTypeTable_Find("zArray1"), zTypeOf(zArray1));
    EXPECT_EQ(zTypeTable_Find("zMsgSet"), zTypeOf(zMsgSet));
    EXPECT_EQ(zTypeTable_Find("TvSurfaceMsg"), zTypeOf(TvSurfaceMsg));
    EXPECT_EQ(zTypeTable_Find("TvSurface"), nullptr);
    EXPECT_EQ(zTypeTable_Find(""), nullptr);
}

TEST(Load6, Missing_files_null_handles_and_other_handles_are_refused)
{
    const TemporaryFolder folder;
    Object loaded;
    EXPECT_EQ(zLoad6(loaded.Out(), folder.Path("none.zDat6").c_str(), nullptr), zERROR_MISSING);
    EXPECT_EQ(zLoad6(loaded.Out(), nullptr, nullptr), zERROR_MISSING);
    EXPECT_EQ(zLoad6(nullptr, folder.Path("none.zDat6").c_str(), nullptr), zERROR_MISSING);
    EXPECT_EQ(zLoad6_FromStream(nullptr, Text("").Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(zLoad6_FromStream(loaded.Out(), Text("").Get(), nullptr), zERROR_PARAMETER);
}

TEST(Load6, Each_kind_of_bad_content_has_its_status)
{
    const struct
    {
        const char* name;
        std::string bytes;
        zStatus status;
    } cases[] = {
        {"empty", "", zERROR_END},
        {"other magic", std::string(40, 'x'), zERROR_FORMAT},
        {"other version", Container(Name(""), 2), zERROR_VERSION},
        {"wrong checksum", Container(Name("")), zERROR_FORMAT},
        {"bytes behind the object", Container(Name("") + "x"), zERROR_FORMAT},
        {"unknown type", Container(Name("zNothing")), zERROR_INTERFACE},
        {"abstract type", Container(Name("zObject")), zERROR_INTERFACE},
        {"name too long", Container(Name(std::string(65, 'z'))), zERROR_FORMAT},
        {"text longer than the file", Container(Name("zString") + Number(1'000'000)), zERROR_END},
        {"text with a null character", Container(Name("zString") + Name(std::string(1, '\0'))), zERROR_FORMAT},
        {"array beyond the file", Container(Name("zArray1") + Name("z64f") + Number(8) + Number(1ULL << 60U)),
         zERROR_END},
        {"list beyond the file", Container(Name("zArrayList") + Name("zString") + Number(8) + Number(1ULL << 60U)),
         zERROR_END},
        {"array that overflows",
         Container(Name("zArray2") + Name("z64f") + Number(8) + Number(1ULL << 33U) + Number(1ULL << 33U)),
         zERROR_FORMAT},
        {"item of another size", Container(Name("zArray1") + Name("z64f") + Number(4) + Number(0)), zERROR_INTERFACE},
        {"record too large", Container(Name("zArray1") + Name("zBytes") + Number(4097) + Number(0)), zERROR_INTERFACE},
        {"record of no size", Container(Name("zArray1") + Name("zBytes") + Number(0) + Number(0)), zERROR_INTERFACE},
        {"item of another type",
         Container(Name("zArrayList") + Name("zString") + Number(8) + Number(1) + Name("zArray1") + Name("")),
         zERROR_FORMAT},
        {"root with a parent", Container(Name("zDataTree") + Number(1) + Number(1) + Number(0) + Number(0)),
         zERROR_FORMAT},
        {"item without a name", Container(Name("zDataTree") + Number(1) + Number(0) + Number(0) + Number(0)),
         zERROR_FORMAT},
    };
    for (const auto& [name, bytes, status] : cases)
    {
        SCOPED_TRACE(name);
        const CountingAlloc alloc;
        zObject object = nullptr;
        EXPECT_EQ(Load(&object, bytes, alloc.Get()), status);
        EXPECT_EQ(object, nullptr);
        EXPECT_EQ(alloc.LiveBlocks(), 0U);
        // What the file has not is found out before memory is asked for.
        EXPECT_TRUE(status != zERROR_END || alloc.Requests() == 0) << alloc.Requests();
    }
}

TEST(Load6, Objects_deeper_than_64_are_refused_however_many_there_are)
{
    std::string content;
    for (int i = 0; i < 100'000; ++i)
    {
        content += Name("zArrayList") + Name("zObject") + Number(8) + Number(1);
    }
    zObject object = nullptr;
    EXPECT_EQ(Load(&object, Container(content + Name("")), nullptr), zERROR_FORMAT);
}

namespace
{
std::string OutputOf(const std::string& command)
{
    std::string output;
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    std::array<char, 4096> buffer{};
    for (std::size_t got = 1; pipe != nullptr && got > 0;)
    {
        got = std::fread(buffer.data(), 1, buffer.size(), pipe);
        output.append(buffer.data(), got);
    }
    return pipe != nullptr && ::pclose(pipe) == 0 ? output : "the reader failed";
}

std::string ReadByScript(const std::string& path)
{
    return OutputOf(std::string(PYTHON) + " -B " + DAT6_READER + " " + path);
}
} // namespace

TEST(Dat6, The_reader_in_another_language_gives_what_was_saved)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    ASSERT_EQ(zSave6(Recording().Get(), path.c_str()), zOK);
    const auto read = nlohmann::json::parse(ReadByScript(path), nullptr, false);
    ASSERT_FALSE(read.is_discarded());
    const auto& items = read["items"];
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0], nlohmann::json::parse(R"([0, "Inputs", null])"));
    EXPECT_EQ(items[2], nlohmann::json::parse(R"([1, "1", null])"));
    EXPECT_EQ(items[1][0], 1);
    EXPECT_EQ(items[1][1], "0");
    const auto& list = items[1][2];
    EXPECT_EQ(list["type"], nlohmann::json::parse(R"(["zMsgSet", 8])"));
    ASSERT_EQ(list["items"].size(), 3U);
    const auto& surface = list["items"][0];
    EXPECT_EQ(surface["object"], "TvSurfaceMsg");
    EXPECT_EQ(surface["offset"], nlohmann::json::parse("[0.0, 1.0, 5.0]"));
    EXPECT_EQ(surface["points"]["items"], nlohmann::json::parse("[[1], [-2], [3], [-32768]]"));
    EXPECT_EQ(surface["intensity"]["items"], nlohmann::json::parse("[[9], [8], [7], [6]]"));
    EXPECT_TRUE(list["items"][1].is_null());
    const auto& measure = list["items"][2];
    EXPECT_EQ(measure["stamps"], nlohmann::json::parse("[[0,0,0,0],[0,0,0,0],[1,2,3,-4]]"));
    EXPECT_EQ(measure["space"], -5);
    EXPECT_EQ(measure["value"], 1.5);
    EXPECT_EQ(measure["label"], nlohmann::json::parse("[1.0, 2.0, 3.0]"));
    EXPECT_EQ(measure["passed"], 0);
    EXPECT_EQ(measure["source"], 7);
}

TEST(Dat6, The_reader_in_another_language_takes_every_type)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("object.zDat6");
    for (const Case& testCase : CASES)
    {
        SCOPED_TRACE(testCase.name);
        const Object object = testCase.make();
        ASSERT_EQ(zSave6(object.Get(), path.c_str()), zOK);
        const auto read = nlohmann::json::parse(ReadByScript(path), nullptr, false);
        ASSERT_FALSE(read.is_discarded());
        EXPECT_EQ(read.is_null(), object.Get() == nullptr);
        if (object.Get() != nullptr)
        {
            EXPECT_EQ(read["object"], xzObject_Type(object.Get())->name);
        }
    }
}

TEST(Dat6, The_reader_in_another_language_refuses_a_changed_byte)
{
    const TemporaryFolder folder;
    std::string bytes = Saved(Recording().Get());
    bytes[100] = static_cast<char>(bytes[100] ^ 1);
    const std::string path = folder.Path("object.zDat6");
    ASSERT_EQ(zFile_Save(path.c_str(), bytes.data(), bytes.size()), zOK);
    EXPECT_EQ(OutputOf(std::string(PYTHON) + " -B " + DAT6_READER + " " + path + " 2>&1; true"),
              "The checksum is wrong.\n");
}
