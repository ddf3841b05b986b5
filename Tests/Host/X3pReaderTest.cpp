#include <Host/X3pReader.h>

#include "ScanTestFiles.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

constexpr std::int16_t nullHeight = HeightMap::nullHeight;
using Heights = std::vector<std::int16_t>;

class X3pReader : public testing::Test
{
protected:
    /// Reads the archive that is made of these entries.
    HeightMap Read(const Entries& entries, zip_int32_t method = ZIP_CM_DEFLATE) const
    {
        return ReadX3p(WriteZip(file, entries, method));
    }

    std::string Refusal(const Entries& entries, zip_int32_t method = ZIP_CM_DEFLATE) const
    {
        const auto message = ErrorOf([&] { return Read(entries, method); });
        EXPECT_TRUE(message.starts_with(file.string() + ": ")) << message;
        return message;
    }

    /// The refusal of a 2 x 2 surface of floats with another piece of text in its description.
    std::string RefusalWith(std::string_view from, std::string_view to) const
    {
        return Refusal({{"main.xml", Replaced(X3pXml(2, 2, "D"), from, to)}, {"bindata/data.bin", FourDoubles()}});
    }

    static std::string FourDoubles()
    {
        return BytesOf(std::vector<double>{1e-6, 2e-6, 3e-6, 4e-6});
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "plate.x3p";
};

TEST_F(X3pReader, Real_scan_has_the_published_facts)
{
    const auto map = ReadX3p(ExampleScan("sample-land.x3p"));
    EXPECT_EQ(map.width, 918u);
    EXPECT_EQ(map.length, 256u);
    EXPECT_EQ(std::ranges::count(map.heights, nullHeight), 25292);
    EXPECT_EQ(map.validCount, 918u * 256u - 25292u);
    EXPECT_DOUBLE_EQ(map.scaleMm.x, 0.00258);
    EXPECT_DOUBLE_EQ(map.scaleMm.y, 0.00258);
    EXPECT_EQ(map.offsetMm.x, 0);
    EXPECT_EQ(map.offsetMm.y, 0);
    // The published range, -79.47 to 52.50 um, takes all counts.
    EXPECT_NEAR(map.offsetMm.z - 32767 * map.scaleMm.z, -0.07947, 0.000005);
    EXPECT_NEAR(map.offsetMm.z + 32767 * map.scaleMm.z, 0.05250, 0.000005);
    EXPECT_TRUE(HasNote(map, "main.xml/Record3/Mask was ignored"));
    EXPECT_TRUE(HasNote(map, "MD5"));
}

TEST_F(X3pReader, Integers_keep_their_counts_and_metres_become_millimetres)
{
    const auto map = Read({{"main.xml", X3pXml(3, 2, "I")},
                           {"bindata/data.bin", BytesOf(std::vector<std::int16_t>{-32767, 0, 1, 2, 3, 32767})}});
    EXPECT_EQ(map.width, 3u);
    EXPECT_EQ(map.length, 2u);
    EXPECT_EQ(map.heights, (Heights{-32767, 0, 1, 2, 3, 32767}));
    EXPECT_DOUBLE_EQ(map.scaleMm.x, 0.001);
    EXPECT_DOUBLE_EQ(map.scaleMm.y, 0.002);
    EXPECT_DOUBLE_EQ(map.scaleMm.z, 0.0005);
    EXPECT_DOUBLE_EQ(map.offsetMm.x, 0.003);
    EXPECT_DOUBLE_EQ(map.offsetMm.y, 0);
    EXPECT_DOUBLE_EQ(map.offsetMm.z, 0.001);

    const auto wide = Read(
        {{"main.xml", X3pXml(2, 1, "L")}, {"bindata/data.bin", BytesOf(std::vector<std::int32_t>{1000000, 1000007})}});
    EXPECT_NEAR(HeightMm(wide, 0, 0), 500.001, 1e-9);
    EXPECT_NEAR(HeightMm(wide, 1, 0), 500.0045, 1e-9);
}

TEST_F(X3pReader, Floats_are_metres)
{
    const auto asDouble = Read({{"main.xml", X3pXml(2, 2, "D")}, {"bindata/data.bin", FourDoubles()}});
    const auto asFloat = Read({{"main.xml", X3pXml(2, 2, "F")},
                               {"bindata/data.bin", BytesOf(std::vector<float>{1e-6F, 2e-6F, 3e-6F, 4e-6F})}});
    for (const auto* map : {&asDouble, &asFloat})
    {
        EXPECT_NEAR(HeightMm(*map, 0, 0), 0.001, 0.003 / 65000 / 2);
        EXPECT_NEAR(HeightMm(*map, 1, 0), 0.002, 0.003 / 65000 / 2);
        EXPECT_NEAR(HeightMm(*map, 0, 1), 0.003, 0.003 / 65000 / 2);
        EXPECT_NEAR(HeightMm(*map, 1, 1), 0.004, 0.003 / 65000 / 2);
    }
}

TEST_F(X3pReader, Increment_and_offset_apply_to_floats_too)
{
    const auto xml = Replaced(X3pXml(2, 2, "D"), "</DataType></CZ>",
                              "</DataType><Increment>+2</Increment><Offset> 1e-6 </Offset></CZ>");
    const auto map = Read({{"main.xml", xml}, {"bindata/data.bin", FourDoubles()}});
    EXPECT_NEAR(HeightMm(map, 0, 0), 0.003, 0.006 / 65000 / 2);
    EXPECT_NEAR(HeightMm(map, 1, 1), 0.009, 0.006 / 65000 / 2);
}

TEST_F(X3pReader, Floats_that_are_not_finite_are_invalid)
{
    using Limits = std::numeric_limits<double>;
    const double nan = Limits::quiet_NaN();
    const std::vector<double> samples{nan, 1, -Limits::infinity(), 2, Limits::infinity(), -nan};
    const auto map = Read({{"main.xml", X3pXml(3, 2, "D")}, {"bindata/data.bin", BytesOf(samples)}});
    EXPECT_EQ(map.heights, (Heights{nullHeight, -32767, nullHeight, 32767, nullHeight, nullHeight}));
    EXPECT_EQ(map.validCount, 2u);
}

TEST_F(X3pReader, Bits_of_the_valid_points_start_with_the_lowest)
{
    const auto xml =
        Replaced(X3pXml(5, 2, "I"), "</DataLink>", "<ValidPointsLink>bindata/valid.bin</ValidPointsLink></DataLink>");
    // Samples 0, 3 and 9 are valid; the six bits beyond the samples mean nothing.
    const auto map = Read({{"main.xml", xml},
                           {"bindata/data.bin", BytesOf(std::vector<std::int16_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9})},
                           {"bindata/valid.bin", "\x09\xfe"}});
    EXPECT_EQ(map.heights,
              (Heights{0, nullHeight, nullHeight, 3, nullHeight, nullHeight, nullHeight, nullHeight, nullHeight, 9}));
    EXPECT_EQ(map.validCount, 3u);
    EXPECT_TRUE(HasNote(map, "valid points"));
}

TEST_F(X3pReader, Valid_points_of_another_size_are_refused)
{
    const auto xml =
        Replaced(X3pXml(5, 2, "I"), "</DataLink>", "<ValidPointsLink>bindata/valid.bin</ValidPointsLink></DataLink>");
    for (const char* bits : {"", "1", "123", "1234567890"})
    {
        EXPECT_TRUE(Contains(
            Refusal({{"main.xml", xml}, {"bindata/data.bin", std::string(20, '\0')}, {"bindata/valid.bin", bits}}),
            "bindata/valid.bin: the entry has " + std::to_string(std::strlen(bits)) + " bytes"));
    }
}

TEST_F(X3pReader, Root_may_stand_in_a_name_space_or_in_none_and_so_may_its_children)
{
    const std::string data = BytesOf(std::vector<std::int16_t>{1, 2});
    const std::string start = "<p:ISO5436_2 xmlns:p=\"http://www.opengps.eu/2008/ISO5436_2\">";
    const std::string plain = Replaced(Replaced(X3pXml(2, 1, "I"), start, "<ISO5436>"), "</p:ISO5436_2>", "</ISO5436>");
    const std::string prefixed =
        Replaced(Replaced(X3pXml(2, 1, "I"), "<Record3>", "<p:Record3>"), "</Record3>", "</p:Record3>");
    const std::string byteOrderMark = "\xef\xbb\xbf" + X3pXml(2, 1, "I");
    for (const std::string& xml : {plain, prefixed, byteOrderMark})
    {
        EXPECT_EQ(Read({{"main.xml", xml}, {"bindata/data.bin", data}}).heights, (Heights{1, 2})) << xml;
    }
}

TEST_F(X3pReader, Scan_in_a_subfolder_is_found_beside_what_macOS_adds)
{
    const std::string data = BytesOf(std::vector<std::int16_t>{1, 2});
    const auto map = Read({{"__MACOSX/plate/main.xml", "shadow"},
                           {"plate/.DS_Store", "x"},
                           {"plate/._main.xml", "shadow"},
                           {"plate/main.xml", X3pXml(2, 1, "I")},
                           {"plate/bindata/data.bin", data}});
    EXPECT_EQ(map.heights, (Heights{1, 2}));
}

TEST_F(X3pReader, Stored_entries_and_links_from_here_are_read)
{
    const auto xml = Replaced(X3pXml(2, 1, "I"), "bindata/data.bin", "./bindata/data.bin");
    const auto map =
        Read({{"main.xml", xml}, {"bindata/data.bin", BytesOf(std::vector<std::int16_t>{1, 2})}}, ZIP_CM_STORE);
    EXPECT_EQ(map.heights, (Heights{1, 2}));
}

TEST_F(X3pReader, Unknown_records_are_noted)
{
    const auto xml = Replaced(X3pXml(2, 2, "D"), "</Axes>", "<Rotation>1</Rotation></Axes>");
    const auto map = Read({{"main.xml", xml}, {"bindata/data.bin", FourDoubles()}});
    EXPECT_TRUE(HasNote(map, "main.xml/Record1/Axes/Rotation was ignored"));
}

struct WrongText
{
    const char* from;
    const char* to;
    const char* place;
};

TEST_F(X3pReader, Wrong_descriptions_are_refused_by_the_element)
{
    const WrongText cases[] = {
        {"SUR", "PRF", "main.xml/Record1/FeatureType: \"PRF\" is not usable"},
        {"SUR", "PCL", "main.xml/Record1/FeatureType"},
        {"<FeatureType>SUR</FeatureType>", "", "main.xml/Record1/FeatureType: the element is missing"},
        {"<CX><AxisType>I", "<CX><AxisType>A", "main.xml/Record1/Axes/CX/AxisType"},
        {"<CY><AxisType>I", "<CY><AxisType>A", "main.xml/Record1/Axes/CY/AxisType"},
        {"<CZ><AxisType>A", "<CZ><AxisType>I", "main.xml/Record1/Axes/CZ/AxisType"},
        {"<DataType>D</DataType></CZ>", "<DataType>Q</DataType></CZ>", "main.xml/Record1/Axes/CZ/DataType: \"Q\""},
        {"<DataType>D</DataType></CZ>", "</CZ>", "main.xml/Record1/Axes/CZ/DataType: the element is missing"},
        {"<DataType>D</DataType></CZ>", "<DataType>L</DataType></CZ>", "main.xml/Record1/Axes/CZ/Increment"},
        {"<Increment>1e-6", "<Increment>0", "main.xml/Record1/Axes/CX/Increment: \"0\""},
        {"<Increment>1e-6", "<Increment>-1e-6", "main.xml/Record1/Axes/CX/Increment"},
        {"<Increment>1e-6", "<Increment>nan", "main.xml/Record1/Axes/CX/Increment"},
        {"<Increment>1e-6", "<Increment>inf", "main.xml/Record1/Axes/CX/Increment"},
        {"<Increment>1e-6", "<Increment>1e308", "main.xml/Record1/Axes/CX/Increment"},
        {"<Increment>1e-6", "<Increment>1e-6 m", "main.xml/Record1/Axes/CX/Increment"},
        {"<Increment>1e-6", "<Increment>0,1", "main.xml/Record1/Axes/CX/Increment"},
        {"<Increment>2e-6</Increment>", "", "main.xml/Record1/Axes/CY/Increment: the element is missing"},
        {"<Offset>3e-6", "<Offset>here", "main.xml/Record1/Axes/CX/Offset"},
        {"<SizeX>2", "<SizeX>", "main.xml/Record3/MatrixDimension/SizeX"},
        {"<SizeX>2", "<SizeX>2.0", "main.xml/Record3/MatrixDimension/SizeX"},
        {"<SizeX>2", "<SizeX>-2", "main.xml/Record3/MatrixDimension/SizeX"},
        {"<SizeX>2", "<SizeX>99999999999999999999", "main.xml/Record3/MatrixDimension/SizeX"},
        {"<SizeX>2", "<SizeX>0", "main.xml/Record3/MatrixDimension: "},
        {"<SizeX>2", "<SizeX>18446744073709551615", "main.xml/Record3/MatrixDimension: "},
        {"<SizeY>2", "<SizeY>1048577", "main.xml/Record3/MatrixDimension: "},
        {"<SizeZ>1", "<SizeZ>2", "main.xml/Record3/MatrixDimension/SizeZ"},
        {"<MatrixDimension>", "<ListDimension/><MatrixDimensions>", "main.xml"},
        {"<DataLink>", "<DataList><Datum>1</Datum></DataList><DataLink>", "main.xml/Record3/DataList"},
        {"<PointDataLink>bindata/data.bin</PointDataLink>", "", "main.xml/Record3/DataLink/PointDataLink"},
        {"bindata/data.bin", "", "main.xml/Record3/DataLink/PointDataLink"},
        {"bindata/data.bin", "bindata/other.bin", "main.xml/Record3/DataLink/PointDataLink: \"bindata/other.bin\""},
        {"bindata/data.bin", "/bindata/data.bin", "main.xml/Record3/DataLink/PointDataLink"},
        {"bindata/data.bin", "../bindata/data.bin", "main.xml/Record3/DataLink/PointDataLink"},
        {"bindata/data.bin", "bindata/../bindata/data.bin", "main.xml/Record3/DataLink/PointDataLink"},
        {"bindata/data.bin", "bindata\\data.bin", "main.xml/Record3/DataLink/PointDataLink"},
        {"bindata/data.bin", "C:/bindata/data.bin", "main.xml/Record3/DataLink/PointDataLink"},
        {"<Record1>", "<Record1", "main.xml, byte "},
        {"<p:ISO5436_2", "<svg/><p:ISO5436_2", "main.xml: the root element \"svg\""},
    };
    for (const auto& [from, to, place] : cases)
    {
        EXPECT_TRUE(Contains(RefusalWith(from, to), place)) << from << " -> " << to;
    }
}

TEST_F(X3pReader, Link_out_of_the_archive_is_refused_even_if_such_an_entry_exists)
{
    const auto xml = Replaced(X3pXml(2, 2, "D"), "bindata/data.bin", "../data.bin");
    EXPECT_TRUE(Contains(Refusal({{"main.xml", xml}, {"../data.bin", FourDoubles()}}), "PointDataLink"));
}

TEST_F(X3pReader, Matrix_of_another_size_is_refused_with_both_sizes)
{
    for (const std::size_t size : {0u, 31u, 33u, 1000000u})
    {
        const auto message = Refusal({{"main.xml", X3pXml(2, 2, "D")}, {"bindata/data.bin", std::string(size, 'x')}});
        EXPECT_TRUE(Contains(message, "bindata/data.bin: the entry has " + std::to_string(size) +
                                          " bytes where main.xml calls for 32"));
    }
}

/// The bytes of an archive in which the unpacked size of an entry is another, in its local header (at its first
/// occurrence) and in the central directory (at its last).
std::string WithSize(std::string bytes, std::string_view entry, std::uint32_t size)
{
    const std::string field = BytesOf(std::vector<std::uint32_t>{size});
    const auto central = bytes.rfind(entry) - 46;
    const auto local = bytes.find(entry) - 30;
    bytes.replace(central + 24, 4, field);
    return bytes.replace(local + 22, 4, field);
}

TEST_F(X3pReader, Entry_that_unpacks_to_more_than_it_states_is_refused)
{
    WriteZip(file, {{"main.xml", X3pXml(2, 2, "D")}, {"bindata/data.bin", std::string(100000, '\0')}});
    WriteBytes(file, WithSize(ReadBytes(file), "bindata/data.bin", 32));
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadX3p(file); }), "bindata/data.bin: the entry cannot be unpacked"));
}

TEST_F(X3pReader, Entry_that_claims_more_than_its_bytes_can_hold_is_refused)
{
    // The matrix first: the description names it, which WithSize would take for its header.
    const auto entries = Entries{{"bindata/data.bin", FourDoubles()}, {"main.xml", X3pXml(16384, 16384, "D")}};
    for (const zip_int32_t method : {ZIP_CM_DEFLATE, ZIP_CM_STORE})
    {
        WriteZip(file, entries, method);
        WriteBytes(file, WithSize(ReadBytes(file), "bindata/data.bin", 0x80000000u));
        EXPECT_TRUE(Contains(ErrorOf([&] { return ReadX3p(file); }), "cannot hold 2147483648 bytes"));
    }
}

TEST_F(X3pReader, Wrong_checksum_of_the_archive_is_refused)
{
    WriteZip(file, {{"main.xml", X3pXml(2, 2, "D")}, {"bindata/data.bin", FourDoubles()}}, ZIP_CM_STORE);
    std::string bytes = ReadBytes(file);
    bytes[bytes.find(FourDoubles())] ^= 1;
    WriteBytes(file, bytes);
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadX3p(file); }), "bindata/data.bin: the entry cannot be unpacked"));
}

TEST_F(X3pReader, Description_beyond_4_MiB_is_refused)
{
    const std::string xml = X3pXml(2, 2, "D");
    const std::size_t bound = 4 * 1024 * 1024;
    const std::string data = FourDoubles();
    const auto padded = [&](std::size_t size) { return xml + std::string(size - xml.size(), ' '); };
    EXPECT_EQ(Read({{"main.xml", padded(bound)}, {"bindata/data.bin", data}}).validCount, 4u);
    EXPECT_TRUE(Contains(Refusal({{"main.xml", padded(bound + 1)}, {"bindata/data.bin", data}}), "main.xml: 4194305"));
}

TEST_F(X3pReader, Deeply_nested_elements_do_not_exhaust_the_stack)
{
    std::string nested;
    for (int i = 0; i < 500000; ++i)
    {
        nested += "<a>";
    }
    EXPECT_TRUE(Contains(Refusal({{"main.xml", nested}}), "main.xml, byte "));
}

TEST_F(X3pReader, Entries_packed_in_another_way_are_refused)
{
    if (zip_compression_method_supported(ZIP_CM_BZIP2, 1) == 0)
    {
        GTEST_SKIP() << "this build of libzip cannot write such an archive";
    }
    EXPECT_TRUE(Contains(Refusal({{"main.xml", X3pXml(2, 2, "D")}, {"bindata/data.bin", FourDoubles()}}, ZIP_CM_BZIP2),
                         "main.xml: the entry is encrypted or packed in an unusual way"));
}

TEST_F(X3pReader, Archives_that_are_no_scans_are_refused)
{
    EXPECT_TRUE(Contains(Refusal({{"readme.txt", "text"}}), "there is no main.xml"));
    const std::string xml = X3pXml(2, 2, "D");
    EXPECT_TRUE(Contains(Refusal({{"a/main.xml", xml}, {"b/main.xml", xml}}), "b/main.xml: this is a second"));
    WriteBytes(file, "PK\x03\x04 and no more");
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadX3p(file); }), file.string() + ": zip archive: "));
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadX3p(folder / "none.x3p"); }), "none.x3p: there is no such file"));
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadX3p(folder / "."); }), "not a file"));
}
} // namespace
