#include <Support/FaultWalk.h>

#include <zApi/zVersion.h>

#include <gtest/gtest.h>

using namespace Support;

TEST(Version, One_to_four_numbers_are_read_and_missing_ones_are_zero)
{
    struct Case
    {
        const char* text;
        zVersion version;
    };
    for (const Case& c : {Case{"1", 0x01000000U}, Case{"6.3", 0x06030000U}, Case{"6.3.18", 0x06031200U},
                          Case{"6.3.18.255", 0x060312FFU}, Case{"0.0.0.0", 0U}, Case{"007.1", 0x07010000U}})
    {
        zVersion version = 0xDEADBEEFU;
        EXPECT_EQ(zVersion_Parse(&version, c.text), zOK) << c.text;
        EXPECT_EQ(version, c.version) << c.text;
    }
}

TEST(Version, Any_other_text_is_refused_and_changes_nothing)
{
    for (const char* const text : {"", ".", "1.", ".1", "1..2", "1.2.3.4.", "1.2.3.4.5", "256", "1.999", "-1", "+1",
                                   " 1", "1 ", "1.x", "v1", "99999999999999999999"})
    {
        zVersion version = 7;
        EXPECT_EQ(zVersion_Parse(&version, text), zERROR_FORMAT) << text;
        EXPECT_EQ(version, 7U) << text;
    }
}

TEST(Version, Null_pointers_are_refused)
{
    zVersion version = 7;
    EXPECT_EQ(zVersion_Parse(nullptr, "1"), zERROR_MISSING);
    EXPECT_EQ(zVersion_Parse(&version, nullptr), zERROR_MISSING);
    EXPECT_EQ(version, 7U);
}

TEST(Version, Parts_come_back_out)
{
    constexpr zVersion VERSION = zVersion_Create(6, 3, 18, 2);
    static_assert(VERSION == 0x06031202U);
    EXPECT_EQ(zVersion_Major(VERSION), 6U);
    EXPECT_EQ(zVersion_Minor(VERSION), 3U);
}

TEST(Version, Failing_call_comes_through_and_changes_nothing)
{
    zVersion version = 7;
    EXPECT_EQ(WalkFaults(
                  -6, [&version] { return zVersion_Parse(&version, "1"); },
                  [&version](const std::string&, zStatus status) {
                      EXPECT_EQ(status, -6);
                      EXPECT_EQ(version, 7U);
                  }),
              1U);
    EXPECT_EQ(version, 0x01000000U);
}
