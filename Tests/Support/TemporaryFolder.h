#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace Support
{
/// A new, empty folder for the time of a scope; it goes with all that is in it.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "mutlk-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
        {
            throw std::runtime_error("no temporary folder can be made as " + pattern);
        }
        folder = pattern;
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    /// The path of the folder.
    [[nodiscard]] std::string Path() const
    {
        return folder.string();
    }

    /// The path of something in it.
    [[nodiscard]] std::string Path(const std::string& name) const
    {
        return (folder / name).string();
    }

private:
    std::filesystem::path folder;
};

/// The bytes of a file; nothing if there is none.
inline std::string FileContent(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
} // namespace Support
