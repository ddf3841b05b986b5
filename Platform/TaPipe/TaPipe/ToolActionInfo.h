#pragma once

#include <functional>
#include <string>
#include <utility>

namespace TaPipe
{
/// A named action that a user can start on a tool.
class ToolActionInfo
{
public:
    ToolActionInfo(std::string actionName, std::function<void()> body)
        : name(std::move(actionName))
        , run(std::move(body))
    {
    }

    [[nodiscard]] const char* Name() const
    {
        return name.c_str();
    }

    void Run() const
    {
        run();
    }

private:
    std::string name;
    std::function<void()> run;
};
} // namespace TaPipe
