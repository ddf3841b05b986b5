#pragma once

#include <TaApi/Logging.h>

#include <cstddef>
#include <string>
#include <vector>

/// Takes the user's log while it lives.
class LogCapture
{
public:
    struct Line
    {
        std::size_t level;
        std::string source;
        std::string text;
        std::string file;
        int line;
    };

    LogCapture()
        : before(Ta::Logging::SetLogHandler({Take, this}))
    {
    }

    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    ~LogCapture()
    {
        Ta::Logging::SetLogHandler(before);
    }

    std::vector<Line> lines;

    /// "level source: text" of each line, with levels 0, 1, 2.
    [[nodiscard]] std::vector<std::string> Texts() const
    {
        std::vector<std::string> texts;
        for (const Line& line : lines)
        {
            texts.push_back(std::to_string(line.level - Ta::Logging::LEVEL_INFORMATION) + " " + line.source + ": " +
                            line.text);
        }
        return texts;
    }

private:
    static zStatus Take(const Ta::Logging::LogRecord& record, void* context)
    {
        static_cast<LogCapture*>(context)->lines.push_back(
            {record.level, record.source, record.text, record.file, record.line});
        return zOK;
    }

    Ta::Logging::LogHandler before;
};
