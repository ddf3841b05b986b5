#include <Host/PcdReader.h>

#include "CloudTestFiles.h"
#include "ScanTestFiles.h"

#include <clocale>
#include <cmath>
#include <limits>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using Bytes = std::vector<std::uint8_t>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

CloudOptions OnGrid()
{
    CloudOptions options;
    options.spacingMm = {1, 1};
    return options;
}

class PcdReader : public testing::Test
{
protected:
    /// Two columns and two rows of points with x, y and z.
    static std::string SmallHeader(std::string_view data)
    {
        return "# .PCD v.7 - Point Cloud Data file format\nVERSION .7\nFIELDS x y z\nSIZE 4 4 4\nTYPE F F F\n"
               "COUNT 1 1 1\nWIDTH 2\nHEIGHT 2\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS 4\nDATA " +
               std::string(data) + "\n";
    }

    Scan Read(std::string_view bytes, const CloudOptions& options = {})
    {
        WriteBytes(file, bytes);
        return ReadPcd(file, options);
    }

    PointMap ReadSurface(std::string_view bytes)
    {
        return std::get<PointMap>(Read(bytes));
    }

    HeightMap ReadGrid(std::string_view bytes)
    {
        return std::get<HeightMap>(Read(bytes, OnGrid()));
    }

    /// The message, which names the file.
    std::string ErrorIn(std::string_view bytes)
    {
        const std::string message = ErrorOf([&] { return Read(bytes, OnGrid()); });
        EXPECT_TRUE(Contains(message, file.string() + ": "));
        return message;
    }

    /// The points of a surface of two by two: (0, 0, 1), (1, 0, null), (0, 1, 2), (1, 1, 3).
    static void ExpectSmallSurface(const PointMap& map)
    {
        ASSERT_EQ(map.width, 2u);
        ASSERT_EQ(map.length, 2u);
        EXPECT_EQ(map.validCount, 3u);
        EXPECT_NEAR(PlaceMm(map, 0, 0).z, 1, 1e-4);
        EXPECT_TRUE(IsNull(map, 1, 0));
        EXPECT_NEAR(PlaceMm(map, 0, 1).y, 1, 1e-4);
        EXPECT_NEAR(PlaceMm(map, 1, 1).x, 1, 1e-4);
        EXPECT_NEAR(PlaceMm(map, 1, 1).z, 3, 1e-4);
    }

    const std::string asciiPoints = "0 0 1\n1 0 nan\n0 1 2\n1 1 3\n";
    const std::string binaryPoints = NumberBytes(0.F, 0.F, 1.F, 1.F, 0.F, nan, 0.F, 1.F, 2.F, 1.F, 1.F, 3.F);
    const std::string columns = NumberBytes(0.F, 1.F, 0.F, 1.F, 0.F, 0.F, 1.F, 1.F, 1.F, nan, 2.F, 3.F);

    TemporaryFolder folder;
    std::filesystem::path file = folder / "cloud.pcd";
};

std::string Compressed(std::string_view bytes)
{
    const std::string packed = PackedWithLzf(bytes);
    return NumberBytes(static_cast<std::uint32_t>(packed.size()), static_cast<std::uint32_t>(bytes.size())) + packed;
}

TEST_F(PcdReader, Text_binary_and_packed_points_give_the_same_surface)
{
    ExpectSmallSurface(ReadSurface(SmallHeader("ascii") + asciiPoints));
    ExpectSmallSurface(ReadSurface(SmallHeader("binary") + binaryPoints));
    ExpectSmallSurface(ReadSurface(SmallHeader("binary_compressed") + Compressed(columns)));
}

TEST_F(PcdReader, Real_cloud_has_the_published_facts)
{
    CloudOptions options;
    options.mmPerUnit = 1000;
    const auto map = std::get<PointMap>(ReadPcd(ExampleScan("table_scene_mug_stereo_textured.pcd"), options));
    ASSERT_EQ(map.width, 640u);
    ASSERT_EQ(map.length, 480u);
    EXPECT_EQ(map.validCount, 307200u - 97920u);
    EXPECT_EQ(map.intensity.size(), 307200u);
    std::size_t nearPoints = 0;
    std::vector<double> distances;
    for (std::size_t i = 0; i < map.points.size(); ++i)
    {
        const Vector3 place = IsNull(map, i % 640, i / 640) ? Vector3{0, 0, -1} : PlaceMm(map, i % 640, i / 640);
        if (place.z >= 0 && place.z <= 1500)
        {
            ++nearPoints;
            const double distance = std::abs(-0.0161854 * place.x + 0.837724 * place.y + 0.545855 * place.z - 528.787);
            distances.insert(distances.end(), distance <= 30 ? 1 : 0, distance);
        }
    }
    EXPECT_EQ(nearPoints, 139897u);
    // Rounding to 0.03 mm may move a few points over the bound.
    EXPECT_NEAR(static_cast<double>(distances.size()), 126097, 30);
    std::ranges::nth_element(distances, distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2));
    EXPECT_NEAR(distances[distances.size() / 2], 0.52, 0.02);
}

TEST_F(PcdReader, List_of_points_goes_onto_a_grid)
{
    const auto map = ReadGrid("VERSION 0.7\nFIELDS x y z\nSIZE 4 4 4\nTYPE F F F\nCOUNT 1 1 1\nWIDTH 3\nHEIGHT 1\n"
                              "POINTS 3\nDATA ascii\n0 0 1\n2 0 2\n2.2 0.1 4\n");
    EXPECT_EQ(map.width, 3u);
    EXPECT_EQ(map.length, 1u);
    EXPECT_EQ(map.validCount, 2u);
    EXPECT_NEAR(HeightMm(map, 2, 0), 4, 1e-4);
}

TEST_F(PcdReader, Every_type_of_number_is_read)
{
    const std::string header = "VERSION .7\nFIELDS a x b c y d e z f\nSIZE 1 2 1 2 8 4 8 8 4\nTYPE I U U I F U I U I\n"
                               "WIDTH 1\nHEIGHT 1\nDATA binary\n";
    const auto map =
        ReadGrid(header + NumberBytes(std::int8_t{-1}, std::uint16_t{65535}, std::uint8_t{1}, std::int16_t{1}, -2.5e3,
                                      std::uint32_t{1}, std::int64_t{1}, std::uint64_t{1000000}, std::int32_t{1}));
    EXPECT_EQ(map.offsetMm, (Vector3{65535, -2500, 1000000}));
    const auto others = ReadGrid("VERSION .7\nFIELDS x y z\nSIZE 1 2 4\nTYPE I I I\nWIDTH 1\nHEIGHT 1\nDATA binary\n" +
                                 NumberBytes(std::int8_t{-7}, std::int16_t{-300}, std::int32_t{-70000}));
    EXPECT_EQ(others.offsetMm, (Vector3{-7, -300, -70000}));
}

TEST_F(PcdReader, Fields_of_several_numbers_are_passed_over)
{
    const std::string header = "VERSION .7\nFIELDS _ x histogram y z\nSIZE 1 4 4 4 4\nTYPE U F F F F\nCOUNT 3 1 2 1 1\n"
                               "WIDTH 1\nHEIGHT 1\nDATA ";
    const Vector3 expected{5, 6, 7};
    const auto ascii = ReadGrid(header + "ascii\n1 2 3 5 8 9 6 7\n");
    EXPECT_EQ(ascii.offsetMm, expected);
    EXPECT_TRUE(HasNote(ascii, R"(Fields that were ignored: "_", "histogram".)"));
    const std::string bytes = "abc" + NumberBytes(5.F, 8.F, 9.F, 6.F, 7.F);
    EXPECT_EQ(ReadGrid(header + "binary\n" + bytes).offsetMm, expected);
    EXPECT_EQ(ReadGrid(header + "binary_compressed\n" + Compressed(bytes)).offsetMm, expected);
}

TEST_F(PcdReader, Old_header_needs_no_types_and_no_width)
{
    const auto map = ReadGrid("# an early file\nCOLUMNS x y z\nPOINTS 2\nDATA ascii\n0 0 1\n1 0 2\n");
    EXPECT_EQ(map.validCount, 2u);
    EXPECT_EQ(ReadGrid("FIELDS x y z\nWIDTH 2\nDATA binary\n" + NumberBytes(0.F, 0.F, 1.F, 1.F, 0.F, 2.F)).validCount,
              2u);
}

TEST_F(PcdReader, Line_ends_comments_blanks_and_empty_lines_do_not_matter)
{
    const auto map = ReadGrid("# one\r\n\r\n  VERSION\t.7\r\n#two\r\nFIELDS  x y z \r\nSIZE 4 4 4\r\nTYPE F F F\r\n"
                              "WIDTH 2\r\nHEIGHT 1\r\nDATA ascii\r\n\r\n 0\t0  1 \r\n\r\n1 0 2\r\n\r\n");
    EXPECT_EQ(map.validCount, 2u);
    EXPECT_NEAR(HeightMm(map, 1, 0), 2, 1e-4);
    ExpectSmallSurface(ReadSurface(SmallHeader("ascii") + asciiPoints.substr(0, asciiPoints.size() - 1)));
}

TEST_F(PcdReader, Numbers_are_read_as_they_are_usually_written)
{
    const auto map = ReadGrid("FIELDS x y z\nWIDTH 9\nDATA ascii\n0 0 +1.5\n1 0 -1.5E0\n2 0 .25\n3 0 1e-999\n"
                              "4 0 1e999\n5 0 -1e999\n6 0 -inf\n7 0 NaN\n8 0 Infinity\n");
    EXPECT_EQ(map.validCount, 4u);
    ASSERT_EQ(map.width, 4u);
    EXPECT_NEAR(HeightMm(map, 0, 0), 1.5, 1e-4);
    EXPECT_NEAR(HeightMm(map, 1, 0), -1.5, 1e-4);
    EXPECT_NEAR(HeightMm(map, 2, 0), 0.25, 1e-4);
    EXPECT_NEAR(HeightMm(map, 3, 0), 0, 1e-4);
}

TEST_F(PcdReader, Numbers_do_not_depend_on_the_locale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* const name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "C.UTF-8"})
    {
        std::setlocale(LC_ALL, name);
        EXPECT_NEAR(HeightMm(ReadGrid("FIELDS x y z\nWIDTH 1\nDATA ascii\n0 0 1.5\n"), 0, 0), 1.5, 1e-9) << name;
    }
    std::setlocale(LC_ALL, before.c_str());
}

TEST_F(PcdReader, Colours_become_their_luminance)
{
    // 0.299 * 200 + 0.587 * 100 + 0.114 * 50 = 124.2; of pure green 149.685.
    const std::uint32_t colour = 0xFFC86432U;
    const std::uint32_t green = 0x0000FF00U;
    const std::string header = "VERSION .7\nFIELDS x y z rgb\nSIZE 4 4 4 4\nWIDTH 2\nHEIGHT 1\n";
    const std::string points = NumberBytes(0.F, 0.F, 1.F, colour, 1.F, 0.F, 1.F, green);
    for (const char* type : {"F", "U", "I"})
    {
        const auto map = ReadGrid(header + "TYPE F F F " + type + "\nDATA binary\n" + points);
        EXPECT_EQ(map.intensity, (Bytes{124, 150})) << type;
        EXPECT_TRUE(HasNote(map, "Intensities are the luminance of rgb."));
    }
    // The float of the bits 0x4A646432 is 3741964.5; 0.299 * 100 + 0.587 * 100 + 0.114 * 50 = 94.3.
    EXPECT_EQ(ReadGrid(header + "TYPE F F F F\nDATA ascii\n0 0 1 3741964.5\n1 0 1 0\n").intensity, (Bytes{94, 0}));
    EXPECT_EQ(ReadGrid(header + "TYPE F F F U\nDATA ascii\n0 0 1 4291322930\n1 0 1 65280\n").intensity,
              (Bytes{124, 150}));
    EXPECT_EQ(ReadGrid(header + "TYPE F F F I\nDATA ascii\n0 0 1 -3644366\n1 0 1 1e30\n").intensity, (Bytes{124, 0}));
}

TEST_F(PcdReader, Intensities_are_spread_over_eight_bits_unless_they_have_these)
{
    const std::string header = "VERSION .7\nFIELDS x y z Intensity rgb\nSIZE 4 4 4 ";
    const auto bytes = ReadGrid(header + "1 4\nTYPE F F F U F\nWIDTH 2\nHEIGHT 1\nDATA ascii\n0 0 1 7 1\n1 0 1 90 1\n");
    EXPECT_EQ(bytes.intensity, (Bytes{7, 90}));
    EXPECT_TRUE(HasNote(bytes, R"(Fields that were ignored: "rgb")"));
    const auto floats = ReadGrid(header + "4 4\nTYPE F F F F F\nWIDTH 5\nHEIGHT 1\nDATA ascii\n"
                                          "0 0 1 -1 0\n1 0 1 0 0\n2 0 1 1 0\n3 0 1 nan 0\n4 0 1 1e300 0\n");
    // -1, 0 and 1 are 0, 127.5 and 255 of 255.
    EXPECT_EQ(floats.intensity, (Bytes{0, 128, 255, 0, 0}));
    EXPECT_TRUE(HasNote(floats, "Intensities from -1 to 1 became 0 to 255."));
    const auto none = ReadGrid(header + "4 4\nTYPE F F F F F\nWIDTH 1\nHEIGHT 1\nDATA ascii\n0 0 1 inf 0\n");
    EXPECT_EQ(none.intensity, (Bytes{0}));
    EXPECT_TRUE(HasNote(none, "No intensity is finite."));
}

TEST_F(PcdReader, View_point_unknown_entries_and_further_bytes_are_told)
{
    const std::string text = Replaced(SmallHeader("ascii"), "VIEWPOINT 0 0 0 1", "SENSOR 7\nVIEWPOINT 0 0 5 1");
    const auto map = ReadSurface(text + asciiPoints + "9 9 9\n");
    EXPECT_TRUE(HasNote(map, R"("SENSOR" in the header was ignored.)"));
    EXPECT_TRUE(HasNote(map, R"(The view point "0 0 5 1 0 0 0" was not applied.)"));
    EXPECT_TRUE(HasNote(map, "6 bytes after the last point were ignored."));
    EXPECT_FALSE(HasNote(ReadSurface(SmallHeader("ascii") + asciiPoints), "view point"));
}

struct HeaderFault
{
    const char* from;
    const char* to;
    const char* message;
};

TEST_F(PcdReader, Faults_of_the_header_are_told_with_their_place)
{
    const HeaderFault faults[] = {
        {"FIELDS x y z", "FIELDS x y w", "header: points have no field \"z\" of one number"},
        {"FIELDS x y z", "FIELDS x x y z", "header: SIZE has 3 values for 4 fields"},
        {"FIELDS x y z", "FIELDS x z z", "header: points have no field \"y\" of one number"},
        {"COUNT 1 1 1", "COUNT 1 1 2", "header: points have no field \"z\" of one number"},
        {"COUNT 1 1 1", "COUNT 1 1", "header: COUNT has 2 values for 3 fields"},
        {"COUNT 1 1 1", "COUNT 1 1 0", "line 6: \"COUNT\": \"0\" is not a usable value"},
        {"COUNT 1 1 1", "COUNT 1 1 1048577", "line 6: \"COUNT\": \"1048577\" is not a usable value"},
        {"SIZE 4 4 4", "SIZE 4 4 -4", "line 4: \"SIZE\": \"-4\" is not a usable value"},
        {"SIZE 4 4 4", "SIZE 4 4 3", "header: field \"z\": there is no type F of 3 bytes"},
        {"SIZE 4 4 4", "SIZE 4 4 2", "header: field \"z\": there is no type F of 2 bytes"},
        {"TYPE F F F", "TYPE F F Q", "header: field \"z\": there is no type Q of 4 bytes"},
        {"TYPE F F F", "TYPE F F Float", "line 5: \"TYPE\": \"Float\" is not a usable value"},
        {"WIDTH 2", "WIDTH -2", "line 7: \"WIDTH\": \"-2\" is not a usable value"},
        {"WIDTH 2", "WIDTH 2.5", "line 7: \"WIDTH\": \"2.5\" is not a usable value"},
        {"WIDTH 2", "WIDTH", "line 7: \"WIDTH\" has 0 values in place of 1"},
        {"WIDTH 2", "WIDTH 18446744073709551616", "line 7: \"WIDTH\": "},
        {"WIDTH 2", "WIDTH 0", "WIDTH, HEIGHT: a scan of 0 x 2 samples is empty"},
        {"WIDTH 2", "WIDTH 3", "POINTS: 4 points are not 3 x 2"},
        {"WIDTH 2", "WIDTH 18446744073709551615", "WIDTH, HEIGHT: 18446744073709551615 x 2 samples are too many"},
        {"WIDTH 2\n", "WIDTH 2\nWIDTH 2\n", "line 8: a second WIDTH in one header"},
        {"DATA ascii", "DATA zip", "DATA: \"zip\" is not known"},
        {"DATA ascii", "DATA", "line 11: \"DATA\" has 0 values in place of 1"},
    };
    for (const auto& [from, to, message] : faults)
    {
        EXPECT_TRUE(Contains(ErrorIn(Replaced(SmallHeader("ascii"), from, to) + asciiPoints), message)) << to;
    }
    const auto twice = Replaced(
        Replaced(Replaced(Replaced(SmallHeader("ascii"), "x y z", "x y z x"), "4 4 4", "4 4 4 4"), "F F F", "F F F F"),
        "1 1 1", "1 1 1 1");
    EXPECT_TRUE(Contains(ErrorIn(twice + asciiPoints), "header: there are two fields \"x\""));
    EXPECT_TRUE(Contains(ErrorIn("FIELDS x y z\nDATA ascii\n0 0 0\n"), "neither WIDTH nor POINTS"));
    EXPECT_TRUE(Contains(ErrorIn("VERSION .7\nFIELDS x y z\n"), "line 3: the PCD header has no end"));
}

TEST_F(PcdReader, Header_that_goes_on_is_given_up)
{
    EXPECT_TRUE(Contains(ErrorIn("FIELDS x y z\n# " + std::string(70000, 'x')), "line 2: the line has more than"));
    std::string comments = "FIELDS x y z\n";
    for (int i = 0; i < 7000; ++i)
    {
        comments += "# comment\n";
    }
    EXPECT_TRUE(Contains(ErrorIn(comments), "the PCD header goes on beyond 65536 bytes"));
}

struct TextFault
{
    const char* points;
    const char* message;
};

TEST_F(PcdReader, Faults_of_text_are_told_with_their_line)
{
    const TextFault faults[] = {
        {"0 0 1\n1 0\n0 1 2\n1 1 3\n", "line 13: the line has fewer values"},
        {"0 0 1\n1 0 1 1\n0 1 2\n1 1 3\n", "line 13: the line has more values"},
        {"0 0 1\n1 0 one\n0 1 2\n1 1 3\n", "line 13: \"one\" is not a number"},
        {"0 0 1\n1 0 1,5\n0 1 2\n1 1 3\n", "line 13: \"1,5\" is not a number"},
        {"0 0 1\n1 0 +-1\n0 1 2\n1 1 3\n", "line 13: \"+-1\" is not a number"},
        {"0 0 1\n1 0 0x10\n0 1 2\n1 1 3\n", "line 13: \"0x10\" is not a number"},
        {"0 0 1\n1 0 2\n0 1 2\n\n     \n\n", "line 18: the file ends before all"},
        {"0 0 1\n", "header: 4 points cannot stand in 6 bytes"},
    };
    for (const auto& [points, message] : faults)
    {
        EXPECT_TRUE(Contains(ErrorIn(SmallHeader("ascii") + points), message)) << points;
    }
    EXPECT_TRUE(Contains(ErrorIn(SmallHeader("ascii") + "0 0 1\n" + std::string(1100000, '1') + "\n"),
                         "line 13: the line has more than 1048576 bytes"));
}

TEST_F(PcdReader, Stated_counts_that_the_file_cannot_hold_are_refused_before_memory_is_asked_for)
{
    const auto huge = Replaced(Replaced(SmallHeader("binary"), "HEIGHT 2", "HEIGHT 1"), "WIDTH 2", "WIDTH 268435456");
    EXPECT_TRUE(Contains(ErrorIn(Replaced(huge, "POINTS 4", "POINTS 268435456") + binaryPoints),
                         "header: 268435456 points cannot stand in 48 bytes"));
    EXPECT_TRUE(Contains(ErrorIn(SmallHeader("binary") + binaryPoints.substr(0, 47)),
                         "header: 4 points cannot stand in 47 bytes"));
}

TEST_F(PcdReader, Faults_of_packed_points_are_told_with_their_byte)
{
    const std::string header = SmallHeader("binary_compressed");
    const std::string start = std::to_string(header.size());
    const std::string packed = PackedWithLzf(columns);
    const auto sizes = [](std::size_t packedSize, std::size_t size) {
        return NumberBytes(static_cast<std::uint32_t>(packedSize), static_cast<std::uint32_t>(size));
    };
    EXPECT_TRUE(Contains(ErrorIn(header + sizes(packed.size(), 47) + packed),
                         "byte " + start + ": 47 unpacked bytes are not 4 points of 12 bytes"));
    EXPECT_TRUE(Contains(ErrorIn(header + sizes(packed.size(), 52) + packed),
                         "byte " + start + ": 52 unpacked bytes are not 4 points of 12 bytes"));
    EXPECT_TRUE(Contains(ErrorIn(header + sizes(packed.size() + 1, 48) + packed), "bytes are missing here"));
    EXPECT_TRUE(Contains(ErrorIn(header + sizes(0xFFFFFFFFU, 48) + packed), "4294967295 bytes are missing here"));
    EXPECT_TRUE(Contains(ErrorIn(header + "\1\0\0"), "byte " + start + ": 4 bytes are missing here"));
    EXPECT_TRUE(Contains(ErrorIn(header + sizes(packed.size() - 4, 48) + packed), "the points cannot be unpacked: "));
    const std::string data = std::to_string(header.size() + 8);
    EXPECT_TRUE(Contains(ErrorIn(header + sizes(2, 48) + "\x20\x01"),
                         "byte " + data + ": the points cannot be unpacked: bytes are to be taken from before"));
}

TEST_F(PcdReader, Packed_bytes_that_cannot_hold_what_is_stated_are_refused_before_memory_is_asked_for)
{
    // 268,435,456 points of 12 bytes would be 3 GiB.
    std::string header = Replaced(SmallHeader("binary_compressed"), "WIDTH 2", "WIDTH 268435456");
    header = Replaced(Replaced(header, "HEIGHT 2", "HEIGHT 1"), "POINTS 4", "POINTS 268435456");
    EXPECT_TRUE(Contains(ErrorIn(header + NumberBytes(std::uint32_t{3}, std::uint32_t{3221225472U}) + "\1ab"),
                         "3 packed bytes cannot hold 3221225472 bytes"));
}

TEST(PcdStart, Is_known_by_its_comment_or_its_first_entry)
{
    for (const char* const start : {"# .PCD v.7 - Point Cloud Data file format\nVERSION", "#.PCD", "VERSION .7\nFIELDS",
                                    "\n# made by hand\r\n\r\n  VERSION 0.7\r\n", "# old\nCOLUMNS x y z\n", "FIELDS\tx"})
    {
        EXPECT_TRUE(IsPcd(start)) << start;
    }
    for (const char* const start :
         {"", "#", "# x, y, z\n1, 2, 3\n", "VERSIONS 1\n", "version .7", "x y z\n", "WIDTH 3\n", "ply\n", "# a\n# b"})
    {
        EXPECT_FALSE(IsPcd(start)) << start;
    }
}
} // namespace
