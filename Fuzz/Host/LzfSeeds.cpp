#include <Host/CloudTestFiles.h>
#include <Support/Seeds.h>

// Writes first inputs of the fuzzer of LZF.
//
//     LzfSeeds FOLDER

namespace
{
void Write(const Support::SeedFolder& folder)
{
    using Mu::Host::Testing::PackedWithLzf;
    folder.Write("same", PackedWithLzf(std::string(600, 'a')));
    folder.Write("pairs", PackedWithLzf("abababababab-abababcdcdcdcdcd"));
    folder.Write("plain", PackedWithLzf("The quick brown fox jumps over the lazy dog, 0123456789"));
    folder.Write("far",
                 PackedWithLzf(std::string("begin").append(300, 'x').append("begin").append(20, 'y').append("begin")));
}
} // namespace

int main(int argc, char** argv)
{
    return Support::WriteSeeds(argc, argv, Write);
}
