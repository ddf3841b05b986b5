#include <Host/PlyReader.h>

#include "CloudTestFiles.h"
#include "ScanTestFiles.h"

#include <cmath>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Bytes = std::vector<std::uint8_t>;

class PlyReader : public testing::Test
{
protected:
    HeightMap Read(std::string_view bytes)
    {
        WriteBytes(file, bytes);
        CloudOptions options;
        options.spacingMm = {1, 1};
        return std::get<HeightMap>(ReadPly(file, options));
    }

    /// The message, which names the file.
    std::string ErrorIn(std::string_view bytes)
    {
        const std::string message = ErrorOf([&] { return Read(bytes); });
        EXPECT_TRUE(Contains(message, file.string() + ": "));
        return message;
    }

    static std::string Header(std::string_view format, std::string_view elements)
    {
        return "ply\nformat " + std::string(format) + " 1.0\ncomment by hand\n" + std::string(elements) +
               "end_header\n";
    }

    /// Heights 1 and 2 at x = 0 and 1, y = 0.
    static void ExpectTwoHeights(const HeightMap& map)
    {
        ASSERT_EQ(map.width, 2u);
        ASSERT_EQ(map.length, 1u);
        EXPECT_NEAR(HeightMm(map, 0, 0), 1, 1e-4);
        EXPECT_NEAR(HeightMm(map, 1, 0), 2, 1e-4);
    }

    const std::string twoVertices = "element vertex 2\nproperty float x\nproperty float y\nproperty float z\n";

    TemporaryFolder folder;
    std::filesystem::path file = folder / "cloud.ply";
};

TEST_F(PlyReader, Text_and_binary_points_of_both_byte_orders_give_the_same_heights)
{
    ExpectTwoHeights(Read(Header("ascii", twoVertices) + "0 0 1\n1 0 2\n"));
    ExpectTwoHeights(Read(Header("binary_little_endian", twoVertices) + NumberBytes(0.F, 0.F, 1.F, 1.F, 0.F, 2.F)));
    ExpectTwoHeights(
        Read(Header("binary_big_endian", twoVertices) + NumberBytes<std::endian::big>(0.F, 0.F, 1.F, 1.F, 0.F, 2.F)));
}

template <std::endian order>
std::string OneOfEachType()
{
    return NumberBytes<order>(std::int8_t{-1}, std::uint8_t{200}, std::int16_t{-300}, std::uint16_t{60000},
                              std::int32_t{-70000}, std::uint32_t{4000000000U}, 0.5F, -0.25);
}

TEST_F(PlyReader, Every_type_of_number_is_read_by_both_of_its_names)
{
    const std::array<std::array<std::string, 8>, 2> names{
        {{"char", "uchar", "short", "ushort", "int", "uint", "float", "double"},
         {"int8", "uint8", "int16", "uint16", "int32", "uint32", "float32", "float64"}}};
    const double values[] = {-1, 200, -300, 60000, -70000, 4e9, 0.5, -0.25};
    for (const auto& types : names)
    {
        for (std::size_t asX = 0; asX < 8; ++asX)
        {
            std::string element = "element vertex 1\n";
            for (std::size_t i = 0; i < 8; ++i)
            {
                const std::size_t role = (i + 8 - asX) % 8;
                element +=
                    "property " + types[i] + " " + (role < 3 ? std::string(1, "xyz"[role]) : "n" + types[i]) + "\n";
            }
            const Vector3 expected{std::floor(values[asX] + 0.5), std::floor(values[(asX + 1) % 8] + 0.5),
                                   values[(asX + 2) % 8]};
            EXPECT_EQ(Read(Header("binary_little_endian", element) + OneOfEachType<std::endian::little>()).offsetMm,
                      expected);
            EXPECT_EQ(Read(Header("binary_big_endian", element) + OneOfEachType<std::endian::big>()).offsetMm,
                      expected);
        }
    }
}

TEST_F(PlyReader, Faces_after_the_points_are_ignored_and_told)
{
    const std::string elements = twoVertices + "element face 2\nproperty list uchar int vertex_indices\n";
    const auto map = Read(Header("ascii", elements) + "0 0 1\n1 0 2\n3 0 1 0\n0\n");
    ExpectTwoHeights(map);
    EXPECT_TRUE(HasNote(map, "Element \"face\" with 2 entries was ignored."));
}

TEST_F(PlyReader, Elements_before_the_points_are_passed_over)
{
    const std::string elements = "element camera 1\nproperty double cx\nproperty short id\n"
                                 "element face 2\nproperty list uchar int vertex_indices\nproperty char flag\n"
                                 "element nothing 0\n" +
                                 twoVertices;
    ExpectTwoHeights(Read(Header("ascii", elements) + "7 8\n3 9 9 9 1\n0 1\n0 0 1\n1 0 2\n"));
    ExpectTwoHeights(Read(Header("binary_little_endian", elements) +
                          NumberBytes(7.0, std::int16_t{8}, std::uint8_t{3}, 9, 9, 9, std::int8_t{1}, std::uint8_t{0},
                                      std::int8_t{1}, 0.F, 0.F, 1.F, 1.F, 0.F, 2.F)));
    ExpectTwoHeights(
        Read(Header("binary_big_endian", elements) +
             NumberBytes<std::endian::big>(7.0, std::int16_t{8}, std::uint8_t{3}, 9, 9, 9, std::int8_t{1},
                                           std::uint8_t{0}, std::int8_t{1}, 0.F, 0.F, 1.F, 1.F, 0.F, 2.F)));
}

TEST_F(PlyReader, Lists_among_the_properties_of_points_are_passed_over)
{
    const std::string elements = "element vertex 2\nproperty float x\nproperty list uint8 uint16 tags\n"
                                 "property float y\nproperty float z\nproperty list int char more\n";
    const auto map = Read(Header("ascii", elements) + "0 2 7 7 0 1 0\n1 0 0 2 1 9\n");
    ExpectTwoHeights(map);
    EXPECT_TRUE(HasNote(map, R"(Fields that were ignored: "tags", "more".)"));
    const std::uint16_t tag = 7;
    ExpectTwoHeights(Read(Header("binary_little_endian", elements) +
                          NumberBytes(0.F, std::uint8_t{2}, tag, tag, 0.F, 1.F, 0) +
                          NumberBytes(1.F, std::uint8_t{0}, 0.F, 2.F, 1, std::int8_t{9})));
}

TEST_F(PlyReader, Header_may_end_its_lines_in_three_ways)
{
    const std::string text = Header("ascii", twoVertices) + "0 0 1\n1 0 2\n";
    const std::string binary = Header("binary_little_endian", twoVertices);
    const std::string points = NumberBytes(0.F, 0.F, 1.F, 1.F, 0.F, 2.F);
    for (const char* const end : {"\n", "\r\n", "\r"})
    {
        const auto withEnds = [end](const std::string& lines) {
            std::string result;
            for (const char character : lines)
            {
                result += character == '\n' ? std::string(end) : std::string(1, character);
            }
            return result;
        };
        ExpectTwoHeights(Read(withEnds(text)));
        ExpectTwoHeights(Read(withEnds(binary) + points));
    }
}

TEST_F(PlyReader, Colours_and_intensities_are_taken)
{
    const auto element = [](std::string_view properties) {
        return "element vertex 2\nproperty float x\nproperty float y\nproperty float z\n" + std::string(properties);
    };
    // 0.299 * 200 + 0.587 * 100 + 0.114 * 50 = 124.2
    const auto colours =
        Read(Header("ascii", element("property uchar red\nproperty uchar green\nproperty uchar blue\n")) +
             "0 0 1 200 100 50\n1 0 2 300 999 255\n");
    EXPECT_EQ(colours.intensity, (Bytes{124, 255}));
    const auto scalars = Read(Header("ascii", element("property float scalar_Intensity\n")) + "0 0 1 10\n1 0 2 30\n");
    EXPECT_EQ(scalars.intensity, (Bytes{0, 255}));
    const auto bytes =
        Read(Header("binary_big_endian", element("property uchar intensity\n")) +
             NumberBytes<std::endian::big>(0.F, 0.F, 1.F, std::uint8_t{17}, 1.F, 0.F, 2.F, std::uint8_t{9}));
    EXPECT_EQ(bytes.intensity, (Bytes{17, 9}));
    const auto floats =
        Read(Header("ascii", element("property float red\nproperty float green\nproperty float blue\n")) +
             "0 0 1 1 1 1\n1 0 2 0 0 0\n");
    EXPECT_TRUE(floats.intensity.empty());
    EXPECT_TRUE(HasNote(floats, R"("red", "green", "blue")"));
}

TEST_F(PlyReader, Points_without_a_grid_are_refused_before_they_are_read)
{
    WriteBytes(file, Header("ascii", twoVertices));
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadPly(file, {}); }), "\"spacing\": the points are not in rows"));
}

struct Fault
{
    const char* from;
    const char* to;
    const char* message;
};

TEST_F(PlyReader, Faults_of_the_header_are_told_with_their_place)
{
    const Fault faults[] = {
        {"ply\n", "plyx\n", "line 1: the line is not \"ply\""},
        {"format ascii 1.0", "format text 1.0", "line 2: \"format\": \"text\" is not a usable value"},
        {"format ascii 1.0", "format ascii 2.0", "line 2: \"format\": \"2.0\" is not a usable value"},
        {"format ascii 1.0", "format ascii", "line 2: \"format\" has 1 values in place of 2"},
        {"format ascii 1.0\n", "", "line 7: the header ends without a format"},
        {"comment by hand", "format ascii 1.0", "line 3: a second format"},
        {"comment by hand", "property float x", "line 3: a property before any element"},
        {"comment by hand", "remark", "line 3: \"remark\" is no entry of a PLY header"},
        {"element vertex 2", "element vertex -2", "line 4: \"element\": \"-2\" is not a usable value"},
        {"element vertex 2", "element vertex 99999999999999999999", "line 4: \"element\": "},
        {"element vertex 2", "element vertex", "line 4: \"element\" has 1 values in place of 2"},
        {"element vertex 2", "element vertex 0", "element vertex: a scan of 0 x 1 samples is empty"},
        {"element vertex 2", "element vertex 268435457", "element vertex: 268435457 points are too many"},
        {"element vertex 2", "element vertex 4\nelement vertex 2", "line 5: a second element \"vertex\""},
        {"element vertex 2", "element point 2", "header: there is no element \"vertex\""},
        {"element vertex 2", "element empty 3\nelement vertex 2", "header: element \"empty\" has no properties"},
        {"property float z", "property half z", "line 7: \"property\": \"half\" is not a usable value"},
        {"property float z", "property float", "line 7: \"property\" has 1 values in place of 2"},
        {"property float z", "property", "line 7: \"property\" has 0 values in place of 2"},
        {"property float z", "property list uchar z", "line 7: \"property\" has 3 values in place of 4"},
        {"property float z", "property list float int z", "line 7: \"property\": \"float\" is not a usable value"},
        {"property float z", "property list uchar int z", "header: points have no field \"z\" of one number"},
        {"property float z", "property float y", "header: there are two fields \"y\""},
        {"property float z", "property float w", "header: points have no field \"z\" of one number"},
    };
    const std::string whole = Header("ascii", twoVertices) + "0 0 1\n1 0 2\n";
    for (const auto& [from, to, message] : faults)
    {
        EXPECT_TRUE(Contains(ErrorIn(Replaced(whole, from, to)), message)) << to;
    }
    EXPECT_TRUE(Contains(ErrorIn("ply\nformat ascii 1.0\n"), "line 3: the PLY header has no end"));
}

TEST_F(PlyReader, Truncated_points_and_elements_are_refused)
{
    const std::string binary = Header("binary_little_endian", twoVertices);
    EXPECT_TRUE(
        Contains(ErrorIn(binary + NumberBytes(0.F, 0.F, 1.F, 1.F, 0.F)), "header: 2 points cannot stand in 20 bytes"));
    EXPECT_TRUE(Contains(ErrorIn(Header("ascii", twoVertices) + "0 0 1\n\n\n\n\n\n\n"), "the file ends before all"));
    const std::string huge = "element face 18446744073709551615\nproperty int a\nproperty int b\n" + twoVertices;
    EXPECT_TRUE(Contains(ErrorIn(Header("binary_little_endian", huge) + "12345678"), "bytes are missing here"));
    EXPECT_TRUE(Contains(ErrorIn(Header("ascii", huge) + "1 2\n"), "the file ends before all"));
    const std::string lists = "element face 1000000000\nproperty list uint double a\n" + twoVertices;
    EXPECT_TRUE(
        Contains(ErrorIn(Header("binary_little_endian", lists) + NumberBytes(0xFFFFFFFFU)), "bytes are missing here"));
    EXPECT_TRUE(Contains(ErrorIn(Header("binary_little_endian", lists) + std::string(40, '\0')),
                         "4 bytes are missing here, the file has 0 more"));
}

TEST_F(PlyReader, Lists_of_negative_length_are_refused)
{
    const std::string elements = twoVertices + "property list char int tags\n";
    EXPECT_TRUE(
        Contains(ErrorIn(Header("ascii", elements) + "0 0 1 -1\n1 0 2 0\n"), "line 10: a list cannot have -1 items"));
    EXPECT_TRUE(
        Contains(ErrorIn(Header("ascii", elements) + "0 0 1 nan\n1 0 2 0\n"), "line 10: a list cannot have nan items"));
    EXPECT_TRUE(Contains(ErrorIn(Header("ascii", elements) + "0 0 1 3 1 1\n1 0 2 0\n"), "line 10: the line has fewer"));
    EXPECT_TRUE(Contains(ErrorIn(Header("binary_little_endian", elements) +
                                 NumberBytes(0.F, 0.F, 1.F, std::int8_t{-2}, 1.F, 0.F, 2.F, std::int8_t{0})),
                         "a list cannot have -2 items"));
}

TEST_F(PlyReader, Blocks_of_the_file_do_not_show)
{
    // More than a block in text and in bytes, so that lines and points lie across its ends.
    constexpr int count = 100000;
    const std::string element = Replaced(twoVertices, "vertex 2", "vertex " + std::to_string(count));
    std::string text = Header("ascii", element);
    std::string binary = Header("binary_little_endian", element);
    for (int i = 0; i < count; ++i)
    {
        const int height = i % 1000;
        text += std::to_string(i % 300) + " " + std::to_string(i / 300) + " " + std::to_string(height) + "\n";
        binary += NumberBytes(static_cast<float>(i % 300), static_cast<float>(i / 300), static_cast<float>(height));
    }
    for (const std::string& bytes : {text, binary})
    {
        const auto map = Read(bytes);
        ASSERT_EQ(map.width, 300u);
        ASSERT_EQ(map.validCount, 100000u);
        for (std::size_t i = 0; i < count; ++i)
        {
            ASSERT_NEAR(HeightMm(map, i % 300, i / 300), static_cast<double>(i % 1000), 0.01);
        }
    }
}
} // namespace
