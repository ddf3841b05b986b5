#include <Support/FaultWalk.h>

#include <zApi/zArray1.h>
#include <zApi/zObjectType.h>
#include <zApi/zString.h>

#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace Support;

namespace
{
zObject Text(zAlloc alloc = nullptr)
{
    zString text = nullptr;
    EXPECT_EQ(zString_Construct(&text, "text", alloc), zOK);
    return text;
}
} // namespace

// A family of one's own: what a host author writes to add a type.
zDECLARE_TYPE(TestShape);
zDECLARE_TYPE(TestSquare);

namespace
{
struct Square : zObjectClass
{
    int side = 3;
};

constexpr zObjectOps withoutClone = {nullptr, nullptr};
} // namespace

zDEFINE_OBJECT_TYPE(TestShape, zObject, nullptr);
zDEFINE_OBJECT_TYPE(TestSquare, TestShape, &withoutClone);

TEST(Object, Begins_with_one_reference_and_lives)
{
    zObject const text = Text();
    EXPECT_EQ(xzObject_ReferenceCount(text), 1);
    EXPECT_TRUE(xzCastClass_ObjectIsValid(text));
    EXPECT_EQ(xzObject_Type(text), zTypeOf(zString));
    EXPECT_EQ(xzObject_DestroyImpl(text), zOK);
}

TEST(Object, Last_reference_ends_it)
{
    const CountingAlloc alloc;
    zObject const text = Text(alloc.Get());
    ASSERT_EQ(xzObject_ShareImpl(text), zOK);
    EXPECT_EQ(xzObject_ReferenceCount(text), 2);
    ASSERT_EQ(xzObject_DestroyImpl(text), zOK);
    EXPECT_EQ(xzObject_ReferenceCount(text), 1);
    EXPECT_EQ(alloc.LiveBlocks(), 2U);
    ASSERT_EQ(xzObject_DestroyImpl(text), zOK);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Object, Null_handle_is_released_but_not_shared)
{
    EXPECT_EQ(xzObject_DestroyImpl(nullptr), zOK);
    EXPECT_EQ(xzObject_ShareImpl(nullptr), zERROR_MISSING);
    EXPECT_EQ(xzObject_ReferenceCount(nullptr), 0);
    EXPECT_EQ(xzObject_Type(nullptr), nullptr);
    EXPECT_FALSE(xzCastClass_ObjectIsValid(nullptr));
}

TEST(Object, Clone_lies_in_the_allocator_given)
{
    const CountingAlloc alloc;
    zObject const text = Text();
    zObject clone = nullptr;
    ASSERT_EQ(xzObject_CloneImpl(&clone, text, alloc.Get()), zOK);
    EXPECT_EQ(xzObject_ReferenceCount(clone), 1);
    EXPECT_EQ(xzObject_ReferenceCount(text), 1);
    EXPECT_EQ(alloc.LiveBlocks(), 2U);
    ASSERT_EQ(xzObject_DestroyImpl(text), zOK);
    EXPECT_STREQ(zString_Chars(clone), "text");
    ASSERT_EQ(xzObject_DestroyImpl(clone), zOK);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Object, Clone_of_null_is_null_and_needs_a_place)
{
    zObject clone = &clone;
    EXPECT_EQ(xzObject_CloneImpl(&clone, nullptr, nullptr), zOK);
    EXPECT_EQ(clone, nullptr);
    EXPECT_EQ(xzObject_CloneImpl(nullptr, nullptr, nullptr), zERROR_MISSING);
}

TEST(Object, Is_of_its_type_and_of_those_it_derives_from)
{
    Square* square = nullptr;
    ASSERT_EQ(zObjectType_New(zTypeOf(TestSquare), nullptr, &square), zOK);
    EXPECT_TRUE(xzCastClass_ObjectIs(square, zTypeOf(TestSquare)));
    EXPECT_TRUE(xzCastClass_ObjectIs(square, zTypeOf(TestShape)));
    EXPECT_TRUE(xzCastClass_ObjectIs(square, zTypeOf(zObject)));
    EXPECT_FALSE(xzCastClass_ObjectIs(square, zTypeOf(zString)));
    EXPECT_FALSE(xzCastClass_ObjectIs(nullptr, zTypeOf(zObject)));
    EXPECT_EQ(zObjectType_Cast<Square>(square, zTypeOf(TestShape)), square);
    EXPECT_EQ(zObjectType_Cast<Square>(square, zTypeOf(zString)), nullptr);
    EXPECT_EQ(xzObject_DestroyImpl(square), zOK);
}

TEST(Object, Type_without_clone_cannot_be_cloned)
{
    Square* square = nullptr;
    ASSERT_EQ(zObjectType_New(zTypeOf(TestSquare), nullptr, &square), zOK);
    EXPECT_EQ(square->side, 3);
    zObject clone = nullptr;
    EXPECT_EQ(xzObject_CloneImpl(&clone, square, nullptr), zERROR_INTERFACE);
    EXPECT_EQ(clone, nullptr);
    EXPECT_EQ(xzObject_DestroyImpl(square), zOK);
}

TEST(Object, Failing_release_still_releases)
{
    const CountingAlloc alloc;
    zObject const text = Text(alloc.Get());
    {
        const ArmedFault fault(1, -8);
        EXPECT_EQ(xzObject_DestroyImpl(text), -8);
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Object, Failing_share_and_clone_leave_the_object_as_it_was)
{
    const CountingAlloc alloc;
    zObject const text = Text();
    {
        const ArmedFault fault(1, -8);
        EXPECT_EQ(xzObject_ShareImpl(text), -8);
    }
    EXPECT_EQ(xzObject_ReferenceCount(text), 1);
    WalkAllocations([text](zAlloc target) {
        zObject clone = nullptr;
        const zStatus status = xzObject_CloneImpl(&clone, text, target);
        static_cast<void>(xzObject_DestroyImpl(clone));
        return status;
    });
    EXPECT_EQ(xzObject_ReferenceCount(text), 1);
    EXPECT_EQ(xzObject_DestroyImpl(text), zOK);
}

TEST(Object, Threads_share_and_release_one_object)
{
    const CountingAlloc alloc;
    zObject const text = Text(alloc.Get());
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
    {
        ASSERT_EQ(xzObject_ShareImpl(text), zOK);
        threads.emplace_back([text] {
            for (int i = 0; i < 2000; ++i)
            {
                static_cast<void>(xzObject_ShareImpl(text));
                static_cast<void>(xzObject_DestroyImpl(text));
            }
            static_cast<void>(xzObject_DestroyImpl(text));
        });
    }
    // The owner leaves first: whoever comes last ends the object.
    ASSERT_EQ(xzObject_DestroyImpl(text), zOK);
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

TEST(Object, Content_written_by_one_thread_is_gone_safely_in_another)
{
    for (int round = 0; round < 200; ++round)
    {
        zArray1 array = nullptr;
        ASSERT_EQ(zArray1_Construct(&array, zTypeOf(z32s), 16, nullptr), zOK);
        ASSERT_EQ(xzObject_ShareImpl(array), zOK);
        std::thread writer([array] {
            *static_cast<z32s*>(zArray1_At(array, 0)) = 1;
            static_cast<void>(xzObject_DestroyImpl(array));
        });
        std::thread other([array] {
            *static_cast<z32s*>(zArray1_At(array, 1)) = 2;
            static_cast<void>(xzObject_DestroyImpl(array));
        });
        writer.join();
        other.join();
    }
}
