#include <Support/MessageChecks.h>

#include <gtest/gtest.h>
#include <limits>
#include <string>

using namespace Support;

namespace
{
std::vector<z8u> BytesOf(void* msg)
{
    const auto* const bytes = static_cast<z8u*>(TvGenericMsg_Buffer(msg));
    return {bytes, bytes + TvGenericMsg_Size(msg)};
}
} // namespace

TEST(GenericMsg, New_one_has_a_zero_buffer_of_its_size)
{
    TvGenericMsg msg = nullptr;
    ASSERT_EQ(TvGenericMsg_Construct(&msg, 0x80009001U, 3, nullptr), zOK);
    const Ta::Object<void*> owner(msg);
    EXPECT_EQ(TvGenericMsg_Type(msg), 0x80009001U);
    EXPECT_EQ(BytesOf(msg), (std::vector<z8u>{0, 0, 0}));
}

TEST(GenericMsg, Copies_exactly_its_size)
{
    TvGenericMsg msg = nullptr;
    ASSERT_EQ(TvGenericMsg_Construct(&msg, 0, 3, nullptr), zOK);
    const Ta::Object<void*> owner(msg);
    std::string text = "abcdef";
    ASSERT_EQ(TvGenericMsg_SetBuffer(msg, text.data()), zOK);
    text[0] = 'x';
    EXPECT_EQ(BytesOf(msg), (std::vector<z8u>{'a', 'b', 'c'}));
}

TEST(GenericMsg, Empty_buffer_needs_no_bytes)
{
    const auto msg = Generic(4, {});
    EXPECT_EQ(TvGenericMsg_Size(msg.Get()), 0U);
    EXPECT_EQ(TvGenericMsg_Buffer(msg.Get()), nullptr);
    EXPECT_EQ(TvGenericMsg_SetBuffer(msg.Get(), nullptr), zOK);
}

TEST(GenericMsg, Null_bytes_and_other_handles_are_refused)
{
    const auto msg = Generic(4, {1, 2});
    EXPECT_EQ(TvGenericMsg_SetBuffer(msg.Get(), nullptr), zERROR_MISSING);
    EXPECT_EQ(BytesOf(msg.Get()), (std::vector<z8u>{1, 2}));
    const auto null = NullMessage();
    for (void* const handle : {null.Get(), static_cast<void*>(nullptr)})
    {
        EXPECT_EQ(TvGenericMsg_SetBuffer(handle, "ab"), zERROR_PARAMETER);
        EXPECT_EQ(TvGenericMsg_Type(handle), 0U);
        EXPECT_EQ(TvGenericMsg_Size(handle), 0U);
        EXPECT_EQ(TvGenericMsg_Buffer(handle), nullptr);
    }
}

TEST(GenericMsg, Construct_refuses_what_it_cannot_make)
{
    TvGenericMsg msg = nullptr;
    EXPECT_EQ(TvGenericMsg_Construct(nullptr, 0, 1, nullptr), zERROR_MISSING);
    for (const std::size_t size : {TvMSG_MAX_ITEMS + 1, std::numeric_limits<std::size_t>::max()})
    {
        EXPECT_EQ(TvGenericMsg_Construct(&msg, 0, size, nullptr), zERROR_PARAMETER);
    }
    EXPECT_EQ(msg, nullptr);
}

TEST(GenericMsg, Clone_is_independent)
{
    const auto msg = Generic(4, {1, 2});
    const auto clone = CloneOf(msg.Get());
    ASSERT_EQ(TvGenericMsg_SetBuffer(msg.Get(), "xy"), zOK);
    EXPECT_EQ(TvGenericMsg_Type(clone.Get()), 4U);
    EXPECT_EQ(BytesOf(clone.Get()), (std::vector<z8u>{1, 2}));
    EXPECT_EQ(BytesOf(CloneOf(Generic(1, {}).Get()).Get()), std::vector<z8u>{});
}

TEST(GenericMsg, Failures_leave_nothing_behind)
{
    EXPECT_EQ(ExpectCleanFailures([](zObject* msg, zAlloc alloc) {
                  zTRY(TvGenericMsg_Construct(msg, 0, 3, alloc));
                  return TvGenericMsg_SetBuffer(*msg, "ab");
              }),
              4U);
}
