#include <Support/FaultWalk.h>

#include <TaApi/Object.h>
#include <zApi/zString.h>

#include <array>
#include <gtest/gtest.h>

using namespace Support;

namespace
{
using Buffer = std::array<char, 6>;

Ta::Object<void*> Text(const char* text)
{
    zString string = nullptr;
    EXPECT_EQ(zString_Construct(&string, text, nullptr), zOK);
    return Ta::Object<void*>(string);
}

zStatus BuildAndClone(zAlloc alloc)
{
    zString text = nullptr;
    zString clone = nullptr;
    zStatus status = zString_Construct(&text, "content", alloc);
    status = status == zOK ? xzObject_CloneImpl(&clone, text, alloc) : status;
    static_cast<void>(xzObject_DestroyImpl(clone));
    static_cast<void>(xzObject_DestroyImpl(text));
    return status;
}
} // namespace

TEST(Text, One_less_than_the_buffer_fits_and_more_is_cut)
{
    struct Case
    {
        const char* text;
        zStatus status;
        const char* result;
    };
    for (const Case& c : {Case{"", zOK, ""}, Case{"12345", zOK, "12345"}, Case{"123456", zERROR_PARAMETER, "12345"}})
    {
        Buffer copied{'?'};
        EXPECT_EQ(zStrCopy(copied.data(), copied.size(), c.text), c.status);
        EXPECT_STREQ(copied.data(), c.result);
        Buffer printed{'?'};
        EXPECT_EQ(zStrPrintf(printed.data(), printed.size(), "%s", c.text), c.status);
        EXPECT_STREQ(printed.data(), c.result);
    }
}

TEST(Text, Printf_formats_its_arguments)
{
    Buffer text{};
    EXPECT_EQ(zStrPrintf(text.data(), text.size(), "%d-%c", 12, 'x'), zOK);
    EXPECT_STREQ(text.data(), "12-x");
}

TEST(Text, Cat_appends_what_fits)
{
    Buffer text{};
    EXPECT_EQ(zStrCat(text.data(), text.size(), "ab"), zOK);
    EXPECT_EQ(zStrCat(text.data(), text.size(), "cde"), zOK);
    EXPECT_STREQ(text.data(), "abcde");
    EXPECT_EQ(zStrCat(text.data(), text.size(), "f"), zERROR_PARAMETER);
    EXPECT_STREQ(text.data(), "abcde");
    text = {'a', 'b', 'c'};
    EXPECT_EQ(zStrCat(text.data(), text.size(), "defg"), zERROR_PARAMETER);
    EXPECT_STREQ(text.data(), "abcde");
}

TEST(Text, Cat_refuses_a_buffer_without_terminator)
{
    Buffer text = {'a', 'b', 'c', 'd', 'e', 'f'};
    EXPECT_EQ(zStrCat(text.data(), text.size(), ""), zERROR_PARAMETER);
}

TEST(Text, Capacity_zero_fits_nothing)
{
    char untouched = 'u';
    EXPECT_EQ(zStrCopy(&untouched, 0, ""), zERROR_PARAMETER);
    EXPECT_EQ(zStrCat(&untouched, 0, ""), zERROR_PARAMETER);
    EXPECT_EQ(zStrPrintf(&untouched, 0, "%s", ""), zERROR_PARAMETER);
    EXPECT_EQ(untouched, 'u');
}

TEST(Text, Null_pointers_are_refused)
{
    Buffer text{};
    zStatus (*const unchecked)(char* out, std::size_t capacity, const char* format, ...) = zStrPrintf;
    EXPECT_EQ(zStrCopy(nullptr, 6, "a"), zERROR_MISSING);
    EXPECT_EQ(zStrCopy(text.data(), 6, nullptr), zERROR_MISSING);
    EXPECT_EQ(zStrCat(nullptr, 6, "a"), zERROR_MISSING);
    EXPECT_EQ(zStrCat(text.data(), 6, nullptr), zERROR_MISSING);
    EXPECT_EQ(zStrPrintf(nullptr, 6, "%d", 1), zERROR_MISSING);
    EXPECT_EQ(unchecked(text.data(), 6, nullptr), zERROR_MISSING);
}

TEST(Text, Length_counts_before_the_terminator)
{
    EXPECT_EQ(zStrLength("abc"), 3U);
    EXPECT_EQ(zStrLength(""), 0U);
    EXPECT_EQ(zStrLength(nullptr), 0U);
}

TEST(Text, Compare_orders_and_equals_agrees)
{
    struct Case
    {
        const char* first;
        const char* second;
        z32s order;
    };
    for (const Case& c :
         {Case{"a", "a", 0}, Case{"a", "b", -1}, Case{"b", "a", 1}, Case{"a", "ab", -1}, Case{"\xE4", "z", 1},
          Case{"", "", 0}, Case{nullptr, "", -1}, Case{"", nullptr, 1}, Case{nullptr, nullptr, 0}})
    {
        EXPECT_EQ(zStrCompare(c.first, c.second), c.order);
        EXPECT_EQ(zStrEquals(c.first, c.second) != 0, c.order == 0);
    }
}

TEST(Text, FindFirst_gives_the_first_place)
{
    const char* const text = "abcabc";
    EXPECT_EQ(zStrFindFirst(text, "bc"), text + 1);
    EXPECT_EQ(zStrFindFirst(text, ""), text);
    EXPECT_EQ(zStrFindFirst(text, "cb"), nullptr);
    EXPECT_EQ(zStrFindFirst(nullptr, "a"), nullptr);
    EXPECT_EQ(zStrFindFirst(text, nullptr), nullptr);
}

TEST(Text, Failing_calls_change_nothing)
{
    Buffer text = {'a'};
    EXPECT_EQ(WalkFaults(
                  -6, [&text] { return zStrCopy(text.data(), text.size(), "b"); },
                  [&text](const std::string&, zStatus status) {
                      EXPECT_EQ(status, -6);
                      EXPECT_STREQ(text.data(), "a");
                  }),
              1U);
    EXPECT_EQ(WalkFaults(-6, [&text] { return zStrCat(text.data(), text.size(), "c"); }), 1U);
    EXPECT_STREQ(text.data(), "bc");
    EXPECT_EQ(WalkFaults(-6, [&text] { return zStrPrintf(text.data(), text.size(), "%d", 7); }), 2U)
        << "its own gate, and that of zStrPrintvf";
    EXPECT_STREQ(text.data(), "7");
}

TEST(String, Holds_a_copy_of_the_text)
{
    Buffer text = {'a', 'b'};
    const Ta::Object<void*> string = Text(text.data());
    text[0] = 'x';
    EXPECT_STREQ(zString_Chars(string.Get()), "ab");
    EXPECT_EQ(zString_Length(string.Get()), 2U);
}

TEST(String, Null_text_counts_as_empty)
{
    const Ta::Object<void*> string = Text(nullptr);
    EXPECT_STREQ(zString_Chars(string.Get()), "");
    EXPECT_EQ(zString_Length(string.Get()), 0U);
}

TEST(String, Compares_by_text)
{
    EXPECT_EQ(zString_Compare(Text("a").Get(), Text("a").Get()), 0);
    EXPECT_EQ(zString_Compare(Text("a").Get(), Text("b").Get()), -1);
    EXPECT_EQ(zString_Compare(Text("\xE4").Get(), Text("z").Get()), 1);
    EXPECT_EQ(zString_Compare(Text("").Get(), nullptr), 1);
    EXPECT_EQ(zString_Compare(nullptr, nullptr), 0);
}

TEST(String, Other_handles_have_no_text)
{
    const CountingAlloc other;
    EXPECT_EQ(zString_Construct(nullptr, "a", nullptr), zERROR_MISSING);
    EXPECT_EQ(zString_Chars(other.Get()), nullptr);
    EXPECT_EQ(zString_Length(other.Get()), 0U);
    EXPECT_EQ(zString_Chars(nullptr), nullptr);
}

TEST(String, Failing_requests_leave_nothing_behind)
{
    EXPECT_EQ(WalkAllocations(BuildAndClone), 4U);
}

TEST(String, Failing_calls_come_through_and_leave_nothing_behind)
{
    const CountingAlloc alloc;
    EXPECT_GE(WalkFaults(-77,
                         [&alloc] {
                             const zStatus status = BuildAndClone(alloc.Get());
                             EXPECT_EQ(alloc.LiveBlocks(), 0U);
                             return status;
                         }),
              6U);
}
