#include <Support/ContainerBytes.h>
#include <Support/ObjectText.h>
#include <Support/SavedObjects.h>
#include <Support/TemporaryFolder.h>

#include <filesystem>
#include <set>

using namespace Support;

namespace
{
const std::array VALUE_TYPES = {zTypeOf(z8u),       zTypeOf(z16u),      zTypeOf(z16s),        zTypeOf(z32s),
                                zTypeOf(z32u),      zTypeOf(z64s),      zTypeOf(z32f),        zTypeOf(z64f),
                                zTypeOf(zPoint16s), zTypeOf(zPoint32f), zTypeOf(zPoint3d16s), zTypeOf(zPoint3d32f),
                                zTypeOf(zPoint64f), zTypeOf(zRgb),      zTypeOf(zPoint3d64f), zTypeOf(zRgb24)};

/// Objects are of types that derive from these.
const std::array ABSTRACT_TYPES = {zTypeOf(zObject),          zTypeOf(zAlloc),         zTypeOf(zStream),
                                   zTypeOf(zMsgSet),          zTypeOf(TvMsg),          zTypeOf(TvDataMsg),
                                   zTypeOf(TpGraphicElement), zTypeOf(TpGraphicRegion)};

Object MemoryStream()
{
    Object stream;
    MU_CHECK(zMemory_Construct(stream.Out(), nullptr));
    return stream;
}

Object Serializer()
{
    Object serializer;
    MU_CHECK(zSerializer_Construct(serializer.Out(), MemoryStream().Get(), nullptr, nullptr));
    return serializer;
}

Object File()
{
    const TemporaryFolder folder;
    Object file;
    MU_CHECK(zFile_Construct(file.Out(), folder.Path("file").c_str(), zFILE_WRITE, nullptr));
    return file;
}

Object Allocator()
{
    Object alloc;
    MU_CHECK(zCountingAlloc_Construct(alloc.Out()));
    return alloc;
}

Object Pool()
{
    Object pool;
    pool.Reset(zThreadPool_Default(), true);
    return pool;
}

/// What stands for something of the process rather than for data.
struct Resource
{
    zType type;
    Object (*make)();
};
const std::array RESOURCES = {Resource{zTypeOf(zMemory), MemoryStream}, Resource{zTypeOf(zSerializer), Serializer},
                              Resource{zTypeOf(zFile), File}, Resource{zTypeOf(zCountingAlloc), Allocator},
                              Resource{zTypeOf(zThreadPool), Pool}};

std::set<zType> SavedTypes()
{
    std::set<zType> types;
    for (const Case& testCase : CASES)
    {
        types.insert(xzObject_Type(testCase.make().Get()));
    }
    types.erase(nullptr);
    return types;
}

/// The names that the headers of the platform declare.
std::set<std::string> DeclaredTypes()
{
    const std::string declaration = "zDECLARE_TYPE(";
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(PLATFORM_FOLDER))
    {
        std::istringstream header(entry.path().extension() == ".h" ? FileContent(entry.path()) : "");
        for (std::string line; std::getline(header, line);)
        {
            if (line.starts_with(declaration))
            {
                names.insert(line.substr(declaration.size(), line.find(')') - declaration.size()));
            }
        }
    }
    return names;
}
} // namespace

TEST(Saved_types, Every_declared_type_is_tested_here)
{
    std::set<zType> types = SavedTypes();
    types.insert(VALUE_TYPES.begin(), VALUE_TYPES.end());
    types.insert(ABSTRACT_TYPES.begin(), ABSTRACT_TYPES.end());
    for (const Resource& resource : RESOURCES)
    {
        types.insert(resource.type);
    }
    std::set<std::string> names;
    for (const zType type : types)
    {
        names.insert(type->name);
    }
    EXPECT_EQ(names, DeclaredTypes());
}

TEST(Saved_types, Every_type_of_an_object_that_is_saved_is_registered)
{
    ASSERT_EQ(TaPipe_RegisterTypes(), zOK);
    for (const zType type : SavedTypes())
    {
        EXPECT_EQ(zTypeTable_Find(type->name), type) << type->name;
    }
}

TEST(Saved_types, Items_of_every_value_type_come_back)
{
    for (const zType type : VALUE_TYPES)
    {
        SCOPED_TRACE(type->name);
        const Object array = Array2(type, 1, 3);
        std::memset(zArray2_At(array.Get(), 0, 1), 77, type->size);
        Object loaded;
        ASSERT_EQ(Load(loaded.Out(), SavedBytes(array.Get()), nullptr), zOK);
        EXPECT_EQ(zArray2_ItemType(loaded.Get()), type);
        EXPECT_EQ(Shown(loaded.Get()), Shown(array.Get()));
    }
}

TEST(Saved_types, Abstract_types_are_not_loaded)
{
    for (const zType type : ABSTRACT_TYPES)
    {
        Object object;
        EXPECT_EQ(Load(object.Out(), Sealed(Container(Name(type->name))), nullptr), zERROR_INTERFACE) << type->name;
    }
}

TEST(Saved_types, Resources_are_neither_saved_nor_loaded)
{
    for (const Resource& resource : RESOURCES)
    {
        SCOPED_TRACE(resource.type->name);
        const Object object = resource.make();
        ASSERT_EQ(xzObject_Type(object.Get()), resource.type);
        const Object stream = MemoryStream();
        EXPECT_EQ(zSave6_ToStream(object.Get(), stream.Get()), zERROR_INTERFACE);
        Object loaded;
        EXPECT_EQ(Load(loaded.Out(), Sealed(Container(Name(resource.type->name))), nullptr), zERROR_INTERFACE);
    }
}
