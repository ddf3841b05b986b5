#include <Support/Entry.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Hands a fuzzer every input of its corpus: a test in builds that have no engine.
//
//     <fuzzer> FOLDER-OR-FILE...

namespace
{
namespace fs = std::filesystem;

/// The files that are named and those that lie in named folders, in order.
std::vector<fs::path> InputsOf(const fs::path& place)
{
    std::vector<fs::path> inputs;
    if (!fs::is_directory(place))
    {
        return {place};
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(place))
    {
        inputs.push_back(entry.path());
    }
    std::ranges::sort(inputs);
    return inputs;
}

bool Replay(const fs::path& input)
{
    std::ifstream file(input, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad())
    {
        std::fprintf(stderr, "%s cannot be read. Name a file or a folder of files.\n", input.c_str());
        return false;
    }
    // Told before, so that an input that ends the process is known.
    std::printf("%s\n", input.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

int ReplayAll(const std::vector<fs::path>& places)
{
    std::size_t count = 0;
    for (const fs::path& place : places)
    {
        const std::vector<fs::path> inputs = InputsOf(place);
        if (!std::ranges::all_of(inputs, Replay))
        {
            return 1;
        }
        count += inputs.size();
    }
    if (count == 0)
    {
        std::fprintf(stderr, "There is no input. Name the files, or the folder that holds them.\n");
        return 1;
    }
    std::printf("%zu inputs were read.\n", count);
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    try
    {
        return ReplayAll({argv + 1, argv + argc});
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
