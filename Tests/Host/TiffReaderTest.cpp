#include <Host/TiffReader.h>

#include "ScanTestFiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <thread>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;

constexpr std::int16_t nullHeight = HeightMap::nullHeight;
using Heights = std::vector<std::int16_t>;

GridOptions Spacing(double x, double y, double z)
{
    GridOptions options;
    options.spacingMm = {x, y, z};
    return options;
}

template <typename Sample>
std::vector<Sample> RandomSamples(std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<Sample> samples(count);
    std::ranges::generate(samples, [&] { return static_cast<Sample>(random() % 30000); });
    return samples;
}

class TiffReader : public testing::Test
{
protected:
    TemporaryFolder folder;
    std::filesystem::path file = folder / "plate.tif";
};

TEST_F(TiffReader, Real_scan_has_the_published_facts)
{
    GridOptions options = Spacing(0.1, 0.1, 0.1);
    options.alongX = ImageAxis::Rows;
    options.invalid = 0;
    const auto map = ReadTiff(ExampleScan("cylinder1.tif"), options);
    ASSERT_EQ(map.width, 1319u);
    ASSERT_EQ(map.length, 2101u);
    EXPECT_EQ(std::ranges::count(map.heights, nullHeight), 1024099);
    EXPECT_EQ(map.validCount, 1319u * 2101u - 1024099u);

    Heights valid;
    std::ranges::copy_if(map.heights, std::back_inserter(valid), [](auto height) { return height != nullHeight; });
    EXPECT_EQ(std::ranges::min(valid), 1);
    EXPECT_EQ(std::ranges::max(valid), 313);
    EXPECT_EQ(map.scaleMm, (Vector3{0.1, 0.1, 0.1}));
    EXPECT_EQ(map.offsetMm, (Vector3{0, 0, 0}));
}

TEST_F(TiffReader, Top_of_the_real_cylinder_lies_where_it_is_known_to_be)
{
    GridOptions options = Spacing(0.1, 0.1, 0.1);
    options.alongX = ImageAxis::Rows;
    options.invalid = 0;
    const auto map = ReadTiff(ExampleScan("cylinder1.tif"), options);
    Heights top;
    std::size_t left = map.width, right = 0, first = map.length, last = 0;
    for (std::size_t i = 0; i < map.heights.size(); ++i)
    {
        if (map.heights[i] > 280)
        {
            top.push_back(map.heights[i]);
            left = std::min(left, i % map.width);
            right = std::max(right, i % map.width);
            first = std::min(first, i / map.width);
            last = std::max(last, i / map.width);
        }
    }
    ASSERT_EQ(top.size(), 60372u);
    std::ranges::sort(top);
    EXPECT_EQ(top[top.size() / 2], 309);
    EXPECT_EQ((std::array{left, right, first, last}), (std::array<std::size_t, 4>{678, 955, 760, 1037}));
}

TEST_F(TiffReader, Columns_are_x_by_default_and_rows_on_request)
{
    WriteTiff<std::uint16_t>(file, 3, {1, 2, 3, 4, 5, 6});
    GridOptions options = Spacing(0.1, 0.2, 0.3);
    options.offsetMm = {7, 8, 9};
    const auto byColumns = ReadTiff(file, options);
    EXPECT_EQ(byColumns.width, 3u);
    EXPECT_EQ(byColumns.length, 2u);
    EXPECT_EQ(byColumns.heights, (Heights{1, 2, 3, 4, 5, 6}));

    options.alongX = ImageAxis::Rows;
    const auto byRows = ReadTiff(file, options);
    EXPECT_EQ(byRows.width, 2u);
    EXPECT_EQ(byRows.length, 3u);
    EXPECT_EQ(byRows.heights, (Heights{1, 4, 2, 5, 3, 6}));
    for (const auto* map : {&byColumns, &byRows})
    {
        EXPECT_EQ(map->scaleMm, (Vector3{0.1, 0.2, 0.3}));
        EXPECT_EQ(map->offsetMm, (Vector3{7, 8, 9}));
        EXPECT_EQ(map->validCount, 6u);
    }
    EXPECT_TRUE(HasNote(byColumns, "Columns are x"));
    EXPECT_TRUE(HasNote(byRows, "Rows are x"));
}

TEST_F(TiffReader, Every_integer_type_keeps_its_counts)
{
    const auto options = Spacing(1, 1, 0.5);
    const Heights expected{0, 1, 300, 32767};
    EXPECT_EQ(ReadTiff(WriteTiff<std::uint16_t>(file, 4, {0, 1, 300, 32767}), options).heights, expected);
    EXPECT_EQ(ReadTiff(WriteTiff<std::int16_t>(file, 4, {0, 1, 300, 32767}), options).heights, expected);
    EXPECT_EQ(ReadTiff(WriteTiff<std::uint32_t>(file, 4, {0, 1, 300, 32767}), options).heights, expected);
    EXPECT_EQ(ReadTiff(WriteTiff<std::int32_t>(file, 4, {0, 1, 300, 32767}), options).heights, expected);
    EXPECT_EQ(ReadTiff(WriteTiff<std::int32_t>(file, 2, {-5, 5}), options).heights, (Heights{-5, 5}));
}

TEST_F(TiffReader, Floats_are_rounded_and_not_a_number_is_invalid)
{
    const auto expectFloats = [this](auto zero) {
        using Sample = decltype(zero);
        const Sample nan = std::numeric_limits<Sample>::quiet_NaN();
        const auto map =
            ReadTiff(WriteTiff<Sample>(file, 4, {Sample(-1.5), nan, Sample(0.25), Sample(2.5)}), Spacing(1, 1, 2));
        EXPECT_EQ(map.validCount, 3u);
        EXPECT_EQ(map.heights[1], nullHeight);
        EXPECT_NEAR(HeightMm(map, 0, 0), -3, 8 / 65000.0 / 2);
        EXPECT_NEAR(HeightMm(map, 2, 0), 0.5, 8 / 65000.0 / 2);
        EXPECT_NEAR(HeightMm(map, 3, 0), 5, 8 / 65000.0 / 2);
    };
    expectFloats(0.0F);
    expectFloats(0.0);
}

struct StyleCase
{
    const char* name;
    TiffStyle style;
};

class Tiff_layout : public testing::TestWithParam<StyleCase>
{
};

TEST_P(Tiff_layout, does_not_change_the_heights)
{
    const TemporaryFolder folder;
    const TiffStyle& style = GetParam().style;
    if (TIFFIsCODECConfigured(style.compression) == 0)
    {
        GTEST_SKIP() << "this build of libtiff has no such compression";
    }
    const auto integers = RandomSamples<std::uint16_t>(37 * 41, 5);
    const auto map = ReadTiff(WriteTiff(folder / "a.tif", 37, integers, style), Spacing(1, 1, 1));
    ASSERT_EQ(map.width, 37u);
    ASSERT_EQ(map.length, 41u);
    EXPECT_TRUE(std::ranges::equal(map.heights, integers));

    const auto floats = RandomSamples<double>(37 * 41, 6);
    const auto rounded = ReadTiff(WriteTiff(folder / "b.tif", 37, floats, style), Spacing(1, 1, 1));
    for (std::size_t i = 0; i < floats.size(); ++i)
    {
        ASSERT_NEAR(rounded.offsetMm.z + rounded.scaleMm.z * rounded.heights[i], floats[i], 30000 / 65000.0 / 2);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , Tiff_layout,
    testing::Values(StyleCase{"little_endian", {.mode = "wl"}}, StyleCase{"big_endian", {.mode = "wb"}},
                    StyleCase{"big_tiff", {.mode = "w8"}}, StyleCase{"big_endian_big_tiff", {.mode = "wb8"}},
                    StyleCase{"one_strip", {.rowsPerStrip = 41}}, StyleCase{"lzw", {.compression = COMPRESSION_LZW}},
                    StyleCase{"deflate", {.compression = COMPRESSION_ADOBE_DEFLATE}},
                    StyleCase{"packbits", {.compression = COMPRESSION_PACKBITS}},
                    StyleCase{"zstd", {.compression = COMPRESSION_ZSTD}}, StyleCase{"tiles", {.tileSide = 16}},
                    StyleCase{"one_large_tile", {.tileSide = 64}},
                    StyleCase{"big_endian_lzw_tiles", {.mode = "wb", .compression = COMPRESSION_LZW, .tileSide = 32}}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(TiffReader, Samples_of_the_invalid_value_are_null)
{
    GridOptions options = Spacing(1, 1, 1);
    options.invalid = 65535;
    const auto map = ReadTiff(WriteTiff<std::uint16_t>(file, 4, {65535, 0, 5, 65535}), options);
    EXPECT_EQ(map.heights, (Heights{nullHeight, 0, 5, nullHeight}));
    EXPECT_EQ(map.validCount, 2u);

    options.invalid = -9999.5;
    const auto floats = ReadTiff(WriteTiff<float>(file, 3, {-9999.5F, 1, 2}), options);
    EXPECT_EQ(floats.heights, (Heights{nullHeight, -32767, 32767}));
}

TEST_F(TiffReader, Invalid_value_that_no_sample_can_have_marks_none)
{
    GridOptions options = Spacing(1, 1, 1);
    WriteTiff<std::uint16_t>(file, 3, {0, 1, 65534});
    for (const double value : {-1.0, 0.5, 65536.0, 1e300})
    {
        options.invalid = value;
        EXPECT_EQ(ReadTiff(file, options).validCount, 3u) << value;
    }
}

TEST_F(TiffReader, Of_several_pages_the_first_is_read_and_the_rest_noted)
{
    WriteTiff<std::uint16_t>(file, 2, {1, 2}, {.pages = 2});
    const auto map = ReadTiff(file, Spacing(1, 1, 1));
    EXPECT_EQ(map.heights, (Heights{1, 2}));
    EXPECT_TRUE(HasNote(map, "further pages"));
    WriteTiff<std::uint16_t>(file, 2, {1, 2});
    EXPECT_FALSE(HasNote(ReadTiff(file, Spacing(1, 1, 1)), "further pages"));
}

TEST_F(TiffReader, Images_that_are_no_height_maps_are_refused_by_the_tag)
{
    const auto refusal = [this] { return ErrorOf([this] { return ReadTiff(file, Spacing(1, 1, 1)); }); };
    WriteTiff<std::uint8_t>(file, 2, {1, 2});
    EXPECT_TRUE(Contains(refusal(), file.string() + ": BitsPerSample, SampleFormat: samples of 8 bits"));
    WriteTiff<std::uint64_t>(file, 2, {1, 2});
    EXPECT_TRUE(Contains(refusal(), "samples of 64 bits"));
    WriteTiff<std::uint16_t>(file, 1, {1, 2, 3}, {.samplesPerPixel = 3, .photometric = PHOTOMETRIC_RGB});
    EXPECT_TRUE(Contains(refusal(), file.string() + ": SamplesPerPixel: 3 is not supported, only 1 is"));
    WriteTiff<std::uint16_t>(file, 2, {1, 2}, {.photometric = PHOTOMETRIC_MINISWHITE});
    EXPECT_TRUE(Contains(refusal(), file.string() + ": PhotometricInterpretation: 0"));
    WriteTiff<std::uint16_t>(file, 2, {1, 2}, {.orientation = ORIENTATION_BOTLEFT});
    EXPECT_TRUE(Contains(refusal(), file.string() + ": Orientation: 4"));
}

TEST_F(TiffReader, Files_that_cannot_be_read_are_refused_by_name)
{
    const auto refusal = [](const std::filesystem::path& path) {
        return ErrorOf([&] { return ReadTiff(path, Spacing(1, 1, 1)); });
    };
    EXPECT_TRUE(Contains(refusal(folder / "none.tif"), "none.tif: there is no such file"));
    EXPECT_TRUE(Contains(refusal(folder / "."), "not a file"));
    WriteBytes(file, "a text that is no image");
    EXPECT_TRUE(Contains(refusal(file), file.string() + ": header: "));
    WriteBytes(file, "");
    EXPECT_TRUE(Contains(refusal(file), file.string() + ": header: "));
}

struct Tag
{
    std::uint16_t number;
    std::uint32_t value;
};

/// A little-endian TIFF file put together by hand: one page of these tags, all with one 32-bit value, then the data.
std::string RawTiff(const std::vector<Tag>& tags, const std::string& data)
{
    std::string bytes("II*\0\x08\0\0\0", 8);
    bytes += BytesOf(std::vector<std::uint16_t>{static_cast<std::uint16_t>(tags.size())});
    for (const auto& [number, value] : tags)
    {
        constexpr std::uint16_t asLong = 4;
        bytes += BytesOf(std::vector<std::uint16_t>{number, asLong});
        bytes += BytesOf(std::vector<std::uint32_t>{1, value});
    }
    return bytes + std::string(4, '\0') + data;
}

/// Where the data of a RawTiff begin.
constexpr std::uint32_t DataAfter(std::uint32_t tagCount)
{
    return 8 + 2 + 12 * tagCount + 4;
}

/// One strip of 16-bit counts.
std::string RawStrip(std::uint32_t columns, std::uint32_t rows, const std::string& data)
{
    const auto size = static_cast<std::uint32_t>(data.size());
    return RawTiff({{256, columns},
                    {257, rows},
                    {258, 16},
                    {259, 1},
                    {262, 1},
                    {273, DataAfter(9)},
                    {277, 1},
                    {278, rows},
                    {279, size}},
                   data);
}

/// One tile of 16 x 16 samples of 16 bits.
std::string RawTile(std::uint32_t columns, std::uint32_t offset, std::uint32_t size)
{
    return RawTiff({{256, columns},
                    {257, 16},
                    {258, 16},
                    {259, 1},
                    {262, 1},
                    {277, 1},
                    {322, 16},
                    {323, 16},
                    {324, offset},
                    {325, size}},
                   std::string(512, '\x01'));
}

TEST_F(TiffReader, File_put_together_by_hand_is_read)
{
    WriteBytes(file, RawStrip(2, 2, BytesOf(std::vector<std::uint16_t>{1, 2, 3, 4})));
    EXPECT_EQ(ReadTiff(file, Spacing(1, 1, 1)).heights, (Heights{1, 2, 3, 4}));
}

TEST_F(TiffReader, Sizes_beyond_the_bounds_are_refused_before_they_are_read)
{
    const std::pair<std::uint32_t, std::uint32_t> sizes[] = {{1048577, 1}, {1, 1048577}, {1048576, 257}};
    for (const auto& [columns, rows] : sizes)
    {
        WriteBytes(file, RawStrip(columns, rows, "12345678"));
        const auto message = ErrorOf([&] { return ReadTiff(file, Spacing(1, 1, 1)); });
        EXPECT_TRUE(Contains(message, file.string() + ": ImageWidth, ImageLength: ")) << columns << " x " << rows;
    }
}

TEST_F(TiffReader, Sizes_that_libtiff_itself_gives_up_are_refused)
{
    const std::pair<std::uint32_t, std::uint32_t> sizes[] = {{0, 2}, {2, 0}, {4294967295u, 4294967295u}};
    for (const auto& [columns, rows] : sizes)
    {
        WriteBytes(file, RawStrip(columns, rows, "12345678"));
        const auto message = ErrorOf([&] { return ReadTiff(file, Spacing(1, 1, 1)); });
        EXPECT_TRUE(message.starts_with(file.string() + ": ")) << message;
    }
}

TEST_F(TiffReader, Fewer_samples_than_stated_are_refused)
{
    WriteBytes(file, RawStrip(2, 3, BytesOf(std::vector<std::uint16_t>{1, 2, 3, 4})));
    const auto message = ErrorOf([&] { return ReadTiff(file, Spacing(1, 1, 1)); });
    EXPECT_TRUE(Contains(message, file.string() + ": strip 0 of 1: "));
    EXPECT_TRUE(Contains(message, "copy or export it again"));
}

TEST_F(TiffReader, Tiles_that_are_not_in_the_file_are_refused)
{
    const auto refusal = [this](const std::string& bytes) {
        WriteBytes(file, bytes);
        return ErrorOf([this] { return ReadTiff(file, Spacing(1, 1, 1)); });
    };
    WriteBytes(file, RawTile(16, DataAfter(10), 512));
    EXPECT_EQ(ReadTiff(file, Spacing(1, 1, 1)).heights, Heights(256, 0x0101));
    // A second tile is needed but has no place; the only tile is too short, or beyond the end.
    EXPECT_TRUE(Contains(refusal(RawTile(32, DataAfter(10), 512)), file.string() + ": tile 1 of 2: "));
    EXPECT_TRUE(Contains(refusal(RawTile(16, DataAfter(10), 511)), file.string() + ": tile 0 of 1: "));
    EXPECT_TRUE(Contains(refusal(RawTile(16, DataAfter(10) + 1, 512)), file.string() + ": tile 0 of 1: "));
    EXPECT_TRUE(Contains(refusal(RawTile(16, 0xffffff00u, 0xffffff00u)), file.string() + ": tile 0 of 1: "));
}

/// What libtiff prints by itself when it reads the file.
std::string PrintedByLibtiff(const std::filesystem::path& path)
{
    testing::internal::CaptureStderr();
    TIFF* tiff = TIFFOpen(path.c_str(), "r");
    std::vector<std::uint16_t> row(tiff == nullptr ? 0 : static_cast<std::size_t>(TIFFScanlineSize(tiff)) / 2);
    for (std::uint32_t i = 0; tiff != nullptr && i < 40 && TIFFReadScanline(tiff, row.data(), i, 0) == 1; ++i)
    {
    }
    TIFFClose(tiff);
    return testing::internal::GetCapturedStderr();
}

TEST_F(TiffReader, Words_of_libtiff_go_into_the_error_and_nowhere_else)
{
    WriteTiff(file, 40, RandomSamples<std::uint16_t>(1600, 3), {.compression = COMPRESSION_LZW});
    std::string bytes = ReadBytes(file);
    std::fill_n(bytes.begin() + 8, 200, '\xff');
    WriteBytes(file, bytes);
    testing::internal::CaptureStderr();
    const auto message = ErrorOf([&] { return ReadTiff(file, Spacing(1, 1, 1)); });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(Contains(message, file.string() + ": row 0 of 40: "));
    const auto from = message.find('(') + 1;
    const std::string cause = message.substr(from, message.find(')') - from);
    EXPECT_GT(cause.size(), 5u) << message;
    EXPECT_TRUE(Contains(PrintedByLibtiff(file), cause));
}

TEST_F(TiffReader, Handlers_that_were_set_before_still_hear_what_is_not_ours)
{
    WriteTiff<std::uint16_t>(file, 2, {1, 2});
    ASSERT_EQ(ReadTiff(file, Spacing(1, 1, 1)).validCount, 2u);
    testing::internal::CaptureStderr();
    EXPECT_EQ(TIFFOpen((folder / "none.tif").c_str(), "r"), nullptr);
    EXPECT_TRUE(Contains(testing::internal::GetCapturedStderr(), "none.tif"));
}

TEST_F(TiffReader, Threads_hear_of_their_own_files_only)
{
    const auto samples = RandomSamples<std::uint16_t>(64 * 64, 4);
    const auto good = WriteTiff(folder / "good.tif", 64, samples, {.compression = COMPRESSION_LZW});
    const auto bad = folder / "bad.tif";
    WriteBytes(bad, ReadBytes(good).substr(0, 2000));
    const auto readGood = [&] {
        for (int i = 0; i < 50; ++i)
        {
            const auto map = ReadTiff(good, Spacing(1, 1, 1));
            ASSERT_TRUE(std::ranges::equal(map.heights, samples));
            ASSERT_FALSE(HasNote(map, "libtiff"));
        }
    };
    const auto readBad = [&] {
        for (int i = 0; i < 50; ++i)
        {
            ASSERT_TRUE(Contains(ErrorOf([&] { return ReadTiff(bad, Spacing(1, 1, 1)); }), "bad.tif: header: "));
        }
    };
    std::thread other(readBad);
    readGood();
    other.join();
}
} // namespace
