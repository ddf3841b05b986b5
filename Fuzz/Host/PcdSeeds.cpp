#include <Host/CloudTestFiles.h>
#include <Support/Seeds.h>

#include <cstdint>

// Writes first inputs of the fuzzer of PCD: each kind of data, organised and not, with colour and intensity.
//
//     PcdSeeds FOLDER

namespace
{
using Mu::Host::Testing::NumberBytes;
using Mu::Host::Testing::PackedWithLzf;

std::string Header(const std::string& fields, const std::string& size, const std::string& data)
{
    return "# .PCD v.7\nVERSION .7\n" + fields + size + "VIEWPOINT 0 0 0 1 0 0 0\nDATA " + data + "\n";
}

std::string Packed(const std::string& bytes)
{
    const std::string packed = PackedWithLzf(bytes);
    return NumberBytes(static_cast<std::uint32_t>(packed.size()), static_cast<std::uint32_t>(bytes.size())) + packed;
}

void Write(const Support::SeedFolder& folder)
{
    const std::string xyz = "FIELDS x y z\nSIZE 4 4 4\nTYPE F F F\nCOUNT 1 1 1\n";
    const std::string square = "WIDTH 2\nHEIGHT 2\nPOINTS 4\n";
    const std::string list = "WIDTH 4\nHEIGHT 1\n";
    const std::string text = "0 0 1\n1 0 nan\n0 1 -2.5e1\n1 1 3\n";
    const std::string bytes = NumberBytes(0.F, 0.F, 1.F, 1.F, 0.F, 5.F, 0.F, 1.F, 2.F, 1.F, 1.F, 3.F);
    folder.Write("ascii", Header(xyz, square, "ascii") + text);
    folder.Write("ascii_list", Header(xyz, list, "ascii") + text);
    folder.Write("binary", Header(xyz, square, "binary") + bytes);
    folder.Write("binary_list", Header(xyz, list, "binary") + bytes);
    folder.Write("packed", Header(xyz, square, "binary_compressed") + Packed(bytes));
    folder.Write("old", "COLUMNS x y z\nPOINTS 4\nDATA ascii\n" + text);
    const std::string colours = "FIELDS x y z rgb\nSIZE 4 4 4 4\nTYPE F F F U\n";
    folder.Write("colours", Header(colours, "WIDTH 1\nHEIGHT 1\n", "binary") + NumberBytes(1.F, 2.F, 3.F, 0xFF102030U));
    folder.Write("colours_ascii", Header(colours, "WIDTH 1\n", "ascii") + "1 2 3 4279246896\n");
    const std::string bytewise = "FIELDS x y z intensity _\nSIZE 1 1 2 1 1\nTYPE I U I U U\nCOUNT 1 1 1 1 3\n";
    folder.Write("bytes", Header(bytewise, square, "binary_compressed") + Packed(std::string(32, '\1')));
    const std::string wide = "FIELDS x intensity y z a\nSIZE 8 4 8 8 8\nTYPE F F I U F\n";
    folder.Write("wide", Header(wide, "WIDTH 1\nHEIGHT 1\n", "binary") +
                             NumberBytes(1.5, 0.5F, std::int64_t{-2}, std::uint64_t{3}, 7.0));
}
} // namespace

int main(int argc, char** argv)
{
    return Support::WriteSeeds(argc, argv, Write);
}
