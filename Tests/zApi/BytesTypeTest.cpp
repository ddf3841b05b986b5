#include <TaApi/Object.h>
#include <zApi/zArray1.h>
#include <zApi/zType.h>

#include <gtest/gtest.h>
#include <thread>
#include <vector>

TEST(Bytes_type, Is_the_same_for_the_same_size)
{
    for (const std::size_t size :
         {std::size_t{1}, std::size_t{8}, std::size_t{256}, std::size_t{257}, std::size_t{100'000}})
    {
        EXPECT_EQ(zBytes_GetType(size), zBytes_GetType(size)) << size;
        EXPECT_EQ(zBytes_GetType(size)->size, size);
        EXPECT_FALSE(zBytes_GetType(size)->isObject);
    }
}

TEST(Bytes_type, Differs_for_another_size)
{
    EXPECT_NE(zBytes_GetType(8), zBytes_GetType(9));
    EXPECT_NE(zBytes_GetType(256), zBytes_GetType(257));
    EXPECT_NE(zBytes_GetType(257), zBytes_GetType(258));
}

TEST(Bytes_type, Is_no_named_type_of_the_same_size)
{
    EXPECT_NE(zBytes_GetType(1), zTypeOf(z8u));
    EXPECT_NE(zBytes_GetType(2), zTypeOf(z16s));
}

TEST(Bytes_type, Size_zero_has_no_type)
{
    EXPECT_EQ(zBytes_GetType(0), nullptr);
}

TEST(Bytes_type, Makes_arrays_of_records)
{
    zArray1 array = nullptr;
    ASSERT_EQ(zArray1_Construct(&array, zBytes_GetType(300), 2, nullptr), zOK);
    const Ta::Object<void*> owner(array);
    const auto* const first = static_cast<unsigned char*>(zArray1_At(array, 0));
    EXPECT_EQ(zArray1_At(array, 1), first + 300);
}

TEST(Bytes_type, Is_the_same_for_threads_that_ask_at_once)
{
    constexpr std::size_t FIRST_SIZE = 5000;
    constexpr std::size_t SIZES = 100;
    std::vector<std::vector<zType>> seen(4, std::vector<zType>(SIZES));
    std::vector<std::thread> threads;
    for (std::vector<zType>& types : seen)
    {
        threads.emplace_back([&types] {
            for (std::size_t i = 0; i < SIZES; ++i)
            {
                types[i] = zBytes_GetType(FIRST_SIZE + i);
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    for (const std::vector<zType>& types : seen)
    {
        EXPECT_EQ(types, seen.front());
    }
    EXPECT_NE(seen.front().front(), nullptr);
}

TEST(Value_types, Have_the_size_of_their_items)
{
    struct Case
    {
        zType type;
        std::size_t size;
    };
    for (const Case& c : {Case{zTypeOf(z8u), 1}, Case{zTypeOf(z16u), 2}, Case{zTypeOf(z16s), 2}, Case{zTypeOf(z64f), 8},
                          Case{zTypeOf(zPoint16s), 4}, Case{zTypeOf(zPoint3d16s), 6}, Case{zTypeOf(zPoint64f), 16},
                          Case{zTypeOf(zPoint3d64f), 24}, Case{zTypeOf(zPoint3d32f), 12}, Case{zTypeOf(zRgb), 4},
                          Case{zTypeOf(zRgb24), 3}})
    {
        EXPECT_EQ(c.type->size, c.size) << c.type->name;
        EXPECT_FALSE(c.type->isObject) << c.type->name;
    }
}
