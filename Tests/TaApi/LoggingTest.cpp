#include "LogCapture.h"

#include <Support/ResourceLimit.h>

#include <TaApi/Logging.h>

#include <zApi/zFault.h>
#include <zApi/zLog.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace
{
using namespace Ta::Logging;

std::string lowLevelText;

zStatus TakeLowLevel(const char* format, va_list arguments)
{
    char text[512];
    std::vsnprintf(text, sizeof(text), format, arguments);
    lowLevelText = text;
    return zOK;
}

zStatus Refuse(const LogRecord& /*record*/, void* /*context*/)
{
    return -984;
}

TEST(Logging, Levels_are_64_bit_words_that_count_up_from_information)
{
    EXPECT_EQ(LEVEL_INFORMATION, 0x8000000100000000U);
    EXPECT_EQ(LEVEL_WARNING, 0x8000000100000001U);
    EXPECT_EQ(LEVEL_ERROR, 0x8000000100000002U);
}

TEST(Logging, Handler_gets_the_whole_record)
{
    LogCapture log;
    EXPECT_EQ(Ta_Debug_Log(12, "Unit", LEVEL_WARNING, "Source", "%d of %s", 3, "four"), zOK);
    ASSERT_EQ(log.lines.size(), 1U);
    EXPECT_EQ(log.lines[0].level, LEVEL_WARNING);
    EXPECT_EQ(log.lines[0].source, "Source");
    EXPECT_EQ(log.lines[0].text, "3 of four");
    EXPECT_EQ(log.lines[0].file, "Unit");
    EXPECT_EQ(log.lines[0].line, 12);
}

TEST(Logging, Null_format_is_refused_and_nothing_is_logged)
{
    LogCapture log;
    EXPECT_EQ(Ta_Debug_Log(1, "Unit", LEVEL_ERROR, "Source", nullptr), -999);
    EXPECT_TRUE(log.lines.empty());
}

TEST(Logging, Null_file_and_source_count_as_empty)
{
    LogCapture log;
    EXPECT_EQ(Ta_Debug_Log(1, nullptr, LEVEL_ERROR, nullptr, "text"), zOK);
    ASSERT_EQ(log.lines.size(), 1U);
    EXPECT_EQ(log.lines[0].source, "");
    EXPECT_EQ(log.lines[0].file, "");
}

TEST(Logging, Long_text_is_not_cut)
{
    LogCapture log;
    const std::string text(70000, 'y');
    EXPECT_EQ(Ta_Debug_Log(1, "Unit", LEVEL_ERROR, "Source", "%s", text.c_str()), zOK);
    EXPECT_EQ(log.lines.at(0).text, text);
}

TEST(Logging, Text_that_cannot_be_formatted_is_refused_and_nothing_is_logged)
{
    LogCapture log;
    // Half of a pair of surrogates is no character in any locale.
    const wchar_t noText[] = {0xD800, 0};
    EXPECT_EQ(Ta_Debug_Log(1, "Unit", LEVEL_ERROR, "Source", "%ls", noText), zERROR_PRECONDITION);
    EXPECT_TRUE(log.lines.empty());
}

TEST(Logging, Text_that_finds_no_memory_is_refused_and_nothing_is_logged)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "The sanitizers need all of the address space.";
#endif
    LogCapture log;
    const Support::ResourceLimit addressSpace(RLIMIT_AS, Support::TakenAddressSpace() + (rlim_t{16} << 20U));
    EXPECT_EQ(Ta_Debug_Log(1, "Unit", LEVEL_ERROR, "Source", "%*d", 200'000'000, 1), zERROR_MEMORY);
    EXPECT_TRUE(log.lines.empty());
}

TEST(Logging, Status_of_the_handler_is_passed_on)
{
    const LogHandler before = SetLogHandler({Refuse, nullptr});
    EXPECT_EQ(Ta_Debug_Log(1, "Unit", LEVEL_ERROR, "Source", "text"), -984);
    SetLogHandler(before);
}

TEST(Logging, Setting_a_handler_gives_the_one_before_back)
{
    int context = 0;
    const LogHandler first = SetLogHandler({Refuse, &context});
    const LogHandler second = SetLogHandler(first);
    EXPECT_EQ(second.function, &Refuse);
    EXPECT_EQ(second.context, &context);
}

TEST(Logging, Null_handler_brings_back_the_line_log)
{
    const LogHandler before = SetLogHandler({Refuse, nullptr});
    SetLogHandler({});
    const zLogfHandler lowLevelBefore = zApiLib_LogfHandler();
    ASSERT_EQ(zApiLib_SetLogfHandler(TakeLowLevel), zOK);

    const std::vector<std::pair<std::size_t, std::string>> expected = {{LEVEL_INFORMATION, "information: Tool: 50 %"},
                                                                       {LEVEL_WARNING, "warning: Tool: 50 %"},
                                                                       {LEVEL_ERROR, "error: Tool: 50 %"},
                                                                       {5, "log: Tool: 50 %"}};
    for (const auto& [level, text] : expected)
    {
        EXPECT_EQ(Ta_Debug_Log(1, "Unit", level, "Tool", "%d %%", 50), zOK);
        EXPECT_EQ(lowLevelText, text);
    }

    ASSERT_EQ(zApiLib_SetLogfHandler(lowLevelBefore), zOK);
    SetLogHandler(before);
}

TEST(Logging, Injected_failure_is_returned_and_nothing_is_logged)
{
    LogCapture log;
    zFault_Arm(1, -12345);
    EXPECT_EQ(Ta_Debug_Log(1, "Unit", LEVEL_ERROR, "Source", "text"), -12345);
    EXPECT_STREQ(zFault_Operation(), "Ta_Debug_Log");
    zFault_Disarm();
    EXPECT_TRUE(log.lines.empty());
}

zStatus CountUp(const LogRecord& /*record*/, void* context)
{
    static_cast<std::atomic<int>*>(context)->fetch_add(1);
    return zOK;
}

TEST(Logging, Threads_may_log_while_the_handler_is_set)
{
    std::atomic<int> count = 0;
    const LogHandler before = SetLogHandler({CountUp, &count});
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
        {
            threads.emplace_back([] {
                for (int line = 0; line < 100; ++line)
                {
                    Ta_Debug_Log(line, "Unit", LEVEL_INFORMATION, "Source", "%d", line);
                }
            });
        }
        SetLogHandler({CountUp, &count});
    }
    SetLogHandler(before);
    EXPECT_EQ(count, 400);
}
} // namespace
