#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Mu::Host
{
/// A failure told to a person: which file, where in it, what is wrong and what to do about it.
class Error : public std::runtime_error
{
public:
    /// @param message  a whole sentence that names place, value and remedy itself
    explicit Error(const std::string& message)
        : std::runtime_error(message)
    {
    }

    /// Reads "file: place: problem. remedy."
    /// @param place    key, element or row inside the file; empty if it is the file as a whole
    /// @param problem  what is wrong, with the value, without a full stop
    /// @param remedy   what to do, without a full stop
    Error(const std::filesystem::path& file, std::string_view place, std::string_view problem, std::string_view remedy)
        : std::runtime_error(Compose(file, place, problem, remedy))
    {
    }

private:
    static std::string Compose(const std::filesystem::path& file, std::string_view place, std::string_view problem,
                               std::string_view remedy)
    {
        std::string message = file.string() + ": ";
        if (!place.empty())
        {
            message.append(place).append(": ");
        }
        return message.append(problem).append(". ").append(remedy).append(".");
    }
};

/// Text from a file that is not trusted, made fit for a message: at most 80 characters, and only printable ASCII,
/// so that it can neither steer a terminal nor break a JSON report.
inline std::string Printable(std::string_view text)
{
    constexpr std::size_t longest = 80;
    std::string result(text.substr(0, longest));
    for (char& character : result)
    {
        if (character < ' ' || character > '~')
        {
            character = '?';
        }
    }
    return text.size() > longest ? result + "..." : result;
}

/// The same between double quotes.
inline std::string Quoted(std::string_view text)
{
    return '"' + Printable(text) + '"';
}
} // namespace Mu::Host
