#pragma once

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace Support
{
/// Takes first inputs of a fuzzer by their names and writes each to a file of a folder.
class SeedFolder
{
public:
    explicit SeedFolder(std::filesystem::path place)
        : folder(std::move(place))
    {
        std::filesystem::create_directories(folder);
    }

    void Write(const std::string& name, const std::string& input) const
    {
        std::ofstream file;
        file.exceptions(std::ios::failbit | std::ios::badbit);
        file.open(folder / name, std::ios::binary);
        file << input;
    }

private:
    std::filesystem::path folder;
};

/// The main function of a program that writes seeds to the folder that it is given: calls `write(folder)`.
template <typename Writer>
int WriteSeeds(int argc, char** argv, const Writer& write)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "Name the folder to write to.\n");
        return 2;
    }
    try
    {
        write(SeedFolder(argv[1]));
        return 0;
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "%s: %s\n", argv[1], failure.what());
        return 1;
    }
}
} // namespace Support
