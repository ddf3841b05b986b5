#include <Host/ScanReader.h>

#include <Host/GridOptions.h>

#include "CloudTestFiles.h"
#include "ScanTestFiles.h"

#include <nlohmann/json.hpp>

#include <sys/resource.h>

#include <cstdlib>
#include <iostream>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;

using Heights = std::vector<std::int16_t>;
const char* const jobPlace = "plate.job.json, scan 2";

class ScanReader : public testing::Test
{
protected:
    /// Reads the file or gives it up with an Error; anything else ends the test.
    bool ReadsOrRefuses(const std::filesystem::path& file)
    {
        try
        {
            const auto map = ReadHeightMap(file, options, jobPlace);
            EXPECT_EQ(map.heights.size(), map.width * map.length);
            return true;
        }
        catch (const Error& error)
        {
            // What is left may look like another format, which has other options.
            const std::string message = error.what();
            const bool namesFile = message.find(file.string()) != std::string::npos;
            EXPECT_TRUE(namesFile || message.find(jobPlace) != std::string::npos) << message;
            return false;
        }
    }

    /// Tries a file with a few bytes changed behind the first four, again and again.
    void ReadsAndRefusesDamaged(const std::string& whole, int rounds)
    {
        std::mt19937 random(21);
        const auto file = folder / "damaged";
        int read = 0;
        for (int round = 0; round < rounds; ++round)
        {
            std::string bytes = whole;
            for (auto flips = 1 + random() % 4; flips > 0; --flips)
            {
                bytes[4 + random() % (bytes.size() - 4)] = static_cast<char>(random());
            }
            WriteBytes(file, bytes);
            read += ReadsOrRefuses(file) ? 1 : 0;
        }
        // Both must occur, or the test does not try what it should.
        EXPECT_GT(read, 0);
        EXPECT_LT(read, rounds);
    }

    std::string SmallTiff()
    {
        const std::vector<std::uint16_t> samples{7, 7, 7, 7, 9, 9, 300, 2, 1, 1, 1, 1, 65000, 5, 5, 5};
        return ReadBytes(
            WriteTiff(folder / "small.tif", 4, samples, {.compression = COMPRESSION_LZW, .rowsPerStrip = 2}));
    }

    std::string SmallX3p()
    {
        const auto xml = Replaced(X3pXml(2, 2, "F"), "</DataLink>",
                                  "<ValidPointsLink>bindata/valid.bin</ValidPointsLink></DataLink>");
        return ReadBytes(WriteZip(folder / "small.x3p", {{"main.xml", xml},
                                                         {"bindata/data.bin", BytesOf(std::vector<float>{1, 2, 3, 4})},
                                                         {"bindata/valid.bin", "\x0f"}}));
    }

    /// Two points each, as PLY and PCD. The comments give damage a place where it does no harm.
    static std::vector<std::string> SmallClouds()
    {
        const std::string remark(100, '-');
        const std::string ply =
            " 1.0\ncomment " + remark +
            "\nelement vertex 2\nproperty float x\nproperty float y\nproperty float z\nend_header\n";
        const std::string pcd =
            "# " + remark + "\nVERSION .7\nFIELDS x y z\nSIZE 4 4 4\nTYPE F F F\nWIDTH 2\nHEIGHT 1\nDATA ";
        const std::string points = NumberBytes(0.F, 0.F, 1.F, 2.F, 0.F, 3.F);
        const std::string columns = NumberBytes(0.F, 2.F, 0.F, 0.F, 1.F, 3.F);
        return {"ply\nformat ascii" + ply + "0 0 1\n2 0 3\n", "ply\nformat binary_little_endian" + ply + points,
                pcd + "ascii\n0 0 1\n2 0 3\n", pcd + "binary\n" + points,
                pcd + "binary_compressed\n" + NumberBytes(std::uint32_t{25}, std::uint32_t{24}) + "\x17" + columns};
    }

    TemporaryFolder folder;
    json noOptions;
    json cloudOptions = {{"unit", "mm"}, {"spacing", {1, 1}}};
    json options = {{"spacing", {0.1, 0.1, 0.001}}};
};

TEST_F(ScanReader, Example_scans_are_read_with_nothing_but_their_sidecars)
{
    const auto plate = ReadHeightMap(ExampleScan("cylinder1.tif"));
    EXPECT_EQ(plate.width, 1319u);
    EXPECT_EQ(plate.length, 2101u);
    EXPECT_EQ(plate.validCount, 1747120u);
    EXPECT_EQ(plate.scaleMm, (Vector3{0.1, 0.1, 0.1}));
    const auto land = ReadHeightMap(ExampleScan("sample-land.x3p"));
    EXPECT_EQ(land.width, 918u);
    EXPECT_EQ(land.length, 256u);
    const auto mug = std::get<PointMap>(ReadScan(ExampleScan("table_scene_mug_stereo_textured.pcd")));
    EXPECT_EQ(mug.width, 640u);
    EXPECT_EQ(mug.length, 480u);
    EXPECT_EQ(mug.validCount, 209280u);
    // Nearest and farthest, with z against the direction of view.
    EXPECT_NEAR(mug.offsetMm.z + 32767 * mug.scaleMm.z, -690, 0.5);
    EXPECT_NEAR(mug.offsetMm.z - 32767 * mug.scaleMm.z, -2593, 0.5);
    EXPECT_EQ(std::get<ProfileScan>(ReadScan(ExampleScan("D906-5.txt"))).heights.size(), 4012u);
    EXPECT_EQ(std::get<ProfileScan>(ReadScan(ExampleScan("1021-WLI-2D.csv"))).heights.size(), 1143u);
    EXPECT_EQ(ReadHeightMap(ExampleScan("nanovea-test2.txt")).heights.size(), 10201u);
    EXPECT_EQ(std::get<ImageScan>(ReadScan(ExampleScan("coins.png"))).width, 384u);
}

TEST_F(ScanReader, Format_is_known_by_content_whatever_the_name)
{
    const auto tiff = folder / "a.x3p";
    WriteTiff<std::uint16_t>(tiff, 2, {1, 2});
    EXPECT_EQ(ReadHeightMap(tiff, options, jobPlace).heights, (Heights{1, 2}));
    const auto x3p = folder / "b.tif";
    WriteZip(x3p, {{"main.xml", X3pXml(2, 1, "I")}, {"bindata/data.bin", BytesOf(Heights{3, 4})}});
    EXPECT_EQ(ReadHeightMap(x3p).heights, (Heights{3, 4}));
    WriteBytes(x3p, "1;2\n3;4\n");
    EXPECT_EQ(ReadHeightMap(x3p, options, jobPlace).width, 2u);
    for (const char* mode : {"wl", "wb", "wl8", "wb8"})
    {
        const auto file = WriteTiff<std::uint16_t>(folder / "c.dat", 2, {5, 6}, {.mode = mode});
        EXPECT_EQ(ReadHeightMap(file, options, jobPlace).heights, (Heights{5, 6})) << mode;
    }
    for (const std::string& cloud : SmallClouds())
    {
        const auto file = folder / "d.tif";
        WriteBytes(file, cloud);
        EXPECT_EQ(ReadHeightMap(file, cloudOptions, jobPlace).validCount, 2u);
    }
}

TEST_F(ScanReader, Options_of_the_job_win_over_the_sidecar)
{
    const auto file = WriteTiff<std::uint16_t>(folder / "a.tif", 2, {1, 2});
    WriteBytes(SidecarOf(file), R"({"spacing": [1, 2, 3], "invalid": 1})");
    const auto map = ReadHeightMap(file, options, jobPlace);
    EXPECT_EQ(map.scaleMm, (Vector3{0.1, 0.1, 0.001}));
    EXPECT_EQ(map.validCount, 1u);
}

TEST_F(ScanReader, Tiff_without_options_is_refused)
{
    const auto file = WriteTiff<std::uint16_t>(folder / "a.tif", 2, {1, 2});
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadHeightMap(file); }), "\"spacing\""));
}

TEST_F(ScanReader, X3p_with_options_is_refused_at_the_place_of_the_options)
{
    const auto file = ExampleScan("sample-land.x3p");
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadHeightMap(file, options, jobPlace); }), jobPlace));
    EXPECT_EQ(ReadHeightMap(file, json::object(), jobPlace).width, 918u);
    EXPECT_EQ(ReadHeightMap(file, noOptions, jobPlace).width, 918u);
}

TEST_F(ScanReader, Files_of_other_formats_are_refused)
{
    for (const char* text : {"", "II", "solid part", "a,b\nc,d\n", "\x89PN",
                             "\x7f"
                             "ELF"})
    {
        WriteBytes(folder / "a.tif", text);
        EXPECT_TRUE(Contains(ErrorOf([&] { return ReadHeightMap(folder / "a.tif"); }), "a.tif: first bytes: "));
    }
    EXPECT_TRUE(
        Contains(ErrorOf([&] { return ReadHeightMap(folder / "none.tif"); }), "none.tif: there is no such file"));
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadHeightMap(folder / "."); }), "not a file"));
}

TEST_F(ScanReader, Scan_beyond_the_memory_is_refused)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "sanitizers take the memory that this test would limit";
#endif
    const auto file = WriteZip(folder / "large.x3p", {{"main.xml", X3pXml(4096, 4096, "D")},
                                                      {"bindata/data.bin", std::string(4096 * 4096 * 8, '\0')}});
    const auto readWithLittleMemory = [&] {
        // Memory that was freed before may be used again: 64 MiB on top of it are too few for 128 MiB of samples.
        const rlim_t inUse = static_cast<rlim_t>(std::stoull(ReadBytes("/proc/self/statm"))) * 4096;
        const rlimit bound{inUse + (rlim_t{64} << 20), RLIM_INFINITY};
        if (setrlimit(RLIMIT_AS, &bound) == 0)
        {
            std::cerr << ErrorOf([&] { return ReadHeightMap(file); });
        }
        std::exit(0);
    };
    EXPECT_EXIT(readWithLittleMemory(), testing::ExitedWithCode(0), "large.x3p: there is not enough memory");
}

TEST_F(ScanReader, Text_from_files_reaches_messages_in_printable_form_only)
{
    const auto xml = Replaced(X3pXml(2, 2, "D"), "SUR", "\x1b[31m\xff" + std::string(500, 'x'));
    const auto file = WriteZip(folder / "a.x3p", {{"main.xml", xml}});
    const auto message = ErrorOf([&] { return ReadHeightMap(file); });
    EXPECT_TRUE(Contains(message, "?[31m?xxx"));
    EXPECT_LT(message.size(), file.string().size() + 300);
}

TEST_F(ScanReader, Every_start_of_a_file_is_read_or_refused)
{
    const auto file = folder / "part";
    for (const std::string& whole : {SmallTiff(), SmallX3p()})
    {
        for (std::size_t size = 0; size < whole.size(); ++size)
        {
            WriteBytes(file, whole.substr(0, size));
            ReadsOrRefuses(file);
        }
        WriteBytes(file, whole);
        options = whole.starts_with("PK") ? noOptions : options;
        EXPECT_TRUE(ReadsOrRefuses(file));
    }
}

TEST_F(ScanReader, Damaged_tiff_files_are_read_or_refused)
{
    ReadsAndRefusesDamaged(SmallTiff(), 4000);
}

TEST_F(ScanReader, Damaged_archives_are_read_or_refused)
{
    options = noOptions;
    ReadsAndRefusesDamaged(SmallX3p(), 3000);
}

TEST_F(ScanReader, Damaged_descriptions_are_read_or_refused)
{
    options = noOptions;
    std::mt19937 random(23);
    const auto file = folder / "damaged.x3p";
    const std::string whole = X3pXml(2, 2, "F");
    int read = 0;
    constexpr int rounds = 2000;
    for (int round = 0; round < rounds; ++round)
    {
        std::string xml = whole;
        xml[random() % xml.size()] = static_cast<char>(random());
        const std::size_t at = random() % xml.size();
        xml.replace(at, random() % 3, std::string(random() % 3, whole[random() % whole.size()]));
        WriteZip(file, {{"main.xml", xml}, {"bindata/data.bin", BytesOf(std::vector<float>{1, 2, 3, 4})}},
                 ZIP_CM_STORE);
        read += ReadsOrRefuses(file) ? 1 : 0;
    }
    EXPECT_GT(read, 0);
    EXPECT_LT(read, rounds);
}

TEST_F(ScanReader, Every_start_of_a_cloud_is_read_or_refused)
{
    options = cloudOptions;
    const auto file = folder / "part";
    for (const std::string& whole : SmallClouds())
    {
        for (std::size_t size = 0; size < whole.size(); ++size)
        {
            WriteBytes(file, whole.substr(0, size));
            ReadsOrRefuses(file);
        }
    }
}

TEST_F(ScanReader, Damaged_clouds_are_read_or_refused)
{
    options = cloudOptions;
    for (const std::string& whole : SmallClouds())
    {
        ReadsAndRefusesDamaged(whole, 500);
    }
}
} // namespace
