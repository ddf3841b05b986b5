#include <Support/SavedBytes.h>
#include <Support/SavedObjects.h>
#include <Support/Seeds.h>

#include <string>

// Writes first inputs of the fuzzer of `.zDat6`, one of each kind of object: the content of containers as saving makes
// them, without head and checksum.
//
//     Load6Seeds FOLDER

namespace
{
constexpr std::size_t HEAD_SIZE = 16;
constexpr std::size_t LONGEST = 4096; // longer ones are slower to change, and have nothing new in them

void Write(const Support::SeedFolder& folder)
{
    for (const Support::Case& seed : Support::CASES)
    {
        const std::string saved = Support::SavedBytes(seed.make().Get());
        const std::string content = saved.substr(HEAD_SIZE, saved.size() - HEAD_SIZE - sizeof(z64u));
        if (content.size() <= LONGEST)
        {
            folder.Write(seed.name, content);
        }
    }
}
} // namespace

int main(int argc, char** argv)
{
    return Support::WriteSeeds(argc, argv, Write);
}
