#include <Host/PngReader.h>

#include "ScanTestFiles.h"

#include <nlohmann/json.hpp>
#include <png.h>

#include <array>
#include <csetjmp>
#include <cstdio>
#include <memory>
#include <random>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;

constexpr std::int16_t nullHeight = HeightMap::nullHeight;
using Heights = std::vector<std::int16_t>;
using Bytes = std::vector<std::uint8_t>;

/// An image as libpng takes it: samples of all channels, of any depth, each with the value it has in the file.
struct Picture
{
    int colours = PNG_COLOR_TYPE_GRAY;
    int bits = 8;
    std::uint32_t columns = 0;
    std::vector<std::uint16_t> samples;
    int interlace = PNG_INTERLACE_NONE;
    std::vector<png_color> palette{};
    std::optional<std::uint16_t> transparent{};

    [[nodiscard]] std::size_t Channels() const
    {
        const std::size_t colourChannels = colours == PNG_COLOR_TYPE_RGB || colours == PNG_COLOR_TYPE_RGB_ALPHA ? 3 : 1;
        return colourChannels + ((colours & PNG_COLOR_MASK_ALPHA) != 0 ? 1 : 0);
    }

    [[nodiscard]] std::uint32_t Rows() const
    {
        return static_cast<std::uint32_t>(samples.size() / Channels() / columns);
    }

    /// The rows as they stand in a file.
    [[nodiscard]] std::vector<Bytes> PackedRows() const
    {
        const std::size_t perRow = Channels() * columns;
        std::vector<Bytes> rows(Rows(), Bytes((perRow * static_cast<std::size_t>(bits) + 7) / 8));
        for (std::size_t i = 0; i < samples.size(); ++i)
        {
            for (int bit = 0; bit < bits; ++bit)
            {
                const std::size_t at = i % perRow * static_cast<std::size_t>(bits) + static_cast<std::size_t>(bit);
                const unsigned value = (unsigned{samples[i]} >> (bits - 1 - bit)) & 1U;
                rows[i / perRow][at / 8] = static_cast<std::uint8_t>(rows[i / perRow][at / 8] | value << (7 - at % 8));
            }
        }
        return rows;
    }
};

std::filesystem::path WritePng(const std::filesystem::path& file, const Picture& picture)
{
    std::FILE* const stream = std::fopen(file.c_str(), "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    auto rows = picture.PackedRows();
    std::vector<png_bytep> places;
    std::ranges::transform(rows, std::back_inserter(places), [](Bytes& row) { return row.data(); });
    png_init_io(png, stream);
    png_set_IHDR(png, info, picture.columns, picture.Rows(), picture.bits, picture.colours, picture.interlace,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (!picture.palette.empty())
    {
        png_set_PLTE(png, info, picture.palette.data(), static_cast<int>(picture.palette.size()));
    }
    if (picture.transparent)
    {
        png_color_16 colour{};
        colour.gray = *picture.transparent;
        png_set_tRNS(png, info, nullptr, 0, &colour);
    }
    png_set_rows(png, info, places.data());
    png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&png, &info);
    std::fclose(stream);
    return file;
}

/// Grey samples of all values of a depth, or every 257th of 16 bits.
Picture GreyRamp(int bits, int interlace = PNG_INTERLACE_NONE)
{
    Picture picture{
        .bits = bits, .columns = 11, .samples = std::vector<std::uint16_t>(11 * 13), .interlace = interlace};
    for (std::size_t i = 0; i < picture.samples.size(); ++i)
    {
        picture.samples[i] = static_cast<std::uint16_t>(i * 259 % (std::size_t{1} << bits));
    }
    return picture;
}

GridOptions Spacing(double x, double y, double z)
{
    GridOptions options;
    options.spacingMm = {x, y, z};
    return options;
}

class PngReaderTest : public testing::Test
{
protected:
    ImageScan Pixels(const Picture& picture) const
    {
        return std::get<ImageScan>(ReadPng(WritePng(file, picture), std::nullopt));
    }

    HeightMap Map(const Picture& picture, const GridOptions& options = Spacing(1, 1, 1)) const
    {
        return std::get<HeightMap>(ReadPng(WritePng(file, picture), options));
    }

    std::string Refusal(const std::optional<GridOptions>& options = std::nullopt) const
    {
        return ErrorOf([&] { return ReadPng(file, options); });
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "image.png";
};

TEST_F(PngReaderTest, Real_photograph_is_a_grey_image)
{
    const auto image = std::get<ImageScan>(ReadScan(ExampleScan("coins.png")));
    EXPECT_EQ(image.width, 384u);
    EXPECT_EQ(image.height, 303u);
    ASSERT_EQ(image.pixels.size(), 384u * 303u);
    EXPECT_EQ(std::ranges::min(image.pixels), 1);
    EXPECT_EQ(std::ranges::max(image.pixels), 252);
}

class Png_grey : public PngReaderTest, public testing::WithParamInterface<std::tuple<int, int>>
{
};

TEST_P(Png_grey, is_spread_over_8_bits_as_an_image_and_kept_as_heights)
{
    const auto [bits, interlace] = GetParam();
    const Picture picture = GreyRamp(bits, interlace);
    const auto map = Map(picture);
    ASSERT_EQ(map.width, 11u);
    ASSERT_EQ(map.length, 13u);
    EXPECT_EQ(map.validCount, 143u);
    const int highest = (1 << bits) - 1;
    for (std::size_t i = 0; i < picture.samples.size(); ++i)
    {
        ASSERT_DOUBLE_EQ(HeightMm(map, i % 11, i / 11), picture.samples[i]);
    }
    if (bits == 16)
    {
        return;
    }
    const auto image = Pixels(picture);
    ASSERT_EQ(image.width, 11u);
    ASSERT_EQ(image.height, 13u);
    for (std::size_t i = 0; i < picture.samples.size(); ++i)
    {
        ASSERT_EQ(image.pixels[i], picture.samples[i] * 255 / highest);
    }
}

INSTANTIATE_TEST_SUITE_P(, Png_grey,
                         testing::Combine(testing::Values(1, 2, 4, 8, 16),
                                          testing::Values(PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7)),
                         [](const auto& test) {
                             return std::to_string(std::get<0>(test.param)) + "_bits" +
                                    (std::get<1>(test.param) == PNG_INTERLACE_NONE ? "" : "_interlaced");
                         });

TEST_F(PngReaderTest, Heights_take_all_options_of_grids)
{
    GridOptions options = Spacing(0.1, 0.2, 0.5);
    options.offsetMm = {1, 2, 3};
    options.invalid = 7;
    options.alongX = ImageAxis::Rows;
    const auto map = Map({.bits = 16, .columns = 3, .samples = {1, 2, 3, 4, 7, 300}}, options);
    EXPECT_EQ(map.width, 2u);
    EXPECT_EQ(map.length, 3u);
    EXPECT_EQ(map.heights, (Heights{1, 4, 2, nullHeight, 3, 300}));
    EXPECT_EQ(map.scaleMm, (Vector3{0.1, 0.2, 0.5}));
    EXPECT_EQ(map.offsetMm, (Vector3{1, 2, 3}));
    EXPECT_EQ(map.validCount, 5u);
}

TEST_F(PngReaderTest, Spacing_makes_heights_of_grey_of_8_bits)
{
    WritePng(file, {.columns = 2, .samples = {10, 200}});
    const json spacing = {{"spacing", {1, 1, 0.5}}};
    EXPECT_EQ(std::get<HeightMap>(ReadScan(file, spacing, "job.json")).heights, (Heights{10, 200}));
    EXPECT_EQ(std::get<ImageScan>(ReadScan(file)).pixels, (Bytes{10, 200}));
    EXPECT_EQ(std::get<ImageScan>(ReadScan(file, json::object(), "job.json")).pixels, (Bytes{10, 200}));
    EXPECT_TRUE(Contains(ErrorOf([&] { return ReadScan(file, {{"invalid", 0}}, "job.json"); }), "\"spacing\""));
}

TEST_F(PngReaderTest, Grey_of_16_bits_without_spacing_is_refused)
{
    WritePng(file, {.bits = 16, .columns = 2, .samples = {10, 200}});
    const auto message = ErrorOf([&] { return ReadScan(file); });
    EXPECT_TRUE(Contains(message, file.string() + ": \"spacing\": a 16-bit PNG file does not tell"));
    EXPECT_TRUE(Contains(message, SidecarOf(file).string()));
}

TEST_F(PngReaderTest, Fully_transparent_samples_are_no_heights)
{
    const auto map =
        Map({.colours = PNG_COLOR_TYPE_GRAY_ALPHA, .bits = 16, .columns = 3, .samples = {5, 65535, 6, 0, 7, 1}});
    EXPECT_EQ(map.heights, (Heights{5, nullHeight, 7}));
    for (const int bits : {4, 8, 16})
    {
        const auto marked = Map({.bits = bits, .columns = 3, .samples = {5, 6, 7}, .transparent = 6});
        EXPECT_EQ(marked.heights, (Heights{5, nullHeight, 7})) << bits;
    }
}

TEST_F(PngReaderTest, Colour_becomes_grey_by_its_luma)
{
    // 0.299 R + 0.587 G + 0.114 B of the primaries: 76.245, 149.685, 29.07; of (10, 20, 30): 18.15.
    const auto image = Pixels({.colours = PNG_COLOR_TYPE_RGB,
                               .columns = 3,
                               .samples = {255, 0, 0, 0, 255, 0, 0, 0, 255, 10, 20, 30, 0, 0, 0, 255, 255, 255}});
    EXPECT_EQ(image.width, 3u);
    EXPECT_EQ(image.height, 2u);
    EXPECT_EQ(image.pixels, (Bytes{76, 150, 29, 18, 0, 255}));
    EXPECT_TRUE(HasNote(image, "BT.601"));
}

TEST_F(PngReaderTest, Three_equal_channels_are_kept)
{
    Picture picture{.colours = PNG_COLOR_TYPE_RGB, .columns = 16, .samples = {}};
    for (std::uint16_t value = 0; value < 256; ++value)
    {
        picture.samples.insert(picture.samples.end(), 3, value);
    }
    const auto image = Pixels(picture);
    for (std::size_t i = 0; i < 256; ++i)
    {
        ASSERT_EQ(image.pixels[i], i);
    }
    EXPECT_TRUE(HasNote(image, "three channels of the image are equal"));
}

TEST_F(PngReaderTest, Colour_of_16_bits_is_scaled)
{
    const auto image =
        Pixels({.colours = PNG_COLOR_TYPE_RGB, .bits = 16, .columns = 1, .samples = {25700, 25700, 25700}});
    EXPECT_EQ(image.pixels, (Bytes{100}));
    EXPECT_TRUE(HasNote(image, "Samples of 16 bits"));
}

TEST_F(PngReaderTest, Palette_is_looked_up)
{
    const Picture picture{.colours = PNG_COLOR_TYPE_PALETTE,
                          .bits = 2,
                          .columns = 4,
                          .samples = {0, 1, 2, 3},
                          .palette = {{0, 0, 0}, {255, 0, 0}, {9, 9, 9}, {255, 255, 255}}};
    EXPECT_EQ(Pixels(picture).pixels, (Bytes{0, 76, 9, 255}));
}

TEST_F(PngReaderTest, Transparency_of_images_is_ignored_and_noted)
{
    const auto grey = Pixels({.colours = PNG_COLOR_TYPE_GRAY_ALPHA, .columns = 2, .samples = {5, 0, 6, 255}});
    EXPECT_EQ(grey.pixels, (Bytes{5, 6}));
    EXPECT_TRUE(HasNote(grey, "Transparency was ignored"));
    const auto colour =
        Pixels({.colours = PNG_COLOR_TYPE_RGB_ALPHA, .columns = 2, .samples = {9, 9, 9, 0, 255, 0, 0, 255}});
    EXPECT_EQ(colour.pixels, (Bytes{9, 76}));
    const auto marked = Pixels({.columns = 2, .samples = {5, 6}, .transparent = 6});
    EXPECT_EQ(marked.pixels, (Bytes{5, 6}));
    EXPECT_TRUE(HasNote(marked, "Transparency was ignored"));
}

TEST_F(PngReaderTest, Colours_are_no_heights)
{
    WritePng(file, {.colours = PNG_COLOR_TYPE_RGB, .columns = 1, .samples = {1, 2, 3}});
    EXPECT_TRUE(Contains(Refusal(Spacing(1, 1, 1)), "colour type: colours are no heights"));
    WritePng(file,
             {.colours = PNG_COLOR_TYPE_PALETTE, .bits = 1, .columns = 1, .samples = {0}, .palette = {{1, 1, 1}}});
    EXPECT_TRUE(Contains(Refusal(Spacing(1, 1, 1)), "colour type: colours are no heights"));
}

TEST_F(PngReaderTest, Every_start_of_a_file_is_refused)
{
    for (const int interlace : {PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7})
    {
        const std::string whole = ReadBytes(WritePng(file, GreyRamp(8, interlace)));
        for (std::size_t size = 0; size < whole.size(); ++size)
        {
            WriteBytes(file, whole.substr(0, size));
            EXPECT_TRUE(Contains(Refusal(), file.string() + ": ")) << size;
            EXPECT_TRUE(Contains(Refusal(Spacing(1, 1, 1)), file.string() + ": ")) << size;
        }
    }
}

TEST_F(PngReaderTest, Damaged_files_are_refused_or_read_as_they_were)
{
    std::mt19937 random(31);
    const std::string whole = ReadBytes(WritePng(file, GreyRamp(8)));
    const Bytes pixels = Pixels(GreyRamp(8)).pixels;
    // All there is stands under checksums, but libpng does not need that of the empty last chunk.
    const std::size_t checked = whole.size() - 4;
    for (std::size_t at = 0; at < whole.size(); ++at)
    {
        std::string bytes = whole;
        bytes[at] = static_cast<char>(bytes[at] ^ static_cast<char>(1 + random() % 255));
        WriteBytes(file, bytes);
        try
        {
            EXPECT_EQ(std::get<ImageScan>(ReadPng(file, std::nullopt)).pixels, pixels) << at;
            EXPECT_GE(at, checked);
        }
        catch (const Error& error)
        {
            EXPECT_TRUE(Contains(error.what(), "copy or export it again")) << at;
        }
    }
}

std::uint32_t Checksum(std::string_view bytes)
{
    std::uint32_t rest = 0xffffffffu;
    for (const char byte : bytes)
    {
        rest ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
        {
            rest = (rest & 1u) != 0 ? 0xedb88320u ^ (rest >> 1) : rest >> 1;
        }
    }
    return ~rest;
}

std::string BigEndian(std::uint32_t value)
{
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
            static_cast<char>(value)};
}

/// A file that claims a size and has little behind it.
std::string Claiming(std::uint32_t columns, std::uint32_t rows)
{
    const auto chunk = [](const std::string& name, const std::string& data) {
        return BigEndian(static_cast<std::uint32_t>(data.size())) + name + data + BigEndian(Checksum(name + data));
    };
    const std::string head = BigEndian(columns) + BigEndian(rows) + std::string("\x08\x00\x00\x00\x00", 5);
    return "\x89PNG\r\n\x1a\n" + chunk("IHDR", head) + chunk("IDAT", std::string(100, 'x')) + chunk("IEND", "");
}

TEST_F(PngReaderTest, Sizes_beyond_the_bounds_or_the_file_are_refused_before_they_are_read)
{
    const std::pair<std::uint32_t, std::uint32_t> sizes[] = {
        {1048577, 1}, {1, 1048577}, {1048576, 257}, {1u << 20, 1u << 8}, {16000, 16000}};
    for (const auto& [columns, rows] : sizes)
    {
        WriteBytes(file, Claiming(columns, rows));
        EXPECT_TRUE(Contains(Refusal(), file.string() + ": width and height: ")) << columns << " x " << rows;
    }
    WriteBytes(file, Claiming(10, 10));
    EXPECT_TRUE(Contains(Refusal(), file.string() + ": pixels: this cannot be read ("));
    WriteBytes(file, Claiming(0, 10));
    EXPECT_TRUE(Contains(Refusal(), file.string() + ": head: this cannot be read ("));
}

TEST_F(PngReaderTest, Files_that_cannot_be_read_are_refused_by_name)
{
    EXPECT_TRUE(Contains(Refusal(), "image.png: there is no such file"));
    WriteBytes(file, "no image at all");
    EXPECT_TRUE(Contains(Refusal(), file.string() + ": head: this cannot be read (Not a PNG file)"));
}
} // namespace
