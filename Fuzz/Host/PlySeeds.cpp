#include <Host/CloudTestFiles.h>
#include <Support/Seeds.h>

#include <cstdint>

// Writes first inputs of the fuzzer of PLY: each format, with lists, colours and other elements.
//
//     PlySeeds FOLDER

namespace
{
using Mu::Host::Testing::NumberBytes;

std::string Header(const std::string& format, const std::string& elements)
{
    return "ply\nformat " + format + " 1.0\n" + elements + "end_header\n";
}

template <std::endian order>
std::string FacesAndPoints()
{
    return NumberBytes<order>(std::uint8_t{3}, 0, 1, 0, std::uint8_t{0}) +
           NumberBytes<order>(0.F, 0.F, 1.F, std::uint8_t{7}, 1.F, 0.F, 2.F, std::uint8_t{8});
}

void Write(const Support::SeedFolder& folder)
{
    const std::string points = "element vertex 2\nproperty float x\nproperty float y\nproperty float z\n";
    const std::string faces = "element face 2\nproperty list uchar int vertex_indices\n";
    const std::string all = faces + points + "property uchar intensity\n";
    folder.Write("ascii", Header("ascii", points + faces) + "0 0 1\n1 0 -2.5e1\n3 0 1 0\n0\n");
    folder.Write("ascii_faces_first", Header("ascii", all) + "3 0 1 0\n0\n0 0 1 7\n1 0 2 8\n");
    folder.Write("little", Header("binary_little_endian", all) + FacesAndPoints<std::endian::little>());
    folder.Write("big", Header("binary_big_endian", all) + FacesAndPoints<std::endian::big>());
    const std::string colours = points + "property uchar red\nproperty uchar green\nproperty uchar blue\n";
    folder.Write("colours", Header("ascii", colours) + "0 0 1 1 2 3\n0 1 nan 4 5 6\n");
    const std::string lists = "element vertex 1\nproperty double x\nproperty list char ushort a\nproperty short y\n"
                              "property uint z\nproperty float scalar_Intensity\n";
    folder.Write("lists", Header("binary_little_endian", lists) + NumberBytes(1.0, std::int8_t{2}, std::uint16_t{1},
                                                                              std::uint16_t{2}, std::int16_t{-3},
                                                                              std::uint32_t{4}, 0.5F));
    folder.Write("lists_ascii", Header("ascii", lists) + "1 2 1 2 -3 4 0.5\n");
    folder.Write("returns", "ply\rformat ascii 1.0\robj_info a\relement vertex 1\rproperty char x\rproperty char y\r"
                            "property char z\rend_header\r1 2 3\r");
}
} // namespace

int main(int argc, char** argv)
{
    return Support::WriteSeeds(argc, argv, Write);
}
