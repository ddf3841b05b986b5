#include <Support/Seeds.h>

#include "CsvOptionCases.h"

#include <array>
#include <string>

// Writes first inputs of the fuzzer of texts: each way to write numbers, with each of the options.
//
//     CsvSeeds FOLDER

namespace
{
struct Text
{
    const char* name;
    const char* text;
};

constexpr std::array texts{
    Text{"EvenProfile", "x;z;i\n0,5;1;7\n1,0;2,5;8\n1,5;-3e-1;9\n"},
    Text{"UnevenProfile", "1.5 2\n1.25 3\n# comment\n7 nan\n8 -1\n"},
    Text{"PaddedProfile", "X   ,Y   ,Slice\n0.5 ,    ,Slice 2\n1.0 ,0.25,Slice 2\n1.5 ,inf ,Slice 2\n"},
    Text{"Points", "0.0,0.0,1\n0.5,0.0,2\n\n0.0,0.1,-1\n0.5,0.1,4\n"},
    Text{"FallingPoints", "1\t2\t3\t255\n1\t1\t4\t0\n0\t2\t5\t1\n0\t1\t6\t2\n"},
    Text{"Matrix", "1;2;3;\r\n4;;6;\r\n"},
    Text{"OneColumn", "\xef\xbb\xbf"
                      "+1\n2e3\n\"3\"\n"},
    Text{"Large", "1e308 -1e308\n-1e308 1e308\n1e-320 0\n2e999 1\n"}};

void Write(const Support::SeedFolder& folder)
{
    for (std::size_t options = 0; options < csvOptionCases.size(); ++options)
    {
        for (const Text& text : texts)
        {
            folder.Write(text.name + std::to_string(options), static_cast<char>(options) + std::string(text.text));
        }
    }
}
} // namespace

int main(int argc, char** argv)
{
    return Support::WriteSeeds(argc, argv, Write);
}
