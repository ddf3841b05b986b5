#include <Support/FaultWalk.h>

#include <zApi/zLog.h>
#include <zApi/zObject.h>

#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Support;

namespace
{
std::vector<std::string>& Lines()
{
    static std::vector<std::string> lines;
    return lines;
}

zStatus KeepLine(const char* format, va_list arguments)
{
    std::array<char, 256> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    Lines().emplace_back(text.data());
    return zOK;
}

zStatus RefuseLine(const char* /*format*/, va_list /*arguments*/)
{
    return -31;
}

class Line_log : public testing::Test
{
protected:
    Line_log()
    {
        Lines().clear();
    }

    ~Line_log() override
    {
        static_cast<void>(zApiLib_SetLogfHandler(nullptr));
    }
};
} // namespace

TEST_F(Line_log, Line_reaches_the_handler_with_its_arguments)
{
    ASSERT_EQ(zApiLib_SetLogfHandler(KeepLine), zOK);
    EXPECT_EQ(zApiLib_LogfHandler(), KeepLine);
    EXPECT_EQ(zLogf("%s has %d rows", "scan", 7), zOK);
    EXPECT_EQ(Lines(), std::vector<std::string>{"scan has 7 rows"});
}

TEST_F(Line_log, Status_of_the_handler_is_passed_on)
{
    ASSERT_EQ(zApiLib_SetLogfHandler(RefuseLine), zOK);
    EXPECT_EQ(zLogf("refused"), -31);
}

TEST_F(Line_log, Format_is_required)
{
    ASSERT_EQ(zApiLib_SetLogfHandler(KeepLine), zOK);
    zStatus (*const unchecked)(const char* format, ...) = zLogf;
    EXPECT_EQ(unchecked(nullptr), zERROR_MISSING);
    EXPECT_TRUE(Lines().empty());
}

TEST_F(Line_log, Null_brings_back_the_first_handler_which_writes_to_standard_error)
{
    const zLogfHandler first = zApiLib_LogfHandler();
    ASSERT_NE(first, nullptr);
    ASSERT_EQ(zApiLib_SetLogfHandler(KeepLine), zOK);
    ASSERT_EQ(zApiLib_SetLogfHandler(nullptr), zOK);
    EXPECT_EQ(zApiLib_LogfHandler(), first);
    testing::internal::CaptureStderr();
    EXPECT_EQ(zLogf("row %d", 3), zOK);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "row 3\n");
}

TEST_F(Line_log, Failed_cast_is_reported_with_its_place)
{
    ASSERT_EQ(zApiLib_SetLogfHandler(KeepLine), zOK);
    EXPECT_EQ(xzApiLib_CastFailHandler("Tool.cpp", 12), zOK);
    EXPECT_EQ(xzApiLib_CastFailHandler(nullptr, 0), zOK);
    ASSERT_EQ(Lines().size(), 2U);
    EXPECT_EQ(Lines()[0].rfind("Tool.cpp:12:", 0), 0U) << Lines()[0];
    EXPECT_EQ(Lines()[1].rfind("?:0:", 0), 0U) << Lines()[1];
}

TEST_F(Line_log, Failing_calls_come_through)
{
    ASSERT_EQ(zApiLib_SetLogfHandler(KeepLine), zOK);
    EXPECT_EQ(WalkFaults(-5, [] { return zLogf("line"); }), 1U);
    EXPECT_EQ(WalkFaults(-5, [] { return zApiLib_SetLogfHandler(KeepLine); }), 1U);
    EXPECT_EQ(Lines().size(), 1U);
}
