#pragma once

#include <TaApi/Exception.h>

#include <optional>
#include <string>
#include <utility>

/// What a call raised.
struct Raised
{
    int status = 0;
    std::string message;
    std::string function;
    std::string file;
    int line = 0;
};

/// Null if nothing was raised.
template <typename Call>
std::optional<Raised> RaisedBy(Call&& call)
{
    try
    {
        std::forward<Call>(call)();
    }
    catch (const Ta::Exception& raised)
    {
        return Raised{raised.Status(), raised.Message(), raised.Function(), raised.File(), raised.Line()};
    }
    return std::nullopt;
}

/// "-997 text", or "nothing": what most tests compare.
template <typename Call>
std::string Failure(Call&& call)
{
    const auto raised = RaisedBy(std::forward<Call>(call));
    return raised ? std::to_string(raised->status) + " " + raised->message : std::string("nothing");
}
