#include <Support/FaultWalk.h>

#include <zApi/zPath.h>

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

using namespace Support;

namespace
{
using Operation = zStatus (*)(const char* path, char* out, std::size_t capacity);

/// The result of `operation` in a buffer of exactly the size it needs, by `length`.
std::string Result(Operation operation, const char* path, std::size_t length)
{
    std::string out(length + 1, '?');
    EXPECT_EQ(operation(path, out.data(), out.size()), zOK) << path;
    return out.c_str();
}

struct PartCase
{
    const char* path;
    const char* directory;
    const char* fileName;
    const char* extension;
};

constexpr PartCase partCases[] = {
    {"a/b/c.txt", "a/b", "c.txt", "txt"},
    {"c.txt", "", "c.txt", "txt"},
    {"/c.txt", "/", "c.txt", "txt"},
    {"/", "/", "", ""},
    {"a/", "a", "", ""},
    {"C:\\a\\b.csv", "C:\\a", "b.csv", "csv"},
    {"a\\b/c", "a\\b", "c", ""},
    {"a/b.tar.gz", "a", "b.tar.gz", "gz"},
    {"a.d/b", "a.d", "b", ""},
    {".hidden", "", ".hidden", ""},
    {"a/.hidden", "a", ".hidden", ""},
    {"a/.hidden.txt", "a", ".hidden.txt", "txt"},
    {"a/b.", "a", "b.", ""},
    {"", "", "", ""},
    {"gr\xC3\xBC\xC3\x9F/\xC3\xA4.x\xC3\xB6", "gr\xC3\xBC\xC3\x9F", "\xC3\xA4.x\xC3\xB6", "x\xC3\xB6"},
};

struct CombineCase
{
    const char* a;
    const char* b;
    const char* result;
};

constexpr CombineCase combineCases[] = {
    {"a", "b", "a/b"},
    {"a/", "b", "a/b"},
    {"a\\", "b", "a/b"},
    {"a", "/b", "a/b"},
    {"a/", "/b", "a/b"},
    {"", "b", "b"},
    {"a", "", "a"},
    {"", "", ""},
    {"", "/b", "/b"},
    {"/", "b", "/b"},
    {"C:/x", "y/z", "C:/x/y/z"},
    {"a", "b/", "a/b/"},
    {"a//", "b", "a//b"},
};
} // namespace

TEST(Path, Parts_of_a_path)
{
    for (const PartCase& c : partCases)
    {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(Result(zPath_Directory, c.path, std::strlen(c.directory)), c.directory);
        EXPECT_EQ(Result(zPath_FileName, c.path, std::strlen(c.fileName)), c.fileName);
        EXPECT_EQ(Result(zPath_Extension, c.path, std::strlen(c.extension)), c.extension);
    }
}

TEST(Path, Combine_puts_one_separator_between)
{
    for (const CombineCase& c : combineCases)
    {
        SCOPED_TRACE(c.result);
        std::string out(std::strlen(c.result) + 1, '?');
        EXPECT_EQ(zPath_Combine(c.a, c.b, out.data(), out.size()), zOK);
        EXPECT_STREQ(out.c_str(), c.result);
    }
}

TEST(Path, Result_may_go_where_an_argument_stands)
{
    for (const CombineCase& c : combineCases)
    {
        SCOPED_TRACE(c.result);
        std::array<char, 32> front{};
        std::strcpy(front.data(), c.a);
        EXPECT_EQ(zPath_Combine(front.data(), c.b, front.data(), front.size()), zOK);
        EXPECT_STREQ(front.data(), c.result);
        std::array<char, 32> back{};
        std::strcpy(back.data(), c.b);
        EXPECT_EQ(zPath_Combine(c.a, back.data(), back.data(), back.size()), zOK);
        EXPECT_STREQ(back.data(), c.result);
    }
    std::array<char, 32> path{"a/b.txt"};
    EXPECT_EQ(zPath_FileName(path.data(), path.data(), path.size()), zOK);
    EXPECT_STREQ(path.data(), "b.txt");
    EXPECT_EQ(zPath_Extension(path.data(), path.data(), path.size()), zOK);
    EXPECT_STREQ(path.data(), "txt");
}

TEST(Path, Result_that_does_not_fit_leaves_the_buffer_as_it_was)
{
    std::array<char, 4> out{"xyz"};
    EXPECT_EQ(zPath_Combine("ab", "c", out.data(), out.size()), zERROR_PARAMETER);
    EXPECT_EQ(zPath_Combine("abcd", "", out.data(), out.size()), zERROR_PARAMETER);
    EXPECT_EQ(zPath_Combine("", "", out.data(), 0), zERROR_PARAMETER);
    EXPECT_EQ(zPath_Extension("a.long", out.data(), out.size()), zERROR_PARAMETER);
    EXPECT_EQ(zPath_FileName("a/long", out.data(), out.size()), zERROR_PARAMETER);
    EXPECT_EQ(zPath_Directory("long/a", out.data(), out.size()), zERROR_PARAMETER);
    EXPECT_STREQ(out.data(), "xyz");
}

TEST(Path, Null_is_refused)
{
    std::array<char, 8> out{};
    EXPECT_EQ(zPath_Combine(nullptr, "b", out.data(), out.size()), zERROR_MISSING);
    EXPECT_EQ(zPath_Combine("a", nullptr, out.data(), out.size()), zERROR_MISSING);
    EXPECT_EQ(zPath_Combine("a", "b", nullptr, 8), zERROR_MISSING);
    for (const Operation operation : {zPath_Extension, zPath_FileName, zPath_Directory})
    {
        EXPECT_EQ(operation(nullptr, out.data(), out.size()), zERROR_MISSING);
        EXPECT_EQ(operation("a", nullptr, 8), zERROR_MISSING);
    }
}

TEST(Path, Failing_calls_come_through)
{
    const std::size_t calls = WalkFaults(-77, []() -> zStatus {
        std::array<char, 16> out{};
        zTRY(zPath_Combine("a", "b.c", out.data(), out.size()));
        zTRY(zPath_Extension("a.b", out.data(), out.size()));
        zTRY(zPath_FileName("a/b", out.data(), out.size()));
        return zPath_Directory("a/b", out.data(), out.size());
    });
    EXPECT_EQ(calls, 4U);
}
